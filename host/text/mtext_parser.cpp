#include "host/text/mtext_parser.h"

#include "host/text/mtext_builder.h"

#include <charconv>
#include <cmath>

namespace vktext {

namespace {

constexpr std::size_t kMostNesting = 4096;  // groups deeper than this are balanced, but restore nothing
constexpr double kMostScaling = 1e6;        // of heights, against the base height
constexpr char32_t kUnprintable = 0x25AF;

double degrees(double value) { return value * M_PI / 180; }

// Windows keeps red in the low byte.
std::uint32_t rgbFromBgr(std::uint32_t bgr) { return ((bgr & 0xFF) << 16) | (bgr & 0xFF00) | ((bgr >> 16) & 0xFF); }

class MTextReader {
public:
    MTextReader(std::string_view text, const CharFormat& base, const FontRequest& font)
        : m_text(text), m_baseHeight(base.height), m_out(base, font, text.size())
    {
    }

    MTextContent run()
    {
        while (m_at < m_text.size())
            step();
        return m_out.finish();
    }

private:
    void step()
    {
        switch (m_text[m_at]) {
        case '\\':
            return backslash();
        case '{':
            return openGroup();
        case '}':
            return closeGroup();
        case '^':
            return caret();
        case '%':
            return percent();
        case '\n':
        case '\r':
            return rawLineEnd();
        case '\t':
            return rawTab();
        default:
            m_out.addChar(nextChar(m_text, m_at));
        }
    }

    void rawLineEnd()
    {
        const bool pair = m_text[m_at] == '\r' && m_at + 1 < m_text.size() && m_text[m_at + 1] == '\n';
        m_at += pair ? 2 : 1;
        m_out.addToken(MTextToken::Kind::Paragraph);
    }

    void rawTab()
    {
        ++m_at;
        m_out.addToken(MTextToken::Kind::Tab);
    }

    void openGroup()
    {
        ++m_at;
        if (m_groups.size() < kMostNesting)
            m_groups.push_back(m_out.mark());
        else
            ++m_tooDeep;
    }

    void closeGroup()
    {
        ++m_at;
        if (m_tooDeep > 0) {
            --m_tooDeep;
        } else if (!m_groups.empty()) {
            m_out.restore(m_groups.back());
            m_groups.pop_back();
        }
    }

    // A caret and a letter are a control character; a caret and a space are the caret.
    void caret()
    {
        const char next = m_at + 1 < m_text.size() ? m_text[m_at + 1] : ' ';
        const bool ends = m_at + 1 >= m_text.size();
        if (static_cast<unsigned char>(next) >= 0x80 || (next != ' ' && (next < '@' || next > '_'))) {
            ++m_at;
            return m_out.addChar('^');
        }
        m_at += ends ? 1 : 2;
        switch (next) {
        case ' ':
            return m_out.addChar('^');
        case 'I':
            return m_out.addToken(MTextToken::Kind::Tab);
        case 'J':
            return m_out.addToken(MTextToken::Kind::Paragraph);
        case 'M':
            return;
        default:
            m_out.addChar(kUnprintable);
        }
    }

    void percent()
    {
        const CharCode code = percentCode(m_text.substr(m_at));
        if (code.length == 0)
            return m_out.addChar(nextChar(m_text, m_at));
        addCode(code);
        if (code.toggles != 0)
            m_out.changeFormat().decorations ^= code.toggles;
    }

    void addCode(const CharCode& code)
    {
        m_at += code.length;
        m_out.addChars(code.chars);
    }

    void backslash()
    {
        if (m_at + 1 >= m_text.size()) {
            ++m_at;
            return m_out.addChar('\\');
        }
        const char code = m_text[m_at + 1];
        if (code == '\\' || code == '{' || code == '}')
            return literal(static_cast<unsigned char>(code));
        if (code == '~')
            return literal(0xA0);
        if (!simpleCode(code) && !switchCode(code) && !valueCode(code) && !characterCode())
            m_out.addChar(nextChar(m_text, m_at));
    }

    void literal(char32_t c)
    {
        m_at += 2;
        m_out.addChar(c);
    }

    bool simpleCode(char code)
    {
        switch (code) {
        case 'P':
        case 'X':
            m_out.addToken(MTextToken::Kind::Paragraph);
            break;
        case 'N':
            m_out.addToken(MTextToken::Kind::Column);
            break;
        default:
            return false;
        }
        m_at += 2;
        return true;
    }

