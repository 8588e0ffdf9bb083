// Every dimension variable in every class: changed in the style, it shows where the class uses it once the dimension is
// written back, and nowhere else.
#include "dim_picture_support.h"

#include "host/db/chain.h"
#include "host/db/dim_picture.h"
#include "host/db/rec_arrow_blocks.h"
#include "host/db/rec_dim_variables.h"
#include "sdk/vcdb_chains.h"
#include "sdk/vchost.h"

#include <cmath>
#include <set>

namespace {

// One letter a class: rotated, aligned, angle of two lines, angle of three points, radius, diameter, ordinate, arc length,
// jogged radius, leader.
constexpr std::string_view kClasses = "LAGTRDOCJE";

struct Drawn : DimDrawing {
    Drawn() { vcdbHostApplicationServices()->setWorkingDatabase(&db); }
    ~Drawn() { vcdbHostApplicationServices()->setWorkingDatabase(nullptr); }

    VcDbObjectId linetype(const char* name)
    {
        const VcDbObjectId id = core.recordFor(NameTable::Linetype, name);
        core.objectAs<VcDbLinetypeTableRecord>(id)->setPattern("", {{1}, {-1}});
        return id;
    }

    VcDbEntity& make(char which);
    std::string picture(VcDbEntity& entity);
};

template <class T>
std::unique_ptr<T> linear()
{
    auto d = std::make_unique<T>();
    d->setXLine1Point({0, 0, 0});
    d->setXLine2Point({40, 0, 0});
    d->setDimLinePoint({40, 10, 0});
    return d;
}

VcDbEntity& Drawn::make(char which)
{
    switch (which) {
    case 'L':
        return add(linear<VcDbRotatedDimension>());
    case 'A':
        return add(linear<VcDbAlignedDimension>());
    case 'G': {
        auto d = std::make_unique<VcDb2LineAngularDimension>();
        d->setXLine1End({10, 0, 0});
        d->setXLine2End({0, 10, 0});
        d->setArcPoint({20, 20, 0});
        return add(std::move(d));
    }
    case 'T': {
        auto d = std::make_unique<VcDb3PointAngularDimension>();
        d->setXLine1Point({10, 0, 0});
        d->setXLine2Point({0, 10, 0});
        d->setArcPoint({20, 20, 0});
        return add(std::move(d));
    }
    case 'R': {
        auto d = std::make_unique<VcDbRadialDimension>();
        d->setChordPoint({20, 10, 0});
        return add(std::move(d));
    }
    case 'D': {
        auto d = std::make_unique<VcDbDiametricDimension>();
        d->setChordPoint({20, 10, 0});
        d->setFarChordPoint({-20, -10, 0});
        d->setLeaderLength(5);
        return add(std::move(d));
    }
    case 'O': {
        auto d = std::make_unique<VcDbOrdinateDimension>();
        d->setDefiningPoint({25, 17, 0});
        d->setLeaderEndPoint({32, 60, 0});
        d->useXAxis();
        return add(std::move(d));
    }
    case 'C': {
        auto d = std::make_unique<VcDbArcDimension>();
        d->setXLine1Point({30, 0, 0});
        d->setXLine2Point({0, 30, 0});
        d->setArcPoint({30, 30, 0});
        return add(std::move(d));
    }
    case 'J': {
        auto d = std::make_unique<VcDbRadialDimensionLarge>();
        d->setChordPoint({100, 0, 0});
        d->setOverrideCenter({50, -10, 0});
        d->setJogPoint({60, -5, 0});
        return add(std::move(d));
    }
    default: {
        auto text = std::make_unique<VcDbMText>();
        text->setContents(L"note");
        text->setTextHeight(2);
        text->setLocation({20.5, 11, 0});
        const VcDbObjectId note = add(std::move(text)).objectId();
        auto made = std::make_unique<VcDbLeader>();
        for (const VcGePoint3d& p : {VcGePoint3d(0, 0, 0), VcGePoint3d(18, 10, 0), VcGePoint3d(20, 10, 0)})
            made->appendVertex(p);
        made->setHookLine(true);
        auto& leader = add(std::move(made));
        EXPECT_EQ(leader.attachAnnotation(note), Vcad::eOk);
        return leader;
    }
    }
}

std::string Drawn::picture(VcDbEntity& entity)
{
    const RbPtr chain = chainOf(entity);
    ChainGroups groups(chain.get());
    EXPECT_EQ(applyChain(entity, groups), Vcad::eOk);
    std::string all;
    if (const auto* leader = VcDbLeader::cast(&entity)) {
        for (const auto& piece : vk::dim::leaderPieces(*leader))
            all += std::string(piece->isA()->name()) + "\n" + dumpOf(*piece, core);
        return all;
    }
    const auto* block = core.liveAs<VcDbBlockTableRecord>(static_cast<VcDbDimension&>(entity).dimBlockId());
    for (const std::uint32_t slot : block->memberSlots())
        if (VcDbObject* piece = core.objectAt(slot); !piece->isErased())
            all += std::string(piece->isA()->name()) + "\n" + dumpOf(*piece, core);
    return all;
}

using Change = void (*)(Drawn&, VcDbDimVars&);
void nothing(Drawn&, VcDbDimVars&) {}

struct Row {
    const char* name;  // of the variable
    Change prepare;    // what it needs to show at all
    Change change;
    const char* shows;  // classes
};

#define VARS [](Drawn & d, VcDbDimVars & v)
#define SET(statement)                                                                                                 \
    VARS                                                                                                               \
    {                                                                                                                  \
        (void)d;                                                                                                       \
        statement;                                                                                                     \
    }

const Row kRows[] = {
    {"DIMPOST", nothing, SET(v.dimpost = "<> mm"), "LAGTRDOCJ"},
    {"DIMAPOST", SET(v.dimalt = 1), SET(v.dimapost = " in"), "LARDOCJ"},
    {"DIMBLK", nothing, SET(v.dimblk = arrowBlock(d.core, "DOT")), "LAGTRDCJ"},
    {"DIMBLK1", SET(v.dimsah = 1), SET(v.dimblk1 = arrowBlock(d.core, "DOT")), "LAGTC"},
    {"DIMBLK2", SET(v.dimsah = 1), SET(v.dimblk2 = arrowBlock(d.core, "DOT")), "LAGTRDCJ"},
    {"DIMSCALE", nothing, SET(v.dimscale = 0.5), "LAGTRDOCJE"}, {"DIMASZ", nothing, SET(v.dimasz = 1), "LAGTRDOCJE"},
    {"DIMEXO", nothing, SET(v.dimexo = 0.25), "LAGTOC"}, {"DIMDLI", nothing, SET(v.dimdli = 9), ""},
    {"DIMEXE", nothing, SET(v.dimexe = 0.25), "LAGTC"}, {"DIMRND", SET(v.dimdec = 2), SET(v.dimrnd = 7), "LARDOCJ"},
    {"DIMDLE", SET(v.dimtsz = 1), SET(v.dimdle = 0.5), "LA"},
    {"DIMTP", SET(v.dimtol = 1), SET(v.dimtp = 1), "LAGTRDOCJ"},
    {"DIMTM", SET(v.dimtol = 1), SET(v.dimtm = 1), "LAGTRDOCJ"},
    {"DIMFXL", SET(v.dimfxlon = 1; v.dimfxl = 2), SET(v.dimfxl = 3), "LAGTC"},
    {"DIMJOGANG", nothing, SET(v.dimjogang = 1), "J"}, {"DIMTXT", nothing, SET(v.dimtxt = 1), "LAGTRDOCJ"},
    {"DIMCEN", nothing, SET(v.dimcen = 1), "RD"}, {"DIMTSZ", nothing, SET(v.dimtsz = 1), "LAGTRDCJ"},
    {"DIMALTF", SET(v.dimalt = 1), SET(v.dimaltf = 3), "LARDOCJ"}, {"DIMLFAC", nothing, SET(v.dimlfac = 3), "LARDOCJ"},
    {"DIMTVP", nothing, SET(v.dimtvp = 1), "LAGTCJ"},
    {"DIMTFAC", SET(v.dimtol = 1; v.dimtp = 1), SET(v.dimtfac = 0.5), "LAGTRDOCJ"},
    {"DIMGAP", nothing, SET(v.dimgap = 0.25), "LAGTRDOCJE"},
    {"DIMALTRND", SET(v.dimalt = 1), SET(v.dimaltrnd = 7), "LARDOCJ"},
    {"DIMTFILL", nothing, SET(v.dimtfill = 1), "LAGTRDOCJ"},
    {"DIMTFILLCLR", SET(v.dimtfill = 2), SET(v.dimtfillclr = 3), "LAGTRDOCJ"},
    {"DIMTOL", SET(v.dimtp = 1), SET(v.dimtol = 1), "LAGTRDOCJ"},
    {"DIMLIM", SET(v.dimtp = 1), SET(v.dimlim = 1), "LAGTRDOCJ"}, {"DIMTIH", nothing, SET(v.dimtih = 1), "GTC"},
    {"DIMTOH", nothing, SET(v.dimtoh = 1), "RD"}, {"DIMSE1", nothing, SET(v.dimse1 = 1), "LAGTC"},
    {"DIMSE2", nothing, SET(v.dimse2 = 1), "LAGTC"}, {"DIMTAD", nothing, SET(v.dimtad = 1), "LAGTRDOCJE"},
    {"DIMZIN", SET(v.dimdec = 2), SET(v.dimzin = 8), "LAOJ"}, {"DIMAZIN", SET(v.dimadec = 2), SET(v.dimazin = 2), "GT"},
    {"DIMARCSYM", nothing, SET(v.dimarcsym = 1), "C"}, {"DIMALT", nothing, SET(v.dimalt = 1), "LARDOCJ"},
    {"DIMALTD", SET(v.dimalt = 1), SET(v.dimaltd = 1), "LARDOCJ"},
    {"DIMTOFL", SET(v.dimatfit = 0; v.dimtxt = 30), SET(v.dimtofl = 1), "LAGTRD"},
    {"DIMSAH", SET(v.dimblk1 = arrowBlock(d.core, "DOT")), SET(v.dimsah = 1), "LAGTC"},
    {"DIMTIX", SET(v.dimtxt = 40), SET(v.dimtix = 1), "LAGTRDC"},
    {"DIMSOXD", SET(v.dimtix = 1; v.dimasz = 40), SET(v.dimsoxd = 1), "LAGTC"},
    {"DIMCLRD", nothing, SET(v.dimclrd = 1), "LAGTRDCJE"},
    {"DIMCLRE", SET(v.dimcen = 1), SET(v.dimclre = 1), "LAGTRDOC"},
    {"DIMCLRT", nothing, SET(v.dimclrt = 1), "LAGTRDOCJ"}, {"DIMADEC", nothing, SET(v.dimadec = 2), "GT"},
    {"DIMDEC", nothing, SET(v.dimdec = 3), "LARDOCJ"},
    {"DIMTDEC", SET(v.dimtol = 1; v.dimtp = 1), SET(v.dimtdec = 3), "LAGTRDOCJ"},
    {"DIMALTU", SET(v.dimalt = 1), SET(v.dimaltu = 1), "LARDOCJ"},
    {"DIMALTTD", SET(v.dimalt = 1; v.dimtol = 1; v.dimtp = 1), SET(v.dimalttd = 3), "LARDOCJ"},
    {"DIMTXSTY", nothing, VARS{v.dimtxsty = d.core.recordFor(NameTable::TextStyle, "Other");
}
, "LAGTRDOCJ"
}
, {"DIMAUNIT", nothing, SET(v.dimaunit = 3), "GT"},
{
    "DIMFRAC", SET(v.dimlunit = 5; v.dimdec = 4; v.dimlfac = 1.0625), SET(v.dimfrac = 1), "LARDOCJ"
}
, {"DIMLUNIT", nothing, SET(v.dimlunit = 4), "LARDOCJ"},
    {"DIMDSEP", SET(v.dimdec = 2), SET(v.dimdsep = ','), "LARDOCJ"},
{
    "DIMTMOVE", SET(v.dimtxt = 40; v.dimtad = 1), SET(v.dimtmove = 1), "LA"
}
, {"DIMJUST", nothing, SET(v.dimjust = 1), "LAGTC"}, {"DIMSD1", nothing, SET(v.dimsd1 = 1), "LAGTC"},
    {"DIMSD2", nothing, SET(v.dimsd2 = 1), "LAGTC"}, {"DIMTOLJ", nothing, SET(v.dimtolj = 2), "LAGTRDOCJ"},
{
    "DIMTZIN", SET(v.dimtol = 1; v.dimtp = 1; v.dimtdec = 2), SET(v.dimtzin = 8), "LAGTRDOCJ"
}
, { "DIMALTZ", SET(v.dimalt = 1; v.dimaltf = 2), SET(v.dimaltz = 8), "LAOJ" }
, { "DIMALTTZ", SET(v.dimalt = 1; v.dimtol = 1; v.dimtp = 1; v.dimaltf = 2), SET(v.dimalttz = 8), "LARDOCJ" }
, {"DIMUPT", nothing, SET(v.dimupt = 1), ""}, {"DIMATFIT", SET(v.dimtxt = 40), SET(v.dimatfit = 0), "LAGTC"},
    {"DIMFXLON", SET(v.dimfxl = 2), SET(v.dimfxlon = 1), "LAGTC"},
    {"DIMTXTDIRECTION", nothing, SET(v.dimtxtdirection = 1), "LAGTRDOCJ"},
    {"DIMLDRBLK", nothing, SET(v.dimldrblk = arrowBlock(d.core, "DOT")), "E"},
    {"DIMLTYPE", nothing, SET(v.dimltype = d.linetype("DASHED")), "LAGTRDCJE"},
    {"DIMLTEX1", nothing, SET(v.dimltex1 = d.linetype("DASHED")), "LAGTOC"},
    {"DIMLTEX2", nothing, SET(v.dimltex2 = d.linetype("DASHED")), "LAGTC"},
    {"DIMLWD", nothing, SET(v.dimlwd = 50), "LAGTRDCJE"}, {"DIMLWE", SET(v.dimcen = 1), SET(v.dimlwe = 50), "LAGTRDOC"},
    {"DIMMZS", SET(v.dimlfac = 0.001), SET(v.dimmzs = "mm"), "LARDOCJ"},
{
    "DIMMZF", SET(v.dimlfac = 0.001; v.dimmzs = "mm"), SET(v.dimmzf = 1000), "LARDOCJ"
}
, { "DIMALTMZS", SET(v.dimalt = 1; v.dimaltf = 0.001), SET(v.dimaltmzs = "mm"), "LARDOCJ" }
, { "DIMALTMZF", SET(v.dimalt = 1; v.dimaltf = 0.001; v.dimaltmzs = "mm"), SET(v.dimaltmzf = 1000), "LARDOCJ" }
,
}
;

void PrintTo(const Row& row, std::ostream* out) { *out << row.name; }

struct DimVariableShows : testing::TestWithParam<Row> {};

VcDbDimVars plainVars()
{
    VcDbDimVars vars;
    vars.dimasz = vars.dimtxt = 2;
    vars.dimgap = 0.5;
    vars.dimexo = vars.dimexe = 1;
    vars.dimdec = vars.dimtdec = 0;
    vars.dimtih = vars.dimtoh = 0;
    vars.dimcen = 0;
    return vars;
}

TEST_P(DimVariableShows, WhereItsClassesUseIt)
{
    Drawn d;
    VcDbDimVars vars = plainVars();
    GetParam().prepare(d, vars);
    d.style().setDimVars(vars);
    std::vector<VcDbEntity*> entities;
    std::vector<std::string> before;
    for (const char which : kClasses) {
        entities.push_back(&d.make(which));
        before.push_back(d.picture(*entities.back()));
        EXPECT_FALSE(before.back().empty()) << which;
        EXPECT_EQ(d.picture(*entities.back()), before.back()) << which << ": nothing has changed";
    }
    GetParam().change(d, vars);
    d.style().setDimVars(vars);
    std::string shows;
    for (std::size_t i = 0; i < kClasses.size(); ++i)
        if (d.picture(*entities[i]) != before[i])
            shows += kClasses[i];
    EXPECT_EQ(shows, GetParam().shows);
}

INSTANTIATE_TEST_SUITE_P(All, DimVariableShows, testing::ValuesIn(kRows),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(DimVariableRows, HaveEveryVariable)
{
    std::set<std::string> tested;
    for (const Row& row : kRows)
        tested.insert(row.name);
    for (const DimVariable& v : dimVariables())
        if (v.isIn(DxfVersion::Newest)) {
            EXPECT_TRUE(tested.contains(v.name)) << v.name;
        }
}
}
