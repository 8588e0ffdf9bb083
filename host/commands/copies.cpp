#include "host/commands/copies.h"

#include "host/db/clone.h"
#include "host/db/database.h"
#include "sdk/vcdb_hatch.h"

#include <algorithm>

namespace vk::commands {

using namespace edit;

void transformObjects(Editor& ed, const SelectionSet& objects, const VcGeMatrix3d& world)
{
    std::size_t left = 0;
    for (const VcDbObjectId id : objects.ids()) {
        ed.throwIfInterrupted();
        auto* entity = ed.db().liveAs<VcDbEntity>(id);
        if (!entity)
            continue;
        if (entity->transformBy(world) != Vcad::eOk)
            ++left;
        entity->dropCaches();  // dimensions are drawn anew
    }
    if (left > 0)
        ed.report("{} could not be changed this way and were left as they are.", left);
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

VcGeMatrix3d inWorld(const Editor& ed, const VcGeMatrix3d& ucs)
{
    const VcGeMatrix3d m = ucsToWorld(ed);
    return m * ucs * m.inverse();
}

}
