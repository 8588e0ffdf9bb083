// What must still be so when a drawing has been saved and opened again, and what a bare file says.
#include "tests/extend/sdk_support.h"

#include <fstream>

namespace {

class Reopened : public SdkTest {
protected:
    Reopened() { std::filesystem::create_directories(m_folder); }
    ~Reopened() override { std::filesystem::remove_all(m_folder); }
    void open(const std::string& path)
    {
        auto database = std::make_unique<VcDbDatabase>(false);
        ASSERT_EQ(database->readDwgFile(std::wstring(path.begin(), path.end()).c_str()), Vcad::eOk);
        editor().openDrawing(std::move(database));
    }
    void reopen()
    {
        const std::string path = m_folder + "again.dxf";
        ASSERT_EQ(editor().drawing().saveAs(std::wstring(path.begin(), path.end()).c_str()), Vcad::eOk);
        open(path);
    }
    void openText(const std::string& text)
    {
        const std::string path = m_folder + "bare.dxf";
        std::ofstream(path, std::ios::binary) << text;
        open(path);
    }
    static VcGePoint3d point(const wchar_t* name)
    {
        resbuf node = {};
        EXPECT_EQ(vcedGetVar(name, &node), RTNORM);
        return {node.resval.rpoint[0], node.resval.rpoint[1], node.resval.rpoint[2]};
    }
    const std::string m_folder = testing::TempDir() + "reopened/";
};

TEST_F(Reopened, TheModelsUcsAndItsView)
{
    run("UCS\n_O\n10,20\n\n");
    run("UCS\n_Z\n30\n");
    run("ZOOM\n_C\n5,5\n40\n");
    const VcGePoint3d origin = point(L"UCSORG"), x = point(L"UCSXDIR");
    reopen();
    EXPECT_TRUE(point(L"UCSORG").isEqualTo(origin));
    EXPECT_TRUE(point(L"UCSXDIR").isEqualTo(x));
    EXPECT_TRUE(point(L"UCSORG").isEqualTo({10, 20, 0}));
}

TEST_F(Reopened, TheHeaderSpeaksWhereThereIsNoViewportRecord)
{
    openText("  0\nSECTION\n  2\nHEADER\n  9\n$ACADVER\n  1\nAC1009\n  9\n$UCSORG\n 10\n5.0\n 20\n6.0\n 30\n0.0\n"
             "  9\n$UCSXDIR\n 10\n0.0\n 20\n1.0\n 30\n0.0\n  9\n$UCSYDIR\n 10\n-1.0\n 20\n0.0\n 30\n0.0\n  0\nENDSEC\n"
             "  0\nSECTION\n  2\nENTITIES\n  0\nLINE\n  8\nWALLS\n 10\n0.0\n 20\n0.0\n 11\n1.0\n 21\n1.0\n  "
             "0\nENDSEC\n  0\nEOF\n");
    EXPECT_TRUE(point(L"UCSORG").isEqualTo({5, 6, 0}));
    EXPECT_TRUE(point(L"UCSXDIR").isEqualTo({0, 1, 0}));
    Name name;
    ASSERT_EQ(vcdbEntNext(nullptr, name.value), RTNORM);
    EXPECT_EQ(textOf(name, 8), L"WALLS");
    EXPECT_TRUE(RbPtr(vcdbTblSearch(L"LAYER", L"WALLS", 0))) << "the layer was made, as the file has no table of them";
    EXPECT_EQ(vcdbEntDel(name), RTNORM);
    reopen();
    EXPECT_TRUE(point(L"UCSORG").isEqualTo({5, 6, 0}));
}

TEST_F(Reopened, WhatModulesPutIntoDictionaries)
{
    VcDbDictionary* root = nullptr;
    ASSERT_EQ(editor().drawing().getNamedObjectsDictionary(root, VcDb::kForWrite), Vcad::eOk);
    auto* record = new VcDbXrecord;
    const RbPtr data(vcutBuildList(1, L"50% \u00E9", 40, 2.5, 70, 7, 90, 100000, RTNONE));
    ASSERT_EQ(record->setFromRbChain(*data), Vcad::eOk);
    VcDbObjectId id;
    ASSERT_EQ(root->setAt(L"MINE", record, id), Vcad::eOk);
    record->close();
    root->close();
    reopen();
    Name dictionary;
    ASSERT_EQ(vcdbNamedObjDict(dictionary.value), RTNORM);
    const RbPtr entry(vcdbDictSearch(dictionary, L"mine", 0));
    ASSERT_TRUE(entry) << "whatever the case";
    EXPECT_EQ(textOf(entry.get(), 1), L"50% \u00E9");
    EXPECT_EQ(group(entry.get(), 90)->resval.rlong, 100000);
    EXPECT_EQ(RbPtr(vcdbDictSearch(dictionary, L"yours", 0)), nullptr);
    EXPECT_EQ(RbPtr(vcdbDictSearch(dictionary, nullptr, 0)), nullptr);
    EXPECT_EQ(RbPtr(vcdbDictSearch(nullptr, L"mine", 0)), nullptr);
    EXPECT_EQ(vcdbNamedObjDict(nullptr), RTERROR);
    int entries = 0;
    for (RbPtr next(vcdbDictNext(dictionary, 1)); next && entries < 1000; next.reset(vcdbDictNext(dictionary, 0)))
        ++entries;
    VcDbDictionary* again = nullptr;
    ASSERT_EQ(editor().drawing().getNamedObjectsDictionary(again), Vcad::eOk);
    EXPECT_EQ(entries, int(again->numEntries()));
    again->close();
}

TEST_F(Reopened, ExtendedDataAndItsRoom)
{
    const Name name = line(0, 0, 1, 1);
    long room = 0, size = 0;
    ASSERT_EQ(vcdbXdRoom(name, &room), RTNORM);
    EXPECT_EQ(room, 16383);
    ASSERT_EQ(vcdbRegApp(L"MINE"), RTNORM);
    EXPECT_EQ(vcdbRegApp(L"mine"), RTERROR) << "it is registered";
    EXPECT_EQ(vcdbRegApp(L""), RTERROR);
    EXPECT_EQ(vcdbRegApp(nullptr), RTERROR);
    const RbPtr chain(vcutNewRb(-1));
    std::copy_n(name.value, 2, chain->resval.rlname);
    chain->rbnext = vcutNewRb(-3);
    chain->rbnext->rbnext = vcutBuildList(1001, L"MINE", 1000, L"some text", 1040, 2.5, RTNONE);
    ASSERT_EQ(vcdbEntMod(chain.get()), RTNORM);
    ASSERT_EQ(vcdbXdSize(chain->rbnext->rbnext, &size), RTNORM);
    EXPECT_GT(size, 0);
    long left = 0;
    ASSERT_EQ(vcdbXdRoom(name, &left), RTNORM);
    EXPECT_EQ(left, room - size);
    EXPECT_EQ(vcdbXdRoom(Name(), &left), RTERROR);
    EXPECT_EQ(vcdbXdRoom(name, nullptr), RTERROR);
    const std::wstring handle = textOf(name, 5);
    reopen();
    Name again;
    ASSERT_EQ(vcdbHandEnt(handle.c_str(), again.value), RTNORM);
    const RbPtr mine(vcutBuildList(RTSTR, L"M*", RTNONE)), none(vcutBuildList(RTSTR, L"YOURS", RTNONE));
    const RbPtr with(vcdbEntGetX(again, mine.get())), without(vcdbEntGetX(again, none.get())), plain(vcdbEntGet(again));
    EXPECT_EQ(textOf(with.get(), 1000), L"some text");
    EXPECT_FALSE(group(without.get(), 1000));
    EXPECT_FALSE(group(plain.get(), 1000));
}

}  // namespace
