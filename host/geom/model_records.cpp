#include "host/geom/model_records.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>

namespace vk::geom {

namespace {

constexpr std::string_view kMagics[] = {"ACIS BinaryFile", "ASM BinaryFile4", "ASM BinaryFile8"};
constexpr std::size_t kMagicSize = 15;

bool isSpace(char c) { return static_cast<unsigned char>(c) <= ' '; }

bool endsAll(std::string_view type) { return type.starts_with("End-of-") || type.starts_with("Begin-of-"); }

}  // namespace

bool isBinaryModel(std::string_view data)
{
    return std::any_of(std::begin(kMagics), std::end(kMagics),
                       [&](std::string_view magic) { return data.starts_with(magic); });
}

std::string modelTextExchanged(std::string_view text)
{
    std::string exchanged(text);
    for (char& c : exchanged)
        if (const auto byte = static_cast<unsigned char>(c); byte > ' ' && byte < 127)
            c = static_cast<char>(159 - byte);
    return exchanged;
}

class ModelTextReader {
public:
    explicit ModelTextReader(ModelRecords& to) : m_to(to), m_text(to.m_data) {}

    void read()
    {
        header();
        m_to.m_endAt = std::uint32_t(m_text.size());
        for (;;) {
            skipSpace();
            const std::size_t start = m_at;
            std::string_view type = word();
            if (type.size() > 1 && type[0] == '-' && type[1] >= '0' && type[1] <= '9') {  // numbered records
                skipSpace();
                type = word();
            }
            if (type.empty() || endsAll(type)) {
                m_to.m_endAt = std::uint32_t(start);
                return;
            }
            if (!record(type, start))
                return;
        }
    }

private:
    // One line, and from 2.0 on one with names and one with units.
    void header()
    {
        std::from_chars(m_text.data(), m_text.data() + m_text.size(), m_to.m_version);
        for (int lines = m_to.m_version >= 200 ? 3 : 1; lines > 0; --lines)
            m_at = std::min(m_text.find('\n', m_at), m_text.size() - 1) + 1;
    }

    // A record that breaks off is no record.
    bool record(std::string_view type, std::size_t start)
    {
        const auto first = std::uint32_t(m_to.m_tokens.size());
        for (;;) {
            skipSpace();
            const std::string_view next = word();
            if (next.empty()) {
                m_to.m_tokens.resize(first);
                m_to.m_endAt = std::uint32_t(start);
                return false;
            }
            if (next == "#")
                break;
            m_to.m_tokens.push_back(token(next));
        }
        m_to.endRecord(std::string(type), first, std::uint32_t(start));
        return true;
    }

    void skipSpace()
    {
        while (m_at < m_text.size() && isSpace(m_text[m_at]))
            ++m_at;
    }

    std::string_view word()
    {
        const std::size_t start = m_at;
        while (m_at < m_text.size() && !isSpace(m_text[m_at]))
            ++m_at;
        return m_text.substr(start, m_at - start);
    }

    ModelToken token(std::string_view word)
    {
        if (word == "{" || word == "}")
            return {word == "{" ? ModelToken::Open : ModelToken::Close, 0, word};
        double number = 0;
        if (word[0] == '$' && isWhole(word.substr(1), number))
            return {ModelToken::Pointer, number, word};
        if (word[0] == '@' && isWhole(word.substr(1), number))
            return {ModelToken::Word, 0, counted(number, word)};
        const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), number);
        if (error == std::errc() && end == word.data() + word.size() && std::isfinite(number))
            return {ModelToken::Number, number, word};
        return {ModelToken::Word, 0, word};
    }

    static bool isWhole(std::string_view digits, double& number)
    {
        std::int32_t whole = 0;
        const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), whole);
        number = whole;
        return error == std::errc() && end == digits.data() + digits.size();
    }

    // "@7 unknown": the text behind its length and one blank.
    std::string_view counted(double length, std::string_view word)
    {
        if (length < 0 || length > double(m_text.size() - m_at) - 1)
            return word;
        const std::string_view text = m_text.substr(m_at + 1, std::size_t(length));
        m_at += 1 + text.size();
        return text;
    }

    ModelRecords& m_to;
    std::string_view m_text;
    std::size_t m_at = 0;
};

