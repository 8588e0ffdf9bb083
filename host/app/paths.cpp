#include "host/app/paths.h"

#include "host/base/files.h"
#include "host/base/unicode.h"

#include <filesystem>
#include <set>

namespace vk::app {

namespace fs = std::filesystem;

bool isSameFile(const std::string& a, const std::string& b)
{
    std::error_code error;
    if (fs::equivalent(a, b, error))
        return true;
    return fs::weakly_canonical(fs::absolute(a, error), error) == fs::weakly_canonical(fs::absolute(b, error), error);
}

std::string pathInFolder(const std::string& folder, const std::string& drawing)
{
    return joinPath(folder, fileNameOf(drawing));
}

std::string nameUsedTwice(const std::vector<std::string>& drawings)
{
    std::set<std::string, NoCaseLess> names;
    for (const std::string& drawing : drawings) {
        const std::string name(fileNameOf(drawing));
        if (!names.insert(name).second)
            return name;
    }
    return {};
}

}  // namespace vk::app
