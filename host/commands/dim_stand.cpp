#include "host/commands/dim_stand.h"

#include "host/geom/arbitrary_axis.h"

#include <cmath>

namespace vk::commands {

namespace {

std::optional<DimStand> arcStand(const VcGePoint3d& vertex, const VcGePoint3d& arc)
{
    const VcGeVector3d out = arc - vertex;
    if (out.length() == 0)
        return std::nullopt;
    return DimStand{true, vertex, out.normal(), out.length()};
}

std::optional<DimStand> lineStand(const VcGePoint3d& through, const VcGeVector3d& along, const VcGeVector3d& normal)
{
    const VcGeVector3d across = normal.crossProduct(along).normal();
    return DimStand{false, VcGePoint3d(), across, through.asVector().dotProduct(across)};
}

std::optional<VcGePoint3d> vertexOf(const VcDb2LineAngularDimension& d)
{
    const VcGeVector3d u = d.xLine1End() - d.xLine1Start(), v = d.xLine2End() - d.xLine2Start(),
                       w = d.xLine2Start() - d.xLine1Start();
    const VcGeVector3d n = u.crossProduct(v);
    if (n.length() <= 1e-12 * u.length() * v.length())
        return std::nullopt;
    return d.xLine1Start() + u * (w.crossProduct(v).dotProduct(n) / n.dotProduct(n));
}

}

std::optional<DimStand> dimStandOf(const VcDbDimension& dimension)
{
    const VcGeVector3d normal = dimension.normal();
    if (const auto* rotated = VcDbRotatedDimension::cast(&dimension)) {
        const geom::Frame frame = geom::arbitraryFrame(normal, VcGePoint3d());
        const VcGeVector3d along = frame.x * std::cos(rotated->rotation()) + frame.y * std::sin(rotated->rotation());
        return lineStand(rotated->dimLinePoint(), along, normal);
    }
    if (const auto* aligned = VcDbAlignedDimension::cast(&dimension)) {
        const VcGeVector3d along = aligned->xLine2Point() - aligned->xLine1Point();
        return along.length() > 0 ? lineStand(aligned->dimLinePoint(), along.normal(), normal) : std::nullopt;
    }
    if (const auto* points = VcDb3PointAngularDimension::cast(&dimension))
        return arcStand(points->centerPoint(), points->arcPoint());
    if (const auto* lines = VcDb2LineAngularDimension::cast(&dimension))
        if (const auto vertex = vertexOf(*lines))
            return arcStand(*vertex, lines->arcPoint());
    return std::nullopt;
}

void moveLine(VcDbDimension& dimension, const VcGeVector3d& by)
{
    if (auto* rotated = VcDbRotatedDimension::cast(&dimension))
        rotated->setDimLinePoint(rotated->dimLinePoint() + by);
    else if (auto* aligned = VcDbAlignedDimension::cast(&dimension))
        aligned->setDimLinePoint(aligned->dimLinePoint() + by);
    else if (auto* points = VcDb3PointAngularDimension::cast(&dimension))
        points->setArcPoint(points->arcPoint() + by);
    else if (auto* lines = VcDb2LineAngularDimension::cast(&dimension))
        lines->setArcPoint(lines->arcPoint() + by);
}

}  // namespace vk::commands
