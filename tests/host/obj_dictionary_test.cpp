#include "db_support.h"

#include "host/db/chain.h"
#include "sdk/vcdb_objects.h"

#include <gtest/gtest.h>

namespace {

struct Dictionaries : testing::Test {
    Dictionaries()
    {
        dictionary = make("TEST");
        db.core().undo().mark();
    }

    VcDbDictionary* make(const char* name)
    {
        auto* root = db.core().objectAs<VcDbDictionary>(db.namedObjectsDictionaryId());
        const VcDbObjectId id = db.core().add(std::make_unique<VcDbDictionary>(), root->objectId());
        root->setAtUtf8(name, id);
        return db.core().objectAs<VcDbDictionary>(id);
    }

    VcDbObjectId put(const wchar_t* name)
    {
        auto* object = new VcDbPlaceHolder;
        VcDbObjectId id;
        EXPECT_EQ(dictionary->setAt(name, object, id), Vcad::eOk);
        object->close();
        return id;
    }

    std::string names() const
    {
        std::string all;
        for (const auto& [name, id] : dictionary->liveEntries())
            all += (all.empty() ? "" : " ") + name;
        return all;
    }

    std::string walked() const
    {
        std::string all;
        const std::unique_ptr<VcDbDictionaryIterator> it(dictionary->newIterator());
        for (; !it->done(); it->next())
            for (const wchar_t* c = it->name(); *c; ++c)
                all += char(*c);
        return all;
    }

    std::size_t mark() { return db.core().undo().mark(); }

