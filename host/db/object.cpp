#include "sdk/vcdb_object.h"

#include "host/base/numbers.h"
#include "host/base/unicode.h"
#include "host/db/database.h"
#include "host/db/extras.h"
#include "host/db/reference_visitor.h"
#include "host/db/xdata.h"
#include "sdk/vcdb_entity.h"
#include "sdk/vcdb_layout.h"
#include "sdk/vcdb_objects.h"
#include "sdk/vcdb_tables.h"

#include <algorithm>

VCRX_DEFINE(VcDbObject, VcRxObject)

// Handles and ids

template <class Char>
static bool putHexadecimal(std::uint64_t value, Char* buffer, std::size_t size)
{
    std::size_t length = 1;
    for (std::uint64_t rest = value >> 4; rest; rest >>= 4)
        ++length;
    if (length >= size)
        return false;
    buffer[length] = 0;
    for (; length > 0; value >>= 4)
        buffer[--length] = static_cast<Char>("0123456789ABCDEF"[value & 15]);
    return true;
}

bool VcDbHandle::getIntoAsciiBuffer(char* buffer, std::size_t size) const
{
    return putHexadecimal(m_value, buffer, size);
}
bool VcDbHandle::getIntoAsciiBuffer(wchar_t* buffer, std::size_t size) const
{
    return putHexadecimal(m_value, buffer, size);
}

bool VcDbObjectId::isValid() const
{
    const DatabaseCore* db = DatabaseCore::of(*this);
    return db && db->object(*this);
}

bool VcDbObjectId::isErased() const
{
    const DatabaseCore* db = DatabaseCore::of(*this);
    const VcDbObject* object = db ? db->object(*this) : nullptr;
    return !object || object->isErased();
}

VcDbHandle VcDbObjectId::handle() const
{
    const DatabaseCore* db = DatabaseCore::of(*this);
    return VcDbHandle(db ? db->handleOf(*this) : 0);
}

VcDbDatabase* VcDbObjectId::database() const
{
    DatabaseCore* db = DatabaseCore::of(*this);
    return db ? &db->face() : nullptr;
}

const VcRxClass* VcDbObjectId::objectClass() const
{
    const DatabaseCore* db = DatabaseCore::of(*this);
    const VcDbObject* object = db ? db->object(*this) : nullptr;
    return object ? object->isA() : nullptr;
}

// Objects

VcDbObject::VcDbObject() = default;
VcDbObject::~VcDbObject() = default;

VcDbObject::VcDbObject(const VcDbObject& o)
    : VcRxObject(o), m_id(o.m_id), m_owner(o.m_owner), m_order(o.m_order), m_props(o.m_props), m_present(o.m_present),
      m_erased(o.m_erased), m_modified(o.m_modified), m_implicit(o.m_implicit),
      m_extras(o.m_extras ? std::make_unique<ObjectExtras>(*o.m_extras) : nullptr)
{
}

VcDbObject& VcDbObject::operator=(const VcDbObject& o)
{
    if (this == &o)
        return *this;
    m_id = o.m_id;
    m_owner = o.m_owner;
    m_order = o.m_order;
    m_props = o.m_props;
    m_present = o.m_present;
    m_erased = o.m_erased;
    m_modified = o.m_modified;
    m_implicit = o.m_implicit;
    m_extras = o.m_extras ? std::make_unique<ObjectExtras>(*o.m_extras) : nullptr;
    return *this;
}

VcDbDatabase* VcDbObject::database() const { return m_id.database(); }

void VcDbObject::setOwnerId(VcDbObjectId owner)
{
    assertWriteEnabled();
    m_owner = owner.slot();
}

void VcDbObject::fields(FieldVisitor&) {}

ObjectExtras& VcDbObject::makeExtras()
{
    if (!m_extras)
        m_extras = std::make_unique<ObjectExtras>();
    return *m_extras;
}

// Opening and closing

