// Message boxes. Without a window their text is in the transcript, their button as the script has laid down.
#pragma once

#include "host/base/message_service.h"

namespace vk::ui {

class MessageBoxes : public MessageService {
public:
    // A box that nobody answered takes its default button; where it asked for a choice, the run has failed.
    int show(std::string_view text, std::string_view title, unsigned style) override;
    short keyState(int key) override;
};

}  // namespace vk::ui
