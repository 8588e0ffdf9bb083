// TRIM, EXTEND, OFFSET, BREAK and FILLET, typed over random figures in turned and tilted coordinate systems.
#include "command_support.h"
#include "host/db/curve_of.h"
#include "host/geom/curve_edit.h"
#include "sdk/vcdb_polylines.h"
#include "sdk/vcdb_records.h"

#include <fmt/format.h>
#include <random>

using namespace vk;
using geom::Curve;

namespace {

class RandomCommands : public seltest::Commands {
protected:
    double number(double low, double high) { return std::uniform_real_distribution<double>(low, high)(m_random); }
    VcGePoint3d point() { return {number(0, 10), number(0, 10), 0}; }

    // Another coordinate system, in which what follows is drawn and typed.
    void turn()
    {
        run("UCS\nW\n");
        m_ucs = VcGeMatrix3d();
        if (number(0, 1) < 0.2)
            return;
        const VcGePoint3d origin = point(), x(number(0.2, 1), number(-1, 1), number(-0.8, 0.8)),
                          y(number(-0.3, 0.3), number(1, 2), number(-0.8, 0.8));
        const VcGePoint3d onX = origin + x.asVector(), onY = origin + y.asVector();
        run(fmt::format("UCS\n3\n{}\n{}\n{}\n", text(origin), text(onX), text(onY)));
        vcdbUcsMatrix(m_ucs, &ed().drawing());
    }
    static std::string text(const VcGePoint3d& p) { return fmt::format("{:.17g},{:.17g},{:.17g}", p.x, p.y, p.z); }
    // What is typed for a place in the world.
    std::string typed(const VcGePoint3d& world) const { return text(m_ucs.inverse() * world); }

    VcDbEntity* figure()
    {
        const VcGePoint3d at = point();
        VcDbEntity* made = nullptr;
        switch (std::uniform_int_distribution<int>(0, 4)(m_random)) {
        case 0:
            made = new VcDbLine(at, point());
            break;
        case 1:
            made = new VcDbCircle(at, VcGeVector3d::zAxis(), number(0.5, 5));
            break;
        case 2:
            made = new VcDbArc(at, VcGeVector3d::zAxis(), number(0.5, 5), number(0, 6.28), number(0, 6.28));
            break;
        case 3:
            made = new VcDbEllipse(at, VcGeVector3d::zAxis(), {number(1, 4), number(1, 4), 0}, number(0.2, 1),
                                   number(0, 3), number(3.1, 6));
            break;
        default: {
            auto* line = new VcDbPolyline;
            for (unsigned i = 0; i < 4; ++i) {
                const VcGePoint3d corner = point();
                line->addVertexAt(i, {corner.x, corner.y}, i % 2 ? number(-0.8, 0.8) : 0);
            }
            made = line;
        }
        }
        EXPECT_EQ(made->transformBy(m_ucs), Vcad::eOk);
        return made;
    }

    // Two fresh figures, alone in the drawing.
    void draw(int count = 2)
    {
        for (VcDbEntity* old : live())
            old->erase();
        turn();
        m_before.clear();
        for (int i = 0; i < count; ++i) {
            VcDbEntity* made = figure();
            ASSERT_EQ(space().appendVcDbEntity(made), Vcad::eOk);
            made->close();
            m_before.push_back(*curveOf(*made));
        }
        run("ZOOM\nE\n");
    }
    static std::vector<VcDbEntity*> live()
    {
        std::vector<VcDbEntity*> all;
        for (const std::uint32_t slot : space().memberSlots())
            if (auto* entity = VcDbEntity::cast(db().objectAt(slot)); entity && !entity->isErased())
                all.push_back(entity);
        return all;
    }
    std::vector<Curve> after() const
    {
        std::vector<Curve> curves;
        for (const VcDbEntity* entity : live())
            curves.push_back(*curveOf(*entity));
        return curves;
    }
    VcGePoint3d somewhereOn(const Curve& curve)
    {
        const auto range = geom::paramRange(curve);
        return geom::pointAt(curve, number(range.from, range.to));
    }

