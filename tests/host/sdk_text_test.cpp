// Texts, attributes and texts of many lines: where they hang, what their flags are, and what the strings are worth.
#include "tests/host/sdk_samples.h"

#include <cmath>

namespace {

std::unique_ptr<VcDbText> plainText(const wchar_t* contents = L"Abc")
{
    auto text = std::make_unique<VcDbText>(VcGePoint3d(1, 2, 0), contents, 2.5);
    return text;
}

VcGePoint3d middleOf(const VcDbEntity& entity)
{
    VcDbExtents box;
    EXPECT_EQ(entity.getGeomExtents(box), Vcad::eOk);
    return box.minPoint() + (box.maxPoint() - box.minPoint()) * 0.5;
}

struct Justification {
    int horizontal, vertical;
    // Where the alignment point stands in the box of the text: 0 at the left or the bottom, 1 at the right or the top.
    double across, up;
};

// Letters without descenders: the base line is the bottom of the box.
const Justification kJustifications[] = {
    {0, 1, 0, NAN}, {0, 2, 0, 0.5}, {0, 3, 0, 1},   {1, 0, 0.5, 0}, {1, 2, 0.5, 0.5},
    {1, 3, 0.5, 1}, {2, 0, 1, 0},   {2, 2, 1, 0.5}, {2, 3, 1, 1},
};

TEST(TextAlignment, HangsTheTextOnItsPointInEveryMode)
{
    SdkDrawing drawing;
    for (const Justification& j : kJustifications) {
        SCOPED_TRACE(testing::Message() << j.horizontal << ' ' << j.vertical);
        const VcDbObjectId id = drawing.add(plainText(L"HHH"));
        Writing<VcDbText> text(id);
        text->setHorizontalMode(VcDb::TextHorzMode(j.horizontal));
        text->setVerticalMode(VcDb::TextVertMode(j.vertical));
        ASSERT_EQ(text->setAlignmentPoint({50, 60, 0}), Vcad::eOk);
        EXPECT_FALSE(text->isDefaultAlignment());
        VcDbExtents box;
        ASSERT_EQ(text->getGeomExtents(box), Vcad::eOk);
        const double width = box.maxPoint().x - box.minPoint().x, height = box.maxPoint().y - box.minPoint().y;
        EXPECT_NEAR((50 - box.minPoint().x) / width, j.across, 0.12) << "but for the space beside the letters";
        if (!std::isnan(j.up)) {
            EXPECT_NEAR((60 - box.minPoint().y) / height, j.up, 0.02);
        }
        ASSERT_EQ(text->setTextString(L"HHHHHHHHH"), Vcad::eOk);
        EXPECT_EQ(text->alignmentPoint(), VcGePoint3d(50, 60, 0)) << "a longer text hangs on the same point";
        VcDbExtents longer;
        text->getGeomExtents(longer);
        EXPECT_NEAR((50 - longer.minPoint().x) / (longer.maxPoint().x - longer.minPoint().x), j.across, 0.06);
    }
}

TEST(TextAlignment, TurnsAboutItsPoint)
{
    SdkDrawing drawing;
    Writing<VcDbText> text(drawing.add(plainText()));
    text->setHorizontalMode(VcDb::kTextMid);
    text->setAlignmentPoint({10, 10, 0});
    const VcGePoint3d middle = middleOf(*text);
    EXPECT_LT(middle.distanceTo({10, 10, 0}), 0.3);
    for (const double angle : {0.5, 1.57, 3.0}) {
        text->setRotation(angle);
        EXPECT_LT(middleOf(*text).distanceTo({10, 10, 0}), 0.5) << angle;
    }
    EXPECT_EQ(text->adjustAlignment(), Vcad::eOk);
    EXPECT_EQ(VcDbText().adjustAlignment(), Vcad::eNotApplicable);
}

TEST(TextAlignment, FittedAndAlignedReachFromPointToPoint)
{
    SdkDrawing drawing;
    for (const VcDb::TextHorzMode mode : {VcDb::kTextAlign, VcDb::kTextFit}) {
        Writing<VcDbText> text(drawing.add(plainText(L"HHHH")));
        text->setPosition({0, 0, 0});
        text->setHorizontalMode(mode);
        ASSERT_EQ(text->setAlignmentPoint({30, 40, 0}), Vcad::eOk);
        EXPECT_NEAR(text->rotation(), std::atan2(40, 30), 1e-9);
        EXPECT_EQ(mode == VcDb::kTextFit, text->height() == 2.5) << "fitting changes the width alone";
        EXPECT_EQ(mode == VcDb::kTextAlign, text->widthFactor() == 1.0);
        const double height = text->height(), factor = text->widthFactor();
        text->setAlignmentPoint({60, 80, 0});
        EXPECT_NEAR(text->height() * text->widthFactor(), 2 * height * factor, 1e-6) << "twice as far, twice as long";
        text->setAlignmentPoint({0, 0, 0});
        EXPECT_TRUE(std::isfinite(text->rotation()) && text->height() > 0 && text->widthFactor() > 0)
            << "points that are one";
    }
}

TEST(TextStrings, BelongToTheCallerOrLastUntilTheChange)
{
    SdkDrawing drawing;
    Writing<VcDbText> text(drawing.add(plainText(L"one")));
    wchar_t* own = text->textString();
    text->setTextString(L"\x4e2d\x1F600");
    EXPECT_EQ(taken(own), L"one") << "the copy is the caller's";
    EXPECT_STREQ(text->textStringConst(), L"\x4e2d\x1F600");
    EXPECT_NE(text->setTextString(nullptr), Vcad::eOk);
    EXPECT_EQ(text->setTextString(L""), Vcad::eOk);
    EXPECT_STREQ(text->textStringConst(), L"");
    VcDbExtents box;
    EXPECT_NE(text->getGeomExtents(box), Vcad::eOk) << "nothing is drawn";
}

TEST(TextStrings, MirrorsAreFlagsOfTheirOwn)
{
    SdkDrawing drawing;
    const VcDbObjectId id = drawing.add(plainText());
    drawing.undoAndRedo(id, [&] { Writing<VcDbText>(id)->mirrorInX(true); });
    EXPECT_TRUE(Opened<VcDbText>(id)->isMirroredInX());
    EXPECT_FALSE(Opened<VcDbText>(id)->isMirroredInY());
    drawing.undoAndRedo(id, [&] { Writing<VcDbText>(id)->mirrorInY(true); });
    Writing<VcDbText>(id)->mirrorInX(false);
    EXPECT_FALSE(Opened<VcDbText>(id)->isMirroredInX());
    EXPECT_TRUE(Opened<VcDbText>(id)->isMirroredInY());
}

TEST(TextStyles, WidthsFollowTheStyle)
{
    SdkDrawing drawing;
    const VcDbObjectId wide = drawing.style(L"Wide"), id = drawing.add(plainText(L"WWWW"));
    EXPECT_EQ(Writing<VcDbTextStyleTableRecord>(wide)->setXScale(2), Vcad::eOk);
    EXPECT_EQ(Opened<VcDbText>(id)->textStyle(), drawing.database.textstyle());
    drawing.undoAndRedo(id, [&] { EXPECT_EQ(Writing<VcDbText>(id)->setTextStyle(wide), Vcad::eOk); });
    EXPECT_EQ(Opened<VcDbText>(id)->textStyle(), wide);
    EXPECT_EQ(Opened<VcDbText>(id)->widthFactor(), 1) << "the style's own factor is that of new texts";
}

using Definition = VcDbAttributeDefinition;

class Attributes : public testing::Test {
protected:
    SdkDrawing drawing;
    const VcDbObjectId id = addSample(drawing, "AttributeDefinition");
};

TEST_F(Attributes, FlagsAreSetOneByOne)
{
    struct {
        Vcad::ErrorStatus (*set)(Definition&, bool);
        bool (*get)(const Definition&);
    } const flags[] = {
        {[](Definition& d, bool on) { return d.setInvisible(on); },
         [](const Definition& d) { return d.isInvisible(); }},
        {[](Definition& d, bool on) { return d.setConstant(on); }, [](const Definition& d) { return d.isConstant(); }},
        {[](Definition& d, bool on) { return d.setVerifiable(on); },
         [](const Definition& d) { return d.isVerifiable(); }},
        {[](Definition& d, bool on) { return d.setPreset(on); }, [](const Definition& d) { return d.isPreset(); }},
        {[](Definition& d, bool on) { return d.setLockPositionInBlock(on); },
         [](const Definition& d) { return d.lockPositionInBlock(); }},
    };
    for (const auto& flag : flags)
        EXPECT_EQ(flag.set(*Writing<Definition>(id), false), Vcad::eOk);
    for (const auto& flag : flags) {
        drawing.undoAndRedo(id, [&] { EXPECT_EQ(flag.set(*Writing<Definition>(id), true), Vcad::eOk); });
        int set = 0;
        for (const auto& other : flags)
            set += other.get(*Opened<Definition>(id));
        EXPECT_EQ(set, 1) << "no other flag is touched";
        EXPECT_TRUE(flag.get(*Opened<Definition>(id)));
        flag.set(*Writing<Definition>(id), false);
    }
    EXPECT_FALSE(Opened<Definition>(id)->isMTextAttributeDefinition());
}

TEST_F(Attributes, TagsAndPromptsAreTexts)
{
    Writing<Definition> definition(id);
    EXPECT_EQ(definition->setTag(L"stra\x00df"
                                 L"e"),
              Vcad::eOk);
    EXPECT_STREQ(definition->tagConst(), definition->tagConst());
    EXPECT_EQ(taken(definition->tag()), definition->tagConst());
    for (const wchar_t* wrong : {L"", L"A B", static_cast<const wchar_t*>(nullptr)})
        EXPECT_NE(definition->setTag(wrong), Vcad::eOk);
    EXPECT_EQ(definition->setPrompt(L"Wie hei\x00dft es?"), Vcad::eOk);
    EXPECT_STREQ(definition->promptConst(), L"Wie hei\x00dft es?");
    EXPECT_EQ(taken(definition->prompt()), L"Wie hei\x00dft es?");
    EXPECT_NE(definition->setPrompt(nullptr), Vcad::eOk);
    EXPECT_EQ(definition->setPrompt(L""), Vcad::eOk);
}

TEST_F(Attributes, OfAReferenceAreWalkedAndGoOneByOne)
{
    const VcDbObjectId reference = addSample(drawing, "BlockReference");
    VcDbObjectId second;
    {
        auto* attribute = new VcDbAttribute;
        EXPECT_EQ(attribute->setAttributeFromBlock(&*Opened<Definition>(id),
                                                   Opened<VcDbBlockReference>(reference)->blockTransform()),
                  Vcad::eOk);
        EXPECT_NE(attribute->setAttributeFromBlock(nullptr, {}), Vcad::eOk);
        ASSERT_EQ(Writing<VcDbBlockReference>(reference)->appendAttribute(second, attribute), Vcad::eOk);
        attribute->close();
        EXPECT_NE(Writing<VcDbBlockReference>(reference)->appendAttribute(attribute), Vcad::eOk) << "twice";
        EXPECT_NE(Writing<VcDbBlockReference>(reference)->appendAttribute(nullptr), Vcad::eOk);
    }
    EXPECT_TRUE(Opened<VcDbAttribute>(second)->isPreset());
    EXPECT_FALSE(Opened<VcDbAttribute>(second)->isMTextAttribute());
    EXPECT_EQ(taken(Opened<VcDbAttribute>(second)->tag()), L"NAME");
    const auto count = [&] {
        std::unique_ptr<VcDbObjectIterator> at(Opened<VcDbBlockReference>(reference)->attributeIterator());
        int n = 0;
        for (at->start(); !at->done(); at->step())
            n += Opened<VcDbAttribute>(at->objectId()) ? 1 : 0;
        return n;
    };
    EXPECT_EQ(count(), 2);
    const std::size_t mark = drawing.core().undo().mark();
    Writing<VcDbAttribute>(second)->erase();
    EXPECT_EQ(count(), 1);
    drawing.core().undo().rollback(mark);
    EXPECT_EQ(count(), 2);
    const VcGePoint3d before = Opened<VcDbAttribute>(second)->alignmentPoint();
    Writing<VcDbBlockReference>(reference)->transformBy(VcGeMatrix3d::translation({1, 2, 0}));
    EXPECT_LT(Opened<VcDbAttribute>(second)->alignmentPoint().distanceTo(before + VcGeVector3d(1, 2, 0)), 1e-9)
        << "they move along";
}

class ManyLines : public testing::Test {
protected:
    SdkDrawing drawing;
    const VcDbObjectId id = addSample(drawing, "MText");
};

TEST_F(ManyLines, BreakAtTheirWidth)
{
    Writing<VcDbMText> text(id);
    text->setContents(L"one two three four five six seven eight nine ten");
    text->setRotation(0);
    text->setWidth(0);
    const double oneLine = text->actualWidth(), height = text->actualHeight();
    text->setWidth(oneLine / 3);
    EXPECT_LE(text->actualWidth(), oneLine / 3 + 1e-9);
    EXPECT_GT(text->actualHeight(), 2 * height);
    const double broken = text->actualHeight();
    text->setLineSpacingFactor(3);
    EXPECT_GT(text->actualHeight(), broken);
    text->setTextHeight(4);
    text->setWidth(0);
    EXPECT_NEAR(text->actualWidth(), 2 * oneLine, 1e-6);
}

TEST_F(ManyLines, HangOnTheAttachment)
{
    Writing<VcDbMText> text(id);
    text->setRotation(0);
    text->setLocation({100, 100, 0});
    for (int point = 1; point <= 9; ++point) {
        ASSERT_EQ(text->setAttachment(VcDbMText::AttachmentPoint(point)), Vcad::eOk);
        VcDbExtents box;
        ASSERT_EQ(text->getGeomExtents(box), Vcad::eOk);
        const double across = (100 - box.minPoint().x) / (box.maxPoint().x - box.minPoint().x);
        const double down = (box.maxPoint().y - 100) / (box.maxPoint().y - box.minPoint().y);
        EXPECT_NEAR(across, ((point - 1) % 3) * 0.5, 1e-6) << point;
        EXPECT_NEAR(down, ((point - 1) / 3) * 0.5, 1e-6) << point;
        EXPECT_EQ(text->location(), VcGePoint3d(100, 100, 0));
    }
}

TEST_F(ManyLines, DirectionsLieInTheirPlane)
{
    Writing<VcDbMText> text(id);
    EXPECT_EQ(text->setDirection({0, 5, 7}), Vcad::eOk);
    EXPECT_TRUE(text->direction().isEqualTo({0, 1, 0}));
    EXPECT_NEAR(text->rotation(), 1.57079632679489661923, 1e-12);
    EXPECT_NE(text->setDirection({0, 0, 1}), Vcad::eOk);
    EXPECT_NE(text->setDirection({}), Vcad::eOk);
    EXPECT_NE(text->setDirection({NAN, 1, 0}), Vcad::eOk);
    EXPECT_EQ(text->setNormal({0, 0, -1}), Vcad::eOk);
    EXPECT_NEAR(text->direction().dotProduct(text->normal()), 0, 1e-12);
}

TEST_F(ManyLines, TheBackgroundIsAColourOrNone)
{
    Writing<VcDbMText> text(id);
    EXPECT_TRUE(text->backgroundFillOn());
    VcCmColor color;
    color.setRGB(10, 20, 30);
    EXPECT_EQ(text->setBackgroundFillColor(color), Vcad::eOk);
    EXPECT_EQ(text->backgroundFillColor().rgb(), 0x0a141eu);
    EXPECT_EQ(text->setBackgroundFillColor(VcCmColor::fromIndex(5)), Vcad::eOk);
    EXPECT_EQ(text->backgroundFillColor().colorIndex(), 5);
    EXPECT_TRUE(text->backgroundFillColor().isByACI());
    EXPECT_EQ(text->setBackgroundFill(false), Vcad::eOk);
    EXPECT_FALSE(text->backgroundFillOn() || text->useBackgroundColorOn());
    EXPECT_EQ(text->columnType(), VcDbMText::kNoColumns);
    EXPECT_EQ(text->columnCount(), 0);
}

TEST_F(ManyLines, ContentsAreAnyTextButNull)
{
    Writing<VcDbMText> text(id);
    const std::wstring large(100000, L'x');
    EXPECT_EQ(text->setContents(large.c_str()), Vcad::eOk);
    EXPECT_EQ(taken(text->contents()), large);
    EXPECT_NE(text->setContents(nullptr), Vcad::eOk);
    EXPECT_EQ(text->setContents(L"{\\H2x;unclosed \\P\\"), Vcad::eOk);
    EXPECT_EQ(taken(text->contents()), L"{\\H2x;unclosed \\P\\");
    EXPECT_TRUE(std::isfinite(text->actualHeight()));
    EXPECT_EQ(text->setContents(L""), Vcad::eOk);
    EXPECT_GE(text->actualWidth(), 0);
}

}
