#include "host/text/font_library.h"
#include "host/text/mtext_layout.h"
#include "host/text/mtext_plain.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cmath>

using namespace vktext;

namespace {

MTextSpec spec(std::string contents, const char* font = "txt", double height = 6)
{
    MTextSpec s;
    s.contents = std::move(contents);
    s.style.font = font;
    s.height = height;
    return s;
}

MTextLayout wrapped(std::string contents, double width)
{
    auto s = spec(std::move(contents));
    s.width = width;
    return layoutMText(s);
}

// The fragments, lines apart by a bar.
std::string lines(const MTextLayout& layout)
{
    std::string out;
    std::uint32_t line = 0;
    for (const auto& fragment : layout.fragments) {
        for (; line < fragment.line; ++line)
            out += '|';
        out += fragment.text;
    }
    return out;
}

struct WrapCase {
    const char* contents;
    double width;
    const char* lines;
};

// In "txt" of height 6 a capital is 4 wide and advances by 6, as does a space.
const WrapCase kWraps[] = {
    {"AAA BBB", 0, "AAA BBB"},
    {"AAA BBB", 40, "AAA BBB"},
    {"AAA BBB", 39, "AAA|BBB"},
    {"AAA   BBB", 39, "AAA|BBB"},
    {"AAA BBB CCC DDD", 40, "AAA BBB|CCC DDD"},
    {"AAAAAAAAAAAA B", 20, "AAAAAAAAAAAA|B"},
    {"A AAAAAAAAAAAA B", 20, "A|AAAAAAAAAAAA|B"},
    {"AA{\\C1;BB}CC DD", 30, "AABBCC|DD"},
    {"A AA{\\C1;BB}CC DD", 40, "A|AABBCC|DD"},
    {"A\\~A B", 12, "A A|B"},
    {"A\\PB", 100, "A|B"},
    {"A\\P\\PB", 100, "A||B"},
    {"A B", -5, "A B"},
    {"A B", NAN, "A B"},
    {"A B", INFINITY, "A B"},
    {"A B", 1e-9, "A|B"},
};

struct RecordedSize {
    const char* contents;
    double height, width, widthTolerance, actualHeight;
};

// Sizes that drawings record for texts in Arial; fonts of the same widths differ a little in their ink.
const RecordedSize kRecorded[] = {
    {"MESH", 0.8, 3.0559, 0.03, 0.82729},
    {"LEADER", 0.8, 4.3760, 0.05, 0.8},
    {"DIMENSION", 0.8, 6.1555, 0.04, 0.82783},
    {"CIRCLE\\PDIMENSION", 0.8, 6.1555, 0.04, 2.17481},
    {"LINE1\\PLINE2\\PLINE3", 0.6, 2.2302, 0.04, 2.61801},
};

bool hasArialWidths()
{
    FontRequest arial;
    arial.font = "arial.ttf";
    return std::abs(FontLibrary::instance().font(arial).metrics('0').advance - 1139.0 / 1466) < 1e-6;
}

}  // namespace

TEST(MTextLayout, Wrapping)
{
    for (const auto& c : kWraps)
        EXPECT_EQ(lines(wrapped(c.contents, c.width)), c.lines) << c.contents << " in " << c.width;
}

TEST(MTextLayout, RecordedSizes)
{
    if (!hasArialWidths())
        GTEST_SKIP() << "no font of Arial's widths here";
    for (const auto& c : kRecorded) {
        const MTextLayout layout = layoutMText(spec(c.contents, "arial.ttf", c.height));
        EXPECT_NEAR(layout.width, c.width, c.widthTolerance) << c.contents;
        EXPECT_NEAR(layout.height, c.actualHeight, 0.02 * c.height) << c.contents;
    }
}

TEST(MTextLayout, RecordedWrappingOfStrokes)
{
    auto s = spec("This is a sample multiline text. This is a sample multiline text.", "simplex.shx", 7.5);
    s.width = 80;
    const MTextLayout layout = layoutMText(s);
    EXPECT_EQ(lines(layout), "This is a|sample|multiline text.|This is a|sample|multiline text.");
    EXPECT_NEAR(layout.height, 70, 1e-9);
    EXPECT_NEAR(layout.width, 77.142857, 0.03 * 77);
}

