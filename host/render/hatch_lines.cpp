#include "host/render/hatch_lines.h"

#include <algorithm>
#include <cmath>

namespace vk::render {

namespace {

constexpr double kMostCrossings = 4e6;
constexpr double kMostDashes = 4e6;

// Along the lines, and across them in spacings.
struct LineAxes {
    Point2 base;
    VcGeVector2d along;
    double spacing, shift;  // from one line to the next across, and along

    explicit LineAxes(const VcDbHatch::PatternLine& line)
        : base(line.baseX, line.baseY), along(std::cos(line.angle), std::sin(line.angle))
    {
        const VcGeVector2d offset(line.offsetX, line.offsetY);
        spacing = along.crossProduct(offset);
        shift = along.dotProduct(offset);
    }
    Point2 toAxes(const Point2& p) const
    {
        const VcGeVector2d v = p - base;
        return {along.dotProduct(v), along.crossProduct(v) / spacing};
    }
    Point2 fromAxes(double u, double k) const { return base + along * u + along.perpVector() * (k * spacing); }
};

struct Crossing {
    double line, at;
    bool operator<(const Crossing& o) const { return line != o.line ? line < o.line : at < o.at; }
};

// An edge crosses the lines from above its lower end up to its upper end, so that a corner counts once.
void addCrossings(std::vector<Crossing>& to, Point2 a, Point2 b)
{
    if (a.y > b.y)
        std::swap(a, b);
    for (double k = std::floor(a.y) + 1; k <= b.y; ++k)
        to.push_back({k, a.x + (b.x - a.x) * (k - a.y) / (b.y - a.y)});
}

class DashedLine {
public:
    DashedLine(const LineAxes& axes, const VcDbHatch::PatternLine& line, double finest)
        : m_axes(axes), m_dashes(line.dashes)
    {
        for (const double dash : m_dashes)
            m_period += std::fabs(dash);
        if (!(m_period > finest))
            m_dashes.clear();
    }
    double period() const { return m_dashes.empty() ? 0 : m_period; }

    template <class Drawn>
    void draw(double k, double from, double to, Drawn& drawn) const
    {
        const auto tell = [&](double a, double b) { drawn(m_axes.fromAxes(a, k), m_axes.fromAxes(b, k)); };
        if (m_dashes.empty())
            return tell(from, to);
        const double origin = k * m_axes.shift;
        double at = origin + std::floor((from - origin) / m_period) * m_period;
        while (at <= to)
            for (const double dash : m_dashes) {
                const double end = at + std::fabs(dash);
                if (dash >= 0 && std::max(at, from) <= std::min(end, to))
                    tell(std::max(at, from), std::min(end, to));
                at = end;
            }
    }

private:
    const LineAxes& m_axes;
    std::vector<double> m_dashes;
    double m_period = 0;
};

}

bool hatchLines(const Rings& rings, const VcDbHatch::PatternLine& line, double closest,
                const std::function<void(const Point2&, const Point2&)>& drawn)
{
    const LineAxes axes(line);
    if (!(std::fabs(axes.spacing) > closest))
        return false;
    std::vector<Point2> placed;
    placed.reserve(rings.points.size());
    double expected = 0;
    rings.forEach([&](std::span<const Point2> ring) {
        Point2 before = axes.toAxes(ring.back());
        for (const Point2& p : ring) {
            placed.push_back(axes.toAxes(p));
            expected += std::fabs(placed.back().y - before.y);
            before = placed.back();
        }
    });
    if (!(expected < kMostCrossings))
        return false;

    std::vector<Crossing> crossings;
    std::size_t begin = 0;
    for (const std::size_t end : rings.ends) {
        for (std::size_t i = begin; i < end; ++i)
            addCrossings(crossings, placed[i], placed[i + 1 < end ? i + 1 : begin]);
        begin = end;
    }
    std::sort(crossings.begin(), crossings.end());

    const DashedLine dashed(axes, line, closest);
    double inside = 0;
    for (std::size_t i = 0; i + 1 < crossings.size(); i += 2)
        inside += crossings[i + 1].at - crossings[i].at;
    if (dashed.period() > 0 && inside / dashed.period() * double(line.dashes.size()) > kMostDashes)
        return false;
    for (std::size_t i = 0; i + 1 < crossings.size(); i += 2)
        dashed.draw(crossings[i].line, crossings[i].at, crossings[i + 1].at, drawn);
    return true;
}

namespace {

bool isInside(const Point2& p, std::span<const Point2> ring)
{
    bool inside = false;
    for (std::size_t i = 0, j = ring.size() - 1; i < ring.size(); j = i++)
        if ((ring[i].y > p.y) != (ring[j].y > p.y) &&
            p.x < (ring[j].x - ring[i].x) * (p.y - ring[i].y) / (ring[j].y - ring[i].y) + ring[i].x)
            inside = !inside;
    return inside;
}

struct RingBox {
    std::span<const Point2> ring;
    Point2 low{1e300, 1e300}, high{-1e300, -1e300};

    explicit RingBox(std::span<const Point2> points) : ring(points)
    {
        for (const Point2& p : points) {
            low = {std::min(low.x, p.x), std::min(low.y, p.y)};
            high = {std::max(high.x, p.x), std::max(high.y, p.y)};
        }
    }
    // By a corner that lies inside the other; rings of a hatch do not cross.
    bool holds(const RingBox& o) const
    {
        if (o.low.x < low.x || o.low.y < low.y || o.high.x > high.x || o.high.y > high.y)
            return false;
        std::size_t within = 0;
        const std::size_t step = std::max<std::size_t>(1, o.ring.size() / 5);
        std::size_t asked = 0;
        for (std::size_t i = 0; i < o.ring.size(); i += step, ++asked)
            within += isInside(o.ring[i], ring);
        return 2 * within > asked;
    }
};

}

Rings ringsOfStyle(const Rings& rings, VcDbHatch::HatchStyle style)
{
    constexpr std::size_t kMostRings = 4000;  // depth is found by comparing all with all
    if (style == VcDbHatch::kNormal || rings.ends.size() < 2 || rings.ends.size() > kMostRings)
        return rings;
    std::vector<RingBox> boxes;
    rings.forEach([&](std::span<const Point2> ring) { boxes.emplace_back(ring); });
    Rings kept;
    for (std::size_t i = 0; i < boxes.size(); ++i) {
        int depth = 0;
        for (std::size_t j = 0; j < boxes.size(); ++j)
            depth += i != j && boxes[j].holds(boxes[i]);
        if (depth > (style == VcDbHatch::kOuter ? 1 : 0))
            continue;
        kept.points.insert(kept.points.end(), boxes[i].ring.begin(), boxes[i].ring.end());
        kept.ends.push_back(kept.points.size());
    }
    return kept;
}

}  // namespace vk::render
