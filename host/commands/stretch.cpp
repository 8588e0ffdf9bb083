// STRETCH - moves what lies within crossing windows and lets go with it what hangs on to it.
#include "host/commands/copies.h"
#include "host/commands/displacement.h"
#include "host/commands/families.h"
#include "host/commands/figure_preview.h"
#include "host/commands/stretch_objects.h"
#include "host/db/database.h"
#include "host/db/ent_insert.h"
#include "host/edit/pick.h"
#include "host/edit/select_prompt.h"
#include "sdk/vcdb_dims.h"

#include <unordered_set>

namespace vk::commands {

namespace {

using namespace edit;

struct Chosen {
    std::shared_ptr<SelectionSet> objects;
    std::vector<SelectedRegion> regions;
};

Chosen choose(Editor& ed)
{
    ed.printLine("Select objects to stretch by crossing-window or crossing-polygon...");
    SelectRequest request;
    request.leavesLocked = true;
    SelectResult result = selectByPrompt(ed, request);
    if (result.status == SelectResult::Cancelled)
        throw CommandCancelled();
    if (!result.set->empty())
        ed.previousSelection = std::make_shared<SelectionSet>(*result.set);
    return {result.set, std::move(result.regions)};
}

// Objects that were picked for themselves, and not by a window, move whole.
std::unordered_set<VcDbObjectId> takenByRegions(Editor& ed, const std::vector<SelectedRegion>& regions)
{
    const Picker picker = Picker::of(ed);
    std::unordered_set<VcDbObjectId> taken;
    for (const SelectedRegion& r : regions)
        for (const VcDbObjectId id :
             picker.takenBy(SelectArea::polygon(picker.view(), r.corners, SelectArea::Kind::Crossing)))
            taken.insert(id);
    return taken;
}

std::vector<geom::Region> regionsOn(const PickView& view, const std::vector<SelectedRegion>& drawn)
{
    std::vector<geom::Region> regions;
    for (const SelectedRegion& r : drawn) {
        std::vector<VcGePoint2d> corners;
        for (const VcGePoint3d& p : r.corners)
            corners.push_back(view.project(p));
        regions.emplace_back(std::move(corners), view.fromWorld());
    }
    return regions;
}

// The object as the pull would leave it; nothing is changed.
std::unique_ptr<VcDbEntity> stretchedCopy(const VcDbEntity& entity, const Pull& pull)
{
    auto copy = looseCopy(entity);
    stretchObject(*copy, pull);
    if (auto* dimension = VcDbDimension::cast(copy.get()))
        dimension->setDimBlockId({});  // its picture is that of before
    return copy;
}

// What is pulled out of shape as lines, the rest as moved objects.
Preview preview(Editor& ed, const Chosen& chosen, const std::unordered_set<VcDbObjectId>& byRegion,
                const VcGePoint3d& base)
{
    constexpr std::size_t kMostShown = 200;
    Preview shown;
    std::vector<VcDbObjectId> pulled;
    for (const VcDbObjectId id : chosen.objects->ids())
        if (!byRegion.contains(id))
            shown.moved.push_back(id);
        else if (pulled.size() < kMostShown)
            pulled.push_back(id);
    shown.lines = [&ed, base, pulled, regions = regionsOn(PickView::of(ed), chosen.regions)](const VcGePoint3d& to) {
        Preview::Lines lines;
        const Pull pull{regions, ucsToWorld(ed) * (to - base)};
        for (const VcDbObjectId id : pulled)
            if (const auto* entity = ed.db().liveAs<VcDbEntity>(id))
                for (auto& line : linesOf(ed, *stretchedCopy(*entity, pull)))
                    lines.push_back(std::move(line));
        return lines;
    };
    shown.move = [&ed, base](const VcGePoint3d& to) { return inWorld(ed, VcGeMatrix3d::translation(to - base)); };
    return shown;
}

void stretch(Editor& ed)
{
    const Chosen chosen = choose(ed);
    if (chosen.objects->empty())
        return;
    const auto byRegion = takenByRegions(ed, chosen.regions);
    const VcGeVector3d by = ucsToWorld(ed) * askDisplacement(ed, [&](const VcGePoint3d& base) {
        Display::instance().follow(preview(ed, chosen, byRegion, base));
    });
    const Pull pull{regionsOn(PickView::of(ed), chosen.regions), by};
    for (const VcDbObjectId id : chosen.objects->ids()) {
        ed.throwIfInterrupted();
        auto* entity = ed.db().liveAs<VcDbEntity>(id);
        if (!entity)
            continue;
        if (byRegion.contains(id))
            stretchObject(*entity, pull);
        else
            moveWhole(*entity, by);
        entity->dropCaches();  // dimensions are drawn anew
    }
}

const HostCommand kCommands[] = {
    {"STRETCH", "S", kPlain, "Moves parts of objects and lets the rest follow.", stretch},
};

}

std::span<const HostCommand> stretchCommands() { return kCommands; }

}
