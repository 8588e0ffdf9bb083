// Texts are drawn where their extents and boxes say.
#include "host/base/rb.h"
#include "host/base/unicode.h"
#include "host/db/host_services.h"
#include "host/geom/box.h"
#include "host/io/drawing_file.h"
#include "render_support.h"
#include "sdk/vcdb_text.h"
#include "sdk/vced.h"

using namespace rendertest;

namespace {

struct TextCase {
    const char* what;
    const char* font;
    const wchar_t* text;
    double widthFactor = 1, oblique = 0, rotation = 0;
    bool backwards = false, upsideDown = false, vertical = false;
};

const TextCase kTexts[] = {
    {"Stroked", "txt", L"HgH"},
    {"Outlined", "arial.ttf", L"HgH"},
    {"OutlinedWide", "times.ttf", L"Map 12", 1.7},
    {"Slanted", "romans", L"HgH", 1, 0.3},
    {"SlantedBack", "arial.ttf", L"HgH", 0.8, -0.3},
    {"Turned", "simplex", L"Turned", 1, 0, 1.0},
    {"Backwards", "txt", L"HgK", 1, 0.2, 0, true},
    {"UpsideDown", "txt", L"HgK", 1, 0.2, 0, false, true},
    {"Vertical", "txt", L"ABC", 1, 0, 0, false, false, true},
    {"Underlined", "txt", L"%%uHxH%%u x"},
    {"Codes", "arial.ttf", L"90%%d %%c5 %%p1"},
    {"UnknownFont", "no such font.ttf", L"HgH"},
    {"OtherAlphabet", "txt", L"Ж漢H"},
};

// The drawing that the C-level interface works on, as long as this lives.
class Working : public VcDbHostApplicationServices {
public:
    explicit Working(VcDbDatabase& database) : m_database(&database) { vcdbSetHostApplicationServices(this); }
    ~Working() override { vcdbSetHostApplicationServices(m_before); }
    VcDbDatabase* workingDatabase() const override { return m_database; }
    void setWorkingDatabase(VcDbDatabase* database) override { m_database = database; }
    const wchar_t* getMachineRegistryProductRootKey() const override { return L""; }
    const wchar_t* getUserRegistryProductRootKey() const override { return L""; }
    const wchar_t* getInstallFolder() const override { return L""; }

private:
    VcDbHostApplicationServices* m_before = vcdbHostApplicationServices();
    VcDbDatabase* m_database;
};

}

class TextPicture : public Picture {
protected:
    vk::geom::Box3d inkBox() const
    {
        vk::geom::Box3d box;
        for (const Sheet::Mark& mark : sheet.marks)
            for (const auto& points : {mark.line, mark.area.points})
                for (const Point2& p : points)
                    box.add(VcGePoint3d(p.x, kSide - p.y, 0));
        return box;
    }
    VcDbObjectId style(const TextCase& c)
    {
        auto& record = *db().objectAs<VcDbTextStyleTableRecord>(db().recordFor(NameTable::TextStyle, "TESTED"));
        record.setFontFiles(c.font, "");
        record.setIsVertical(c.vertical);
        return record.objectId();
    }
    VcDbText& addText(const TextCase& c)
    {
        auto* text = new VcDbText({300, 400, 0}, c.text, kHeight, c.rotation);
        VcDbText& added = add(text);
        added.setTextStyle(style(c));
        added.setWidthFactor(c.widthFactor);
        added.setOblique(c.oblique);
        added.mirrorInX(c.backwards);
        added.mirrorInY(c.upsideDown);
        return added;
    }
    static constexpr double kHeight = 100;
};
using ManyTexts = TextPicture;
class TextInk : public TextPicture, public testing::WithParamInterface<TextCase> {};

TEST_P(TextInk, AgreesWithTheExtents)
{
    VcDbText& text = addText(GetParam());
    VcDbExtents extents;
    ASSERT_EQ(text.getGeomExtents(extents), Vcad::eOk);
    paint();
    const vk::geom::Box3d ink = inkBox();
    const double hundredth = kHeight / 100;
    EXPECT_GE(ink.min.x, extents.minPoint().x - hundredth);
    EXPECT_GE(ink.min.y, extents.minPoint().y - hundredth);
    EXPECT_LE(ink.max.x, extents.maxPoint().x + hundredth);
    EXPECT_LE(ink.max.y, extents.maxPoint().y + hundredth);
    if (GetParam().rotation == 0) {
        EXPECT_NEAR(ink.min.x, extents.minPoint().x, hundredth);
        EXPECT_NEAR(ink.min.y, extents.minPoint().y, hundredth);
        EXPECT_NEAR(ink.max.x, extents.maxPoint().x, hundredth);
        EXPECT_NEAR(ink.max.y, extents.maxPoint().y, hundredth);
    }
}

TEST_F(ManyTexts, AStrokedTextFillsItsExtents)
{
    VcDbText& text = addText({"", "txt", L"HgH"});
    VcDbExtents extents;
    ASSERT_EQ(text.getGeomExtents(extents), Vcad::eOk);
    paint();
    const vk::geom::Box3d ink = inkBox();
    EXPECT_NEAR(ink.max.x, extents.maxPoint().x, 1);
    EXPECT_NEAR(ink.min.y, extents.minPoint().y, 1);
    EXPECT_NEAR(ink.max.y, extents.maxPoint().y, 1);
}

