// RECTANG, POLYGON, DONUT - closed polylines.
#include "host/commands/drawing.h"
#include "host/commands/families.h"
#include "host/commands/figure_preview.h"
#include "host/edit/display.h"
#include "host/edit/sysvars.h"
#include "sdk/vcdb_curves.h"

namespace vk::commands {

namespace {

using namespace edit;

struct Vertex {
    VcGePoint3d at;  // in the UCS
    double bulge = 0;
};

// In the plane of the UCS, at the elevation of the first vertex.
std::unique_ptr<VcDbPolyline> closedPolyline(Editor& ed, const std::vector<Vertex>& vertices, double width)
{
    auto polyline = std::make_unique<VcDbPolyline>();
    const VcGeVector3d normal = ucsNormal(ed);
    const VcGeMatrix3d toPlane = VcGeMatrix3d::worldToPlane(normal) * ucsToWorld(ed);
    for (unsigned i = 0; i < vertices.size(); ++i) {
        const VcGePoint3d p = toPlane * vertices[i].at;
        polyline->addVertexAt(i, {p.x, p.y}, vertices[i].bulge);
    }
    if (width > 0)
        polyline->setConstantWidth(width);
    polyline->setElevation((toPlane * vertices.front().at).z);
    polyline->setNormal(normal);
    polyline->setClosed(true);
    return polyline;
}

// Rectangles

// What RECTANG keeps from one to the next in a session.
struct Style {
    double chamferA = 0, chamferB = 0, radius = 0, elevation = 0, thickness = 0, width = 0, rotation = 0;
    double length = 10, breadth = 10, area = 100;
};
Style s_style;

double asked(Editor& ed, std::string_view prompt, double now, int bits = InitGet::NoNegative)
{
    return ed.distance(prompt, now, {.bits = bits});
}

void setOption(Editor& ed, const std::string& option)
{
    if (option == "Chamfer") {
        s_style.chamferA = asked(ed, "Specify first chamfer distance for rectangles", s_style.chamferA);
        s_style.chamferB = asked(ed, "Specify second chamfer distance for rectangles", s_style.chamferB);
        s_style.radius = 0;
    } else if (option == "Elevation") {
        s_style.elevation = asked(ed, "Specify the elevation for rectangles", s_style.elevation, 0);
    } else if (option == "Fillet") {
        s_style.radius = asked(ed, "Specify fillet radius for rectangles", s_style.radius);
        s_style.chamferA = s_style.chamferB = 0;
    } else if (option == "Thickness") {
        s_style.thickness = asked(ed, "Specify thickness for rectangles", s_style.thickness, 0);
    } else {
        s_style.width = asked(ed, "Specify line width for rectangles", s_style.width);
    }
}

// A rectangle by its first corner and its sides along axes that the rotation turns. Sides may run backwards.
struct Rectangle {
    VcGePoint3d corner;
    double length = 0, breadth = 0;
};

VcGePoint3d placed(const Rectangle& r, double u, double v)
{
    const double c = std::cos(s_style.rotation), s = std::sin(s_style.rotation);
    return r.corner + VcGeVector3d(u * c - v * s, u * s + v * c, 0);
}

Rectangle spanned(const VcGePoint3d& corner, const VcGePoint3d& opposite)
{
    const VcGeVector3d d = opposite - corner;
    const double c = std::cos(s_style.rotation), s = std::sin(s_style.rotation);
    return {corner, d.x * c + d.y * s, d.y * c - d.x * s};
}

// Corners are cut where both sides are long enough for it.
std::vector<Vertex> outlineOf(const Rectangle& r)
{
    const double u = r.length, v = r.breadth, su = u < 0 ? -1 : 1, sv = v < 0 ? -1 : 1;
    const double first = s_style.radius > 0 ? s_style.radius : s_style.chamferA,
                 second = s_style.radius > 0 ? s_style.radius : s_style.chamferB;
    const double shorter = std::min(std::abs(u), std::abs(v));
    if (!(first + second > 0) || first + second > shorter)
        return {{placed(r, 0, 0)}, {placed(r, u, 0)}, {placed(r, u, v)}, {placed(r, 0, v)}};
    const double bulge = s_style.radius > 0 ? std::tan(M_PI / 8) * su * sv : 0;
    return {{placed(r, su * second, 0)},     {placed(r, u - su * first, 0), bulge},
            {placed(r, u, sv * second)},     {placed(r, u, v - sv * first), bulge},
            {placed(r, u - su * second, v)}, {placed(r, su * first, v), bulge},
            {placed(r, 0, v - sv * second)}, {placed(r, 0, sv * first), bulge}};
}

void addRectangle(Editor& ed, Rectangle r)
{
    r.corner.z += s_style.elevation;
    auto polyline = closedPolyline(ed, outlineOf(r), s_style.width);
    if (s_style.thickness != 0)
        polyline->setThickness(s_style.thickness);
    addToSpace(ed, std::move(polyline));
}

Rectangle byArea(Editor& ed, const VcGePoint3d& corner)
{
    constexpr int kPositive = InitGet::NoZero | InitGet::NoNegative;
    s_style.area = ed.real("Enter area of rectangle in current units", s_style.area, {.bits = kPositive});
    const bool byLength = ed.keyword("Calculate rectangle dimensions based on [Length/Width] <Length>", "Length Width",
                                     "Length") == "Length";
    double& known = byLength ? s_style.length : s_style.breadth;
    known = asked(ed, byLength ? "Enter rectangle length" : "Enter rectangle width", known, kPositive);
    (byLength ? s_style.breadth : s_style.length) = s_style.area / known;
    return {corner, s_style.length, s_style.breadth};
}

// The second point tells the side on which the rectangle lies.
Rectangle byDimensions(Editor& ed, const VcGePoint3d& corner)
{
    constexpr int kPositive = InitGet::NoZero | InitGet::NoNegative;
    s_style.length = asked(ed, "Specify length for rectangles", s_style.length, kPositive);
    s_style.breadth = asked(ed, "Specify width for rectangles", s_style.breadth, kPositive);
    const Rectangle side = spanned(corner, ed.point("Specify other corner point", {.from = corner}));
    return {corner, std::copysign(s_style.length, side.length), std::copysign(s_style.breadth, side.breadth)};
}

void askRotation(Editor& ed)
{
    const Answer a = askDirection(
        ed, fmt::format("Specify rotation angle or [Pick points] <{}>", directionText(ed, s_style.rotation)),
        {.keywords = "Pick", .enterEnds = true});
    if (a.status == Answer::Status::Value)
        s_style.rotation = a.real;
    if (a.status != Answer::Status::Keyword)
        return;
    const VcGePoint3d p = ed.point("Specify first point"), q = ed.point("Specify second point", {.from = p});
    s_style.rotation = std::atan2(q.y - p.y, q.x - p.x);
}

// Told where it is not the plain one.
void showModes(Editor& ed)
{
    std::string modes;
    const auto add = [&](const char* name, const std::string& value) { modes += fmt::format("  {}={}", name, value); };
    if (s_style.chamferA > 0 || s_style.chamferB > 0)
        add("Chamfer", lengthText(s_style.chamferA) + " x " + lengthText(s_style.chamferB));
    if (s_style.elevation != 0)
        add("Elevation", lengthText(s_style.elevation));
    if (s_style.radius > 0)
        add("Fillet", lengthText(s_style.radius));
    if (s_style.thickness != 0)
        add("Thickness", lengthText(s_style.thickness));
    if (s_style.width > 0)
        add("Width", lengthText(s_style.width));
    if (s_style.rotation != 0)
        add("Rotation", angleText(s_style.rotation));
    if (!modes.empty())
        ed.printLine("Current rectangle modes:" + modes);
}

void rectangle(Editor& ed)
{
    showModes(ed);
    Answer first = ed.askPoint("Specify first corner point or [Chamfer/Elevation/Fillet/Thickness/Width]",
                               {.keywords = "Chamfer Elevation Fillet Thickness Width"});
    while (first.status == Answer::Status::Keyword) {
        setOption(ed, first.text);
        first = ed.askPoint("Specify first corner point or [Chamfer/Elevation/Fillet/Thickness/Width]",
                            {.keywords = "Chamfer Elevation Fillet Thickness Width"});
    }
    for (;;) {
        Display::instance().follow({{}, {}, [corner = first.point](const VcGePoint3d& cursor) {
                                        std::vector<VcGePoint3d> outline;
                                        for (const Vertex& v : outlineOf(spanned(corner, cursor)))
                                            outline.push_back(v.at);
                                        outline.push_back(outline.front());
                                        return Preview::Lines{outline};
                                    }});
        const Answer a = ed.askPoint("Specify other corner point or [Area/Dimensions/Rotation]",
                                     {.keywords = "Area Dimensions Rotation", .from = first.point});
        if (a.status == Answer::Status::Keyword && a.text == "Rotation") {
            askRotation(ed);
            continue;
        }
        if (a.status == Answer::Status::Keyword)
            return addRectangle(ed, a.text == "Area" ? byArea(ed, first.point) : byDimensions(ed, first.point));
        if (std::hypot(a.point.x - first.point.x, a.point.y - first.point.y) > 0)
            return addRectangle(ed, spanned(first.point, a.point));
        ed.printLine("The two corners must differ.");
    }
}

// Polygons

std::vector<Vertex> regular(const VcGePoint3d& center, double radius, double firstAngle, int sides)
{
    std::vector<Vertex> vertices;
    for (int i = 0; i < sides; ++i) {
        const double angle = firstAngle + 2 * M_PI * i / sides;
        vertices.push_back({center + VcGeVector3d(std::cos(angle), std::sin(angle), 0) * radius});
    }
    return vertices;
}

std::unique_ptr<VcDbPolyline> onEdge(Editor& ed, const VcGePoint3d& a, const VcGePoint3d& b, int sides)
{
    const double edge = std::hypot(b.x - a.x, b.y - a.y);
    if (!(edge > 0))
        throw CommandError{"The edge has no length."};
    const double direction = std::atan2(b.y - a.y, b.x - a.x), radius = edge / (2 * std::sin(M_PI / sides));
    const double inner = radius * std::cos(M_PI / sides);
    const VcGePoint3d center = a + (b - a) * 0.5 + VcGeVector3d(-std::sin(direction), std::cos(direction), 0) * inner;
    return closedPolyline(ed, regular(center, radius, std::atan2(a.y - center.y, a.x - center.x), sides), 0);
}

void byEdge(Editor& ed, int sides)
{
    const VcGePoint3d a = ed.point("Specify first endpoint of edge");
    const auto polygonTo = [&ed, a, sides](const VcGePoint3d& b) { return onEdge(ed, a, b, sides); };
    showFigure(ed, polygonTo);
    addToSpace(ed, polygonTo(ed.point("Specify second endpoint of edge", {.from = a})));
}

void polygon(Editor& ed)
{
    std::int64_t sides = 0;
    while (sides < 3 || sides > 1024) {
        sides = ed.integer("Enter number of sides", ed.vars().integer("POLYSIDES"));
        if (sides < 3 || sides > 1024)
            ed.printLine("Requires an integer between 3 and 1024.");
    }
    ed.vars().set("POLYSIDES", std::int32_t(sides));
    const Answer c = ed.askPoint("Specify center of polygon or [Edge]", {.keywords = "Edge"});
    if (c.status == Answer::Status::Keyword)
        return byEdge(ed, int(sides));
    static bool about = false;
    about = ed.keyword(
                fmt::format("Enter an option [Inscribed in circle/Circumscribed about circle] <{}>", about ? "C" : "I"),
                "Inscribed Circumscribed", about ? "Circumscribed" : "Inscribed") == "Circumscribed";
    // A point shows where a corner, or the middle of a side, lies; a typed radius lets the lowest side run level.
    const VcGePoint3d before = ed.lastPoint;
    const double half = M_PI / double(sides);
    const auto polygonOf = [&ed, center = c.point, sides, half](double length, double first) {
        return closedPolyline(ed, regular(center, about ? length / std::cos(half) : length, first, int(sides)), 0);
    };
    const auto directionTo = [center = c.point, half](const VcGePoint3d& p) {
        return std::atan2(p.y - center.y, p.x - center.x) + (about ? half : 0);
    };
    showFigure(ed, [=, center = c.point](const VcGePoint3d& cursor) -> std::unique_ptr<VcDbEntity> {
        const double length = center.distanceTo(cursor);
        return length > 0 ? polygonOf(length, directionTo(cursor)) : nullptr;
    });
    const Answer r =
        ed.askDistance("Specify radius of circle", {.from = c.point, .bits = InitGet::NoZero | InitGet::NoNegative});
    const bool shown = ed.lastPoint != before && ed.lastPoint != c.point;
    addToSpace(ed, polygonOf(r.real, shown ? directionTo(ed.lastPoint) : -M_PI / 2 + half));
    ed.lastPoint = c.point;
}

void donut(Editor& ed)
{
    double inside = asked(ed, "Specify inside diameter of donut", ed.vars().real("DONUTID"));
    double outside = asked(ed, "Specify outside diameter of donut", ed.vars().real("DONUTOD"),
                           InitGet::NoZero | InitGet::NoNegative);
    if (outside < inside)
        std::swap(inside, outside);
    ed.vars().set("DONUTID", inside);
    ed.vars().set("DONUTOD", outside);
    const double radius = (inside + outside) / 4, width = (outside - inside) / 2;
    for (;;) {
        const Answer a = ed.askPoint("Specify center of donut or <exit>", {.enterEnds = true});
        if (a.status != Answer::Status::Value)
            return;
        const VcGeVector3d across(radius, 0, 0);
        addToSpace(ed, closedPolyline(ed, {{a.point - across, 1}, {a.point + across, 1}}, width));
    }
}

const HostCommand kCommands[] = {
    {"RECTANG", "REC", kPlain, "Draws a rectangle.", rectangle},
    {"RECTANGLE", nullptr, kPlain, "Draws a rectangle.", rectangle},
    {"POLYGON", "POL", kPlain, "Draws a regular polygon.", polygon},
    {"DONUT", "DO", kPlain, "Draws filled rings.", donut},
};

}

std::span<const HostCommand> rectangleCommands() { return kCommands; }

}
