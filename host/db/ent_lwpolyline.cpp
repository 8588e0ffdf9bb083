// The polyline whose vertices are plain values. Bulges and widths take no room while none differs from 0.
#include "host/db/curve_of.h"
#include "host/db/ent_util.h"
#include "host/geom/arbitrary_axis.h"
#include "sdk/vcdb_curves.h"

#include <algorithm>

VCDB_DEFINE(VcDbPolyline, VcDbCurve, "LWPOLYLINE")

using vk::geom::toWorld;

namespace {

// A list that is as long as the vertices or, while all its values are alike, empty.
template <class T>
void setInList(std::vector<T>& list, std::size_t size, std::size_t index, const T& value)
{
    if (list.empty() && value == T())
        return;
    list.resize(size);
    list[index] = value;
}

template <class T>
void dropIfPlain(std::vector<T>& list)
{
    if (std::all_of(list.begin(), list.end(), [](const T& v) { return v == T(); }))
        list = {};
}

template <class T>
T valueAt(const std::vector<T>& list, std::size_t index)
{
    return index < list.size() ? list[index] : T();
}

template <class T>
T valueAt(const VcDbRare<std::vector<T>>& list, std::size_t index)
{
    return list.isSet() ? valueAt(*list, index) : T();
}

}

VcDbPolyline::Widths VcDbPolyline::widthsAt(std::size_t index) const
{
    return m_widths.isSet() ? valueAt(m_widths, index) : Widths{m_constantWidth, m_constantWidth};
}

