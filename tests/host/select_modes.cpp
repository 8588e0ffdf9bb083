// vcedSSGet in every mode, and the picks that modules ask for.
#include "host/db/coordinate_system.h"
#include "host/edit/view.h"
#include "tests/host/select_support.h"

using namespace seltest;
using namespace vk::edit;

namespace {

const std::string kError = "-5001", kCancel = "-5002", kKeyword = "-5005";

class Modes : public Drawing {
protected:
    // a, b: lines; c: circle; d: locked; e: off; f: frozen; g: in paper space; a member of a block besides
    void SetUp() override
    {
        Drawing::SetUp();
        line(0, 0, 10, 0);
        line(0, 10, 10, 10);
        circle(40, 10, 5);
        line(0, 30, 10, 30, "Locked");
        line(0, 40, 10, 40, "Off");
        line(0, 50, 10, 50, "Frozen");
        add(new VcDbLine({0, 0, 0}, {10, 0, 0}), "0", db().objectAs<VcDbBlockTableRecord>(db().paperSpace()));
        add(new VcDbLine({0, 0, 0}, {10, 0, 0}), "0", &block("UNUSED"));
        layer("Locked").setIsLocked(true);
        layer("Off").setIsOff(true);
        layer("Frozen").setIsFrozen(true);
        currentView(ed()).height = 100;
    }
    std::string previous() const { return ed().previousSelection ? letters(ed().previousSelection->ids()) : "none"; }
    void pickFirst(const std::string& members)
    {
        ed().pickFirst = std::make_shared<SelectionSet>();
        for (const char letter : members)
            ed().pickFirst->add(idOf(letter));
    }
};

TEST_F(Modes, TheWholeDrawing)
{
    EXPECT_EQ(ssget(L"X"), "abcdefg");
    EXPECT_EQ(ssget(L"_X", nullptr, nullptr, "0=CIRCLE"), "c");
    EXPECT_EQ(previous(), "none") << "X leaves the previous set alone";
    EXPECT_EQ(ssget(L"X", nullptr, nullptr, "0=TEXT"), kError);
    EXPECT_EQ(ssget(L"X", nullptr, nullptr, "-4=<OR|0=TEXT"), kError) << "a malformed filter";
    EXPECT_EQ(ssget(L"A"), "abcdefg");
    EXPECT_EQ(previous(), "abcdefg");
}

TEST_F(Modes, ByPoints)
{
    const vds_point low = {-1, -1, 0}, high = {11, 11, 0}, middle = {5, 11, 0}, on = {5, 0, 0};
    EXPECT_EQ(ssget(L"W", low, high), "ab");
    EXPECT_EQ(ssget(L"W", low, middle), kError);
    EXPECT_EQ(ssget(L"_C", low, middle), "ab");
    EXPECT_EQ(ssget(L"BOX", low, middle), kError) << "to the right it is a window";
    EXPECT_EQ(ssget(L"BOX", middle, low), "ab");
    EXPECT_EQ(previous(), "ab");
    const RbPtr ring = chainFrom("5009=-1,-1|5009=11,-1|5009=11,45|5009=-1,45|5009=-1,-1");
    EXPECT_EQ(ssget(L"WP", ring.get()), "abd") << "locked layers are seen, others are off";
    EXPECT_EQ(ssget(L"CP", ring.get(), nullptr, "8=Locked"), "d");
    const RbPtr fence = chainFrom("5002=5,-5|5002=5,5");
    EXPECT_EQ(ssget(L"F", fence.get()), "a");
    EXPECT_EQ(ssget(nullptr, on), "a") << "a point without a mode is a pick";
    EXPECT_EQ(ssget(L"W", low), kError);
    EXPECT_EQ(ssget(L"CP", fence.get()), kError);
    EXPECT_EQ(ssget(L"L"), "d") << "the last that can be seen";
}

TEST_F(Modes, PreviousKeepsItsOrderAndIsNotReplaced)
{
    EXPECT_EQ(ssget(L"P"), kError);
    type("5,10\n5,0\n5,30\n\n");
    EXPECT_EQ(ssget(nullptr), "bad");
    EXPECT_EQ(ssget(L"P", nullptr, nullptr, "8=Locked"), "d");
    EXPECT_EQ(ssget(L"P"), "bad");
}

TEST_F(Modes, AskingTakesLockedLayersUnlessTold)
{
    type("5,30\n\n");
    EXPECT_EQ(ssget(nullptr), "d");
    type("5,30\n5,0\n\n");
    EXPECT_EQ(ssget(L":L"), "a");
    type("\n");
    EXPECT_EQ(ssget(nullptr), kError) << "Enter at once";
    type("5,0\n(cancel)\n");
    EXPECT_EQ(ssget(nullptr), kCancel);
    type("5,0\n");
    EXPECT_EQ(ssget(L":S"), "a") << "one pick is enough";
    type("5,0\n");
    EXPECT_EQ(ssget(L"_+.:E:S"), "a");
}

TEST_F(Modes, PickFirst)
{
    EXPECT_EQ(ssget(L"I"), kError);
    pickFirst("bgd");
    EXPECT_EQ(ssget(L"_I"), "bd") << "what stands in the current space";
    EXPECT_EQ(ssget(L"I", nullptr, nullptr, "8=0"), "b") << "asking does not use it up";
    EXPECT_EQ(ssget(L"I", nullptr, nullptr, "0=CIRCLE"), kError);
    EXPECT_EQ(ssget(nullptr), "bd");
    type("5,0\n\n");
    EXPECT_EQ(ssget(nullptr), "a") << "a question has used it up";
    pickFirst("b");
    ed().vars().set("PICKFIRST", std::int32_t(0));
    EXPECT_EQ(ssget(L"I"), kError);
}

TEST_F(Modes, SetFirstKeepsAllItIsGiven)
{
    vds_name set = {0, 0}, name;
    for (const char letter : {'g', 'a'}) {
        idToName(idOf(letter), name);
        vcedSSAdd(name, set, set);
    }
    EXPECT_EQ(vcedSSSetFirst(set, nullptr), RTNORM);
    vcedSSFree(set);
    resbuf *grips = nullptr, *picks = nullptr;
    ASSERT_EQ(vcedSSGetFirst(&grips, &picks), RTNORM);
    EXPECT_EQ(lettersOfSet(picks->resval.rlname), "ga");
    EXPECT_EQ(lettersOfSet(grips->resval.rlname), "ga");
    releaseRb(grips);
    releaseRb(picks);
    EXPECT_EQ(vcedSSSetFirst(set, nullptr), RTERROR) << "that set has been freed";
    EXPECT_EQ(vcedSSSetFirst(nullptr, nullptr), RTNORM);
    EXPECT_EQ(vcedSSGetFirst(&grips, &picks), RTERROR);
}

TEST_F(Modes, PromptsOfTheCaller)
{
    const wchar_t* prompts[2] = {L"\nThese: ", L"\nNot these: "};
    type("ALL\nR\n5,0\n\n");
    const std::size_t before = ed().transcript().size();
    EXPECT_EQ(ssget(L":$", prompts), "bce") << "ALL leaves frozen and locked ones";
    const std::string printed = ed().transcript().substr(before);
    EXPECT_NE(printed.find("These: "), std::string::npos);
    EXPECT_NE(printed.find("Not these: "), std::string::npos);
    type("5,30\n5,0\n\n");
    EXPECT_EQ(ssget(L":$:L", prompts), "a");
}

std::vector<std::wstring> s_heard;
const char* s_reply = nullptr;

resbuf* hear(const wchar_t* text)
{
    s_heard.emplace_back(text);
    return s_reply ? chainFrom(s_reply).release() : nullptr;
}

resbuf* askWithin(const wchar_t* text)
{
    s_heard.emplace_back(text);
    int value = 0;
    s_heard.push_back(std::to_wstring(vcedGetInt(L"\nHow many: ", &value)));
    return nullptr;
}

TEST_F(Modes, KeywordsGoToTheCallback)
{
    const wchar_t* prompts[2] = {L"\nSelect or [Settings]: ", L"\nRemove: "};
    s_heard.clear();
    s_reply = nullptr;
    vcedSSSetKwordCallbackPtr(hear);
    type("5,0\nset\n5,10\n\n");
    EXPECT_EQ(ssget(L"-M:$:K", prompts, L"Settings _Settings"), "ab");
    EXPECT_EQ(s_heard, std::vector<std::wstring>{L"Settings"});

    s_reply = "5005=_W|5009=-1,-1|5009=11,11|5005=";
    type("S\n");
    EXPECT_EQ(ssget(L"-M:$:K", prompts, L"Settings"), "ab") << "what the callback gives answers the questions";

    s_heard.clear();
    vcedSSSetKwordCallbackPtr(askWithin);
    type("5,0\nS\n(cancel)\n5,10\n\n");
    EXPECT_EQ(ssget(L"-M:$:K", prompts, L"Settings"), "ab") << "Esc ends the callback's question alone";
    EXPECT_EQ(s_heard, (std::vector<std::wstring>{L"Settings", L"-5002"}));

    vcedSSSetKwordCallbackPtr(nullptr);
    type("5,0\nS\n");
    EXPECT_EQ(ssget(L"-M:$:K", prompts, L"Settings"), kKeyword);
    wchar_t word[512];
    vcedGetInput(word);
    EXPECT_STREQ(word, L"Settings");
}

TEST_F(Modes, OtherWordsGoToTheHelp)
{
    s_heard.clear();
    s_reply = nullptr;
    vcedSSSetOtherCallbackPtr(hear);
    type("?\nwhat\n5,0\n\n");
    EXPECT_EQ(ssget(L":?"), "a");
    EXPECT_EQ(s_heard, (std::vector<std::wstring>{L"?", L"what"}));
    vcedSSSetOtherCallbackPtr(nullptr);
}

TEST_F(Modes, UnknownModesAreRefused)
{
    for (const wchar_t* mode : {L"Z", L":", L":Z", L"W:", L"::", L"+x", L"XX", L"$"})
        EXPECT_EQ(ssget(mode), kError) << wcslen(mode);
}

// Picks

struct NestedResult {
    int code;
    VcDbObjectId entity;
    vds_point point = {0, 0, 0};
    VcGeMatrix3d matrix;
    std::string containers;
};

class Nested : public Modes {
protected:
    NestedResult nested(const char* script)
    {
        type(script);
        NestedResult r;
        vds_name name = {0, 0};
        vds_matrix matrix;
        resbuf* containers = nullptr;
        r.code = vcedNEntSelP(L"\nPick: ", name, r.point, 0, matrix, &containers);
        if (r.code != RTNORM)
            return r;
        nameToId(name, r.entity);
        std::memcpy(r.matrix.entry, matrix, sizeof matrix);
        for (const resbuf* node = containers; node; node = node->rbnext) {
            VcDbObjectId id;
            EXPECT_EQ(node->restype, RTENAME);
            EXPECT_TRUE(nameToId(node->resval.rlname, id));
            r.containers += letterOf(id);
        }
        releaseRb(containers);
        return r;
    }
    int errnoOf() { return int(ed().vars().integer("ERRNO")); }
};

TEST_F(Nested, WhatComesBack)
{
    VcDbLine& inner = add(new VcDbLine({0, 0, 0}, {10, 0, 0}), "0", &block("B"));
    VcDbBlockReference& reference = insert("B", 60, 60);
    NestedResult r = nested("65,60\n");
    ASSERT_EQ(r.code, RTNORM);
    EXPECT_EQ(r.entity, inner.objectId());
    EXPECT_EQ(r.containers, letterOf(reference.objectId()));
    EXPECT_EQ(r.matrix * VcGePoint3d(), VcGePoint3d(60, 60, 0));
    EXPECT_EQ(r.point[0], 65);

    r = nested("5,0\n");
    ASSERT_EQ(r.code, RTNORM);
    EXPECT_EQ(letterOf(r.entity), "a");
    EXPECT_EQ(r.containers, "");
    EXPECT_EQ(r.matrix, VcGeMatrix3d());
}

TEST_F(Nested, Failures)
{
    EXPECT_EQ(nested("80,80\n").code, RTERROR);
    EXPECT_EQ(errnoOf(), 7);
    EXPECT_EQ(nested("\n").code, RTNONE);
    vcedInitGet(0, L"Undo");
    EXPECT_EQ(nested("\n").code, RTERROR);
    EXPECT_EQ(errnoOf(), 35);
    vcedInitGet(0, L"Undo");
    EXPECT_EQ(nested("u\n").code, RTKWORD);
    vcedInitGet(128, nullptr);
    EXPECT_EQ(nested("anything\n").code, RTKWORD);
    wchar_t text[512];
    vcedGetInput(text);
    EXPECT_STREQ(text, L"anything");
    EXPECT_EQ(nested("(cancel)\n").code, RTCAN);
}

TEST_F(Nested, AtAGivenPoint)
{
    vds_name name = {0, 0};
    vds_point at = {5, 10, 0};
    vds_matrix matrix;
    resbuf* containers = nullptr;
    ASSERT_EQ(vcedNEntSelP(nullptr, name, at, 1, matrix, &containers), RTNORM);
    EXPECT_EQ(name[0], idOf('b').slot());
    EXPECT_EQ(containers, nullptr);
    at[1] = 15;
    EXPECT_EQ(vcedNEntSelP(nullptr, name, at, 1, matrix, &containers), RTERROR);
    EXPECT_EQ(errnoOf(), 7);
}

TEST_F(Nested, AnObjectGivenByNameIsPickedOnItself)
{
    RbBuilder chain;
    vds_name name, picked;
    idToName(idOf('b'), name);
    chain.addName(RTENAME, name);
    ed().pushSource(std::make_unique<ArgumentSource>(chain.take()));
    vds_point at = {-1, -1, -1};
    ASSERT_EQ(vcedEntSel(nullptr, picked, at), RTNORM);
    EXPECT_EQ(picked[0], name[0]);
    EXPECT_EQ(at[1], 10);
}

TEST_F(Nested, EntSelTakesTheWholeReference)
{
    add(new VcDbLine({0, 0, 0}, {10, 0, 0}), "0", &block("B"));
    VcDbBlockReference& reference = insert("B", 60, 60);
    vds_name name;
    vds_point at;
    type("65,60\n");
    ASSERT_EQ(vcedEntSel(nullptr, name, at), RTNORM);
    EXPECT_EQ(name[0], reference.objectId().slot());
    type("80,80\n");
    EXPECT_EQ(vcedEntSel(nullptr, name, at), RTERROR);
    EXPECT_EQ(errnoOf(), 7);
}

// Transforming and dragging

std::vector<VcGePoint3d> s_sampled;
int sample(vds_point point, vds_matrix matrix)
{
    s_sampled.emplace_back(point[0], point[1], point[2]);
    matrix[0][3] = point[0];
    return RTNORM;
}

struct DragCase {
    const char* name;
    int bits;
    const char* typed;
    int result;
    std::size_t samples;
};

TEST_F(Modes, Dragging)
{
    const DragCase cases[] = {
        {"Point", 0, "7,8\n", RTNORM, 1},      {"Keyword", 0, "r\n", RTKWORD, 0}, {"Enter", 0, "\n", RTNONE, 0},
        {"Cancel", 0, "(cancel)\n", RTCAN, 0}, {"Text", 0, "45d\n", RTSTR, 0},    {"OldBits", 1152, "7,8\n", RTNORM, 1},
    };
    for (const DragCase& c : cases) {
        s_sampled.clear();
        vcedInitGet(c.bits, L"Repeat");
        type(c.typed);
        vds_point point = {-1, -1, -1};
        const vds_name none = {0, 0};
        EXPECT_EQ(vcedDragGen(none, L"\nTo: ", 0, sample, point), c.result) << c.name;
        EXPECT_EQ(s_sampled.size(), c.samples) << c.name;
        EXPECT_EQ(point[0], c.result == RTNORM ? 7 : -1) << c.name;
    }
    wchar_t text[512];
    vcedInitGet(0, L"Repeat");
    type("45d\n");
    vds_point point;
    const vds_name none = {0, 0};
    EXPECT_EQ(vcedDragGen(none, nullptr, 0, nullptr, point), RTSTR);
    vcedGetInput(text);
    EXPECT_STREQ(text, L"45d");
}

TEST_F(Modes, TransformingASet)
{
    vds_name set = {0, 0}, name;
    for (const char letter : {'a', 'd', 'b'}) {
        idToName(idOf(letter), name);
        vcedSSAdd(name, set, set);
    }
    const vds_matrix up = {{1, 0, 0, 0}, {0, 1, 0, 100}, {0, 0, 1, 0}, {0, 0, 0, 1}};
    EXPECT_EQ(vcedXformSS(set, up), RTERROR) << "one of them is on a locked layer";
    EXPECT_EQ(db().objectAs<VcDbLine>(idOf('a'))->startPoint(), VcGePoint3d(0, 100, 0));
    EXPECT_EQ(db().objectAs<VcDbLine>(idOf('b'))->startPoint(), VcGePoint3d(0, 110, 0));
    EXPECT_EQ(db().objectAs<VcDbLine>(idOf('d'))->startPoint(), VcGePoint3d(0, 30, 0));
    vcedSSFree(set);
    EXPECT_EQ(vcedXformSS(set, up), RTERROR);
    const vds_name none = {0, 0};
    EXPECT_EQ(vcedXformSS(none, up), RTNORM);
}

TEST_F(Modes, TheMatrixOfATransformIsInTheUcs)
{
    setCurrentUcs(db(), {{}, {0, 1, 0}, {-1, 0, 0}});
    vds_name set = {0, 0}, name;
    idToName(idOf('a'), name);
    vcedSSAdd(name, set, set);
    const vds_matrix along = {{1, 0, 0, 5}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}};
    EXPECT_EQ(vcedXformSS(set, along), RTNORM);
    const VcGePoint3d start = db().objectAs<VcDbLine>(idOf('a'))->startPoint();
    EXPECT_NEAR(start.distanceTo({0, 5, 0}), 0, 1e-12);
    vcedSSFree(set);
}

}
