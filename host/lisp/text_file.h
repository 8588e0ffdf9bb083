// Text files that programs have open.
#pragma once

#include "host/lisp/value.h"

#include <cstdio>
#include <memory>
#include <optional>

namespace vk::lisp {

class FileCell : public Cell {
public:
    FileCell(std::string path, std::FILE* file) : m_path(std::move(path)), m_file(file) {}

    bool isOpen() const { return m_file != nullptr; }
    const std::string& path() const { return m_path; }

    // These throw LispError when the file is closed, or the disk does not do its part.
    std::optional<std::string> readLine();  // UTF-8, without its end; nothing at the end of the file
    std::optional<char32_t> readCharacter();
    void write(std::string_view utf8);
    void close();

private:
    struct Closer {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };
    std::FILE* opened();
    void refuse(const char* what) const;

    std::string m_path;
    std::unique_ptr<std::FILE, Closer> m_file;
};

// The file that an argument names.
FileCell& asFile(const Value& value);

}  // namespace vk::lisp
