// Texts put together at random from every code: what is drawn and what their extents say is one thing.
#include "render_support.h"
#include "sdk/vcdb_text.h"

#include <fmt/format.h>
#include <random>

using namespace rendertest;

namespace {

constexpr const char* kFonts[] = {"txt",       "simplex",   "romanc", "gothice",    "isocp",
                                  "arial.ttf", "times.ttf", "gdt",    "no such.shx"};
constexpr const char* kWords[] = {"H",     "gjpqy", "word", "Wide",    "12.5",      "x",        "(Q)",
                                  "%%c40", "90%%d", "%%p2", "100%%%",  "\\U+00C4g", "\\U+0416", "\\M+18140",
                                  "%%065", "\\~",   "\\\\", "\\{a\\}", "^ ",        "f"};
constexpr const char* kFaces[] = {"Arial", "Times New Roman", "Courier New"};

class RandomTexts : public Picture {
protected:
    double number(double low, double high) { return std::uniform_real_distribution<double>(low, high)(m_random); }
    bool chance(double p) { return number(0, 1) < p; }
    template <std::size_t N>
    const char* oneOf(const char* const (&all)[N])
    {
        return all[std::uniform_int_distribution<std::size_t>(0, N - 1)(m_random)];
    }
    VcDbObjectId style(bool vertical)
    {
        auto& record = *db().objectAs<VcDbTextStyleTableRecord>(
            db().recordFor(NameTable::TextStyle, fmt::format("S{}", ++m_styles)));
        record.setFontFiles(oneOf(kFonts), "");
        record.setIsVertical(vertical);
        return record.objectId();
    }
    std::wstring words(int count)
    {
        std::string all;
        for (int i = 0; i < count; ++i)
            all += (chance(0.1)   ? "%%u"
                    : chance(0.1) ? "%%o"
                    : chance(0.1) ? "%%k"
                                  : "") +
                   std::string(oneOf(kWords)) + (chance(0.4) ? " " : "");
        return std::wstring(all.begin(), all.end()) + L"H";
    }

    // Along axes that the text is turned by.
    vk::geom::Box3d ink(double turn) const
    {
        vk::geom::Box3d box;
        const VcGeMatrix3d back = VcGeMatrix3d::rotation(-turn, VcGeVector3d::zAxis());
        for (const Sheet::Mark& mark : sheet.marks)
            for (const auto& points : {mark.line, mark.area.points})
                for (const Point2& p : points)
                    box.add(back * VcGePoint3d(p.x, kSide - p.y, 0));
        return box;
    }
    // The box that the ink has along the text's own axes is what the extents are made of.
    void expectExtents(const VcDbEntity& entity, double turn, double height, const std::wstring& said)
    {
        VcDbExtents extents;
        ASSERT_EQ(entity.getGeomExtents(extents), Vcad::eOk);
        const VcGePoint3d &low = extents.minPoint(), &high = extents.maxPoint();
        if (low.x < 0 || low.y < 0 || high.x > kSide || high.y > kSide)
            return;
        ++m_compared;
        paint();
        const std::string text(said.begin(), said.end());
        const vk::geom::Box3d own = ink(turn);
        ASSERT_FALSE(own.isEmpty()) << text;
        vk::geom::Box3d turned;
        const VcGeMatrix3d there = VcGeMatrix3d::rotation(turn, VcGeVector3d::zAxis());
        for (const double x : {own.min.x, own.max.x})
            for (const double y : {own.min.y, own.max.y})
                turned.add(there * VcGePoint3d(x, y, 0));
        EXPECT_NEAR(turned.min.x, low.x, height / 100) << text << " left";
        EXPECT_NEAR(turned.min.y, low.y, height / 100) << text << " bottom";
        EXPECT_NEAR(turned.max.x, high.x, height / 100) << text << " right";
        EXPECT_NEAR(turned.max.y, high.y, height / 100) << text << " top";
    }
    // A word or two that codes change the looks of.
    std::wstring coded(int depth)
    {
        const std::wstring inner = depth > 0 && chance(0.4) ? coded(depth - 1) : plainWords();
        const auto with = [&](const std::string& code) {
            return L"{" + std::wstring(code.begin(), code.end()) + inner + L"}";
        };
        switch (std::uniform_int_distribution<int>(0, 15)(m_random)) {
        case 0:
            return with(fmt::format("\\H{:.2f}x;", number(0.6, 1.8)));
        case 1:
            return with(fmt::format("\\W{:.2f};", number(0.5, 1.6)));
        case 2:
            return with(fmt::format("\\T{:.2f};", number(0.75, 2)));
        case 3:
            return with(fmt::format("\\Q{:.1f};", number(-40, 40)));
        case 4:
            return with(fmt::format("\\A{};", int(number(0, 2.99))));
        case 5:
            return with(fmt::format("\\f{}|b{}|i{};", oneOf(kFaces), int(chance(0.5)), int(chance(0.5))));
        case 6:
            return with(fmt::format("\\F{};", oneOf(kFonts)));
        case 7:
            return with("\\L") + L" ";
        case 8:
            return with("\\O");
        case 9:
            return with("\\K");
        case 10:
            return with("\\C3;\\c255;");
        case 11:
            return L"\\S1g/2;" + inner;
        case 12:
            return inner + L"\\S+0.1^-0.2;";
        case 13:
            return L"\\S7#16;" + inner;
        case 14:
            return inner + L"^I" + plainWords();
        default:
            return L"\\p" + std::wstring(chance(0.5) ? L"i1,l2,q" : L"q") + L"lrcjd"[int(number(0, 4.99))] + L";" +
                   inner;
        }
    }
    std::wstring plainWords()
    {
        const std::string one = oneOf(kWords), two = chance(0.5) ? std::string(" ") + oneOf(kWords) : "";
        const std::string all = one + two;
        return std::wstring(all.begin(), all.end());
    }
    std::wstring paragraphs()
    {
        std::wstring all = L"H";
        for (int parts = 1 + int(number(0, 4)); parts > 0; --parts)
            all += coded(2) + (chance(0.3) ? L"\\P" : chance(0.5) ? L" " : L"");
        return all;
    }
    VcDbMText& addParagraphs(const std::wstring& said, double height, double turn, bool isCoded)
    {
        auto* made = new VcDbMText;
        made->setLocation({500, 500, 0});
        made->setTextHeight(height);
        made->setContents(said.c_str());
        made->setAttachment(VcDbMText::AttachmentPoint(1 + int(number(0, 8.99))));
        VcDbMText& text = add(made);
        text.setTextStyle(style(false));
        text.setRotation(turn);
        text.setWidth(chance(0.5) ? 0 : number(2, 30) * height);
        if (isCoded && chance(0.3)) {
            text.setLineSpacingStyle(VcDb::kExactly);
            text.setLineSpacingFactor(number(0.5, 2));
        }
        return text;
    }
    int m_compared = 0;

private:
    std::mt19937 m_random{20240229};
    int m_styles = 0;
};

}

