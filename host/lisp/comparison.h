// Equality of whole structures.
#pragma once

#include "host/lisp/value.h"

namespace vk::lisp {

class Interpreter;

// Lists compare item by item; a whole number equals the real of its value; reals may differ by `fuzz`.
bool isEqual(Interpreter& lisp, const Value& a, const Value& b, double fuzz = 0);

}  // namespace vk::lisp
