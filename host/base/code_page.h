// Code pages of drawing files, by the names that files use, and the escapes \U+XXXX and \M+nXXXX.
//
// Decoding never loses a byte: what a page does not know stays in the UTF-8 text as the byte it was (see unicode.h)
// and is written back as that byte.
#pragma once

#include "host/base/api.h"

#include <cstddef>
#include <string>
#include <string_view>

class CodePageTable;

class VKHOST_API CodePage {
public:
    // By the name in a file ("ANSI_1252", "dos850", "GB2312"; case does not count), by the number that the system
    // layer uses (1252, 932, 65001), or by the index of binary drawing files. Null when there is no such page.
    static const CodePage* byName(std::string_view name);
    static const CodePage* byNumber(int number);
    static const CodePage* byDrawingIndex(int index);
    // The host's own page, also that of text files without a mark; 1252 unless the profile says another.
    static const CodePage& host();
    static bool setHost(int number);

    const char* name() const { return m_name; }  // as it stands in a drawing file
    int number() const { return m_number; }
    int drawingIndex() const { return m_index; }  // -1 for none
    bool isUtf8() const { return m_number == 65001; }
    bool isLeadByte(unsigned char byte) const;

    std::string toUtf8(std::string_view bytes) const;

    enum class Unknown { Escape, QuestionMark };
    // What the page cannot hold is escaped, or replaced and counted.
    std::string fromUtf8(std::string_view utf8, Unknown how = Unknown::Escape, std::size_t* replaced = nullptr) const;

    // The character of one or two bytes, 0 when there is none.
    char32_t character(unsigned first, unsigned second) const;

    constexpr CodePage(const char* name, int number, int index, const char* converter)
        : m_name(name), m_number(number), m_index(index), m_converter(converter)
    {
    }

private:
    const char* m_name;
    int m_number;
    int m_index;
    const char* m_converter;
    const CodePageTable& table() const;
};

// The text of a file that people write, without its UTF-8 mark: what is not valid UTF-8 is in the host's page.
VKHOST_API std::string utf8OfTextFile(std::string bytes);

// Puts characters in place of escapes. Escapes of ASCII characters stay: decoded they would mean something else
// (a line's end, a formatting code). Surrogate pairs written as two escapes become one character, a lone
// one stays an escape.
VKHOST_API std::string decodeEscapes(std::string_view utf8);

// Writes lone surrogates as escapes, so that the text is valid UTF-8 but for stray bytes.
VKHOST_API std::string escapeSurrogates(std::string_view utf8);

// "\U+XXXX", twice for a character past U+FFFF.
VKHOST_API void appendEscape(std::string& out, char32_t character);
