// Arithmetic. Whole numbers have 32 bits; a result that does not fit becomes a real.

#include "host/lisp/arguments.h"
#include "host/lisp/errors.h"
#include "host/lisp/interpreter.h"
#include "host/lisp/library.h"
#include "host/lisp/printer.h"

#include <cmath>
#include <numeric>

namespace vk::lisp {

namespace {

// Products of two 32-bit numbers do not lose a digit that matters here: whole() tells whether they fit.
template <class Operation>
Value combine(const Value& a, const Value& b, Operation operation)
{
    const double result = operation(asNumber(a), asNumber(b));
    return a.isInteger() && b.isInteger() ? Value::whole(result) : Value::real(result);
}

template <class Operation>
Value fold(Args args, Operation operation)
{
    if (args.empty())
        return Value::integer(0);
    asNumber(args[0]);
    Value result = args[0];
    for (const Value& arg : args.subspan(1))
        result = combine(result, arg, operation);
    return result;
}

Value add(Interpreter&, Args args) { return fold(args, std::plus<double>()); }

Value multiply(Interpreter&, Args args) { return fold(args, std::multiplies<double>()); }

Value subtract(Interpreter&, Args args)
{
    if (args.size() == 1)
        return combine(Value::integer(0), args[0], std::minus<double>());
    return fold(args, std::minus<double>());
}

Value quotient(const Value& a, const Value& b)
{
    if (asNumber(b) == 0)
        throw LispError("divide by zero");
    return combine(a, b,
                   [&](double x, double y) { return a.isInteger() && b.isInteger() ? std::trunc(x / y) : x / y; });
}

Value remainder(const Value& a, const Value& b)
{
    if (asNumber(b) == 0)
        throw LispError("divide by zero");
    return combine(a, b, [](double x, double y) { return std::fmod(x, y); });
}

template <Value (*step)(const Value&, const Value&)>
Value chain(Interpreter&, Args args)
{
    if (args.empty())
        return Value::integer(0);
    asNumber(args[0]);
    Value result = args[0];
    for (const Value& arg : args.subspan(1))
        result = step(result, arg);
    return result;
}

Value addOne(Interpreter&, Args args) { return combine(args[0], Value::integer(1), std::plus<double>()); }

Value subtractOne(Interpreter&, Args args) { return combine(args[0], Value::integer(1), std::minus<double>()); }

Value absolute(Interpreter&, Args args)
{
    const double size = std::fabs(asNumber(args[0]));
    return args[0].isInteger() ? Value::whole(size) : Value::real(size);
}

Value largest(Interpreter&, Args args)
{
    return fold(args, [](double a, double b) { return std::max(a, b); });
}

Value smallest(Interpreter&, Args args)
{
    return fold(args, [](double a, double b) { return std::min(a, b); });
}

Value fix(Interpreter&, Args args) { return Value::whole(std::trunc(asNumber(args[0]))); }

Value toReal(Interpreter&, Args args) { return Value::real(asNumber(args[0])); }

double defined(double result, const Value& argument)
{
    if (std::isnan(result))
        throw LispError("function undefined for argument: " + print(argument));
    return result;
}

Value squareRoot(Interpreter&, Args args) { return Value::real(defined(std::sqrt(asNumber(args[0])), args[0])); }

Value logarithm(Interpreter&, Args args)
{
    if (asNumber(args[0]) <= 0)
        throw LispError("function undefined for argument: " + print(args[0]));
    return Value::real(std::log(args[0].number()));
}

Value power(Interpreter&, Args args)
{
    const double result = defined(std::pow(asNumber(args[0]), asNumber(args[1])), args[0]);
    if (std::isinf(result) && args[0].number() == 0)
        throw LispError("divide by zero");
    return args[0].isInteger() && args[1].isInteger() ? Value::whole(result) : Value::real(result);
}

Value exponential(Interpreter&, Args args) { return Value::real(std::exp(asNumber(args[0]))); }

Value sine(Interpreter&, Args args) { return Value::real(std::sin(asNumber(args[0]))); }

Value cosine(Interpreter&, Args args) { return Value::real(std::cos(asNumber(args[0]))); }

Value arcTangent(Interpreter&, Args args)
{
    const double y = asNumber(args[0]);
    return Value::real(args.size() == 1 ? std::atan(y) : std::atan2(y, asNumber(args[1])));
}

Value greatestDivisor(Interpreter&, Args args)
{
    std::int64_t divisor = 0;
    for (const Value& arg : args)
        divisor = std::gcd(divisor, std::int64_t(asInteger(arg)));
    return Value::whole(static_cast<double>(divisor));
}

std::uint32_t bits(const Value& value) { return static_cast<std::uint32_t>(asInteger(value)); }

Value fromBits(std::uint32_t pattern) { return Value::integer(static_cast<std::int32_t>(pattern)); }

Value bitAnd(Interpreter&, Args args)
{
    std::uint32_t pattern = args.empty() ? 0 : ~0u;
    for (const Value& arg : args)
        pattern &= bits(arg);
    return fromBits(pattern);
}

Value bitOr(Interpreter&, Args args)
{
    std::uint32_t pattern = 0;
    for (const Value& arg : args)
        pattern |= bits(arg);
    return fromBits(pattern);
}

Value bitNot(Interpreter&, Args args) { return fromBits(~bits(args[0])); }

Value bitShift(Interpreter&, Args args)
{
    const std::uint32_t pattern = bits(args[0]);
    const std::int64_t places = asInteger(args[1]);
    if (places <= -32 || places >= 32)
        return fromBits(0);
    return fromBits(places >= 0 ? pattern << places : pattern >> -places);
}

// The four low bits of the rule say what both, only the second's absence, only the first's and neither give.
Value boole(Interpreter&, Args args)
{
    const std::uint32_t rule = bits(args[0]);
    std::uint32_t a = bits(args[1]);
    for (const Value& arg : args.subspan(2)) {
        const std::uint32_t b = bits(arg);
        a = (rule & 1 ? a & b : 0) | (rule & 2 ? a & ~b : 0) | (rule & 4 ? ~a & b : 0) | (rule & 8 ? ~a & ~b : 0);
    }
    return fromBits(a);
}

Value isNegative(Interpreter& lisp, Args args) { return lisp.truth(asNumber(args[0]) < 0); }

Value isZero(Interpreter& lisp, Args args) { return lisp.truth(asNumber(args[0]) == 0); }

Value isInfinite(Interpreter& lisp, Args args) { return lisp.truth(args[0].isReal() && std::isinf(args[0].real())); }
Value isNoNumber(Interpreter& lisp, Args args) { return lisp.truth(args[0].isReal() && std::isnan(args[0].real())); }

constexpr Builtin kNumbers[] = {
    {"VL-INFP", isInfinite, 1, 1},
    {"VL-NANP", isNoNumber, 1, 1},
    {"+", add, 0, kAnyNumber},
    {"-", subtract, 0, kAnyNumber},
    {"*", multiply, 0, kAnyNumber},
    {"/", chain<quotient>, 0, kAnyNumber},
    {"REM", chain<remainder>, 0, kAnyNumber},
    {"1+", addOne, 1, 1},
    {"1-", subtractOne, 1, 1},
    {"ABS", absolute, 1, 1},
    {"MAX", largest, 0, kAnyNumber},
    {"MIN", smallest, 0, kAnyNumber},
    {"FIX", fix, 1, 1},
    {"FLOAT", toReal, 1, 1},
    {"SQRT", squareRoot, 1, 1},
    {"EXPT", power, 2, 2},
    {"EXP", exponential, 1, 1},
    {"LOG", logarithm, 1, 1},
    {"SIN", sine, 1, 1},
    {"COS", cosine, 1, 1},
    {"ATAN", arcTangent, 1, 2},
    {"GCD", greatestDivisor, 0, kAnyNumber},
    {"LOGAND", bitAnd, 0, kAnyNumber},
    {"LOGIOR", bitOr, 0, kAnyNumber},
    {"LSH", bitShift, 2, 2},
    {"~", bitNot, 1, 1},
    {"BOOLE", boole, 2, kAnyNumber},
    {"MINUSP", isNegative, 1, 1},
    {"ZEROP", isZero, 1, 1},
};

}  // namespace

void defineNumbers(Interpreter& lisp) { lisp.define(kNumbers); }

}  // namespace vk::lisp
