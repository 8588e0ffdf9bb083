#include "host/edit/pick_distance.h"

#include "host/geom/curve.h"
#include "sdk/vcdb_curves.h"
#include "sdk/vcdb_text.h"

#include <cmath>

namespace vk::edit {

namespace {

using Point = VcGePoint2d;
using Distance = std::optional<double>;

struct Pick {
    Point at;
    const VcDbExtents* extents;
};

bool isUpright(const VcGeVector3d& normal) { return normal.x == 0 && normal.y == 0 && normal.z > 0; }

double distanceToPiece(const Point& p, const Point& a, const Point& b)
{
    const VcGeVector2d along = b - a;
    const double length = along.lengthSqrd();
    const double t = length > 0 ? std::clamp((p - a).dotProduct(along) / length, 0.0, 1.0) : 0.0;
    return p.distanceTo(a + along * t);
}

double distanceToBox(const Point& p, const Point& low, const Point& high)
{
    return std::hypot(std::max({low.x - p.x, 0.0, p.x - high.x}), std::max({low.y - p.y, 0.0, p.y - high.y}));
}

struct Round {
    Point center;
    double radius, start, sweep;  // counter-clockwise
    Point at(double angle) const { return center + VcGeVector2d(std::cos(angle), std::sin(angle)) * radius; }
};

double distanceToArc(const Point& p, const Round& arc)
{
    const VcGeVector2d from = p - arc.center;
    const double toCircle = std::fabs(from.length() - arc.radius);
    double turn = std::fmod(std::atan2(from.y, from.x) - arc.start, geom::kTwoPi);
    if (turn < 0)
        turn += geom::kTwoPi;
    if (turn <= arc.sweep)
        return toCircle;
    return std::min(p.distanceTo(arc.at(arc.start)), p.distanceTo(arc.at(arc.start + arc.sweep)));
}

double distanceToBulge(const Point& p, const Point& from, const Point& to, double bulge)
{
    const VcGeVector2d chord = to - from;
    if (bulge == 0 || chord.lengthSqrd() == 0)
        return distanceToPiece(p, from, to);
    const Point center = from + chord * 0.5 + chord.perpVector() * ((1 - bulge * bulge) / (4 * bulge));
    const VcGeVector2d radius = (bulge > 0 ? from : to) - center;
    return distanceToArc(p, {center, radius.length(), std::atan2(radius.y, radius.x), 4 * std::atan(std::fabs(bulge))});
}

Distance toLine(const VcDbEntity& e, const Pick& pick)
{
    const auto& line = static_cast<const VcDbLine&>(e);
    const VcGePoint3d a = line.startPoint(), b = line.endPoint();
    return distanceToPiece(pick.at, {a.x, a.y}, {b.x, b.y});
}

Distance toCircle(const VcDbEntity& e, const Pick& pick)
{
    const auto& circle = static_cast<const VcDbCircle&>(e);
    const VcGePoint3d center = circle.center();
    if (!isUpright(circle.normal()))
        return std::nullopt;
    return std::fabs(pick.at.distanceTo({center.x, center.y}) - circle.radius());
}

Distance toArc(const VcDbEntity& e, const Pick& pick)
{
    const auto& arc = static_cast<const VcDbArc&>(e);
    const VcGePoint3d center = arc.center();
    if (!isUpright(arc.normal()))
        return std::nullopt;
    return distanceToArc(pick.at, {{center.x, center.y}, arc.radius(), arc.startAngle(), arc.totalAngle()});
}

Distance toPolyline(const VcDbEntity& e, const Pick& pick)
{
    const auto& line = static_cast<const VcDbPolyline&>(e);
    const unsigned count = line.numVerts();
    if (!isUpright(line.normal()) || line.hasWidth() || count < 2)
        return std::nullopt;
    Point from, to;
    double bulge = 0, nearest = HUGE_VAL;
    line.getPointAt(0, from);
    for (unsigned i = 0; i < (line.isClosed() ? count : count - 1); ++i, from = to) {
        line.getPointAt((i + 1) % count, to);
        if (line.hasBulges())
            line.getBulgeAt(i, bulge);
        nearest = std::min(nearest, distanceToBulge(pick.at, from, to, bulge));
    }
    return nearest;
}

Distance toText(const VcDbEntity& e, const Pick& pick)
{
    VcDbExtents own;
    if (!fillsItsBox(e) || (!pick.extents && e.getGeomExtents(own) != Vcad::eOk))
        return std::nullopt;
    const VcDbExtents& extents = pick.extents ? *pick.extents : own;
    const VcGePoint3d &low = extents.minPoint(), &high = extents.maxPoint();
    if (extents.isEmpty())
        return std::nullopt;
    return distanceToBox(pick.at, {low.x, low.y}, {high.x, high.y});
}

struct Entry {
    VcRxClass* (*desc)();
    Distance (*distance)(const VcDbEntity&, const Pick&);
};

constexpr Entry kPlain[] = {
    {&VcDbLine::desc, toLine},      {&VcDbPolyline::desc, toPolyline}, {&VcDbCircle::desc, toCircle},
    {&VcDbArc::desc, toArc},        {&VcDbText::desc, toText},         {&VcDbMText::desc, toText},
    {&VcDbAttribute::desc, toText},
};

}

bool fillsItsBox(const VcDbEntity& entity)
{
    const VcRxClass* cls = entity.isA();
    if (cls == VcDbMText::desc()) {
        const auto& text = static_cast<const VcDbMText&>(entity);
        return isUpright(text.normal()) && text.direction() == VcGeVector3d::xAxis();
    }
    if (cls != VcDbText::desc() && cls != VcDbAttribute::desc())
        return false;
    const auto& text = static_cast<const VcDbText&>(entity);
    return isUpright(text.normal()) && text.rotation() == 0;
}

std::optional<double> plainDistance(const VcDbEntity& entity, const VcDbExtents* extents, const VcGePoint3d& at,
                                    const PickView& view)
{
    if (!view.isLevel())
        return std::nullopt;
    const VcRxClass* cls = entity.isA();
    for (const Entry& entry : kPlain)
        if (cls == entry.desc())
            return entry.distance(entity, {{at.x, at.y}, extents});
    return std::nullopt;
}

std::optional<double> plainDistance(const VcDbEntity& part, const VcGeMatrix3d& toWorld, const VcGePoint3d& at,
                                    const PickView& view)
{
    const auto& m = toWorld.entry;
    const bool turns = m[0][0] == m[1][1] && m[0][1] == -m[1][0], mirrors = m[0][0] == -m[1][1] && m[0][1] == m[1][0];
    const double squared = m[0][0] * m[0][0] + m[0][1] * m[0][1];
    if (m[0][2] != 0 || m[1][2] != 0 || m[2][0] != 0 || m[2][1] != 0 || !(turns || mirrors) || !(squared > 0))
        return std::nullopt;
    const double x = at.x - m[0][3], y = at.y - m[1][3];
    const VcGePoint3d inBlock((m[0][0] * x + m[1][0] * y) / squared, (m[0][1] * x + m[1][1] * y) / squared, 0);
    const auto distance = plainDistance(part, nullptr, inBlock, view);
    return distance ? std::optional(*distance * std::sqrt(squared)) : std::nullopt;
}

}  // namespace vk::edit
