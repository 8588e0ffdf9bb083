#include "host/geom/bezier.h"

namespace vk::geom {

Derivatives derivatives(const Bezier& bezier, double t)
{
    // The last rows of de Casteljau's scheme hold the derivatives.
    std::vector<Pole> row = bezier;
    const int degree = int(row.size()) - 1;
    Pole first{0, 0, 0, 0}, second{0, 0, 0, 0};
    for (int last = degree; last > 0; --last) {
        if (last == 2)
            second = (row[2] - row[1] - row[1] + row[0]) * (degree * (degree - 1.0));
        if (last == 1)
            first = (row[1] - row[0]) * degree;
        for (int i = 0; i < last; ++i)
            row[i] = mix(row[i], row[i + 1], t);
    }
    const double w = row[0].w;
    const Point3 point = row[0].point();
    const Vector3 d1 = (first.vector() - point.asVector() * first.w) / w;
    const Vector3 d2 = (second.vector() - d1 * (2 * first.w) - point.asVector() * second.w) / w;
    return {point, d1, d2};
}

std::pair<Bezier, Bezier> splitAt(const Bezier& bezier, double t)
{
    Bezier left(bezier.size()), right = bezier;
    const size_t count = bezier.size();
    for (size_t k = 0; k < count; ++k) {
        left[k] = right[0];
        for (size_t i = 0; i + k + 1 < count; ++i)
            right[i] = mix(right[i], right[i + 1], t);
    }
    return {std::move(left), std::move(right)};
}

Bezier between(const Bezier& bezier, double from, double to)
{
    Bezier rest = from > 0 ? splitAt(bezier, from).second : bezier;
    return to < 1 ? splitAt(rest, (to - from) / (1 - from)).first : rest;
}

Box3d hullBox(const Bezier& bezier)
{
    Box3d box;
    for (const Pole& pole : bezier)
        box.add(pole.point());
    return box;
}

double distanceToBox(const Box3d& box, const Point3& p)
{
    const double dx = std::max({box.min.x - p.x, 0.0, p.x - box.max.x});
    const double dy = std::max({box.min.y - p.y, 0.0, p.y - box.max.y});
    const double dz = std::max({box.min.z - p.z, 0.0, p.z - box.max.z});
    return std::sqrt(dx * dx + dy * dy + dz * dz);
}

// The value of the span's polar form at the given knots, by repeated mixing of its poles.
static Pole blossom(const Nurbs& nurbs, int span, const std::vector<double>& at)
{
    const int p = nurbs.degree;
    std::vector<Pole> row;
    for (int i = span - p; i <= span; ++i)
        row.push_back(Pole::of(nurbs.poles[i], nurbs.weights.empty() ? 1 : nurbs.weights[i]));
    for (int k = 1; k <= p; ++k)
        for (int i = p; i >= k; --i) {
            const double low = nurbs.knots[span - p + i], high = nurbs.knots[span + 1 + i - k];
            row[i] = mix(row[i - 1], row[i], (at[k - 1] - low) / (high - low));
        }
    return row[p];
}

Bezier bezierSpan(const Nurbs& nurbs, int span)
{
    std::vector<double> at(nurbs.degree, nurbs.knots[span]);
    Bezier bezier;
    for (int i = nurbs.degree; i >= 0; --i) {
        bezier.push_back(blossom(nurbs, span, at));
        if (i > 0)
            at[i - 1] = nurbs.knots[span + 1];
    }
    return bezier;
}

}  // namespace vk::geom
