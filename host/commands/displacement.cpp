#include "host/commands/displacement.h"

#include "host/commands/drawing.h"

namespace vk::commands {

using namespace edit;
using Status = Answer::Status;

VcGeVector3d askWholeDisplacement(Editor& ed)
{
    // Kept for the next time, as long as the program runs.
    static VcGeVector3d kept;
    const Answer a = ed.askPoint(fmt::format("Specify displacement <{}, {}, {}>", lengthText(kept.x), lengthText(kept.y), lengthText(kept.z)), {.enterEnds = true});
    return kept = a.status == Status::Enter ? kept : a.point.asVector();
}

VcGeVector3d askDisplacement(Editor& ed)
{
    const Answer base = ed.askPoint("Specify base point or [Displacement] <Displacement>", {.keywords = "Displacement", .enterEnds = true});
    if (base.status != Status::Value)
        return askWholeDisplacement(ed);
    const Answer second = ed.askPoint("Specify second point or <use first point as displacement>", {.from = base.point, .enterEnds = true});
    return second.status == Status::Enter ? base.point.asVector() : second.point - base.point;
}

}
