// Lines and conics among themselves, in closed form or by the zeros of trigonometric polynomials.
#include "host/geom/meet.h"
#include "host/geom/trig_roots.h"

#include <cmath>

namespace vk::geom {

namespace {

double spanLength(const LinePiece& line) { return line.vector.length() * (line.range.to - line.range.from); }

double paramOn(const LinePiece& line, const Point3& p)
{
    return (p - line.base).dotProduct(line.vector) / line.vector.lengthSqrd();
}

double distanceFromLine(const LinePiece& line, const Point3& p)
{
    return (p - line.base).crossProduct(line.vector).length() / line.vector.length();
}

// The range of b in a's parameters; infinite ends stay infinite.
Interval projectedRange(const LinePiece& a, const LinePiece& b)
{
    const auto project = [&](double t) {
        const double way = b.vector.dotProduct(a.vector);
        return std::isfinite(t) ? paramOn(a, b.base + b.vector * t) : std::copysign(1.0, t) * way * Box3d::kInfinite;
    };
    const double p = project(b.range.from), q = project(b.range.to);
    return {std::min(p, q), std::max(p, q)};
}

double otherParam(const LinePiece& a, const LinePiece& b, double t)
{
    const double way = b.vector.dotProduct(a.vector) > 0 ? 1 : -1;
    return std::isfinite(t) ? paramOn(b, a.base + a.vector * t) : t * way;
}

bool isNearLine(const LinePiece& line, const Point3& p, double tolerance)
{
    return distanceFromLine(line, p) <= tolerance;
}

// The points that both lines were given by lie on the other: the only sign that endless lines are one.
bool runTogether(const LinePiece& a, const LinePiece& b, double tolerance)
{
    return isNearLine(b, a.base, tolerance) && isNearLine(b, a.base + a.vector, tolerance) &&
           isNearLine(a, b.base, tolerance) && isNearLine(a, b.base + b.vector, tolerance);
}

// What two lines share that are nearly parallel.
std::optional<SharedStretch> commonStretch(const LinePiece& a, const LinePiece& b, double tolerance)
{
    const Interval other = projectedRange(a, b);
    const Interval common{std::max(a.range.from, other.from), std::min(a.range.to, other.to)};
    const double commonLength = (common.to - common.from) * a.vector.length();
    if (commonLength <= tolerance)
        return std::nullopt;  // at most their ends meet
    for (double t : {common.from, common.to})
        if (std::isfinite(t) && !isNearLine(b, a.base + a.vector * t, tolerance))
            return std::nullopt;
    if (!std::isfinite(commonLength) && !runTogether(a, b, tolerance))
        return std::nullopt;
    return SharedStretch{common, {otherParam(a, b, common.from), otherParam(a, b, common.to)}};
}

struct ConicFrame {
    double a, b;
    Vector3 x, y, z;
    Point3 center;

