#include "host/base/group_code.h"

#include "sdk/vkdefs.h"

namespace {

using enum GroupKind;

struct CodeRange {
    std::int16_t first;
    std::int16_t last;
    GroupKind kind;
};

constexpr CodeRange kRanges[] = {
    {-6, -6, None},
    {-5, -5, Reference},
    {-4, -4, String},
    {-3, -3, None},
    {-2, -1, Reference},
    {0, 4, String},
    {5, 5, Handle},
    {6, 9, String},
    {10, 18, Point},
    {19, 59, Real},
    {60, 79, Int16},
    {90, 99, Int32},
    {100, 102, String},
    {105, 105, Handle},
    {110, 119, Point},
    {120, 149, Real},
    {160, 169, Int64},
    {170, 179, Int16},
    {210, 219, Point},
    {220, 239, Real},
    {270, 289, Int16},
    {290, 299, Bool},
    {300, 309, String},
    {310, 319, Binary},
    {320, 369, Reference},
    {370, 389, Int16},
    {390, 399, Reference},
    {400, 409, Int16},
    {410, 419, String},
    {420, 429, Int32},
    {430, 439, String},
    {440, 459, Int32},
    {460, 469, Real},
    {470, 479, String},
    {480, 481, Reference},
    {999, 1003, String},
    {1004, 1004, Binary},
    {1005, 1005, Handle},
    {1006, 1009, String},
    {1010, 1013, Point},
    {1014, 1059, Real},
    {1060, 1070, Int16},
    {1071, 1071, Int32},
    {RTREAL, RTREAL, Real},
    {RTPOINT, RTPOINT, Point},
    {RTSHORT, RTSHORT, Int16},
    {RTANG, RTANG, Real},
    {RTSTR, RTSTR, String},
    {RTENAME, RTPICKS, Reference},
    {RTORINT, RTORINT, Real},
    {RT3DPOINT, RT3DPOINT, Point},
    {RTLONG, RTLONG, Int32},
    {RTDXF0, RTDXF0, String},
};

constexpr int kTableFirst = -6;
constexpr int kTableLast = RTDXF0;

struct KindTable {
    GroupKind kinds[kTableLast - kTableFirst + 1] = {};

    constexpr KindTable()
    {
        for (const CodeRange& range : kRanges)
            for (int code = range.first; code <= range.last; ++code)
                kinds[code - kTableFirst] = range.kind;
    }
};

constexpr KindTable kTable;

}  // namespace

GroupKind groupKind(int code)
{
    return code < kTableFirst || code > kTableLast ? None : kTable.kinds[code - kTableFirst];
}

GroupKind fileGroupKind(int code)
{
    const GroupKind kind = groupKind(code);
    return kind == Point ? Real : kind;
}

bool isStringKind(GroupKind kind) { return kind == String || kind == Handle; }

bool isIntegerKind(GroupKind kind) { return kind == Int16 || kind == Int32 || kind == Int64 || kind == Bool; }
