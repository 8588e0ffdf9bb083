#include "host/text/mtext_parser.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cmath>

using namespace vktext;

namespace {

MTextContent parse(std::string_view contents)
{
    CharFormat base;
    base.height = 2;
    FontRequest font;
    font.font = "txt";
    return parseMText(contents, base, font);
}

// Characters, with a bar wherever the look changes.
std::string marked(std::string_view contents)
{
    const MTextContent content = parse(contents);
    std::string out;
    for (std::size_t i = 0; i < content.tokens.size(); ++i) {
        const auto& t = content.tokens[i];
        if (i > 0 && t.format != content.tokens[i - 1].format)
            out += '|';
        out += t.kind == MTextToken::Kind::Text
                   ? toUtf8(std::u32string_view(content.chars).substr(t.begin, t.end - t.begin))
                   : std::string(1, "?\t/\n\f"[int(t.kind)]);
    }
    return out;
}

CharFormat formatOfLast(std::string_view contents)
{
    const MTextContent content = parse(contents);
    return content.formats[content.tokens.back().format];
}

struct TextCase {
    const char* contents;
    const char* expected;
};

const TextCase kPlain[] = {
    {"plain", "plain"},
    {"a\\Pb", "a\nb"},
    {"a\\~b", "a\u00A0b"},
    {"\\\\ \\{ \\}", "\\ { }"},
    {"{\\Lunder\\l} line", "under line"},
    {"{\\fArial|b1|i0|c0|p34;bold}", "bold"},
    {"{\\Fromans,extfont;x}", "x"},
    {"\\H2.5x;big \\H3;three", "big three"},
    {"\\H2.5xnosemicolon", "nosemicolon"},
    {"\\C1;red\\c255;true", "redtrue"},
    {"\\A1;\\T1.2;\\Q15;\\W0.8;x", "x"},
    {"\\pi-3,l4,t4,c8;item", "item"},
    {"\\S1/2;", "1/2"},
    {"\\S+0.1^-0.2;", "+0.1^-0.2"},
    {"\\S3#4;x", "3/4x"},
    {"\\S2^ ;", "2^"},
    {"\\Sa\\/b/c;", "a/b/c"},
    {"\\Sa\\;b/c;d", "a;b/cd"},
    {"\\Sno parts;", "no parts"},
    {"\\Sunterminated/stack", "unterminated/stack"},
    {"a^Ib^Jc^Md^ e", "a\tb\ncd^e"},
    {"2^5 ^", "2^5 ^"},
    {"45%%d %%c20 %%p1 50%%%", "45° Ø20 ±1 50%"},
    {"\\U+2205\\U+00e9", "∅é"},
    {"\\M+182A0", "あ"},
    {"above\\Xbelow", "above\nbelow"},
    {"one\\Ntwo", "one\ntwo"},
    {"C:\\zebra \\", "C:\\zebra \\"},
    {"\\Hx;", "\\Hx;"},
    {"\\fno semicolon", "\\fno semicolon"},
    {"}}a{{b", "ab"},
    {"", ""},
    {"two\r\nlines\tand", "two\nlines\tand"},
    {"\\", "\\"},
    {"\\S", ""},
    {"\\H", "\\H"},
};

const TextCase kLooks[] = {
    {"a\\Lb\\lc", "a|b|c"},
    {"a{\\C1;b}c", "a|b|c"},
    {"a{b}c", "abc"},
    {"a\\H2;b", "ab"},  // the height it has already
    {"{a\\C3;}b", "a"
                  "b"},
    {"a%%ub%%uc", "a|b|c"},
};

}  // namespace

TEST(MTextParser, Plain)
{
    for (const auto& c : kPlain)
        EXPECT_EQ(plainMText(c.contents), c.expected) << c.contents;
}

TEST(MTextParser, LooksChangeWhereTheCodesStand)
{
    for (const auto& c : kLooks)
        EXPECT_EQ(marked(c.contents), c.expected) << c.contents;
}

