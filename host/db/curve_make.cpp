// From curves to entities.
#include "host/db/curve_of.h"
#include "host/db/ent_util.h"
#include "host/db/extras.h"
#include "host/geom/arbitrary_axis.h"
#include "host/geom/curve_edit.h"
#include "sdk/vcdb_curves.h"

#include <algorithm>

namespace g = vk::geom;

namespace {

using Made = std::unique_ptr<VcDbEntity>;

// Rounding must not make a plane of its own for what lies in the world's.
VcGeVector3d unit(const VcGeVector3d& normal)
{
    const VcGeVector3d n = normal.normal();
    return n.lengthSqrd() == 0 || (n - VcGeVector3d::zAxis()).length() < 1e-12 ? VcGeVector3d::zAxis() : n;
}

// Within one turn; what misses a whole one by rounding is 0.
double angleOf(double angle)
{
    const double turn = turnOf(angle);
    return kTwoPi - turn < 1e-14 ? 0 : turn;
}

bool setShape(VcDbLine& line, const g::Segment& s) { return !line.setStartPoint(s.start) && !line.setEndPoint(s.end); }
bool setShape(VcDbRay& ray, const g::Ray& r)
{
    return !ray.setBasePoint(r.base) && !ray.setUnitDir(r.direction.normal());
}
bool setShape(VcDbXline& line, const g::XLine& x)
{
    return !line.setBasePoint(x.base) && !line.setUnitDir(x.direction.normal());
}

bool setShape(VcDbCircle& circle, const g::Circle& c)
{
    return c.radius > 0 && !circle.setNormal(unit(c.normal)) && !circle.setCenter(c.center) &&
           !circle.setRadius(c.radius);
}

bool setShape(VcDbArc& arc, const g::Arc& a)
{
    return a.radius > 0 && !arc.setNormal(unit(a.normal)) && !arc.setCenter(a.center) && !arc.setRadius(a.radius) &&
           !arc.setStartAngle(angleOf(a.start)) && !arc.setEndAngle(angleOf(a.end));
}

bool setShape(VcDbEllipse& ellipse, const g::Ellipse& e)
{
    // Parts are kept with their start within the first turn.
    const double start = g::isClosed(e) ? e.start : angleOf(e.start);
    return !ellipse.set(e.center, unit(e.normal), e.major, e.ratio, start, start + (e.end - e.start));
}

bool setShape(VcDbSpline& spline, const g::Nurbs& n)
{
    return !spline.setNurbsData(n.degree, g::isClosed(n), false, n.poles, n.knots, n.weights);
}

// The one width of all segments. The last vertex of an open polyline begins none, so what it says does not count.
std::optional<double> evenWidth(const g::Polyline& p)
{
    const auto last = p.vertices.end() - (p.closed || p.vertices.size() < 2 ? 0 : 1);
    const double width = p.vertices.front().startWidth;
    const bool even = std::all_of(p.vertices.begin(), last, [width](const g::PolyVertex& v) {
        return v.startWidth == width && v.endWidth == width;
    });
    return even ? std::optional(width) : std::nullopt;
}

bool setShape(VcDbPolyline& polyline, const g::Polyline& p)
{
    if (p.vertices.empty() || polyline.setNormal(unit(p.normal)) || polyline.setElevation(p.elevation))
        return false;
    const std::optional<double> even = evenWidth(p);
    while (polyline.numVerts() > 0)
        polyline.removeVertexAt(polyline.numVerts() - 1);
    polyline.setConstantWidth(even.value_or(0));
    for (const g::PolyVertex& v : p.vertices)
        if (polyline.addVertexAt(polyline.numVerts(), v.point, v.bulge, even.value_or(v.startWidth),
                                 even.value_or(v.endWidth)))
            return false;
    polyline.setClosed(p.closed);
    return true;
}

// A shape of the class that the curve's own one is.
template <class Entity, class Shape>
Made made(const Shape& shape)
{
    auto entity = std::make_unique<Entity>();
    return setShape(*entity, shape) ? Made(std::move(entity)) : nullptr;
}

Made madeOf(const g::Segment& s, const VcDbEntity&) { return made<VcDbLine>(s); }
Made madeOf(const g::Ray& r, const VcDbEntity&) { return made<VcDbRay>(r); }
Made madeOf(const g::XLine& x, const VcDbEntity&) { return made<VcDbXline>(x); }
Made madeOf(const g::Circle& c, const VcDbEntity&) { return made<VcDbCircle>(c); }
Made madeOf(const g::Arc& a, const VcDbEntity&)
{
    return g::isClosed(a) ? made<VcDbCircle>(g::Circle{a.center, a.radius, a.normal}) : made<VcDbArc>(a);
}
Made madeOf(const g::Ellipse& e, const VcDbEntity&) { return made<VcDbEllipse>(e); }
Made madeOf(const g::Nurbs& n, const VcDbEntity&) { return made<VcDbSpline>(n); }

Made heavyPolyline(const g::Polyline& p)
{
    auto polyline = std::make_unique<VcDb2dPolyline>();
    polyline->setNormal(unit(p.normal));
    polyline->setElevation(p.elevation);
    polyline->setClosed(p.closed);
    for (const g::PolyVertex& v : p.vertices) {
        VcDbObjectId none;
        polyline->appendVertex(
            none, new VcDb2dVertex({v.point.x, v.point.y, p.elevation}, v.bulge, v.startWidth, v.endWidth));
    }
    return polyline;
}

Made madeOf(const g::Polyline& p, const VcDbEntity& like)
{
    return like.isKindOf(VcDb2dPolyline::desc()) ? heavyPolyline(p) : made<VcDbPolyline>(p);
}

Made madeOf(const g::Polyline3& p, const VcDbEntity&)
{
    auto polyline = std::make_unique<VcDb3dPolyline>();
    polyline->setClosed(p.closed);
    for (const g::Point3& v : p.vertices) {
        VcDbObjectId none;
        polyline->appendVertex(none, new VcDb3dPolylineVertex(v));
    }
    return polyline;
}

struct Extrusion {
    double thickness = 0;
    VcGeVector3d normal{0, 0, 1};
};

template <class... Classes, class Use>
void asOneOf(VcDbEntity& entity, Use&& use)
{
    ((entity.isKindOf(Classes::desc()) ? use(static_cast<Classes&>(entity)) : void()), ...);
}

Extrusion extrusionOf(const VcDbEntity& entity)
{
    Extrusion e;
    asOneOf<VcDbLine, VcDbCircle, VcDbArc, VcDbPolyline, VcDb2dPolyline>(const_cast<VcDbEntity&>(entity),
                                                                         [&](const auto& curve) {
                                                                             e = {curve.thickness(), curve.normal()};
                                                                         });
    return e;
}

// Thickness, the plane of a line, and whether linetypes run on through vertices.
void takeOver(VcDbEntity& entity, const VcDbEntity& like)
{
    const Extrusion e = extrusionOf(like);
    if (e.thickness != 0)
        asOneOf<VcDbLine, VcDbCircle, VcDbArc, VcDbPolyline, VcDb2dPolyline>(
            entity, [&](auto& curve) { curve.setThickness(e.thickness); });
    if (auto* line = VcDbLine::cast(&entity); line && e.normal != VcGeVector3d::zAxis())
        line->setNormal(e.normal);
    const auto* source = VcDbPolyline::cast(&like);
    if (auto* polyline = VcDbPolyline::cast(&entity); polyline && source && source->hasPlinegen())
        polyline->setPlinegen(true);
}

}

