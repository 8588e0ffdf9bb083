// ERASE, OOPS, EXPLODE, SELECT.
#include "host/commands/drawing.h"
#include "host/commands/erased.h"
#include "host/commands/explode.h"
#include "host/commands/families.h"
#include "host/db/database.h"
#include "sdk/vcdb_curves.h"
#include "sdk/vcdb_solids.h"
#include "sdk/vcdb_tables.h"

namespace vk::commands {

namespace {

using namespace edit;

std::vector<VcDbObjectId>& lastErased()
{
    static std::vector<VcDbObjectId> ids;
    return ids;
}

void erase(Editor& ed)
{
    const auto objects = ed.select();
    if (!objects->empty())
        eraseForOops(ed, objects->ids());
}

void oops(Editor& ed)
{
    std::size_t restored = 0;
    for (const VcDbObjectId id : std::exchange(lastErased(), {}))
        if (VcDbObject* object = ed.db().object(id); object && object->isErased() && object->erase(false) == Vcad::eOk)
            ++restored;
    if (restored == 0)
        ed.printLine("There is nothing to bring back.");
    else
        ed.report("{} restored.", restored);
}

void explode(Editor& ed)
{
    const auto objects = ed.select({.endsWithArguments = true});
    std::size_t left = 0, done = 0, wide = 0, solid = 0;
    for (const VcDbObjectId id : objects->ids()) {
        ed.throwIfInterrupted();
        auto* entity = ed.db().liveAs<VcDbEntity>(id);
        if (!entity)
            continue;
        const auto* polyline = VcDbPolyline::cast(entity);
        const bool hasWidth = polyline && polyline->hasWidth(), exploded = explodeInPlace(ed.db(), *entity);
        ++(exploded ? done : left);
        wide += exploded && hasWidth;
        solid += !exploded && entity->isKindOf(VcDbModelerGeometry::desc());
    }
    if (wide > 0)
        ed.report("Exploding has lost the width of {} polyline(s). U brings it back.", wide);
    if (left > 0)
        ed.report("{} could not be exploded.", left);
    if (solid > 0)
        ed.report("{} of them solid(s) or surface(s): regions alone can be broken into their edges.", solid);
    if (done == 0 && left > 0)
        throw CommandError{"Nothing was exploded."};
}

void select(Editor& ed)
{
    if (const auto objects = ed.select({.allowLocked = true}); !objects->empty())
        ed.previousSelection = objects;
}

const HostCommand kCommands[] = {
    {"ERASE", "E", kUsesPickSet, "Removes objects from the drawing.", erase},
    {"OOPS", nullptr, kPlain, "Brings back what was erased last.", oops},
    {"EXPLODE", "X", kUsesPickSet | kActsOnceDriven, "Breaks objects into their parts.", explode},
    {"SELECT", nullptr, kUsesPickSet | kStaysWaiting | kNoUndoStep, "Puts objects into the previous selection set.",
     select},
};

}

void eraseForOops(Editor& ed, const std::vector<VcDbObjectId>& ids)
{
    lastErased().clear();
    for (const VcDbObjectId id : ids)
        if (VcDbObject* object = ed.db().object(id); object && object->erase() == Vcad::eOk)
            lastErased().push_back(id);
}

std::span<const HostCommand> modifyCommands() { return kCommands; }

}
