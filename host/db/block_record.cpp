#include "host/base/heap.h"
#include "host/base/unicode.h"
#include "host/db/database.h"
#include "sdk/vcdb_entity.h"
#include "sdk/vcdb_insert.h"
#include "sdk/vcdb_tables.h"
#include "sdk/vcdb_text.h"

#include <unordered_set>

VCDB_DEFINE(VcDbBlockTableRecord, VcDbSymbolTableRecord, "BLOCK_RECORD")

namespace {

constexpr std::int16_t kAnonymous = 1, kHasAttributes = 2, kXref = 4, kOverlay = 8, kResolved = 32;

bool isSpaceName(std::string_view name)
{
    return equalNoCase(name.substr(0, 12), "*Model_Space") || equalNoCase(name.substr(0, 12), "*Paper_Space");
}

}

Vcad::ErrorStatus VcDbBlockTableRecord::appendVcDbEntity(VcDbObjectId& id, VcDbEntity* entity)
{
    DatabaseCore* db = DatabaseCore::of(m_id);
    if (!db)
        return Vcad::eNoDatabase;
    if (!entity || !entity->objectId().isNull())
        return Vcad::eInvalidInput;
    const VcDbObjectId layer = entity->props().layer;
    if (!layer.isNull() && layer.databaseSerial() != m_id.databaseSerial())
        return Vcad::eWrongDatabase;
    assertWriteEnabled();
    if (layer.isNull()) {
        EntityProps props = entity->props();
        props.layer = db->face().clayer();
        entity->setProps(props);
    }
    id = db->add(std::unique_ptr<VcDbObject>(entity), m_id);
    memberAdded(*entity);
    entity->openNew();
    entity->addedToDatabase();
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbBlockTableRecord::appendVcDbEntity(VcDbEntity* entity)
{
    VcDbObjectId id;
    return appendVcDbEntity(id, entity);
}

void VcDbBlockTableRecord::memberAdded(VcDbEntity& entity)
{
    DatabaseCore* db = DatabaseCore::of(m_id);
    const std::uint32_t slot = entity.objectId().slot();
    if (isLayout()) {
        entity.setOrder(std::uint32_t(db->mainOrder().size()));
        db->mainOrder().push_back(slot);
    } else {
        entity.setOrder(std::uint32_t(m_members->size()));
    }
    m_members->push_back(slot);
}

bool VcDbBlockTableRecord::isLayout() const { return !m_layout.isNull() || isSpaceName(m_name); }

Vcad::ErrorStatus VcDbBlockTableRecord::newIterator(VcDbBlockTableRecordIterator*& iterator, bool atBeginning,
                                                    bool skipDeleted) const
{
    iterator = new VcDbBlockTableRecordIterator(*this, skipDeleted);
    iterator->start(atBeginning, skipDeleted);
    return Vcad::eOk;
}

// References of every record in one walk over the drawing: record slot -> references.
static std::unordered_map<std::uint32_t, VcDbObjectIdArray> referencesByRecord(const DatabaseCore& db)
{
    std::unordered_map<std::uint32_t, VcDbObjectIdArray> all;
    for (std::uint32_t slot = 1; slot < db.slotCount(); ++slot) {
        const VcDbObject* object = db.objectAt(slot);
        const auto* reference = object && !object->isErased() ? VcDbBlockReference::cast(object) : nullptr;
        if (reference)
            all[reference->blockTableRecord().slot()].push_back(reference->objectId());
    }
    return all;
}

Vcad::ErrorStatus VcDbBlockTableRecord::getBlockReferenceIds(VcDbObjectIdArray& ids, bool directOnly, bool) const
{
    const DatabaseCore* db = DatabaseCore::of(m_id);
    if (!db)
        return Vcad::eNoDatabase;
    ids.clear();
    const auto all = referencesByRecord(*db);
    std::vector<std::uint32_t> records{m_id.slot()};
    std::unordered_set<std::uint32_t> seen{m_id.slot()};
    for (std::size_t i = 0; i < records.size(); ++i) {
        const auto found = all.find(records[i]);
        if (found == all.end())
            continue;
        ids.insert(ids.end(), found->second.begin(), found->second.end());
        if (directOnly)
            break;
        for (const VcDbObjectId id : found->second) {
            const auto* holder = db->objectAs<VcDbBlockTableRecord>(db->object(id)->ownerId());
            if (holder && !holder->isLayout() && seen.insert(holder->objectId().slot()).second)
                records.push_back(holder->objectId().slot());
        }
    }
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbBlockTableRecord::newBlockReferenceIdIterator(VcDbBlockReferenceIdIterator*& iterator) const
{
    VcDbObjectIdArray ids;
    const Vcad::ErrorStatus status = getBlockReferenceIds(ids);
    iterator = status ? nullptr : new VcDbBlockReferenceIdIterator(std::move(ids));
    return status;
}

Vcad::ErrorStatus VcDbBlockTableRecord::setOrigin(const VcGePoint3d& origin)
{
    assertWriteEnabled();
    m_origin = origin;
    return Vcad::eOk;
}

wchar_t* VcDbBlockTableRecord::pathName() const { return heapStringFromUtf8(m_path); }
wchar_t* VcDbBlockTableRecord::comments() const { return heapStringFromUtf8(m_description); }

Vcad::ErrorStatus VcDbBlockTableRecord::setPathName(const wchar_t* path)
{
    assertWriteEnabled();
    m_path = path ? wideToUtf8(path) : std::string();
    m_blockFlags = std::int16_t(m_path.empty() ? m_blockFlags & ~kXref : m_blockFlags | kXref);
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbBlockTableRecord::setComments(const wchar_t* text)
{
    if (!text)
        return Vcad::eInvalidInput;
    assertWriteEnabled();
    m_description = wideToUtf8(text);
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbBlockTableRecord::setInsertUnits(std::int16_t units)
{
    if (units < 0 || units > 24)
        return Vcad::eOutOfRange;
    assertWriteEnabled();
    m_insertUnits = units;
    m_hasNewGroups = true;
    return Vcad::eOk;
}

void VcDbBlockTableRecord::setExplodable(bool explodable)
{
    assertWriteEnabled();
    m_explodable = explodable;
    m_hasNewGroups = true;
}

bool VcDbBlockTableRecord::hasAttributeDefinitions() const
{
    const DatabaseCore* db = DatabaseCore::of(m_id);
    for (const std::uint32_t slot : *m_members)
        if (const VcDbObject* member = db->objectAt(slot);
            member && !member->isErased() && member->isKindOf(VcDbAttributeDefinition::desc()))
            return true;
    return false;
}

VcDbBlockTableRecord::XrefStatus VcDbBlockTableRecord::xrefStatus() const
{
    if (!isFromExternalReference())
        return kXrfNotAnXref;
    return m_blockFlags & kResolved ? kXrfResolved : kXrfUnresolved;
}

void VcDbBlockTableRecord::setBlockFlags(std::int16_t flags)
{
    assertWriteEnabled();
    m_blockFlags = flags;
}

void VcDbBlockTableRecord::setLayoutId(VcDbObjectId layout)
{
    assertWriteEnabled();
    m_layout = layout;
}

void VcDbBlockTableRecord::setBeginEnd(VcDbObjectId begin, VcDbObjectId end)
{
    m_begin = begin;
    m_end = end;
}

void VcDbBlockTableRecord::eraseOwned(bool erasing)
{
    DatabaseCore* db = DatabaseCore::of(m_id);
    for (const std::uint32_t slot : *m_members)
        if (VcDbObject* member = db->objectAt(slot))
            member->eraseWithOwner(erasing);
    for (const VcDbObjectId id : {m_begin, m_end})
        if (VcDbObject* end = db->object(id))
            end->eraseWithOwner(erasing);
}

void VcDbBlockTableRecord::fields(FieldVisitor& v)
{
    VcDbSymbolTableRecord::fields(v);
    v.subclass("AcDbBlockTableRecord");
    if (v.isChain()) {
        chainFields(v);
        return;
    }
    std::string name = m_name;
    v.text(2, name);
    if (v.isReading() && name != m_name)
        setNameUtf8(std::move(name));
    if (!v.isReading() && v.version() < DxfVersion::R2000)
        return;
    v.ref(340, RefKind::HardPointer, m_layout);
    std::int64_t units = m_hasNewGroups ? m_insertUnits : -1;
    v.optionalInteger(70, units, -1);
    if (v.isReading() && units >= 0) {
        m_insertUnits = std::int16_t(units);
        m_hasNewGroups = true;
    }
    if (m_hasNewGroups) {
        v.number(280, m_explodable);
        v.number(281, m_scaleUniformly);
    }
    if (v.isReading() || !m_preview.empty())
        v.binary(310, m_preview);
}

// The groups of the BLOCK entity behind its own common properties.
void VcDbBlockTableRecord::beginFields(FieldVisitor& v)
{
    v.subclass("AcDbBlockBegin");
    std::string name = m_name, second = m_name;
    v.text(2, name);
    v.number(70, m_blockFlags);
    v.point(10, m_origin);
    v.text(3, second);
    v.text(1, m_path);
    v.optionalText(4, m_description, "");
}

void VcDbBlockTableRecord::chainFields(FieldVisitor& v)
{
    std::string name = m_name;
    v.text(2, name);
    if (v.isReading() && name != m_name)
        setNameUtf8(std::move(name));
    std::int16_t flags = m_blockFlags;
    v.number(70, flags);
    if (v.isReading())
        m_blockFlags = flags;
    v.optionalText(4, m_description, "");
    v.point(10, m_origin);
    if (isFromExternalReference() || v.isReading())
        v.optionalText(1, m_path, "");
}

// Iterators

VcDbBlockTableRecordIterator::VcDbBlockTableRecordIterator(const VcDbBlockTableRecord& record, bool skipErased)
    : m_record(record.objectId())
{
    start(true, skipErased);
}

static const std::vector<std::uint32_t>& membersOf(VcDbObjectId record)
{
    static const std::vector<std::uint32_t> none;
    const DatabaseCore* db = DatabaseCore::of(record);
    const auto* block = db ? db->objectAs<VcDbBlockTableRecord>(record) : nullptr;
    return block ? block->memberSlots() : none;
}

void VcDbBlockTableRecordIterator::start(bool atBeginning, bool skipErased)
{
    m_at = atBeginning ? 0 : std::ptrdiff_t(membersOf(m_record).size()) - 1;
    skip(atBeginning ? 1 : -1, skipErased);
}

bool VcDbBlockTableRecordIterator::done() const
{
    return m_at < 0 || m_at >= std::ptrdiff_t(membersOf(m_record).size());
}

void VcDbBlockTableRecordIterator::step(bool forward, bool skipErased)
{
    m_at += forward ? 1 : -1;
    skip(forward ? 1 : -1, skipErased);
}

void VcDbBlockTableRecordIterator::skip(int direction, bool skipErased)
{
    const DatabaseCore* db = DatabaseCore::of(m_record);
    const auto& members = membersOf(m_record);
    while (skipErased && m_at >= 0 && m_at < std::ptrdiff_t(members.size()) &&
           db->objectAt(members[std::size_t(m_at)])->isErased())
        m_at += direction;
}

Vcad::ErrorStatus VcDbBlockTableRecordIterator::getEntityId(VcDbObjectId& id) const
{
    if (done())
        return Vcad::eInvalidIndex;
    id = DatabaseCore::of(m_record)->idAt(membersOf(m_record)[std::size_t(m_at)]);
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbBlockTableRecordIterator::getEntity(VcDbEntity*& entity, VcDb::OpenMode mode,
                                                          bool openErased) const
{
    VcDbObjectId id;
    entity = nullptr;
    const Vcad::ErrorStatus status = getEntityId(id);
    return status ? status : vcdbOpenObject(entity, id, mode, openErased);
}

Vcad::ErrorStatus VcDbBlockReferenceIdIterator::getBlockReferenceId(VcDbObjectId& id) const
{
    if (done())
        return Vcad::eInvalidIndex;
    id = m_ids[m_at];
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbBlockReferenceIdIterator::getBlockReference(VcDbBlockReference*& reference, VcDb::OpenMode mode,
                                                                  bool openErased) const
{
    reference = nullptr;
    return done() ? Vcad::eInvalidIndex : vcdbOpenObject(reference, m_ids[m_at], mode, openErased);
}
