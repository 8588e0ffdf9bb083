// A whole file as read-only memory.
#pragma once

#include <string>
#include <string_view>

class MappedFile {
public:
    // On failure isOpen() is false and error() says why.
    explicit MappedFile(const std::string& path);
    ~MappedFile();
    MappedFile(const MappedFile&) = delete;
    MappedFile& operator=(const MappedFile&) = delete;

    bool isOpen() const { return m_error.empty(); }
    const std::string& error() const { return m_error; }
    std::string_view bytes() const { return {m_data, m_size}; }

private:
    const char* m_data = "";
    std::size_t m_size = 0;
    bool m_isMapped = false;
    std::string m_copy;  // of what cannot be mapped, such as a pipe
    std::string m_error;

    void readWhole(int file);
};
