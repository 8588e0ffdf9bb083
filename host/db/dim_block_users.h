// Which block each dimension of a drawing has, kept true by the drawing's log of changes: telling whether a block is shared
// costs no walk over the drawing.
#pragma once

#include "host/base/api.h"
#include "sdk/vcdb_object.h"

#include <cstdint>
#include <unordered_map>
#include <unordered_set>

class DatabaseCore;

namespace vk::dim {

class BlockUsers {
public:
    // Those of a drawing, brought up to date.
    static BlockUsers& of(const DatabaseCore& db);
    int count(VcDbObjectId block) const;
    // A number that may be free for the next block.
    std::uint64_t nextNumber = 1;

private:
    void update(const DatabaseCore& db);
    void look(const DatabaseCore& db, std::uint32_t slot);
    void forget(std::uint32_t slot);

    std::unordered_map<std::uint32_t, std::uint32_t> m_blockOf;  // by the dimension's slot
    std::unordered_map<std::uint32_t, int> m_counts;             // by the block's slot
    std::uint64_t m_seen = 0;
    bool m_begun = false;
};

// The anonymous blocks of dimensions that were erased since the drawing was read, where nothing else refers to them. They
// stay in the drawing, so that the dimensions can come back, and are left out of a file. What a file brought along that
// nothing refers to is not among them.
VKHOST_API std::unordered_set<std::uint32_t> abandonedBlocks(const DatabaseCore& db);

}  // namespace vk::dim
