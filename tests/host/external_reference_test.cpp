// External references: what comes with a file, what stays out of it, and files that lead back to themselves.
#include "host/base/files.h"
#include "host/db/database.h"
#include "host/io/drawing_file.h"
#include "host/io/external_reference.h"
#include "sdk/vcdb_curves.h"
#include "sdk/vcdb_insert.h"
#include "sdk/vcdb_objects.h"
#include "sdk/vcdb_tables.h"

#include <gtest/gtest.h>

namespace {

using Block = VcDbBlockTableRecord;

class ExternalReferences : public testing::Test {
protected:
    // Another test may have cleared it away.
    void SetUp() override { makeFolders(temporaryFolder()); }
    static std::string path(const std::string& name) { return joinPath(temporaryFolder(), "xref-" + name + ".dxf"); }

    static void addTo(VcDbDatabase& drawing, VcDbObjectId block, VcDbEntity* entity, const char* layer = "0")
    {
        entity->setDatabaseDefaults(&drawing);
        entity->setLayer(drawing.core().recordFor(NameTable::Layer, layer));
        VcDbObjectId id;
        drawing.core().objectAs<Block>(block)->appendVcDbEntity(id, entity);
        entity->close();
    }

    // A circle on a layer of its own, and a reference to each of the other files.
    static void write(const std::string& name, const std::vector<std::string>& others, bool overlay = false)
    {
        VcDbDatabase drawing(true);
        DatabaseCore& db = drawing.core();
        addTo(drawing, db.modelSpace(), new VcDbCircle({1, 2, 0}, {0, 0, 1}, 3), "green");
        for (const std::string& other : others) {
            Block& reference = addExternalReference(db, "xref-" + other, path(other), overlay);
            addTo(drawing, db.modelSpace(), new VcDbBlockReference({10, 0, 0}, reference.objectId()));
        }
        const WriteResult result = writeDrawing(drawing, path(name));
        ASSERT_TRUE(result.ok()) << result.message;
    }

    Block& attach(const std::string& name)
    {
        Block& reference = addExternalReference(db(), "xref-" + name, path(name), false);
        addTo(m_drawing, db().modelSpace(), new VcDbBlockReference({0, 0, 0}, reference.objectId()));
        return reference;
    }

    std::size_t liveMembers(const Block& block)
    {
        std::size_t count = 0;
        for (const std::uint32_t slot : block.memberSlots())
            count += !db().objectAt(slot)->isErased();
        return count;
    }
    bool hasLayer(const char* name) { return !db().findRecord(NameTable::Layer, name).isNull(); }
    DatabaseCore& db() { return m_drawing.core(); }

