// The database itself: files as modules read and save them, its tables and dictionaries, its current things.
#include "tests/host/sdk_samples.h"

#include "host/base/unicode.h"

#include <filesystem>
#include <fstream>

namespace {

class Databases : public testing::Test {
protected:
    Databases()
    {
        std::string name = testing::TempDir() + "vekad-databases-XXXXXX";
        m_folder = std::string(mkdtemp(name.data()));
    }
    ~Databases() override { std::filesystem::remove_all(m_folder); }
    std::filesystem::path file(const std::wstring& name) const { return m_folder / wideToUtf8(name); }
    std::wstring path(const std::wstring& name) const { return utf8ToWide(file(name).string()); }

    std::filesystem::path m_folder;
    SdkDrawing drawing;
};

TEST_F(Databases, AreSavedAndReadByTheirNames)
{
    const VcDbObjectId line = drawing.line();
    const std::wstring name = L"Gr\x00fc\x00df\x4e2d.dxf", full = path(name);
    ASSERT_EQ(drawing.database.saveAs(full.c_str()), Vcad::eOk);
    EXPECT_TRUE(std::filesystem::exists(file(name)));
    VcDbDatabase again(false);
    ASSERT_EQ(again.readDwgFile(full.c_str()), Vcad::eOk);
    VcDbObject* twin = again.core().object(again.core().findHandle(line.handle().value()));
    ASSERT_NE(twin, nullptr);
    EXPECT_EQ(dumpOf(*twin, again.core()), drawing.saidBy(line));
    ASSERT_EQ(again.saveAs(full.c_str()), Vcad::eOk) << "over itself";
    EXPECT_EQ(again.readDwgFile(full.c_str()), Vcad::eNotApplicable) << "it holds a drawing";
}

TEST_F(Databases, AreFoundByContentWhateverTheNameEndsIn)
{
    drawing.line();
    ASSERT_EQ(drawing.database.saveAs(path(L"a.dxf").c_str()), Vcad::eOk);
    std::filesystem::rename(file(L"a.dxf"), file(L"a.dwg"));
    EXPECT_EQ(VcDbDatabase(false).readDwgFile(path(L"a.dwg").c_str()), Vcad::eOk);
}

TEST_F(Databases, WhatIsNoDrawingIsTold)
{
    std::ofstream(file(L"text.dxf")) << "this is no drawing\n";
    std::ofstream(file(L"empty.dxf")) << "";
    ASSERT_EQ(drawing.database.saveAs(path(L"whole.dxf").c_str()), Vcad::eOk);
    const auto size = std::filesystem::file_size(file(L"whole.dxf"));
    std::filesystem::copy(file(L"whole.dxf"), file(L"cut.dxf"));
    std::filesystem::resize_file(file(L"cut.dxf"), size / 2);
    for (const wchar_t* name : {L"text.dxf", L"empty.dxf", L"cut.dxf", L"missing.dxf", L""})
        EXPECT_NE(VcDbDatabase(false).readDwgFile(path(name).c_str()), Vcad::eOk) << file(name);
    EXPECT_EQ(VcDbDatabase(false).readDwgFile(path(L"missing.dxf").c_str()), Vcad::eFileNotFound);
    EXPECT_EQ(VcDbDatabase(false).readDwgFile(nullptr), Vcad::eInvalidInput);
    EXPECT_EQ(VcDbDatabase(false).readDwgFile(L""), Vcad::eInvalidInput);
    EXPECT_EQ(drawing.database.readDwgFile(path(L"whole.dxf").c_str()), Vcad::eNotApplicable)
        << "made with its defaults";
}

TEST_F(Databases, WhereNothingCanBeWrittenIsTold)
{
    EXPECT_EQ(drawing.database.saveAs(nullptr), Vcad::eInvalidInput);
    EXPECT_EQ(drawing.database.saveAs(L""), Vcad::eInvalidInput);
    EXPECT_EQ(drawing.database.saveAs(path(L"no/such/folder.dxf").c_str()), Vcad::eFileAccess);
    EXPECT_EQ(drawing.database.saveAs(utf8ToWide(m_folder.string()).c_str()), Vcad::eFileAccess) << "a folder";
    EXPECT_TRUE(std::filesystem::is_empty(m_folder));
}

TEST_F(Databases, EveryTableIsOpenedByItsType)
{
    VcDbDatabase& db = drawing.database;
    const auto opens = [&]<class Table>(Table* table, VcDbObjectId id) {
        EXPECT_EQ(db.getSymbolTable(table, VcDb::kForWrite), Vcad::eOk);
        EXPECT_EQ(table->objectId(), id);
        Table* second = nullptr;
        EXPECT_EQ(db.getSymbolTable(second), Vcad::eWasOpenForWrite);
        EXPECT_EQ(second, nullptr);
        table->close();
    };
    opens(static_cast<VcDbBlockTable*>(nullptr), db.blockTableId());
    opens(static_cast<VcDbLayerTable*>(nullptr), db.layerTableId());
    opens(static_cast<VcDbTextStyleTable*>(nullptr), db.textStyleTableId());
    opens(static_cast<VcDbLinetypeTable*>(nullptr), db.linetypeTableId());
    opens(static_cast<VcDbDimStyleTable*>(nullptr), db.dimStyleTableId());
    opens(static_cast<VcDbRegAppTable*>(nullptr), db.regAppTableId());
    opens(static_cast<VcDbViewTable*>(nullptr), db.viewTableId());
    opens(static_cast<VcDbViewportTable*>(nullptr), db.viewportTableId());
    opens(static_cast<VcDbUCSTable*>(nullptr), db.UCSTableId());
}

TEST_F(Databases, AnEmptyOneHasNothingToOpen)
{
    VcDbDatabase empty(false);
    VcDbLayerTable* layers = nullptr;
    VcDbDictionary* dictionary = nullptr;
    EXPECT_NE(empty.getSymbolTable(layers), Vcad::eOk);
    EXPECT_NE(empty.getNamedObjectsDictionary(dictionary), Vcad::eOk);
    EXPECT_NE(empty.getGroupDictionary(dictionary), Vcad::eOk);
    EXPECT_EQ(dictionary, nullptr);
    EXPECT_TRUE(empty.clayer().isNull());
    EXPECT_TRUE(empty.getViewportArray().empty());
}

TEST_F(Databases, ViewportsAreListedWithOrWithoutTheSheet)
{
    const VcDbObjectId window = addSample(drawing, "Viewport");
    auto made = std::make_unique<VcDbViewport>();
    made->setNumber(1);
    const VcDbObjectId sheet = drawing.add(std::move(made));
    EXPECT_EQ(drawing.database.getViewportArray(false), VcDbObjectIdArray{window});
    EXPECT_EQ(drawing.database.getViewportArray(), (VcDbObjectIdArray{window, sheet}));
    Writing<VcDbViewport>(window)->erase();
    EXPECT_TRUE(drawing.database.getViewportArray(false).empty());
}

TEST_F(Databases, NewEntitiesTakeTheCurrentLooks)
{
    const VcDbObjectId wall = drawing.layer(L"Wall");
    ASSERT_EQ(drawing.database.setClayer(wall), Vcad::eOk);
    EXPECT_EQ(Opened<VcDbLine>(drawing.line())->layerId(), wall) << "without looks of its own";
    drawing.core().header().setInteger("$CECOLOR", 62, 3);
    drawing.core().header().setReal("$CELTSCALE", 40, 2.5);
    VcDbLine line;
    line.setDatabaseDefaults(&drawing.database);
    EXPECT_EQ(line.layerId(), wall);
    EXPECT_EQ(line.colorIndex(), 3);
    EXPECT_EQ(line.linetypeScale(), 2.5);
}

}