    static double distanceTo(const Curve& curve, const VcGePoint3d& p)
    {
        const auto near = geom::closestPoint(curve, p);
        return near ? near->distance : HUGE_VAL;
    }
    static std::vector<VcGePoint3d> samples(const Curve& curve)
    {
        std::vector<VcGePoint3d> points;
        const auto range = geom::paramRange(curve);
        for (int i = 0; i <= 16; ++i)
            points.push_back(geom::pointAt(curve, range.from + (range.to - range.from) * i / 16));
        return points;
    }
    bool isOldEnd(const VcGePoint3d& p) const
    {
        for (const Curve& curve : m_before)
            for (const auto& end : {geom::startPoint(curve), geom::endPoint(curve)})
                if (end && end->distanceTo(p) <= kNear)
                    return true;
        return false;
    }
    // Ends that are new lie on a figure as it was.
    void expectEndsOnEdges(const std::vector<Curve>& curves)
    {
        for (const Curve& curve : curves)
            for (const auto& end : {geom::startPoint(curve), geom::endPoint(curve)}) {
                if (!end || geom::isClosed(curve) || isOldEnd(*end))
                    continue;
                EXPECT_LE(std::min(distanceTo(m_before[0], *end), distanceTo(m_before[1], *end)), kNear);
            }
    }
    double distanceToBefore(const VcGePoint3d& p) const
    {
        double least = HUGE_VAL;
        for (const Curve& curve : m_before)
            least = std::min(least, distanceTo(curve, p));
        return least;
    }
    double totalLength(const std::vector<Curve>& curves) const
    {
        double sum = 0;
        for (const Curve& curve : curves)
            sum += geom::length(curve);
        return sum;
    }

    static constexpr int kRounds = 250;
    static constexpr double kNear = 1e-6;
    std::mt19937 m_random{3};
    VcGeMatrix3d m_ucs;
    std::vector<Curve> m_before;
};

TEST_F(RandomCommands, WhatTrimLeavesEndsOnTheEdges)
{
    int changed = 0;
    for (int i = 0; i < kRounds; ++i) {
        SCOPED_TRACE(i);
        draw();
        run("TRIM\n\n" + typed(somewhereOn(m_before[0])) + "\n\n");
        const std::vector<Curve> left = after();
        expectEndsOnEdges(left);
        for (const Curve& curve : left)
            for (const VcGePoint3d& p : samples(curve))
                EXPECT_LE(distanceToBefore(p), kNear);
        changed += totalLength(left) < totalLength(m_before) - kNear;
    }
    EXPECT_GT(changed, kRounds / 4);
}

TEST_F(RandomCommands, WhatExtendsEndsOnTheEdge)
{
    int changed = 0;
    for (int i = 0; i < kRounds; ++i) {
        SCOPED_TRACE(i);
        draw();
        run("EXTEND\n\n" + typed(somewhereOn(m_before[0])) + "\n\n");
        const std::vector<Curve> now = after();
        ASSERT_EQ(now.size(), 2u);
        expectEndsOnEdges(now);
        const double gained = totalLength(now) - totalLength(m_before);
        EXPECT_GE(gained, -kNear);
        changed += gained > kNear;
    }
    EXPECT_GT(changed, kRounds / 10);
}

TEST_F(RandomCommands, OffsetsKeepTheirDistance)
{
    int made = 0;
    for (int i = 0; i < kRounds / 2; ++i) {
        SCOPED_TRACE(i);
        draw(1);
        const double distance = number(0.05, 2);
        const std::string side = typed(m_ucs * point());
        run(fmt::format("OFFSET\n{:.17g}\n{}\n{}\n\n", distance, typed(somewhereOn(m_before[0])), side));
        const std::vector<Curve> now = after();
        made += now.size() > 1;
        for (std::size_t k = 1; k < now.size(); ++k)
            for (const VcGePoint3d& p : samples(now[k]))
                EXPECT_GE(distanceTo(m_before[0], p), distance - 1e-5);
    }
    EXPECT_GT(made, kRounds / 4);
}

TEST_F(RandomCommands, BreakTakesAwayAndAddsNothing)
{
    for (int i = 0; i < kRounds; ++i) {
        SCOPED_TRACE(i);
        draw(1);
        run("BREAK\n" + typed(somewhereOn(m_before[0])) + "\n" + typed(somewhereOn(m_before[0])) + "\n");
        const std::vector<Curve> left = after();
        EXPECT_LT(totalLength(left), totalLength(m_before));
        EXPECT_LE(left.size(), 2u);
        for (const Curve& curve : left)
            for (const VcGePoint3d& p : samples(curve))
                EXPECT_LE(distanceToBefore(p), kNear);
    }
}

TEST_F(RandomCommands, ASeparateFilletTouchesBothSides)
{
    ed().vars().set("TRIMMODE", std::int32_t(0));
    int made = 0;
    for (int i = 0; i < kRounds; ++i) {
        SCOPED_TRACE(i);
        draw();
        const double radius = number(0.1, 1);
        run(fmt::format("FILLET\nR\n{:.17g}\n{}\n{}\n", radius, typed(somewhereOn(m_before[0])),
                        typed(somewhereOn(m_before[1]))) +
            "(cancel)\n");
        const std::vector<Curve> now = after();
        if (now.size() < 3)
            continue;
        ++made;
        const auto* arc = std::get_if<geom::Arc>(&now.back());
        ASSERT_TRUE(arc);
        EXPECT_NEAR(arc->radius, radius, kNear);
    }
    ed().vars().set("TRIMMODE", std::int32_t(1));
    EXPECT_GT(made, kRounds / 20);
}

}
