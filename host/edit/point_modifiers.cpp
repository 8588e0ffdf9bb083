#include "host/edit/point_modifiers.h"

#include "host/base/numbers.h"
#include "host/base/unicode.h"
#include "host/base/units.h"
#include "host/db/database.h"
#include "host/edit/editor.h"
#include "host/edit/pick_service.h"
#include "host/edit/select_view.h"
#include "host/edit/snap.h"
#include "host/edit/sysvars.h"
#include "host/geom/apparent.h"
#include "host/geom/tangent_circle.h"
#include "sdk/vcdb_chains.h"

namespace vk::edit {

namespace {

using Kind = Question::Kind;
using Result = std::optional<Interpretation>;

VcGeMatrix3d ucsToWorld(const Editor& ed)
{
    VcGeMatrix3d m;
    vcdbUcsMatrix(m, &ed.drawing());
    return m;
}

Question questionFor(Kind kind, std::string prompt, const std::optional<VcGePoint3d>& base, bool enterEnds = false)
{
    Question q;
    q.kind = kind;
    q.prompt = std::move(prompt);
    q.base = base;
    q.init.bits = enterEnds ? 0 : InitGet::NoEnter;
    return q;
}

// Asks for a part of the point. Esc at it is Esc at the whole question, which is why it is thrown.
struct GivenUp {};

Answer askPart(Editor& ed, const Question& q)
{
    const Answer a = ed.askNested(q);
    if (a.status == Answer::Status::Cancel || a.status == Answer::Status::Failed)
        throw GivenUp{};
    return a;
}

VcGePoint3d askPoint(Editor& ed, std::string prompt, const std::optional<VcGePoint3d>& base = {})
{
    return askPart(ed, questionFor(Kind::Point, std::move(prompt), base)).point;
}

// A number, or a point where one is shown instead.
struct NumberOrPoint {
    double number = 0;
    std::optional<VcGePoint3d> point;
};

NumberOrPoint askNumberOrPoint(Editor& ed, const std::string& prompt, const std::optional<VcGePoint3d>& base)
{
    Question number = questionFor(Kind::Real, prompt, base);
    number.init.bits |= InitGet::Arbitrary;
    for (;;) {
        const Answer a = askPart(ed, number);
        if (a.status == Answer::Status::Value)
            return {a.real, std::nullopt};
        const Interpretation said = interpretText(ed, questionFor(Kind::Point, prompt, base), a.text);
        if (const auto* answer = std::get_if<Answer>(&said); answer && answer->status == Answer::Status::Value)
            return {0, answer->point};
        ed.printLine("Requires a number or a point.");
    }
}

Interpretation found(Editor& ed, const VcGePoint3d& p)
{
    Answer a{.status = Answer::Status::Value};
    a.point = p;
    a.hasPoint = true;
    ed.lastPoint = p;
    return a;
}

// Object snaps

VcGePoint3d onSnapPlane(const Editor& ed, VcGePoint3d p)
{
    if (ed.vars().integer("OSNAPZ") == 1)
        p.z = ed.vars().real("ELEVATION");
    return p;
}

// Where two curves meet when they go on beyond their ends, nearest to the second pick.
std::optional<VcGePoint3d> extendedCrossing(Editor& ed, const SnapCurve& first, bool apparent)
{
    const VcGePoint3d at = ucsToWorld(ed) * askPoint(ed, "and ");
    const SnapScene scene = snapScene(ed, at);
    const PickView view = PickView::of(ed);
    std::optional<VcGePoint3d> best;
    double distance = 0;
    const auto offer = [&](const VcGePoint3d& p) {
        const double d = (view.project(p) - view.project(at)).length();
        if (!best || d < distance) {
            best = p;
            distance = d;
        }
    };
    for (const SnapCurve& second : scene.curves) {
        if (second.entity == first.entity && scene.curves.size() > 1)
            continue;
        const geom::Curve a = pieceAt(first.curve, first.param), b = pieceAt(second.curve, second.param);
        if (apparent)
            for (const geom::Crossing& c :
                 geom::apparentCrossings(a, b, view.x.crossProduct(view.y), geom::Extend::Both))
                offer(c.point);
        else
            for (const VcGePoint3d& p : geom::contactPoints(geom::intersect(a, b, geom::Extend::Both)))
                offer(p);
        if (best)
            break;
    }
    return best;
}

// The way on beyond the end of a curve, or beside a line through the base: then a distance along it, or a point beside it.
std::optional<VcGePoint3d> alongPath(Editor& ed, const VcGePoint3d& start, const VcGeVector3d& direction,
                                     const char* prompt)
{
    if (!(direction.length() > 0))
        return std::nullopt;
    const VcGeVector3d unit = direction.normal();
    const NumberOrPoint said = askNumberOrPoint(ed, prompt, start);
    return start + unit * (said.point ? (*said.point - start).dotProduct(unit) : said.number);
}

std::optional<VcGePoint3d> onExtension(Editor& ed, const SnapCurve& c)
{
    const geom::Curve piece = pieceAt(c.curve, c.param);
    const geom::Interval range = geom::paramRange(c.curve);
    const double middle = (range.from + range.to) / 2;
    const bool atEnd = c.param > middle;
    const VcGeMatrix3d toUcs = ucsToWorld(ed).inverse();
    if (const auto* arc = std::get_if<geom::Arc>(&piece)) {
        const auto end = atEnd ? geom::endPoint(piece) : geom::startPoint(piece);
        const NumberOrPoint said =
            askNumberOrPoint(ed, "Specify distance or point along the extension: ", toUcs * *end);
        const geom::Curve circle = geom::carrierOf(piece);
        if (said.point) {
            const auto near = geom::closestPoint(circle, toUcs.inverse() * *said.point);
            return near ? std::optional(toUcs * near->point) : std::nullopt;
        }
        return toUcs * geom::pointAt(circle, atEnd ? arc->end + said.number / arc->radius
                                                   : arc->start - said.number / arc->radius);
    }
    const auto end = atEnd ? geom::endPoint(piece) : geom::startPoint(piece);
    if (!end || geom::isClosed(c.curve))
        return std::nullopt;
    const geom::Derivatives d =
        geom::derivativesAt(piece, atEnd ? geom::paramRange(piece).to : geom::paramRange(piece).from);
    return alongPath(ed, toUcs * *end, toUcs * (atEnd ? d.first : -d.first),
                     "Specify distance or point along the extension: ");
}

std::optional<VcGePoint3d> onParallel(Editor& ed, const SnapCurve& c, const VcGePoint3d& from)
{
    const auto piece = pieceAt(c.curve, c.param);
    const auto ends = std::get_if<geom::Segment>(&piece);
    if (!ends)
        return std::nullopt;
    return alongPath(ed, from, ucsToWorld(ed).inverse() * (ends->end - ends->start),
                     "Specify distance or point along the parallel: ");
}

// The snaps that need more than the one pick, on the object picked.
std::optional<VcGePoint3d> byMorePicks(Editor& ed, int modes, const VcGePoint3d& world, const VcGePoint3d& from)
{
    const SnapScene scene = snapScene(ed, world);
    if (scene.curves.empty())
        return std::nullopt;
    const SnapCurve& c = scene.curves.front();
    if (modes & kSnapExtension)
        return onExtension(ed, c);
    if (modes & kSnapParallel)
        return onParallel(ed, c, from);
    if (modes & (kSnapIntersection | kSnapApparent)) {
        const auto p = extendedCrossing(ed, c, (modes & kSnapApparent) != 0);
        return p ? std::optional(ucsToWorld(ed).inverse() * *p) : std::nullopt;
    }
    return std::nullopt;
}

// A curve that the point is to touch when the rest is known.
std::optional<Interpretation> deferred(Editor& ed, const Question& q, int modes, const VcGePoint3d& world)
{
    if ((modes != kSnapTangent && modes != kSnapPerpendicular) || !(q.init.bits & kTakesTangent))
        return std::nullopt;
    const SnapScene scene = snapScene(ed, world);
    if (scene.curves.empty())
        return std::nullopt;
    Answer a{.status = Answer::Status::Value};
    a.point = ucsToWorld(ed).inverse() * world;
    a.hasPoint = true;
    a.entity = scene.curves.front().entity;
    a.integer = modes;
    return Interpretation(a);
}

Interpretation bySnap(Editor& ed, const Question& q, int modes)
{
    const VcGePoint3d before = ed.lastPoint;
    const char* word = modes & (kSnapTangent | kSnapPerpendicular | kSnapParallel | kSnapNearest) ? "to " : "of ";
    const VcGePoint3d pick = askPoint(ed, modes == 0 ? std::string("") : word, q.base);
    if (modes == 0)
        return found(ed, pick);
    const VcGeMatrix3d m = ucsToWorld(ed);
    const VcGePoint3d from = q.base.value_or(before);
    if (auto answer = deferred(ed, q, modes, m * pick))
        return *answer;
    std::optional<VcGePoint3d> p;
    if (const auto world = snapTo(ed, modes, m * pick, m * from))
        p = m.inverse() * *world;
    else
        p = byMorePicks(ed, modes, m * pick, from);
    if (p)
        return found(ed, onSnapPlane(ed, *p));
    ed.lastPoint = before;
    return AskAgain{fmt::format("No {} found for specified point.", snapNames(modes))};
}

// Filters, and points worked out from others

// ".XY" as bits 1, 2, 4 of the coordinates taken; 0 for any other text.
int filterOf(std::string_view text)
{
    if (text.starts_with('_'))
        text.remove_prefix(1);
    if (text.size() < 2 || text.size() > 3 || text[0] != '.')
        return 0;
    int taken = 0;
    for (const char c : text.substr(1)) {
        const int bit = c == 'x' || c == 'X' ? 1 : c == 'y' || c == 'Y' ? 2 : c == 'z' || c == 'Z' ? 4 : 0;
        if (bit == 0 || (taken & bit))
            return 0;
        taken |= bit;
    }
    return taken;
}

const char* missingOf(int taken)
{
    static constexpr const char* kNeeds[] = {
        "", "(need YZ): ", "(need XZ): ", "(need Z): ", "(need XY): ", "(need Y): ", "(need X): "};
    return kNeeds[taken];
}

void take(VcGePoint3d& p, const VcGePoint3d& from, int which)
{
    if (which & 1)
        p.x = from.x;
    if (which & 2)
        p.y = from.y;
    if (which & 4)
        p.z = from.z;
}

VcGePoint3d byFilter(Editor& ed, const Question& q, int taken)
{
    const VcGePoint3d first = askPoint(ed, "of ", q.base);
    VcGePoint3d p;
    const int missing = 7 & ~taken;
    // One that is missing may be given as a number: it counts along its axis.
    if (missing != 1 && missing != 2 && missing != 4) {
        take(p, first, taken);
        take(p, askPoint(ed, missingOf(taken), q.base), missing);
        return p;
    }
    const NumberOrPoint rest = askNumberOrPoint(ed, missingOf(taken), q.base);
    take(p, first, taken);
    take(p, rest.point.value_or(VcGePoint3d(rest.number, rest.number, rest.number)), missing);
    return p;
}

VcGePoint3d byMiddle(Editor& ed)
{
    const VcGePoint3d a = askPoint(ed, "First point of mid: ");
    const VcGePoint3d b = askPoint(ed, "Second point of mid: ", a);
    return a + (b - a) * 0.5;
}

VcGePoint3d byBase(Editor& ed)
{
    const VcGePoint3d base = askPoint(ed, "Base point: ");
    return askPoint(ed, "<Offset>: ", base);
}

// From point to point along the axes: each next point says how far, in the direction in which it lies further away.
VcGePoint3d byTracking(Editor& ed)
{
    VcGePoint3d p = askPoint(ed, "First tracking point: ");
    for (;;) {
        const Answer a = askPart(ed, questionFor(Kind::Point, "Next point (Press ENTER to end tracking): ", p, true));
        if (a.status == Answer::Status::Enter)
            return p;
        const VcGeVector3d d = a.point - p;
        std::abs(d.x) >= std::abs(d.y) ? p.x = a.point.x : p.y = a.point.y;
        ed.lastPoint = p;
    }
}

// "<45" holds the next point to a direction.
std::optional<double> heldAngle(Editor& ed, std::string_view text)
{
    if (text.size() < 2 || text[0] != '<')
        return std::nullopt;
    auto angle = parseAngle(text.substr(1), AngularNotation(ed.vars().integer("AUNITS")));
    if (!angle || !std::isfinite(*angle))
        return std::nullopt;
    return (ed.vars().integer("ANGDIR") != 0 ? -*angle : *angle) + ed.vars().real("ANGBASE");
}

VcGePoint3d byHeldAngle(Editor& ed, const Question& q, double angle)
{
    const VcGePoint3d base = q.base.value_or(ed.lastPoint);
    wchar_t shown[134];
    vcdbAngToS(angle, -1, -1, shown);
    ed.printLine("Angle Override: " + wideToUtf8(shown));
    return *alongPath(ed, base, {std::cos(angle), std::sin(angle), 0}, "Specify point: ");
}

std::optional<VcGePoint3d> byWord(Editor& ed, const Question& q, std::string_view text)
{
    if (const int taken = filterOf(text); taken != 0 && taken != 7)
        return byFilter(ed, q, taken);
    if (text.starts_with('_'))
        text.remove_prefix(1);
    if (equalNoCase(text, "M2P") || equalNoCase(text, "MTP"))
        return byMiddle(ed);
    if (equalNoCase(text, "FROM") || equalNoCase(text, "FRO"))
        return byBase(ed);
    if (equalNoCase(text, "TK") || equalNoCase(text, "TRACK") || equalNoCase(text, "TRACKING"))
        return byTracking(ed);
    if (const auto angle = heldAngle(ed, text); angle && (q.kind == Kind::Point || q.kind == Kind::Corner))
        return byHeldAngle(ed, q, *angle);
    return std::nullopt;
}

bool asksForPoints(Kind kind)
{
    return kind == Kind::Point || kind == Kind::Corner || kind == Kind::Distance || kind == Kind::Angle ||
           kind == Kind::Orientation;
}

}

std::optional<Interpretation> interpretModifier(Editor& ed, const Question& q, std::string_view text)
{
    if (!asksForPoints(q.kind))
        return std::nullopt;
    try {
        if (const auto modes = parseSnapModes(text))
            return bySnap(ed, q, *modes);
        if (auto p = byWord(ed, q, text)) {
            if (q.init.has(InitGet::Only2d))
                p->z = ed.vars().real("ELEVATION");
            return found(ed, *p);
        }
    } catch (const GivenUp&) {
        return Interpretation(Answer{});
    }
    return std::nullopt;
}

bool winsOverKeywords(std::string_view text)
{
    if (text.starts_with('_'))
        text.remove_prefix(1);
    return equalNoCase(text, "CEN");
}

}  // namespace vk::edit
