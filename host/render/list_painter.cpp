#include "host/render/list_painter.h"

#include "host/db/database.h"
#include "host/db/text_geometry.h"
#include "host/render/hatch_lines.h"
#include "host/render/page_clip.h"
#include "sdk/vcdb_records.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace vk::render {

namespace {

constexpr double kFarOutside = 4000;  // pixels beyond the page that coordinates may reach
constexpr int kDeepest = 100;         // blocks within blocks

bool isFinite(const Point2& p) { return std::isfinite(p.x) && std::isfinite(p.y); }

struct Bounds2 {
    Point2 low{1e300, 1e300}, high{-1e300, -1e300};
    void add(const Point2& p)
    {
        low = {std::min(low.x, p.x), std::min(low.y, p.y)};
        high = {std::max(high.x, p.x), std::max(high.y, p.y)};
    }
    explicit Bounds2(std::span<const Point2> points)
    {
        for (const Point2& p : points)
            add(p);
    }
};

}

ListPainter::Projection::Projection(const VcGeMatrix3d& m)
    : xx(m.entry[0][0]), xy(m.entry[0][1]), xz(m.entry[0][2]), x0(m.entry[0][3]), yx(m.entry[1][0]), yy(m.entry[1][1]),
      yz(m.entry[1][2]), y0(m.entry[1][3])
{
    scale = std::max({std::hypot(xx, yx), std::hypot(xy, yy), std::hypot(xz, yz), 1e-300});
}

ListPainter::ListPainter(const DatabaseCore& db, BlockLists& blocks, Canvas& canvas, LookResolver& looks, const PageView& view,
                         PaintBudget& budget, Omissions& omissions)
    : m_db(db), m_blocks(blocks), m_canvas(canvas), m_looks(looks), m_view(view), m_budget(budget), m_omissions(omissions)
{
    const double scale = db.header().real("$LTSCALE", 1);
    m_globalLinetypeScale = (scale > 0 ? scale : 1) * view.linetypeScale;
}

void ListPainter::paint(const DisplayList& list) { paintList(list, m_view.toPage, nullptr); }

ResolvedLook ListPainter::lookOf(const Place& place, std::uint32_t index)
{
    const DisplayList::Look& look = place.list.looks[index];
    return place.reference || look.owned ? m_looks.resolve(*look.props, place.reference) : m_looks.atTop(*look.props);
}

void ListPainter::paintList(const DisplayList& list, const VcGeMatrix3d& matrix, const ResolvedLook* reference)
{
    const Projection project(matrix);
    constexpr double kMeasured = 1e-4;  // of the size of what is measured
    const double tolerance = m_view.measuring ? kMeasured * list.bounds.diagonal() : m_view.tolerance / project.scale;
    const Place place{list, matrix, project, Flattener(tolerance), reference};
    std::uint32_t known = ~0u;
    ResolvedLook look;
    for (const Item& item : list.items) {
        if (m_budget.items == 0)
            return;
        --m_budget.items;
        if (item.look != known)
            look = lookOf(place, known = item.look);
        // A reference on a layer that is off still shows what is on other layers.
        if (look.visible || (item.kind == Item::Block && !look.frozen) || item.kind == Item::Window)
            paintItem(place, item, look);
    }
}

void ListPainter::paintItem(const Place& place, const Item& item, const ResolvedLook& look)
{
    const DisplayList& list = place.list;
    switch (item.kind) {
    case Item::Stroke:
        return paintFigures(place, item, look);
    case Item::Fill:
        return fillPage(ringsOf(place, item.first, item.count), (item.flags & Item::NonZero) != 0, look.argb);
    case Item::Mask:
        return m_canvas.erase(ringsOf(place, item.first, item.count));
    case Item::Text:
        return paintText(place, list.texts[item.first], look);
    case Item::Hatch:
        return paintHatch(place, list.hatches[item.first], look);
    case Item::Image:
        return paintImage(place, list.pictures[item.first], look);
    case Item::Block:
        return paintUse(place, list.blocks[item.first], look);
    case Item::Mark:
        return paintMark(place, list.marks[item.first], look);
    case Item::Endless:
        return paintEndless(place, list.endless[item.first], look);
    case Item::Window:
        if (onWindow)
            onWindow(list.windows[item.first].viewport);
        return;
    }
}

// Strokes

Pen ListPainter::penOf(const ResolvedLook& look) const
{
    return {look.argb, std::max(look.weightMm * m_view.pixelsPerMm, m_view.thinnestPen)};
}

