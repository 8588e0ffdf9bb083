// Texts in every justification, mirrored, slanted, upright, and of many lines: what is drawn reaches as far as their extents
// say, to a hundredth of the height.
#include "host/db/text_geometry.h"
#include "host/geom/box.h"
#include "host/io/drawing_file.h"
#include "host/render/list_builder.h"
#include "render_support.h"
#include "sdk/vcdb_text.h"

#include <cstdlib>
#include <filesystem>

using namespace rendertest;

namespace {

constexpr double kHeight = 80, kHundredth = kHeight / 100;

// H fills its letters' box from the base line to the height of capitals, in stroke fonts and in outlines.
struct Look {
    const char* what;
    const char* font;
    double widthFactor = 1, oblique = 0, rotation = 0;
    bool backwards = false, upsideDown = false;
};
const Look kLooks[] = {
    {"Stroked", "txt"},
    {"Simplex", "simplex"},
    {"Outlined", "arial.ttf"},
    {"Wide", "txt", 1.5},
    {"Narrow", "arial.ttf", 0.6},
    {"Slanted", "romans", 1, 0.3},
    {"SlantedOutlines", "arial.ttf", 1, -0.25},
    {"Turned", "txt", 1, 0, 0.7},
    {"TurnedOutlines", "arial.ttf", 1.2, 0.2, -2.1},
    {"Backwards", "txt", 1, 0, 0, true},
    {"BackwardsOutlines", "arial.ttf", 1, 0.2, 0, true},
    {"UpsideDown", "txt", 1, 0, 0, false, true},
    {"BothWays", "simplex", 0.8, 0.2, 0.4, true, true},
};

struct Justification {
    const char* what;
    VcDb::TextHorzMode horizontal;
    VcDb::TextVertMode vertical;
    double across, up;  // of the place in the box of capitals, from 0 to 1; below 0 where it is not told
};
const Justification kJustifications[] = {
    {"Left", VcDb::kTextLeft, VcDb::kTextBase, 0, 0},
    {"Center", VcDb::kTextCenter, VcDb::kTextBase, 0.5, 0},
    {"Right", VcDb::kTextRight, VcDb::kTextBase, 1, 0},
    {"Middle", VcDb::kTextMid, VcDb::kTextBase, 0.5, 0.5},
    {"TopLeft", VcDb::kTextLeft, VcDb::kTextTop, 0, 1},
    {"TopCenter", VcDb::kTextCenter, VcDb::kTextTop, 0.5, 1},
    {"TopRight", VcDb::kTextRight, VcDb::kTextTop, 1, 1},
    {"MiddleLeft", VcDb::kTextLeft, VcDb::kTextVertMid, 0, 0.5},
    {"MiddleCenter", VcDb::kTextCenter, VcDb::kTextVertMid, 0.5, 0.5},
    {"MiddleRight", VcDb::kTextRight, VcDb::kTextVertMid, 1, 0.5},
    {"BottomLeft", VcDb::kTextLeft, VcDb::kTextBottom, 0, -1},
    {"BottomCenter", VcDb::kTextCenter, VcDb::kTextBottom, 0.5, -1},
    {"BottomRight", VcDb::kTextRight, VcDb::kTextBottom, 1, -1},
};

struct Placed {
    Look look;
    Justification at;
};

std::vector<Placed> everyPlacing()
{
    std::vector<Placed> all;
    for (const Look& look : kLooks)
        for (const Justification& at : kJustifications)
            all.push_back({look, at});
    return all;
}

class TextPlaces : public Picture {
protected:
    VcDbObjectId style(const char* font, bool vertical = false)
    {
        auto& record = *db().objectAs<VcDbTextStyleTableRecord>(db().recordFor(NameTable::TextStyle, "TESTED"));
        record.setFontFiles(font, "");
        record.setIsVertical(vertical);
        return record.objectId();
    }
    vk::geom::Box3d inkBox() const
    {
        vk::geom::Box3d box;
        for (const Sheet::Mark& mark : sheet.marks)
            for (const auto& points : {mark.line, mark.area.points})
                for (const Point2& p : points)
                    box.add(VcGePoint3d(p.x, kSide - p.y, 0));
        return box;
    }
    void expectInkIn(const VcDbExtents& extents, double tolerance)
    {
        const vk::geom::Box3d ink = inkBox();
        ASSERT_FALSE(ink.isEmpty());
        EXPECT_GE(ink.min.x, extents.minPoint().x - tolerance);
        EXPECT_GE(ink.min.y, extents.minPoint().y - tolerance);
        EXPECT_LE(ink.max.x, extents.maxPoint().x + tolerance);
        EXPECT_LE(ink.max.y, extents.maxPoint().y + tolerance);
    }
};

class PlacedText : public TextPlaces, public testing::WithParamInterface<Placed> {};

}

