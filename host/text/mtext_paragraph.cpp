#include "host/text/mtext_format.h"

#include <charconv>
#include <cmath>

namespace vktext {

namespace {

constexpr double kLimit = 1e6;  // text heights
constexpr std::size_t kMostTabs = 64;

class ParagraphCode {
public:
    ParagraphCode(ParagraphFormat& format, std::string_view code) : m_format(format), m_code(code) {}

    void apply()
    {
        while (m_at < m_code.size())
            applyOne(m_code[m_at++]);
    }

private:
    void applyOne(char key)
    {
        switch (key) {
        case 'i':
            number(m_format.indent, 0);
            break;
        case 'l':
            number(m_format.left, 0);
            break;
        case 'r':
            number(m_format.right, 0);
            break;
        case 'b':
            number(m_format.before, 0);
            break;
        case 'a':
            number(m_format.after, 0);
            break;
        case 'q':
            alignment();
            break;
        case 's':
            spacing();
            break;
        case 't':
            tabs();
            break;
        default:
            break;  // the "x" in front, commas
        }
    }

    // An asterisk sets the default.
    void number(double& to, double byDefault)
    {
        if (take('*'))
            to = byDefault;
        else if (const auto value = readNumber())
            to = *value;
    }

    std::optional<double> readNumber()
    {
        const char* begin = m_code.data() + m_at;
        const char* end = m_code.data() + m_code.size();
        double value = 0;
        const auto [stop, error] = std::from_chars(begin + (begin != end && *begin == '+'), end, value);
        if (error != std::errc() || !std::isfinite(value))
            return std::nullopt;
        m_at += static_cast<std::size_t>(stop - begin);
        return std::clamp(value, -kLimit, kLimit);
    }

    bool take(char c)
    {
        if (m_at >= m_code.size() || m_code[m_at] != c)
            return false;
        ++m_at;
        return true;
    }

    void alignment()
    {
        using A = ParagraphAlignment;
        static constexpr std::pair<char, A> kAlignments[] = {{'*', A::ByAttachment}, {'l', A::Left},
                                                             {'r', A::Right},        {'c', A::Center},
                                                             {'j', A::Justified},    {'d', A::Distributed}};
        for (const auto& [letter, alignment] : kAlignments)
            if (take(letter)) {
                m_format.alignment = alignment;
                return;
            }
    }

    void spacing()
    {
        using S = ParagraphFormat::Spacing;
        static constexpr std::pair<char, S> kKinds[] = {
            {'*', S::Inherited}, {'m', S::Multiple}, {'e', S::Exactly}, {'a', S::AtLeast}};
        for (const auto& [letter, kind] : kKinds)
            if (take(letter)) {
                m_format.spacing = kind;
                number(m_format.spacingValue, 1);
                return;
            }
    }

    // The stops take the place of those that were, to the end of the list.
    void tabs()
    {
        std::vector<TabStop> stops;
        take('*');
        take('z');
        do {
            const auto stop = readTab();
            if (!stop)
                break;
            if (stops.size() < kMostTabs)
                stops.push_back(*stop);
        } while (take(','));
        m_format.tabs = stops.empty() ? nullptr : std::make_shared<const std::vector<TabStop>>(std::move(stops));
    }

    std::optional<TabStop> readTab()
    {
        TabStop stop;
        if (take('c'))
            stop.kind = TabKind::Center;
        else if (take('r'))
            stop.kind = TabKind::Right;
        else if (take('d'))
            stop.kind = TabKind::Decimal;
        const auto at = readNumber();
        if (!at)
            return std::nullopt;
        stop.at = *at;
        return stop;
    }

    ParagraphFormat& m_format;
    std::string_view m_code;
    std::size_t m_at = 0;
};

}  // namespace

void applyParagraphCode(ParagraphFormat& format, std::string_view code) { ParagraphCode(format, code).apply(); }

}  // namespace vktext
