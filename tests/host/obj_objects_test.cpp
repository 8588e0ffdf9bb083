#include "db_support.h"

#include "host/base/heap.h"
#include "host/db/chain.h"
#include "host/db/standard_objects.h"
#include "sdk/vcdb_curves.h"
#include "sdk/vcdb_layout.h"
#include "sdk/vcdb_objects.h"
#include "sdk/vcdb_tables.h"

#include <gtest/gtest.h>

namespace {

struct Objects : testing::Test {
    VcDbObjectId line()
    {
        auto* space = core.objectAs<VcDbBlockTableRecord>(core.modelSpace());
        auto* entity = new VcDbLine({0, 0, 0}, {1, 1, 0});
        VcDbObjectId id;
        EXPECT_EQ(space->appendVcDbEntity(id, entity), Vcad::eOk);
        entity->close();
        return id;
    }
    VcDbDictionary* groups() const
    {
        const auto* root = core.objectAs<VcDbDictionary>(core.rootDictionary());
        return core.objectAs<VcDbDictionary>(root->find("ACAD_GROUP"));
    }
    VcDbGroup* group(const wchar_t* name)
    {
        auto* made = new VcDbGroup;
        VcDbObjectId id;
        EXPECT_EQ(groups()->setAt(name, made, id), Vcad::eOk);
        return made;
    }

