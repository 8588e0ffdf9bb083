// PLINE - a polyline of straight and arc segments, with widths.
#include "host/commands/drawing.h"
#include "host/commands/families.h"
#include "host/db/database.h"
#include "host/edit/sysvars.h"
#include "sdk/vcdb_curves.h"

namespace vk::commands {

namespace {

using namespace edit;

struct Vertex {
    VcGePoint3d at;  // in the UCS
    double bulge = 0, startWidth = 0, endWidth = 0;
};

struct Widths {
    double start, end;
};

// A polyline under way. Its object is replaced as it grows, so that Esc keeps what was drawn.
class Drawing {
public:
    Drawing(Editor& ed, const VcGePoint3d& start) : m_ed(ed), m_vertices{{start}} {}

    std::vector<Vertex>& vertices() { return m_vertices; }
    Vertex& last() { return m_vertices.back(); }
    void close(double bulge, Widths widths)
    {
        leaveLast(bulge, widths);
        m_closed = true;
        update();
    }
    // The next segment is as wide as this one ends.
    void add(const VcGePoint3d& to, double bulge, Widths& widths)
    {
        leaveLast(bulge, widths);
        widths.start = widths.end;
        m_vertices.push_back({to, 0, widths.end, widths.end});
        update();
    }
    bool undo()
    {
        if (m_vertices.size() < 2)
            return false;
        m_vertices.pop_back();
        last().bulge = 0;
        update();
        return true;
    }
    // Direction in which the last segment ends; the X axis before there is one.
    double direction() const
    {
        if (m_vertices.size() < 2)
            return m_ed.lastAngle;
        const Vertex& from = m_vertices[m_vertices.size() - 2];
        const VcGeVector3d chord = m_vertices.back().at - from.at;
        return std::atan2(chord.y, chord.x) + 2 * std::atan(from.bulge);
    }

private:
    void leaveLast(double bulge, Widths widths)
    {
        last().bulge = bulge;
        last().startWidth = widths.start;
        last().endWidth = widths.end;
    }
    bool isOfOneWidth() const
    {
        const double width = m_vertices.front().startWidth;
        return std::all_of(m_vertices.begin(), m_vertices.end(),
                           [width](const Vertex& v) { return v.startWidth == width && v.endWidth == width; });
    }
    void update();
    Editor& m_ed;
    std::vector<Vertex> m_vertices;
    VcDbObjectId m_id;
    bool m_closed = false;
};

void Drawing::update()
{
    if (VcDbObject* old = m_ed.db().object(m_id); old && !old->isErased())
        old->erase();
    m_id = {};
    if (m_vertices.size() < 2)
        return;
    auto polyline = std::make_unique<VcDbPolyline>();
    const VcGeVector3d normal = ucsNormal(m_ed);
    const VcGeMatrix3d toPlane = VcGeMatrix3d::worldToPlane(normal) * ucsToWorld(m_ed);
    for (unsigned i = 0; i < m_vertices.size(); ++i) {
        const VcGePoint3d p = toPlane * m_vertices[i].at;
        polyline->addVertexAt(i, VcGePoint2d(p.x, p.y), m_vertices[i].bulge, m_vertices[i].startWidth,
                              m_vertices[i].endWidth);
    }
    polyline->setElevation((toPlane * m_vertices.front().at).z);
    polyline->setNormal(normal);
    polyline->setClosed(m_closed);
    if (isOfOneWidth())
        polyline->setConstantWidth(m_vertices.front().startWidth);
    m_id = addToSpace(m_ed, std::move(polyline));
}

Widths askWidths(Editor& ed, Widths now, const char* what, double factor)
{
    constexpr int kNotNegative = InitGet::NoNegative;
    const double start =
        ed.distance(fmt::format("Specify starting {}", what), now.start / factor, {.bits = kNotNegative}) * factor;
    const double end =
        ed.distance(fmt::format("Specify ending {}", what), start / factor, {.bits = kNotNegative}) * factor;
    ed.vars().set("PLINEWID", end);
    return {start, end};
}

// Bulge of the arc that leaves in a direction and ends at the point.
double tangentBulge(double direction, const VcGePoint3d& from, const VcGePoint3d& to)
{
    double half = std::atan2(to.y - from.y, to.x - from.x) - direction;
    while (half > M_PI)
        half -= 2 * M_PI;
    while (half <= -M_PI)
        half += 2 * M_PI;
    return std::tan(half / 2);
}

// Bulge of the arc through a second point on it.
double throughBulge(const VcGePoint3d& a, const VcGePoint3d& b, const VcGePoint3d& c)
{
    const VcGeVector3d u = a - b, v = c - b;
    const double inscribed = std::atan2(u.x * v.y - u.y * v.x, u.x * v.x + u.y * v.y);
    const double half = inscribed > 0 ? inscribed - M_PI : inscribed + M_PI;
    return std::tan(-half / 2);
}

double bulgeOf(double included) { return std::tan(included / 4); }
double directionOf(const VcGePoint3d& from, const VcGePoint3d& to) { return std::atan2(to.y - from.y, to.x - from.x); }
VcGePoint3d moved(const VcGePoint3d& p, double direction, double distance)
{
    return p + VcGeVector3d(std::cos(direction), std::sin(direction), 0) * distance;
}

// The next arc of a polyline: where it ends and its bulge.
struct ArcStep {
    VcGePoint3d to;
    double bulge;
};

ArcStep aboutCenter(const VcGePoint3d& at, const VcGePoint3d& center, double included)
{
    return {moved(center, directionOf(center, at) + included, std::hypot(at.x - center.x, at.y - center.y)),
            bulgeOf(included)};
}

ArcStep byRadius(Editor& ed, const VcGePoint3d& at, double radius, double included, double direction)
{
    const Answer a = askDirection(ed, fmt::format("Specify direction of chord for arc <{}>", angleText(direction)),
                                  {.from = at, .enterEnds = true});
    const double chord = 2 * radius * std::abs(std::sin(included / 2));
    return {moved(at, a.status == Answer::Status::Value ? a.real : direction, chord), bulgeOf(included)};
}

double askIncluded(Editor& ed, const VcGePoint3d& at)
{
    return ed.askAngle("Specify included angle", {.from = at, .bits = InitGet::NoZero}).real;
}
double askRadius(Editor& ed, const VcGePoint3d& at)
{
    return ed.askDistance("Specify radius of arc", {.from = at, .bits = InitGet::NoZero | InitGet::NoNegative}).real;
}

ArcStep arcByAngle(Editor& ed, const VcGePoint3d& at, double direction)
{
    const double included = askIncluded(ed, at);
    const Answer a =
        ed.askPoint("Specify endpoint of arc or [CEnter/Radius]", {.keywords = "CEnter Radius", .from = at});
    if (a.status == Answer::Status::Value)
        return {a.point, bulgeOf(included)};
    if (a.text == "CEnter")
        return aboutCenter(at, ed.point("Specify center point of arc", {.from = at}), included);
    return byRadius(ed, at, askRadius(ed, at), included, direction);
}

// Anticlockwise about the centre.
ArcStep arcByCenter(Editor& ed, const VcGePoint3d& at, double)
{
    const VcGePoint3d center = ed.point("Specify center point of arc", {.from = at});
    const double radius = std::hypot(at.x - center.x, at.y - center.y);
    const Answer a =
        ed.askPoint("Specify endpoint of arc or [Angle/Length]", {.keywords = "Angle Length", .from = center});
    if (a.status == Answer::Status::Value) {
        const double turn = directionOf(center, a.point) - directionOf(center, at);
        return aboutCenter(at, center, turn - std::floor(turn / (2 * M_PI)) * 2 * M_PI);
    }
    if (a.text == "Angle")
        return aboutCenter(at, center, askIncluded(ed, center));
    const double chord = ed.askDistance("Specify length of chord", {.from = at, .bits = InitGet::NoZero}).real;
    if (std::abs(chord) > 2 * radius)
        throw CommandError{"The arc does not exist: the chord is longer than the diameter."};
    const double minor = 2 * std::asin(std::abs(chord) / (2 * radius));
    return aboutCenter(at, center, chord > 0 ? minor : 2 * M_PI - minor);
}

ArcStep arcByDirection(Editor& ed, const VcGePoint3d& at, double)
{
    const double direction =
        askDirection(ed, "Specify tangent direction for the start point of arc", {.from = at}).real;
    const VcGePoint3d end = ed.point("Specify endpoint of the arc", {.from = at});
    return {end, tangentBulge(direction, at, end)};
}

// The shorter arc, bent to the side to which the polyline turns.
ArcStep arcByRadius(Editor& ed, const VcGePoint3d& at, double direction)
{
    const double radius = askRadius(ed, at);
    const Answer a = ed.askPoint("Specify endpoint of arc or [Angle]", {.keywords = "Angle", .from = at});
    if (a.status == Answer::Status::Keyword)
        return byRadius(ed, at, radius, askIncluded(ed, at), direction);
    const double chord = std::hypot(a.point.x - at.x, a.point.y - at.y);
    if (chord > 2 * radius || chord == 0)
        throw CommandError{"The arc does not exist: the radius does not reach both ends."};
    const double included = 2 * std::asin(chord / (2 * radius));
    const bool left = std::sin(directionOf(at, a.point) - direction) >= 0;
    return {a.point, bulgeOf(left ? included : -included)};
}

ArcStep arcThrough(Editor& ed, const VcGePoint3d& at, double)
{
    const VcGePoint3d second = ed.point("Specify second point on arc", {.from = at});
    const VcGePoint3d end = ed.point("Specify end point of arc", {.from = second});
    return {end, throughBulge(at, second, end)};
}

constexpr struct {
    const char* keyword;
    ArcStep (*ask)(Editor&, const VcGePoint3d& at, double direction);
} kArcs[] = {{"Angle", arcByAngle},
             {"CEnter", arcByCenter},
             {"Direction", arcByDirection},
             {"Radius", arcByRadius},
             {"Second", arcThrough}};

enum class Next { Lines, Arcs, Done };

void undoLast(Editor& ed, Drawing& pline)
{
    if (!pline.undo())
        ed.printLine("All segments already undone.");
    ed.lastPoint = pline.last().at;
}

void addArc(Editor& ed, Drawing& pline, const std::string& option, Widths& widths)
{
    for (const auto& arc : kArcs)
        if (option == arc.keyword) {
            const ArcStep step = arc.ask(ed, pline.last().at, pline.direction());
            pline.add(step.to, step.bulge, widths);
            ed.lastPoint = step.to;
        }
}

Next arcSegment(Editor& ed, Drawing& pline, Widths& widths)
{
    const bool canClose = pline.vertices().size() > 2;
    const VcGePoint3d at = pline.last().at;
    const Answer a = ed.askPoint(
        canClose
            ? "Specify endpoint of arc or [Angle/CEnter/CLose/Direction/Halfwidth/Line/Radius/Second pt/Undo/Width]"
            : "Specify endpoint of arc or [Angle/CEnter/Direction/Halfwidth/Line/Radius/Second pt/Undo/Width]",
        {.keywords = canClose ? "Angle CEnter CLose Direction Halfwidth Line Radius Second Undo Width"
                              : "Angle CEnter Direction Halfwidth Line Radius Second Undo Width",
         .from = at,
         .enterEnds = true});
    if (a.status == Answer::Status::Enter)
        return Next::Done;
    if (a.status == Answer::Status::Value) {
        pline.add(a.point, tangentBulge(pline.direction(), at, a.point), widths);
    } else if (a.text == "Line") {
        return Next::Lines;
    } else if (a.text == "CLose") {
        pline.close(tangentBulge(pline.direction(), at, pline.vertices().front().at), widths);
        return Next::Done;
    } else if (a.text == "Undo") {
        undoLast(ed, pline);
    } else if (a.text == "Width" || a.text == "Halfwidth") {
        widths = askWidths(ed, widths, a.text == "Width" ? "width" : "half-width", a.text == "Width" ? 1 : 2);
    } else {
        // What does not exist is told, and the polyline goes on.
        try {
            addArc(ed, pline, a.text, widths);
        } catch (const CommandError& error) {
            ed.printLine(error.message);
            ed.lastPoint = at;
        }
    }
    return Next::Arcs;
}

Next lineSegment(Editor& ed, Drawing& pline, Widths& widths)
{
    const bool canClose = pline.vertices().size() > 2;
    const std::string prompt = canClose ? "Specify next point or [Arc/Close/Halfwidth/Length/Undo/Width]"
                                        : "Specify next point or [Arc/Halfwidth/Length/Undo/Width]";
    const VcGePoint3d at = pline.last().at;
    const Answer a = ed.askPoint(
        prompt, {.keywords = canClose ? "Arc Close Halfwidth Length Undo Width" : "Arc Halfwidth Length Undo Width",
                 .from = at,
                 .enterEnds = true});
    if (a.status == Answer::Status::Enter)
        return Next::Done;
    if (a.status == Answer::Status::Value) {
        pline.add(a.point, 0, widths);
    } else if (a.text == "Arc") {
        return Next::Arcs;
    } else if (a.text == "Close") {
        pline.close(0, widths);
        return Next::Done;
    } else if (a.text == "Length") {
        const double length = ed.askDistance("Specify length of line", {.from = at}).real,
                     direction = pline.direction();
        pline.add(at + VcGeVector3d(std::cos(direction), std::sin(direction), 0) * length, 0, widths);
        ed.lastPoint = pline.last().at;
    } else if (a.text == "Undo") {
        undoLast(ed, pline);
    } else {
        widths = askWidths(ed, widths, a.text == "Width" ? "width" : "half-width", a.text == "Width" ? 1 : 2);
    }
    return Next::Lines;
}

void pline(Editor& ed)
{
    Drawing drawing(ed, ed.point("Specify start point"));
    const double width = ed.vars().real("PLINEWID");
    Widths widths{width, width};
    ed.printLine(fmt::format("Current line-width is {}", lengthText(width)));
    for (Next next = Next::Lines; next != Next::Done;)
        next = next == Next::Lines ? lineSegment(ed, drawing, widths) : arcSegment(ed, drawing, widths);
}

const HostCommand kCommands[] = {
    {"PLINE", "PL", kPlain, "Draws a polyline of straight and arc segments.", pline},
};

}

std::span<const HostCommand> polylineCommands() { return kCommands; }

}
