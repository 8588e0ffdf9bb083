#include "host/io/group_output.h"

#include "host/base/group_code.h"
#include "host/base/numbers.h"
#include "host/io/dxf_source.h"

#include <charconv>
#include <cmath>
#include <cstring>

namespace {

class AsciiOutput final : public GroupOutput {
public:
    AsciiOutput(bool crLf, const CodePage& page, ByteSink& sink)
        : GroupOutput(page, sink), m_lineEnd(crLf ? "\r\n" : "\n")
    {
        for (int code = 0; code < kCodes; ++code) {
            std::string line = std::string(code < 10 ? 2 : code < 100 ? 1 : 0, ' ') + std::to_string(code);
            line += m_lineEnd;
            m_codeLines[code].size = static_cast<std::uint8_t>(line.size());
            line.copy(m_codeLines[code].text, kLongestCodeLine);
        }
    }

    void real(int code, double value) override
    {
        char* to = printCode(room(kLongestGroup), code);
        // Whole numbers stay in fixed notation: 100000.0, where the shortest form would be 1e+05.
        const auto whole = std::fabs(value) < 1e15 ? static_cast<std::int64_t>(value) : 0;
        if (whole != 0 && static_cast<double>(whole) == value)
            to = std::copy_n(".0", 2, std::to_chars(to, to + 24, whole).ptr);
        else
            to = printReal(to, value);
        took(printLineEnd(to));
    }
    void integer(int code, std::int64_t value) override
    {
        char* to = printCode(room(kLongestGroup), code);
        took(printLineEnd(printPadded(to, value, width(code))));
    }
    void text(int code, std::string_view utf8) override
    {
        took(printCode(room(kLongestGroup), code));
        putText(utf8);
        took(printLineEnd(room(kLongestGroup)));
    }
    void handle(int code, std::uint64_t handle) override
    {
        char* to = printCode(room(kLongestGroup), code);
        took(printLineEnd(printHandle(to, handle)));
    }
    void bytes(int code, std::string_view data) override
    {
        constexpr char kDigits[] = "0123456789ABCDEF";
        char* to = printCode(room(kLongestGroup + 2 * data.size()), code);
        for (const unsigned char byte : data) {
            *to++ = kDigits[byte >> 4];
            *to++ = kDigits[byte & 15];
        }
        took(printLineEnd(to));
    }

private:
    static constexpr int kCodes = 1072;
    static constexpr std::size_t kLongestCodeLine = 8;
    static constexpr std::size_t kLongestGroup = 128;  // of all but texts and data

    struct CodeLine {
        char text[kLongestCodeLine] = {};
        std::uint8_t size = 0;
    };

    char* printCode(char* to, int code) const
    {
        if (code < 0 || code >= kCodes)
            return printLineEnd(std::to_chars(to, to + 12, code).ptr);
        // The whole array: a copy of a fixed size is one move.
        std::memcpy(to, m_codeLines[code].text, kLongestCodeLine);
        return to + m_codeLines[code].size;
    }
    char* printLineEnd(char* to) const { return std::copy(m_lineEnd.begin(), m_lineEnd.end(), to); }
    // Small integers stand in six columns and long ones in nine, as is customary.
    static std::size_t width(int code)
    {
        switch (groupKind(code)) {
        case GroupKind::Int16:
        case GroupKind::Bool:
            return 6;
        case GroupKind::Int32:
            return 9;
        default:
            return 0;
        }
    }
    static char* printPadded(char* to, std::int64_t value, std::size_t columns)
    {
        char digits[24];
        const char* end = std::to_chars(digits, digits + sizeof digits, value).ptr;
        const auto size = static_cast<std::size_t>(end - digits);
        if (size < columns)
            to = std::fill_n(to, columns - size, ' ');
        return std::copy(digits, digits + size, to);
    }

