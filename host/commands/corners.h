// What FILLET and CHAMFER share: two picked sides, polylines among them, and what a corner makes of them.
#pragma once

#include "host/commands/curve_edits.h"
#include "host/geom/corner.h"

#include <functional>

namespace vk::commands {

// A side of a corner: a curve, or the segment of a polyline that was picked.
struct CornerPick {
    CurvePick pick;
    geom::CornerSide side;
    std::optional<std::size_t> segment;  // of a polyline
};

CornerPick cornerPick(const CurvePick& pick);

struct CornerMaker {
    std::function<geom::CornerResult(const geom::CornerSide&, const geom::CornerSide&)> corner;
    // The corner at a vertex of one polyline; the flag says that the first pick is on the segment that begins there.
    std::function<std::optional<geom::Polyline>(const geom::Polyline&, std::size_t vertex, bool swapped)> atVertex;
    bool trims = true;
};

// False, with the reason told and nothing changed, when there can be no such corner. One step of the edits.
bool makeCorner(edit::Editor& ed, CurveEdits& edits, const CornerPick& a, const CornerPick& b,
                const CornerMaker& maker);

const geom::Polyline* polylineOf(const CurvePick& pick);

}  // namespace vk::commands
