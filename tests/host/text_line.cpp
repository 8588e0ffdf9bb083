#include "host/text/text_line.h"
#include "host/text/text_codes.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cmath>

using namespace vktext;

namespace {

TextStyleSpec style(const char* font, double widthFactor = 1)
{
    TextStyleSpec s;
    s.font = font;
    s.widthFactor = widthFactor;
    return s;
}

struct CodeCase {
    const char* text;
    const char* plain;
};

const CodeCase kCodes[] = {
    {"plain", "plain"},
    {"45%%d", "45°"},
    {"%%P0.1 %%C20", "±0.1 Ø20"},
    {"100%%%", "100%"},
    {"100%", "100%"},
    {"100%%", "100%%"},
    {"%%", "%%"},
    {"%%uunder%%u %%Oover", "under over"},
    {"%%k", ""},
    {"%%065%%66%%1279", "AB°9"},
    {"%%176 %%150", "° –"},
    {"%%999", "%%999"},
    {"%%zz", "%%zz"},
    {"\\U+00B0 \\u+2205", "° ∅"},
    {"\\U+D83D\\U+DE00", "😀"},
    {"\\U+D83D", "\xED\xA0\xBD"},
    {"\\U+12", "\\U+12"},
    {"\\M+182A0", "あ"},
    {"\\M+982A0", "\\M+982A0"},
    {"\\P stays", "\\P stays"},
    {"stray \xFF byte", "stray \xFF byte"},
};

struct LengthCase {
    const char* font;
    const char* text;
    double height, widthFactor, length;
};

// Lengths that drawings record: they follow from the letters' widths, 6 sixths a letter less the gap behind the last in
// "txt", and the sum of the advances in Arial.
const LengthCase kLengths[] = {
    {"txt", "FOO", 0.75, 1, 2.0},
    {"txt", "xx", 6, 1, 10},
    {"txt", "N", 8, 1.2, 6.4},
    {"txt", "N ", 6, 1, 12},
    {"txt", "", 6, 1, 0},
    {"arial.ttf", "21/04/2020", 0.5, 1, 3.4959},
    {"arial.ttf", "This is a single line text", 5, 1, 72.21},
};

const TextStyleSpec kStyles[] = {style("txt"), style("simplex"), style("arial.ttf")};

}  // namespace

TEST(TextCodes, Plain)
{
    for (const auto& c : kCodes)
        EXPECT_EQ(plainText(c.text), c.plain) << c.text;
}

TEST(TextCodes, DecorationsHaveSpans)
{
    const DecodedText text = decodeText("a%%ubc%%ud");
    ASSERT_EQ(text.spans.size(), 2u);
    EXPECT_EQ(text.spans[0].begin, 1u);
    EXPECT_EQ(text.spans[0].decorations, kUnderline);
    EXPECT_EQ(text.spans[1].begin, 3u);
    EXPECT_EQ(text.spans[1].decorations, 0);
}

TEST(TextLine, Lengths)
{
    for (const auto& c : kLengths)
        EXPECT_NEAR(measureLine(style(c.font, c.widthFactor), c.height, c.text).length, c.length, 1e-4) << c.text;
}

TEST(TextLine, GrowsWithHeightAndWidthFactor)
{
    for (const auto& s : kStyles) {
        auto wide = s;
        wide.widthFactor = 2;
        const double length = measureLine(s, 1, "Sample").length;
        EXPECT_NEAR(measureLine(s, 3, "Sample").length, 3 * length, 1e-9);
        EXPECT_NEAR(measureLine(wide, 1, "Sample").length, 2 * length, 1e-9);
        EXPECT_NEAR(measureLine(wide, 1, "Sample").height, 1, 1e-9);
    }
}

TEST(TextLine, BoxIsThatOfTheInk)
{
    for (const auto& s : kStyles) {
        const Box low = lineBox(s, 10, "xx"), deep = lineBox(s, 10, "xg"), high = lineBox(s, 10, "H");
        EXPECT_LT(low.top, 8) << s.font;
        EXPECT_GT(low.bottom, -0.3);
        EXPECT_LT(deep.bottom, -1.5);
        EXPECT_NEAR(high.top, 10, 1e-9);
        EXPECT_NEAR(high.bottom, 0, 1e-9);
        EXPECT_EQ(lineBox(s, 10, "H   ").right, high.right) << "blanks are not drawn";
        EXPECT_GT(lineBox(s, 10, "  H").left, 5);
    }
}

TEST(TextLine, BlanksHaveTheirLength)
{
    for (const auto& s : kStyles) {
        const Box box = lineBox(s, 10, "  ");
        EXPECT_NEAR(box.right, measureLine(s, 10, "  ").length, 1e-9);
        EXPECT_EQ(box.top, 10);
        EXPECT_NEAR(lineBox(s, 10, "%%u  ").top, 10 * kUnderlineAt, 1e-9) << "a line is drawn";
        EXPECT_EQ(lineBox(s, 10, "").right, 0);
    }
}

