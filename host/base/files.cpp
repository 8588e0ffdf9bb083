#include "host/base/files.h"

#include "host/base/unicode.h"

#include <cerrno>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace fs = std::filesystem;

namespace {

struct stat statOf(const std::string& path, bool& found)
{
    struct stat info = {};
    found = ::stat(path.c_str(), &info) == 0;
    return info;
}

std::string systemError(std::string_view what, const std::string& path)
{
    return std::string(what) + " " + path + ": " + std::strerror(errno);
}

class Descriptor {
public:
    explicit Descriptor(int fd) : m_fd(fd) {}
    Descriptor(const Descriptor&) = delete;
    ~Descriptor() { close(); }
    operator int() const { return m_fd; }
    bool close()
    {
        const int fd = std::exchange(m_fd, -1);
        return fd < 0 || ::close(fd) == 0;
    }

private:
    int m_fd;
};

bool writeAll(int fd, std::string_view content)
{
    while (!content.empty()) {
        const ssize_t written = ::write(fd, content.data(), content.size());
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return false;
        content.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

// A new file beside the target, or -1.
int makeTemporary(std::string& name)
{
    name += ".XXXXXX";
    return ::mkostemp(name.data(), O_CLOEXEC);
}

mode_t permissionsFor(const std::string& target)
{
    bool found = false;
    const struct stat info = statOf(target, found);
    if (found)
        return info.st_mode & 07777;
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return 0666 & ~mask;
}

void syncFolder(const std::string& path)
{
    const std::string folder(folderOf(path));
    const Descriptor fd(::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (fd >= 0)
        ::fsync(fd);
}

// A link is written through, not replaced.
std::string resolvedTarget(const std::string& path)
{
    std::error_code error;
    const fs::path real = fs::canonical(path, error);
    return error ? path : real.string();
}

std::string makeTemporaryFolder()
{
    std::error_code error;
    const fs::path parent = fs::temp_directory_path(error);
    std::string name = (error ? std::string("/tmp") : parent.string()) + "/vekad-XXXXXX";
    if (!::mkdtemp(name.data()))
        return "";
    ::mkdir((name + "/fcmp").c_str(), 0700);
    return name + "/";
}

// The entry of the folder that the name means: the exact one, else the first in order that differs by case alone.
std::optional<std::string> entryNoCase(const std::string& folder, std::string_view name)
{
    const std::string exact = joinPath(folder, name);
    if (::access(exact.c_str(), F_OK) == 0)
        return exact;
    std::optional<std::string> best;
    std::error_code error;
    for (fs::directory_iterator at(folder.empty() ? "." : folder, error), last; !error && at != last;
         at.increment(error)) {
        const std::string entry = at->path().filename().string();
        if (equalNoCase(std::string_view(entry), name) && (!best || entry < *best))
            best = entry;
    }
    return best ? std::optional(joinPath(folder, *best)) : std::nullopt;
}

}  // namespace

std::string nativePath(std::string_view path)
{
    std::string native(path);
    if (native.find('\\') == native.npos || ::access(native.c_str(), F_OK) == 0)
        return native;
    std::replace(native.begin(), native.end(), '\\', '/');
    return native;
}

std::string nativePath(std::wstring_view path) { return nativePath(std::string_view(wideToUtf8(path))); }

bool fileExists(const std::string& path)
{
    bool found = false;
    const struct stat info = statOf(path, found);
    return found && !S_ISDIR(info.st_mode);
}

bool folderExists(const std::string& path)
{
    bool found = false;
    const struct stat info = statOf(path, found);
    return found && S_ISDIR(info.st_mode);
}

bool makeFolders(const std::string& path)
{
    std::error_code error;
    fs::create_directories(path, error);
    return folderExists(path);
}

std::string_view fileNameOf(std::string_view path)
{
    return path.substr(path.find_last_of("/\\") + 1);  // npos + 1 is 0
}

std::string_view folderOf(std::string_view path) { return path.substr(0, path.find_last_of("/\\") + 1); }

std::string joinPath(std::string_view folder, std::string_view name)
{
    std::string path(folder);
    if (!path.empty() && path.back() != '/')
        path += '/';
    return path.append(name);
}

std::optional<std::string> findFileNoCase(const std::string& folder, std::string_view name)
{
    std::string path = folder;
    while (!name.empty()) {
        const std::size_t end = std::min(name.find_first_of("/\\"), name.size());
        const std::string_view part = name.substr(0, end);
        name.remove_prefix(std::min(end + 1, name.size()));
        if (part.empty())
            continue;
        const auto entry = entryNoCase(path, part);
        if (!entry)
            return std::nullopt;
        path = *entry;
    }
    return fileExists(path) ? std::optional(path) : std::nullopt;
}

std::optional<std::string> readWholeFile(const std::string& path, std::string* error)
{
    const auto failed = [&]() -> std::optional<std::string> {
        if (error)
            *error = systemError("cannot read", path);
        return std::nullopt;
    };
    const Descriptor fd(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    struct stat info = {};
    if (fd < 0 || ::fstat(fd, &info) != 0)
        return failed();
    std::string content;
    content.reserve(S_ISREG(info.st_mode) ? static_cast<std::size_t>(info.st_size) : 0);
    for (;;) {
        constexpr std::size_t kChunk = 1 << 20;
        const std::size_t size = content.size();
        content.resize(size + std::min(kChunk, std::max<std::size_t>(content.capacity() - size, 4096)));
        const ssize_t got = ::read(fd, content.data() + size, content.size() - size);
        content.resize(size + static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
        if (got < 0 && errno != EINTR)
            return failed();
        if (got == 0)
            return content;
    }
}

bool writeFileAtomically(const std::string& path, std::string_view content, std::string& error)
{
    const std::string target = resolvedTarget(path);
    std::string temporary = target;
    Descriptor fd(makeTemporary(temporary));
    if (fd < 0) {
        error = systemError("cannot write beside", target);
        return false;
    }
    const bool written = writeAll(fd, content) && ::fchmod(fd, permissionsFor(target)) == 0 && ::fsync(fd) == 0 &&
                         fd.close() && ::rename(temporary.c_str(), target.c_str()) == 0;
    if (!written) {
        error = systemError("cannot write", target);
        ::unlink(temporary.c_str());
        return false;
    }
    syncFolder(target);
    return true;
}

const std::string& temporaryFolder()
{
    static std::string folder;
    if (folder.empty())
        folder = makeTemporaryFolder();
    return folder;
}

const std::string& programPath()
{
    static const std::string path = [] {
        std::error_code error;
        return fs::read_symlink("/proc/self/exe", error).string();
    }();
    return path;
}

const std::string& hostFolder()
{
    static const std::string folder = [] {
        Dl_info info = {};
        const bool known = ::dladdr(reinterpret_cast<const void*>(&hostFolder), &info) != 0 && info.dli_fname;
        std::error_code error;
        const fs::path library = known ? fs::canonical(info.dli_fname, error) : fs::path();
        return std::string(folderOf(error || library.empty() ? programPath() : library.string()));
    }();
    return folder;
}
