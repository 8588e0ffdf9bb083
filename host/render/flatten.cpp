#include "host/render/flatten.h"

#include <algorithm>
#include <cmath>

namespace vk::render {

void Flattener::addArc(std::vector<VcGePoint3d>& to, const EllipseArc& arc) const
{
    constexpr double kMostChords = 20000;
    const double radius = std::max(arc.u.length(), arc.v.length());
    // A chord that spans 2a stands back from its arc by r (1 - cos a).
    const double half = std::acos(std::clamp(1 - m_tolerance / std::max(radius, 1e-300), 0.5, 1.0));
    const double wanted = half > 0 ? std::fabs(arc.sweep) / (2 * half) : kMostChords;
    const int chords = int(std::clamp(std::ceil(wanted), 1.0, kMostChords));
    // Turning by a constant angle costs no sine for each chord.
    const double step = arc.sweep / chords, c = std::cos(step), s = std::sin(step);
    double x = std::cos(arc.from), y = std::sin(arc.from);
    for (int i = 0; i < chords; ++i) {
        to.push_back(arc.center + arc.u * x + arc.v * y);
        const double turned = x * c - y * s;
        y = x * s + y * c;
        x = turned;
    }
    to.push_back(arc.center + arc.u * std::cos(arc.from + arc.sweep) + arc.v * std::sin(arc.from + arc.sweep));
}

namespace {

double strayOf(const VcGePoint3d& p, const VcGePoint3d& a, const VcGePoint3d& b)
{
    const VcGeVector3d chord = b - a, v = p - a;
    const double length2 = chord.lengthSqrd();
    const double t = length2 > 0 ? std::clamp(v.dotProduct(chord) / length2, 0.0, 1.0) : 0;
    return (v - chord * t).length();
}

struct SplineWalk {
    const geom::Curve& curve;
    double tolerance;
    std::vector<VcGePoint3d>& to;

    // Halves the stretch until the points at its quarters lie on the chord.
    void add(double from, const VcGePoint3d& start, double until, const VcGePoint3d& end, int depth)
    {
        const double middle = (from + until) / 2;
        const VcGePoint3d m = geom::pointAt(curve, middle);
        const bool fits = depth > 1 && strayOf(m, start, end) <= tolerance &&
                          strayOf(geom::pointAt(curve, (from + middle) / 2), start, end) <= tolerance &&
                          strayOf(geom::pointAt(curve, (middle + until) / 2), start, end) <= tolerance;
        if (fits || depth > 10) {
            to.push_back(end);
            return;
        }
        add(from, start, middle, m, depth + 1);
        add(middle, m, until, end, depth + 1);
    }
};

}

void Flattener::addSpline(std::vector<VcGePoint3d>& to, const geom::Nurbs& nurbs) const
{
    const geom::Curve curve = nurbs;
    SplineWalk walk{curve, m_tolerance, to};
    double at = nurbs.knots[std::size_t(nurbs.degree)];
    VcGePoint3d start = geom::pointAt(curve, at);
    to.push_back(start);
    for (std::size_t i = std::size_t(nurbs.degree) + 1; i <= nurbs.poles.size(); ++i) {
        const double next = nurbs.knots[i];
        if (!(next > at))
            continue;
        const VcGePoint3d end = geom::pointAt(curve, next);
        walk.add(at, start, next, end, 0);
        at = next;
        start = end;
    }
}

void Flattener::add(std::vector<VcGePoint3d>& to, const DisplayList& list, const Figure& figure,
                    std::vector<std::size_t>* corners) const
{
    const std::size_t begin = to.size();
    for (std::uint32_t i = figure.first; i < figure.first + figure.count; ++i) {
        const Piece& piece = list.pieces[i];
        const std::size_t pieceBegin = to.size();
        switch (piece.kind) {
        case Piece::Chain:
            to.insert(to.end(), list.points.begin() + piece.first, list.points.begin() + piece.first + piece.count);
            if (corners)
                for (std::size_t k = pieceBegin; k < to.size(); ++k)
                    corners->push_back(k);
            break;
        case Piece::Arc:
            addArc(to, list.arcs[piece.first]);
            break;
        case Piece::Spline:
            addSpline(to, list.splines[piece.first]);
            break;
        }
        if (corners && piece.kind != Piece::Chain) {
            corners->push_back(pieceBegin);
            corners->push_back(to.size() - 1);
        }
    }
    if (figure.closed && to.size() > begin + 1 && to.back() != to[begin]) {
        to.push_back(to[begin]);
        if (corners)
            corners->push_back(to.size() - 1);
    }
}

}  // namespace vk::render
