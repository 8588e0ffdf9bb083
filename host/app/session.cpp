#include "host/app/session.h"

#include "host/base/files.h"
#include "host/base/modules.h"
#include "host/base/settings.h"
#include "host/commands/all_commands.h"
#include "host/edit/editor.h"
#include "host/edit/host_application.h"
#include "host/edit/module_loader.h"
#include "host/lisp/evaluator.h"

#include <fmt/format.h>

namespace vk::app {

namespace {

constexpr const char* kDialogLibrary = "VkUInfo.dll";
constexpr const char* kModules[] = {"libVkExtend.vrx", "VkLayerManager.vrx"};

}

Session::Session(const std::string& profileFolder)
{
    if (!profileFolder.empty())
        setSettingsFolder(profileFolder);
    edit::startHostApplication();
    edit::Editor& editor = edit::Editor::instance();
    commands::registerHostCommands();
    editor.setLisp(std::make_unique<lisp::EditorLisp>(editor));
}

// Modules go before the Lisp that knows their functions, and both before the library that shows their dialogs.
Session::~Session()
{
    edit::Editor& editor = edit::Editor::instance();
    if (editor.hasDrawing())
        edit::ModuleLoader::instance().drawingClosing();
    edit::ModuleLoader::instance().unloadAll();
    editor.closeDrawing();
    editor.setLisp(nullptr);
    editor.setTranscriptSink({});
}

std::vector<std::string> Session::open(std::unique_ptr<VcDbDatabase> drawing)
{
    std::vector<std::string> faults;
    edit::Editor::instance().openDrawing(std::move(drawing));
    std::string error;
    if (!findModule(kDialogLibrary) && !loadModule(kDialogLibrary, Binding::Global, error))
        faults.push_back(fmt::format("{} cannot be loaded: {}", kDialogLibrary, error));
    for (const char* name : kModules) {
        const std::string path = joinPath(hostFolder(), name);
        if (!fileExists(path))
            continue;
        const std::string fault = edit::ModuleLoader::instance().load(path);
        if (!fault.empty())
            faults.push_back(fault);
    }
    return faults;
}

}  // namespace vk::app
