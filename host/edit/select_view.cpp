#include "host/edit/select_view.h"

#include "host/db/database.h"
#include "host/edit/editor.h"
#include "host/edit/sysvars.h"
#include "host/edit/view.h"
#include "sdk/vcdb_entity.h"
#include "sdk/vcdb_tables.h"
#include "sdk/vcdb_viewport.h"
#include "sdk/vced.h"

#include <tuple>

namespace vk::edit {

PickView PickView::of(Editor& ed)
{
    const View shown = currentView(ed);
    const VcGeMatrix3d m = worldToDisplay(shown);
    PickView view;
    view.x = {m.entry[0][0], m.entry[0][1], m.entry[0][2]};
    view.y = {m.entry[1][0], m.entry[1][1], m.entry[1][2]};
    // A pick box of no size still is the pixel under the cursor.
    view.reach = std::max(double(ed.vars().integer("PICKBOX")), 0.5) * shown.height / viewportPixels(ed).y;
    return view;
}

VcGeMatrix3d PickView::fromWorld() const
{
    VcGeMatrix3d m;
    const VcGeVector3d rows[] = {x, y, x.crossProduct(y)};
    for (int i = 0; i < 3; ++i) {
        m.entry[i][0] = rows[i].x;
        m.entry[i][1] = rows[i].y;
        m.entry[i][2] = rows[i].z;
    }
    return m;
}

SeenLayers::States SeenLayers::statesOf(const DatabaseCore& db, VcDbObjectId viewport)
{
    States states;
    for (const VcDbObjectId id : db.table(NameTable::Layer).records()) {
        const auto* layer = db.objectAs<VcDbLayerTableRecord>(id);
        if (states.size() <= id.slot())
            states.resize(id.slot() + 1);
        states[id.slot()] =
            (layer->isOff() ? kOff : 0) | (layer->isFrozen() ? kFrozen : 0) | (layer->isLocked() ? kLocked : 0);
    }
    if (const auto* window = db.liveAs<VcDbViewport>(viewport))
        for (const VcDbObjectId id : window->frozenLayers())
            if (id.slot() < states.size())
                states[id.slot()] |= kFrozen;
    return states;
}

// Picks ask one after the other: what was found last holds as long as nothing changes.
SeenLayers::SeenLayers(const DatabaseCore& db, VcDbObjectId viewport)
{
    using Key = std::tuple<std::uint32_t, VcDbObjectId, std::uint64_t>;
    static Key lastKey;
    static VcDbObjectId lastZero;
    static std::shared_ptr<const States> last;
    const Key key(db.serial(), viewport, db.changeCount());
    if (!last || key != lastKey) {
        last = std::make_shared<const States>(statesOf(db, viewport));
        lastZero = db.findRecord(NameTable::Layer, "0");
        lastKey = key;
    }
    m_states = last;
    m_zero = lastZero;
}

SeenLayers SeenLayers::of(const Editor& ed)
{
    return {ed.db(), ed.db().inModelViewport ? vcedGetCurViewportObjectId() : VcDbObjectId()};
}

bool SeenLayers::shows(const VcDbEntity& entity) const
{
    return entity.visibility() == VcDb::kVisible && isSeen(entity.layerId());
}

}  // namespace vk::edit
