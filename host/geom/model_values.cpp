#include "host/geom/model_values.h"

#include "host/geom/arbitrary_axis.h"
#include "host/geom/curve_edit.h"

#include <algorithm>
#include <cmath>

namespace vk::geom {

namespace {

using Tokens = std::span<const ModelToken>;

// Takes values one after the other; what does not fit makes it fail for good.
class Values {
public:
    explicit Values(Tokens tokens) : m_tokens(tokens) {}

    double number()
    {
        if (m_at >= m_tokens.size() || m_tokens[m_at].kind != ModelToken::Number) {
            m_failed = true;
            return 0;
        }
        return m_tokens[m_at++].value;
    }
    Vector3 vector()
    {
        const double x = number(), y = number(), z = number();
        return {x, y, z};
    }
    Point3 point() { return Point3() + vector(); }

    // "I" or "F 2.5": no bound, or one with its value.
    void bound()
    {
        const ModelToken* token = m_at < m_tokens.size() ? &m_tokens[m_at] : nullptr;
        if (!token || (token->kind != ModelToken::Truth && token->bytes != "I" && token->bytes != "F"))
            return;
        const bool isBounded = token->kind == ModelToken::Truth ? token->value != 0 : token->bytes == "F";
        m_at += isBounded ? 2 : 1;
    }
    const ModelToken* next() { return m_at < m_tokens.size() ? &m_tokens[m_at++] : nullptr; }
    bool failed() const { return m_failed; }

private:
    Tokens m_tokens;
    std::size_t m_at = 0;
    bool m_failed = false;
};

bool isLong(const Vector3& v) { return v.length() > 1e-100; }

}  // namespace

Tokens ownTokens(const ModelRecords& records, const ModelRecord& record)
{
    Tokens tokens = records.tokens(record);
    std::size_t skip = 0;
    const auto isAt = [&](std::size_t i, ModelToken::Kind kind) { return i < tokens.size() && tokens[i].kind == kind; };
    for (;; ++skip)
        if (isAt(skip, ModelToken::Number) && isAt(skip + 1, ModelToken::Pointer))
            ++skip;
        else if (!isAt(skip, ModelToken::Pointer))
            break;
    return tokens.subspan(skip);
}

bool isReversed(const ModelToken& token)
{
    return token.kind == ModelToken::Word ? token.bytes.starts_with("reverse") : token.value != 0;
}

// Nine numbers of the rows, three of the place, the scale; from 7.0 on a number of the record stands ahead of them, before
// 2.0 what follows are numbers too.
Tokens transformNumbers(const ModelRecords& records, const ModelRecord& record)
{
    constexpr std::size_t kCount = 13;
    const Tokens tokens = ownTokens(records, record);
    std::size_t run = 0;
    while (run < tokens.size() && tokens[run].kind == ModelToken::Number)
        ++run;
    if (run < kCount)
        return {};
    return tokens.subspan(records.version() >= 700 ? run - kCount : 0, kCount);
}

std::optional<VcGeMatrix3d> modelTransform(const ModelRecords& records, const ModelRecord& record)
{
    Values values(transformNumbers(records, record));
    VcGeMatrix3d m;
    const Vector3 x = values.vector(), y = values.vector(), z = values.vector(), at = values.vector();
    const double scale = values.number();
    if (values.failed() || scale == 0)
        return std::nullopt;
    m.setCoordSystem(Point3() + at, x * scale, y * scale, z * scale);
    return m.isSingular() ? std::nullopt : std::optional(m);
}

namespace {

std::optional<EdgeCurve> straight(Tokens tokens, const EdgeEnds& ends)
{
    if (ends.start && ends.end)
        return EdgeCurve{Segment{*ends.start, *ends.end}};
    Values values(tokens);
    const Point3 root = values.point();
    const Vector3 along = values.vector() * (ends.isReversed ? -1 : 1);
    if (values.failed() || !ends.params)
        return std::nullopt;
    return EdgeCurve{Segment{root + along * ends.params->from, root + along * ends.params->to}};
}

double paramOn(const Ellipse& e, const Point3& p)
{
    const Vector3 minor = e.normal.crossProduct(e.major) * e.ratio, d = p - e.center;
    return std::atan2(d.dotProduct(minor) / minor.lengthSqrd(), d.dotProduct(e.major) / e.major.lengthSqrd());
}

// The part between both ends in the curve's own direction; all of it where they are one, or none.
void cut(Ellipse& e, const EdgeEnds& ends)
{
    if (ends.start && ends.end && !ends.start->isEqualTo(*ends.end, VcGeTol{1e-9 * (1 + e.major.length()), 1e-9})) {
        e.start = paramOn(e, ends.isReversed ? *ends.end : *ends.start);
        e.end = paramOn(e, ends.isReversed ? *ends.start : *ends.end);
    } else if (ends.start) {
        e.start = e.end = paramOn(e, *ends.start);
    } else if (ends.params) {
        e.start = ends.isReversed ? -ends.params->to : ends.params->from;
        e.end = ends.isReversed ? -ends.params->from : ends.params->to;
    }
    if (e.end <= e.start + 1e-12)
        e.end = e.start + kTwoPi;
}

Curve asRoundAsItIs(const Ellipse& e)
{
    if (std::fabs(e.ratio - 1) > 1e-9)
        return e;
    const double radius = e.major.length(), turned = angleInPlane(e.major, e.normal);
    if (e.end - e.start > kTwoPi - 1e-12)
        return Circle{e.center, radius, e.normal};
    return Arc{e.center, radius, e.start + turned, e.end + turned, e.normal};
}

std::optional<EdgeCurve> elliptic(Tokens tokens, const EdgeEnds& ends)
{
    Values values(tokens);
    Ellipse e;
    e.center = values.point();
    const Vector3 normal = values.vector();
    e.major = values.vector();
    e.ratio = values.number();
    if (values.failed() || !isLong(normal) || !isLong(e.major) || e.ratio == 0)
        return std::nullopt;
    e.normal = normal.normal();
    const bool turnedOver = e.ratio < 0;
    if (turnedOver) {
        e.ratio = -e.ratio;
        e.normal = -e.normal;
    }
    if (e.ratio > 1 + 1e-9) {
        e.major = e.normal.crossProduct(e.major) * e.ratio;
        e.ratio = 1 / e.ratio;
    }
    e.ratio = std::min(e.ratio, 1.0);
    EdgeEnds part = ends;
    part.isReversed = ends.isReversed != turnedOver;
    cut(e, part);
    return EdgeCurve{asRoundAsItIs(e), part.isReversed};
}

// Splines

// Knots come with how often they count; the first and the last once less than a clamped curve has them.
std::optional<std::vector<double>> splineKnots(Values& values, std::size_t count, int degree)
{
    std::vector<double> knots;
    for (std::size_t i = 0; i < count; ++i) {
        const double knot = values.number(), times = values.number();
        if (values.failed() || !(times >= 1 && times <= degree + 1))
            return std::nullopt;
        knots.insert(knots.end(), std::size_t(times), knot);
    }
    if (knots.empty())
        return std::nullopt;
    knots.insert(knots.begin(), knots.front());
    knots.push_back(knots.back());
    return knots;
}

// From behind "nubs" or "nurbs".
std::optional<Nurbs> splineFrom(Tokens tokens, bool isRational)
{
    constexpr int kHighestDegree = 25;
    Values values(tokens);
    const double degree = values.number();
    values.next();  // open, closed or periodic, which the poles say as well
    const double count = values.number();
    if (values.failed() || !(degree >= 1 && degree <= kHighestDegree) ||
        !(count >= 2 && count <= double(tokens.size())))
        return std::nullopt;
    Nurbs n;
    n.degree = int(degree);
    auto knots = splineKnots(values, std::size_t(count), n.degree);
    if (!knots || knots->size() < 2 * (std::size_t(n.degree) + 1))
        return std::nullopt;
    n.knots = std::move(*knots);
    for (std::size_t poles = n.knots.size() - std::size_t(n.degree) - 1; poles > 0 && !values.failed(); --poles) {
        n.poles.push_back(values.point());
        if (isRational)
            n.weights.push_back(values.number());
    }
    return !values.failed() && isValid(n) ? std::optional(std::move(n)) : std::nullopt;
}

// The curve that a spline edge of whatever making carries first: "exactcur full nubs 3 open 2 ...".
std::optional<Nurbs> firstSpline(Tokens braces)
{
    for (std::size_t i = 0; i < braces.size() && braces[i].kind != ModelToken::Open; ++i)
        if (braces[i].bytes == "nubs" || braces[i].bytes == "nurbs")
            return splineFrom(braces.subspan(i + 1), braces[i].bytes == "nurbs");
    return std::nullopt;
}

std::optional<Nurbs> splineOf(const ModelRecords& records, Tokens tokens)
{
    const auto open =
        std::find_if(tokens.begin(), tokens.end(), [](const ModelToken& t) { return t.kind == ModelToken::Open; });
    const Tokens inside = tokens.subspan(std::size_t(open - tokens.begin()) + (open != tokens.end()));
    if (inside.size() > 1 && inside[0].bytes == "ref")
        return firstSpline(records.shared(inside[1].value));
    return firstSpline(inside);
}

bool fits(const Nurbs& n, const Interval& part, const Point3& from, const Point3& to)
{
    const double tolerance = 1e-4 * extents(n).diagonal();
    return pointAt(n, part.from).distanceTo(from) <= tolerance && pointAt(n, part.to).distanceTo(to) <= tolerance;
}

// The parameters that an edge states where they lead to its ends, else those of the ends themselves.
std::optional<Interval> splinePart(const Nurbs& n, const EdgeEnds& ends, bool runsBack)
{
    const Interval whole = paramRange(n);
    if (!ends.start || !ends.end)
        return whole;
    const Point3& from = runsBack ? *ends.end : *ends.start;
    const Point3& to = runsBack ? *ends.start : *ends.end;
    if (ends.params) {
        const Interval stated = runsBack ? Interval{-ends.params->to, -ends.params->from} : *ends.params;
        const Interval held{std::clamp(stated.from, whole.from, whole.to), std::clamp(stated.to, whole.from, whole.to)};
        if (held.from < held.to && fits(n, held, from, to))
            return held;
    }
    if (fits(n, whole, from, to))
        return whole;
    const auto a = closestPoint(n, from), b = closestPoint(n, to);
    if (!a || !b || !(a->param < b->param || isClosed(n)))
        return std::nullopt;
    return fits(n, {a->param, b->param}, from, to) ? std::optional(Interval{a->param, b->param}) : std::nullopt;
}

std::optional<EdgeCurve> splined(const ModelRecords& records, Tokens tokens, const EdgeEnds& ends)
{
    const auto spline = splineOf(records, tokens);
    if (!spline || tokens.empty())
        return std::nullopt;
    const bool runsBack = isReversed(tokens.front()) != ends.isReversed;
    const auto part = splinePart(*spline, ends, runsBack);
    if (!part)
        return std::nullopt;
    auto curve = subCurve(*spline, part->from, part->to);
    return curve ? std::optional(EdgeCurve{std::move(*curve), runsBack}) : std::nullopt;
}

}  // namespace

std::optional<EdgeCurve> edgeCurve(const ModelRecords& records, const ModelRecord& curve, const EdgeEnds& ends)
{
    const Tokens tokens = ownTokens(records, curve);
    if (curve.type == "straight-curve")
        return straight(tokens, ends);
    if (curve.type == "ellipse-curve")
        return elliptic(tokens, ends);
    if (curve.type == "intcurve-curve")
        return splined(records, tokens, ends);
    return std::nullopt;
}

namespace {

Surface flatSurface(Values& values)
{
    const Point3 point = values.point();
    const Vector3 normal = values.vector();
    return values.failed() || !isLong(normal) ? Surface() : FlatSurface{point, normal.normal()};
}

Surface coneSurface(Values& values)
{
    ConeSurface cone;
    cone.base = values.point();
    cone.axis = values.vector();
    cone.major = values.vector();
    const double ratio = values.number();
    values.bound();
    values.bound();
    const double sine = values.number(), cosine = values.number();
    if (values.failed() || !isLong(cone.axis) || !isLong(cone.major) || ratio <= 0 || std::fabs(cosine) < 1e-9)
        return {};
    cone.axis = cone.axis.normal();
    cone.minor = cone.axis.crossProduct(cone.major) * ratio;
    cone.slope = sine / cosine / cone.major.length();
    cone.inward = cosine < 0;
    return cone;
}

// Axes of a round surface, of which a file gives the pole and where its angles begin.
bool setAxes(const Vector3& pole, const Vector3& begin, Vector3& axis, Vector3& x, Vector3& y)
{
    if (!isLong(pole))
        return false;
    axis = pole.normal();
    const Vector3 across = begin - axis * begin.dotProduct(axis);
    x = isLong(across) ? across.normal() : arbitraryXAxis(axis);
    y = axis.crossProduct(x);
    return true;
}

Surface sphereSurface(Values& values)
{
    SphereSurface sphere;
    sphere.center = values.point();
    const double radius = values.number();
    const Vector3 begin = values.vector(), pole = values.vector();
    sphere.radius = std::fabs(radius);
    sphere.inward = radius < 0;
    return values.failed() || radius == 0 || !setAxes(pole, begin, sphere.pole, sphere.x, sphere.y) ? Surface()
                                                                                                    : sphere;
}

Surface torusSurface(Values& values)
{
    TorusSurface torus;
    torus.center = values.point();
    const Vector3 axis = values.vector();
    torus.radius = values.number();
    const double tube = values.number();
    const Vector3 begin = values.vector();
    torus.tube = std::fabs(tube);
    torus.inward = tube < 0;
    return values.failed() || tube == 0 || !setAxes(axis, begin, torus.axis, torus.x, torus.y) ? Surface() : torus;
}

}  // namespace

Surface modelSurface(const ModelRecords& records, const ModelRecord& surface)
{
    Values values(ownTokens(records, surface));
    if (surface.type == "plane-surface")
        return flatSurface(values);
    if (surface.type == "cone-surface")
        return coneSurface(values);
    if (surface.type == "sphere-surface")
        return sphereSurface(values);
    if (surface.type == "torus-surface")
        return torusSurface(values);
    return OtherSurface();
}

}  // namespace vk::geom
