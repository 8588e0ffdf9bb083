// Filled areas, hatches, gradients and images of a display list.
#include "host/render/build_parts.h"
#include "host/render/hatch_lines.h"
#include "host/render/paint_parts.h"

namespace vk::render {

Rings ListPainter::ringsOf(const Place& place, std::uint32_t first, std::uint32_t count)
{
    Rings rings;
    bool far = false;
    const PageRect nearby = farAround(m_view);
    for (std::uint32_t i = first; i < first + count; ++i) {
        m_points.clear();
        place.flattener.add(m_points, place.list, place.list.figures[i]);
        for (const VcGePoint3d& p : m_points) {
            const Point2 page = place.project(p);
            if (!isFinite(page))
                continue;
            rings.points.push_back(page);
            far |= !nearby.holds(page);
        }
        rings.endRing();
    }
    return far ? clipRings(nearby, rings) : rings;
}

// What is thinner than a pixel would fade away.
void ListPainter::fillPage(const Rings& rings, bool nonZero, std::uint32_t argb)
{
    if (rings.empty())
        return;
    const Bounds2 box(rings.points);
    if (!isSeen(box.low, box.high, 1))
        return;
    if (box.high.x - box.low.x < m_view.thinnestPen || box.high.y - box.low.y < m_view.thinnestPen) {
        const Point2 ends[] = {box.low, box.high};
        return strokePage(ends, {argb, m_view.thinnestPen});
    }
    m_canvas.fill(rings, nonZero, argb);
}

namespace {

double widthOfBand(std::span<const Point2> ring)
{
    double doubleArea = 0, length = 0;
    Point2 before = ring.back();
    for (const Point2& p : ring) {
        doubleArea += (before - ring.front()).crossProduct(p - ring.front());
        length += (p - before).length();
        before = p;
    }
    return length > 0 ? std::fabs(doubleArea) / length : 0;
}

}

void ListPainter::fillBands(const Rings& rings, std::uint32_t argb)
{
    if (m_view.measuring)
        return fillPage(rings, true, argb);
    Rings broad;
    rings.forEach([&](std::span<const Point2> ring) {
        if (widthOfBand(ring) < m_view.thinnestPen / 2)
            return strokeRing(ring, {argb, m_view.thinnestPen});
        broad.points.insert(broad.points.end(), ring.begin(), ring.end());
        broad.endRing();
    });
    fillPage(broad, true, argb);
}

void ListPainter::strokeRing(std::span<const Point2> ring, const Pen& pen)
{
    m_page.assign(ring.begin(), ring.end());
    m_page.push_back(ring.front());
    strokePage(m_page, pen);
}

void ListPainter::paintHatch(const Place& place, const HatchArea& area, const ResolvedLook& look)
{
    const Rings rings = ringsOfStyle(ringsOf(place, area.firstFigure, area.figureCount), area.style);
    if (rings.empty())
        return;
    if (area.gradient && !m_view.measuring)
        return paintGradient(place, area, rings, look);
    if (area.solid || m_view.measuring)
        return fillPage(rings, false, look.argb);
    paintPattern(place, area, rings, look);
}

// The pattern is measured in the hatch's plane, so the boundary is taken back there from the page, cut to what is seen.
void ListPainter::paintPattern(const Place& place, const HatchArea& area, const Rings& rings, const ResolvedLook& look)
{
    // A boundary's corner stands for all of it where the view is a perspective one.
    const Projection project = place.project.about(m_points.empty() ? area.frame.origin : m_points.front());
    const VcGeVector2d x = project(area.frame.x), y = project(area.frame.y);
    const double det = x.crossProduct(y);
    if (std::fabs(det) < 1e-12 * x.length() * y.length() || det == 0)
        return;
    const Point2 origin = project(area.frame.origin);
    const auto toPage = [&](const Point2& p) { return origin + x * p.x + y * p.y; };
    Rings plane = clipRings({m_view.low - VcGeVector2d(2, 2), m_view.high + VcGeVector2d(2, 2)}, rings);
    for (Point2& p : plane.points) {
        const VcGeVector2d v = p - origin;
        p = {v.crossProduct(y) / det, x.crossProduct(v) / det};
    }
    if (plane.empty())
        return;
    constexpr double kClosest = 0.7;  // pixels between lines that still look like lines
    const Pen pen = penOf(look);
    for (const VcDbHatch::PatternLine& line : area.lines) {
        const bool drawn =
            hatchLines(plane, line, kClosest / place.project.scale, [&](const Point2& a, const Point2& b) {
                const Point2 ends[] = {toPage(a), toPage(b)};
                strokePage(ends, pen);
            });
        if (!drawn)
            return fillPage(rings, false, (look.argb & 0xffffff) | (look.argb >> 25) << 24);
    }
}

namespace {

// How far rings reach along a direction, from a point.
std::pair<double, double> reachAlong(const Rings& rings, const Point2& from, const VcGeVector2d& direction)
{
    double low = 1e300, high = -1e300;
    for (const Point2& p : rings.points) {
        const double t = (p - from).dotProduct(direction);
        low = std::min(low, t);
        high = std::max(high, t);
    }
    return {low, high};
}

}

void ListPainter::paintGradient(const Place& place, const HatchArea& area, const Rings& rings, const ResolvedLook& look)
{
    using Shape = GradientFill::Shape;
    const GradientFill& fill = *area.gradient;
    std::uint32_t first = m_looks.argbOf(fill.first, look), second = m_looks.argbOf(fill.second, look);
    if (fill.inverted)
        std::swap(first, second);
    const VcGeVector2d along = place.project
                                   .about(m_points.empty() ? area.frame.origin : m_points.front())(
                                       area.frame.x * std::cos(fill.angle) + area.frame.y * std::sin(fill.angle))
                                   .normal();
    const VcGeVector2d across = along.perpVector();
    const Bounds2 box(rings.points);
    const Point2 middle = box.low + (box.high - box.low) * 0.5;
    const auto [left, right] = reachAlong(rings, middle, along);
    const auto [low, high] = reachAlong(rings, middle, across);
    Gradient gradient;
    if (fill.shape == Shape::Linear || fill.shape == Shape::Cylinder) {
        gradient.from = middle + along * left;
        gradient.to = middle + along * right;
        if (fill.shape == Shape::Linear)
            gradient.stops = {{0, first}, {1, second}};
        else
            gradient.stops = {{0, first}, {fill.centred ? 0.5 : 0.25, second}, {1, first}};
        return m_canvas.fillGradient(rings, gradient);
    }
    gradient.radial = true;
    gradient.from = middle + along * ((left + right) / 2) + across * ((low + high) / 2);
    double radius = std::hypot(right - left, high - low) / 2;
    if (fill.shape != Shape::Spherical) {  // out of the middle of a side
        gradient.from += across * ((low - high) / 2);
        radius = std::hypot((right - left) / 2, high - low);
    }
    gradient.focus = gradient.from;
    if (!fill.centred)
        gradient.focus += (along * -1.0 + across) * (radius / 4);
    gradient.to = gradient.from + along * radius;
    gradient.stops = {{0, second}, {1, first}};
    m_canvas.fillGradient(rings, gradient);
}

void ListPainter::paintImage(const Place& place, const Picture& picture, const ResolvedLook& look)
{
    const Rings outline = ringsOf(place, picture.outline, 1);
    if (m_view.measuring)
        return fillPage(outline, true, look.argb);
    const Projection project = place.project.about(picture.origin);
    const ImageAdjustment adjustment{picture.brightness, picture.contrast, picture.fade, picture.transparent};
    if (!picture.file.empty() && m_canvas.image(picture.file, project(picture.origin), project(picture.width),
                                                project(picture.height), outline, adjustment))
        return;
    m_omissions.add("image that cannot be loaded");
    // The frame with the name of what is missing.
    paintFigure(place, {Item::Stroke, Item::Continuous}, place.list.figures[picture.outline], look);
    DisplayList label;
    ListBuilder builder(label, m_db, m_omissions);
    builder.setOwnLook(EntityProps());
    addLabel(builder, picture.file, picture.origin, picture.width, picture.height);
    const Place there{label, place.matrix, place.project, place.flattener, place.reference};
    for (const TextRun& run : label.texts)
        paintText(there, run, look);
}

}  // namespace vk::render
