#include "ent1_support.h"

using namespace ent1;

namespace {

VcDbText line(const wchar_t* text, VcDb::TextHorzMode horizontal, VcDb::TextVertMode vertical)
{
    VcDbText t;
    t.setTextString(text);
    t.setHeight(2);
    t.setHorizontalMode(horizontal);
    t.setVerticalMode(vertical);
    t.setAlignmentPoint({10, 20, 0});
    return t;
}

double widthOf(const VcDbEntity& e)
{
    VcDbExtents box;
    EXPECT_EQ(e.getGeomExtents(box), Vcad::eOk);
    return box.maxPoint().x - box.minPoint().x;
}

TEST(Ent1Text, JustificationFollowsTheAlignmentPoint)
{
    const VcDbText right = line(L"HHH", VcDb::kTextRight, VcDb::kTextBase),
                   center = line(L"HHH", VcDb::kTextCenter, VcDb::kTextTop);
    const double length = 10 - right.position().x;
    EXPECT_GT(length, 2);
    EXPECT_EQ(right.position().y, 20);
    EXPECT_NEAR(10 - center.position().x, length / 2, 1e-9);
    EXPECT_NEAR(center.position().y, 18, 1e-9);
}

TEST(Ent1Text, AChangeWorksThePositionOutAnew)
{
    VcDbText t = line(L"H", VcDb::kTextRight, VcDb::kTextBase);
    const double one = 10 - t.position().x;
    t.setTextString(L"HHHH");
    EXPECT_GT(10 - t.position().x, 3 * one);
    t.setTextString(L"H");
    t.setHeight(4);
    EXPECT_NEAR(10 - t.position().x, 2 * one, 1e-9);
    t.setHeight(2);
    t.setRotation(kPi / 2);
    expectNear(t.position(), {10, 20 - one, 0});
}

TEST(Ent1Text, AlignedTextsReachFromPointToPoint)
{
    for (const VcDb::TextHorzMode mode : {VcDb::kTextAlign, VcDb::kTextFit}) {
        VcDbText t;
        t.setTextString(L"HIH");
        t.setHeight(2);
        t.setHorizontalMode(mode);
        t.setPosition({0, 0, 0});
        t.setAlignmentPoint({0, 30, 0});
        EXPECT_NEAR(t.rotation(), kPi / 2, 1e-12);
        VcDbExtents box;
        ASSERT_EQ(t.getGeomExtents(box), Vcad::eOk);
        EXPECT_NEAR(box.maxPoint().y, 30, 1e-6);
        EXPECT_EQ(t.height() == 2, mode == VcDb::kTextFit);
        EXPECT_EQ(t.widthFactor() == 1, mode == VcDb::kTextAlign);
    }
}

TEST(Ent1Text, AMirroredTextIsBackwards)
{
    VcDbText t({1, 2, 0}, L"ABC", 2, 0);
    const double width = widthOf(t);
    ASSERT_EQ(t.transformBy(mirrorInX()), Vcad::eOk);
    EXPECT_TRUE(t.isMirroredInX());
    EXPECT_NEAR(t.rotation(), 0, 1e-12);
    expectExtents(t, {-1 - width, 2, 0}, {-1, 4, 0});
}

// A slanted, narrowed and turned text under matrices that no rotation and scale could make.
TEST(Ent1Text, AnUnevenScaleGoesIntoWidthAndSlant)
{
    for (const VcGeMatrix3d& m :
         {uneven(), shear(), uneven() * mirrorInX(), shear() * VcGeMatrix3d::rotation(1, {0, 0, 1})}) {
        VcDbText t({1, 2, 0}, L"HH", 2, 0.4);
        t.setWidthFactor(0.8);
        VcDbText upright = t;
        ASSERT_EQ(t.transformBy(m), Vcad::eOk);
        EXPECT_NEAR(t.height() * t.height() * t.widthFactor(), 4 * 0.8 * std::fabs(m.det()), 1e-9);
        ASSERT_EQ(t.transformBy(m.inverse()), Vcad::eOk);
        EXPECT_NEAR(t.height(), 2, 1e-9);
        EXPECT_NEAR(t.widthFactor(), 0.8, 1e-9);
        EXPECT_NEAR(t.oblique(), 0, 1e-9);
        EXPECT_EQ(t.isMirroredInX(), false);
        expectNear(t.position(), upright.position());
    }
}

TEST(Ent1Text, StringsStayValidUntilTheChange)
{
    VcDbText t({0, 0, 0}, L"ärger", 1);
    const wchar_t* text = t.textStringConst();
    EXPECT_STREQ(text, L"ärger");
    EXPECT_EQ(text, t.textStringConst());
    t.setTextString(L"new");
    EXPECT_STREQ(t.textStringConst(), L"new");
}

TEST(Ent1Attribute, TagsAreCapitalsWithoutBlanks)
{
    VcDbAttributeDefinition definition;
    EXPECT_EQ(definition.setTag(L"room_no"), Vcad::eOk);
    EXPECT_STREQ(definition.tagConst(), L"ROOM_NO");
    EXPECT_NE(definition.setTag(L"room no"), Vcad::eOk);
    EXPECT_NE(definition.setTag(L""), Vcad::eOk);
    EXPECT_STREQ(definition.tagConst(), L"ROOM_NO");
}

TEST(Ent1Attribute, ADefinitionIsAsWideAsItsTag)
{
    VcDbAttributeDefinition definition;
    definition.setTag(L"HHHH");
    definition.setTextString(L"H");
    VcDbText shown({0, 0, 0}, L"HHHH", definition.height());
    EXPECT_NEAR(widthOf(definition), widthOf(shown), 1e-9);
}

TEST(Ent1Attribute, ComesFromItsDefinitionIntoTheReferencesPlace)
{
    VcDbAttributeDefinition definition;
    definition.setTag(L"N");
    definition.setInvisible(true);
    definition.setPosition({1, 0, 0});
    definition.setHeight(2);
    VcDbAttribute attribute;
    const VcGeMatrix3d place =
        VcGeMatrix3d::translation({10, 10, 0}) * VcGeMatrix3d::rotation(kPi / 2, {0, 0, 1}) * VcGeMatrix3d::scaling(3);
    ASSERT_EQ(attribute.setAttributeFromBlock(&definition, place), Vcad::eOk);
    EXPECT_STREQ(attribute.tagConst(), L"N");
    EXPECT_TRUE(attribute.isInvisible());
    EXPECT_NEAR(attribute.height(), 6, 1e-12);
    EXPECT_NEAR(attribute.rotation(), kPi / 2, 1e-12);
    expectNear(attribute.position(), {10, 13, 0});
}

// Texts of many lines

VcDbMText block(const wchar_t* contents, double width = 0)
{
    VcDbMText t;
    t.setContents(contents);
    t.setTextHeight(2);
    t.setWidth(width);
    return t;
}

TEST(Ent1MText, RotationAndDirectionAreOneThing)
{
    VcDbMText t;
    ASSERT_EQ(t.setDirection({0, 3, 0}), Vcad::eOk);
    EXPECT_NEAR(t.rotation(), kPi / 2, 1e-12);
    ASSERT_EQ(t.setRotation(kPi), Vcad::eOk);
    EXPECT_NEAR(t.direction().x, -1, 1e-12);
    EXPECT_NE(t.setDirection({0, 0, 1}), Vcad::eOk);
    ASSERT_EQ(t.setNormal({0, 0, -1}), Vcad::eOk);
    EXPECT_EQ(t.rotation(), kPi);
    // Seen from below, the X axis of the text's plane points the other way.
    EXPECT_NEAR(t.direction().x, 1, 1e-12);
}

TEST(Ent1MText, TheActualSizeFollowsTheContents)
{
    VcDbMText t = block(L"HHHH");
    const double width = t.actualWidth(), height = t.actualHeight();
    EXPECT_NEAR(height, 2, 0.1);
    t.setContents(L"HHHH\\PHHHHHHHH");
    EXPECT_GT(t.actualWidth(), 1.8 * width);
    EXPECT_NEAR(t.actualHeight(), height + 2 * 5 / 3.0, 1e-6);
    t.setLineSpacingFactor(2);
    EXPECT_NEAR(t.actualHeight(), height + 4 * 5 / 3.0, 1e-6);
}

TEST(Ent1MText, ExtentsHangOnTheAttachment)
{
    VcDbMText t = block(L"HHH");
    t.setLocation({5, 5, 0});
    t.setAttachment(VcDbMText::kBottomRight);
    VcDbExtents box;
    ASSERT_EQ(t.getGeomExtents(box), Vcad::eOk);
    EXPECT_NEAR(box.maxPoint().x, 5, 1e-9);
    EXPECT_NEAR(box.minPoint().y, 5, 1e-9);
    t.setRotation(kPi);
    ASSERT_EQ(t.getGeomExtents(box), Vcad::eOk);
    EXPECT_NEAR(box.minPoint().x, 5, 1e-9);
    EXPECT_NEAR(box.maxPoint().y, 5, 1e-9);
}

TEST(Ent1MText, AMirrorKeepsTheLettersReadableInTheMirroredPlace)
{
    VcDbMText t = block(L"HH H\\PH");
    t.setLocation({5, 5, 0});
    t.setRotation(0.3);
    VcDbExtents before, after;
    ASSERT_EQ(t.getGeomExtents(before), Vcad::eOk);
    ASSERT_EQ(t.transformBy(mirrorInX()), Vcad::eOk);
    ASSERT_EQ(t.getGeomExtents(after), Vcad::eOk);
    EXPECT_NEAR(after.minPoint().x, -before.maxPoint().x, 1e-6);
    EXPECT_NEAR(after.maxPoint().x, -before.minPoint().x, 1e-6);
    EXPECT_NEAR(after.minPoint().y, before.minPoint().y, 1e-6);
    EXPECT_EQ(t.attachment(), VcDbMText::kTopRight);
    EXPECT_EQ(t.transformBy(uneven()), Vcad::eCannotScaleNonUniformly);
}

// Turned over along its lines where that turns it less: it is not read head down.
TEST(Ent1MText, AMirrorAlongTheLinesKeepsTheirDirection)
{
    VcDbMText t = block(L"HH");
    t.setLocation({5, 5, 0});
    t.setRotation(0.3);
    VcDbExtents before, after;
    ASSERT_EQ(t.getGeomExtents(before), Vcad::eOk);
    const VcGeMatrix3d mirror = VcGeMatrix3d::scaling(VcGeScale3d(1, -1, 1));
    ASSERT_EQ(t.transformBy(mirror), Vcad::eOk);
    EXPECT_NEAR(t.rotation(), 2 * kPi - 0.3, 1e-9);
    EXPECT_EQ(t.attachment(), VcDbMText::kBottomLeft);
    ASSERT_EQ(t.getGeomExtents(after), Vcad::eOk);
    EXPECT_NEAR(after.minPoint().y, -before.maxPoint().y, 1e-6);
    EXPECT_NEAR(after.maxPoint().x, before.maxPoint().x, 1e-6);
    ASSERT_EQ(t.transformBy(mirror), Vcad::eOk);
    EXPECT_NEAR(t.rotation(), 0.3, 1e-9);
    EXPECT_EQ(t.attachment(), VcDbMText::kTopLeft);
}

TEST(Ent1MText, ExplodesIntoALineOfTextForEachLook)
{
    VcDbMText t = block(L"one {\\C1;two}\\Pthree");
    t.setLocation({100, 50, 0});
    t.setColorIndex(3);
    const auto pieces = explode(t);
    ASSERT_EQ(pieces.size(), 3u);
    const auto* red = VcDbText::cast(pieces[1].get());
    const auto* last = VcDbText::cast(pieces[2].get());
    ASSERT_TRUE(red && last);
    EXPECT_STREQ(red->textStringConst(), L"two");
    EXPECT_EQ(red->colorIndex(), 1);
    EXPECT_EQ(last->colorIndex(), 3);
    EXPECT_EQ(last->height(), 2);
    expectNear(last->position(), {100, 48 - 10 / 3.0, 0}, 1e-6);
    EXPECT_GT(red->position().x, 101);
}

TEST(Ent1MText, BackgroundValuesHaveRanges)
{
    VcDbMText t;
    EXPECT_FALSE(t.backgroundFillOn());
    EXPECT_EQ(t.setBackgroundFill(true), Vcad::eOk);
    EXPECT_EQ(t.setBackgroundScaleFactor(5), Vcad::eOk);
    EXPECT_NE(t.setBackgroundScaleFactor(0.5), Vcad::eOk);
    EXPECT_EQ(t.setBackgroundFillColor(VcCmColor::fromIndex(2)), Vcad::eOk);
    EXPECT_TRUE(t.backgroundFillOn());
    EXPECT_EQ(t.backgroundScaleFactor(), 5);
    EXPECT_EQ(t.backgroundFillColor().colorIndex(), 2);
}

}
