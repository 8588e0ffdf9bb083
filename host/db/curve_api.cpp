// What modules can ask of every curve, answered by the curve engine.
#include "host/db/curve_of.h"
#include "host/geom/apparent.h"
#include "host/geom/curve_edit.h"
#include "host/geom/intersect.h"
#include "host/geom/offset.h"
#include "host/geom/prolong.h"
#include "host/geom/tangent_circle.h"
#include "sdk/vcdb_curves.h"

#include <cmath>

namespace g = vk::geom;

namespace {

using Status = Vcad::ErrorStatus;

// Runs a question on the curve; one that has no shape answers nothing.
template <class Ask>
Status ask(const VcDbCurve& entity, Ask&& question)
{
    const auto curve = curveOf(entity);
    return curve ? question(*curve) : Vcad::eNotApplicable;
}

template <class T>
Status give(T& out, const std::optional<T>& value, Status otherwise)
{
    if (!value)
        return otherwise;
    out = *value;
    return Vcad::eOk;
}

Status give(double& out, double value)
{
    return give(out, std::isfinite(value) ? std::optional(value) : std::nullopt, Vcad::eNotApplicable);
}

// Points that people and files give have been rounded on their way.
double onCurveTolerance(const g::Curve& curve) { return std::max(1e-6, 10 * g::meetingTolerance(curve, curve)); }

bool isWithin(const g::Curve& curve, double param)
{
    const g::Interval range = g::paramRange(curve);
    const double slack = std::isfinite(range.to - range.from) ? 1e-9 * (range.to - range.from) : 0;
    return g::isClosed(curve) ? std::isfinite(param) : param >= range.from - slack && param <= range.to + slack;
}

// Of the curve or, where its ends are taken to go on, of what they follow.
std::optional<g::Closest> closestOf(const g::Curve& curve, const VcGePoint3d& to, bool extend)
{
    auto best = g::closestPoint(extend ? g::carrierOf(curve) : curve, to);
    for (const bool atStart : {true, false}) {
        const auto beyond = extend ? g::pathBeyond(curve, atStart) : std::nullopt;
        const auto near = beyond ? g::closestPoint(*beyond, to) : std::nullopt;
        if (near && (!best || near->distance < best->distance))
            best = near;
    }
    return best;
}

Status handOver(const std::vector<g::Curve>& curves, const VcDbEntity& like, std::vector<VcDbEntity*>& out)
{
    std::vector<std::unique_ptr<VcDbEntity>> made;
    for (const g::Curve& curve : curves) {
        made.push_back(makeEntityOf(curve, like));
        if (!made.back())
            return Vcad::eNotApplicable;
    }
    for (auto& entity : made)
        out.push_back(entity.release());
    return Vcad::eOk;
}

}

Status VcDbCurve::getStartParam(double& param) const
{
    return ask(*this, [&](const g::Curve& c) { return give(param, g::paramRange(c).from); });
}

Status VcDbCurve::getEndParam(double& param) const
{
    return ask(*this, [&](const g::Curve& c) { return give(param, g::paramRange(c).to); });
}

Status VcDbCurve::getStartPoint(VcGePoint3d& point) const
{
    return ask(*this, [&](const g::Curve& c) { return give(point, g::startPoint(c), Vcad::eNotApplicable); });
}

Status VcDbCurve::getEndPoint(VcGePoint3d& point) const
{
    return ask(*this, [&](const g::Curve& c) { return give(point, g::endPoint(c), Vcad::eNotApplicable); });
}

Status VcDbCurve::getPointAtParam(double param, VcGePoint3d& point) const
{
    return ask(*this, [&](const g::Curve& c) {
        return give(point, isWithin(c, param) ? std::optional(g::pointAt(c, param)) : std::nullopt, Vcad::eOutOfRange);
    });
}

Status VcDbCurve::getParamAtPoint(const VcGePoint3d& point, double& param) const
{
    return ask(*this, [&](const g::Curve& c) {
        return give(param, g::paramAt(c, point, onCurveTolerance(c)), Vcad::eInvalidInput);
    });
}

Status VcDbCurve::getDistAtParam(double param, double& distance) const
{
    return ask(*this, [&](const g::Curve& c) {
        return isWithin(c, param) ? give(distance, g::lengthBetween(c, g::paramRange(c).from, param))
                                  : Vcad::eOutOfRange;
    });
}

Status VcDbCurve::getParamAtDist(double distance, double& param) const
{
    return ask(*this, [&](const g::Curve& c) { return give(param, g::paramAtLength(c, distance), Vcad::eOutOfRange); });
}

Status VcDbCurve::getDistAtPoint(const VcGePoint3d& point, double& distance) const
{
    double param = 0;
    const Status status = getParamAtPoint(point, param);
    return status ? status : getDistAtParam(param, distance);
}

Status VcDbCurve::getPointAtDist(double distance, VcGePoint3d& point) const
{
    double param = 0;
    const Status status = getParamAtDist(distance, param);
    return status ? status : getPointAtParam(param, point);
}