static bool isOnLockedLayer(const VcDbObject& object)
{
    const VcDbEntity* entity = VcDbEntity::cast(&object);
    if (!entity || entity->objectId().isNull())
        return false;
    const DatabaseCore* db = DatabaseCore::of(entity->objectId());
    const auto* layer = db->objectAs<VcDbLayerTableRecord>(entity->layerId());
    return layer && layer->isLocked();
}

Vcad::ErrorStatus DatabaseCore::openObject(VcDbObject*& object, VcDbObjectId id, VcDb::OpenMode mode, bool openErased)
{
    object = nullptr;
    if (id.isNull())
        return Vcad::eNullObjectId;
    DatabaseCore* db = of(id);
    VcDbObject* found = db ? db->object(id) : nullptr;
    if (!found)
        return Vcad::eInvalidInput;
    if (found->m_erased && !openErased)
        return Vcad::eWasErased;
    if (found->m_writing)
        return Vcad::eWasOpenForWrite;
    if (mode == VcDb::kForWrite) {
        if (found->m_readers > 0)
            return Vcad::eWasOpenForRead;
        if (isOnLockedLayer(*found))
            return Vcad::eOnLockedLayer;
        found->m_writing = true;
    } else {
        if (found->m_readers == 1023)
            return Vcad::eOutOfRange;
        found->m_readers = found->m_readers + 1;
    }
    object = found;
    return Vcad::eOk;
}

Vcad::ErrorStatus vcdbOpenVcDbObject(VcDbObject*& object, VcDbObjectId id, VcDb::OpenMode mode, bool openErased)
{
    return DatabaseCore::openObject(object, id, mode, openErased);
}

Vcad::ErrorStatus vcdbOpenVcDbObject(VcDbObject*& object, VcDbObjectId id, VcDb::OpenMode mode, const VcRxClass* cls,
                                     bool openErased)
{
    const VcRxClass* actual = id.objectClass();
    if (actual && !actual->isDerivedFrom(cls)) {
        object = nullptr;
        return Vcad::eNotThatKindOfClass;
    }
    return DatabaseCore::openObject(object, id, mode, openErased);
}

