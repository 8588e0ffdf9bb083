#include "host/db/dim_block_users.h"

#include "host/db/database.h"
#include "host/db/record_names.h"
#include "sdk/vcdb_dims.h"
#include "sdk/vcdb_tables.h"

namespace vk::dim {

BlockUsers& BlockUsers::of(const DatabaseCore& db)
{
    static std::unordered_map<std::uint32_t, BlockUsers> all;
    const auto found = all.find(db.serial());
    if (found == all.end())
        std::erase_if(all, [](const auto& entry) { return !DatabaseCore::bySerial(entry.first); });
    BlockUsers& users = found == all.end() ? all[db.serial()] : found->second;
    users.update(db);
    return users;
}

int BlockUsers::count(VcDbObjectId block) const
{
    const auto found = m_counts.find(block.slot());
    return found == m_counts.end() ? 0 : found->second;
}

void BlockUsers::update(const DatabaseCore& db)
{
    const auto changes = m_begun ? db.changedSince(m_seen) : std::nullopt;
    if (changes) {
        for (const std::uint32_t slot : *changes)
            look(db, slot);
    } else {
        m_blockOf.clear();
        m_counts.clear();
        for (std::uint32_t slot = 1; slot < db.slotCount(); ++slot)
            look(db, slot);
    }
    m_begun = true;
    m_seen = db.changeCount();
}

void BlockUsers::look(const DatabaseCore& db, std::uint32_t slot)
{
    const auto* dimension = slot ? VcDbDimension::cast(db.objectAt(slot)) : nullptr;
    if (!dimension)
        return;
    forget(slot);
    const VcDbObjectId block = dimension->isErased() ? VcDbObjectId() : dimension->dimBlockId();
    if (block.isNull())
        return;
    m_blockOf[slot] = block.slot();
    ++m_counts[block.slot()];
}

void BlockUsers::forget(std::uint32_t slot)
{
    const auto found = m_blockOf.find(slot);
    if (found == m_blockOf.end())
        return;
    if (const auto count = m_counts.find(found->second); --count->second == 0)
        m_counts.erase(count);
    m_blockOf.erase(found);
}

std::unordered_set<std::uint32_t> abandonedBlocks(const DatabaseCore& db)
{
    std::unordered_set<std::uint32_t> blocks;
    for (std::uint32_t slot = 1; slot < db.slotCount(); ++slot) {
        const VcDbObject* object = db.objectAt(slot);
        const auto* dimension = object && object->isErased() ? VcDbDimension::cast(object) : nullptr;
        const auto* block = dimension ? db.liveAs<VcDbBlockTableRecord>(dimension->dimBlockId()) : nullptr;
        if (block && block->nameUtf8().starts_with("*D") && block->extensionDictionary().isNull())
            blocks.insert(block->objectId().slot());
    }
    if (blocks.empty())
        return blocks;
    const std::vector<bool> referred = referredSlots(db);
    std::erase_if(blocks, [&](std::uint32_t slot) { return referred[slot]; });
    return blocks;
}

}  // namespace vk::dim
