// Numbers as texts in the drawing's units, and names against wild-cards.

#include "host/base/wildcard.h"
#include "host/lisp/arguments.h"
#include "host/lisp/drawing.h"
#include "host/lisp/interpreter.h"
#include "host/lisp/library.h"
#include "host/lisp/measures.h"

#include "vcdb_chains.h"

namespace vk::lisp {

namespace {

constexpr std::size_t kUnitTextLength = 133;
constexpr int kFromDrawing = -1;

int asIntegerOr(const Value& value, int otherwise) { return value ? asInteger(value) : otherwise; }

template <int (*write)(double, int, int, wchar_t*)>
Value numberToText(Interpreter&, Args args)
{
    wchar_t text[kUnitTextLength] = L"";
    const int unit = asIntegerOr(argument(args, 1), kFromDrawing);
    const int precision = asIntegerOr(argument(args, 2), kFromDrawing);
    return succeeded(write(asNumber(args[0]), unit, precision, text)) ? fromWide(text) : Value();
}

template <int (*read)(const wchar_t*, int, double*)>
Value textToNumber(Interpreter&, Args args)
{
    double number = 0;
    const int unit = asIntegerOr(argument(args, 1), kFromDrawing);
    return succeeded(read(asWide(args[0]).c_str(), unit, &number)) ? Value::real(number) : Value();
}

// A number, or each number of a list, in another unit; nil where the units are unknown or measure different things.
Value cvunit(Interpreter&, Args args)
{
    const auto from = measureNamed(asText(args[1])), to = measureNamed(asText(args[2]));
    if (!from || !to || !converted(0, *from, *to))
        return Value();
    const auto convert = [&](const Value& number) { return Value::real(*converted(asNumber(number), *from, *to)); };
    if (!args[0].isCons())
        return convert(args[0]);
    ListBuilder list;
    for (const Value& number : Items(args[0]))
        list.add(convert(number));
    return list.take();
}

Value wcmatch(Interpreter& lisp, Args args)
{
    const Wildcard pattern(asText(args[1]), Wildcard::Case::Counts);
    return lisp.truth(pattern.matches(asText(args[0])));
}

constexpr Builtin kUnits[] = {
    {"RTOS", numberToText<vcdbRToS>, 1, 3},
    {"ANGTOS", numberToText<vcdbAngToS>, 1, 3},
    {"DISTOF", textToNumber<vcdbDisToF>, 1, 2},
    {"ANGTOF", textToNumber<vcdbAngToF>, 1, 2},
    {"CVUNIT", cvunit, 3, 3},
    {"WCMATCH", wcmatch, 2, 2},
};

}  // namespace

void defineUnits(Interpreter& lisp) { lisp.define(kUnits); }

}  // namespace vk::lisp
