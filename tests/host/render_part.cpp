// A small part of a drawing looks as it does when everything is built.
#include "render_support.h"
#include "sdk/vcdb_text.h"

#include <random>

using namespace rendertest;

namespace {

class RenderPart : public Picture {
protected:
    double number(double low, double high) { return std::uniform_real_distribution<double>(low, high)(m_random); }
    VcGePoint3d place() { return {number(-4000, 5000), number(-4000, 5000), 0}; }

    VcDbEntity* polyline()
    {
        auto* line = new VcDbPolyline;
        const VcGePoint3d at = place();
        for (unsigned i = 0; i < 4; ++i)
            line->addVertexAt(i, {at.x + number(-400, 400), at.y + number(-400, 400)}, number(-1, 1), number(0, 40),
                              number(0, 40));
        return line;
    }
    VcDbEntity* maskedText()
    {
        auto* text = new VcDbMText;
        text->setContents(L"note");
        text->setTextHeight(200);
        text->setLocation(place());
        text->setBackgroundFill(true);
        text->setBackgroundFillColor(VcCmColor::fromIndex(3));
        text->setBackgroundScaleFactor(5);
        return text;
    }
    VcDbEntity* figure(int kind)
    {
        switch (kind % 6) {
        case 0:
            return new VcDbLine(place(), place());
        case 1:
            return new VcDbCircle(place(), VcGeVector3d::zAxis(), number(10, 900));
        case 2:
            return new VcDbText(place(), L"wide text", number(50, 300), number(0, 6));
        case 3:
            return polyline();
        case 4:
            return maskedText();
        default:
            return new VcDbBlockReference(place(), block("MASKED").objectId());
        }
    }
    void draw(VcDbBlockTableRecord& owner)
    {
        m_random.seed(5);
        for (int i = 0; i < 400; ++i)
            add(figure(i), {.colour = 1 + i % 6}, &owner);
    }
    std::vector<std::uint32_t> colours()
    {
        paint();
        std::vector<std::uint32_t> all;
        for (double x = 5; x < kSide; x += 14)
            for (double y = 5; y < kSide; y += 14)
                all.push_back(at(x, y));
        return all;
    }
    std::mt19937 m_random;
};

}

// The block lies on the page as a whole and is drawn with all that it has.
TEST_F(RenderPart, LooksAsItDoesInABlock)
{
    add(maskedText(), {}, &block("MASKED"));
    draw(block("ALL"));
    auto& all = add(new VcDbBlockReference({0, 0, 0}, block("ALL").objectId()));
    const auto expected = colours();
    ASSERT_EQ(all.erase(), Vcad::eOk);
    draw(space());
    EXPECT_EQ(colours(), expected);
    EXPECT_GT(std::count_if(expected.begin(), expected.end(), [](std::uint32_t c) { return c != kPage; }), 500);
}

TEST_F(RenderPart, WhatLiesFarOffIsNotBuilt)
{
    for (int i = 0; i < 50; ++i)
        line(3000, 100.0 * i, 4000, 100.0 * i);
    line(0, 500, 1000, 500);
    paint();
    EXPECT_EQ(sheet.marks.size(), 1u);
}
