// What STRETCH does to each class of objects.
#pragma once

#include "host/geom/region.h"
#include "sdk/vcdb_entity.h"

#include <algorithm>
#include <vector>

namespace vk::commands {

// Moves what lies within the regions; everything in the world.
struct Pull {
    std::vector<geom::Region> regions;
    VcGeVector3d by;

    bool holds(const VcGePoint3d& p) const
    {
        return std::any_of(regions.begin(), regions.end(), [&](const geom::Region& r) { return r.contains(p); });
    }
    VcGePoint3d operator()(const VcGePoint3d& p) const { return holds(p) ? p + by : p; }
};

void moveWhole(VcDbEntity& entity, const VcGeVector3d& by);
// The points of the object that are held go, and the rest follows as its class lets it.
void stretchObject(VcDbEntity& entity, const Pull& pull);

}  // namespace vk::commands
