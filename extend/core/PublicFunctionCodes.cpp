// Group codes by the kind of their value, and checks of texts and numbers.
#include "core/PublicFunction.h"

#include "vcut.h"

#include <cmath>

namespace {

struct CodeRange {
    int first, last, type;
};

template <std::size_t N>
int typeIn(const CodeRange (&ranges)[N], int code)
{
    for (const CodeRange& range : ranges)
        if (code >= range.first && code <= range.last)
            return range.type;
    return RTNONE;
}

constexpr CodeRange kResultTypes[] = {
    {-3, -3, RTSHORT},     {-2, -1, RTENAME},   {0, 9, RTSTR},     {10, 19, RT3DPOINT}, {20, 49, RTREAL},
    {50, 59, RTANG},       {60, 79, RTSHORT},   {105, 105, RTSTR}, {140, 147, RTREAL},  {170, 179, RTSHORT},
    {210, 239, RT3DPOINT}, {270, 289, RTSHORT}, {340, 369, RTSTR}, {370, 379, RTSHORT}, {999, 999, RTSTR},
};

constexpr CodeRange kDataTypes[] = {
    {0, 9, RTSTR},           {100, 102, RTSTR},    {105, 105, RTSTR},   {300, 309, RTSTR},     {410, 419, RTSTR},
    {999, 1003, RTSTR},      {1005, 1009, RTSTR},  {10, 17, RT3DPOINT}, {110, 119, RT3DPOINT}, {210, 219, RT3DPOINT},
    {1010, 1013, RT3DPOINT}, {38, 59, RTREAL},     {140, 149, RTREAL},  {1038, 1059, RTREAL},  {60, 79, RTSHORT},
    {170, 179, RTSHORT},     {270, 299, RTSHORT},  {370, 389, RTSHORT}, {400, 409, RTSHORT},   {1060, 1070, RTSHORT},
    {90, 99, RTLONG},        {1071, 1071, RTLONG}, {310, 369, RTENAME}, {390, 399, RTENAME},
};

constexpr int kBinary = 1004;

}  // namespace

// Codes of extended data are looked up as those of plain data that they stand for.
int dxf2rbtype(int code)
{
    if (code == kBinary)
        return RTNONE;
    const bool extended = code >= 1000 && code <= 4999;
    return typeIn(kResultTypes, extended ? code % 1000 : code);
}

int dxfCodeToDataType(int code)
{
    if (code < 0 || code >= 5000 || code == kBinary)
        return code;
    return typeIn(kDataTypes, code);
}

int strings_i_compare(const wchar_t* a, const wchar_t* b)
{
    if (!a || !b)
        return -1;
    const auto folded = [](wchar_t c) { return c >= L'A' && c <= L'Z' ? c - L'A' + L'a' : c; };
    while (*a && folded(*a) == folded(*b))
        ++a, ++b;
    return int(folded(*a)) - int(folded(*b));
}

bool IsStringSelected(const wchar_t* text, const CStringArray& array)
{
    for (int i = 0; i < array.GetSize(); ++i)
        if (array.GetAt(i).Compare(text) == 0)
            return true;
    return false;
}

bool IsAllNum(const wchar_t* text)
{
    int points = 0;
    for (; *text; ++text) {
        if (*text == L'.')
            ++points;
        else if (*text < L'0' || *text > L'9')
            return false;
    }
    return points <= 1;
}

bool IsLegalName(const wchar_t* text) { return text[std::wcscspn(text, L"\"'*,/:<=>?\\|")] == L'\0'; }

int MatchLineWidth(double width, int* hundredthsOut)
{
    constexpr double kWeights[] = {0,    0.05, 0.09, 0.13, 0.15, 0.18, 0.2,  0.25, 0.3, 0.35, 0.4, 0.5,
                                   0.53, 0.6,  0.7,  0.8,  0.9,  1.0,  1.06, 1.2,  1.4, 1.58, 2.0, 2.11};
    constexpr double kSame = 1e-9;
    for (const double weight : kWeights) {
        if (std::fabs(width - weight) < kSame) {
            *hundredthsOut = int(width * 100);
            return RTNORM;
        }
    }
    return RTERROR;
}
