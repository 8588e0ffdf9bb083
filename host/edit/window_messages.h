// Messages that modules post to the host's window. A run without one lets them go.
#pragma once

#include "host/base/api.h"

#include <cstdint>
#include <functional>

namespace vk::edit {

struct PostedMessage {
    void* target = nullptr;  // null is the main window
    unsigned message = 0;
    std::uintptr_t wParam = 0;
    std::intptr_t lParam = 0;
};

// The receiver puts a message by and acts on it when no command runs any more. An empty one takes none.
using MessageReceiver = std::function<void(const PostedMessage&)>;
VKHOST_API void setMessageReceiver(MessageReceiver receiver);

}  // namespace vk::edit