TEST(MTextParser, Values)
{
    EXPECT_EQ(formatOfLast("\\H5;x").height, 5);
    EXPECT_EQ(formatOfLast("\\H1.5x;x").height, 3);
    EXPECT_EQ(formatOfLast("\\H1.5x;\\H2x;x").height, 6);
    EXPECT_EQ(formatOfLast("{\\H5;a}x").height, 2);
    EXPECT_EQ(formatOfLast("\\H0;x").height, 2);
    EXPECT_EQ(formatOfLast("\\W0.7;x").widthFactor, 0.7);
    EXPECT_NEAR(formatOfLast("\\Q-15;x").oblique, -M_PI / 12, 1e-12);
    EXPECT_EQ(formatOfLast("\\T2;x").tracking, 2);
    EXPECT_EQ(formatOfLast("\\W0.5;\\W3x;x").widthFactor, 1.5);
    EXPECT_EQ(formatOfLast("\\T2;\\T0.5x;x").tracking, 1);
    EXPECT_EQ(formatOfLast("\\W2;\\W-1x;\\W0;x").widthFactor, 2);
    EXPECT_EQ(formatOfLast("\\A2;x").alignment, LineAlignment::Top);
    EXPECT_EQ(formatOfLast("\\C4;x").color, (TextColor{TextColor::Kind::Index, 4}));
    EXPECT_EQ(formatOfLast("\\C999;x").color, TextColor{});
    EXPECT_EQ(formatOfLast("\\c16711680;x").color, (TextColor{TextColor::Kind::True, 0x0000FF}));
    EXPECT_EQ(formatOfLast("\\L\\O\\Kx").decorations, kUnderline | kOverline | kStrike);
    EXPECT_EQ(formatOfLast("\\L\\O\\K\\ox").decorations, kUnderline | kStrike);
}

TEST(MTextParser, Fonts)
{
    const MTextContent content = parse("{\\fArial Narrow|b1|i1;x}\\Fromans.shx,big.shx;y\\f|b1;z");
    const auto font = [&](std::size_t token) {
        return content.fonts[content.formats[content.tokens[token].format].font];
    };
    ASSERT_EQ(content.tokens.size(), 3u);
    EXPECT_EQ(font(0).font, "Arial Narrow");
    EXPECT_TRUE(font(0).bold && font(0).italic);
    EXPECT_EQ(font(1).font, "romans.shx");
    EXPECT_EQ(font(1).bigFont, "big.shx");
    EXPECT_EQ(font(2).font, "romans.shx");
    EXPECT_TRUE(font(2).bold);
}

TEST(MTextParser, Paragraphs)
{
    const MTextContent content = parse("\\pxi-3,l4.5,r1,qc,b2,a1,sm1.5,t4,c8,d12;a\\P\\pi*,ql;b");
    const ParagraphFormat& first = content.paragraphs[content.tokens.front().paragraph];
    EXPECT_EQ(first.indent, -3);
    EXPECT_EQ(first.left, 4.5);
    EXPECT_EQ(first.right, 1);
    EXPECT_EQ(first.before, 2);
    EXPECT_EQ(first.after, 1);
    EXPECT_EQ(first.alignment, ParagraphAlignment::Center);
    EXPECT_EQ(first.spacing, ParagraphFormat::Spacing::Multiple);
    EXPECT_EQ(first.spacingValue, 1.5);
    ASSERT_TRUE(first.tabs);
    EXPECT_EQ(*first.tabs, (std::vector<TabStop>{{4, TabKind::Left}, {8, TabKind::Center}, {12, TabKind::Decimal}}));
    EXPECT_EQ(content.finalParagraph.indent, 0);
    EXPECT_EQ(content.finalParagraph.left, 4.5);
    EXPECT_EQ(content.finalParagraph.alignment, ParagraphAlignment::Left);
}

TEST(MTextParser, Stacks)
{
    const MTextContent content = parse("\\S1^ 2;");
    const auto& stack = content.tokens.front();
    EXPECT_EQ(stack.kind, MTextToken::Kind::Stack);
    EXPECT_EQ(stack.stack, StackKind::Tolerance);
    EXPECT_EQ(content.chars.substr(stack.begin, stack.middle - stack.begin), U"1");
    EXPECT_EQ(content.chars.substr(stack.middle, stack.end - stack.middle), U"2");
}

// Each of these once ran away in some program.
TEST(MTextParser, HostileContentsTakeTimeInProportion)
{
    const auto repeated = [](std::string_view part, std::size_t size) {
        std::string text;
        while (text.size() < size)
            text += part;
        return text;
    };
    for (const char* part : {"{", "}", "\\f", "\\S", "\\p", "{\\H1.1x;a", "\\L\\l", "^", "%%", "\\S1/",
                             "\\pi1,t1,2,3;a", "{\\pi1;a}", "\\H1e300x;x", "\\M+1", "\\U+D83D", "\\fA;x\\fB;y"}) {
        const std::string contents = repeated(part, std::string_view(part) == "{" ? 10'000'000 : 3'000'000);
        const auto start = std::chrono::steady_clock::now();
        plainMText(contents);
        const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
        EXPECT_LT(taken.count(), 8) << part;
    }
}

TEST(MTextParser, HeightsStayFinite)
{
    std::string text;
    for (int i = 0; i < 2000; ++i)
        text += "\\H1000x;";
    EXPECT_TRUE(std::isfinite(formatOfLast(text + "x").height));
}
