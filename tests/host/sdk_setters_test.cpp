// Setters of numbers and points: what is in range is given back, undone and redone; what is not changes nothing.
#include "tests/host/sdk_samples.h"

#include <cmath>
#include <limits>

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

struct NumberCase {
    const char* name;
    const char* sample;
    Vcad::ErrorStatus (*set)(VcDbEntity& entity, double value);
    double (*get)(const VcDbEntity& entity);
    std::vector<double> good, bad;
};

#define NUMBER(Sample, Class, Setter, Getter, ...)                                                                     \
    NumberCase                                                                                                         \
    {                                                                                                                  \
#Class "_" #Setter, Sample, [](VcDbEntity& e, double v) { return static_cast<Class&>(e).Setter(v); },         \
            [](const VcDbEntity& e) { return double(static_cast<const Class&>(e).Getter()); }, __VA_ARGS__        \
    }
#define INTEGER(Sample, Class, Type, Setter, Getter, ...)                                                              \
    NumberCase                                                                                                         \
    {                                                                                                                  \
#Class "_" #Setter, Sample, [](VcDbEntity& e, double v) { return static_cast<Class&>(e).Setter(Type(v)); },   \
            [](const VcDbEntity& e) { return double(static_cast<const Class&>(e).Getter()); }, __VA_ARGS__        \
    }

const std::vector<double> kAnyNumber = {0, -2.5, 1e6}, kNoNumber = {kNan, kInfinity, -kInfinity};
const std::vector<double> kLengths = {1e-6, 2.5, 1e9}, kNoLength = {0, -1, kNan, kInfinity};
const std::vector<double> kLengthsOrNone = {0, 2.5}, kNegative = {-1e-3, kNan, kInfinity};

