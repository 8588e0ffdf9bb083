// Files under their system-style names.
#include "host/base/files.h"
#include "host/base/system_handle.h"
#include "host/base/unicode.h"
#include "sdk/system.h"

#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <list>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

std::list<SystemHandle>& handles()
{
    static std::list<SystemHandle> open;
    return open;
}

int openFlags(DWORD access, DWORD disposition)
{
    const bool writes = access & GENERIC_WRITE, reads = access & GENERIC_READ;
    const int mode = writes ? (reads ? O_RDWR : O_WRONLY) : O_RDONLY;
    switch (disposition) {
    case CREATE_NEW:
        return mode | O_CREAT | O_EXCL;
    case CREATE_ALWAYS:
        return mode | O_CREAT | O_TRUNC;
    case OPEN_ALWAYS:
        return mode | O_CREAT;
    case TRUNCATE_EXISTING:
        return mode | O_TRUNC;
    default:
        return mode;
    }
}

// All of it, but for the end of the file and errors; -1 when nothing could be moved.
template <class Move, class Buffer>
ssize_t moveAll(Move move, int fd, Buffer* buffer, std::size_t count)
{
    std::size_t done = 0;
    while (done < count) {
        const ssize_t moved = move(fd, buffer + done, count - done);
        if (moved < 0 && errno == EINTR)
            continue;
        if (moved < 0)
            return done ? static_cast<ssize_t>(done) : -1;
        if (moved == 0)
            break;
        done += static_cast<std::size_t>(moved);
    }
    return static_cast<ssize_t>(done);
}

BOOL finish(ssize_t moved, DWORD* count)
{
    if (count)
        *count = static_cast<DWORD>(std::max<ssize_t>(moved, 0));
    return moved >= 0;
}

}  // namespace

SystemHandle* addHandle(const SystemHandle& handle) { return &handles().emplace_back(handle); }

SystemHandle* findHandle(void* handle)
{
    for (SystemHandle& open : handles())
        if (&open == handle)
            return &open;
    return nullptr;
}

HANDLE CreateFileW(const wchar_t* path, DWORD access, DWORD, void*, DWORD disposition, DWORD, HANDLE)
{
    if (!path || !*path)
        return INVALID_HANDLE_VALUE;
    const int fd = ::open(nativePath(path).c_str(), openFlags(access, disposition) | O_CLOEXEC, 0666);
    struct stat info = {};
    if (fd >= 0 && ::fstat(fd, &info) == 0 && !S_ISDIR(info.st_mode))
        return addHandle({fd, 0});
    if (fd >= 0)
        ::close(fd);
    return INVALID_HANDLE_VALUE;
}

BOOL ReadFile(HANDLE file, void* buffer, DWORD count, DWORD* read, void*)
{
    const SystemHandle* handle = findHandle(file);
    const bool usable = handle && handle->descriptor >= 0 && (buffer || !count);
    return finish(usable ? moveAll(::read, handle->descriptor, static_cast<char*>(buffer), count) : -1, read);
}

BOOL WriteFile(HANDLE file, const void* buffer, DWORD count, DWORD* written, void*)
{
    const SystemHandle* handle = findHandle(file);
    const bool usable = handle && handle->descriptor >= 0 && (buffer || !count);
    const ssize_t moved = usable ? moveAll(::write, handle->descriptor, static_cast<const char*>(buffer), count) : -1;
    finish(moved, written);
    return moved == static_cast<ssize_t>(count);
}

DWORD GetFileSize(HANDLE file, DWORD* high)
{
    const SystemHandle* handle = findHandle(file);
    struct stat info = {};
    if (!handle || handle->descriptor < 0 || ::fstat(handle->descriptor, &info) != 0)
        return INVALID_FILE_SIZE;
    const auto size = static_cast<std::uint64_t>(info.st_size);
    if (high)
        *high = static_cast<DWORD>(size >> 32);
    return static_cast<DWORD>(size);
}

BOOL CloseHandle(HANDLE handle)
{
    const SystemHandle* open = findHandle(handle);
    if (!open)
        return FALSE;
    if (open->descriptor >= 0)
        ::close(open->descriptor);
    if (open->process > 0)
        ::waitpid(open->process, nullptr, WNOHANG);
    handles().remove_if([open](const SystemHandle& other) { return &other == open; });
    return TRUE;
}

BOOL CopyFileW(const wchar_t* from, const wchar_t* to, BOOL failIfExists)
{
    if (!from || !to)
        return FALSE;
    const auto how = failIfExists ? fs::copy_options::none : fs::copy_options::overwrite_existing;
    std::error_code error;
    return fs::copy_file(nativePath(from), nativePath(to), how, error) && !error;
}

BOOL DeleteFileW(const wchar_t* path) { return path && ::unlink(nativePath(path).c_str()) == 0; }

DWORD GetFileAttributesW(const wchar_t* path)
{
    const std::string native = path ? nativePath(path) : "";
    struct stat info = {};
    if (native.empty() || ::stat(native.c_str(), &info) != 0)
        return INVALID_FILE_ATTRIBUTES;
    DWORD attributes = 0;
    if (S_ISDIR(info.st_mode))
        attributes |= FILE_ATTRIBUTE_DIRECTORY;
    if (::access(native.c_str(), W_OK) != 0)
        attributes |= FILE_ATTRIBUTE_READONLY;
    if (fileNameOf(native).starts_with('.'))
        attributes |= FILE_ATTRIBUTE_HIDDEN;
    return attributes ? attributes : DWORD{FILE_ATTRIBUTE_NORMAL};
}

DWORD GetTempPathW(DWORD size, wchar_t* buffer)
{
    const std::wstring folder = utf8ToWide(temporaryFolder());
    if (folder.empty())
        return 0;
    if (!buffer || size <= folder.size())
        return static_cast<DWORD>(folder.size() + 1);
    std::wmemcpy(buffer, folder.c_str(), folder.size() + 1);
    return static_cast<DWORD>(folder.size());
}
