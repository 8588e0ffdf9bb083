#include "host/base/heap.h"
#include "host/base/unicode.h"
#include "host/db/ent_util.h"
#include "host/db/hatch_fields.h"
#include "host/geom/arbitrary_axis.h"

#include <algorithm>

VCDB_DEFINE(VcDbHatch, VcDbEntity, "HATCH")

// Pattern

wchar_t* VcDbHatch::patternName() const { return heapStringFromUtf8(m_name); }

Vcad::ErrorStatus VcDbHatch::setPatternName(const wchar_t* name)
{
    return name && *name ? setMember(*this, m_name, wideToUtf8(name), true) : Vcad::eInvalidInput;
}

void VcDbHatch::setSolidFill(bool on) { setMember(*this, m_solid, std::int8_t(on), true); }
Vcad::ErrorStatus VcDbHatch::setPatternAngle(double a) { return setMember(*this, m_patternAngle, a, isFinite(a)); }
Vcad::ErrorStatus VcDbHatch::setPatternScale(double s) { return setMember(*this, m_patternScale, s, isPositive(s)); }

Vcad::ErrorStatus VcDbHatch::getPatternDefinitionAt(int index, double& angle, double& baseX, double& baseY,
                                                    double& offsetX, double& offsetY, std::vector<double>& dashes) const
{
    if (index < 0 || index >= numPatternDefinitions())
        return Vcad::eInvalidIndex;
    const PatternLine& line = m_lines[std::size_t(index)];
    angle = line.angle;
    baseX = line.baseX;
    baseY = line.baseY;
    offsetX = line.offsetX;
    offsetY = line.offsetY;
    dashes = line.dashes;
    return Vcad::eOk;
}

void VcDbHatch::setPatternDefinitions(std::vector<PatternLine> lines)
{
    assertWriteEnabled();
    m_lines = std::move(lines);
}

Vcad::ErrorStatus VcDbHatch::setHatchStyle(HatchStyle style)
{
    return setMember(*this, m_style, std::int8_t(style), style >= kNormal && style <= kIgnore);
}

// Boundary

