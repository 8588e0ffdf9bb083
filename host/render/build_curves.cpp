// Lines, circles, arcs, ellipses, splines, points.
#include "host/base/unicode.h"
#include "host/db/database.h"
#include "host/db/ent_util.h"
#include "host/render/build_parts.h"
#include "sdk/vcdb_curves.h"
#include "sdk/vcdb_tables.h"

namespace vk::render {

using geom::Frame;

namespace {

void strokeWithThickness(ListBuilder& b, std::uint32_t firstFigure, double thickness, const VcGeVector3d& normal)
{
    b.stroke(firstFigure);
    if (thickness != 0)
        b.extrude(firstFigure, normal.normal() * thickness);
}

void buildLine(const VcDbEntity& e, ListBuilder& b)
{
    const auto& line = static_cast<const VcDbLine&>(e);
    const std::uint32_t first = b.figureCount();
    b.beginFigure();
    b.point(line.startPoint());
    b.point(line.endPoint());
    b.endFigure(false);
    strokeWithThickness(b, first, line.thickness(), line.normal());
}

template <class Round>
EllipseArc arcOf(const Round& round, double from, double sweep)
{
    const Frame frame = geom::arbitraryFrame(round.normal());
    return {round.center(), frame.x * round.radius(), frame.y * round.radius(), from, sweep};
}

void strokeArc(ListBuilder& b, const EllipseArc& arc, bool closed, double thickness, const VcGeVector3d& normal)
{
    const std::uint32_t first = b.figureCount();
    b.beginFigure();
    b.arc(arc);
    b.endFigure(closed);
    strokeWithThickness(b, first, thickness, normal);
}

void buildCircle(const VcDbEntity& e, ListBuilder& b)
{
    const auto& circle = static_cast<const VcDbCircle&>(e);
    strokeArc(b, arcOf(circle, 0, geom::kTwoPi), true, circle.thickness(), circle.normal());
}

void buildArc(const VcDbEntity& e, ListBuilder& b)
{
    const auto& arc = static_cast<const VcDbArc&>(e);
    strokeArc(b, arcOf(arc, arc.startAngle(), arc.totalAngle()), false, arc.thickness(), arc.normal());
}

void buildEllipse(const VcDbEntity& e, ListBuilder& b)
{
    const auto& ellipse = static_cast<const VcDbEllipse&>(e);
    double sweep = std::fmod(ellipse.endParam() - ellipse.startParam(), geom::kTwoPi);
    if (sweep <= 1e-12)
        sweep += geom::kTwoPi;
    strokeArc(b, {ellipse.center(), ellipse.majorAxis(), ellipse.minorAxis(), ellipse.startParam(), sweep},
              ellipse.isClosed(), 0, ellipse.normal());
}

void buildSpline(const VcDbEntity& e, ListBuilder& b)
{
    const auto& spline = static_cast<const VcDbSpline&>(e);
    const std::uint32_t first = b.figureCount();
    b.beginFigure();
    addSpline(b, {spline.degree(), spline.controlPoints(), spline.knots(), spline.weights()}, spline.fitPoints());
    b.endFigure(false);
    b.stroke(first, Item::RunsOn);
}

void buildEndless(const VcDbEntity& e, ListBuilder& b)
{
    const auto& line = static_cast<const VcDbUnboundedLine&>(e);
    b.list().endless.push_back({line.basePoint(), line.unitDir(), e.isKindOf(VcDbXline::desc())});
    b.item(Item::Endless, 0, b.list().endless.size() - 1);
}

// Dimensions mark what they measure with points on a layer of their own, which are no part of the picture.
bool isDefinitionPoint(const VcDbEntity& e, const ListBuilder& b)
{
    const auto* layer = b.inBlock ? b.db().objectAs<VcDbLayerTableRecord>(e.layerId()) : nullptr;
    return layer && equalNoCase(layer->nameUtf8(), "Defpoints");
}

void buildPoint(const VcDbEntity& e, ListBuilder& b)
{
    if (isDefinitionPoint(e, b))
        return;
    const auto& point = static_cast<const VcDbPoint&>(e);
    const HeaderVars& header = b.db().header();
    const Frame frame = geom::arbitraryFrame(point.normal());
    const double c = std::cos(point.ecsRotation()), s = std::sin(point.ecsRotation());
    b.list().marks.push_back({point.position(), frame.x * c - frame.y * s, frame.x * s + frame.y * c,
                              std::int16_t(header.integer("$PDMODE", 0)), header.real("$PDSIZE", 0)});
    b.item(Item::Mark, 0, b.list().marks.size() - 1);
    b.grow(geom::Box3d{point.position(), point.position()});
    if (point.thickness() != 0)
        b.line(point.position(), point.position() + point.normal() * point.thickness());
}

constexpr BuildEntry kBuilders[] = {
    {&VcDbLine::desc, buildLine},       {&VcDbArc::desc, buildArc},       {&VcDbCircle::desc, buildCircle},
    {&VcDbEllipse::desc, buildEllipse}, {&VcDbSpline::desc, buildSpline}, {&VcDbUnboundedLine::desc, buildEndless},
    {&VcDbPoint::desc, buildPoint},
};

}

std::span<const BuildEntry> curveBuilders() { return kBuilders; }

}  // namespace vk::render
