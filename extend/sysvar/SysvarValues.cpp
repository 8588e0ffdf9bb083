#include "sysvar/SysvarValues.h"

#include "system.h"
#include "vcut.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <numbers>

namespace {

constexpr const wchar_t* kDegrees = L"UCSAXISANG";  // shown and read in degrees, kept in radians
constexpr double kMostDegrees = 1e9;
constexpr int kLongestText = 2048;

CStdStrW formatted(const wchar_t* format, const auto&... arguments)
{
    CStdStrW text;
    text.Format(format, arguments...);
    return text;
}

CStdStrW number(long value) { return formatted(L"%ld", value); }

CStdStrW flatPoint(const resbuf& value)
{
    return formatted(L"%.4f,%.4f", value.resval.rpoint[0], value.resval.rpoint[1]);
}

CStdStrW point(const resbuf& value) { return flatPoint(value) + formatted(L",%.4f", value.resval.rpoint[2]); }

CStdStrW string(const resbuf& value) { return CStdStrW(value.resval.rstring).Left(kLongestText); }

// A value of a kind that only the catalogue names.
CStdStrW byCatalogue(const CStdStrW& type, const resbuf& value)
{
    switch (kindOf(type)) {
    case SysvarKind::Switch:
        return value.resval.rint == 0 ? L"OFF" : L"ON";
    case SysvarKind::Real:
        return formatted(L"%.4f", value.resval.rreal);
    case SysvarKind::Point2d:
        return flatPoint(value);
    case SysvarKind::Point3d:
        return point(value);
    case SysvarKind::String:
    case SysvarKind::Character:
        return string(value);
    default:
        return number(value.resval.rint);
    }
}

void takeReal(SysvarData& record, double value)
{
    const bool inDegrees = record.name == kDegrees;
    record.current = inDegrees ? number(long(std::clamp(180.0 * value / std::numbers::pi, -kMostDegrees, kMostDegrees)))
                               : formatted(L"%.4f", value);
    record.type = inDegrees ? L"Integer" : L"Real";
}

void takeByType(SysvarData& record, const resbuf& value)
{
    switch (value.restype) {
    case RTSHORT:
        record.current = number(value.resval.rint);
        record.type = L"Integer";
        break;
    case RTREAL:
        takeReal(record, value.resval.rreal);
        break;
    case RTSTR:
        record.current = string(value);
        record.type = L"String";
        break;
    case RTPOINT:
        record.current = flatPoint(value);
        record.type = L"2D point";
        break;
    case RT3DPOINT:
        record.current = point(value);
        record.type = L"3D point";
        break;
    case RTLONG:
        record.current = formatted(L"%ld", value.resval.rlong);
        record.type = L"Long";
        break;
    default:
        record.current = byCatalogue(record.type, value);
    }
}

template <class Number>
bool putWhole(long wanted, Number& value)
{
    if (wanted < std::numeric_limits<Number>::min() || wanted > std::numeric_limits<Number>::max())
        return false;
    value = Number(wanted);
    return true;
}

// Splits the text at its first commas. How many coordinates there are, at most as many as asked for; the others are 0.
int putPoint(const CStdStrW& text, int most, resbuf& value)
{
    double* coordinates = value.resval.rpoint;
    std::fill_n(coordinates, 3, 0.0);
    int count = 0, from = 0;
    do {
        coordinates[count++] = _wtof(text.Mid(from));
        from = text.Find(L',', from) + 1;
    } while (count < most && from > 0);
    return count;
}

// Without a comma behind something the point stays at zero.
bool makePoint(const CStdStrW& text, int most, resbuf& value)
{
    value.restype = most == 2 ? RTPOINT : RT3DPOINT;
    if (text.Find(L',') > 0)
        putPoint(text, most, value);
    return true;
}

double radians(const wchar_t* degrees) { return _wtoi(degrees) * 3.1415926535898 / 180.0; }

bool putDegrees(const wchar_t* text, resbuf& value)
{
    value.restype = RTREAL;
    value.resval.rreal = radians(text);
    return true;
}

bool putSwitch(CStdStrW text, resbuf& value)
{
    text.MakeUpper();
    if (text == L"ON" || text == L"OFF") {
        releaseValue(value);
        value.restype = RTSTR;
        return vcutUpdString(text, value.resval.rstring) == RTNORM;
    }
    if (text != L"1" && text != L"0")
        return false;
    value.restype = RTSHORT;
    value.resval.rint = std::int16_t(_wtoi(text));
    return true;
}

bool putString(const CStdStrW& text, resbuf& value)
{
    wchar_t* copy = nullptr;
    if (vcutNewString(text.Left(kLongestText), copy) != RTNORM)
        return false;
    releaseValue(value);
    value.restype = RTSTR;
    value.resval.rstring = copy;
    return true;
}

// The shortest form that reads back to the same number, recognisable as a real.
CStdStrW scriptReal(double value)
{
    CStdStrW text;
    for (int digits = 15; digits <= 17; ++digits) {
        text = formatted(L"%.*g", digits, value);
        if (_wtof(text) == value)
            break;
    }
    return text.FindOneOf(L".en") < 0 ? text + L".0" : text;
}

CStdStrW scriptText(const wchar_t* value)
{
    CStdStrW text = value;
    text.Replace(L"\\", L"\\\\");
    text.Replace(L"\"", L"\\\"");
    text.Replace(L"\n", L"\\n");
    text.Replace(L"\r", L"\\r");
    return L"\"" + text + L"\"";
}

}  // namespace

