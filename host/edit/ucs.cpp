#include "host/edit/ucs.h"

#include "host/db/database.h"
#include "host/edit/editor.h"
#include "host/edit/sysvars.h"
#include "host/edit/view.h"

#include <unordered_map>
#include <vector>

namespace vk::edit {

namespace {

constexpr std::size_t kMostKept = 10;

struct Named {
    CoordinateSystem ucs;
    std::string name;
};

// By the slot of the space's block.
struct Stacks {
    std::uint32_t database = 0;
    std::unordered_map<std::uint32_t, std::vector<Named>> before;
};
Stacks s_stacks;

std::vector<Named>& stackOf(const Editor& editor)
{
    if (s_stacks.database != editor.db().serial())
        s_stacks = {editor.db().serial(), {}};
    return s_stacks.before[editor.db().currentSpace().slot()];
}

// Points of the session are in the UCS, so they are seen from the new one.
void apply(Editor& editor, const Named& wanted)
{
    const VcGePoint3d last = currentUcs(editor.db()).toWorld() * editor.lastPoint;
    setCurrentUcs(editor.db(), wanted.ucs);
    editor.vars().force("UCSNAME", wanted.name);
    editor.lastPoint = wanted.ucs.toWorld().inverse() * last;
    if (editor.vars().integer("UCSFOLLOW") != 0)
        showPlan(editor, wanted.ucs);
}

}

void changeUcs(Editor& editor, const CoordinateSystem& ucs, std::string_view name)
{
    auto& before = stackOf(editor);
    before.push_back({currentUcs(editor.db()), editor.vars().text("UCSNAME")});
    if (before.size() > kMostKept)
        before.erase(before.begin());
    apply(editor, {ucs, std::string(name)});
}

bool restorePreviousUcs(Editor& editor)
{
    auto& before = stackOf(editor);
    if (before.empty())
        return false;
    const Named last = before.back();
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
    const VcDbExtents box = displayExtents(editor, view);
    setCurrentView(editor, box.isEmpty() ? view : viewOf(editor, view, box));
}

}
