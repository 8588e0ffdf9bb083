#include "sdk/vcdb_tables.h"

#include "host/base/heap.h"
#include "host/base/unicode.h"
#include "host/db/database.h"
#include "host/db/record_names.h"
#include "sdk/vcdb_records.h"

#include <utility>

VCRX_DEFINE(VcDbSymbolTableRecord, VcDbObject)
VCRX_DEFINE(VcDbSymbolTable, VcDbObject)

// Records

Vcad::ErrorStatus VcDbSymbolTableRecord::getName(wchar_t*& name) const
{
    name = heapStringFromUtf8(m_name);
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbSymbolTableRecord::setName(const wchar_t* name)
{
    if (!name)
        return Vcad::eInvalidInput;
    const std::string utf8 = wideToUtf8(name);
    if (!isLegalRecordName(utf8))
        return Vcad::eInvalidInput;
    DatabaseCore* db = DatabaseCore::of(m_id);
    const auto* table = db ? db->objectAs<VcDbSymbolTable>(ownerId()) : nullptr;
    if (table) {
        const VcDbObjectId there = table->find(utf8);
        if (!there.isNull() && there != m_id)
            return Vcad::eDuplicateKey;
    }
    if (db && utf8 != m_name && hasFixedName(*db, *this))
        return Vcad::eNotApplicable;
    assertWriteEnabled();
    if (db)
        renameInHeader(*db, *this, m_name, utf8);
    setNameUtf8(utf8);
    return Vcad::eOk;
}

void VcDbSymbolTableRecord::setNameUtf8(std::string name)
{
    const std::string old = std::exchange(m_name, std::move(name));
    DatabaseCore* db = DatabaseCore::of(m_id);
    if (auto* table = db ? db->objectAs<VcDbSymbolTable>(ownerId()) : nullptr)
        table->recordRenamed(*this, old);
}

void VcDbSymbolTableRecord::setFlags(std::int16_t flags)
{
    assertWriteEnabled();
    m_flags = flags;
}

void VcDbSymbolTableRecord::fields(FieldVisitor& v)
{
    VcDbObject::fields(v);
    v.subclass("AcDbSymbolTableRecord");
}

void VcDbSymbolTableRecord::nameAndFlags(FieldVisitor& v)
{
    std::string name = m_name;
    v.text(2, name);
    if (v.isReading() && name != m_name)
        setNameUtf8(std::move(name));
    v.number(70, m_flags);
}

void VcDbSymbolTableRecord::stateRestored(const VcDbObject& before)
{
    const std::string& old = static_cast<const VcDbSymbolTableRecord&>(before).m_name;
    DatabaseCore* db = DatabaseCore::of(m_id);
    if (auto* table = db && old != m_name ? db->objectAs<VcDbSymbolTable>(ownerId()) : nullptr)
        table->recordRenamed(*this, old);
}

Vcad::ErrorStatus VcDbSymbolTableRecord::mayErase() const
{
    const DatabaseCore* db = DatabaseCore::of(m_id);
    return db && recordIsNeeded(*db, *this) ? Vcad::eCannotBeErased : Vcad::eOk;
}

// Tables: records in order, and an index by folded name in which erased ones stay, so that they can come back.

struct VcDbSymbolTable::Index {
    std::unordered_multimap<std::string, std::uint32_t> byName;
};

VcDbSymbolTable::VcDbSymbolTable() : m_index(std::make_unique<Index>()) {}
VcDbSymbolTable::~VcDbSymbolTable() = default;
VcDbSymbolTable::VcDbSymbolTable(const VcDbSymbolTable& o) : VcDbObject(o), m_index(std::make_unique<Index>()) {}

VcDbSymbolTable& VcDbSymbolTable::operator=(const VcDbSymbolTable& o)
{
    VcDbObject::operator=(o);
    return *this;
}

VcDbObjectId VcDbSymbolTable::find(std::string_view name, bool erasedToo) const
{
    const DatabaseCore* db = DatabaseCore::of(m_id);
    const auto [first, last] = m_index->byName.equal_range(foldKey(name));
    const VcDbObject *live = nullptr, *erased = nullptr;
    for (auto at = first; at != last; ++at) {
        const VcDbObject* record = db->objectAt(at->second);
        if (record && record->isErased())
            erased = record;
        else if (record && (!live || record->order() < live->order()))
            live = record;
    }
    const VcDbObject* found = live ? live : erasedToo ? erased : nullptr;
    return found ? found->objectId() : VcDbObjectId();
}

void VcDbSymbolTable::recordAdded(VcDbSymbolTableRecord& record)
{
    record.setOrder(std::uint32_t(m_records->size()));
    m_records->push_back(record.objectId().slot());
    m_index->byName.emplace(foldKey(record.nameUtf8()), record.objectId().slot());
}

void VcDbSymbolTable::recordRenamed(VcDbSymbolTableRecord& record, const std::string& oldName)
{
    const auto [first, last] = m_index->byName.equal_range(foldKey(oldName));
    for (auto at = first; at != last; ++at) {
        if (at->second != record.objectId().slot())
            continue;
        m_index->byName.erase(at);
        m_index->byName.emplace(foldKey(record.nameUtf8()), record.objectId().slot());
        return;
    }
}

std::vector<VcDbObjectId> VcDbSymbolTable::records() const
{
    const DatabaseCore* db = DatabaseCore::of(m_id);
    std::vector<VcDbObjectId> live;
    for (const std::uint32_t slot : *m_records)
        if (const VcDbObject* record = db->objectAt(slot); record && !record->isErased())
            live.push_back(record->objectId());
    return live;
}

void VcDbSymbolTable::fields(FieldVisitor& v)
{
    VcDbObject::fields(v);
    v.subclass("AcDbSymbolTable");
    v.count(70, v.isWriting() ? records().size() : 0);
}

Vcad::ErrorStatus VcDbSymbolTable::getAt(const wchar_t* name, VcDbObjectId& id, bool getErased) const
{
    if (!name)
        return Vcad::eInvalidInput;
    const VcDbObjectId found = find(wideToUtf8(name), getErased);
    if (found.isNull())
        return Vcad::eKeyNotFound;
    id = found;
    return Vcad::eOk;
}

bool VcDbSymbolTable::has(const wchar_t* name) const { return name && !find(wideToUtf8(name)).isNull(); }

bool VcDbSymbolTable::has(VcDbObjectId id) const
{
    const DatabaseCore* db = DatabaseCore::of(m_id);
    const VcDbObject* record = db->object(id);
    return record && !record->isErased() && record->ownerId() == m_id;
}

constexpr std::int16_t kAnonymous = 1;  // among the flags of a block

void completeRecord(VcDbSymbolTableRecord& record, const DatabaseCore& db)
{
    if (auto* layer = VcDbLayerTableRecord::cast(&record); layer && layer->linetypeObjectId().isNull())
        layer->setLinetypeObjectId(db.findRecord(NameTable::Linetype, "Continuous"));
}

Vcad::ErrorStatus VcDbSymbolTable::add(VcDbObjectId& id, VcDbSymbolTableRecord* record)
{
    DatabaseCore* db = DatabaseCore::of(m_id);
    if (!db)
        return Vcad::eNoDatabase;
    if (!record || !record->objectId().isNull())
        return Vcad::eInvalidInput;
    if (std::unique_ptr<VcDbSymbolTableRecord>(newRecord())->isA() != record->isA())
        return Vcad::eNotThatKindOfClass;
    const bool isShapeFile = record->nameUtf8().empty() && record->isKindOf(VcDbTextStyleTableRecord::desc());
    if (!isShapeFile && !isLegalRecordName(record->nameUtf8()))
        return Vcad::eInvalidInput;
    // The viewports of one arrangement of the screen share its name, *Active that of the one that is shown.
    const bool mayRepeat = record->isKindOf(VcDbViewportTableRecord::desc());
    if (!mayRepeat && record->nameUtf8().size() > 1 && record->nameUtf8()[0] == '*') {
        record->setNameUtf8(freeAnonymousName(*this, record->nameUtf8()));
        if (auto* block = VcDbBlockTableRecord::cast(record); block && !block->isLayout())
            block->setBlockFlags(std::int16_t(block->blockFlags() | kAnonymous));
    }
    if (!mayRepeat && !find(record->nameUtf8()).isNull())
        return Vcad::eDuplicateKey;
    assertWriteEnabled();
    completeRecord(*record, *db);
    id = db->add(std::unique_ptr<VcDbObject>(record), m_id);
    recordAdded(*record);
    record->openNew();
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbSymbolTable::add(VcDbSymbolTableRecord* record)
{
    VcDbObjectId id;
    return add(id, record);
}

Vcad::ErrorStatus VcDbSymbolTable::newIterator(VcDbSymbolTableIterator*& iterator, bool atBeginning,
                                               bool skipDeleted) const
{
    iterator = new VcDbSymbolTableIterator(*this, skipDeleted);
    iterator->start(atBeginning, skipDeleted);
    return Vcad::eOk;
}

// Iterators

VcDbSymbolTableIterator::VcDbSymbolTableIterator(const VcDbSymbolTable& table, bool skipErased)
{
    const DatabaseCore* db = DatabaseCore::of(table.objectId());
    for (const std::uint32_t slot : table.recordSlots())
        m_ids.push_back(db->idAt(slot));
    start(true, skipErased);
}

void VcDbSymbolTableIterator::start(bool atBeginning, bool skipErased)
{
    m_at = atBeginning ? 0 : std::ptrdiff_t(m_ids.size()) - 1;
    skip(atBeginning ? 1 : -1, skipErased);
}

void VcDbSymbolTableIterator::step(bool forward, bool skipErased)
{
    m_at += forward ? 1 : -1;
    skip(forward ? 1 : -1, skipErased);
}

void VcDbSymbolTableIterator::skip(int direction, bool skipErased)
{
    while (skipErased && !done() && m_ids[std::size_t(m_at)].isErased())
        m_at += direction;
}

Vcad::ErrorStatus VcDbSymbolTableIterator::getRecordId(VcDbObjectId& id) const
{
    if (done())
        return Vcad::eInvalidIndex;
    id = m_ids[std::size_t(m_at)];
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbSymbolTableIterator::getRecord(VcDbSymbolTableRecord*& record, VcDb::OpenMode mode,
                                                     bool openErased) const
{
    record = nullptr;
    return done() ? Vcad::eInvalidIndex : vcdbOpenObject(record, m_ids[std::size_t(m_at)], mode, openErased);
}

#define VCDB_DEFINE_TABLE(Table, Record, Iterator)                                                                     \
    VCDB_DEFINE(Table, VcDbSymbolTable, nullptr)                                                                       \
    Vcad::ErrorStatus Table::getAt(const wchar_t* name, Record*& record, VcDb::OpenMode mode, bool openErased) const   \
    {                                                                                                                  \
        VcDbObjectId id;                                                                                               \
        record = nullptr;                                                                                              \
        const Vcad::ErrorStatus status = getAt(name, id, openErased);                                                  \
        return status ? status : vcdbOpenObject(record, id, mode, openErased);                                         \
    }                                                                                                                  \
    Vcad::ErrorStatus Table::newIterator(Iterator*& iterator, bool atBeginning, bool skipDeleted) const                \
    {                                                                                                                  \
        iterator = new Iterator(*this, skipDeleted);                                                                   \
        iterator->start(atBeginning, skipDeleted);                                                                     \
        return Vcad::eOk;                                                                                              \
    }                                                                                                                  \
    VcDbSymbolTableRecord* Table::newRecord() const { return new Record; }                                             \
    Vcad::ErrorStatus Iterator::getRecord(Record*& record, VcDb::OpenMode mode, bool openErased) const                 \
    {                                                                                                                  \
        VcDbSymbolTableRecord* opened = nullptr;                                                                       \
        const Vcad::ErrorStatus status = VcDbSymbolTableIterator::getRecord(opened, mode, openErased);                 \
        record = static_cast<Record*>(opened);                                                                         \
        return status;                                                                                                 \
    }

VCDB_DEFINE_TABLE(VcDbLayerTable, VcDbLayerTableRecord, VcDbLayerTableIterator)
VCDB_DEFINE_TABLE(VcDbLinetypeTable, VcDbLinetypeTableRecord, VcDbLinetypeTableIterator)
VCDB_DEFINE_TABLE(VcDbTextStyleTable, VcDbTextStyleTableRecord, VcDbTextStyleTableIterator)
VCDB_DEFINE_TABLE(VcDbDimStyleTable, VcDbDimStyleTableRecord, VcDbDimStyleTableIterator)
VCDB_DEFINE_TABLE(VcDbBlockTable, VcDbBlockTableRecord, VcDbBlockTableIterator)
VCDB_DEFINE_TABLE(VcDbRegAppTable, VcDbRegAppTableRecord, VcDbRegAppTableIterator)
VCDB_DEFINE_TABLE(VcDbViewTable, VcDbViewTableRecord, VcDbViewTableIterator)
VCDB_DEFINE_TABLE(VcDbViewportTable, VcDbViewportTableRecord, VcDbViewportTableIterator)
VCDB_DEFINE_TABLE(VcDbUCSTable, VcDbUCSTableRecord, VcDbUCSTableIterator)
