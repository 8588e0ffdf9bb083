// Solids, regions and surfaces as entities: what they carry in files old and new, moved, copied, exploded, undone, seen.
#include "tests/host/model_support.h"
#include "tests/host/sdk_drawing.h"

#include "host/db/model_section.h"
#include "host/db/solid_model.h"
#include "host/edit/sysvars_drawing.h"
#include "host/geom/model_records.h"
#include "host/io/drawing_file.h"
#include "host/render/list_builder.h"
#include "sdk/vcdb_curves.h"
#include "sdk/vcdb_solids.h"

using namespace modeltest;

namespace {

std::string hexLines(std::string_view data)
{
    constexpr std::size_t kLine = 127;
    std::string lines;
    for (std::size_t at = 0; at < data.size(); at += kLine) {
        lines += "310\n";
        for (const unsigned char byte : data.substr(at, kLine)) {
            lines += "0123456789ABCDEF"[byte >> 4];
            lines += "0123456789ABCDEF"[byte & 15];
        }
        lines += '\n';
    }
    return lines;
}

// Lines of the text form as a file has them: cut, a caret followed by a blank.
std::string textLines(const std::string& text)
{
    std::string lines;
    std::istringstream in(vk::geom::modelTextExchanged(text));
    for (std::string line; std::getline(in, line);)
        for (std::size_t at = 0; at < std::max<std::size_t>(line.size(), 1); at += 255) {
            lines += at == 0 ? "1\n" : "3\n";
            for (const char c : line.substr(at, 255))
                lines += c == '^' ? "^ " : std::string(1, c);
            lines += '\n';
        }
    return lines;
}

std::string drawing(const char* version, const std::string& entities, const std::string& sections = {})
{
    return std::string("0\nSECTION\n2\nHEADER\n9\n$ACADVER\n1\n") + version + "\n0\nENDSEC\n0\nSECTION\n2\nENTITIES\n" +
           entities + "0\nENDSEC\n" + sections + "0\nEOF\n";
}

std::string entity(const char* type, const std::string& data, const std::string& after = {})
{
    return std::string("0\n") + type + "\n5\nA1\n100\nAcDbEntity\n8\n0\n100\nAcDbModelerGeometry\n70\n1\n" + data +
           after;
}

std::string oldDrawing(const char* type, const Body& body)
{
    return drawing("AC1015", entity(type, textLines(body.text())));
}

std::string newDrawing(const char* type, const Body& body)
{
    const std::string data = body.binary();
    const std::string record = "0\nACDSRECORD\n90\n1\n2\nAcDbDs::ID\n280\n10\n320\nA1\n2\nASM_Data\n280\n15\n94\n" +
                               std::to_string(data.size()) + "\n" + hexLines(data);
    return drawing("AC1032", entity(type, "290\n1\n2\n{00000000-0000-0000-0000-000000000001}\n"),
                   "0\nSECTION\n2\nACDSDATA\n70\n2\n71\n8\n0\nACDSSCHEMA\n90\n1\n1\nAcDb3DSolid_ASM_Data\n2\nAcDbDs::"
                   "ID\n280\n10\n91\n8\n" +
                       record + "0\nENDSEC\n");
}

class Loaded {
public:
    explicit Loaded(const std::string& bytes) : database(false)
    {
        vcdbHostApplicationServices()->setWorkingDatabase(&database);
        EXPECT_TRUE(readDrawingBytes(database, bytes).ok());
    }
    ~Loaded() { vcdbHostApplicationServices()->setWorkingDatabase(nullptr); }

    VcDbModelerGeometry& solid(std::size_t which = 0)
    {
        for (const std::uint32_t slot : database.core().mainOrder())
            if (auto* found = VcDbModelerGeometry::cast(database.core().objectAt(slot));
                found && !found->isErased() && which-- == 0)
                return *found;
        throw std::runtime_error("there is no solid");
    }
    std::string saved(DxfVersion version = DxfVersion::R2018)
    {
        std::string bytes;
        WriteOptions options;
        options.version = version;
        const WriteResult result = writeDrawingBytes(database, bytes, options);
        EXPECT_TRUE(result.ok()) << result.message;
        return bytes;
    }

