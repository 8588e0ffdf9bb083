#include "host/lisp/printer.h"

#include "host/lisp/errors.h"
#include "host/lisp/function.h"
#include "host/lisp/text_file.h"

#include <fmt/format.h>

namespace vk::lisp {

namespace {

// Lists that share their parts can stand for texts without end.
constexpr std::size_t kLongestPrint = TextCell::kLongest;

std::string printReal(double number)
{
    std::string text = fmt::format("{:.6g}", number);
    if (text.find_first_not_of("-0123456789e+") != std::string::npos)
        return text;
    text.insert(std::min(text.find('e'), text.size()), ".0");
    return text;
}

void appendEscaped(std::string& out, char c)
{
    switch (c) {
    case '"':
        out += "\\\"";
        return;
    case '\\':
        out += "\\\\";
        return;
    case '\n':
        out += "\\n";
        return;
    case '\t':
        out += "\\t";
        return;
    case '\r':
        out += "\\r";
        return;
    case '\x1b':
        out += "\\e";
        return;
    default:
        break;
    }
    if (static_cast<unsigned char>(c) < ' ')
        out += fmt::format("\\{:03o}", static_cast<unsigned>(c));
    else
        out += c;
}

std::string quoted(const std::string& text)
{
    std::string out = "\"";
    for (const char c : text)
        appendEscaped(out, c);
    return out + '"';
}

std::string printName(const char* what, const Value& value)
{
    const auto& words = value.as<NameCell>().words;
    return words[1] == 0 ? fmt::format("<{}: {:x}>", what, static_cast<std::uint64_t>(words[0]))
                         : fmt::format("<{}: {:x}-{:x}>", what, static_cast<std::uint64_t>(words[0]),
                                       static_cast<std::uint64_t>(words[1]));
}

std::string printAtom(const Value& value, PrintStyle style)
{
    switch (value.kind()) {
    case Kind::integer:
        return std::to_string(value.integer());
    case Kind::real:
        return printReal(value.real());
    case Kind::text:
        return style == PrintStyle::plain ? value.text() : quoted(value.text());
    case Kind::symbol:
        return value.as<SymbolCell>().name;
    case Kind::builtin:
        return "#<SUBR " + value.as<BuiltinCell>().name + ">";
    case Kind::function:
        return "#<USUBR " + value.as<FunctionCell>().name + ">";
    case Kind::entity:
        return printName("Entity name", value);
    case Kind::selection:
        return printName("Selection set", value);
    case Kind::file:
        return fmt::format("#<file \"{}\">", value.as<FileCell>().path());
    case Kind::fault:
        return "#<ERROR " + value.as<TextCell>().content + ">";
    case Kind::nil:
    case Kind::cons:
        break;
    }
    return "nil";
}

}  // namespace

std::string print(const Value& value, PrintStyle style)
{
    std::string out;
    std::vector<const Value*> rests;  // what is still to come of each open list
    const Value* item = &value;
    for (;;) {
        if (out.size() > kLongestPrint)
            throw LispError("too long to print");
        if (item->isCons()) {
            out += '(';
            rests.push_back(&item->cdr());
            item = &item->car();
            continue;
        }
        out += printAtom(*item, style);
        while (!rests.empty() && !rests.back()->isCons()) {
            if (!rests.back()->isNil())
                out += " . " + printAtom(*rests.back(), style);
            out += ')';
            rests.pop_back();
        }
        if (rests.empty())
            return out;
        out += ' ';
        item = &rests.back()->car();
        rests.back() = &rests.back()->cdr();
    }
}

}  // namespace vk::lisp
