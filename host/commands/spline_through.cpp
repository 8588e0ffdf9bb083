#include "host/commands/spline_through.h"

#include "sdk/vcdb_curves.h"

#include <algorithm>

namespace vk::commands {

namespace {

using Vectors = std::vector<VcGeVector3d>;

// Rows of below, on and above the diagonal.
struct Tridiagonal {
    std::vector<double> below, on, above;
};

Vectors solve(const Tridiagonal& m, Vectors right)
{
    const std::size_t n = right.size();
    std::vector<double> on = m.on;
    for (std::size_t i = 1; i < n; ++i) {
        const double factor = m.below[i] / on[i - 1];
        on[i] -= factor * m.above[i - 1];
        right[i] = right[i] - right[i - 1] * factor;
    }
    for (std::size_t i = n; i-- > 0;)
        right[i] = (right[i] - (i + 1 < n ? right[i + 1] * m.above[i] : VcGeVector3d())) / on[i];
    return right;
}

// Tangents by the parameter at each point, for the second derivative to be continuous; h are the spans.
Vectors openTangents(const std::vector<VcGePoint3d>& p, const std::vector<double>& h, const SplineFit& fit)
{
    const std::size_t n = p.size();
    Tridiagonal m{std::vector<double>(n, 0), std::vector<double>(n, 2), std::vector<double>(n, 0)};
    Vectors right(n);
    m.above[0] = m.below[n - 1] = 1;
    right[0] = (p[1] - p[0]) * (3 / h[0]);
    right[n - 1] = (p[n - 1] - p[n - 2]) * (3 / h[n - 2]);
    for (std::size_t i = 1; i + 1 < n; ++i) {
        const double a = h[i] / (h[i - 1] + h[i]), b = 1 - a;
        m.below[i] = a;
        m.above[i] = b;
        right[i] = (p[i] - p[i - 1]) * (3 * a / h[i - 1]) + (p[i + 1] - p[i]) * (3 * b / h[i]);
    }
    // Along a given direction the curve leaves as fast as its first chord is passed.
    const auto hold = [&](std::size_t i, std::size_t chord, const std::optional<VcGeVector3d>& direction) {
        if (!direction)
            return;
        m.below[i] = m.above[i] = 0;
        m.on[i] = 1;
        right[i] = direction->normal() * (p[chord].distanceTo(p[chord + 1]) / h[chord]);
    };
    hold(0, 0, fit.start);
    hold(n - 1, n - 2, fit.end);
    return solve(m, right);
}

// The same round a closed curve, where the first row reaches the last and the other way round: the two corners of the matrix
// are taken out as a change of rank one.
Vectors closedTangents(const std::vector<VcGePoint3d>& p, const std::vector<double>& h)
{
    const std::size_t n = p.size();
    Tridiagonal m{std::vector<double>(n), std::vector<double>(n, 2), std::vector<double>(n)};
    Vectors right(n);
    for (std::size_t i = 0; i < n; ++i) {
        const std::size_t before = (i + n - 1) % n, after = (i + 1) % n;
        const double a = h[i] / (h[before] + h[i]), b = 1 - a;
        m.below[i] = a;
        m.above[i] = b;
        right[i] = (p[i] - p[before]) * (3 * a / h[before]) + (p[after] - p[i]) * (3 * b / h[i]);
    }
    const double upper = m.below[0], lower = m.above[n - 1], gamma = -m.on[0];
    m.on[0] -= gamma;
    m.on[n - 1] -= upper * lower / gamma;
    Vectors change(n);
    change[0].x = gamma;
    change[n - 1].x = lower;
    const Vectors y = solve(m, right), z = solve(m, change);
    const double weight = upper / gamma;
    const VcGeVector3d factor = (y[0] + y[n - 1] * weight) / (1 + z[0].x + weight * z[n - 1].x);
    Vectors tangents(n);
    for (std::size_t i = 0; i < n; ++i)
        tangents[i] = y[i] - factor * z[i].x;
    return tangents;
}

// The control vertex of a cubic whose piece between a and b is known, from the three knots that it belongs to.
VcGePoint3d blossom(const VcGePoint3d (&bezier)[4], double a, double b, const double (&knots)[3])
{
    VcGePoint3d row[4] = {bezier[0], bezier[1], bezier[2], bezier[3]};
    for (int level = 0; level < 3; ++level) {
        const double t = (knots[level] - a) / (b - a);
        for (int i = 0; i + level < 3; ++i)
            row[i] = row[i] + (row[i + 1] - row[i]) * t;
    }
    return row[0];
}

}

std::unique_ptr<VcDbSpline> splineThrough(std::vector<VcGePoint3d> points, bool closed, const SplineFit& fit)
{
    if (closed && points.size() > 1 && points.front() == points.back())
        points.pop_back();
    if (points.size() < 2)
        return nullptr;
    closed = closed && points.size() >= 3;
    if (closed)
        points.push_back(points.front());
    const std::size_t spans = points.size() - 1;
    std::vector<double> h, at{0};
    for (std::size_t i = 0; i < spans; ++i) {
        const double chord = points[i].distanceTo(points[i + 1]);
        h.push_back(fit.knots == FitKnots::Chord ? chord : fit.knots == FitKnots::SquareRoot ? std::sqrt(chord) : 1.0);
        at.push_back(at.back() + h.back());
    }
    Vectors tangents;
    if (closed) {
        tangents = closedTangents({points.begin(), points.end() - 1}, h);
        tangents.push_back(tangents.front());
    } else {
        tangents = openTangents(points, h, fit);
    }
    std::vector<double> knots(3, 0.0);
    knots.insert(knots.end(), at.begin(), at.end());
    knots.insert(knots.end(), 3, at.back());
    std::vector<VcGePoint3d> vertices;
    for (std::size_t i = 0; i < spans + 3; ++i) {
        const std::size_t span = std::min(i > 1 ? i - 2 : 0, spans - 1);
        const VcGePoint3d bezier[4] = {points[span], points[span] + tangents[span] * (h[span] / 3),
                                       points[span + 1] - tangents[span + 1] * (h[span] / 3), points[span + 1]};
        vertices.push_back(blossom(bezier, at[span], at[span + 1], {knots[i + 1], knots[i + 2], knots[i + 3]}));
    }
    auto spline = std::make_unique<VcDbSpline>();
    return spline->setNurbsData(3, closed, false, vertices, knots, {}) == Vcad::eOk ? std::move(spline) : nullptr;
}

std::unique_ptr<VcDbSpline> splineByVertices(std::vector<VcGePoint3d> points, int degree, bool closed)
{
    if (points.size() < 2)
        return nullptr;
    degree = std::clamp(degree, 1, int(points.size()) - 1);
    std::vector<double> knots;
    if (closed) {
        // The first vertices come once more, and the knots run on evenly: no seam is to be seen.
        points.insert(points.end(), points.begin(), points.begin() + degree);
        for (int i = 0; i < int(points.size()) + degree + 1; ++i)
            knots.push_back(i - degree);
    } else {
        const int spans = int(points.size()) - degree;
        for (int i = -degree; i <= spans + degree; ++i)
            knots.push_back(std::clamp(i, 0, spans));
    }
    auto spline = std::make_unique<VcDbSpline>();
    return spline->setNurbsData(degree, closed, closed, points, knots, {}) == Vcad::eOk ? std::move(spline) : nullptr;
}

}
