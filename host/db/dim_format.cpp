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

LinearNotation notationOf(int unit) { return unit >= 1 && unit <= 5 ? LinearNotation(unit) : LinearNotation::Decimal; }

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

bool isDecimal(int unit) { return unit == 2 || unit == 6; }

// Fractions and tolerances against the rest of the text.
double smallerBy(const VcDbDimVars& vars) { return vars.dimtfac > 0 ? vars.dimtfac : 1; }

bool isDigit(char c) { return c >= '0' && c <= '9'; }

// "1 3/8" becomes 1 with a stack of 3 over 8, in the height of DIMTFAC: level for DIMFRAC 0, slanted for 1.
std::string withStackedFraction(const std::string& text, const VcDbDimVars& vars)
{
    const std::size_t slash = text.find('/');
    if (slash == std::string::npos || vars.dimfrac == 2)
        return text;
    std::size_t from = slash, to = slash + 1;
    while (from > 0 && isDigit(text[from - 1]))
        --from;
    while (to < text.size() && isDigit(text[to]))
        ++to;
    const std::size_t gap = from > 0 && text[from - 1] == ' ' ? from - 1 : from;
    return fmt::format("{}{{\\H{:g}x;\\S{}{}{};}}{}", text.substr(0, gap), smallerBy(vars),
                       text.substr(from, slash - from), vars.dimfrac == 1 ? '#' : '/',
                       text.substr(slash + 1, to - slash - 1), text.substr(to));
}

// Without a fraction's stack.
std::string plainLength(double value, const LengthStyle& style, const VcDbDimVars& vars)
{
    std::string text = distanceText(value, {notationOf(style.unit), style.places, style.zeros});
    if (vars.dimdsep != 0 && vars.dimdsep != '.' && isDecimal(style.unit))
        replaceAll(text, ".", utf8Of(vars.dimdsep));
    return text;
}

std::string lengthText(double value, const LengthStyle& style, const VcDbDimVars& vars, bool stacks)
{
    const std::string text = plainLength(value, style, vars);
    return stacks && (style.unit == 4 || style.unit == 5) ? withStackedFraction(text, vars) : text;
}

int anglePlaces(const VcDbDimVars& vars) { return vars.dimadec >= 0 ? vars.dimadec : vars.dimdec; }

// The zeros in the bits of DIMZIN.
std::string angleValueText(double radians, const VcDbDimVars& vars, int places, int zeros)
{
    const int unit = vars.dimaunit >= 0 && vars.dimaunit <= 4 ? vars.dimaunit : 0;
    std::string text = angleText(radians, {AngularNotation(unit), places, zeros & 12});
    if (unit == 0)
        text += "%%d";
    else if (unit == 1 || unit == 4)
        replaceAll(text, "d", "%%d");
    return text;
}

std::string angleValueText(double radians, const VcDbDimVars& vars)
{
    return angleValueText(radians, vars, anglePlaces(vars), vars.dimazin << 2);
}

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

const char* symbolOf(Kind kind) { return kind == Kind::Radius ? "R" : kind == Kind::Diameter ? "%%c" : ""; }

// One column: primary or alternate. A length below one unit is counted in sub-units where the style names them; then
// tolerances are too, and the sub-units' suffix stands in place of the unit's.
class Column {
public:
    Column(const VcDbDimVars& vars, Kind kind, bool alternate, double value)
        : m_vars(vars), m_kind(kind), m_alternate(alternate)
    {
        m_value = kind == Kind::Angle ? value : rounded(value, style().round);
        const std::string& suffix = alternate ? vars.dimaltmzs : vars.dimmzs;
        const double factor = alternate ? vars.dimaltmzf : vars.dimmzf;
        const bool isBelowOne = m_value != 0 && std::abs(m_value) < 1;
        if (kind != Kind::Angle && isDecimal(style().unit) && isBelowOne && factor > 0 && !suffix.empty() &&
            suffix != ".") {
            m_subUnit = factor;
            m_subSuffix = suffix;
        }
    }

    // A prefix of the style's own takes the place of R and the diameter sign.
    std::string text(const Affixes& affixes) const
    {
        const std::string before = affixes.before.empty() ? symbolOf(m_kind) : affixes.before;
        const std::size_t below = std::min(affixes.after.find("\\X"), affixes.after.size());
        const std::string after = m_subSuffix.empty() ? affixes.after : m_subSuffix + affixes.after.substr(below);
        return before + values() + after;
    }

private:
    LengthStyle style() const { return m_alternate ? alternateStyle(m_vars) : primaryStyle(m_vars); }
    bool stacks() const { return m_alternate ? alternateStacks(m_vars) : m_vars.dimfrac != 2; }
    double factor() const { return m_alternate ? m_vars.dimaltf : 1.0; }

    std::string values() const
    {
        if (m_vars.dimlim)
            return stack(toleranceNumber(m_value + upper()), toleranceNumber(m_value - lower()));
        return m_vars.dimtol ? number() + tolerance() : number();
    }

    std::string number() const
    {
        return m_kind == Kind::Angle ? angleValueText(m_value, m_vars)
                                     : lengthText(m_value * m_subUnit, style(), m_vars, stacks());
    }