Vcad::ErrorStatus VcDbObject::close()
{
    if (m_writing) {
        m_writing = false;
        if (m_modified)
            dropCaches();
    } else if (m_readers > 0) {
        m_readers = m_readers - 1;
    } else if (!m_id.isNull()) {
        return Vcad::eNotOpenForRead;
    }
    m_modified = false;
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbObject::upgradeOpen()
{
    if (m_writing)
        return Vcad::eOk;
    if (m_readers != 1)
        return m_readers ? Vcad::eWasOpenForRead : Vcad::eNotOpenForRead;
    if (isOnLockedLayer(*this))
        return Vcad::eOnLockedLayer;
    m_readers = 0;
    m_writing = true;
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbObject::downgradeOpen()
{
    if (!m_writing)
        return Vcad::eNotOpenForWrite;
    m_writing = false;
    m_readers = 1;
    return Vcad::eOk;
}

void VcDbObject::assertWriteEnabled(bool, bool)
{
    m_modified = true;
    if (DatabaseCore* db = DatabaseCore::of(m_id))
        db->undo().recordState(*this);
}

// The tables and the dictionaries that every drawing is found through, and its model.
static bool holdsTheDrawing(const DatabaseCore& db, const VcDbObject& object)
{
    if (object.isKindOf(VcDbSymbolTable::desc()) || object.objectId() == db.rootDictionary())
        return true;
    if (const auto* layout = VcDbLayout::cast(&object))
        return layout->getBlockTableRecordId() == db.modelSpace();
    const auto* root = db.objectAs<VcDbDictionary>(db.rootDictionary());
    return root && (object.objectId() == root->find("ACAD_GROUP") || object.objectId() == root->find("ACAD_LAYOUT"));
}

// What comes back needs its owner, and the name that it had there.
static Vcad::ErrorStatus mayComeBack(const DatabaseCore& db, const VcDbObject& object)
{
    const VcDbObject* owner = db.object(object.ownerId());
    if (owner && owner->isErased())
        return Vcad::eWasErased;
    if (const auto* table = VcDbSymbolTable::cast(owner))
        return table->find(static_cast<const VcDbSymbolTableRecord&>(object).nameUtf8()).isNull() ? Vcad::eOk
                                                                                                  : Vcad::eDuplicateKey;
    const auto* dictionary = VcDbDictionary::cast(owner);
    return dictionary && dictionary->nameOf(object.objectId()).empty() ? Vcad::eDuplicateKey : Vcad::eOk;
}

static void eraseExtension(const DatabaseCore& db, const VcDbObject& object, bool erasing)
{
    if (VcDbObject* dictionary = db.object(object.extensionDictionary()))
        dictionary->eraseWithOwner(erasing);
}

namespace {

// Layers, styles and definitions that went while nothing was there to need them.
class ReviveRecords : public ReferenceVisitor {
protected:
    VcDbObjectId visit(VcDbObjectId id, RefKind kind) override
    {
        VcDbObject* needed = kind == RefKind::HardPointer && id.isErased() ? DatabaseCore::of(id)->object(id) : nullptr;
        if (needed && VcDbSymbolTableRecord::cast(needed))
            needed->erase(false);
        return id;
    }
};

}

Vcad::ErrorStatus VcDbObject::erase(bool erasing)
{
    if (m_erased == erasing)
        return Vcad::eOk;
    DatabaseCore* db = DatabaseCore::of(m_id);
    if (!db)
        return Vcad::eNoDatabase;
    if (erasing && holdsTheDrawing(*db, *this))
        return Vcad::eCannotBeErased;
    if (const Vcad::ErrorStatus refusal = erasing ? mayErase() : mayComeBack(*db, *this))
        return refusal;
    db->undo().recordErase(*this);
    m_erased = erasing;
    m_erasedWithOwner = false;
    m_modified = true;
    erasedChanged();
    eraseOwned(erasing);
    eraseExtension(*db, *this, erasing);
    if (!erasing)
        ReviveRecords().visitAll(*this);
    return Vcad::eOk;
}

void VcDbObject::detach()
{
    m_id = {};
    m_owner = 0;
    m_readers = 0;
    m_writing = m_recorded = m_implicit = m_modified = false;
}

void VcDbObject::eraseWithOwner(bool erasing)
{
    if (m_erased == erasing || (!erasing && !m_erasedWithOwner))
        return;
    m_erasedWithOwner = erasing;
    DatabaseCore* db = DatabaseCore::of(m_id);
    db->undo().recordErase(*this);
    m_erased = erasing;
    erasedChanged();
    eraseOwned(erasing);
    eraseExtension(*db, *this, erasing);
    if (!erasing)
        ReviveRecords().visitAll(*this);
}

bool VcDbObject::hasFields() const
{
    const VcDbObjectId dictionary = extensionDictionary();
    DatabaseCore* db = DatabaseCore::of(dictionary);
    const auto* entries = db ? db->liveAs<VcDbDictionary>(dictionary) : nullptr;
    return entries && entries->has(L"ACAD_FIELD");
}

// Extension dictionary and reactors

VcDbObjectId VcDbObject::extensionDictionary() const
{
    return m_extras ? m_extras->extensionDictionary : VcDbObjectId();
}

Vcad::ErrorStatus VcDbObject::createExtensionDictionary()
{
    DatabaseCore* db = DatabaseCore::of(m_id);
    if (!db)
        return Vcad::eNoDatabase;
    if (db->liveAs<VcDbDictionary>(extensionDictionary()))
        return Vcad::eOk;
    assertWriteEnabled();
    auto dictionary = std::make_unique<VcDbDictionary>();
    dictionary->setTreatElementsAsHard(true);
    makeExtras().extensionDictionary = db->add(std::move(dictionary), m_id);
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbObject::releaseExtensionDictionary()
{
    DatabaseCore* db = DatabaseCore::of(m_id);
    auto* dictionary = db ? db->liveAs<VcDbDictionary>(extensionDictionary()) : nullptr;
    if (!dictionary || dictionary->numEntries() != 0)
        return Vcad::eNotApplicable;
    assertWriteEnabled();
    m_extras->extensionDictionary = {};
    return dictionary->erase();
}

// A persistent reactor is handed out as its id, packed into the pointer with the low bit set, which no real pointer has.
static void* packReactor(VcDbObjectId id)
{
    return reinterpret_cast<void*>((std::uint64_t(id.databaseSerial()) << 33) | (std::uint64_t(id.slot()) << 1) | 1);
}

bool vcdbIsPersistentReactor(const void* reactor) { return (reinterpret_cast<std::uintptr_t>(reactor) & 1) != 0; }

VcDbObjectId vcdbPersistentReactorObjectId(const void* reactor)
{
    if (!vcdbIsPersistentReactor(reactor))
        return {};
    const auto bits = reinterpret_cast<std::uintptr_t>(reactor);
    return {std::uint32_t(bits >> 33), std::uint32_t(bits >> 1)};
}

const std::vector<void*>* VcDbObject::reactors() const
{
    if (!m_extras || m_extras->reactors.empty())
        return nullptr;
    m_extras->reactorPointers.clear();
    for (const VcDbObjectId id : m_extras->reactors)
        m_extras->reactorPointers.push_back(packReactor(id));
    return &m_extras->reactorPointers;
}

void VcDbObject::addPersistentReactor(VcDbObjectId reactor)
{
    auto& all = makeExtras().reactors;
    if (std::find(all.begin(), all.end(), reactor) != all.end())
        return;
    assertWriteEnabled();
    m_extras->reactors.push_back(reactor);
}

void VcDbObject::removePersistentReactor(VcDbObjectId reactor)
{
    if (!m_extras ||
        std::find(m_extras->reactors.begin(), m_extras->reactors.end(), reactor) == m_extras->reactors.end())
        return;
    assertWriteEnabled();
    std::erase(m_extras->reactors, reactor);
}

// Extended data

resbuf* VcDbObject::xData(const wchar_t* application) const
{
    return m_extras ? xdataToChain(m_extras->xdata, application ? std::optional(wideToUtf8(application)) : std::nullopt)
                    : nullptr;
}

Vcad::ErrorStatus VcDbObject::setXData(const resbuf* chain)
{
    TagList merged;
    const Vcad::ErrorStatus status =
        mergeXData(m_extras ? m_extras->xdata : TagList(), chain, DatabaseCore::of(m_id), merged);
    if (status != Vcad::eOk)
        return status;
    assertWriteEnabled();
    makeExtras().xdata = std::move(merged);
    return Vcad::eOk;
}

// Walking owned objects

VcDbObjectIterator::VcDbObjectIterator(VcDbObjectIdArray ids, bool skipErased) : m_ids(std::move(ids))
{
    start(true, skipErased);
}

void VcDbObjectIterator::start(bool atBeginning, bool skipErased)
{
    m_at = atBeginning ? 0 : std::ptrdiff_t(m_ids.size()) - 1;
    skip(atBeginning ? 1 : -1, skipErased);
}

bool VcDbObjectIterator::done() const { return m_at < 0 || m_at >= std::ptrdiff_t(m_ids.size()); }

void VcDbObjectIterator::step(bool forward, bool skipErased)
{
    m_at += forward ? 1 : -1;
    skip(forward ? 1 : -1, skipErased);
}

void VcDbObjectIterator::skip(int direction, bool skipErased)
{
    while (skipErased && !done() && m_ids[std::size_t(m_at)].isErased())
        m_at += direction;
}

VcDbObjectId VcDbObjectIterator::objectId() const { return done() ? VcDbObjectId() : m_ids[std::size_t(m_at)]; }
