#include "host/db/database.h"
#include "sdk/vcdb_entity.h"
#include "sdk/vcdb_objects.h"
#include "sdk/vcdb_tables.h"

#include <unordered_set>

VCDB_DEFINE(VcDbSortentsTable, VcDbObject, "SORTENTSTABLE")

void VcDbSortentsTable::setBlockId(VcDbObjectId block)
{
    assertWriteEnabled();
    m_block = block;
}

const VcDbBlockTableRecord* VcDbSortentsTable::block() const
{
    const DatabaseCore* db = DatabaseCore::of(m_block);
    return db ? db->liveAs<VcDbBlockTableRecord>(m_block) : nullptr;
}

VcDbHandle VcDbSortentsTable::getSortHandle(VcDbObjectId entity) const
{
    for (const Place& place : m_places)
        if (place.entity == entity)
            return place.sortHandle.handle();
    return entity.handle();
}

Vcad::ErrorStatus VcDbSortentsTable::getFullDrawOrder(VcDbObjectIdArray& ids) const
{
    const VcDbBlockTableRecord* record = block();
    if (!record)
        return Vcad::eNullObjectId;
    const DatabaseCore& db = *DatabaseCore::of(m_block);
    std::unordered_map<VcDbObjectId, std::uint64_t> sortHandles;
    for (const Place& place : m_places)
        sortHandles[place.entity] = db.handleOf(place.sortHandle);

    std::vector<std::pair<std::uint64_t, VcDbObjectId>> order;
    for (const std::uint32_t slot : record->memberSlots()) {
        const VcDbObject* member = db.objectAt(slot);
        if (!member || member->isErased())
            continue;
        const auto moved = sortHandles.find(member->objectId());
        order.emplace_back(moved == sortHandles.end() ? db.handleOf(member->objectId()) : moved->second,
                           member->objectId());
    }
    std::stable_sort(order.begin(), order.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
    ids.clear();
    for (const auto& [handle, id] : order)
        ids.push_back(id);
    return Vcad::eOk;
}

// The n-th entity is drawn at the n-th lowest handle of them all; those that stand at their own need no entry.
void VcDbSortentsTable::setFullDrawOrder(const VcDbObjectIdArray& ids)
{
    VcDbObjectIdArray byHandle = ids;
    const DatabaseCore& db = *DatabaseCore::of(m_block);
    std::sort(byHandle.begin(), byHandle.end(),
              [&](VcDbObjectId a, VcDbObjectId b) { return db.handleOf(a) < db.handleOf(b); });
    assertWriteEnabled();
    m_places.clear();
    for (std::size_t i = 0; i < ids.size(); ++i)
        if (ids[i] != byHandle[i])
            m_places.push_back({ids[i], byHandle[i]});
}

Vcad::ErrorStatus VcDbSortentsTable::move(const VcDbObjectIdArray& ids, VcDbObjectId target, Side side)
{
    VcDbObjectIdArray order;
    if (const Vcad::ErrorStatus status = getFullDrawOrder(order))
        return status;
    const std::unordered_set<VcDbObjectId> moving(ids.begin(), ids.end());
    VcDbObjectIdArray moved, kept;
    for (const VcDbObjectId id : order)
        (moving.contains(id) ? moved : kept).push_back(id);
    if (moved.size() != moving.size())
        return Vcad::eInvalidInput;

    auto at = side == Side::Bottom ? kept.begin() : kept.end();
    if (side == Side::Below || side == Side::Above) {
        at = std::find(kept.begin(), kept.end(), target);
        if (at == kept.end())
            return Vcad::eInvalidInput;
        at += side == Side::Above;
    }
    kept.insert(at, moved.begin(), moved.end());
    setFullDrawOrder(kept);
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbSortentsTable::moveToBottom(const VcDbObjectIdArray& ids) { return move(ids, {}, Side::Bottom); }
Vcad::ErrorStatus VcDbSortentsTable::moveToTop(const VcDbObjectIdArray& ids) { return move(ids, {}, Side::Top); }

Vcad::ErrorStatus VcDbSortentsTable::moveBelow(const VcDbObjectIdArray& ids, VcDbObjectId target)
{
    return move(ids, target, Side::Below);
}

Vcad::ErrorStatus VcDbSortentsTable::moveAbove(const VcDbObjectIdArray& ids, VcDbObjectId target)
{
    return move(ids, target, Side::Above);
}

// Group 5 is the sort handle of the entity before it.
void VcDbSortentsTable::fields(FieldVisitor& v)
{
    VcDbObject::fields(v);
    v.subclass("AcDbSortentsTable");
    v.ref(330, RefKind::SoftPointer, m_block);
    v.repeated(331, m_places, [&](Place& place) {
        v.ref(331, RefKind::SoftPointer, place.entity);
        v.ref(5, RefKind::SoftPointer, place.sortHandle);
    });
}
