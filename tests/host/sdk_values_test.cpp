// Values that modules compute with: colours, points, vectors, matrices, planes, and the registry of services.
#include "tests/host/sdk_drawing.h"

#include <cmath>
#include <random>

namespace {

TEST(Colours, SayHowTheyAreMeant)
{
    struct {
        int index;
        bool layer, block, palette;
    } const cases[] = {
        {0, false, true, false}, {1, false, false, true}, {255, false, false, true}, {256, true, false, false}};
    for (const auto& c : cases) {
        VcCmColor color;
        EXPECT_EQ(color.setColorIndex(std::int16_t(c.index)), Vcad::eOk);
        EXPECT_EQ(color.colorIndex(), c.index);
        EXPECT_EQ(color.isByLayer(), c.layer);
        EXPECT_EQ(color.isByBlock(), c.block);
        EXPECT_EQ(color.isByACI(), c.palette);
        EXPECT_FALSE(color.isByColor());
        EXPECT_EQ(color, VcCmColor::fromIndex(std::int16_t(c.index)));
        for (const int wrong : {-1, 258, 32767}) {
            EXPECT_NE(color.setColorIndex(std::int16_t(wrong)), Vcad::eOk);
            EXPECT_EQ(color.colorIndex(), c.index);
        }
    }
    EXPECT_TRUE(VcCmColor().isByLayer());
    EXPECT_TRUE(VcCmColor() != VcCmColor::fromIndex(7));
}

TEST(Colours, TrueOnesLieNearThePaletteColourThatStandsForThem)
{
    for (int index = 1; index <= 255; ++index) {
        const std::uint32_t rgb = vccmPaletteRgb(index);
        EXPECT_EQ(vccmPaletteRgb(vccmNearestIndex(rgb)), rgb) << index;
        EXPECT_EQ(VcCmColor::fromIndex(std::int16_t(index)).rgb(), rgb);
        VcCmColor color;
        EXPECT_EQ(color.setRGB(std::uint8_t(rgb >> 16), std::uint8_t(rgb >> 8), std::uint8_t(rgb)), Vcad::eOk);
        EXPECT_EQ(color.rgb(), rgb);
        EXPECT_TRUE(color.isByColor());
        EXPECT_EQ((color.red() << 16) + (color.green() << 8) + color.blue(), int(rgb));
    }
    EXPECT_EQ(vccmPaletteRgb(1), 0xff0000u);
    EXPECT_EQ(vccmPaletteRgb(5), 0x0000ffu);
    VcCmColor beside = VcCmColor::fromIndex(3);
    beside.setTrueColorBeside(0x123456);
    EXPECT_EQ(beside.colorIndex(), 3);
    EXPECT_EQ(beside.rgb(), 0x123456u);
    beside.setColorMethod(VcCmColor::kByBlock);
    EXPECT_TRUE(beside.isByBlock());
    EXPECT_EQ(beside.colorMethod(), VcCmColor::kByBlock);
}

class Random {
public:
    double number(double reach = 100) { return std::uniform_real_distribution<double>(-reach, reach)(m_engine); }
    VcGePoint3d point() { return {number(), number(), number()}; }
    VcGeVector3d vector() { return {number(), number(), number()}; }
    VcGeMatrix3d rigid()
    {
        return VcGeMatrix3d::translation(vector()) * VcGeMatrix3d::rotation(number(3), vector().normal(), point());
    }

private:
    std::mt19937 m_engine{42};
};

constexpr int kRounds = 200;

TEST(Geometry, RigidMotionsKeepLengthsAnglesAndHands)
{
    Random random;
    for (int i = 0; i < kRounds; ++i) {
        const VcGeMatrix3d m = random.rigid();
        const VcGePoint3d p = random.point(), q = random.point();
        const VcGeVector3d u = random.vector(), v = random.vector();
        EXPECT_NEAR((m * p).distanceTo(m * q), p.distanceTo(q), 1e-9);
        EXPECT_NEAR((m * u).angleTo(m * v), u.angleTo(v), 1e-7);
        EXPECT_TRUE((m * u.crossProduct(v)).isEqualTo((m * u).crossProduct(m * v), {1e-6, 1e-6}));
        EXPECT_NEAR(m.det(), 1, 1e-9);
        EXPECT_TRUE(m.isUniScaledOrtho({1e-9, 1e-9}));
        EXPECT_TRUE((m.inverse() * (m * p)).isEqualTo(p, {1e-8, 1e-8}));
        VcGePoint3d moved = p;
        EXPECT_EQ(moved.transformBy(m), m * p);
    }
}

TEST(Geometry, CoordinateSystemsGoInAndOut)
{
    Random random;
    for (int i = 0; i < kRounds; ++i) {
        const VcGeVector3d x = random.vector().normal(), y = x.perpVector(), z = x.crossProduct(y);
        const VcGePoint3d origin = random.point();
        VcGeMatrix3d m;
        m.setCoordSystem(origin, x, y, z);
        VcGePoint3d o;
        VcGeVector3d a, b, c;
        m.getCoordSystem(o, a, b, c);
        EXPECT_EQ(o, origin);
        EXPECT_TRUE(a == x && b == y && c == z);
        EXPECT_TRUE((m * VcGePoint3d(1, 2, 3)).isEqualTo(origin + x + y * 2 + z * 3, {1e-9, 1e-9}));
        VcGeMatrix3d align, product;
        align.setToAlignCoordSys({}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}, origin, x, y, z);
        EXPECT_TRUE(align.isEqualTo(m, {1e-9, 1e-9}));
        product.setToProduct(m, m.inverse());
        EXPECT_TRUE(product.isEqualTo(VcGeMatrix3d(), {1e-7, 1e-7}));
        EXPECT_EQ(product.setToIdentity(), VcGeMatrix3d());
        EXPECT_EQ(m.transpose().transpose(), m);
    }
}

