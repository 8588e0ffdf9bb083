// Coordinates between systems, over random UCSs, views, viewports of a sheet and normals: there and back is the same,
// two steps are one, vectors are differences of points, and the axes are where the variables say.
#include "host/db/database.h"
#include "sdk/vcdb_curves.h"
#include "sdk/vcdb_records.h"
#include "sdk/vcdb_viewport.h"
#include "sdk/vced.h"
#include "tests/extend/sdk_support.h"

#include <array>
#include <cmath>
#include <random>

namespace {

class TransRandom : public SdkTest {
protected:
    static constexpr int kWorld = 0, kUcs = 1, kDisplay = 2, kSheet = 3, kNormal = 4;

    double number(double low, double high) { return std::uniform_real_distribution<double>(low, high)(m_random); }
    VcGePoint3d point(double reach = 100)
    {
        return {number(-reach, reach), number(-reach, reach), number(-reach, reach)};
    }
    VcGeVector3d direction()
    {
        for (;;)
            if (const VcGeVector3d v = point(1).asVector(); v.length() > 0.1)
                return v.normal();
    }

    resbuf system(int which) const
    {
        resbuf node{};
        node.restype = which == kNormal ? RT3DPOINT : RTSHORT;
        if (which == kNormal)
            setRbPoint(node, m_normal.x, m_normal.y, m_normal.z);
        else
            node.resval.rint = std::int16_t(which);
        return node;
    }
    VcGePoint3d trans(const VcGePoint3d& p, int from, int to, bool isVector = false) const
    {
        const resbuf in = system(from), out = system(to);
        const vds_point given = {p.x, p.y, p.z};
        vds_point got = {};
        EXPECT_EQ(vcedTrans(given, &in, &out, isVector, got), RTNORM) << from << " to " << to;
        return {got[0], got[1], got[2]};
    }
    VcGeVector3d transVector(const VcGeVector3d& v, int from, int to) const
    {
        return trans(VcGePoint3d() + v, from, to, true).asVector();
    }
    static VcGePoint3d variable(const wchar_t* name)
    {
        resbuf value{};
        EXPECT_EQ(vcedGetVar(name, &value), RTNORM);
        return {value.resval.rpoint[0], value.resval.rpoint[1], value.resval.rpoint[2]};
    }

    void turnUcs()
    {
        const VcGePoint3d origin = point(), onX = origin + direction() * 5, inPlane = origin + direction() * 5;
        const vds_point a = {origin.x, origin.y, origin.z}, b = {onX.x, onX.y, onX.z},
                        c = {inPlane.x, inPlane.y, inPlane.z};
        vcedCommand(RTSTR, L"_.UCS", RTSTR, L"_3", RT3DPOINT, a, RT3DPOINT, b, RT3DPOINT, c, RTNONE);
    }
    void turnView()
    {
        VcDbViewTableRecord record;
        const VcGePoint3d center = point();
        record.setCenterPoint({center.x, center.y});
        record.setHeight(number(0.1, 1000));
        record.setTarget(point());
        record.setViewDirection(direction() * number(0.1, 50));
        record.setViewTwist(number(0, 2 * M_PI));
        EXPECT_EQ(vcedSetCurrentView(&record, nullptr), Vcad::eOk);
    }
    void enterViewport()
    {
        run("TILEMODE 0\nMVIEW 10,20 " + std::to_string(30 + number(0, 100)) + "," +
            std::to_string(40 + number(0, 100)) + "\nMSPACE\n");
        ASSERT_GT(shortVariable(L"CVPORT"), 1);
    }
    void expectSame(const VcGePoint3d& got, const VcGePoint3d& wanted, const char* what, int from, int to)
    {
        EXPECT_NEAR(got.distanceTo(wanted), 0, 1e-9 * (1 + wanted.asVector().length() + 1e3))
            << what << ' ' << from << " to " << to;
    }

