#pragma once

#include "host/db/database.h"
#include "sdk/vcdb_entity.h"
#include "sdk/vcdb_tables.h"

// The live entities of a block or space, in the order of drawing. They may be erased and others appended meanwhile.
template <class Each>
void forEachMember(const DatabaseCore& db, const VcDbBlockTableRecord& block, Each&& each)
{
    const std::vector<std::uint32_t> slots = block.memberSlots();
    for (const std::uint32_t slot : slots)
        if (auto* member = VcDbEntity::cast(db.objectAt(slot)); member && !member->isErased())
            each(*member);
}
