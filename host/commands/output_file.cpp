#include "host/commands/output_file.h"

#include "host/base/files.h"
#include "host/edit/sysvars.h"

namespace vk::commands {

using namespace edit;

std::string askOutputPath(Editor& ed, std::string_view prompt, const std::string& byDefault)
{
    std::string path = ed.text(prompt, byDefault.empty() ? std::optional<std::string>() : byDefault);
    if (path.size() >= 2 && path.front() == '"' && path.back() == '"')
        path = path.substr(1, path.size() - 2);
    if (path.empty())
        throw CommandError{"A file name is required."};
    path = nativePath(path);
    return fileNameOf(path).find('.') == std::string_view::npos ? path + ".dxf" : path;
}

bool mayReplaceFile(Editor& ed, const std::string& path)
{
    if (!fileExists(path) || ed.vars().integer("EXPERT") > 1 || ed.vars().integer("FILEDIA") == 0)
        return true;
    return ed.keyword(fmt::format("{} already exists. Replace it? [Yes/No] <N>", path), "Yes No", "No") == "Yes";
}

std::optional<WriteResult> writeTo(Editor& ed, VcDbDatabase& drawing, const std::string& path, WriteOptions options)
{
    if (ed.writesNothing) {
        ed.printLine(fmt::format("Nothing is written in this run; {} stays as it is.", path));
        return std::nullopt;
    }
    options.progress = [&](double done) { ed.progress("Saving", done); };
    WriteResult result = writeDrawing(drawing, path, options);
    if (!result.ok())
        throw CommandError{result.message};
    return result;
}

}
