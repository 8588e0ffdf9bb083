#include "host/io/atomic_file.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace fs = std::filesystem;

namespace {

// A link is followed, so that the file it names is replaced and not the link.
std::string resolved(const std::string& path)
{
    std::error_code error;
    const fs::path real = fs::is_symlink(path, error) ? fs::weakly_canonical(path, error) : fs::path(path);
    return error ? path : real.string();
}

std::string folderOf(const std::string& path)
{
    const std::string folder = fs::path(path).parent_path().string();
    return folder.empty() ? "." : folder;
}

}

AtomicFile::AtomicFile(const std::string& target) : m_target(resolved(target))
{
    std::error_code error;
    if (fs::is_directory(m_target, error)) {
        m_error = fmt::format("cannot save {}: it is a folder", target);
        return;
    }
    m_temporary = m_target + ".XXXXXX";
    m_file = ::mkostemp(m_temporary.data(), O_CLOEXEC);
    if (m_file < 0) {
        m_temporary.clear();
        fail("make a file in the folder");
        return;
    }
    struct stat old {};
    const bool exists = ::stat(m_target.c_str(), &old) == 0;
    const mode_t mask = ::umask(0);
    ::umask(mask);
    ::fchmod(m_file, exists ? old.st_mode & 07777 : 0666 & ~mask);
}

AtomicFile::~AtomicFile()
{
    if (m_file >= 0)
        ::close(m_file);
    if (!m_temporary.empty())
        ::unlink(m_temporary.c_str());
}

void AtomicFile::fail(const char* what)
{
    if (m_error.empty())
        m_error = fmt::format("cannot save {}: {} failed: {}", m_target, what, std::strerror(errno));
}

void AtomicFile::write(std::string_view bytes)
{
    while (m_error.empty() && !bytes.empty()) {
        const ssize_t done = ::write(m_file, bytes.data(), bytes.size());
        if (done < 0 && errno == EINTR)
            continue;
        if (done < 0)
            return fail("writing");
        bytes.remove_prefix(static_cast<std::size_t>(done));
    }
}

bool AtomicFile::flushToDisk()
{
    if (!m_error.empty())
        return false;
    if (::fsync(m_file) != 0)
        fail("writing");
    // Some file systems say only here that the disk is full.
    if (::close(std::exchange(m_file, -1)) != 0)
        fail("writing");
    return m_error.empty();
}

// The old file keeps its name until the new one takes it: the backup is another link to it where links are possible.
bool AtomicFile::moveBackup()
{
    if (::access(m_target.c_str(), F_OK) != 0)
        return true;
    m_backup = m_target + ".bak";
    const std::string link = m_temporary + ".bak";
    if (::link(m_target.c_str(), link.c_str()) == 0) {
        if (::rename(link.c_str(), m_backup.c_str()) == 0)
            return true;
        ::unlink(link.c_str());
    } else if (::rename(m_target.c_str(), m_backup.c_str()) == 0) {
        return true;
    }
    fail("keeping the old file");
    return false;
}

bool AtomicFile::commit(bool keepBackup)
{
    if (!flushToDisk() || (keepBackup && !moveBackup()))
        return false;
    if (::rename(m_temporary.c_str(), m_target.c_str()) != 0) {
        fail("putting the new file in place");
        return false;
    }
    m_temporary.clear();
    syncFolder();
    return true;
}

void AtomicFile::syncFolder() const
{
    const int folder = ::open(folderOf(m_target).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folder < 0)
        return;
    ::fsync(folder);
    ::close(folder);
}