TEST(TextLine, BoxFollowsSlantMirrorsAndDecorations)
{
    for (auto s : kStyles) {
        const Box plain = lineBox(s, 1, "HM");
        s.oblique = std::atan(0.5);
        EXPECT_NEAR(lineBox(s, 1, "HM").right, plain.right + 0.5, 1e-9);
        s.oblique = 0;
        s.backwards = true;
        EXPECT_NEAR(lineBox(s, 1, "HM").left, -plain.right, 1e-9);
        s.backwards = false;
        s.upsideDown = true;
        EXPECT_NEAR(lineBox(s, 1, "HM").bottom, -plain.top, 1e-9);
        s.upsideDown = false;
        EXPECT_NEAR(lineBox(s, 1, "%%uHM").bottom, kUnderlineAt, 1e-9);
        EXPECT_NEAR(lineBox(s, 1, "%%oHM").top, kOverlineAt, 1e-9);
        EXPECT_NEAR(lineBox(s, 1, "%%uHM").right, measureLine(s, 1, "HM").length, 1e-9);
    }
}

TEST(TextLine, Justification)
{
    using H = HorizontalMode;
    using V = VerticalMode;
    for (auto s : kStyles) {
        const double length = measureLine(s, 2, "HHH").length;
        const auto offset = [&](H h, V v) { return justificationOffset(s, 2, "HHH", h, v); };
        EXPECT_EQ(offset(H::Left, V::Baseline), VcGeVector2d(0, 0));
        EXPECT_EQ(offset(H::Right, V::Top), VcGeVector2d(length, 2));
        EXPECT_EQ(offset(H::Center, V::Middle), VcGeVector2d(length / 2, 1));
        EXPECT_EQ(offset(H::Middle, V::Bottom), VcGeVector2d(length / 2, 1));
        EXPECT_LT(offset(H::Left, V::Bottom).y, -0.3);
        s.backwards = s.upsideDown = true;
        EXPECT_EQ(offset(H::Right, V::Top), VcGeVector2d(-length, -2));
    }
}

TEST(TextLine, AlignedAndFittedTextsFillTheirDistance)
{
    for (auto s : kStyles) {
        s.widthFactor = 0.8;
        const double height = alignedHeight(s, 1, "Sample", 42);
        EXPECT_NEAR(measureLine(s, height, "Sample").length, 42, 1e-9);
        s.widthFactor = fittedWidthFactor(s, 1.5, "Sample", 42);
        EXPECT_NEAR(measureLine(s, 1.5, "Sample").length, 42, 1e-9);
        EXPECT_EQ(alignedHeight(s, 7, "", 42), 7);
        EXPECT_EQ(alignedHeight(s, 7, "A", 0), 7);
        EXPECT_EQ(fittedWidthFactor(s, 7, "A", NAN), s.widthFactor);
    }
}

TEST(TextLine, OutlineFillsTheBox)
{
    for (auto s : kStyles)
        for (const double oblique : {0.0, 0.3, -0.7})
            for (const int looks : {0, 1, 2, 3, 4}) {
                s.oblique = oblique;
                s.backwards = looks & 1;
                s.upsideDown = looks & 2;
                s.vertical = looks & 4;
                for (const char* text : {"%%uAgj%%u @É", "f", "Wj ", "a%%ob%%k c", "%%u %%uV"}) {
                    const Box box = lineBox(s, 3, text);
                    Box ink{1e9, 1e9, -1e9, -1e9};
                    const TextOutline outline = outlineLine(s, 3, text);
                    for (const auto* lines : {&outline.strokes, &outline.contours})
                        for (const auto& line : *lines)
                            for (const auto& p : line)
                                ink = {std::min(ink.left, p.x), std::min(ink.bottom, p.y), std::max(ink.right, p.x),
                                       std::max(ink.top, p.y)};
                    EXPECT_NEAR(box.left, ink.left, 0.01) << s.font << ' ' << text << ' ' << looks;
                    EXPECT_NEAR(box.right, ink.right, 0.01) << s.font << ' ' << text << ' ' << looks;
                    EXPECT_NEAR(box.bottom, ink.bottom, 0.01) << s.font << ' ' << text << ' ' << looks;
                    EXPECT_NEAR(box.top, ink.top, 0.01) << s.font << ' ' << text << ' ' << looks;
                }
            }
}

TEST(TextLine, VerticalTextRunsDown)
{
    auto s = style("txt");
    s.vertical = true;
    const Box box = lineBox(s, 2, "ABC");
    EXPECT_NEAR(box.left, -box.right, 1e-9);
    EXPECT_NEAR(box.top, 0, 1e-9);
    EXPECT_NEAR(box.bottom, -8, 1e-9);
    const auto outline = outlineLine(s, 2, "ABC");
    for (const auto& line : outline.strokes)
        for (const auto& p : line)
            EXPECT_TRUE(p.y <= 1e-9 && p.y >= -8 - 1e-9);
}

TEST(TextLine, NonsenseIsHarmless)
{
    auto s = style("txt");
    s.widthFactor = NAN;
    s.oblique = INFINITY;
    EXPECT_TRUE(std::isfinite(lineBox(s, 1, "A").right));
    EXPECT_EQ(lineBox(s, NAN, "A").top, 0);
    EXPECT_GT(lineBox(style("txt"), 1, std::string(10'000'000, '%')).right, 1e6);
}

TEST(TextLine, MeasuringIsCheap)
{
    const auto start = std::chrono::steady_clock::now();
    double sum = 0;
    for (int i = 0; i < 100'000; ++i)
        sum += lineBox(kStyles[i % 3], 2.5, "Room 1204 - Storage").right;
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
    EXPECT_GT(sum, 0);
    EXPECT_LT(taken.count(), 2.0);  // some 0.1 s where nothing else runs
}
