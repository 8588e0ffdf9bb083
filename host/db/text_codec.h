// How the texts of a file become UTF-8 and back: code page, \U+XXXX, carets for control characters.
#pragma once

#include "host/base/api.h"

#include <string>
#include <string_view>

class VKHOST_API TextDecoder {
public:
    virtual ~TextDecoder();
    // Appends nothing: replaces what out holds.
    virtual void decode(std::string_view raw, std::string& out) const = 0;
};