bool ListPainter::isSeen(const Point2& low, const Point2& high, double margin) const
{
    return low.x <= m_view.high.x + margin && high.x >= m_view.low.x - margin && low.y <= m_view.high.y + margin &&
           high.y >= m_view.low.y - margin;
}

void ListPainter::strokeProjected(const Place& place, std::span<const VcGePoint3d> points, const Pen& pen)
{
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
    const PageRect far{m_view.low - VcGeVector2d(kFarOutside, kFarOutside), m_view.high + VcGeVector2d(kFarOutside, kFarOutside)};
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
        to = std::max(to, whole > 0 ? line.lengthUpTo(i) + (part->second - page[i]).length() * perPixel : line.lengthUpTo(i + 1));
    }
    return {from, to};
}

}

void ListPainter::paintDashes(const Place& place, std::span<const VcGePoint3d> points, const DashPattern& pattern, const ResolvedLook& look)
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
    DashWalk(pattern, line.length()).run(from, to, [&](double a, double b) {
        m_dash.clear();
        line.add(m_dash, a, b);
        strokeProjected(place, m_dash, pen);
    }, mark);
}

// A text of a linetype. Shapes need their shape file, which drawings do not bring along.
void ListPainter::paintDashMark(const Place& place, const MeasuredLine& line, double along, std::size_t element, const ResolvedLook& look)
{
    const VcDbLinetypeTableRecord::Dash& dash = look.linetype->dashes()[element];
    if (!(dash.flags & VcDbLinetypeTableRecord::kText) || dash.text.empty())
        return m_omissions.add("shape of a linetype");
    const double scale = m_globalLinetypeScale * look.linetypeScale;
    DisplayList marks;
    ListBuilder builder(marks, m_db, m_omissions);
    builder.setOwnLook(EntityProps());
    VcGeVector3d x = line.directionAt(along), y = VcGeVector3d::zAxis().crossProduct(x).normal();
    if ((dash.flags & VcDbLinetypeTableRecord::kUprightText) && place.project(x).x < 0) {
        x = -x;
        y = -y;
    }
    if (dash.flags & VcDbLinetypeTableRecord::kAbsoluteRotation) {
        x = VcGeVector3d::xAxis();
        y = VcGeVector3d::yAxis();
    }
    const VcGePoint3d origin = line.at(along) + x * (dash.offset.x * scale) + y * (dash.offset.y * scale);
    const double c = std::cos(dash.rotation), s = std::sin(dash.rotation);
    const vktext::TextStyleSpec style = textStyleSpec(dash.style, &m_db);
    const double height = (style.fixedHeight > 0 ? style.fixedHeight : 1) * dash.scale * scale;
    builder.text(style, height, dash.text, origin, x * c + y * s, y * c - x * s);
    const Place there{marks, place.matrix, place.project, place.flattener, place.reference};
    for (const TextRun& run : marks.texts)
        paintText(there, run, look);
}

void ListPainter::paintEndless(const Place& place, const EndlessLine& line, const ResolvedLook& look)
{
    if (m_view.measuring)
        return;
    const Point2 base = place.project(line.base);
    const VcGeVector2d direction = place.project(line.direction);
    if (!isFinite(base) || !(direction.length() > 0))
        return dot(base, penOf(look));
    const double reach = 2 * ((m_view.high - m_view.low).length() + (base - m_view.low).length()) / direction.length();
    const VcGePoint3d ends[] = {line.bothWays ? line.base - line.direction * reach : line.base, line.base + line.direction * reach};
    const DashPattern pattern = look.linetype ? DashPattern::of(*look.linetype, m_globalLinetypeScale * look.linetypeScale) : DashPattern();
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
    const double size = mark.size > 0 ? mark.size * place.project.scale : percent / 100 * (m_view.high.y - m_view.low.y);
    const VcGeVector2d x = place.project(mark.x).normal() * size, y = place.project(mark.y).normal() * size;
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
        for (const auto& [x0, y0, x1, y1] : {std::array{-0.5, -0.5, 0.5, -0.5}, {0.5, -0.5, 0.5, 0.5}, {0.5, 0.5, -0.5, 0.5}, {-0.5, 0.5, -0.5, -0.5}})
            segment(x0, y0, x1, y1);
    if (frame & 32) {
        std::vector<Point2> circle;
        for (int i = 0; i <= 64; ++i)
            circle.push_back(at + x * (0.5 * std::cos(i * geom::kTwoPi / 64)) + y * (0.5 * std::sin(i * geom::kTwoPi / 64)));
        circle.back() = circle.front();
        strokePage(circle, pen);
    }
}

