// What cutting and stretching to edges makes of a curve.
#pragma once

#include "host/geom/curve.h"

namespace vk::geom {

enum class TrimFailure {
    None,
    NoCut,       // no edge cuts the curve within its ends
    OnlyOneCut,  // a closed curve needs two
    NoEdge,      // nothing lies in the direction in which it would go on
    Closed,      // has no end that could go on
};

struct Trimmed {
    std::vector<Curve> kept;  // in the order of the curve
    TrimFailure failure = TrimFailure::None;
};

// Cuts away the part around a parameter, up to the nearest cuts on either side or to the end. Cuts that lie at an end, or
// closer to each other than the tolerance, count as none or one.
VKHOST_API Trimmed trimmedAround(const Curve& curve, std::vector<double> cuts, double at, double tolerance);

// Lets the end nearer to a parameter go on, or come back, to the first of the places beyond it.
VKHOST_API Trimmed extendedTowards(const Curve& curve, const std::vector<double>& places, double at, double tolerance);

}  // namespace vk::geom
