// QSAVE, SAVE, SAVEAS, QUIT.
#include "host/commands/families.h"
#include "host/commands/output_file.h"
#include "host/db/database.h"
#include "host/edit/sysvars.h"

namespace vk::commands {

namespace {

using namespace edit;

void save(Editor& ed, const std::string& path, const WriteOptions& how)
{
    if (const auto result = writeTo(ed, ed.drawing(), path, how))
        ed.printLine(fmt::format("Saved {} ({}): kept {}; rewrote {}; dropped {}.", result->path,
                                 releaseName(result->version), result->kept, result->rewrote, result->dropped));
}

std::string askPath(Editor& ed) { return askOutputPath(ed, "Save drawing as", ed.db().origin.path); }

void saveAs(Editor& ed)
{
    const std::string kept = ed.keyword("Enter file format [R12/2000/2004/2007/2010/2013/2018/Keep] <Keep>",
                                        "R12 2000 2004 2007 2010 2013 2018 Keep", "Keep");
    WriteOptions options;
    if (kept != "Keep")
        options.version = versionByName(kept);
    const std::string path = askPath(ed);
    if (!mayReplaceFile(ed, path))
        return;
    save(ed, path, options);
    ed.db().origin.path = path;
}

void saveCopy(Editor& ed)
{
    const std::string path = askPath(ed);
    if (mayReplaceFile(ed, path))
        save(ed, path, {});
}

void qsave(Editor& ed)
{
    if (ed.db().origin.path.empty())
        return saveAs(ed);
    save(ed, ed.db().origin.path, {});
}

void quit(Editor& ed)
{
    if (ed.vars().integer("DBMOD") != 0 && ed.asksBeforeQuit &&
        ed.keyword("Really want to discard all changes to drawing? [Yes/No] <N>", "Yes No", "No") == "No")
        return;
    ed.quit();
}

const HostCommand kCommands[] = {
    {"QSAVE", nullptr, kNoUndoStep, "Saves the drawing in its file.", qsave},
    {"SAVE", nullptr, kNoUndoStep, "Saves a copy of the drawing.", saveCopy},
    {"SAVEAS", nullptr, kNoUndoStep, "Saves the drawing under a name and in a format.", saveAs},
    {"QUIT", "EXIT", kNoUndoStep, "Ends the session.", quit},
};

}

std::span<const HostCommand> fileCommands() { return kCommands; }

}