class ModelBinaryReader {
public:
    explicit ModelBinaryReader(ModelRecords& to) : m_to(to), m_bytes(to.m_data) {}

    void read()
    {
        m_to.m_wordSize = m_bytes.starts_with(kMagics[2]) ? 8 : 4;
        m_to.m_endAt = std::uint32_t(m_bytes.size());
        m_at = kMagicSize;
        m_to.m_version = int(std::clamp<std::int64_t>(whole(m_to.m_wordSize), 0, 1 << 30));
        m_at = std::min(m_at + 3u * std::size_t(m_to.m_wordSize), m_bytes.size());
        header();
        while (record())
            ;
    }

private:
    enum Tag : unsigned char {
        kChar = 2,
        kShort,
        kLong,
        kFloat,
        kDouble,
        kText8,
        kText16,
        kText32,
        kTrue,
        kFalse,
        kPointer,
        kName,
        kNamePart,
        kOpen,
        kClose,
        kEnd,
        kLongText,
        kPosition,
        kVector,
        kEnum,
        kPair,
        kInt64,
    };

    // Three names and three units, none of which a record begins with.
    void header()
    {
        while (m_at < m_bytes.size() && byteAt(m_at) != kName && byteAt(m_at) != kNamePart)
            if (!value())
                return;
        m_to.m_tokens.clear();
    }

    bool record()
    {
        const std::size_t start = m_at;
        const auto first = std::uint32_t(m_to.m_tokens.size());
        std::string type = name();
        if (type.empty() || endsAll(type)) {
            m_to.m_endAt = std::uint32_t(start);
            return false;
        }
        while (m_at < m_bytes.size() && byteAt(m_at) != kEnd)
            if (!value())
                return broken(std::move(type), first, start);
        if (m_at >= m_bytes.size()) {
            m_to.m_tokens.resize(first);
            m_to.m_endAt = std::uint32_t(start);
            return false;
        }
        ++m_at;
        m_to.endRecord(std::move(type), first, std::uint32_t(start));
        return true;
    }

    // Goes on with what looks like the next record, so that the numbers of those behind still hold.
    bool broken(std::string type, std::uint32_t first, std::size_t start)
    {
        m_to.m_tokens.resize(first);
        m_to.endRecord(std::move(type), first, std::uint32_t(start));
        for (; m_at + 2 < m_bytes.size(); ++m_at)
            if (byteAt(m_at) == kEnd && (byteAt(m_at + 1) == kName || byteAt(m_at + 1) == kNamePart)) {
                ++m_at;
                return true;
            }
        return false;
    }

    // "plane" and "surface" are the type plane-surface.
    std::string name()
    {
        std::string type;
        while (m_at + 1 < m_bytes.size() && (byteAt(m_at) == kName || byteAt(m_at) == kNamePart)) {
            const bool isLast = byteAt(m_at) == kName;
            const std::size_t length = byteAt(m_at + 1);
            if (length > m_bytes.size() - m_at - 2)
                return {};
            type += (type.empty() ? "" : "-") + std::string(m_bytes.substr(m_at + 2, length));
            m_at += 2 + length;
            if (isLast)
                break;
        }
        return type;
    }

    bool value()
    {
        const unsigned char tag = byteAt(m_at++);
        const int word = m_to.m_wordSize;
        switch (tag) {
        case kChar:
            return number(1);
        case kShort:
            return number(2);
        case kLong:
        case kEnum:
            return number(word);
        case kInt64:
            return number(8);
        case kFloat:
            return skipped(4);
        case kDouble:
            return reals(1);
        case kPair:
            return reals(2);
        case kPosition:
        case kVector:
            return reals(3);
        case kText8:
        case kName:
        case kNamePart:
            return text(1);
        case kText16:
            return text(2);
        case kText32:
        case kLongText:
            return text(4);
        case kTrue:
        case kFalse:
            return put({ModelToken::Truth, tag == kTrue ? 1.0 : 0.0, m_bytes.substr(m_at - 1, 1)});
        case kPointer:
            return number(word, ModelToken::Pointer);
        case kOpen:
            return put({ModelToken::Open, 0, {}});
        case kClose:
            return put({ModelToken::Close, 0, {}});
        default:
            return false;
        }
    }

