// The annotation scale of a viewport: a reference to a scale of the drawing's list, in an xrecord of the viewport's extension
// dictionary, where other programs look for it.
#include "host/base/heap.h"
#include "host/base/unicode.h"
#include "host/db/chain.h"
#include "host/db/database.h"
#include "host/db/extras.h"
#include "host/db/scale_list.h"
#include "sdk/vcdb_objects.h"
#include "sdk/vcdb_viewport.h"
#include "sdk/vcut.h"

namespace {

constexpr const char* kRecordName = "ASDK_XREC_ANNOTATION_SCALE_INFO";
constexpr int kFormCode = 90;
constexpr int kScaleCode = 340;

VcDbDictionary* extensionOf(const VcDbViewport& viewport)
{
    const DatabaseCore* db = DatabaseCore::of(viewport.objectId());
    return db ? db->liveAs<VcDbDictionary>(viewport.extensionDictionary()) : nullptr;
}

VcDbXrecord* recordOf(const VcDbViewport& viewport)
{
    const VcDbDictionary* extension = extensionOf(viewport);
    const DatabaseCore* db = DatabaseCore::of(viewport.objectId());
    return extension ? db->liveAs<VcDbXrecord>(extension->find(kRecordName)) : nullptr;
}

// What the record names. A scale that the list does not know any more keeps its name.
const VcDbScale* namedBy(const VcDbXrecord& record)
{
    resbuf* chain = nullptr;
    const DatabaseCore* db = DatabaseCore::of(record.objectId());
    const VcDbScale* scale = nullptr;
    if (record.rbChain(&chain) == Vcad::eOk)
        for (const resbuf* node = chain; node && !scale; node = node->rbnext) {
            VcDbObjectId id;
            if (node->restype == kScaleCode && nameToId(node->resval.rlname, id))
                scale = db->objectAs<VcDbScale>(id);
        }
    vcutRelRb(chain);
    const VcDbScale* listed = scale ? listedScale(*db, *scale) : nullptr;
    return listed ? listed : scale;
}

Vcad::ErrorStatus point(VcDbViewport& viewport, const VcDbScale& scale)
{
    DatabaseCore* db = DatabaseCore::of(viewport.objectId());
    if (const Vcad::ErrorStatus status = viewport.createExtensionDictionary())
        return status;
    VcDbXrecord* record = recordOf(viewport);
    if (!record) {
        VcDbDictionary* extension = extensionOf(viewport);
        auto made = std::make_unique<VcDbXrecord>();
        record = made.get();
        extension->setAtUtf8(kRecordName, db->add(std::move(made), extension->objectId()));
    }
    // Other programs begin the record with the number of its form.
    resbuf reference{}, form{};
    reference.restype = kScaleCode;
    idToName(scale.objectId(), reference.resval.rlname);
    form.rbnext = &reference;
    form.restype = kFormCode;
    form.resval.rlong = 1;
    return record->setFromRbChain(form);
}

}

VcDbAnnotationScale* VcDbViewport::annotationScale() const
{
    static VcDbAnnotationScale scale;
    const VcDbXrecord* record = recordOf(*this);
    if (!record || !namedBy(*record))
        return nullptr;
    scale.m_viewport = objectId();
    return &scale;
}

Vcad::ErrorStatus VcDbAnnotationScale::getName(wchar_t*& name) const
{
    const DatabaseCore* db = DatabaseCore::of(m_viewport);
    const auto* viewport = db ? db->liveAs<VcDbViewport>(m_viewport) : nullptr;
    const std::string named = viewport ? annotationScaleOf(*viewport) : std::string();
    if (named.empty())
        return Vcad::eKeyNotFound;
    name = heapStringFromUtf8(named);
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbAnnotationScale::setName(const wchar_t* name)
{
    DatabaseCore* db = DatabaseCore::of(m_viewport);
    auto* viewport = db ? db->liveAs<VcDbViewport>(m_viewport) : nullptr;
    const VcDbScale* scale = viewport && name ? scaleNamed(*db, wideToUtf8(name)) : nullptr;
    return scale ? point(*viewport, *scale) : Vcad::eKeyNotFound;
}

Vcad::ErrorStatus VcDbAnnotationScale::setScaleId(VcDbObjectId id)
{
    DatabaseCore* db = DatabaseCore::of(m_viewport);
    auto* viewport = db ? db->liveAs<VcDbViewport>(m_viewport) : nullptr;
    const VcDbScale* scale = viewport ? db->liveAs<VcDbScale>(id) : nullptr;
    return scale && listedScale(*db, *scale) == scale ? point(*viewport, *scale) : Vcad::eInvalidInput;
}

std::string annotationScaleOf(const VcDbViewport& viewport)
{
    const VcDbXrecord* record = recordOf(viewport);
    const VcDbScale* scale = record ? namedBy(*record) : nullptr;
    return scale ? scale->nameUtf8() : std::string();
}

bool assignAnnotationScale(VcDbViewport& viewport, const VcDbScale& scale)
{
    return point(viewport, scale) == Vcad::eOk;
}