const NumberCase kNumbers[] = {
    NUMBER("Line", VcDbLine, setThickness, thickness, kAnyNumber, kNoNumber),
    NUMBER("Line", VcDbEntity, setLinetypeScale, linetypeScale, kLengths, kNoLength),
    INTEGER("Line", VcDbEntity, std::uint16_t, setColorIndex, colorIndex, {0, 1, 255, 256}, {257, 65535}),
    INTEGER("Line", VcDbEntity, VcDb::LineWeight, setLineWeight, lineWeight, {-3, -2, -1, 0, 5, 25, 211}, {-4, 212}),
    NUMBER("Point", VcDbPoint, setThickness, thickness, kAnyNumber, kNoNumber),
    NUMBER("Point", VcDbPoint, setEcsRotation, ecsRotation, {0, 1.5}, kNoNumber),
    NUMBER("Circle", VcDbCircle, setRadius, radius, kLengths, kNoLength),
    NUMBER("Circle", VcDbCircle, setThickness, thickness, kAnyNumber, kNoNumber),
    NUMBER("Arc", VcDbArc, setRadius, radius, kLengths, kNoLength),
    NUMBER("Arc", VcDbArc, setStartAngle, startAngle, {0, 1, 6}, kNoNumber),
    NUMBER("Arc", VcDbArc, setEndAngle, endAngle, {0, 1, 6}, kNoNumber),
    NUMBER("Ellipse", VcDbEllipse, setRadiusRatio, radiusRatio, {1e-6, 0.5, 1}, {0, -0.5, 1.001, kNan}),
    NUMBER("Ellipse", VcDbEllipse, setStartParam, startParam, {0, 1.5}, kNoNumber),
    NUMBER("Ellipse", VcDbEllipse, setEndParam, endParam, {1, 6}, kNoNumber),
    NUMBER("Polyline", VcDbPolyline, setElevation, elevation, kAnyNumber, kNoNumber),
    NUMBER("Polyline", VcDbPolyline, setThickness, thickness, kAnyNumber, kNoNumber),
    NUMBER("Spline", VcDbSpline, setFitTolerance, fitTolerance, {0, 1e-3}, kNegative),
    NUMBER("HeavyPolyline", VcDb2dPolyline, setElevation, elevation, kAnyNumber, kNoNumber),
    NUMBER("HeavyPolyline", VcDb2dPolyline, setThickness, thickness, kAnyNumber, kNoNumber),
    INTEGER("PolygonMesh", VcDbPolygonMesh, std::int16_t, setMSize, mSize, {2, 256}, {1, 257, -1}),
    INTEGER("PolygonMesh", VcDbPolygonMesh, std::int16_t, setNSize, nSize, {2, 256}, {1, 257, -1}),
    NUMBER("Text", VcDbText, setHeight, height, kLengths, kNoLength),
    NUMBER("Text", VcDbText, setRotation, rotation, {0, 1.25, -2}, kNoNumber),
    NUMBER("Text", VcDbText, setWidthFactor, widthFactor, kLengths, kNoLength),
    NUMBER("Text", VcDbText, setOblique, oblique, {0, -1.4, 1.4}, {1.5, -1.5, kNan}),
    NUMBER("Text", VcDbText, setThickness, thickness, kAnyNumber, kNoNumber),
    INTEGER("Text", VcDbText, VcDb::TextHorzMode, setHorizontalMode, horizontalMode, {0, 1, 2, 4}, {-1, 6}),
    INTEGER("Text", VcDbText, VcDb::TextVertMode, setVerticalMode, verticalMode, {0, 1, 2, 3}, {-1, 4}),
    INTEGER("AttributeDefinition", VcDbAttributeDefinition, std::int16_t, setFieldLength, fieldLength, {0, 255},
            {-1, 256}),
    NUMBER("MText", VcDbMText, setTextHeight, textHeight, kLengths, kNoLength),
    NUMBER("MText", VcDbMText, setRotation, rotation, {0, 1.25}, kNoNumber),
    NUMBER("MText", VcDbMText, setWidth, width, kLengthsOrNone, kNegative),
    NUMBER("MText", VcDbMText, setHeight, height, kLengthsOrNone, kNegative),
    NUMBER("MText", VcDbMText, setLineSpacingFactor, lineSpacingFactor, {0.25, 1, 4}, {0.2, 4.1, kNan}),
    NUMBER("MText", VcDbMText, setBackgroundScaleFactor, backgroundScaleFactor, {1, 5}, {0.9, 5.1, kNan}),
    INTEGER("MText", VcDbMText, VcDb::LineSpacingStyle, setLineSpacingStyle, lineSpacingStyle, {1, 2}, {0, 3}),
    INTEGER("MText", VcDbMText, VcDbMText::AttachmentPoint, setAttachment, attachment, {1, 5, 9}, {0, 10}),
    INTEGER("MText", VcDbMText, VcDbMText::FlowDirection, setFlowDirection, flowDirection, {1, 3, 5}, {0, 6}),
    NUMBER("BlockReference", VcDbBlockReference, setRotation, rotation, {0, 1.25, -2}, kNoNumber),
    INTEGER("MInsert", VcDbMInsertBlock, std::uint16_t, setColumns, columns, {1, 7, 32767}, {0, 32768, 65535}),
    INTEGER("MInsert", VcDbMInsertBlock, std::uint16_t, setRows, rows, {1, 7, 32767}, {0, 32768, 65535}),
    NUMBER("MInsert", VcDbMInsertBlock, setColumnSpacing, columnSpacing, kAnyNumber, kNoNumber),
    NUMBER("MInsert", VcDbMInsertBlock, setRowSpacing, rowSpacing, kAnyNumber, kNoNumber),
    NUMBER("Shape", VcDbShape, setSize, size, kLengths, kNoLength),
    NUMBER("Shape", VcDbShape, setRotation, rotation, {0, 1.25}, kNoNumber),
    NUMBER("Shape", VcDbShape, setWidthFactor, widthFactor, {0.5, -2}, {0, kNan, kInfinity}),
    NUMBER("Shape", VcDbShape, setOblique, oblique, {0, 1.4}, {1.5, kNan}),
    INTEGER("Shape", VcDbShape, std::int16_t, setShapeNumber, shapeNumber, {1, 255}, {0, -1}),
    NUMBER("Solid", VcDbSolid, setThickness, thickness, kAnyNumber, kNoNumber),
    NUMBER("Hatch", VcDbHatch, setPatternScale, patternScale, kLengths, kNoLength),
    NUMBER("Hatch", VcDbHatch, setPatternAngle, patternAngle, {0, 1.25}, kNoNumber),
    NUMBER("Hatch", VcDbHatch, setElevation, elevation, kAnyNumber, kNoNumber),
    INTEGER("Hatch", VcDbHatch, VcDbHatch::HatchStyle, setHatchStyle, hatchStyle, {0, 1, 2}, {-1, 3}),
    NUMBER("AlignedDimension", VcDbDimension, setTextRotation, textRotation, {0, 1.25}, kNoNumber),
    NUMBER("AlignedDimension", VcDbDimension, setHorizontalRotation, horizontalRotation, {0, 1.25}, kNoNumber),
    NUMBER("AlignedDimension", VcDbDimension, setTextLineSpacingFactor, textLineSpacingFactor, {0.25, 1, 4},
           {0.2, 4.1, kNan}),
    INTEGER("AlignedDimension", VcDbDimension, int, setTextAttachment, textAttachment, {1, 5, 9}, {0, 10}),
    INTEGER("AlignedDimension", VcDbDimension, int, setTextLineSpacingStyle, textLineSpacingStyle, {1, 2}, {0, 3}),
    NUMBER("AlignedDimension", VcDbAlignedDimension, setOblique, oblique, {0, 1.25}, kNoNumber),
    NUMBER("RotatedDimension", VcDbRotatedDimension, setRotation, rotation, {0, 1.25}, kNoNumber),
    NUMBER("RotatedDimension", VcDbRotatedDimension, setOblique, oblique, {0, 1.25}, kNoNumber),
    NUMBER("RadialDimension", VcDbRadialDimension, setLeaderLength, leaderLength, kAnyNumber, kNoNumber),
    NUMBER("DiametricDimension", VcDbDiametricDimension, setLeaderLength, leaderLength, kAnyNumber, kNoNumber),
    NUMBER("JoggedDimension", VcDbRadialDimensionLarge, setJogAngle, jogAngle, {0.5, 1.25}, kNoNumber),
    NUMBER("Tolerance", VcDbFcf, setDimtxt, dimtxt, kLengths, kNoLength),
    NUMBER("Tolerance", VcDbFcf, setDimscale, dimscale, kLengths, kNoLength),
    NUMBER("Tolerance", VcDbFcf, setDimgap, dimgap, {0.5, -0.5}, kNoNumber),
    INTEGER("Mline", VcDbMline, VcDbMline::MlineJustification, setJustification, justification, {0, 1, 2}, {-1, 3}),
    NUMBER("Mline", VcDbMline, setScale, scale, {1, 2.5}, {kNan, kInfinity}),
    INTEGER("RasterImage", VcDbRasterImage, int, setBrightness, brightness, {0, 100}, {-1, 101}),
    INTEGER("RasterImage", VcDbRasterImage, int, setContrast, contrast, {0, 100}, {-1, 101, 256}),
    INTEGER("RasterImage", VcDbRasterImage, int, setFade, fade, {0, 100}, {-1, 101, 512}),
    NUMBER("Viewport", VcDbViewport, setWidth, width, kLengths, kNoLength),
    NUMBER("Viewport", VcDbViewport, setHeight, height, kLengths, kNoLength),
    NUMBER("Viewport", VcDbViewport, setViewHeight, viewHeight, kLengths, kNoLength),
    NUMBER("Viewport", VcDbViewport, setTwistAngle, twistAngle, {0, 1.25}, kNoNumber),
    NUMBER("Viewport", VcDbViewport, setLensLength, lensLength, kLengths, kNoLength),
};

