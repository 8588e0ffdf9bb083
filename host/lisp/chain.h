// Chains of result buffers as Lisp data, and back.
//
// A chain of groups is an association list: (40 . 2.5), (10 1.0 2.0 0.0), extended data as (-3 ("APP" (1000 . "x"))).
// A chain of arguments or results carries each value under its result code, lists between marks.
#pragma once

#include "host/base/rb.h"
#include "host/lisp/function.h"

namespace vk::lisp {

VKHOST_API Value groupsToList(const resbuf* chain);
// Throws LispError for an item that is no group of its code's kind.
VKHOST_API RbPtr listToGroups(const Value& list);

VKHOST_API std::vector<Value> chainToValues(Interpreter& lisp, const resbuf* chain);
// Which lists of two or three numbers travel as points: those of reals alone, where any list may be meant.
enum class PointRule { Reals, AnyNumbers };
void addValue(RbBuilder& chain, const Value& value, PointRule rule = PointRule::Reals);
VKHOST_API RbPtr valuesToChain(Args values);

Value entityValue(const vds_name name);
// An owned set is freed with the last value that stands for it.
enum class Ownership { Borrowed, Owned };
Value selectionValue(const vds_name set, Ownership ownership);
void copyName(const Value& value, vds_name nameOut);

void toPoint(const Value& value, vds_point pointOut);
Value pointValue(const vds_point point);

}  // namespace vk::lisp
