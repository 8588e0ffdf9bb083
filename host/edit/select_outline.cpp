#include "host/edit/select_outline.h"

#include "host/db/curve_of.h"
#include "host/db/solid_model.h"
#include "host/db/text_geometry.h"
#include "host/geom/arbitrary_axis.h"
#include "host/geom/curve.h"
#include "sdk/vcdb_curves.h"
#include "sdk/vcdb_faces.h"
#include "sdk/vcdb_polylines.h"
#include "sdk/vcdb_solids.h"
#include "sdk/vcdb_text.h"
#include "sdk/vcdb_viewport.h"

namespace vk::edit {

using geom::Frame;
using Points = std::vector<VcGePoint3d>;

void OutlineBuilder::chain(Points points, bool closed)
{
    if (points.empty())
        return;
    if (closed)
        points.push_back(points.front());
    outlines.push_back({std::move(points), false});
}

void OutlineBuilder::filled(Points points)
{
    if (!points.empty())
        outlines.push_back({std::move(points), true});
}

void OutlineBuilder::arc(Points& points, const VcGePoint3d& center, const VcGeVector3d& u, const VcGeVector3d& v,
                         double from, double sweep) const
{
    constexpr double kMostChords = 8192;
    const double radius = std::max(u.length(), v.length());
    // A chord that spans 2a stands back from its arc by r (1 - cos a).
    const double half = std::acos(std::clamp(1 - m_tolerance / std::max(radius, 1e-300), 0.5, 1.0));
    const double wanted = half > 0 ? std::fabs(sweep) / (2 * half) : kMostChords;
    const int chords = int(std::clamp(std::ceil(wanted), 2.0, kMostChords));
    // Most points come from the one before by a turn, so that rounding adds up over a few only.
    constexpr int kTurns = 16;
    const double step = sweep / chords, cosStep = std::cos(step), sinStep = std::sin(step);
    double c = 1, s = 0;
    points.reserve(points.size() + std::size_t(chords) + 1);
    for (int i = 0; i <= chords; ++i) {
        if (i % kTurns == 0 || i == chords) {
            c = std::cos(from + sweep * i / chords);
            s = std::sin(from + sweep * i / chords);
        }
        points.push_back(center + u * c + v * s);
        const double turned = c * cosStep - s * sinStep;
        s = s * cosStep + c * sinStep;
        c = turned;
    }
}

void OutlineBuilder::infinite(const VcGePoint3d& base, const VcGeVector3d& direction, bool bothWays)
{
    lines.push_back({base, direction, bothWays});
}

namespace {

void outlineLine(const VcDbEntity& e, OutlineBuilder& b)
{
    const auto& line = static_cast<const VcDbLine&>(e);
    b.chain({line.startPoint(), line.endPoint()});
}

void outlinePoint(const VcDbEntity& e, OutlineBuilder& b) { b.chain({static_cast<const VcDbPoint&>(e).position()}); }

void outlineRay(const VcDbEntity& e, OutlineBuilder& b)
{
    const auto& line = static_cast<const VcDbUnboundedLine&>(e);
    b.infinite(line.basePoint(), line.unitDir(), e.isKindOf(VcDbXline::desc()));
}

void outlineCircle(const VcDbEntity& e, OutlineBuilder& b)
{
    const auto& circle = static_cast<const VcDbCircle&>(e);
    const Frame frame = geom::arbitraryFrame(circle.normal());
    Points points;
    b.arc(points, circle.center(), frame.x * circle.radius(), frame.y * circle.radius(), 0, geom::kTwoPi);
    b.chain(std::move(points));
}

void outlineArc(const VcDbEntity& e, OutlineBuilder& b)
{
    const auto& arc = static_cast<const VcDbArc&>(e);
    const Frame frame = geom::arbitraryFrame(arc.normal());
    Points points;
    b.arc(points, arc.center(), frame.x * arc.radius(), frame.y * arc.radius(), arc.startAngle(), arc.totalAngle());
    b.chain(std::move(points));
}

void outlineEllipse(const VcDbEntity& e, OutlineBuilder& b)
{
    const auto& ellipse = static_cast<const VcDbEllipse&>(e);
    double sweep = std::fmod(ellipse.endParam() - ellipse.startParam(), geom::kTwoPi);
    if (sweep <= 0)
        sweep += geom::kTwoPi;
    Points points;
    b.arc(points, ellipse.center(), ellipse.majorAxis(), ellipse.minorAxis(), ellipse.startParam(), sweep);
    b.chain(std::move(points));
}

struct BulgeVertex {
    VcGePoint2d point;
    double bulge, startWidth, endWidth;
};

// The points from one vertex to the next, in the plane's coordinates.
Points bulgePoints(const BulgeVertex& from, const VcGePoint2d& to, const OutlineBuilder& b)
{
    const VcGePoint3d start(from.point.x, from.point.y, 0), end(to.x, to.y, 0);
    const VcGeVector2d chord = to - from.point;
    if (from.bulge == 0 || chord.lengthSqrd() == 0)
        return {start, end};
    const double k = from.bulge;
    const VcGePoint2d center = from.point + chord * 0.5 + chord.perpVector() * ((1 - k * k) / (4 * k));
    const VcGeVector2d radius = from.point - center;
    Points points;
    b.arc(points, VcGePoint3d(center.x, center.y, 0), VcGeVector3d(radius.x, radius.y, 0),
          VcGeVector3d(-radius.y, radius.x, 0), 0, 4 * std::atan(k));
    points.back() = end;
    return points;
}

// Both sides of a piece whose width goes evenly from one end to the other.
Points ribbon(const Points& middle, double startWidth, double endWidth)
{
    Points left, right;
    for (std::size_t i = 0; i < middle.size(); ++i) {
        const VcGeVector3d along = middle[std::min(i + 1, middle.size() - 1)] - middle[i ? i - 1 : 0];
        const double half = (startWidth + (endWidth - startWidth) * double(i) / double(middle.size() - 1)) / 2;
        const VcGeVector3d side = VcGeVector3d(-along.y, along.x, 0).normal() * half;
        left.push_back(middle[i] + side);
        right.push_back(middle[i] - side);
    }
    left.insert(left.end(), right.rbegin(), right.rend());
    return left;
}

Points raised(Points points, const Frame& frame, double elevation)
{
    for (VcGePoint3d& p : points)
        p = frame.toWorld(VcGePoint3d(p.x, p.y, elevation));
    return points;
}

void outlineBulges(const std::vector<BulgeVertex>& vertices, bool closed, const VcGeVector3d& normal, double elevation,
                   OutlineBuilder& b)
{
    const Frame frame = geom::arbitraryFrame(normal);
    Points middle;
    const std::size_t pieces = vertices.empty() ? 0 : vertices.size() - (closed ? 0 : 1);
    for (std::size_t i = 0; i < pieces; ++i) {
        const BulgeVertex& from = vertices[i];
        const Points points = bulgePoints(from, vertices[(i + 1) % vertices.size()].point, b);
        if (from.startWidth > 0 || from.endWidth > 0)
            b.filled(raised(ribbon(points, from.startWidth, from.endWidth), frame, elevation));
        middle.insert(middle.end(), points.begin() + (middle.empty() ? 0 : 1), points.end());
    }
    if (pieces == 0)
        for (const BulgeVertex& v : vertices)
            middle.emplace_back(v.point.x, v.point.y, 0);
    b.chain(raised(std::move(middle), frame, elevation));
}

void outlinePolyline(const VcDbEntity& e, OutlineBuilder& b)
{
    const auto& polyline = static_cast<const VcDbPolyline&>(e);
    std::vector<BulgeVertex> vertices(polyline.numVerts());
    for (unsigned i = 0; i < vertices.size(); ++i) {
        BulgeVertex& v = vertices[i];
        polyline.getPointAt(i, v.point);
        polyline.getBulgeAt(i, v.bulge);
        polyline.getWidthsAt(i, v.startWidth, v.endWidth);
    }
    outlineBulges(vertices, polyline.isClosed(), polyline.normal(), polyline.elevation(), b);
}

// Control points of a curve that has been smoothed are not seen.
bool isFrame(const VcDbEntity& vertex)
{
    return (static_cast<const VcDbVertex&>(vertex).vertexFlags() & VcDbVertex::kSplineFrame) != 0;
}

void outline2dPolyline(const VcDbEntity& e, OutlineBuilder& b)
{
    const auto& polyline = static_cast<const VcDb2dPolyline&>(e);
    std::vector<BulgeVertex> vertices;
    for (const VcDbEntity* entity : polyline.vertices())
        if (const auto* v = VcDb2dVertex::cast(entity); v && !isFrame(*v))
            vertices.push_back({v->position().convert2d(), v->bulge(), v->startWidth(), v->endWidth()});
    outlineBulges(vertices, polyline.isClosed(), polyline.normal(), polyline.elevation(), b);
}

void outline3dPolyline(const VcDbEntity& e, OutlineBuilder& b)
{
    const auto& polyline = static_cast<const VcDb3dPolyline&>(e);
    Points points;
    for (const VcDbEntity* entity : polyline.vertices())
        if (const auto* v = VcDbVertex::cast(entity); v && !isFrame(*v))
            points.push_back(v->position());
    b.chain(std::move(points), polyline.isClosed());
}

Points pointsOf(const geom::Nurbs& nurbs)
{
    constexpr int kPiecesPerSpan = 24;
    const geom::Curve curve = nurbs;
    const auto& knots = nurbs.knots;
    Points points{geom::pointAt(curve, knots[std::size_t(nurbs.degree)])};
    for (std::size_t i = std::size_t(nurbs.degree); i < nurbs.poles.size(); ++i)
        for (int k = 1; k <= kPiecesPerSpan && knots[i + 1] > knots[i]; ++k)
            points.push_back(geom::pointAt(curve, knots[i] + (knots[i + 1] - knots[i]) * k / kPiecesPerSpan));
    return points;
}

void outlineSpline(const VcDbEntity& e, OutlineBuilder& b)
{
    const auto& spline = static_cast<const VcDbSpline&>(e);
    const auto curve = curveOf(spline);
    const auto* nurbs = curve ? std::get_if<geom::Nurbs>(&*curve) : nullptr;
    if (!nurbs) {
        b.chain(spline.fitPoints().empty() ? spline.controlPoints() : spline.fitPoints());
        return;
    }
    b.chain(pointsOf(*nurbs));
}

// Edges and lines of solids are of these kinds only.
struct CurveOutline {
    OutlineBuilder& b;

