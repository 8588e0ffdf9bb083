// Texts. Characters are Unicode code points; positions of the vl- family count from 0, those of substr from 1.

#include "host/base/numbers.h"
#include "host/base/unicode.h"
#include "host/lisp/arguments.h"
#include "host/lisp/errors.h"
#include "host/lisp/interpreter.h"
#include "host/lisp/letters.h"
#include "host/lisp/library.h"
#include "host/lisp/printer.h"
#include "host/lisp/reader.h"

#include <cmath>

namespace vk::lisp {

namespace {

std::size_t asPosition(const Value& value)
{
    if (asInteger(value) < 0)
        throw LispError("bad argument value: non-negative: " + print(value));
    return static_cast<std::size_t>(value.integer());
}

Value positionOfByte(const std::string& text, std::size_t byte)
{
    return Value::whole(static_cast<double>(countCharacters(std::string_view(text).substr(0, byte))));
}

Value join(Interpreter&, Args args)
{
    std::string joined;
    for (const Value& part : args) {
        joined += asText(part);
        if (joined.size() > TextCell::kLongest)
            throw LispError("string too long");
    }
    return Value::text(std::move(joined));
}

Value length(Interpreter&, Args args)
{
    std::size_t characters = 0;
    for (const Value& text : args)
        characters += countCharacters(asText(text));
    return Value::whole(static_cast<double>(characters));
}

Value part(Interpreter&, Args args)
{
    const std::string_view text = asText(args[0]);
    const std::size_t first = asPosition(args[1]);
    if (first == 0)
        throw LispError("bad argument value: positive: 0");
    const std::string_view tail = text.substr(byteOfCharacter(text, first - 1));
    const Value& wanted = argument(args, 2);
    return Value::text(std::string(wanted ? tail.substr(0, byteOfCharacter(tail, asPosition(wanted))) : tail));
}

// How many characters two texts have in common from the given places on.
Value mismatch(Interpreter&, Args args)
{
    const auto tailOf = [&](std::size_t which, std::size_t place) {
        const std::string_view text = asText(args[which]);
        return splitCharacters(text.substr(byteOfCharacter(text, argument(args, place) ? asPosition(args[place]) : 0)));
    };
    const std::vector<std::string_view> a = tailOf(0, 2), b = tailOf(1, 3);
    const bool anyCase = bool(argument(args, 4));
    std::size_t same = 0;
    while (same < a.size() && same < b.size() && (anyCase ? equalNoCase(a[same], b[same]) : a[same] == b[same]))
        ++same;
    return Value::whole(static_cast<double>(same));
}

Value changeCase(Interpreter&, Args args)
{
    const std::string& text = asText(args[0]);
    return Value::text(argument(args, 1) ? toLower(text) : toUpper(text));
}

Value codeOfFirst(Interpreter&, Args args) { return Value::whole(firstCharacter(asText(args[0]))); }

std::string character(const Value& code)
{
    std::string text;
    constexpr std::int32_t kLastCharacter = 0x10FFFF;
    if (asPosition(code) != 0 && code.integer() <= kLastCharacter)
        appendUtf8(text, static_cast<char32_t>(code.integer()));
    return text;
}

Value characterOfCode(Interpreter&, Args args) { return Value::text(character(args[0])); }

Value textToInteger(Interpreter&, Args args)
{
    const std::int64_t number = leadingInteger(asText(args[0]));
    return Value::integer(static_cast<std::int32_t>(std::clamp<std::int64_t>(number, INT32_MIN, INT32_MAX)));
}

Value textToReal(Interpreter&, Args args)
{
    const double number = leadingReal(asText(args[0]));
    return Value::real(std::isfinite(number) ? number : 0.0);
}

Value integerToText(Interpreter&, Args args) { return Value::text(std::to_string(asInteger(args[0]))); }

Value read(Interpreter& lisp, Args args)
{
    const auto form = Reader(asText(args[0]), lisp.symbols()).next();
    return form.value_or(Value());
}

std::size_t startByte(const std::string& text, Args args, std::size_t index)
{
    const Value& start = argument(args, index);
    return start ? byteOfCharacter(text, asPosition(start)) : 0;
}

Value search(Interpreter&, Args args)
{
    const std::string& text = asText(args[1]);
    const std::size_t found = text.find(asText(args[0]), startByte(text, args, 2));
    return found == std::string::npos ? Value() : positionOfByte(text, found);
}

Value searchCharacter(Interpreter&, Args args)
{
    const std::string wanted = character(args[0]);
    const std::string& text = asText(args[1]);
    const std::size_t start = startByte(text, args, 2);
    const std::size_t found = argument(args, 3) ? text.rfind(wanted) : text.find(wanted, start);
    const bool isFound = found != std::string::npos && found >= start && !wanted.empty();
    return isFound ? positionOfByte(text, found) : Value();
}

Value replaceFirst(Interpreter&, Args args)
{
    const std::string& pattern = asText(args[1]);
    std::string text = asText(args[2]);
    const std::size_t found = text.find(pattern, startByte(text, args, 3));
    if (found != std::string::npos)
        text.replace(found, pattern.size(), asText(args[0]));
    return Value::text(std::move(text));
}

// Characters of the first set that have no partner in the second stay as they are.
Value translate(Interpreter&, Args args)
{
    const auto from = splitCharacters(asText(args[0]));
    const auto to = splitCharacters(asText(args[1]));
    std::string out;
    for (const std::string_view letter : splitCharacters(asText(args[2]))) {
        const auto index = static_cast<std::size_t>(std::find(from.begin(), from.end(), letter) - from.begin());
        out += index < std::min(from.size(), to.size()) ? to[index] : letter;
    }
    return Value::text(std::move(out));
}

template <bool atLeft, bool atRight>
Value trim(Interpreter&, Args args)
{
    const auto unwanted = splitCharacters(asText(args[0]));
    const auto letters = splitCharacters(asText(args[1]));
    const auto isWanted = [&](std::string_view letter) {
        return std::find(unwanted.begin(), unwanted.end(), letter) == unwanted.end();
    };
    auto first = letters.begin();
    auto end = letters.end();
    if (atLeft)
        first = std::find_if(first, end, isWanted);
    while (atRight && end != first && !isWanted(end[-1]))
        --end;
    std::string out;
    for (; first != end; ++first)
        out += *first;
    return Value::text(std::move(out));
}

Value characterCodes(Interpreter&, Args args)
{
    ListBuilder codes;
    for (const std::string_view letter : splitCharacters(asText(args[0])))
        codes.add(Value::whole(firstCharacter(letter)));
    return codes.take();
}

Value textOfCodes(Interpreter&, Args args)
{
    std::string text;
    for (const Value& code : itemsOf(args[0]))
        text += character(code);
    return Value::text(std::move(text));
}

Value codeAt(Interpreter&, Args args)
{
    const std::string_view text = asText(args[0]);
    const std::size_t byte = byteOfCharacter(text, asPosition(args[1]));
    if (byte >= text.size())
        throw LispError("bad argument value: position: " + print(args[1]));
    return Value::whole(firstCharacter(text.substr(byte)));
}

template <PrintStyle style>
Value shown(Interpreter&, Args args)
{
    return Value::text(print(args[0], style));
}

constexpr Builtin kTexts[] = {
    {"STRCAT", join, 0, kAnyNumber},
    {"STRLEN", length, 0, kAnyNumber},
    {"SUBSTR", part, 2, 3},
    {"STRCASE", changeCase, 1, 2},
    {"ASCII", codeOfFirst, 1, 1},
    {"CHR", characterOfCode, 1, 1},
    {"ATOI", textToInteger, 1, 1},
    {"ATOF", textToReal, 1, 1},
    {"ITOA", integerToText, 1, 1},
    {"READ", read, 1, 1},
    {"VL-STRING-SEARCH", search, 2, 3},
    {"VL-STRING-MISMATCH", mismatch, 2, 5},
    {"VL-STRING-POSITION", searchCharacter, 2, 4},
    {"VL-STRING-SUBST", replaceFirst, 3, 4},
    {"VL-STRING-TRANSLATE", translate, 3, 3},
    {"VL-STRING-TRIM", trim<true, true>, 2, 2},
    {"VL-STRING-LEFT-TRIM", trim<true, false>, 2, 2},
    {"VL-STRING-RIGHT-TRIM", trim<false, true>, 2, 2},
    {"VL-STRING->LIST", characterCodes, 1, 1},
    {"VL-LIST->STRING", textOfCodes, 1, 1},
    {"VL-STRING-ELT", codeAt, 2, 2},
    {"VL-PRINC-TO-STRING", shown<PrintStyle::plain>, 1, 1},
    {"VL-PRIN1-TO-STRING", shown<PrintStyle::readable>, 1, 1},
};

}  // namespace

void defineTexts(Interpreter& lisp) { lisp.define(kTexts); }

}  // namespace vk::lisp
