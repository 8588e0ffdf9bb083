// TRIM, EXTEND - cutting curves back to edges and letting them go on to edges.
#include "host/commands/curve_edits.h"
#include "host/commands/families.h"
#include "host/commands/trim_edges.h"
#include "host/db/curve_of.h"
#include "host/db/database.h"
#include "host/edit/pick.h"
#include "host/edit/sysvars.h"
#include "host/geom/apparent.h"
#include "host/geom/prolong.h"
#include "host/geom/trim.h"
#include "sdk/vcdb_tables.h"

namespace vk::commands {

namespace {

using namespace edit;
using geom::TrimFailure;
using Status = Answer::Status;

class Trimmer {
public:
    Trimmer(Editor& ed, bool extends) : m_ed(ed), m_edits(ed), m_extends(extends) {}
    void run();

private:
    void tellSettings();
    std::shared_ptr<SelectionSet> askEdges();
    void option(const std::string& keyword);
    void fence();
    void crossing(const VcGePoint3d& first);
    Answer askTarget(const std::string& prompt, const std::string& keywords);
    void alongChain(const std::vector<VcGePoint3d>& chain, bool takesInside);
    void changeAt(VcDbObjectId id, const geom::Curve& chain);
    void askProjection();
    void askEdgeMode();
    void eraseObjects();
    std::vector<VcDbObjectId> change(const CurvePick& target);
    geom::Trimmed changed(const CurvePick& target) const;
    const char* reason(TrimFailure failure) const;

