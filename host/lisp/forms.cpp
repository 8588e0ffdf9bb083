// The forms that evaluate their operands themselves.

#include "host/lisp/arguments.h"
#include "host/lisp/errors.h"
#include "host/lisp/interpreter.h"
#include "host/lisp/library.h"

namespace vk::lisp {

namespace {

const Value& required(const Value& operands)
{
    if (!operands.isCons())
        throw LispError("too few arguments");
    return operands.car();
}

Value quote(Interpreter&, const Value& operands) { return required(operands); }

Value function(Interpreter& lisp, const Value& operands)
{
    const Value& named = required(operands);
    return named.isCons() ? lisp.callable(named) : named;
}

Value setq(Interpreter& lisp, const Value& operands)
{
    Value last;
    for (const Value* rest = &operands; rest->isCons(); rest = &rest->cdr().cdr()) {
        last = lisp.eval(required(rest->cdr()));
        lisp.assign(rest->car(), last);
    }
    return last;
}

Value defun(Interpreter& lisp, const Value& operands)
{
    const Value& name = required(operands);
    const Value& parameters = required(operands.cdr());
    lisp.assign(name, lisp.makeFunction(asSymbol(name).name, asList(parameters), operands.cdr().cdr()));
    return name;
}

// Keeps the definition as a list, which programs may take apart and put together.
Value defunAsList(Interpreter& lisp, const Value& operands)
{
    lisp.assign(required(operands), operands.cdr());
    return operands.car();
}

Value lambda(Interpreter& lisp, const Value& operands)
{
    return lisp.makeFunction("", asList(required(operands)), operands.cdr());
}

Value progn(Interpreter& lisp, const Value& operands) { return lisp.evalSequence(operands); }

Value ifForm(Interpreter& lisp, const Value& operands)
{
    const Value& otherwise = operands.cdr().cdr();
    if (otherwise.cdr())
        throw LispError("too many arguments: IF");
    if (lisp.eval(required(operands)))
        return lisp.eval(required(operands.cdr()));
    return lisp.eval(otherwise.car());
}

Value cond(Interpreter& lisp, const Value& operands)
{
    for (const Value& clause : Items(operands)) {
        Value test = lisp.eval(asList(clause).car());
        if (test)
            return clause.cdr() ? lisp.evalSequence(clause.cdr()) : test;
    }
    return Value();
}

Value andForm(Interpreter& lisp, const Value& operands)
{
    for (const Value& operand : Items(operands))
        if (!lisp.eval(operand))
            return Value();
    return lisp.truth(true);
}

Value orForm(Interpreter& lisp, const Value& operands)
{
    for (const Value& operand : Items(operands))
        if (lisp.eval(operand))
            return lisp.truth(true);
    return Value();
}

Value whileForm(Interpreter& lisp, const Value& operands)
{
    Value last;
    while (lisp.eval(required(operands))) {
        lisp.tick();
        last = lisp.evalSequence(operands.cdr());
    }
    return last;
}

Value repeat(Interpreter& lisp, const Value& operands)
{
    Value last;
    for (std::int32_t left = asInteger(lisp.eval(required(operands))); left > 0; --left) {
        lisp.tick();
        last = lisp.evalSequence(operands.cdr());
    }
    return last;
}

Value foreach (Interpreter& lisp, const Value& operands)
{
    const Value& name = required(operands);
    asSymbol(name);
    const Value list = asList(lisp.eval(required(operands.cdr())));
    const std::size_t mark = lisp.bindingMark();
    lisp.bind(name, Value());
    Value last;
    for (const Value& item : Items(list)) {
        lisp.tick();
        lisp.assign(name, item);
        last = lisp.evalSequence(operands.cdr().cdr());
    }
    lisp.unbindTo(mark);
    return last;
}

constexpr Form kForms[] = {
    {"QUOTE", quote},         {"FUNCTION", function}, {"SETQ", setq},     {"DEFUN", defun},     {"LAMBDA", lambda},
    {"DEFUN-Q", defunAsList}, {"PROGN", progn},       {"IF", ifForm},     {"COND", cond},       {"AND", andForm},
    {"OR", orForm},           {"WHILE", whileForm},   {"REPEAT", repeat}, {"FOREACH", foreach},
};

}  // namespace

void defineForms(Interpreter& lisp) { lisp.define(kForms); }

void defineLanguage(Interpreter& lisp)
{
    defineForms(lisp);
    defineNumbers(lisp);
    defineComparisons(lisp);
    defineLists(lisp);
    defineMapping(lisp);
    defineTexts(lisp);
    defineSymbols(lisp);
    defineOutput(lisp);
    defineGeometry(lisp);
}

}  // namespace vk::lisp