Status VcDbCurve::getFirstDeriv(double param, VcGeVector3d& derivative) const
{
    return ask(*this, [&](const g::Curve& c) {
        return give(derivative, isWithin(c, param) ? std::optional(g::derivativesAt(c, param).first) : std::nullopt,
                    Vcad::eOutOfRange);
    });
}

Status VcDbCurve::getSecondDeriv(double param, VcGeVector3d& derivative) const
{
    return ask(*this, [&](const g::Curve& c) {
        return give(derivative, isWithin(c, param) ? std::optional(g::derivativesAt(c, param).second) : std::nullopt,
                    Vcad::eOutOfRange);
    });
}

Status VcDbCurve::getClosestPointTo(const VcGePoint3d& given, VcGePoint3d& onCurve, bool extend) const
{
    return ask(*this, [&](const g::Curve& c) {
        const auto near = closestOf(c, given, extend);
        return near ? give(onCurve, std::optional(near->point), Vcad::eOk) : Vcad::eNotApplicable;
    });
}

Status VcDbCurve::getClosestPointTo(const VcGePoint3d& given, const VcGeVector3d& normal, VcGePoint3d& onCurve,
                                    bool extend) const
{
    if (normal.lengthSqrd() == 0)
        return Vcad::eInvalidInput;
    return ask(*this, [&](const g::Curve& c) {
        const g::Curve whole = extend ? g::carrierOf(c) : c;
        const VcGePlane plane(given, normal);
        const auto near = g::closestPoint(g::transformed(whole, VcGeMatrix3d::projection(plane, normal)), given);
        const auto param = near ? g::paramSeenAt(whole, near->point, normal) : std::nullopt;
        return give(onCurve, param ? std::optional(g::pointAt(whole, *param)) : std::nullopt, Vcad::eNotApplicable);
    });
}

Status VcDbCurve::getArea(double& area) const
{
    return ask(*this, [&](const g::Curve& c) {
        return std::isfinite(g::length(c)) ? give(area, g::area(c)) : Vcad::eNotApplicable;
    });
}

Status VcDbCurve::getSplitCurves(const std::vector<double>& params, std::vector<VcDbEntity*>& pieces) const
{
    return ask(*this, [&](const g::Curve& c) { return handOver(g::splitAt(c, params), *this, pieces); });
}

Status VcDbCurve::getSplitCurves(const std::vector<VcGePoint3d>& points, std::vector<VcDbEntity*>& pieces) const
{
    std::vector<double> params;
    for (const VcGePoint3d& p : points)
        if (const Status status = getParamAtPoint(p, params.emplace_back()))
            return status;
    return getSplitCurves(params, pieces);
}

Status VcDbCurve::getOffsetCurves(double distance, std::vector<VcDbEntity*>& curves) const
{
    return getOffsetCurvesGivenPlaneNormal(VcGeVector3d::zAxis(), distance, curves);
}

Status VcDbCurve::getOffsetCurvesGivenPlaneNormal(const VcGeVector3d& normal, double distance,
                                                  std::vector<VcDbEntity*>& curves) const
{
    return ask(*this, [&](const g::Curve& c) {
        const g::OffsetResult result = g::offset(c, distance, g::GapFill::Extend, normal);
        return result.curves.empty() ? Vcad::eNotApplicable : handOver(result.curves, *this, curves);
    });
}

Status VcDbCurve::reverseCurve()
{
    return ask(*this, [&](const g::Curve& c) {
        const bool round = std::holds_alternative<g::Circle>(c) || std::holds_alternative<g::Arc>(c);
        return !round && setCurveOf(*this, g::reversed(c)) ? Vcad::eOk : Vcad::eNotApplicable;
    });
}

Status VcDbCurve::extend(double param)
{
    return ask(*this, [&](const g::Curve& c) {
        const g::Interval range = g::paramRange(c);
        const bool atStart = param < range.from;
        if ((param >= range.from && param <= range.to) || !std::isfinite(param))
            return Vcad::eOutOfRange;
        const auto longer = g::canProlong(c, atStart)
                                ? g::betweenEnds(c, atStart ? param : range.from, atStart ? range.to : param)
                                : std::nullopt;
        return longer && setCurveOf(*this, *longer) ? Vcad::eOk : Vcad::eNotApplicable;
    });
}

Status VcDbCurve::extend(bool atStart, const VcGePoint3d& to)
{
    return ask(*this, [&](const g::Curve& c) {
        const auto meeting = g::intersect(c, g::Segment{to, to}, g::Extend::First, onCurveTolerance(c));
        const g::Interval range = g::paramRange(c);
        for (const g::Crossing& crossing : meeting.points)
            if (atStart ? crossing.first < range.from : crossing.first > range.to)
                return extend(crossing.first);
        return Vcad::eInvalidInput;
    });
}
