// What the functions that work on the drawing share.
#pragma once

#include "host/lisp/function.h"
#include "vkdefs.h"

#include <string>

namespace vk::lisp {

// Entity and selection arguments as the drawing interface takes them.
struct Name {
    vds_name words = {0, 0};
    operator std::int64_t*() { return words; }
    operator const std::int64_t*() const { return words; }
};
Name asEntity(const Value& value);
Name asSelection(const Value& value);
// A null name where the argument is left out.
Name asEntityOrNone(const Value& value);

std::wstring asWide(const Value& value);
Value fromWide(const wchar_t* text);

// Whether the call went well; a cancel by the person ends the program.
bool succeeded(int status);
// What succeeded gives, else nil.
Value entityIf(int status, const Name& name);

}  // namespace vk::lisp
