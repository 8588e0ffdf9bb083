// Functions that call functions: mapping, searching by a test, sorting, catching.

#include "host/lisp/arguments.h"
#include "host/lisp/errors.h"
#include "host/lisp/interpreter.h"
#include "host/lisp/library.h"

namespace vk::lisp {

namespace {

// Walks several lists side by side until one of them ends; `use` gets each result and says whether to go on.
template <class Use>
void walkTogether(Interpreter& lisp, Args args, Use use)
{
    const Value function = lisp.callable(args[0]);
    std::vector<const Value*> rests;
    for (const Value& list : args.subspan(1))
        rests.push_back(&asList(list));
    std::vector<Value> row(rests.size());
    for (;;) {
        for (std::size_t i = 0; i < rests.size(); ++i) {
            if (!rests[i]->isCons())
                return;
            row[i] = rests[i]->car();
            rests[i] = &rests[i]->cdr();
        }
        lisp.tick();
        if (!use(lisp.apply(function, row)))
            return;
    }
}

Value mapcar(Interpreter& lisp, Args args)
{
    ListBuilder results;
    walkTogether(lisp, args, [&](Value result) {
        results.add(std::move(result));
        return true;
    });
    return results.take();
}

Value some(Interpreter& lisp, Args args)
{
    Value found;
    walkTogether(lisp, args, [&](Value result) {
        found = std::move(result);
        return found.isNil();
    });
    return found;
}

Value every(Interpreter& lisp, Args args)
{
    bool holds = true;
    walkTogether(lisp, args, [&](const Value& result) { return holds = !result.isNil(); });
    return lisp.truth(holds);
}

Value apply(Interpreter& lisp, Args args) { return lisp.apply(args[0], itemsOf(args[1])); }

Value eval(Interpreter& lisp, Args args) { return lisp.eval(args[0]); }

bool passes(Interpreter& lisp, const Value& test, const Value& item)
{
    lisp.tick();
    return !lisp.apply(test, Args(&item, 1)).isNil();
}

template <bool isKept>
Value filter(Interpreter& lisp, Args args)
{
    const Value test = lisp.callable(args[0]);
    ListBuilder kept;
    for (const Value& item : Items(asList(args[1])))
        if (passes(lisp, test, item) == isKept)
            kept.add(item);
    return kept.take();
}

template <bool isWanted>
Value memberIf(Interpreter& lisp, Args args)
{
    const Value test = lisp.callable(args[0]);
    const Value* rest = &asList(args[1]);
    while (rest->isCons() && passes(lisp, test, rest->car()) != isWanted)
        rest = &rest->cdr();
    return rest->isCons() ? *rest : Value();
}

// A merge sort of our own: a program's comparison may contradict itself, and the library's sorts may then leave the
// range. Equal items keep their order.
std::vector<std::size_t> sortedIndexes(Interpreter& lisp, const std::vector<Value>& items, const Value& comparison)
{
    std::vector<std::size_t> order(items.size());
    for (std::size_t i = 0; i < order.size(); ++i)
        order[i] = i;
    std::vector<std::size_t> merged(order.size());
    const auto goesBefore = [&](std::size_t a, std::size_t b) {
        const Value pair[] = {items[a], items[b]};
        lisp.tick();
        return !lisp.apply(comparison, pair).isNil();
    };
    for (std::size_t run = 1; run < order.size(); run *= 2) {
        for (std::size_t start = 0; start < order.size(); start += 2 * run) {
            const std::size_t middle = std::min(start + run, order.size());
            const std::size_t end = std::min(start + 2 * run, order.size());
            for (std::size_t left = start, right = middle, to = start; to < end; ++to) {
                const bool takesRight = left == middle || (right < end && goesBefore(order[right], order[left]));
                merged[to] = order[takesRight ? right++ : left++];
            }
        }
        std::swap(order, merged);
    }
    return order;
}

Value sort(Interpreter& lisp, Args args)
{
    const std::vector<Value> items = itemsOf(args[0]);
    ListBuilder sorted;
    for (const std::size_t index : sortedIndexes(lisp, items, lisp.callable(args[1])))
        sorted.add(items[index]);
    return sorted.take();
}

Value sortIndexes(Interpreter& lisp, Args args)
{
    ListBuilder sorted;
    for (const std::size_t index : sortedIndexes(lisp, itemsOf(args[0]), lisp.callable(args[1])))
        sorted.add(Value::whole(static_cast<double>(index)));
    return sorted.take();
}

Value catchAll(Interpreter& lisp, Args args)
{
    const std::size_t mark = lisp.bindingMark();
    try {
        return lisp.apply(args[0], itemsOf(argument(args, 1)));
    } catch (const LispInterrupt&) {
        throw;
    } catch (const std::exception& error) {
        lisp.unbindTo(mark);
        return Value::fault(error.what());
    }
}

Value isFault(Interpreter& lisp, Args args) { return lisp.truth(args[0].kind() == Kind::fault); }

Value faultMessage(Interpreter&, Args args)
{
    if (args[0].kind() != Kind::fault)
        badArgument("error object", args[0]);
    return Value::text(args[0].as<TextCell>().content);
}

Value quit(Interpreter&, Args) { throw LispError("quit / exit abort"); }

constexpr Builtin kMapping[] = {
    {"MAPCAR", mapcar, 2, kAnyNumber},
    {"VL-SOME", some, 2, kAnyNumber},
    {"VL-EVERY", every, 2, kAnyNumber},
    {"APPLY", apply, 2, 2},
    {"EVAL", eval, 1, 1},
    {"VL-REMOVE-IF", filter<false>, 2, 2},
    {"VL-REMOVE-IF-NOT", filter<true>, 2, 2},
    {"VL-MEMBER-IF", memberIf<true>, 2, 2},
    {"VL-MEMBER-IF-NOT", memberIf<false>, 2, 2},
    {"VL-SORT", sort, 2, 2},
    {"VL-SORT-I", sortIndexes, 2, 2},
    {"VL-CATCH-ALL-APPLY", catchAll, 1, 2},
    {"VL-CATCH-ALL-ERROR-P", isFault, 1, 1},
    {"VL-CATCH-ALL-ERROR-MESSAGE", faultMessage, 1, 1},
    {"EXIT", quit, 0, 0},
    {"QUIT", quit, 0, 0},
};

}  // namespace

void defineMapping(Interpreter& lisp) { lisp.define(kMapping); }

}  // namespace vk::lisp
