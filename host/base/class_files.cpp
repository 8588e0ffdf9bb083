#include "sdk/classlib_files.h"

#include "host/base/code_page.h"
#include "host/base/files.h"
#include "host/base/unicode.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

int openFlags(UINT flags)
{
    const bool writes = (flags & 3) != CFile::modeRead;
    int result = (flags & 3) == CFile::modeReadWrite ? O_RDWR : writes ? O_WRONLY : O_RDONLY;
    if (flags & CFile::modeCreate)
        result |= O_CREAT | (flags & CFile::modeNoTruncate ? 0 : O_TRUNC);
    return result | O_CLOEXEC;
}

const char* streamMode(UINT flags)
{
    switch (flags & 3) {
    case CFile::modeWrite:
        return "w";
    case CFile::modeReadWrite:
        return "r+";
    default:
        return "r";
    }
}

CFileException::Cause causeOf(int error)
{
    switch (error) {
    case ENOENT:
        return CFileException::fileNotFound;
    case ENOTDIR:
    case EISDIR:
        return CFileException::badPath;
    case EACCES:
    case EPERM:
    case EROFS:
        return CFileException::accessDenied;
    case ENOSPC:
        return CFileException::diskFull;
    default:
        return CFileException::generic;
    }
}

std::FILE* openStream(const std::string& path, UINT flags)
{
    const int fd = ::open(path.c_str(), openFlags(flags), 0666);
    if (fd < 0)
        return nullptr;
    struct stat info = {};
    if (::fstat(fd, &info) == 0 && S_ISDIR(info.st_mode)) {
        ::close(fd);
        errno = EISDIR;
        return nullptr;
    }
    return ::fdopen(fd, streamMode(flags));
}

}  // namespace

CFile::~CFile()
{
    if (m_file)
        std::fclose(m_file);
}

bool CFile::Open(const wchar_t* path, UINT flags, CFileException* error)
{
    CFile::Close();
    m_path = path;
    m_failed = false;
    m_file = openStream(nativePath(m_path.str()), flags);
    if (!m_file && error) {
        error->m_cause = causeOf(errno);
        error->m_strFileName = m_path;
    }
    return m_file != nullptr;
}

void CFile::Close()
{
    if (m_file && std::fclose(m_file) != 0)
        m_failed = true;
    m_file = nullptr;
}

UINT CFile::Read(void* buffer, UINT count)
{
    return m_file && buffer ? static_cast<UINT>(std::fread(buffer, 1, count, m_file)) : 0;
}

void CFile::Write(const void* buffer, UINT count)
{
    if (count && (!m_file || !buffer || std::fwrite(buffer, 1, count, m_file) != count))
        m_failed = true;
}

void CFile::Flush()
{
    if (m_file && std::fflush(m_file) != 0)
        m_failed = true;
}

long long CFile::Seek(long long offset, UINT from)
{
    const int origin = from == current ? SEEK_CUR : from == end ? SEEK_END : SEEK_SET;
    return m_file && ::fseeko(m_file, offset, origin) == 0 ? GetPosition() : -1;
}

long long CFile::GetPosition() const { return m_file ? ::ftello(m_file) : -1; }

unsigned long long CFile::GetLength() const
{
    struct stat info = {};
    if (!m_file || std::fflush(m_file) != 0 || ::fstat(::fileno(m_file), &info) != 0)
        return 0;
    return static_cast<unsigned long long>(info.st_size);
}

bool CFile::Remove(const wchar_t* path) { return path && ::unlink(nativePath(path).c_str()) == 0; }

bool CFile::Rename(const wchar_t* oldPath, const wchar_t* newPath)
{
    return oldPath && newPath && std::rename(nativePath(oldPath).c_str(), nativePath(newPath).c_str()) == 0;
}
