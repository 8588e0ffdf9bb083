// Layouts and what their viewports show of the model.
#include "host/db/tag.h"
#include "host/edit/display.h"
#include "host/edit/question.h"
#include "host/render/list_painter.h"
#include "host/render/overlay.h"
#include "render_support.h"
#include "sdk/vcdb_layout.h"
#include "sdk/vcdb_objects.h"
#include "sdk/vcdb_text.h"
#include "sdk/vcdb_viewport.h"

#include <functional>

using namespace rendertest;

class RenderViews : public Picture {
protected:
    VcDbBlockTableRecord& paper() { return *db().objectAs<VcDbBlockTableRecord>(db().paperSpace()); }
    std::string paperName() { return db().objectAs<VcDbLayout>(paper().getLayoutId())->nameUtf8(); }

    // A square of 400 about the middle that shows the model at the given scale.
    VcDbViewport& viewport(double scale, const VcGePoint2d& center = {0, 0})
    {
        auto* view = new VcDbViewport;
        view->setNumber(2);
        view->setCenterPoint({500, 500, 0});
        view->setWidth(400);
        view->setHeight(400);
        view->setViewHeight(400 / scale);
        view->setViewCenter(center);
        view->setOn(true);
        return add(view, {.colour = 3}, &paper());
    }
};

TEST_F(RenderViews, ViewportsShowTheModelAtTheirScaleAndNothingOutside)
{
    line(-1000, 10, 1000, 10, {.colour = 1});
    viewport(4);
    paint(paperName());
    EXPECT_EQ(at(500, 540), kRed);
    EXPECT_EQ(at(310, 540), kRed);
    EXPECT_FALSE(isInk(290, 540)) << "clipped";
    EXPECT_EQ(at(300, 400), kGreen) << "the border";
}

TEST_F(RenderViews, ViewCenterTargetAndTwist)
{
    line(90, 0, 110, 0, {.colour = 1});
    VcDbViewport& view = viewport(10, {100, 0});
    paint(paperName());
    EXPECT_EQ(at(590, 500), kRed);
    EXPECT_FALSE(isInk(500, 590));
    view.setViewTarget({100, 0, 0});
    view.setViewCenter({0, 0});
    view.setTwistAngle(M_PI / 2);
    paint(paperName());
    EXPECT_EQ(at(500, 590), kRed);
    EXPECT_FALSE(isInk(590, 500));
}

TEST_F(RenderViews, ViewDirection)
{
    line(0, 0, 0, 10, {.colour = 1});
    add(new VcDbLine({0, 0, 0}, {0, 0, 10}), {.colour = 5});
    VcDbViewport& view = viewport(10);
    view.setViewDirection({0, -1, 0});  // from the front: z is up
    paint(paperName());
    EXPECT_EQ(at(500, 590), kBlue);
    auto* thick = new VcDbCircle({0, 0, 0}, {0, 0, 1}, 10);
    thick->setThickness(10);
    add(thick, {.colour = 6});
    paint(paperName());
    EXPECT_EQ(at(550, 600), 0xffff00ff) << "the upper rim of what has a thickness";
    EXPECT_EQ(at(600, 550), 0xffff00ff) << "and what joins the rims";
}

// From above, with the camera at a height of 100: what lies halfway up is twice as large, what lies above is not seen.
TEST_F(RenderViews, Perspective)
{
    line(0, 5, 10, 5, {.colour = 1});
    add(new VcDbLine({0, 5, 50}, {10, 5, 50}), {.colour = 5});
    add(new VcDbLine({0, -5, 150}, {10, -5, 150}), {.colour = 3});
    add(new VcDbLine({-10, 0, 0}, {-10, 0, 200}), {.colour = 6});
    auto* text = new VcDbText({0, -8, 50}, L"H", 4);
    add(text, {.colour = 4});
    VcDbViewport& view = viewport(10);
    view.setViewDirection({0, 0, 100});
    paint(paperName());
    EXPECT_EQ(at(550, 550), kBlue) << "both lines in one place";
    view.setPerspectiveOn(true);
    paint(paperName());
    EXPECT_EQ(at(550, 550), kRed) << "in the plane of the target nothing changes";
    EXPECT_EQ(at(550, 600), kBlue);
    EXPECT_EQ(at(690, 600), kBlue);
    EXPECT_FALSE(isInk(550, 450)) << "behind the camera";
    EXPECT_EQ(at(390, 500), 0xffff00ff) << "what rises goes outwards";
    EXPECT_EQ(at(320, 500), 0xffff00ff) << "up to the camera";
    double low = 1e9, high = -1e9;
    for (const Sheet::Mark& mark : sheet.marks)
        if (mark.argb == 0xff00ffff)
            for (const Point2& p : mark.line) {
                low = std::min(low, kSide - p.y);
                high = std::max(high, kSide - p.y);
            }
    EXPECT_NEAR(low, 500 - 8 * 20, 1);
    EXPECT_NEAR(high, 500 - 4 * 20, 1);
}

