#include "host/edit/select_view.h"

#include "host/db/database.h"
#include "host/edit/editor.h"
#include "host/edit/sysvars.h"
#include "sdk/vcdb_chains.h"
#include "sdk/vcdb_entity.h"
#include "sdk/vcdb_tables.h"
#include "sdk/vcdb_viewport.h"
#include "sdk/vced.h"

namespace vk::edit {

View View::of(const Editor& ed)
{
    VcGeMatrix3d ucs;
    vcdbUcsMatrix(ucs, &ed.drawing());
    const VcGeVector3d eye = (ucs * ed.vars().point("VIEWDIR").asVector()).normal();
    const VcGeVector3d right = VcGeVector3d::zAxis().crossProduct(eye);
    View view;
    // Straight from above or below the X axis of the world stays to the right.
    view.x = right.length() > 1e-9 ? right.normal() : VcGeVector3d::xAxis();
    view.y = eye.lengthSqrd() > 0 ? eye.crossProduct(view.x).normal() : VcGeVector3d::yAxis();
    if (const double twist = ed.vars().real("VIEWTWIST"); twist != 0) {
        view.x.rotateBy(-twist, eye);
        view.y.rotateBy(-twist, eye);
    }
    const VcGePoint3d screen = ed.vars().point("SCREENSIZE");
    const double pixel = ed.vars().real("VIEWSIZE") / std::max(screen.y, 1.0);
    view.reach = pixel * std::max(double(ed.vars().integer("PICKBOX")), 0.5);
    return view;
}

SeenLayers::SeenLayers(const DatabaseCore& db, VcDbObjectId viewport)
{
    m_zero = db.findRecord(NameTable::Layer, "0");
    for (const VcDbObjectId id : db.table(NameTable::Layer).records()) {
        const auto* layer = db.objectAs<VcDbLayerTableRecord>(id);
        if (m_states.size() <= id.slot())
            m_states.resize(id.slot() + 1);
        m_states[id.slot()] = (layer->isOff() ? kOff : 0) | (layer->isFrozen() ? kFrozen : 0) | (layer->isLocked() ? kLocked : 0);
    }
    if (const auto* window = db.liveAs<VcDbViewport>(viewport))
        for (const VcDbObjectId id : window->frozenLayers())
            if (id.slot() < m_states.size())
                m_states[id.slot()] |= kFrozen;
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
