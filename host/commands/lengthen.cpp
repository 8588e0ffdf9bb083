// LENGTHEN - changes the length of curves, and the angle of arcs.
#include "host/commands/curve_edits.h"
#include "host/commands/families.h"
#include "host/db/database.h"
#include "host/geom/apparent.h"
#include "host/geom/prolong.h"
#include "host/geom/tangent_circle.h"

namespace vk::commands {

namespace {

using namespace edit;
using Status = Answer::Status;

enum class Way { Delta, Percent, Total, Dynamic };

// Kept for the next time, as long as the program runs.
struct Settings {
    Way way = Way::Total;
    double delta = 0, deltaAngle = 0, percent = 100, total = 1, totalAngle = 1;
    bool byAngle = false;
};

Settings& settings()
{
    static Settings kept;
    return kept;
}

class Lengthen {
public:
    explicit Lengthen(Editor& ed) : m_ed(ed), m_edits(ed) {}
    void run();

private:
    void measure(const CurvePick& pick);
    void setting(const std::string& keyword);
    void askDelta();
    void askTotal();
    void askPercent();
    void changeObjects();
    void change(const CurvePick& pick);
    std::optional<double> newLength(const geom::Curve& curve) const;
    std::optional<geom::Curve> dragged(const CurvePick& pick, bool atStart);

