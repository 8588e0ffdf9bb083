#include "host/lisp/comparison.h"

#include "host/lisp/arguments.h"
#include "host/lisp/errors.h"
#include "host/lisp/interpreter.h"
#include "host/lisp/library.h"
#include "host/lisp/printer.h"

#include <cmath>

namespace vk::lisp {

namespace {

bool areAtomsEqual(const Value& a, const Value& b, double fuzz)
{
    if (a.isNumber() && b.isNumber())
        return a.number() == b.number() || std::fabs(a.number() - b.number()) <= fuzz;
    return a.isSame(b);
}

}  // namespace

bool isEqual(Interpreter& lisp, const Value& a, const Value& b, double fuzz)
{
    if (!a.isCons() || !b.isCons())
        return areAtomsEqual(a, b, fuzz);
    std::vector<std::pair<const Value*, const Value*>> waiting{{&a, &b}};
    while (!waiting.empty()) {
        lisp.tick();
        const auto [left, right] = waiting.back();
        waiting.pop_back();
        if (left->isCons() && right->isCons()) {
            if (left->isSame(*right))
                continue;
            waiting.emplace_back(&left->cdr(), &right->cdr());
            waiting.emplace_back(&left->car(), &right->car());
        } else if (!areAtomsEqual(*left, *right, fuzz)) {
            return false;
        }
    }
    return true;
}

namespace {

// Numbers with numbers and texts with texts; the sign of what a three-way comparison gives.
int order(const Value& a, const Value& b)
{
    if (a.isNumber() && b.isNumber())
        return a.number() < b.number() ? -1 : a.number() > b.number() ? 1 : 0;
    if (a.isText() && b.isText())
        return a.text().compare(b.text());
    badArgument("comparable", a.isNumber() || a.isText() ? b : a);
}

bool isSameValue(const Value& a, const Value& b) { return areAtomsEqual(a, b, 0); }

bool differs(const Value& a, const Value& b) { return !isSameValue(a, b); }

bool isLess(const Value& a, const Value& b) { return order(a, b) < 0; }

bool isMore(const Value& a, const Value& b) { return order(a, b) > 0; }

bool isAtMost(const Value& a, const Value& b) { return order(a, b) <= 0; }

bool isAtLeast(const Value& a, const Value& b) { return order(a, b) >= 0; }

template <bool (*holds)(const Value&, const Value&)>
Value eachNext(Interpreter& lisp, Args args)
{
    for (std::size_t i = 1; i < args.size(); ++i)
        if (!holds(args[i - 1], args[i]))
            return Value();
    return lisp.truth(true);
}

Value eq(Interpreter& lisp, Args args) { return lisp.truth(args[0].isSame(args[1])); }

Value equal(Interpreter& lisp, Args args)
{
    const double fuzz = args.size() == 3 ? asNumber(args[2]) : 0;
    return lisp.truth(isEqual(lisp, args[0], args[1], fuzz));
}

Value isNil(Interpreter& lisp, Args args) { return lisp.truth(args[0].isNil()); }

constexpr Builtin kComparisons[] = {
    {"=", eachNext<isSameValue>, 1, kAnyNumber},
    {"/=", eachNext<differs>, 1, kAnyNumber},
    {"<", eachNext<isLess>, 1, kAnyNumber},
    {">", eachNext<isMore>, 1, kAnyNumber},
    {"<=", eachNext<isAtMost>, 1, kAnyNumber},
    {">=", eachNext<isAtLeast>, 1, kAnyNumber},
    {"EQ", eq, 2, 2},
    {"EQUAL", equal, 2, 3},
    {"NULL", isNil, 1, 1},
    {"NOT", isNil, 1, 1},
};

}  // namespace

void defineComparisons(Interpreter& lisp) { lisp.define(kComparisons); }

}  // namespace vk::lisp
