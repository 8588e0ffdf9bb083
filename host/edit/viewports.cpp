#include "host/edit/viewports.h"

#include "host/db/coordinate_system.h"
#include "host/db/database.h"
#include "host/db/layouts.h"
#include "host/edit/editor.h"
#include "host/edit/sysvars.h"
#include "sdk/vcdb_layout.h"
#include "sdk/vcdb_tables.h"
#include "sdk/vcdb_viewport.h"

namespace vk::edit {

namespace {

// Which viewport is worked in belongs to the session.
struct Entered {
    std::uint32_t database = 0;
    VcDbObjectId viewport;
};
Entered s_entered;

bool canEnter(const DatabaseCore& db, const VcDbViewport* viewport)
{
    return viewport && !viewport->isErased() && viewport->ownerId() == db.paperSpace() && viewport->number() != 1 &&
           viewport->isOn();
}

VcDbViewport* entered(const DatabaseCore& db)
{
    auto* viewport = s_entered.database == db.serial() ? db.objectAs<VcDbViewport>(s_entered.viewport) : nullptr;
    return canEnter(db, viewport) ? viewport : nullptr;
}

}

bool isOnSheet(const Editor& editor)
{
    return editor.hasDrawing() && editor.db().header().integer("$TILEMODE", 1) == 0;
}

VcDbViewport* activeViewport(const Editor& editor)
{
    if (!isOnSheet(editor) || !editor.db().inModelViewport)
        return nullptr;
    VcDbViewport* viewport = entered(editor.db());
    // It may have gone by undo, or been turned off.
    if (!viewport)
        editor.db().inModelViewport = false;
    return viewport;
}

int currentViewportNumber(const Editor& editor)
{
    if (!isOnSheet(editor))
        return 2;
    const VcDbViewport* viewport = activeViewport(editor);
    return viewport ? std::max<int>(2, viewport->number()) : 1;
}

bool setActiveViewport(Editor& editor, const VcDbViewport& viewport)
{
    DatabaseCore& db = editor.db();
    if (!isOnSheet(editor) || !canEnter(db, &viewport))
        return false;
    s_entered = {db.serial(), viewport.objectId()};
    setUcsViewport(db, viewport.objectId());
    db.inModelViewport = true;
    return true;
}

void preferViewport(Editor& editor, const VcDbViewport& viewport)
{
    s_entered = {editor.db().serial(), viewport.objectId()};
    if (VcDbLayout* layout = layoutOfBlock(editor.db(), viewport.ownerId()))
        layout->setLastActiveViewport(viewport.objectId());
}

bool setCurrentViewport(Editor& editor, int number)
{
    if (!isOnSheet(editor))
        return number == 2;
    if (number == 1) {
        leaveViewport(editor);
        return true;
    }
    for (const VcDbViewport* viewport : viewportsOf(editor.db(), editor.db().paperSpace()))
        if (viewport->number() == number)
            return setActiveViewport(editor, *viewport);
    return false;
}

bool enterViewport(Editor& editor)
{
    if (!isOnSheet(editor))
        return false;
    const DatabaseCore& db = editor.db();
    if (const VcDbViewport* last = entered(db))
        return setActiveViewport(editor, *last);
    const VcDbLayout* layout = layoutOfBlock(db, db.paperSpace());
    if (const auto* saved = layout ? db.liveAs<VcDbViewport>(layout->lastActiveViewport()) : nullptr;
        canEnter(db, saved))
        return setActiveViewport(editor, *saved);
    for (const VcDbViewport* viewport : viewportsOf(db, db.paperSpace()))
        if (canEnter(db, viewport))
            return setActiveViewport(editor, *viewport);
    return false;
}

void leaveViewport(Editor& editor) { editor.db().inModelViewport = false; }

VcDbLayout* currentLayout(const Editor& editor)
{
    const DatabaseCore& db = editor.db();
    return layoutOfBlock(db, isOnSheet(editor) ? db.paperSpace() : db.modelSpace());
}

bool showLayout(Editor& editor, VcDbLayout& layout)
{
    DatabaseCore& db = editor.db();
    if (!db.liveAs<VcDbBlockTableRecord>(layout.getBlockTableRecordId()))
        return false;
    leaveViewport(editor);
    const bool model = isModelLayout(db, layout);
    if (!model) {
        makePaperSpace(db, layout);
        sheetViewport(db, layout.getBlockTableRecordId());
    }
    editor.vars().force("TILEMODE", std::int32_t(model));
    return true;
}

}
