#include "scale/ScaleText.h"

#include "core/VkMath.h"
#include "system.h"

#include <algorithm>
#include <cwctype>

void TrimLeft(VcString& text)
{
    unsigned first = 0;
    while (text.getAt(first) == L' ')
        ++first;
    text = text.substr(int(first), -1);
}

void TrimRight(VcString& text)
{
    unsigned length = text.length();
    while (length > 0 && text.getAt(length - 1) == L' ')
        --length;
    text = text.substr(int(length));
}

namespace {

bool isAllDigits(const VcString& text)
{
    const wchar_t* first = text.kwszPtr();
    return std::all_of(first, first + text.length(), [](wchar_t c) { return std::iswdigit(wint_t(c)) != 0; });
}

double unitsOf(const VcString& text)
{
    const double units = _wtof(text.kwszPtr());
    return VkMath::isZero(units, kScaleTolerance) ? 1.0 : units;
}

}  // namespace

bool isNumber(const VcString& text)
{
    const int point = text.find(L'.');
    if (point < 1)
        return isAllDigits(text);
    return isAllDigits(text.substr(point)) && isAllDigits(text.substr(point + 1, -1));
}

// What is longer than the greatest number is none, although all of it is digits.
bool isValidScale(const VcString& text, double& paper, double& drawing)
{
    const int colon = text.find(L':');
    if (colon < 1)
        return false;
    const VcString before = text.substr(colon), behind = text.substr(colon + 1, -1);
    if (!isNumber(before) || !isNumber(behind))
        return false;
    paper = unitsOf(before);
    drawing = unitsOf(behind);
    return std::isfinite(paper) && std::isfinite(drawing);
}

void removeTrailingZero(CStdStrW& text)
{
    if (text.Find(L'.') < 0)
        return;
    text.TrimRight(L'0');
    text.TrimRight(L'.');
}

CStdStrW unitsText(double units)
{
    CStdStrW text;
    text.Format(L"%.4f", units);
    removeTrailingZero(text);
    return text;
}