    Editor& m_ed;
    CurveEdits m_edits;
};

double angleOf(const geom::Curve& curve)
{
    const auto* arc = std::get_if<geom::Arc>(&curve);
    return arc ? arc->end - arc->start : 0;
}

void Lengthen::measure(const CurvePick& pick)
{
    const double length = geom::length(pick.curve);
    if (!std::isfinite(length))
        return m_ed.printLine("That object has no end.");
    std::string text = "Current length: " + lengthText(length);
    if (const double angle = angleOf(pick.curve); angle > 0)
        text += ", included angle: " + angleText(angle);
    m_ed.printLine(text);
}

void Lengthen::askDelta()
{
    Settings& s = settings();
    const Answer a = m_ed.askDistance(fmt::format("Enter delta length or [Angle] <{}>", lengthText(s.delta)),
                                      {.keywords = "Angle", .enterEnds = true});
    s.byAngle = a.status == Status::Keyword;
    if (a.status == Status::Value)
        s.delta = a.real;
    if (!s.byAngle)
        return;
    const Answer b = m_ed.askAngle(fmt::format("Enter delta angle <{}>", angleText(s.deltaAngle)), {.enterEnds = true});
    if (b.status == Status::Value)
        s.deltaAngle = b.real;
}

void Lengthen::askTotal()
{
    Settings& s = settings();
    const Answer a =
        m_ed.askDistance(fmt::format("Specify total length or [Angle] <{}>", lengthText(s.total)),
                         {.keywords = "Angle", .bits = InitGet::NoZero | InitGet::NoNegative, .enterEnds = true});
    s.byAngle = a.status == Status::Keyword;
    if (a.status == Status::Value)
        s.total = a.real;
    if (!s.byAngle)
        return;
    const Answer b = m_ed.askAngle(fmt::format("Specify total angle <{}>", angleText(s.totalAngle)),
                                   {.bits = InitGet::NoZero | InitGet::NoNegative, .enterEnds = true});
    if (b.status == Status::Value)
        s.totalAngle = b.real;
}

void Lengthen::askPercent()
{
    settings().percent =
        m_ed.real("Enter percentage length", settings().percent, {.bits = InitGet::NoZero | InitGet::NoNegative});
}

void Lengthen::setting(const std::string& keyword)
{
    settings().way = keyword == "DElta"     ? Way::Delta
                     : keyword == "Percent" ? Way::Percent
                     : keyword == "Total"   ? Way::Total
                                            : Way::Dynamic;
    if (settings().way == Way::Delta)
        askDelta();
    else if (settings().way == Way::Total)
        askTotal();
    else if (settings().way == Way::Percent)
        askPercent();
    changeObjects();
}

// Nothing where an angle is wanted of what is no arc, or nothing would be left.
std::optional<double> Lengthen::newLength(const geom::Curve& curve) const
{
    const Settings& s = settings();
    const double length = geom::length(curve);
    double wanted = length * s.percent / 100;
    if (s.way != Way::Percent && s.byAngle) {
        const auto* arc = std::get_if<geom::Arc>(&curve);
        if (!arc)
            return std::nullopt;
        const double angle = s.way == Way::Total ? s.totalAngle : angleOf(curve) + s.deltaAngle;
        wanted = arc->radius * angle;
    } else if (s.way == Way::Delta) {
        wanted = length + s.delta;
    } else if (s.way == Way::Total) {
        wanted = s.total;
    }
    return wanted > 0 ? std::optional(wanted) : std::nullopt;
}

std::optional<geom::Curve> Lengthen::dragged(const CurvePick& pick, bool atStart)
{
    const geom::Interval range = geom::paramRange(pick.curve);
    const VcGePoint3d end = toWorld(
        m_ed, m_ed.point("Specify new endpoint",
                         {.from = fromWorld(m_ed, geom::pointAt(pick.curve, atStart ? range.from : range.to))}));
    const auto path = geom::pathBeyond(pick.curve, atStart);
    if (!path)
        return std::nullopt;
    // Along the line or the circle of the end, wherever that leads.
    const geom::Curve carrier = geom::carrierOf(std::holds_alternative<geom::Segment>(pick.curve) ? pick.curve : *path);
    const auto near = geom::closestPoint(carrier, end);
    if (!near)
        return std::nullopt;
    if (const auto* segment = std::get_if<geom::Segment>(&pick.curve))
        return atStart ? geom::Segment{near->point, segment->end} : geom::Segment{segment->start, near->point};
    if (std::holds_alternative<geom::Arc>(pick.curve) || std::holds_alternative<geom::Ellipse>(pick.curve)) {
        double t = near->param;
        t += geom::kTwoPi * std::ceil((range.from - t) / geom::kTwoPi);
        return atStart ? geom::betweenEnds(pick.curve, t - (t >= range.to ? geom::kTwoPi : 0), range.to)
                       : geom::betweenEnds(pick.curve, range.from, t);
    }
    const auto own = geom::closestPoint(pick.curve, end);
    return own ? (atStart ? geom::betweenEnds(pick.curve, own->param, range.to)
                          : geom::betweenEnds(pick.curve, range.from, own->param))
               : std::nullopt;
}

void Lengthen::change(const CurvePick& pick)
{
    const double length = geom::length(pick.curve);
    if (geom::isClosed(pick.curve) || !std::isfinite(length))
        return m_ed.printLine("That object cannot be lengthened: it has no ends of its own.");
    const bool atStart = geom::isNearerStart(pick.curve, pick.param);
    std::optional<geom::Curve> changed;
    if (settings().way == Way::Dynamic) {
        changed = dragged(pick, atStart);
    } else if (const auto wanted = newLength(pick.curve)) {
        if (*wanted > length && !geom::canProlong(pick.curve, atStart))
            return m_ed.printLine("That object can only be shortened.");
        const geom::Interval range = geom::paramRange(pick.curve);
        if (const auto param = geom::paramAtLengthBeyond(pick.curve, atStart ? length - *wanted : *wanted))
            changed = geom::betweenEnds(pick.curve, atStart ? *param : range.from, atStart ? range.to : *param);
    }
    if (changed && geom::isClosed(*changed))
        return m_ed.printLine("That is more than a whole turn.");
    m_edits.begin();
    const bool done = changed && m_edits.replace(*pick.entity, {*changed});
    m_edits.end();
    if (!done)
        m_ed.printLine("The object cannot have that length.");
}

void Lengthen::changeObjects()
{
    for (;;) {
        const Answer a = m_ed.askEntity("Select an object to change or [Undo]", {.keywords = "Undo"});
        if (a.status == Status::Enter)
            return;
        if (a.status == Status::Keyword) {
            if (!m_edits.undo())
                m_ed.printLine("The command has been completely undone.");
        } else if (const auto pick = curvePick(m_ed, a)) {
            change(*pick);
        }
    }
}

void Lengthen::run()
{
    static const char* kWays[] = {"DElta", "Percent", "Total", "DYnamic"};
    for (;;) {
        const char* now = kWays[int(settings().way)];
        const Answer a =
            m_ed.askEntity(fmt::format("Select an object to measure or [DElta/Percent/Total/DYnamic] <{}>", now),
                           {.keywords = "DElta Percent Total DYnamic"});
        if (a.status == Status::Enter)
            return setting(now);
        if (a.status == Status::Keyword)
            return setting(a.text);
        if (const auto pick = curvePick(m_ed, a))
            measure(*pick);
    }
}

void lengthen(Editor& ed) { Lengthen(ed).run(); }

const HostCommand kCommands[] = {
    {"LENGTHEN", "LEN", kPlain, "Changes the length of curves.", lengthen},
};

}

std::span<const HostCommand> lengthenCommands() { return kCommands; }

}
