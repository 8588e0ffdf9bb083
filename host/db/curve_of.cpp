#include "host/db/curve_of.h"

#include "host/geom/spline_fit.h"
#include "sdk/vcdb_curves.h"

#include <algorithm>

using namespace vk::geom;

namespace {

using MaybeCurve = std::optional<Curve>;

MaybeCurve lineCurve(const VcDbEntity& e)
{
    const auto& line = static_cast<const VcDbLine&>(e);
    return Segment{line.startPoint(), line.endPoint()};
}

MaybeCurve rayCurve(const VcDbEntity& e)
{
    const auto& ray = static_cast<const VcDbRay&>(e);
    return Ray{ray.basePoint(), ray.unitDir()};
}

MaybeCurve xlineCurve(const VcDbEntity& e)
{
    const auto& line = static_cast<const VcDbXline&>(e);
    return XLine{line.basePoint(), line.unitDir()};
}

MaybeCurve circleCurve(const VcDbEntity& e)
{
    const auto& circle = static_cast<const VcDbCircle&>(e);
    return Circle{circle.center(), circle.radius(), circle.normal()};
}

MaybeCurve arcCurve(const VcDbEntity& e)
{
    const auto& arc = static_cast<const VcDbArc&>(e);
    return Arc{arc.center(), arc.radius(), arc.startAngle(), arc.startAngle() + arc.totalAngle(), arc.normal()};
}

MaybeCurve ellipseCurve(const VcDbEntity& e)
{
    const auto& ellipse = static_cast<const VcDbEllipse&>(e);
    double sweep = std::fmod(ellipse.endParam() - ellipse.startParam(), vk::geom::kTwoPi);
    if (sweep <= 1e-12)
        sweep += vk::geom::kTwoPi;
    return Ellipse{ellipse.center(),     ellipse.majorAxis(),          ellipse.radiusRatio(),
                   ellipse.startParam(), ellipse.startParam() + sweep, ellipse.normal()};
}

// A file may give a curve by the points alone that it is fitted through.
MaybeCurve splineCurve(const VcDbEntity& e)
{
    const auto& spline = static_cast<const VcDbSpline&>(e);
    if (spline.numControlPoints() > 0)
        return Nurbs{spline.degree(), spline.controlPoints(), spline.knots(), spline.weights()};
    return fittedThrough(spline.fitPoints(), spline.isClosed());
}

MaybeCurve polylineCurve(const VcDbEntity& e)
{
    const auto& polyline = static_cast<const VcDbPolyline&>(e);
    Polyline curve{std::vector<PolyVertex>(polyline.numVerts()), polyline.isClosed(), polyline.elevation(),
                   polyline.normal()};
    for (unsigned i = 0; i < curve.vertices.size(); ++i) {
        PolyVertex& v = curve.vertices[i];
        polyline.getPointAt(i, v.point);
        polyline.getBulgeAt(i, v.bulge);
        polyline.getWidthsAt(i, v.startWidth, v.endWidth);
    }
    return curve;
}

// The frame of a smoothed polyline is not on its curve.
bool isOnCurve(const VcDbVertex& vertex) { return (vertex.vertexFlags() & VcDbVertex::kSplineFrame) == 0; }

MaybeCurve heavyPolylineCurve(const VcDbEntity& e)
{
    const auto& polyline = static_cast<const VcDb2dPolyline&>(e);
    Polyline curve{{}, polyline.isClosed(), polyline.elevation(), polyline.normal()};
    for (const VcDbEntity* entity : polyline.vertices())
        if (const auto* v = VcDb2dVertex::cast(entity); v && isOnCurve(*v))
            curve.vertices.push_back({v->position().convert2d(), v->bulge(), v->startWidth(), v->endWidth()});
    return curve;
}

MaybeCurve spacePolylineCurve(const VcDbEntity& e)
{
    const auto& polyline = static_cast<const VcDb3dPolyline&>(e);
    Polyline3 curve{{}, polyline.isClosed()};
    for (const VcDbEntity* entity : polyline.vertices())
        if (const auto* v = VcDbVertex::cast(entity); v && isOnCurve(*v))
            curve.vertices.push_back(v->position());
    return curve;
}

struct CurveClass {
    VcRxClass* (*desc)();
    MaybeCurve (*curve)(const VcDbEntity&);
};

constexpr CurveClass kCurveClasses[] = {
    {&VcDbLine::desc, lineCurve},
    {&VcDbPolyline::desc, polylineCurve},
    {&VcDbArc::desc, arcCurve},
    {&VcDbCircle::desc, circleCurve},
    {&VcDb2dPolyline::desc, heavyPolylineCurve},
    {&VcDb3dPolyline::desc, spacePolylineCurve},
    {&VcDbEllipse::desc, ellipseCurve},
    {&VcDbSpline::desc, splineCurve},
    {&VcDbRay::desc, rayCurve},
    {&VcDbXline::desc, xlineCurve},
};

}

std::optional<Curve> curveOf(const VcDbEntity& entity)
{
    if (!entity.isKindOf(VcDbCurve::desc()))
        return std::nullopt;
    for (const CurveClass& c : kCurveClasses)
        if (entity.isKindOf(c.desc())) {
            MaybeCurve curve = c.curve(entity);
            return curve && isValid(*curve) ? curve : std::nullopt;
        }
    return std::nullopt;
}
