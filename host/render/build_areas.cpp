// Hatches, filled quadrangles, faces, subdivision meshes.
#include "host/base/unicode.h"
#include "host/db/ent_util.h"
#include "host/render/build_parts.h"
#include "host/render/smooth_mesh.h"
#include "sdk/vcdb_faces.h"
#include "sdk/vcut.h"

#include <array>

namespace vk::render {

using geom::Frame;

namespace {

class LoopBuilder {
public:
    LoopBuilder(ListBuilder& b, const Frame& frame) : m_b(b), m_frame(frame) {}

    void add(const VcDbHatch::Loop& loop)
    {
        m_b.beginFigure();
        if (loop.isPolyline())
            addVertices(loop.vertices);
        else
            for (const VcDbHatch::Edge& edge : loop.edges)
                addEdge(edge);
        m_b.endFigure(true);
    }

private:
    VcGePoint3d world(const VcGePoint2d& p) const { return m_frame.toWorld(VcGePoint3d(p.x, p.y, 0)); }
    VcGeVector3d world(const VcGeVector2d& v) const { return m_frame.toWorld(VcGeVector3d(v.x, v.y, 0)); }

    void addVertices(const std::vector<VcDbHatch::Vertex>& vertices)
    {
        if (vertices.empty())
            return;
        m_b.point(world(vertices.front().point));
        for (std::size_t i = 0; i < vertices.size(); ++i)
            addBulge(m_b, m_frame, vertices[i].point, vertices[(i + 1) % vertices.size()].point, vertices[i].bulge);
    }

    void addEdge(const VcDbHatch::Edge& e)
    {
        switch (e.type) {
        case VcDbHatch::kLine:
            m_b.point(world(e.first));
            m_b.point(world(e.second));
            return;
        case VcDbHatch::kCirArc:
            return addArc(e, VcGeVector2d(e.radius, 0), VcGeVector2d(0, e.radius));
        case VcDbHatch::kEllArc: {
            const VcGeVector2d major = e.second - VcGePoint2d();
            return addArc(e, major, major.perpVector() * e.radius);
        }
        case VcDbHatch::kSpline:
            return addSplineEdge(e.spline.get());
        }
    }

    // Angles of an edge that runs clockwise are measured clockwise.
    void addArc(const VcDbHatch::Edge& e, const VcGeVector2d& u, const VcGeVector2d& v)
    {
        double sweep = e.endAngle - e.startAngle;
        if (sweep <= 0)
            sweep += geom::kTwoPi;
        const double sign = e.isAnticlockwise ? 1 : -1;
        m_b.arc({world(e.first), world(u), world(v), sign * e.startAngle, sign * sweep});
    }

    void addSplineEdge(const VcDbHatch::SplineData& data)
    {
        geom::Nurbs nurbs{data.degree, {}, data.knots, {}};
        for (const VcDbHatch::ControlPoint& c : data.controlPoints) {
            nurbs.poles.push_back(world(c.point));
            if (data.isRational)
                nurbs.weights.push_back(c.weight);
        }
        std::vector<VcGePoint3d> fit;
        for (const VcGePoint2d& p : data.fitPoints)
            fit.push_back(world(p));
        addSpline(m_b, std::move(nurbs), fit);
    }

    ListBuilder& m_b;
    const Frame& m_frame;
};

GradientFill gradientOf(const VcDbHatch& hatch)
{
    using Shape = GradientFill::Shape;
    static constexpr std::pair<const char*, Shape> kShapes[] = {{"LINEAR", Shape::Linear},
                                                                {"CYLINDER", Shape::Cylinder},
                                                                {"SPHERICAL", Shape::Spherical},
                                                                {"HEMISPHERICAL", Shape::HemiSpherical},
                                                                {"CURVED", Shape::Curved}};
    wchar_t* wide = hatch.gradientName();
    const std::string name = wideToUtf8(wide);
    vcutDelString(wide);
    GradientFill fill;
    for (const auto& [known, shape] : kShapes) {
        if (equalNoCase(name, known))
            fill.shape = shape;
        if (equalNoCase(name, std::string("INV") + known)) {
            fill.shape = shape;
            fill.inverted = true;
        }
    }
    fill.centred = hatch.gradientShift() < 0.5;
    fill.angle = hatch.gradientAngle();
    std::tie(fill.first, fill.second) = hatch.gradientColors();
    return fill;
}

void buildHatch(const VcDbEntity& e, ListBuilder& b)
{
    const auto& hatch = static_cast<const VcDbHatch&>(e);
    if (!b.fillsAreas() || hatch.loops().empty())
        return;
    HatchArea area;
    area.firstFigure = b.figureCount();
    area.style = hatch.hatchStyle();
    area.solid = hatch.isSolidFill();
    area.frame = geom::arbitraryFrame(hatch.normal());
    area.frame.origin = area.frame.toWorld(VcGePoint3d(0, 0, hatch.elevation()));
    LoopBuilder loops(b, area.frame);
    for (const VcDbHatch::Loop& loop : hatch.loops())
        loops.add(loop);
    area.figureCount = b.figureCount() - area.firstFigure;
    if (!area.solid)
        area.lines = hatch.patternLines();
    if (hatch.isGradient())
        area.gradient = gradientOf(hatch);
    b.list().hatches.push_back(std::move(area));
    b.item(Item::Hatch, 0, b.list().hatches.size() - 1);
}

void buildQuad(const VcDbEntity& e, ListBuilder& b)
{
    const auto& quad = static_cast<const VcDbFilledQuad&>(e);
    std::vector<VcGePoint3d> corners(4);
    for (const unsigned corner : {0u, 1u, 2u, 3u})  // the last two stand crossed
        quad.getPointAt(corner, corners[corner < 2 ? corner : 5 - corner]);
    const std::uint32_t first = b.figureCount();
    b.polygon(corners);
    if (b.fillsAreas())
        b.fill(first, FillRule::EvenOdd);
    else
        b.stroke(first);
    if (quad.thickness() != 0)
        b.extrude(first, quad.normal().normal() * quad.thickness());
}

void buildFace(const VcDbEntity& e, ListBuilder& b)
{
    const auto& face = static_cast<const VcDbFace&>(e);
    std::array<VcGePoint3d, 4> corners;
    for (unsigned i = 0; i < 4; ++i)
        face.getVertexAt(i, corners[i]);
    for (unsigned i = 0; i < 4; ++i)
        if (bool visible = true;
            face.isEdgeVisibleAt(i, visible) == Vcad::eOk && visible && corners[i] != corners[(i + 1) % 4])
            b.line(corners[i], corners[(i + 1) % 4]);
}

void buildSubDMesh(const VcDbEntity& e, ListBuilder& b)
{
    const FaceMesh mesh = smoothed(static_cast<const VcDbSubDMesh&>(e));
    const std::uint32_t first = b.figureCount();
    for (const auto& face : mesh.faces) {
        b.beginFigure();
        for (const std::uint32_t corner : face)
            b.point(mesh.vertices[corner]);
        b.endFigure(true);
    }
    b.stroke(first);
}

constexpr BuildEntry kBuilders[] = {
    {&VcDbHatch::desc, buildHatch},
    {&VcDbFilledQuad::desc, buildQuad},
    {&VcDbFace::desc, buildFace},
    {&VcDbSubDMesh::desc, buildSubDMesh},
};

}

std::span<const BuildEntry> areaBuilders() { return kBuilders; }

}  // namespace vk::render
