#include "host/text/mtext_plain.h"

#include "host/text/font.h"
#include "host/text/mtext_pieces.h"

#include <algorithm>
#include <cmath>

namespace vktext {

namespace {

constexpr Box kNoInk{HUGE_VAL, HUGE_VAL, -HUGE_VAL, -HUGE_VAL};

bool isWithin(double value, double low, double high) { return value >= low && value <= high; }

bool isWordLetter(char c)
{
    return static_cast<unsigned char>(c) > ' ' && static_cast<unsigned char>(c) < 0x80 && c != '\\' && c != '{' &&
           c != '}' && c != '^' && c != '%';
}

void include(Box& box, const Box& part, double x, double y)
{
    box.left = std::min(box.left, part.left + x);
    box.right = std::max(box.right, part.right + x);
    box.bottom = std::min(box.bottom, part.bottom + y);
    box.top = std::max(box.top, part.top + y);
}

// What breaks and places lines, as pieces of a layout are measured, and the ink. In drawing units from the pen.
struct Reach {
    double width = 0;
    double left = 0, right = 0, bottom = 0, top = 0;
    Box ink = kNoInk;
};

class PlainPlacer {
public:
    explicit PlainPlacer(const PlainMText& text)
        : m_text(text), m_font(*text.looks.font), m_scale(text.height * text.looks.widthFactor),
          m_width(std::isfinite(text.width) ? std::max(text.width, 0.0) : 0), m_column((text.attachment - 1) % 3),
          m_leaning(text.looks.slant == 0 ? nullptr : &m_font.leaning(text.looks.slant / text.looks.widthFactor))
    {
        const double factor = text.spacingFactor;
        m_step =
            std::clamp(std::isfinite(factor) && factor > 0 ? factor : 1, 0.01, 100.0) * kBaseDistance * text.height;
    }

    std::optional<Box> run()
    {
        const std::string_view contents = m_text.contents;
        for (std::size_t at = 0; at < contents.size();) {
            if (contents[at] == ' ') {
                m_pen += m_font.metrics(' ').advance * m_scale;
                ++at;
            } else if (contents.substr(at, 2) == "\\P") {
                endLine();
                at += 2;
            } else {
                std::size_t end = at;
                while (end < contents.size() && isWordLetter(contents[end]))
                    ++end;
                if (end == at || !addWord(measured(contents.substr(at, end - at))))
                    return std::nullopt;
                at = end;
            }
        }
        endLine();
        return placed();
    }

private:
    Reach measured(std::string_view word) const
    {
        Reach reach;
        const double h = m_text.height, slant = m_text.looks.slant;
        for (std::size_t i = 0; i < word.size(); ++i) {
            const char32_t c = static_cast<char32_t>(word[i]);
            const GlyphMetrics& m = m_font.metrics(c);
            if (!m.blank) {
                if (i == 0 && !m_font.stroked())
                    reach.left = m.left * m_scale;
                reach.right = std::max(reach.right, reach.width + m.right * m_scale + m.top * h * slant);
                reach.top = std::max(reach.top, (m_font.stroked() ? std::min(m.top, 1.0) : m.top) * h);
                reach.bottom = std::min(reach.bottom, m.bottom * h);
                const InkSpan ink = m_leaning ? m_leaning->of(c) : InkSpan{m.left, m.right};
                include(reach.ink, {ink.left * m_scale, m.bottom * h, ink.right * m_scale, m.top * h}, reach.width, 0);
            }
            reach.width += m.advance * m_scale;
        }
        return reach;
    }

    // False where blanks stand alone on a line that is broken behind them.
    bool addWord(const Reach& word)
    {
        if (m_width > 0 && m_pen + word.right > m_width * (1 + 1e-9)) {
            if (m_hasWord)
                endLine();
            else if (m_pen > 0)
                return false;
        }
        if (m_pen == 0)
            m_line.left = word.left;
        m_hasWord = true;
        m_line.right = std::max(m_line.right, m_pen + word.right);
        m_line.bottom = std::min(m_line.bottom, word.bottom);
        m_line.top = std::max(m_line.top, word.top);
        include(m_line.ink, word.ink, m_pen, 0);
        m_pen += word.width;
        return true;
    }

    void endLine()
    {
        const double top = std::max(m_line.top, m_text.height);
        if (m_isFirst)
            m_baseline = -top;
        else
            m_baseline -= m_step + (m_text.exactSpacing ? 0 : top - m_text.height);
        m_isFirst = false;
        m_deepest = std::min(m_deepest, m_baseline + m_line.bottom);
        include(m_ink, m_line.ink, start(), m_baseline);
        m_line = {};
        m_pen = 0;
        m_hasWord = false;
    }

    // From the insertion point to the pen at the line's beginning.
    double start() const
    {
        return m_column == 0 ? -m_line.left : m_column == 1 ? -(m_line.left + m_line.right) / 2 : -m_line.right;
    }

    std::optional<Box> placed() const
    {
        if (m_ink.left > m_ink.right)
            return std::nullopt;
        const double y = -((m_text.attachment - 1) / 3) * m_deepest / 2;
        return Box{m_ink.left, m_ink.bottom + y, m_ink.right, m_ink.top + y};
    }

    const PlainMText& m_text;
    const Font& m_font;
    const double m_scale, m_width;
    const int m_column;
    LeaningInk* const m_leaning;
    double m_step = 0;  // from line to line
    Reach m_line;
    double m_pen = 0, m_baseline = 0, m_deepest = 0;
    bool m_hasWord = false, m_isFirst = true;
    Box m_ink = kNoInk;
};

}  // namespace

std::optional<Box> plainDrawnBox(const PlainMText& text)
{
    const bool isSane = isWithin(text.height, 1e-100, 1e100) && isWithin(text.looks.widthFactor, 0.01, 100) &&
                        isWithin(text.attachment, 1, 9);
    return isSane && text.looks.font ? PlainPlacer(text).run() : std::nullopt;
}

}  // namespace vktext
