// QDIM: a row of dimensions over everything that is selected.
#include "host/commands/dim_common.h"
#include "host/commands/families.h"
#include "sdk/vcdb_curves.h"
#include "sdk/vcdb_polylines.h"
#include "sdk/vcdb_tables.h"

namespace vk::commands {

namespace {

using namespace edit;
using Points = std::vector<VcGePoint3d>;

struct Round {
    VcGePoint3d center;
    double radius;
};

// What can be dimensioned of the selected objects, in the UCS.
struct Geometry {
    Points points;  // ends, corners and centres
    std::vector<Round> rounds;
};

bool addTo(Editor& ed, Geometry& g, const VcDbEntity& entity)
{
    if (const auto* circle = VcDbCircle::cast(&entity)) {
        g.rounds.push_back({fromWorld(ed, circle->center()), circle->radius()});
        g.points.push_back(g.rounds.back().center);
        return true;
    }
    if (const auto* arc = VcDbArc::cast(&entity))
        g.rounds.push_back({fromWorld(ed, arc->center()), arc->radius()});
    const bool isPolyline =
        VcDbPolyline::cast(&entity) || VcDb2dPolyline::cast(&entity) || VcDb3dPolyline::cast(&entity);
    const auto* curve = VcDbCurve::cast(&entity);
    double last = 1;
    VcGePoint3d p;
    if (!isPolyline) {
        if (!VcDbLine::cast(&entity) && !VcDbArc::cast(&entity))
            return false;
        for (const auto end : {&VcDbCurve::getStartPoint, &VcDbCurve::getEndPoint})
            if ((curve->*end)(p) == Vcad::eOk)
                g.points.push_back(fromWorld(ed, p));
        return true;
    }
    curve->getEndParam(last);
    for (int i = 0; i <= int(last); ++i)
        if (curve->getPointAtParam(i, p) == Vcad::eOk)
            g.points.push_back(fromWorld(ed, p));
    return true;
}

Geometry selectGeometry(Editor& ed)
{
    Geometry g;
    std::size_t left = 0;
    const auto objects = ed.select({.prompt = "Select geometry to dimension: "});
    for (const VcDbObjectId id : objects->ids()) {
        const auto* entity = ed.db().liveAs<VcDbEntity>(id);
        left += !entity || !addTo(ed, g, *entity);
    }
    if (left > 0)
        ed.report("{} {} no line, polyline, arc or circle and {} left out.", left, left == 1 ? "is" : "are",
                  left == 1 ? "was" : "were");
    return g;
}

// A row along X or Y: one point of each coordinate, that which is nearest to the row.
class Row {
public:
    Row(Editor& ed, const Points& points, const VcGePoint3d& at) : m_ed(ed), m_at(at)
    {
        VcGePoint3d low = points.front(), high = low;
        for (const VcGePoint3d& p : points) {
            low = VcGePoint3d(std::min(low.x, p.x), std::min(low.y, p.y), low.z);
            high = VcGePoint3d(std::max(high.x, p.x), std::max(high.y, p.y), high.z);
        }
        m_isHorizontal = wantsHorizontal(low, high, at);
        m_away = across(at) < (across(low) + across(high)) / 2 ? -1 : 1;
        m_points = points;
        thinOut();
    }

    void continuous() const
    {
        for (std::size_t i = 0; i + 1 < m_points.size(); ++i)
            add(m_points[i], m_points[i + 1], 0);
    }

    void baseline(const std::optional<VcGePoint3d>& datum) const
    {
        std::size_t from = 0;
        for (std::size_t i = 0; datum && i < m_points.size(); ++i)
            if (std::abs(along(m_points[i]) - along(*datum)) < std::abs(along(m_points[from]) - along(*datum)))
                from = i;
        int step = 0;
        for (std::size_t i = from; i-- > 0;)
            add(m_points[from], m_points[i], step++);
        for (std::size_t i = from + 1; i < m_points.size(); ++i)
            add(m_points[from], m_points[i], step++);
    }

    // The innermost pair lies nearest.
    void staggered() const
    {
        const std::size_t n = m_points.size();
        int step = 0;
        for (std::size_t i = n / 2; i-- > 0;)
            add(m_points[i], m_points[n - 1 - i], step++);
    }

    void ordinate(const std::optional<VcGePoint3d>& datum) const
    {
        for (const VcGePoint3d& p : m_points) {
            auto made = std::make_unique<VcDbOrdinateDimension>();
            made->setOrigin(toWorld(m_ed, datum.value_or(VcGePoint3d())));
            made->setDefiningPoint(toWorld(m_ed, p));
            made->setLeaderEndPoint(
                toWorld(m_ed, m_isHorizontal ? VcGePoint3d(p.x, m_at.y, p.z) : VcGePoint3d(m_at.x, p.y, p.z)));
            m_isHorizontal ? made->useXAxis() : made->useYAxis();
            addDimension(m_ed, std::move(made), {});
        }
    }

private:
    double along(const VcGePoint3d& p) const { return m_isHorizontal ? p.x : p.y; }
    double across(const VcGePoint3d& p) const { return m_isHorizontal ? p.y : p.x; }