    std::string_view m_lineEnd;
    CodeLine m_codeLines[kCodes];
};

class BinaryOutput final : public GroupOutput {
public:
    BinaryOutput(DxfVersion version, const CodePage& page, ByteSink& sink)
        : GroupOutput(page, sink), m_wideCodes(version >= DxfVersion::R13)
    {
        put(kBinarySentinel);
    }

    void real(int code, double value) override
    {
        switch (fileGroupKind(code)) {
        case GroupKind::Real:
            return putRaw(code, value);
        case GroupKind::Int16:
        case GroupKind::Int32:
        case GroupKind::Int64:
        case GroupKind::Bool:
            return integer(code, std::llround(value));
        default:
            return text(code, realText(value));
        }
    }
    void integer(int code, std::int64_t value) override
    {
        switch (fileGroupKind(code)) {
        case GroupKind::Real:
            return putRaw(code, static_cast<double>(value));
        case GroupKind::Int16:
            return putRaw(code, static_cast<std::int16_t>(value));
        case GroupKind::Int32:
            return putRaw(code, static_cast<std::int32_t>(value));
        case GroupKind::Int64:
            return putRaw(code, value);
        case GroupKind::Bool:
            return putRaw(code, static_cast<std::uint8_t>(value));
        default:
            return text(code, std::to_string(value));
        }
    }
    // A text under the code of a number is what its file had there: as near as a binary file comes to it.
    void text(int code, std::string_view utf8) override
    {
        const GroupKind kind = fileGroupKind(code);
        if (kind == GroupKind::Real)
            return putRaw(code, parseReal(utf8, DecimalSign::PointOrComma).value_or(0.0));
        if (isIntegerKind(kind))
            return integer(code, parseIntegerLoosely(utf8).value_or(0));
        if (kind == GroupKind::Binary)
            return bytes(code, {});
        putCode(code);
        putText(utf8);
        append('\0');
    }
    void handle(int code, std::uint64_t handle) override { text(code, handleText(handle)); }
    void bytes(int code, std::string_view data) override
    {
        constexpr std::size_t kMost = 127;
        if (fileGroupKind(code) != GroupKind::Binary)
            return text(code, data);
        do {
            const std::string_view chunk = data.substr(0, kMost);
            putCode(code);
            append(static_cast<char>(chunk.size()));
            put(chunk);
            data.remove_prefix(chunk.size());
        } while (!data.empty());
    }

private:
    void putCode(int code)
    {
        if (m_wideCodes) {
            append(static_cast<std::int16_t>(code));
        } else if (code < 255) {
            append(static_cast<char>(code));
        } else {
            append('\xFF');
            append(static_cast<std::uint16_t>(code));
        }
    }
    template <class T>
    void append(T value)
    {
        char* to = room(sizeof value);
        std::memcpy(to, &value, sizeof value);
        took(to + sizeof value);
    }
    template <class T>
    void putRaw(int code, T value)
    {
        putCode(code);
        append(value);
    }

    bool m_wideCodes;
};

}

GroupOutput::GroupOutput(const CodePage& page, ByteSink& sink)
    : m_buffer(kBufferSize, '\0'), m_encoder(page), m_sink(sink)
{
}

std::unique_ptr<GroupOutput> GroupOutput::create(const OutputFormat& format, const CodePage& page, ByteSink& sink)
{
    if (format.binary)
        return std::make_unique<BinaryOutput>(format.version, page, sink);
    return std::make_unique<AsciiOutput>(format.crLf, page, sink);
}

void GroupOutput::flush()
{
    m_sink.write({m_buffer.data(), m_used});
    m_flushed += m_used;
    m_used = 0;
}

void GroupOutput::makeRoom(std::size_t size)
{
    flush();
    if (m_buffer.size() < size)
        m_buffer.resize(size);
}

void GroupOutput::putText(std::string_view utf8)
{
    put(m_encoder.isPlain(utf8) ? utf8 : std::string_view(m_encoder.encode(utf8)));
}
