// What the floors above give to the system layer: message boxes and the state of keys.
#pragma once

#include "host/base/api.h"

#include <string_view>

class MessageService {
public:
    virtual ~MessageService() = default;
    // One of the numbers IDOK to IDNO; the style is that of MessageBoxW.
    virtual int show(std::string_view text, std::string_view title, unsigned style) = 0;
    virtual short keyState(int key) { return 0; }
};

// Null restores the answer without a service: the text is printed, the default button is pressed. Not owned.
VKHOST_API void setMessageService(MessageService* service);

// The buttons of a style in their order, ended by 0, and the one that Enter presses.
VKHOST_API const int* messageButtons(unsigned style);
VKHOST_API int defaultMessageButton(unsigned style);
