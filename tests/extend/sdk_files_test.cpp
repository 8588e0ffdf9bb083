// Drawings beside the current one: read from a file, changed, saved.
#include "host/edit/environment.h"
#include "tests/extend/sdk_support.h"

#include <fstream>

namespace {

class Files : public SdkTest {
protected:
    Files() { std::filesystem::create_directories(m_folder); }
    ~Files() override { std::filesystem::remove_all(m_folder); }
    std::wstring path(const char* name) const
    {
        const std::string all = m_folder + name;
        return {all.begin(), all.end()};
    }
    void write(const char* name, const std::string& text) const
    {
        std::ofstream(m_folder + name, std::ios::binary) << text;
    }
    static std::size_t entitiesOf(VcDbDatabase& database)
    {
        VcDbBlockTableRecord* space = nullptr;
        EXPECT_EQ(vcdbOpenObject(space, database.currentSpaceId()), Vcad::eOk);
        VcDbBlockTableRecordIterator* entities = nullptr;
        EXPECT_EQ(space->newIterator(entities), Vcad::eOk);
        std::size_t count = 0;
        for (; !entities->done(); entities->step())
            ++count;
        delete entities;
        space->close();
        return count;
    }
    const std::string m_folder = testing::TempDir() + "sdk files/";
};

TEST_F(Files, AreReadChangedAndSavedBesideTheCurrentDrawing)
{
    line(0, 0, 10, 0);
    circle(0, 0, 5);
    ASSERT_EQ(editor().drawing().saveAs(path("a.dxf").c_str()), Vcad::eOk);
    {
        VcDbDatabase other(false);
        ASSERT_EQ(other.readDwgFile(path("a.dxf").c_str(), 32), Vcad::eOk);
        EXPECT_EQ(entitiesOf(other), 2u);
        VcDbBlockTableRecord* space = nullptr;
        ASSERT_EQ(vcdbOpenObject(space, other.currentSpaceId(), VcDb::kForWrite), Vcad::eOk);
        auto* added = new VcDbLine({0, 0, 0}, {1, 1, 0});
        EXPECT_EQ(space->appendVcDbEntity(added), Vcad::eOk);
        added->close();
        space->close();
        EXPECT_EQ(other.saveAs(path("b.dxf").c_str()), Vcad::eOk);
    }
    EXPECT_EQ(countOfDrawing(), 2) << "the current drawing is another one";
    EXPECT_EQ(textVariable(L"DWGNAME").find(L"b.dxf"), std::wstring::npos);
    VcDbDatabase again(false);
    ASSERT_EQ(again.readDwgFile(path("b.dxf").c_str()), Vcad::eOk);
    EXPECT_EQ(entitiesOf(again), 3u);
}

TEST_F(Files, WhatCannotBeReadSaysWhy)
{
    write("empty.dxf", "");
    write("noise.dxf", "these are not the groups of a drawing\n");
    write("cut.dxf", "  0\nSECTION\n  2\nENTITIES\n  0\nLINE\n 10\n1.0\n");
    write("new.dwg", "AC1032 and what follows");
    const struct {
        const char* name;
        Vcad::ErrorStatus status;
    } cases[] = {{"none.dxf", Vcad::eFileNotFound},
                 {"empty.dxf", Vcad::eFileUnreadable},
                 {"noise.dxf", Vcad::eFileUnreadable},
                 {"cut.dxf", Vcad::eFileUnreadable},
                 {"new.dwg", Vcad::eUnsupportedVersion}};
    for (const auto& c : cases) {
        VcDbDatabase database(false);
        EXPECT_EQ(database.readDwgFile(path(c.name).c_str()), c.status) << c.name;
    }
    VcDbDatabase folder(false);
    EXPECT_NE(folder.readDwgFile(path("").c_str()), Vcad::eOk) << "a folder";
    EXPECT_EQ(folder.readDwgFile(nullptr), Vcad::eInvalidInput);
    EXPECT_EQ(folder.readDwgFile(L""), Vcad::eInvalidInput);
}

TEST_F(Files, ADatabaseIsReadIntoOnce)
{
    ASSERT_EQ(editor().drawing().saveAs(path("a.dxf").c_str()), Vcad::eOk);
    EXPECT_NE(editor().drawing().readDwgFile(path("a.dxf").c_str()), Vcad::eOk);
    VcDbDatabase database(false);
    EXPECT_NE(database.saveAs(path("nothing.dxf").c_str()), Vcad::eOk) << "there is nothing in it yet";
    EXPECT_EQ(database.readDwgFile(path("a.dxf").c_str()), Vcad::eOk);
    EXPECT_NE(database.readDwgFile(path("a.dxf").c_str()), Vcad::eOk);
}

TEST_F(Files, WhatCannotBeSavedLeavesWhatStoodThere)
{
    EXPECT_EQ(editor().drawing().saveAs(nullptr), Vcad::eInvalidInput);
    EXPECT_EQ(editor().drawing().saveAs(path("no folder/a.dxf").c_str()), Vcad::eFileAccess);
    EXPECT_NE(editor().drawing().saveAs(path("").c_str()), Vcad::eOk) << "a folder";
    write("a.dxf", "what stood there");
    ASSERT_EQ(editor().drawing().saveAs(path("a.dxf").c_str()), Vcad::eOk);
    std::ifstream kept(m_folder + "a.dxf.bak");
    if (!kept)
        kept.open(m_folder + "a.bak");
    std::string text;
    std::getline(kept, text);
    EXPECT_EQ(text, "what stood there");
}

TEST_F(Files, AreFoundAlongTheSupportPath)
{
    wchar_t found[1024] = L"kept";
    EXPECT_EQ(vcedFindFile(L"nosuchfile.xyz", found), RTERROR);
    EXPECT_STREQ(found, L"kept");
    EXPECT_EQ(vcedFindFile(L"", found), RTERROR);
    EXPECT_EQ(vcedFindFile(nullptr, found), RTERROR);
    EXPECT_EQ(vcedFindFile(L"vkextend.lin", nullptr), RTERROR);
    write("Mixed Case.LIN", "x");
    ASSERT_EQ(editor().drawing().saveAs(path("a.dxf").c_str()), Vcad::eOk);
    auto database = std::make_unique<VcDbDatabase>(false);
    ASSERT_EQ(database->readDwgFile(path("a.dxf").c_str()), Vcad::eOk);
    editor().openDrawing(std::move(database));
    EXPECT_EQ(vcedFindFile(L"Mixed Case.LIN", found), RTNORM) << "beside the drawing";
    EXPECT_EQ(std::wstring(found), path("Mixed Case.LIN"));
    EXPECT_EQ(vcedFindFile(L"mixed case.lin", found), RTNORM) << "whatever the case";
    EXPECT_EQ(std::wstring(found), path("Mixed Case.LIN"));
    write("mixed case.lin", "y");
    EXPECT_EQ(vcedFindFile(L"mixed case.lin", found), RTNORM);
    EXPECT_EQ(std::wstring(found), path("mixed case.lin")) << "the exact one first";
    EXPECT_EQ(vcedFindFile(path("a.dxf").c_str(), found), RTNORM) << "a whole path stands as it is";
    EXPECT_EQ(vcedFindFile(L"a.dxf", found, 4), RTERROR) << "there is no room";
}

TEST_F(Files, AreFoundInTheFoldersOfTheProfile)
{
    std::filesystem::create_directory(m_folder + "near");
    std::filesystem::create_directory(m_folder + "far away");
    write("far away/both.lin", "far");
    write("far away/one.lin", "far");
    write("near/both.lin", "near");
    wchar_t found[1024] = L"";
    EXPECT_EQ(vcedFindFile(L"one.lin", found), RTERROR);
    ASSERT_TRUE(
        vk::edit::writeEnvironment("SupportPath", ";/no/such/folder;" + m_folder + "near;" + m_folder + "far away;"));
    EXPECT_EQ(vcedFindFile(L"one.lin", found), RTNORM);
    EXPECT_EQ(std::wstring(found), path("far away/one.lin"));
    EXPECT_EQ(vcedFindFile(L"BOTH.lin", found), RTNORM) << "the first folder that has it";
    EXPECT_EQ(std::wstring(found), path("near/both.lin"));
    ASSERT_TRUE(vk::edit::writeEnvironment("SupportPath", ""));
    EXPECT_EQ(vcedFindFile(L"one.lin", found), RTERROR);
}

}  // namespace
