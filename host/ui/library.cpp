// The user-interface library as the host and modules load it: by being there it serves dialogs and message boxes. Qt's
// application is made when a window is first shown, so that a run without one does not pay for it.

#include "host/edit/editor.h"
#include "host/ui/dialog_answers.h"
#include "host/ui/message_box.h"
#include "sdk/system.h"

namespace {

vk::ui::MessageBoxes& messageBox()
{
    static vk::ui::MessageBoxes box;
    return box;
}

constexpr std::uint32_t kAttach = 1;

}

extern "C" VK_SDK int DllMain(void*, std::uint32_t reason, void*)
{
    const bool attaching = reason == kAttach;
    setMessageService(attaching ? &messageBox() : nullptr);
    vk::edit::Editor::instance().setDialogs(attaching ? &vk::ui::dialogAnswers() : nullptr);
    return 1;
}
