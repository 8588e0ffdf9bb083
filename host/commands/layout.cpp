// -LAYOUT - makes, copies, renames, deletes and shows layouts, and exchanges them with other drawings.
#include "host/base/unicode.h"
#include "host/base/wildcard.h"
#include "host/commands/block_definition.h"
#include "host/commands/drawing.h"
#include "host/commands/families.h"
#include "host/commands/output_file.h"
#include "host/db/database.h"
#include "host/db/layouts.h"
#include "host/db/record_names.h"
#include "host/edit/viewports.h"
#include "sdk/vcdb_layout.h"

namespace vk::commands {

namespace {

using namespace edit;

std::vector<VcDbLayout*> sheetsOf(const DatabaseCore& db)
{
    std::vector<VcDbLayout*> layouts = layoutsByTab(db);
    std::erase_if(layouts, [&](const VcDbLayout* layout) { return isModelLayout(db, *layout); });
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
        const std::string name = ed.word(prompt, byDefault);
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
        const std::string name = ed.word(prompt, byDefault);
        if (!isLegalRecordName(name))
            ed.printLine(fmt::format(
                "\"{}\" is no name for a layout: it must not be empty nor hold any of <>/\\\":;?*|,=`.", name));
        else if (layoutNamed(ed.db(), name))
            ed.printLine(fmt::format("Layout \"{}\" already exists.", name));
        else
            return name;
    }
}

std::string freeName(Editor& ed, const std::string& like, std::string_view form, int first)
{
    for (int number = first;; ++number)
        if (std::string name = fmt::format(fmt::runtime(form), like, number); !layoutNamed(ed.db(), name))
            return name;
}

std::string copyName(Editor& ed, const std::string& like) { return freeName(ed, like, "{} ({})", 2); }

void copy(Editor& ed)
{
    VcDbLayout& source = askLayout(ed, "Enter name of layout to copy");
    const std::string name = askNewName(ed, "Enter layout name for copy", copyName(ed, source.nameUtf8()));
    copyLayout(ed.db(), source, name);
    ed.printLine(fmt::format("Layout \"{}\" copied to \"{}\".", source.nameUtf8(), name));
}

void erase(Editor& ed)
{
    VcDbLayout& layout = askLayout(ed, "Enter name of layout to delete");
    std::vector<VcDbLayout*> others = sheetsOf(ed.db());
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
    const std::string name = askNewName(ed, "Enter new Layout name", freeName(ed, "Layout", "{}{}", 1));
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

// The sheets of another drawing come with all that stands on them.
void takeFromTemplate(Editor& ed)
{
    const std::string file = ed.word("Enter a template file name");
    if (file.empty())
        return;
    const auto other = readOther(ed, findDrawing(ed, file));
    std::vector<VcDbLayout*> offered = sheetsOf(other->core());
    if (offered.empty())
        throw CommandError{"That drawing has no layout."};
    for (;;) {
        const std::string names = ed.word("Enter layout name(s) to take or [?]", offered.front()->nameUtf8());
        if (names == "?") {
            for (const VcDbLayout* layout : offered)
                ed.printLine("  " + layout->nameUtf8());
            continue;
        }
        std::size_t taken = 0;
        for (const VcDbLayout* layout : offered) {
            if (!equalNoCase(layout->nameUtf8(), names) && !Wildcard(names).matches(layout->nameUtf8()))
                continue;
            const bool isFree = !layoutNamed(ed.db(), layout->nameUtf8());
            const std::string name = isFree ? layout->nameUtf8() : copyName(ed, layout->nameUtf8());
            copyLayout(ed.db(), *layout, name);
            ed.printLine(fmt::format("Layout \"{}\" taken{}.", layout->nameUtf8(),
                                     isFree ? "" : fmt::format(" as \"{}\"", name)));
            ++taken;
        }
        if (taken > 0)
            return;
        ed.printLine(fmt::format("No layout of that drawing matches \"{}\".", names));
    }
}

// A drawing that has this sheet only, and nothing in its model.
std::unique_ptr<VcDbDatabase> drawingOf(Editor& ed, const VcDbLayout& layout)
{
    auto made = std::make_unique<VcDbDatabase>(true);
    DatabaseCore& to = made->core();
    to.origin.version = ed.db().origin.version;
    to.origin.codePage = ed.db().origin.codePage;
    const std::vector<VcDbLayout*> others = sheetsOf(to);
    std::string passing = layout.nameUtf8();
    while (layoutNamed(to, passing))
        passing += "_";
    VcDbLayout& sheet = copyLayout(to, layout, passing);
    makePaperSpace(to, sheet);
    for (VcDbLayout* other : others)
        eraseLayout(to, *other);
    renameLayout(to, sheet, layout.nameUtf8());
    return made;
}

void saveAsTemplate(Editor& ed)
{
    const VcDbLayout& layout = askLayout(ed, "Enter layout to save to template");
    const std::string path = askOutputPath(ed, "Enter a template file name");
    if (!mayReplaceFile(ed, path))
        return;
    const auto drawing = drawingOf(ed, layout);
    if (const auto result = writeTo(ed, *drawing, path))
        ed.printLine(fmt::format("Layout \"{}\" saved in {}.", layout.nameUtf8(), result->path));
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
    what == "Copy"       ? copy(ed)
    : what == "Delete"   ? erase(ed)
    : what == "New"      ? make(ed)
    : what == "Rename"   ? rename(ed)
    : what == "Set"      ? set(ed)
    : what == "Template" ? takeFromTemplate(ed)
    : what == "SAveas"   ? saveAsTemplate(ed)
                         : list(ed);
}

const HostCommand kCommands[] = {
    {"-LAYOUT", "-LO", kPlain, "Makes, copies, renames, deletes and shows layouts.", layout},
    {"LAYOUT", "LO", kPlain, "Makes, copies, renames, deletes and shows layouts.", layout},
};

}

std::span<const HostCommand> layoutCommands() { return kCommands; }

}
