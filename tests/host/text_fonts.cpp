#include "host/text/font_library.h"

#include <gtest/gtest.h>

using namespace vktext;

// Fontconfig keeps a little of what it reads of its configuration and never gives it back.
extern "C" __attribute__((weak, visibility("default"))) const char* __lsan_default_suppressions()
{
    return "leak:libfontconfig";
}

namespace {

const Font& font(const std::string& name, bool bold = false)
{
    FontRequest request;
    request.font = name;
    request.bold = bold;
    return FontLibrary::instance().font(request);
}

FontUse useOf(const std::string& name)
{
    font(name);
    for (const auto& use : FontLibrary::instance().report())
        if (use.asked.font == name)
            return use;
    return {};
}

struct NameCase {
    const char* asked;
    const char* taken;
    FontMatch match;
};

const NameCase kStrokeNames[] = {
    {"txt", "txt", FontMatch::Exact},
    {"TXT.SHX", "txt", FontMatch::Exact},
    {"C:\\Fonts\\Simplex.shx", "simplex", FontMatch::Exact},
    {"/usr/local/fonts/romans.shx", "romans", FontMatch::Exact},
    {"txt_____.ttf", "txt", FontMatch::Exact},
    {"", "txt", FontMatch::Exact},
    {"companystyle.shx", "txt", FontMatch::Substitute},
    {"isocp", "isocp", FontMatch::Substitute},
};

}  // namespace

TEST(TextFonts, StrokeFontsGoByTheirCustomaryNames)
{
    for (const auto& c : kStrokeNames) {
        const FontUse use = useOf(c.asked);
        EXPECT_EQ(use.taken, c.taken) << c.asked;
        EXPECT_EQ(use.match, c.match) << c.asked;
        EXPECT_TRUE(font(c.asked).stroked()) << c.asked;
    }
}

TEST(TextFonts, AFileNameAndItsTypefaceAreOneFont)
{
    EXPECT_EQ(&font("arial.ttf"), &font("Arial"));
    EXPECT_EQ(&font("ARIALBD.TTF"), &font("Arial", true));
    EXPECT_NE(&font("arial.ttf"), &font("arialbd.ttf"));
}

TEST(TextFonts, AnUnknownOutlineFontIsReplacedAndToldOf)
{
    const FontUse use = useOf("Nonexistent Grotesque");
    EXPECT_EQ(use.match, FontMatch::Substitute);
    EXPECT_FALSE(use.taken.empty());
    EXPECT_GT(font("Nonexistent Grotesque").metrics('A').advance, 0);
}

TEST(TextFonts, CapitalsAreOneHigh)
{
    for (const char* name : {"txt", "simplex", "romand", "romanc", "arial.ttf", "times.ttf", "cour.ttf", "Verdana"}) {
        const GlyphMetrics& m = font(name).metrics('H');
        EXPECT_NEAR(m.top, 1, 1e-9) << name;
        EXPECT_NEAR(m.bottom, 0, 1e-9) << name;
    }
}

// Letters of "txt" are four sixths of the height wide, and two sixths apart.
TEST(TextFonts, TxtKeepsToItsGrid)
{
    for (const char c : std::string("ABCDEFGHKMNOPQRSTUVWXYZ023456789x")) {
        EXPECT_NEAR(font("txt").metrics(c).right, 4.0 / 6, 1e-9) << c;
        EXPECT_NEAR(font("txt").metrics(c).left, 0, 1e-9) << c;
        EXPECT_NEAR(font("txt").metrics(c).advance, 1, 1e-9) << c;
    }
    EXPECT_LT(font("txt").metrics('i').advance, 0.75);
}

TEST(TextFonts, MonotxtAdvancesEvenly)
{
    for (char c = ' '; c < 127; ++c)
        EXPECT_DOUBLE_EQ(font("monotxt").metrics(c).advance, 1) << c;
}

// Widths are those of the typeface whatever stands in for it: a digit of Arial is 1139 units wide where its capitals
// are 1466 high.
TEST(TextFonts, StandInsKeepTheWidths)
{
    if (useOf("arial.ttf").match == FontMatch::Substitute)
        GTEST_SKIP() << "no font of Arial's widths here";
    EXPECT_NEAR(font("arial.ttf").metrics('0').advance, 1139.0 / 1466, 1e-9);
}

