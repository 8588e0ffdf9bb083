// What a hatch looks like as lines: each family of its pattern, cut where it passes the boundary, with its dashes.
#include "host/db/ent_util.h"
#include "host/geom/arbitrary_axis.h"
#include "host/geom/curve.h"
#include "sdk/vcdb_curves.h"
#include "sdk/vcdb_hatch.h"

#include <algorithm>

namespace {

using vk::geom::Curve;

constexpr std::size_t kMostPieces = 1'000'000;
constexpr double kMostLines = 200'000;

// One loop as a closed polygon. Curved edges become chords that stay within the tolerance.
class LoopOutline {
public:
    explicit LoopOutline(double tolerance) : m_tolerance(tolerance) {}

    std::vector<VcGePoint2d> of(const VcDbHatch::Loop& loop)
    {
        m_points.clear();
        const std::size_t n = loop.vertices.size();
        for (std::size_t i = 0; i < n; ++i) {
            const VcDbHatch::Vertex& from = loop.vertices[i];
            m_points.push_back(from.point);
            if (from.bulge != 0)
                addBulge(from.point, loop.vertices[(i + 1) % n].point, from.bulge);
        }
        for (const VcDbHatch::Edge& edge : loop.edges)
            addEdge(edge);
        return std::move(m_points);
    }

private:
    void addBulge(const VcGePoint2d& from, const VcGePoint2d& to, double bulge)
    {
        const auto arc = bulgeArc(from, to, bulge);
        if (!arc)
            return;
        const double first = bulge > 0 ? arc->start : arc->end, sweep = 4 * std::atan(bulge);
        addEllipse(arc->center, {arc->radius, 0}, {0, arc->radius}, first, first + sweep);
    }

    void addEllipse(const VcGePoint2d& center, const VcGeVector2d& u, const VcGeVector2d& v, double from, double to)
    {
        const double radius = std::max(u.length(), v.length());
        const double step = 2 * std::acos(std::clamp(1 - m_tolerance / std::max(radius, m_tolerance), -1.0, 1.0));
        const int count = std::clamp(int(std::ceil(std::abs(to - from) / std::max(step, 1e-3))), 2, 8192);
        for (int i = 0; i <= count; ++i) {
            const double t = from + (to - from) * i / count;
            m_points.push_back(center + u * std::cos(t) + v * std::sin(t));
        }
    }

    void addEdge(const VcDbHatch::Edge& e)
    {
        const double sign = e.isAnticlockwise ? 1 : -1;
        const double sweep = e.endAngle > e.startAngle ? e.endAngle - e.startAngle : e.endAngle - e.startAngle + kTwoPi;
        const double from = sign * e.startAngle, to = from + sign * sweep;
        const VcGeVector2d major = e.second - VcGePoint2d();
        switch (e.type) {
        case VcDbHatch::kLine:
            m_points.push_back(e.first);
            m_points.push_back(e.second);
            return;
        case VcDbHatch::kCirArc:
            return addEllipse(e.first, {e.radius, 0}, {0, e.radius}, from, to);
        case VcDbHatch::kEllArc:
            return addEllipse(e.first, major, major.perpVector() * e.radius, from, to);
        case VcDbHatch::kSpline:
            return addSpline(e.spline.get());
        }
    }

    void addSpline(const VcDbHatch::SplineData& data)
    {
        vk::geom::Nurbs nurbs{data.degree, {}, data.knots, {}};
        for (const VcDbHatch::ControlPoint& c : data.controlPoints) {
            nurbs.poles.push_back({c.point.x, c.point.y, 0});
            if (data.isRational)
                nurbs.weights.push_back(c.weight);
        }
        const Curve curve = std::move(nurbs);
        if (!vk::geom::isValid(curve))
            return;
        const auto range = vk::geom::paramRange(curve);
        const int count = std::clamp(int(data.controlPoints.size()) * 32, 64, 8192);
        for (int i = 0; i <= count; ++i) {
            const VcGePoint3d p = vk::geom::pointAt(curve, range.from + (range.to - range.from) * i / count);
            m_points.push_back({p.x, p.y});
        }
    }

    double m_tolerance;
    std::vector<VcGePoint2d> m_points;
};

struct Crossing {
    double along;
    std::size_t loop;
};

// The loops turned so that a family of lines runs along X.
class Scan {
public:
    Scan(const std::vector<std::vector<VcGePoint2d>>& loops, double angle, int style) : m_style(style)
    {
        const double c = std::cos(angle), s = std::sin(angle);
        for (const auto& loop : loops) {
            auto& turned = m_loops.emplace_back();
            for (const VcGePoint2d& p : loop) {
                turned.push_back({p.x * c + p.y * s, p.y * c - p.x * s});
                m_low = std::min(m_low, turned.back().y);
                m_high = std::max(m_high, turned.back().y);
            }
        }
    }
    double low() const { return m_low; }
    double high() const { return m_high; }