// A hatch that no longer follows its sources forgets them.
Vcad::ErrorStatus VcDbHatch::setAssociative(bool on)
{
    assertWriteEnabled();
    m_associative = on;
    if (!on)
        for (Loop& loop : m_loops)
            loop.sources.clear();
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbHatch::getAssocObjIds(std::vector<VcDbObjectId>& ids) const
{
    ids.clear();
    for (const Loop& loop : m_loops)
        ids.insert(ids.end(), loop.sources.begin(), loop.sources.end());
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbHatch::setElevation(double e) { return setMember(*this, m_elevation.z, e, isFinite(e)); }

int VcDbHatch::loopTypeAt(int index) const
{
    return index >= 0 && index < numLoops() ? m_loops[std::size_t(index)].type : 0;
}

Vcad::ErrorStatus VcDbHatch::getLoopAt(int index, int& type, std::vector<VcGePoint2d>& vertices,
                                       std::vector<double>& bulges) const
{
    if (index < 0 || index >= numLoops())
        return Vcad::eInvalidIndex;
    const Loop& loop = m_loops[std::size_t(index)];
    if (!loop.isPolyline())
        return Vcad::eNotApplicable;
    type = loop.type;
    vertices.clear();
    bulges.clear();
    for (const Vertex& v : loop.vertices) {
        vertices.push_back(v.point);
        bulges.push_back(v.bulge);
    }
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbHatch::getLoopAt(int index, int& type, std::vector<Edge>& edges) const
{
    if (index < 0 || index >= numLoops())
        return Vcad::eInvalidIndex;
    const Loop& loop = m_loops[std::size_t(index)];
    if (loop.isPolyline())
        return Vcad::eNotApplicable;
    type = loop.type;
    edges = loop.edges;
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbHatch::appendLoop(int type, const std::vector<VcGePoint2d>& vertices,
                                        const std::vector<double>& bulges, const std::vector<VcDbObjectId>& sources)
{
    if (vertices.size() < 2 || (!bulges.empty() && bulges.size() != vertices.size()))
        return Vcad::eInvalidInput;
    Loop loop;
    loop.type = type | kPolyline;
    loop.sources = sources;
    for (std::size_t i = 0; i < vertices.size(); ++i) {
        loop.vertices.push_back({vertices[i], bulges.empty() ? 0.0 : bulges[i]});
        if (!isFinite(vertices[i]) || !isFinite(loop.vertices.back().bulge))
            return Vcad::eOutOfRange;
        loop.saysBulges |= loop.vertices.back().bulge != 0;
    }
    assertWriteEnabled();
    m_loops.push_back(std::move(loop));
    return Vcad::eOk;
}

void VcDbHatch::setLoops(std::vector<Loop> loops)
{
    assertWriteEnabled();
    m_loops = std::move(loops);
}

Vcad::ErrorStatus VcDbHatch::removeLoopAt(int index)
{
    if (index < 0 || index >= numLoops())
        return Vcad::eInvalidIndex;
    assertWriteEnabled();
    m_loops.erase(m_loops.begin() + index);
    return Vcad::eOk;
}

// Gradient

bool VcDbHatch::isUserGradient() const
{
    static constexpr const char* kBuiltIn[] = {"LINEAR",           "CYLINDER",     "INVCYLINDER",
                                               "SPHERICAL",        "INVSPHERICAL", "HEMISPHERICAL",
                                               "INVHEMISPHERICAL", "CURVED",       "INVCURVED"};
    const std::string name = m_gradient.get().name;
    return !name.empty() &&
           std::none_of(std::begin(kBuiltIn), std::end(kBuiltIn), [&](const char* n) { return equalNoCase(name, n); });
}

wchar_t* VcDbHatch::gradientName() const { return heapStringFromUtf8(m_gradient.get().name); }

// A gradient of one colour runs to a tint of it: 0 is black, 1 white.
std::pair<VcCmColor, VcCmColor> VcDbHatch::gradientColors() const
{
    const Gradient g = m_gradient.get();
    const auto colorAt = [&](std::size_t i) {
        VcCmColor color = VcCmColor::fromIndex(VcCmColor::kAciForeground);
        if (i < g.colors.size() && g.colors[i].rgb >= 0)
            color.setTrueColor(std::uint32_t(g.colors[i].rgb) & 0xffffff);
        else if (i < g.colors.size() && g.colors[i].index >= 0)
            color = VcCmColor::fromIndex(std::int16_t(g.colors[i].index));
        return color;
    };
    VcCmColor first = colorAt(0), second = colorAt(1);
    if (g.oneColor != 0 && g.colors.size() < 2) {
        const auto tinted = [&](std::uint8_t part) {
            const double t = std::clamp(g.tint, 0.0, 1.0);
            return std::uint8_t(t < 0.5 ? part * t * 2 : part + (255 - part) * (t * 2 - 1));
        };
        second.setRGB(tinted(first.red()), tinted(first.green()), tinted(first.blue()));
    }
    return {first, second};
}

// Geometry

namespace {

struct PlaneMap {
    const PlaneMove& move;
    double elevation;
    VcGePoint2d operator()(const VcGePoint2d& p) const { return move(p, elevation); }
    VcGePoint2d vector(const VcGePoint2d& v) const
    {
        return VcGePoint2d() + (move(v, elevation) - move(VcGePoint2d(), elevation));
    }
    // Angles of edges that run clockwise are measured the other way round.
    double angle(double a, bool anticlockwise) const
    {
        const double own = move.angle(anticlockwise ? a : -a);
        return anticlockwise != move.mirrored ? own : -own;
    }
};

void moveArc(VcDbHatch::Edge& edge, const PlaneMap& map)
{
    const double sweep = edge.endAngle - edge.startAngle;
    edge.startAngle = turnOf(map.angle(edge.startAngle, edge.isAnticlockwise));
    edge.endAngle = edge.startAngle + sweep;
    edge.radius *= map.move.scale;
    edge.isAnticlockwise = edge.isAnticlockwise != map.move.mirrored;
}

void moveSpline(VcDbHatch::SplineData& spline, const PlaneMap& map)
{
    for (VcDbHatch::ControlPoint& c : spline.controlPoints)
        c.point = map(c.point);
    for (VcGePoint2d& p : spline.fitPoints)
        p = map(p);
    spline.startTangent = map.vector(spline.startTangent);
    spline.endTangent = map.vector(spline.endTangent);
}

void moveEdge(VcDbHatch::Edge& edge, const PlaneMap& map)
{
    if (edge.type == VcDbHatch::kSpline)
        return moveSpline(edge.spline.make(), map);
    edge.first = map(edge.first);
    if (edge.type == VcDbHatch::kLine)
        edge.second = map(edge.second);
    if (edge.type == VcDbHatch::kCirArc)
        moveArc(edge, map);
    if (edge.type == VcDbHatch::kEllArc) {
        edge.second = map.vector(edge.second);
        edge.isAnticlockwise = edge.isAnticlockwise != map.move.mirrored;
    }
}

void moveLine(VcDbHatch::PatternLine& line, const PlaneMap& map)
{
    const VcGePoint2d base = map(VcGePoint2d(line.baseX, line.baseY));
    const VcGePoint2d offset = map.vector(VcGePoint2d(line.offsetX, line.offsetY));
    line = {turnOf(map.move.angle(line.angle)), base.x, base.y, offset.x, offset.y, std::move(line.dashes)};
    for (double& dash : line.dashes)
        dash *= map.move.scale;
}

}

Vcad::ErrorStatus VcDbHatch::transformBy(const VcGeMatrix3d& m)
{
    const auto move = planeMove(m, normal());
    if (!move)
        return Vcad::eInvalidInput;
    if (!move->even || !move->upright)
        return Vcad::eCannotScaleNonUniformly;
    assertWriteEnabled();
    const PlaneMap map{*move, m_elevation.z};
    for (Loop& loop : m_loops) {
        for (Vertex& v : loop.vertices)
            v = {map(v.point), move->mirrored ? -v.bulge : v.bulge};
        for (Edge& edge : loop.edges)
            moveEdge(edge, map);
    }
    for (PatternLine& line : m_lines)
        moveLine(line, map);
    for (VcGePoint2d& seed : m_seeds)
        seed = map(seed);
    m_patternAngle = turnOf(move->angle(m_patternAngle));
    m_patternScale *= move->scale;
    m_elevation = VcGePoint3d(0, 0, (*move)(VcGePoint3d(0, 0, m_elevation.z)).z);
    move->move(m_extrusion);
    return Vcad::eOk;
}

namespace {

class OutlineBox {
public:
    OutlineBox(VcDbExtents& extents, double elevation, const VcGeVector3d& normal)
        : m_extents(extents), m_elevation(elevation), m_normal(normal)
    {
    }
    void add(const VcGePoint2d& p)
    {
        m_extents.addPoint(vk::geom::toWorld(VcGePoint3d(p.x, p.y, m_elevation), m_normal));
    }

    void addPolyline(const VcDbHatch::Loop& loop)
    {
        const std::size_t n = loop.vertices.size();
        for (std::size_t i = 0; i < n; ++i) {
            const VcDbHatch::Vertex& from = loop.vertices[i];
            const VcDbHatch::Vertex& to = loop.vertices[(i + 1) % n];
            add(from.point);
            if (const auto arc = bulgeArc(from.point, to.point, from.bulge))
                addArc(arc->center, {arc->radius, 0}, {0, arc->radius}, arc->start, arc->end);
        }
    }

    void addEdge(const VcDbHatch::Edge& e)
    {
        const double start = e.isAnticlockwise ? e.startAngle : -e.endAngle;
        const double end = e.isAnticlockwise ? e.endAngle : -e.startAngle;
        const VcGeVector2d major = e.second - VcGePoint2d();
        switch (e.type) {
        case VcDbHatch::kLine:
            add(e.first);
            add(e.second);
            return;
        case VcDbHatch::kCirArc:
            return addArc(e.first, {e.radius, 0}, {0, e.radius}, start, end);
        case VcDbHatch::kEllArc:
            return addArc(e.first, major, major.perpVector() * e.radius, 0, kTwoPi);
        case VcDbHatch::kSpline:
            for (const VcDbHatch::ControlPoint& c : e.spline.get().controlPoints)
                add(c.point);
            return;
        }
    }

private:
    void addArc(const VcGePoint2d& c, const VcGeVector2d& a, const VcGeVector2d& b, double start, double end)
    {
        const auto world = [&](const VcGeVector2d& v) {
            return vk::geom::toWorld(VcGePoint3d(v.x, v.y, 0), m_normal).asVector();
        };
        addEllipse(m_extents, vk::geom::toWorld(VcGePoint3d(c.x, c.y, m_elevation), m_normal), world(a), world(b),
                   start, end < start ? end + kTwoPi : end);
    }

    VcDbExtents& m_extents;
    double m_elevation;
    VcGeVector3d m_normal;
};

}

Vcad::ErrorStatus VcDbHatch::getGeomExtents(VcDbExtents& extents) const
{
    extents = VcDbExtents();
    OutlineBox box(extents, m_elevation.z, normal());
    for (const Loop& loop : m_loops) {
        box.addPolyline(loop);
        for (const Edge& edge : loop.edges)
            box.addEdge(edge);
    }
    return extentsStatus(extents);
}

// Groups

void VcDbHatch::patternFields(FieldVisitor& v)
{
    v.number(75, m_style);
    v.number(76, m_patternType);
    if (isSolidFill()) {  // says these in some programs' files only
        std::int64_t lines = std::int64_t(m_lines.size());
        v.optionalAngle(52, m_patternAngle, 0.0);
        v.optional(41, m_patternScale, 1.0);
        v.optionalNumber<std::int8_t>(77, m_double, 0);
        v.optionalInteger(78, lines, 0);
    } else {
        v.angle(52, m_patternAngle);
        v.real(41, m_patternScale);
        v.number(77, m_double);
        v.count(78, m_lines.size());
    }
    OrderedFields ordered(v);
    listed(v, 53, m_lines, [&](PatternLine& line) {
        v.angle(53, line.angle);
        v.real(43, line.baseX);
        v.real(44, line.baseY);
        v.real(45, line.offsetX);
        v.real(46, line.offsetY);
        v.count(79, line.dashes.size());
        listed(v, 49, line.dashes, [&](double& dash) { v.real(49, dash); });
    });
}

// The angle is in radians in files too. Files of 2004 on have these groups, newer ones often without a gradient.
void VcDbHatch::gradientFields(FieldVisitor& v)
{
    if (v.isWriting() && (!m_gradient.isSet() || !v.atLeast(DxfVersion::R2004)))
        return;
    Gradient g = m_gradient.get();
    v.optionalNumber<std::int32_t>(450, g.isGradient, -1);
    if (g.isGradient < 0)
        return;
    v.number(451, g.reserved);
    v.real(460, g.angle);
    v.real(461, g.shift);
    v.number(452, g.oneColor);
    v.real(462, g.tint);
    v.count(453, g.colors.size());
    listed(v, 463, g.colors, [&](GradientColor& color) {
        v.real(463, color.value);
        if (v.isReading() ? v.peek() == 63 : color.index >= 0)
            v.integer(63, color.index);
        if (v.isReading() ? v.peek() == 421 : color.rgb >= 0)
            v.integer(421, color.rgb);
    });
    v.text(470, g.name);
    if (v.isReading())
        m_gradient.set(std::move(g));
}

void VcDbHatch::fields(FieldVisitor& v)
{
    VcDbEntity::fields(v);
    v.subclass("AcDbHatch");
    v.point(10, m_elevation);
    m_extrusion.normalField(v);
    v.text(2, m_name);
    v.number(70, m_solid);
    v.number(71, m_associative);
    v.count(91, m_loops.size());
    {
        OrderedFields ordered(v);
        listed(v, 92, m_loops, [&](Loop& loop) { hatchLoopField(v, loop); });
    }
    patternFields(v);
    v.optional(47, m_pixelSize, 0.0);
    v.count(98, m_seeds.size());
    {
        OrderedFields ordered(v);
        listed(v, 10, m_seeds, [&](VcGePoint2d& seed) { v.point2(10, seed); });
    }
    gradientFields(v);
}
