// What commands may lean on when they ask: picks, keywords, drags, and what is typed where a file is asked for.
#include "host/base/unicode.h"
#include "tests/extend/sdk_support.h"

#include <fstream>

namespace {

class Answers : public SdkTest {
protected:
    struct Picked {
        int result = 0;
        Name name;
        VcGePoint3d at;
    };
    static Picked pick(const std::string& typed, int bits = 0, const wchar_t* keywords = nullptr)
    {
        Picked p;
        vds_point at = {-1, -1, -1};
        setShort(L"ERRNO", 0);
        vcedInitGet(bits, keywords);
        type(typed);
        p.result = vcedEntSel(L"\nPick: ", p.name.value, at);
        p.at = {at[0], at[1], at[2]};
        return p;
    }
};

struct PickCase {
    const char* why;
    int bits;
    const wchar_t* keywords;
    const char* typed;
    int result;
    int errorNumber;
};
const PickCase kPicks[] = {
    {"a hit", 0, nullptr, "5,0\n", RTNORM, 0},
    {"Enter", 0, nullptr, "\n", RTNONE, 0},
    {"Enter where there are words", 0, L"Undo", "\n", RTERROR, 35},
    {"Enter where anything may be typed", 128, nullptr, "\n", RTERROR, 35},
    {"Enter that is refused", 1, nullptr, "\n5,0\n", RTNORM, 0},
    {"a miss", 0, nullptr, "5,50\n", RTERROR, 7},
    {"a miss where there are words", 0, L"Undo", "5,50\n", RTERROR, 7},
    {"a word", 0, L"Undo", "u\n", RTKWORD, 0},
    {"anything", 128, nullptr, "zebra\n", RTKWORD, 0},
    {"nonsense is asked again", 0, nullptr, "zebra\n5,0\n", RTNORM, 0},
    {"Esc", 0, L"Undo", "(cancel)\n", RTCAN, 0},
    {"by its name", 0, nullptr, "(entlast)\n", RTNORM, 0},
    {"by name and a point on it", 0, nullptr, "(list (entlast) '(9.0 0.0 0.0))\n", RTNORM, 0},
    {"by name and a point beside it", 0, nullptr, "(list (entlast) '(9.0 5.0 0.0))\n", RTERROR, 7},
    {"nil answers nothing", 0, nullptr, "(car nil)\n5,0\n", RTNORM, 0},
};

TEST_F(Answers, Picks)
{
    const Name target = line(0, 0, 10, 0);
    run("ZOOM\n_W\n-50,-50\n50,60\n");
    for (const PickCase& c : kPicks) {
        SCOPED_TRACE(c.why);
        const Picked p = pick(c.typed, c.bits, c.keywords);
        EXPECT_EQ(p.result, c.result);
        EXPECT_EQ(shortVariable(L"ERRNO"), c.errorNumber);
        EXPECT_EQ(p.name, c.result == RTNORM ? target : Name()) << "a failed pick writes nothing";
        EXPECT_EQ(p.at.x == -1, c.result != RTNORM);
    }
}

TEST_F(Answers, AnErasedObjectIsNoAnswer)
{
    const Name gone = line(0, 0, 10, 0);
    const Name left = line(0, 30, 10, 30);
    const RbPtr chain(vcdbEntGet(gone));
    const std::string handle = wideToUtf8(textOf(chain.get(), 5));
    ASSERT_EQ(vcdbEntDel(gone), RTNORM);
    const Picked p = pick("(handent \"" + handle + "\")\n(entlast)\n");
    EXPECT_EQ(p.result, RTNORM);
    EXPECT_EQ(p.name, left);
}

TEST_F(Answers, ThePickedPointIsInTheUcs)
{
    line(0, 0, 10, 0);
    run("ZOOM\n_W\n-50,-50\n50,60\n");
    run("UCS\n_O\n4,0\n\n");
    const Picked p = pick("1,0\n");
    EXPECT_EQ(p.result, RTNORM);
    EXPECT_TRUE(p.at.isEqualTo({1, 0, 0}));
    EXPECT_EQ(pick("8,0\n").result, RTERROR) << "4 beyond the end";
}

TEST_F(Answers, ANestedPickTellsItsReferencesFromTheInnermost)
{
    block(L"IN");
    const vds_point origin = {0, 0, 0}, at = {100, 0, 0};
    const RbPtr begin(vcutBuildList(RTDXF0, L"BLOCK", 2, L"OUT", 70, 0, 10, origin, RTNONE));
    const RbPtr inner(vcutBuildList(RTDXF0, L"INSERT", 8, L"0", 2, L"IN", 10, at, RTNONE));
    const RbPtr end(vcutBuildList(RTDXF0, L"ENDBLK", RTNONE));
    ASSERT_EQ(vcdbEntMake(begin.get()), RTNORM);
    ASSERT_EQ(vcdbEntMake(inner.get()), RTNORM);
    ASSERT_EQ(vcdbEntMake(end.get()), RTKWORD);
    const Name outer = insert(L"OUT", 1000, 0);
    run("ZOOM\n_E\n");

    Name picked;
    vds_point point = {0, 0, 0};
    vds_matrix matrix;
    resbuf* chain = nullptr;
    type("1105,0\n");
    ASSERT_EQ(vcedNEntSelP(nullptr, picked.value, point, 0, matrix, &chain), RTNORM);
    const RbPtr containers(chain);
    EXPECT_EQ(textOf(picked, 0), L"LINE");
    EXPECT_EQ(matrix[0][3], 1100) << "from the innermost definition to the world";
    ASSERT_TRUE(chain && chain->rbnext);
    const vds_name& first = chain->resval.rlname;
    const vds_name& last = chain->rbnext->resval.rlname;
    EXPECT_EQ(textOf(Name{{first[0], first[1]}}, 2), L"IN");
    EXPECT_EQ((Name{{last[0], last[1]}}), outer);
    EXPECT_EQ(chain->rbnext->rbnext, nullptr);
}

TEST_F(Answers, ANestedPickNeedsNoPlaceForMatrixAndReferences)
{
    const Name target = line(0, 0, 10, 0);
    run("ZOOM\n_E\n");
    Name picked;
    vds_point point = {5, 0, 0};
    EXPECT_EQ(vcedNEntSelP(nullptr, picked.value, point, 1, nullptr, nullptr), RTNORM);
    EXPECT_EQ(picked, target);
    EXPECT_EQ(vcedNEntSelP(nullptr, nullptr, point, 1, nullptr, nullptr), RTERROR);
    EXPECT_EQ(vcedNEntSelP(nullptr, picked.value, nullptr, 1, nullptr, nullptr), RTERROR);
}

std::vector<VcGePoint3d> s_sampled;
int sample(vds_point point, vds_matrix)
{
    s_sampled.emplace_back(point[0], point[1], point[2]);
    return RTNORM;
}

TEST_F(Answers, DragsEndInFourWays)
{
    struct {
        const char* typed;
        int result;
        const wchar_t* input;
        bool sampled;
    } const cases[] = {
        {"7,8\n", RTNORM, nullptr, true},      {"r\n", RTKWORD, L"Rotate", false}, {"\n", RTNONE, nullptr, false},
        {"(cancel)\n", RTCAN, nullptr, false}, {"12.5\n", RTSTR, L"12.5", false},  {"two\n", RTSTR, L"two", false},
    };
    Name set;
    ASSERT_EQ(vcedSSAdd(circle(0, 0, 5), nullptr, set.value), RTNORM);
    for (const auto& c : cases) {
        SCOPED_TRACE(c.typed);
        s_sampled.clear();
        vds_point at = {-1, -1, -1};
        vcedInitGet(1024 | 2048, L"Rotate");
        type(c.typed);
        EXPECT_EQ(vcedDragGen(set, L"\nTo: ", 0, sample, at), c.result);
        EXPECT_EQ(!s_sampled.empty(), c.sampled);
        EXPECT_EQ(at[0], c.result == RTNORM ? 7 : -1);
        if (c.input) {
            EXPECT_EQ(input(), c.input);
        }
        if (c.sampled) {
            EXPECT_TRUE(s_sampled.back().isEqualTo({7, 8, 0}));
        }
    }
    EXPECT_EQ(vcedDragGen(set, nullptr, 0, sample, nullptr), RTERROR);
    vcedSSFree(set);
}

// FILEDIA 0: a path is what was typed.
struct PathCase {
    const char* why;
    const char* typed;
    const char* file;
};
class Paths : public SdkTest, public testing::WithParamInterface<PathCase> {};

TEST_P(Paths, AreTakenAsTyped)
{
    line(0, 0, 10, 0);
    const std::string folder = testing::TempDir() + "paths/";
    std::filesystem::create_directories(folder + "in here");
    std::ofstream(folder + "old.dxf") << "what stood there";
    std::string typed = GetParam().typed;
    for (std::size_t at; (at = typed.find('@')) != typed.npos;)
        typed.replace(at, 1, folder);
    setShort(L"FILEDIA", 0);
    run("WBLOCK\n" + typed + "\n\n0,0\n(entlast)\n\n");
    EXPECT_TRUE(std::filesystem::exists(folder + GetParam().file)) << printed;
    EXPECT_GT(std::filesystem::file_size(folder + GetParam().file), 1000u) << "a drawing";
    EXPECT_EQ(countOfDrawing(), 0) << "the objects were taken out";
    std::filesystem::remove_all(folder);
}

const PathCase kPaths[] = {
    {"Plain", "@plain.dxf", "plain.dxf"},
    {"Quoted", "\"@in here/q.dxf\"", "in here/q.dxf"},
    {"BlanksWithoutQuotes", "@in here/b.dxf", "in here/b.dxf"},
    {"AnExistingOne", "@old.dxf", "old.dxf"},
    {"WithoutAnEnding", "@bare", "bare.dxf"},
    {"OtherCharacters", "@\xC3\xA9\xE4\xB8\xAD.dxf", "\xC3\xA9\xE4\xB8\xAD.dxf"},
};
INSTANTIATE_TEST_SUITE_P(Typed, Paths, testing::ValuesIn(kPaths), [](const auto& info) { return info.param.why; });

}  // namespace
