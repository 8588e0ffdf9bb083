// Where entities meet: each curve that is drawn of one with each of the other.
#include "host/db/curve_of.h"
#include "host/geom/apparent.h"
#include "host/geom/curve_edit.h"
#include "host/geom/intersect.h"

#include <algorithm>
#include <functional>

namespace g = vk::geom;

namespace {

using Points = std::vector<VcGePoint3d>;
using Meet = std::function<Points(const g::Curve&, const g::Curve&)>;

// What extends nothing need look only where the other lies.
std::optional<g::Box3d> placeOf(const std::vector<g::Curve>& curves)
{
    g::Box3d box;
    for (const g::Curve& curve : curves)
        box.add(g::extents(curve));
    return box.isFinite() ? std::optional(box.grown(1e-9 * (box.diagonal() + box.magnitude()))) : std::nullopt;
}

// Points that several pieces share, as corners of outlines are, count once.
void addDistinct(Points& points, std::size_t known, const VcGePoint3d& p, double tolerance)
{
    const bool there = std::any_of(points.begin() + std::ptrdiff_t(known), points.end(),
                                   [&](const VcGePoint3d& q) { return q.distanceTo(p) <= tolerance; });
    if (!there)
        points.push_back(p);
}

Vcad::ErrorStatus meetAll(const VcDbEntity& a, const VcDbEntity& b, bool within, const Meet& meet, Points& points)
{
    if (&a == &b || (!a.objectId().isNull() && a.objectId() == b.objectId()))
        return Vcad::eOk;
    const std::vector<g::Curve> first = drawnCurves(a);
    if (first.empty())
        return Vcad::eNotApplicable;
    const std::size_t known = points.size();
    bool any = false;
    DrawnCurves(within ? placeOf(first) : std::nullopt).visit(b, [&](const g::Curve& second) {
        any = true;
        for (const g::Curve& curve : first) {
            const Points met = meet(curve, second);
            const double tolerance = met.empty() ? 0 : 2 * g::meetingTolerance(curve, second);
            for (const VcGePoint3d& p : met)
                addDistinct(points, known, p, tolerance);
        }
        return true;
    });
    return any || within ? Vcad::eOk : Vcad::eNotApplicable;
}

}

Vcad::ErrorStatus VcDbEntity::intersectWith(const VcDbEntity* other, VcDb::Intersect mode, Points& points,
                                            std::intptr_t, std::intptr_t) const
{
    if (!other)
        return Vcad::eInvalidInput;
    const auto meet = [mode](const g::Curve& a, const g::Curve& b) {
        return g::contactPoints(g::intersect(a, b, g::Extend(int(mode) & 3)));
    };
    return meetAll(*this, *other, mode == VcDb::kOnBothOperands, meet, points);
}

Vcad::ErrorStatus VcDbEntity::intersectWith(const VcDbEntity* other, VcDb::Intersect mode, const VcGePlane& projection,
                                            Points& points, std::intptr_t, std::intptr_t) const
{
    if (!other)
        return Vcad::eInvalidInput;
    const auto meet = [&](const g::Curve& a, const g::Curve& b) {
        Points seen;
        for (const g::Crossing& c : g::apparentCrossings(a, b, projection.normal(), g::Extend(int(mode) & 3)))
            seen.push_back(c.point);
        return seen;
    };
    return meetAll(*this, *other, false, meet, points);
}
