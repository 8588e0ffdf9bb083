// QSAVE, SAVE, SAVEAS, QUIT.
#include "host/base/files.h"
#include "host/commands/families.h"
#include "host/db/database.h"
#include "host/edit/editor.h"
#include "host/edit/sysvars.h"
#include "host/io/drawing_file.h"

namespace vk::commands {

namespace {

using namespace edit;

void save(Editor& ed, const std::string& path, const WriteOptions& how)
{
    if (ed.writesNothing) {
        ed.printLine(fmt::format("Nothing is written in this run; {} stays as it is.", path));
        return;
    }
    WriteOptions options = how;
    options.progress = [&](double done) { ed.progress("Saving", done); };
    const WriteResult result = writeDrawing(ed.drawing(), path, options);
    if (!result.ok())
        throw CommandError{result.message};
    ed.printLine(fmt::format("Saved {} ({}): kept {}; rewrote {}; dropped {}.", result.path, releaseName(result.version), result.kept,
                             result.rewrote, result.dropped));
}

std::string withEnding(std::string path)
{
    const std::string_view name = fileNameOf(path);
    return name.find('.') == std::string_view::npos ? path + ".dxf" : path;
}

std::string askPath(Editor& ed)
{
    std::string path = ed.text("Save drawing as", ed.db().origin.path);
    if (path.size() >= 2 && path.front() == '"' && path.back() == '"')
        path = path.substr(1, path.size() - 2);
    if (path.empty())
        throw CommandError{"A file name is required."};
    return withEnding(nativePath(path));
}

// A copy goes elsewhere, so it is not the drawing's own file that may be overwritten without a word.
bool mayReplace(Editor& ed, const std::string& path)
{
    if (!fileExists(path) || ed.vars().integer("EXPERT") > 1 || ed.vars().integer("FILEDIA") == 0)
        return true;
    return ed.keyword(fmt::format("{} already exists. Replace it? [Yes/No] <N>", path), "Yes No", "No") == "Yes";
}

void saveAs(Editor& ed)
{
    const std::string kept = ed.keyword("Enter file format [R12/2000/2004/2007/2010/2013/2018/Keep] <Keep>",
                                        "R12 2000 2004 2007 2010 2013 2018 Keep", "Keep");
    WriteOptions options;
    if (kept != "Keep")
        options.version = versionByName(kept);
    const std::string path = askPath(ed);
    if (!mayReplace(ed, path))
        return;
    save(ed, path, options);
    ed.db().origin.path = path;
}

void saveCopy(Editor& ed)
{
    const std::string path = askPath(ed);
    if (mayReplace(ed, path))
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