    bool switchCode(char code)
    {
        switch (code) {
        case 'L':
            m_out.changeFormat().decorations |= kUnderline;
            break;
        case 'l':
            m_out.changeFormat().decorations &= ~kUnderline;
            break;
        case 'O':
            m_out.changeFormat().decorations |= kOverline;
            break;
        case 'o':
            m_out.changeFormat().decorations &= ~kOverline;
            break;
        case 'K':
            m_out.changeFormat().decorations |= kStrike;
            break;
        case 'k':
            m_out.changeFormat().decorations &= ~kStrike;
            break;
        default:
            return false;
        }
        m_at += 2;
        return true;
    }

    bool valueCode(char code)
    {
        switch (code) {
        case 'H':
            return height();
        case 'W':
            return factor(&CharFormat::widthFactor);
        case 'T':
            return factor(&CharFormat::tracking);
        case 'Q':
            return number([](CharFormat& f, double v) { f.oblique = degrees(std::clamp(v, -85.0, 85.0)); });
        case 'A':
            return lineAlignment();
        case 'C':
            return colorIndex();
        case 'c':
            return trueColor();
        case 'f':
        case 'F':
            return font();
        case 'p':
            return paragraph();
        case 'S':
            return stack();
        default:
            return false;
        }
    }

    bool characterCode()
    {
        const std::string_view rest = m_text.substr(m_at);
        CharCode code = unicodeCode(rest);
        if (code.length == 0)
            code = multibyteCode(rest);
        addCode(code);
        return code.length > 0;
    }

    // A number behind the code's letter, perhaps followed by "x", and a semicolon, which may be missing. The position
    // moves behind all that if there is a number.
    struct Value {
        double value = 0;
        bool relative = false;
    };
    std::optional<Value> takeNumber()
    {
        const char* begin = m_text.data() + m_at + 2;
        const char* end = m_text.data() + m_text.size();
        Value result;
        const auto [stop, error] = std::from_chars(begin + (begin != end && *begin == '+'), end, result.value);
        if (error != std::errc() || !std::isfinite(result.value))
            return std::nullopt;
        m_at = static_cast<std::size_t>(stop - m_text.data());
        if (m_at < m_text.size() && (m_text[m_at] == 'x' || m_text[m_at] == 'X')) {
            result.relative = true;
            ++m_at;
        }
        if (m_at < m_text.size() && m_text[m_at] == ';')
            ++m_at;
        return result;
    }

    bool height()
    {
        const auto value = takeNumber();
        if (!value)
            return false;
        const double height = value->relative ? value->value * m_out.format().height : value->value;
        if (height > 0)
            m_out.changeFormat().height = std::clamp(height, m_baseHeight / kMostScaling, m_baseHeight * kMostScaling);
        return true;
    }

    template <class Set>
    bool number(Set set)
    {
        const auto value = takeNumber();
        if (value)
            set(m_out.changeFormat(), value->value);
        return value.has_value();
    }

    // A factor of zero or less is passed over; with an "x" it is a multiple of the one that holds.
    bool factor(double CharFormat::*which)
    {
        const auto value = takeNumber();
        if (!value)
            return false;
        if (value->value > 0)
            m_out.changeFormat().*which =
                std::clamp(value->value * (value->relative ? m_out.format().*which : 1), 0.01, 100.0);
        return true;
    }

    bool lineAlignment()
    {
        return number([](CharFormat& format, double value) {
            format.alignment = value == 1   ? LineAlignment::Center
                               : value == 2 ? LineAlignment::Top
                                            : LineAlignment::Baseline;
        });
    }

    bool colorIndex()
    {
        return number([](CharFormat& format, double value) {
            if (value >= 0 && value <= 256)
                format.color = {TextColor::Kind::Index, static_cast<std::uint32_t>(value)};
        });
    }

    bool trueColor()
    {
        return number([](CharFormat& format, double value) {
            if (value >= 0 && value <= 0xFFFFFF)
                format.color = {TextColor::Kind::True, rgbFromBgr(static_cast<std::uint32_t>(value))};
        });
    }

