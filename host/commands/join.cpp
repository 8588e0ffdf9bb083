// JOIN - makes one curve of several that go with each other.
#include "host/commands/curve_edits.h"
#include "host/commands/families.h"
#include "host/db/curve_of.h"
#include "host/db/database.h"
#include "host/geom/intersect.h"
#include "host/geom/join.h"

#include <algorithm>

namespace vk::commands {

namespace {

using namespace edit;

struct Member {
    VcDbEntity* entity;
    geom::Curve curve;
};

std::vector<Member> membersOf(Editor& ed, const SelectionSet& objects, std::size_t& refused)
{
    std::vector<Member> members;
    for (const VcDbObjectId id : objects.ids()) {
        auto* entity = ed.db().liveAs<VcDbEntity>(id);
        auto curve = entity ? curveOf(*entity) : std::nullopt;
        if (curve && !geom::isClosed(*curve))
            members.push_back({entity, std::move(*curve)});
        else
            ++refused;
    }
    return members;
}

// Joins to the first member what goes with it, which then is the first. How many were used up by it.
std::size_t joinFirst(Editor& ed, CurveEdits& edits, std::vector<Member>& members)
{
    std::vector<geom::Curve> curves;
    double tolerance = 0;
    for (const Member& m : members) {
        curves.push_back(m.curve);
        tolerance = std::max(tolerance, 100 * geom::meetingTolerance(m.curve, members[0].curve));
    }
    const auto joined = geom::joinedToFirst(curves, tolerance);
    if (!joined || !edits.replace(*members[0].entity, {joined->curve}))
        return 0;
    std::vector<Member> left{{ed.db().liveAs<VcDbEntity>(edits.left().front()), joined->curve}};
    for (std::size_t i = 1; i < members.size(); ++i) {
        if (std::find(joined->used.begin(), joined->used.end(), i) == joined->used.end())
            left.push_back(members[i]);
        else
            edits.erase(*members[i].entity);
    }
    members = std::move(left);
    return joined->used.size() - 1;
}

// Each member in turn takes in what goes with it, until nothing more does.
struct Outcome {
    std::size_t joined = 0, made = 0;
};

Outcome joinAll(Editor& ed, CurveEdits& edits, std::vector<Member> members)
{
    Outcome outcome;
    while (members.size() > 1) {
        std::size_t taken = 0;
        while (!geom::isClosed(members[0].curve)) {
            const std::size_t more = joinFirst(ed, edits, members);
            if (more == 0)
                break;
            taken += more;
        }
        outcome.joined += taken > 0 ? taken + 1 : 0;
        outcome.made += taken > 0;
        members.erase(members.begin());
    }
    return outcome;
}

void closeRound(Editor& ed, CurveEdits& edits, const Member& member)
{
    const auto whole = geom::closedRound(member.curve);
    if (!whole || !edits.replace(*member.entity, {*whole}))
        throw CommandError{"That object cannot be closed."};
    ed.report("{} converted to a whole.", std::holds_alternative<geom::Circle>(*whole) ? "Arc" : "Elliptical arc");
}

// One source: the objects to join follow, or L closes an arc.
std::shared_ptr<SelectionSet> askMore(Editor& ed, const geom::Curve& source, bool& closes)
{
    const bool round = std::holds_alternative<geom::Arc>(source) || std::holds_alternative<geom::Ellipse>(source);
    auto more = round ? ed.select({.prompt = "Select arcs to join to source or [cLose]: ", .keywords = "cLose"})
                      : ed.select({.prompt = "Select objects to join: "});
    closes = ed.selectKeyword() == "cLose";
    return more;
}

void join(Editor& ed)
{
    auto objects = ed.select({.prompt = "Select source object or multiple objects to join at once: "});
    if (objects->empty())
        return;
    std::size_t refused = 0;
    std::vector<Member> members = membersOf(ed, *objects, refused);
    CurveEdits edits(ed);
    edits.begin();
    if (members.size() == 1) {
        bool closes = false;
        const auto more = askMore(ed, members[0].curve, closes);
        if (closes)
            return closeRound(ed, edits, members[0]);
        for (Member& m : membersOf(ed, *more, refused))
            if (m.entity != members[0].entity)
                members.push_back(std::move(m));
    }
    const std::size_t offered = members.size();
    const Outcome outcome = joinAll(ed, edits, std::move(members));
    if (outcome.made == 0)
        throw CommandError{"No objects were joined: none goes on from another."};
    ed.report("{} objects joined into {}, {} discarded from the operation.", outcome.joined, outcome.made,
              offered - outcome.joined + refused);
}

const HostCommand kCommands[] = {
    {"JOIN", "J", kUsesPickSet, "Makes one curve of several that go with each other.", join},
};

}

std::span<const HostCommand> joinCommands() { return kCommands; }

}
