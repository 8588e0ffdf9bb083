// What a block reference draws: its extents, and its members in their place.
#pragma once

#include "sdk/vcdb_insert.h"

#include <memory>
#include <unordered_map>

// A copy of an entity, with copies of its sub-entities, that is in no database. Extended data comes along; the extension
// dictionary and reactors stay with the original.
std::unique_ptr<VcDbEntity> looseCopy(const VcDbEntity& entity);

// Extents of references. The box of each block is worked out once, so deep nesting costs no more than the definitions.
// While one is at work all that are asked meanwhile, as by a dimension among the members, leave it to that one: so what is
// known is shared, and a block that holds itself by whatever way is noticed.
class BlockExtents {
public:
    // Adds what the reference draws, moved by a further matrix. Members are measured where they stand; members of nested
    // references by the box of their block, which is exact unless the nested one is turned.
    void addReference(VcDbExtents& extents, const VcDbBlockReference& reference, const VcGeMatrix3d& outer);

    static bool isAtWork();

private:
    const VcDbExtents& ofBlock(VcDbObjectId block);
    void addBlock(VcDbExtents& extents, VcDbObjectId block, const VcGeMatrix3d& m);
    void addNested(VcDbExtents& extents, const VcDbBlockReference& nested, const VcGeMatrix3d& m);
    void addMembers(VcDbExtents& extents, VcDbObjectId block, const VcGeMatrix3d& m);
    std::unordered_map<VcDbObjectId, VcDbExtents> m_boxes;  // an empty box while its block is being measured
};

Vcad::ErrorStatus explodeReference(const VcDbBlockReference& reference, std::vector<VcDbEntity*>& pieces);
