#include "host/db/dim_format.h"

#include "host/base/units.h"

#include <fmt/format.h>

#include <cmath>

namespace {

using Kind = DimMeasure::Kind;

// How one row of variables (primary, alternate, tolerance) writes a length.
struct LengthStyle {
    int unit, places, zeros;
    double round;
};

LengthStyle primaryStyle(const VcDbDimVars& v) { return {v.dimlunit, v.dimdec, v.dimzin, v.dimrnd}; }

// DIMALTU counts stacked and unstacked fractions apart: 4 and 5 stack, 6 and 7 do not.
LengthStyle alternateStyle(const VcDbDimVars& v)
{
    const int unit = v.dimaltu == 6 || v.dimaltu == 7 ? v.dimaltu - 2 : v.dimaltu == 8 ? 6 : v.dimaltu;
    return {unit, v.dimaltd, v.dimaltz, v.dimaltrnd};
}

bool alternateStacks(const VcDbDimVars& v) { return v.dimaltu == 4 || v.dimaltu == 5; }

double rounded(double value, double step) { return step > 0 ? std::round(value / step) * step : value; }

LinearNotation notationOf(int unit)
{
    return unit >= 1 && unit <= 5 ? LinearNotation(unit) : LinearNotation::Decimal;
}

void replaceAll(std::string& text, std::string_view from, std::string_view to)
{
    for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size())
        text.replace(at, from.size(), to);
}

std::string utf8Of(std::int16_t character)
{
    const auto c = std::uint16_t(character);
    if (c < 0x80)
        return std::string(1, char(c));
    if (c < 0x800)
        return {char(0xC0 | (c >> 6)), char(0x80 | (c & 63))};
    return {char(0xE0 | (c >> 12)), char(0x80 | ((c >> 6) & 63)), char(0x80 | (c & 63))};
}

bool isDigit(char c) { return c >= '0' && c <= '9'; }

// "1 3/8" becomes 1 with a stack of 3 over 8: level for DIMFRAC 0, slanted for 1.
std::string withStackedFraction(const std::string& text, int dimfrac)
{
    const std::size_t slash = text.find('/');
    if (slash == std::string::npos || dimfrac == 2)
        return text;
    std::size_t from = slash, to = slash + 1;
    while (from > 0 && isDigit(text[from - 1]))
        --from;
    while (to < text.size() && isDigit(text[to]))
        ++to;
    const std::size_t gap = from > 0 && text[from - 1] == ' ' ? from - 1 : from;
    return fmt::format("{}{{\\H1.0x;\\S{}{}{};}}{}", text.substr(0, gap), text.substr(from, slash - from), dimfrac == 1 ? '#' : '/',
                       text.substr(slash + 1, to - slash - 1), text.substr(to));
}

// Without a fraction's stack.
std::string plainLength(double value, const LengthStyle& style, const VcDbDimVars& vars)
{
    std::string text = distanceText(rounded(value, style.round), {notationOf(style.unit), style.places, style.zeros});
    if (vars.dimdsep != 0 && vars.dimdsep != '.' && (style.unit == 2 || style.unit == 6))
        replaceAll(text, ".", utf8Of(vars.dimdsep));
    return text;
}

std::string lengthText(double value, const LengthStyle& style, const VcDbDimVars& vars, bool stacks)
{
    const std::string text = plainLength(value, style, vars);
    return stacks && (style.unit == 4 || style.unit == 5) ? withStackedFraction(text, vars.dimfrac) : text;
}

std::string angleValueText(double radians, const VcDbDimVars& vars, int places)
{
    const int unit = vars.dimaunit >= 0 && vars.dimaunit <= 3 ? vars.dimaunit : 0;
    std::string text = angleText(radians, {AngularNotation(unit), places, (vars.dimazin & 3) << 2});
    if (unit == 0)
        text += "%%d";
    else if (unit == 1)
        replaceAll(text, "d", "%%d");
    return text;
}

int anglePlaces(const VcDbDimVars& vars) { return vars.dimadec >= 0 ? vars.dimadec : vars.dimdec; }

// DIMPOST and DIMAPOST: what stands before and behind the mark or, without one, a suffix.
struct Affixes {
    std::string before, after;
};

Affixes affixesOf(const std::string& post, std::string_view mark)
{
    if (post.empty() || post == ".")
        return {};
    const std::size_t at = post.find(mark);
    if (at == std::string::npos)
        return {"", post};
    return {post.substr(0, at), post.substr(at + mark.size())};
}

// The part behind \X belongs below the line and is no part of the suffix.
std::string takeBelow(std::string& text)
{
    const std::size_t at = text.find("\\X");
    if (at == std::string::npos)
        return {};
    std::string below = text.substr(at + 2);
    text.erase(at);
    return below;
}

const char* symbolOf(Kind kind) { return kind == Kind::Radius ? "R" : kind == Kind::Diameter ? "%%c" : ""; }

// One column of values: primary or alternate. Tolerances are in the column's unit.
class Column {
public:
    Column(const VcDbDimVars& vars, Kind kind, bool alternate) : m_vars(vars), m_kind(kind), m_alternate(alternate) {}

