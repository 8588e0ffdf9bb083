#include "host/io/legacy_sink.h"

#include <algorithm>
#include <iterator>

struct CodeRange {
    int first, last;
};

struct LegacyKind {
    std::string_view type;
    bool isEntity;
    bool hasPoints;  // any of 10 to 18 and their ordinates
    CodeRange codes[7];
};

namespace {

constexpr LegacyKind kKinds[] = {
    {"3DFACE", true, true, {{70, 70}}},
    {"APPID", false, false, {{2, 2}, {70, 70}}},
    {"ARC", true, true, {{40, 40}, {50, 51}}},
    {"ATTDEF", true, true, {{1, 3}, {7, 7}, {40, 41}, {50, 51}, {70, 74}}},
    {"ATTRIB", true, true, {{1, 2}, {7, 7}, {40, 41}, {50, 51}, {70, 74}}},
    {"BLOCK", true, true, {{1, 3}, {70, 70}}},
    {"CIRCLE", true, true, {{40, 40}}},
    {"DIMENSION", true, true, {{1, 3}, {40, 40}, {50, 53}, {70, 70}}},
    {"DIMSTYLE", false, false, {{2, 7}, {40, 48}, {70, 78}, {140, 147}, {170, 178}}},
    {"ENDBLK", true, false, {}},
    {"INSERT", true, true, {{2, 2}, {41, 45}, {50, 50}, {66, 66}, {70, 71}}},
    {"LAYER", false, false, {{2, 2}, {6, 6}, {62, 62}, {70, 70}}},
    {"LINE", true, true, {}},
    {"LTYPE", false, false, {{2, 3}, {40, 40}, {49, 49}, {70, 70}, {72, 73}}},
    {"POINT", true, true, {{50, 50}}},
    {"POLYLINE", true, true, {{40, 41}, {66, 66}, {70, 75}}},
    {"SEQEND", true, false, {}},
    {"SHAPE", true, true, {{2, 2}, {40, 41}, {50, 51}}},
    {"SOLID", true, true, {}},
    {"STYLE", false, false, {{2, 4}, {40, 42}, {50, 50}, {70, 71}}},
    {"TABLE", false, false, {{2, 2}, {70, 70}}},
    {"TEXT", true, true, {{1, 1}, {7, 7}, {40, 41}, {50, 51}, {71, 73}}},
    {"TRACE", true, true, {}},
    {"UCS", false, true, {{2, 2}, {70, 70}}},
    {"VERTEX", true, true, {{40, 42}, {50, 50}, {70, 74}}},
    {"VIEW", false, true, {{2, 2}, {40, 44}, {50, 50}, {70, 71}}},
    {"VIEWPORT", true, true, {{40, 41}, {68, 69}}},
    {"VPORT", false, true, {{2, 2}, {40, 45}, {50, 51}, {70, 78}}},
};

const LegacyKind* kindOf(std::string_view type)
{
    const auto found = std::lower_bound(std::begin(kKinds), std::end(kKinds), type,
                                        [](const LegacyKind& k, std::string_view t) { return k.type < t; });
    return found != std::end(kKinds) && found->type == type ? found : nullptr;
}

// What entities share.
bool isCommon(int code)
{
    return code == 5 || code == 6 || code == 8 || code == 62 || code == 67 || code == 38 || code == 39 ||
           (code >= 210 && code <= 239);
}

bool isOrdinate(int code)
{
    return (code >= 10 && code <= 18) || (code >= 20 && code <= 28) || (code >= 30 && code <= 37);
}

// The blocks of the two spaces are named otherwise.
std::string_view legacyName(std::string_view name)
{
    if (name == "*Model_Space" || name == "*MODEL_SPACE")
        return "$MODEL_SPACE";
    if (name == "*Paper_Space" || name == "*PAPER_SPACE")
        return "$PAPER_SPACE";
    return name;
}

}

bool LegacySink::knows(std::string_view type)
{
    const LegacyKind* kind = kindOf(type);
    return kind && kind->isEntity;
}

bool LegacySink::passes(int code) const
{
    if (!m_kind || code >= 1000)
        return true;
    if (m_isKept && m_keepUnclaimed)
        return true;
    if ((m_kind->isEntity && isCommon(code)) || (m_kind->hasPoints && isOrdinate(code)))
        return true;
    return std::any_of(std::begin(m_kind->codes), std::end(m_kind->codes),
                       [&](const CodeRange& r) { return code >= r.first && code <= r.last && code != 0; });
}

void LegacySink::real(int code, double value)
{
    if (passes(code))
        m_next.real(code, value);
}

void LegacySink::integer(int code, std::int64_t value)
{
    if (passes(code))
        m_next.integer(code, value);
}

void LegacySink::text(int code, std::string_view utf8)
{
    if (code == 0)
        m_kind = kindOf(utf8);
    else if (code == 100 || code == 101)
        return;
    if (code == 0 || passes(code))
        m_next.text(code, m_kind && m_kind->type == "BLOCK" && (code == 2 || code == 3) ? legacyName(utf8) : utf8);
}

void LegacySink::handle(int code, std::uint64_t handle)
{
    if (passes(code))
        m_next.handle(code, handle);
}

void LegacySink::bytes(int code, std::string_view data)
{
    if (passes(code))
        m_next.bytes(code, data);
}
