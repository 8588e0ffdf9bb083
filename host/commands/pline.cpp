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
        polyline->addVertexAt(i, VcGePoint2d(p.x, p.y), m_vertices[i].bulge, m_vertices[i].startWidth, m_vertices[i].endWidth);
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
    const double start = ed.distance(fmt::format("Specify starting {}", what), now.start / factor, {.bits = kNotNegative}) * factor;
    const double end = ed.distance(fmt::format("Specify ending {}", what), start / factor, {.bits = kNotNegative}) * factor;
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

enum class Next { Lines, Arcs, Done };

Next arcSegment(Editor& ed, Drawing& pline, Widths& widths)
{
    const bool canClose = pline.vertices().size() > 2;
    const std::string prompt = canClose ? "Specify endpoint of arc or [Angle/CLose/Line/Second pt/Undo/Width]"
                                        : "Specify endpoint of arc or [Angle/Line/Second pt/Undo/Width]";
    const VcGePoint3d at = pline.last().at;
    const Answer a = ed.askPoint(prompt, {.keywords = canClose ? "Angle CLose Line Second Undo Width" : "Angle Line Second Undo Width",
                                          .from = at, .enterEnds = true});
    if (a.status == Answer::Status::Enter)
        return Next::Done;
    if (a.status == Answer::Status::Value) {
        pline.add(a.point, tangentBulge(pline.direction(), at, a.point), widths);
    } else if (a.text == "Line") {
        return Next::Lines;
    } else if (a.text == "CLose") {
        pline.close(tangentBulge(pline.direction(), at, pline.vertices().front().at), widths);
        return Next::Done;
    } else if (a.text == "Angle") {
        const double included = ed.askAngle("Specify included angle", {.bits = InitGet::NoZero}).real;
        pline.add(ed.point("Specify endpoint of arc", {.from = at}), std::tan(included / 4), widths);
    } else if (a.text == "Second") {
        const VcGePoint3d second = ed.point("Specify second point on arc", {.from = at});
        const VcGePoint3d end = ed.point("Specify end point of arc", {.from = second});
        pline.add(end, throughBulge(at, second, end), widths);
    } else if (a.text == "Undo") {
        if (!pline.undo())
            ed.printLine("All segments already undone.");
        ed.lastPoint = pline.last().at;
    } else {
        widths = askWidths(ed, widths, "width", 1);
    }
    return Next::Arcs;
}

Next lineSegment(Editor& ed, Drawing& pline, Widths& widths)
{
    const bool canClose = pline.vertices().size() > 2;
    const std::string prompt = canClose ? "Specify next point or [Arc/Close/Halfwidth/Length/Undo/Width]"
                                        : "Specify next point or [Arc/Halfwidth/Length/Undo/Width]";
    const VcGePoint3d at = pline.last().at;
    const Answer a = ed.askPoint(prompt, {.keywords = canClose ? "Arc Close Halfwidth Length Undo Width" : "Arc Halfwidth Length Undo Width",
                                          .from = at, .enterEnds = true});
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
        const double length = ed.askDistance("Specify length of line", {.from = at}).real, direction = pline.direction();
        pline.add(at + VcGeVector3d(std::cos(direction), std::sin(direction), 0) * length, 0, widths);
        ed.lastPoint = pline.last().at;
    } else if (a.text == "Undo") {
        if (!pline.undo())
            ed.printLine("All segments already undone.");
        ed.lastPoint = pline.last().at;
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