TEST_F(RenderViews, LayersFrozenInOneViewport)
{
    line(-1000, 10, 1000, 10, {.layer = "WALL", .colour = 1});
    viewport(4).freezeLayersInViewport({layer("WALL").objectId()});
    paint(paperName());
    EXPECT_FALSE(isInk(500, 540));
    paint();
    EXPECT_TRUE(isInk(500, 10)) << "the model itself still shows it";
}

TEST_F(RenderViews, LayersLookOtherwiseInOneViewport)
{
    line(-1000, 10, 1000, 10, {.layer = "WALL"});
    line(-1000, 20, 1000, 20, {.layer = "WALL", .colour = 5, .weight = 30});
    layer("WALL").setColor(VcCmColor::fromIndex(1));
    layer("WALL").setLineWeight(VcDb::LineWeight(30));
    linetype("GAPS", {40, -40});
    const VcDbObjectId own = viewport(4).objectId();
    ASSERT_EQ(layer("WALL").createExtensionDictionary(), Vcad::eOk);
    const auto say = [&](const wchar_t* name, const std::function<void(TagList&)>& addValue) {
        auto* record = new VcDbXrecord;
        VcDbObjectId id;
        ASSERT_EQ(db().objectAs<VcDbDictionary>(layer("WALL").extensionDictionary())->setAt(name, record, id),
                  Vcad::eOk);
        TagList data;
        data.addText(102, "{OVERRIDE");
        data.addHandle(335, db().handleOf(own));
        addValue(data);
        data.addText(102, "}");
        record->setData(std::move(data));
        record->close();
    };
    say(L"ADSK_XREC_LAYER_COLOR_OVR", [](TagList& data) { data.addInteger(420, std::int32_t(0xc3000003)); });
    say(L"ADSK_XREC_LAYER_LINEWT_OVR", [](TagList& data) { data.addInteger(91, 200); });
    say(L"ADSK_XREC_LAYER_ALPHA_OVR", [](TagList& data) { data.addInteger(440, 0x02000080); });
    say(L"ADSK_XREC_LAYER_LINETYPE_OVR", [&](TagList& data) {
        data.addHandle(343, db().handleOf(linetype("GAPS", {40, -40}).objectId()));
    });
    paint(paperName());
    EXPECT_EQ(at(500, 540), 0x8000ff00);
    EXPECT_GT(sheet.widthAt({500, kSide - 540}), 1.9);
    EXPECT_FALSE(isInk(540, 540)) << "a gap";
    EXPECT_EQ(at(500, 580) & 0xffffff, 0x0000ffu) << "what is the entity's own is not the layer's";
    EXPECT_LT(sheet.widthAt({500, kSide - 580}), 1);
    paint();
    EXPECT_EQ(at(540, 10), kRed) << "the model shows what the layer has";
}

TEST_F(RenderViews, ViewportsThatAreOffAreEmpty)
{
    line(-1000, 10, 1000, 10, {.colour = 1});
    viewport(4).setOn(false);
    paint(paperName());
    EXPECT_FALSE(isInk(500, 540));
}

TEST_F(RenderViews, ClippedByACircle)
{
    line(-1000, 0, 1000, 0, {.colour = 1});
    line(-1000, 40, 1000, 40, {.colour = 1});
    auto& circle = add(new VcDbCircle({500, 500, 0}, {0, 0, 1}, 150), {.colour = 5}, &paper());
    VcDbViewport& view = viewport(4);
    view.setNonRectClipEntityId(circle.objectId());
    view.setNonRectClipOn(true);
    paint(paperName());
    EXPECT_EQ(at(400, 500), kRed);
    EXPECT_FALSE(isInk(345, 500));
    EXPECT_FALSE(isInk(500, 660));
    EXPECT_EQ(at(350, 500), kBlue);
}

