// What can be called: functions built into the host, and those that programs define.
#pragma once

#include "host/lisp/value.h"

#include <functional>
#include <span>
#include <vector>

namespace vk::lisp {

class Interpreter;

using Args = std::span<const Value>;
using NativeFunction = std::function<Value(Interpreter&, Args)>;
using SpecialForm = Value (*)(Interpreter&, const Value& operands);

constexpr int kAnyNumber = -1;

struct Builtin {
    const char* name;
    Value (*call)(Interpreter&, Args);
    int fewest;
    int most;  // or kAnyNumber
};

struct Form {
    const char* name;
    SpecialForm evaluate;
};

class BuiltinCell : public Cell {
public:
    std::string name;
    NativeFunction call;
    SpecialForm form = nullptr;  // gets its operands unevaluated; then `call` is empty
    int fewest = 0;
    int most = kAnyNumber;
};

class FunctionCell : public Cell {
public:
    std::string name;
    std::vector<Value> parameters;
    std::vector<Value> locals;
    Value body;
};

}  // namespace vk::lisp
