#include "host/geom/conic_form.h"

#include "host/geom/arbitrary_axis.h"

#include <cmath>

namespace vk::geom {

namespace {

constexpr double kFlat = 1e-14;   // of the product of the axes
constexpr double kRound = 1e-12;  // of the radius

// What a point sees that swings along one line: from where it is lowest to where it is highest.
Segment swept(const Point3& center, const Vector3& u, const Vector3& v, Interval range)
{
    const Vector3 along = (u.lengthSqrd() >= v.lengthSqrd() ? u : v).normal();
    const double top = std::atan2(v.dotProduct(along), u.dotProduct(along));
    std::vector<double> turns{range.from, range.to};
    const double half = kTwoPi / 2;
    for (double t = top + std::ceil((range.from - top) / half) * half; t <= range.to; t += half)
        turns.push_back(t);
    const auto at = [&](double t) { return (u * std::cos(t) + v * std::sin(t)).dotProduct(along); };
    double low = at(range.from), high = low;
    for (double t : turns) {
        low = std::min(low, at(t));
        high = std::max(high, at(t));
    }
    return {center + along * low, center + along * high};
}

Interval firstTurn(Interval range)
{
    const double back = std::floor(range.from / kTwoPi) * kTwoPi;
    return {range.from - back, range.to - back};
}

bool isWholeTurn(Interval range) { return range.to - range.from >= kTwoPi * (1 - 1e-14); }

}  // namespace

Curve curveOfConic(const Point3& center, const Vector3& u, const Vector3& v, Interval range, const Vector3& up)
{
    const Vector3 cross = u.crossProduct(v);
    if (cross.length() <= kFlat * u.lengthSqrd() || cross.length() <= kFlat * v.lengthSqrd())
        return swept(center, u, v, range);
    const double turn = std::atan2(2 * u.dotProduct(v), u.lengthSqrd() - v.lengthSqrd()) / 2;
    const Vector3 major = u * std::cos(turn) + v * std::sin(turn);
    const Vector3 minor = v * std::cos(turn) - u * std::sin(turn);
    range = {range.from - turn, range.to - turn};
    Vector3 normal = cross.normal();
    if (normal.dotProduct(up) < 0) {
        normal = -normal;
        range = {-range.to, -range.from};
    }
    const double a = major.length(), b = minor.length();
    if (a - b > kRound * a) {
        const Interval held = isWholeTurn(range) ? Interval{0, kTwoPi} : firstTurn(range);
        return Ellipse{center, major, b / a, held.from, held.to, normal};
    }
    if (isWholeTurn(range))
        return Circle{center, (a + b) / 2, normal};
    const double start = angleInPlane(major, normal);
    const Interval held = firstTurn({range.from + start, range.to + start});
    return Arc{center, (a + b) / 2, held.from, held.to, normal};
}

}  // namespace vk::geom