    VcDbDatabase database;
};

void expectExtents(const VcDbEntity& entity, const VcGePoint3d& min, const VcGePoint3d& max)
{
    VcDbExtents e;
    ASSERT_EQ(entity.getGeomExtents(e), Vcad::eOk);
    EXPECT_LE(e.minPoint().distanceTo(min), 1e-9) << e.minPoint().x << ' ' << e.minPoint().y << ' ' << e.minPoint().z;
    EXPECT_LE(e.maxPoint().distanceTo(max), 1e-9) << e.maxPoint().x << ' ' << e.maxPoint().y << ' ' << e.maxPoint().z;
}

struct Kept {
    const char* name;
    std::string (*write)(const char* type, const Body& body);
    DxfVersion version;
};

class SolidIn : public testing::TestWithParam<Kept> {};

TEST_P(SolidIn, HasTheExtentsOfItsEdges)
{
    Loaded drawing(GetParam().write("3DSOLID", box(3, 4, 5)));
    expectExtents(drawing.solid(), {0, 0, 0}, {3, 4, 5});
    EXPECT_EQ(drawnCurvesOf(drawing.solid()).size(), 12u);
    Loaded half(GetParam().write("REGION", halfDisc()));
    expectExtents(half.solid(), {-5, 0, 0}, {5, 5, 0});
}

TEST_P(SolidIn, ReachesBeyondItsEdgesWhereFacesDo)
{
    Loaded ball(GetParam().write("3DSOLID", sphere("1 2 3 5")));
    VcDbExtents e;
    ASSERT_EQ(ball.solid().getGeomExtents(e), Vcad::eOk);
    EXPECT_LE(e.minPoint().distanceTo({-4, -3, -2}), 0.02);
    EXPECT_LE(e.maxPoint().distanceTo({6, 7, 8}), 0.02);
    Loaded hat(GetParam().write("3DSOLID", cone(4, 8)));
    ASSERT_EQ(hat.solid().getGeomExtents(e), Vcad::eOk);
    EXPECT_NEAR(e.maxPoint().z, 8, 1e-4);
    EXPECT_NEAR(e.maxPoint().x, 4, 1e-9);
}

TEST_P(SolidIn, MovesInTheFileToo)
{
    Loaded drawing(GetParam().write("3DSOLID", box(3, 4, 5)));
    const std::string before = drawing.saved(GetParam().version);
    EXPECT_EQ(Loaded(before).saved(GetParam().version), before);
    ASSERT_EQ(drawing.solid().transformBy(VcGeMatrix3d::translation({100, 0, 0})), Vcad::eOk);
    expectExtents(drawing.solid(), {100, 0, 0}, {103, 4, 5});
    Loaded again(drawing.saved(GetParam().version));
    expectExtents(again.solid(), {100, 0, 0}, {103, 4, 5});
    EXPECT_EQ(again.solid().modelData(), drawing.solid().modelData());
}

TEST_P(SolidIn, RefusesToBeSquashed)
{
    Loaded drawing(GetParam().write("3DSOLID", box(3, 4, 5)));
    const std::string before = drawing.solid().modelData();
    EXPECT_EQ(drawing.solid().transformBy(VcGeMatrix3d::scaling(VcGeScale3d(1, 2, 1))), Vcad::eCannotScaleNonUniformly);
    EXPECT_EQ(drawing.solid().transformBy(VcGeMatrix3d::scaling(VcGeScale3d(1, 1, 0))), Vcad::eInvalidInput);
    EXPECT_EQ(drawing.solid().modelData(), before);
}

TEST_P(SolidIn, MovesAsASurfaceUnlessItsProfileIsKeptToo)
{
    Loaded plane(GetParam().write("PLANESURFACE", halfDisc()));
    EXPECT_EQ(plane.solid().transformBy(VcGeMatrix3d::translation({100, 0, 0})), Vcad::eOk);
    for (const char* type : {"EXTRUDEDSURFACE", "LOFTEDSURFACE", "REVOLVEDSURFACE", "SWEPTSURFACE"}) {
        Loaded drawing(GetParam().write(type, halfDisc()));
        const std::string before = drawing.saved(GetParam().version);
        EXPECT_EQ(drawing.solid().transformBy(VcGeMatrix3d::translation({100, 0, 0})), Vcad::eNotApplicable) << type;
        EXPECT_EQ(drawing.saved(GetParam().version), before) << type;
        expectExtents(drawing.solid(), {-5, 0, 0}, {5, 5, 0});
    }
}

TEST_P(SolidIn, ComesBackWithUndo)
{
    Loaded drawing(GetParam().write("REGION", halfDisc()));
    DatabaseCore& db = drawing.database.core();
    const std::string before = drawing.saved(GetParam().version);
    db.undo().setRecording(true);
    const std::size_t mark = db.undo().mark();
    ASSERT_EQ(drawing.solid().transformBy(VcGeMatrix3d::translation({100, 0, 0})), Vcad::eOk);
    expectExtents(drawing.solid(), {95, 0, 0}, {105, 5, 0});
    auto span = db.undo().rollbackKeeping(mark);
    expectExtents(drawing.solid(), {-5, 0, 0}, {5, 5, 0});
    EXPECT_EQ(drawing.saved(GetParam().version), before);
    db.undo().redo(std::move(span));
    expectExtents(drawing.solid(), {95, 0, 0}, {105, 5, 0});
}

TEST_P(SolidIn, ACopyHasItsOwnShapeInTheFile)
{
    Loaded drawing(GetParam().write("3DSOLID", box(3, 4, 5)));
    auto copy = drawing.solid().copyOf();
    copy->detach();
    auto* added = static_cast<VcDbModelerGeometry*>(copy.release());
    {
        Writing<VcDbBlockTableRecord> model(drawing.database.currentSpaceId());
        VcDbObjectId id;
        ASSERT_EQ(model->appendVcDbEntity(id, added), Vcad::eOk);
    }
    ASSERT_EQ(added->transformBy(VcGeMatrix3d::translation({0, 50, 0})), Vcad::eOk);
    added->close();
    Loaded again(drawing.saved(GetParam().version));
    expectExtents(again.solid(0), {0, 0, 0}, {3, 4, 5});
    expectExtents(again.solid(1), {0, 50, 0}, {3, 54, 5});
}

TEST_P(SolidIn, AMovedCopyGoesIntoADrawingWithoutSuchData)
{
    Loaded from(GetParam().write("REGION", halfDisc()));
    auto copy = from.solid().copyOf();
    copy->detach();
    Loaded to(drawing("AC1032", "0\nPOINT\n10\n1.0\n20\n1.0\n30\n0.0\n"));
    auto* added = static_cast<VcDbModelerGeometry*>(copy.release());
    {
        Writing<VcDbBlockTableRecord> model(to.database.currentSpaceId());
        VcDbObjectId id;
        ASSERT_EQ(model->appendVcDbEntity(id, added), Vcad::eOk);
        added->close();
    }
    const std::string bytes = to.saved(DxfVersion::R2018);
    Loaded again(bytes);
    expectExtents(again.solid(), {-5, 0, 0}, {5, 5, 0});
    EXPECT_EQ(again.saved(DxfVersion::R2018), bytes);
}

TEST_P(SolidIn, ARegionExplodesIntoItsEdges)
{
    Loaded drawing(GetParam().write("REGION", halfDisc()));
    std::vector<VcDbEntity*> raw;
    ASSERT_EQ(drawing.solid().explode(raw), Vcad::eOk);
    const std::vector<std::unique_ptr<VcDbEntity>> pieces(raw.begin(), raw.end());
    ASSERT_EQ(pieces.size(), 2u);
    const auto* arc = VcDbArc::cast(pieces[0].get());
    const auto* line = VcDbLine::cast(pieces[1].get());
    ASSERT_TRUE(arc && line);
    EXPECT_NEAR(arc->radius(), 5, 1e-12);
    EXPECT_NEAR(arc->startAngle(), 0, 1e-12);
    EXPECT_NEAR(arc->totalAngle(), 3.14159265358979, 1e-9);
    EXPECT_NEAR(line->startPoint().distanceTo(line->endPoint()), 10, 1e-12);
    EXPECT_EQ(pieces[0]->layerId(), drawing.solid().layerId());
}

TEST_P(SolidIn, ASplineEdgeExplodesIntoASpline)
{
    Loaded drawing(GetParam().write("REGION", splineFace()));
    std::vector<VcDbEntity*> raw;
    ASSERT_EQ(drawing.solid().explode(raw), Vcad::eOk);
    const std::vector<std::unique_ptr<VcDbEntity>> pieces(raw.begin(), raw.end());
    ASSERT_EQ(pieces.size(), 2u);
    const auto* spline = VcDbSpline::cast(pieces[0].get());
    ASSERT_TRUE(spline);
    EXPECT_EQ(spline->controlPoints().size(), 4u);
    EXPECT_EQ(spline->degree(), 3);
}

TEST_P(SolidIn, OthersAndWhatCannotBeReadDoNotExplode)
{
    for (const auto& [type, body] :
         {std::pair("3DSOLID", box(1, 1, 1)), std::pair("REGION", splineFace("forward", "{ exactcur nullbs }"))}) {
        Loaded drawing(GetParam().write(type, body));
        std::vector<VcDbEntity*> pieces;
        EXPECT_EQ(drawing.solid().explode(pieces), Vcad::eCannotExplode) << type;
        EXPECT_TRUE(pieces.empty()) << type;
    }
}

TEST_P(SolidIn, IsDrawnAndOnlyWhatCannotBeReadIsTold)
{
    using namespace vk::render;
    const struct {
        Body body;
        std::uint32_t figures;
        std::size_t told;
    } cases[] = {{box(1, 2, 3), 12, 0},
                 {cylinder(2, 7), 6, 0},
                 {splineFace("forward", "{ exactcur nullbs }"), 1, 1},
                 {Body(), 0, 1}};
    for (const auto& c : cases) {
        Loaded drawing(GetParam().write("3DSOLID", c.body));
        DisplayList list;
        Omissions omissions;
        ListBuilder builder(list, drawing.database.core(), omissions);
        builder.add(drawing.solid());
        EXPECT_EQ(list.figures.size(), c.figures);
        EXPECT_EQ(omissions.counts().size(), c.told);
    }
}

INSTANTIATE_TEST_SUITE_P(Files, SolidIn,
                         testing::Values(Kept{"Text", oldDrawing, DxfVersion::R2000},
                                         Kept{"Binary", newDrawing, DxfVersion::R2018}),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(SolidFiles, OnlyLinesThatChangeAreWrittenAnew)
{
    // Cut at other places than we cut.
    std::string lines;
    std::istringstream in(textLines(halfDisc().text()));
    std::string code, value;
    while (std::getline(in, code) && std::getline(in, value))
        lines += value.size() > 20 ? code + "\n" + value.substr(0, 15) + "\n3\n" + value.substr(15) + "\n"
                                   : code + "\n" + value + "\n";
    Loaded drawing(::drawing("AC1015", entity("REGION", lines)));
    expectExtents(drawing.solid(), {-5, 0, 0}, {5, 5, 0});
    EXPECT_EQ(drawing.solid().modelData().find(halfDisc().text().substr(0, 20)), 0u);
}

// The data of solids cannot follow into releases that have no place for it.
TEST(SolidFiles, BinaryDataIsNotLostInSilence)
{
    Loaded drawing(newDrawing("REGION", halfDisc()));
    std::string bytes;
    WriteOptions options;
    options.version = DxfVersion::R2000;
    EXPECT_FALSE(writeDrawingBytes(drawing.database, bytes, options).ok());
}

TEST(SolidFiles, APictureThatOthersLeftGoesWhenTheSolidMoves)
{
    const std::string picture = "92\n8\n310\n0800000000000000\n";
    std::string file = oldDrawing("REGION", halfDisc());
    file.insert(file.find("100\nAcDbModelerGeometry"), picture);
    Loaded drawing(file);
    EXPECT_NE(drawing.saved(DxfVersion::R2000).find("0800000000000000"), std::string::npos);
    ASSERT_EQ(drawing.solid().transformBy(VcGeMatrix3d::translation({1, 0, 0})), Vcad::eOk);
    EXPECT_EQ(drawing.saved(DxfVersion::R2000).find("0800000000000000"), std::string::npos);
}

TEST(SolidModel, RoundFacesHaveAsManyLinesAsTheDrawingSays)
{
    Loaded drawing(oldDrawing("3DSOLID", cylinder(2, 7)));
    EXPECT_EQ(drawnCurvesOf(drawing.solid()).size(), 2u + 4u);
    const vk::edit::SysVarDef& def = *vk::edit::findSysVar("ISOLINES");
    for (const char* count : {"9", "0", "4"}) {
        ASSERT_TRUE(vk::edit::setDrawingSysVar(drawing.database.core(), def, *vk::edit::parseSysVar(def, count)));
        EXPECT_EQ(drawnCurvesOf(drawing.solid()).size(), 2u + std::size_t(std::atoi(count)));
    }
}

// Members of external references are not saved, so neither is their data.
TEST(SolidFiles, DataOfLoadedReferencesStaysOut)
{
    Loaded from(newDrawing("REGION", halfDisc()));
    auto copy = from.solid().copyOf();
    copy->detach();
    Loaded to(drawing("AC1032", "0\nPOINT\n10\n1.0\n20\n1.0\n30\n0.0\n"));
    const VcDbObjectId block = to.database.core().recordFor(NameTable::Block, "XR");
    {
        Writing<VcDbBlockTableRecord> record(block);
        VcDbObjectId id;
        auto* added = static_cast<VcDbEntity*>(copy.release());
        ASSERT_EQ(record->appendVcDbEntity(id, added), Vcad::eOk);
        added->close();
    }
    EXPECT_NE(to.saved().find("ACDSDATA"), std::string::npos);
    to.database.core().loadedReferences.insert(block.slot());
    EXPECT_EQ(to.saved().find("ACDSDATA"), std::string::npos);
}

TEST(SolidModel, IsReadOnceUntilItChanges)
{
    Loaded drawing(oldDrawing("REGION", halfDisc()));
    VcDbModelerGeometry& region = drawing.solid();
    const SolidModel* first = &region.model();
    EXPECT_EQ(&region.model(), first);
    ASSERT_EQ(region.transformBy(VcGeMatrix3d::translation({1, 0, 0})), Vcad::eOk);
    expectExtents(region, {-4, 0, 0}, {6, 5, 0});
}

}