    Editor& m_ed;
    CurveEdits m_edits;
    bool m_extends;
    std::optional<TrimEdges> m_edges;
};

void Trimmer::tellSettings()
{
    static const char* kProjections[] = {"None", "UCS", "View"};
    m_ed.printLine(fmt::format("Current settings: Projection={}, Edge={}",
                               kProjections[std::clamp<std::int64_t>(m_ed.vars().integer("PROJMODE"), 0, 2)],
                               m_ed.vars().integer("EDGEMODE") ? "Extend" : "None"));
}

// Null for everything.
std::shared_ptr<SelectionSet> Trimmer::askEdges()
{
    m_ed.printLine(m_extends ? "Select boundary edges ..." : "Select cutting edges ...");
    auto edges = m_ed.select({.prompt = "Select objects or <select all>: ", .allowLocked = true});
    return edges->empty() ? nullptr : edges;
}

const char* Trimmer::reason(TrimFailure failure) const
{
    switch (failure) {
    case TrimFailure::OnlyOneCut:
        return "The edges cut that closed object only once; it takes two cuts.";
    case TrimFailure::NoEdge:
        return "There is no edge in that direction.";
    case TrimFailure::Closed:
        return "That object cannot be extended there.";
    default:
        return "The object does not intersect an edge.";
    }
}

geom::Trimmed Trimmer::changed(const CurvePick& target) const
{
    const double tolerance = 4 * geom::meetingTolerance(target.curve, target.curve);
    if (!m_extends)
        return geom::trimmedAround(target.curve, m_edges->cuts(target), target.param, tolerance);
    const bool atStart = geom::isNearerStart(target.curve, target.param);
    return geom::extendedTowards(target.curve, m_edges->placesBeyond(target, atStart), target.param, tolerance);
}

// What became of the object; nothing when it stayed as it was.
std::vector<VcDbObjectId> Trimmer::change(const CurvePick& target)
{
    const geom::Trimmed result = changed(target);
    if (result.failure != TrimFailure::None) {
        m_ed.printLine(reason(result.failure));
        return {};
    }
    if (!m_edits.replace(*target.entity, result.kept)) {
        m_ed.printLine("That object cannot be cut there.");
        return {};
    }
    return m_edits.left();
}

void Trimmer::askProjection()
{
    static const char* kWords[] = {"None", "Ucs", "View"};
    const char* now = kWords[std::clamp<std::int64_t>(m_ed.vars().integer("PROJMODE"), 0, 2)];
    const std::string word =
        m_ed.keyword(fmt::format("Enter a projection option [None/Ucs/View] <{}>", now), "None Ucs View", now);
    m_ed.vars().set("PROJMODE", std::int32_t(word == "None" ? 0 : word == "Ucs" ? 1 : 2));
}

void Trimmer::askEdgeMode()
{
    const char* now = m_ed.vars().integer("EDGEMODE") ? "Extend" : "No extend";
    const std::string word =
        m_ed.keyword(fmt::format("Enter an implied edge extension mode [Extend/No extend] <{}>", now), "Extend No",
                     m_ed.vars().integer("EDGEMODE") ? "Extend" : "No");
    m_ed.vars().set("EDGEMODE", std::int32_t(word == "Extend"));
}

void Trimmer::eraseObjects()
{
    const auto objects = m_ed.select({.prompt = "Select objects to erase or <exit>: "});
    m_edits.begin();
    for (const VcDbObjectId id : objects->ids())
        if (auto* entity = m_ed.db().liveAs<VcDbEntity>(id))
            m_edits.erase(*entity);
    m_edits.end();
}

// The object, or what earlier cuts of this step have left of it, is changed wherever the chain passes over it.
void Trimmer::changeAt(VcDbObjectId id, const geom::Curve& chain)
{
    const VcGeVector3d view = viewNormal(m_ed);
    auto* whole = m_ed.db().liveAs<VcDbEntity>(id);
    const auto curve = whole ? curveOf(*whole) : std::nullopt;
    if (!curve || isOnLockedLayer(*whole))
        return;
    std::vector<VcGePoint3d> places;
    for (const geom::Crossing& c : geom::apparentCrossings(*curve, chain, view))
        places.push_back(c.point);
    std::vector<VcDbObjectId> parts{id};
    for (const VcGePoint3d& place : places)
        for (std::size_t i = 0; i < parts.size(); ++i) {
            auto* part = m_ed.db().liveAs<VcDbEntity>(parts[i]);
            const auto pick = part ? curvePickAt(m_ed, *part, place) : std::nullopt;
            if (!pick ||
                geom::pointAt(pick->curve, pick->param).distanceTo(place) > 10 * geom::meetingTolerance(*curve, *curve))
                continue;
            const auto left = change(*pick);
            if (!left.empty()) {
                parts.erase(parts.begin() + std::ptrdiff_t(i));
                parts.insert(parts.end(), left.begin(), left.end());
            }
            break;
        }
}

void Trimmer::alongChain(const std::vector<VcGePoint3d>& chain, bool takesInside)
{
    const Picker picker = Picker::of(m_ed);
    const auto kind = takesInside ? SelectArea::Kind::Crossing : SelectArea::Kind::Fence;
    const SelectArea area = takesInside ? SelectArea::rectangle(picker.view(), chain[0], chain[2], kind)
                                        : SelectArea::polygon(picker.view(), chain, kind);
    const geom::Curve line = geom::Polyline3{chain, takesInside};
    m_edits.begin();
    for (const VcDbObjectId id : picker.takenBy(area))
        changeAt(id, line);
    m_edits.end();
}

void Trimmer::fence()
{
    std::vector<VcGePoint3d> points{m_ed.point("Specify first fence point")};
    for (;;) {
        const Answer a = m_ed.askPoint("Specify next fence point or [Undo]",
                                       {.keywords = "Undo", .from = points.back(), .enterEnds = true});
        if (a.status == Status::Enter)
            break;
        if (a.status == Status::Value)
            points.push_back(a.point);
        else if (points.size() > 1)
            points.pop_back();
        else
            m_ed.printLine("Only the first point is left.");
    }
    for (VcGePoint3d& p : points)
        p = toWorld(m_ed, p);
    if (points.size() > 1)
        alongChain(points, false);
}

void Trimmer::crossing(const VcGePoint3d& a)
{
    const Answer opposite = m_ed.askPoint("Specify opposite corner", {.from = a, .enterEnds = true});
    if (opposite.status != Status::Value)
        return m_ed.printLine("Nothing was found there.");
    const VcGePoint3d& c = opposite.point;
    std::vector<VcGePoint3d> corners{a, {c.x, a.y, a.z}, c, {a.x, c.y, a.z}};
    for (VcGePoint3d& p : corners)
        p = toWorld(m_ed, p);
    alongChain(corners, true);
}

void Trimmer::option(const std::string& keyword)
{
    if (keyword == "Fence")
        fence();
    else if (keyword == "Crossing")
        crossing(m_ed.point("Specify first corner"));
    else if (keyword == "Project")
        askProjection();
    else if (keyword == "Edge")
        askEdgeMode();
    else if (keyword == "eRase")
        eraseObjects();
    else if (!m_edits.undo())
        m_ed.printLine("The command has been completely undone.");
}

// A pick on nothing is the first corner of a crossing window, but for another command's, which answers by itself.
Answer Trimmer::askTarget(const std::string& prompt, const std::string& keywords)
{
    Question q;
    q.kind = Question::Kind::Entity;
    q.prompt = prompt + ": ";
    q.init.keywords = parseKeywords(keywords);
    q.hasDefault = true;
    for (;;) {
        const Answer a = m_ed.ask(q);
        if (a.status != Status::Failed)
            return a;
        if (a.hasPoint && a.entity.isNull() && !m_ed.isDriven())
            crossing(a.point);
        else
            m_ed.printLine("No object was found there.");
    }
}

void Trimmer::run()
{
    tellSettings();
    m_edges.emplace(m_ed, askEdges());
    const std::string prompt = m_extends ? "Select object to extend or [Fence/Crossing/Project/Edge/Undo]"
                                         : "Select object to trim or [Fence/Crossing/Project/Edge/eRase/Undo]";
    for (;;) {
        const Answer a = askTarget(prompt, m_extends ? "Fence Crossing Project Edge Undo"
                                                     : "Fence Crossing Project Edge eRase Undo");
        if (a.status == Status::Enter)
            return;
        if (a.status == Status::Keyword) {
            option(a.text);
            continue;
        }
        if (const auto target = curvePick(m_ed, a)) {
            m_edits.begin();
            change(*target);
            m_edits.end();
        }
    }
}

void trim(Editor& ed) { Trimmer(ed, false).run(); }
void extend(Editor& ed) { Trimmer(ed, true).run(); }

const HostCommand kCommands[] = {
    {"TRIM", "TR", kPlain, "Cuts curves back to the edges that they cross.", trim},
    {"EXTEND", "EX", kPlain, "Lets curves go on to the edges that they would meet.", extend},
};

}

std::span<const HostCommand> trimCommands() { return kCommands; }

}