class NumberSetter : public testing::TestWithParam<NumberCase> {
protected:
    double value() { return GetParam().get(*Opened<VcDbEntity>(id)); }
    SdkDrawing drawing;
    const VcDbObjectId id = addSample(drawing, GetParam().sample);
};

INSTANTIATE_TEST_SUITE_P(All, NumberSetter, testing::ValuesIn(kNumbers),
                         [](const auto& info) { return std::string(info.param.name); });

TEST_P(NumberSetter, GivesBackWhatIsInRange)
{
    for (const double wanted : GetParam().good) {
        SCOPED_TRACE(wanted);
        drawing.undoAndRedo(id, [&] { EXPECT_EQ(GetParam().set(*Writing<VcDbEntity>(id), wanted), Vcad::eOk); });
        EXPECT_NEAR(value(), wanted, 1e-9 * std::max(1.0, std::fabs(wanted)));
    }
}

TEST_P(NumberSetter, RefusesTheRestAndChangesNothing)
{
    const std::string before = drawing.saidBy(id);
    for (const double wrong : GetParam().bad) {
        EXPECT_NE(GetParam().set(*Writing<VcDbEntity>(id), wrong), Vcad::eOk) << wrong;
        EXPECT_EQ(drawing.saidBy(id), before) << wrong;
    }
}

struct PointCase {
    const char* name;
    const char* sample;
    Vcad::ErrorStatus (*set)(VcDbEntity& entity, const VcGePoint3d& p);
    VcGePoint3d (*get)(const VcDbEntity& entity);
};

