// What commands may lean on about model and paper space, views and coordinate systems.
#include "tests/extend/sdk_support.h"

#include <numbers>

namespace {

constexpr double kPi = std::numbers::pi;

class Spaces : public SdkTest {
protected:
    static resbuf system(int code)
    {
        resbuf node = {};
        node.restype = RTSHORT;
        node.resval.rint = std::int16_t(code);
        return node;
    }
    static resbuf normal(double x, double y, double z)
    {
        resbuf node = {};
        node.restype = RT3DPOINT;
        node.resval.rpoint[0] = x;
        node.resval.rpoint[1] = y;
        node.resval.rpoint[2] = z;
        return node;
    }
    static VcGePoint3d trans(const VcGePoint3d& p, const resbuf& from, const resbuf& to, bool displacement = false)
    {
        const vds_point in = {p.x, p.y, p.z};
        vds_point out = {-999, -999, -999};
        EXPECT_EQ(vcedTrans(in, &from, &to, displacement, out), RTNORM);
        return {out[0], out[1], out[2]};
    }
    static double real(const wchar_t* name)
    {
        resbuf node = {};
        EXPECT_EQ(vcedGetVar(name, &node), RTNORM);
        return node.resval.rreal;
    }
    static VcGePoint3d point(const wchar_t* name)
    {
        resbuf node = {};
        EXPECT_EQ(vcedGetVar(name, &node), RTNORM);
        return {node.resval.rpoint[0], node.resval.rpoint[1], node.resval.rpoint[2]};
    }
};

TEST_F(Spaces, EnteringALayoutIsEnteringPaperSpace)
{
    EXPECT_EQ(vcedPspace(), RTERROR) << "the model has none";
    run("TILEMODE\n0\n");
    EXPECT_EQ(shortVariable(L"CVPORT"), 1);
    EXPECT_EQ(shortVariable(L"TILEMODE"), 0);
    EXPECT_EQ(textOf(line(0, 0, 1, 1), 410), textVariable(L"CTAB"));
    EXPECT_FALSE(vcedGetCurViewportObjectId().isNull());
    run("TILEMODE\n1\n");
    EXPECT_EQ(textOf(line(0, 0, 1, 1), 410), L"Model");
    EXPECT_FALSE(vcedGetCurViewportObjectId().isNull());
}

TEST_F(Spaces, AViewportIsEnteredAndLeft)
{
    run("TILEMODE\n0\n");
    run("ERASE\n_ALL\n\n");
    EXPECT_EQ(vcedMspace(), RTERROR) << "there is no viewport to enter";
    run("MVIEW\n0,0\n200,100\n");
    EXPECT_EQ(vcedMspace(), RTNORM);
    EXPECT_GT(shortVariable(L"CVPORT"), 1);
    EXPECT_EQ(textOf(line(0, 0, 1, 1), 410), L"Model");
    auto* viewport = opened<VcDbViewport>(vcedGetCurViewportObjectId());
    ASSERT_TRUE(viewport);
    EXPECT_EQ(viewport->number(), shortVariable(L"CVPORT"));
    viewport->close();
    EXPECT_EQ(vcedPspace(), RTNORM);
    EXPECT_EQ(shortVariable(L"CVPORT"), 1);
    EXPECT_EQ(vcedPspace(), RTNORM) << "being there already";
}

TEST_F(Spaces, PointsGoBetweenTheSystems)
{
    const resbuf world = system(0), ucs = system(1), display = system(2);
    EXPECT_TRUE(trans({1, 2, 3}, world, ucs).isEqualTo({1, 2, 3}));
    run("UCS\n_O\n100,50\n");
    run("UCS\n_Z\n90\n");
    EXPECT_TRUE(trans({0, 0, 0}, ucs, world).isEqualTo({100, 50, 0}));
    EXPECT_TRUE(trans({1, 0, 0}, ucs, world).isEqualTo({100, 51, 0}));
    EXPECT_TRUE(trans({1, 0, 0}, ucs, world, true).isEqualTo({0, 1, 0})) << "a displacement has no place";
    EXPECT_TRUE(trans({100, 51, 0}, world, ucs).isEqualTo({1, 0, 0}));
    EXPECT_TRUE(trans(trans({3, 4, 5}, ucs, display), display, ucs).isEqualTo({3, 4, 5}));
    const resbuf down = normal(0, 0, -1);
    EXPECT_TRUE(trans({5, 0, 0}, down, world).isEqualTo({-5, 0, 0})) << "seen from below";
    EXPECT_TRUE(trans({5, 0, 7}, down, world).isEqualTo({-5, 0, -7}));
    resbuf entity = {};
    entity.restype = RTENAME;
    const vds_point at = {5, 0, 0}, below = {0, 0, -1};
    const Name turned = made(vcutBuildList(RTDXF0, L"CIRCLE", 8, L"0", 10, at, 40, 1.0, 210, below, RTNONE));
    std::copy_n(turned.value, 2, entity.resval.rlname);
    EXPECT_TRUE(trans({5, 0, 0}, entity, world).isEqualTo({-5, 0, 0})) << "the object's own system";
}

TEST_F(Spaces, WrongSystemsAreRefused)
{
    const resbuf world = system(0);
    const vds_point p = {1, 1, 1};
    vds_point out = {7, 7, 7};
    for (const int code : {-1, 4, 99}) {
        const resbuf wrong = system(code);
        EXPECT_EQ(vcedTrans(p, &wrong, &world, 0, out), RTERROR) << code;
        EXPECT_EQ(vcedTrans(p, &world, &wrong, 0, out), RTERROR) << code;
    }
    const resbuf nowhere = normal(0, 0, 0);
    EXPECT_EQ(vcedTrans(p, &nowhere, &world, 0, out), RTERROR);
    resbuf text = {};
    text.restype = RTSTR;
    EXPECT_EQ(vcedTrans(p, &text, &world, 0, out), RTERROR);
    resbuf noEntity = {};
    noEntity.restype = RTENAME;
    EXPECT_EQ(vcedTrans(p, &noEntity, &world, 0, out), RTERROR);
    EXPECT_EQ(vcedTrans(nullptr, &world, &world, 0, out), RTERROR);
    EXPECT_EQ(vcedTrans(p, nullptr, &world, 0, out), RTERROR);
    EXPECT_EQ(vcedTrans(p, &world, nullptr, 0, out), RTERROR);
    EXPECT_EQ(vcedTrans(p, &world, &world, 0, nullptr), RTERROR);
    EXPECT_EQ(out[0], 7) << "a failed call writes nothing";
}

TEST_F(Spaces, TheUcsAsAMatrix)
{
    VcGeMatrix3d m;
    EXPECT_FALSE(vcdbUcsMatrix(m)) << "the world itself";
    EXPECT_TRUE((m * VcGePoint3d(1, 2, 3)).isEqualTo({1, 2, 3}));
    run("UCS\n_O\n10,20\n");
    EXPECT_TRUE(vcdbUcsMatrix(m, &editor().drawing()));
    EXPECT_TRUE((m * VcGePoint3d(1, 2, 3)).isEqualTo({11, 22, 3}));
    VcDbDatabase other;
    EXPECT_FALSE(vcdbUcsMatrix(m, &other)) << "each drawing has its own";
    run("U\n");
    EXPECT_FALSE(vcdbUcsMatrix(m));
}

TEST_F(Spaces, AViewIsSet)
{
    VcDbViewTableRecord view;
    ASSERT_EQ(view.setCenterPoint({100, 50}), Vcad::eOk);
    ASSERT_EQ(view.setHeight(40), Vcad::eOk);
    ASSERT_EQ(view.setWidth(80), Vcad::eOk);
    EXPECT_NE(view.setHeight(0), Vcad::eOk);
    EXPECT_NE(view.setHeight(-1), Vcad::eOk);
    EXPECT_NE(view.setWidth(std::nan("")), Vcad::eOk);
    EXPECT_NE(view.setViewDirection({0, 0, 0}), Vcad::eOk);
    EXPECT_NE(view.setLensLength(0), Vcad::eOk);
    EXPECT_EQ(view.height(), 40) << "what is refused changes nothing";
    EXPECT_EQ(vcedSetCurrentView(&view, nullptr), Vcad::eOk);
    EXPECT_NEAR(real(L"VIEWSIZE"), 40, 1e-9);
    EXPECT_NEAR(point(L"VIEWCTR").x, 100, 1e-9);
    EXPECT_NE(vcedSetCurrentView(nullptr, nullptr), Vcad::eOk);
    ASSERT_EQ(view.setViewTwist(kPi / 2), Vcad::eOk);
    ASSERT_EQ(view.setViewDirection({0, -1, 0}), Vcad::eOk);
    EXPECT_EQ(vcedSetCurrentView(&view, nullptr), Vcad::eOk);
    EXPECT_NEAR(real(L"VIEWTWIST"), kPi / 2, 1e-9);
    EXPECT_TRUE(point(L"VIEWDIR").isEqualTo({0, -1, 0}));
}

TEST_F(Spaces, AViewportsScaleIsKeptWhereOthersLook)
{
    run("TILEMODE\n0\n");
    run("MVIEW\n0,0\n200,100\n");
    Name viewport;
    ASSERT_EQ(vcdbEntLast(viewport.value), RTNORM);
    auto* object = opened<VcDbViewport>(idOf(viewport), VcDb::kForWrite);
    EXPECT_EQ(object->setCustomScale(0.5), Vcad::eOk);
    EXPECT_NE(object->setCustomScale(0), Vcad::eOk);
    EXPECT_NE(object->setCustomScale(-2), Vcad::eOk);
    EXPECT_EQ(object->customScale(), 0.5);
    object->close();
    EXPECT_NE(textVariable(L"CANNOSCALE"), L"(none)");
}

TEST_F(Spaces, VectorsAreTakenAndRefused)
{
    const vds_point a = {0, 0, 0}, b = {1, 1, 0};
    EXPECT_EQ(vcedGrDraw(a, b, 1, 0), RTNORM);
    EXPECT_EQ(vcedGrDraw(nullptr, b, 1, 0), RTERROR);
    EXPECT_EQ(vcedGrDraw(a, nullptr, 1, 0), RTERROR);
    const RbPtr pairs(
        vcutBuildList(RTSHORT, 1, RTPOINT, a, RTPOINT, b, RTSHORT, -3, RT3DPOINT, b, RT3DPOINT, a, RTNONE));
    const RbPtr odd(vcutBuildList(RTSHORT, 1, RTPOINT, a, RTPOINT, b, RTPOINT, a, RTNONE));
    const RbPtr wrong(vcutBuildList(RTSHORT, 1, RTREAL, 1.0, RTNONE));
    const vds_matrix twice = {{2, 0, 0, 0}, {0, 2, 0, 0}, {0, 0, 2, 0}, {0, 0, 0, 1}};
    EXPECT_EQ(vcedGrVecs(pairs.get(), nullptr), RTNORM);
    EXPECT_EQ(vcedGrVecs(pairs.get(), twice), RTNORM);
    EXPECT_EQ(vcedGrVecs(odd.get(), nullptr), RTERROR) << "a point without another";
    EXPECT_EQ(vcedGrVecs(wrong.get(), nullptr), RTERROR);
    const Name name = line(0, 0, 1, 1);
    for (const int mode : {1, 2, 3, 4, -3, -4})
        EXPECT_EQ(vcedRedraw(name, mode), RTNORM) << mode;
    EXPECT_EQ(vcedRedraw(name, 0), RTERROR);
    EXPECT_EQ(vcedRedraw(name, 9), RTERROR);
    EXPECT_EQ(vcedRedraw(nullptr, 1), RTNORM) << "the whole drawing";
    const Name stale{{name.value[0] + 1000, name.value[1]}};
    EXPECT_EQ(vcedRedraw(stale, 3), RTERROR);
    EXPECT_EQ(vcedTextScr(), RTNORM);
    EXPECT_EQ(vcedGraphScr(), RTNORM);
}

}  // namespace