    void expectConsistent(int systems)
    {
        for (int from = 0; from < systems; ++from)
            for (int to = 0; to < systems; ++to) {
                const VcGePoint3d p = point(), q = point();
                expectSame(trans(trans(p, from, to), to, from), p, "round trip", from, to);
                const int third = int(number(0, systems - 1e-9));
                expectSame(trans(trans(p, from, third), third, to), trans(p, from, to), "two steps", from, to);
                expectSame(VcGePoint3d() + (trans(q, from, to) - trans(p, from, to)),
                           VcGePoint3d() + transVector(q - p, from, to), "vector", from, to);
                const VcGeVector3d x = transVector({1, 0, 0}, from, to), y = transVector({0, 1, 0}, from, to),
                                   z = transVector({0, 0, 1}, from, to);
                EXPECT_NEAR(x.length(), z.length(), 1e-9 * x.length());
                EXPECT_NEAR(x.crossProduct(y).normal().dotProduct(z.normal()), 1, 1e-9)
                    << "not right-handed: " << from << " to " << to;
            }
    }
    void expectAxes()
    {
        expectSame(trans({}, kUcs, kWorld), variable(L"UCSORG"), "origin", kUcs, kWorld);
        expectSame(VcGePoint3d() + transVector({1, 0, 0}, kUcs, kWorld), variable(L"UCSXDIR"), "X axis", kUcs, kWorld);
        expectSame(VcGePoint3d() + transVector({0, 1, 0}, kUcs, kWorld), variable(L"UCSYDIR"), "Y axis", kUcs, kWorld);
        const VcGeVector3d eye = variable(L"VIEWDIR").asVector().normal();
        expectSame(VcGePoint3d() + transVector(eye, kUcs, kDisplay), {0, 0, 1}, "line of sight", kUcs, kDisplay);
        expectSame(trans(variable(L"TARGET"), kUcs, kDisplay), {}, "target", kUcs, kDisplay);
        EXPECT_NEAR(transVector({0, 0, 1}, kNormal, kWorld).dotProduct(m_normal), 1, 1e-12);
        const bool nearZ = std::fabs(m_normal.x) < 1.0 / 64 && std::fabs(m_normal.y) < 1.0 / 64;
        const VcGeVector3d x = (nearZ ? VcGeVector3d(0, 1, 0) : VcGeVector3d(0, 0, 1)).crossProduct(m_normal).normal();
        expectSame(VcGePoint3d() + transVector({1, 0, 0}, kNormal, kWorld), VcGePoint3d() + x, "X axis", kNormal,
                   kWorld);
    }

    std::mt19937 m_random{20};
    VcGeVector3d m_normal{0, 0, 1};
};

TEST_F(TransRandom, InTheModel)
{
    for (int i = 0; i < 60; ++i) {
        turnUcs();
        turnView();
        m_normal = i % 7 == 0 ? (VcGeVector3d(0.01, -0.015, i % 2 ? 1 : -1)).normal() : direction();
        expectConsistent(3);
        expectAxes();
        // The sheet's coordinates are those of the display where there is no sheet.
        const VcGePoint3d p = point();
        expectSame(trans(p, kDisplay, kSheet), p, "display", kDisplay, kSheet);
    }
}

TEST_F(TransRandom, ThroughViewportsOfASheet)
{
    for (int i = 0; i < 20; ++i) {
        enterViewport();
        turnUcs();
        turnView();
        m_normal = direction();
        expectConsistent(5);
        expectAxes();
        const auto* viewport = editor().db().liveAs<VcDbViewport>(vcedGetCurViewportObjectId());
        ASSERT_NE(viewport, nullptr);
        const VcGePoint2d seen = viewport->viewCenter();
        expectSame(trans(viewport->centerPoint(), kSheet, kDisplay), {seen.x, seen.y, 0}, "centre", kSheet, kDisplay);
        EXPECT_NEAR(transVector({1, 0, 0}, kDisplay, kSheet).length(), viewport->customScale(),
                    1e-9 * viewport->customScale());
    }
}

// An entity's own system is that of its normal, as its groups have it.
TEST_F(TransRandom, OfAnEntity)
{
    for (int i = 0; i < 20; ++i) {
        turnUcs();
        const VcGeVector3d normal = direction();
        const VcGePoint3d own = point();
        const vds_point at = {own.x, own.y, own.z}, n = {normal.x, normal.y, normal.z};
        const Name circle = made(vcutBuildList(RTDXF0, L"CIRCLE", 8, L"0", 10, at, 40, 1.0, 210, n, RTNONE));
        resbuf entity{};
        entity.restype = RTENAME;
        entity.resval.rlname[0] = circle.value[0];
        entity.resval.rlname[1] = circle.value[1];
        const resbuf world = system(kWorld);
        vds_point got = {};
        ASSERT_EQ(vcedTrans(at, &entity, &world, 0, got), RTNORM);
        const auto* drawn = editor().db().liveAs<VcDbCircle>(idOf(circle));
        expectSame({got[0], got[1], got[2]}, drawn->center(), "centre", kNormal, kWorld);
    }
}

}