#define POINT(Sample, Class, Setter, Getter)                                                                           \
    PointCase                                                                                                          \
    {                                                                                                                  \
#Class "_" #Setter, Sample, [](VcDbEntity& e, const VcGePoint3d& p) { return static_cast<Class&>(e).Setter(p); },    \
            [](const VcDbEntity& e) { return static_cast<const Class&>(e).Getter(); } \
    }

const PointCase kPoints[] = {
    POINT("Line", VcDbLine, setStartPoint, startPoint),
    POINT("Line", VcDbLine, setEndPoint, endPoint),
    POINT("Point", VcDbPoint, setPosition, position),
    POINT("Ray", VcDbRay, setBasePoint, basePoint),
    POINT("Xline", VcDbXline, setBasePoint, basePoint),
    POINT("Circle", VcDbCircle, setCenter, center),
    POINT("Arc", VcDbArc, setCenter, center),
    POINT("Ellipse", VcDbEllipse, setCenter, center),
    POINT("Text", VcDbText, setAlignmentPoint, alignmentPoint),
    POINT("MText", VcDbMText, setLocation, location),
    POINT("BlockReference", VcDbBlockReference, setPosition, position),
    POINT("Shape", VcDbShape, setPosition, position),
    POINT("AlignedDimension", VcDbAlignedDimension, setXLine1Point, xLine1Point),
    POINT("AlignedDimension", VcDbAlignedDimension, setXLine2Point, xLine2Point),
    POINT("AlignedDimension", VcDbAlignedDimension, setDimLinePoint, dimLinePoint),
    POINT("AlignedDimension", VcDbDimension, setTextPosition, textPosition),
    POINT("RotatedDimension", VcDbRotatedDimension, setXLine1Point, xLine1Point),
    POINT("AngularDimension", VcDb2LineAngularDimension, setXLine1Start, xLine1Start),
    POINT("AngularDimension", VcDb2LineAngularDimension, setXLine1End, xLine1End),
    POINT("AngularDimension", VcDb2LineAngularDimension, setXLine2Start, xLine2Start),
    POINT("AngularDimension", VcDb2LineAngularDimension, setXLine2End, xLine2End),
    POINT("AngularDimension", VcDb2LineAngularDimension, setArcPoint, arcPoint),
    POINT("ThreePointDimension", VcDb3PointAngularDimension, setCenterPoint, centerPoint),
    POINT("ThreePointDimension", VcDb3PointAngularDimension, setXLine1Point, xLine1Point),
    POINT("ThreePointDimension", VcDb3PointAngularDimension, setArcPoint, arcPoint),
    POINT("ArcDimension", VcDbArcDimension, setCenterPoint, centerPoint),
    POINT("ArcDimension", VcDbArcDimension, setLeader1Point, leader1Point),
    POINT("ArcDimension", VcDbArcDimension, setLeader2Point, leader2Point),
    POINT("RadialDimension", VcDbRadialDimension, setCenter, center),
    POINT("RadialDimension", VcDbRadialDimension, setChordPoint, chordPoint),
    POINT("DiametricDimension", VcDbDiametricDimension, setChordPoint, chordPoint),
    POINT("DiametricDimension", VcDbDiametricDimension, setFarChordPoint, farChordPoint),
    POINT("JoggedDimension", VcDbRadialDimensionLarge, setOverrideCenter, overrideCenter),
    POINT("JoggedDimension", VcDbRadialDimensionLarge, setJogPoint, jogPoint),
    POINT("OrdinateDimension", VcDbOrdinateDimension, setDefiningPoint, definingPoint),
    POINT("OrdinateDimension", VcDbOrdinateDimension, setLeaderEndPoint, leaderEndPoint),
    POINT("OrdinateDimension", VcDbOrdinateDimension, setOrigin, origin),
    POINT("Tolerance", VcDbFcf, setLocation, location),
    POINT("Viewport", VcDbViewport, setCenterPoint, centerPoint),
    POINT("Viewport", VcDbViewport, setViewTarget, viewTarget),
};

class PointSetter : public testing::TestWithParam<PointCase> {
protected:
    SdkDrawing drawing;
    const VcDbObjectId id = addSample(drawing, GetParam().sample);
};

INSTANTIATE_TEST_SUITE_P(All, PointSetter, testing::ValuesIn(kPoints),
                         [](const auto& info) { return std::string(info.param.name); });

TEST_P(PointSetter, IsInTheWorldAndGivenBack)
{
    const VcGePoint3d wanted(3.5, -7.25, 2);
    drawing.undoAndRedo(id, [&] { EXPECT_EQ(GetParam().set(*Writing<VcDbEntity>(id), wanted), Vcad::eOk); });
    EXPECT_LT(GetParam().get(*Opened<VcDbEntity>(id)).distanceTo(wanted), 1e-9);
}