// Areas

Rings ListPainter::ringsOf(const Place& place, std::uint32_t first, std::uint32_t count)
{
    Rings rings;
    bool far = false;
    const PageRect nearby{m_view.low - VcGeVector2d(kFarOutside, kFarOutside), m_view.high + VcGeVector2d(kFarOutside, kFarOutside)};
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

void ListPainter::fillPage(const Rings& rings, bool nonZero, std::uint32_t argb)
{
    if (rings.empty())
        return;
    const Bounds2 box(rings.points);
    if (!isSeen(box.low, box.high, 1))
        return;
    // What is thinner than a pixel would fade away.
    if (box.high.x - box.low.x < m_view.thinnestPen || box.high.y - box.low.y < m_view.thinnestPen) {
        const Point2 ends[] = {box.low, box.high};
        return strokePage(ends, {argb, m_view.thinnestPen});
    }
    m_canvas.fill(rings, nonZero, argb);
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
    const VcGeVector2d x = place.project(area.frame.x), y = place.project(area.frame.y);
    const double det = x.crossProduct(y);
    if (std::fabs(det) < 1e-12 * x.length() * y.length() || det == 0)
        return;
    const Point2 origin = place.project(area.frame.origin);
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
        const bool drawn = hatchLines(plane, line, kClosest / place.project.scale, [&](const Point2& a, const Point2& b) {
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
    const VcGeVector2d along = place.project(area.frame.x * std::cos(fill.angle) + area.frame.y * std::sin(fill.angle)).normal();
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
    const ImageAdjustment adjustment{picture.brightness, picture.contrast, picture.fade, picture.transparent};
    if (!picture.file.empty() && m_canvas.image(picture.file, place.project(picture.origin), place.project(picture.width),
                                                place.project(picture.height), outline, adjustment))
        return;
    m_omissions.add("image that cannot be loaded");
    // The frame with the name of what is missing.
    paintFigure(place, {Item::Stroke, Item::Continuous}, place.list.figures[picture.outline], look);
    DisplayList label;
    ListBuilder builder(label, m_db, m_omissions);
    builder.setOwnLook(EntityProps());
    const std::size_t slash = picture.file.find_last_of("/\\");
    const std::string name = slash == std::string::npos ? picture.file : picture.file.substr(slash + 1);
    const double width = picture.width.length(), letters = double(std::max<std::size_t>(name.size(), 8));
    const double height = std::min(0.7 * width / letters, picture.height.length() / 3);
    vktext::TextStyleSpec style;
    style.font = "txt";
    builder.text(style, height, name, picture.origin + picture.width * 0.05 + picture.height * 0.45, picture.width.normal(),
                 picture.height.normal());
    const Place there{label, place.matrix, place.project, place.flattener, place.reference};
    for (const TextRun& run : label.texts)
        paintText(there, run, look);
}

// Texts

void ListPainter::paintText(const Place& place, const TextRun& run, const ResolvedLook& look)
{
    const Point2 origin = place.project(run.origin);
    const VcGeVector2d x = place.project(run.x), y = place.project(run.y);
    const auto at = [&](double px, double py) { return origin + x * px + y * py; };
    const Point2 box[] = {at(run.ink.left, run.ink.bottom), at(run.ink.right, run.ink.bottom), at(run.ink.right, run.ink.top),
                          at(run.ink.left, run.ink.top)};
    const Bounds2 bounds(box);
    const Pen pen = penOf(look);
    if (!isFinite(bounds.low) || !isFinite(bounds.high) || !isSeen(bounds.low, bounds.high, pen.width))
        return;
    constexpr double kLegible = 1.3;  // pixels; below, a line of text is a grey bar
    if (m_view.measuring || run.height * std::max(x.length(), y.length()) < kLegible) {
        Rings bar;
        bar.points.assign(std::begin(box), std::end(box));
        bar.endRing();
        return m_canvas.fill(bar, true, (look.argb & 0xffffff) | (look.argb >> 25) << 24);
    }
    Rings letters;
    for (std::uint32_t i = run.firstGlyph; i < run.firstGlyph + run.glyphCount; ++i) {
        const vktext::PlacedGlyph& glyph = place.list.glyphs[i];
        const vktext::GlyphShape& shape = run.font->shape(glyph.c);
        for (const auto& line : shape.lines) {
            m_page.clear();
            for (const VcGePoint2d& p : line)
                m_page.push_back(at(glyph.origin.x + glyph.xScale * p.x + glyph.slant * p.y, glyph.origin.y + glyph.yScale * p.y));
            if (!shape.filled) {
                strokePage(m_page, pen);
                continue;
            }
            letters.points.insert(letters.points.end(), m_page.begin(), m_page.end());
            letters.endRing();
        }
    }
    if (!letters.empty())
        m_canvas.fill(clipRings({m_view.low - VcGeVector2d(kFarOutside, kFarOutside), m_view.high + VcGeVector2d(kFarOutside, kFarOutside)}, letters),
                      true, look.argb);
}

// Blocks

namespace {

// Numbers k from 0 to count - 1 for which a stretch that moves by step meets the page; a range that holds them.
std::pair<double, double> meeting(double low, double high, double step, double pageLow, double pageHigh, double count)
{
    if (step == 0)
        return low <= pageHigh && high >= pageLow ? std::pair(0.0, count - 1) : std::pair(0.0, -1.0);
    double a = (pageLow - high) / step, b = (pageHigh - low) / step;
    if (a > b)
        std::swap(a, b);
    return {std::max(0.0, std::ceil(a)), std::min(count - 1, std::floor(b))};
}

}

void ListPainter::paintUse(const Place& place, const BlockUse& use, const ResolvedLook& look)
{
    BlockLists::BlockList* block = m_blocks.find(use.block);
    if (!block || block->drawing || m_depth >= kDeepest)
        return;
    const VcGeMatrix3d matrix = place.matrix * use.matrix;
    const ClipFrame* clip = use.clip >= 0 ? &place.list.clips[std::size_t(use.clip)] : nullptr;
    if (use.columns == 1 && use.rows == 1)
        return paintCell(clip, *block, matrix, look);
    const geom::Box3d box = movedBox(block->bounds, matrix);
    if (box.isEmpty())
        return;
    const VcGeVector2d column = place.project(use.columnStep), row = place.project(use.rowStep);
    // Cells closer than half a pixel cannot be told apart.
    const auto stride = [](const VcGeVector2d& step) { return step.length() > 0 ? std::max(1.0, std::ceil(0.5 / step.length())) : 1e9; };
    const double columnStride = stride(column), rowStride = stride(row);
    for (double r = 0; r < use.rows; r += rowStride) {
        const Point2 low = Point2(box.min.x, box.min.y) + row * r, high = Point2(box.max.x, box.max.y) + row * r;
        const auto alongX = meeting(low.x, high.x, column.x, m_view.low.x, m_view.high.x, use.columns);
        const auto alongY = meeting(low.y, high.y, column.y, m_view.low.y, m_view.high.y, use.columns);
        for (double c = std::max(alongX.first, alongY.first); c <= std::min(alongX.second, alongY.second); c += columnStride)
            paintCell(clip, *block, place.matrix * VcGeMatrix3d::translation(use.columnStep * c + use.rowStep * r) * use.matrix, look);
    }
}

void ListPainter::paintCell(const ClipFrame* clip, BlockLists::BlockList& block, const VcGeMatrix3d& matrix, const ResolvedLook& look)
{
    const geom::Box3d box = movedBox(block.bounds, matrix);
    if (!block.unbounded && (box.isEmpty() ? block.list.blocks.empty() : !isSeen({box.min.x, box.min.y}, {box.max.x, box.max.y}, 40)))
        return;
    constexpr double kSmallest = 0.4;  // pixels
    if (!m_view.measuring && !block.unbounded && !box.isEmpty() && look.visible && box.max.x - box.min.x < kSmallest && box.max.y - box.min.y < kSmallest)
        return dot({box.min.x, box.min.y}, penOf(look));
    if (clip) {
        const Projection project(matrix * clip->toClip.inverse());
        Rings rings;
        for (const VcGePoint2d& p : clip->corners)
            rings.points.push_back(project(VcGePoint3d(p.x, p.y, 0)));
        rings.endRing();
        m_canvas.pushClip(rings, clip->inverted);
    }
    block.drawing = true;
    ++m_depth;
    paintList(block.list, matrix, &look);
    --m_depth;
    block.drawing = false;
    if (clip)
        m_canvas.popClip();
}

}  // namespace vk::render