TEST(MTextLayout, LinesStandFiveThirdsApart)
{
    const MTextLayout layout = layoutMText(spec("H\\PH\\PH"));
    ASSERT_EQ(layout.fragments.size(), 3u);
    EXPECT_NEAR(layout.fragments[0].y, -6, 1e-9);
    EXPECT_NEAR(layout.fragments[1].y, -16, 1e-9);
    EXPECT_NEAR(layout.fragments[2].y, -26, 1e-9);
    EXPECT_NEAR(layout.height, 26, 1e-9);
    EXPECT_NEAR(layout.width, 4, 1e-9);
    EXPECT_EQ(layout.lines, 3u);
}

TEST(MTextLayout, SpacingFactorAndKind)
{
    auto s = spec("H\\P{\\H12;H}\\PH");
    s.spacingFactor = 0.9;
    const MTextLayout atLeast = layoutMText(s);
    EXPECT_NEAR(atLeast.fragments[1].y - atLeast.fragments[0].y, -18, 1e-9);
    EXPECT_NEAR(atLeast.fragments[2].y - atLeast.fragments[1].y, -9, 1e-9);
    s.exactSpacing = true;
    const MTextLayout exactly = layoutMText(s);
    EXPECT_NEAR(exactly.fragments[1].y - exactly.fragments[0].y, -9, 1e-9);
    EXPECT_NEAR(exactly.fragments[2].y - exactly.fragments[1].y, -9, 1e-9);
}

TEST(MTextLayout, FragmentsStandWhereTheirTextsWould)
{
    const MTextLayout layout = layoutMText(spec("AB{\\C1;CD} E"));
    ASSERT_EQ(layout.fragments.size(), 3u);
    EXPECT_EQ(layout.fragments[0].x, 0);
    EXPECT_NEAR(layout.fragments[1].x, 12, 1e-9);
    EXPECT_NEAR(layout.fragments[2].x, 24, 1e-9);
    EXPECT_EQ(layout.fragments[2].text, " E");
    EXPECT_EQ(layout.fragments[1].color, (TextColor{TextColor::Kind::Index, 1}));
}

TEST(MTextLayout, AttachmentMovesTheTextAsAWhole)
{
    for (const char* font : {"txt", "arial.ttf"})
        for (const double width : {0.0, 60.0}) {
            auto s = spec("Long text here\\Pand g", font);
            s.width = width;
            for (int attachment = 1; attachment <= 9; ++attachment) {
                s.attachment = attachment;
                const MTextLayout layout = layoutMText(s);
                const int column = (attachment - 1) % 3, row = (attachment - 1) / 3;
                EXPECT_NEAR(layout.box.left, -column * layout.width / 2, 1e-9);
                EXPECT_NEAR(layout.box.top, row * layout.height / 2, 1e-9);
                EXPECT_NEAR(layout.box.bottom, layout.box.top - layout.height, 1e-9);
                for (const auto& fragment : layout.fragments) {
                    const auto style = fragmentStyle(layout, fragment);
                    const LineMetrics m = measureLine(style, fragment.height, fragmentText(fragment));
                    EXPECT_GE(fragment.x + m.ink.left, layout.box.left - 1e-6) << attachment << ' ' << font;
                    EXPECT_LE(fragment.x + m.ink.right, layout.box.right + 1e-6) << attachment << ' ' << font;
                    EXPECT_LE(fragment.y + m.ink.top, layout.box.top + 1e-6) << attachment << ' ' << font;
                    EXPECT_GE(fragment.y + m.ink.bottom, layout.box.bottom - 1e-6) << attachment << ' ' << font;
                }
            }
        }
}

TEST(MTextLayout, ParagraphAlignment)
{
    EXPECT_NEAR(wrapped("\\pql;AB", 100).fragments[0].x, 0, 1e-9);
    EXPECT_NEAR(wrapped("\\pqc;AB", 100).fragments[0].x, 45, 1e-9);
    EXPECT_NEAR(wrapped("\\pqr;AB", 100).fragments[0].x, 90, 1e-9);
    const MTextLayout justified = wrapped("\\pqj;AA BB CC", 30);
    ASSERT_EQ(justified.fragments.size(), 3u);
    EXPECT_NEAR(justified.fragments[1].x, 20, 1e-9);  // two letters of 10 end at 30
    EXPECT_NEAR(justified.fragments[2].x, 0, 1e-9);
}