    VcDbDatabase db;
    VcDbDictionary* dictionary = nullptr;
};

TEST_F(Dictionaries, KeepTheirOrderAndFindNamesInAnyCase)
{
    put(L"zeta");
    const VcDbObjectId alpha = put(L"Alpha");
    put(L"mid");
    EXPECT_EQ(names(), "zeta Alpha mid");
    EXPECT_EQ(walked(), "zetaAlphamid");
    VcDbObjectId found;
    EXPECT_EQ(dictionary->getAt(L"ALPHA", found), Vcad::eOk);
    EXPECT_EQ(found, alpha);
    EXPECT_EQ(dictionary->getAt(L"beta", found), Vcad::eKeyNotFound);
    EXPECT_EQ(found, alpha);
    EXPECT_EQ(dictionary->nameOf(alpha), "Alpha");
}

TEST_F(Dictionaries, RefuseWhatHasNoPlaceInThem)
{
    VcDbObjectId id;
    VcDbPlaceHolder object;
    EXPECT_NE(dictionary->setAt(L"", &object, id), Vcad::eOk);
    EXPECT_NE(dictionary->setAt(nullptr, &object, id), Vcad::eOk);
    EXPECT_NE(dictionary->setAt(L"x", nullptr, id), Vcad::eOk);
    VcDbDictionary outside;
    EXPECT_EQ(outside.setAt(L"x", &object, id), Vcad::eNoDatabase);
    EXPECT_EQ(dictionary->numEntries(), 0u);
}

TEST_F(Dictionaries, RemovingLeavesTheObjectWithoutAnOwnerAndUndoRestoresThePlace)
{
    put(L"a");
    const VcDbObjectId b = put(L"b");
    put(L"c");
    const std::size_t before = mark();
    VcDbObjectId removed;
    EXPECT_EQ(dictionary->remove(L"B", removed), Vcad::eOk);
    EXPECT_EQ(removed, b);
    EXPECT_EQ(names(), "a c");
    EXPECT_FALSE(b.isErased());
    EXPECT_TRUE(db.core().object(b)->ownerId().isNull());
    EXPECT_EQ(dictionary->remove(L"b"), Vcad::eKeyNotFound);

    db.core().undo().rollback(before);
    EXPECT_EQ(names(), "a b c");
    EXPECT_EQ(db.core().object(b)->ownerId(), dictionary->objectId());
}

TEST_F(Dictionaries, RenamingKeepsThePlace)
{
    put(L"a");
    const VcDbObjectId b = put(L"b");
    put(L"c");
    const std::size_t before = mark();
    EXPECT_FALSE(dictionary->setName(L"b", L"C"));
    EXPECT_TRUE(dictionary->setName(L"b", L"B2"));
    EXPECT_TRUE(dictionary->setName(L"B2", L"b2"));
    EXPECT_EQ(names(), "a b2 c");
    EXPECT_EQ(dictionary->find("B2"), b);
    EXPECT_TRUE(dictionary->find("b").isNull());
    db.core().undo().rollback(before);
    EXPECT_EQ(names(), "a b c");
}

TEST_F(Dictionaries, AnErasedObjectTakesItsEntryAndBringsItBack)
{
    put(L"a");
    const VcDbObjectId b = put(L"b");
    db.core().object(b)->erase();
    EXPECT_EQ(names(), "a");
    EXPECT_EQ(dictionary->numEntries(), 1u);
    EXPECT_FALSE(dictionary->has(L"b"));
    db.core().object(b)->erase(false);
    EXPECT_EQ(names(), "a b");
}

TEST_F(Dictionaries, AnEntryUnderATakenNameReplacesTheObject)
{
    const VcDbObjectId first = put(L"a");
    put(L"b");
    const std::size_t before = mark();
    const VcDbObjectId second = put(L"A");
    EXPECT_EQ(names(), "A b");
    EXPECT_TRUE(first.isErased());
    EXPECT_EQ(dictionary->find("a"), second);
    db.core().undo().rollback(before);
    EXPECT_EQ(names(), "a b");
    EXPECT_EQ(dictionary->find("a"), first);
}

TEST_F(Dictionaries, ANameFreedByErasingCanBeTakenAndUndoneAndRedone)
{
    const VcDbObjectId first = put(L"a");
    put(L"b");
    const std::size_t before = mark();
    db.core().object(first)->erase();
    const VcDbObjectId second = put(L"a");
    EXPECT_EQ(names(), "b a");
    auto span = db.core().undo().rollbackKeeping(before);
    EXPECT_EQ(names(), "a b");
    EXPECT_EQ(dictionary->find("a"), first);
    db.core().undo().redo(std::move(span));
    EXPECT_EQ(names(), "b a");
    EXPECT_EQ(dictionary->find("a"), second);
}

TEST_F(Dictionaries, EntriesMayGoWhileTheyAreWalked)
{
    put(L"a");
    put(L"b");
    put(L"c");
    const std::unique_ptr<VcDbDictionaryIterator> it(dictionary->newIterator());
    dictionary->remove(L"b");
    EXPECT_TRUE(it->next());
    EXPECT_STREQ(it->name(), L"c");
    EXPECT_FALSE(it->next());
    EXPECT_TRUE(it->done());
}

TEST_F(Dictionaries, AHundredThousandEntriesAreFoundAndTakenOutAndComeBack)
{
    constexpr int kCount = 100000;
    for (int i = 0; i < kCount; ++i)
        dictionary->setAtUtf8("Entry" + std::to_string(i),
                              db.core().add(std::make_unique<VcDbPlaceHolder>(), dictionary->objectId()));
    EXPECT_EQ(dictionary->numEntries(), unsigned(kCount));
    const std::size_t before = mark();
    for (int i = 0; i < kCount; i += 2)
        ASSERT_TRUE(dictionary->removeUtf8("ENTRY" + std::to_string(i)));
    EXPECT_EQ(dictionary->numEntries(), unsigned(kCount / 2));
    EXPECT_TRUE(dictionary->find("Entry99998").isNull());
    EXPECT_FALSE(dictionary->find("entry99999").isNull());
    db.core().undo().rollback(before);
    EXPECT_EQ(dictionary->numEntries(), unsigned(kCount));
    EXPECT_EQ(dictionary->liveEntries()[4].first, "Entry4");
}

TEST_F(Dictionaries, KeepHardAndSoftReferencesAsTheyCame)
{
    const std::uint64_t a = put(L"a").handle().value(), b = put(L"b").handle().value();
    GroupList came;
    came.text(100, "AcDbDictionary");
    came.integer(281, 2);
    came.text(3, "One");
    came.handle(360, a);
    came.text(3, "Two");
    came.handle(350, b);
    const std::string before = came.dump();
    VcDbDictionary& other = *make("OTHER");
    EXPECT_EQ(readGroups(other, db.core(), came), 0);
    EXPECT_EQ(dumpOf(other, db.core()), before);
}

TEST_F(Dictionaries, TheDefaultStandsBehindTheEntries)
{
    VcDbDictionaryWithDefault object;
    const VcDbObjectId target = put(L"a");
    EXPECT_NE(object.setDefaultId({}), Vcad::eOk);
    EXPECT_EQ(object.setDefaultId(target), Vcad::eOk);
    GroupList groups;
    writeGroups(object, db.core(), groups);
    EXPECT_EQ(groups.tags().back().code, 340);
    EXPECT_EQ(groups.tags().back().integer, std::int64_t(target.handle().value()));
}

}
