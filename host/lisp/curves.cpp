// Geometry of the drawing's objects: points along curves, and object snaps. Curves are in world coordinates, snaps in the
// UCS.

#include "host/db/curve_of.h"
#include "host/edit/editor.h"
#include "host/edit/snap.h"
#include "host/edit/sysvars.h"
#include "host/lisp/arguments.h"
#include "host/lisp/drawing.h"
#include "host/lisp/errors.h"
#include "host/lisp/interpreter.h"
#include "host/lisp/library.h"
#include "host/lisp/printer.h"

#include "vcdb_chains.h"
#include "vcdb_curves.h"

namespace vk::lisp {

namespace {

// The curve that an argument names, open as long as this lives.
class OpenCurve {
public:
    explicit OpenCurve(const Value& value)
    {
        VcDbObjectId id;
        vcdbGetObjectId(id, asEntity(value));
        VcDbEntity* entity = nullptr;
        if (vcdbOpenVcDbEntity(entity, id) != Vcad::eOk || !VcDbCurve::cast(entity)) {
            if (entity)
                entity->close();
            badArgument("curve", value);
        }
        m_curve = VcDbCurve::cast(entity);
    }
    OpenCurve(const OpenCurve&) = delete;
    OpenCurve& operator=(const OpenCurve&) = delete;
    ~OpenCurve() { m_curve->close(); }
    const VcDbCurve* operator->() const { return m_curve; }

private:
    VcDbCurve* m_curve;
};

VcGePoint3d asWorldPoint(const Value& value)
{
    const Point p = asPoint(value);
    return {p.x, p.y, p.z};
}

template <class T>
Value triple(const T& v)
{
    return pointValue(v.x, v.y, v.z);
}

Value numberIf(Vcad::ErrorStatus status, double number) { return status == Vcad::eOk ? Value::real(number) : Value(); }

template <class T>
Value tripleIf(Vcad::ErrorStatus status, const T& v)
{
    return status == Vcad::eOk ? triple(v) : Value();
}

// One for each shape that the questions of a curve have.
template <Vcad::ErrorStatus (VcDbCurve::*ask)(double&) const>
Value numberOf(Interpreter&, Args args)
{
    const OpenCurve curve(args[0]);
    double number = 0;
    const auto status = ((*curve.operator->()).*ask)(number);
    return numberIf(status, number);
}

template <Vcad::ErrorStatus (VcDbCurve::*ask)(VcGePoint3d&) const>
Value pointOf(Interpreter&, Args args)
{
    const OpenCurve curve(args[0]);
    VcGePoint3d p;
    const auto status = ((*curve.operator->()).*ask)(p);
    return tripleIf(status, p);
}

template <class T, Vcad::ErrorStatus (VcDbCurve::*ask)(double, T&) const>
Value tripleAt(Interpreter&, Args args)
{
    const OpenCurve curve(args[0]);
    T found;
    const auto status = ((*curve.operator->()).*ask)(asNumber(args[1]), found);
    return tripleIf(status, found);
}

template <Vcad::ErrorStatus (VcDbCurve::*ask)(double, double&) const>
Value numberAt(Interpreter&, Args args)
{
    const OpenCurve curve(args[0]);
    double number = 0;
    const auto status = ((*curve.operator->()).*ask)(asNumber(args[1]), number);
    return numberIf(status, number);
}

template <Vcad::ErrorStatus (VcDbCurve::*ask)(const VcGePoint3d&, double&) const>
Value numberAtPoint(Interpreter&, Args args)
{
    const OpenCurve curve(args[0]);
    double number = 0;
    const auto status = ((*curve.operator->()).*ask)(asWorldPoint(args[1]), number);
    return numberIf(status, number);
}

Value closestPoint(Interpreter&, Args args)
{
    const OpenCurve curve(args[0]);
    VcGePoint3d p;
    const auto status = curve->getClosestPointTo(asWorldPoint(args[1]), p, bool(argument(args, 2)));
    return tripleIf(status, p);
}

Value closestPointSeen(Interpreter&, Args args)
{
    const OpenCurve curve(args[0]);
    const VcGePoint3d along = asWorldPoint(args[2]);
    VcGePoint3d p;
    const auto status = curve->getClosestPointTo(asWorldPoint(args[1]), along.asVector(), p, bool(argument(args, 3)));
    return tripleIf(status, p);
}

Value isClosed(Interpreter& lisp, Args args) { return lisp.truth(OpenCurve(args[0])->isClosed()); }

// Comes back to its start as if it had none.
Value isPeriodic(Interpreter& lisp, Args args)
{
    const OpenCurve curve(args[0]);
    const auto* ellipse = VcDbEllipse::cast(curve.operator->());
    const auto* spline = VcDbSpline::cast(curve.operator->());
    return lisp.truth(VcDbCircle::cast(curve.operator->()) || (ellipse && ellipse->isClosed()) ||
                      (spline && spline->isPeriodic()));
}

bool isStraight(const geom::Curve& curve)
{
    const auto start = geom::startPoint(curve), end = geom::endPoint(curve);
    return start && end && geom::length(curve) <= start->distanceTo(*end) * (1 + 1e-12);
}

// Straight curves lie in a plane as well.
Value isPlanar(Interpreter& lisp, Args args)
{
    const OpenCurve curve(args[0]);
    const auto shape = curveOf(*curve.operator->());
    if (!shape)
        return Value();
    const bool bends = std::holds_alternative<geom::Nurbs>(*shape) || std::holds_alternative<geom::Polyline3>(*shape);
    return lisp.truth(!bends || geom::planeOf(*shape) || isStraight(*shape));
}

// The point that a snap finds, or nil; modes as "end,mid".
Value osnap(Interpreter&, Args args)
{
    edit::Editor& ed = edit::Editor::instance();
    const auto modes = edit::parseSnapModes(asText(args[1]));
    if (!modes)
        throw LispError("unknown object snap: " + print(args[1]));
    VcGeMatrix3d m;
    vcdbUcsMatrix(m, &ed.drawing());
    const auto found = edit::snapTo(ed, *modes, m * asWorldPoint(args[0]), m * ed.lastPoint);
    return found ? triple(m.inverse() * *found) : Value();
}

constexpr Builtin kCurves[] = {
    {"OSNAP", osnap, 2, 2},
    {"VLAX-CURVE-GETSTARTPARAM", numberOf<&VcDbCurve::getStartParam>, 1, 1},
    {"VLAX-CURVE-GETENDPARAM", numberOf<&VcDbCurve::getEndParam>, 1, 1},
    {"VLAX-CURVE-GETAREA", numberOf<&VcDbCurve::getArea>, 1, 1},
    {"VLAX-CURVE-GETSTARTPOINT", pointOf<&VcDbCurve::getStartPoint>, 1, 1},
    {"VLAX-CURVE-GETENDPOINT", pointOf<&VcDbCurve::getEndPoint>, 1, 1},
    {"VLAX-CURVE-GETPOINTATPARAM", tripleAt<VcGePoint3d, &VcDbCurve::getPointAtParam>, 2, 2},
    {"VLAX-CURVE-GETPOINTATDIST", tripleAt<VcGePoint3d, &VcDbCurve::getPointAtDist>, 2, 2},
    {"VLAX-CURVE-GETFIRSTDERIV", tripleAt<VcGeVector3d, &VcDbCurve::getFirstDeriv>, 2, 2},
    {"VLAX-CURVE-GETSECONDDERIV", tripleAt<VcGeVector3d, &VcDbCurve::getSecondDeriv>, 2, 2},
    {"VLAX-CURVE-GETDISTATPARAM", numberAt<&VcDbCurve::getDistAtParam>, 2, 2},
    {"VLAX-CURVE-GETPARAMATDIST", numberAt<&VcDbCurve::getParamAtDist>, 2, 2},
    {"VLAX-CURVE-GETPARAMATPOINT", numberAtPoint<&VcDbCurve::getParamAtPoint>, 2, 2},
    {"VLAX-CURVE-GETDISTATPOINT", numberAtPoint<&VcDbCurve::getDistAtPoint>, 2, 2},
    {"VLAX-CURVE-GETCLOSESTPOINTTO", closestPoint, 2, 3},
    {"VLAX-CURVE-GETCLOSESTPOINTTOPROJECTION", closestPointSeen, 3, 4},
    {"VLAX-CURVE-ISCLOSED", isClosed, 1, 1},
    {"VLAX-CURVE-ISPERIODIC", isPeriodic, 1, 1},
    {"VLAX-CURVE-ISPLANAR", isPlanar, 1, 1},
};

}  // namespace

void defineCurves(Interpreter& lisp) { lisp.define(kCurves); }

}  // namespace vk::lisp
