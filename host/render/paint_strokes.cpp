// Lines, dashes, points and endless lines of a display list.
#include "host/db/database.h"
#include "host/db/text_geometry.h"
#include "host/render/linetype_shapes.h"
#include "host/render/paint_parts.h"
#include "sdk/vcdb_records.h"

#include <array>

namespace vk::render {

Pen ListPainter::penOf(const ResolvedLook& look) const
{
    return {look.argb, std::max(look.weightMm * m_view.pixelsPerMm, m_view.thinnestPen)};
}

bool ListPainter::isSeen(const Point2& low, const Point2& high, double margin) const
{
    return low.x <= m_view.high.x + margin && high.x >= m_view.low.x - margin && low.y <= m_view.high.y + margin &&
           high.y >= m_view.low.y - margin;
}

// The parts of a line that lie before the camera.
void ListPainter::strokeInFront(const Place& place, std::span<const VcGePoint3d> points, const Pen& pen)
{
    const Projection& project = place.project;
    std::vector<Point2> part;
    for (std::size_t i = 0; i < points.size(); ++i) {
        const double depth = project.depth(points[i]), before = i ? project.depth(points[i - 1]) : depth;
        if ((depth >= kNearest) != (before >= kNearest)) {
            const double t = (kNearest * (1 + 1e-9) - before) / (depth - before);
            part.push_back(project(points[i - 1] + (points[i] - points[i - 1]) * t));
        }
        if (depth >= kNearest) {
            part.push_back(project(points[i]));
            continue;
        }
        std::erase_if(part, [](const Point2& p) { return !isFinite(p); });
        strokePage(part, pen);
        part.clear();
    }
    std::erase_if(part, [](const Point2& p) { return !isFinite(p); });
    strokePage(part, pen);
}

void ListPainter::strokeProjected(const Place& place, std::span<const VcGePoint3d> points, const Pen& pen)
{
    if (place.project.isPerspective)
        return strokeInFront(place, points, pen);
    m_page.clear();
    for (const VcGePoint3d& p : points) {
        m_page.push_back(place.project(p));
        if (!isFinite(m_page.back()))
            m_page.pop_back();
    }
    strokePage(m_page, pen);
}

void ListPainter::strokePage(std::span<const Point2> points, const Pen& pen)
{
    if (points.empty())
        return;
    const Bounds2 box(points);
    if (!isSeen(box.low, box.high, pen.width))
        return;
    if (points.size() == 1 || (box.high.x - box.low.x < 1e-3 && box.high.y - box.low.y < 1e-3))
        return dot(points.front(), pen);
    const PageRect far = farAround(m_view);
    const bool closed = points.size() > 3 && points.front() == points.back();
    if (far.holds(box.low) && far.holds(box.high))
        return m_canvas.stroke(closed ? points.subspan(1) : points, closed, pen);
    clipLine(far, points, [&](std::span<const Point2> part) { m_canvas.stroke(part, false, pen); });
}

void ListPainter::dot(const Point2& at, const Pen& pen)
{
    const double r = pen.width / 2;
    Rings rings;
    rings.points = {{at.x - r, at.y - r}, {at.x + r, at.y - r}, {at.x + r, at.y + r}, {at.x - r, at.y + r}};
    rings.endRing();
    m_canvas.fill(rings, true, pen.argb);
}

void ListPainter::paintFigures(const Place& place, const Item& item, const ResolvedLook& look)
{
    for (std::uint32_t i = item.first; i < item.first + item.count; ++i)
        paintFigure(place, item, place.list.figures[i], look);
}

void ListPainter::paintFigure(const Place& place, const Item& item, const Figure& figure, const ResolvedLook& look)
{
    m_points.clear();
    if (!look.linetype || (item.flags & Item::Continuous) || m_view.measuring) {
        place.flattener.add(m_points, place.list, figure);
        return strokeProjected(place, m_points, penOf(look));
    }
    m_corners.clear();
    place.flattener.add(m_points, place.list, figure, &m_corners);
    const DashPattern pattern = DashPattern::of(*look.linetype, m_globalLinetypeScale * look.linetypeScale);
    constexpr double kFinestPattern = 2;  // pixels; below, dashes and gaps run together
    if (pattern.length * place.project.scale < kFinestPattern)
        return strokeProjected(place, m_points, penOf(look));
    const std::span<const VcGePoint3d> points(m_points);
    if (item.flags & Item::RunsOn)
        return paintDashes(place, points, pattern, look);
    for (std::size_t i = 0; i + 1 < m_corners.size(); ++i)
        if (m_corners[i + 1] > m_corners[i])
            paintDashes(place, points.subspan(m_corners[i], m_corners[i + 1] - m_corners[i] + 1), pattern, look);
}

namespace {

// The stretch of a line outside of which nothing is on the page.
std::pair<double, double> seenStretch(const MeasuredLine& line, const std::vector<Point2>& page, const PageRect& rect)
{
    double from = line.length(), to = 0;
    for (std::size_t i = 0; i + 1 < page.size(); ++i) {
        const auto part = clippedSegment(rect, page[i], page[i + 1]);
        if (!part)
            continue;
        const double whole = (page[i + 1] - page[i]).length(), length = line.lengthUpTo(i + 1) - line.lengthUpTo(i);
        const double perPixel = whole > 0 ? length / whole : 0;
        from = std::min(from, line.lengthUpTo(i) + (part->first - page[i]).length() * perPixel);
        to = std::max(to, whole > 0 ? line.lengthUpTo(i) + (part->second - page[i]).length() * perPixel
                                    : line.lengthUpTo(i + 1));
    }
    return {from, to};
}

}

void ListPainter::paintDashes(const Place& place, std::span<const VcGePoint3d> points, const DashPattern& pattern,
                              const ResolvedLook& look)
{
    const Pen pen = penOf(look);
    const MeasuredLine line(points);
    if (!(line.length() > 0) || !std::isfinite(line.length()))
        return strokeProjected(place, points, pen);
    std::vector<Point2> page;
    for (const VcGePoint3d& p : points)
        page.push_back(place.project(p));
    const double margin = pen.width + pattern.length * place.project.scale;
    const VcGeVector2d around(margin, margin);
    const auto [from, to] = seenStretch(line, page, {m_view.low - around, m_view.high + around});
    if (from > to)
        return;
    const DashWalk::Mark mark = [&](std::size_t element, double at) {
        if (look.linetype->dashes()[element].hasShape())
            paintDashMark(place, line, at, element, look);
    };
    DashWalk(pattern, line.length())
        .run(
            from, to,
            [&](double a, double b) {
                m_dash.clear();
                line.add(m_dash, a, b);
                strokeProjected(place, m_dash, pen);
            },
            mark);
}

// A text or a figure of a linetype, along the line or as it stands.
void ListPainter::paintDashMark(const Place& place, const MeasuredLine& line, double along, std::size_t element,
                                const ResolvedLook& look)
{
    const VcDbLinetypeTableRecord::Dash& dash = look.linetype->dashes()[element];
    const double scale = m_globalLinetypeScale * look.linetypeScale;
    VcGeVector3d x = line.directionAt(along), y = VcGeVector3d::zAxis().crossProduct(x).normal();
    if ((dash.flags & VcDbLinetypeTableRecord::kUprightText) && place.project.about(line.at(along))(x).x < 0) {
        x = -x;
        y = -y;
    }
    if (dash.flags & VcDbLinetypeTableRecord::kAbsoluteRotation) {
        x = VcGeVector3d::xAxis();
        y = VcGeVector3d::yAxis();
    }
    const VcGePoint3d origin = line.at(along) + x * (dash.offset.x * scale) + y * (dash.offset.y * scale);
    const double c = std::cos(dash.rotation), s = std::sin(dash.rotation);
    const DashMark mark{origin, x * c + y * s, y * c - x * s, scale};
    if (dash.flags & VcDbLinetypeTableRecord::kText)
        paintDashText(place, mark, dash, look);
    else
        paintDashShape(place, mark, dash, look);
}

void ListPainter::paintDashText(const Place& place, const DashMark& mark, const VcDbLinetypeTableRecord::Dash& dash,
                                const ResolvedLook& look)
{
    DisplayList marks;
    ListBuilder builder(marks, m_db, m_omissions);
    builder.setOwnLook(EntityProps());
    const vktext::TextStyleSpec style = textStyleSpec(dash.style, &m_db);
    const double height = (style.fixedHeight > 0 ? style.fixedHeight : 1) * dash.scale * mark.scale;
    builder.text(style, height, dash.text, mark.origin, mark.x, mark.y);
    const Place there{marks, place.matrix, place.project, place.flattener, place.reference};
    for (const TextRun& run : marks.texts)
        paintText(there, run, look);
}

void ListPainter::paintDashShape(const Place& place, const DashMark& mark, const VcDbLinetypeTableRecord::Dash& dash,
                                 const ResolvedLook& look)
{
    const auto* style = m_db.liveAs<VcDbTextStyleTableRecord>(dash.style);
    const ShapeLines* shape = style ? linetypeShape(style->fileUtf8(), dash.shapeNumber) : nullptr;
    if (!shape)
        return m_omissions.add("shape of a linetype");
    const double size = dash.scale * mark.scale;
    for (const auto& line : *shape) {
        m_dash.clear();
        for (const VcGePoint2d& p : line)
            m_dash.push_back(mark.origin + mark.x * (p.x * size) + mark.y * (p.y * size));
        strokeProjected(place, m_dash, penOf(look));
    }
}

void ListPainter::paintEndless(const Place& place, const EndlessLine& line, const ResolvedLook& look)
{
    if (m_view.measuring)
        return;
    const Point2 base = place.project(line.base);
    const VcGeVector2d direction = place.project.about(line.base)(line.direction);
    if (!isFinite(base) || !(direction.length() > 0))
        return dot(base, penOf(look));
    const double reach = 2 * ((m_view.high - m_view.low).length() + (base - m_view.low).length()) / direction.length();
    const VcGePoint3d ends[] = {line.bothWays ? line.base - line.direction * reach : line.base,
                                line.base + line.direction * reach};
    const DashPattern pattern =
        look.linetype ? DashPattern::of(*look.linetype, m_globalLinetypeScale * look.linetypeScale) : DashPattern();
    if (pattern.length * place.project.scale < 2)
        return strokeProjected(place, ends, penOf(look));
    paintDashes(place, ends, pattern, look);
}

void ListPainter::paintMark(const Place& place, const PointMark& mark, const ResolvedLook& look)
{
    const Point2 at = place.project(mark.at);
    const Pen pen = penOf(look);
    const int figure = mark.mode & 15, frame = mark.mode & 96;
    if (!isFinite(at) || (figure == 1 && frame == 0))
        return;
    if (m_view.measuring)
        return dot(at, pen);
    const double percent = mark.size == 0 ? 5 : -mark.size;
    const double size =
        mark.size > 0 ? mark.size * place.project.scale : percent / 100 * (m_view.high.y - m_view.low.y);
    const Projection project = place.project.about(mark.at);
    const VcGeVector2d x = project(mark.x).normal() * size, y = project(mark.y).normal() * size;
    const auto segment = [&](double x0, double y0, double x1, double y1) {
        const Point2 ends[] = {at + x * x0 + y * y0, at + x * x1 + y * y1};
        strokePage(ends, pen);
    };
    if (figure == 0)
        dot(at, pen);
    if (figure == 2) {
        segment(-1, 0, 1, 0);
        segment(0, -1, 0, 1);
    }
    if (figure == 3) {
        segment(-1, -1, 1, 1);
        segment(-1, 1, 1, -1);
    }
    if (figure == 4)
        segment(0, 0, 0, 0.5);
    if (frame & 64)
        for (const auto& [x0, y0, x1, y1] :
             {std::array{-0.5, -0.5, 0.5, -0.5}, {0.5, -0.5, 0.5, 0.5}, {0.5, 0.5, -0.5, 0.5}, {-0.5, 0.5, -0.5, -0.5}})
            segment(x0, y0, x1, y1);
    if (frame & 32) {
        std::vector<Point2> circle;
        for (int i = 0; i <= 64; ++i)
            circle.push_back(at + x * (0.5 * std::cos(i * geom::kTwoPi / 64)) +
                             y * (0.5 * std::sin(i * geom::kTwoPi / 64)));
        circle.back() = circle.front();
        strokePage(circle, pen);
    }
}

}  // namespace vk::render
