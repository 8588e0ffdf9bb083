#include "host/io/dxf_source.h"

#include "host/base/group_code.h"
#include "host/base/numbers.h"
#include "host/db/problems.h"

#include <cstring>
#include <fmt/format.h>

const std::string_view kBinarySentinel("\x41\x75\x74\x6f\x43\x41\x44 Binary DXF\r\n\x1a\0", 22);

namespace {

constexpr int kComment = 999;

bool parseCode(std::string_view line, int& code)
{
    const char* at = line.data();
    const char* end = at + line.size();
    while (at != end && (*at == ' ' || *at == '\t'))
        ++at;
    const bool negative = at != end && *at == '-';
    if (negative)
        ++at;
    const char* digits = at;
    int value = 0;
    while (at != end && *at >= '0' && *at <= '9' && at - digits < 5)
        value = value * 10 + (*at++ - '0');
    if (at == digits)
        return false;
    while (at != end && (*at == ' ' || *at == '\t' || *at == '\r'))
        ++at;
    code = negative ? -value : value;
    return at == end && value <= 32767;
}

std::string printable(std::string_view text)
{
    std::string shown;
    for (const char c : text.substr(0, 40))
        shown += c >= ' ' && c < 127 ? c : '?';
    return shown;
}

class AsciiSource final : public DxfSource {
public:
    AsciiSource(std::string_view bytes, bool recover, ProblemLog& problems)
        : m_begin(bytes.data()), m_at(bytes.data()), m_end(bytes.data() + bytes.size()), m_recover(recover),
          m_problems(problems)
    {
        if (bytes.substr(0, 3) == "\xEF\xBB\xBF")
            m_at += 3;
        const std::size_t lf = bytes.find('\n');
        m_lineEnd = lf == bytes.npos ? '\r' : '\n';
        m_crLf = lf != bytes.npos && lf > 0 && bytes[lf - 1] == '\r';
        readPreamble();
    }

    // The innermost loop of loading: what it calls is drawn into it.
    [[gnu::flatten]] bool next(DxfRecord& record) override
    {
        if (!m_haveType)
            return false;
        record.type = trimBlanks(m_type);
        record.line = m_typeLine;
        record.tags.clear();
        m_haveType = false;
        if (record.type == "EOF")
            return true;
        Tag tag;
        while (readGroup(tag)) {
            if (tag.code == 0) {
                m_type = tag.view();
                m_typeLine = tag.line;
                m_haveType = true;
                break;
            }
            if (tag.code == kComment)
                ++m_commentsDropped;
            else
                record.tags.push_back(tag);
        }
        return !m_fault;
    }

    std::size_t position() const override { return static_cast<std::size_t>(m_at - m_begin); }
    bool isBinary() const override { return false; }
    bool usesCrLf() const override { return m_crLf; }
    std::uint32_t line() const override { return m_line; }

private:
    void readPreamble()
    {
        Tag tag;
        while (readGroup(tag)) {
            if (tag.code == 0) {
                m_type = tag.view();
                m_typeLine = tag.line;
                m_haveType = true;
                return;
            }
            m_preamble.push_back(tag);
        }
    }

    std::string_view takeLine()
    {
        const char* start = m_at;
        const auto* stop =
            static_cast<const char*>(std::memchr(start, m_lineEnd, static_cast<std::size_t>(m_end - start)));
        m_at = stop ? stop + 1 : m_end;
        if (!stop)
            stop = m_end;
        if (stop != start && stop[-1] == '\r')
            --stop;
        ++m_line;
        return {start, static_cast<std::size_t>(stop - start)};
    }

    bool readGroup(Tag& tag)
    {
        for (;;) {
            if (m_at == m_end)
                return false;
            const std::string_view codeLine = takeLine();
            int code = 0;
            if (!parseCode(codeLine, code)) {
                if (restIsBlank(codeLine))
                    return false;
                if (!refuse(fmt::format("a group code was expected, found \"{}\"", printable(codeLine))))
                    return false;
                continue;
            }
            if (m_at == m_end) {
                refuse(fmt::format("the value of group {} was expected, found the end of the file", code), true);
                return false;
            }
            tag.code = static_cast<std::int16_t>(code);
            tag.form = Tag::Form::Raw;
            tag.line = m_line + 1;
            const std::string_view value = takeLine();
            tag.chars = {value.data(), value.size()};
            return true;
        }
    }

    bool restIsBlank(std::string_view line) const
    {
        const auto blank = [](char c) {
            return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\x1a' || c == '\0';
        };
        return std::all_of(line.begin(), line.end(), blank) && std::all_of(m_at, m_end, blank);
    }

    bool refuse(std::string text, bool atEnd = false)
    {
        if (m_recover) {
            m_problems.add(m_line, 0, std::move(text), false);
            return true;
        }
        m_fault = DxfFault{atEnd ? m_line + 1 : m_line, std::move(text)};
        return false;
    }

    const char* m_begin;
    const char* m_at;
    const char* m_end;
    char m_lineEnd = '\n';
    bool m_crLf = false;
    bool m_recover;
    ProblemLog& m_problems;
    std::uint32_t m_line = 0;
    std::string_view m_type;
    std::uint32_t m_typeLine = 0;
    bool m_haveType = false;
};

class BinarySource final : public DxfSource {
public:
    BinarySource(std::string_view bytes, bool recover, ProblemLog& problems)
        : m_bytes(bytes), m_at(kBinarySentinel.size()), m_recover(recover), m_problems(problems)
    {
        // Files before R13 have one byte for a code: then the first text follows the first 0 directly. A comment's 999 may
        // stand first.
        const std::string_view start = m_bytes.substr(m_at, 2);
        m_wideCodes = start == std::string_view("\0\0", 2) || start == "\xE7\x03";
        Tag tag;
        while (readGroup(tag)) {
            if (tag.code == 0) {
                m_type = tag;
                m_haveType = true;
                return;
            }
            m_preamble.push_back(tag);
        }
    }

