// A host with an empty drawing, its settings in a folder of their own, and what it printed.
#pragma once

#include "core/Extend_Mpd.h"
#include "host/base/console.h"
#include "host/base/message_service.h"
#include "host/base/settings.h"
#include "host/edit/editor.h"
#include "host/edit/host_application.h"
#include "host/edit/module_loader.h"
#include "host/lisp/evaluator.h"
#include "sdk/vcdb_chains.h"
#include "sdk/vced.h"
#include "sdk/vcut.h"

#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>

class HostTest : public testing::Test, private MessageService {
protected:
    HostTest()
    {
        setSettingsFolder(m_folder);
        vk::edit::startHostApplication();
        editor().setLisp(std::make_unique<vk::lisp::EditorLisp>(editor()));
        editor().openDrawing(std::make_unique<VcDbDatabase>());
        editor().setTranscriptSink([this](std::string_view text) { printed += text; });
        setMessageService(this);
    }
    ~HostTest() override
    {
        vk::edit::ModuleLoader::instance().unloadAll();
        setMessageService(nullptr);
        editor().closeDrawing();
        editor().setLisp(nullptr);
        editor().setTranscriptSink({});
        std::filesystem::remove_all(m_folder);
    }

    static vk::edit::Editor& editor() { return vk::edit::Editor::instance(); }

    static int shortVariable(const wchar_t* name)
    {
        resbuf value = {};
        return vcedGetVar(name, &value) == RTNORM ? value.resval.rint : -999;
    }

    static void makeText(vds_name name)
    {
        const vds_point at = {1, 2, 0};
        const RbPtr chain(vcutBuildList(RTDXF0, L"TEXT", 8, L"0", 10, at, 40, 2.5, 1, L"one", RTNONE));
        ASSERT_EQ(vcdbEntMakeX(chain.get(), name), RTNORM);
    }

    std::string printed;
    std::vector<std::string> boxes;  // texts of the message boxes that were shown

private:
    int show(std::string_view text, std::string_view, unsigned style) override
    {
        boxes.emplace_back(text);
        return defaultMessageButton(style);
    }

    const std::string m_folder = [] {
        std::string name = testing::TempDir() + "vekad-extend-XXXXXX";
        return std::string(mkdtemp(name.data())) + "/";
    }();
};

// With the module's texts, as a command has them.
class CommandTest : public HostTest {
protected:
    CommandTest()
    {
        hLibModule = loadResourceDll(L"VkExtendRes.dll");
        m_resources = std::make_unique<CVcModuleResourceOverride>(hLibModule);
    }
    ~CommandTest() override
    {
        m_resources.reset();
        FreeLibrary(hLibModule);
        hLibModule = nullptr;
    }

private:
    std::unique_ptr<CVcModuleResourceOverride> m_resources;
};