TEST_P(PointSetter, RefusesWhatIsNowhere)
{
    const std::string before = drawing.saidBy(id);
    for (const VcGePoint3d& wrong :
         {VcGePoint3d(kNan, 0, 0), VcGePoint3d(0, kInfinity, 0), VcGePoint3d(0, 0, -kInfinity)}) {
        EXPECT_NE(GetParam().set(*Writing<VcDbEntity>(id), wrong), Vcad::eOk);
        EXPECT_EQ(drawing.saidBy(id), before);
    }
}

struct NormalCase {
    const char* sample;
    Vcad::ErrorStatus (*set)(VcDbEntity& entity, const VcGeVector3d& normal);
    VcGeVector3d (*get)(const VcDbEntity& entity);
};

#define NORMAL(Sample, Class)                                                                                          \
    NormalCase                                                                                                         \
    {                                                                                                                  \
        Sample, [](VcDbEntity& e, const VcGeVector3d& n) { return static_cast<Class&>(e).setNormal(n); },              \
            [](const VcDbEntity& e) { return static_cast<const Class&>(e).normal(); }                                  \
    }

const NormalCase kNormals[] = {
    NORMAL("Line", VcDbLine),   NORMAL("Point", VcDbPoint),       NORMAL("Circle", VcDbCircle),
    NORMAL("Arc", VcDbArc),     NORMAL("Polyline", VcDbPolyline), NORMAL("HeavyPolyline", VcDb2dPolyline),
    NORMAL("Text", VcDbText),   NORMAL("MText", VcDbMText),       NORMAL("BlockReference", VcDbBlockReference),
    NORMAL("Shape", VcDbShape), NORMAL("Solid", VcDbSolid),       NORMAL("AlignedDimension", VcDbDimension),
};

TEST(NormalSetter, MakesAUnitVectorAndRefusesNone)
{
    for (const NormalCase& c : kNormals) {
        SCOPED_TRACE(c.sample);
        SdkDrawing drawing;
        const VcDbObjectId id = addSample(drawing, c.sample);
        drawing.undoAndRedo(id, [&] { EXPECT_EQ(c.set(*Writing<VcDbEntity>(id), {0, 3, 4}), Vcad::eOk); });
        EXPECT_TRUE(c.get(*Opened<VcDbEntity>(id)).isEqualTo({0, 0.6, 0.8}));
        const std::string before = drawing.saidBy(id);
        for (const VcGeVector3d& wrong : {VcGeVector3d(), VcGeVector3d(kNan, 0, 1), VcGeVector3d(0, 0, kInfinity)}) {
            EXPECT_NE(c.set(*Writing<VcDbEntity>(id), wrong), Vcad::eOk);
            EXPECT_EQ(drawing.saidBy(id), before);
        }
    }
}

// Turning the plane of an entity leaves the points that its accessors give where they are in the world.
TEST(NormalSetter, LeavesPointsInTheWorld)
{
    const struct {
        const char* sample;
        VcGePoint3d (*get)(const VcDbEntity& entity);
    } cases[] = {
        {"Circle", [](const VcDbEntity& e) { return static_cast<const VcDbCircle&>(e).center(); }},
        {"Arc", [](const VcDbEntity& e) { return static_cast<const VcDbArc&>(e).center(); }},
        {"Text", [](const VcDbEntity& e) { return static_cast<const VcDbText&>(e).alignmentPoint(); }},
        {"BlockReference", [](const VcDbEntity& e) { return static_cast<const VcDbBlockReference&>(e).position(); }},
        {"Shape", [](const VcDbEntity& e) { return static_cast<const VcDbShape&>(e).position(); }},
        {"MText", [](const VcDbEntity& e) { return static_cast<const VcDbMText&>(e).location(); }},
    };
    for (const auto& c : cases) {
        SdkDrawing drawing;
        const VcDbObjectId id = addSample(drawing, c.sample);
        const VcGePoint3d before = c.get(*Opened<VcDbEntity>(id));
        for (const NormalCase& n : kNormals)
            if (std::string(n.sample) == c.sample) {
                EXPECT_EQ(n.set(*Writing<VcDbEntity>(id), {1, 2, -2}), Vcad::eOk);
            }
        EXPECT_LT(c.get(*Opened<VcDbEntity>(id)).distanceTo(before), 1e-9) << c.sample;
    }
}

}
