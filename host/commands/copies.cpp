#include "host/commands/copies.h"

#include "host/db/clone.h"
#include "host/db/database.h"

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

std::shared_ptr<SelectionSet> copied(Editor& ed, const SelectionSet& objects)
{
    VcDbIdMapping mapping;
    auto twins = std::make_shared<SelectionSet>();
    if (objects.empty() || cloneObjects(objects.ids(), ed.db().currentSpace(), mapping))
        return twins;
    for (const VcDbObjectId id : objects.ids())
        if (VcDbIdPair pair(id, {}); mapping.compute(pair))
            twins->add(pair.value());
    return twins;
}

VcGeMatrix3d inWorld(const Editor& ed, const VcGeMatrix3d& ucs)
{
    const VcGeMatrix3d m = ucsToWorld(ed);
    return m * ucs * m.inverse();
}

}
