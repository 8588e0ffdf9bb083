// Object snaps: the points of objects that are meant by a pick near them.
#pragma once

#include "host/base/api.h"
#include "host/geom/curve.h"
#include "sdk/vcdb_object.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vk::edit {

class Editor;

// As OSMODE counts them.
enum SnapMode : int {
    kSnapEnd = 1,
    kSnapMiddle = 2,
    kSnapCenter = 4,
    kSnapNode = 8,
    kSnapQuadrant = 16,
    kSnapIntersection = 32,
    kSnapInsertion = 64,
    kSnapPerpendicular = 128,
    kSnapTangent = 256,
    kSnapNearest = 512,
    kSnapGeometricCenter = 1024,
    kSnapApparent = 2048,
    kSnapExtension = 4096,
    kSnapParallel = 8192,
};

// In a question's bits: the command takes a curve that is to be touched for a point that is not known yet. The answer then
// has the entity, where it was picked, and as its integer the mode, tangent or perpendicular.
constexpr int kTakesTangent = 1 << 20;

// Names joined by commas, each of at least three letters, with or without an underscore. NONE gives no mode at all; QUICK
// says nothing of its own. Nothing for any other text.
VKHOST_API std::optional<int> parseSnapModes(std::string_view text);
// "endpoint or midpoint".
VKHOST_API std::string snapNames(int modes);

// A curve near a pick, in the world.
struct SnapCurve {
    VcDbObjectId entity;  // the one that stands in the drawing
    geom::Curve curve;
    double param = 0;  // of the place on it nearest to the pick
};

// What lies within the aperture of a pick, blocks looked into.
struct SnapScene {
    std::vector<SnapCurve> curves;  // the nearest first
    std::vector<VcGePoint3d> nodes, insertions;
};
VKHOST_API SnapScene snapScene(Editor& editor, const VcGePoint3d& world);

// The point of those that the modes allow that is seen nearest to the pick. Points are in the world; `from` is where a
// perpendicular or a tangent comes from. Extension and parallel need more than one pick and are not among them.
VKHOST_API std::optional<VcGePoint3d> snapTo(Editor& editor, int modes, const VcGePoint3d& world,
                                             const std::optional<VcGePoint3d>& from);

// The curve that goes on beyond the ends of the piece picked: of a polyline the side, of an arc the circle.
VKHOST_API geom::Curve pieceAt(const geom::Curve& curve, double param);

}  // namespace vk::edit