TEST_P(PlacedText, HangsOnItsPointAndFillsItsExtents)
{
    const auto& [look, at] = GetParam();
    const VcGePoint3d point(500, 480, 0);
    auto* made = new VcDbText(point, L"HIH", kHeight, look.rotation);
    VcDbText& text = add(made);
    text.setTextStyle(style(look.font));
    text.setWidthFactor(look.widthFactor);
    text.setOblique(look.oblique);
    text.mirrorInX(look.backwards);
    text.mirrorInY(look.upsideDown);
    text.setHorizontalMode(at.horizontal);
    text.setVerticalMode(at.vertical);
    if (!text.isDefaultAlignment())
        text.setAlignmentPoint(point);
    text.adjustAlignment();
    VcDbExtents extents;
    ASSERT_EQ(text.getGeomExtents(extents), Vcad::eOk);
    paint();
    expectInkIn(extents, kHundredth);

    // The ink along the text's own axes, from its point: as wide and high as the box of its letters.
    const VcGeVector3d x(std::cos(look.rotation), std::sin(look.rotation), 0), y(-x.y, x.x, 0);
    double left = 1e9, right = -1e9, low = 1e9, high = -1e9;
    for (const Sheet::Mark& mark : sheet.marks)
        for (const auto& points : {mark.line, mark.area.points})
            for (const Point2& p : points) {
                const VcGeVector3d v = VcGePoint3d(p.x, kSide - p.y, 0) - point;
                const double up = v.dotProduct(y),
                             slant = up * std::tan(look.oblique) * (look.backwards != look.upsideDown ? -1 : 1);
                left = std::min(left, v.dotProduct(x) - slant);
                right = std::max(right, v.dotProduct(x) - slant);
                low = std::min(low, up);
                high = std::max(high, up);
            }
    EXPECT_NEAR(high - low, kHeight, kHundredth);
    const double sideBearing = 0.2 * kHeight * look.widthFactor;
    if (at.up >= 0 && !look.upsideDown) {
        EXPECT_NEAR(low, -at.up * kHeight, kHundredth);
    }
    if (look.oblique != 0)
        return;
    const double begin = look.backwards ? right : left, end = look.backwards ? left : right;
    EXPECT_NEAR(begin + (end - begin) * at.across, 0, sideBearing);
}
INSTANTIATE_TEST_SUITE_P(, PlacedText, testing::ValuesIn(everyPlacing()),
                         [](const auto& info) { return std::string(info.param.look.what) + info.param.at.what; });

TEST_F(TextPlaces, AlignedAndFittedTextsRunBetweenTheirPoints)
{
    for (const char* font : {"txt", "arial.ttf"})
        for (const auto mode : {VcDb::kTextAlign, VcDb::kTextFit}) {
            VcDbText& text = add(new VcDbText({200, 300, 0}, L"HIH", kHeight));
            text.setTextStyle(style(font));
            text.setHorizontalMode(mode);
            text.setPosition({200, 300, 0});
            text.setAlignmentPoint({700, 300, 0});
            text.adjustAlignment();
            VcDbExtents extents;
            ASSERT_EQ(text.getGeomExtents(extents), Vcad::eOk);
            paint();
            expectInkIn(extents, kHundredth);
            const double bearing = 0.2 * 500 / 3;
            EXPECT_NEAR(inkBox().min.x, 200, bearing) << font;
            EXPECT_NEAR(inkBox().max.x, 700, bearing) << font;
            text.erase();
        }
}

TEST_F(TextPlaces, UprightTextsRunDownWithinTheirExtents)
{
    for (const double rotation : {0.0, 0.5})
        for (const double oblique : {0.0, 0.3}) {
            VcDbText& text = add(new VcDbText({500, 800, 0}, L"HIJ", kHeight, rotation));
            text.setTextStyle(style("txt", true));
            text.setOblique(oblique);
            VcDbExtents extents;
            ASSERT_EQ(text.getGeomExtents(extents), Vcad::eOk);
            paint();
            expectInkIn(extents, kHundredth);
            EXPECT_GT(inkBox().max.y - inkBox().min.y, 2.5 * kHeight * std::cos(rotation));
            text.erase();
        }
}

// Texts of many lines

