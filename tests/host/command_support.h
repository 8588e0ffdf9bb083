// A drawing in the editor with the host's commands, which are typed without a transcript.
#pragma once

#include "host/commands/all_commands.h"
#include "select_support.h"

namespace seltest {

class Commands : public Drawing {
protected:
    static void SetUpTestSuite()
    {
        static const bool registered = (vk::commands::registerHostCommands(), true);
        ASSERT_TRUE(registered);
    }
    void SetUp() override
    {
        Drawing::SetUp();
        ed().setTranscriptSink([](std::string_view) {});
    }
    void TearDown() override
    {
        ed().setTranscriptSink({});
        Drawing::TearDown();
    }

    static void run(const std::string& script)
    {
        type(script);
        ed().run();
        ASSERT_EQ(ed().vars().integer("CMDACTIVE"), 0) << script;
    }
};

}