SysvarKind kindOf(const CStdStrW& type)
{
    static constexpr struct {
        const wchar_t* name;
        SysvarKind kind;
    } kKinds[] = {
        {L"Integer", SysvarKind::Integer},
        {L"Enum", SysvarKind::Integer},
        {L"Short", SysvarKind::Integer},
        {L"Long", SysvarKind::Long},
        {L"Switch", SysvarKind::Switch},
        {L"Real", SysvarKind::Real},
        {L"2D point", SysvarKind::Point2d},
        {L"3D point", SysvarKind::Point3d},
        {L"3D vector", SysvarKind::Point3d},
        {L"String", SysvarKind::String},
        {L"Single character", SysvarKind::Character},
    };
    for (const auto& row : kKinds)
        if (type.CompareNoCase(row.name) == 0)
            return row.kind;
    return SysvarKind::Other;
}

void takeValue(SysvarData& record, const resbuf& value)
{
    takeByType(record, value);
    record.newValue = record.readOnly ? CStdStrW(L"(Read-only)") : record.current;
}

bool putNewValue(const SysvarData& record, resbuf& value)
{
    const CStdStrW& text = record.newValue;
    switch (kindOf(record.type)) {
    case SysvarKind::Integer:
        return record.name == kDegrees ? putDegrees(text, value) : putWhole(_wtoi(text), value.resval.rint);
    case SysvarKind::Long:
        return putWhole(_wtol(text), value.resval.rlong);
    case SysvarKind::Real:
        value.resval.rreal = _wtof(text);
        return true;
    case SysvarKind::Point2d:
        return putPoint(text, 2, value) == 2;
    case SysvarKind::Point3d:
        return putPoint(text, 3, value) == 3;
    case SysvarKind::Switch:
        return putSwitch(text, value);
    case SysvarKind::String:
        return putString(text, value);
    default:
        return putWhole(_wtoi(text), value.resval.rint);
    }
}

bool makeValue(const SysvarData& record, const wchar_t* text, resbuf& value)
{
    value = {};
    value.restype = RTSHORT;
    if (record.name.CompareNoCase(kDegrees) == 0)
        return putDegrees(text, value);
    switch (kindOf(record.type)) {
    case SysvarKind::Long:
        value.restype = RTLONG;
        return putWhole(_wtol(text), value.resval.rlong);
    case SysvarKind::Real:
        value.restype = RTREAL;
        value.resval.rreal = _wtof(text);
        return true;
    case SysvarKind::Point2d:
        return makePoint(text, 2, value);
    case SysvarKind::Point3d:
        return makePoint(text, 3, value);
    case SysvarKind::String:
    case SysvarKind::Character:
        value.restype = RTSTR;
        return vcutNewString(text, value.resval.rstring) == RTNORM;
    default:
        return putWhole(_wtoi(text), value.resval.rint);
    }
}

CStdStrW scriptValue(const SysvarData& record, const resbuf& value)
{
    const double* at = value.resval.rpoint;
    switch (kindOf(record.type)) {
    case SysvarKind::Integer:
        return record.current;
    case SysvarKind::Long:
        return formatted(L"%ld", value.resval.rlong);
    case SysvarKind::Real:
        return scriptReal(value.resval.rreal);
    case SysvarKind::Point2d:
        return formatted(L"'(%.4f %.4f)", at[0], at[1]);
    case SysvarKind::Point3d:
        return formatted(L"'(%.4f %.4f %.4f)", at[0], at[1], at[2]);
    case SysvarKind::String:
    case SysvarKind::Character:
        return scriptText(value.resval.rstring);
    default:
        return number(value.resval.rint);
    }
}

void releaseValue(resbuf& value)
{
    if (value.restype == RTSTR && value.resval.rstring)
        vcad_free(value.resval.rstring);
    value = {};
}