TEST_P(TextInk, AgreesWithTheTextBox)
{
    if (GetParam().rotation != 0)
        return;
    VcDbText& text = addText(GetParam());
    VcDbExtents extents;
    ASSERT_EQ(text.getGeomExtents(extents), Vcad::eOk);
    const Working working(db().face());
    RbBuilder chain;
    chain.addUtf8(1, wideToUtf8(GetParam().text));
    chain.addReal(40, kHeight);
    chain.addReal(41, GetParam().widthFactor);
    chain.addReal(51, GetParam().oblique);
    chain.addInteger(71, (GetParam().backwards ? 2 : 0) | (GetParam().upsideDown ? 4 : 0));
    chain.addUtf8(7, "TESTED");
    vds_point low, high;
    const RbPtr list = chain.take();
    EXPECT_EQ(vcedTextBox(list.get(), low, high), RTNORM);
    EXPECT_NEAR(300 + low[0], extents.minPoint().x, kHeight / 100);
    EXPECT_NEAR(400 + low[1], extents.minPoint().y, kHeight / 100);
    EXPECT_NEAR(300 + high[0], extents.maxPoint().x, kHeight / 100);
    EXPECT_NEAR(400 + high[1], extents.maxPoint().y, kHeight / 100);
}
INSTANTIATE_TEST_SUITE_P(, TextInk, testing::ValuesIn(kTexts), [](const auto& info) { return info.param.what; });

TEST_F(ManyTexts, OfManyLinesAgreesWithItsExtents)
{
    for (const int attachment : {1, 5, 9}) {
        auto* text = new VcDbMText;
        text->setLocation({500, 500, 0});
        text->setTextHeight(20);
        text->setContents(L"First line\\PSecond {\\H2x;big} line\\P{\\C1;red} 1{\\S1/2;} \\Lunder\\l g");
        text->setAttachment(VcDbMText::AttachmentPoint(attachment));
        VcDbMText& added = add(text);
        VcDbExtents extents;
        ASSERT_EQ(added.getGeomExtents(extents), Vcad::eOk);
        paint();
        const vk::geom::Box3d ink = inkBox();
        EXPECT_NEAR(ink.min.x, extents.minPoint().x, 0.2) << attachment;
        EXPECT_NEAR(ink.min.y, extents.minPoint().y, 0.2) << attachment;
        EXPECT_NEAR(ink.max.x, extents.maxPoint().x, 0.2) << attachment;
        EXPECT_NEAR(ink.max.y, extents.maxPoint().y, 0.2) << attachment;
        EXPECT_TRUE(
            std::any_of(sheet.marks.begin(), sheet.marks.end(), [](const Sheet::Mark& m) { return m.argb == kRed; }));
        added.erase();
    }
}

TEST_F(ManyTexts, IllegibleTextIsABar)
{
    VcDbText& text = addText({"", "txt", L"too small to be read"});
    text.setHeight(0.5);
    paint();
    EXPECT_EQ(sheet.marks.size(), 1u);
}

// A file may have worked out the base point with another font, or not at all.
TEST_F(ManyTexts, JustifiedTextsHangOnTheirAlignmentPoint)
{
    VcDbText& text = addText({"", "txt", L"HHHH"});
    text.setHorizontalMode(VcDb::kTextRight);
    text.setAlignmentPoint({700, 400, 0});
    text.setPosition({0, 0, 0});
    VcDbExtents extents;
    ASSERT_EQ(text.getGeomExtents(extents), Vcad::eOk);
    paint();
    EXPECT_NEAR(inkBox().max.x, 700, 1);
    EXPECT_NEAR(inkBox().min.y, 400, 1);
    EXPECT_NEAR(extents.maxPoint().x, 700, 1);
    EXPECT_NEAR(extents.minPoint().y, 400, 1);
}

// Leaders of several lines are kept as they came.
TEST_F(ManyTexts, LeadersOfSeveralLinesAreDrawn)
{
    const std::string file =
        "0\nSECTION\n2\nENTITIES\n0\nMULTILEADER\n8\n0\n100\nAcDbMLeader\n300\nCONTEXT_DATA{\n41\n40.0\n140\n50."
        "0\n290\n1\n304\nHH\n"
        "12\n600.0\n22\n600.0\n13\n1.0\n23\n0.0\n171\n1\n45\n1.0\n302\nLEADER{\n290\n1\n291\n1\n10\n500.0\n20\n600."
        "0\n11\n1.0\n21\n0.0\n"
        "40\n80.0\n304\nLEADER_LINE{\n10\n100.0\n20\n600.0\n305\n}\n303\n}\n301\n}\n170\n1\n0\nENDSEC\n0\nEOF\n";
    VcDbDatabase database(false);
    ASSERT_TRUE(readDrawingBytes(database, file).ok());
    vk::render::Scene scene(database.core(), *vk::render::findLayout(database.core(), ""), omissions);
    scene.paint(sheet, {{0, 0}, {kSide, kSide}}, {kSide, kSide, kPage, true});
    EXPECT_TRUE(isInk(130, 603)) << "the arrow";
    EXPECT_TRUE(isInk(300, 600));
    EXPECT_TRUE(isInk(570, 600)) << "the dogleg";
    EXPECT_FALSE(isInk(590, 600));
    EXPECT_GT(inkBox().max.x, 620) << "the text";
    EXPECT_TRUE(omissions.counts().empty());
}
