#include "host/geom/nurbs.h"

#include "host/geom/curve_edit.h"

#include <cmath>

namespace vk::geom {

namespace {

struct Spline {
    int degree;
    std::vector<Pole> poles;
    std::vector<double> knots;
};

Spline homogeneous(const Nurbs& n)
{
    Spline s{n.degree, {}, n.knots};
    for (size_t i = 0; i < n.poles.size(); ++i)
        s.poles.push_back(Pole::of(n.poles[i], n.weights.empty() ? 1 : n.weights[i]));
    return s;
}

Nurbs plain(int degree, const std::vector<Pole>& poles, std::vector<double> knots)
{
    Nurbs n{degree, {}, std::move(knots), {}};
    bool rational = false;
    for (const Pole& pole : poles) {
        n.poles.push_back(pole.point());
        n.weights.push_back(pole.w);
        rational = rational || pole.w != poles[0].w;
    }
    if (!rational)
        n.weights.clear();
    return n;
}

int lastAtOrBelow(const std::vector<double>& knots, double u)
{
    return int(std::upper_bound(knots.begin(), knots.end(), u) - knots.begin()) - 1;
}

int firstAtOrAbove(const std::vector<double>& knots, double u)
{
    return int(std::lower_bound(knots.begin(), knots.end(), u) - knots.begin());
}

// Boehm's insertion, until the curve passes through a pole at the knot.
void saturate(Spline& s, double u)
{
    const int p = s.degree;
    for (;;) {
        const int k = lastAtOrBelow(s.knots, u), multiplicity = k + 1 - firstAtOrAbove(s.knots, u);
        if (multiplicity >= p)
            return;
        std::vector<Pole> poles(s.poles.begin(), s.poles.begin() + (k - p + 1));
        for (int i = k - p + 1; i <= k - multiplicity; ++i) {
            const double a = (u - s.knots[i]) / (s.knots[i + p] - s.knots[i]);
            poles.push_back(mix(s.poles[i - 1], s.poles[i], a));
        }
        poles.insert(poles.end(), s.poles.begin() + (k - multiplicity), s.poles.end());
        s.poles = std::move(poles);
        s.knots.insert(s.knots.begin() + k + 1, u);
    }
}

// One degree more, through the same points.
Bezier raised(const Bezier& bezier)
{
    const size_t degree = bezier.size();
    Bezier result{bezier.front()};
    for (size_t i = 1; i < degree; ++i)
        result.push_back(mix(bezier[i], bezier[i - 1], double(i) / double(degree)));
    result.push_back(bezier.back());
    return result;
}

Bezier straight(const Point3& from, const Point3& to, int degree)
{
    if (degree == 1)
        return {Pole::of(from), Pole::of(to)};
    return {Pole::of(from), Pole::of(from + (to - from) * 0.5), Pole::of(to)};
}

Bezier conicPart(const ConicPiece& c, double from, double to)
{
    const double half = (to - from) / 2, mid = (from + to) / 2, weight = std::cos(half);
    const Point3 corner = c.center + (c.u * std::cos(mid) + c.v * std::sin(mid)) / weight;
    return {Pole::of(place(c, from)), Pole::of(corner, weight), Pole::of(place(c, to))};
}

}  // namespace

Nurbs nurbsBetween(const Nurbs& nurbs, double from, double to)
{
    Spline s = homogeneous(nurbs);
    saturate(s, from);
    saturate(s, to);
    const int p = s.degree, first = lastAtOrBelow(s.knots, from), last = firstAtOrAbove(s.knots, to);
    const std::vector<Pole> poles(s.poles.begin() + (first - p), s.poles.begin() + last);
    std::vector<double> knots(p + 1, from);
    knots.insert(knots.end(), s.knots.begin() + first + 1, s.knots.begin() + last);
    knots.insert(knots.end(), p + 1, to);
    return plain(p, poles, std::move(knots));
}

Nurbs reversed(const Nurbs& nurbs)
{
    Nurbs r = nurbs;
    std::reverse(r.poles.begin(), r.poles.end());
    std::reverse(r.weights.begin(), r.weights.end());
    std::reverse(r.knots.begin(), r.knots.end());
    const double sum = nurbs.knots[nurbs.degree] + nurbs.knots[nurbs.poles.size()];
    for (double& knot : r.knots)
        knot = sum - knot;
    return r;
}

Nurbs withDegree(const Nurbs& nurbs, int degree)
{
    if (nurbs.degree >= degree)
        return nurbs;
    std::vector<Bezier> beziers;
    for (int span = nurbs.degree; span < int(nurbs.poles.size()); ++span)
        if (nurbs.knots[span] < nurbs.knots[span + 1])
            beziers.push_back(bezierSpan(nurbs, span));
    for (Bezier& bezier : beziers)
        while (int(bezier.size()) <= degree)
            bezier = raised(bezier);
    return composed(beziers);
}

Nurbs joined(const Nurbs& first, const Nurbs& second)
{
    const auto whole = [](const Nurbs& n) { return nurbsBetween(n, n.knots[n.degree], n.knots[n.poles.size()]); };
    Spline a = homogeneous(whole(first));
    const Spline b = homogeneous(whole(second));
    const double shift = a.knots.back() - b.knots.front(), scale = a.poles.back().w / b.poles.front().w;
    a.knots.pop_back();
    for (size_t i = a.degree + 1; i < b.knots.size(); ++i)
        a.knots.push_back(b.knots[i] + shift);
    for (size_t i = 1; i < b.poles.size(); ++i)
        a.poles.push_back(b.poles[i] * scale);
    return plain(a.degree, a.poles, std::move(a.knots));
}

Nurbs composed(const std::vector<Bezier>& beziers)
{
    const int degree = int(beziers.front().size()) - 1;
    std::vector<Pole> poles{beziers.front().front()};
    std::vector<double> knots(degree + 1, 0.0);
    for (size_t i = 0; i < beziers.size(); ++i) {
        const double scale = poles.back().w / beziers[i].front().w;
        for (int k = 1; k <= degree; ++k)
            poles.push_back(beziers[i][k] * scale);
        knots.insert(knots.end(), degree, i + 1.0);
    }
    knots.push_back(double(beziers.size()));
    return plain(degree, poles, std::move(knots));
}

std::vector<Bezier> asBeziers(const PieceShape& shape, int degree)
{
    if (const auto* bezier = std::get_if<BezierPiece>(&shape))
        return {between(bezier->poles, bezier->range.from, bezier->range.to)};
    if (const auto* line = std::get_if<LinePiece>(&shape))
        return {straight(place(*line, line->range.from), place(*line, line->range.to), degree)};
    const auto& conic = std::get<ConicPiece>(shape);
    const double sweep = conic.range.to - conic.range.from;
    const int count = std::max(1, int(std::ceil(sweep / (kTwoPi / 4) - 1e-9)));
    std::vector<Bezier> parts;
    for (int i = 0; i < count; ++i)
        parts.push_back(
            conicPart(conic, conic.range.from + sweep * i / count, conic.range.from + sweep * (i + 1) / count));
    return parts;
}

std::optional<Nurbs> toNurbs(const Curve& curve)
{
    if (const auto* nurbs = std::get_if<Nurbs>(&curve))
        return *nurbs;
    const auto pieces = piecesOf(curve);
    if (pieces.empty() || !startPoint(curve) || !endPoint(curve))
        return std::nullopt;
    int degree = 1;
    for (const Piece& piece : pieces)
        if (!std::holds_alternative<LinePiece>(piece.shape))
            degree = 2;
    std::vector<Bezier> beziers;
    for (const Piece& piece : pieces)
        for (Bezier& part : asBeziers(piece.shape, degree))
            beziers.push_back(std::move(part));
    return composed(beziers);
}

}  // namespace vk::geom