    bool put(const ModelToken& token)
    {
        m_to.m_tokens.push_back(token);
        return true;
    }

    bool number(int size, ModelToken::Kind kind = ModelToken::Number)
    {
        if (std::size_t(size) > m_bytes.size() - m_at)
            return false;
        const std::string_view bytes = m_bytes.substr(m_at, std::size_t(size));
        return put({kind, double(whole(size)), bytes});
    }

    bool reals(int count)
    {
        for (; count > 0; --count) {
            if (sizeof(double) > m_bytes.size() - m_at)
                return false;
            double value = 0;
            std::memcpy(&value, m_bytes.data() + m_at, sizeof value);
            if (!std::isfinite(value))
                return false;
            put({ModelToken::Number, value, m_bytes.substr(m_at, sizeof value)});
            m_at += sizeof value;
        }
        return true;
    }

    bool text(int lengthSize)
    {
        if (std::size_t(lengthSize) > m_bytes.size() - m_at)
            return false;
        std::uint64_t length = 0;
        for (int i = 0; i < lengthSize; ++i)
            length |= std::uint64_t(byteAt(m_at + std::size_t(i))) << 8 * i;
        m_at += std::size_t(lengthSize);
        if (length > m_bytes.size() - m_at)
            return false;
        m_at += length;
        return put({ModelToken::Word, 0, m_bytes.substr(m_at - length, length)});
    }

    bool skipped(std::size_t size)
    {
        if (size > m_bytes.size() - m_at)
            return false;
        m_at += size;
        return true;
    }

    // Little-endian, signed.
    std::int64_t whole(int size)
    {
        std::uint64_t value = 0;
        for (int i = 0; i < size && m_at < m_bytes.size(); ++i)
            value |= std::uint64_t(byteAt(m_at++)) << 8 * i;
        const int unused = 64 - 8 * size;
        return static_cast<std::int64_t>(value << unused) >> unused;
    }

    unsigned char byteAt(std::size_t at) const { return static_cast<unsigned char>(m_bytes[at]); }

    ModelRecords& m_to;
    std::string_view m_bytes;
    std::size_t m_at = 0;
};

ModelRecords::ModelRecords(std::string data) : m_data(std::move(data))
{
    if (m_data.size() > std::uint32_t(-1) / 2)
        m_data.clear();
    if (isBinaryModel(m_data))
        ModelBinaryReader(*this).read();
    else if (!m_data.empty())
        ModelTextReader(*this).read();
    for (const ModelRecord& record : m_records)
        listShared(record);
}

void ModelRecords::endRecord(std::string type, std::uint32_t firstToken, std::uint32_t typeAt)
{
    m_records.push_back({std::move(type), firstToken, std::uint32_t(m_tokens.size()) - firstToken, typeAt});
}

const ModelRecord* ModelRecords::target(const ModelToken& pointer) const
{
    const bool points =
        pointer.kind == ModelToken::Pointer && pointer.value >= 0 && pointer.value < double(m_records.size());
    return points ? &m_records[std::size_t(pointer.value)] : nullptr;
}

// Braces that are not closed end with their record.
void ModelRecords::listShared(const ModelRecord& record)
{
    std::vector<std::size_t> open;  // into m_shared; a reference opens nothing
    constexpr std::size_t kReference = std::size_t(-1);
    const std::uint32_t end = record.first + record.count;
    for (std::uint32_t i = record.first; i < end; ++i) {
        if (m_tokens[i].kind == ModelToken::Open) {
            const bool refers = i + 1 < end && m_tokens[i + 1].bytes == "ref";
            open.push_back(refers ? kReference : m_shared.size());
            if (!refers)
                m_shared.push_back({i + 1, end});
        } else if (m_tokens[i].kind == ModelToken::Close && !open.empty()) {
            if (open.back() != kReference)
                m_shared[open.back()].end = i;
            open.pop_back();
        }
    }
}

std::span<const ModelToken> ModelRecords::shared(double number) const
{
    if (!(number >= 0 && number < double(m_shared.size())))
        return {};
    const Braces& b = m_shared[std::size_t(number)];
    return {m_tokens.data() + b.first, b.end - b.first};
}

}  // namespace vk::geom
