#include "host/db/kept_extents.h"

#include "host/db/database.h"
#include "sdk/vcdb_layout.h"
#include "sdk/vcdb_objects.h"
#include "sdk/vcdb_records.h"
#include "sdk/vcdb_tables.h"

#include <memory>

namespace {

bool isHarmlessClass(const VcDbObject& object)
{
    for (VcRxClass* (*desc)() :
         {&VcDbLayerTableRecord::desc, &VcDbRegAppTableRecord::desc, &VcDbLinetypeTableRecord::desc,
          &VcDbViewTableRecord::desc, &VcDbViewportTableRecord::desc, &VcDbUCSTableRecord::desc, &VcDbSymbolTable::desc,
          &VcDbDictionary::desc, &VcDbXrecord::desc, &VcDbGroup::desc, &VcDbLayout::desc})
        if (object.isKindOf(desc()))
            return true;
    return false;
}

bool isHarmlessBlock(const VcDbBlockTableRecord* block)
{
    return block && (block->isLayout() || block->nameUtf8().starts_with("*D"));
}

}

bool othersHangOn(const DatabaseCore& db, const VcDbObject& object)
{
    const auto* entity = VcDbEntity::cast(&object);
    if (!entity)
        return !isHarmlessBlock(VcDbBlockTableRecord::cast(&object)) && !isHarmlessClass(object);
    while (const auto* owner = db.objectAs<VcDbEntity>(entity->ownerId()))
        entity = owner;
    return !isHarmlessBlock(db.objectAs<VcDbBlockTableRecord>(entity->ownerId()));
}

// By serial. Few drawings are open at a time, and serials are given in order. Never destroyed: drawings may close last.
static std::vector<std::unique_ptr<KeptExtents>>& allKept()
{
    static auto& all = *new std::vector<std::unique_ptr<KeptExtents>>;
    return all;
}

KeptExtents* KeptExtents::existing(std::uint32_t serial)
{
    auto& all = allKept();
    return serial < all.size() ? all[serial].get() : nullptr;
}

KeptExtents* KeptExtents::of(VcDbObjectId id)
{
    if (id.isNull() || !DatabaseCore::of(id))
        return nullptr;
    auto& all = allKept();
    if (all.size() <= id.databaseSerial())
        all.resize(id.databaseSerial() + 1);
    auto& kept = all[id.databaseSerial()];
    if (!kept)
        kept = std::make_unique<KeptExtents>();
    return kept.get();
}

void KeptExtents::forget(std::uint32_t serial)
{
    if (existing(serial))
        allKept()[serial].reset();
}

void KeptExtents::keep(std::uint32_t slot, const VcDbExtents& extents)
{
    if (m_places.size() <= slot)
        m_places.resize(std::max<std::size_t>(slot + 1, m_places.size() * 3 / 2));
    std::uint32_t& place = m_places[slot];
    if (!place && !m_free.empty()) {
        place = m_free.back();
        m_free.pop_back();
    } else if (!place) {
        m_boxes.emplace_back();
        place = std::uint32_t(m_boxes.size());
    }
    m_boxes[place - 1] = extents;
}

void KeptExtents::drop(std::uint32_t slot)
{
    if (slot < m_places.size() && m_places[slot])
        m_free.push_back(std::exchange(m_places[slot], 0));
}

void KeptExtents::changing(const DatabaseCore& db, std::uint32_t slot)
{
    const VcDbObject* object = m_boxes.empty() && m_looks.empty() ? nullptr : db.objectAt(slot);
    if (!object)
        return;
    if (othersHangOn(db, *object)) {
        *this = {};
        return;
    }
    drop(slot);
    for (auto* owner = db.objectAs<VcDbEntity>(object->ownerId()); owner;
         owner = db.objectAs<VcDbEntity>(owner->ownerId()))
        drop(owner->objectId().slot());
}