TEST_F(RandomTexts, OfOneLineFillTheirExtents)
{
    for (int round = 0; round < 600 && !HasFailure(); ++round) {
        const double height = number(3, 12), turn = chance(0.5) ? 0 : number(0, 6);
        const std::wstring said = words(1 + round % 6);
        VcDbText& text = add(new VcDbText({turn == 0 ? 100.0 : 500.0, 500, 0}, said.c_str(), height, turn));
        text.setTextStyle(style(chance(0.1)));
        text.setWidthFactor(number(0.4, 2));
        text.setOblique(chance(0.5) ? 0 : number(-0.8, 0.8));
        text.mirrorInX(chance(0.2));
        text.mirrorInY(chance(0.2));
        if (chance(0.4)) {
            text.setHorizontalMode(VcDb::TextHorzMode(int(number(0, 4.99))));
            text.setVerticalMode(VcDb::TextVertMode(int(number(0, 3.99))));
            text.setAlignmentPoint({500, 500, 0});
        }
        expectExtents(text, text.rotation(), text.height(), said);
        text.erase();
    }
    EXPECT_GT(m_compared, 500);
}

TEST_F(RandomTexts, OfManyLinesFillTheirExtents)
{
    for (int round = 0; round < 600 && !HasFailure(); ++round) {
        const double height = number(5, 9), turn = chance(0.6) ? 0 : number(0, 6);
        const bool isCoded = round % 4 != 0;
        const std::wstring said = isCoded ? paragraphs() : plainWords() + L"H";
        VcDbMText& text = addParagraphs(said, height, turn, isCoded);
        expectExtents(text, turn, height, said);
        text.erase();
    }
    EXPECT_GT(m_compared, 500);
}

// A reference has the extents of what stands in it, and an attribute its own.
TEST_F(RandomTexts, OfBlocksFillTheirExtents)
{
    for (int round = 0; round < 60 && !HasFailure(); ++round) {
        auto& block = *db().objectAs<VcDbBlockTableRecord>(db().recordFor(NameTable::Block, fmt::format("B{}", round)));
        const std::wstring said = round % 2 ? words(2) : paragraphs();
        VcDbEntity* member = nullptr;
        if (round % 2) {
            member = new VcDbText({0, 0, 0}, said.c_str(), 8, 0);
        } else {
            auto* text = new VcDbMText;
            text->setTextHeight(8);
            text->setContents(said.c_str());
            member = text;
        }
        VcDbObjectId id;
        ASSERT_EQ(block.appendVcDbEntity(id, member), Vcad::eOk);
        member->close();
        VcDbBlockReference& reference = add(new VcDbBlockReference({300, 400, 0}, block.objectId()));
        const double scale = number(0.7, 1.5);
        reference.setScaleFactors({scale, scale, scale});
        expectExtents(reference, 0, 8 * scale, said);
        reference.erase();
    }
    EXPECT_GT(m_compared, 40);
}
