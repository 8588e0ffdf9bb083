#include "host/text/text_line.h"

#include "host/text/font_library.h"
#include "host/text/text_codes.h"

#include <algorithm>
#include <cmath>

namespace vktext {

namespace {

constexpr double kVerticalStep = 1.5;  // from letter to letter of a vertical text, in heights

// The factors that turn capital heights into drawing units; nonsense in a style counts as its default.
struct Scale {
    double x = 1, y = 1;
    double slant = 0;  // x for each y

    Scale(const TextStyleSpec& style, double height)
    {
        y = std::isfinite(height) ? height : 0;
        x = y * (std::isfinite(style.widthFactor) && style.widthFactor > 0 ? style.widthFactor : 1);
        const double limit = 85 * M_PI / 180;
        slant = std::isfinite(style.oblique) ? std::tan(std::clamp(style.oblique, -limit, limit)) : 0;
    }
};

std::uint8_t allDecorations(const DecodedText& text)
{
    std::uint8_t all = 0;
    for (std::size_t i = 0; i < text.spans.size(); ++i) {
        const std::size_t end = i + 1 < text.spans.size() ? text.spans[i + 1].begin : text.chars.size();
        if (end > text.spans[i].begin)
            all |= text.spans[i].decorations;
    }
    return all;
}

// In capital heights, the text running to the right.
struct UnitLine {
    double length = 0;
    Box ink;
};

void includeDecorations(Box& ink, std::uint8_t decorations)
{
    if (decorations & kUnderline)
        ink.bottom = std::min(ink.bottom, kUnderlineAt);
    if (decorations & kOverline)
        ink.top = std::max(ink.top, kOverlineAt);
}

UnitLine measureUnits(const Font& font, const DecodedText& text)
{
    UnitLine line;
    double pen = 0;
    bool inked = false;
    for (const char32_t c : text.chars) {
        const GlyphMetrics& m = font.metrics(c);
        if (!m.blank) {
            line.ink.left = inked ? std::min(line.ink.left, pen + m.left) : pen + m.left;
            line.ink.right = inked ? std::max(line.ink.right, pen + m.right) : pen + m.right;
            line.ink.bottom = inked ? std::min(line.ink.bottom, m.bottom) : m.bottom;
            line.ink.top = inked ? std::max(line.ink.top, m.top) : m.top;
            inked = true;
        }
        line.length = font.stroked() ? pen + m.right : pen + m.advance;
        pen += m.advance;
    }
    if (const std::uint8_t decorations = allDecorations(text)) {
        includeDecorations(line.ink, decorations);
        line.ink.left = std::min(line.ink.left, 0.0);
        line.ink.right = std::max(line.ink.right, line.length);
    }
    return line;
}

UnitLine measureVerticalUnits(const Font& font, const DecodedText& text)
{
    UnitLine line;
    double y = 0;
    for (const char32_t c : text.chars) {
        const GlyphMetrics& m = font.metrics(c);
        const double half = m.blank ? 0 : (m.right - m.left) / 2;
        line.ink.left = std::min(line.ink.left, -half);
        line.ink.right = std::max(line.ink.right, half);
        line.ink.bottom = std::min(line.ink.bottom, y - 1 + std::min(m.bottom, 0.0));
        line.ink.top = std::max(line.ink.top, y - 1 + m.top);
        line.length = -y + 1;
        y -= kVerticalStep;
    }
    return line;
}

UnitLine measureUnits(const Font& font, const DecodedText& text, bool vertical)
{
    return vertical ? measureVerticalUnits(font, text) : measureUnits(font, text);
}

Box scaled(const Box& box, const Scale& scale)
{
    return {box.left * scale.x, box.bottom * scale.y, box.right * scale.x, box.top * scale.y};
}

Box slanted(Box box, double slant)
{
    const double atBottom = box.bottom * slant, atTop = box.top * slant;
    box.left += std::min(atBottom, atTop);
    box.right += std::max(atBottom, atTop);
    return box;
}

Box mirrored(Box box, const TextStyleSpec& style)
{
    if (style.backwards)
        box = {-box.right, box.bottom, -box.left, box.top};
    if (style.upsideDown)
        box = {box.left, -box.top, box.right, -box.bottom};
    return box;
}

LineMetrics measure(const TextStyleSpec& style, double height, const DecodedText& text)
{
    const Font& font = FontLibrary::instance().font(style);
    const UnitLine units = measureUnits(font, text, style.vertical);
    const Scale scale(style, height);
    return {units.length * (style.vertical ? scale.y : scale.x), scale.y, font.descent() * scale.y,
            scaled(units.ink, scale)};
}

double verticalAt(const LineMetrics& line, VerticalMode mode)
{
    switch (mode) {
    case VerticalMode::Bottom:
        return -line.descent;
    case VerticalMode::Middle:
        return line.height / 2;
    case VerticalMode::Top:
        return line.height;
    default:
        return 0;
    }
}

double horizontalAt(const LineMetrics& line, HorizontalMode mode)
{
    switch (mode) {
    case HorizontalMode::Center:
    case HorizontalMode::Middle:
        return line.length / 2;
    case HorizontalMode::Right:
        return line.length;
    default:
        return 0;
    }
}

VcGeVector2d upright(const LineMetrics& line, HorizontalMode horizontal, VerticalMode vertical)
{
    const double x = horizontalAt(line, horizontal);
    if (horizontal == HorizontalMode::Middle)
        return {x, (std::min(line.ink.bottom, 0.0) + std::max(line.ink.top, line.height)) / 2};
    return {x, verticalAt(line, vertical)};
}

class LinePlacer {
public:
    LinePlacer(const TextStyleSpec& style, double height)
        : m_style(style), m_font(FontLibrary::instance().font(style)), m_scale(style, height)
    {
    }

