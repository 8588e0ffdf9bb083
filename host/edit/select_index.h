// Where the entities of one space lie, kept up to date as the drawing changes.
#pragma once

#include "host/base/api.h"
#include "host/edit/select_shape.h"

#include <memory>
#include <optional>
#include <vector>

namespace vk::edit {

class VKHOST_API SpaceIndex {
public:
    // The index of a space, brought up to date.
    static SpaceIndex& of(const DatabaseCore& db, VcDbObjectId space);
    // Entities that are not erased and may touch the area, in the order of drawing; all of them without one.
    std::vector<const VcDbEntity*> candidates(const std::optional<PlanArea>& area) const;

private:
    explicit SpaceIndex(const DatabaseCore& db, VcDbObjectId space) : m_db(&db), m_space(space) {}
    void refresh();
    const DatabaseCore* m_db;
    VcDbObjectId m_space;
    std::uint64_t m_changes = 0;
    struct Item {
        const VcDbEntity* entity;
        VcDbExtents extents;  // empty for what lies everywhere or cannot be told
    };
    std::vector<Item> m_items;
};

}  // namespace vk::edit
