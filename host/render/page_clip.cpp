#include "host/render/page_clip.h"

namespace vk::render {

std::optional<std::pair<Point2, Point2>> clippedSegment(const PageRect& rect, const Point2& a, const Point2& b)
{
    double from = 0, to = 1;
    const auto cut = [&](double start, double delta, double low, double high) {
        if (delta == 0)
            return start >= low && start <= high;
        double enter = (low - start) / delta, leave = (high - start) / delta;
        if (enter > leave)
            std::swap(enter, leave);
        from = std::max(from, enter);
        to = std::min(to, leave);
        return from <= to;
    };
    const VcGeVector2d d = b - a;
    if (!cut(a.x, d.x, rect.low.x, rect.high.x) || !cut(a.y, d.y, rect.low.y, rect.high.y))
        return std::nullopt;
    return std::pair(from > 0 ? a + d * from : a, to < 1 ? a + d * to : b);
}

void clipLine(const PageRect& rect, std::span<const Point2> points,
              const std::function<void(std::span<const Point2>)>& each)
{
    std::vector<Point2> run;
    const auto flush = [&] {
        if (run.size() > 1)
            each(run);
        run.clear();
    };
    for (std::size_t i = 0; i + 1 < points.size(); ++i) {
        const auto part = clippedSegment(rect, points[i], points[i + 1]);
        if (!part) {
            flush();
            continue;
        }
        if (run.empty() || run.back() != part->first) {
            flush();
            run.push_back(part->first);
        }
        run.push_back(part->second);
        if (part->second != points[i + 1])
            flush();
    }
    flush();
}

namespace {

// Cuts a ring by one side of the rectangle. inside is positive within.
template <class Inside>
std::vector<Point2> cutRing(const std::vector<Point2>& ring, Inside&& inside)
{
    std::vector<Point2> kept;
    for (std::size_t i = 0; i < ring.size(); ++i) {
        const Point2 &a = ring[i], &b = ring[i + 1 < ring.size() ? i + 1 : 0];
        const double da = inside(a), db = inside(b);
        if (da >= 0)
            kept.push_back(a);
        if ((da >= 0) != (db >= 0))
            kept.push_back(a + (b - a) * (da / (da - db)));
    }
    return kept;
}

}

Rings clipRings(const PageRect& rect, const Rings& rings)
{
    Rings clipped;
    rings.forEach([&](std::span<const Point2> points) {
        std::vector<Point2> ring(points.begin(), points.end());
        ring = cutRing(ring, [&](const Point2& p) { return p.x - rect.low.x; });
        ring = cutRing(ring, [&](const Point2& p) { return rect.high.x - p.x; });
        ring = cutRing(ring, [&](const Point2& p) { return p.y - rect.low.y; });
        ring = cutRing(ring, [&](const Point2& p) { return rect.high.y - p.y; });
        clipped.points.insert(clipped.points.end(), ring.begin(), ring.end());
        clipped.endRing();
    });
    return clipped;
}

}  // namespace vk::render
