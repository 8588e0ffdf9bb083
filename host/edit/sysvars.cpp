#include "host/edit/sysvars.h"

#include "host/base/settings.h"
#include "host/base/unicode.h"
#include "host/edit/editor.h"
#include "host/edit/sysvars_computed.h"
#include "host/edit/sysvars_drawing.h"

namespace vk::edit {

struct SysVars::Values {
    std::unordered_map<std::string_view, SysVarValue> session;  // by the name in the table
    // The profile is read once for each variable; this run alone writes it.
    mutable std::unordered_map<std::string_view, SysVarValue> profile;
};

namespace {

constexpr const char* kProfile = "Default";

std::string variablesKey() { return profileGroupKey(kProfile, "Variables"); }

// Values that a session keeps from one drawing to the next.
bool outlivesDrawing(std::string_view name)
{
    static constexpr std::string_view kNames[] = {"CMDECHO",   "EXPERT",   "MENUECHO", "NOMUTT",   "MACROTRACE",
                                                  "HIGHLIGHT", "TEXTEVAL", "BLIPMODE", "DELAYCMD", "ERRNO"};
    return std::find(std::begin(kNames), std::end(kNames), name) != std::end(kNames) || name.starts_with("USERS");
}

// In radians; a whole number is degrees, which is how dialogs and the scripts they save give it.
constexpr std::string_view kWholeDegrees = "UCSAXISANG";

// An integer serves as a real, a 2D point as a 3D one; nothing else is bent.
std::optional<SysVarValue> fitted(const SysVarDef& def, const SysVarValue& value)
{
    switch (def.type) {
    case SysVarType::Short:
    case SysVarType::Long:
        if (const auto* i = std::get_if<std::int32_t>(&value))
            return *i;
        if (const auto* d = std::get_if<double>(&value); d && *d == std::floor(*d) && std::abs(*d) < 2147483648.0)
            return std::int32_t(*d);
        return std::nullopt;
    case SysVarType::Real:
        if (const auto* i = std::get_if<std::int32_t>(&value))
            return def.name == kWholeDegrees ? *i * M_PI / 180 : double(*i);
        return std::holds_alternative<double>(value) ? std::optional(value) : std::nullopt;
    case SysVarType::String:
        return std::holds_alternative<std::string>(value) ? std::optional(value) : std::nullopt;
    case SysVarType::Point2d:
        if (const auto* p = std::get_if<VcGePoint3d>(&value))
            return VcGePoint2d(p->x, p->y);
        return std::holds_alternative<VcGePoint2d>(value) ? std::optional(value) : std::nullopt;
    case SysVarType::Point3d:
        if (const auto* p = std::get_if<VcGePoint2d>(&value))
            return VcGePoint3d(p->x, p->y, 0);
        return std::holds_alternative<VcGePoint3d>(value) ? std::optional(value) : std::nullopt;
    }
    return std::nullopt;
}

}

SysVars::SysVars(Editor& editor) : m_editor(editor), m_values(std::make_unique<Values>()) {}
SysVars::~SysVars() = default;

void SysVars::drawingOpened()
{
    std::erase_if(m_values->session, [](const auto& item) { return !outlivesDrawing(item.first); });
}

static std::optional<SysVarValue> fromProfile(const SysVarDef& def)
{
    const auto stored = userSettings().read(variablesKey(), def.name);
    if (!stored || stored->kind != SettingValue::Kind::Text)
        return std::nullopt;
    auto value = parseSysVar(def, stored->text);
    return value && inRange(def, *value) ? value : std::nullopt;
}

std::optional<SysVarValue> SysVars::get(std::string_view name) const
{
    const SysVarDef* def = findSysVar(name);
    if (!def)
        return std::nullopt;
    if (auto computed = computedSysVar(m_editor, *def))
        return computed;
    if (const auto found = m_values->session.find(def->name); found != m_values->session.end())
        return found->second;
    if (isSavedInDrawing(def->home) && m_editor.hasDrawing())
        if (auto value = drawingSysVar(m_editor.db(), *def))
            return value;
    if (def->home == SysVarHome::Profile) {
        auto at = m_values->profile.find(def->name);
        if (at == m_values->profile.end()) {
            const auto stored = fromProfile(*def);
            at = m_values->profile.emplace(def->name, stored ? *stored : initialValue(*def)).first;
        }
        return at->second;
    }
    return initialValue(*def);
}

SetVarResult SysVars::set(std::string_view name, const SysVarValue& value)
{
    const SysVarDef* def = findSysVar(name);
    if (!def)
        return SetVarResult::Unknown;
    if (def->readOnly)
        return SetVarResult::ReadOnly;
    const auto wanted = fitted(*def, value);
    if (!wanted)
        return SetVarResult::WrongType;
    if (!inRange(*def, *wanted))
        return SetVarResult::OutOfRange;
    if (!m_editor.hasDrawing() && isSavedInDrawing(def->home))
        return SetVarResult::Refused;
    if (const auto result = setSpecialSysVar(m_editor, *def, *wanted))
        return *result;
    force(name, *wanted);
    return SetVarResult::Done;
}

void SysVars::force(std::string_view name, const SysVarValue& value)
{
    const SysVarDef* def = findSysVar(name);
    if (!def)
        return;
    if (isSavedInDrawing(def->home) && m_editor.hasDrawing()) {
        if (setDrawingSysVar(m_editor.db(), *def, value))
            return;
    } else if (def->home == SysVarHome::Profile) {
        const std::string text = printSysVar(value);
        if (printSysVar(*get(name)) == text)
            return;  // settings are safe on the disk after each change, which takes its time
        m_values->profile[def->name] = value;
        userSettings().write(variablesKey(), def->name, SettingValue::ofText(text));
        return;
    }
    m_values->session[def->name] = value;
}

std::int64_t SysVars::integer(std::string_view name) const
{
    const auto value = get(name);
    const auto* i = value ? std::get_if<std::int32_t>(&*value) : nullptr;
    return i ? *i : 0;
}

double SysVars::real(std::string_view name) const
{
    const auto value = get(name);
    const auto* d = value ? std::get_if<double>(&*value) : nullptr;
    return d ? *d : double(integer(name));
}

std::string SysVars::text(std::string_view name) const
{
    const auto value = get(name);
    const auto* s = value ? std::get_if<std::string>(&*value) : nullptr;
    return s ? *s : std::string();
}

VcGePoint3d SysVars::point(std::string_view name) const
{
    const auto value = get(name);
    if (!value)
        return {};
    if (const auto* p = std::get_if<VcGePoint3d>(&*value))
        return *p;
    const auto* p = std::get_if<VcGePoint2d>(&*value);
    return p ? VcGePoint3d(p->x, p->y, 0) : VcGePoint3d();
}

}