    void thinOut()
    {
        std::sort(m_points.begin(), m_points.end(),
                  [&](const VcGePoint3d& a, const VcGePoint3d& b) { return along(a) < along(b); });
        const double slack = 1e-9 * std::max(std::abs(along(m_points.front())), std::abs(along(m_points.back())));
        Points kept;
        for (const VcGePoint3d& p : m_points) {
            if (kept.empty() || along(p) - along(kept.back()) > slack)
                kept.push_back(p);
            else if (std::abs(across(p) - across(m_at)) < std::abs(across(kept.back()) - across(m_at)))
                kept.back() = p;
        }
        m_points = std::move(kept);
    }

    void add(const VcGePoint3d& a, const VcGePoint3d& b, int step) const
    {
        const VcDbDimVars vars = currentDimVars(m_ed);
        const double line = across(m_at) + m_away * step * vars.dimdli * currentDimScale(m_ed, vars);
        auto made = std::make_unique<VcDbRotatedDimension>();
        made->setXLine1Point(toWorld(m_ed, a));
        made->setXLine2Point(toWorld(m_ed, b));
        made->setDimLinePoint(
            toWorld(m_ed, m_isHorizontal ? VcGePoint3d(b.x, line, b.z) : VcGePoint3d(line, b.y, b.z)));
        made->setRotation((m_isHorizontal ? 0 : M_PI / 2) + ucsTwist(m_ed));
        lastDimension() = addDimension(m_ed, std::move(made), {}).id;
    }

    Editor& m_ed;
    VcGePoint3d m_at;
    Points m_points;
    bool m_isHorizontal = true;
    double m_away = 1;
};

// Each on the side of its circle on which the place lies.
void dimensionRounds(Editor& ed, const std::vector<Round>& rounds, const VcGePoint3d& at, bool wholeDiameter)
{
    for (const Round& r : rounds) {
        VcGeVector3d out = at - r.center;
        out.z = 0;
        out = out.length() > 0 ? out.normal() * r.radius : VcGeVector3d(r.radius, 0, 0);
        std::unique_ptr<VcDbDimension> made;
        if (wholeDiameter) {
            auto diameter = std::make_unique<VcDbDiametricDimension>();
            diameter->setChordPoint(toWorld(ed, r.center + out));
            diameter->setFarChordPoint(toWorld(ed, r.center - out));
            made = std::move(diameter);
        } else {
            auto radius = std::make_unique<VcDbRadialDimension>();
            radius->setCenter(toWorld(ed, r.center));
            radius->setChordPoint(toWorld(ed, r.center + out));
            made = std::move(radius);
        }
        addDimension(ed, std::move(made), {});
    }
}

void draw(Editor& ed, const Geometry& g, const std::string& kind, const VcGePoint3d& at,
          const std::optional<VcGePoint3d>& datum)
{
    if (kind == "Radius" || kind == "Diameter") {
        if (g.rounds.empty())
            throw CommandError{"No arc and no circle is selected."};
        return dimensionRounds(ed, g.rounds, at, kind == "Diameter");
    }
    const Row row(ed, g.points, at);
    if (kind == "Ordinate")
        row.ordinate(datum);
    else if (kind == "Baseline")
        row.baseline(datum);
    else
        kind == "Staggered" ? row.staggered() : row.continuous();
}

std::string& lastKind()
{
    static std::string kind = "Continuous";
    return kind;
}

void quickDim(Editor& ed)
{
    const Geometry g = selectGeometry(ed);
    if (g.points.empty())
        return;
    std::optional<VcGePoint3d> datum;
    for (;;) {
        const Answer a =
            ed.askPoint(fmt::format("Specify dimension line position, or "
                                    "[Continuous/Staggered/Baseline/Ordinate/Radius/Diameter/datumPoint] <{}>",
                                    lastKind()),
                        {.keywords = "Continuous Staggered Baseline Ordinate Radius Diameter datumPoint",
                         .from = g.points.front(),
                         .enterEnds = true});
        if (a.status == Answer::Status::Value)
            return draw(ed, g, lastKind(), a.point, datum);
        if (a.status != Answer::Status::Keyword)
            continue;
        if (a.text == "datumPoint")
            datum = ed.point("Select new datum point");
        else
            lastKind() = a.text;
    }
}

const HostCommand kCommands[] = {
    {"QDIM", nullptr, kUsesPickSet, "Dimensions everything that is selected in one row.", quickDim},
};

}

std::span<const HostCommand> quickDimensionCommands() { return kCommands; }

}  // namespace vk::commands
