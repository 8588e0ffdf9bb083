// Lists and pairs. What is taken from a list shares its cells.

#include "host/lisp/arguments.h"
#include "host/lisp/comparison.h"
#include "host/lisp/errors.h"
#include "host/lisp/interpreter.h"
#include "host/lisp/library.h"
#include "host/lisp/printer.h"

namespace vk::lisp {

namespace {

Value cons(Interpreter&, Args args) { return Value::cons(args[0], args[1]); }

Value list(Interpreter&, Args args) { return listOf(args); }

Value listWithTail(Interpreter&, Args args)
{
    ListBuilder made;
    for (const Value& item : args.first(args.size() - 1))
        made.add(item);
    made.finishWith(args.back());
    return made.take();
}

Value append(Interpreter&, Args args)
{
    if (args.empty())
        return Value();
    ListBuilder joined;
    for (const Value& part : args.first(args.size() - 1))
        for (const Value& item : itemsOf(part))
            joined.add(item);
    joined.finishWith(asList(args.back()));
    return joined.take();
}

Value reverse(Interpreter&, Args args)
{
    Value turned;
    for (const Value& item : Items(asList(args[0])))
        turned = Value::cons(item, std::move(turned));
    return turned;
}

Value last(Interpreter&, Args args)
{
    const Value* rest = &asList(args[0]);
    while (rest->cdr().isCons())
        rest = &rest->cdr();
    return rest->car();
}

Value length(Interpreter&, Args args) { return Value::whole(static_cast<double>(itemsOf(args[0]).size())); }

Value nth(Interpreter&, Args args)
{
    const Value* rest = &asList(args[1]);
    for (std::int32_t left = asInteger(args[0]); left > 0 && rest->isCons(); --left)
        rest = &rest->cdr();
    return rest->car();
}

Value assoc(Interpreter& lisp, Args args)
{
    for (const Value& pair : Items(asList(args[1]))) {
        if (pair.isNil())
            continue;
        if (!pair.isCons())
            throw LispError("bad association list: " + print(args[1]));
        if (isEqual(lisp, pair.car(), args[0]))
            return pair;
    }
    return Value();
}

Value member(Interpreter& lisp, Args args)
{
    const Value* rest = &asList(args[1]);
    while (rest->isCons() && !isEqual(lisp, rest->car(), args[0]))
        rest = &rest->cdr();
    return rest->isCons() ? *rest : Value();
}

Value position(Interpreter& lisp, Args args)
{
    std::int32_t index = 0;
    for (const Value& item : Items(asList(args[1]))) {
        if (isEqual(lisp, item, args[0]))
            return Value::integer(index);
        ++index;
    }
    return Value();
}

Value substitute(Interpreter& lisp, Args args)
{
    ListBuilder changed;
    const Value* rest = &asList(args[2]);
    for (; rest->isCons(); rest = &rest->cdr())
        changed.add(isEqual(lisp, rest->car(), args[1]) ? args[0] : rest->car());
    changed.finishWith(*rest);
    return changed.take();
}

Value removeItem(Interpreter& lisp, Args args)
{
    ListBuilder kept;
    for (const Value& item : Items(asList(args[1])))
        if (!isEqual(lisp, item, args[0]))
            kept.add(item);
    return kept.take();
}

Value isAtom(Interpreter& lisp, Args args) { return lisp.truth(!args[0].isCons()); }

Value isPair(Interpreter& lisp, Args args) { return lisp.truth(args[0].isCons()); }

Value isListOrNil(Interpreter& lisp, Args args) { return lisp.truth(args[0].isList()); }

constexpr Builtin kLists[] = {
    {"CONS", cons, 2, 2},
    {"LIST", list, 0, kAnyNumber},
    {"VL-LIST*", listWithTail, 1, kAnyNumber},
    {"APPEND", append, 0, kAnyNumber},
    {"REVERSE", reverse, 1, 1},
    {"LAST", last, 1, 1},
    {"LENGTH", length, 1, 1},
    {"VL-LIST-LENGTH", length, 1, 1},
    {"NTH", nth, 2, 2},
    {"ASSOC", assoc, 2, 2},
    {"MEMBER", member, 2, 2},
    {"VL-POSITION", position, 2, 2},
    {"SUBST", substitute, 3, 3},
    {"VL-REMOVE", removeItem, 2, 2},
    {"ATOM", isAtom, 1, 1},
    {"VL-CONSP", isPair, 1, 1},
    {"LISTP", isListOrNil, 1, 1},
};

// The path of CADR is "AD": read from its end, A takes the first item and D the rest.
Value walk(const std::string& path, const Value& from)
{
    const Value* at = &from;
    for (auto step = path.rbegin(); step != path.rend(); ++step)
        at = *step == 'A' ? &asList(*at).car() : &asList(*at).cdr();
    return *at;
}

void defineWalks(Interpreter& lisp, const std::string& path)
{
    constexpr std::size_t kLongestPath = 4;
    if (!path.empty())
        lisp.define(
            "C" + path + "R", [path](Interpreter&, Args args) { return walk(path, args[0]); }, 1, 1);
    if (path.size() == kLongestPath)
        return;
    defineWalks(lisp, path + 'A');
    defineWalks(lisp, path + 'D');
}

}  // namespace

void defineLists(Interpreter& lisp)
{
    lisp.define(kLists);
    defineWalks(lisp, "");
}

}  // namespace vk::lisp
