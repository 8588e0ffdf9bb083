// -XREF - attaches other drawings, and reloads, binds and detaches them.
#include "host/base/files.h"
#include "host/base/unicode.h"
#include "host/base/wildcard.h"
#include "host/commands/block_definition.h"
#include "host/commands/drawing.h"
#include "host/commands/families.h"
#include "host/commands/reference_prompts.h"
#include "host/db/database.h"
#include "host/db/record_names.h"
#include "host/edit/sysvars.h"
#include "host/io/external_reference.h"
#include "sdk/vcdb_insert.h"
#include "sdk/vcdb_tables.h"

namespace vk::commands {

namespace {

using namespace edit;
using Block = VcDbBlockTableRecord;

std::vector<Block*> matching(Editor& ed, const std::string& names)
{
    std::vector<Block*> found;
    const Wildcard pattern(names);
    for (Block* reference : externalReferences(ed.db()))
        if (!names.empty() && (equalNoCase(reference->nameUtf8(), names) || pattern.matches(reference->nameUtf8())))
            found.push_back(reference);
    if (found.empty() && !names.empty())
        ed.printLine(fmt::format("No external reference matches \"{}\".", names));
    return found;
}

void list(Editor& ed)
{
    const Wildcard pattern(ed.word("Enter xref name(s) to list", "*"));
    ed.printLine(fmt::format("{:<24}{:<10}{:<10}{}", "Xref name", "Type", "State", "Path"));
    std::size_t count = 0;
    for (const Block* reference : externalReferences(ed.db())) {
        if (!pattern.matches(reference->nameUtf8()))
            continue;
        ++count;
        ed.printLine(fmt::format("{:<24}{:<10}{:<10}{}", reference->nameUtf8(),
                                 reference->isFromOverlayReference() ? "Overlay" : "Attach",
                                 isLoaded(ed.db(), *reference) ? "Loaded" : "Not loaded", reference->pathUtf8()));
    }
    ed.printLine(fmt::format("Total Xref(s): {}", count));
}

bool load(Editor& ed, Block& reference)
{
    const ReferenceLoad result = loadExternalReference(ed.db(), reference);
    for (const std::string& remark : result.remarks)
        ed.printLine(remark);
    ed.printLine(result.ok() ? fmt::format("\"{}\" loaded.", reference.nameUtf8()) : result.error);
    return result.ok();
}

// A record that cannot be loaded is not left behind.
Block& attached(Editor& ed, const std::string& name, const std::string& path, bool overlay)
{
    if (Block* known = blockNamed(ed, name)) {
        if (!known->isFromExternalReference())
            throw CommandError{fmt::format(
                "\"{}\" is a block of this drawing. NAME=FILE attaches the file under another name.", name)};
        ed.printLine(fmt::format("Xref \"{}\" has already been attached; another reference to it is placed.", name));
        if (!isLoaded(ed.db(), *known) && !load(ed, *known))
            throw CommandError{"The external reference cannot be loaded."};
        return *known;
    }
    if (!isLegalRecordName(name) || name.starts_with('*'))
        throw CommandError{fmt::format("\"{}\" is no name for an external reference.", name)};
    Block& reference = addExternalReference(ed.db(), name, path, overlay);
    if (const ReferenceLoad result = loadExternalReference(ed.db(), reference); !result.ok()) {
        reference.erase();
        throw CommandError{result.error};
    } else
        for (const std::string& remark : result.remarks)
            ed.printLine(remark);
    ed.printLine(fmt::format("{} \"{}\": {}", overlay ? "Overlay Xref" : "Attach Xref", name, path));
    return reference;
}

void attach(Editor& ed, bool overlay)
{
    const std::string typed = ed.word(overlay ? "Enter name of file to overlay" : "Enter name of file to attach");
    if (typed.empty())
        return;
    const std::size_t equals = typed.find('=');
    const std::string path = findDrawing(ed, equals == std::string::npos ? typed : typed.substr(equals + 1));
    const std::string name = equals == std::string::npos ? blockNameOf(path) : typed.substr(0, equals);
    Block& block = attached(ed, name, path, overlay);
    const Placement placement = askPlacement(ed);
    auto reference = std::make_unique<VcDbBlockReference>();
    reference->setBlockTableRecord(block.objectId());
    place(ed, *reference, placement, unitFactor(ed, block));
    addToSpace(ed, std::move(reference));
}

void bind(Editor& ed)
{
    for (Block* reference : matching(ed, ed.word("Enter xref name(s) to bind"))) {
        if (!reference->isFromExternalReference())
            continue;  // it went with one that holds it
        const std::string name = reference->nameUtf8();
        ed.printLine(bindExternalReference(ed.db(), *reference)
                         ? fmt::format("\"{}\" bound.", name)
                         : fmt::format("\"{}\" is not loaded and cannot be bound.", name));
    }
}

void detach(Editor& ed)
{
    for (Block* reference : matching(ed, ed.word("Enter xref name(s) to detach"))) {
        const std::string name = reference->nameUtf8();
        detachExternalReference(ed.db(), *reference);
        ed.printLine(fmt::format("\"{}\" detached.", name));
    }
}

void changePath(Editor& ed)
{
    for (Block* reference : matching(ed, ed.word("Enter xref name(s) to edit path"))) {
        ed.printLine(fmt::format("Xref name: {}\nOld path: {}", reference->nameUtf8(), reference->pathUtf8()));
        const std::string path = ed.word("Enter new path", reference->pathUtf8());
        const std::string before = reference->pathUtf8();
        if (path == before)
            continue;
        reference->setPathName(utf8ToWide(path).c_str());
        if (!load(ed, *reference))
            reference->setPathName(utf8ToWide(before).c_str());
    }
}

void unload(Editor& ed)
{
    for (Block* reference : matching(ed, ed.word("Enter xref name(s) to unload"))) {
        unloadExternalReference(ed.db(), *reference);
        ed.printLine(fmt::format("\"{}\" unloaded.", reference->nameUtf8()));
    }
}

void reload(Editor& ed)
{
    bool all = true;
    for (Block* reference : matching(ed, ed.word("Enter xref name(s) to reload")))
        all &= load(ed, *reference);
    if (!all)
        throw CommandError{"Not every external reference could be loaded."};
}

void xref(Editor& ed)
{
    const std::string what = ed.keyword("Enter an option [?/Bind/Detach/Path/Unload/Reload/Overlay/Attach] <Attach>",
                                        "? Bind Detach Path Unload Reload Overlay Attach", "Attach");
    what == "?"        ? list(ed)
    : what == "Bind"   ? bind(ed)
    : what == "Detach" ? detach(ed)
    : what == "Path"   ? changePath(ed)
    : what == "Unload" ? unload(ed)
    : what == "Reload" ? reload(ed)
                       : attach(ed, what == "Overlay");
}

const HostCommand kCommands[] = {
    {"-XREF", "-XR", kPlain, "Attaches other drawings, and reloads, binds and detaches them.", xref},
    {"XREF", "XR", kPlain, "Attaches other drawings, and reloads, binds and detaches them.", xref},
};

}

std::span<const HostCommand> xrefCommands() { return kCommands; }

}
