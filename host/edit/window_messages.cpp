#include "host/edit/window_messages.h"

#include "sdk/vchost.h"

namespace vk::edit {

static MessageReceiver s_receiver;

void setMessageReceiver(MessageReceiver receiver) { s_receiver = std::move(receiver); }

}  // namespace vk::edit

int vcadPostMessageToWnd(void* target, unsigned message, std::uintptr_t wParam, std::intptr_t lParam)
{
    if (!vk::edit::s_receiver)
        return 0;
    vk::edit::s_receiver({target, message, wParam, lParam});
    return 1;
}

int vkadPostMessageToWnd(void* target, unsigned message, std::uintptr_t wParam, std::intptr_t lParam)
{
    return vcadPostMessageToWnd(target, message, wParam, lParam);
}
