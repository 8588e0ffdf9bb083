#include "host/edit/support_path.h"

#include "host/base/files.h"
#include "host/db/database.h"
#include "host/edit/editor.h"
#include "host/edit/environment.h"

#include <filesystem>

namespace vk::edit {

std::vector<std::string> supportFolders()
{
    std::error_code ignored;
    std::vector<std::string> folders{std::filesystem::current_path(ignored).string()};
    const Editor& ed = Editor::instance();
    if (ed.hasDrawing() && !folderOf(ed.db().origin.path).empty())
        folders.emplace_back(folderOf(ed.db().origin.path));
    folders.push_back(joinPath(hostFolder(), "Support"));
    const std::string listed = readEnvironment("SupportPath").value_or("");
    for (std::size_t at = 0; at < listed.size();) {
        const std::size_t end = std::min(listed.find(';', at), listed.size());
        if (end > at)
            folders.push_back(listed.substr(at, end - at));
        at = end + 1;
    }
    return folders;
}

std::optional<std::string> findSupportFile(std::string_view name)
{
    const std::string path = nativePath(name);
    if (path.find('/') != std::string::npos) {
        if (fileExists(path))
            return path;
        if (path.starts_with('/'))
            return findFileNoCase(std::string(folderOf(path)), fileNameOf(path));
    }
    for (const std::string& folder : supportFolders())
        if (auto found = findFileNoCase(folder, path))
            return found;
    return std::nullopt;
}

}
