#include "host/edit/ucs.h"

#include "host/db/database.h"
#include "host/edit/editor.h"
#include "host/edit/sysvars.h"
#include "host/edit/view.h"
#include "host/edit/viewports.h"
#include "sdk/vcdb_records.h"
#include "sdk/vcdb_viewport.h"

#include <unordered_map>
#include <vector>

namespace vk::edit {

namespace {

constexpr std::size_t kMostKept = 10;

struct Known {
    CoordinateSystem ucs;
    VcDbObjectId record;
};
using Stack = std::vector<Known>;

// By the slot of the space's block, or of the viewport that has a system of its own.
struct Stacks {
    std::uint32_t database = 0;
    std::unordered_map<std::uint32_t, Stack> before;
};
Stacks s_stacks;

std::uint32_t currentKey(const Editor& editor)
{
    const VcDbViewport* viewport = activeViewport(editor);
    return viewport && viewport->isUcsSavedWithViewport() ? viewport->objectId().slot()
                                                          : editor.db().currentSpace().slot();
}

Stack& stackOf(const Editor& editor)
{
    if (s_stacks.database != editor.db().serial())
        s_stacks = {editor.db().serial(), {}};
    return s_stacks.before[currentKey(editor)];
}

// What is gone back to is the same again when the change has been taken back.
class StackChange : public UndoAction {
public:
    StackChange(std::uint32_t key, Stack other) : m_key(key), m_other(std::move(other)) {}
    void swap(DatabaseCore& db) override
    {
        if (s_stacks.database == db.serial())
            std::swap(s_stacks.before[m_key], m_other);
    }

private:
    std::uint32_t m_key;
    Stack m_other;
};

void recordStack(Editor& editor)
{
    if (editor.db().undo().isRecording())
        editor.db().undo().record(std::make_unique<StackChange>(currentKey(editor), stackOf(editor)));
}

// Points of the session are in the UCS, so they are seen from the new one.
void apply(Editor& editor, const Known& wanted)
{
    const VcGePoint3d last = currentUcs(editor.db()).toWorld() * editor.lastPoint;
    setCurrentUcs(editor.db(), wanted.ucs,
                  editor.db().liveAs<VcDbUCSTableRecord>(wanted.record) ? wanted.record : VcDbObjectId());
    editor.lastPoint = wanted.ucs.toWorld().inverse() * last;
    if (editor.vars().integer("UCSFOLLOW") != 0)
        showPlan(editor, wanted.ucs);
}

}

void changeUcs(Editor& editor, const CoordinateSystem& ucs, VcDbObjectId record)
{
    recordStack(editor);
    Stack& before = stackOf(editor);
    before.push_back({currentUcs(editor.db()), currentUcsRecord(editor.db())});
    if (before.size() > kMostKept)
        before.erase(before.begin());
    apply(editor, {ucs, record});
}

void nameUcs(Editor& editor, VcDbObjectId record) { setCurrentUcs(editor.db(), currentUcs(editor.db()), record); }

bool restorePreviousUcs(Editor& editor)
{
    if (stackOf(editor).empty())
        return false;
    recordStack(editor);
    Stack& before = stackOf(editor);
    const Known last = before.back();
    before.pop_back();
    apply(editor, last);
    return true;
}

void showPlan(Editor& editor, const CoordinateSystem& ucs)
{
    View view = currentView(editor);
    view.direction = ucs.z();
    view.target = {};
    const VcGeVector3d x = VcGeMatrix3d::worldToPlane(view.direction) * ucs.x;
    view.twist = std::atan2(-x.y, x.x);
    if (view.twist < 0)
        view.twist += 2 * M_PI;
    const VcDbExtents box = displayExtents(editor, view);
    setCurrentView(editor, box.isEmpty() ? view : viewOf(editor, view, box));
}

}