    VcDbDatabase db;
    DatabaseCore& core = db.core();
};

TEST_F(Objects, GroupsCountAndWriteTheirLiveMembers)
{
    VcDbGroup* g = group(L"G");
    const VcDbObjectId a = line(), b = line();
    EXPECT_EQ(g->append({a, b}), Vcad::eOk);
    EXPECT_EQ(g->append(a), Vcad::eDuplicateKey);
    EXPECT_NE(g->append(db.layerTableId()), Vcad::eOk);
    EXPECT_EQ(g->numEntities(), 2u);
    EXPECT_EQ(core.object(a)->reactors()->size(), 1u);
    g->close();

    core.object(a)->erase();
    EXPECT_EQ(g->numEntities(), 1u);
    EXPECT_EQ(nodesOf(chainOf(*g).get(), 340).size(), 1u);
    core.object(a)->erase(false);
    EXPECT_EQ(g->numEntities(), 2u);
    EXPECT_EQ(g->remove(a), Vcad::eOk);
    EXPECT_FALSE(g->has(a));
    EXPECT_EQ(core.object(a)->reactors(), nullptr);
}

TEST_F(Objects, AnonymousGroupsTakeTheNextFreeName)
{
    VcDbGroup* g = group(L"*GROUPNAME");
    g->setAnonymous();
    EXPECT_EQ(g->nameUtf8(), "*A1");
    VcDbGroup* h = group(L"*GROUPNAME");
    h->setAnonymous();
    EXPECT_EQ(h->nameUtf8(), "*A2");
    EXPECT_TRUE(h->isAnonymous());
    g->close();
    h->close();
}

TEST_F(Objects, ErasingAGroupTakesItsEntry)
{
    VcDbGroup* g = group(L"G");
    g->erase();
    g->close();
    EXPECT_FALSE(groups()->has(L"G"));
}

TEST_F(Objects, ScalesRefuseUnitsThatAreNoLengths)
{
    VcDbScale scale;
    EXPECT_NE(scale.setPaperUnits(0), Vcad::eOk);
    EXPECT_NE(scale.setDrawingUnits(-1), Vcad::eOk);
    EXPECT_NE(scale.setScaleName(L""), Vcad::eOk);
    scale.set("1:50", 1, 50, false);
    EXPECT_EQ(scale.scale(), 0.02);
    EXPECT_EQ(dumpOf(scale, core), "100=AcDbScale\n70=0\n300=1:50\n140=1\n141=50\n290=0\n");
}

TEST_F(Objects, LayoutsAreRenamedWithTheirEntry)
{
    const auto* block = core.objectAs<VcDbBlockTableRecord>(core.paperSpace());
    auto* layout = core.objectAs<VcDbLayout>(block->getLayoutId());
    EXPECT_EQ(layout->setLayoutName(L"Model"), Vcad::eDuplicateKey);
    EXPECT_EQ(layout->nameUtf8(), "Layout1");
    EXPECT_EQ(layout->setLayoutName(L"Sheet"), Vcad::eOk);
    const auto* root = core.objectAs<VcDbDictionary>(core.rootDictionary());
    EXPECT_EQ(core.objectAs<VcDbDictionary>(root->find("ACAD_LAYOUT"))->find("sheet"), layout->objectId());
}

// What a file holds of an object is the same after it has been read into a fresh one, for every class.
TEST_F(Objects, ComeBackFromAFile)
{
    const auto* root = core.objectAs<VcDbDictionary>(core.rootDictionary());
    std::vector<VcDbObjectId> ids{root->objectId()};
    for (std::size_t i = 0; i < ids.size(); ++i)
        if (const auto* dictionary = core.objectAs<VcDbDictionary>(ids[i]))
            for (const auto& [name, id] : dictionary->liveEntries())
                ids.push_back(id);
    std::vector<std::unique_ptr<VcDbObject>> loose;
    loose.push_back(std::make_unique<VcDbRasterImageDef>());
    loose.push_back(std::make_unique<VcDbRasterImageDefReactor>());
    loose.push_back(std::make_unique<VcDbRasterVariables>());
    loose.push_back(std::make_unique<VcDbWipeoutVariables>());
    loose.push_back(std::make_unique<VcDbDictionaryVar>());
    loose.push_back(std::make_unique<VcDbPlotSettings>());
    static_cast<VcDbRasterImageDef&>(*loose[0]).setSourceFileName(L"picture.png");
    static_cast<VcDbDictionaryVar&>(*loose[4]).setValueUtf8("1:10");
    std::vector<VcDbObject*> objects;
    for (const VcDbObjectId id : ids)
        objects.push_back(core.object(id));
    for (const auto& object : loose)
        objects.push_back(object.get());
    EXPECT_GT(objects.size(), 30u);
    for (VcDbObject* object : objects)
        for (const DxfVersion version : {DxfVersion::R2000, DxfVersion::R2018}) {
            GroupList groups;
            writeGroups(*object, core, groups, version);
            const std::unique_ptr<VcDbObject> fresh(object->isA()->create());
            EXPECT_EQ(readGroups(*fresh, core, groups, version), 0) << object->isA()->name();
            EXPECT_EQ(dumpOf(*fresh, core, version), groups.dump()) << object->isA()->name();
        }
}

struct DrawOrder : Objects {
    DrawOrder()
        : table(*core.objectAs<VcDbSortentsTable>(core.add(std::make_unique<VcDbSortentsTable>(), core.modelSpace())))
    {
        table.setBlockId(core.modelSpace());
        for (int i = 0; i < 5; ++i)
            lines.push_back(line());
    }
    std::string order() const
    {
        VcDbObjectIdArray ids;
        EXPECT_EQ(table.getFullDrawOrder(ids), Vcad::eOk);
        std::string text;
        for (const VcDbObjectId id : ids)
            text += char('a' + (std::find(lines.begin(), lines.end(), id) - lines.begin()));
        return text;
    }
    VcDbSortentsTable& table;
    VcDbObjectIdArray lines;
};

TEST_F(DrawOrder, MovesKeepTheOrderOfWhatMoves)
{
    EXPECT_EQ(order(), "abcde");
    EXPECT_EQ(table.moveToTop({lines[2], lines[0]}), Vcad::eOk);
    EXPECT_EQ(order(), "bdeac");
    EXPECT_EQ(table.moveToBottom({lines[4]}), Vcad::eOk);
    EXPECT_EQ(order(), "ebdac");
    EXPECT_EQ(table.moveBelow({lines[2], lines[1]}, lines[3]), Vcad::eOk);
    EXPECT_EQ(order(), "ebcda");
    EXPECT_EQ(table.moveAbove({lines[4]}, lines[3]), Vcad::eOk);
    EXPECT_EQ(order(), "bcdea");
    EXPECT_EQ(table.moveBelow({lines[0]}, lines[0]), Vcad::eInvalidInput);
    EXPECT_EQ(table.moveToTop({db.layerTableId()}), Vcad::eInvalidInput);
    EXPECT_EQ(order(), "bcdea");
}

TEST_F(DrawOrder, AFileHasTheHandlesOfWhatChangedPlaces)
{
    table.moveToTop({lines[0]});
    GroupList groups;
    writeGroups(table, core, groups);
    VcDbSortentsTable read;
    EXPECT_EQ(readGroups(read, core, groups), 0);
    VcDbObjectIdArray ids;
    ASSERT_EQ(read.getFullDrawOrder(ids), Vcad::eOk);
    EXPECT_EQ(ids.back(), lines[0]);
    EXPECT_EQ(read.getSortHandle(lines[0]), lines[4].handle());
}

// Everything that could change: objects with their groups, tables, header.
std::string stateOf(DatabaseCore& core)
{
    std::string state;
    for (std::uint32_t slot = 1; slot < core.slotCount(); ++slot)
        if (VcDbObject* object = core.objectAt(slot))
            state += std::to_string(core.handleOf(object->objectId())) + object->isA()->name() + dumpOf(*object, core);
    for (const HeaderVars::Entry& entry : core.header().entries())
        state += entry.name;
    return state + std::to_string(core.classes.size());
}

TEST(StandardObjects, AreMadeOnce)
{
    VcDbDatabase db;
    const std::string before = stateOf(db.core());
    ensureStandardObjects(db.core());
    EXPECT_EQ(stateOf(db.core()), before);
}

TEST(StandardObjects, HaveTheirCustomaryHandles)
{
    VcDbDatabase db;
    EXPECT_EQ(db.layerTableId().handle().value(), 0x2u);
    EXPECT_EQ(db.dimStyleTableId().handle().value(), 0xAu);
    EXPECT_EQ(db.namedObjectsDictionaryId().handle().value(), 0xCu);
    EXPECT_EQ(db.clayer().handle().value(), 0x10u);
    EXPECT_EQ(db.core().modelSpace().handle().value(), 0x1Fu);
}

TEST(StandardObjects, ANewDrawingIsMetric)
{
    VcDbDatabase db;
    const HeaderVars& header = db.core().header();
    EXPECT_EQ(header.text("$DIMSTYLE", ""), "ISO-25");
    EXPECT_EQ(header.real("$DIMASZ", 0), 2.5);
    EXPECT_EQ(header.point("$LIMMAX")->x, 420);
    EXPECT_EQ(db.core().findRecord(NameTable::DimStyle, "iso-25"), db.dimstyle());
}

TEST(StandardObjects, KeepWhatADrawingHas)
{
    VcDbDatabase db(false);
    DatabaseCore& core = db.core();
    core.origin.fromFile = true;
    core.origin.version = DxfVersion::R12;
    core.header().setReal("$LTSCALE", 40, 3);
    const VcDbObjectId table = core.add(std::make_unique<VcDbLayerTable>(), {}, 0x77);
    core.tableId(NameTable::Layer) = table;
    const VcDbObjectId zero = core.recordFor(NameTable::Layer, "0");
    ensureStandardObjects(core);
    EXPECT_EQ(db.layerTableId(), table);
    EXPECT_EQ(db.clayer(), zero);
    EXPECT_FALSE(core.object(zero)->isImplicit());
    EXPECT_EQ(core.header().real("$LTSCALE", 0), 3);
    EXPECT_EQ(core.header().integer("$MEASUREMENT", 1), 0);
    EXPECT_TRUE(core.findRecord(NameTable::DimStyle, "ISO-25").isNull());
    const std::string before = stateOf(core);
    ensureStandardObjects(core);
    EXPECT_EQ(stateOf(core), before);
}

TEST(StandardObjects, EverySpaceAndLayoutNameEachOther)
{
    VcDbDatabase db;
    DatabaseCore& core = db.core();
    const VcDbObjectId second = addBlockRecord(core, "*Paper_Space0").objectId();
    ensureStandardObjects(core);
    for (const VcDbObjectId id : {core.modelSpace(), core.paperSpace(), second}) {
        const auto* block = core.objectAs<VcDbBlockTableRecord>(id);
        const auto* layout = core.objectAs<VcDbLayout>(block->getLayoutId());
        ASSERT_NE(layout, nullptr);
        EXPECT_EQ(layout->getBlockTableRecordId(), id);
    }
    const auto* layout = core.objectAs<VcDbLayout>(core.objectAs<VcDbBlockTableRecord>(second)->getLayoutId());
    EXPECT_EQ(layout->nameUtf8(), "Layout2");
    EXPECT_EQ(layout->getTabOrder(), 2);
}

TEST(StandardObjects, ALayoutThatABlockNamesInVainIsMadeUnderItsHandle)
{
    VcDbDatabase db;
    DatabaseCore& core = db.core();
    VcDbBlockTableRecord& block = addBlockRecord(core, "*Paper_Space0");
    block.setLayoutId(core.reserveHandle(0xEEEEA));
    ensureStandardObjects(core);
    EXPECT_EQ(block.getLayoutId().handle().value(), 0xEEEEAu);
    EXPECT_NE(core.objectAs<VcDbLayout>(block.getLayoutId()), nullptr);
}

}
