// What is taken out of its dictionary is no part of the drawing: it is not saved, and nothing in the file refers to it.
#include "host/db/database.h"
#include "host/db/let_go.h"
#include "host/db/tag.h"
#include "host/db/scale_list.h"
#include "host/db/undo.h"
#include "host/io/drawing_file.h"
#include "sdk/vcdb_database.h"
#include "sdk/vcdb_objects.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

namespace {

class LetGoObjects : public testing::Test {
protected:
    LetGoObjects() { db().undo().setRecording(true); }

    DatabaseCore& db() { return m_drawing.core(); }
    VcDbDictionary& root() { return *db().objectAs<VcDbDictionary>(db().rootDictionary()); }

    template <class T>
    T& put(VcDbDictionary& dictionary, const char* name)
    {
        auto made = std::make_unique<T>();
        T& object = *made;
        dictionary.setAtUtf8(name, db().add(std::move(made), dictionary.objectId()));
        return object;
    }
    VcDbScale& putScale(const char* key, const char* name)
    {
        VcDbScale& scale = put<VcDbScale>(*scaleListOf(db()), key);
        scale.set(name, 1, 3, false);
        return scale;
    }
    static void referTo(VcDbXrecord& record, const VcDbObject& object)
    {
        TagList data;
        data.addHandle(340, object.handle().value());
        record.setData(std::move(data));
    }
    // The handle that the record of that name refers to in the file.
    std::string savedReference(const char* name)
    {
        VcDbDatabase again(false);
        readDrawingBytes(again, bytes());
        const auto* saved = again.core().objectAs<VcDbDictionary>(again.core().rootDictionary());
        const auto* record = again.core().liveAs<VcDbXrecord>(saved->find(name));
        return record ? fmt::format("{:X}", record->data().begin()->integer) : "no record";
    }
    std::string bytes()
    {
        std::string out;
        EXPECT_TRUE(writeDrawingBytes(m_drawing, out).ok());
        return out;
    }
    static std::string hex(const VcDbObject& object) { return fmt::format("{:X}", object.handle().value()); }

    VcDbDatabase m_drawing;
};

TEST_F(LetGoObjects, AreNotSavedWithWhatTheyOwnAndComeBackByUndo)
{
    VcDbDictionary& outer = put<VcDbDictionary>(root(), "OUTER");
    VcDbXrecord& inner = put<VcDbXrecord>(outer, "INNER");
    const std::string whole = bytes();
    const std::size_t mark = db().undo().mark();
    ASSERT_EQ(root().remove(outer.objectId()), Vcad::eOk);

    const LetGo letGo(db());
    EXPECT_TRUE(letGo.contains(outer));
    EXPECT_TRUE(letGo.contains(inner));
    EXPECT_EQ(letGo.slots().size(), 2u);
    VcDbDatabase again(false);
    const ReadResult read = readDrawingBytes(again, bytes());
    ASSERT_TRUE(read.ok());
    EXPECT_TRUE(again.core().findHandle(inner.handle().value()).isNull());
    EXPECT_TRUE(LetGo(again.core()).isEmpty());

    db().undo().rollback(mark);
    EXPECT_TRUE(LetGo(db()).isEmpty());
    EXPECT_NE(bytes().find("INNER"), std::string::npos);
}

TEST_F(LetGoObjects, AreNothingToWhatRefersToThem)
{
    VcDbXrecord& gone = put<VcDbXrecord>(root(), "GONE");
    referTo(put<VcDbXrecord>(root(), "HOLDER"), gone);
    EXPECT_EQ(savedReference("HOLDER"), hex(gone));
    root().remove(gone.objectId());
    EXPECT_EQ(savedReference("HOLDER"), "0");
}

TEST_F(LetGoObjects, AScaleGivesItsReferencesToTheOneOfItsName)
{
    VcDbScale& old = putScale("X0", "Mine");
    VcDbScale& lost = putScale("X1", "Lost");
    referTo(put<VcDbXrecord>(root(), "HOLDER"), old);
    referTo(put<VcDbXrecord>(root(), "LOSER"), lost);
    scaleListOf(db())->remove(old.objectId());
    scaleListOf(db())->remove(lost.objectId());
    EXPECT_EQ(listedScale(db(), old), nullptr);
    VcDbScale& made = putScale("X0", "MINE");
    EXPECT_EQ(listedScale(db(), old), &made);
    EXPECT_EQ(listedScale(db(), made), &made);
    EXPECT_EQ(savedReference("HOLDER"), hex(made));
    EXPECT_EQ(savedReference("LOSER"), "0");
}

TEST_F(LetGoObjects, WhatADictionaryListsIsKeptThoughItDoesNotSayWhoOwnsIt)
{
    VcDbXrecord& kept = put<VcDbXrecord>(root(), "KEPT");
    kept.setOwnerId({});
    EXPECT_TRUE(LetGo(db()).isEmpty());
}

}
