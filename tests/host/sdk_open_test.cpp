// Opening and closing: how often, in which mode, and what refuses it.
#include "tests/host/sdk_drawing.h"

#include <cstring>

namespace {

class Opening : public testing::Test {
protected:
    VcDbObject* open(VcDb::OpenMode mode, Vcad::ErrorStatus expected = Vcad::eOk)
    {
        VcDbObject* object = nullptr;
        EXPECT_EQ(vcdbOpenVcDbObject(object, id, mode), expected);
        EXPECT_EQ(object != nullptr, expected == Vcad::eOk);
        return object;
    }

    SdkDrawing drawing;
    const VcDbObjectId id = drawing.line();
};

TEST_F(Opening, ManyMayReadTogetherAndNoneMayWriteThen)
{
    VcDbObject* first = open(VcDb::kForRead);
    VcDbObject* second = open(VcDb::kForRead);
    EXPECT_EQ(first, second);
    open(VcDb::kForWrite, Vcad::eWasOpenForRead);
    EXPECT_EQ(first->upgradeOpen(), Vcad::eWasOpenForRead);
    EXPECT_EQ(first->close(), Vcad::eOk);
    EXPECT_TRUE(second->isReadEnabled());
    EXPECT_FALSE(second->isWriteEnabled());
    EXPECT_EQ(second->upgradeOpen(), Vcad::eOk);
    EXPECT_TRUE(second->isWriteEnabled());
    EXPECT_EQ(second->close(), Vcad::eOk);
    EXPECT_FALSE(second->isReadEnabled());
}

TEST_F(Opening, WhoWritesIsAlone)
{
    VcDbObject* writer = open(VcDb::kForWrite);
    open(VcDb::kForRead, Vcad::eWasOpenForWrite);
    open(VcDb::kForWrite, Vcad::eWasOpenForWrite);
    EXPECT_EQ(writer->upgradeOpen(), Vcad::eOk);
    EXPECT_EQ(writer->downgradeOpen(), Vcad::eOk);
    EXPECT_FALSE(writer->isWriteEnabled());
    EXPECT_EQ(writer->downgradeOpen(), Vcad::eNotOpenForWrite);
    VcDbObject* reader = open(VcDb::kForRead);
    EXPECT_EQ(reader->close(), Vcad::eOk);
    EXPECT_EQ(writer->close(), Vcad::eOk);
    EXPECT_NE(writer->close(), Vcad::eOk);
    EXPECT_NE(writer->upgradeOpen(), Vcad::eOk);
}

TEST_F(Opening, AThousandReadersDoNotBecomeNone)
{
    VcDbObject* object = nullptr;
    int opened = 0;
    while (opened < 5000 && vcdbOpenVcDbObject(object, id, VcDb::kForRead) == Vcad::eOk)
        ++opened;
    EXPECT_GE(opened, 1000);
    open(VcDb::kForWrite, Vcad::eWasOpenForRead);
    VcDbObject* line = drawing.core().object(id);
    for (; opened > 0; --opened)
        ASSERT_EQ(line->close(), Vcad::eOk);
    EXPECT_NE(line->close(), Vcad::eOk);
    open(VcDb::kForWrite)->close();
}

TEST_F(Opening, WhatIsNotThereIsRefused)
{
    VcDbObject* object = nullptr;
    VcDbObjectId closed;
    {
        VcDbDatabase other;
        closed = other.clayer();
        EXPECT_TRUE(closed.isValid());
        EXPECT_EQ(closed.database(), &other);
    }
    for (const VcDbObjectId& missing : {VcDbObjectId(), VcDbObjectId(id.databaseSerial(), 0x7fffffff), closed}) {
        EXPECT_NE(vcdbOpenVcDbObject(object, missing, VcDb::kForRead), Vcad::eOk);
        EXPECT_EQ(object, nullptr);
        EXPECT_FALSE(missing.isValid());
        EXPECT_TRUE(missing.isErased());
        EXPECT_EQ(missing.handle().value(), 0u);
        EXPECT_EQ(missing.objectClass(), nullptr);
        vds_name name = {7, 7};
        EXPECT_NE(vcdbGetVdsName(name, missing), Vcad::eOk);
        EXPECT_EQ(name[0], 7);
    }
    EXPECT_EQ(closed.database(), nullptr);
}

TEST_F(Opening, AnErasedObjectOpensOnlyForThoseWhoAsk)
{
    Writing<VcDbLine>(id)->erase();
    EXPECT_EQ(Opened<VcDbLine>(id).status, Vcad::eWasErased);
    EXPECT_EQ(Writing<VcDbLine>(id).status, Vcad::eWasErased);
    Opened<VcDbLine> erased(id, VcDb::kForRead, true);
    ASSERT_TRUE(erased);
    EXPECT_TRUE(erased->isErased());
    EXPECT_TRUE(id.isValid());
}

TEST_F(Opening, ANewObjectIsItsMakersUntilClosed)
{
    Writing<VcDbBlockTableRecord> model(drawing.modelId());
    auto* line = new VcDbLine({0, 0, 0}, {1, 0, 0});
    EXPECT_EQ(line->close(), Vcad::eOk) << "what is in no drawing has nothing to close";
    EXPECT_EQ(line->database(), nullptr);
    VcDbObjectId made;
    ASSERT_EQ(model->appendVcDbEntity(made, line), Vcad::eOk);
    EXPECT_TRUE(line->isWriteEnabled());
    EXPECT_EQ(Opened<VcDbLine>(made).status, Vcad::eWasOpenForWrite);
    EXPECT_EQ(line->close(), Vcad::eOk);
    EXPECT_EQ(Opened<VcDbLine>(made).status, Vcad::eOk);
    EXPECT_NE(model->appendVcDbEntity(line), Vcad::eOk) << "twice";
    EXPECT_NE(model->appendVcDbEntity(nullptr), Vcad::eOk);
}

TEST_F(Opening, ModifiedUntilItIsClosed)
{
    Writing<VcDbLine> line(id);
    EXPECT_FALSE(line->isModified());
    EXPECT_NE(line->setThickness(NAN), Vcad::eOk);
    EXPECT_FALSE(line->isModified()) << "a refused value is no change";
    line->setThickness(2);
    EXPECT_TRUE(line->isModified());
    EXPECT_TRUE(line->isModifiedGraphics());
    line->close();
    EXPECT_FALSE(line->isModified());
}

TEST_F(Opening, TableRecordsDoNotMindALockedLayer)
{
    const VcDbObjectId layer = drawing.layer(L"Locked");
    Writing<VcDbLayerTableRecord>(layer)->setIsLocked(true);
    Writing<VcDbLine>(id)->setLayer(layer);
    EXPECT_EQ(Writing<VcDbLine>(id).status, Vcad::eOnLockedLayer);
    EXPECT_EQ(Writing<VcDbLayerTableRecord>(layer).status, Vcad::eOk);
    EXPECT_EQ(Writing<VcDbBlockTableRecord>(drawing.modelId()).status, Vcad::eOk);
    Writing<VcDbLayerTableRecord>(layer)->setIsLocked(false);
    EXPECT_EQ(Writing<VcDbLine>(id).status, Vcad::eOk);
}

TEST_F(Opening, TablesGiveTheirRecordsInTheModeAskedFor)
{
    VcDbLayerTable* table = nullptr;
    ASSERT_EQ(drawing.database.getSymbolTable(table), Vcad::eOk);
    VcDbLayerTableRecord* record = nullptr;
    ASSERT_EQ(table->getAt(L"0", record, VcDb::kForWrite), Vcad::eOk);
    EXPECT_TRUE(record->isWriteEnabled());
    VcDbLayerTableRecord* second = nullptr;
    EXPECT_EQ(table->getAt(L"0", second), Vcad::eWasOpenForWrite);
    EXPECT_EQ(second, nullptr);
    record->close();
    EXPECT_EQ(table->getAt(L"nowhere", second), Vcad::eKeyNotFound);
    EXPECT_EQ(table->getAt(nullptr, second), Vcad::eInvalidInput);
    table->close();
}

struct HandleCase {
    std::uint64_t value;
    const wchar_t* text;
};

TEST(Handles, AreCapitalHexadecimalsWithoutZerosInFront)
{
    for (const auto& [value, text] :
         {HandleCase{0, L"0"}, {0x2f, L"2F"}, {0xABCDEF, L"ABCDEF"}, {~std::uint64_t(0), L"FFFFFFFFFFFFFFFF"}}) {
        wchar_t wide[17];
        char narrow[17];
        ASSERT_TRUE(VcDbHandle(value).getIntoAsciiBuffer(wide));
        ASSERT_TRUE(VcDbHandle(value).getIntoAsciiBuffer(narrow));
        EXPECT_STREQ(wide, text);
        EXPECT_EQ(std::wstring(narrow, narrow + std::strlen(narrow)), text);
    }
    wchar_t small[3];
    EXPECT_TRUE(VcDbHandle(0x2f).getIntoAsciiBuffer(small, 3));
    EXPECT_FALSE(VcDbHandle(0x12f).getIntoAsciiBuffer(small, 3));
    EXPECT_TRUE(VcDbHandle().isNull());
}

TEST_F(Opening, HandlesFindTheirObjectsAgain)
{
    struct {
        const wchar_t* text;
        int expected;
    } const cases[] = {
        {L"", RTERROR}, {L"0", RTERROR}, {L"xyz", RTERROR}, {L"FFFFFFFFFF", RTERROR}, {nullptr, RTERROR}};
    vds_name name = {5, 5};
    for (const auto& c : cases)
        EXPECT_EQ(vcdbHandEnt(c.text, name), c.expected) << (c.text ? c.text : L"null");
    EXPECT_EQ(name[0], 5) << "a failure writes nothing";
    wchar_t text[17];
    id.handle().getIntoAsciiBuffer(text);
    for (wchar_t& c : text)
        c = wchar_t(std::towlower(wint_t(c)));
    EXPECT_EQ(vcdbHandEnt(text, name), RTNORM) << "in small letters too";
    VcDbObjectId found;
    EXPECT_EQ(vcdbGetObjectId(found, name), Vcad::eOk);
    EXPECT_EQ(found, id);
}

}
