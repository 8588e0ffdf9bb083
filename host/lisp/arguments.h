// What functions take out of their arguments; each throws LispError when the value is of another type.
#pragma once

#include "host/lisp/function.h"

namespace vk::lisp {

[[noreturn]] void badArgument(const char* wanted, const Value& got);

double asNumber(const Value& value);
std::int32_t asInteger(const Value& value);
const std::string& asText(const Value& value);
const Value& asList(const Value& value);
SymbolCell& asSymbol(const Value& value);

struct Point {
    double x = 0, y = 0, z = 0;
    bool isFlat = false;  // came with two coordinates
};
bool isPoint(const Value& value);
Point asPoint(const Value& value);
Value pointValue(double x, double y, double z);
Value pointValue(double x, double y);

// A proper list front to back.
std::vector<Value> itemsOf(const Value& list);
Value listOf(Args items);

// An optional argument: nil where it is left out.
const Value& argument(Args args, std::size_t index);

}  // namespace vk::lisp
