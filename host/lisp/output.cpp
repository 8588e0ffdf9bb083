// What programs show, and program files.

#include "host/lisp/arguments.h"
#include "host/lisp/errors.h"
#include "host/lisp/interpreter.h"
#include "host/lisp/library.h"
#include "host/lisp/printer.h"
#include "host/lisp/text_file.h"

namespace vk::lisp {

namespace {

Value show(Interpreter& lisp, Args args, PrintStyle style, const char* before, const char* after)
{
    if (args.empty())
        return lisp.symbols().silence();
    const std::string text = before + print(args[0], style) + after;
    if (argument(args, 1))
        asFile(args[1]).write(text);
    else
        lisp.write(text);
    return args[0];
}

Value princ(Interpreter& lisp, Args args) { return show(lisp, args, PrintStyle::plain, "", ""); }

Value prin1(Interpreter& lisp, Args args) { return show(lisp, args, PrintStyle::readable, "", ""); }

Value printLine(Interpreter& lisp, Args args) { return show(lisp, args, PrintStyle::readable, "\n", " "); }

Value prompt(Interpreter& lisp, Args args)
{
    lisp.write(asText(args[0]));
    return Value();
}

Value newLine(Interpreter& lisp, Args)
{
    lisp.write("\n");
    return Value();
}

Value load(Interpreter& lisp, Args args)
{
    bool isFound = false;
    Value last = lisp.load(asText(args[0]), isFound);
    if (isFound)
        return last;
    if (args.size() == 1)
        throw LispError("LOAD failed: " + print(args[0]));
    const Kind kind = args[1].kind();
    return kind == Kind::function || kind == Kind::builtin ? lisp.apply(args[1], {}) : args[1];
}

// Programs switch between a text and a drawing screen; here both can always be seen.
Value stayOnScreen(Interpreter&, Args) { return Value(); }

constexpr Builtin kOutput[] = {
    {"PRINC", princ, 0, 2},          {"PRIN1", prin1, 0, 2},           {"PRINT", printLine, 0, 2},
    {"PROMPT", prompt, 1, 1},        {"TERPRI", newLine, 0, 0},        {"LOAD", load, 1, 2},
    {"TEXTSCR", stayOnScreen, 0, 0}, {"TEXTPAGE", stayOnScreen, 0, 0}, {"GRAPHSCR", stayOnScreen, 0, 0},
};

}  // namespace

void defineOutput(Interpreter& lisp) { lisp.define(kOutput); }

}  // namespace vk::lisp
