// A host with an empty drawing and the user-interface library, without a window.
#pragma once

#include "host/app/session.h"
#include "host/base/files.h"
#include "host/edit/editor.h"
#include "host/edit/input.h"
#include "host/edit/services.h"
#include "sdk/vcdb_database.h"

#include <gtest/gtest.h>

class UiTest : public testing::Test {
protected:
    UiTest() : m_session(joinPath(testing::TempDir(), "ui-profile-" + std::to_string(::getpid())) + "/")
    {
        for (const std::string& fault : m_session.open(std::make_unique<VcDbDatabase>()))
            ADD_FAILURE() << fault;
        editor().setTranscriptSink([this](std::string_view text) { said += text; });
    }

    static vk::edit::Editor& editor() { return vk::edit::Editor::instance(); }

    static void answer(const std::string& form, std::vector<std::string> steps)
    {
        editor().dialogs()->addAnswer(form, std::move(steps));
    }
    static void type(const std::string& lines)
    {
        editor().pushSource(std::make_unique<vk::edit::ScriptSource>("typed", lines));
    }
    bool hasSaid(const std::string& text) const { return said.find(text) != std::string::npos; }

    // The editor's mark of a failure stays from one test to the next; what was said does not.
    bool hasTrouble() const
    {
        for (const char* trouble : {"cannot be played", "leaves it open", "no answer waiting", "No answer can reach",
                                    "had ended before", "names no button", "Unknown command", "; error"})
            if (hasSaid(trouble))
                return true;
        return false;
    }

    std::string said;

private:
    vk::app::Session m_session;
};