TEST(MTextLayout, IndentsAndTabs)
{
    const MTextLayout hanging = wrapped("\\pi-2,l3;AA BB", 33);
    ASSERT_EQ(hanging.fragments.size(), 2u);
    EXPECT_NEAR(hanging.fragments[0].x, 6, 1e-9);
    EXPECT_NEAR(hanging.fragments[1].x, 18, 1e-9);

    const auto tabbed = [](const char* contents) { return layoutMText(spec(contents)).fragments.back().x; };
    EXPECT_NEAR(tabbed("A^IB"), 24, 1e-9);
    EXPECT_NEAR(tabbed("AAAAA^IB"), 48, 1e-9);
    EXPECT_NEAR(tabbed("\\pt10;A^IB"), 60, 1e-9);
    EXPECT_NEAR(tabbed("\\ptr10;A^IBB"), 48, 1e-9);
    EXPECT_NEAR(tabbed("\\ptc10;A^IBB"), 54, 1e-9);
    EXPECT_NEAR(tabbed("\\ptr1;AAA^IB"), 24, 1e-9);
    EXPECT_NEAR(tabbed("\\ptr4;AAA^IBBB"), 18, 1e-9);  // no room to the left of the stop
}

TEST(MTextLayout, Stacks)
{
    const MTextLayout fraction = layoutMText(spec("A\\S1/22;"));
    ASSERT_EQ(fraction.fragments.size(), 3u);
    ASSERT_EQ(fraction.rules.size(), 1u);
    const auto &upper = fraction.fragments[1], &lower = fraction.fragments[2];
    EXPECT_GT(upper.y, lower.y + 6);
    EXPECT_GT(fraction.rules[0].from.y, lower.y + 6);
    EXPECT_LT(fraction.rules[0].from.y, upper.y);
    EXPECT_NEAR(upper.x + upper.width / 2, lower.x + lower.width / 2, 1e-9);

    const MTextLayout tolerance = layoutMText(spec("\\S+1^-2;"));
    EXPECT_TRUE(tolerance.rules.empty());
    EXPECT_EQ(tolerance.fragments[0].x, tolerance.fragments[1].x);

    const MTextLayout diagonal = layoutMText(spec("\\S1#2;"));
    EXPECT_GT(diagonal.rules.at(0).to.y, diagonal.rules.at(0).from.y);
    EXPECT_GT(diagonal.fragments[1].x, diagonal.fragments[0].x);

    const MTextLayout centred = layoutMText(spec("\\A1;A\\S1/2;"));
    const double middle = centred.fragments[0].y + 3;
    EXPECT_NEAR((centred.fragments[1].y + 6 + centred.fragments[2].y) / 2, middle, 1e-9);
}

TEST(MTextLayout, StacksDoNotRunIntoTheirNeighbours)
{
    const MTextLayout layout = layoutMText(spec("\\A1;A\\S1/2;\\PB\\S3/4;"));
    const auto& below = layout.fragments[2];
    const auto& above = layout.fragments[4];
    EXPECT_GE(below.y, above.y + 6 - 1e-9);
}

TEST(MTextLayout, Columns)
{
    auto s = spec("A\\PB\\PC\\ND");
    s.columns = {.count = 3, .width = 50, .gutter = 10, .heights = {17}};
    const MTextLayout layout = layoutMText(s);
    ASSERT_EQ(layout.fragments.size(), 4u);
    EXPECT_NEAR(layout.fragments[1].y, -16, 1e-9);
    EXPECT_NEAR(layout.fragments[2].x, 60, 1e-9);
    EXPECT_NEAR(layout.fragments[2].y, -6, 1e-9);
    EXPECT_NEAR(layout.fragments[3].x, 120, 1e-9);
    EXPECT_NEAR(layout.width, 170, 1e-9);
    EXPECT_NEAR(layout.height, 16, 1e-9);
}

// What needs no layout comes out as though it had one.
TEST(MTextLayout, PlainTextsHaveTheBoxOfTheirLayout)
{
    for (const char* font : {"txt", "romanc", "arial.ttf", "times.ttf"})
        for (const char* contents :
             {"Room 12", "jgf", "  led in", "ends  ", "x", "f j", "(Q)", "two  gaps", "a wide wider widest line",
              "one\\Ptwo  \\P\\P jgq\\P", "\\P(x", "farfarfarfar too"})
            for (const double width : {0.0, 60.0, 200.0})
                for (const double oblique : {0.0, 0.4, -0.4})
                    for (int variant = 0; variant < 18; ++variant) {
                        auto s = spec(contents, font);
                        s.width = width;
                        s.attachment = 1 + variant % 9;
                        s.exactSpacing = variant > 8;
                        s.spacingFactor = 1 + 0.1 * (variant % 4);
                        s.style.oblique = oblique;
                        s.style.widthFactor = 0.8;
                        const auto plain = plainDrawnBox({s.contents, lineLooks(s.style), s.height, s.width,
                                                          s.attachment, s.exactSpacing, s.spacingFactor});
                        ASSERT_TRUE(plain);
                        const Box laidOut = drawnBox(layoutMText(s));
                        const std::string which = fmt::format("{} {} {} {}", contents, font, width, variant);
                        EXPECT_NEAR(plain->left, laidOut.left, 1e-9) << which;
                        EXPECT_NEAR(plain->right, laidOut.right, 1e-9) << which;
                        EXPECT_NEAR(plain->bottom, laidOut.bottom, 1e-9) << which;
                        EXPECT_NEAR(plain->top, laidOut.top, 1e-9) << which;
                    }
}

