// Coordinates between the world, the UCS, the display, a sheet, and an object's own system; entering model and paper space.
#include "host/db/chain.h"
#include "host/db/coordinate_system.h"
#include "host/db/database.h"
#include "host/db/layouts.h"
#include "host/edit/editor.h"
#include "host/edit/sysvars.h"
#include "host/edit/view.h"
#include "host/edit/viewports.h"
#include "sdk/vcdb_chains.h"
#include "sdk/vcdb_records.h"
#include "sdk/vcdb_viewport.h"
#include "sdk/vced.h"

#include <optional>

using namespace vk::edit;

namespace {

std::optional<VcGeVector3d> normalOf(VcDbObjectId id)
{
    VcDbObject* object = id.isNull() ? nullptr : DatabaseCore::of(id)->object(id);
    if (!object)
        return std::nullopt;
    const RbPtr chain = chainOf(*object);
    VcGeVector3d normal = VcGeVector3d::zAxis();
    for (const resbuf* node = chain.get(); node; node = node->rbnext)
        if (node->restype == 210)
            normal = {node->resval.rpoint[0], node->resval.rpoint[1], node->resval.rpoint[2]};
    return normal;
}

// From a place on the sheet to the display of the viewport that is worked in. Elsewhere the two are one.
VcGeMatrix3d sheetToDisplay(Editor& ed)
{
    const VcDbViewport* viewport = activeViewport(ed);
    if (!viewport)
        return {};
    const VcGePoint2d c = viewport->viewCenter();
    return VcGeMatrix3d::translation({c.x, c.y, 0}) * VcGeMatrix3d::scaling(1 / viewport->customScale()) *
           VcGeMatrix3d::translation(-viewport->centerPoint().asVector());
}

// From the system that the node names to the world.
std::optional<VcGeMatrix3d> toWorld(Editor& ed, const resbuf& system)
{
    VcDbObjectId id;
    switch (system.restype) {
    case RTENAME:
        if (nameToId(system.resval.rlname, id))
            if (const auto normal = normalOf(id))
                return VcGeMatrix3d::planeToWorld(*normal);
        return std::nullopt;
    case RTPOINT:
    case RT3DPOINT: {
        const VcGeVector3d normal(system.resval.rpoint[0], system.resval.rpoint[1], system.resval.rpoint[2]);
        return normal.length() > 0 ? std::optional(VcGeMatrix3d::planeToWorld(normal)) : std::nullopt;
    }
    case RTSHORT:
        break;
    default:
        return std::nullopt;
    }
    VcGeMatrix3d m;
    switch (system.resval.rint) {
    case 0:
        return m;
    case 1:
        return currentUcs(ed.db()).toWorld();
    case 2:
        return worldToDisplay(ed).inverse();
    case 3:
        return worldToDisplay(ed).inverse() * sheetToDisplay(ed);
    default:
        return std::nullopt;
    }
}

}

int vcedTrans(const vds_point point, const resbuf* from, const resbuf* to, int displacement, vds_point resultOut)
{
    Editor& ed = Editor::instance();
    if (!ed.hasDrawing() || !point || !from || !to || !resultOut)
        return RTERROR;
    const auto in = toWorld(ed, *from), out = toWorld(ed, *to);
    if (!in || !out)
        return RTERROR;
    const VcGeMatrix3d m = out->inverse() * *in;
    const VcGePoint3d p(point[0], point[1], point[2]);
    const VcGePoint3d image = displacement ? VcGePoint3d() + m * p.asVector() : m * p;
    resultOut[0] = image.x;
    resultOut[1] = image.y;
    resultOut[2] = image.z;
    return RTNORM;
}

int vcedMspace()
{
    Editor& ed = Editor::instance();
    return enterViewport(ed) ? RTNORM : RTERROR;
}

int vcedPspace()
{
    Editor& ed = Editor::instance();
    if (!isOnSheet(ed))
        return RTERROR;
    leaveViewport(ed);
    return RTNORM;
}

VcDbObjectId vcedGetCurViewportObjectId()
{
    const Editor& ed = Editor::instance();
    if (!ed.hasDrawing())
        return {};
    DatabaseCore& db = ed.db();
    if (!isOnSheet(ed))
        return db.findRecord(NameTable::Viewport, "*Active");
    if (const VcDbViewport* viewport = activeViewport(ed))
        return viewport->objectId();
    for (const VcDbViewport* viewport : viewportsOf(db, db.paperSpace()))
        if (viewport->number() == 1)
            return viewport->objectId();
    return {};
}

Vcad::ErrorStatus vcedSetCurrentView(VcDbViewTableRecord* record, VcDbViewport* viewport)
{
    Editor& ed = Editor::instance();
    if (!record || !ed.hasDrawing())
        return Vcad::eInvalidInput;
    if (viewport && activeViewport(ed) != viewport && viewport->number() != 1 && !setActiveViewport(ed, *viewport))
        return Vcad::eInvalidInput;
    if (const VcDbViewport* active = activeViewport(ed); active && active->isLocked())
        return Vcad::eOnLockedLayer;
    setCurrentView(ed, viewOf(*record, currentView(ed)));
    return Vcad::eOk;
}
