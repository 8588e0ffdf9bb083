// Solids, regions and surfaces: their edges, and lines on round faces.
#include "host/db/kept_object.h"
#include "host/db/solid_model.h"
#include "host/geom/arbitrary_axis.h"
#include "host/render/build_parts.h"
#include "sdk/vcdb_solids.h"

namespace vk::render {

namespace {

// Other kinds of curves are no part of solids.
struct CurveFigure {
    ListBuilder& b;

    void operator()(const geom::Segment& s) const
    {
        b.point(s.start);
        b.point(s.end);
    }
    void operator()(const geom::Circle& c) const { turn(c.center, c.radius, c.normal, 0, geom::kTwoPi); }
    void operator()(const geom::Arc& a) const { turn(a.center, a.radius, a.normal, a.start, a.end - a.start); }
    void operator()(const geom::Ellipse& e) const
    {
        b.arc({e.center, e.major, e.normal.normal().crossProduct(e.major) * e.ratio, e.start, e.end - e.start});
    }
    void operator()(const geom::Nurbs& n) const { b.spline(n); }
    void operator()(const geom::Polyline3& p) const
    {
        for (const VcGePoint3d& v : p.vertices)
            b.point(v);
    }
    template <class Other>
    void operator()(const Other&) const
    {
    }

    void turn(const VcGePoint3d& center, double radius, const VcGeVector3d& normal, double from, double sweep) const
    {
        const geom::Frame frame = geom::arbitraryFrame(normal);
        b.arc({center, frame.x * radius, frame.y * radius, from, sweep});
    }
};

void buildSolid(const VcDbEntity& e, ListBuilder& b)
{
    const auto& solid = static_cast<const VcDbModelerGeometry&>(e);
    const geom::ModelShape& shape = solid.model().shape;
    if (shape.isEmpty() || shape.unread > 0) {
        if (addKeptGraphics(e, b))
            return;
        b.omit(shape.isEmpty() ? std::string(dxfNameOf(e)) : std::string("edges of ") + dxfNameOf(e));
    }
    const std::uint32_t first = b.figureCount();
    for (const geom::Curve& curve : drawnCurvesOf(solid)) {
        b.beginFigure();
        std::visit(CurveFigure{b}, curve);
        b.endFigure(geom::isClosed(curve));
    }
    b.stroke(first);
}

constexpr BuildEntry kBuilders[] = {{&VcDbModelerGeometry::desc, buildSolid}};

}

std::span<const BuildEntry> solidBuilders() { return kBuilders; }

}  // namespace vk::render
