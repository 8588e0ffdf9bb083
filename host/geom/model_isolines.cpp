// Lines of constant parameter on round faces. A line is cut where the face's edges, taken as chords in the plane of the
// parameters, cross it; the edges' directions say which parts lie inside.
#include "host/geom/curve_edit.h"
#include "host/geom/model_shape.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace vk::geom {

namespace {

constexpr int kChords = 96;  // of an edge
// Beside the edges that often stand where a line would: parity needs crossings, not touches.
constexpr double kAside = 1e-7;

// A point of a surface by its two parameters, or a line in the plane of these.
struct Pair {
    double u = 0, v = 0;
};

using Chain = std::vector<Pair>;

double toNearest(double angle, double to) { return angle - kTwoPi * std::round((angle - to) / kTwoPi); }

// How one surface is run over. Angles u run about the axis; v is a height, or an angle from -pi/2 to pi/2 on spheres, or
// one that goes round on tori.
struct ConeMap {
    const ConeSurface& s;
    static constexpr bool kRound = false;
    Pair params(const Point3& p) const
    {
        const Vector3 d = p - s.base;
        return {std::atan2(d.dotProduct(s.minor) / s.minor.lengthSqrd(), d.dotProduct(s.major) / s.major.lengthSqrd()),
                d.dotProduct(s.axis)};
    }
    Point3 at(double u, double v) const
    {
        return s.base + s.axis * v + (s.major * std::cos(u) + s.minor * std::sin(u)) * (1 + s.slope * v);
    }
    Curve alongV(double u, double from, double to) const { return Segment{at(u, from), at(u, to)}; }
};

struct SphereMap {
    const SphereSurface& s;
    static constexpr bool kRound = false;
    Pair params(const Point3& p) const
    {
        const Vector3 d = p - s.center;
        return {std::atan2(d.dotProduct(s.y), d.dotProduct(s.x)),
                std::asin(std::clamp(d.dotProduct(s.pole) / s.radius, -1.0, 1.0))};
    }
    Curve alongV(double u, double from, double to) const
    {
        const Vector3 out = s.x * std::cos(u) + s.y * std::sin(u);
        return Ellipse{s.center, out * s.radius, 1, from, to, out.crossProduct(s.pole)};
    }
    Curve alongU(double v, double from, double to) const
    {
        return Ellipse{
            s.center + s.pole * (s.radius * std::sin(v)), s.x * (s.radius * std::cos(v)), 1, from, to, s.pole};
    }
};

struct TorusMap {
    const TorusSurface& s;
    static constexpr bool kRound = true;
    Pair params(const Point3& p) const
    {
        const Vector3 d = p - s.center;
        const double u = std::atan2(d.dotProduct(s.y), d.dotProduct(s.x));
        const double out = d.dotProduct(s.x * std::cos(u) + s.y * std::sin(u)) - s.radius;
        return {u, std::atan2(d.dotProduct(s.axis), out)};
    }
    Curve alongV(double u, double from, double to) const
    {
        const Vector3 out = s.x * std::cos(u) + s.y * std::sin(u);
        return Ellipse{s.center + out * s.radius, out * s.tube, 1, from, to, out.crossProduct(s.axis)};
    }
    Curve alongU(double v, double from, double to) const
    {
        const double radius = s.radius + s.tube * std::cos(v);
        return Ellipse{
            s.center + s.axis * (s.tube * std::sin(v)), s.x * radius, 1, from, to, radius < 0 ? -s.axis : s.axis};
    }
};

template <class Map>
Chain chainOf(const Map& map, const Curve& edge, bool against)
{
    const Interval range = paramRange(edge);
    Chain chain;
    for (int i = 0; i <= kChords; ++i) {
        const double t = double(against ? kChords - i : i) / kChords;
        Pair p = map.params(pointAt(edge, range.from + (range.to - range.from) * t));
        if (!chain.empty()) {
            p.u = toNearest(p.u, chain.back().u);
            if (Map::kRound)
                p.v = toNearest(p.v, chain.back().v);
        }
        chain.push_back(p);
    }
    return chain;
}

// A place on a line where the inside begins or ends as one goes up it.
struct Crossing {
    double at = 0;
    bool begins = false;
};

// Lines run along v at a given u, or with turned along u at a given v; isAngle says whether the given one goes round.
std::vector<Crossing> crossings(const std::vector<Chain>& chains, double given, bool turned, bool isAngle, bool inward)
{
    std::vector<Crossing> found;
    for (const Chain& chain : chains)
        for (std::size_t i = 0; i + 1 < chain.size(); ++i) {
            const double a0 = turned ? chain[i].v : chain[i].u, a1 = turned ? chain[i + 1].v : chain[i + 1].u;
            const double b0 = turned ? chain[i].u : chain[i].v, b1 = turned ? chain[i + 1].u : chain[i + 1].v;
            const double c = isAngle ? toNearest(given, (a0 + a1) / 2) : given;
            if ((a0 <= c) == (a1 <= c))
                continue;
            // What lies to the left of an edge is inside: above one that runs to greater u, below one that runs to greater v.
            if (const double at = b0 + (b1 - b0) * (c - a0) / (a1 - a0); std::isfinite(at))
                found.push_back({at, ((a1 > a0) != turned) != inward});
        }
    return found;
}

using Parts = std::vector<Interval>;

// Between two limits, beyond which there is nothing.
Parts openParts(std::vector<Crossing> at, std::optional<Interval> limits)
{
    std::sort(at.begin(), at.end(), [](const Crossing& a, const Crossing& b) { return a.at < b.at; });
    int asBegin = 0;  // how many crossings say that the first one begins the inside
    for (std::size_t i = 0; i < at.size(); ++i)
        asBegin += at[i].begins == (i % 2 == 0) ? 1 : -1;
    std::vector<double> ends;
    for (const Crossing& c : at)
        ends.push_back(c.at);
    if (limits && asBegin < 0)
        ends.insert(ends.begin(), limits->from);
    if (limits && ends.size() % 2 == 1)
        ends.push_back(limits->to);
    Parts parts;
    for (std::size_t i = 0; i + 1 < ends.size() && ends.size() % 2 == 0; i += 2)
        parts.push_back({ends[i], ends[i + 1]});
    return parts;
}

Parts roundParts(std::vector<Crossing> at)
{
    for (Crossing& c : at)
        c.at = c.at - kTwoPi * std::floor(c.at / kTwoPi);
    std::sort(at.begin(), at.end(), [](const Crossing& a, const Crossing& b) { return a.at < b.at; });
    if (at.size() % 2 == 1)
        return {};
    int asBegin = 0;
    for (std::size_t i = 0; i < at.size(); ++i)
        asBegin += at[i].begins == (i % 2 == 0) ? 1 : -1;
    const std::size_t first = asBegin < 0 ? 1 : 0;
    Parts parts;
    for (std::size_t i = first; i < at.size() + first; i += 2) {
        const double from = at[i % at.size()].at, to = at[(i + 1) % at.size()].at;
        parts.push_back({from, i + 1 < at.size() ? to : to + kTwoPi});
    }
    return parts;
}

bool holds(const Parts& parts, double angle)
{
    return std::any_of(parts.begin(), parts.end(), [&](const Interval& p) {
        const double a = p.from + (angle - p.from) - kTwoPi * std::floor((angle - p.from) / kTwoPi);
        return a <= p.to;
    });
}

const Parts kWholeTurn{{0, kTwoPi}};
constexpr double kQuarter = kTwoPi / 4;

class FaceLines {
public:
    FaceLines(const ModelShape& shape, const ModelFace& face, int count, std::vector<Curve>& to)
        : m_shape(shape), m_face(face), m_count(count), m_inverse(face.placed.inverse()), m_to(to)
    {
    }