    std::string text(double value) const
    {
        if (m_vars.dimlim)
            return limits(value);
        std::string all = number(value);
        if (m_vars.dimtol)
            all += tolerance();
        return all;
    }

private:
    LengthStyle style() const { return m_alternate ? alternateStyle(m_vars) : primaryStyle(m_vars); }
    bool stacks() const { return m_alternate ? alternateStacks(m_vars) : m_vars.dimfrac != 2; }
    double factor() const { return m_alternate ? m_vars.dimaltf : 1.0; }

    std::string number(double value) const
    {
        return m_kind == Kind::Angle ? angleValueText(value, m_vars, anglePlaces(m_vars)) : lengthText(value, style(), m_vars, stacks());
    }

    std::string toleranceNumber(double value) const
    {
        if (m_kind == Kind::Angle)
            return angleValueText(value, m_vars, m_vars.dimtdec);
        LengthStyle s = style();
        s.places = m_alternate ? m_vars.dimalttd : m_vars.dimtdec;
        s.zeros = m_alternate ? m_vars.dimalttz : m_vars.dimtzin;
        s.round = 0;
        return plainLength(value, s, m_vars);
    }

    // In the unit of the value: an angle's tolerances are degrees.
    double upper() const { return m_kind == Kind::Angle ? m_vars.dimtp * M_PI / 180 : m_vars.dimtp * factor(); }
    double lower() const { return m_kind == Kind::Angle ? m_vars.dimtm * M_PI / 180 : m_vars.dimtm * factor(); }

    // A zero has no sign, but its room, so that the digits of both lines stand over each other.
    std::string deviation(double value) const
    {
        const char* sign = value > 0 ? "+" : value < 0 ? "-" : " ";
        return sign + toleranceNumber(std::abs(value));
    }

    // The stroke of a fraction would part the stack before the sign that is to.
    std::string stack(std::string over, std::string under) const
    {
        replaceAll(over, "/", "\\/");
        replaceAll(under, "/", "\\/");
        return fmt::format("{{\\H{:g}x;\\S{}^{};}}", m_vars.dimtfac > 0 ? m_vars.dimtfac : 1.0, over, under);
    }

    std::string tolerance() const
    {
        if (upper() == lower())
            return "%%p" + (m_vars.dimtfac > 0 && m_vars.dimtfac != 1 ? fmt::format("{{\\H{:g}x;{}}}", m_vars.dimtfac, toleranceNumber(std::abs(upper())))
                                                                      : toleranceNumber(std::abs(upper())));
        return stack(deviation(upper()), deviation(-lower()));
    }

    std::string limits(double value) const { return stack(toleranceNumber(value + upper()), toleranceNumber(value - lower())); }

    const VcDbDimVars& m_vars;
    Kind m_kind;
    bool m_alternate;
};

struct Parts {
    std::string primary, primaryBelow, alternate, alternateBelow;
};

// A prefix of the style's own takes the place of R and the diameter sign.
Parts partsOf(const DimMeasure& measure, const VcDbDimVars& vars, bool inPaperSpace)
{
    Parts parts;
    const bool isAngle = measure.kind == Kind::Angle;
    const double value = isAngle ? measure.value : rounded(measure.value * linearFactor(vars, inPaperSpace), vars.dimrnd);
    Affixes post = affixesOf(vars.dimpost, "<>");
    parts.primaryBelow = takeBelow(post.after);
    const std::string before = post.before.empty() ? symbolOf(measure.kind) : post.before;
    parts.primary = before + Column(vars, measure.kind, false).text(value) + post.after;
    if (!vars.dimalt || isAngle)
        return parts;
    Affixes alternate = affixesOf(vars.dimapost, "[]");
    parts.alternateBelow = takeBelow(alternate.after);
    const std::string sign = alternate.before.empty() ? symbolOf(measure.kind) : alternate.before;
    parts.alternate = "[" + sign + Column(vars, measure.kind, true).text(value * vars.dimaltf) + alternate.after + "]";
    return parts;
}

}

double linearFactor(const VcDbDimVars& vars, bool inPaperSpace)
{
    if (vars.dimlfac < 0)
        return inPaperSpace ? -vars.dimlfac : 1;
    return vars.dimlfac == 0 ? 1 : vars.dimlfac;
}

std::string dimNumberText(double value, Kind kind, const VcDbDimVars& vars)
{
    return kind == Kind::Angle ? angleValueText(value, vars, anglePlaces(vars))
                               : lengthText(value, primaryStyle(vars), vars, vars.dimfrac != 2);
}

DimText dimText(const DimMeasure& measure, const VcDbDimVars& vars, std::string_view override, bool inPaperSpace)
{
    if (override == " " || override == ".")
        return {};
    const Parts parts = partsOf(measure, vars, inPaperSpace);
    std::string text(override.empty() ? std::string_view("<>") : override);
    const bool placesAlternate = text.find("[]") != std::string::npos;
    std::string below = takeBelow(text);
    const std::string measured = placesAlternate || parts.alternate.empty() ? parts.primary : parts.primary + " " + parts.alternate;
    for (std::string* half : {&text, &below}) {
        replaceAll(*half, "<>", measured);
        if (placesAlternate)
            replaceAll(*half, "[]", parts.alternate);
    }
    if (override.find("<>") != std::string_view::npos || override.empty())
        below += parts.primaryBelow + parts.alternateBelow;
    const std::string align = vars.dimtolj == 1 || vars.dimtolj == 2 ? fmt::format("\\A{};", vars.dimtolj) : std::string();
    return {text.empty() ? text : align + text, below.empty() ? below : align + below};
}