    // What stands between the code's letter and its semicolon; nothing without a semicolon.
    std::optional<std::string_view> takeArgument()
    {
        const std::size_t end = nextSemicolon(m_at + 2);
        if (end == std::string_view::npos)
            return std::nullopt;
        const auto argument = m_text.substr(m_at + 2, end - m_at - 2);
        m_at = end + 1;
        return argument;
    }

    // Remembers its last answer: many codes before one distant semicolon, or none, must not each search afresh.
    std::size_t nextSemicolon(std::size_t from)
    {
        if (m_semicolon != std::string_view::npos && m_semicolon < from)
            m_semicolon = m_text.find(';', from);
        return m_semicolon;
    }

    // "\fArial|b1|i0|c0|p34;" names a typeface, "\Fromans,bigfont;" a file.
    bool font()
    {
        const bool isTypeface = m_text[m_at + 1] == 'f';
        const auto argument = takeArgument();
        if (!argument)
            return false;
        FontRequest request = m_out.font();
        const auto bar = argument->find('|');
        const auto name = argument->substr(0, bar);
        const auto comma = isTypeface ? std::string_view::npos : name.find(',');
        if (!name.empty())
            request.font = std::string(name.substr(0, comma));
        if (comma != std::string_view::npos)
            request.bigFont = std::string(name.substr(comma + 1));
        request.bold = argument->find("|b1") != std::string_view::npos;
        request.italic = argument->find("|i1") != std::string_view::npos;
        m_out.changeFont(request);
        return true;
    }

    bool paragraph()
    {
        const auto argument = takeArgument();
        if (!argument)
            return false;
        applyParagraphCode(m_out.changeParagraph(), *argument);
        return true;
    }

    // "\S1/2;": the first of / # ^ parts the two; without one it is text like any other. A backslash takes the next
    // character as it stands.
    bool stack()
    {
        m_at += 2;
        m_out.beginStack();
        std::optional<StackKind> kind;
        std::size_t middle = 0;
        for (; m_at < m_text.size() && m_text[m_at] != ';'; ++m_at) {
            const char c = m_text[m_at];
            if (kind || (c != '/' && c != '#' && c != '^')) {
                stackChar();
                continue;
            }
            kind = static_cast<StackKind>(c);
            middle = m_out.length();
            m_at += c == '^' && m_at + 1 < m_text.size() && m_text[m_at + 1] == ' ';
        }
        m_at += m_at < m_text.size();
        m_out.endStack(kind, middle);
        return true;
    }

    // Leaves the position on the last byte that it took.
    void stackChar()
    {
        const std::string_view rest = m_text.substr(m_at);
        CharCode code = rest[0] == '%' ? percentCode(rest) : unicodeCode(rest);
        if (code.length == 0)
            code = multibyteCode(rest);
        if (code.length > 0) {
            m_out.addChars(code.chars);
            m_at += code.length - 1;
            return;
        }
        m_at += rest[0] == '\\' && rest.size() > 1;
        m_out.addChar(nextChar(m_text, m_at));
        --m_at;
    }

    std::string_view m_text;
    std::size_t m_at = 0;
    std::size_t m_semicolon = 0;  // the first one at or behind what was last asked for
    const double m_baseHeight;
    std::vector<MTextBuilder::Mark> m_groups;
    std::size_t m_tooDeep = 0;
    MTextBuilder m_out;
};

void appendStack(std::string& to, const MTextContent& content, const MTextToken& token)
{
    const std::u32string_view chars(content.chars);
    to += toUtf8(chars.substr(token.begin, token.middle - token.begin));
    to += token.stack == StackKind::Tolerance ? '^' : '/';
    to += toUtf8(chars.substr(token.middle, token.end - token.middle));
}

}  // namespace

MTextContent parseMText(std::string_view contents, const CharFormat& base, const FontRequest& font)
{
    return MTextReader(contents, base, font).run();
}

std::string plainMText(std::string_view contents)
{
    const MTextContent content = parseMText(contents, {}, {});
    std::string plain;
    for (const auto& token : content.tokens) {
        switch (token.kind) {
        case MTextToken::Kind::Text:
            plain += toUtf8(std::u32string_view(content.chars).substr(token.begin, token.end - token.begin));
            break;
        case MTextToken::Kind::Tab:
            plain += '\t';
            break;
        case MTextToken::Kind::Stack:
            appendStack(plain, content, token);
            break;
        default:
            plain += '\n';
        }
    }
    return plain;
}

}  // namespace vktext