    explicit ConicFrame(const ConicPiece& c)
        : a(c.u.length()), b(c.v.length()), x(c.u / a), y(c.v / b), z(c.normal()), center(c.center)
    {
    }
    // Where the conic is the unit circle.
    Vector2 unit(const Vector3& v) const { return {v.dotProduct(x) / a, v.dotProduct(y) / b}; }
};

bool isFlat(const ConicPiece& c) { return !(c.v.length() > 1e-12 * c.u.length()); }

// How far the conic's plane is left by what stays within `reach` of `near`.
double departure(const ConicFrame& frame, const Point3& near, const Vector3& direction, double reach)
{
    return std::fabs((near - frame.center).dotProduct(frame.z)) + std::fabs(direction.dotProduct(frame.z)) * reach;
}

// In the frame where the conic is the unit circle: the foot of the line and its height over the center.
std::vector<Touch> meetInPlane(const LinePiece& line, const ConicFrame& frame, double tolerance)
{
    const Vector2 start = frame.unit(line.base - frame.center), step = frame.unit(line.vector);
    const double foot = -start.dotProduct(step) / step.lengthSqrd();
    const Vector2 normal = step.perpVector().normal();
    const double height = std::fabs(start.dotProduct(normal));
    const double perUnit = std::hypot(normal.x / frame.a, normal.y / frame.b);
    const auto at = [&](double t, bool tangent) {
        const Vector2 p = start + step * t;
        return Touch{t, p.angle(), tangent};
    };
    if (std::fabs(height - 1) <= tolerance * perUnit)
        return {at(foot, true)};
    if (height > 1)
        return {};
    const double half = std::sqrt((1 - height) * (1 + height)) / step.length();
    return {at(foot - half, false), at(foot + half, false)};
}

LinePiece commonLine(const ConicFrame& a, const ConicFrame& b)
{
    const Vector3 direction = a.z.crossProduct(b.z).normal();
    const Vector3 inA = direction.crossProduct(a.z);
    const double step = (b.center - a.center).dotProduct(b.z) / inA.dotProduct(b.z);
    return {a.center + inA * step, direction, {-Box3d::kInfinite, Box3d::kInfinite}};
}

// Where a meets the plane of b and lies on b there.
void meetThroughPlane(const ConicPiece& a, const ConicPiece& b, const LinePiece& line, bool swapped, double tolerance,
                      std::vector<Touch>& found)
{
    for (const Touch& touch : meetInPlane(line, ConicFrame(a), tolerance)) {
        const Nearest n = nearest(b, place(a, touch.b));
        if (n.distance <= tolerance)
            found.push_back(swapped ? Touch{n.t, touch.b, touch.tangent} : Touch{touch.b, n.t, touch.tangent});
    }
}

std::vector<Touch> meetConicsInPlane(const ConicPiece& a, const ConicPiece& b, double tolerance)
{
    const ConicFrame frame(a);
    const Vector2 c = frame.unit(b.center - a.center), u = frame.unit(b.u), v = frame.unit(b.v);
    const TrigPolynomial f{c.lengthSqrd() - 1 + (u.lengthSqrd() + v.lengthSqrd()) / 2, 2 * c.dotProduct(u),
                           2 * c.dotProduct(v), (u.lengthSqrd() - v.lengthSqrd()) / 2, u.dotProduct(v)};
    ConicPiece whole = a;
    whole.range = {0, kTwoPi};
    const auto touches = [&](double t) { return nearest(whole, place(b, t)).distance <= tolerance; };
    std::vector<Touch> found;
    for (double t : zeros(f, touches))
        found.push_back(
            {nearest(whole, place(b, t)).t, t, touches(t) && std::fabs(f.derivative()(t)) < 1e-5 * f.largest()});
    return found;
}

}  // namespace

PieceMeeting meetLines(const LinePiece& a, const LinePiece& b, double tolerance)
{
    constexpr double kSlight = 1e-3, kParallel = 1e-13;
    const Vector3 da = a.vector.normal(), db = b.vector.normal(), cross = da.crossProduct(db);
    const double sine = cross.length(), shorter = std::min(spanLength(a), spanLength(b));
    const bool alongside =
        std::isfinite(shorter) ? sine * shorter <= tolerance : sine <= kSlight && runTogether(a, b, tolerance);
    if (sine <= kParallel || alongside) {
        const auto shared = commonStretch(a, b, tolerance);
        return shared ? PieceMeeting{{}, {*shared}} : PieceMeeting{};
    }
    const Vector3 arm = b.base - a.base, axis = cross / sine;
    if (std::fabs(arm.dotProduct(axis)) > tolerance)
        return {};
    const double t = arm.crossProduct(db).dotProduct(axis) / sine / a.vector.length();
    const double u = arm.crossProduct(da).dotProduct(axis) / sine / b.vector.length();
    return {{{t, u}}, {}};
}

std::vector<Touch> meetLineConic(const LinePiece& line, const ConicPiece& conic, double tolerance)
{
    if (isFlat(conic))
        return meetBySubdivision(line, conic, tolerance);
    const ConicFrame frame(conic);
    const Vector3 direction = line.vector.normal();
    const Point3 near = line.base + direction * (conic.center - line.base).dotProduct(direction);
    if (near.distanceTo(conic.center) > frame.a + tolerance)
        return {};
    if (departure(frame, near, direction, frame.a) <= tolerance) {
        LinePiece centered = line;
        centered.base = near;
        auto found = meetInPlane(centered, frame, tolerance);
        for (Touch& touch : found)
            touch.a += paramOn(line, near);
        return found;
    }
    const double slope = direction.dotProduct(frame.z);
    const double along = (conic.center - near).dotProduct(frame.z) / slope;
    if (slope == 0 || !(std::fabs(along) <= frame.a + tolerance))
        return {};
    const Point3 through = near + direction * along;
    const Nearest n = nearest(conic, through);
    return n.distance <= tolerance ? std::vector<Touch>{{paramOn(line, through), n.t}} : std::vector<Touch>{};
}

std::vector<Touch> meetConics(const ConicPiece& a, const ConicPiece& b, double tolerance)
{
    if (isFlat(a) || isFlat(b))
        return meetBySubdivision(a, b, tolerance);
    const ConicFrame fa(a), fb(b);
    if (a.center.distanceTo(b.center) > fa.a + fb.a + tolerance)
        return {};
    const double tilt = std::hypot(b.u.dotProduct(fa.z), b.v.dotProduct(fa.z));
    if (std::fabs((b.center - a.center).dotProduct(fa.z)) + tilt <= tolerance) {
        // The implicit form is the better the rounder the conic.
        if (fa.b >= fb.b)
            return meetConicsInPlane(a, b, tolerance);
        auto found = meetConicsInPlane(b, a, tolerance);
        for (Touch& touch : found)
            std::swap(touch.a, touch.b);
        return found;
    }
    if (fa.z.crossProduct(fb.z).length() < 1e-14)
        return {};
    std::vector<Touch> found;
    const LinePiece line = commonLine(fa, fb);
    meetThroughPlane(a, b, line, false, tolerance, found);
    meetThroughPlane(b, a, line, true, tolerance, found);
    return found;
}

}  // namespace vk::geom
