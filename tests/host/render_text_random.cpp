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
    void expectInside(const vk::geom::Box3d& ink, const VcDbExtents& extents, double hundredth,
                      const std::wstring& said)
    {
        const std::string text(said.begin(), said.end());
        ASSERT_FALSE(ink.isEmpty()) << text;
        EXPECT_GE(ink.min.x, extents.minPoint().x - hundredth) << text;
        EXPECT_GE(ink.min.y, extents.minPoint().y - hundredth) << text;
        EXPECT_LE(ink.max.x, extents.maxPoint().x + hundredth) << text;
        EXPECT_LE(ink.max.y, extents.maxPoint().y + hundredth) << text;
    }

private:
    std::mt19937 m_random{20240229};
    int m_styles = 0;
};

}

TEST_F(RandomTexts, OfOneLineAreDrawnWithinTheirExtentsAndFillThem)
{
    for (int round = 0; round < 400; ++round) {
        const double height = number(3, 12), turn = chance(0.5) ? 0 : number(0, 6);
        const std::wstring said = words(1 + round % 6);
        auto* made = new VcDbText({turn == 0 ? 100.0 : 500.0, 500, 0}, said.c_str(), height, turn);
        VcDbText& text = add(made);
        const bool vertical = chance(0.1);
        text.setTextStyle(style(vertical));
        text.setWidthFactor(number(0.4, 2));
        text.setOblique(chance(0.5) ? 0 : number(-0.5, 0.5));
        text.mirrorInX(chance(0.1));
        text.mirrorInY(chance(0.1));
        VcDbExtents extents;
        ASSERT_EQ(text.getGeomExtents(extents), Vcad::eOk);
        paint();
        expectInside(ink(0), extents, height / 100, said);
        // The last letter is an H, whose bearing is all that the extents may be longer by.
        if (turn == 0 && text.oblique() == 0 && !vertical && !text.isMirroredInX()) {
            EXPECT_NEAR(ink(0).max.x, extents.maxPoint().x, 0.3 * height * text.widthFactor());
        }
        text.erase();
        if (HasFailure())
            return;
    }
}
