#include "host/lisp/program_file.h"

#include "host/base/code_page.h"
#include "host/base/unicode.h"
#include "host/lisp/errors.h"

#include "vced.h"

#include <fstream>

namespace vk::lisp {

namespace {

constexpr std::size_t kPathLength = 4096;
constexpr std::streamsize kLongestProgram = 64 << 20;

std::optional<std::string> findProgram(const std::string& name)
{
    wchar_t path[kPathLength] = L"";
    for (const std::string& spelling : {name, name + ".lsp"})
        if (vcedFindFile(utf8ToWide(spelling).c_str(), path, kPathLength) == RTNORM)
            return wideToUtf8(path);
    return std::nullopt;
}

std::string readBytes(const std::string& path)
{
    std::ifstream file(path, std::ios::binary | std::ios::ate);
    const std::streamsize size = file ? static_cast<std::streamsize>(file.tellg()) : -1;
    if (size < 0)
        throw LispError("cannot be read: " + path);
    if (size > kLongestProgram)
        throw LispError("too long a program: " + path);
    std::string bytes(static_cast<std::size_t>(size), '\0');
    file.seekg(0);
    if (!file.read(bytes.data(), size))
        throw LispError("cannot be read: " + path);
    return bytes;
}

}  // namespace

std::optional<std::string> readProgramFile(const std::string& name)
{
    const auto path = findProgram(name);
    if (!path)
        return std::nullopt;
    return utf8OfTextFile(readBytes(*path));
}

}  // namespace vk::lisp