namespace {

struct Lines {
    const char* what;
    const wchar_t* contents;
    double width = 0;
    VcDb::LineSpacingStyle spacing = VcDb::kAtLeast;
    double factor = 1;
    double rotation = 0;
};
const Lines kLines[] = {
    {"Plain", L"HIH"},
    {"Three", L"HIH\\PMMM\\PH"},
    {"Wrapped", L"one two three four five six seven", 260},
    {"Stack", L"H{\\S1/2;} and {\\S+0.1^-0.2;} or {\\S3#4;}"},
    {"LargeStack", L"{\\H2x;H}\\P{\\H0.5x;\\SHIH/HIHIH;}"},
    {"Tabs", L"\\pt4,9;a\\tb\\tc\\P1\\t2\\t3"},
    {"Indents", L"\\pi-1,l3;one two three four five", 300},
    {"Exactly", L"HIH\\PH{\\H2x;H}\\PH", 0, VcDb::kExactly, 1.5},
    {"AtLeast", L"HIH\\PH{\\H2x;H}\\PH", 0, VcDb::kAtLeast, 0.5},
    {"Lines", L"\\Lunder\\l \\Oover\\o \\Kthrough\\k"},
    {"Slants", L"{\\Q20;HIH} {\\W1.6;wide} {\\T2;apart}"},
    {"Fonts", L"{\\Farial.ttf;outlined} {\\Fromans.shx;stroked}"},
    {"Descenders", L"gjpqy\\Pgjpqy"},
    {"Accents", L"\\U+00C4\\U+00C5\\U+00DC\\P{\\H0.5x;\\U+00C5}"},
    {"Turned", L"HIH\\Pgjy", 0, VcDb::kAtLeast, 1, 0.6},
};

struct PlacedLines {
    Lines lines;
    const char* font;
    int attachment;
};

std::vector<PlacedLines> everyLines()
{
    std::vector<PlacedLines> all;
    for (const Lines& lines : kLines)
        for (const char* font : {"txt", "arial.ttf"})
            for (int attachment = 1; attachment <= 9; ++attachment)
                all.push_back({lines, font, attachment});
    return all;
}

class PlacedMText : public TextPlaces, public testing::WithParamInterface<PlacedLines> {};

}

TEST_P(PlacedMText, StaysInItsExtentsAndFillsThem)
{
    const auto& [lines, font, attachment] = GetParam();
    constexpr double kSmall = 25;
    auto* made = new VcDbMText;
    made->setLocation({500, 500, 0});
    made->setTextHeight(kSmall);
    made->setContents(lines.contents);
    made->setWidth(lines.width);
    made->setAttachment(VcDbMText::AttachmentPoint(attachment));
    made->setLineSpacingStyle(lines.spacing);
    made->setLineSpacingFactor(lines.factor);
    made->setRotation(lines.rotation);
    VcDbMText& text = add(made);
    text.setTextStyle(style(font));
    VcDbExtents extents;
    ASSERT_EQ(text.getGeomExtents(extents), Vcad::eOk);
    paint();
    expectInkIn(extents, kSmall / 100);
    if (lines.rotation != 0)
        return;
    const vk::geom::Box3d ink = inkBox();
    EXPECT_NEAR(extents.minPoint().x, ink.min.x, kSmall / 100);
    EXPECT_NEAR(extents.minPoint().y, ink.min.y, kSmall / 100);
    EXPECT_NEAR(extents.maxPoint().x, ink.max.x, kSmall / 100);
    EXPECT_NEAR(extents.maxPoint().y, ink.max.y, kSmall / 100);
}
INSTANTIATE_TEST_SUITE_P(, PlacedMText, testing::ValuesIn(everyLines()), [](const auto& info) {
    return std::string(info.param.lines.what) + (std::string(info.param.font) == "txt" ? "Stroked" : "Outlined") +
           std::to_string(info.param.attachment);
});

// Real drawings, where a folder of them is named by VEKAD_DRAWINGS: texts with columns, fields, fonts of all kinds.

namespace {

double heightOf(const VcDbEntity& entity)
{
    if (const auto* text = VcDbText::cast(&entity))
        return text->height();
    const auto* many = VcDbMText::cast(&entity);
    return many ? many->textHeight() : 0;
}

}

TEST(TextDrawings, TextsAreDrawnWithinTheirExtents)
{
    const char* folder = std::getenv("VEKAD_DRAWINGS");
    if (!folder)
        GTEST_SKIP() << "VEKAD_DRAWINGS names no folder";
    int seen = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        VcDbDatabase database(false);
        if (entry.path().extension() != ".dxf" || !readDrawing(database, entry.path().string()).ok())
            continue;
        const DatabaseCore& db = database.core();
        for (std::uint32_t slot = 1; slot < db.slotCount(); ++slot) {
            const auto* entity = VcDbEntity::cast(db.objectAt(slot));
            const double height = entity ? heightOf(*entity) : 0;
            VcDbExtents extents;
            if (!(height > 0) || entity->isKindOf(VcDbTaggedText::desc()) ||
                entity->getGeomExtents(extents) != Vcad::eOk)
                continue;
            vk::render::DisplayList list;
            vk::render::Omissions omissions;
            vk::render::ListBuilder(list, db, omissions).add(*entity);
            if (list.bounds.isEmpty())
                continue;
            ++seen;
            const VcGeVector3d slack(height / 100, height / 100, height / 100);
            const VcGePoint3d low = extents.minPoint() - slack, high = extents.maxPoint() + slack;
            EXPECT_TRUE(list.bounds.min.x >= low.x && list.bounds.min.y >= low.y && list.bounds.max.x <= high.x &&
                        list.bounds.max.y <= high.y)
                << entry.path() << " " << std::hex << entity->handle().value() << std::dec << " drawn "
                << list.bounds.min.x << "," << list.bounds.min.y << " to " << list.bounds.max.x << ","
                << list.bounds.max.y << ", extents " << extents.minPoint().x << "," << extents.minPoint().y << " to "
                << extents.maxPoint().x << "," << extents.maxPoint().y;
        }
    }
    EXPECT_GT(seen, 0);
}
