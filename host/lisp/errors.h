// How an evaluation ends early. These unwind inside the Lisp only; Interpreter::evaluate turns them into an outcome.
#pragma once

#include <stdexcept>
#include <string>

namespace vk::lisp {

class LispError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// The person pressed Esc, or a program asked for the same.
class LispCancel : public std::runtime_error {
public:
    LispCancel() : std::runtime_error("Function cancelled") {}
};

// Someone stopped the evaluation from outside: no program can catch this.
class LispInterrupt : public LispCancel {};

}  // namespace vk::lisp
