// Deep cloning within a drawing and into another one: what comes along, what stays behind, what the mapping tells.
#include "tests/host/sdk_samples.h"

#include "host/io/audit.h"
#include "host/io/drawing_file.h"

#include <algorithm>

namespace {

// Without the groups that hold handles, which differ from drawing to drawing.
std::string withoutHandles(const std::string& said)
{
    std::istringstream in(said);
    std::string kept;
    for (std::string line; std::getline(in, line);) {
        const int code = std::stoi(line);
        if (code < 320 || code > 369)
            kept += line + '\n';
    }
    return kept;
}

VcDbObjectId mappedTo(const VcDbIdMapping& mapping, VcDbObjectId key)
{
    VcDbIdPair pair(key, {});
    return mapping.compute(pair) ? pair.value() : VcDbObjectId();
}

class Cloned : public testing::TestWithParam<EntitySample> {
protected:
    VcDbObjectId cloneTo(SdkDrawing& target)
    {
        VcDbIdMapping mapping;
        EXPECT_EQ(from.database.deepCloneObjects({id}, target.modelId(), mapping), Vcad::eOk);
        return mappedTo(mapping, id);
    }
    SdkDrawing from;
    const VcDbObjectId id = GetParam().add(from);
};

INSTANTIATE_TEST_SUITE_P(All, Cloned, testing::ValuesIn(entitySamples().begin(), entitySamples().end()), sampleName);

// A picture is not shared: a dimension's block gets a name of its own.
std::string comparable(const VcDbObjectId id, std::string said)
{
    if (id.objectClass()->isDerivedFrom(VcDbDimension::desc()))
        if (const auto at = said.find("2=*D"); at != said.npos)
            said.erase(at, said.find('\n', at) + 1 - at);
    return withoutHandles(said);
}

TEST_P(Cloned, InItsOwnDrawingSaysTheSame)
{
    const VcDbObjectId clone = cloneTo(from);
    ASSERT_TRUE(clone.isValid());
    EXPECT_NE(clone, id);
    EXPECT_EQ(comparable(clone, from.saidBy(clone)), comparable(id, from.saidBy(id)));
    EXPECT_EQ(Opened<VcDbEntity>(clone)->ownerId(), from.modelId());
    const std::string original = from.saidBy(id);
    VcDbExtents before, after;
    const bool hasExtents = Opened<VcDbEntity>(id)->getGeomExtents(before) == Vcad::eOk;
    Writing<VcDbEntity>(clone)->transformBy(VcGeMatrix3d::translation({5, 0, 0}));
    EXPECT_EQ(from.saidBy(id), original) << "the one moves, the other stays";
    if (hasExtents) {
        Opened<VcDbEntity>(id)->getGeomExtents(after);
        EXPECT_EQ(after.minPoint(), before.minPoint());
    }
}

TEST_P(Cloned, InAnotherDrawingBringsWhatItNeeds)
{
    Writing<VcDbEntity>(id)->setLayer(from.layer(L"Wall"));
    SdkDrawing to;
    const VcDbObjectId clone = cloneTo(to);
    ASSERT_TRUE(clone.isValid());
    EXPECT_EQ(clone.database(), &to.database);
    EXPECT_EQ(comparable(clone, to.saidBy(clone)), comparable(id, from.saidBy(id)));
    EXPECT_EQ(auditDrawing(to.database).total, 0u);
    std::string file;
    ASSERT_TRUE(writeDrawingBytes(to.database, file).ok());
    VcDbDatabase again(false);
    const ReadResult read = readDrawingBytes(again, file);
    ASSERT_TRUE(read.ok()) << read.message;
    EXPECT_EQ(read.problems.total(), 0u) << read.problems.items().front().text;
    VcDbObject* twin = again.core().object(again.core().findHandle(clone.handle().value()));
    ASSERT_NE(twin, nullptr);
    EXPECT_EQ(dumpOf(*twin, again.core()), to.saidBy(clone));
}

TEST_P(Cloned, IsTakenBackWithAllThatCameAlong)
{
    SdkDrawing to;
    const auto live = [&] {
        std::size_t count = 0;
        for (std::uint32_t slot = 1; slot < to.core().slotCount(); ++slot)
            count += to.core().objectAt(slot) && !to.core().objectAt(slot)->isErased();
        return count;
    };
    const std::size_t before = live(), mark = to.core().undo().mark();
    cloneTo(to);
    EXPECT_GT(live(), before);
    to.core().undo().rollback(mark);
    EXPECT_EQ(live(), before);
}

class Cloning : public testing::Test {
protected:
    SdkDrawing from, to;
    VcDbIdMapping mapping;
};

TEST_F(Cloning, ARecordThatTheTargetHasByNameStandsForTheOriginal)
{
    const VcDbObjectId wall = from.layer(L"Wall"), there = to.layer(L"WALL");
    Writing<VcDbLayerTableRecord>(wall)->setColor(VcCmColor::fromIndex(1));
    Writing<VcDbLayerTableRecord>(there)->setColor(VcCmColor::fromIndex(5));
    const VcDbObjectId id = from.line();
    Writing<VcDbLine>(id)->setLayer(wall);
    ASSERT_EQ(from.database.deepCloneObjects({id}, to.modelId(), mapping), Vcad::eOk);
    EXPECT_EQ(Opened<VcDbLine>(mappedTo(mapping, id))->layerId(), there);
    EXPECT_EQ(Opened<VcDbLayerTableRecord>(there)->color().colorIndex(), 5);
    EXPECT_EQ(mappedTo(mapping, wall), there);
}

TEST_F(Cloning, BlocksComeWithTheirMembersAndTheBlocksInThem)
{
    const VcDbObjectId door = from.block(L"DOOR"), house = from.block(L"HOUSE");
    from.add(std::make_unique<VcDbLine>(), door);
    from.add(std::make_unique<VcDbBlockReference>(VcGePoint3d(1, 1, 0), door), house);
    const VcDbObjectId id = from.add(std::make_unique<VcDbBlockReference>(VcGePoint3d(), house));
    ASSERT_EQ(from.database.deepCloneObjects({id}, to.modelId(), mapping), Vcad::eOk);
    Opened<VcDbBlockTable> table(to.database.blockTableId());
    VcDbObjectId found;
    ASSERT_EQ(table->getAt(L"HOUSE", found), Vcad::eOk);
    EXPECT_EQ(Opened<VcDbBlockReference>(mappedTo(mapping, id))->blockTableRecord(), found);
    ASSERT_EQ(table->getAt(L"DOOR", found), Vcad::eOk);
    VcDbBlockTableRecordIterator members(*Opened<VcDbBlockTableRecord>(found), true);
    VcDbEntity* member = nullptr;
    ASSERT_EQ(members.getEntity(member), Vcad::eOk);
    EXPECT_TRUE(member->isKindOf(VcDbLine::desc()));
    member->close();
}

TEST_F(Cloning, WhatHangsOnAnObjectComesAlong)
{
    from.application(L"APP");
    const VcDbObjectId id = from.line(), watcher = from.line();
    {
        Writing<VcDbLine> line(id);
        const RbPtr chain(vcutBuildList(1001, L"APP", 1000, L"kept", RTNONE));
        ASSERT_EQ(line->setXData(chain.get()), Vcad::eOk);
        line->addPersistentReactor(watcher);
        line->createExtensionDictionary();
        VcDbObjectId record;
        auto* data = new VcDbXrecord;
        Writing<VcDbDictionary>(line->extensionDictionary())->setAt(L"DATA", data, record);
        data->close();
    }
    ASSERT_EQ(from.database.deepCloneObjects({id}, to.modelId(), mapping), Vcad::eOk);
    Opened<VcDbLine> clone(mappedTo(mapping, id));
    ASSERT_TRUE(clone);
    const RbPtr data(clone->xData(L"APP"));
    ASSERT_TRUE(data);
    EXPECT_STREQ(data->rbnext->resval.rstring, L"kept");
    EXPECT_TRUE(Opened<VcDbRegAppTable>(to.database.regAppTableId())->has(L"APP"))
        << "a file must know the application";
    EXPECT_EQ(clone->extensionDictionary().database(), &to.database);
    EXPECT_TRUE(Opened<VcDbDictionary>(clone->extensionDictionary())->has(L"DATA"));
    EXPECT_EQ(clone->reactors(), nullptr) << "what watched it stayed behind";
    EXPECT_EQ(auditDrawing(to.database).total, 0u);
}

TEST_F(Cloning, ReferencesAmongTheClonedPointAtTheClones)
{
    const VcDbObjectId id = from.line(), watcher = from.line();
    Writing<VcDbLine>(id)->addPersistentReactor(watcher);
    for (SdkDrawing* target : {&from, &to}) {
        VcDbIdMapping own;
        ASSERT_EQ(from.database.deepCloneObjects({id, watcher}, target->modelId(), own), Vcad::eOk);
        const auto* reactors = Opened<VcDbLine>(mappedTo(own, id))->reactors();
        ASSERT_NE(reactors, nullptr);
        EXPECT_EQ(vcdbPersistentReactorObjectId(reactors->front()), mappedTo(own, watcher));
    }
}

TEST_F(Cloning, TheMappingTellsWhatWasAskedForAndWhatCameAlong)
{
    const VcDbObjectId wall = from.layer(L"Wall"), id = from.line();
    Writing<VcDbLine>(id)->setLayer(wall);
    ASSERT_EQ(from.database.deepCloneObjects({id}, to.modelId(), mapping), Vcad::eOk);
    std::size_t count = 0;
    bool sawLine = false, sawLayer = false;
    VcDbIdMappingIter at(mapping);
    for (at.start(); !at.done(); at.next(), ++count) {
        VcDbIdPair pair;
        ASSERT_TRUE(at.getMap(pair));
        sawLine |= pair.key() == id && pair.isPrimary() && pair.isCloned();
        sawLayer |= pair.key() == wall && !pair.isPrimary() && pair.isCloned();
    }
    EXPECT_TRUE(sawLine && sawLayer);
    EXPECT_EQ(count, mapping.pairs().size());
    VcDbIdPair pair;
    EXPECT_FALSE(at.getMap(pair));
    pair.setKey(to.database.clayer());
    EXPECT_FALSE(mapping.compute(pair));
    pair.setValue(id);
    pair.setCloned(true);
    EXPECT_TRUE(mapping.assign(pair));
    EXPECT_FALSE(mapping.assign(pair)) << "known already";
}

TEST_F(Cloning, WhatCannotBeIsRefused)
{
    const VcDbObjectId id = from.line(), gone = from.line();
    Writing<VcDbLine>(gone)->erase();
    const auto clone = [&](const VcDbObjectIdArray& ids, VcDbObjectId owner) {
        return from.database.deepCloneObjects(ids, owner, mapping);
    };
    EXPECT_EQ(clone({}, to.modelId()), Vcad::eOk);
    EXPECT_NE(clone({id}, {}), Vcad::eOk);
    EXPECT_NE(clone({id, to.line()}, to.modelId()), Vcad::eOk) << "from two drawings";
    EXPECT_NE(clone({id}, to.database.clayer()), Vcad::eOk) << "a layer owns no entities";
    EXPECT_NE(clone({id}, to.database.layerTableId()), Vcad::eOk);
    EXPECT_NE(clone({from.layer(L"Wall")}, from.database.layerTableId()), Vcad::eOk) << "two layers of one name";
    EXPECT_EQ(clone({gone}, to.modelId()), Vcad::eOk);
    EXPECT_TRUE(mappedTo(mapping, gone).isNull());
    EXPECT_TRUE(mappedTo(mapping, id).isNull());
    EXPECT_EQ(auditDrawing(to.database).total, 0u);
}

TEST_F(Cloning, OnceMoreWithTheSameMappingIsTheSameClone)
{
    const VcDbObjectId id = from.line();
    ASSERT_EQ(from.database.deepCloneObjects({id, id}, to.modelId(), mapping), Vcad::eOk);
    const VcDbObjectId first = mappedTo(mapping, id);
    ASSERT_EQ(from.database.deepCloneObjects({id}, to.modelId(), mapping), Vcad::eOk);
    EXPECT_EQ(mappedTo(mapping, id), first);
    EXPECT_EQ(Opened<VcDbBlockTableRecord>(to.modelId())->memberSlots().size(), 1u);
}

}
