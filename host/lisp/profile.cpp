// Settings of the current profile: whole numbers are 32-bit values, texts are texts.

#include "host/base/settings.h"
#include "host/lisp/arguments.h"
#include "host/lisp/chain.h"
#include "host/lisp/errors.h"
#include "host/lisp/interpreter.h"
#include "host/lisp/library.h"
#include "host/lisp/printer.h"

#include "vced.h"
#include "vcut.h"

namespace vk::lisp {

namespace {

std::string currentProfile()
{
    resbuf value = {};
    if (vcedGetVar(L"CPROFILE", &value) != RTNORM || value.restype != RTSTR)
        throw LispError("there is no current profile");
    const std::string name = rbUtf8(value);
    vcad_free(value.resval.rstring);
    return name;
}

std::string keyOfGroup(const Value& group) { return profileGroupKey(currentProfile(), asText(group)); }

Value profileRead(Interpreter&, Args args)
{
    const auto setting = userSettings().read(keyOfGroup(args[0]), asText(args[1]));
    if (!setting)
        return Value();
    switch (setting->kind) {
    case SettingValue::Kind::Text:
        return Value::text(setting->text);
    case SettingValue::Kind::Number:
        return Value::integer(static_cast<std::int32_t>(setting->number));
    case SettingValue::Kind::LongNumber:
        return Value::whole(static_cast<double>(setting->number));
    case SettingValue::Kind::Bytes:
        break;
    }
    throw LispError("neither a number nor a text: " + print(args[1]));
}

Value profileWrite(Interpreter&, Args args)
{
    const SettingValue setting = args[2].isInteger()
                                     ? SettingValue::ofNumber(static_cast<std::uint32_t>(args[2].integer()))
                                     : SettingValue::ofText(asText(args[2]));
    if (!userSettings().write(keyOfGroup(args[0]), asText(args[1]), setting))
        throw LispError("the settings could not be saved: " + userSettings().lastError());
    return args[2];
}

constexpr Builtin kProfile[] = {
    {"PROFILE-READ", profileRead, 2, 2},
    {"PROFILE-WRITE", profileWrite, 3, 3},
};

}  // namespace

void defineProfile(Interpreter& lisp) { lisp.define(kProfile); }

}  // namespace vk::lisp
