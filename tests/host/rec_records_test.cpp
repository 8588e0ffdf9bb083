#include "db_support.h"

#include "host/base/heap.h"
#include "host/db/extras.h"
#include "sdk/vcdb_records.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

constexpr double kDegree = 3.14159265358979323846 / 180;

// What a file holds of a record is the same after it has been read into a fresh one.
template <class Record>
void expectSameAgain(Record& record, DatabaseCore& db, DxfVersion version)
{
    GroupList groups;
    writeGroups(record, db, groups, version);
    Record read;
    EXPECT_EQ(readGroups(read, db, groups, version), 0) << groups.dump();
    EXPECT_EQ(dumpOf(read, db, version), groups.dump());
}

const DxfVersion kVersions[] = {DxfVersion::R12, DxfVersion::R14, DxfVersion::R2000, DxfVersion::R2007,
                                DxfVersion::R2018};

struct Records : testing::Test {
    VcDbDatabase db;
    DatabaseCore& core = db.core();
};

TEST_F(Records, LinetypesKeepTextsAndShapes)
{
    VcDbLinetypeTableRecord record;
    record.setNameUtf8("GAS");
    VcDbLinetypeTableRecord::Dash plain, text, shape;
    plain.length = 12.7;
    text.length = -5.08;
    text.flags = VcDbLinetypeTableRecord::kText;
    text.style = db.textstyle();
    text.scale = 2.54;
    text.rotation = 30 * kDegree;
    text.offset = {-2.54, -1.27};
    text.text = "GAS";
    shape = text;
    shape.flags = VcDbLinetypeTableRecord::kShape;
    shape.shapeNumber = 134;
    shape.text.clear();
    record.setPattern("Gas line", {plain, text, shape});
    EXPECT_DOUBLE_EQ(record.patternLength(), 12.7 + 2 * 5.08);

    for (const DxfVersion version : kVersions)
        expectSameAgain(record, core, version);
    GroupList groups;
    writeGroups(record, core, groups);
    VcDbLinetypeTableRecord read;
    readGroups(read, core, groups);
    EXPECT_EQ(read.dashes(), record.dashes());
}

TEST_F(Records, ViewsAndViewportsComeBack)
{
    VcDbViewTableRecord view;
    view.setNameUtf8("TEST");
    view.setCenterPoint({3, 4});
    view.setHeight(10);
    view.setWidth(20);
    view.setViewTwist(45 * kDegree);
    view.setPerspectiveEnabled(true);
    view.setFrontClipAtEye(false);
    EXPECT_EQ(view.viewMode(), 17);
    VcDbViewportTableRecord viewport;
    viewport.setNameUtf8("*Active");
    viewport.setHeight(297);
    viewport.setWidth(1.41 * 297);
    viewport.setSnapAngle(30 * kDegree);
    viewport.setUcs({1, 2, 3}, {0, 2, 0}, {-3, 0, 0});
    VcDbUCSTableRecord ucs;
    ucs.setNameUtf8("U");
    ucs.setAxes({0, 1, 0}, {0, 0, 1});
    for (const DxfVersion version : kVersions) {
        expectSameAgain(view, core, version);
        expectSameAgain(viewport, core, version);
        expectSameAgain(ucs, core, version);
    }
}

TEST_F(Records, AViewWithACoordinateSystemSaysSo)
{
    VcDbViewTableRecord view;
    EXPECT_EQ(dumpOf(view, core).find("\n110="), std::string::npos);
    EXPECT_EQ(view.setUcs({1, 0, 0}, {1, 0, 0}, {0, 1, 0}), Vcad::eOk);
    EXPECT_TRUE(view.isUcsAssociatedToView());
    EXPECT_NE(dumpOf(view, core).find("\n110=1\n"), std::string::npos);
    expectSameAgain(view, core, DxfVersion::R2018);
}

