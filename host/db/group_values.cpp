#include "host/db/group_values.h"

#include "host/base/group_code.h"
#include "host/base/numbers.h"
#include "host/db/database.h"

#include <cmath>
#include <fast_float/fast_float.h>
#include <fmt/format.h>

namespace {

int hexDigit(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    c = static_cast<char>(c | 0x20);
    return c >= 'a' && c <= 'f' ? c - 'a' + 10 : -1;
}

bool parseBytes(std::string_view text, std::string& bytes)
{
    text = trimBlanks(text);
    for (std::size_t i = 0; i + 1 < text.size(); i += 2) {
        const int high = hexDigit(text[i]), low = hexDigit(text[i + 1]);
        if (high < 0 || low < 0)
            return false;
        bytes.push_back(static_cast<char>(high << 4 | low));
    }
    return text.size() % 2 == 0;
}

}

TextDecoder::~TextDecoder() = default;

GroupValues::GroupValues(DatabaseCore& db, const TextDecoder* decoder, ProblemLog* problems)
    : m_db(db), m_decoder(decoder), m_problems(problems)
{
}

void GroupValues::begin(std::uint64_t handle)
{
    m_handle = handle;
    m_failed = false;
}

void GroupValues::wrong(const Tag& tag, const char* expected)
{
    m_failed = true;
    if (!m_problems)
        return;
    std::string found;
    if (isChars(tag))
        found = fmt::format(", found \"{}\"", tag.view().substr(0, 40));
    m_problems->add(tag.line, m_handle, fmt::format("group {}: {} was expected{}", tag.code, expected, found), true);
}

void GroupValues::noteMended(const Tag& tag, const char* what)
{
    if (m_problems)
        m_problems->add(tag.line, m_handle, fmt::format("group {}: {}", tag.code, what), true);
}

bool GroupValues::real(const Tag& tag, double& value)
{
    std::optional<double> read;
    if (isChars(tag)) {
        // The common case, without blanks, is tried ahead of all others.
        const char* end = tag.chars.data + tag.chars.size;
        double plain = 0;
        const auto [stopped, error] = fast_float::from_chars(tag.chars.data, end, plain);
        if (error == std::errc() && stopped == end && std::isfinite(plain)) {
            value = plain;
            return true;
        }
        read = parseReal(tag.view());
        if (!read && (read = parseReal(tag.view(), DecimalSign::PointOrComma)))
            noteMended(tag, "a decimal comma was taken for a point");
    } else if (tag.form == Tag::Form::Integer) {
        read = static_cast<double>(tag.integer);
    } else if (tag.form == Tag::Form::Real || tag.form == Tag::Form::Point) {
        read = tag.real;
    }
    if (!read || !std::isfinite(*read)) {
        wrong(tag, "a finite number");
        return false;
    }
    value = *read;
    return true;
}

bool GroupValues::integer(const Tag& tag, std::int64_t& value)
{
    std::optional<std::int64_t> read;
    if (isChars(tag)) {
        read = parseInteger(tag.view());
        if (!read && (read = parseIntegerLoosely(tag.view())))
            noteMended(tag, "a whole number was written as a real");
    } else if (tag.form == Tag::Form::Integer) {
        read = tag.integer;
    } else if (tag.form == Tag::Form::Real && std::fabs(tag.real) < 9e18) {
        read = std::llround(tag.real);
    }
    if (!read) {
        wrong(tag, "a whole number");
        return false;
    }
    value = *read;
    return true;
}

bool GroupValues::handle(const Tag& tag, std::uint64_t& value)
{
    if (tag.form == Tag::Form::Integer) {
        value = static_cast<std::uint64_t>(tag.integer);
        return true;
    }
    const auto read = isChars(tag) ? parseHandle(tag.view()) : std::nullopt;
    if (!read) {
        wrong(tag, "a handle");
        return false;
    }
    value = *read;
    return true;
}

void GroupValues::text(const Tag& tag, std::string& utf8) const
{
    switch (tag.form) {
    case Tag::Form::Raw:
        if (m_decoder)
            return m_decoder->decode(tag.view(), utf8);
        [[fallthrough]];
    case Tag::Form::Utf8:
    case Tag::Form::Bytes:
        utf8.assign(tag.view());
        return;
    case Tag::Form::Real:
    case Tag::Form::Point:
        utf8 = fmt::format("{}", tag.real);
        return;
    case Tag::Form::Integer:
    case Tag::Form::Id:
        utf8 = fmt::format("{}", tag.integer);
        return;
    }
}

bool GroupValues::bytes(const Tag& tag, std::string& bytes)
{
    bytes.clear();
    if (tag.form == Tag::Form::Bytes) {
        bytes.assign(tag.view());
        return true;
    }
    if (isChars(tag) && parseBytes(tag.view(), bytes))
        return true;
    wrong(tag, "hexadecimal data");
    return false;
}

void GroupValues::keep(const Tag& tag, TagList& list)
{
    if (tag.form == Tag::Form::Id)
        return list.addHandle(tag.code, m_db.handleOf(unpackId(tag.integer)));
    if (!isChars(tag))
        return list.add(tag);
    const GroupKind kind = fileGroupKind(tag.code);
    if (kind == GroupKind::Real) {
        if (const auto value = parseReal(tag.view()); value && std::isfinite(*value))
            return list.addReal(tag.code, *value);
    } else if (isIntegerKind(kind)) {
        if (const auto value = parseInteger(tag.view()))
            return list.addInteger(tag.code, *value);
    } else if (kind == GroupKind::Handle || kind == GroupKind::Reference) {
        if (const auto value = parseHandle(tag.view()))
            return list.addHandle(tag.code, *value);
    } else if (kind == GroupKind::Binary) {
        m_scratch.clear();
        if (parseBytes(tag.view(), m_scratch))
            return list.addBytes(tag.code, m_scratch);
    }
    text(tag, m_scratch);
    list.addText(tag.code, m_scratch);
}
