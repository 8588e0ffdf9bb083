// What programs keep from one session to the next: settings by a path of keys, in the person's settings file, and the
// blackboard, which lasts as long as the process.

#include "host/base/settings.h"
#include "host/lisp/arguments.h"
#include "host/lisp/drawing.h"
#include "host/lisp/errors.h"
#include "host/lisp/interpreter.h"
#include "host/lisp/library.h"

#include <unordered_map>

namespace vk::lisp {

namespace {

// Keys of programs lie beneath one of their own, so that none reaches what the host keeps.
std::string keyOf(const Value& path) { return "programs/" + asText(path); }

std::string nameOf(const Value& name) { return name ? asText(name) : std::string(); }

Value asValue(const SettingValue& setting)
{
    switch (setting.kind) {
    case SettingValue::Kind::Number:
        return Value::integer(static_cast<std::int32_t>(setting.number));
    case SettingValue::Kind::LongNumber:
        return Value::whole(static_cast<double>(setting.number));
    default:
        return Value::text(setting.text);
    }
}

Value readRegistry(Interpreter&, Args args)
{
    const auto setting = userSettings().read(keyOf(args[0]), nameOf(argument(args, 1)));
    return setting ? asValue(*setting) : Value();
}

// Without data the key alone is made.
Value writeRegistry(Interpreter&, Args args)
{
    const Value& data = argument(args, 2);
    const std::string key = keyOf(args[0]);
    bool done = false;
    if (!data)
        done = userSettings().createKey(key);
    else if (data.isInteger())
        done = userSettings().write(key, nameOf(argument(args, 1)),
                                    SettingValue::ofNumber(static_cast<std::uint32_t>(data.integer())));
    else
        done = userSettings().write(key, nameOf(argument(args, 1)), SettingValue::ofText(asText(data)));
    if (!done)
        throw LispError("the settings could not be saved: " + userSettings().lastError());
    return data;
}

Value deleteRegistry(Interpreter& lisp, Args args)
{
    const Value& name = argument(args, 1);
    return lisp.truth(name ? userSettings().remove(keyOf(args[0]), asText(name))
                           : userSettings().removeKey(keyOf(args[0])));
}

// The keys below one, or with a second argument the names of its values.
Value descendents(Interpreter&, Args args)
{
    ListBuilder list;
    const std::string key = keyOf(args[0]);
    for (const std::string& name : argument(args, 1) ? userSettings().names(key) : userSettings().subkeys(key))
        list.add(Value::text(name));
    return list.take();
}

// "AppData/Program/Section/Name": the last part is the name.
std::pair<std::string, std::string> sectionOf(const Value& path)
{
    const std::string& whole = asText(path);
    const std::size_t slash = whole.find_last_of("/\\");
    if (slash == std::string::npos)
        return {};
    return {"programs/" + whole.substr(0, slash), whole.substr(slash + 1)};
}

Value getcfg(Interpreter&, Args args)
{
    const auto [key, name] = sectionOf(args[0]);
    if (name.empty() || !userSettings().hasKey(key))
        return Value();
    const auto setting = userSettings().read(key, name);
    return setting ? asValue(*setting) : Value::text("");
}

Value setcfg(Interpreter&, Args args)
{
    const auto [key, name] = sectionOf(args[0]);
    return !name.empty() && userSettings().write(key, name, SettingValue::ofText(asText(args[1]))) ? args[1] : Value();
}

// Values die with the process, not with its drawings. Keyed by the name of the symbol.
std::unordered_map<std::string, Value>& blackboard()
{
    static auto* values = new std::unordered_map<std::string, Value>;
    return *values;
}

Value blackboardSet(Interpreter&, Args args)
{
    blackboard()[asSymbol(args[0]).name] = args[1];
    return args[1];
}

Value blackboardRef(Interpreter&, Args args)
{
    const auto found = blackboard().find(asSymbol(args[0]).name);
    return found == blackboard().end() ? Value() : found->second;
}

constexpr Builtin kRegistry[] = {
    {"VL-REGISTRY-READ", readRegistry, 1, 2},
    {"VL-REGISTRY-WRITE", writeRegistry, 1, 3},
    {"VL-REGISTRY-DELETE", deleteRegistry, 1, 2},
    {"VL-REGISTRY-DESCENDENTS", descendents, 1, 2},
    {"GETCFG", getcfg, 1, 1},
    {"SETCFG", setcfg, 2, 2},
    {"VL-BB-SET", blackboardSet, 2, 2},
    {"VL-BB-REF", blackboardRef, 1, 1},
};

}  // namespace

void defineRegistry(Interpreter& lisp) { lisp.define(kRegistry); }

}  // namespace vk::lisp