    VcDbDatabase m_drawing{true};
};

TEST_F(ExternalReferences, BringsTheModelAndItsLayers)
{
    write("site", {});
    Block& site = attach("site");
    ASSERT_TRUE(loadExternalReference(db(), site).ok());
    EXPECT_EQ(liveMembers(site), 1u);
    EXPECT_TRUE(hasLayer("xref-site|green"));
    EXPECT_FALSE(hasLayer("green"));
}

TEST_F(ExternalReferences, IsReadAnewWithoutDoublesAndKeepsTheStatesOfLayers)
{
    write("site", {});
    Block& site = attach("site");
    ASSERT_TRUE(loadExternalReference(db(), site).ok());
    db().objectAs<VcDbLayerTableRecord>(db().findRecord(NameTable::Layer, "xref-site|green"))->setIsOff(true);
    ASSERT_TRUE(loadExternalReference(db(), site).ok());
    EXPECT_EQ(liveMembers(site), 1u);
    EXPECT_TRUE(db().objectAs<VcDbLayerTableRecord>(db().findRecord(NameTable::Layer, "xref-site|green"))->isOff());
}

TEST_F(ExternalReferences, ReferencesWithinComeAlongButNotThoseLaidOver)
{
    write("inner", {});
    write("attached", {"inner"});
    write("laid", {"inner"}, true);
    Block& attached = attach("attached");
    ASSERT_TRUE(loadExternalReference(db(), attached).ok());
    EXPECT_EQ(liveMembers(attached), 2u);
    const auto* inner = db().liveAs<Block>(db().findRecord(NameTable::Block, "xref-inner"));
    ASSERT_NE(inner, nullptr);
    EXPECT_EQ(liveMembers(*inner), 1u);
    EXPECT_TRUE(hasLayer("xref-inner|green"));

    Block& laid = attach("laid");
    ASSERT_TRUE(loadExternalReference(db(), laid).ok());
    EXPECT_EQ(liveMembers(laid), 1u);
}

TEST_F(ExternalReferences, WhatLeadsBackIsLeftOutAndTold)
{
    write("a", {"b"});
    write("b", {"a"});
    Block& a = attach("a");
    const ReferenceLoad result = loadExternalReference(db(), a);
    ASSERT_TRUE(result.ok()) << result.error;
    ASSERT_EQ(result.remarks.size(), 1u);
    EXPECT_NE(result.remarks[0].find("Circular"), std::string::npos);
    EXPECT_EQ(liveMembers(*db().liveAs<Block>(db().findRecord(NameTable::Block, "xref-b"))), 1u);
}

TEST_F(ExternalReferences, TheDrawingItselfIsRefused)
{
    write("self", {});
    db().origin.path = path("self");
    EXPECT_NE(loadExternalReference(db(), attach("self")).error.find("refers back to itself"), std::string::npos);
}

TEST_F(ExternalReferences, AMissingFileIsToldAndTakesNothingAway)
{
    write("there", {});
    Block& there = attach("there");
    ASSERT_TRUE(loadExternalReference(db(), there).ok());
    there.setPathName(L"nowhere.dxf");
    EXPECT_NE(loadExternalReference(db(), there).error.find("nowhere.dxf"), std::string::npos);
    EXPECT_EQ(liveMembers(there), 1u);
}

TEST_F(ExternalReferences, MembersAreNotSavedAndComeAgainWhenTheDrawingIsOpened)
{
    write("site", {});
    ASSERT_TRUE(loadExternalReference(db(), attach("site")).ok());
    ASSERT_TRUE(writeDrawing(m_drawing, path("host")).ok());

    VcDbDatabase again(false);
    ASSERT_TRUE(readDrawing(again, path("host")).ok());
    DatabaseCore& core = again.core();
    const auto* site = core.liveAs<Block>(core.findRecord(NameTable::Block, "xref-site"));
    ASSERT_NE(site, nullptr);
    EXPECT_TRUE(site->memberSlots().empty());
    EXPECT_TRUE(loadSavedReferences(core).empty());
    EXPECT_EQ(site->memberSlots().size(), 1u);
}

TEST_F(ExternalReferences, BindingGivesNamesThatAreFree)
{
    write("site", {});
    Block& site = attach("site");
    ASSERT_TRUE(loadExternalReference(db(), site).ok());
    db().recordFor(NameTable::Layer, "xref-site$0$green");
    ASSERT_TRUE(bindExternalReference(db(), site));
    EXPECT_TRUE(hasLayer("xref-site$1$green"));
    EXPECT_FALSE(hasLayer("xref-site|green"));
    EXPECT_FALSE(site.isFromExternalReference());
    EXPECT_FALSE(bindExternalReference(db(), site));
}

TEST_F(ExternalReferences, DetachingLeavesNothing)
{
    write("site", {});
    ASSERT_TRUE(loadExternalReference(db(), attach("site")).ok());
    detachExternalReference(db(), *db().objectAs<Block>(db().findRecord(NameTable::Block, "xref-site")));
    EXPECT_TRUE(db().findRecord(NameTable::Block, "xref-site").isNull());
    EXPECT_FALSE(hasLayer("xref-site|green"));
    EXPECT_EQ(liveMembers(*db().objectAs<Block>(db().modelSpace())), 0u);
}

// A dimension style knows the dimensions that follow it, and dictionaries hang on members.
TEST_F(ExternalReferences, NothingThatIsSavedRefersToWhatIsNot)
{
    write("held", {});
    Block& reference = attach("held");
    ASSERT_TRUE(loadExternalReference(db(), reference).ok());
    auto* member = VcDbEntity::cast(db().objectAt(reference.memberSlots().front()));
    member->createExtensionDictionary();
    auto* own = db().liveAs<VcDbDictionary>(member->extensionDictionary());
    VcDbObjectId held;
    auto* record = new VcDbXrecord;
    own->setAt(L"KEPT", record, held);
    record->close();
    auto* style = db().liveAs<VcDbObject>(db().findRecord(NameTable::DimStyle, "Standard"));
    style->addPersistentReactor(member->objectId());
    auto* layer = db().liveAs<VcDbObject>(db().findRecord(NameTable::Layer, "0"));
    layer->addPersistentReactor(member->objectId());
    layer->addPersistentReactor(style->objectId());

    ASSERT_TRUE(writeDrawing(m_drawing, path("holder")).ok());
    VcDbDatabase again(false);
    const ReadResult read = readDrawing(again, path("holder"));
    ASSERT_TRUE(read.ok()) << read.message;
    EXPECT_EQ(read.problems.total(), 0u) << read.problems.items().front().text;
    EXPECT_NE(again.core().findHandle(db().handleOf(style->objectId())), VcDbObjectId());
    EXPECT_EQ(again.core().findHandle(db().handleOf(held)), VcDbObjectId());
    EXPECT_EQ(again.core().findHandle(db().handleOf(own->objectId())), VcDbObjectId());
}

}