    void operator()(const geom::Segment& s) const { b.chain({s.start, s.end}); }
    void operator()(const geom::Circle& c) const { turn(c.center, c.radius, c.normal, 0, geom::kTwoPi); }
    void operator()(const geom::Arc& a) const { turn(a.center, a.radius, a.normal, a.start, a.end - a.start); }
    void operator()(const geom::Ellipse& e) const
    {
        Points points;
        b.arc(points, e.center, e.major, e.normal.normal().crossProduct(e.major) * e.ratio, e.start, e.end - e.start);
        b.chain(std::move(points));
    }
    void operator()(const geom::Nurbs& n) const { b.chain(pointsOf(n)); }
    void operator()(const geom::Polyline3& p) const { b.chain(p.vertices, p.closed); }
    template <class Other>
    void operator()(const Other&) const
    {
    }

    void turn(const VcGePoint3d& center, double radius, const VcGeVector3d& normal, double from, double sweep) const
    {
        const Frame frame = geom::arbitraryFrame(normal);
        Points points;
        b.arc(points, center, frame.x * radius, frame.y * radius, from, sweep);
        b.chain(std::move(points));
    }
};

void outlineSolid(const VcDbEntity& e, OutlineBuilder& b)
{
    for (const geom::Curve& curve : drawnCurvesOf(static_cast<const VcDbModelerGeometry&>(e)))
        std::visit(CurveOutline{b}, curve);
}

void outlineQuad(const VcDbEntity& e, OutlineBuilder& b)
{
    const auto& quad = static_cast<const VcDbFilledQuad&>(e);
    Points points(4);
    // The third and fourth corners are stored in crossed order.
    for (const unsigned corner : {0u, 1u, 2u, 3u})
        quad.getPointAt(corner, points[corner < 2 ? corner : 5 - corner]);
    b.filled(std::move(points));
}

void outlineFace(const VcDbEntity& e, OutlineBuilder& b)
{
    const auto& face = static_cast<const VcDbFace&>(e);
    Points corners(4);
    for (unsigned i = 0; i < 4; ++i)
        face.getVertexAt(i, corners[i]);
    for (unsigned i = 0; i < 4; ++i)
        if (bool visible = true; face.isEdgeVisibleAt(i, visible) == Vcad::eOk && visible)
            b.chain({corners[i], corners[(i + 1) % 4]});
}

void outlineViewport(const VcDbEntity& e, OutlineBuilder& b)
{
    const auto& viewport = static_cast<const VcDbViewport&>(e);
    const VcGePoint3d c = viewport.centerPoint();
    const VcGeVector3d right(viewport.width() / 2, 0, 0), up(0, viewport.height() / 2, 0);
    b.chain({c - right - up, c + right - up, c + right + up, c - right + up}, true);
}

void outlineBox(const vktext::Box& box, const VcGePoint3d& base, const VcGeVector3d& x, const VcGeVector3d& y,
                OutlineBuilder& b)
{
    b.filled({base + x * box.left + y * box.bottom, base + x * box.right + y * box.bottom,
              base + x * box.right + y * box.top, base + x * box.left + y * box.top});
}

void outlineText(const VcDbEntity& e, OutlineBuilder& b)
{
    const auto& text = static_cast<const VcDbText&>(e);
    const auto* definition = VcDbAttributeDefinition::cast(&e);
    const std::string& drawn = definition ? definition->tagUtf8() : text.textUtf8();
    const vktext::Box box = vktext::lineBox(lineLooks(text), text.height(), drawn);
    const Frame frame = geom::arbitraryFrame(text.normal());
    const double c = std::cos(text.rotation()), s = std::sin(text.rotation());
    outlineBox(box, drawnPosition(text, drawn), frame.x * c + frame.y * s, frame.y * c - frame.x * s, b);
}

void outlineMText(const VcDbEntity& e, OutlineBuilder& b)
{
    const auto& text = static_cast<const VcDbMText&>(e);
    const VcGeVector3d x = text.direction().normal();
    outlineBox(drawnBoxOf(text), text.location(), x, text.normal().crossProduct(x), b);
}

struct Entry {
    VcRxClass* (*desc)();
    void (*outline)(const VcDbEntity&, OutlineBuilder&);
};

constexpr Entry kOutlines[] = {
    {&VcDbLine::desc, outlineLine},
    {&VcDbPolyline::desc, outlinePolyline},
    {&VcDbArc::desc, outlineArc},
    {&VcDbCircle::desc, outlineCircle},
    {&VcDbText::desc, outlineText},
    {&VcDbMText::desc, outlineMText},
    {&VcDb2dPolyline::desc, outline2dPolyline},
    {&VcDb3dPolyline::desc, outline3dPolyline},
    {&VcDbEllipse::desc, outlineEllipse},
    {&VcDbSpline::desc, outlineSpline},
    {&VcDbPoint::desc, outlinePoint},
    {&VcDbFilledQuad::desc, outlineQuad},
    {&VcDbFace::desc, outlineFace},
    {&VcDbUnboundedLine::desc, outlineRay},
    {&VcDbViewport::desc, outlineViewport},
    {&VcDbModelerGeometry::desc, outlineSolid},
};

}

bool buildOutline(const VcDbEntity& entity, OutlineBuilder& builder)
{
    for (const Entry& entry : kOutlines)
        if (entity.isKindOf(entry.desc())) {
            entry.outline(entity, builder);
            return true;
        }
    return false;
}

}  // namespace vk::edit
