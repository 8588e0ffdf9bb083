#include "host/commands/copies.h"

#include "host/db/clone.h"
#include "host/db/database.h"
#include "sdk/vcdb_hatch.h"

#include <algorithm>

namespace vk::commands {

using namespace edit;

std::vector<VcDbObjectId> transformWhatCan(Editor& ed, const SelectionSet& objects, const VcGeMatrix3d& world)
{
    std::vector<VcDbObjectId> left;
    for (const VcDbObjectId id : objects.ids()) {
        ed.throwIfInterrupted();
        auto* entity = ed.db().liveAs<VcDbEntity>(id);
        if (!entity)
            continue;
        if (entity->transformBy(world) != Vcad::eOk)
            left.push_back(id);
        entity->dropCaches();  // dimensions are drawn anew
    }
    return left;
}

void reportLeft(Editor& ed, std::size_t left)
{
    if (left > 0)
        ed.report("{} could not be changed this way and were left as they are.", left);
}

void reportNotCopied(Editor& ed, std::size_t left)
{
    if (left > 0)
        ed.report("{} could not be copied this way and were left.", left);
}

void transformObjects(Editor& ed, const SelectionSet& objects, const VcGeMatrix3d& world)
{
    reportLeft(ed, transformWhatCan(ed, objects, world).size());
}

// A copy of a hatch follows its boundary only where that was copied with it.
static void letGoOfBoundary(Editor& ed, VcDbObjectId original, VcDbObjectId twin, const VcDbIdMapping& mapping)
{
    auto* hatch = ed.db().liveAs<VcDbHatch>(twin);
    if (!hatch || !hatch->associative())
        return;
    std::vector<VcDbObjectId> sources;
    ed.db().objectAs<VcDbHatch>(original)->getAssocObjIds(sources);
    const auto isCopied = [&](VcDbObjectId id) {
        VcDbIdPair pair(id, {});
        return mapping.compute(pair);
    };
    if (!std::all_of(sources.begin(), sources.end(), isCopied))
        hatch->setAssociative(false);
}

std::shared_ptr<SelectionSet> copied(Editor& ed, const SelectionSet& objects)
{
    VcDbIdMapping mapping;
    auto twins = std::make_shared<SelectionSet>();
    if (objects.empty() || cloneObjects(objects.ids(), ed.db().currentSpace(), mapping))
        return twins;
    for (const VcDbObjectId id : objects.ids())
        if (VcDbIdPair pair(id, {}); mapping.compute(pair)) {
            letGoOfBoundary(ed, id, pair.value(), mapping);
            twins->add(pair.value());
        }
    return twins;
}

std::size_t takeAway(Editor& ed, const std::vector<VcDbObjectId>& copies)
{
    for (const VcDbObjectId id : copies)
        if (VcDbObject* copy = ed.db().object(id))
            copy->erase();
    return copies.size();
}

PlacedCopies placeCopies(Editor& ed, const SelectionSet& objects, const VcGeMatrix3d& world)
{
    const auto twins = copied(ed, objects);
    const std::vector<VcDbObjectId> refused = transformWhatCan(ed, *twins, world);
    if (refused.empty())
        return {twins, 0};
    PlacedCopies placed{std::make_shared<SelectionSet>(), takeAway(ed, refused)};
    for (const VcDbObjectId id : twins->ids())
        if (ed.db().liveAs<VcDbEntity>(id))
            placed.objects->add(id);
    return placed;
}

VcGeMatrix3d inWorld(const Editor& ed, const VcGeMatrix3d& ucs)
{
    const VcGeMatrix3d m = ucsToWorld(ed);
    return m * ucs * m.inverse();
}

}
