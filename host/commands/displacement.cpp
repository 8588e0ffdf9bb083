#include "host/commands/displacement.h"

#include "host/commands/copies.h"
#include "host/commands/drawing.h"

namespace vk::commands {

using namespace edit;
using Status = Answer::Status;

VcGeVector3d askWholeDisplacement(Editor& ed)
{
    // Kept for the next time, as long as the program runs.
    static VcGeVector3d kept;
    const Answer a = ed.askPoint(
        fmt::format("Specify displacement <{}, {}, {}>", lengthText(kept.x), lengthText(kept.y), lengthText(kept.z)),
        {.enterEnds = true});
    return kept = a.status == Status::Enter ? kept : a.point.asVector();
}

VcGeVector3d askDisplacement(Editor& ed, const std::function<void(const VcGePoint3d& base)>& show)
{
    const Answer base = ed.askPoint("Specify base point or [Displacement] <Displacement>",
                                    {.keywords = "Displacement", .enterEnds = true});
    if (base.status != Status::Value)
        return askWholeDisplacement(ed);
    show(base.point);
    const Answer second = ed.askPoint("Specify second point or <use first point as displacement>",
                                      {.from = base.point, .enterEnds = true});
    return second.status == Status::Enter ? base.point.asVector() : second.point - base.point;
}

void showMoved(Editor& ed, const SelectionSet& objects, std::function<VcGeMatrix3d(const VcGePoint3d& cursor)> inUcs)
{
    const auto move = [&ed, inUcs = std::move(inUcs)](const VcGePoint3d& cursor) { return inWorld(ed, inUcs(cursor)); };
    Display::instance().follow({objects.ids(), move, {}});
}

void showMovedFrom(Editor& ed, const SelectionSet& objects, const VcGePoint3d& base)
{
    showMoved(ed, objects, [base](const VcGePoint3d& cursor) { return VcGeMatrix3d::translation(cursor - base); });
}

}
