#include "host/app/loading.h"

#include "host/app/remarks.h"
#include "host/app/stopping.h"
#include "host/db/database.h"
#include "host/io/external_reference.h"

#include <fmt/format.h>

namespace vk::app {

Loaded load(const std::string& path, bool recover, Remarks& remarks, bool quiet)
{
    Loaded loaded;
    loaded.database = std::make_unique<VcDbDatabase>(false);
    {
        Progress progress("Reading " + path);
        const ReadOptions how{.recover = recover, .progress = progress.callback(), .cancel = &stopFlag()};
        loaded.read = readDrawing(*loaded.database, path, how);
    }
    if (loaded.read.status == FileStatus::Cancelled) {
        loaded.status = kCommandFailed;
        remarks.say(fmt::format("{}: reading was ended", path));
    } else if (!loaded.read.ok()) {
        loaded.status = kUnreadable;
        remarks.say(fmt::format("{}: {}", path, loaded.read.message));
    }
    if (!quiet)
        remarks.problems(path, loaded.read.problems);
    return loaded;
}

void loadReferences(VcDbDatabase& database, Remarks& remarks)
{
    for (const std::string& remark : loadSavedReferences(database.core()))
        remarks.say(remark);
}

WriteOptions writeOptions(const SaveOptions& save)
{
    WriteOptions how;
    how.version = save.version;
    if (save.binary)
        how.binary = true;
    how.allowLoss = save.allowLoss;
    return how;
}

WriteResult saveAs(VcDbDatabase& database, const std::string& path, WriteOptions how, Remarks& remarks)
{
    WriteResult result;
    {
        Progress progress("Saving " + path);
        how.progress = progress.callback();
        how.cancel = &stopFlag();
        result = writeDrawing(database, path, how);
    }
    if (result.ok())
        remarks.receipt(result, how.dryRun);
    else
        remarks.say(fmt::format("{} was not saved: {}{}", path, result.message,
                                result.status == FileStatus::Refused ? "; --allow-loss saves it without them" : ""));
    return result;
}

}  // namespace vk::app
