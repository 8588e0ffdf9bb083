#include "host/db/hatch_fields.h"

using Edge = VcDbHatch::Edge;
using Loop = VcDbHatch::Loop;
using SplineData = VcDbHatch::SplineData;

static void pointList(FieldVisitor& v, int code, std::vector<VcGePoint2d>& points)
{
    listed(v, code, points, [&](VcGePoint2d& p) { v.point2(code, p); });
}

// A bulge or weight that stands with its point only where the list says so.
static void besidePoint(FieldVisitor& v, int code, double& value, bool isSaid)
{
    if (v.isReading() ? v.peek() == code : isSaid)
        v.real(code, value);
}

static void polylineFields(FieldVisitor& v, Loop& loop)
{
    v.number(72, loop.saysBulges);
    v.number(73, loop.isClosed);
    v.count(93, loop.vertices.size());
    listed(v, 10, loop.vertices, [&](VcDbHatch::Vertex& vertex) {
        v.point2(10, vertex.point);
        besidePoint(v, 42, vertex.bulge, loop.saysBulges);
    });
}

static void fitFields(FieldVisitor& v, SplineData& spline)
{
    v.count(97, spline.fitPoints.size());
    pointList(v, 11, spline.fitPoints);
    if (v.isReading())
        spline.hasTangents = v.peek() == 12;
    if (spline.hasTangents) {
        v.point2(12, spline.startTangent);
        v.point2(13, spline.endTangent);
    }
}

static void splineFields(FieldVisitor& v, SplineData& spline)
{
    v.number(94, spline.degree);
    v.number(73, spline.isRational);
    v.number(74, spline.isPeriodic);
    v.count(95, spline.knots.size());
    v.count(96, spline.controlPoints.size());
    listed(v, 40, spline.knots, [&](double& knot) { v.real(40, knot); });
    listed(v, 10, spline.controlPoints, [&](VcDbHatch::ControlPoint& c) {
        v.point2(10, c.point);
        besidePoint(v, 42, c.weight, spline.isRational);
    });
    // In older files a 97 behind a spline is the loop's number of source objects.
    if (v.isReading())
        spline.saysFitPoints = v.atLeast(DxfVersion::R2010) && v.peek() == 97;
    if (v.isReading() ? spline.saysFitPoints : v.atLeast(DxfVersion::R2010))
        fitFields(v, spline);
}

static void arcFields(FieldVisitor& v, Edge& edge)
{
    v.real(40, edge.radius);
    v.angle(50, edge.startAngle);
    v.angle(51, edge.endAngle);
    v.number(73, edge.isAnticlockwise);
}

static void edgeFields(FieldVisitor& v, Edge& edge)
{
    v.number(72, edge.type);
    if (edge.type == VcDbHatch::kSpline)
        return splineFields(v, edge.spline.make());
    v.point2(10, edge.first);
    if (edge.type != VcDbHatch::kCirArc)
        v.point2(11, edge.second);
    if (edge.type != VcDbHatch::kLine)
        arcFields(v, edge);
}

void hatchLoopField(FieldVisitor& v, Loop& loop)
{
    v.number(92, loop.type);
    if (loop.isPolyline()) {
        polylineFields(v, loop);
    } else {
        v.count(93, loop.edges.size());
        listed(v, 72, loop.edges, [&](Edge& edge) { edgeFields(v, edge); });
    }
    v.count(97, loop.sources.size());
    listed(v, 330, loop.sources, [&](VcDbObjectId& id) { v.ref(330, RefKind::SoftPointer, id); });
}
