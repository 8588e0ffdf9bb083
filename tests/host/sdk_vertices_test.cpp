// Polylines and meshes that own their vertices, and those whose vertices are values: counts, walks, undo, what is refused.
#include "tests/host/sdk_samples.h"

#include <memory>

namespace {

class OwnedVertices : public testing::TestWithParam<const char*> {
protected:
    VcDbVertexOwner& owner() { return *VcDbVertexOwner::cast(drawing.core().object(id)); }
    VcDbObjectIdArray walked(bool forward = true, bool skipErased = true)
    {
        std::unique_ptr<VcDbObjectIterator> at(owner().vertexIterator());
        VcDbObjectIdArray ids;
        for (at->start(forward, skipErased); !at->done(); at->step(forward, skipErased))
            ids.push_back(at->objectId());
        EXPECT_TRUE(at->objectId().isNull());
        return ids;
    }
    SdkDrawing drawing;
    const VcDbObjectId id = addSample(drawing, GetParam());
};

INSTANTIATE_TEST_SUITE_P(All, OwnedVertices,
                         testing::Values("HeavyPolyline", "SpacePolyline", "PolygonMesh", "PolyFaceMesh"),
                         [](const auto& info) { return std::string(info.param); });

TEST_P(OwnedVertices, AreWalkedEitherWayWithOrWithoutTheErased)
{
    const VcDbObjectIdArray all = walked();
    ASSERT_GE(all.size(), 3u);
    EXPECT_EQ(walked(false), VcDbObjectIdArray(all.rbegin(), all.rend()));
    for (const VcDbObjectId vertex : all)
        EXPECT_EQ(Opened<VcDbVertex>(vertex)->ownerId(), id);
    const std::size_t mark = drawing.core().undo().mark();
    Writing<VcDbVertex>(all[1])->erase();
    EXPECT_EQ(walked().size(), all.size() - 1);
    EXPECT_EQ(walked(true, false), all);
    EXPECT_EQ(owner().vertices().size(), all.size() - 1);
    drawing.core().undo().rollback(mark);
    EXPECT_EQ(walked(), all);
}

TEST_P(OwnedVertices, MoveWithTheirOwnerAndBack)
{
    const VcDbObjectIdArray all = walked();
    std::vector<VcGePoint3d> before;
    for (const VcDbObjectId vertex : all)
        before.push_back(Opened<VcDbVertex>(vertex)->position());
    const std::size_t mark = drawing.core().undo().mark();
    const VcGeVector3d by(5, -6, 0);
    ASSERT_EQ(Writing<VcDbVertexOwner>(id)->transformBy(VcGeMatrix3d::translation(by)), Vcad::eOk);
    for (std::size_t i = 0; i < all.size(); ++i) {
        const bool isFace = all[i].objectClass() == VcDbFaceRecord::desc();
        EXPECT_TRUE(
            Opened<VcDbVertex>(all[i])->position().isEqualTo(isFace ? before[i] : before[i] + by, {1e-9, 1e-9}));
    }
    drawing.core().undo().rollback(mark);
    for (std::size_t i = 0; i < all.size(); ++i)
        EXPECT_EQ(Opened<VcDbVertex>(all[i])->position(), before[i]);
}

TEST_P(OwnedVertices, LookLikeTheirOwner)
{
    const VcDbObjectId layer = drawing.layer(L"Wall");
    Writing<VcDbVertexOwner>(id)->setLayer(layer);
    for (const VcDbObjectId vertex : walked())
        EXPECT_EQ(Opened<VcDbVertex>(vertex)->layerId(), layer);
    EXPECT_EQ(VcDbEntity::cast(drawing.core().object(owner().endMark()))->isA(), VcDbSequenceEnd::desc());
}

TEST(HeavyPolylines, TakeVerticesOneByOneUnderUndo)
{
    SdkDrawing drawing;
    const VcDbObjectId id = addSample(drawing, "HeavyPolyline");
    const std::size_t mark = drawing.core().undo().mark();
    VcDbObjectId added;
    auto* vertex = new VcDb2dVertex({9, 9, 0}, 0.25, 1, 2);
    ASSERT_EQ(Writing<VcDb2dPolyline>(id)->appendVertex(added, vertex), Vcad::eOk);
    EXPECT_EQ(Writing<VcDb2dPolyline>(id)->appendVertex(added, vertex), Vcad::eInvalidInput) << "twice";
    EXPECT_EQ(Writing<VcDb2dPolyline>(id)->appendVertex(added, nullptr), Vcad::eInvalidInput);
    vertex->close();
    EXPECT_EQ(Opened<VcDb2dPolyline>(id)->vertices().size(), 4u);
    EXPECT_EQ(Opened<VcDb2dPolyline>(id)->vertexPosition(*vertex).z, 2) << "at the polyline's elevation";
    auto span = drawing.core().undo().rollbackKeeping(mark);
    EXPECT_EQ(Opened<VcDb2dPolyline>(id)->vertices().size(), 3u);
    drawing.core().undo().redo(std::move(span));
    EXPECT_EQ(Opened<VcDb2dPolyline>(id)->vertices().size(), 4u);
    Writing<VcDb2dVertex> v(added);
    EXPECT_EQ(v->vertexType(), VcDb::k2dVertex);
    EXPECT_EQ(v->setEndWidth(3), Vcad::eOk);
    EXPECT_NE(v->setEndWidth(-1), Vcad::eOk);
    EXPECT_EQ(v->endWidth(), 3);
    v->setVertexFlags(VcDbVertex::kSplineFrame);
    EXPECT_EQ(v->vertexType(), VcDb::k2dSplineCtlVertex);
    EXPECT_FALSE(v->isTangentUsed());
    EXPECT_EQ(Opened<VcDb2dPolyline>(id)->polyType(), VcDb::k2dSimplePoly);
    EXPECT_FALSE(Opened<VcDb2dPolyline>(id)->isLinetypeGenerationOn());
}

TEST(FaceMeshes, CountWhatTheyHoldUnderUndo)
{
    SdkDrawing drawing;
    const VcDbObjectId id = addSample(drawing, "PolyFaceMesh");
    EXPECT_EQ(Opened<VcDbPolyFaceMesh>(id)->numVertices(), 3);
    EXPECT_EQ(Opened<VcDbPolyFaceMesh>(id)->numFaces(), 1);
    drawing.undoAndRedo(id, [&] {
        VcDbObjectId added;
        auto* vertex = new VcDbPolyFaceMeshVertex({5, 5, 5});
        EXPECT_EQ(Writing<VcDbPolyFaceMesh>(id)->appendVertex(added, vertex), Vcad::eOk);
        vertex->close();
    });
    EXPECT_EQ(Opened<VcDbPolyFaceMesh>(id)->numVertices(), 4);
    VcDbFaceRecord face(1, 2, -3, 4);
    std::int16_t number = 0;
    EXPECT_EQ(face.getVertexAt(2, number), Vcad::eOk);
    EXPECT_EQ(number, -3);
    EXPECT_EQ(face.getVertexAt(4, number), Vcad::eInvalidIndex);
    EXPECT_EQ(face.setVertexAt(4, 1), Vcad::eInvalidIndex);
    EXPECT_EQ(face.setVertexAt(0, 7), Vcad::eOk);
    EXPECT_EQ(face.getVertexAt(0, number), Vcad::eOk);
    EXPECT_EQ(number, 7);
}

class LightPolylines : public testing::Test {
protected:
    SdkDrawing drawing;
    const VcDbObjectId id = addSample(drawing, "Polyline");
};

TEST_F(LightPolylines, RefuseIndexesThatAreNone)
{
    const std::string before = drawing.saidBy(id);
    Writing<VcDbPolyline> p(id);
    ASSERT_EQ(p->numVerts(), 3u);
    VcGePoint2d flat(7, 7);
    VcGePoint3d point;
    double a = 7, b = 7;
    EXPECT_NE(p->getPointAt(3, flat), Vcad::eOk);
    EXPECT_NE(p->getPointAt(3, point), Vcad::eOk);
    EXPECT_NE(p->getBulgeAt(3, a), Vcad::eOk);
    EXPECT_NE(p->getWidthsAt(3, a, b), Vcad::eOk);
    EXPECT_NE(p->setPointAt(3, {}), Vcad::eOk);
    EXPECT_NE(p->setBulgeAt(3, 0), Vcad::eOk);
    EXPECT_NE(p->setWidthsAt(3, 0, 0), Vcad::eOk);
    EXPECT_NE(p->removeVertexAt(3), Vcad::eOk);
    EXPECT_NE(p->addVertexAt(4, {}), Vcad::eOk);
    EXPECT_NE(p->addVertexAt(0, {NAN, 0}), Vcad::eOk);
    EXPECT_NE(p->addVertexAt(0, {0, 0}, INFINITY), Vcad::eOk);
    EXPECT_NE(p->setWidthsAt(0, -1, 0), Vcad::eOk);
    EXPECT_NE(p->setConstantWidth(-1), Vcad::eOk);
    EXPECT_NE(p->setConstantWidth(NAN), Vcad::eOk);
    EXPECT_EQ(flat, VcGePoint2d(7, 7));
    EXPECT_EQ(a + b, 14);
    EXPECT_EQ(drawing.saidBy(id), before);
}

TEST_F(LightPolylines, EveryChangeIsUndone)
{
    using P = VcDbPolyline;
    for (Vcad::ErrorStatus (*set)(P&) :
         {+[](P& p) {
              return p.addVertexAt(1, {8, 8}, 0.5);
          },
          +[](P& p) { return p.removeVertexAt(0); },
          +[](P& p) {
              return p.setPointAt(1, {3, 3});
          },
          +[](P& p) { return p.setBulgeAt(0, -2); }, +[](P& p) { return p.setWidthsAt(2, 1, 2); },
          +[](P& p) { return p.setConstantWidth(0.5); }, +[](P& p) { return p.reverseCurve(); },
          +[](P& p) {
              p.setClosed(false);
              p.setPlinegen(false);
              return Vcad::eOk;
          }})
        drawing.undoAndRedo(id, [&] { EXPECT_EQ(set(*Writing<P>(id)), Vcad::eOk); });
    Opened<P> p(id);
    EXPECT_TRUE(p->hasWidth());
    EXPECT_FALSE(p->isClosed() || p->hasPlinegen());
    double width = 0;
    EXPECT_EQ(p->getConstantWidth(width), Vcad::eOk);
    EXPECT_EQ(width, 0.5);
}

TEST(Splines, TellTheirPolesAndRefuseOthers)
{
    SdkDrawing drawing;
    const VcDbObjectId id = addSample(drawing, "Spline");
    drawing.undoAndRedo(id, [&] { EXPECT_EQ(Writing<VcDbSpline>(id)->setControlPointAt(1, {7, 8, 9}), Vcad::eOk); });
    Writing<VcDbSpline> spline(id);
    EXPECT_EQ(spline->degree(), 2);
    EXPECT_TRUE(spline->isRational());
    EXPECT_FALSE(spline->isPeriodic() || spline->hasFitData());
    EXPECT_EQ(spline->weightAt(2), 0.5);
    VcGePoint3d p(1, 1, 1);
    EXPECT_EQ(spline->getControlPointAt(1, p), Vcad::eOk);
    EXPECT_EQ(p, VcGePoint3d(7, 8, 9));
    for (const int wrong : {-1, 4, 1000}) {
        EXPECT_NE(spline->getControlPointAt(wrong, p), Vcad::eOk);
        EXPECT_NE(spline->setControlPointAt(wrong, {}), Vcad::eOk);
        EXPECT_NE(spline->getFitPointAt(wrong, p), Vcad::eOk);
        EXPECT_EQ(spline->weightAt(wrong), 1);
    }
    EXPECT_NE(spline->setControlPointAt(0, {NAN, 0, 0}), Vcad::eOk);
    EXPECT_EQ(spline->numFitPoints(), 0);
    EXPECT_EQ(p, VcGePoint3d(7, 8, 9));
}

TEST(Faces, HideTheirEdgesOneByOne)
{
    SdkDrawing drawing;
    const VcDbObjectId id = addSample(drawing, "Face");
    const auto visible = [&](unsigned edge) {
        bool on = false;
        EXPECT_EQ(Opened<VcDbFace>(id)->isEdgeVisibleAt(edge, on), Vcad::eOk);
        return on;
    };
    EXPECT_TRUE(visible(0) && visible(1) && !visible(2) && visible(3));
    drawing.undoAndRedo(id, [&] { EXPECT_EQ(Writing<VcDbFace>(id)->makeEdgeVisibleAt(2), Vcad::eOk); });
    drawing.undoAndRedo(id, [&] { EXPECT_EQ(Writing<VcDbFace>(id)->makeEdgeInvisibleAt(0), Vcad::eOk); });
    EXPECT_TRUE(!visible(0) && visible(1) && visible(2) && visible(3));
    bool on = false;
    VcGePoint3d p;
    Writing<VcDbFace> face(id);
    EXPECT_NE(face->isEdgeVisibleAt(4, on), Vcad::eOk);
    EXPECT_NE(face->makeEdgeInvisibleAt(4), Vcad::eOk);
    EXPECT_NE(face->getVertexAt(4, p), Vcad::eOk);
    EXPECT_NE(face->setVertexAt(4, p), Vcad::eOk);
    EXPECT_NE(face->setVertexAt(0, {0, 0, INFINITY}), Vcad::eOk);
    EXPECT_EQ(face->setVertexAt(3, {5, 5, 5}), Vcad::eOk);
    EXPECT_EQ(face->getVertexAt(3, p), Vcad::eOk);
    EXPECT_EQ(p, VcGePoint3d(5, 5, 5));
}

}
