// Every class of dimension: what it measures, what it says and how it lies.
#include "dim_picture_support.h"

#include "host/io/drawing_file.h"
#include "sdk/vcdb_faces.h"

#include <cmath>
#include <cstdlib>
#include <filesystem>

namespace {

TEST_F(DimPictures, Angular)
{
    auto d = std::make_unique<VcDb2LineAngularDimension>();
    d->setXLine1Start({0, 0, 0});
    d->setXLine1End({10, 0, 0});
    d->setXLine2Start({0, 0, 0});
    d->setXLine2End({0, 10, 0});
    d->setArcPoint({15, 15, 0});
    auto& a = add(std::move(d));
    EXPECT_NEAR(a.measurement(), M_PI / 2, 1e-12);
    EXPECT_EQ(said(a), "\\A1;90%%d");
    EXPECT_EQ(parts<VcDbArc>(a).size(), 2u);
    EXPECT_TRUE(hasLine(a, {11, 0, 0}, {std::sqrt(450.0) + 1, 0, 0}));
    a.setArcPoint({-15, 15, 0});
    a.recomputeDimBlock();
    EXPECT_NEAR(a.measurement(), M_PI / 2, 1e-12);
}

// The arc runs on to text beside its sector, and under it where it stands above the arc.
TEST_F(DimPictures, AnArcRunsOnToTextThatHasLeftIt)
{
    const auto arcsWith = [&](int dimtmove) {
        VcDbDimVars vars = style().dimVars();
        vars.dimtmove = std::int16_t(dimtmove);
        style().setDimVars(vars);
        auto d = std::make_unique<VcDb3PointAngularDimension>();
        d->setXLine1Point({10, 0, 0});
        d->setXLine2Point({0, 10, 0});
        d->setArcPoint({20, 20, 0});
        d->setTextPosition({-20, 20, 0});
        double farthest = 0;
        for (const VcDbArc* arc : parts<VcDbArc>(add(std::move(d))))
            farthest = std::max(farthest, arc->endAngle());
        return farthest;
    };
    EXPECT_NEAR(arcsWith(0), 0.75 * M_PI, 0.15) << "up to the text, which breaks it";
    EXPECT_LT(arcsWith(2), 0.51 * M_PI);
}

TEST_F(DimPictures, TextOverAnExtensionLineStandsAtItsEndOrBesideIt)
{
    change([](VcDbDimVars& v) { v.dimjust = 3; });
    const auto& end = add(linear(40));
    EXPECT_TRUE(hasLine(end, {0, 1, 0}, {0, 11, 0}));
    EXPECT_NEAR(parts<VcDbMText>(end)[0]->location().x, 0, 1e-9);
    const std::size_t lines = parts<VcDbLine>(end).size();
    change([](VcDbDimVars& v) { v.dimtad = 1; });
    const auto& beside = add(linear(40));
    EXPECT_EQ(parts<VcDbLine>(beside).size(), lines + 1);
    EXPECT_LT(parts<VcDbMText>(beside)[0]->location().x, -0.5);
    change([](VcDbDimVars& v) { v.dimse1 = 1; });
    EXPECT_EQ(parts<VcDbLine>(add(linear(40))).size(), lines - 1) << "a line that is left out does not run on";
}

// Whoever reads it stands on the other side of the drawing, so above is below.
TEST_F(DimPictures, TextThatIsReadFromTheOtherSide)
{
    change([](VcDbDimVars& v) {
        v.dimtxtdirection = 1;
        v.dimtad = 1;
    });
    const auto& d = add(linear(40));
    EXPECT_NEAR(parts<VcDbMText>(d)[0]->rotation(), M_PI, 1e-9);
    EXPECT_LT(parts<VcDbMText>(d)[0]->location().y, 10);
}

TEST_F(DimPictures, AngularThroughThePoint)
{
    auto d = std::make_unique<VcDb3PointAngularDimension>();
    d->setCenterPoint({0, 0, 0});
    d->setXLine1Point({10, 0, 0});
    d->setXLine2Point({0, 10, 0});
    d->setArcPoint({-20, -20, 0});
    EXPECT_NEAR(add(std::move(d)).measurement(), 3 * M_PI / 2, 1e-12);
}

TEST_F(DimPictures, ParallelLinesMeasureNothing)
{
    auto d = std::make_unique<VcDb2LineAngularDimension>();
    d->setXLine1End({10, 0, 0});
    d->setXLine2Start({0, 5, 0});
    d->setXLine2End({10, 5, 0});
    d->setArcPoint({20, 2, 0});
    EXPECT_EQ(add(std::move(d)).measurement(), 0);
}

TEST_F(DimPictures, Radius)
{
    auto d = std::make_unique<VcDbRadialDimension>();
    d->setCenter({0, 0, 0});
    d->setChordPoint({20, 0, 0});
    const auto& r = add(std::move(d));
    EXPECT_EQ(said(r), "\\A1;R20");
    EXPECT_EQ(parts<VcDbSolid>(r).size(), 1u);
    EXPECT_GT(r.textPosition().x, 20);
}

TEST_F(DimPictures, Diameter)
{
    auto d = std::make_unique<VcDbDiametricDimension>();
    d->setChordPoint({20, 0, 0});
    d->setFarChordPoint({-20, 0, 0});
    const auto& r = add(std::move(d));
    EXPECT_EQ(said(r), "\\A1;%%c40");
    EXPECT_EQ(parts<VcDbSolid>(r).size(), 2u);
    EXPECT_NEAR(r.textPosition().x, 0, 1e-9);
}

TEST_F(DimPictures, JoggedRadius)
{
    auto d = std::make_unique<VcDbRadialDimensionLarge>();
    d->setCenter({0, 0, 0});
    d->setChordPoint({100, 0, 0});
    d->setOverrideCenter({50, -10, 0});
    d->setJogPoint({60, -5, 0});
    d->setJogAngle(M_PI / 4);
    const auto& r = add(std::move(d));
    EXPECT_EQ(said(r), "\\A1;R100");
    // The jog goes through its point at its angle, between two lines along the radius.
    EXPECT_TRUE(hasLine(r, {65, -10, 0}, {55, 0, 0}));
    EXPECT_TRUE(hasLine(r, {50, -10, 0}, {65, -10, 0}));
}

// Its own angle, over which a variable of its own goes; without either the style's.
TEST_F(DimPictures, TheAngleOfAJog)
{
    auto made = std::make_unique<VcDbRadialDimensionLarge>();
    made->setChordPoint({100, 0, 0});
    made->setOverrideCenter({50, -10, 0});
    made->setJogPoint({60, -5, 0});
    auto& d = add(std::move(made));
    const auto run = [&] {  // of the stroke that crosses over
        for (const VcDbLine* line : parts<VcDbLine>(d))
            if (std::abs(std::abs(line->endPoint().y - line->startPoint().y) - 10) < 1e-9)
                return std::abs(line->endPoint().x - line->startPoint().x);
        return -1.0;
    };
    EXPECT_NEAR(run(), 10, 1e-9) << "45 degrees of the style";
    d.setJogAngle(M_PI / 3);
    d.recomputeDimBlock();
    EXPECT_NEAR(run(), 10 / std::tan(M_PI / 3), 1e-9);
    VcDbDimOverrides(d).setReal(50, M_PI / 6);
    d.recomputeDimBlock();
    EXPECT_NEAR(run(), 10 / std::tan(M_PI / 6), 1e-9);
}

TEST_F(DimPictures, Ordinate)
{
    auto d = std::make_unique<VcDbOrdinateDimension>();
    d->setOrigin({5, 5, 0});
    d->setDefiningPoint({25, 17, 0});
    d->setLeaderEndPoint({25, 60, 0});
    d->useXAxis();
    auto& o = add(std::move(d));
    EXPECT_EQ(said(o), "\\A1;20");
    EXPECT_TRUE(hasLine(o, {25, 18, 0}, {25, 60, 0}));
    o.setLeaderEndPoint({60, 30, 0});
    o.useYAxis();
    o.recomputeDimBlock();
    EXPECT_EQ(said(o), "\\A1;12");
    EXPECT_EQ(parts<VcDbLine>(o).size(), 3u);
}

TEST_F(DimPictures, ArcLength)
{
    auto d = std::make_unique<VcDbArcDimension>();
    d->setCenterPoint({0, 0, 0});
    d->setXLine1Point({100, 0, 0});
    d->setXLine2Point({0, 100, 0});
    d->setArcPoint({90, 90, 0});
    const auto& a = add(std::move(d));
    EXPECT_NEAR(a.measurement(), 50 * M_PI, 1e-9);
    EXPECT_EQ(said(a), "\\A1;157");
}

TEST_F(DimPictures, PointsThatFallTogetherAreNoFault)
{
    add(std::make_unique<VcDbRotatedDimension>());
    add(std::make_unique<VcDbAlignedDimension>());
    add(std::make_unique<VcDb2LineAngularDimension>());
    add(std::make_unique<VcDb3PointAngularDimension>());
    add(std::make_unique<VcDbArcDimension>());
    add(std::make_unique<VcDbRadialDimension>());
    add(std::make_unique<VcDbDiametricDimension>());
    add(std::make_unique<VcDbRadialDimensionLarge>());
    add(std::make_unique<VcDbOrdinateDimension>());
    auto huge = linear(1e300);
    add(std::move(huge));
}

TEST_F(DimPictures, ExplodeGivesThePartsWithTheirLooks)
{
    auto& d = add(linear(40));
    d.setColorIndex(5);
    std::vector<VcDbEntity*> pieces;
    ASSERT_EQ(d.explode(pieces), Vcad::eOk);
    EXPECT_EQ(pieces.size(), 10u);
    for (VcDbEntity* piece : pieces) {
        EXPECT_EQ(piece->colorIndex(), 5);
        delete piece;
    }
    VcDbExtents extents;
    ASSERT_EQ(d.getGeomExtents(extents), Vcad::eOk);
    EXPECT_NEAR(extents.maxPoint().y, 11, 1e-9);
}

// Real drawings, where a folder of them is named by VEKAD_DRAWINGS: a block that is made anew puts its arrows where they
// were, its text no further off than half its height, and most of its lines.

struct Parts {
    std::vector<VcGePoint3d> tips, texts;
};

Parts partsOf(const DatabaseCore& core, VcDbObjectId block)
{
    Parts parts;
    const auto* record = core.liveAs<VcDbBlockTableRecord>(block);
    for (const std::uint32_t slot : record ? record->memberSlots() : std::vector<std::uint32_t>()) {
        const VcDbObject* part = core.objectAt(slot);
        if (part->isErased())
            continue;
        if (const auto* text = VcDbMText::cast(part))
            parts.texts.push_back(text->location());
        else if (const auto* solid = VcDbSolid::cast(part)) {
            VcGePoint3d tip;
            solid->getPointAt(2, tip);
            parts.tips.push_back(tip);
        }
    }
    return parts;
}

double farthest(const std::vector<VcGePoint3d>& wanted, const std::vector<VcGePoint3d>& got)
{
    double worst = 0;
    for (const VcGePoint3d& w : wanted) {
        double nearest = 1e300;
        for (const VcGePoint3d& g : got)
            nearest = std::min(nearest, w.distanceTo(g));
        worst = std::max(worst, nearest);
    }
    return worst;
}

double heightOf(const VcDbDimension& d)
{
    const VcDbDimVars vars = d.dimVars();
    return vars.dimtxt * (vars.dimscale > 0 ? vars.dimscale : 1);
}

TEST(DimDrawings, PicturesMadeAnewAgreeWithThoseOfTheFile)
{
    const char* folder = std::getenv("VEKAD_DRAWINGS");
    if (!folder)
        GTEST_SKIP() << "VEKAD_DRAWINGS names no folder";
    for (const char* name : {"full_r2000.dxf", "library_r2018_ascii.dxf", "uncommon_r2018.dxf"}) {
        VcDbDatabase db(false);
        ASSERT_TRUE(readDrawing(db, (std::filesystem::path(folder) / name).string()).ok()) << name;
        DatabaseCore& core = db.core();
        const std::uint32_t end = core.slotCount();
        int seen = 0;
        for (std::uint32_t slot = 1; slot < end; ++slot) {
            auto* d = VcDbDimension::cast(core.objectAt(slot));
            if (!d || d->dimBlockId().isNull())
                continue;
            const Parts before = partsOf(core, d->dimBlockId());
            const double measured = d->measurement(), height = heightOf(*d);
            ASSERT_EQ(d->recomputeDimBlock(), Vcad::eOk);
            const Parts after = partsOf(core, d->dimBlockId());
            const std::string which =
                std::string(name) + " " + d->isA()->name() + " " + std::to_string(d->handle().value());
            EXPECT_NEAR(d->measurement(), measured, 1e-6 * std::abs(measured)) << which;
            EXPECT_LT(farthest(before.tips, after.tips), 0.01 * height) << which;
            EXPECT_LT(farthest(before.texts, after.texts), 0.5 * height) << which;
            ++seen;
        }
        EXPECT_GT(seen, 5) << name;
    }
}

}
