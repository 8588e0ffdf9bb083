// The annotation scale of a viewport: a reference to a scale of the drawing's list, in an xrecord of the viewport's extension
// dictionary, where other programs look for it.
#include "host/base/heap.h"
#include "host/base/unicode.h"
#include "host/db/chain.h"
#include "host/db/database.h"
#include "host/db/extras.h"
#include "sdk/vcdb_objects.h"
#include "sdk/vcdb_viewport.h"
#include "sdk/vcut.h"

namespace {

constexpr const char* kRecordName = "ASDK_XREC_ANNOTATION_SCALE_INFO";
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

VcDbScale* scaleNamed(const DatabaseCore& db, std::string_view name)
{
    const auto* root = db.objectAs<VcDbDictionary>(db.rootDictionary());
    const auto* list = root ? db.liveAs<VcDbDictionary>(root->find("ACAD_SCALELIST")) : nullptr;
    if (!list)
        return nullptr;
    for (const auto& [key, id] : list->liveEntries())
        if (auto* scale = db.liveAs<VcDbScale>(id); scale && equalNoCase(scale->nameUtf8(), name))
            return scale;
    return nullptr;
}

// What the record names, erased or not: a list that has been written anew has another scale of that name.
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
    if (const VcDbScale* live = scale && scale->isErased() ? scaleNamed(*db, scale->nameUtf8()) : nullptr)
        return live;
    return scale;
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
    resbuf value{};
    value.restype = kScaleCode;
    idToName(scale.objectId(), value.resval.rlname);
    return record->setFromRbChain(value);
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
    const VcDbXrecord* record = viewport ? recordOf(*viewport) : nullptr;
    const VcDbScale* scale = record ? namedBy(*record) : nullptr;
    if (!scale)
        return Vcad::eKeyNotFound;
    name = heapStringFromUtf8(scale->nameUtf8());
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
    return scale ? point(*viewport, *scale) : Vcad::eInvalidInput;
}
