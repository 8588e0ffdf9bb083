#include "host/text/stroke_font.h"

#include <unicode/normalizer2.h>

#include <cmath>
#include <fstream>
#include <sstream>

namespace vktext {

namespace {

using Strokes = std::vector<std::vector<VcGePoint2d>>;

constexpr double kUnit = 1.0 / 21;  // capitals are 21 units high
constexpr int kBaseline = 9;        // units below the middle of the letter, y pointing down

// Accents are drawn about x = 0 with y = 0 at the top of the letter they sit on, or at its foot for those below.
struct Accent {
    char32_t mark;
    bool below;
    Strokes strokes;
};

const std::vector<Accent>& accents()
{
    static const std::vector<Accent> all = {
        {0x300, false, {{{-.14, .33}, {.08, .10}}}},
        {0x301, false, {{{.14, .33}, {-.08, .10}}}},
        {0x302, false, {{{-.17, .10}, {0, .30}, {.17, .10}}}},
        {0x303, false, {{{-.2, .13}, {-.13, .24}, {-.04, .24}, {.05, .15}, {.13, .15}, {.2, .26}}}},
        {0x304, false, {{{-.17, .19}, {.17, .19}}}},
        {0x306, false, {{{-.16, .29}, {-.1, .16}, {0, .12}, {.1, .16}, {.16, .29}}}},
        {0x307, false, {{{0, .16}, {0, .22}}}},
        {0x308, false, {{{-.14, .17}, {-.14, .24}}, {{.14, .17}, {.14, .24}}}},
        {0x30A,
         false,
         {{{0, .08}, {.09, .12}, {.12, .2}, {.09, .29}, {0, .33}, {-.09, .29}, {-.12, .2}, {-.09, .12}, {0, .08}}}},
        {0x30B, false, {{{0, .33}, {-.14, .10}}, {{.22, .33}, {.08, .10}}}},
        {0x30C, false, {{{-.17, .30}, {0, .10}, {.17, .30}}}},
        {0x327, true, {{{0, 0}, {0, -.1}, {.1, -.15}, {.06, -.26}, {-.1, -.28}}}},
        {0x328, true, {{{.1, 0}, {0, -.13}, {.03, -.25}, {.16, -.26}}}},
    };
    return all;
}

const Accent* accentFor(char32_t mark)
{
    for (const auto& accent : accents())
        if (accent.mark == mark)
            return &accent;
    return nullptr;
}

// Letters and signs that a base glyph and one stroke make.
struct Crossed {
    char32_t c;
    char base;
    VcGePoint2d from, to;  // in fractions of the ink's width and height
};

constexpr Crossed kCrossed[] = {
    {0xD8, 'O', {-.05, -.08}, {1.05, 1.08}}, {0xF8, 'o', {-.05, -.1}, {1.05, 1.1}}, {0xB1, '+', {0, -.15}, {1, -.15}},
    {0x110, 'D', {-.15, .5}, {.45, .5}},     {0x111, 'd', {.45, .82}, {1.1, .82}},  {0xD0, 'D', {-.15, .5}, {.45, .5}},
    {0x141, 'L', {-.2, .4}, {.5, .65}},      {0x142, 'l', {-.5, .4}, {1.5, .65}},
};

GlyphMetrics inkOf(const Strokes& strokes, double advance)
{
    GlyphMetrics m{.advance = advance, .left = 0, .right = advance};
    for (const auto& stroke : strokes)
        for (const auto& p : stroke) {
            if (m.blank)
                m = {advance, p.x, p.x, p.y, p.y, false};
            m.left = std::min(m.left, p.x);
            m.right = std::max(m.right, p.x);
            m.bottom = std::min(m.bottom, p.y);
            m.top = std::max(m.top, p.y);
        }
    return m;
}

template <class Change>
void changeX(Strokes& strokes, Change change)
{
    for (auto& stroke : strokes)
        for (auto& p : stroke)
            p.x = change(p.x);
}

}  // namespace

std::shared_ptr<StrokeFont> StrokeFont::load(const std::string& path, StrokeSpacing spacing)
{
    std::ifstream file(path, std::ios::binary);
    std::ostringstream data;
    if (!file || !(data << file.rdbuf()))
        return nullptr;
    auto font = std::make_shared<StrokeFont>();
    if (!font->parse(data.str()))
        return nullptr;
    for (auto& glyph : font->m_glyphs)
        respace(glyph, spacing);
    return font;
}

// Sets from before the caret had its place have an arrow there.
constexpr std::string_view kArrowUp = "PLRITL RMORJWO RRJR[";
constexpr std::string_view kCaret = "LMRFXM";

// A glyph is a number of five digits, a count of three, then so many pairs of letters, of which the first holds the
// side bearings. Long glyphs run over several lines.
bool StrokeFont::parse(const std::string& data)
{
    std::string text;
    for (const char c : data)
        if (c != '\n' && c != '\r')
            text += c;

    std::size_t index = 0, at = 0;
    while (index < kGlyphs && at + 10 <= text.size()) {
        const int pairs = std::atoi(text.substr(at + 5, 3).c_str());
        if (pairs < 1 || at + 8 + 2 * static_cast<std::size_t>(pairs) > text.size())
            break;
        std::string drawn = text.substr(at + 10, 2 * (pairs - 1));
        if (index == '^' - ' ' && drawn == kArrowUp)
            drawn = kCaret;
        m_glyphs[index++] = readGlyph(text[at + 8] - 'R', text[at + 9] - 'R', drawn);
        at += 8 + 2 * static_cast<std::size_t>(pairs);
    }
    return index > 1;
}

StrokeFont::Glyph StrokeFont::readGlyph(int left, int right, const std::string& pairs)
{
    Glyph glyph;
    bool penDown = false;
    for (std::size_t i = 0; i + 1 < pairs.size(); i += 2) {
        if (pairs[i] == ' ' && pairs[i + 1] == 'R') {
            penDown = false;
            continue;
        }
        if (!penDown)
            glyph.strokes.emplace_back();
        penDown = true;
        glyph.strokes.back().push_back({(pairs[i] - 'R' - left) * kUnit, (kBaseline - (pairs[i + 1] - 'R')) * kUnit});
    }
    glyph.metrics = inkOf(glyph.strokes, (right - left) * kUnit);
    return glyph;
}

void StrokeFont::respace(Glyph& glyph, StrokeSpacing spacing)
{
    if (spacing == StrokeSpacing::AsDrawn)
        return;
    constexpr double cell = 1.0 / 6;
    const GlyphMetrics old = glyph.metrics;
    const double ink = old.blank ? 4 * cell : old.right - old.left;
    const double cells = std::min(4.0, std::ceil(ink / cell - 0.1));
    const double stretch = cells >= 2 ? cells * cell / ink : 1;
    double shift = 0, advance = (cells + 2) * cell;
    if (spacing == StrokeSpacing::MonoCells) {
        shift = (4 * cell - ink * stretch) / 2;
        advance = 1;
    }
    changeX(glyph.strokes, [&](double x) { return (x - old.left) * stretch + shift; });
    glyph.metrics = inkOf(glyph.strokes, advance);
}

// The place of DEL holds a degree sign in some sets only.
StrokeFont::Glyph StrokeFont::degreeSign()
{
    constexpr int sides = 12;
    constexpr double radius = 0.16;
    Glyph glyph;
    auto& circle = glyph.strokes.emplace_back();
    for (int i = 0; i <= sides; ++i) {
        const double turn = 2 * M_PI * (i % sides) / sides;
        circle.push_back({0.12 + radius * (1 + std::cos(turn)), 1 - radius * (1 - std::sin(turn))});
    }
    glyph.metrics = inkOf(glyph.strokes, 0.24 + 2 * radius);
    return glyph;
}

std::optional<StrokeFont::Glyph> StrokeFont::composed(char32_t c) const
{
    for (const auto& crossed : kCrossed) {
        if (crossed.c != c)
            continue;
        Glyph glyph = m_glyphs[crossed.base - ' '];
        const GlyphMetrics m = glyph.metrics;
        // A stem has no width of its own to measure by.
        const double width = std::max(m.right - m.left, 0.25), height = m.top - m.bottom;
        const auto place = [&](VcGePoint2d p) { return VcGePoint2d(m.left + p.x * width, m.bottom + p.y * height); };
        glyph.strokes.push_back({place(crossed.from), place(crossed.to)});
        glyph.metrics = inkOf(glyph.strokes, m.advance);
        return glyph;
    }

    UErrorCode status = U_ZERO_ERROR;
    const auto* nfd = icu::Normalizer2::getNFDInstance(status);
    icu::UnicodeString parts;
    if (U_FAILURE(status) || !nfd->getDecomposition(static_cast<UChar32>(c), parts))
        return std::nullopt;
    const Accent* accent = parts.length() == 2 ? accentFor(parts[1]) : nullptr;
    auto base = accent ? glyph(parts[0]) : std::nullopt;
    if (!base)
        return std::nullopt;
    const VcGeVector2d to((base->metrics.left + base->metrics.right) / 2, accent->below ? 0 : base->metrics.top);
    for (auto stroke : accent->strokes) {
        for (auto& p : stroke)
            p = p + to;
        base->strokes.push_back(std::move(stroke));
    }
    base->metrics = inkOf(base->strokes, base->metrics.advance);
    return base;
}

std::optional<StrokeFont::Glyph> StrokeFont::glyph(char32_t c) const
{
    if (c >= ' ' && c < ' ' + kGlyphs)
        return m_glyphs[c - ' '];
    if (c == 0xB0)
        return degreeSign();
    return composed(c);
}

std::optional<GlyphMetrics> StrokeFont::metrics(char32_t c)
{
    const auto found = glyph(c);
    return found ? std::optional(found->metrics) : std::nullopt;
}

GlyphShape StrokeFont::shape(char32_t c)
{
    auto found = glyph(c);
    return found ? GlyphShape{std::move(found->strokes), false} : GlyphShape{};
}

}  // namespace vktext
