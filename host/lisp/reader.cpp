#include "host/lisp/reader.h"

#include "host/base/unicode.h"
#include "host/lisp/errors.h"
#include "host/lisp/symbols.h"

#include <charconv>
#include <fast_float/fast_float.h>

namespace vk::lisp {

namespace {

bool isBlank(char c) { return static_cast<unsigned char>(c) <= ' '; }

bool endsAtom(char c) { return isBlank(c) || c == '(' || c == ')' || c == '"' || c == '\'' || c == ';'; }

bool isDigit(char c) { return c >= '0' && c <= '9'; }

// Digits with at most one point and an exponent; keeps "1+", "-" and "inf" for symbols.
bool looksLikeNumber(std::string_view token)
{
    std::size_t at = 0;
    std::size_t digits = 0;
    const auto skipDigits = [&] {
        const std::size_t start = at;
        while (at < token.size() && isDigit(token[at]))
            ++at;
        return at - start;
    };
    if (at < token.size() && (token[at] == '+' || token[at] == '-'))
        ++at;
    digits += skipDigits();
    if (at < token.size() && token[at] == '.') {
        ++at;
        digits += skipDigits();
    }
    if (digits == 0)
        return false;
    if (at < token.size() && (token[at] == 'e' || token[at] == 'E')) {
        ++at;
        if (at < token.size() && (token[at] == '+' || token[at] == '-'))
            ++at;
        if (skipDigits() == 0)
            return false;
    }
    return at == token.size();
}

}  // namespace

Value parseNumber(std::string_view token)
{
    if (!looksLikeNumber(token))
        return Value();
    if (token[0] == '+')
        token.remove_prefix(1);
    const char* end = token.data() + token.size();
    std::int32_t integer;
    if (const auto got = std::from_chars(token.data(), end, integer); got.ec == std::errc() && got.ptr == end)
        return Value::integer(integer);
    double real = 0;
    fast_float::from_chars(token.data(), end, real);
    return Value::real(real);
}

std::optional<Value> Reader::next()
{
    for (;;) {
        skipBlanks();
        if (m_at == m_text.size()) {
            if (!m_open.empty())
                throw LispError("malformed list on input");
            return std::nullopt;
        }
        const char c = m_text[m_at];
        std::optional<Value> item;
        if (c == '(') {
            ++m_at;
            m_open.emplace_back();
            continue;
        } else if (c == '\'') {
            ++m_at;
            m_open.emplace_back();
            m_open.back().isQuote = true;
            m_open.back().items.add(m_symbols.quote());
            continue;
        } else if (c == ')') {
            ++m_at;
            item = closeList();
        } else if (c == '"') {
            ++m_at;
            item = readText();
        } else if (startsDot()) {
            readDot();
            continue;
        } else {
            item = readAtom();
        }
        if (auto whole = deliver(std::move(*item)))
            return whole;
    }
}

// Puts an item into the innermost open list, closing quotes on the way; gives it back when none is open.
std::optional<Value> Reader::deliver(Value item)
{
    while (!m_open.empty()) {
        OpenList& list = m_open.back();
        if (list.tail == OpenList::closed)
            throw LispError("extra cdrs in dotted pair on input");
        if (list.tail == OpenList::dotted) {
            list.items.finishWith(std::move(item));
            list.tail = OpenList::closed;
            return std::nullopt;
        }
        list.items.add(std::move(item));
        if (!list.isQuote)
            return std::nullopt;
        item = list.items.take();
        m_open.pop_back();
    }
    return item;
}

Value Reader::closeList()
{
    if (m_open.empty())
        throw LispError("extra right paren on input");
    OpenList& list = m_open.back();
    if (list.isQuote || list.tail == OpenList::dotted)
        throw LispError("malformed list on input");
    Value made = list.items.take();
    m_open.pop_back();
    return made;
}

bool Reader::startsDot() const
{
    return m_text[m_at] == '.' && (m_at + 1 == m_text.size() || endsAtom(m_text[m_at + 1]));
}

void Reader::readDot()
{
    ++m_at;
    if (m_open.empty() || m_open.back().isQuote || m_open.back().items.isEmpty() ||
        m_open.back().tail != OpenList::undotted)
        throw LispError("misplaced dot on input");
    m_open.back().tail = OpenList::dotted;
}

void Reader::skipBlanks()
{
    while (m_at < m_text.size()) {
        if (isBlank(m_text[m_at]))
            ++m_at;
        else if (m_text.substr(m_at, 2) == ";|")
            skipBlockComment();
        else if (m_text[m_at] == ';')
            m_at = std::min(m_text.find('\n', m_at), m_text.size());
        else
            return;
    }
}

void Reader::skipBlockComment()
{
    const std::size_t end = m_text.find("|;", m_at + 2);
    if (end == std::string_view::npos)
        throw LispError("malformed comment on input");
    m_at = end + 2;
}

Value Reader::readAtom()
{
    const std::size_t start = m_at;
    while (m_at < m_text.size() && !endsAtom(m_text[m_at]))
        ++m_at;
    const std::string_view token = m_text.substr(start, m_at - start);
    if (Value number = parseNumber(token))
        return number;
    if (token.size() == 3 && toUpper(token) == "NIL")
        return Value();
    return m_symbols.intern(token);
}

Value Reader::readText()
{
    std::string out;
    while (m_at < m_text.size()) {
        const char c = m_text[m_at++];
        if (c == '"')
            return Value::text(std::move(out));
        if (c == '\\')
            readEscape(out);
        else
            out += c;
    }
    throw LispError("malformed string on input");
}

void Reader::readEscape(std::string& out)
{
    if (m_at == m_text.size())
        return;
    const char c = m_text[m_at];
    if (isDigit(c))
        return readOctal(out);
    if (m_text.substr(m_at, 2) == "U+")
        return readHex(out);
    ++m_at;
    switch (c) {
    case 'n':
        out += '\n';
        return;
    case 't':
        out += '\t';
        return;
    case 'r':
        out += '\r';
        return;
    case 'e':
        out += '\x1b';
        return;
    default:
        out += c;
        return;
    }
}

void Reader::readOctal(std::string& out)
{
    std::uint32_t code = 0;
    for (int i = 0; i < 3 && m_at < m_text.size() && m_text[m_at] >= '0' && m_text[m_at] <= '7'; ++i)
        code = code * 8 + static_cast<std::uint32_t>(m_text[m_at++] - '0');
    if (code != 0)
        appendUtf8(out, code);
}

// \U+XXXX; where the four digits are not there, the text stands as it was.
void Reader::readHex(std::string& out)
{
    constexpr std::size_t kDigits = 4;
    const std::string_view digits = m_text.substr(m_at + 2, kDigits);
    std::uint32_t code = 0;
    const auto got = std::from_chars(digits.data(), digits.data() + digits.size(), code, 16);
    if (digits.size() == kDigits && got.ptr == digits.data() + kDigits && code != 0) {
        appendUtf8(out, code);
        m_at += 2 + kDigits;
    } else {
        out += "\\U";
        ++m_at;
    }
}

void ExpressionScanner::feed(std::string_view text)
{
    for (const char c : text)
        m_state = after(c);
}

ExpressionScanner::State ExpressionScanner::after(char c)
{
    switch (m_state) {
    case inText:
        return c == '\\' ? inTextAfterBackslash : c == '"' ? plain : inText;
    case inTextAfterBackslash:
        return inText;
    case afterSemicolon:
        return c == '|' ? inBlock : c == '\n' ? plain : inComment;
    case inComment:
        return c == '\n' ? plain : inComment;
    case inBlock:
        return c == '|' ? inBlockAfterBar : inBlock;
    case inBlockAfterBar:
        return c == ';' ? plain : c == '|' ? inBlockAfterBar : inBlock;
    case plain:
        break;
    }
    if (c == '(')
        ++m_depth;
    else if (c == ')')
        --m_depth;
    return c == '"' ? inText : c == ';' ? afterSemicolon : plain;
}

}  // namespace vk::lisp
