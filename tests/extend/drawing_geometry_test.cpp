// Coordinates, extents, new entities and blocks, views: what needs a drawing.
#include "core/Coordinates.h"
#include "core/EntityGeometry.h"
#include "core/Geometry.h"
#include "core/MakeEntities.h"
#include "core/OpenedObject.h"
#include "core/PublicFunction.h"
#include "core/ViewTools.h"
#include "host/db/coordinate_system.h"
#include "host/db/database.h"
#include "tests/extend/host_support.h"
#include "vcdb.h"

#include <cmath>

namespace {

class DrawingGeometry : public CommandTest {
protected:
    // A quarter turn about Z.
    static void turnUcs(const VcGePoint3d& origin = {10, 20, 0})
    {
        setCurrentUcs(editor().db(), {origin, {0, 1, 0}, {-1, 0, 0}});
    }
    void make(resbuf* chain, vds_name name)
    {
        const RbPtr owned(chain);
        ASSERT_EQ(vcdbEntMakeX(chain, name), RTNORM);
    }
    void makeLine(const VcGePoint3d& from, const VcGePoint3d& to, vds_name name)
    {
        make(vcutBuildList(RTDXF0, L"LINE", 8, L"0", 10, asDblArray(from), 11, asDblArray(to), RTNONE), name);
    }
    void makeMText(int attachment, double rotation, vds_name name)
    {
        const vds_point at = {100, 50, 3};
        make(vcutBuildList(RTDXF0, L"MTEXT", 100, L"AcDbEntity", 8, L"0", 100, L"AcDbMText", 10, at, 40, 2.5, 41, 0.0,
                           71, attachment, 1, L"several words", 50, rotation, RTNONE),
             name);
    }
    static VcGePoint2d sizeOf(const vds_name name)
    {
        const OpenedObject<VcDbMText> text(name);
        return {text->actualWidth(), text->actualHeight()};
    }

