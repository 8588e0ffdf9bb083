#include "host/commands/dim_pick.h"

#include "host/db/database.h"
#include "host/geom/arbitrary_axis.h"
#include "sdk/vcdb_curves.h"
#include "sdk/vcdb_polylines.h"

namespace vk::commands {

namespace {

// Through three points that do not lie on a line.
std::unique_ptr<VcDbEntity> arcThrough(const VcGePoint3d& start, const VcGePoint3d& middle, const VcGePoint3d& end)
{
    const VcGeVector3d u = middle - start, v = end - start, n = u.crossProduct(v);
    const VcGeVector3d toCenter =
        (n.crossProduct(u) * v.dotProduct(v) + v.crossProduct(n) * u.dotProduct(u)) / (2 * n.dotProduct(n));
    const VcGePoint3d center = start + toCenter;
    const VcGeVector3d normal = n.normal();
    const geom::Frame frame = geom::arbitraryFrame(normal, center);
    const auto angle = [&](const VcGePoint3d& p) {
        const VcGeVector3d flat = frame.fromWorld(p - center);
        return std::atan2(flat.y, flat.x);
    };
    return std::make_unique<VcDbArc>(center, normal, toCenter.length(), angle(start), angle(end));
}

std::unique_ptr<VcDbEntity> segmentAt(const VcDbCurve& polyline, const VcGePoint3d& pick)
{
    VcGePoint3d on, start, middle, end;
    double at = 0, last = 0;
    if (polyline.getEndParam(last) || last < 1 || polyline.getClosestPointTo(pick, on) ||
        polyline.getParamAtPoint(on, at))
        return nullptr;
    const double index = std::min(std::floor(at), last - 1);
    if (polyline.getPointAtParam(index, start) || polyline.getPointAtParam(index + 0.5, middle) ||
        polyline.getPointAtParam(index + 1, end))
        return nullptr;
    const double length = end.distanceTo(start), rise = (middle - start).crossProduct(end - start).length();
    const bool isStraight = rise <= 1e-9 * length * length;
    return isStraight ? std::make_unique<VcDbLine>(start, end) : arcThrough(start, middle, end);
}

const VcDbCurve* polylineOf(const VcDbEntity* entity)
{
    const bool is =
        entity && (VcDbPolyline::cast(entity) || VcDb2dPolyline::cast(entity) || VcDb3dPolyline::cast(entity));
    return is ? VcDbCurve::cast(entity) : nullptr;
}

}

MeasuredObject::MeasuredObject(edit::Editor& ed, const edit::Answer& answer)
    : m_entity(ed.db().liveAs<VcDbEntity>(answer.entity)), m_pick(answer.hasPoint ? answer.point : VcGePoint3d())
{
    if (const VcDbCurve* polyline = polylineOf(m_entity))
        m_segment = segmentAt(*polyline, toWorld(ed, m_pick));
}

}  // namespace vk::commands
