// How data reads when it is shown.
#pragma once

#include "host/lisp/value.h"

namespace vk::lisp {

enum class PrintStyle {
    readable,  // texts quoted and escaped, as prin1 shows them
    plain,     // texts as they are, as princ shows them
};

VKHOST_API std::string print(const Value& value, PrintStyle style = PrintStyle::readable);

}  // namespace vk::lisp