    // An anonymous block with a reference to it; its name.
    std::wstring makeBlockOfLine(const VcGePoint3d& from, const VcGePoint3d& to)
    {
        VcDbObjectId block;
        VcDbBlockTableRecord* record = nullptr;
        EXPECT_EQ(defineNewAnonymousBlock(record, block, &editor().drawing()), Vcad::eOk);
        auto* line = new VcDbLine(from, to);
        record->appendVcDbEntity(line);
        line->close();
        wchar_t* name = nullptr;
        record->getName(name);
        const std::wstring copy = name;
        vcutDelString(name);
        record->close();
        makeBlockReference(block, {}, VcGeScale3d(1));
        return copy;
    }
    resbuf m_anything = {};
};

void expectNear(const VcGePoint3d& p, const VcGePoint3d& q, const char* what)
{
    EXPECT_NEAR(p.x, q.x, 1e-9) << what;
    EXPECT_NEAR(p.y, q.y, 1e-9) << what;
    EXPECT_NEAR(p.z, q.z, 1e-9) << what;
}

TEST_F(DrawingGeometry, PointsAndDirectionsBetweenSystems)
{
    turnUcs();
    const vds_point p = {1, 2, 3}, normal = {0, 0, -1};
    vds_point out, back;
    EXPECT_TRUE(uc2wc(p, out, 0));
    expectNear(asPnt3d(out), {8, 21, 3}, "point");
    EXPECT_TRUE(wc2uc(out, back, 0));
    expectNear(asPnt3d(back), {1, 2, 3}, "and back");
    EXPECT_TRUE(uc2wc(p, out, 1));
    expectNear(asPnt3d(out), {-2, 1, 3}, "direction");
    EXPECT_TRUE(ec2uc(normal, p, out, 0));
    EXPECT_TRUE(uc2ec(normal, out, back, 0));
    expectNear(asPnt3d(back), {1, 2, 3}, "entity system and back");
    const vds_point none = {0, 0, 0};
    EXPECT_FALSE(ec2uc(none, p, out, 0));
}

TEST_F(DrawingGeometry, MatricesOfTheUcs)
{
    turnUcs();
    vds_matrix toUcs, toWorld, product;
    wc2ucMatrix(toUcs);
    uc2wcMatrix(toWorld);
    EXPECT_NEAR(toWorld[0][3], 10, 1e-12);
    EXPECT_NEAR(toWorld[1][0], 1, 1e-12);
    EXPECT_EQ(toWorld[3][3], 1);
    multMtx2Mtx(toUcs, toWorld, product);
    vds_matrix identity;
    vk_idmat(identity);
    for (int i = 0; i < 16; ++i)
        EXPECT_NEAR((&product[0][0])[i], (&identity[0][0])[i], 1e-12) << i;
    // A move along the world's X axis is one against the turned Y axis.
    vds_matrix move;
    vk_idmat(move);
    move[0][3] = 5;
    TransDependOnUcs(move);
    EXPECT_NEAR(move[0][3], 0, 1e-12);
    EXPECT_NEAR(move[1][3], -5, 1e-12);
}

TEST_F(DrawingGeometry, OriginMatrixBringsThePointToTheOrigin)
{
    VcGeMatrix3d m;
    getUcsToWcsOriginMatrix(m, {3, 4, 0}, &editor().drawing());
    expectNear(m * VcGePoint3d(3, 4, 0), {0, 0, 0}, "in the world");
    turnUcs();
    getUcsToWcsOriginMatrix(m, {3, 4, 0}, &editor().drawing());
    expectNear(m * VcGePoint3d(13, 24, 0), {0, 0, 0}, "origin");
    expectNear(m * VcGePoint3d(13, 25, 0), {1, 0, 0}, "X axis");
    getUcsToWcsOriginMatrix(m, {3, 4, 0}, nullptr);
    EXPECT_EQ(m, VcGeMatrix3d());
    expectNear(ucsToWcs({1, 2, 3}), {8, 21, 3}, "point");
    const VcGePlane plane = getUcsPlane();
    expectNear(plane.pointOnPlane(), {10, 20, 0}, "plane");
    EXPECT_NEAR(plane.normal().z, 1, 1e-12);
    EXPECT_NEAR(getViewNormal().z, 1, 1e-12);
}

TEST_F(DrawingGeometry, LinesOnLines)
{
    vds_name a = {}, along = {}, beside = {}, point = {};
    makeLine({0, 0, 0}, {10, 0, 0}, a);
    makeLine({20, 0, 0}, {30, 0, 0}, along);
    makeLine({0, 5, 0}, {10, 5, 0}, beside);
    const vds_point at = {0, 0, 0};
    make(vcutBuildList(RTDXF0, L"POINT", 10, at, RTNONE), point);
    EXPECT_TRUE(isLineOnLine(a, along));
    EXPECT_FALSE(isLineOnLine(a, beside));
    EXPECT_FALSE(isLineOnLine(a, point));
    vds_point start, end;
    EXPECT_EQ(getlinept(along, start, end), RTNORM);
    EXPECT_EQ(start[0], 20);
    EXPECT_EQ(end[0], 30);
    EXPECT_EQ(getlinept(point, start, end), RTERROR);
}

// Where the text's place lies in its box, as shares of width and height from the upper left.
const struct {
    int attachment;
    double x, y;
} kPlaces[] = {{1, 0, 0},   {2, 0.5, 0}, {3, 1, 0},   {4, 0, 0.5}, {5, 0.5, 0.5},
               {6, 1, 0.5}, {7, 0, 1},   {8, 0.5, 1}, {9, 1, 1}};

TEST_F(DrawingGeometry, BoxesOfMtextsFollowTheAttachment)
{
    for (const auto& place : kPlaces) {
        vds_name name = {};
        makeMText(place.attachment, 0, name);
        const VcGePoint2d size = sizeOf(name);
        ASSERT_GT(size.x, size.y);
        std::vector<VcGePoint3d> p;
        getMtextActualBoundingPoints(name, p, false, 1.0);
        ASSERT_EQ(p.size(), 4u);
        const VcGePoint3d upperLeft(100 - size.x * place.x, 50 + size.y * place.y, 3);
        expectNear(p[0], upperLeft, "upper left");
        expectNear(p[1], upperLeft + VcGeVector3d(size.x, 0, 0), "upper right");
        expectNear(p[2], upperLeft + VcGeVector3d(0, -size.y, 0), "lower left");
        expectNear(p[3], upperLeft + VcGeVector3d(size.x, -size.y, 0), "lower right");
        p.clear();
        getMtextActualBoundingPoints(name, p, true, 0.4);
        expectNear(p[0], upperLeft + VcGeVector3d(-1, 1, 0), "a gap of 0.4 heights");
        expectNear(p[3], upperLeft + VcGeVector3d(size.x + 1, -size.y - 1, 0), "a gap of 0.4 heights");
    }
}

TEST_F(DrawingGeometry, BoxesOfTurnedMtextsTurnAboutTheirPlace)
{
    for (const auto& place : kPlaces) {
        vds_name name = {};
        makeMText(place.attachment, std::acos(-1) / 2, name);
        const VcGePoint2d size = sizeOf(name);
        std::vector<VcGePoint3d> p;
        getMtextActualBoundingPoints(name, p, true, 0.4);
        ASSERT_EQ(p.size(), 4u);
        // Left of the text is below it, and above it is to the left.
        const double left = size.x * place.x + 1, up = size.y * place.y + 1;
        expectNear(p[0], {100 - up, 50 - left, 3}, "upper left");
        expectNear(p[3], {100 - up + size.y + 2, 50 - left + size.x + 2, 3}, "lower right");
    }
}

TEST_F(DrawingGeometry, PlainBoxesOfMtextsHangFromTheTopLeft)
{
    vds_name name = {};
    makeMText(5, std::acos(-1) / 2, name);
    const VcGePoint2d size = sizeOf(name);
    vds_point corners[4] = {{0, 0, 7}, {0, 0, 7}, {0, 0, 7}, {0, 0, 7}};
    getMtextRectPts(corners, name, 1);
    expectNear(asPnt3d(corners[0]), {99, 49, 7}, "upper left");
    expectNear(asPnt3d(corners[1]), {99, 51 + size.x, 7}, "upper right");
    expectNear(asPnt3d(corners[2]), {101 + size.y, 51 + size.x, 7}, "lower right");
    expectNear(asPnt3d(corners[3]), {101 + size.y, 49, 7}, "lower left");
    vds_name line = {};
    makeLine({0, 0, 0}, {1, 1, 0}, line);
    getMtextRectPts(corners, line, 1);
    EXPECT_EQ(corners[0][0], 99);
    std::vector<VcGePoint3d> none;
    getMtextActualBoundingPoints(line, none, false, 0);
    EXPECT_TRUE(none.empty());
}

TEST_F(DrawingGeometry, ExtentsAreInTheUcs)
{
    vds_name line = {}, text = {}, many = {}, nothing = {};
    makeLine({8, 21, 3}, {7, 25, 3}, line);
    makeText(text);
    makeMText(1, 0, many);
    vds_point low, high;
    EXPECT_EQ(vds_getEntExtent(nothing, low, high), RTERROR);
    turnUcs();
    EXPECT_EQ(vds_getEntExtent(line, low, high), 0);
    expectNear(asPnt3d(low), {1, 3, 3}, "lower corner");
    expectNear(asPnt3d(high), {5, 2, 3}, "upper corner");
    EXPECT_EQ(vds_getEntExtent(text, low, high), RTNORM);
    EXPECT_EQ(vds_getEntExtent(many, low, high), RTERROR);
    expectNear(asPnt3d(low), {30, -90, 3}, "upper left of the mtext");
}

TEST_F(DrawingGeometry, WhatMeasuresNothingHasTheCornersOfAnEmptyBox)
{
    const vds_point at = {1, 2, 0};
    const RbPtr begin(vcutBuildList(RTDXF0, L"BLOCK", 2, L"NOTHING", 70, 0, 10, at, RTNONE));
    const RbPtr end(vcutBuildList(RTDXF0, L"ENDBLK", RTNONE));
    const RbPtr use(vcutBuildList(RTDXF0, L"INSERT", 2, L"NOTHING", 10, at, RTNONE));
    vds_name empty = {};
    ASSERT_EQ(vcdbEntMake(begin.get()), RTNORM);
    ASSERT_EQ(vcdbEntMake(end.get()), RTKWORD);
    ASSERT_EQ(vcdbEntMakeX(use.get(), empty), RTNORM);
    vds_point low, high;
    EXPECT_EQ(vds_getEntExtent(empty, low, high), 0);
    EXPECT_GT(low[0], high[0]);
}

TEST_F(DrawingGeometry, ExtentsOfTexts)
{
    vds_name line = {}, text = {}, many = {};
    makeLine({1, 1, 0}, {2, 2, 0}, line);
    makeText(text);
    makeMText(1, 0, many);
    const VcGePoint2d size = sizeOf(many);
    VcGePoint3d low, high;
    EXPECT_EQ(getTextExtent(text, low, high), RTNORM);
    EXPECT_NEAR(low.y, 2, 0.5);
    EXPECT_GT(high.x, low.x);
    EXPECT_EQ(getTextExtent(many, low, high), RTERROR);
    expectNear(low, {100, 50, 3}, "upper left");
    expectNear(high, {100 + size.x, 50 - size.y, 3}, "lower right");
    EXPECT_EQ(getTextExtent(line, low, high), RTERROR);
    expectNear(low, {0, 0, 0}, "no text");
}

TEST_F(DrawingGeometry, ImagesAreOutlined)
{
    VcDbObjectId id;
    auto* image = new VcDbRasterImage;
    image->setOrientation({10, 20, 0}, {2, 0, 0}, {0, 3, 0});
    image->setImageSize({4, 5});
    ASSERT_EQ(addEntityToDb(id, image, true), 1);
    image->close();
    vds_name name = {}, line = {}, outline = {};
    vcdbGetVdsName(name, id);
    makeLine({0, 0, 0}, {1, 1, 0}, line);
    EXPECT_EQ(DrawImgeBoundingBoxLines(line), 0);
    EXPECT_EQ(DrawImgeBoundingBoxLines(name), 1);
    vcdbEntLast(outline);
    const OpenedObject<VcDbPolyline> drawn(outline);
    ASSERT_TRUE(drawn);
    EXPECT_EQ(drawn->numVerts(), 4u);
    EXPECT_TRUE(drawn->isClosed());
    VcDbExtents extents;
    drawn->getGeomExtents(extents);
    expectNear(extents.minPoint(), {10, 20, 0}, "lower left");
    expectNear(extents.maxPoint(), {18, 35, 0}, "upper right");
}

TEST_F(DrawingGeometry, LinesAndPolylinesAreMade)
{
    const vds_point from = {1, 2, 3}, to = {4, 5, 6};
    EXPECT_EQ(createLine(from, to), RTNORM);
    vds_name name = {};
    vcdbEntLast(name);
    vds_point start, end;
    EXPECT_EQ(getlinept(name, start, end), RTNORM);
    expectNear(asPnt3d(end), {4, 5, 6}, "end");

    CList<SdsVertex, SdsVertex> vertices;
    for (const auto& [x, y] : {std::pair(0.0, 0.0), {10.0, 0.0}, {10.0, 10.0}})
        vertices.AddTail(SdsVertex(x, y, 0, 0.5));
    const struct {
        double lastX;
        unsigned count;
        bool closed;
    } kCases[] = {{1, 4, false}, {1e-4, 4, false}, {9e-6, 3, true}, {0, 3, true}};
    for (const auto& c : kCases) {
        vertices.AddTail(SdsVertex(c.lastX, 0, 0, 0));
        EXPECT_EQ(create_lwpolyline(vertices, 1, 2), RTNORM);
        vertices.RemoveTail();
        vcdbEntLast(name);
        const OpenedObject<VcDbPolyline> line(name);
        ASSERT_TRUE(line);
        EXPECT_EQ(line->numVerts(), c.count) << c.lastX;
        EXPECT_EQ(line->isClosed(), c.closed) << c.lastX;
        double bulge = 0, startWidth = 0, endWidth = 0;
        line->getBulgeAt(1, bulge);
        line->getWidthsAt(0, startWidth, endWidth);
        EXPECT_EQ(bulge, 0.5);
        EXPECT_EQ(startWidth, 1);
        EXPECT_EQ(endWidth, 2);
    }
}

std::vector<VcGePoint3d> pointsOf(const resbuf* chain)
{
    std::vector<VcGePoint3d> points;
    for (; chain; chain = chain->rbnext)
        points.push_back(asPnt3d(chain->resval.rpoint));
    return points;
}

TEST_F(DrawingGeometry, MeetingsGoByEdgeAndProjection)
{
    vds_name level = {}, upright = {}, far = {}, high = {}, beside = {};
    makeLine({0, 0, 0}, {10, 0, 0}, level);
    makeLine({5, -5, 0}, {5, 5, 0}, upright);
    makeLine({5, 3, 0}, {5, 9, 0}, far);
    makeLine({5, -5, 4}, {5, 5, 4}, high);
    makeLine({20, -5, 0}, {20, 5, 0}, beside);
    const struct {
        const char* what;
        const std::int64_t* second;
        int edge, projection;
        std::vector<VcGePoint3d> wanted;
    } kCases[] = {
        {"crossing", upright, 0, 1, {{5, 0, 0}}},
        {"short of the first", far, 0, 1, {}},
        {"extended to the first", far, 1, 1, {{5, 0, 0}}},
        {"above, seen along the UCS", high, 0, 1, {{5, 0, 0}}},
        {"above, seen along the view", high, 0, 2, {{5, 0, 0}}},
        {"beyond the first, which is not extended", beside, 1, 1, {}},
    };
    for (const auto& c : kCases) {
        set_acad_int_var(L"EDGEMODE", c.edge);
        set_acad_int_var(L"PROJMODE", c.projection);
        resbuf* list = nullptr;
        EXPECT_EQ(vds_intersect(level, c.second, &list), int(c.wanted.size())) << c.what;
        const RbPtr owned(list);
        const auto points = pointsOf(list);
        ASSERT_EQ(points.size(), c.wanted.size()) << c.what;
        for (std::size_t i = 0; i < points.size(); ++i)
            expectNear(points[i], c.wanted[i], c.what);
    }
}

TEST_F(DrawingGeometry, MeetingsWithWhatHasPieces)
{
    vds_name level = {}, nothing = {}, stale = {77, 77}, reference = {}, dimension = {};
    makeLine({-10, 1, 0}, {10, 1, 0}, level);
    const std::wstring block = makeBlockOfLine({3, -5, 0}, {3, 5, 0});
    vcdbEntLast(reference);
    const vds_point from = {3, -5, 0}, to = {5, -5, 0}, at = {5, 5, 0};
    make(vcutBuildList(RTDXF0, L"DIMENSION", 100, L"AcDbEntity", 8, L"0", 100, L"AcDbDimension", 2, block.c_str(), 10,
                       at, 70, 33, 3, L"Standard", 100, L"AcDbAlignedDimension", 13, from, 14, to, RTNONE),
         dimension);

    resbuf* list = &m_anything;
    EXPECT_EQ(vds_intersect(level, nothing, &list), 0);
    EXPECT_EQ(list, nullptr);
    EXPECT_EQ(vds_intersect(nothing, level, &list), 0);
    EXPECT_EQ(vds_intersect(level, stale, &list), -1);
    EXPECT_EQ(vds_intersect(stale, level, &list), -1);
    EXPECT_EQ(vds_intersect(level, reference, &list), 0);
    EXPECT_EQ(list, nullptr);

    EXPECT_GE(vds_intersect(level, dimension, &list), 1);
    const RbPtr owned(list);
    bool isAtTheExtensionLine = false;
    for (const VcGePoint3d& p : pointsOf(list)) {
        EXPECT_NEAR(p.y, 1, 1e-9);
        isAtTheExtensionLine |= std::fabs(p.x - 3) < 1e-9;
    }
    EXPECT_TRUE(isAtTheExtensionLine);
}

TEST_F(DrawingGeometry, AnonymousBlocksHoldCopiesAboutTheirBase)
{
    turnUcs({});
    vds_name line = {};
    makeLine({10, 10, 0}, {20, 10, 0}, line);
    VcDbObjectId id, block;
    vcdbGetObjectId(id, line);
    // 10,-10 of the UCS is 10,10 of the world.
    ASSERT_EQ(makeAnonymousBlock(block, {id}, {10, -10, 0}), Vcad::eOk);
    VcDbBlockTableRecord* record = nullptr;
    ASSERT_EQ(vcdbOpenObject(record, block), Vcad::eOk);
    EXPECT_TRUE(record->isAnonymous());
    EXPECT_EQ(record->nameUtf8().substr(0, 2), "*U");
    VcDbBlockTableRecordIterator* members = nullptr;
    record->newIterator(members);
    VcDbEntity* member = nullptr;
    ASSERT_EQ(members->getEntity(member), Vcad::eOk);
    const auto* copy = VcDbLine::cast(member);
    ASSERT_TRUE(copy);
    // The block's axes are those of the UCS.
    expectNear(copy->startPoint(), {0, 0, 0}, "start");
    expectNear(copy->endPoint(), {0, -10, 0}, "end");
    member->close();
    delete members;
    record->close();

    makeBlockReference(block, {5, 6, 7}, VcGeScale3d(2));
    vds_name made = {};
    vcdbEntLast(made);
    const OpenedObject<VcDbBlockReference> reference(made);
    ASSERT_TRUE(reference);
    EXPECT_EQ(reference->blockTableRecord(), block);
    EXPECT_EQ(reference->ownerId(), editor().db().modelSpace());
    EXPECT_EQ(reference->scaleFactors().sy, 2);
    expectNear(reference->position(), {5, 6, 7}, "position");
}

TEST_F(DrawingGeometry, AReferenceOnTheSheetStandsThere)
{
    VcDbObjectId block;
    VcDbBlockTableRecord* record = nullptr;
    ASSERT_EQ(defineNewAnonymousBlock(record, block, &editor().drawing()), Vcad::eOk);
    record->close();
    EXPECT_EQ(defineNewAnonymousBlock(record, block, nullptr), Vcad::eNoDatabase);
    EXPECT_EQ(record, nullptr);
    EXPECT_EQ(IsCmdInPsSpace(), RTNORM);
    set_acad_int_var(L"TILEMODE", 0);
    EXPECT_EQ(IsCmdInPsSpace(), RTERROR);
    EXPECT_NE(printed.find("This command works in model space"), std::string::npos);
    makeBlockReference(block, {}, VcGeScale3d(1));
    vds_name made = {};
    vcdbEntLast(made);
    const OpenedObject<VcDbBlockReference> reference(made);
    ASSERT_TRUE(reference);
    EXPECT_EQ(reference->ownerId(), editor().db().paperSpace());
}

TEST_F(DrawingGeometry, AWindowIsShownWithAMargin)
{
    const vds_point center = {30, 40, 0};
    const struct {
        double width, height;
        bool exact;
        double shown;
    } kCases[] = {{100, 50, true, 50}, {100, 50, false, 52.5}, {20, 50, false, 51}};
    for (const auto& c : kCases) {
        vrxZoom(center, c.width, c.height, c.exact);
        resbuf size = {}, at = {};
        vcedGetVar(L"VIEWSIZE", &size);
        vcedGetVar(L"VIEWCTR", &at);
        EXPECT_NEAR(size.resval.rreal, c.shown, 1e-9);
        EXPECT_NEAR(at.resval.rpoint[0], 30, 1e-9);
        EXPECT_NEAR(at.resval.rpoint[1], 40, 1e-9);
    }
}

}  // namespace
