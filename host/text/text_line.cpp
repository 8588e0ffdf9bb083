#include "host/text/text_line.h"

#include "host/text/font_library.h"
#include "host/text/text_codes.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace vktext {

namespace {

constexpr double kVerticalStep = 1.5;  // from letter to letter of a vertical text, in heights

double scaleOf(double height) { return std::isfinite(height) ? height : 0; }

// Whether a text is what it says, byte by byte.
bool isPlain(std::string_view text)
{
    return std::all_of(text.begin(), text.end(),
                       [](char c) { return static_cast<unsigned char>(c) < 0x80 && c != '%' && c != '\\'; });
}

// Letters that need no decoding, or decoded ones.
struct PlainText {
    std::string_view chars;
    static constexpr std::array<DecodedText::Span, 0> spans{};
};

template <class Use>
auto withLetters(std::string_view text, Use use)
{
    return isPlain(text) ? use(PlainText{text}) : use(decodeText(text));
}

template <class Text>
std::uint8_t allDecorations(const Text& text)
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

template <class Text>
UnitLine measureUnits(const Font& font, const Text& text)
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

template <class Text>
UnitLine measureVerticalUnits(const Font& font, const Text& text)
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

Box scaled(const Box& box, double x, double y) { return {box.left * x, box.bottom * y, box.right * x, box.top * y}; }

Box slanted(Box box, double slant)
{
    const double atBottom = box.bottom * slant, atTop = box.top * slant;
    box.left += std::min(atBottom, atTop);
    box.right += std::max(atBottom, atTop);
    return box;
}

Box mirrored(Box box, const LineLooks& looks)
{
    if (looks.backwards)
        box = {-box.right, box.bottom, -box.left, box.top};
    if (looks.upsideDown)
        box = {box.left, -box.top, box.right, -box.bottom};
    return box;
}

LineMetrics measure(const LineLooks& looks, double height, std::string_view text)
{
    const UnitLine units = withLetters(text, [&](const auto& letters) {
        return looks.vertical ? measureVerticalUnits(*looks.font, letters) : measureUnits(*looks.font, letters);
    });
    const double y = scaleOf(height), x = y * looks.widthFactor;
    return {units.length * (looks.vertical ? y : x), y, looks.font->descent() * y, scaled(units.ink, x, y)};
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

// Goes along a line in capital heights, from the base point, before slant and mirroring. What is drawn is given to
// glyph(letter, metrics, x, y) and rule(from x, to x, y).
template <class Text, class Glyph, class Rule>
class LineWalk {
public:
    LineWalk(const Font& font, bool vertical, Glyph& glyph, Rule& rule)
        : m_font(font), m_vertical(vertical), m_glyph(glyph), m_rule(rule)
    {
    }

    void run(const Text& text)
    {
        std::size_t span = 0;
        for (std::size_t i = 0; i < text.chars.size(); ++i) {
            while (span < text.spans.size() && text.spans[span].begin <= i)
                switchDecorations(text.spans[span++].decorations);
            step(static_cast<char32_t>(text.chars[i]));
        }
        switchDecorations(0);
    }

private:
    void step(char32_t c)
    {
        const GlyphMetrics& m = m_font.metrics(c);
        if (!m.blank)
            m_glyph(c, m, m_vertical ? -(m.left + m.right) / 2 : m_pen, m_vertical ? -1 - m_pen : 0.0);
        m_end = m_font.stroked() ? m_pen + m.right : m_pen + m.advance;
        m_pen += m_vertical ? kVerticalStep : m.advance;
    }

    void switchDecorations(std::uint8_t next)
    {
        if (!m_vertical && m_pen > m_from && m_decorations != 0) {
            for (const auto& [flag, y] :
                 {std::pair{kUnderline, kUnderlineAt}, {kOverline, kOverlineAt}, {kStrike, kStrikeAt}})
                if (m_decorations & flag)
                    m_rule(m_from, next == 0 ? m_end : m_pen, y);
        }
        m_decorations = next;
        m_from = m_pen;
    }

    const Font& m_font;
    const bool m_vertical;
    Glyph& m_glyph;
    Rule& m_rule;
    double m_pen = 0, m_end = 0, m_from = 0;
    std::uint8_t m_decorations = 0;
};

template <class Text, class Glyph, class Rule>
void walkLine(const LineLooks& looks, const Text& text, Glyph glyph, Rule rule)
{
    LineWalk<Text, Glyph, Rule>(*looks.font, looks.vertical, glyph, rule).run(text);
}

// In capital heights; slanted by `lean`, x for each y.
class Ink {
public:
    Ink(const LineLooks& looks, double tracking)
        : m_lean(looks.slant / looks.widthFactor), m_tracking(tracking),
          m_leaning(m_lean == 0 ? nullptr : &looks.font->leaning(m_lean))
    {
    }

    void addGlyph(char32_t c, const GlyphMetrics& m, double x, double y)
    {
        const InkSpan across = m_leaning ? m_leaning->of(c) : InkSpan{m.left, m.right};
        const double at = (x + m_lean * y) * m_tracking;
        add(at + across.left, at + across.right, y + m.bottom, y + m.top);
    }

    void addRule(double from, double to, double y)
    {
        const double a = (from + m_lean * y) * m_tracking, b = (to + m_lean * y) * m_tracking;
        add(std::min(a, b), std::max(a, b), y, y);
    }

    bool isEmpty() const { return m_box.left > m_box.right; }
    const Box& box() const { return m_box; }

private:
    void add(double left, double right, double bottom, double top)
    {
        m_box.left = std::min(m_box.left, left);
        m_box.right = std::max(m_box.right, right);
        m_box.bottom = std::min(m_box.bottom, bottom);
        m_box.top = std::max(m_box.top, top);
    }

    const double m_lean, m_tracking;
    LeaningInk* m_leaning;
    Box m_box{HUGE_VAL, HUGE_VAL, -HUGE_VAL, -HUGE_VAL};
};

class LinePlacer {
public:
    LinePlacer(const LineLooks& looks, double height)
        : m_looks(looks), m_y(scaleOf(height)), m_x(m_y * looks.widthFactor), m_slant(m_y * looks.slant)
    {
    }

    PlacedLine place(const DecodedText& text)
    {
        m_line.glyphs.reserve(text.chars.size());
        walkLine(
            m_looks, text,
            [this](char32_t c, const GlyphMetrics&, double x, double y) {
                m_line.glyphs.push_back({c, at(x, y), m_x, m_y, m_slant});
            },
            [this](double from, double to, double y) {
                m_line.decorations.push_back({at(from, y), at(to, y)});
            });
        mirror();
        return std::move(m_line);
    }

private:
    VcGePoint2d at(double x, double y) const { return {x * m_x + y * m_slant, y * m_y}; }

    void mirror()
    {
        const double sx = m_looks.backwards ? -1 : 1, sy = m_looks.upsideDown ? -1 : 1;
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

    const LineLooks& m_looks;
    const double m_y, m_x, m_slant;
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

void setLooks(LineLooks& looks, double widthFactor, double oblique)
{
    looks.widthFactor = std::isfinite(widthFactor) && widthFactor > 0 ? widthFactor : 1;
    const double limit = 85 * M_PI / 180;
    looks.slant = std::isfinite(oblique) && oblique != 0 ? std::tan(std::clamp(oblique, -limit, limit)) : 0;
}

LineLooks lineLooks(const TextStyleSpec& style)
{
    LineLooks looks;
    looks.font = &FontLibrary::instance().font(style);
    looks.backwards = style.backwards;
    looks.upsideDown = style.upsideDown;
    looks.vertical = style.vertical;
    setLooks(looks, style.widthFactor, style.oblique);
    return looks;
}

LineMetrics measureLine(const TextStyleSpec& style, double height, std::string_view text)
{
    return measure(lineLooks(style), height, text);
}

std::optional<Box> inkBox(const LineLooks& looks, double height, std::string_view text, double tracking)
{
    Ink ink(looks, tracking);
    withLetters(text, [&](const auto& letters) {
        walkLine(
            looks, letters, [&](char32_t c, const GlyphMetrics& m, double x, double y) { ink.addGlyph(c, m, x, y); },
            [&](double from, double to, double y) { ink.addRule(from, to, y); });
    });
    if (ink.isEmpty())
        return std::nullopt;
    const double y = scaleOf(height);
    return mirrored(scaled(ink.box(), y * looks.widthFactor, y), looks);
}

static Box boxOfBlanks(const LineLooks& looks, double height, std::string_view text)
{
    const LineMetrics line = measure(looks, height, text);
    if (line.length == 0)
        return {};
    Box box = line.ink;
    if (!looks.vertical)
        box = {0, 0, line.length, line.height};
    return mirrored(slanted(box, looks.slant), looks);
}

Box lineBox(const LineLooks& looks, double height, std::string_view text)
{
    const auto ink = inkBox(looks, height, text);
    return ink ? *ink : boxOfBlanks(looks, height, text);
}

Box lineBox(const TextStyleSpec& style, double height, std::string_view text)
{
    return lineBox(lineLooks(style), height, text);
}

VcGeVector2d justificationOffset(const LineLooks& looks, double height, std::string_view text,
                                 HorizontalMode horizontal, VerticalMode vertical)
{
    const LineMetrics line = measure(looks, height, text);
    // A vertical text runs down from its base point, so that its length counts along y.
    const VcGeVector2d offset =
        looks.vertical ? VcGeVector2d(0, -horizontalAt(line, horizontal)) : upright(line, horizontal, vertical);
    return {looks.backwards ? -offset.x : offset.x, looks.upsideDown ? -offset.y : offset.y};
}

VcGeVector2d justificationOffset(const TextStyleSpec& style, double height, std::string_view text,
                                 HorizontalMode horizontal, VerticalMode vertical)
{
    return justificationOffset(lineLooks(style), height, text, horizontal, vertical);
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
    const LineLooks looks = lineLooks(style);
    return LinePlacer(looks, height).place(decodeText(text));
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
