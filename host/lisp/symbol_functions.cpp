// Symbols and types.

#include "host/lisp/arguments.h"
#include "host/lisp/interpreter.h"
#include "host/lisp/library.h"

namespace vk::lisp {

namespace {

const char* typeName(const Value& value)
{
    switch (value.kind()) {
    case Kind::integer:
        return "INT";
    case Kind::real:
        return "REAL";
    case Kind::text:
        return "STR";
    case Kind::symbol:
        return "SYM";
    case Kind::builtin:
        return "SUBR";
    case Kind::function:
        return "USUBR";
    case Kind::entity:
        return "ENAME";
    case Kind::selection:
        return "PICKSET";
    case Kind::file:
        return "FILE";
    case Kind::fault:
        return "ERROR";
    case Kind::nil:
    case Kind::cons:
        break;
    }
    return "LIST";
}

Value type(Interpreter& lisp, Args args) { return args[0] ? lisp.symbols().intern(typeName(args[0])) : Value(); }

Value set(Interpreter& lisp, Args args)
{
    lisp.assign(args[0], args[1]);
    return args[1];
}

Value isBound(Interpreter& lisp, Args args) { return lisp.truth(args[0].isSymbol() && args[0].as<SymbolCell>().value); }

Value isNumber(Interpreter& lisp, Args args) { return lisp.truth(args[0].isNumber()); }

Value isSymbol(Interpreter& lisp, Args args) { return lisp.truth(args[0].isSymbol()); }

Value symbolName(Interpreter&, Args args) { return Value::text(asSymbol(args[0]).name); }

Value symbolValue(Interpreter&, Args args) { return asSymbol(args[0]).value; }

// The extensions that programs ask for are always there.
Value loadExtensions(Interpreter& lisp, Args) { return lisp.symbols().silence(); }

constexpr Builtin kSymbols[] = {
    {"TYPE", type, 1, 1},
    {"SET", set, 2, 2},
    {"BOUNDP", isBound, 1, 1},
    {"NUMBERP", isNumber, 1, 1},
    {"VL-SYMBOLP", isSymbol, 1, 1},
    {"VL-SYMBOL-NAME", symbolName, 1, 1},
    {"VL-SYMBOL-VALUE", symbolValue, 1, 1},
    {"VL-LOAD-COM", loadExtensions, 0, 0},
};

}  // namespace

void defineSymbols(Interpreter& lisp) { lisp.define(kSymbols); }

}  // namespace vk::lisp
