#include "host/edit/interpret.h"

#include "host/base/numbers.h"
#include "host/base/unicode.h"
#include "host/base/units.h"
#include "host/db/chain.h"
#include "host/edit/editor.h"
#include "host/edit/pick_service.h"
#include "host/edit/point_modifiers.h"
#include "host/edit/sysvars.h"
#include "sdk/vcdb_chains.h"

namespace vk::edit {

namespace {

using Kind = Question::Kind;

LinearNotation linearNotation(const Editor& ed) { return LinearNotation(ed.vars().integer("LUNITS")); }
AngularNotation angularNotation(const Editor& ed) { return AngularNotation(ed.vars().integer("AUNITS")); }

std::optional<double> number(const Editor& ed, std::string_view text)
{
    const auto value = parseDistance(text, linearNotation(ed));
    return value && std::isfinite(*value) ? value : std::nullopt;
}

// Angles run in the direction of ANGDIR; a direction as typed counts from ANGBASE.
std::optional<double> typedAngle(const Editor& ed, std::string_view text, bool fromBase)
{
    auto value = parseAngle(text, angularNotation(ed));
    if (!value || !std::isfinite(*value))
        return std::nullopt;
    if (ed.vars().integer("ANGDIR") != 0)
        *value = -*value;
    return fromBase ? *value + ed.vars().real("ANGBASE") : *value;
}

VcGeMatrix3d ucsToWorld(const Editor& ed)
{
    VcGeMatrix3d m;
    vcdbUcsMatrix(m, &ed.drawing());
    return m;
}

std::vector<std::string_view> split(std::string_view text, char separator)
{
    std::vector<std::string_view> parts;
    for (std::size_t at = 0;;) {
        const std::size_t end = text.find(separator, at);
        parts.push_back(text.substr(at, end - at));
        if (end == std::string_view::npos)
            return parts;
        at = end + 1;
    }
}

std::optional<VcGePoint3d> cartesian(const Editor& ed, std::string_view text, double elevation)
{
    const auto parts = split(text, ',');
    if (parts.size() < 2 || parts.size() > 3)
        return std::nullopt;
    double xyz[3] = {0, 0, elevation};
    for (std::size_t i = 0; i < parts.size(); ++i) {
        const auto value = number(ed, trimBlanks(parts[i]));
        if (!value)
            return std::nullopt;
        xyz[i] = *value;
    }
    return VcGePoint3d(xyz[0], xyz[1], xyz[2]);
}

// d<a<b: the second angle rises from the XY plane.
std::optional<VcGePoint3d> spherical(const Editor& ed, std::string_view text, std::size_t first, std::size_t second)
{
    const auto distance = number(ed, text.substr(0, first));
    const auto turn = typedAngle(ed, text.substr(first + 1, second - first - 1), true);
    const auto rise = parseAngle(text.substr(second + 1), angularNotation(ed));
    if (!distance || !turn || !rise || !std::isfinite(*rise))
        return std::nullopt;
    const double flat = *distance * std::cos(*rise);
    return VcGePoint3d(flat * std::cos(*turn), flat * std::sin(*turn), *distance * std::sin(*rise));
}

// d<a, with an optional ,z behind it.
std::optional<VcGePoint3d> polar(const Editor& ed, std::string_view text, double elevation)
{
    const std::size_t at = text.find('<');
    if (at == std::string_view::npos)
        return std::nullopt;
    if (const std::size_t second = text.find('<', at + 1); second != std::string_view::npos)
        return spherical(ed, text, at, second);
    const std::size_t comma = text.find(',', at);
    const auto distance = number(ed, text.substr(0, at));
    const auto angle =
        typedAngle(ed, text.substr(at + 1, comma == std::string_view::npos ? comma : comma - at - 1), true);
    const auto z = comma == std::string_view::npos ? std::optional(elevation) : number(ed, text.substr(comma + 1));
    if (!distance || !angle || !z)
        return std::nullopt;
    return VcGePoint3d(*distance * std::cos(*angle), *distance * std::sin(*angle), *z);
}

std::optional<VcGePoint3d> coordinates(const Editor& ed, std::string_view text, double elevation)
{
    return text.find('<') == std::string_view::npos ? cartesian(ed, text, elevation) : polar(ed, text, elevation);
}

Answer valueAnswer() { return Answer{.status = Answer::Status::Value}; }

Answer pointAnswer(Editor& ed, const VcGePoint3d& p)
{
    Answer a = valueAnswer();
    a.point = p;
    a.hasPoint = true;
    ed.lastPoint = p;
    return a;
}

Answer realAnswer(double value)
{
    Answer a = valueAnswer();
    a.real = value;
    return a;
}

// What the bits of initget refuse.
std::optional<std::string> refusal(const InitGet& init, double value)
{
    const bool noZero = init.has(InitGet::NoZero), noNegative = init.has(InitGet::NoNegative);
    if (value < 0 && noNegative)
        return noZero ? "Value must be positive and nonzero." : "Value must be positive.";
    if (value == 0 && noZero)
        return noNegative ? "Value must be positive and nonzero." : "Value must be nonzero.";
    return std::nullopt;
}

const char* complaint(const Question& q)
{
    const bool words = !q.init.keywords.empty();
    switch (q.kind) {
    case Kind::Point:
    case Kind::Corner:
        return words ? "Point or option keyword required." : "Invalid point.";
    case Kind::Distance:
        return words    ? "Requires numeric distance, two points, or option keyword."
               : q.base ? "Requires numeric distance or second point."
                        : "Requires numeric distance or two points.";
    case Kind::Angle:
    case Kind::Orientation:
        return words ? "Requires valid numeric angle, two points, or option keyword."
                     : "Requires valid numeric angle or two points.";
    case Kind::Real:
        return words ? "Requires numeric value or option keyword." : "Requires numeric value.";
    case Kind::Integer:
        return words         ? "Requires an integer value or an option keyword."
               : q.anyNumber ? "Requires an integer value."
                             : "Requires an integer between -32768 and 32767.";
    case Kind::Keyword:
        return "Invalid option keyword.";
    case Kind::Entity:
        return "Invalid selection: a point or an object is expected.";
    default:
        return "Invalid input.";
    }
}

Interpretation againOr(const Question& q, const std::string& text)
{
    if (!q.init.has(InitGet::Arbitrary))
        return AskAgain{complaint(q)};
    Answer a{.status = Answer::Status::Arbitrary};
    a.text = text;
    a.isTyped = true;
    return a;
}

Interpretation distanceOf(Editor& ed, const Question& q, double value)
{
    if (const auto why = refusal(q.init, value))
        return AskAgain{*why};
    return realAnswer(value);
}

// The second point of a distance or an angle that the person shows in the drawing.
std::optional<std::pair<VcGePoint3d, VcGePoint3d>> twoPoints(Editor& ed, const Question& q, const VcGePoint3d& shown)
{
    if (q.base)
        return std::pair{*q.base, shown};
    Question second;
    second.kind = Kind::Point;
    second.prompt = "Specify second point: ";
    second.base = shown;
    second.init.bits = InitGet::NoEnter;
    const Answer a = ed.askNested(second);
    if (a.status != Answer::Status::Value)
        return std::nullopt;
    return std::pair{shown, a.point};
}

Interpretation fromShownPoint(Editor& ed, const Question& q, const VcGePoint3d& p)
{
    const auto points = twoPoints(ed, q, p);
    if (!points)
        return Answer{};
    const VcGeVector3d d = points->second - points->first;
    ed.lastPoint = points->second;
    if (q.kind == Kind::Distance)
        return distanceOf(ed, q, q.init.has(InitGet::Only2d) ? std::hypot(d.x, d.y) : d.length());
    double angle = std::atan2(d.y, d.x);
    if (q.kind == Kind::Angle)
        angle -= ed.vars().real("ANGBASE");
    angle = std::remainder(angle, 2 * M_PI);
    return realAnswer(angle < 0 ? angle + 2 * M_PI : angle);
}

Interpretation pickAt(Editor& ed, const Question& q, const VcGePoint3d& p)
{
    const VcGePoint3d world = ucsToWorld(ed) * p;
    Answer a{.status = Answer::Status::Failed};
    a.point = p;
    a.hasPoint = true;
    a.entity = pickEntity(ed, world, q.isNested);
    if (!a.entity.isNull())
        a.status = Answer::Status::Value;
    return a;
}

Interpretation fromPoint(Editor& ed, const Question& q, const VcGePoint3d& p)
{
    switch (q.kind) {
    case Kind::Point:
    case Kind::Corner:
        return pointAnswer(ed, p);
    case Kind::Distance:
    case Kind::Angle:
    case Kind::Orientation:
        return fromShownPoint(ed, q, p);
    case Kind::Entity:
        ed.lastPoint = p;
        return pickAt(ed, q, p);
    case Kind::Selection: {
        Answer a = pointAnswer(ed, p);
        return a;
    }
    default:
        return AskAgain{complaint(q)};
    }
}

// A snap, a filter and the like; what that comes to is taken as if the point had been given.
Interpretation byModifierOr(Editor& ed, const Question& q, const std::string& text)
{
    auto said = interpretModifier(ed, q, trimBlanks(text));
    if (!said)
        return againOr(q, text);
    const auto* answer = std::get_if<Answer>(&*said);
    if (!answer || answer->status != Answer::Status::Value || q.kind == Kind::Point || q.kind == Kind::Corner)
        return *said;
    return fromPoint(ed, q, answer->point);
}

Interpretation byKind(Editor& ed, const Question& q, const std::string& text)
{
    switch (q.kind) {
    case Kind::Point:
    case Kind::Corner:
    case Kind::Entity: {
        if (const auto p = parsePoint(ed, q, text))
            return fromPoint(ed, q, *p);
        return byModifierOr(ed, q, text);
    }
    case Kind::Distance:
        if (const auto value = number(ed, text))
            return distanceOf(ed, q, *value);
        break;
    case Kind::Real:
        if (const auto value = number(ed, text)) {
            if (const auto why = refusal(q.init, *value))
                return AskAgain{*why};
            return realAnswer(*value);
        }
        break;
    case Kind::Angle:
    case Kind::Orientation:
        if (const auto value = typedAngle(ed, text, q.kind == Kind::Orientation)) {
            if (const auto why = refusal(q.init, *value))
                return AskAgain{*why};
            ed.lastAngle = *value;
            return realAnswer(*value);
        }
        break;
    case Kind::Integer:
        if (const auto value = parseInteger(text)) {
            const std::int64_t most = q.anyNumber ? 2147483647 : 32767;
            if (*value < -most - 1 || *value > most)
                return againOr(q, text);
            if (const auto why = refusal(q.init, double(*value)))
                return AskAgain{*why};
            Answer a = valueAnswer();
            a.integer = *value;
            return a;
        }
        return againOr(q, text);
    case Kind::Keyword:
        return againOr(q, text);
    case Kind::Command:
    case Kind::Word:
    case Kind::Text:
    case Kind::Selection: {
        Answer a = valueAnswer();
        a.text = text;
        a.isTyped = true;
        return a;
    }
    }
    if (q.kind == Kind::Distance || q.kind == Kind::Angle || q.kind == Kind::Orientation)
        if (const auto p = parsePoint(ed, q, text))
            return fromPoint(ed, q, *p);
    return byModifierOr(ed, q, text);
}

bool hasKeywords(Kind kind) { return kind != Kind::Text && kind != Kind::Command && kind != Kind::Word; }

std::string ambiguityOf(const std::vector<Keyword>& keywords, const std::string& typed)
{
    std::string choices;
    for (const Keyword& k : keywords) {
        const std::string whole = k.local.substr(0, k.local.find(','));
        if (whole.size() >= typed.size() && equalNoCase(std::string_view(whole).substr(0, typed.size()), typed))
            choices += (choices.empty() ? "" : " or ") + whole;
    }
    return "Ambiguous response, please clarify...\n" + choices + "?";
}

}

std::optional<VcGePoint3d> parsePoint(Editor& ed, const Question& q, std::string_view text)
{
    text = trimBlanks(text);
    const VcGePoint3d from = ed.lastPoint;
    const double elevation = ed.vars().real("ELEVATION");
    if (text == "@")
        return from;
    std::optional<VcGePoint3d> p;
    if (text.starts_with('@')) {
        const bool inWorld = text.starts_with("@*");
        p = coordinates(ed, text.substr(inWorld ? 2 : 1), 0.0);
        if (p)
            p = from + (inWorld ? ucsToWorld(ed).inverse() * p->asVector() : p->asVector());
    } else if (text.starts_with('*')) {
        p = coordinates(ed, text.substr(1), 0.0);
        if (p)
            p = ucsToWorld(ed).inverse() * *p;
    } else {
        p = coordinates(ed, text.starts_with('#') ? text.substr(1) : text, elevation);
    }
    if (!p && q.base)
        if (const auto along = number(ed, text); along && *along != 0) {
            // A bare number goes that far along the cursor, which without a window lies where the last answer was.
            const VcGeVector3d direction =
                (ed.lastPoint - *q.base).length() > 0 ? (ed.lastPoint - *q.base).normal() : VcGeVector3d::xAxis();
            p = *q.base + direction * *along;
        }
    if (p && q.init.has(InitGet::Only2d))
        p->z = elevation;
    return p;
}

Interpretation interpretText(Editor& ed, const Question& q, const std::string& text)
{
    if (text.empty() && q.kind != Kind::Text) {
        if (q.init.has(InitGet::NoEnter))
            return AskAgain{complaint(q)};
        return Answer{.status = Answer::Status::Enter, .isTyped = true};
    }
    if (text.empty())
        return q.init.has(InitGet::NoEnter) ? Interpretation(AskAgain{"A text is required."})
                                            : Interpretation(Answer{.status = Answer::Status::Enter, .isTyped = true});
    const bool isSnap = (q.kind == Kind::Point || q.kind == Kind::Corner) && winsOverKeywords(text);
    if (hasKeywords(q.kind) && !q.init.keywords.empty() && !isSnap) {
        const KeywordMatch match = matchKeyword(q.init.keywords, text);
        if (match.result == KeywordMatch::Ambiguous)
            return AskAgain{ambiguityOf(q.init.keywords, text)};
        if (match.result == KeywordMatch::One) {
            Answer a{.status = Answer::Status::Keyword, .isTyped = true};
            a.text = q.init.keywords[match.index].global;
            return a;
        }
    }
    return byKind(ed, q, text);
}

namespace {

std::string valueText(const resbuf& value)
{
    switch (value.restype) {
    case RTREAL:
    case RTANG:
    case RTORINT:
        return realText(value.resval.rreal);
    case RTSHORT:
        return std::to_string(value.resval.rint);
    case RTLONG:
        return std::to_string(value.resval.rlong);
    case RTSTR:
        return rbUtf8(value);
    default:
        return {};
    }
}

bool isPointValue(const resbuf& value) { return value.restype == RTPOINT || value.restype == RT3DPOINT; }

Interpretation fromEntity(Editor& ed, const Question& q, VcDbObjectId id, std::optional<VcGePoint3d> p)
{
    Answer a = valueAnswer();
    a.entity = id;
    if (p) {
        a.point = *p;
        a.hasPoint = true;
    }
    if (q.kind == Kind::Entity && p && !entityIsAt(ed, id, ucsToWorld(ed) * *p))
        a.status = Answer::Status::Failed;
    return q.kind == Kind::Entity || q.kind == Kind::Selection ? Interpretation(a)
                                                               : Interpretation(AskAgain{complaint(q)});
}

// A list of numbers is a point; a list of an entity and a point is a pick of that entity there.
Interpretation fromList(Editor& ed, const Question& q, const resbuf& list)
{
    std::vector<double> numbers;
    VcDbObjectId entity;
    std::optional<VcGePoint3d> at;
    int depth = 0;
    for (const resbuf* node = &list; node; node = node->rbnext) {
        if (node->restype == RTLB)
            ++depth;
        else if (node->restype == RTENAME)
            nameToId(node->resval.rlname, entity);
        else if (isPointValue(*node))
            at = VcGePoint3d(node->resval.rpoint[0], node->resval.rpoint[1],
                             node->restype == RTPOINT ? 0 : node->resval.rpoint[2]);
        else if (node->restype == RTREAL || node->restype == RTSHORT || node->restype == RTLONG)
            numbers.push_back(rbReal(*node));
    }
    if (!at && (numbers.size() == 2 || numbers.size() == 3))
        at = VcGePoint3d(numbers[0], numbers[1], numbers.size() == 3 ? numbers[2] : 0);
    if (!entity.isNull())
        return fromEntity(ed, q, entity, at);
    return at ? fromPoint(ed, q, *at) : Interpretation(AskAgain{complaint(q)});
}

}

Interpretation interpretValue(Editor& ed, const Question& q, const resbuf& value)
{
    if (isPointValue(value)) {
        VcGePoint3d p(value.resval.rpoint[0], value.resval.rpoint[1],
                      value.restype == RTPOINT ? 0 : value.resval.rpoint[2]);
        if (q.init.has(InitGet::Only2d))
            p.z = ed.vars().real("ELEVATION");
        return fromPoint(ed, q, p);
    }
    switch (value.restype) {
    case RTLB:
        return fromList(ed, q, value);
    case RTENAME: {
        VcDbObjectId id;
        if (!nameToId(value.resval.rlname, id) || id.isErased())
            return AskAgain{"The object is not in this drawing any more."};
        return fromEntity(ed, q, id, std::nullopt);
    }
    case RTPICKS: {
        Answer a = valueAnswer();
        a.selection = SelectionSetTable::instance().find(value.resval.rlname);
        if (q.kind != Kind::Selection)
            return AskAgain{complaint(q)};
        if (!a.selection)
            a.selection = std::make_shared<SelectionSet>();
        return a;
    }
    case RTREAL:
    case RTANG:
    case RTORINT:
        if (q.kind == Kind::Angle || q.kind == Kind::Orientation)
            return value.restype == RTREAL ? interpretText(ed, q, valueText(value))
                                           : Interpretation(realAnswer(value.resval.rreal));
        if (q.kind == Kind::Distance || q.kind == Kind::Real)
            return distanceOf(ed, q, value.resval.rreal);
        break;
    case RTT:
        return AskAgain{complaint(q)};
    }
    return interpretText(ed, q, valueText(value));
}

}