Vcad::ErrorStatus VcDbPolyline::addVertexAt(unsigned index, const VcGePoint2d& point, double bulge, double startWidth,
                                            double endWidth)
{
    if (index > numVerts())
        return Vcad::eInvalidIndex;
    if (!isFinite(point) || !isFinite(bulge) || !isFinite(startWidth) || !isFinite(endWidth))
        return Vcad::eOutOfRange;
    assertWriteEnabled();
    // Without widths of its own the vertex takes the constant one.
    Widths widths{startWidth < 0 ? m_constantWidth : startWidth, endWidth < 0 ? m_constantWidth : endWidth};
    const Widths constant{m_constantWidth, m_constantWidth};
    if (!m_widths.isSet() && !(widths == constant)) {
        m_widths.make().assign(m_points.size(), constant);
        m_constantWidth = 0;
    }
    m_points.insert(m_points.begin() + index, point);
    if (!m_bulges.empty())
        m_bulges.insert(m_bulges.begin() + index, bulge);
    setInList(m_bulges, m_points.size(), index, bulge);
    if (m_widths.isSet()) {
        m_widths->resize(m_points.size() - 1);
        m_widths->insert(m_widths->begin() + index, widths);
    }
    if (m_vertexIds.isSet()) {
        m_vertexIds->resize(m_points.size() - 1);
        m_vertexIds->insert(m_vertexIds->begin() + index, 0);
    }
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbPolyline::removeVertexAt(unsigned index)
{
    if (!isIndex(index))
        return Vcad::eInvalidIndex;
    assertWriteEnabled();
    const auto cut = [index](auto& list) {
        if (index < list.size())
            list.erase(list.begin() + index);
    };
    cut(m_points);
    cut(m_bulges);
    if (m_widths.isSet())
        cut(*m_widths);
    if (m_vertexIds.isSet())
        cut(*m_vertexIds);
    dropIfPlain(m_bulges);
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbPolyline::getPointAt(unsigned index, VcGePoint2d& point) const
{
    if (!isIndex(index))
        return Vcad::eInvalidIndex;
    point = m_points[index];
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbPolyline::getPointAt(unsigned index, VcGePoint3d& point) const
{
    if (!isIndex(index))
        return Vcad::eInvalidIndex;
    point = toWorld(VcGePoint3d(m_points[index].x, m_points[index].y, m_elevation), normal());
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbPolyline::setPointAt(unsigned index, const VcGePoint2d& point)
{
    return isIndex(index) ? setMember(*this, m_points[index], point, isFinite(point)) : Vcad::eInvalidIndex;
}

Vcad::ErrorStatus VcDbPolyline::getBulgeAt(unsigned index, double& bulge) const
{
    if (!isIndex(index))
        return Vcad::eInvalidIndex;
    bulge = valueAt(m_bulges, index);
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbPolyline::setBulgeAt(unsigned index, double bulge)
{
    if (!isIndex(index))
        return Vcad::eInvalidIndex;
    if (!isFinite(bulge))
        return Vcad::eOutOfRange;
    assertWriteEnabled();
    setInList(m_bulges, m_points.size(), index, bulge);
    dropIfPlain(m_bulges);
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbPolyline::getWidthsAt(unsigned index, double& start, double& end) const
{
    if (!isIndex(index))
        return Vcad::eInvalidIndex;
    const Widths widths = widthsAt(index);
    start = widths.start;
    end = widths.end;
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbPolyline::setWidthsAt(unsigned index, double start, double end)
{
    if (!isIndex(index))
        return Vcad::eInvalidIndex;
    if (!(start >= 0 && end >= 0) || !isFinite(start) || !isFinite(end))
        return Vcad::eOutOfRange;
    assertWriteEnabled();
    const double constant = m_widths.isSet() ? 0 : m_constantWidth;
    WidthList& widths = m_widths.make();
    widths.resize(m_points.size(), {constant, constant});
    widths[index] = {start, end};
    m_constantWidth = 0;
    dropIfPlain(widths);
    if (widths.empty())
        m_widths.reset();
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbPolyline::getConstantWidth(double& width) const
{
    if (!m_widths.isSet()) {
        width = m_constantWidth;
        return Vcad::eOk;
    }
    const WidthList& widths = *m_widths;
    const double first = valueAt(widths, 0).start;
    const bool alike = std::all_of(widths.begin(), widths.end(), [&](const Widths& w) {
        return w == Widths{first, first};
    });
    if (!alike || widths.size() < m_points.size())
        return Vcad::eInvalidInput;
    width = first;
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbPolyline::setConstantWidth(double width)
{
    if (!(width >= 0) || !isFinite(width))
        return Vcad::eOutOfRange;
    assertWriteEnabled();
    m_widths.reset();
    m_constantWidth = width;
    return Vcad::eOk;
}

void VcDbPolyline::setClosed(bool closed)
{
    assertWriteEnabled();
    m_flags = std::int16_t(closed ? m_flags | 1 : m_flags & ~1);
}

void VcDbPolyline::setPlinegen(bool on)
{
    assertWriteEnabled();
    m_flags = std::int16_t(on ? m_flags | 128 : m_flags & ~128);
}

Vcad::ErrorStatus VcDbPolyline::setElevation(double e) { return setMember(*this, m_elevation, e, isFinite(e)); }
Vcad::ErrorStatus VcDbPolyline::setThickness(double t) { return setThicknessOf(*this, m_extrusion, t); }
Vcad::ErrorStatus VcDbPolyline::setNormal(const VcGeVector3d& n) { return setNormalOf(*this, m_extrusion, n); }

Vcad::ErrorStatus VcDbPolyline::transformBy(const VcGeMatrix3d& m)
{
    const auto move = planeMove(m, normal());
    if (!move)
        return Vcad::eInvalidInput;
    if (!move->canMove(m_extrusion) || (!move->even && (hasBulges() || hasWidth())))
        return Vcad::eCannotScaleNonUniformly;
    assertWriteEnabled();
    const VcGePoint3d origin = (*move)(VcGePoint3d(0, 0, m_elevation));
    for (VcGePoint2d& p : m_points)
        p = (*move)(p, m_elevation);
    m_elevation = origin.z;
    if (move->mirrored)
        for (double& bulge : m_bulges)
            bulge = -bulge;
    if (m_widths.isSet())
        for (Widths& w : *m_widths)
            w = {w.start * move->scale, w.end * move->scale};
    m_constantWidth *= move->scale;
    move->move(m_extrusion);
    return Vcad::eOk;
}

namespace {

struct FlatBox {
    VcGePoint2d low{HUGE_VAL, HUGE_VAL}, high{-HUGE_VAL, -HUGE_VAL};
    explicit FlatBox(const std::vector<VcGePoint2d>& points)
    {
        for (const VcGePoint2d& p : points) {
            low = {std::min(low.x, p.x), std::min(low.y, p.y)};
            high = {std::max(high.x, p.x), std::max(high.y, p.y)};
        }
    }
    // An arc bows out from its chord by half the bulge of it; more than half circles bow back beyond their ends.
    bool holdsArc(const VcGePoint2d& from, const VcGePoint2d& to, double bulge) const
    {
        const double bow = std::fabs(bulge) * from.distanceTo(to) / 2;
        return std::fabs(bulge) <= 1 && std::min(from.x, to.x) - bow >= low.x &&
               std::max(from.x, to.x) + bow <= high.x && std::min(from.y, to.y) - bow >= low.y &&
               std::max(from.y, to.y) + bow <= high.y;
    }
};

}

Vcad::ErrorStatus VcDbPolyline::getGeomExtents(VcDbExtents& extents) const
{
    const vk::geom::Frame frame = vk::geom::arbitraryFrame(normal());
    const auto inWorld = [&](const VcGePoint2d& p) { return frame.toWorld(VcGePoint3d(p.x, p.y, m_elevation)); };
    const FlatBox box(m_points);
    const bool upright = normal() == VcGeVector3d::zAxis();
    const std::size_t n = m_points.size();
    VcDbExtents flat;
    if (upright && n > 0)
        flat = {inWorld(box.low), inWorld(box.high)};
    for (std::size_t i = 0; i < n && !upright; ++i)
        flat.addPoint(inWorld(m_points[i]));
    for (std::size_t i = 0; i < (isClosed() ? n : n - 1) && !m_bulges.empty(); ++i) {
        const VcGePoint2d &from = m_points[i], &to = m_points[(i + 1) % n];
        if (m_bulges[i] == 0 || (upright && box.holdsArc(from, to, m_bulges[i])))
            continue;
        if (const auto arc = bulgeArc(from, to, m_bulges[i])) {
            const double sweep = turnOf(arc->end - arc->start);
            addEllipse(flat, inWorld(arc->center), frame.x * arc->radius, frame.y * arc->radius, arc->start,
                       arc->start + sweep);
        }
    }
    if (flat.isEmpty())
        return Vcad::eNotApplicable;
    if (const auto curve = hasWidth() ? curveOf(*this) : std::nullopt) {
        const vk::geom::Box3d wide = vk::geom::extents(*curve);
        flat.addExt({wide.min, wide.max});
    }
    extents = flat;
    addExtruded(extents, flat.minPoint(), m_extrusion);
    addExtruded(extents, flat.maxPoint(), m_extrusion);
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbPolyline::explode(std::vector<VcDbEntity*>& pieces) const
{
    const std::size_t n = m_points.size(), segments = isClosed() || n == 0 ? n : n - 1;
    for (std::size_t i = 0; i < segments; ++i) {
        const PlaneSegment segment{m_points[i], m_points[(i + 1) % n], valueAt(m_bulges, i), m_elevation};
        pieces.push_back(segmentPiece(*this, segment, m_extrusion));
    }
    return Vcad::eOk;
}

void VcDbPolyline::fields(FieldVisitor& v)
{
    VcDbEntity::fields(v);
    v.subclass("AcDbPolyline");
    v.count(90, m_points.size());
    v.number(70, m_flags);
    v.optional(43, m_constantWidth, 0.0);
    v.optional(38, m_elevation, 0.0);
    m_extrusion.thicknessField(v);
    if (v.isReading())
        readVertices(v);
    else
        writeVertices(v);
    m_extrusion.normalField(v);
}

void VcDbPolyline::readVertices(FieldVisitor& v)
{
    std::vector<VcGePoint2d> points;
    std::vector<double> bulges;
    WidthList widths;
    IdList ids;
    while (v.beginItem(10)) {
        const std::size_t i = points.size();
        v.point2(10, points.emplace_back());
        Widths w;
        double bulge = 0;
        std::int32_t id = 0;
        v.optional(40, w.start, 0.0);
        v.optional(41, w.end, 0.0);
        v.optional(42, bulge, 0.0);
        v.optionalNumber(91, id, 0);
        v.endItem();
        setInList(bulges, i + 1, i, bulge);
        setInList(widths, i + 1, i, w);
        setInList(ids, i + 1, i, id);
    }
    if (points.empty())
        return;
    const auto fill = [n = points.size()](auto& list) {
        if (!list.empty())
            list.resize(n);
        list.shrink_to_fit();
    };
    fill(bulges);
    fill(widths);
    fill(ids);
    points.shrink_to_fit();
    m_points = std::move(points);
    m_bulges = std::move(bulges);
    m_widths.set(std::move(widths));
    m_vertexIds.set(std::move(ids));
}

void VcDbPolyline::writeVertices(FieldVisitor& v)
{
    for (std::size_t i = 0; i < m_points.size(); ++i) {
        v.beginItem(10);
        v.point2(10, m_points[i]);
        Widths w = valueAt(m_widths, i);
        double bulge = valueAt(m_bulges, i);
        std::int32_t id = valueAt(m_vertexIds, i);
        v.optional(40, w.start, 0.0);
        v.optional(41, w.end, 0.0);
        v.optional(42, bulge, 0.0);
        if (v.isChain() || v.atLeast(DxfVersion::R2010))
            v.optionalNumber(91, id, 0);
        v.endItem();
    }
}
