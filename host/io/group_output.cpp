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
    AsciiOutput(bool crLf, const CodePage& page, ByteSink& sink) : GroupOutput(page, sink), m_lineEnd(crLf ? "\r\n" : "\n")
    {
        for (int code = 0; code < kCodes; ++code)
            m_codeLines[code] = std::string(code < 10 ? 2 : code < 100 ? 1 : 0, ' ') + std::to_string(code) + std::string(m_lineEnd);
    }

    void real(int code, double value) override
    {
        putCode(code);
        // Whole numbers stay in fixed notation: 100000.0, where the shortest form would be 1e+05.
        const auto whole = std::fabs(value) < 1e15 ? static_cast<std::int64_t>(value) : 0;
        if (whole != 0 && static_cast<double>(whole) == value) {
            appendInteger(m_buffer, whole);
            m_buffer += ".0";
        } else {
            appendReal(m_buffer, value);
        }
        endLine();
    }
    void integer(int code, std::int64_t value) override
    {
        putCode(code);
        putPadded(value, width(code));
        endLine();
    }
    void text(int code, std::string_view utf8) override
    {
        putCode(code);
        putText(utf8);
        endLine();
    }
    void handle(int code, std::uint64_t handle) override
    {
        putCode(code);
        appendHandle(m_buffer, handle);
        endLine();
    }
    void bytes(int code, std::string_view data) override
    {
        constexpr char kDigits[] = "0123456789ABCDEF";
        putCode(code);
        for (const unsigned char byte : data) {
            m_buffer += kDigits[byte >> 4];
            m_buffer += kDigits[byte & 15];
        }
        endLine();
    }

private:
    static constexpr int kCodes = 1072;

    void putCode(int code)
    {
        if (code >= 0 && code < kCodes) {
            m_buffer += m_codeLines[code];
            return;
        }
        appendInteger(m_buffer, code);
        endLine();
    }
    void endLine()
    {
        m_buffer += m_lineEnd;
        flushWhenFull();
    }
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
    void putPadded(std::int64_t value, std::size_t columns)
    {
        char digits[24];
        const auto printed = std::to_chars(digits, digits + sizeof digits, value);
        const auto size = static_cast<std::size_t>(printed.ptr - digits);
        if (size < columns)
            m_buffer.append(columns - size, ' ');
        m_buffer.append(digits, size);
    }

    std::string_view m_lineEnd;
    std::string m_codeLines[kCodes];
};

class BinaryOutput final : public GroupOutput {
public:
    BinaryOutput(DxfVersion version, const CodePage& page, ByteSink& sink)
        : GroupOutput(page, sink), m_wideCodes(version >= DxfVersion::R13)
    {
        m_buffer += kBinarySentinel;
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
        m_buffer += '\0';
        flushWhenFull();
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
            m_buffer += static_cast<char>(chunk.size());
            m_buffer += chunk;
            data.remove_prefix(chunk.size());
        } while (!data.empty());
        flushWhenFull();
    }

private:
    void putCode(int code)
    {
        if (m_wideCodes) {
            append(static_cast<std::int16_t>(code));
        } else if (code < 255) {
            m_buffer += static_cast<char>(code);
        } else {
            m_buffer += '\xFF';
            append(static_cast<std::uint16_t>(code));
        }
    }
    template <class T>
    void append(T value)
    {
        char raw[sizeof value];
        std::memcpy(raw, &value, sizeof value);
        m_buffer.append(raw, sizeof value);
    }
    template <class T>
    void putRaw(int code, T value)
    {
        putCode(code);
        append(value);
        flushWhenFull();
    }

    bool m_wideCodes;
};

}

GroupOutput::GroupOutput(const CodePage& page, ByteSink& sink) : m_encoder(page), m_sink(sink)
{
    m_buffer.reserve(kBufferSize + 65536);
}

std::unique_ptr<GroupOutput> GroupOutput::create(const OutputFormat& format, const CodePage& page, ByteSink& sink)
{
    if (format.binary)
        return std::make_unique<BinaryOutput>(format.version, page, sink);
    return std::make_unique<AsciiOutput>(format.crLf, page, sink);
}

void GroupOutput::flush()
{
    m_sink.write(m_buffer);
    m_flushed += m_buffer.size();
    m_buffer.clear();
}

void GroupOutput::putText(std::string_view utf8)
{
    if (m_encoder.isPlain(utf8))
        m_buffer += utf8;
    else
        m_buffer += m_encoder.encode(utf8);
}
