// What commands may lean on when they drive other commands: arguments, defaults, what is undone, what is left behind.
#include "sdk/vcstring.h"
#include "tests/extend/sdk_support.h"

namespace {

class Driving : public SdkTest {
protected:
    // Runs the work as a module's command; what it throws and leaves open is the editor's to settle.
    static int asCommand(const std::function<void()>& work)
    {
        s_work = work;
        return editor().invokeModuleCommand(
            "TESTCOMMAND", [] { s_work(); }, 0);
    }
    static int active() { return shortVariable(L"CMDACTIVE"); }
    static Name last()
    {
        Name name;
        vcdbEntLast(name.value);
        return name;
    }
    static Name point(double x, double y)
    {
        const vds_point at = {x, y, 0};
        return made(vcutBuildList(RTDXF0, L"POINT", 8, L"0", 10, at, RTNONE));
    }
    static std::function<void()> s_work;
};
std::function<void()> Driving::s_work;

TEST_F(Driving, ArgumentsOfEveryKind)
{
    const vds_point flat = {1, 2, 99}, deep = {1, 2, 3};
    EXPECT_EQ(vcedCommand(RTSTR, L"_.CIRCLE", RT3DPOINT, deep, RTREAL, 2.5, RTNONE), RTNORM);
    EXPECT_EQ(realOf(last(), 40), 2.5);
    EXPECT_TRUE(pointOf(last(), 10).isEqualTo({1, 2, 3}));
    EXPECT_EQ(vcedCommand(RTSTR, L"_.CIRCLE", RTPOINT, flat, RTSHORT, 4, RTNONE), RTNORM);
    EXPECT_EQ(realOf(last(), 40), 4);
    EXPECT_TRUE(pointOf(last(), 10).isEqualTo({1, 2, 0})) << "two coordinates lie on the elevation";
    EXPECT_EQ(vcedCommand(RTSTR, L"_.CIRCLE", RTSTR, L"5,6", RTLONG, 100000, RTNONE), RTNORM);
    EXPECT_EQ(realOf(last(), 40), 100000);
    const Name picked = last();
    Name set;
    ASSERT_EQ(vcedSSAdd(picked, nullptr, set.value), RTNORM);
    EXPECT_EQ(vcedCommand(RTSTR, L"_.MOVE", RTPICKS, set.value, RTSTR, L"", RTSTR, L"0,0", RTSTR, L"10,0", RTNONE),
              RTNORM);
    EXPECT_EQ(pointOf(picked, 10).x, 15);
    vcedSSFree(set);
    EXPECT_EQ(vcedCommand(RTSTR, L"_.ERASE", RTENAME, picked.value, RTSTR, L"", RTNONE), RTNORM);
    EXPECT_FALSE(exists(picked));
    const RbPtr chain(vcutBuildList(RTSTR, L"_.POINT", RTSTR, L"7,7", RTNONE));
    EXPECT_EQ(vcedCmd(chain.get()), RTNORM);
    EXPECT_EQ(pointOf(last(), 10).x, 7);
    EXPECT_TRUE(chain->rbnext) << "the chain stays the caller's";
    EXPECT_EQ(active(), 0);
}

TEST_F(Driving, ACommandWaitsForMoreAndEndsOnce)
{
    asCommand([] {
        EXPECT_EQ(vcedCommand(RTSTR, L"_.LINE", RTSTR, L"0,0", RTNONE), RTNORM);
        EXPECT_NE(active() & 1, 0);
        EXPECT_NE(textVariable(L"CMDNAMES").find(L"LINE"), std::wstring::npos);
        EXPECT_EQ(vcedCommand(RTSTR, L"5,0", RTNONE), RTNORM);
        EXPECT_EQ(vcedCommand(RTSTR, L"5,5", RTSTR, L"", RTNONE), RTNORM);
        EXPECT_EQ(vcedCommand(RTSTR, L"", RTNONE), RTNORM) << "Enter behind the end does nothing";
        EXPECT_EQ(vcedCommand(RTSTR, L"", RTSTR, L"", RTNONE), RTNORM);
    });
    EXPECT_EQ(countOfDrawing(), 2);
    EXPECT_EQ(active(), 0);
}

TEST_F(Driving, NothingCancelsWhatWaits)
{
    asCommand([] {
        vcedCommand(RTSTR, L"_.CIRCLE", RTSTR, L"0,0", RTNONE);
        EXPECT_EQ(vcedCommand(RTNONE), RTNORM);
        EXPECT_EQ(vcedCommand(RTNONE), RTNORM) << "there is nothing left to cancel";
    });
    EXPECT_EQ(countOfDrawing(), 0);
    EXPECT_EQ(active(), 0);
}

TEST_F(Driving, WhatWaitsAtTheEndTakesItsDefaultsOrIsCancelled)
{
    const Name moved = point(1, 1);
    asCommand([&] { vcedCommand(RTSTR, L"_.MOVE", RTENAME, moved.value, RTSTR, L"", RTSTR, L"5,0", RTNONE); });
    EXPECT_TRUE(pointOf(moved, 10).isEqualTo({6, 1, 0})) << "Enter takes the first point as the displacement";
    asCommand([] { vcedCommand(RTSTR, L"_.LINE", RTSTR, L"0,0", RTSTR, L"9,9", RTNONE); });
    EXPECT_EQ(countOfDrawing(), 2) << "what was drawn stays";
    asCommand([] { vcedCommand(RTSTR, L"_.CIRCLE", RTNONE); });
    EXPECT_EQ(countOfDrawing(), 2);
    EXPECT_EQ(active(), 0);
}

TEST_F(Driving, WrongCallsFailAndLeaveNothingOpen)
{
    EXPECT_EQ(vcedCommand(RTSTR, L"_.NOSUCHCOMMAND", RTSTR, L"1", RTNONE), RTERROR);
    EXPECT_TRUE(said("NOSUCHCOMMAND"));
    EXPECT_EQ(vcedCommand(RTREAL, 1.0, RTNONE), RTERROR) << "a number is no command";
    const Name none;
    EXPECT_EQ(vcedCommand(RTENAME, none.value, RTNONE), RTERROR);
    EXPECT_EQ(vcedCommand(4711, 1, RTNONE), RTERROR) << "a code that has no kind";
    EXPECT_EQ(vcedCommand(RTSTR, nullptr, RTNONE), RTNORM) << "an empty text is Enter";
    EXPECT_EQ(vcedCmd(nullptr), RTNORM);
    EXPECT_EQ(active(), 0);
    EXPECT_EQ(vcedCommand(RTSTR, L"_.POINT", RTSTR, L"1,1", RTNONE), RTNORM) << "and the next one works";
    EXPECT_EQ(countOfDrawing(), 1);
}

TEST_F(Driving, WrongArgumentsAreAskedForAgain)
{
    asCommand([] {
        EXPECT_EQ(vcedCommand(RTSTR, L"_.CIRCLE", RTSTR, L"nowhere", RTSTR, L"3,3", RTREAL, -1.0, RTREAL, 2.0, RTNONE),
                  RTNORM);
    });
    EXPECT_EQ(countOfDrawing(), 1);
    EXPECT_EQ(realOf(last(), 40), 2);
    const Name gone = point(0, 0), stays = point(5, 5);
    ASSERT_EQ(vcdbEntDel(gone), RTNORM);
    asCommand([&] { vcedCommand(RTSTR, L"_.ERASE", RTENAME, gone.value, RTENAME, stays.value, RTSTR, L"", RTNONE); });
    EXPECT_FALSE(exists(stays));
    EXPECT_FALSE(exists(gone));
}

TEST_F(Driving, AnEmptySetAddsNothing)
{
    const Name a = point(0, 0), b = point(1, 1);
    Name empty, freed;
    ASSERT_EQ(vcedSSAdd(nullptr, nullptr, empty.value), RTNORM);
    ASSERT_EQ(vcedSSAdd(nullptr, nullptr, freed.value), RTNORM);
    vcedSSFree(freed);
    const Name null;
    EXPECT_EQ(vcedCommand(RTSTR, L"_.ERASE", RTPICKS, empty.value, RTPICKS, null.value, RTPICKS, freed.value, RTENAME,
                          a.value, RTSTR, L"", RTNONE),
              RTNORM);
    EXPECT_FALSE(exists(a));
    EXPECT_TRUE(exists(b));
    vcedSSFree(empty);
}

TEST_F(Driving, APauseIsForThePerson)
{
    type("8,9\n");
    EXPECT_EQ(vcedCommand(RTSTR, L"_.CIRCLE", RTSTR, L"\\", RTREAL, 2.0, RTNONE), RTNORM);
    EXPECT_TRUE(pointOf(last(), 10).isEqualTo({8, 9, 0}));
    type("(cancel)\n");
    vcedCommand(RTSTR, L"_.CIRCLE", RTSTR, L"\\", RTREAL, 2.0, RTNONE);
    EXPECT_EQ(countOfDrawing(), 1) << "Esc at the pause cancels";
    vcedCommand(RTNONE);
    EXPECT_EQ(active(), 0);
}

TEST_F(Driving, SilenceIsKept)
{
    setShort(L"CMDECHO", 0);
    printed.clear();
    EXPECT_EQ(vcedCommand(RTSTR, L"_.CIRCLE", RTSTR, L"0,0", RTREAL, 2.0, RTNONE), RTNORM);
    EXPECT_EQ(printed, "");
    setShort(L"CMDECHO", 1);
    EXPECT_EQ(vcedCommand(RTSTR, L"_.CIRCLE", RTSTR, L"0,0", RTREAL, 2.0, RTNONE), RTNORM);
    EXPECT_NE(printed, "");
}

TEST_F(Driving, SomeActOnceWhenTheyAreDriven)
{
    block(L"B");
    const Name copied = point(0, 0);
    const Name reference = insert(L"B", 5, 5);
    vcedCommand(RTSTR, L"_.COPY", RTENAME, copied.value, RTSTR, L"", RTSTR, L"0,0", RTSTR, L"5,0", RTNONE);
    EXPECT_EQ(active(), 0);
    EXPECT_EQ(countOfDrawing(), 3);
    vcedCommand(RTSTR, L"_.EXPLODE", RTENAME, reference.value, RTNONE);
    EXPECT_EQ(active(), 0) << "without an Enter behind its objects";
    EXPECT_FALSE(exists(reference));
    vcedCommand(RTSTR, L"_.-INSERT", RTSTR, L"B", RTSTR, L"1,1", RTSTR, L"1", RTSTR, L"1", RTSTR, L"0", RTNONE);
    EXPECT_EQ(active(), 0);
    EXPECT_EQ(textOf(last(), 0), L"INSERT");
    vcedCommand(RTSTR, L"_.FILLET", RTSTR, L"_R", RTREAL, 3.0, RTNONE);
    EXPECT_EQ(active(), 0) << "the radius alone";
    vcedCommand(RTSTR, L"_.CHAMFER", RTSTR, L"_D", RTREAL, 3.0, RTREAL, 4.0, RTNONE);
    EXPECT_EQ(active(), 0);
    resbuf value = {};
    ASSERT_EQ(vcedGetVar(L"FILLETRAD", &value), RTNORM);
    EXPECT_EQ(value.resval.rreal, 3);
    ASSERT_EQ(vcedGetVar(L"CHAMFERB", &value), RTNORM);
    EXPECT_EQ(value.resval.rreal, 4);
}

TEST_F(Driving, ACommandIsOneStepWithAllThatItDrove)
{
    const Name before = point(0, 0);
    asCommand([&] {
        vcedCommand(RTSTR, L"_.CIRCLE", RTSTR, L"0,0", RTREAL, 2.0, RTNONE);
        setReal(L"LTSCALE", 9);
        vcedCommand(RTSTR, L"_.ERASE", RTENAME, before.value, RTSTR, L"", RTNONE);
        line(0, 0, 1, 1);
    });
    EXPECT_EQ(countOfDrawing(), 2);
    run("U\n");
    EXPECT_TRUE(exists(before));
    EXPECT_EQ(countOfDrawing(), 1);
    resbuf value = {};
    ASSERT_EQ(vcedGetVar(L"LTSCALE", &value), RTNORM);
    EXPECT_EQ(value.resval.rreal, 1);
    run("REDO\n");
    EXPECT_FALSE(exists(before));
    EXPECT_EQ(countOfDrawing(), 2);
}

TEST_F(Driving, UWithinTakesBackGroupsThenAll)
{
    asCommand([] {
        point(1, 1);
        vcedCommand(RTSTR, L"_.UNDO", RTSTR, L"_BE", RTNONE);
        point(2, 2);
        vcedCommand(RTSTR, L"_.UNDO", RTSTR, L"_E", RTNONE);
        vcedCommand(RTSTR, L"_.UNDO", RTSTR, L"_BE", RTNONE);
        point(3, 3);
        point(4, 4);
        vcedCommand(RTSTR, L"_.UNDO", RTSTR, L"_E", RTNONE);
        vcedCommand(RTSTR, L"_.U", RTNONE);
        EXPECT_EQ(countOfDrawing(), 2);
        vcedCommand(RTSTR, L"_.UNDO", RTSTR, L"", RTNONE);
        EXPECT_EQ(countOfDrawing(), 1);
        vcedCommand(RTSTR, L"_.U", RTNONE);
        EXPECT_EQ(countOfDrawing(), 0);
        vcedCommand(RTSTR, L"_.U", RTNONE);
        point(5, 5);
    });
    EXPECT_EQ(countOfDrawing(), 1);
    EXPECT_EQ(active(), 0);
    run("U\n");
    EXPECT_EQ(countOfDrawing(), 0);
}

TEST_F(Driving, WhatACommandThrowsEndsItAlone)
{
    EXPECT_EQ(asCommand([] {
                  point(1, 1);
                  throw VkExceptionWithMsg(L"of the module");
              }),
              RTERROR);
    EXPECT_EQ(asCommand([] {
                  point(2, 2);
                  vcedCommand(RTSTR, L"_.LINE", RTSTR, L"0,0", RTNONE);
                  throw std::runtime_error("while a line waits");
              }),
              RTERROR);
    EXPECT_TRUE(said("while a line waits"));
    EXPECT_EQ(active(), 0);
    EXPECT_EQ(countOfDrawing(), 2);
    run("U\n");
    EXPECT_EQ(countOfDrawing(), 1) << "each was a step of its own";
}

TEST_F(Driving, FailingIsTold)
{
    EXPECT_EQ(asCommand([] { vcdbFail(L"it cannot be done: 100%s"); }), RTERROR);
    EXPECT_TRUE(said("it cannot be done: 100%s"));
    EXPECT_TRUE(editor().hasFailed());
    EXPECT_EQ(asCommand([] {}), RTNORM) << "the next one is another";
    EXPECT_EQ(vcdbFail(nullptr), RTNORM);
}

TEST_F(Driving, WhatWasSetForAQuestionEndsWithTheCommand)
{
    asCommand([] { vcedInitGet(1 | 2, L"Undo"); });
    type("0\n");
    double value = 7;
    EXPECT_EQ(vcedGetReal(L"\nReal: ", &value), RTNORM);
    EXPECT_EQ(value, 0);
}

TEST_F(Driving, CommandsWithinCommands)
{
    asCommand([] {
        point(1, 1);
        EXPECT_EQ(editor().invokeModuleCommand(
                      "INNER", [] { point(2, 2); }, 0),
                  RTNORM);
        point(3, 3);
    });
    EXPECT_EQ(countOfDrawing(), 3);
    run("U\n");
    EXPECT_EQ(countOfDrawing(), 0) << "one step";
}

}  // namespace
