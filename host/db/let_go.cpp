#include "host/db/let_go.h"

#include "host/db/database.h"
#include "sdk/vcdb_entity.h"
#include "sdk/vcdb_objects.h"
#include "sdk/vcdb_tables.h"

namespace {

constexpr int kDeepest = 64;  // owners above an object, should they go round

// Entities and records are listed by what holds them.
bool needsOwner(const DatabaseCore& db, const VcDbObject& object)
{
    return !object.isErased() && !object.isKindOf(VcDbEntity::desc()) && !object.isKindOf(VcDbSymbolTable::desc()) &&
           !object.isKindOf(VcDbSymbolTableRecord::desc()) && object.objectId() != db.rootDictionary();
}

}

LetGo::LetGo(const DatabaseCore& db, Members members)
{
    gatherOwnerless(db);
    if (!isEmpty())
        spareListed(db);
    if (members == Members::OwnAndReferences)
        addMembersOfReferences(db);
    if (!isEmpty())
        addOwned(db);
}

bool LetGo::contains(const VcDbObject& object) const
{
    return !isEmpty() && m_slots.contains(object.objectId().slot());
}

void LetGo::gatherOwnerless(const DatabaseCore& db)
{
    for (std::uint32_t slot = 1; slot < db.slotCount(); ++slot)
        if (const VcDbObject* object = db.objectAt(slot);
            object && object->ownerId().isNull() && needsOwner(db, *object))
            m_slots.insert(slot);
}

// Some files list objects that do not say who owns them.
void LetGo::spareListed(const DatabaseCore& db)
{
    for (std::uint32_t slot = 1; slot < db.slotCount(); ++slot) {
        const auto* dictionary = VcDbDictionary::cast(db.objectAt(slot));
        if (!dictionary || dictionary->isErased())
            continue;
        for (const auto& [name, id] : dictionary->liveEntries())
            m_slots.erase(id.slot());
    }
}

void LetGo::addMembersOfReferences(const DatabaseCore& db)
{
    for (const std::uint32_t reference : db.loadedReferences) {
        const auto* block = VcDbBlockTableRecord::cast(db.objectAt(reference));
        if (!block)
            continue;
        for (const std::uint32_t slot : block->memberSlots()) {
            m_slots.insert(slot);
            const auto* member = VcDbEntity::cast(db.objectAt(slot));
            if (const auto* subs = member ? member->subEntities() : nullptr)
                for (const VcDbObjectId sub : *subs)
                    m_slots.insert(sub.slot());
        }
    }
}

void LetGo::addOwned(const DatabaseCore& db)
{
    const std::unordered_set<std::uint32_t> tops = m_slots;
    for (std::uint32_t slot = 1; slot < db.slotCount(); ++slot) {
        const VcDbObject* object = db.objectAt(slot);
        if (!object || !needsOwner(db, *object))
            continue;
        const VcDbObject* owner = db.object(object->ownerId());
        for (int depth = 0; owner && depth < kDeepest && !tops.contains(owner->objectId().slot()); ++depth)
            owner = db.object(owner->ownerId());
        if (owner && tops.contains(owner->objectId().slot()))
            m_slots.insert(slot);
    }
}
