#include "host/lisp/text_file.h"

#include "host/base/code_page.h"
#include "host/base/unicode.h"
#include "host/lisp/arguments.h"
#include "host/lisp/errors.h"

#include <cerrno>
#include <cstring>
#include <fmt/format.h>

namespace vk::lisp {

namespace {

// Bytes of a character that begins so; 1 for what begins none.
std::size_t lengthOfCharacter(unsigned char first)
{
    return first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : first >= 0xC0 ? 2 : 1;
}

std::string asUtf8(std::string bytes) { return isValidUtf8(bytes) ? bytes : CodePage::host().toUtf8(bytes); }

}  // namespace

FileCell& asFile(const Value& value)
{
    if (value.kind() != Kind::file)
        badArgument("streamp", value);
    return value.as<FileCell>();
}

void FileCell::refuse(const char* what) const
{
    throw LispError(fmt::format("{} {}: {}", m_path, what, std::strerror(errno)));
}

std::FILE* FileCell::opened()
{
    if (!m_file)
        throw LispError("the file is closed: " + m_path);
    return m_file.get();
}

std::optional<std::string> FileCell::readLine()
{
    std::FILE* const file = opened();
    std::string line;
    int c;
    while ((c = std::getc(file)) != EOF && c != '\n') {
        if (line.size() == TextCell::kLongest)
            throw LispError("too long a line in " + m_path);
        line += static_cast<char>(c);
    }
    if (std::ferror(file))
        refuse("cannot be read");
    if (c == EOF && line.empty())
        return std::nullopt;
    if (line.ends_with('\r'))
        line.pop_back();
    return asUtf8(std::move(line));
}

std::optional<char32_t> FileCell::readCharacter()
{
    std::FILE* const file = opened();
    const int first = std::getc(file);
    if (std::ferror(file))
        refuse("cannot be read");
    if (first == EOF)
        return std::nullopt;
    std::string bytes(1, static_cast<char>(first));
    while (bytes.size() < lengthOfCharacter(static_cast<unsigned char>(first))) {
        const int next = std::getc(file);
        if ((next & 0xC0) != 0x80) {  // not UTF-8 after all
            std::ungetc(next, file);
            break;
        }
        bytes += static_cast<char>(next);
    }
    const std::string utf8 = asUtf8(std::move(bytes));
    std::string_view rest = utf8;
    return takeCharacter(rest);
}

void FileCell::write(std::string_view utf8)
{
    std::FILE* const file = opened();
    if (std::fwrite(utf8.data(), 1, utf8.size(), file) < utf8.size())
        refuse("cannot be written");
}

// What is still in the buffer may not find room on the disk.
void FileCell::close()
{
    if (std::fflush(opened()) != 0)
        refuse("cannot be written");
    m_file.reset();
}

}  // namespace vk::lisp
