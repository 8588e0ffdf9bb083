// Names: of records, of commands, of functions; and what a selection set says of how its members came.

#include "host/base/unicode.h"
#include "host/db/record_names.h"
#include "host/edit/command.h"
#include "host/lisp/arguments.h"
#include "host/lisp/chain.h"
#include "host/lisp/drawing.h"
#include "host/lisp/errors.h"
#include "host/lisp/interpreter.h"
#include "host/lisp/library.h"

#include "vced.h"

namespace vk::lisp {

namespace {

// Whether a record may have the name; with 1 as the second argument a vertical bar may stand in it, as in names that came
// with an external reference.
Value snvalid(Interpreter& lisp, Args args)
{
    std::string name = asText(args[0]);
    if (argument(args, 1) && asInteger(args[1]) == 1)
        if (const std::size_t bar = name.find('|'); bar != std::string::npos && bar > 0 && bar + 1 < name.size())
            name.erase(bar, 1);
    return lisp.truth(!name.starts_with('*') && isLegalRecordName(name));
}

// "_LINE" of a local name, the local name of "_LINE"; nil for what is no command.
Value getcname(Interpreter&, Args args)
{
    const std::string& asked = asText(args[0]);
    const edit::CommandEntry* entry = edit::CommandTable::instance().find(asked);
    if (!entry)
        return Value();
    const std::string local = entry->localName.empty() ? entry->name : entry->localName;
    return Value::text(asked.starts_with('_') ? local : "_" + entry->name);
}

// Sets do not remember how their members were picked, so each is told as picked in no special way.
Value ssnamex(Interpreter&, Args args)
{
    const Name set = asSelection(args[0]);
    int length = 0;
    if (!succeeded(vcedSSLength(set, &length)))
        return Value();
    const int first = argument(args, 1) ? asInteger(args[1]) : 0, last = argument(args, 1) ? first + 1 : length;
    if (first < 0 || last > length)
        return Value();
    ListBuilder list;
    for (int i = first; i < last; ++i) {
        Name entity;
        if (!succeeded(vcedSSName(set, i, entity)))
            return Value();
        const Value items[] = {Value::integer(0), entityValue(entity), Value::integer(0)};
        list.add(listOf(items));
    }
    return list.take();
}

// All functions and bound symbols, as symbols (0) or as texts; of a given list of names, each that is known, else nil.
Value atomsFamily(Interpreter& lisp, Args args)
{
    const bool asSymbols = asInteger(args[0]) == 0;
    const auto shown = [&](const std::string& name) {
        return asSymbols ? lisp.symbols().intern(name) : Value::text(name);
    };
    ListBuilder list;
    if (!argument(args, 1)) {
        for (const std::string& name : lisp.functionNames(""))
            list.add(shown(name));
        return list.take();
    }
    for (const Value& asked : Items(asList(args[1]))) {
        const std::string name = toUpper(asText(asked));
        list.add(lisp.hasFunction(name) || lisp.symbols().intern(name).as<SymbolCell>().value ? shown(name) : Value());
    }
    return list.take();
}

// Commands that a program file defines, which is read when one of them is first called.
Value autoload(Interpreter& lisp, Args args)
{
    const std::string file = asText(args[0]);
    for (const Value& command : Items(asList(args[1]))) {
        const std::string name = "C:" + toUpper(asText(command));
        lisp.define(name, [file, name](Interpreter& inner, Args given) {
            inner.undefine(name);
            bool isFound = false;
            inner.load(file, isFound);
            if (!isFound)
                throw LispError("cannot find the program file: " + file);
            if (!inner.hasFunction(name))
                throw LispError("the program file " + file + " does not define " + name);
            return inner.apply(inner.symbols().intern(name), given);
        });
    }
    return Value();
}

Value version(Interpreter&, Args) { return Value::text("vekad Lisp 1.0 (en)"); }

Value exitWithError(Interpreter&, Args args) { throw LispError(asText(args[0])); }

// Values that all drawings and programs of a session see: there is one drawing at a time, so they are kept by the symbol.
Value symbolSet(Interpreter& lisp, Args args)
{
    lisp.assign(args[0], args[1]);
    return args[1];
}

Value symbolRef(Interpreter&, Args args) { return asSymbol(args[0]).value; }

// The list that DEFUN-Q keeps as the value of its symbol.
Value functionList(Interpreter&, Args args)
{
    const Value& kept = asSymbol(args[0]).value;
    return kept.isCons() ? kept : Value();
}

// There is one drawing with one set of symbols, so all that a program defines is seen wherever it could be.
Value seenAnyway(Interpreter&, Args) { return Value(); }

// Every host command has one form, and commands may be called from *error*: what these ask for holds.
Value holdsAnyway(Interpreter& lisp, Args) { return lisp.truth(true); }

constexpr Builtin kNames[] = {
    {"DEFUN-Q-LIST-REF", functionList, 1, 1},
    {"DEFUN-Q-LIST-SET", symbolSet, 2, 2},
    {"VL-DOC-EXPORT", seenAnyway, 1, 1},
    {"VL-PROPAGATE", seenAnyway, 1, 1},
    {"INITDIA", seenAnyway, 0, 1},
    {"INITCOMMANDVERSION", holdsAnyway, 0, 1},
    {"*PUSH-ERROR-USING-COMMAND*", holdsAnyway, 0, 0},
    {"*PUSH-ERROR-USING-STACK*", holdsAnyway, 0, 0},
    {"*POP-ERROR-MODE*", holdsAnyway, 0, 0},
    {"SNVALID", snvalid, 1, 2},
    {"GETCNAME", getcname, 1, 1},
    {"SSNAMEX", ssnamex, 1, 2},
    {"ATOMS-FAMILY", atomsFamily, 1, 2},
    {"AUTOLOAD", autoload, 2, 2},
    {"VER", version, 0, 0},
    {"VL-EXIT-WITH-ERROR", exitWithError, 1, 1},
    {"VL-DOC-SET", symbolSet, 2, 2},
    {"VL-DOC-REF", symbolRef, 1, 1},
};

}  // namespace

void defineNames(Interpreter& lisp) { lisp.define(kNames); }

}  // namespace vk::lisp