TEST(MTextLayout, OnlyPlainTextsGoWithoutALayout)
{
    for (const char* contents :
         {"", "   ", "\\P", "a\\pq;b", "{a}", "^I", "50%%d", "two\nlines", "\xC3\x84", "a\\", "       wide"})
        EXPECT_FALSE(plainDrawnBox({contents, lineLooks(spec("").style), 6, 20, 1})) << contents;
}

TEST(MTextLayout, DownwardFlow)
{
    auto s = spec("AB C\\PD");
    s.flow = 3;
    MTextLayout layout = layoutMText(s);
    ASSERT_EQ(layout.fragments.size(), 4u);
    EXPECT_NEAR(layout.fragments[0].y, -6, 1e-9);
    EXPECT_NEAR(layout.fragments[1].y, -16, 1e-9);
    EXPECT_NEAR(layout.fragments[2].y, -36, 1e-9);
    EXPECT_NEAR(layout.fragments[3].x, 0, 1e-9);
    EXPECT_NEAR(layout.fragments[0].x, 10, 1e-9);
    EXPECT_NEAR(layout.width, 14, 1e-9);
    EXPECT_NEAR(layout.height, 36, 1e-9);

    s.width = 16;
    s.attachment = 9;
    layout = layoutMText(s);
    EXPECT_EQ(layout.lines, 3u);
    EXPECT_NEAR(layout.box.right, 0, 1e-9);
    EXPECT_NEAR(layout.box.bottom, 0, 1e-9);

    s.flow = 5;
    EXPECT_EQ(layoutMText(s).fragments[0].text, "AB");
    s.style.vertical = true;
    EXPECT_EQ(layoutMText(s).fragments[0].text, "A");
}

TEST(MTextLayout, FragmentTextKeepsItsSigns)
{
    for (const char* contents : {"50%%% and 100", "%%%%%%u", "%%%%%%%%%", "45%%d"}) {
        const MTextLayout layout = layoutMText(spec(contents));
        EXPECT_EQ(plainText(fragmentText(layout.fragments.at(0))), layout.fragments[0].text) << contents;
    }
    EXPECT_EQ(fragmentText(layoutMText(spec("\\L\\Oab")).fragments.at(0)), "%%u%%oab");
}

TEST(MTextLayout, NothingGivesNothing)
{
    for (const char* contents : {"", "{}", "\\L\\l"}) {
        const MTextLayout layout = layoutMText(spec(contents));
        EXPECT_TRUE(layout.fragments.empty());
        EXPECT_EQ(layout.width, 0);
        EXPECT_EQ(layout.height, 0);
    }
}

TEST(MTextLayout, NonsenseValuesAreHarmless)
{
    for (const double bad : {0.0, -1.0, double(NAN), double(INFINITY)}) {
        auto s = spec("A\\S1/2;B^IC\\PD");
        s.height = s.spacingFactor = s.style.widthFactor = s.style.oblique = s.columns.width = bad;
        s.columns.count = 1 << 30;
        s.attachment = 77;
        const MTextLayout layout = layoutMText(s);
        EXPECT_TRUE(std::isfinite(layout.width) && layout.width > 0);
        EXPECT_TRUE(std::isfinite(layout.height) && layout.height > 0);
    }
}

TEST(MTextLayout, LargeContentsTakeTimeInProportion)
{
    for (const char* part : {"word ", "w", "\\P", "{\\C1;a}b ", "^I", "A\\S1/2; ", "\\ptd4,r8;1.5^I2.5^I"}) {
        std::string text;
        while (text.size() < 2'000'000)
            text += part;
        const auto start = std::chrono::steady_clock::now();
        const MTextLayout layout = wrapped(std::move(text), 100);
        const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
        EXPECT_GT(layout.lines, 0u);
        EXPECT_LT(taken.count(), 10) << part;
    }
}