TEST(Geometry, FlatMatricesDoTheSameInTheirPlane)
{
    Random random;
    for (int i = 0; i < kRounds; ++i) {
        const VcGePoint2d about(random.number(), random.number()), p(random.number(), random.number());
        const double angle = random.number(3);
        const VcGeMatrix2d flat = VcGeMatrix2d::rotation(angle, about) * VcGeMatrix2d::scaling(2, about);
        const VcGePoint3d center(about.x, about.y, 0);
        const VcGeMatrix3d solid = VcGeMatrix3d::rotation(angle, {0, 0, 1}, center) * VcGeMatrix3d::scaling(2, center);
        const VcGePoint3d image = solid * VcGePoint3d(p.x, p.y, 0);
        EXPECT_TRUE((flat * p).isEqualTo({image.x, image.y}, {1e-8, 1e-8}));
        VcGePoint2d origin;
        VcGeVector2d x, y;
        flat.getCoordSystem(origin, x, y);
        VcGeMatrix2d again;
        EXPECT_EQ(again.setCoordSystem(origin, x, y), flat);
        VcGeMatrix2d product;
        EXPECT_TRUE(product.setToProduct(flat, flat.inverse()).isEqualTo(VcGeMatrix2d(), {1e-9, 1e-9}));
        EXPECT_EQ(product.setToIdentity(), VcGeMatrix2d());
    }
}

TEST(Geometry, PlanesTellSideAndFoot)
{
    Random random;
    for (int i = 0; i < kRounds; ++i) {
        VcGePlane plane(random.point(), random.vector());
        const VcGePoint3d p = random.point(), foot = plane.closestPointTo(p);
        const double distance = plane.signedDistanceTo(p);
        EXPECT_TRUE(plane.isOn(foot, {1e-8, 1e-8}));
        EXPECT_TRUE((foot + plane.normal() * distance).isEqualTo(p, {1e-8, 1e-8}));
        EXPECT_TRUE(plane.evalPoint(plane.paramOf(p)).isEqualTo(foot, {1e-7, 1e-7}));
        EXPECT_TRUE(p.orthoProject(plane).isEqualTo(foot, {1e-8, 1e-8}));
        VcGePoint3d mirrored = p;
        mirrored.mirror(plane);
        EXPECT_NEAR(plane.signedDistanceTo(mirrored), -distance, 1e-8);
        const VcGePoint2d flat = p.convert2d(plane);
        EXPECT_TRUE(flat.isEqualTo(plane.paramOf(p), {1e-8, 1e-8}));
        VcGePlane turned = plane;
        turned.reverseNormal();
        EXPECT_NEAR(turned.signedDistanceTo(p), -distance, 1e-9);
        EXPECT_TRUE(turned.isCoplanarTo(plane));
        turned.set(foot + plane.normal(), plane.normal());
        EXPECT_FALSE(turned.isCoplanarTo(plane));
        EXPECT_TRUE(turned.isParallelTo(plane));
    }
}

