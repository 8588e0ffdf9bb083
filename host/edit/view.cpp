#include "host/edit/view.h"

#include "host/db/database.h"
#include "host/edit/editor.h"
#include "host/edit/sysvars.h"
#include "sdk/vcdb_tables.h"

namespace vk::edit {

namespace {

struct ViewOfDrawing {
    std::uint32_t database = 0;
    View view;
};
ViewOfDrawing s_view;

}

VcDbExtents spaceExtents(const Editor& editor)
{
    VcDbExtents all;
    const DatabaseCore& db = editor.db();
    const auto* space = db.objectAs<VcDbBlockTableRecord>(db.currentSpace());
    if (!space)
        return all;
    for (const std::uint32_t slot : space->memberSlots()) {
        const auto* entity = VcDbEntity::cast(db.objectAt(slot));
        VcDbExtents one;
        if (entity && !entity->isErased() && entity->getGeomExtents(one) == Vcad::eOk)
            all.addExt(one);
    }
    return all;
}

void resetView(Editor& editor)
{
    s_view = {editor.db().serial(), {}};
    View& view = s_view.view;
    const VcDbExtents extents = spaceExtents(editor);
    if (extents.isEmpty()) {
        view.center = {6, 4.5, 0};
        view.height = 9;
        return;
    }
    const VcGeVector3d size = extents.maxPoint() - extents.minPoint();
    view.center = extents.minPoint() + size * 0.5;
    view.center.z = 0;
    view.height = std::max({size.y, size.x * kScreenHeight / kScreenWidth, 1e-9}) * 1.02;
}

View& currentView(Editor& editor)
{
    if (s_view.database != editor.db().serial())
        resetView(editor);
    return s_view.view;
}

double pickAperture(Editor& editor)
{
    return double(editor.vars().integer("PICKBOX")) * currentView(editor).height / kScreenHeight;
}

VcGeMatrix3d worldToDisplay(Editor& editor)
{
    const View& view = currentView(editor);
    const VcGeMatrix3d plane = VcGeMatrix3d::worldToPlane(view.direction.normal());
    return VcGeMatrix3d::rotation(view.twist, VcGeVector3d::zAxis()) * plane * VcGeMatrix3d::translation(-view.target.asVector());
}

}
