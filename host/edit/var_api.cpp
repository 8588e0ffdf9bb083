// System variables, the environment and the units as modules call them.
#include "host/base/heap.h"
#include "host/base/rb.h"
#include "host/base/unicode.h"
#include "host/base/units.h"
#include "host/edit/editor.h"
#include "host/edit/environment.h"
#include "host/edit/support_path.h"
#include "host/edit/sysvars.h"
#include "sdk/vccm.h"
#include "sdk/vcdb_chains.h"
#include "sdk/vced.h"

#include <cwchar>

using namespace vk::edit;

namespace {

Editor& editor() { return Editor::instance(); }

void fillPoint(resbuf& node, int type, double x, double y, double z)
{
    node.restype = std::int16_t(type);
    setRbPoint(node, x, y, z);
}

void fill(resbuf& node, const SysVarDef& def, const SysVarValue& value)
{
    if (const auto* i = std::get_if<std::int32_t>(&value)) {
        node.restype = def.type == SysVarType::Long ? RTLONG : RTSHORT;
        if (def.type == SysVarType::Long)
            node.resval.rlong = *i;
        else
            node.resval.rint = std::int16_t(*i);
    } else if (const auto* d = std::get_if<double>(&value)) {
        node.restype = RTREAL;
        node.resval.rreal = *d;
    } else if (const auto* s = std::get_if<std::string>(&value)) {
        node.restype = RTSTR;
        node.resval.rstring = heapStringFromUtf8(*s);
    } else if (const auto* p2 = std::get_if<VcGePoint2d>(&value)) {
        fillPoint(node, RTPOINT, p2->x, p2->y, 0);
    } else {
        const auto& p = std::get<VcGePoint3d>(value);
        fillPoint(node, RT3DPOINT, p.x, p.y, p.z);
    }
}

std::optional<SysVarValue> valueOf(const resbuf& node)
{
    switch (node.restype) {
    case RTSHORT:
        return std::int32_t(node.resval.rint);
    case RTLONG:
        return node.resval.rlong;
    case RTREAL:
    case RTANG:
    case RTORINT:
        return node.resval.rreal;
    case RTSTR:
        return rbUtf8(node);
    case RTPOINT:
        return VcGePoint3d(node.resval.rpoint[0], node.resval.rpoint[1], 0);
    case RT3DPOINT:
        return VcGePoint3d(node.resval.rpoint[0], node.resval.rpoint[1], node.resval.rpoint[2]);
    default:
        return std::nullopt;
    }
}

constexpr std::size_t kNumberText = 133;

int putText(const std::string& utf8, wchar_t* out, std::size_t size)
{
    const std::wstring text = utf8ToWide(utf8);
    if (!out || text.size() >= size)
        return RTERROR;
    std::wmemcpy(out, text.c_str(), text.size() + 1);
    return RTNORM;
}

int unitOr(int given, const char* variable) { return given < 0 ? int(editor().vars().integer(variable)) : given; }

}

int vcedGetVar(const wchar_t* name, resbuf* valueOut)
{
    const std::string utf8 = name ? wideToUtf8(name) : std::string();
    const SysVarDef* def = findSysVar(utf8);
    if (!def || !valueOut)
        return RTERROR;
    fill(*valueOut, *def, *editor().vars().get(utf8));
    valueOut->rbnext = nullptr;
    return RTNORM;
}

int vcedSetVar(const wchar_t* name, const resbuf* value)
{
    const auto wanted = name && value ? valueOf(*value) : std::nullopt;
    return wanted && editor().vars().set(wideToUtf8(name), *wanted) == SetVarResult::Done ? RTNORM : RTERROR;
}

int vcedGetEnv(const wchar_t* name, wchar_t* valueOut)
{
    const auto value = name ? readEnvironment(wideToUtf8(name)) : std::nullopt;
    return value ? putText(*value, valueOut, 512) : RTERROR;
}

int vcedSetEnv(const wchar_t* name, const wchar_t* value)
{
    return name && value && writeEnvironment(wideToUtf8(name), wideToUtf8(value)) ? RTNORM : RTERROR;
}

int vcedFindFile(const wchar_t* name, wchar_t* pathOut, std::size_t size)
{
    const auto path = name && *name ? findSupportFile(wideToUtf8(name)) : std::nullopt;
    return path ? putText(*path, pathOut, size) : RTERROR;
}

int vcdbRToS(double value, int unit, int precision, wchar_t* textOut)
{
    LinearFormat format;
    format.notation = LinearNotation(std::clamp(unitOr(unit, "LUNITS"), 1, 5));
    format.precision = std::clamp(unitOr(precision, "LUPREC"), 0, 16);
    format.zeros = int(editor().vars().integer("DIMZIN"));
    format.asTyped = editor().vars().integer("UNITMODE") != 0;
    return putText(distanceText(value, format), textOut, kNumberText);
}

int vcdbAngToS(double radians, int unit, int precision, wchar_t* textOut)
{
    AngularFormat format;
    format.notation = AngularNotation(std::clamp(unitOr(unit, "AUNITS"), 0, 4));
    format.precision = std::clamp(unitOr(precision, "AUPREC"), 0, 8);
    format.asTyped = editor().vars().integer("UNITMODE") != 0;
    return putText(angleText(radians, format), textOut, kNumberText);
}

int vcdbDisToF(const wchar_t* text, int unit, double* valueOut)
{
    const auto value =
        text ? parseDistance(wideToUtf8(text), LinearNotation(std::clamp(unitOr(unit, "LUNITS"), 1, 5))) : std::nullopt;
    if (!value || !valueOut)
        return RTERROR;
    *valueOut = *value;
    return RTNORM;
}

int vcdbAngToF(const wchar_t* text, int unit, double* radiansOut)
{
    const auto value =
        text ? parseAngle(wideToUtf8(text), AngularNotation(std::clamp(unitOr(unit, "AUNITS"), 0, 4))) : std::nullopt;
    if (!value || !radiansOut)
        return RTERROR;
    *radiansOut = *value;
    return RTNORM;
}

std::uint32_t vcedGetRGB(int colourIndex) { return vccmPaletteRgb(colourIndex); }