TEST(Geometry, LinesGoOnAndSegmentsEnd)
{
    Random random;
    for (int i = 0; i < kRounds; ++i) {
        const VcGePoint3d p = random.point(), q = random.point(), from = random.point();
        const VcGeLine3d line(p, q);
        const VcGeLineSeg3d segment(p, q);
        VcGePoint3d end;
        EXPECT_FALSE(line.hasStartPoint(end) || line.hasEndPoint(end));
        ASSERT_TRUE(segment.hasStartPoint(end));
        EXPECT_EQ(end, p);
        ASSERT_TRUE(segment.hasEndPoint(end));
        EXPECT_EQ(end, q);
        EXPECT_TRUE(segment.midPoint().isEqualTo(p + (q - p) * 0.5, {1e-9, 1e-9}));
        const VcGePoint3d onLine = line.closestPointTo(from), onSegment = segment.closestPointTo(from);
        EXPECT_LE(onLine.distanceTo(from), onSegment.distanceTo(from) + 1e-9);
        EXPECT_NEAR((onLine - from).dotProduct(line.direction()), 0, 1e-8);
        EXPECT_TRUE(line.isOn(onSegment, {1e-7, 1e-7}));
        EXPECT_TRUE(segment.isColinearTo(line, {1e-7, 1e-7}));
        EXPECT_EQ(line.pointOnLine(), p);
        EXPECT_GE(segment.paramOf(from), 0);
        EXPECT_LE(segment.paramOf(from), 1);
    }
}

TEST(Geometry, SmallThingsOfVectors)
{
    VcGeVector3d v(1, -2, 3);
    EXPECT_EQ(v.negate(), VcGeVector3d(-1, 2, -3));
    EXPECT_EQ(v.convert2d(), VcGeVector2d(-1, 2));
    EXPECT_TRUE(v.normalize().isUnitLength());
    EXPECT_EQ(VcGeVector3d().normalize(), VcGeVector3d()) << "nothing to point along";
    VcGePoint3d p(1, 2, 3);
    EXPECT_EQ(p.scaleBy(2, {1, 1, 1}), VcGePoint3d(1, 3, 5));
    EXPECT_TRUE(p.rotateBy(3.14159265358979323846, {0, 0, 1}, {0, 0, 0}).isEqualTo({-1, -3, 5}));
    EXPECT_TRUE(VcGePoint3d(0, 0, 0).isEqualTo({0, 0, 1e-11}));
    EXPECT_FALSE(VcGePoint3d(0, 0, 0).isEqualTo({0, 0, 1e-9}));
    EXPECT_TRUE(VcGePoint3d(0, 0, 0).isEqualTo({0, 0, 0.5}, {1, 1}));
    EXPECT_TRUE(VcGeScale3d(2).isEqualTo({2, 2, 2 + 1e-12}));
}

class Service : public VcRxObject {};

TEST(Registry, KeepsServicesUnderTheirNames)
{
    VcRxDictionary* registry = vcrxSysRegistry();
    ASSERT_NE(registry, nullptr);
    EXPECT_EQ(vcrxSysRegistry(), registry);
    EXPECT_EQ(registry->at(L"no such service"), nullptr);
    VcRxDictionary own;
    Service first, second;
    EXPECT_EQ(own.atPut(L"Name", &first), nullptr);
    EXPECT_EQ(own.at(L"Name"), &first);
    EXPECT_EQ(own.atPut(L"Name", &second), &first) << "what stood there is the caller's";
    EXPECT_TRUE(own.has(L"Name"));
    EXPECT_EQ(own.remove(L"Name"), &second);
    EXPECT_EQ(own.remove(L"Name"), nullptr);
    EXPECT_FALSE(own.has(L"Name"));
    EXPECT_EQ(own.at(nullptr), nullptr);
    EXPECT_EQ(own.remove(nullptr), nullptr);
    EXPECT_EQ(VcRxDictionary::cast(&own), &own);
    EXPECT_EQ(VcRxDictionary::cast(&first), nullptr);
    EXPECT_EQ(VcRxDictionary::cast(nullptr), nullptr);
}

TEST(HeapStrings, AreReleasedByAnyOfTheNames)
{
    wchar_t* text = nullptr;
    ASSERT_EQ(vcutNewString(L"\x00e4 b", text), RTNORM);
    EXPECT_STREQ(text, L"\x00e4 b");
    ASSERT_EQ(vcutUpdString(text + 1, text), RTNORM);
    EXPECT_STREQ(text, L" b") << "a part of itself";
    EXPECT_EQ(vcutDelString(text), RTNORM);
    EXPECT_EQ(text, nullptr);
    EXPECT_EQ(vcutDelString(text), RTNORM) << "nothing is nothing";
    char* buffer = nullptr;
    ASSERT_EQ(vcutNewBuffer(buffer, 1000), RTNORM);
    std::fill(buffer, buffer + 1000, 'x');
    EXPECT_EQ(vcutDelBuffer(buffer), RTNORM);
    EXPECT_EQ(buffer, nullptr);
    for (void (*release)(void*) : {&vcdbFree, &vcad_free, &vkad_free}) {
        ASSERT_EQ(vcutNewString(L"text", text), RTNORM);
        release(text);
        release(nullptr);
    }
}

}
