#include "host/io/mapped_file.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

MappedFile::MappedFile(const std::string& path)
{
    const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (file < 0) {
        m_error = std::strerror(errno);
        return;
    }
    struct stat about {};
    if (::fstat(file, &about) != 0)
        m_error = std::strerror(errno);
    else if (S_ISDIR(about.st_mode))
        m_error = "it is a folder";
    else if (S_ISREG(about.st_mode) && about.st_size > 0) {
        void* mapped = ::mmap(nullptr, static_cast<std::size_t>(about.st_size), PROT_READ, MAP_PRIVATE, file, 0);
        if (mapped == MAP_FAILED) {
            readWhole(file);
        } else {
            ::madvise(mapped, static_cast<std::size_t>(about.st_size), MADV_SEQUENTIAL);
            m_data = static_cast<const char*>(mapped);
            m_size = static_cast<std::size_t>(about.st_size);
            m_isMapped = true;
        }
    } else if (!S_ISREG(about.st_mode)) {
        readWhole(file);
    }
    ::close(file);
}

void MappedFile::readWhole(int file)
{
    char block[65536];
    for (;;) {
        const ssize_t got = ::read(file, block, sizeof block);
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            m_error = std::strerror(errno);
        if (got <= 0)
            break;
        m_copy.append(block, static_cast<std::size_t>(got));
    }
    m_data = m_copy.data();
    m_size = m_copy.size();
}

MappedFile::~MappedFile()
{
    if (m_isMapped)
        ::munmap(const_cast<char*>(m_data), m_size);
}
