// Polylines of all kinds, multilines, meshes.
#include "host/db/database.h"
#include "host/render/build_parts.h"
#include "sdk/vcdb_curves.h"
#include "sdk/vcdb_misc.h"
#include "sdk/vcdb_objects.h"

namespace vk::render {

using geom::Frame;

namespace {

bool isWide(const PlanePolyline& polyline)
{
    for (const WidthVertex& v : polyline.vertices)
        if (v.startWidth > 0 || v.endWidth > 0)
            return true;
    return false;
}

void addMiddle(ListBuilder& b, const Frame& frame, const PlanePolyline& polyline)
{
    const auto& vertices = polyline.vertices;
    const std::size_t n = vertices.size();
    b.beginFigure();
    b.point(frame.toWorld(VcGePoint3d(vertices[0].point.x, vertices[0].point.y, 0)));
    for (std::size_t i = 0; i + (polyline.closed ? 0 : 1) < n; ++i)
        addBulge(b, frame, vertices[i].point, vertices[(i + 1) % n].point, vertices[i].bulge);
    b.endFigure(false);
}

}

namespace {

// The pieces of a wide polyline that have no width.
void strokeThinPieces(ListBuilder& b, const PlanePolyline& polyline, const Frame& frame)
{
    const auto& vertices = polyline.vertices;
    const std::size_t n = vertices.size(), pieces = polyline.closed ? n : n - 1;
    const auto isThin = [&](std::size_t i) { return !(vertices[i].startWidth > 0) && !(vertices[i].endWidth > 0); };
    const std::uint32_t first = b.figureCount();
    for (std::size_t i = 0; i < pieces; ++i) {
        if (!isThin(i))
            continue;
        b.beginFigure();
        b.point(frame.toWorld(VcGePoint3d(vertices[i].point.x, vertices[i].point.y, 0)));
        for (; i < pieces && isThin(i); ++i)
            addBulge(b, frame, vertices[i].point, vertices[(i + 1) % n].point, vertices[i].bulge);
        b.endFigure(false);
    }
    b.stroke(first, polyline.runsOn ? Item::RunsOn : 0);
}

}

Frame frameOf(const PlanePolyline& polyline)
{
    Frame frame = geom::arbitraryFrame(polyline.normal);
    frame.origin = frame.toWorld(VcGePoint3d(0, 0, polyline.elevation));
    return frame;
}

void addPlanePolyline(ListBuilder& b, const PlanePolyline& polyline, const Frame& frame)
{
    if (polyline.vertices.empty())
        return;
    const std::uint32_t first = b.figureCount();
    const bool wide = isWide(polyline);
    if (wide)
        addWideFigures(b, frame, polyline.vertices, polyline.closed);
    else
        addMiddle(b, frame, polyline);
    if (wide && b.fillsAreas())
        b.item(Item::Fill, Item::NonZero | Item::Bands, first, b.figureCount() - first);
    else
        b.stroke(first, polyline.runsOn ? Item::RunsOn : 0);
    if (wide)
        strokeThinPieces(b, polyline, frame);
    if (polyline.thickness != 0)
        b.extrude(first, frame.z * polyline.thickness);
}

namespace {

void buildPolyline(const VcDbEntity& e, ListBuilder& b)
{
    const auto& polyline = static_cast<const VcDbPolyline&>(e);
    PlanePolyline plane;
    plane.vertices.resize(polyline.numVerts());
    for (unsigned i = 0; i < plane.vertices.size(); ++i) {
        WidthVertex& v = plane.vertices[i];
        polyline.getPointAt(i, v.point);
        polyline.getBulgeAt(i, v.bulge);
        polyline.getWidthsAt(i, v.startWidth, v.endWidth);
    }
    plane.closed = polyline.isClosed();
    plane.runsOn = polyline.hasPlinegen();
    plane.normal = polyline.normal();
    plane.elevation = polyline.elevation();
    plane.thickness = polyline.thickness();
    addPlanePolyline(b, plane, frameOf(plane));
}

// Control points of a curve that has been smoothed are not seen.
bool isFrame(const VcDbVertex& vertex) { return (vertex.vertexFlags() & VcDbVertex::kSplineFrame) != 0; }

void build2dPolyline(const VcDbEntity& e, ListBuilder& b)
{
    const auto& polyline = static_cast<const VcDb2dPolyline&>(e);
    PlanePolyline plane;
    for (const VcDbEntity* entity : polyline.vertices())
        if (const auto* v = VcDb2dVertex::cast(entity); v && !isFrame(*v))
            plane.vertices.push_back({v->position().convert2d(), v->bulge(), v->startWidth(), v->endWidth()});
    plane.closed = polyline.isClosed();
    plane.runsOn = polyline.isLinetypeGenerationOn();
    plane.normal = polyline.normal();
    plane.elevation = polyline.elevation();
    plane.thickness = polyline.thickness();
    addPlanePolyline(b, plane, frameOf(plane));
}

void build3dPolyline(const VcDbEntity& e, ListBuilder& b)
{
    const auto& polyline = static_cast<const VcDb3dPolyline&>(e);
    const std::uint32_t first = b.figureCount();
    b.beginFigure();
    for (const VcDbEntity* entity : polyline.vertices())
        if (const auto* v = VcDbVertex::cast(entity); v && !isFrame(*v))
            b.point(v->position());
    b.endFigure(polyline.isClosed());
    b.stroke(first);
}

// Meshes

struct Grid {
    std::vector<VcGePoint3d> points;
    std::size_t rows = 0, columns = 0;
    const VcGePoint3d& at(std::size_t row, std::size_t column) const { return points[row * columns + column]; }
};

// Of a smoothed mesh the surface, else the vertices.
Grid gridOf(const VcDbPolygonMesh& mesh)
{
    Grid own, smooth;
    for (const VcDbEntity* entity : mesh.vertices())
        if (const auto* v = VcDbVertex::cast(entity))
            ((v->vertexFlags() & VcDbVertex::kSplineFit) ? smooth : own).points.push_back(v->position());
    own.rows = std::size_t(std::max<int>(mesh.mSize(), 0));
    own.columns = std::size_t(std::max<int>(mesh.nSize(), 0));
    smooth.rows = std::size_t(std::max<int>(mesh.mDensity(), 0));
    smooth.columns = std::size_t(std::max<int>(mesh.nDensity(), 0));
    const auto whole = [](const Grid& grid) {
        return grid.rows * grid.columns > 0 && grid.points.size() >= grid.rows * grid.columns;
    };
    return whole(smooth) ? smooth : whole(own) ? own : Grid();
}

void buildPolygonMesh(const VcDbEntity& e, ListBuilder& b)
{
    const auto& mesh = static_cast<const VcDbPolygonMesh&>(e);
    const Grid grid = gridOf(mesh);
    const std::uint32_t first = b.figureCount();
    for (std::size_t row = 0; row < grid.rows; ++row) {
        b.beginFigure();
        for (std::size_t column = 0; column < grid.columns; ++column)
            b.point(grid.at(row, column));
        b.endFigure(mesh.isNClosed());
    }
    for (std::size_t column = 0; column < grid.columns; ++column) {
        b.beginFigure();
        for (std::size_t row = 0; row < grid.rows; ++row)
            b.point(grid.at(row, column));
        b.endFigure(mesh.isMClosed());
    }
    b.stroke(first);
}

void addFace(ListBuilder& b, const VcDbFaceRecord& face, const std::vector<VcGePoint3d>& vertices)
{
    std::vector<std::int16_t> corners;
    for (unsigned i = 0; i < 4; ++i)
        if (std::int16_t vertex = 0;
            face.getVertexAt(i, vertex) == Vcad::eOk && vertex != 0 && std::size_t(std::abs(vertex)) <= vertices.size())
            corners.push_back(vertex);
    for (std::size_t i = 0; i < corners.size() && corners.size() > 1; ++i)
        if (corners[i] > 0)
            b.line(vertices[std::size_t(corners[i] - 1)],
                   vertices[std::size_t(std::abs(corners[(i + 1) % corners.size()]) - 1)]);
}

void buildPolyFaceMesh(const VcDbEntity& e, ListBuilder& b)
{
    const auto& mesh = static_cast<const VcDbPolyFaceMesh&>(e);
    const std::vector<VcDbEntity*> parts = mesh.vertices();
    std::vector<VcGePoint3d> vertices;
    for (const VcDbEntity* part : parts)
        if (const auto* vertex = VcDbPolyFaceMeshVertex::cast(part))
            vertices.push_back(vertex->position());
    for (const VcDbEntity* part : parts)
        if (const auto* face = VcDbFaceRecord::cast(part))
            addFace(b, *face, vertices);
}

// Multilines: from each vertex the elements lie along its mitre; lengths behind the first say where a line breaks off
// and begins again, measured along the piece.

std::optional<VcGePoint3d> elementPoint(const VcDbMline::Vertex& vertex, std::size_t element)
{
    if (element >= vertex.elements.size() || vertex.elements[element].lengths.empty())
        return std::nullopt;
    return vertex.point + vertex.miter * vertex.elements[element].lengths.front();
}

void addElementPiece(ListBuilder& b, const VcDbMline::Vertex& from, const VcDbMline::Vertex& to, std::size_t element)
{
    const auto start = elementPoint(from, element), end = elementPoint(to, element);
    if (!start || !end)
        return;
    const std::vector<double>& lengths = from.elements[element].lengths;
    const VcGeVector3d along = (*end - *start).normal();
    const double whole = (*end - *start).length();
    if (lengths.size() <= 2)
        return b.line(*start, *end);
    for (std::size_t i = 1; i < lengths.size(); i += 2) {
        const double stop = i + 1 < lengths.size() ? std::min(lengths[i + 1], whole) : whole;
        if (lengths[i] < stop)
            b.line(*start + along * lengths[i], *start + along * stop);
    }
}

std::vector<std::size_t> outermost(const VcDbMlineStyle& style)
{
    std::size_t low = 0, high = 0;
    for (std::size_t i = 0; i < style.elements().size(); ++i) {
        if (style.elements()[i].offset < style.elements()[low].offset)
            low = i;
        if (style.elements()[i].offset > style.elements()[high].offset)
            high = i;
    }
    return {low, high};
}

void addMlineFill(ListBuilder& b, const VcDbMline& mline, const VcDbMlineStyle& style)
{
    const auto sides = outermost(style);
    const auto& vertices = mline.vertices();
    const std::size_t n = vertices.size();
    const std::uint32_t first = b.figureCount();
    for (std::size_t i = 0; i + (mline.closedMline() ? 0 : 1) < n; ++i) {
        const auto &from = vertices[i], &to = vertices[(i + 1) % n];
        const auto a = elementPoint(from, sides[0]), c = elementPoint(to, sides[0]);
        const auto d = elementPoint(to, sides[1]), f = elementPoint(from, sides[1]);
        if (a && c && d && f)
            b.polygon({*a, *c, *d, *f});
    }
    b.setColour(style.fillColor());
    b.fill(first, FillRule::NonZero);
}

void addCap(ListBuilder& b, const VcDbMline& mline, const VcDbMlineStyle& style, const VcDbMline::Vertex& vertex,
            bool round, bool square, bool atStart)
{
    const auto sides = outermost(style);
    const auto low = elementPoint(vertex, sides[0]), high = elementPoint(vertex, sides[1]);
    if (!low || !high)
        return;
    b.setColour(style.elements()[sides[1]].color);
    if (square)
        b.line(*low, *high);
    if (!round)
        return;
    const VcGeVector3d radius = (*high - *low) * 0.5;
    const VcGeVector3d outward = vertex.direction.normal() * (atStart ? -radius.length() : radius.length());
    const std::uint32_t first = b.figureCount();
    b.beginFigure();
    b.arc({*low + radius, -radius, outward, 0, geom::kTwoPi / 2});
    b.endFigure(false);
    b.stroke(first);
}

void addCaps(ListBuilder& b, const VcDbMline& mline, const VcDbMlineStyle& style)
{
    const auto has = [&](int flag) { return (style.flags() & flag) != 0; };
    const VcDbMline::Vertex last = [&] {
        VcDbMline::Vertex v = mline.vertices().back();
        if (mline.vertices().size() > 1)
            v.direction = mline.vertices().back().point - mline.vertices()[mline.vertices().size() - 2].point;
        return v;
    }();
    if (!mline.hidesStartCap())
        addCap(b, mline, style, mline.vertices().front(), has(VcDbMlineStyle::kStartRoundCap),
               has(VcDbMlineStyle::kStartSquareCap), true);
    if (!mline.hidesEndCap())
        addCap(b, mline, style, last, has(VcDbMlineStyle::kEndRoundCap), has(VcDbMlineStyle::kEndSquareCap), false);
}

void setElementLook(ListBuilder& b, const VcDbMlineStyle::Element& element)
{
    EntityProps props = b.props();
    props.color = element.color;
    if (!element.linetype.isNull())
        props.linetype = element.linetype;
    b.setOwnLook(std::move(props));
}

void buildMline(const VcDbEntity& e, ListBuilder& b)
{
    const auto& mline = static_cast<const VcDbMline&>(e);
    const auto& vertices = mline.vertices();
    const auto* style = b.db().liveAs<VcDbMlineStyle>(mline.style());
    if (vertices.empty() || !style || style->elements().empty())
        return b.omit("MLINE");
    if ((style->flags() & VcDbMlineStyle::kFilled) != 0 && b.fillsAreas())
        addMlineFill(b, mline, *style);
    const std::size_t n = vertices.size();
    for (std::size_t element = 0; element < style->elements().size(); ++element) {
        setElementLook(b, style->elements()[element]);
        for (std::size_t i = 0; i + (mline.closedMline() ? 0 : 1) < n; ++i)
            addElementPiece(b, vertices[i], vertices[(i + 1) % n], element);
    }
    for (std::size_t i = 1; (style->flags() & VcDbMlineStyle::kMitres) != 0 && i + (mline.closedMline() ? 0 : 1) < n;
         ++i)
        addCap(b, mline, *style, vertices[i], false, true, false);
    if (!mline.closedMline())
        addCaps(b, mline, *style);
}

constexpr BuildEntry kBuilders[] = {
    {&VcDbPolyline::desc, buildPolyline},         {&VcDb2dPolyline::desc, build2dPolyline},
    {&VcDb3dPolyline::desc, build3dPolyline},     {&VcDbPolygonMesh::desc, buildPolygonMesh},
    {&VcDbPolyFaceMesh::desc, buildPolyFaceMesh}, {&VcDbMline::desc, buildMline},
};

}

std::span<const BuildEntry> polylineBuilders() { return kBuilders; }

}  // namespace vk::render