    std::string toleranceNumber(double value) const
    {
        if (m_kind == Kind::Angle)
            return angleValueText(value, m_vars, m_vars.dimtdec, m_vars.dimtzin);
        LengthStyle s = style();
        s.places = m_alternate ? m_vars.dimalttd : m_vars.dimtdec;
        s.zeros = m_alternate ? m_vars.dimalttz : m_vars.dimtzin;
        return plainLength(value * m_subUnit, s, m_vars);
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

    // The stroke of a fraction would part the stack before the sign that is to. Behind that sign one blank is no part of
    // the text; without it some letters would stand for control characters.
    std::string stack(std::string over, std::string under) const
    {
        replaceAll(over, "/", "\\/");
        replaceAll(under, "/", "\\/");
        return fmt::format("{{\\H{:g}x;\\S{}^ {};}}", smallerBy(m_vars), over, under);
    }

    std::string tolerance() const
    {
        if (upper() != lower())
            return stack(deviation(upper()), deviation(-lower()));
        const std::string same = "%%p" + toleranceNumber(std::abs(upper()));
        return smallerBy(m_vars) == 1 ? same : fmt::format("{{\\H{:g}x;{}}}", smallerBy(m_vars), same);
    }

    const VcDbDimVars& m_vars;
    Kind m_kind;
    bool m_alternate;
    double m_value = 0, m_subUnit = 1;
    std::string m_subSuffix;
};

constexpr std::string_view kBelow = "\\X";

// In square brackets, which a \X at either end of DIMAPOST stands outside of.
std::string alternateText(const VcDbDimVars& vars, Kind kind, double value)
{
    Affixes affixes = affixesOf(vars.dimapost, "[]");
    const bool goesBelow = affixes.before.starts_with(kBelow) || affixes.after == kBelow;
    if (affixes.before.starts_with(kBelow))
        affixes.before.erase(0, kBelow.size());
    std::string behind;
    if (const std::size_t at = affixes.after.find(kBelow); at != std::string::npos) {
        behind = goesBelow ? std::string() : affixes.after.substr(at);
        affixes.after.erase(at);
    }
    return std::string(goesBelow ? kBelow : "") + "[" + Column(vars, kind, true, value).text(affixes) + "]" + behind;
}

struct Texts {
    std::string all, alternate;  // alternate is part of all
};

// With the \X of DIMPOST and DIMAPOST where they stand: behind the one of DIMPOST come the alternate units too.
Texts textsOf(const DimMeasure& measure, const VcDbDimVars& vars, bool inPaperSpace)
{
    Texts texts;
    const bool isAngle = measure.kind == Kind::Angle;
    const double value = isAngle ? measure.value : measure.value * linearFactor(vars, inPaperSpace);
    texts.all = Column(vars, measure.kind, false, value).text(affixesOf(vars.dimpost, "<>"));
    if (!vars.dimalt || isAngle)
        return texts;
    texts.alternate = alternateText(vars, measure.kind, rounded(value, vars.dimrnd) * vars.dimaltf);
    if (texts.all.ends_with(kBelow) && texts.alternate.starts_with(kBelow))
        texts.alternate.erase(0, kBelow.size());
    else if (!texts.all.ends_with(kBelow) && !texts.alternate.starts_with(kBelow))
        texts.all += " ";
    texts.all += texts.alternate;
    return texts;
}

// The first \X parts the halves; further ones are line breaks of the second.
DimText halvesOf(const std::string& text)
{
    const std::size_t at = text.find(kBelow);
    if (at == std::string::npos)
        return {text, {}};
    std::string below = text.substr(at + kBelow.size());
    replaceAll(below, kBelow, "\\P");
    return {text.substr(0, at), below};
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
    if (kind == Kind::Angle)
        return angleValueText(value, vars);
    return lengthText(rounded(value, vars.dimrnd), primaryStyle(vars), vars, vars.dimfrac != 2);
}

DimText dimText(const DimMeasure& measure, const VcDbDimVars& vars, std::string_view override, bool inPaperSpace)
{
    if (override == " " || override == ".")
        return {};
    const bool placesAlternate = override.find("[]") != std::string_view::npos;
    VcDbDimVars own = vars;
    own.dimalt = placesAlternate ? 0 : vars.dimalt;
    std::string text(override.empty() ? std::string_view("<>") : override);
    replaceAll(text, "<>", textsOf(measure, own, inPaperSpace).all);
    if (placesAlternate) {
        own.dimalt = 1;
        const std::string alternate = textsOf(measure, own, inPaperSpace).alternate;  // an angle has none
        replaceAll(text, "[]", std::string_view(alternate).substr(alternate.starts_with(kBelow) ? kBelow.size() : 0));
    }
    const DimText halves = halvesOf(text);
    const std::string align =
        vars.dimtolj == 1 || vars.dimtolj == 2 ? fmt::format("\\A{};", vars.dimtolj) : std::string();
    return {halves.above.empty() ? halves.above : align + halves.above,
            halves.below.empty() ? halves.below : align + halves.below};
}
