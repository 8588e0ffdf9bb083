#include "db_support.h"

#include "host/db/chain.h"
#include "host/db/rec_arrow_blocks.h"
#include "host/db/rec_dim_variables.h"
#include "host/io/drawing_file.h"
#include "sdk/vcdb_chains.h"
#include "sdk/vcdb_records.h"
#include "sdk/vchost.h"
#include "sdk/vcut.h"

#include <gtest/gtest.h>

#include <set>

namespace {

TEST(DimVariables, EachStandsOnceByNameAndByCode)
{
    std::set<std::string> names;
    std::set<int> codes;
    for (const DimVariable& v : dimVariables()) {
        EXPECT_TRUE(names.insert(v.name).second) << v.name;
        EXPECT_TRUE(codes.insert(v.code).second) << v.name;
        EXPECT_EQ(findDimVariable(std::string_view(v.name)), &v);
        EXPECT_EQ(findDimVariable(int(v.code)), &v);
        EXPECT_LE(int(v.since), int(v.until)) << v.name;
    }
    EXPECT_STREQ(findDimVariable("dimscale")->name, "DIMSCALE");
    EXPECT_STREQ(findDimVariable(6)->name, "DIMBLK1");
    EXPECT_EQ(findDimVariable("DIMNOTHING"), nullptr);
    EXPECT_EQ(findDimVariable(0), nullptr);
}

TEST(DimVariables, MembersBeginAtTheImperialValues)
{
    const VcDbDimVars fresh;
    for (const DimVariable& v : dimVariables()) {
        if (v.isNumber() && v.isIn(DxfVersion::Newest)) {
            EXPECT_EQ(dimNumber(fresh, v), v.imperial) << v.name;
        }
    }
    EXPECT_EQ(initialDimVars(false), fresh);
}

TEST(DimVariables, EachHasAMemberOfItsOwn)
{
    for (const DimVariable& v : dimVariables()) {
        if (!v.isNumber())
            continue;
        VcDbDimVars vars;
        setDimNumber(vars, v, 7);
        int changed = 0;
        for (const DimVariable& other : dimVariables())
            changed += other.isNumber() && dimNumber(vars, other) != dimNumber(VcDbDimVars(), other);
        EXPECT_EQ(changed, 1) << v.name;
    }
}

struct OlderUnit {
    int lunit, frac, unit;
};
const OlderUnit kUnits[] = {{1, 0, 1}, {2, 0, 2}, {3, 0, 3}, {4, 0, 4}, {5, 0, 5}, {4, 2, 6}, {5, 2, 7}, {6, 0, 8}};

TEST(DimVariables, UnitAndFractionAreOneNumberInOlderFiles)
{
    for (const OlderUnit& u : kUnits) {
        VcDbDimVars vars;
        vars.dimlunit = std::int16_t(u.lunit);
        vars.dimfrac = std::int16_t(u.frac);
        EXPECT_EQ(olderDimUnit(vars), u.unit);
        VcDbDimVars read;
        takeOlderDimUnit(read, std::int16_t(u.unit));
        EXPECT_EQ(read.dimlunit, u.lunit);
        EXPECT_EQ(read.dimfrac, u.frac);
    }
}

TEST(DimVariables, FitAndMoveAreOneNumberInOlderFiles)
{
    for (int fit = 0; fit <= 5; ++fit) {
        VcDbDimVars vars;
        takeOlderDimFit(vars, std::int16_t(fit));
        EXPECT_EQ(olderDimFit(vars), fit);
    }
}

TEST(DimVariables, GoToTheHeaderAndBack)
{
    VcDbDatabase db;
    VcDbDimVars vars = initialDimVars(true);
    vars.dimpost = "<>mm";
    vars.dimscale = 50;
    vars.dimclrd = 3;
    vars.dimjogang = 1;
    vars.dimtxsty = db.textstyle();
    vars.dimblk1 = arrowBlock(db.core(), "dot");
    setHeaderDimVars(db.core(), vars);
    EXPECT_EQ(db.core().header().text("$DIMBLK1", ""), "_DOT");
    EXPECT_EQ(headerDimVars(db.core()), vars);
}

TEST(DimVariables, OlderHeadersSayTheNewerVariables)
{
    VcDbDatabase db(false);
    db.core().header().setInteger("$DIMUNIT", 70, 6);
    db.core().header().setInteger("$DIMFIT", 70, 5);
    const VcDbDimVars vars = headerDimVars(db.core());
    EXPECT_EQ(vars.dimlunit, 4);
    EXPECT_EQ(vars.dimfrac, 2);
    EXPECT_EQ(vars.dimtmove, 2);
}

struct DimStyles : testing::Test {
    DimStyles()
        : style(*db.core().objectAs<VcDbDimStyleTableRecord>(db.core().findRecord(NameTable::DimStyle, "Standard")))
    {
    }
    VcDbDatabase db;
    VcDbDimStyleTableRecord& style;
};

TEST_F(DimStyles, AFileHasWhatIsNotAsInImperialUnits)
{
    const std::string text = dumpOf(style, db.core());
    EXPECT_EQ(text.find("\n41="), std::string::npos);
    VcDbDimVars vars = style.dimVars();
    vars.dimasz = 2.5;
    style.setDimVars(vars);
    EXPECT_NE(dumpOf(style, db.core()).find("\n41=2.5\n"), std::string::npos);
}

TEST_F(DimStyles, ComeBackFromFilesOfEveryRelease)
{
    VcDbDimVars vars = initialDimVars(true);
    vars.dimtad = 4;
    vars.dimlunit = 4;
    vars.dimfrac = 2;
    vars.dimtmove = 1;
    vars.dimtxsty = db.textstyle();
    style.setDimVars(vars);
    for (const DxfVersion version : {DxfVersion::R14, DxfVersion::R2000, DxfVersion::R2007, DxfVersion::R2018}) {
        GroupList groups;
        writeGroups(style, db.core(), groups, version);
        VcDbDimStyleTableRecord read;
        EXPECT_EQ(readGroups(read, db.core(), groups, version), 0);
        VcDbDimVars got = read.dimVars();
        EXPECT_EQ(got.dimlunit, 4) << int(version);
        EXPECT_EQ(got.dimfrac, 2) << int(version);
        EXPECT_EQ(got.dimtmove, 1) << int(version);
        EXPECT_EQ(got.dimasz, 2.5) << int(version);
        if (version >= DxfVersion::R2000) {
            EXPECT_EQ(got, vars) << int(version);
        }
    }
}

TEST_F(DimStyles, GroupsAtTheirDefaultStayWhenTheFileHadThem)
{
    GroupList came;
    came.text(100, "AcDbSymbolTableRecord");
    came.text(100, "AcDbDimStyleTableRecord");
    came.text(2, "Plain");
    came.integer(70, 0);
    came.real(40, 1);
    came.integer(178, 0);
    came.integer(270, 2);
    const std::string before = came.dump();
    VcDbDimStyleTableRecord read;
    EXPECT_EQ(readGroups(read, db.core(), came), 0);
    EXPECT_EQ(dumpOf(read, db.core()), before);
}

TEST_F(DimStyles, AChainHasEveryVariable)
{
    const RbPtr chain = chainOf(style);
    for (const DimVariable& v : dimVariables()) {
        if (v.isNumber() && !v.isInExtendedData()) {
            EXPECT_GE(nodesOf(chain.get(), v.code).size(), 1u) << v.name;
        }
    }
    for (const int code : {3, 4, 5, 6, 7}) {
        ASSERT_EQ(nodesOf(chain.get(), code).size(), 1u) << code;
        EXPECT_EQ(rbUtf8(*nodesOf(chain.get(), code)[0]), "");
    }
    EXPECT_EQ(nodesOf(chain.get(), 340).size(), 1u);
    EXPECT_TRUE(nodesOf(chain.get(), 342).empty());
    EXPECT_EQ(rbInteger(*nodesOf(chain.get(), 270)[0]), 2);
    EXPECT_EQ(rbInteger(*nodesOf(chain.get(), 287)[0]), 3);
}

// There are no groups for them; extended data carries them through files and chains.
TEST_F(DimStyles, SubUnitsStandInExtendedData)
{
    VcDbDimVars vars = style.dimVars();
    vars.dimmzs = "cm";
    vars.dimaltmzf = 12;
    style.setDimVars(vars);
    const RbPtr chain = chainOf(style, RbPtr(vcutBuildList(RTSTR, L"*", RTNONE)).get());
    ASSERT_EQ(nodesOf(chain.get(), 1001).size(), 1u);
    vars.dimmzs.clear();
    vars.dimaltmzf = 100;
    style.setDimVars(vars);
    EXPECT_EQ(nodesOf(chainOf(style, RbPtr(vcutBuildList(RTSTR, L"*", RTNONE)).get()).get(), 1001).size(), 0u);
    ChainGroups groups(chain.get());
    ASSERT_EQ(applyChain(style, groups), Vcad::eOk);
    EXPECT_EQ(style.dimVars().dimmzs, "cm");
    EXPECT_EQ(style.dimVars().dimaltmzf, 12);
    EXPECT_EQ(style.dimVars().dimmzf, 100);
    std::string bytes;
    ASSERT_TRUE(writeDrawingBytes(db, bytes).ok());
    VcDbDatabase again(false);
    ASSERT_TRUE(readDrawingBytes(again, bytes).ok());
    const auto* read =
        again.core().objectAs<VcDbDimStyleTableRecord>(again.core().findRecord(NameTable::DimStyle, style.nameUtf8()));
    ASSERT_NE(read, nullptr);
    EXPECT_EQ(read->dimVars().dimmzs, "cm");
    EXPECT_EQ(read->dimVars().dimaltmzf, 12);
}

TEST_F(DimStyles, AChainNamesArrowBlocks)
{
    VcDbDimVars vars = style.dimVars();
    vars.dimblk = arrowBlock(db.core(), "_ARCHTICK");
    style.setDimVars(vars);
    const RbPtr chain = chainOf(style);
    EXPECT_EQ(rbUtf8(*nodesOf(chain.get(), 5)[0]), "_ARCHTICK");
    EXPECT_EQ(nodesOf(chain.get(), 342).size(), 1u);
}

const char* const kArrows[] = {"DOT",         "DOTSMALL",   "DOTBLANK",  "ORIGIN",   "ORIGIN2",
                               "OPEN",        "OPEN90",     "OPEN30",    "CLOSED",   "SMALL",
                               "NONE",        "OBLIQUE",    "BOXFILLED", "BOXBLANK", "CLOSEDBLANK",
                               "DATUMFILLED", "DATUMBLANK", "INTEGRAL",  "ARCHTICK"};

TEST(ArrowBlocks, AreMadeOnceUnderEitherName)
{
    VcDbDatabase db;
    for (const std::string name : kArrows) {
        EXPECT_TRUE(isBuiltInArrow(name));
        const VcDbObjectId block = arrowBlock(db.core(), name);
        ASSERT_FALSE(block.isNull()) << name;
        EXPECT_EQ(arrowBlock(db.core(), "_" + name), block);
        const auto* record = db.core().objectAs<VcDbBlockTableRecord>(block);
        EXPECT_EQ(record->nameUtf8(), "_" + name);
        EXPECT_EQ(record->memberSlots().empty(), name == "NONE") << name;
    }
    EXPECT_FALSE(isBuiltInArrow("ARROW"));
    EXPECT_TRUE(arrowBlock(db.core(), "MYARROW").isNull());
}

TEST(ArrowBlocks, ABlockOfTheUsersOwnComesFirst)
{
    VcDbDatabase db;
    auto* record = new VcDbBlockTableRecord;
    record->setNameUtf8("Dot");
    VcDbObjectId id;
    ASSERT_EQ(static_cast<VcDbBlockTable&>(db.core().table(NameTable::Block)).add(id, record), Vcad::eOk);
    record->close();
    EXPECT_EQ(arrowBlock(db.core(), "DOT"), id);
}

// Chains of the C interface work on the drawing that is current.
struct DimStyleChains : DimStyles {
    DimStyleChains() { vcdbHostApplicationServices()->setWorkingDatabase(&db); }
    ~DimStyleChains() override { vcdbHostApplicationServices()->setWorkingDatabase(nullptr); }

