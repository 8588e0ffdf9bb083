// Subdivision of meshes: each level parts every face from its middle to the middles of its sides and rounds the corners.
#pragma once

#include "sdk/vcdb_faces.h"

namespace vk::render {

struct FaceMesh {
    std::vector<VcGePoint3d> vertices;
    std::vector<std::vector<std::uint32_t>> faces;
};

// As it is smoothed as often as it says, or less where that would make more faces than can be told apart.
FaceMesh smoothed(const VcDbSubDMesh& mesh);

}  // namespace vk::render