    bool next(DxfRecord& record) override
    {
        if (!m_haveType)
            return false;
        record.type = trimBlanks(m_type.view());
        record.line = m_type.line;
        record.tags.clear();
        m_haveType = false;
        if (record.type == "EOF")
            return true;
        Tag tag;
        while (readGroup(tag)) {
            if (tag.code == 0) {
                m_type = tag;
                m_haveType = true;
                break;
            }
            if (tag.code == kComment)
                ++m_commentsDropped;
            else
                record.tags.push_back(tag);
        }
        return !m_fault;
    }

    std::size_t position() const override { return m_at; }
    bool isBinary() const override { return true; }
    std::uint32_t line() const override { return static_cast<std::uint32_t>(m_at); }

private:
    template <class T>
    bool take(T& value)
    {
        if (m_bytes.size() - m_at < sizeof value)
            return false;
        std::memcpy(&value, m_bytes.data() + m_at, sizeof value);
        m_at += sizeof value;
        return true;
    }

    template <class T>
    bool takeInteger(Tag& tag)
    {
        T value{};
        if (!take(value))
            return false;
        tag.form = Tag::Form::Integer;
        tag.integer = value;
        return true;
    }

    bool takeCode(int& code)
    {
        if (m_wideCodes) {
            std::int16_t wide = 0;
            const bool got = take(wide);
            code = wide;
            return got;
        }
        std::uint8_t narrow = 0;
        if (!take(narrow))
            return false;
        code = narrow;
        std::uint16_t wide = 0;
        if (narrow != 255)
            return true;
        const bool got = take(wide);
        code = wide;
        return got;
    }

    bool takeText(Tag& tag)
    {
        const std::size_t stop = m_bytes.find('\0', m_at);
        if (stop == m_bytes.npos)
            return false;
        tag.form = Tag::Form::Raw;
        tag.chars = {m_bytes.data() + m_at, stop - m_at};
        m_at = stop + 1;
        return true;
    }

    bool takeBytes(Tag& tag)
    {
        std::uint8_t size = 0;
        if (!take(size) || m_bytes.size() - m_at < size)
            return false;
        tag.form = Tag::Form::Bytes;
        tag.chars = {m_bytes.data() + m_at, size};
        m_at += size;
        return true;
    }

    bool takeValue(Tag& tag)
    {
        switch (fileGroupKind(tag.code)) {
        case GroupKind::Real:
        case GroupKind::Point:
            tag.form = Tag::Form::Real;
            return take(tag.real);
        case GroupKind::Int16:
            return takeInteger<std::int16_t>(tag);
        case GroupKind::Int32:
            return takeInteger<std::int32_t>(tag);
        case GroupKind::Int64:
            return takeInteger<std::int64_t>(tag);
        case GroupKind::Bool:
            return takeInteger<std::uint8_t>(tag);
        case GroupKind::Binary:
            return takeBytes(tag);
        default:
            return takeText(tag);
        }
    }

    bool readGroup(Tag& tag)
    {
        if (m_at >= m_bytes.size())
            return false;
        const auto start = static_cast<std::uint32_t>(m_at);
        int code = 0;
        const bool gotCode = takeCode(code);
        tag.code = static_cast<std::int16_t>(code);
        tag.line = start;
        if (gotCode && takeValue(tag))
            return true;
        m_at = m_bytes.size();
        std::string text = gotCode ? fmt::format("the value of group {} was expected, found the end of the file", code)
                                   : std::string("a group code was expected, found the end of the file");
        if (m_recover)
            m_problems.add(start, 0, std::move(text), false);
        else
            m_fault = DxfFault{start, std::move(text)};
        return false;
    }

    std::string_view m_bytes;
    std::size_t m_at;
    bool m_recover;
    ProblemLog& m_problems;
    bool m_wideCodes = true;
    Tag m_type;
    bool m_haveType = false;
};

}

DxfSource::~DxfSource() = default;

std::unique_ptr<DxfSource> DxfSource::open(std::string_view bytes, bool recover, ProblemLog& problems)
{
    if (isBinaryDxf(bytes))
        return std::make_unique<BinarySource>(bytes, recover, problems);
    return std::make_unique<AsciiSource>(bytes, recover, problems);
}

const Tag* DxfRecord::find(int code) const
{
    for (const Tag& tag : tags)
        if (tag.code == code)
            return &tag;
    return nullptr;
}

std::string_view DxfRecord::text(int code) const
{
    const Tag* tag = find(code);
    return tag && tag->form == Tag::Form::Raw ? trimBlanks(tag->view()) : std::string_view();
}

bool isBinaryDxf(std::string_view bytes) { return bytes.substr(0, kBinarySentinel.size()) == kBinarySentinel; }

// A group code, or a comment's, on the first line that is not blank.
bool looksLikeAsciiDxf(std::string_view bytes)
{
    if (bytes.substr(0, 3) == "\xEF\xBB\xBF")
        bytes.remove_prefix(3);
    const std::string_view line = bytes.substr(0, bytes.find_first_of("\r\n"));
    int code = -1;
    return parseCode(line, code) && (code == 0 || code == kComment);
}
