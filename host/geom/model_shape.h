// What the modeller's data of a solid, a region or a surface describes: its edges, and the faces between them.
#pragma once

#include "host/geom/curve.h"

#include <string>
#include <variant>
#include <vector>

namespace vk::geom {

class ModelRecords;

// Round surfaces, which are drawn with lines of their own. Points of a cone: base + axis h + (major cos u + minor sin u)
// times (1 + slope h); a cylinder has no slope. The face's normal points away from the axis or the
// centre unless it is inward.
struct ConeSurface {
    Point3 base;
    Vector3 axis, major, minor;
    double slope = 0;
    bool inward = false;
};

struct SphereSurface {
    Point3 center;
    double radius = 0;
    Vector3 pole, x, y;  // unit
    bool inward = false;
};

struct TorusSurface {
    Point3 center;
    double radius = 0, tube = 0;
    Vector3 axis, x, y;  // unit
    bool inward = false;
};

struct FlatSurface {
    Point3 point;
    Vector3 normal;
};

struct OtherSurface {};

using Surface = std::variant<OtherSurface, FlatSurface, ConeSurface, SphereSurface, TorusSurface>;

struct ModelFace {
    struct Side {
        std::uint32_t edge;
        bool against;  // whether the face runs along it from its end to its start
    };
    Surface surface;
    std::vector<Side> sides;  // of all loops; the face lies to the left of each, seen from outside
    VcGeMatrix3d placed;      // from the surface's coordinates to the world
    bool isWhole = true;      // false when some of its edges could not be read
};

struct ModelShape {
    std::vector<Curve> edges;  // each once, in the world
    std::vector<ModelFace> faces;
    std::size_t unread = 0;  // edges whose curve cannot be understood
    bool isEmpty() const { return edges.empty() && faces.empty(); }
};

VKHOST_API ModelShape readModelShape(const ModelRecords& records);

// Lines on round faces, held within their edges: so many about each cone, sphere and torus.
VKHOST_API std::vector<Curve> isolines(const ModelShape& shape, int count);

}  // namespace vk::geom
