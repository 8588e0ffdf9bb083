// Dimensions, leaders and frames: what their variables are, where their texts stand, and pictures that follow.
#include "tests/host/sdk_samples.h"

#include "host/db/rec_dim_variables.h"

#include <cmath>

namespace {

class Dimensions : public testing::TestWithParam<EntitySample> {
protected:
    VcDbDimension& dimension() { return *VcDbDimension::cast(drawing.core().object(id)); }
    SdkDrawing drawing;
    const VcDbObjectId id = GetParam().add(drawing);
};

std::vector<EntitySample> dimensionSamples()
{
    std::vector<EntitySample> found;
    for (const EntitySample& sample : entitySamples())
        if (std::string(sample.name).ends_with("Dimension"))
            found.push_back(sample);
    return found;
}

INSTANTIATE_TEST_SUITE_P(All, Dimensions, testing::ValuesIn(dimensionSamples()), sampleName);

TEST_P(Dimensions, HaveAPictureOfTheirOwn)
{
    const VcDbObjectId block = dimension().dimBlockId();
    Opened<VcDbBlockTableRecord> record(block);
    ASSERT_TRUE(record);
    EXPECT_TRUE(record->isAnonymous());
    VcDbBlockTableRecordIterator members(*record, true);
    EXPECT_FALSE(members.done());
    EXPECT_GT(dimension().measurement(), 0);
    EXPECT_EQ(Writing<VcDbBlockTableRecord>(block).status, Vcad::eWasOpenForRead);
}

TEST_P(Dimensions, TheTextStaysWhereItIsPut)
{
    EXPECT_TRUE(dimension().isUsingDefaultTextPosition());
    const VcGePoint3d wanted(30, 40, 0);
    drawing.undoAndRedo(id, [&] { EXPECT_EQ(Writing<VcDbDimension>(id)->setTextPosition(wanted), Vcad::eOk); });
    EXPECT_FALSE(dimension().isUsingDefaultTextPosition());
    EXPECT_LT(dimension().textPosition().distanceTo(wanted), 1e-9);
    EXPECT_EQ(Writing<VcDbDimension>(id)->recomputeDimBlock(), Vcad::eOk);
    EXPECT_LT(dimension().textPosition().distanceTo(wanted), 1e-9);
    EXPECT_EQ(Writing<VcDbDimension>(id)->transformBy(VcGeMatrix3d::translation({5, 0, 0})), Vcad::eOk);
    EXPECT_LT(dimension().textPosition().distanceTo(wanted + VcGeVector3d(5, 0, 0)), 1e-9);
}

TEST_P(Dimensions, TextsAreAnyButNull)
{
    Writing<VcDbDimension> d(id);
    EXPECT_EQ(taken(d->dimensionText()), L"<> mm");
    EXPECT_NE(d->setDimensionText(nullptr), Vcad::eOk);
    EXPECT_EQ(d->setDimensionText(L""), Vcad::eOk);
    EXPECT_EQ(taken(d->dimensionText()), L"");
    EXPECT_EQ(d->setDimensionText(L"\x00d8 5 \x4e2d"), Vcad::eOk);
    EXPECT_EQ(taken(d->dimensionText()), L"\x00d8 5 \x4e2d");
}

// Setting a variable on the dimension wins over its style and is undone; removing it brings the style's back.
TEST_P(Dimensions, OverridesOfEveryVariableComeAndGo)
{
    const VcDbDimVars plain = dimension().dimVars();
    for (const DimVariable& variable : dimVariables()) {
        if (!variable.isNumber())
            continue;
        SCOPED_TRACE(variable.name);
        const double other = variable.kind == DimVariable::Kind::Number ? 1 - dimNumber(plain, variable)
                                                                        : dimNumber(plain, variable) + 0.5;
        {
            Writing<VcDbDimension> d(id);
            VcDbDimOverrides overrides(*d);
            EXPECT_FALSE(overrides.has(variable.code));
            if (variable.kind == DimVariable::Kind::Number) {
                EXPECT_EQ(overrides.setInteger(variable.code, std::int16_t(other)), Vcad::eOk);
            } else {
                EXPECT_EQ(overrides.setReal(variable.code, other), Vcad::eOk);
            }
            ASSERT_TRUE(overrides.number(variable.code));
            EXPECT_NEAR(*overrides.number(variable.code), other, 1e-12);
            EXPECT_NEAR(dimNumber(d->dimVars(), variable), other, 1e-12);
            EXPECT_EQ(dimNumber(Opened<VcDbDimStyleTableRecord>(d->dimensionStyle())->dimVars(), variable),
                      dimNumber(plain, variable));
            EXPECT_EQ(overrides.remove(variable.code), Vcad::eOk);
            EXPECT_FALSE(overrides.has(variable.code));
        }
        EXPECT_EQ(dimension().dimVars(), plain);
    }
    Writing<VcDbDimension> d(id);
    VcDbDimOverrides overrides(*d);
    EXPECT_NE(overrides.setReal(9999, 1), Vcad::eOk);
}

TEST_P(Dimensions, AMoveMovesThePictureAndKeepsTheMeasure)
{
    const double measure = dimension().measurement();
    ASSERT_EQ(Writing<VcDbDimension>(id)->transformBy(VcGeMatrix3d::rotation(0.3, {0, 0, 1}) *
                                                      VcGeMatrix3d::translation({7, 8, 0})),
              Vcad::eOk);
    const bool isOrdinate = dimension().isKindOf(VcDbOrdinateDimension::desc());
    if (!isOrdinate) {
        EXPECT_NEAR(dimension().measurement(), measure, 1e-9);
    }
    const bool isAngular = dimension().isKindOf(VcDb2LineAngularDimension::desc()) ||
                           dimension().isKindOf(VcDb3PointAngularDimension::desc());
    const double moved = dimension().measurement();
    ASSERT_EQ(Writing<VcDbDimension>(id)->transformBy(VcGeMatrix3d::scaling(2)), Vcad::eOk);
    EXPECT_NEAR(dimension().measurement(), isAngular ? moved : 2 * moved, 1e-9);
    EXPECT_EQ(Writing<VcDbDimension>(id)->transformBy(VcGeMatrix3d::scaling(VcGeScale3d(1, 2, 1))),
              Vcad::eCannotScaleNonUniformly);
}

TEST(DimensionStyles, AChangedStyleChangesItsDimensions)
{
    SdkDrawing drawing;
    const VcDbObjectId id = addSample(drawing, "AlignedDimension");
    const VcDbObjectId style = Opened<VcDbDimension>(id)->dimensionStyle();
    VcDbExtents before, after;
    Opened<VcDbDimension>(id)->getGeomExtents(before);
    VcDbDimVars vars = Opened<VcDbDimStyleTableRecord>(style)->dimVars();
    vars.dimtxt *= 10;
    drawing.undoAndRedo(style, [&] { Writing<VcDbDimStyleTableRecord>(style)->setDimVars(vars); });
    EXPECT_EQ(Opened<VcDbDimension>(id)->dimVars().dimtxt, vars.dimtxt);
    Writing<VcDbDimension>(id)->recomputeDimBlock();
    Opened<VcDbDimension>(id)->getGeomExtents(after);
    EXPECT_GT(after.maxPoint().distanceTo(after.minPoint()), before.maxPoint().distanceTo(before.minPoint()));
}

TEST(DimensionOverrides, NameBlocksAndStylesByReference)
{
    SdkDrawing drawing;
    const VcDbObjectId id = addSample(drawing, "AlignedDimension"), style = drawing.style(L"Notes");
    constexpr int kTextStyle = 340, kPost = 3;
    {
        Writing<VcDbDimension> d(id);
        VcDbDimOverrides overrides(*d);
        EXPECT_TRUE(overrides.reference(kTextStyle).isNull());
        EXPECT_EQ(overrides.setReference(kTextStyle, style), Vcad::eOk);
        EXPECT_EQ(overrides.setText(kPost, "<> cm"), Vcad::eOk);
        EXPECT_EQ(overrides.reference(kTextStyle), style);
        EXPECT_EQ(overrides.text(kPost), "<> cm");
        EXPECT_FALSE(overrides.number(kPost));
        EXPECT_EQ(overrides.over(d->dimensionStyle()).dimtxsty, style);
        EXPECT_EQ(d->dimVars().dimpost, "<> cm");
    }
    EXPECT_EQ(Writing<VcDbTextStyleTableRecord>(style)->erase(), Vcad::eCannotBeErased) << "the override names it";
}

// Extended data of a dimension whose list of variables loses its last one: what else there is stays, and nothing empty.
struct LastOverride {
    const char* name;
    std::vector<std::pair<int, const wchar_t*>> before, after;  // around the list
    int left;                                                   // groups
};
void PrintTo(const LastOverride& o, std::ostream* out) { *out << o.name; }
const LastOverride kLastOverrides[] = {
    {"Alone", {{1001, L"ACAD"}}, {}, 0},
    {"BesideOtherDataOfItsApplication", {{1001, L"ACAD"}, {1000, L"first"}}, {{1000, L"last"}}, 3},
    {"BetweenOtherApplications", {{1001, L"ONE"}, {1000, L"a"}, {1001, L"ACAD"}}, {{1001, L"TWO"}, {1000, L"b"}}, 4},
};
struct LastOverrides : testing::TestWithParam<LastOverride> {};

TEST_P(LastOverrides, LeaveNoEmptyList)
{
    SdkDrawing drawing;
    const VcDbObjectId id = addSample(drawing, "AlignedDimension");
    drawing.application(L"ONE");
    drawing.application(L"TWO");
    RbBuilder data;
    for (const auto& [code, text] : GetParam().before)
        data.addString(code, text);
    data.append(RbPtr(vcutBuildList(1000, L"DSTYLE", 1002, L"{", 1070, 41, 1040, 3.0, 1002, L"}", RTNONE)));
    for (const auto& [code, text] : GetParam().after)
        data.addString(code, text);
    ASSERT_EQ(Writing<VcDbDimension>(id)->setXData(data.take().get()), Vcad::eOk);
    ASSERT_EQ(Opened<VcDbDimension>(id)->dimVars().dimasz, 3);
    drawing.undoAndRedo(id, [&] {
        Writing<VcDbDimension> d(id);
        EXPECT_EQ(VcDbDimOverrides(*d).remove(41), Vcad::eOk);
    });
    const RbPtr rest(Opened<VcDbDimension>(id)->xData());
    int left = 0;
    for (const resbuf* rb = rest.get(); rb; rb = rb->rbnext)
        ++left;
    EXPECT_EQ(left, GetParam().left);
    Writing<VcDbDimension> d(id);
    EXPECT_EQ(VcDbDimOverrides(*d).setReal(41, 4), Vcad::eOk) << "the list comes back";
    EXPECT_EQ(d->dimVars().dimasz, 4);
}

INSTANTIATE_TEST_SUITE_P(All, LastOverrides, testing::ValuesIn(kLastOverrides),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(OrdinateDimensions, MeasureAlongOneAxisOrTheOther)
{
    SdkDrawing drawing;
    const VcDbObjectId id = addSample(drawing, "OrdinateDimension");
    Writing<VcDbOrdinateDimension>(id)->setDefiningPoint({3, 4, 0});
    EXPECT_TRUE(Opened<VcDbOrdinateDimension>(id)->isUsingXAxis());
    EXPECT_NEAR(Opened<VcDbOrdinateDimension>(id)->measurement(), 3, 1e-9);
    drawing.undoAndRedo(id, [&] { Writing<VcDbOrdinateDimension>(id)->useYAxis(); });
    EXPECT_TRUE(Opened<VcDbOrdinateDimension>(id)->isUsingYAxis());
    EXPECT_NEAR(Opened<VcDbOrdinateDimension>(id)->measurement(), 4, 1e-9);
    Writing<VcDbOrdinateDimension>(id)->setOrigin({0, 1, 0});
    EXPECT_NEAR(Opened<VcDbOrdinateDimension>(id)->measurement(), 3, 1e-9);
}

TEST(RadialDimensions, TellHowFarTheirArcGoesOn)
{
    SdkDrawing drawing;
    const VcDbObjectId id = addSample(drawing, "RadialDimension");
    EXPECT_EQ(Opened<VcDbRadialDimension>(id)->extArcStartAngle(), 0);
    drawing.application(L"ACAD_DSTYLE_DIMRADIAL_EXTENSION");
    const RbPtr chain(
        vcutBuildList(1001, L"ACAD_DSTYLE_DIMRADIAL_EXTENSION", 1070, 388, 1040, 1.25, 1070, 390, 1040, 2.5, RTNONE));
    ASSERT_EQ(Writing<VcDbRadialDimension>(id)->setXData(chain.get()), Vcad::eOk);
    EXPECT_EQ(Opened<VcDbRadialDimension>(id)->extArcStartAngle(), 1.25);
    EXPECT_EQ(Opened<VcDbRadialDimension>(id)->extArcEndAngle(), 2.5);
}

class Leaders : public testing::Test {
protected:
    SdkDrawing drawing;
    const VcDbObjectId id = addSample(drawing, "Leader");
};

TEST_F(Leaders, VerticesAreChangedByTheirNumber)
{
    Writing<VcDbLeader> leader(id);
    ASSERT_EQ(leader->numVertices(), 3);
    EXPECT_EQ(leader->setVertexAt(1, {9, 9, 0}), Vcad::eOk);
    EXPECT_EQ(leader->vertexAt(1), VcGePoint3d(9, 9, 0));
    EXPECT_EQ(leader->setVertexAt(3, {}), Vcad::eInvalidIndex);
    EXPECT_EQ(leader->setVertexAt(-1, {}), Vcad::eInvalidIndex);
    EXPECT_NE(leader->setVertexAt(0, {NAN, 0, 0}), Vcad::eOk);
    EXPECT_NE(leader->appendVertex({0, INFINITY, 0}), Vcad::eOk);
    EXPECT_EQ(leader->vertexAt(7), VcGePoint3d());
    EXPECT_EQ(leader->numVertices(), 3);
}

TEST_F(Leaders, SwitchesComeBackByUndo)
{
    drawing.undoAndRedo(id, [&] { Writing<VcDbLeader>(id)->enableArrowHead(false); });
    EXPECT_FALSE(Opened<VcDbLeader>(id)->hasArrowHead());
    drawing.undoAndRedo(id, [&] { Writing<VcDbLeader>(id)->setSplined(true); });
    EXPECT_TRUE(Opened<VcDbLeader>(id)->isSplined());
    drawing.undoAndRedo(id, [&] { Writing<VcDbLeader>(id)->setHookLine(true); });
    EXPECT_TRUE(Opened<VcDbLeader>(id)->hasHookLine());
    drawing.undoAndRedo(id, [&] { EXPECT_EQ(Writing<VcDbLeader>(id)->setPlane({0, 0, 1}, {0, 2, 0}), Vcad::eOk); });
    EXPECT_EQ(Opened<VcDbLeader>(id)->horizontalDirection(), VcGeVector3d(0, 1, 0));
    EXPECT_NE(Writing<VcDbLeader>(id)->setPlane({}, {1, 0, 0}), Vcad::eOk);
    EXPECT_NE(Writing<VcDbLeader>(id)->setPlane({0, 0, 1}, {0, 0, 3}), Vcad::eOk) << "across the plane";
}

TEST_F(Leaders, KnowTheSizeOfWhatTheyLeadTo)
{
    auto text = std::make_unique<VcDbMText>();
    text->setContents(L"Two\\Plines");
    text->setTextHeight(2);
    text->setLocation({7, 4, 0});
    const VcDbObjectId note = drawing.add(std::move(text));
    EXPECT_EQ(Opened<VcDbLeader>(id)->annoType(), 3);
    drawing.undoAndRedo(id, [&] { EXPECT_EQ(Writing<VcDbLeader>(id)->attachAnnotation(note), Vcad::eOk); });
    Opened<VcDbLeader> leader(id);
    EXPECT_EQ(leader->annoType(), 0);
    EXPECT_EQ(leader->annotationObjId(), note);
    EXPECT_NEAR(leader->annoHeight(), Opened<VcDbMText>(note)->actualHeight(), 1e-9);
    EXPECT_NEAR(leader->annoWidth(), Opened<VcDbMText>(note)->actualWidth(), 1e-9);
    ASSERT_NE(Opened<VcDbMText>(note)->reactors(), nullptr);
}

TEST(Tolerances, TakeVariablesOverTheirStyle)
{
    SdkDrawing drawing;
    const VcDbObjectId id = addSample(drawing, "Tolerance");
    EXPECT_EQ(taken(Opened<VcDbFcf>(id)->text()), L"{\\Fgdt;j}%%v0.5%%vA");
    drawing.undoAndRedo(id, [&] {
        EXPECT_EQ(Writing<VcDbFcf>(id)->setDimclrd(VcCmColor::fromIndex(3)), Vcad::eOk);
        EXPECT_EQ(Writing<VcDbFcf>(id)->setDimclrt(VcCmColor::fromIndex(4)), Vcad::eOk);
        EXPECT_EQ(Writing<VcDbFcf>(id)->setDimtxt(7), Vcad::eOk);
    });
    Opened<VcDbFcf> frame(id);
    EXPECT_EQ(frame->dimclrd().colorIndex(), 3);
    EXPECT_EQ(frame->dimclrt().colorIndex(), 4);
    EXPECT_EQ(frame->dimtxt(), 7);
    VcDbExtents small, large;
    frame->getGeomExtents(small);
    EXPECT_GT(small.maxPoint().y - small.minPoint().y, 7);
    EXPECT_EQ(frame->location(), VcGePoint3d(1, 2, 3));
}

TEST(Tolerances, StandInAPlaneOfTheirOwn)
{
    SdkDrawing drawing;
    Writing<VcDbFcf> frame(addSample(drawing, "Tolerance"));
    EXPECT_NE(frame->setText(nullptr), Vcad::eOk);
    EXPECT_NE(frame->setOrientation({0, 0, 1}, {0, 0, 1}), Vcad::eOk);
    EXPECT_NE(frame->setOrientation({}, {1, 0, 0}), Vcad::eOk);
    EXPECT_EQ(frame->setOrientation({0, -2, 0}, {3, 0, 0}), Vcad::eOk);
    EXPECT_TRUE(frame->normal().isEqualTo({0, -1, 0}));
    EXPECT_TRUE(frame->direction().isEqualTo({1, 0, 0}));
}

}