    static RbBuilder begin(const char* name)
    {
        RbBuilder chain;
        chain.addUtf8(0, "DIMSTYLE");
        chain.addUtf8(100, "AcDbSymbolTableRecord");
        chain.addUtf8(100, "AcDbDimStyleTableRecord");
        chain.addUtf8(2, name);
        chain.addInteger(70, 0);
        return chain;
    }
    const VcDbDimStyleTableRecord* find(const char* name)
    {
        return db.core().objectAs<VcDbDimStyleTableRecord>(db.core().findRecord(NameTable::DimStyle, name));
    }
};

TEST_F(DimStyleChains, ABuiltInArrowMakesItsBlock)
{
    RbBuilder chain = begin("ARROWS");
    chain.addUtf8(5, "_DOT");
    chain.addUtf8(7, "oblique");
    chain.addUtf8(5, "_DOT");
    chain.addInteger(277, 4);
    ASSERT_EQ(vcdbEntMake(chain.take().get()), RTNORM);
    const VcDbDimStyleTableRecord* made = find("ARROWS");
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(made->dimVars().dimblk, db.core().findRecord(NameTable::Block, "_DOT"));
    EXPECT_FALSE(made->dimVars().dimblk.isNull());
    EXPECT_EQ(made->dimVars().dimblk2, db.core().findRecord(NameTable::Block, "_OBLIQUE"));
    EXPECT_TRUE(made->dimVars().dimblk1.isNull());
    EXPECT_EQ(made->dimVars().dimlunit, 4);
    EXPECT_EQ(made->dimVars().dimasz, 0.18);
}

TEST_F(DimStyleChains, WhatAChainLeavesOutFallsToTheDefault)
{
    VcDbDimVars vars = style.dimVars();
    vars.dimasz = 5;
    vars.dimblk = arrowBlock(db.core(), "DOT");
    style.setDimVars(vars);
    RbPtr fetched = chainOf(style);
    RbBuilder chain;
    vds_name name;
    idToName(style.objectId(), name);
    chain.addName(-1, name);
    chain.addUtf8(0, "DIMSTYLE");
    chain.addUtf8(2, "Standard");
    chain.addReal(42, 3);
    ASSERT_EQ(vcdbEntMod(chain.take().get()), RTNORM);
    EXPECT_EQ(style.dimVars().dimexo, 3);
    EXPECT_EQ(style.dimVars().dimasz, 0.18);
    EXPECT_TRUE(style.dimVars().dimblk.isNull());
    ASSERT_EQ(vcdbEntMod(fetched.get()), RTNORM);
    EXPECT_EQ(style.dimVars(), vars);
}

}
