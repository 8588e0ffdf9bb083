// Setters that take an id: of the wrong class, of another drawing, erased or null it is refused, and nothing changes.
#include "tests/host/sdk_samples.h"

namespace {

struct ReferenceCase {
    const char* name;
    const char* sample;  // of entitySamples()
    Vcad::ErrorStatus (*set)(VcDbEntity& entity, VcDbObjectId id);
    VcDbObjectId (*good)(SdkDrawing& drawing);
    VcDbObjectId (*get)(const VcDbEntity& entity);
    bool takesNull = false;
};

template <class T>
T& as(VcDbEntity& entity)
{
    return static_cast<T&>(entity);
}

template <class T>
const T& as(const VcDbEntity& entity)
{
    return static_cast<const T&>(entity);
}

VcDbObjectId newLinetype(SdkDrawing& d) { return d.addRecord<VcDbLinetypeTable, VcDbLinetypeTableRecord>(L"Dots"); }

const ReferenceCase kCases[] = {
    {"Layer", "Line", [](VcDbEntity& e, VcDbObjectId id) { return e.setLayer(id); },
     [](SdkDrawing& d) { return d.layer(L"Wall"); }, [](const VcDbEntity& e) { return e.layerId(); }},
    {"Linetype", "Line", [](VcDbEntity& e, VcDbObjectId id) { return e.setLinetype(id); }, newLinetype,
     [](const VcDbEntity& e) { return e.linetypeId(); }},
    {"TextStyle", "Text", [](VcDbEntity& e, VcDbObjectId id) { return as<VcDbText>(e).setTextStyle(id); },
     [](SdkDrawing& d) { return d.style(L"Notes"); }, [](const VcDbEntity& e) { return as<VcDbText>(e).textStyle(); }},
    {"MTextStyle", "MText", [](VcDbEntity& e, VcDbObjectId id) { return as<VcDbMText>(e).setTextStyle(id); },
     [](SdkDrawing& d) { return d.style(L"Notes"); }, [](const VcDbEntity& e) { return as<VcDbMText>(e).textStyle(); }},
    {"Block", "BlockReference",
     [](VcDbEntity& e, VcDbObjectId id) { return as<VcDbBlockReference>(e).setBlockTableRecord(id); },
     [](SdkDrawing& d) { return d.block(L"GATE"); },
     [](const VcDbEntity& e) { return as<VcDbBlockReference>(e).blockTableRecord(); }},
    {"DimensionStyle", "AlignedDimension",
     [](VcDbEntity& e, VcDbObjectId id) { return as<VcDbDimension>(e).setDimensionStyle(id); },
     [](SdkDrawing& d) { return d.dimStyle(L"Big"); },
     [](const VcDbEntity& e) { return as<VcDbDimension>(e).dimensionStyle(); }},
    {"LeaderStyle", "Leader", [](VcDbEntity& e, VcDbObjectId id) { return as<VcDbLeader>(e).setDimensionStyle(id); },
     [](SdkDrawing& d) { return d.dimStyle(L"Big"); },
     [](const VcDbEntity& e) { return as<VcDbLeader>(e).dimensionStyle(); }},
    {"ToleranceStyle", "Tolerance", [](VcDbEntity& e, VcDbObjectId id) { return as<VcDbFcf>(e).setDimensionStyle(id); },
     [](SdkDrawing& d) { return d.dimStyle(L"Big"); },
     [](const VcDbEntity& e) { return as<VcDbFcf>(e).dimensionStyle(); }},
    {"Annotation", "Leader", [](VcDbEntity& e, VcDbObjectId id) { return as<VcDbLeader>(e).attachAnnotation(id); },
     [](SdkDrawing& d) { return d.add(std::make_unique<VcDbMText>()); },
     [](const VcDbEntity& e) { return as<VcDbLeader>(e).annotationObjId(); }},
    {"ViewportClip", "Viewport",
     [](VcDbEntity& e, VcDbObjectId id) { return as<VcDbViewport>(e).setNonRectClipEntityId(id); },
     [](SdkDrawing& d) { return d.add(std::make_unique<VcDbCircle>()); },
     [](const VcDbEntity& e) { return as<VcDbViewport>(e).nonRectClipEntityId(); }, true},
    {"DimensionBlock", "AlignedDimension",
     [](VcDbEntity& e, VcDbObjectId id) { return as<VcDbDimension>(e).setDimBlockId(id); },
     [](SdkDrawing& d) { return d.block(L"PICTURE"); },
     [](const VcDbEntity& e) { return as<VcDbDimension>(e).dimBlockId(); }, true},
};

class References : public testing::TestWithParam<ReferenceCase> {
protected:
    SdkDrawing drawing;
    const VcDbObjectId id = addSample(drawing, GetParam().sample);
};

INSTANTIATE_TEST_SUITE_P(All, References, testing::ValuesIn(kCases),
                         [](const auto& info) { return std::string(info.param.name); });

TEST_P(References, TakeWhatFitsAndUndoIt)
{
    const VcDbObjectId good = GetParam().good(drawing);
    drawing.undoAndRedo(id, [&] { EXPECT_EQ(GetParam().set(*Writing<VcDbEntity>(id), good), Vcad::eOk); });
    EXPECT_EQ(GetParam().get(*Opened<VcDbEntity>(id)), good);
}

TEST_P(References, RefuseWhatDoesNot)
{
    const std::string before = drawing.saidBy(id);
    SdkDrawing foreign;
    const VcDbObjectId erased = GetParam().good(drawing);
    ASSERT_EQ(Writing<VcDbObject>(erased)->erase(), Vcad::eOk);
    std::vector<VcDbObjectId> bad{drawing.database.regAppTableId(), drawing.database.namedObjectsDictionaryId(),
                                  GetParam().good(foreign), erased};
    if (!GetParam().takesNull)
        bad.push_back({});
    for (const VcDbObjectId wrong : bad) {
        EXPECT_NE(GetParam().set(*Writing<VcDbEntity>(id), wrong), Vcad::eOk)
            << (wrong.objectClass() ? wrong.objectClass()->name() : "null");
        EXPECT_EQ(drawing.saidBy(id), before);
    }
}

TEST(ReferencesByName, FindTheRecordInAnyCaseOrChangeNothing)
{
    SdkDrawing drawing;
    const VcDbObjectId wall = drawing.layer(L"Wall"), dots = newLinetype(drawing), id = drawing.line();
    Writing<VcDbLine> line(id);
    EXPECT_EQ(line->setLayer(L"WALL"), Vcad::eOk);
    EXPECT_EQ(line->setLinetype(L"dots"), Vcad::eOk);
    for (const wchar_t* missing : {L"nowhere", L"", static_cast<const wchar_t*>(nullptr)}) {
        EXPECT_NE(line->setLayer(missing), Vcad::eOk);
        EXPECT_NE(line->setLinetype(missing), Vcad::eOk);
    }
    EXPECT_EQ(line->layerId(), wall);
    EXPECT_EQ(line->linetypeId(), dots);
    EXPECT_EQ(taken(line->linetype()), L"Dots");
    EXPECT_NE(VcDbLine().setLayer(L"0"), Vcad::eOk) << "it is in no drawing that has layers";
}

TEST(ReferencesAcross, EntitiesWithLooksOfAnotherDrawingAreRefused)
{
    SdkDrawing there, here;
    auto line = std::make_unique<VcDbLine>();
    ASSERT_EQ(line->setLayer(there.layer(L"Wall")), Vcad::eOk);
    EXPECT_EQ(Writing<VcDbBlockTableRecord>(here.modelId())->appendVcDbEntity(line.get()), Vcad::eWrongDatabase);
    EXPECT_TRUE(line->objectId().isNull()) << "it stays the caller's";
    const VcDbObjectId a = there.line(), b = here.line();
    const std::string before = here.saidBy(b);
    EXPECT_NE(Writing<VcDbLine>(b)->setPropertiesFrom(&*Opened<VcDbLine>(a)), Vcad::eOk);
    EXPECT_EQ(here.saidBy(b), before);
}

TEST(ReferencesOfViewports, FreezeLayersAlone)
{
    SdkDrawing drawing;
    const VcDbObjectId wall = drawing.layer(L"Wall"), text = drawing.layer(L"Text"),
                       id = addSample(drawing, "Viewport");
    const auto freeze = [&](const VcDbObjectIdArray& ids) {
        return Writing<VcDbViewport>(id)->freezeLayersInViewport(ids);
    };
    drawing.undoAndRedo(id, [&] { EXPECT_EQ(freeze({wall, text, wall}), Vcad::eOk); });
    EXPECT_EQ(Opened<VcDbViewport>(id)->frozenLayers(), (VcDbObjectIdArray{wall, text}));
    EXPECT_EQ(Writing<VcDbLayerTableRecord>(wall)->erase(), Vcad::eCannotBeErased) << "the viewport names it";
    EXPECT_NE(freeze({text, drawing.database.textstyle()}), Vcad::eOk);
    EXPECT_NE(freeze({VcDbObjectId()}), Vcad::eOk);
    EXPECT_NE(freeze({VcDbDatabase().clayer()}), Vcad::eOk);
    Writing<VcDbViewport> viewport(id);
    EXPECT_EQ(viewport->thawLayersInViewport({text, drawing.database.clayer()}), Vcad::eOk);
    EXPECT_TRUE(viewport->isLayerFrozenInViewport(wall));
    EXPECT_FALSE(viewport->isLayerFrozenInViewport(text));
    EXPECT_EQ(viewport->thawAllLayersInViewport(), Vcad::eOk);
    EXPECT_TRUE(viewport->frozenLayers().empty());
}

}
