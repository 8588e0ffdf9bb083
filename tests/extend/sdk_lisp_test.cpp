// Functions and commands that a module adds: how Lisp and the command line reach them, and what is left when it goes.
#include "host/base/modules.h"
#include "tests/extend/sdk_support.h"

namespace {

constexpr const char* kModule = "LispModule.vrx";

class Added : public SdkTest {
protected:
    Added()
    {
        const std::string program = modulePath(programModule());
        error = vk::edit::ModuleLoader::instance().load(program.substr(0, program.rfind('/') + 1) + kModule);
    }
    // What an expression prints.
    std::string value(const std::string& expression)
    {
        printed.clear();
        run("(progn (princ \"<\") (prin1 " + expression + ") (princ \">\") (princ))\n");
        const std::size_t from = printed.rfind('<'), to = printed.rfind('>');
        return from < to && to != printed.npos ? printed.substr(from + 1, to - from - 1) : printed;
    }
    std::string error;
};

struct ValueCase {
    const char* expression;
    const char* printed;
};
const ValueCase kValues[] = {
    {"(give-int)", "2147483647"},
    {"(give-real)", "2.5"},
    {"(give-text)", "\"100% \xC3\xA9\""},
    {"(give-nil)", "nil"},
    {"(give-t)", "T"},
    {"(give-point)", "(1.0 2.0 3.0)"},
    {"(say-nothing)", "nil"},
    {"(twice)", "2"},
    {"(give-nulls)", "\"\""},
    {"(echo-all)", "nil"},
    {"(echo-all 1 2.5 \"a\")", "(1 2.5 \"a\")"},
    {"(echo-all nil T)", "(nil T)"},
    {"(echo-all '(1 (2 \"b\")) '(0 . \"LINE\"))", "((1 (2 \"b\")) (0 . \"LINE\"))"},
    {"(first-only 7 8)", "7"},
    {"(first-only \"x\")", "\"x\""},
    {"(echo-all 100000 -5)", "(100000 -5)"},
    {"(echo-all '(1.0 2.0 3.0))", "((1.0 2.0 3.0))"},
};

TEST_F(Added, ValuesGoBothWays)
{
    ASSERT_EQ(error, "");
    for (const ValueCase& c : kValues)
        EXPECT_EQ(value(c.expression), c.printed) << c.expression;
}

TEST_F(Added, NamesOfEntitiesAndSetsArrive)
{
    ASSERT_EQ(error, "");
    EXPECT_EQ(value("(give-last)"), "nil");
    line(0, 0, 1, 1);
    EXPECT_EQ(value("(cdr (assoc 0 (entget (give-last))))"), "\"LINE\"");
    EXPECT_EQ(value("(eq (give-last) (car (echo-all (entlast))))"), "T");
    run("(setq all (ssget \"_X\"))\n");
    EXPECT_EQ(value("(sslength (car (echo-all all)))"), "1");
}

TEST_F(Added, FailuresEndTheExpression)
{
    ASSERT_EQ(error, "");
    run("(progn (refuse) (command \"_.POINT\" \"1,1\"))\n");
    EXPECT_TRUE(said("refused: 50%"));
    EXPECT_EQ(countOfDrawing(), 0) << "what follows is not done";
    EXPECT_TRUE(editor().hasFailed());
    run("(progn (fall) (command \"_.POINT\" \"1,1\"))\n");
    EXPECT_EQ(countOfDrawing(), 0);
    EXPECT_EQ(value("(give-int)"), "2147483647") << "the next call is another";
    EXPECT_EQ(vk::edit::ModuleLoader::instance().current(), nullptr) << "though the module threw";
}

TEST_F(Added, CommandsOfItAreTyped)
{
    ASSERT_EQ(error, "");
    run("TESTCIRCLE\n");
    run("_.testcircle\n");
    run("probekreis\n");
    EXPECT_EQ(countOfDrawing(), 3);
    EXPECT_EQ(vcedCommand(RTSTR, L"_.TESTCIRCLE", RTNONE), RTNORM) << "and driven";
    EXPECT_EQ(countOfDrawing(), 4);
    run("DRAW-POINT\n");
    EXPECT_EQ(countOfDrawing(), 5) << "c:draw-point";
    run("U\n");
    EXPECT_EQ(countOfDrawing(), 4) << "is one step";
}

TEST_F(Added, NothingStaysWhenItGoes)
{
    ASSERT_EQ(error, "");
    EXPECT_EQ(vk::edit::ModuleLoader::instance().unload(kModule), "");
    run("(give-int)\n");
    EXPECT_FALSE(said("2147483647"));
    run("TESTCIRCLE\n");
    EXPECT_TRUE(said("Unknown command \"TESTCIRCLE\""));
    run("DRAW-POINT\n");
    EXPECT_EQ(countOfDrawing(), 0);
    EXPECT_NE(vk::edit::ModuleLoader::instance().unload(kModule), "") << "it is not loaded any more";
}

TEST_F(Added, ItServesTheNextDrawingToo)
{
    ASSERT_EQ(error, "");
    editor().openDrawing(std::make_unique<VcDbDatabase>());
    vk::edit::ModuleLoader::instance().drawingOpened();
    EXPECT_EQ(value("(give-int)"), "2147483647");
    run("TESTCIRCLE\n");
    EXPECT_EQ(countOfDrawing(), 1);
}

TEST_F(Added, OutsideACallThereIsNothingToAnswer)
{
    EXPECT_EQ(vcedGetArgs(), nullptr);
    EXPECT_EQ(vcedGetFunCode(), -1);
    EXPECT_EQ(vcedRetInt(1), RTERROR);
    EXPECT_EQ(vcedRetNil(), RTERROR);
    EXPECT_EQ(vcedRetVoid(), RTERROR);
    EXPECT_EQ(vcedRetList(nullptr), RTERROR);
    EXPECT_EQ(vcedDefunEx(L"stray", L"", 1), RTERROR) << "of no module";
    EXPECT_EQ(vcedDefunEx(nullptr, nullptr, 1), RTERROR);
    EXPECT_EQ(vcedUndef(nullptr, 1), RTERROR);
}

TEST_F(Added, WhatIsNoModuleIsToldAndNotKept)
{
    auto& loader = vk::edit::ModuleLoader::instance();
    const auto before = loader.loaded();
    EXPECT_NE(loader.load("/nowhere/none.vrx"), "");
    EXPECT_NE(loader.load(""), "");
    const std::string program = modulePath(programModule());
    const std::string resources = program.substr(0, program.rfind('/') + 1) + "VkExtendRes.dll";
    EXPECT_NE(loader.load(resources).find("entry point"), std::string::npos);
    EXPECT_EQ(loader.loaded(), before);
}

}  // namespace