TEST(TextFonts, SignsAndAccentsOfStrokeFonts)
{
    const Font& simplex = font("simplex");
    for (const char32_t c : {0xB0, 0xB1, 0xD8, 0xE9, 0xC4, 0xFC, 0xE7, 0x10D, 0x159, 0x141}) {
        EXPECT_FALSE(simplex.metrics(c).blank) << std::hex << unsigned(c);
        EXPECT_FALSE(simplex.shape(c).filled) << std::hex << unsigned(c);
    }
    EXPECT_EQ(simplex.metrics(0xE9).advance, simplex.metrics('e').advance);
    EXPECT_GT(simplex.metrics(0xC4).top, 1);
    EXPECT_LT(simplex.metrics(0xE7).bottom, simplex.metrics('c').bottom);
    EXPECT_GT(simplex.metrics(0xB0).bottom, 0.5);
}

// Some sets have an arrow in the caret's place.
TEST(TextFonts, TheCaretStandsHighInEveryAlphabet)
{
    for (const char* name :
         {"txt", "monotxt", "simplex", "romand", "romanc", "italict", "scripts", "gothice", "greeks"}) {
        EXPECT_GT(font(name).metrics('^').bottom, 0.2) << name;
        EXPECT_LT(font(name).metrics('_').top, 0) << name;
    }
}

// What frames of tolerances write in their own font: the sign of position has a circle, which no letter j has.
TEST(TextFonts, SignsOfTolerances)
{
    const Font& signs = font("gdt");
    EXPECT_EQ(&font("amgdt.shx"), &signs);
    for (char32_t c = 'a'; c <= 'z'; ++c)
        EXPECT_FALSE(signs.metrics(c).blank) << char(c);
    EXPECT_EQ(signs.shape('j').lines.size(), 3u);
    EXPECT_EQ(signs.shape('u').lines.size(), 1u) << "straightness is one line";
    EXPECT_GT(signs.shape('e').lines.front().size(), 16u) << "and circularity a circle";
    EXPECT_EQ(signs.metrics('5').advance, font("simplex").metrics('5').advance);
}

TEST(TextFonts, MissingGlyphsAreBoxesWithWidth)
{
    const Font& simplex = font("simplex");
    constexpr char32_t unassigned = 0x10FFFD;
    EXPECT_GT(simplex.metrics(unassigned).advance, 0);
    EXPECT_FALSE(simplex.shape(unassigned).lines.empty());
    EXPECT_GE(useOf("simplex").missingGlyphs, 1u);
}

TEST(TextFonts, ControlCharactersTakeNoRoom)
{
    EXPECT_EQ(font("arial.ttf").metrics('\n').advance, 0);
    EXPECT_EQ(font("txt").metrics(0x200B).advance, 0);
}

// What is measured and what is drawn must be one thing.
TEST(TextFonts, ShapesFillTheirMetrics)
{
    for (const char* name : {"txt", "simplex", "gothice", "arial.ttf"})
        for (const char32_t c : U"AgQ@\u00E9")
            for (const auto& line : font(name).shape(c).lines)
                for (const auto& p : line) {
                    const GlyphMetrics& m = font(name).metrics(c);
                    EXPECT_GE(p.x, m.left - 1e-9) << name << ' ' << unsigned(c);
                    EXPECT_LE(p.x, m.right + 1e-9) << name << ' ' << unsigned(c);
                    EXPECT_GE(p.y, m.bottom - 1e-9) << name << ' ' << unsigned(c);
                    EXPECT_LE(p.y, m.top + 1e-9) << name << ' ' << unsigned(c);
                }
}

TEST(TextFonts, AnyNumberOfNamesSharesFewFonts)
{
    const Font& first = font("unknown0.shx");
    for (int i = 1; i < 20000; ++i)
        ASSERT_EQ(&font("unknown" + std::to_string(i) + ".shx"), &first);
}
