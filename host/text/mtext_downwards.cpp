#include "host/text/mtext_downwards.h"

#include "host/base/unicode.h"
#include "host/text/font_library.h"
#include "host/text/mtext_parser.h"
#include "host/text/mtext_pieces.h"

#include <algorithm>
#include <cmath>

namespace vktext {

namespace {

class DownwardPlacer {
public:
    DownwardPlacer(const MTextSpec& spec, const CharFormat& base)
        : m_spec(spec), m_base(base), m_content(parseMText(spec.contents, base, spec.style)),
          m_length(std::isfinite(spec.width) && spec.width > 0 ? spec.width : 0)
    {
        for (const auto& font : m_content.fonts)
            m_fonts.push_back(&FontLibrary::instance().font(font));
    }

    MTextLayout run()
    {
        for (const auto& token : m_content.tokens)
            add(token);
        if (!m_content.tokens.empty())
            attach();
        m_out.fonts = std::move(m_content.fonts);
        return std::move(m_out);
    }

private:
    void add(const MTextToken& token)
    {
        switch (token.kind) {
        case MTextToken::Kind::Paragraph:
        case MTextToken::Kind::Column:
            return nextLine();
        case MTextToken::Kind::Tab:
            m_pen += 4 * m_base.height;
            return;
        case MTextToken::Kind::Text:
            return addChars(token, token.begin, token.end);
        case MTextToken::Kind::Stack:
            addChars(token, token.begin, token.middle);
            addChar(token, token.stack == StackKind::Tolerance ? U' ' : U'/');
            return addChars(token, token.middle, token.end);
        }
    }

    void addChars(const MTextToken& token, std::size_t begin, std::size_t end)
    {
        for (std::size_t i = begin; i < end; ++i)
            addChar(token, m_content.chars[i]);
    }

    void addChar(const MTextToken& token, char32_t c)
    {
        const CharFormat& format = m_content.formats[token.format];
        const double step = kBaseDistance * format.height * format.tracking;
        if (m_length > 0 && m_pen > 0 && m_pen + format.height > m_length * (1 + 1e-9))
            nextLine();
        const GlyphMetrics& m = m_fonts[format.font]->metrics(c);
        if (!m.blank)
            addFragment(format, c, m);
        m_pen += step;
    }

    void addFragment(const CharFormat& format, char32_t c, const GlyphMetrics& m)
    {
        const double scale = format.height * format.widthFactor;
        MTextFragment& fragment = m_out.fragments.emplace_back();
        appendUtf8(fragment.text, c);
        fragment.font = format.font;
        fragment.line = m_line;
        fragment.height = format.height;
        fragment.widthFactor = format.widthFactor;
        fragment.oblique = format.oblique;
        fragment.color = format.color;
        fragment.decorations = format.decorations;
        fragment.width = m.advance * scale;
        fragment.x = m_center - (m.left + m.right) / 2 * scale;
        fragment.y = -m_pen - format.height;
        include(fragment, m, scale);
    }

    void include(const MTextFragment& fragment, const GlyphMetrics& m, double scale)
    {
        m_ink.left = std::min(m_ink.left, fragment.x + m.left * scale);
        m_ink.right = std::max(m_ink.right, fragment.x + m.right * scale);
        m_ink.bottom = std::min(m_ink.bottom, fragment.y + m.bottom * fragment.height);
    }

    void nextLine()
    {
        m_pen = 0;
        ++m_line;
        m_center -= kBaseDistance * m_base.height;
    }

    void attach()
    {
        const int attachment = m_spec.attachment >= 1 && m_spec.attachment <= 9 ? m_spec.attachment : 1;
        m_out.lines = m_line + 1;
        m_out.width = m_ink.width();
        m_out.height = m_ink.height();
        const double x = -((attachment - 1) % 3) * m_out.width / 2, y = (attachment - 1) / 3 * m_out.height / 2;
        m_out.box = {x, y - m_out.height, x + m_out.width, y};
        for (auto& fragment : m_out.fragments) {
            fragment.x += x - m_ink.left;
            fragment.y += y;
        }
    }

    const MTextSpec& m_spec;
    const CharFormat& m_base;
    MTextContent m_content;
    const double m_length;  // of a line
    std::vector<const Font*> m_fonts;
    double m_pen = 0;     // downwards
    double m_center = 0;  // x of the line
    std::uint32_t m_line = 0;
    Box m_ink;
    MTextLayout m_out;
};

}  // namespace

MTextLayout layoutDownwards(const MTextSpec& spec, const CharFormat& base) { return DownwardPlacer(spec, base).run(); }

}  // namespace vktext