std::unique_ptr<VcDbEntity> makeEntityOf(const g::Curve& curve, const VcDbEntity& like)
{
    if (!g::isValid(curve))
        return nullptr;
    Made entity = std::visit([&](const auto& c) { return madeOf(c, like); }, curve);
    if (!entity)
        return nullptr;
    takeOver(*entity, like);
    entity->setPropertiesFrom(&like);
    if (const ObjectExtras* extras = like.extras(); extras && !extras->xdata.empty())
        entity->makeExtras().xdata = extras->xdata;
    return entity;
}

namespace {

template <class Entity, class Shape>
bool trySet(VcDbEntity& entity, const g::Curve& curve)
{
    const auto* shape = std::get_if<Shape>(&curve);
    if (!shape || !entity.isKindOf(Entity::desc()))
        return false;
    Entity trial;
    return setShape(trial, *shape) && setShape(static_cast<Entity&>(entity), *shape);
}

}

bool setCurveOf(VcDbEntity& entity, const g::Curve& curve)
{
    if (!g::isValid(curve) || entity.isA() == VcDbHelix::desc())
        return false;
    return trySet<VcDbLine, g::Segment>(entity, curve) || trySet<VcDbRay, g::Ray>(entity, curve) ||
           trySet<VcDbXline, g::XLine>(entity, curve) || trySet<VcDbCircle, g::Circle>(entity, curve) ||
           trySet<VcDbArc, g::Arc>(entity, curve) || trySet<VcDbEllipse, g::Ellipse>(entity, curve) ||
           trySet<VcDbSpline, g::Nurbs>(entity, curve) || trySet<VcDbPolyline, g::Polyline>(entity, curve);
}