    void add()
    {
        if (const auto* cone = std::get_if<ConeSurface>(&m_face.surface))
            addCone(*cone);
        else if (const auto* sphere = std::get_if<SphereSurface>(&m_face.surface))
            addSphere(*sphere);
        else if (const auto* torus = std::get_if<TorusSurface>(&m_face.surface))
            addTorus(*torus);
    }

private:
    double turn(int i) const { return kTwoPi * i / m_count + kAside; }

    template <class Map>
    std::vector<Chain> chains(const Map& map) const
    {
        std::vector<Chain> all;
        for (const ModelFace::Side& side : m_face.sides) {
            const Curve& edge = m_shape.edges[side.edge];
            all.push_back(
                chainOf(map, m_face.placed == VcGeMatrix3d() ? edge : transformed(edge, m_inverse), side.against));
        }
        return all;
    }

    void put(const Curve& curve)
    {
        if (isValid(curve))
            m_to.push_back(m_face.placed == VcGeMatrix3d() ? curve : transformed(curve, m_face.placed));
    }

    // Files do not agree on which way a cone opens; its edges know, but for those in the plane of its base.
    ConeSurface opened(const ConeSurface& cone) const
    {
        double same = 0, other = 0;
        for (const ModelFace::Side& side : m_face.sides) {
            const Curve& edge = m_shape.edges[side.edge];
            const Interval range = paramRange(edge);
            const Vector3 d = m_inverse * pointAt(edge, range.from) - cone.base;
            const double h = d.dotProduct(cone.axis);
            const double reach = std::hypot(d.dotProduct(cone.major) / cone.major.lengthSqrd(),
                                            d.dotProduct(cone.minor) / cone.minor.lengthSqrd());
            same += std::fabs(reach - std::fabs(1 + cone.slope * h));
            other += std::fabs(reach - std::fabs(1 - cone.slope * h));
        }
        ConeSurface right = cone;
        if (other < same - 1e-6)
            right.slope = -cone.slope;
        return right;
    }

