// What holds for the entities of every class, whatever their groups are.
#include "host/io/drawing_file.h"
#include "tests/host/sdk_samples.h"

namespace {

class EveryEntity : public testing::TestWithParam<EntitySample> {
protected:
    VcDbEntity& entity() { return *VcDbEntity::cast(drawing.core().object(id)); }
    std::size_t liveParts()
    {
        std::size_t count = 0;
        for (std::uint32_t slot = 1; slot < drawing.core().slotCount(); ++slot) {
            const VcDbObject* object = drawing.core().objectAt(slot);
            count += object && !object->isErased() && object->ownerId() == id;
        }
        return count;
    }

    SdkDrawing drawing;
    const VcDbObjectId id = GetParam().add(drawing);
};

INSTANTIATE_TEST_SUITE_P(All, EveryEntity, testing::ValuesIn(entitySamples().begin(), entitySamples().end()),
                         sampleName);

TEST_P(EveryEntity, IsFoundUnderItsClassAndNoOther)
{
    EXPECT_EQ(Opened<VcDbEntity>(id).status, Vcad::eOk);
    EXPECT_EQ(Opened<VcDbLayerTableRecord>(id).status, Vcad::eNotThatKindOfClass);
    EXPECT_EQ(id.objectClass(), entity().isA());
    EXPECT_TRUE(entity().isKindOf(VcDbEntity::desc()));
    EXPECT_EQ(VcDbSymbolTableRecord::cast(&entity()), nullptr);
    EXPECT_EQ(entity().ownerId(), drawing.modelId());
    EXPECT_EQ(entity().blockId(), drawing.modelId());
}

// Attributes belong to the reference's place in the drawing: a copy begins without them.
TEST_P(EveryEntity, ACopySaysTheSame)
{
    const std::unique_ptr<VcDbObject> copy = entity().copyOf();
    std::string said = drawing.saidBy(id);
    if (VcDbBlockReference::cast(&entity()))
        if (const auto follow = said.find("66=1\n"); follow != said.npos)
            said.erase(follow, 5);
    EXPECT_EQ(dumpOf(*copy, drawing.core()), said);
    EXPECT_EQ(copy->isA(), entity().isA());
}

TEST_P(EveryEntity, GoesWithItsPartsAndComesBackWithThem)
{
    const std::string before = drawing.saidBy(id);
    const std::size_t parts = liveParts();
    EXPECT_EQ(Writing<VcDbEntity>(id)->erase(), Vcad::eOk);
    EXPECT_TRUE(id.isErased());
    EXPECT_EQ(liveParts(), 0u);
    EXPECT_EQ(Opened<VcDbEntity>(id).status, Vcad::eWasErased);
    EXPECT_EQ(Writing<VcDbEntity>(id, true)->erase(false), Vcad::eOk);
    EXPECT_EQ(liveParts(), parts);
    EXPECT_EQ(drawing.saidBy(id), before);
}

TEST_P(EveryEntity, TakesItsLooksFromAnother)
{
    Writing<VcDbEntity> like(drawing.line());
    VcCmColor color;
    color.setRGB(10, 200, 30);
    like->setColor(color);
    like->setLayer(drawing.layer(L"Looks"));
    like->setLinetypeScale(2.5);
    like->setLineWeight(VcDb::LineWeight(35));
    like->setVisibility(VcDb::kInvisible);
    drawing.undoAndRedo(id, [&] { EXPECT_EQ(Writing<VcDbEntity>(id)->setPropertiesFrom(&*like), Vcad::eOk); });
    EXPECT_EQ(entity().color(), color);
    EXPECT_EQ(taken(entity().layer()), L"Looks");
    EXPECT_EQ(entity().layerId(), like->layerId());
    EXPECT_EQ(entity().linetypeScale(), 2.5);
    EXPECT_EQ(entity().lineWeight(), 35);
    EXPECT_EQ(entity().visibility(), VcDb::kInvisible);
    EXPECT_NE(entity().setPropertiesFrom(nullptr), Vcad::eOk);
}

TEST_P(EveryEntity, OnALockedLayerRefusesToBeWritten)
{
    const VcDbObjectId layer = drawing.layer(L"Locked");
    Writing<VcDbEntity>(id)->setLayer(layer);
    Writing<VcDbLayerTableRecord>(layer)->setIsLocked(true);
    EXPECT_EQ(Writing<VcDbEntity>(id).status, Vcad::eOnLockedLayer);
    Opened<VcDbEntity> reading(id);
    EXPECT_EQ(reading->upgradeOpen(), Vcad::eOnLockedLayer);
    EXPECT_TRUE(reading->isReadEnabled());
}

TEST_P(EveryEntity, AMoveIsTakenBackAndMadeAgain)
{
    drawing.undoAndRedo(id, [&] { Writing<VcDbEntity>(id)->transformBy(VcGeMatrix3d::translation({10, -20, 30})); });
}

TEST_P(EveryEntity, AMoveMovesTheExtents)
{
    VcDbExtents before, after;
    if (entity().getGeomExtents(before) != Vcad::eOk)
        GTEST_SKIP() << "has none";
    const VcGeVector3d by(10, -20, 0);
    const Vcad::ErrorStatus moved = Writing<VcDbEntity>(id)->transformBy(VcGeMatrix3d::translation(by));
    if (moved == Vcad::eNotApplicable && entity().isKindOf(VcDbOle2Frame::desc()))
        GTEST_SKIP() << "its data repeats the corners";
    ASSERT_EQ(moved, Vcad::eOk);
    ASSERT_EQ(entity().getGeomExtents(after), Vcad::eOk);
    EXPECT_LT(after.minPoint().distanceTo(before.minPoint() + by), 1e-6);
    EXPECT_LT(after.maxPoint().distanceTo(before.maxPoint() + by), 1e-6);
}

TEST_P(EveryEntity, AFlatMatrixIsRefusedAndChangesNothing)
{
    const std::string before = drawing.saidBy(id);
    EXPECT_NE(Writing<VcDbEntity>(id)->transformBy(VcGeMatrix3d::scaling(VcGeScale3d(1, 0, 1))), Vcad::eOk);
    EXPECT_EQ(drawing.saidBy(id), before);
}

TEST_P(EveryEntity, ExplodingLeavesItAsItWas)
{
    const std::string before = drawing.saidBy(id);
    std::vector<VcDbEntity*> pieces;
    const Vcad::ErrorStatus status = Opened<VcDbEntity>(id)->explode(pieces);
    EXPECT_EQ(status == Vcad::eOk, !pieces.empty());
    for (VcDbEntity* piece : pieces) {
        EXPECT_TRUE(piece->objectId().isNull());
        delete piece;
    }
    EXPECT_EQ(drawing.saidBy(id), before);
}

TEST_P(EveryEntity, HasNoPointsWithItselfNorWithNothing)
{
    std::vector<VcGePoint3d> points;
    entity().intersectWith(&entity(), VcDb::kExtendBoth, points);
    EXPECT_TRUE(points.empty());
    EXPECT_NE(entity().intersectWith(nullptr, VcDb::kOnBothOperands, points), Vcad::eOk);
}

TEST_P(EveryEntity, ComesBackFromFilesOfEachRelease)
{
    for (const DxfVersion version : {DxfVersion::R2000, DxfVersion::R2004, DxfVersion::R2007, DxfVersion::R2010,
                                     DxfVersion::R2013, DxfVersion::R2018})
        for (const bool binary : {false, true}) {
            if (version < GetParam().oldest)
                continue;
            SCOPED_TRACE(std::string(releaseName(version)) + (binary ? " binary" : ""));
            WriteOptions options;
            options.version = version;
            options.binary = binary;
            std::string bytes;
            const WriteResult written = writeDrawingBytes(drawing.database, bytes, options);
            ASSERT_TRUE(written.ok()) << written.message;
            VcDbDatabase again(false);
            const ReadResult read = readDrawingBytes(again, bytes);
            ASSERT_TRUE(read.ok()) << read.message;
            EXPECT_EQ(read.problems.total(), 0u) << read.problems.items().front().text;
            VcDbObject* twin = again.core().object(again.core().findHandle(id.handle().value()));
            ASSERT_NE(twin, nullptr);
            EXPECT_EQ(twin->isA(), entity().isA());
            EXPECT_EQ(dumpOf(*twin, again.core(), version), drawing.saidBy(id, version));
        }
}

}