    // What of the line at this height lies inside, from left to right.
    std::vector<std::pair<double, double>> inside(double y) const
    {
        std::vector<Crossing> crossings;
        for (std::size_t l = 0; l < m_loops.size(); ++l)
            for (std::size_t i = 0; i < m_loops[l].size(); ++i) {
                const VcGePoint2d &a = m_loops[l][i], &b = m_loops[l][(i + 1) % m_loops[l].size()];
                if ((a.y <= y) != (b.y <= y))
                    crossings.push_back({a.x + (b.x - a.x) * (y - a.y) / (b.y - a.y), l});
            }
        std::sort(crossings.begin(), crossings.end(),
                  [](const Crossing& a, const Crossing& b) { return a.along < b.along; });
        std::vector<std::pair<double, double>> spans;
        std::vector<bool> in(m_loops.size());
        int depth = 0;
        for (std::size_t i = 0; i + 1 < crossings.size(); ++i) {
            in[crossings[i].loop] = !in[crossings[i].loop];
            depth += in[crossings[i].loop] ? 1 : -1;
            if (isHatched(depth) && crossings[i + 1].along > crossings[i].along)
                spans.push_back({crossings[i].along, crossings[i + 1].along});
        }
        return spans;
    }

private:
    bool isHatched(int depth) const
    {
        return m_style == VcDbHatch::kNormal ? depth % 2 == 1 : m_style == VcDbHatch::kOuter ? depth == 1 : depth > 0;
    }
    std::vector<std::vector<VcGePoint2d>> m_loops;
    double m_low = 1e300, m_high = -1e300;
    int m_style;
};

class PatternPieces {
public:
    PatternPieces(const VcDbHatch& hatch, std::vector<VcDbEntity*>& pieces)
        : m_hatch(hatch), m_frame(vk::geom::arbitraryFrame(hatch.normal())), m_pieces(pieces)
    {
    }

    bool addFamily(const VcDbHatch::PatternLine& line, const Scan& scan)
    {
        const double c = std::cos(line.angle), s = std::sin(line.angle);
        const double baseX = line.baseX * c + line.baseY * s, baseY = line.baseY * c - line.baseX * s;
        const double stepX = line.offsetX * c + line.offsetY * s, stepY = line.offsetY * c - line.offsetX * s;
        if (!(std::abs(stepY) > 0) || !(scan.high() > scan.low()))
            return true;
        double first = (scan.low() - baseY) / stepY, last = (scan.high() - baseY) / stepY;
        if (first > last)
            std::swap(first, last);
        if (!(last - first < kMostLines))
            return false;
        m_cos = c;
        m_sin = s;
        for (double k = std::ceil(first); k <= last; ++k)
            for (const auto& [from, to] : scan.inside(baseY + k * stepY))
                if (!addDashes(line.dashes, baseX + k * stepX, baseY + k * stepY, from, to))
                    return false;
        return true;
    }

private:
    bool addDashes(const std::vector<double>& dashes, double start, double y, double from, double to)
    {
        double period = 0;
        for (const double dash : dashes)
            period += std::abs(dash);
        if (!(period > 0))
            return add(from, to, y);
        if (!((to - from) / period < double(kMostPieces)))
            return false;
        for (double at = start + std::floor((from - start) / period) * period; at < to; at += period) {
            double x = at;
            for (const double dash : dashes) {
                const double next = x + std::abs(dash);
                const double a = std::max(x, from), b = std::min(next, to);
                if ((dash > 0 && b > a) || (dash == 0 && x >= from && x <= to))
                    if (!add(a, std::max(a, b), y))
                        return false;
                x = next;
            }
        }
        return true;
    }

    VcGePoint3d world(double x, double y) const
    {
        return m_frame.toWorld(VcGePoint3d(x * m_cos - y * m_sin, x * m_sin + y * m_cos, m_hatch.elevation()));
    }

    bool add(double from, double to, double y)
    {
        if (m_pieces.size() >= kMostPieces)
            return false;
        if (from == to)
            m_pieces.push_back(pieceOf(m_hatch, std::make_unique<VcDbPoint>(world(from, y))));
        else
            m_pieces.push_back(pieceOf(m_hatch, std::make_unique<VcDbLine>(world(from, y), world(to, y))));
        return true;
    }

    const VcDbHatch& m_hatch;
    vk::geom::Frame m_frame;
    std::vector<VcDbEntity*>& m_pieces;
    double m_cos = 1, m_sin = 0;
};

}

Vcad::ErrorStatus VcDbHatch::explode(std::vector<VcDbEntity*>& pieces) const
{
    VcDbExtents box;
    if (isSolidFill() || isGradient() || m_lines.empty() || getGeomExtents(box) != Vcad::eOk)
        return Vcad::eCannotExplode;
    LoopOutline outline((box.maxPoint() - box.minPoint()).length() * 1e-6);
    std::vector<std::vector<VcGePoint2d>> loops;
    for (const Loop& loop : m_loops)
        loops.push_back(outline.of(loop));
    std::vector<VcDbEntity*> made;
    PatternPieces family(*this, made);
    bool all = true;
    for (const PatternLine& line : m_lines)
        all = all && family.addFamily(line, Scan(loops, line.angle, m_style));
    if (!all)
        for (VcDbEntity* piece : std::exchange(made, {}))
            delete piece;
    pieces.insert(pieces.end(), made.begin(), made.end());
    return all ? Vcad::eOk : Vcad::eCannotExplode;
}