    void addCone(const ConeSurface& stated)
    {
        const ConeSurface cone = opened(stated);
        const ConeMap map{cone};
        const auto edges = chains(map);
        for (int i = 0; i < m_count; ++i) {
            auto at = crossings(edges, turn(i), false, true, cone.inward);
            if (at.size() % 2 == 1 && cone.slope != 0)
                at.push_back({-1 / cone.slope, false});
            for (const Interval& part : openParts(std::move(at), {}))
                put(map.alongV(turn(i), part.from, part.to));
        }
    }

    void addSphere(const SphereSurface& sphere)
    {
        const SphereMap map{sphere};
        const auto edges = chains(map);
        const auto along = [&](double u) {
            const auto at = crossings(edges, u, false, true, sphere.inward);
            return at.empty() && !edges.empty() ? Parts() : openParts(at, Interval{-kQuarter, kQuarter});
        };
        for (int i = 0; i < m_count; ++i)
            for (const Interval& part : edges.empty() ? Parts{{-kQuarter, kQuarter}} : along(turn(i)))
                put(map.alongV(turn(i), part.from, part.to));
        for (int i = 1; i < m_count / 2; ++i) {
            const double v = -kQuarter + 2 * kQuarter * i / (m_count / 2) + kAside;
            auto at = crossings(edges, v, true, false, sphere.inward);
            const Parts parts = !at.empty()                                      ? roundParts(std::move(at))
                                : edges.empty() || holdsHeight(along(kAside), v) ? kWholeTurn
                                                                                 : Parts();
            for (const Interval& part : parts)
                put(map.alongU(v, part.from, part.to));
        }
    }

    static bool holdsHeight(const Parts& parts, double v)
    {
        return std::any_of(parts.begin(), parts.end(), [&](const Interval& p) { return p.from <= v && v <= p.to; });
    }

    void addTorus(const TorusSurface& torus)
    {
        const TorusMap map{torus};
        const auto edges = chains(map);
        for (int i = 0; i < m_count; ++i) {
            for (const Interval& part : torusParts(edges, turn(i), false, torus.inward))
                put(map.alongV(turn(i), part.from, part.to));
            for (const Interval& part : torusParts(edges, turn(i), true, torus.inward))
                put(map.alongU(turn(i), part.from, part.to));
        }
    }

    // A line that no edge crosses is inside as a whole or not at all, which a line across it knows.
    static Parts torusParts(const std::vector<Chain>& edges, double given, bool turned, bool inward)
    {
        if (edges.empty())
            return kWholeTurn;
        if (auto at = crossings(edges, given, turned, true, inward); !at.empty())
            return roundParts(std::move(at));
        auto across = crossings(edges, kAside, !turned, true, inward);
        return !across.empty() && holds(roundParts(std::move(across)), given) ? kWholeTurn : Parts();
    }

    const ModelShape& m_shape;
    const ModelFace& m_face;
    int m_count;
    VcGeMatrix3d m_inverse;
    std::vector<Curve>& m_to;
};

}  // namespace

std::vector<Curve> isolines(const ModelShape& shape, int count)
{
    constexpr std::size_t kMost = 500'000;  // more would only cover each other
    std::vector<Curve> lines;
    if (count > 0)
        for (const ModelFace& face : shape.faces)
            if (face.isWhole && lines.size() < kMost)
                FaceLines(shape, face, count, lines).add();
    return lines;
}

}  // namespace vk::geom
