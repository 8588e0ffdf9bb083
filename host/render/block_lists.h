// The display list of each block, made when the block is first used.
#pragma once

#include "host/render/list_builder.h"

#include <memory>
#include <unordered_map>

namespace vk::render {

class VKHOST_API BlockLists {
public:
    BlockLists(const DatabaseCore& db, Omissions& omissions) : m_db(db), m_omissions(omissions) {}

    struct BlockList {
        DisplayList list;
        geom::Box3d bounds;      // with the blocks that it uses
        bool unbounded = false;  // holds what has no box of its own
        bool drawing = false;    // set while it is painted: a block inside itself is not drawn again
    };
    // Null for what is no block.
    BlockList* find(VcDbObjectId block);

private:
    void build(BlockList& to, VcDbObjectId block);
    void addUse(BlockList& to, const BlockUse& use);

    const DatabaseCore& m_db;
    Omissions& m_omissions;
    std::unordered_map<VcDbObjectId, std::unique_ptr<BlockList>> m_lists;
};

// The live entities of a block in the order of drawing.
VKHOST_API std::vector<const VcDbEntity*> drawOrder(const DatabaseCore& db, VcDbObjectId block);

VKHOST_API geom::Box3d movedBox(const geom::Box3d& box, const VcGeMatrix3d& m);

}  // namespace vk::render
