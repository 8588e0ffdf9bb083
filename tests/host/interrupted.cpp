// What a running command learns of an interrupt, and that the next one knows nothing of it.
#include "select_support.h"

namespace {

int s_rounds = 0;
int s_breakAt = 0;

// Goes on until the person breaks in.
void countRounds()
{
    for (s_rounds = 0; s_rounds < 100 && !vcedUsrBrk(); ++s_rounds)
        if (s_rounds + 1 == s_breakAt)
            vk::edit::Editor::instance().interrupt();
}

class Interrupted : public seltest::Drawing {
protected:
    void SetUp() override
    {
        Drawing::SetUp();
        ed().setTranscriptSink([](std::string_view) {});
        vk::edit::CommandTable::instance().add(
            {.group = "INTERRUPTED", .name = "COUNTROUNDS", .localName = "COUNTROUNDS", .handler = countRounds});
    }
    void TearDown() override
    {
        vk::edit::CommandTable::instance().removeGroup("INTERRUPTED");
        ed().setTranscriptSink({});
        Drawing::TearDown();
    }
    static int roundsWithBreakAt(int round)
    {
        s_breakAt = round;
        type("COUNTROUNDS\n");
        ed().run();
        return s_rounds;
    }
};

TEST_F(Interrupted, NobodyBreaksIn) { EXPECT_EQ(roundsWithBreakAt(0), 100); }

TEST_F(Interrupted, TheRoundAfterTheBreakKnowsOfIt) { EXPECT_EQ(roundsWithBreakAt(3), 3); }

TEST_F(Interrupted, TheNextCommandKnowsNothingOfIt)
{
    EXPECT_EQ(roundsWithBreakAt(1), 1);
    EXPECT_EQ(roundsWithBreakAt(0), 100);
    EXPECT_EQ(vcedUsrBrk(), 0);
}

}
