// What shows something else in its frame: viewports, images and wipeouts, references to blocks and grids of them.
#include "tests/host/sdk_samples.h"

#include <algorithm>
#include <cmath>

namespace {

class Viewports : public testing::Test {
protected:
    SdkDrawing drawing;
    const VcDbObjectId id = addSample(drawing, "Viewport");
};

TEST_F(Viewports, TheScaleIsThatOfSheetToModel)
{
    drawing.undoAndRedo(id, [&] { EXPECT_EQ(Writing<VcDbViewport>(id)->setCustomScale(0.02), Vcad::eOk); });
    Writing<VcDbViewport> viewport(id);
    EXPECT_NEAR(viewport->customScale(), 0.02, 1e-12);
    EXPECT_NEAR(viewport->viewHeight(), 40 / 0.02, 1e-9);
    viewport->setHeight(80);
    EXPECT_NEAR(viewport->customScale(), 0.02, 1e-12) << "a larger window shows more";
    for (const double wrong : {0.0, -1.0, double(NAN), double(INFINITY), 1e-320})
        EXPECT_NE(viewport->setCustomScale(wrong), Vcad::eOk) << wrong;
    EXPECT_NEAR(viewport->customScale(), 0.02, 1e-12);
    ASSERT_EQ(viewport->transformBy(VcGeMatrix3d::scaling(2)), Vcad::eOk);
    EXPECT_NEAR(viewport->customScale(), 0.02, 1e-12);
    EXPECT_NEAR(viewport->width(), 120, 1e-9);
}

TEST_F(Viewports, SwitchesComeBackByUndo)
{
    using V = VcDbViewport;
    drawing.undoAndRedo(id, [&] { Writing<V>(id)->setOn(false); });
    EXPECT_FALSE(Opened<V>(id)->isOn());
    Writing<V>(id)->setOn(true);
    EXPECT_TRUE(Opened<V>(id)->isOn());
    drawing.undoAndRedo(id, [&] { Writing<V>(id)->setLocked(true); });
    EXPECT_TRUE(Opened<V>(id)->isLocked());
    EXPECT_EQ(Opened<V>(id)->number(), 2);
    EXPECT_EQ(Opened<V>(id)->viewCenter(), VcGePoint2d(3, 4));
    EXPECT_EQ(Opened<V>(id)->viewTarget(), VcGePoint3d(1, 1, 1));
    EXPECT_NE(Writing<V>(id)->setViewCenter({NAN, 0}), Vcad::eOk);
    EXPECT_NE(Writing<V>(id)->setViewDirection({}), Vcad::eOk);
    drawing.undoAndRedo(id, [&] { EXPECT_EQ(Writing<V>(id)->setViewDirection({0, -1, 1}), Vcad::eOk); });
    EXPECT_TRUE(Opened<V>(id)->viewDirection().isCodirectionalTo({0, -1, 1}));
}

TEST_F(Viewports, AreClippedByAnEntityThatTheyName)
{
    Writing<VcDbViewport> viewport(id);
    EXPECT_NE(viewport->setNonRectClipOn(true), Vcad::eOk) << "by nothing";
    const VcDbObjectId circle = drawing.add(std::make_unique<VcDbCircle>());
    EXPECT_EQ(viewport->setNonRectClipEntityId(circle), Vcad::eOk);
    EXPECT_EQ(viewport->setNonRectClipOn(true), Vcad::eOk);
    EXPECT_TRUE(viewport->isNonRectClipOn());
    EXPECT_EQ(viewport->nonRectClipEntityId(), circle);
    EXPECT_EQ(viewport->setNonRectClipOn(false), Vcad::eOk);
    EXPECT_FALSE(viewport->isNonRectClipOn());
}

TEST_F(Viewports, KeepACoordinateSystemOfTheirOwn)
{
    drawing.undoAndRedo(id, [&] {
        EXPECT_EQ(Writing<VcDbViewport>(id)->setUcs({1, 2, 3}, {0, 2, 0}, {0, 0, 5}), Vcad::eOk);
    });
    Writing<VcDbViewport> viewport(id);
    EXPECT_NE(viewport->setUcs({}, {1, 0, 0}, {1, 1, 0}), Vcad::eOk);
    EXPECT_NE(viewport->setUcs({}, {}, {0, 1, 0}), Vcad::eOk);
    VcGePoint3d origin;
    VcGeVector3d x, y;
    viewport->getUcs(origin, x, y);
    EXPECT_EQ(origin, VcGePoint3d(1, 2, 3));
    EXPECT_EQ(x, VcGeVector3d(0, 1, 0));
    EXPECT_EQ(y, VcGeVector3d(0, 0, 1));
}

class Images : public testing::Test {
protected:
    std::vector<VcGePoint3d> corners()
    {
        std::vector<VcGePoint3d> found;
        EXPECT_EQ(Opened<VcDbRasterImage>(id)->getVertices(found), Vcad::eOk);
        return found;
    }
    SdkDrawing drawing;
    const VcDbObjectId id = addSample(drawing, "RasterImage");
};

TEST_F(Images, UnclippedShowTheWholePicture)
{
    drawing.undoAndRedo(id, [&] { Writing<VcDbRasterImage>(id)->setClipped(false); });
    EXPECT_FALSE(Opened<VcDbRasterImage>(id)->isClipped());
    const auto whole = corners();
    ASSERT_EQ(whole.size(), 4u);
    const VcGeVector3d u(64, 12.8, 0), v(-9.6, 48, 0);
    const VcGePoint3d origin(1, 2, 0);
    for (const VcGePoint3d& corner : {origin, origin + u, origin + v, origin + u + v})
        EXPECT_TRUE(
            std::any_of(whole.begin(), whole.end(), [&](const VcGePoint3d& p) { return p.distanceTo(corner) < 1e-9; }));
}

TEST_F(Images, BoundariesAreTwoCornersOrAPolygon)
{
    using I = VcDbRasterImage;
    Writing<I> image(id);
    EXPECT_NE(image->setClipBoundary(I::kRect, {{0, 0}}), Vcad::eOk);
    EXPECT_NE(image->setClipBoundary(I::kRect, {{0, 0}, {1, 1}, {2, 2}}), Vcad::eOk);
    EXPECT_NE(image->setClipBoundary(I::kPoly, {{0, 0}, {1, 1}}), Vcad::eOk);
    EXPECT_NE(image->setClipBoundary(I::kInvalid, {{0, 0}, {1, 1}, {2, 0}}), Vcad::eOk);
    EXPECT_NE(image->setClipBoundary(I::kPoly, {{0, 0}, {1, 1}, {NAN, 0}}), Vcad::eOk);
    EXPECT_EQ(image->clipBoundaryType(), I::kRect);
    EXPECT_EQ(image->clipBoundary().size(), 2u);
    EXPECT_EQ(image->setClipBoundary(I::kPoly, {{0, 0}, {100, 0}, {50, 80}}), Vcad::eOk);
    EXPECT_EQ(image->clipBoundaryType(), I::kPoly);
    EXPECT_FALSE(image->isClipInverted());
    EXPECT_NE(image->setImageSize({0, 5}), Vcad::eOk);
    EXPECT_NE(image->setOrientation({}, {1, 0, 0}, {2, 0, 0}), Vcad::eOk) << "flat";
    EXPECT_NE(image->setOrientation({}, {}, {0, 1, 0}), Vcad::eOk);
    EXPECT_EQ(image->imageSize(), VcGeVector2d(640, 480));
    image->setDisplayOpt(I::kTransparent, true);
    image->setDisplayOpt(I::kShow, false);
    EXPECT_TRUE(image->isSetDisplayOpt(I::kTransparent));
    EXPECT_FALSE(image->isSetDisplayOpt(I::kShow));
}

TEST_F(Images, PointToTheirDefinition)
{
    VcDbObjectId definition;
    auto* made = new VcDbRasterImageDef;
    made->setImage({640, 480}, {0.1, 0.1});
    ASSERT_EQ(Writing<VcDbDictionary>(drawing.database.namedObjectsDictionaryId())->setAt(L"PICTURE", made, definition),
              Vcad::eOk);
    EXPECT_EQ(made->resolution(), VcGeVector2d(0.1, 0.1));
    EXPECT_TRUE(made->isLoaded());
    made->close();
    drawing.undoAndRedo(id, [&] { EXPECT_EQ(Writing<VcDbRasterImage>(id)->setImageDefId(definition), Vcad::eOk); });
    EXPECT_EQ(Opened<VcDbRasterImage>(id)->imageDefId(), definition);
    EXPECT_NE(Writing<VcDbRasterImage>(id)->setImageDefId(id), Vcad::eOk);
    EXPECT_EQ(Writing<VcDbRasterImage>(id)->setImageDefId({}), Vcad::eOk);
}

class BlockReferences : public testing::Test {
protected:
    SdkDrawing drawing;
};

TEST_F(BlockReferences, TheTransformTakesTheBlockToItsPlace)
{
    const VcDbObjectId id = addSample(drawing, "BlockReference");
    Writing<VcDbBlockReference> reference(id);
    Writing<VcDbBlockTableRecord>(reference->blockTableRecord())->setOrigin({1, 1, 0});
    const VcGeMatrix3d m = reference->blockTransform();
    EXPECT_TRUE((m * VcGePoint3d(1, 1, 0)).isEqualTo(reference->position(), {1e-9, 1e-9}))
        << "the base point goes to the position";
    const VcGeVector3d along = m * VcGeVector3d(1, 0, 0);
    EXPECT_NEAR(along.length(), 2, 1e-9);
    EXPECT_NEAR(std::atan2(along.y, along.x), 0.5, 1e-9);
    for (const VcGeScale3d& wrong : {VcGeScale3d(0, 1, 1), VcGeScale3d(1, NAN, 1), VcGeScale3d(1, 1, INFINITY)})
        EXPECT_NE(reference->setScaleFactors(wrong), Vcad::eOk);
    EXPECT_TRUE(reference->scaleFactors().isEqualTo({2, -2, 2}));
}

TEST_F(BlockReferences, AnyMoveTakesTheTransformAlong)
{
    const VcGeMatrix3d moves[] = {
        VcGeMatrix3d::translation({3, 4, 5}),
        VcGeMatrix3d::rotation(0.7, {0, 0, 1}, {2, 2, 0}),
        VcGeMatrix3d::rotation(1.1, VcGeVector3d(1, 2, 3).normal()),
        VcGeMatrix3d::scaling(2.5, {1, 1, 1}),
        VcGeMatrix3d::mirroring(VcGePlane(VcGePoint3d(), VcGeVector3d(1, 1, 0))),
        VcGeMatrix3d::mirroring(VcGePlane(VcGePoint3d(), VcGeVector3d(0, 0, 1))),
    };
    for (const VcGeMatrix3d& move : moves) {
        const VcDbObjectId door = drawing.block((L"B" + std::to_wstring(&move - moves)).c_str());
        auto made = std::make_unique<VcDbBlockReference>(VcGePoint3d(5, 6, 1), door);
        made->setScaleFactors({2, 3, 0.5});
        made->setRotation(0.4);
        Writing<VcDbBlockReference> reference(drawing.add(std::move(made)));
        const VcGeMatrix3d wanted = move * reference->blockTransform();
        ASSERT_EQ(reference->transformBy(move), Vcad::eOk);
        for (const VcGePoint3d& p : {VcGePoint3d(), VcGePoint3d(1, 0, 0), VcGePoint3d(0, 1, 0)})
            EXPECT_LT((reference->blockTransform() * p).distanceTo(wanted * p), 1e-9) << "move " << &move - moves;
    }
}

TEST_F(BlockReferences, GridsReachAsFarAsTheirLastCell)
{
    const VcDbObjectId id = addSample(drawing, "MInsert");
    Writing<VcDbMInsertBlock> grid(id);
    grid->setRotation(0);
    grid->setPosition({0, 0, 0});
    VcDbExtents box;
    ASSERT_EQ(grid->getGeomExtents(box), Vcad::eOk);
    EXPECT_TRUE(box.minPoint().isEqualTo({0, -5, 0}));
    EXPECT_TRUE(box.maxPoint().isEqualTo({10, 1, 0})) << "three columns 4 apart, two rows 5 down, of a line to 2,1";
    std::vector<VcDbEntity*> cells;
    ASSERT_EQ(grid->explode(cells), Vcad::eOk);
    EXPECT_EQ(cells.size(), 6u);
    VcDbExtents all;
    for (VcDbEntity* cell : cells) {
        VcDbExtents one;
        EXPECT_EQ(cell->getGeomExtents(one), Vcad::eOk);
        all.addExt(one);
        delete cell;
    }
    EXPECT_TRUE(all.minPoint().isEqualTo(box.minPoint()));
    EXPECT_TRUE(all.maxPoint().isEqualTo(box.maxPoint()));
}

}
