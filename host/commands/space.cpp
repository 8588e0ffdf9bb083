// MSPACE, PSPACE, MODEL - going to and fro between the model and a sheet.
#include "host/commands/drawing.h"
#include "host/commands/families.h"
#include "host/db/database.h"
#include "host/db/layouts.h"
#include "host/edit/viewports.h"

namespace vk::commands {

namespace {

using namespace edit;

void modelSpace(Editor& ed)
{
    if (!isOnSheet(ed))
        throw CommandError{"MSPACE is of use on a layout only; the model's own tab is shown."};
    if (!enterViewport(ed))
        throw CommandError{"This layout has no viewport that is on. MVIEW makes one."};
}

void paperSpace(Editor& ed)
{
    if (!isOnSheet(ed))
        throw CommandError{"PSPACE is of use on a layout only; the model's own tab is shown."};
    if (!activeViewport(ed))
        ed.printLine("Already in paper space.");
    leaveViewport(ed);
}

void model(Editor& ed)
{
    if (VcDbLayout* layout = layoutOfBlock(ed.db(), ed.db().modelSpace()))
        showLayout(ed, *layout);
}

const HostCommand kCommands[] = {
    {"MSPACE", "MS", kNoUndoStep, "Works on the model through a viewport of the layout.", modelSpace},
    {"PSPACE", "PS", kNoUndoStep, "Works on the sheet of the layout.", paperSpace},
    {"MODEL", nullptr, kPlain, "Shows the model's own tab.", model},
};

}

std::span<const HostCommand> spaceCommands() { return kCommands; }

}