TEST_F(Records, TheAspectOfAViewportStaysAsItCame)
{
    GroupList came;
    came.text(100, "AcDbSymbolTableRecord");
    came.text(100, "AcDbViewportTableRecord");
    came.text(2, "*Active");
    came.real(40, 12697.21503592887);
    came.real(41, 1.496666666666666);
    VcDbViewportTableRecord viewport;
    readGroups(viewport, core, came);
    const auto aspect = [&] {
        GroupList groups;
        writeGroups(viewport, core, groups);
        return std::find_if(groups.tags().begin(), groups.tags().end(), [](const Tag& tag) { return tag.code == 41; })
            ->real;
    };
    EXPECT_EQ(aspect(), 1.496666666666666);
    viewport.setWidth(2 * viewport.height());
    EXPECT_EQ(aspect(), 2);
}

TEST_F(Records, SettersRefuseWhatIsOutOfRange)
{
    const double kNan = std::nan("");
    VcDbViewTableRecord view;
    VcDbViewportTableRecord viewport;
    VcDbUCSTableRecord ucs;
    VcDbTextStyleTableRecord style;
    VcDbLinetypeTableRecord linetype;
    const std::string before =
        dumpOf(view, core) + dumpOf(viewport, core) + dumpOf(ucs, core) + dumpOf(style, core) + dumpOf(linetype, core);
    const Vcad::ErrorStatus refused[] = {
        view.setHeight(0),
        view.setWidth(-1),
        view.setHeight(kNan),
        view.setLensLength(0),
        view.setViewDirection({0, 0, 0}),
        view.setCenterPoint({kNan, 0}),
        view.setUcs({0, 0, 0}, {1, 0, 0}, {1, 1, 0}),
        viewport.setSnapPair(3),
        viewport.setCircleSides(0),
        viewport.setSnapIncrements({0, 1}),
        ucs.setAxes({0, 0, 0}, {0, 1, 0}),
        ucs.setOrigin({0, kNan, 0}),
        style.setXScale(0),
        style.setTextSize(-1),
        style.setPriorSize(0),
        style.setObliquingAngle(86 * kDegree),
        style.setFlagBits(1),
        style.setFileName(nullptr),
        style.setFont(L"Arial", false, false, 256, 0),
        linetype.setNumDashes(1),
        linetype.setDashLengthAt(0, 1),
        linetype.setPatternLength(-1),
    };
    for (std::size_t i = 0; i < std::size(refused); ++i)
        EXPECT_NE(refused[i], Vcad::eOk) << i;
    EXPECT_EQ(before, dumpOf(view, core) + dumpOf(viewport, core) + dumpOf(ucs, core) + dumpOf(style, core) +
                          dumpOf(linetype, core));
}

TEST_F(Records, TextStylesKeepTheirTypefaceBesideOtherData)
{
    VcDbTextStyleTableRecord style;
    TagList other;
    other.addText(1001, "OTHER");
    other.addInteger(1070, 5);
    style.makeExtras().xdata = other;
    EXPECT_FALSE(style.typeface());
    EXPECT_EQ(style.setFont(L"Times", true, false, 204, 34), Vcad::eOk);
    EXPECT_EQ(style.setFont(L"Arial", false, true, 2, 18), Vcad::eOk);
    wchar_t* name = nullptr;
    bool bold = true, italic = false;
    int charset = 0, pitch = 0;
    style.font(name, bold, italic, charset, pitch);
    EXPECT_STREQ(name, L"Arial");
    heapRelease(name);
    EXPECT_FALSE(bold);
    EXPECT_TRUE(italic);
    EXPECT_EQ(charset, 2);
    EXPECT_EQ(pitch, 18);
    style.setFont(L"", false, false, 0, 0);
    EXPECT_EQ(style.extras()->xdata, other);
}

TEST_F(Records, TextStylesComeBack)
{
    VcDbTextStyleTableRecord style;
    style.setNameUtf8("NOTES");
    style.setFontFiles("romans", "bigfont");
    style.setXScale(0.8);
    style.setObliquingAngle(15 * kDegree);
    style.setFlagBits(6);
    style.setIsVertical(true);
    EXPECT_EQ(style.flags(), 4);
    for (const DxfVersion version : kVersions)
        expectSameAgain(style, core, version);
}

}
