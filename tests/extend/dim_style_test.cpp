// The lines of dimension style files and the records that are made of them, called as they are.
#include "core/PublicFunction.h"
#include "dim/ArrowBlocks.h"
#include "dim/DimStyleFile.h"
#include "dim/DimVariables.h"
#include "sdk/vcdb_entity.h"
#include "sdk/vcdb_tables.h"
#include "sdk/vchost.h"
#include "tests/extend/host_support.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <unistd.h>

namespace {

CStringArray linesOf(std::initializer_list<const wchar_t*> texts)
{
    CStringArray lines;
    for (const wchar_t* text : texts)
        lines.Add(text);
    return lines;
}

struct Split {
    const wchar_t *line, *name, *value;
    int status;
};

TEST(DimStyleLines, ALineIsSplitAtItsFirstBlank)
{
    const Split cases[] = {
        {L"DIMPOST <> mm\n", L"DIMPOST", L"<> mm", RTNORM},
        {L"DIMTXSTY  a  b \n", L"DIMTXSTY", L"a  b", RTNORM},
        {L" DIMSCALE 2\n", L"", L"DIMSCALE 2", RTNORM},
        {L"\tDIMSCALE 2\n", L"DIMSCALE", L"2", RTNORM},
        {L"DIMPOST \n", L"DIMPOST", L"", RTNORM},
        {L"DIMPOST\n", L"kept", L"kept", RTERROR},
        {L"", L"kept", L"kept", RTERROR},
    };
    for (const Split& c : cases) {
        CStdStrW name = L"kept", value = L"kept";
        EXPECT_EQ(GetNameValueFromTxt(name, value, c.line), c.status) << CStdStrW(c.line).GetString();
        EXPECT_EQ(name, c.name);
        EXPECT_EQ(value, c.value);
    }
}

TEST(DimStyleLines, ValuesAreFoundByTheFirstLineThatContainsTheName)
{
    const CStringArray lines = linesOf({L"MYDIMTXT_XSCALE 3\n", L"DIMTXT_XSCALE 4\n", L"DIMTXT_FLAGS\n"});
    CStdStrW value;
    EXPECT_EQ(GetValueFromName(value, L"DIMTXT_XSCALE", lines), RTNORM);
    EXPECT_EQ(value, L"3");
    EXPECT_EQ(GetValueFromName(value, L"DIMTXT_BIGFILE", lines), RTERROR);
    EXPECT_EQ(GetIndex(lines, L"XSCALE 4"), 1);
    EXPECT_EQ(GetIndex(lines, L"xscale 4"), -1);
    EXPECT_EQ(GetIndex(CStringArray(), L""), -1);
}

TEST(DimStyleTables, CodesAndNames)
{
    EXPECT_EQ(GetCodeFromName(L"DIMALT", kDimStyleTable), 170);
    EXPECT_EQ(GetCodeFromName(L"dimltrnd", kDimStyleTable), VALIDCODE);
    EXPECT_EQ(GetCodeFromName(L"DIMBLK2", kDimStyleTable), 7);
    EXPECT_EQ(GetCodeFromName(L"DIMENSION_STYLE_NAME", kDimStyleTable), 2);
    EXPECT_EQ(GetCodeFromName(L"DIMTXT_FLAGS", kDimStyleTable), VALIDCODE);
    EXPECT_EQ(GetCodeFromName(L"dimtxt_flags", 9), 71);
    EXPECT_TRUE(vds_Code_Invalid(GetCodeFromName(L"", kTextStyleTable)));
    EXPECT_FALSE(vds_Code_Invalid(0));
    EXPECT_EQ(GetNameFromCode(344, kDimStyleTable), L"DIMBLK2");
    EXPECT_EQ(GetNameFromCode(70, kTextStyleTable), L"");
    EXPECT_TRUE(ExistCode(148, kDimStyleTable));
    EXPECT_FALSE(ExistCode(148, kTextStyleTable));
}

struct Node {
    const wchar_t* line;
    int code;  // 0 for no node
    double number;
    const wchar_t* text;
};

TEST(DimStyleTables, ALineBecomesANode)
{
    const Node cases[] = {
        {L"DIMSCALE 2.5\n", 40, 2.5, nullptr},
        {L"DIMTAD 1x\n", 77, 1, nullptr},
        {L"DIMLWD -2\n", 371, -2, nullptr},
        {L"DIMPOST %s <>\n", 3, 0, L"%s <>"},
        {L"DIMENSION_STYLE_NAME A b\n", 2, 0, L"A b"},
        {L"DIMPOST .\n", 0, 0, nullptr},
        {L"DIMALTRND 0.5\n", 0, 0, nullptr},
        {L"DIMTXSTY A\n", 0, 0, nullptr},
        {L"DIMLDRBLK _DOT\n", 0, 0, nullptr},
        {L"%ls %ls\n", 0, 0, nullptr},
        {L"\n", 0, 0, nullptr},
        {L"DIMSCALE\n", 0, 0, nullptr},
    };
    for (const Node& c : cases) {
        const RbPtr node(MakeBuffer(c.line, kDimStyleTable));
        ASSERT_EQ(node ? node->restype : 0, c.code) << CStdStrW(c.line).GetString();
        if (c.text) {
            EXPECT_EQ(CStdStrW(node->resval.rstring), c.text);
        } else if (node) {
            EXPECT_EQ(dxf2rbtype(c.code) == RTSHORT ? node->resval.rint : node->resval.rreal, c.number);
        }
    }
}

TEST(ArrowNames, AreKnownWithAndWithoutTheirUnderscore)
{
    for (const wchar_t* name : {L"DOT", L"_DOT", L"dotsmall", L"_Open30", L"ARCHTICK", L"_none"})
        EXPECT_TRUE(IsInternalArrow(name)) << CStdStrW(name).GetString();
    for (const wchar_t* name : {L"", L"_", L"__DOT", L"BLIQUE", L"DOTS", L"."})
        EXPECT_FALSE(IsInternalArrow(name)) << CStdStrW(name).GetString();
    EXPECT_FALSE(IsInternalArrow(nullptr));
    EXPECT_EQ(internalArrowName(L"open90"), L"_OPEN90");
}

class DimStyles : public CommandTest {
protected:
    static CStdStrW output() { return CStdStrW((testing::TempDir() + "out.dim").c_str()); }
    static std::string bytesOf(const std::filesystem::path& path)
    {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    static void writeBytes(const std::string& bytes)
    {
        std::ofstream(testing::TempDir() + "out.dim", std::ios::binary) << bytes;
    }
    static int import(int option) { return InDimStyle(output(), option); }

    // What an arrow's block says of itself: the kinds and the numbers of its members.
    static std::string looksOf(const wchar_t* block, VcDbExtents& all)
    {
        std::string looks;
        const RbPtr record(vcdbTblSearch(L"BLOCK", block, 0));
        vds_name name = {};
        for (int status = GetBufName(record.get(), -2, name); status == RTNORM; status = vcdbEntNext(name, name)) {
            VcDbObjectId id;
            VcDbEntity* entity = nullptr;
            VcDbExtents extents;
            vcdbGetObjectId(id, name);
            if (vcdbOpenVcDbEntity(entity, id, VcDb::kForRead) != Vcad::eOk)
                continue;
            entity->getGeomExtents(extents);
            all.addExt(extents);
            looks += entity->isA()->dxfName();
            const RbPtr chain(vcdbEntGet(name));
            for (const resbuf* node = chain.get(); node; node = node->rbnext)
                if (dxf2rbtype(node->restype) == RT3DPOINT)
                    looks +=
                        " " + std::to_string(node->resval.rpoint[0]) + "," + std::to_string(node->resval.rpoint[1]);
                else if (dxf2rbtype(node->restype) == RTREAL)
                    looks += " " + std::to_string(node->resval.rreal);
            entity->close();
        }
        return looks;
    }
};

TEST_F(DimStyles, EachArrowHasALookOfItsOwnAtUnitSize)
{
    std::vector<std::string> looks;
    for (const wchar_t* name : {L"_DOT", L"_DOTSMALL", L"_DOTBLANK", L"_ORIGIN", L"_ORIGIN2", L"_OPEN", L"_OPEN90",
                                L"_OPEN30", L"_CLOSED", L"_SMALL", L"_BOXFILLED", L"_BOXBLANK", L"_CLOSEDBLANK",
                                L"_DATUMFILLED", L"_DATUMBLANK", L"_INTEGRAL", L"_ARCHTICK"}) {
        VcDbExtents extents;
        EXPECT_TRUE(vds_checkArrowheadBlock(name, nullptr));
        looks.push_back(looksOf(name, extents));
        EXPECT_FALSE(looks.back().empty()) << CStdStrW(name).GetString();
        EXPECT_GE(extents.minPoint().x, -1.0);
        EXPECT_LE(extents.maxPoint().x, 0.6);
        EXPECT_LE(extents.maxPoint().y - extents.minPoint().y, 1.3);
    }
    std::ranges::sort(looks);
    EXPECT_EQ(std::ranges::adjacent_find(looks), looks.end());
}

TEST_F(DimStyles, ObliqueAndNoneComeOutEmptyAndABlockThatIsThereStays)
{
    VcDbExtents extents;
    for (const wchar_t* name : {L"OBLIQUE", L"_NONE"})
        EXPECT_TRUE(vds_checkArrowheadBlock(name, nullptr));
    EXPECT_EQ(looksOf(L"_OBLIQUE", extents) + looksOf(L"_NONE", extents), "");
    EXPECT_TRUE(RbPtr(vcdbTblSearch(L"BLOCK", L"_NONE", 0)));
    EXPECT_TRUE(vds_checkArrowheadBlock(L"dot", nullptr));
    const std::string made = looksOf(L"_DOT", extents);
    EXPECT_TRUE(vds_checkArrowheadBlock(L"_DOT", nullptr));
    EXPECT_EQ(looksOf(L"_DOT", extents), made);
    EXPECT_FALSE(vds_checkArrowheadBlock(L"HOUSE", nullptr));
    EXPECT_FALSE(vds_checkArrowheadBlock(nullptr, nullptr));
}

TEST_F(DimStyles, ABlockCanBeMadeInAnotherDrawing)
{
    VcDbDatabase other;
    VcDbBlockTable* blocks = nullptr;
    EXPECT_TRUE(vds_checkArrowheadBlock(L"ORIGIN", &other));
    ASSERT_EQ(other.getSymbolTable(blocks, VcDb::kForRead), Vcad::eOk);
    EXPECT_TRUE(blocks->has(L"_ORIGIN"));
    blocks->close();
    EXPECT_FALSE(RbPtr(vcdbTblSearch(L"BLOCK", L"_ORIGIN", 0)));
}

TEST_F(DimStyles, AStyleThatIsNotThereGetsItsHeaderAndItsEnd)
{
    EXPECT_EQ(OutDimStyle(linesOf({L"No such", L"Nor this"}), output(), kTextStyleInFull), RTNORM);
    EXPECT_EQ(bytesOf(testing::TempDir() + "out.dim"),
              "DIMENSION_STYLE_NAME No such\nEND_OF_STYLE No such\n\nDIMENSION_STYLE_NAME Nor this\nEND_OF_STYLE Nor "
              "this\n\n");
    CStringArray lines;
    EXPECT_EQ(GetNameValueFromStyle(lines, L"No such", kTextStyleNameOnly), RTERROR);
    EXPECT_EQ(lines.GetSize(), 0);
}

TEST_F(DimStyles, TheSectionOfATextStyleEndsAtTheFirstMissingGroup)
{
    const RbPtr record(vcutBuildList(70, 5, 40, 2.0, 41, 0.5, 50, 0.1, 71, 4, RTNONE));
    CStringArray lines;
    EXPECT_EQ(GetTxtVariableFromStyle(lines, record.get()), RTERROR);
    ASSERT_EQ(lines.GetSize(), 6);
    EXPECT_EQ(lines.GetAt(0), L"DIMTXT_ISSHAPE 0\n");
    EXPECT_EQ(lines.GetAt(5), L"DIMTXT_FLAGS 1\n");
    const RbPtr shape(vcutBuildList(70, 1, RTNONE));
    CStringArray two;
    EXPECT_EQ(GetTxtVariableFromStyle(two, shape.get()), RTERROR);
    ASSERT_EQ(two.GetSize(), 2);
    EXPECT_EQ(two.GetAt(0), L"DIMTXT_ISSHAPE 1\n");
    EXPECT_EQ(GetTxtVariableFromStyle(two, nullptr), RTERROR);
}

TEST_F(DimStyles, NodesTakeTheirValuesFromTheLines)
{
    const CStringArray lines = linesOf({L"DIMTXT_TXTSIZE 2.5\n", L"DIMTXT_FLAGS 4\n", L"DIMTXT_FILENAME .\n",
                                        L"DIMTXT_BIGFILE ABC\n", L"DIMTXT_XSCALE \n"});
    const RbPtr chain(vcutBuildList(40, 1.0, 71, 0, 3, L"txt", 4, L"abc", 41, 0.8, 70, 4, RTNONE));
    for (resbuf* node = chain.get(); node; node = node->rbnext)
        EXPECT_EQ(modifyDimVariable(node, lines, kTextStyleTable), RTNORM);
    double size = 0, width = 0;
    int generation = 0, flags = 0;
    wchar_t file[16], big[16];
    GetBufReal(chain.get(), 40, size);
    GetBufReal(chain.get(), 41, width);
    GetBufInt(chain.get(), 71, generation);
    GetBufInt(chain.get(), 70, flags);
    GetBufString(chain.get(), 3, file, 16);
    GetBufString(chain.get(), 4, big, 16);
    EXPECT_EQ(std::tuple(size, width, generation, flags), std::tuple(2.5, 0.8, 4, 4));
    EXPECT_EQ(CStdStrW(file) + CStdStrW(big), L"txtabc");
    EXPECT_EQ(modifyDimVariable(nullptr, lines, kTextStyleTable), RTERROR);
}

TEST_F(DimStyles, TheReaderKeepsLinesAndDropsWhatHasNoEnd)
{
    writeBytes(
        "before\nxDIMENSION_STYLE_NAME A\r\nDIMSCALE 2\r\nxEND_OF_STYLE\nbetween\nDIMENSION_STYLE_NAME END_OF_STYLE\n"
        "END_OF_STYLE\nDIMENSION_STYLE_NAME C\n");
    std::vector<CStringArray2> styles;
    EXPECT_EQ(ReadDimStyleFile(styles, output()), RTNORM);
    ASSERT_EQ(styles.size(), 2u);
    ASSERT_EQ(styles[0].GetSize(), 2);
    EXPECT_EQ(styles[0].GetAt(1), L"DIMSCALE 2\r\n");
    EXPECT_EQ(styles[1].GetSize(), 1);
    EXPECT_EQ(ReadDimStyleFile(styles, L"/no/such/file.dim"), RTERROR);
}

// The rights of somebody who owns nothing here: what root may do hides what a file says of its readers and writers.
class AsNobody {
public:
    AsNobody() : m_owner(geteuid())
    {
        constexpr uid_t kNobody = 65534;
        if (m_owner == 0 && seteuid(kNobody) != 0)
            ADD_FAILURE() << "the rights cannot be given up";
    }
    ~AsNobody()
    {
        if (seteuid(m_owner) != 0)
            std::abort();
    }

private:
    uid_t m_owner;
};

TEST_F(DimStyles, AFileThatMayOnlyBeReadStaysAsItIs)
{
    const std::filesystem::path path = testing::TempDir() + "out.dim";
    const std::string was = "DIMENSION_STYLE_NAME A\nDIMTXSTY Standard\nEND_OF_STYLE A\n";
    writeBytes(was);
    std::filesystem::permissions(path, std::filesystem::perms(0444));
    {
        const AsNobody rights;
        EXPECT_EQ(WriteDimStyle(linesOf({L"other\n"}), output()), 0);
        EXPECT_EQ(OutDimStyle(linesOf({L"Standard"}), output(), kTextStyleInFull), RTNORM);
        EXPECT_EQ(import(kKeepExisting), RTNORM);
    }
    EXPECT_EQ(bytesOf(path), was);
    std::filesystem::permissions(path, std::filesystem::perms(0));
    {
        const AsNobody rights;
        EXPECT_EQ(import(kKeepExisting), RTERROR);
    }
    std::filesystem::remove(path);
}

// Files of every kind, torn and stirred: whatever comes of them, the drawing can be exported afterwards.
TEST_F(DimStyles, BrokenFilesDoNoHarm)
{
    std::mt19937 random(20240229);
    const auto below = [&](std::size_t most) { return std::size_t(random() % most); };
    OutDimStyle(linesOf({L"Standard"}), output(), kTextStyleInFull);
    const std::string sources[] = {
        bytesOf(testing::TempDir() + "out.dim"),
        "DIMENSION_STYLE_NAME A\nDIMBLK DOT\nDIMLDRBLK _ORIGIN\nDIMBLK2 HOUSE\nDIMTXSTY B\nEND_OF_STYLE A\n",
        "\xEF\xBB\xBF"
        "DIMENSION_STYLE_NAME C\nDIMTXSTY D\nDIMTXT_FULLINFO 1\nDIMTXT_TXTSIZE 2\nEND_DIMTXT\nEND_OF_STYLE C\n",
    };
    for (int round = 0; round < 400; ++round) {
        std::string bytes = sources[below(3)];
        for (std::size_t changes = 1 + below(12); changes > 0; --changes) {
            const std::size_t at = below(bytes.size());
            switch (below(4)) {
            case 0:
                bytes[at] = char(below(256));
                break;
            case 1:
                bytes.erase(at, below(40));
                break;
            case 2:
                bytes.insert(at, bytes.substr(below(bytes.size()), below(200)));
                break;
            default:
                bytes.insert(at, "%n\n");
            }
            bytes += '\n';
        }
        writeBytes(bytes);
        import(int(below(2)));
    }
    EXPECT_EQ(OutDimStyle(linesOf({L"Standard"}), output(), kTextStyleInFull), RTNORM);
    EXPECT_NE(bytesOf(testing::TempDir() + "out.dim").find("DIMTXSTY"), std::string::npos);
}

// One name a hundred thousand times over takes no longer than to read it.
TEST_F(DimStyles, ManyLikeLinesAreReadInOnePass)
{
    std::string bytes = "DIMENSION_STYLE_NAME Many\nDIMTXSTY Many\nDIMTXT_FULLINFO 1\n";
    for (int i = 0; i < 100000; ++i)
        bytes += "dimtxt_txtsize 3\n";
    writeBytes(bytes + "END_DIMTXT\nEND_OF_STYLE Many\n");
    EXPECT_EQ(import(kKeepExisting), RTNORM);
    vds_name name = {};
    EXPECT_TRUE(dimStyTblsearch(L"Many", name));
    EXPECT_TRUE(txtStyTblsearch(L"many", name));
    EXPECT_FALSE(txtStyTblsearch(L"other", name));
}

}  // namespace