// With PSLTSCALE dashes are as long on the sheet as their linetype says, whatever the scale.
TEST_F(RenderViews, LinetypesOnTheSheet)
{
    linetype("DASHED", {60, -40});
    line(-50, 0, 50, 0, {.colour = 1, .linetype = "DASHED"});
    viewport(3);
    db().header().setInteger("$PSLTSCALE", 70, 1);
    paint(paperName());
    EXPECT_TRUE(isInk(370, 500));
    EXPECT_FALSE(isInk(400, 500));
    EXPECT_TRUE(isInk(450, 500));
    db().header().setInteger("$PSLTSCALE", 70, 0);
    paint(paperName());
    EXPECT_TRUE(isInk(400, 500));
}

TEST_F(RenderViews, LayoutsByName)
{
    EXPECT_TRUE(vk::render::findLayout(db(), "MODEL")->isModel);
    EXPECT_EQ(vk::render::findLayout(db(), paperName())->block, paper().objectId());
    EXPECT_FALSE(vk::render::findLayout(db(), "no such layout"));
}

// The circle goes with the cursor, and a line runs to it from the base point.
TEST_F(RenderViews, WhatFollowsTheCursor)
{
    using namespace vk::edit;
    auto& circle = add(new VcDbCircle({200, 200, 0}, {0, 0, 1}, 50), {.colour = 1});
    add(new VcDbText({100, 190, 0}, L"H", 20), {.colour = 1});
    Display display;
    Question question;
    question.base = VcGePoint3d(100, 100, 0);
    const auto shows = [&] {
        sheet = {};
        vk::render::DisplayList list;
        vk::render::ListBuilder builder(list, db(), omissions);
        vk::render::addOverlay(builder, display);
        vk::render::PageView view;
        view.high = {kSide, kSide};
        vk::render::LookResolver looks(db(), {});
        vk::render::BlockLists blocks(db(), omissions);
        vk::render::PaintBudget budget;
        vk::render::ListPainter(db(), blocks, sheet, looks, view, budget, omissions).paint(list);
    };
    display.follow({{circle.objectId()},
                    [](const VcGePoint3d& to) { return VcGeMatrix3d::translation(to - VcGePoint3d(100, 100, 0)); },
                    {}});
    display.beginDrag(question);
    shows();
    EXPECT_TRUE(sheet.marks.empty()) << "no cursor, nothing to follow it";
    display.cursor = VcGePoint3d(500, 100, 0);
    shows();
    EXPECT_EQ(sheet.at({650, 200}), kRed) << "the circle at its new place";
    EXPECT_EQ(sheet.at({300, 100}), kBlack) << "the band";
    EXPECT_EQ(sheet.at({250, 200}), kPage);
    Question transparent;
    transparent.kind = Question::Kind::Corner;
    display.beginDrag(transparent);
    shows();
    EXPECT_EQ(sheet.at({650, 200}), kPage);
    display.endDrag(transparent, nullptr);
    shows();
    EXPECT_EQ(sheet.at({650, 200}), kRed);
    Answer answer;
    answer.status = Answer::Status::Value;
    answer.hasPoint = true;
    answer.point = {700, 100, 0};
    display.endDrag(question, &answer);
    EXPECT_EQ(display.drag(), nullptr);
    ASSERT_EQ(display.dragged().size(), 1u) << "what was cancelled leaves no record";
    EXPECT_EQ(display.dragged().back().moved, 1u);
    EXPECT_EQ(*display.dragged().back().by * VcGePoint3d(), VcGePoint3d(600, 0, 0));
}

TEST_F(RenderViews, HighlightsAndTemporaryVectors)
{
    VcDbLine& picked = line(0, 100, 1000, 100, {.colour = 1});
    line(0, 200, 1000, 200, {.colour = 1});
    vk::edit::Display display;
    display.highlight(picked.objectId(), true);
    display.addVector({{0, 300, 0}, {1000, 300, 0}, 3, false});
    using namespace vk::render;
    DisplayList list;
    ListBuilder builder(list, db(), omissions);
    addOverlay(builder, display);
    PageView view;
    view.high = {kSide, kSide};
    LookResolver looks(db(), {});
    BlockLists blocks(db(), omissions);
    PaintBudget budget;
    ListPainter(db(), blocks, sheet, looks, view, budget, omissions).paint(list);
    EXPECT_EQ(sheet.at({500, 100}), kBlue);
    EXPECT_EQ(sheet.at({500, 200}), kPage);
    EXPECT_EQ(sheet.at({500, 300}), kGreen);
}
