// -LAYOUT - makes, copies, renames, deletes and shows layouts.
#include "host/base/unicode.h"
#include "host/commands/drawing.h"
#include "host/commands/families.h"
#include "host/db/database.h"
#include "host/db/layouts.h"
#include "host/db/record_names.h"
#include "host/edit/viewports.h"
#include "sdk/vcdb_layout.h"

namespace vk::commands {

namespace {

using namespace edit;

std::vector<VcDbLayout*> sheets(Editor& ed)
{
    std::vector<VcDbLayout*> layouts = layoutsByTab(ed.db());
    std::erase_if(layouts, [&](const VcDbLayout* layout) { return isModelLayout(ed.db(), *layout); });
    return layouts;
}

VcDbLayout& sheetForDefault(Editor& ed)
{
    VcDbLayout* layout = layoutOfBlock(ed.db(), ed.db().paperSpace());
    if (!layout)
        throw CommandError{"The drawing has no layout."};
    return *layout;
}

// Asked again until it names a layout.
VcDbLayout& askLayout(Editor& ed, std::string_view prompt, bool modelToo = false)
{
    const std::string byDefault = modelToo ? currentLayout(ed)->nameUtf8() : sheetForDefault(ed).nameUtf8();
    for (;;) {
        const std::string name = ed.text(prompt, byDefault);
        VcDbLayout* layout = layoutNamed(ed.db(), name);
        if (!layout)
            ed.printLine(fmt::format("Cannot find layout \"{}\".", name));
        else if (!modelToo && isModelLayout(ed.db(), *layout))
            ed.printLine("The Model tab is no sheet; it can neither be copied, renamed nor deleted.");
        else
            return *layout;
    }
}

std::string askNewName(Editor& ed, std::string_view prompt, const std::string& byDefault)
{
    for (;;) {
        const std::string name = ed.text(prompt, byDefault);
        if (!isLegalRecordName(name))
            ed.printLine(fmt::format("\"{}\" is no name for a layout: it must not be empty nor hold any of <>/\\\":;?*|,=`.", name));
        else if (layoutNamed(ed.db(), name))
            ed.printLine(fmt::format("Layout \"{}\" already exists.", name));
        else
            return name;
    }
}

std::string freeName(Editor& ed, const std::string& like, std::string_view form)
{
    for (int number = 1;; ++number)
        if (std::string name = fmt::format(fmt::runtime(form), like, number); !layoutNamed(ed.db(), name))
            return name;
}

void copy(Editor& ed)
{
    VcDbLayout& source = askLayout(ed, "Enter name of layout to copy");
    const std::string name = askNewName(ed, "Enter layout name for copy", freeName(ed, source.nameUtf8(), "{} ({})"));
    copyLayout(ed.db(), source, name);
    ed.printLine(fmt::format("Layout \"{}\" copied to \"{}\".", source.nameUtf8(), name));
}

void erase(Editor& ed)
{
    VcDbLayout& layout = askLayout(ed, "Enter name of layout to delete");
    std::vector<VcDbLayout*> others = sheets(ed);
    std::erase(others, &layout);
    if (others.empty())
        throw CommandError{"The only layout of a drawing cannot be deleted."};
    const std::string name = layout.nameUtf8();
    if (layout.getBlockTableRecordId() == ed.db().paperSpace()) {
        leaveViewport(ed);
        makePaperSpace(ed.db(), *others.front());
    }
    eraseLayout(ed.db(), layout);
    ed.printLine(fmt::format("Layout \"{}\" deleted.", name));
}

void make(Editor& ed)
{
    const std::string name = askNewName(ed, "Enter new Layout name", freeName(ed, "Layout", "{}{}"));
    addLayout(ed.db(), name);
}

void rename(Editor& ed)
{
    VcDbLayout& layout = askLayout(ed, "Enter layout to rename");
    const std::string old = layout.nameUtf8();
    renameLayout(ed.db(), layout, askNewName(ed, "Enter new layout name", {}));
    ed.printLine(fmt::format("Layout \"{}\" renamed to \"{}\".", old, layout.nameUtf8()));
}

void set(Editor& ed)
{
    if (!showLayout(ed, askLayout(ed, "Enter layout to make current", true)))
        throw CommandError{"The sheet of that layout is missing from the drawing."};
}

void list(Editor& ed)
{
    ed.printLine("Layouts:");
    for (const VcDbLayout* layout : layoutsByTab(ed.db())) {
        const bool current = layout == currentLayout(ed);
        ed.printLine(fmt::format("  {}{}", layout->nameUtf8(), current ? "  (current)" : ""));
    }
}

void layout(Editor& ed)
{
    const std::string what = ed.keyword("Enter layout option [Copy/Delete/New/Template/Rename/SAveas/Set/?] <Set>",
                                        "Copy Delete New Template Rename SAveas Set ?", "Set");
    if (what == "Template" || what == "SAveas")
        throw CommandError{"Layouts are not taken from or saved as template files here. WBLOCK and INSERT carry what stands on a sheet."};
    what == "Copy" ? copy(ed) : what == "Delete" ? erase(ed) : what == "New" ? make(ed) : what == "Rename" ? rename(ed)
        : what == "Set" ? set(ed) : list(ed);
}

const HostCommand kCommands[] = {
    {"-LAYOUT", "-LO", kPlain, "Makes, copies, renames, deletes and shows layouts.", layout},
    {"LAYOUT", "LO", kPlain, "Makes, copies, renames, deletes and shows layouts.", layout},
};

}

std::span<const HostCommand> layoutCommands() { return kCommands; }

}
