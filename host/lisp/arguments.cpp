#include "host/lisp/arguments.h"

#include "host/lisp/errors.h"
#include "host/lisp/printer.h"

namespace vk::lisp {

void badArgument(const char* wanted, const Value& got)
{
    constexpr std::size_t kShown = 200;
    std::string shown = print(got);
    if (shown.size() > kShown)
        shown = shown.substr(0, kShown) + "...";
    throw LispError(std::string("bad argument type: ") + wanted + ": " + shown);
}

double asNumber(const Value& value)
{
    if (!value.isNumber())
        badArgument("numberp", value);
    return value.number();
}

std::int32_t asInteger(const Value& value)
{
    if (!value.isInteger())
        badArgument("fixnump", value);
    return value.integer();
}

const std::string& asText(const Value& value)
{
    if (!value.isText())
        badArgument("stringp", value);
    return value.text();
}

const Value& asList(const Value& value)
{
    if (!value.isList())
        badArgument("listp", value);
    return value;
}

SymbolCell& asSymbol(const Value& value)
{
    if (!value.isSymbol())
        badArgument("symbolp", value);
    return value.as<SymbolCell>();
}

bool isPoint(const Value& value)
{
    int count = 0;
    const Value* rest = &value;
    for (; rest->isCons() && count <= 3; rest = &rest->cdr(), ++count)
        if (!rest->car().isNumber())
            return false;
    return rest->isNil() && (count == 2 || count == 3);
}

Point asPoint(const Value& value)
{
    if (!isPoint(value))
        badArgument("2D/3D point", value);
    const Value& third = value.cdr().cdr();
    return {value.car().number(), value.cdr().car().number(), third ? third.car().number() : 0.0, third.isNil()};
}

Value pointValue(double x, double y, double z)
{
    const Value coordinates[] = {Value::real(x), Value::real(y), Value::real(z)};
    return listOf(coordinates);
}

Value pointValue(double x, double y)
{
    const Value coordinates[] = {Value::real(x), Value::real(y)};
    return listOf(coordinates);
}

std::vector<Value> itemsOf(const Value& list)
{
    std::vector<Value> items;
    const Value* rest = &asList(list);
    for (; rest->isCons(); rest = &rest->cdr())
        items.push_back(rest->car());
    if (!rest->isNil())
        badArgument("listp", *rest);
    return items;
}

Value listOf(Args items)
{
    ListBuilder list;
    for (const Value& item : items)
        list.add(item);
    return list.take();
}

const Value& argument(Args args, std::size_t index)
{
    static const Value nil;
    return index < args.size() ? args[index] : nil;
}

}  // namespace vk::lisp