    PlacedLine place(const DecodedText& text)
    {
        m_line.glyphs.reserve(text.chars.size());
        std::size_t span = 0;
        for (std::size_t i = 0; i < text.chars.size(); ++i) {
            while (span < text.spans.size() && text.spans[span].begin <= i)
                switchDecorations(text.spans[span++].decorations);
            addGlyph(text.chars[i]);
        }
        switchDecorations(0);
        mirror();
        return std::move(m_line);
    }

private:
    void addGlyph(char32_t c)
    {
        const GlyphMetrics& m = m_font.metrics(c);
        const double x = m_style.vertical ? -(m.left + m.right) / 2 : m_pen;
        const double y = m_style.vertical ? -1 - m_pen : 0;
        if (!m.blank)
            m_line.glyphs.push_back({c, at(x, y), m_scale.x, m_scale.y, m_scale.slant * m_scale.y});
        m_end = m_font.stroked() ? m_pen + m.right : m_pen + m.advance;
        m_pen += m_style.vertical ? kVerticalStep : m.advance;
    }

    void switchDecorations(std::uint8_t next)
    {
        if (!m_style.vertical && m_pen > m_from) {
            for (const auto& [flag, y] :
                 {std::pair{kUnderline, kUnderlineAt}, {kOverline, kOverlineAt}, {kStrike, kStrikeAt}})
                if (m_decorations & flag)
                    m_line.decorations.push_back({at(m_from, y), at(next == 0 ? m_end : m_pen, y)});
        }
        m_decorations = next;
        m_from = m_pen;
    }

    VcGePoint2d at(double x, double y) const { return {x * m_scale.x + y * m_scale.y * m_scale.slant, y * m_scale.y}; }

    void mirror()
    {
        const double sx = m_style.backwards ? -1 : 1, sy = m_style.upsideDown ? -1 : 1;
        const auto turn = [&](VcGePoint2d& p) { p = {sx * p.x, sy * p.y}; };
        for (auto& glyph : m_line.glyphs) {
            turn(glyph.origin);
            glyph.xScale *= sx;
            glyph.slant *= sx;
            glyph.yScale *= sy;
        }
        for (auto& [from, to] : m_line.decorations) {
            turn(from);
            turn(to);
        }
    }

    const TextStyleSpec& m_style;
    const Font& m_font;
    const Scale m_scale;
    double m_pen = 0, m_end = 0, m_from = 0;
    std::uint8_t m_decorations = 0;
    PlacedLine m_line;
};

void addShape(TextOutline& to, const GlyphShape& shape, const PlacedGlyph& glyph)
{
    auto& lines = shape.filled ? to.contours : to.strokes;
    for (const auto& line : shape.lines) {
        auto& placed = lines.emplace_back();
        placed.reserve(line.size());
        for (const auto& p : line)
            placed.push_back(
                {glyph.origin.x + glyph.xScale * p.x + glyph.slant * p.y, glyph.origin.y + glyph.yScale * p.y});
    }
    if (shape.filled)
        to.letterEnds.push_back(to.contours.size());
}

}  // namespace

LineMetrics measureLine(const TextStyleSpec& style, double height, std::string_view text)
{
    return measure(style, height, decodeText(text));
}

Box lineBox(const TextStyleSpec& style, double height, std::string_view text)
{
    const DecodedText decoded = decodeText(text);
    if (decoded.chars.empty())
        return {};
    const LineMetrics line = measure(style, height, decoded);
    Box box = line.ink;
    if (!style.vertical) {
        box.left = std::min(box.left, 0.0);
        box.right = std::max(box.right, line.length);
        box.bottom = std::min(box.bottom, 0.0);
        box.top = std::max(box.top, line.height);
    }
    return mirrored(slanted(box, Scale(style, height).slant), style);
}

VcGeVector2d justificationOffset(const TextStyleSpec& style, double height, std::string_view text,
                                 HorizontalMode horizontal, VerticalMode vertical)
{
    const LineMetrics line = measureLine(style, height, text);
    // A vertical text runs down from its base point, so that its length counts along y.
    const VcGeVector2d offset =
        style.vertical ? VcGeVector2d(0, -horizontalAt(line, horizontal)) : upright(line, horizontal, vertical);
    return {style.backwards ? -offset.x : offset.x, style.upsideDown ? -offset.y : offset.y};
}

double alignedHeight(const TextStyleSpec& style, double height, std::string_view text, double distance)
{
    const double atOne = measureLine(style, 1, text).length;
    return atOne > 0 && std::isfinite(distance) && distance > 0 ? distance / atOne : height;
}

double fittedWidthFactor(const TextStyleSpec& style, double height, std::string_view text, double distance)
{
    TextStyleSpec plain = style;
    plain.widthFactor = 1;
    const double atOne = measureLine(plain, height, text).length;
    return atOne > 0 && std::isfinite(distance) && distance > 0 ? distance / atOne : style.widthFactor;
}

PlacedLine placeLine(const TextStyleSpec& style, double height, std::string_view text)
{
    return LinePlacer(style, height).place(decodeText(text));
}

TextOutline outlineLine(const TextStyleSpec& style, double height, std::string_view text)
{
    const Font& font = FontLibrary::instance().font(style);
    const PlacedLine line = placeLine(style, height, text);
    TextOutline outline;
    for (const auto& glyph : line.glyphs)
        addShape(outline, font.shape(glyph.c), glyph);
    for (const auto& [from, to] : line.decorations)
        outline.strokes.push_back({from, to});
    return outline;
}

}  // namespace vktext
