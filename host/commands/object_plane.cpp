#include "host/commands/object_plane.h"

#include "host/geom/arbitrary_axis.h"
#include "sdk/vcdb_curves.h"
#include "sdk/vcdb_dims.h"
#include "sdk/vcdb_faces.h"
#include "sdk/vcdb_hatch.h"
#include "sdk/vcdb_images.h"
#include "sdk/vcdb_insert.h"
#include "sdk/vcdb_polylines.h"
#include "sdk/vcdb_text.h"

namespace vk::commands {

namespace {

using System = std::optional<CoordinateSystem>;

// The direction need not lie in the plane.
System inPlane(const VcGePoint3d& origin, const VcGeVector3d& normal, const VcGeVector3d& towardsX)
{
    const VcGeVector3d z = normal.normal();
    VcGeVector3d x = towardsX - z * towardsX.dotProduct(z);
    if (!(x.length() > 1e-12 * std::max(1.0, towardsX.length())))
        x = geom::arbitraryXAxis(z);
    x = x.normal();
    return CoordinateSystem{origin, x, z.crossProduct(x)};
}

System turned(const VcGePoint3d& origin, const VcGeVector3d& normal, double rotation)
{
    const geom::Frame frame = geom::arbitraryFrame(normal);
    return inPlane(origin, normal, frame.x * std::cos(rotation) + frame.y * std::sin(rotation));
}

bool isNearer(const std::optional<VcGePoint3d>& pick, const VcGePoint3d& b, const VcGePoint3d& a)
{
    return pick && pick->distanceTo(b) < pick->distanceTo(a);
}

System ofLine(const VcDbLine& line, const std::optional<VcGePoint3d>& pick)
{
    const bool fromEnd = isNearer(pick, line.endPoint(), line.startPoint());
    const VcGePoint3d origin = fromEnd ? line.endPoint() : line.startPoint(),
                      other = fromEnd ? line.startPoint() : line.endPoint();
    const VcGeVector3d x = other - origin;
    // A line that leaves the plane of its normal lies in the XZ plane of its system.
    const VcGeVector3d normal = x.normal().crossProduct(line.normal()).length() > 1e-9
                                    ? x.crossProduct(line.normal()).crossProduct(x)
                                    : x.perpVector();
    return inPlane(origin, normal, x);
}

System ofArc(const VcDbArc& arc, const std::optional<VcGePoint3d>& pick)
{
    const VcGePoint3d end = isNearer(pick, arc.endPoint(), arc.startPoint()) ? arc.endPoint() : arc.startPoint();
    return inPlane(arc.center(), arc.normal(), end - arc.center());
}

System ofPolyline(const VcDbPolyline& polyline)
{
    VcGePoint3d a, b;
    if (polyline.getPointAt(0, a) != Vcad::eOk)
        return std::nullopt;
    return inPlane(a, polyline.normal(), polyline.getPointAt(1, b) == Vcad::eOk ? b - a : VcGeVector3d());
}

System of2dPolyline(const VcDb2dPolyline& polyline)
{
    std::vector<VcGePoint3d> points;
    for (const VcDbEntity* entity : polyline.vertices())
        if (const auto* vertex = VcDb2dVertex::cast(entity); vertex && points.size() < 2)
            points.push_back(polyline.vertexPosition(*vertex));
    if (points.empty())
        return std::nullopt;
    return inPlane(points[0], polyline.normal(), points.size() > 1 ? points[1] - points[0] : VcGeVector3d());
}

System ofQuad(const VcDbFilledQuad& quad)
{
    VcGePoint3d a, b;
    quad.getPointAt(0, a);
    quad.getPointAt(1, b);
    return inPlane(a, quad.normal(), b - a);
}

System ofFace(const VcDbFace& face)
{
    VcGePoint3d a, b, d;
    face.getVertexAt(0, a);
    face.getVertexAt(1, b);
    face.getVertexAt(3, d);
    const VcGeVector3d normal = (b - a).crossProduct(d - a);
    return normal.length() > 0 ? inPlane(a, normal, b - a) : std::nullopt;
}

System ofDimension(const VcDbDimension& dimension)
{
    return turned(dimension.textPosition(), dimension.normal(), -dimension.horizontalRotation());
}

System ofImage(const VcDbRasterImage& image)
{
    VcGePoint3d origin;
    VcGeVector3d u, v;
    image.getOrientation(origin, u, v);
    return inPlane(origin, u.crossProduct(v), u);
}

template <class T>
const T* as(const VcDbEntity& entity)
{
    return T::cast(&entity);
}

}

std::optional<CoordinateSystem> planeOfObject(const VcDbEntity& e, const std::optional<VcGePoint3d>& pick)
{
    if (const auto* line = as<VcDbLine>(e))
        return ofLine(*line, pick);
    if (const auto* arc = as<VcDbArc>(e))
        return ofArc(*arc, pick);
    if (const auto* circle = as<VcDbCircle>(e))
        return inPlane(circle->center(), circle->normal(),
                       pick ? *pick - circle->center() : geom::arbitraryXAxis(circle->normal()));
    if (const auto* ellipse = as<VcDbEllipse>(e))
        return inPlane(ellipse->center(), ellipse->normal(), ellipse->majorAxis());
    if (const auto* point = as<VcDbPoint>(e))
        return turned(point->position(), point->normal(), 0);
    if (const auto* polyline = as<VcDbPolyline>(e))
        return ofPolyline(*polyline);
    if (const auto* polyline = as<VcDb2dPolyline>(e))
        return of2dPolyline(*polyline);
    if (const auto* quad = as<VcDbFilledQuad>(e))
        return ofQuad(*quad);
    if (const auto* face = as<VcDbFace>(e))
        return ofFace(*face);
    if (const auto* text = as<VcDbText>(e))
        return turned(text->position(), text->normal(), text->rotation());
    if (const auto* mtext = as<VcDbMText>(e))
        return inPlane(mtext->location(), mtext->normal(), mtext->direction());
    if (const auto* reference = as<VcDbBlockReference>(e))
        return turned(reference->position(), reference->normal(), reference->rotation());
    if (const auto* shape = as<VcDbShape>(e))
        return turned(shape->position(), shape->normal(), shape->rotation());
    if (const auto* dimension = as<VcDbDimension>(e))
        return ofDimension(*dimension);
    if (const auto* hatch = as<VcDbHatch>(e))
        return turned(geom::toWorld(VcGePoint3d(0, 0, hatch->elevation()), hatch->normal()), hatch->normal(), 0);
    if (const auto* image = as<VcDbRasterImage>(e))
        return ofImage(*image);
    return std::nullopt;
}

}
