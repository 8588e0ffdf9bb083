// Points, distances and angles. Angles are radians, anticlockwise from the X axis.

#include "host/lisp/arguments.h"
#include "host/lisp/interpreter.h"
#include "host/lisp/library.h"

#include "vcge.h"

#include <cmath>
#include <numbers>

namespace vk::lisp {

namespace {

VcGePoint3d toPoint(const Point& point, bool isFlat) { return {point.x, point.y, isFlat ? 0.0 : point.z}; }

Value angle(Interpreter&, Args args)
{
    const Point from = asPoint(args[0]);
    const Point to = asPoint(args[1]);
    const double turn = std::atan2(to.y - from.y, to.x - from.x);
    return Value::real(turn < 0 ? turn + 2 * std::numbers::pi : turn);
}

Value distance(Interpreter&, Args args)
{
    const Point a = asPoint(args[0]);
    const Point b = asPoint(args[1]);
    const bool isFlat = a.isFlat || b.isFlat;
    return Value::real(toPoint(a, isFlat).distanceTo(toPoint(b, isFlat)));
}

Value polar(Interpreter&, Args args)
{
    const Point from = asPoint(args[0]);
    const double turn = asNumber(args[1]);
    const double reach = asNumber(args[2]);
    const double x = from.x + reach * std::cos(turn);
    const double y = from.y + reach * std::sin(turn);
    return from.isFlat ? pointValue(x, y) : pointValue(x, y, from.z);
}

struct Segment {
    VcGePoint3d from;
    VcGeVector3d along;
};

// Where two lines cross; none of parallel lines and of lines that pass each other in space.
std::optional<VcGePoint3d> crossing(const Segment& a, const Segment& b, bool withinBoth)
{
    constexpr double kTolerance = 1e-10;
    const VcGeVector3d normal = a.along.crossProduct(b.along);
    const double sine = normal.length();
    if (sine <= kTolerance * a.along.length() * b.along.length())
        return std::nullopt;
    const VcGeVector3d gap = b.from - a.from;
    if (std::fabs(gap.dotProduct(normal)) > kTolerance * sine * std::max(1.0, gap.length()))
        return std::nullopt;
    const double atA = gap.crossProduct(b.along).dotProduct(normal) / (sine * sine);
    const double atB = gap.crossProduct(a.along).dotProduct(normal) / (sine * sine);
    const auto isWithin = [](double at) { return at >= -kTolerance && at <= 1 + kTolerance; };
    if (withinBoth && !(isWithin(atA) && isWithin(atB)))
        return std::nullopt;
    return a.from + a.along * atA;
}

Value intersection(Interpreter&, Args args)
{
    Point points[4];
    bool isFlat = false;
    for (std::size_t i = 0; i < 4; ++i) {
        points[i] = asPoint(args[i]);
        isFlat = isFlat || points[i].isFlat;
    }
    const auto segment = [&](std::size_t i) {
        const VcGePoint3d from = toPoint(points[i], isFlat);
        return Segment{from, toPoint(points[i + 1], isFlat) - from};
    };
    const bool withinBoth = args.size() < 5 || args[4];
    const auto found = crossing(segment(0), segment(2), withinBoth);
    if (!found)
        return Value();
    return isFlat ? pointValue(found->x, found->y) : pointValue(found->x, found->y, found->z);
}

constexpr Builtin kGeometry[] = {
    {"ANGLE", angle, 2, 2},
    {"DISTANCE", distance, 2, 2},
    {"POLAR", polar, 3, 3},
    {"INTERS", intersection, 4, 5},
};

}  // namespace

void defineGeometry(Interpreter& lisp) { lisp.define(kGeometry); }

}  // namespace vk::lisp
