// SOLID, TRACE, 3DFACE, 3DPOLY.
#include "host/commands/drawing.h"
#include "host/commands/families.h"
#include "host/db/database.h"
#include "host/edit/sysvars.h"
#include "sdk/vcdb_curves.h"
#include "sdk/vcdb_faces.h"

namespace vk::commands {

namespace {

using namespace edit;

// The fourth point left out makes a triangle; the third and fourth begin the next shape.
void solid(Editor& ed)
{
    VcGePoint3d a = ed.point("Specify first point"), b = ed.point("Specify second point", {.from = a});
    for (;;) {
        const Answer third = ed.askPoint("Specify third point", {.from = b, .enterEnds = true});
        if (third.status != Answer::Status::Value)
            return;
        const Answer fourth = ed.askPoint("Specify fourth point or <exit>", {.from = third.point, .enterEnds = true});
        const VcGePoint3d last = fourth.status == Answer::Status::Value ? fourth.point : third.point;
        auto made = std::make_unique<VcDbSolid>();
        made->setNormal(ucsNormal(ed));
        const VcGePoint3d corners[] = {a, b, third.point, last};
        for (unsigned i = 0; i < 4; ++i)
            made->setPointAt(i, toWorld(ed, corners[i]));
        addToSpace(ed, std::move(made));
        if (fourth.status != Answer::Status::Value)
            return;
        a = third.point;
        b = fourth.point;
    }
}

struct Corner {
    VcGePoint3d at;
    bool hidden = false;  // the edge that begins here
};

// Nothing when the person ends.
std::optional<Corner> askCorner(Editor& ed, const std::string& what, bool mayEnd)
{
    Corner corner;
    for (;;) {
        const Answer a = ed.askPoint(fmt::format("Specify {} point or [Invisible]{}", what, mayEnd ? " <exit>" : ""),
                                     {.keywords = "Invisible", .enterEnds = mayEnd});
        if (a.status == Answer::Status::Enter)
            return std::nullopt;
        if (a.status == Answer::Status::Value) {
            corner.at = a.point;
            return corner;
        }
        corner.hidden = true;
    }
}

void face(Editor& ed)
{
    Corner a = *askCorner(ed, "first", false), b = *askCorner(ed, "second", false);
    for (;;) {
        const auto third = askCorner(ed, "third", true);
        if (!third)
            return;
        const auto fourth = askCorner(ed, "fourth", true);
        const Corner corners[] = {a, b, *third, fourth.value_or(*third)};
        auto made = std::make_unique<VcDbFace>();
        for (unsigned i = 0; i < 4; ++i) {
            made->setVertexAt(i, toWorld(ed, corners[i].at));
            if (corners[i].hidden)
                made->makeEdgeInvisibleAt(i);
        }
        addToSpace(ed, std::move(made));
        a = *third;
        b = fourth.value_or(*third);
        if (!fourth)
            return;
    }
}

// Wide lines as filled quadrilaterals, mitred where they meet.
void addTraces(Editor& ed, const std::vector<VcGePoint3d>& path, double width)
{
    const auto across = [&](std::size_t i) {
        const VcGeVector3d d = (path[i + 1] - path[i]).normal();
        return VcGeVector3d(-d.y, d.x, 0);
    };
    const std::size_t last = path.size() - 1;
    std::vector<VcGeVector3d> half;
    for (std::size_t i = 0; i <= last; ++i) {
        const VcGeVector3d before = across(i > 0 ? i - 1 : 0), after = across(i < last ? i : last - 1);
        const VcGeVector3d sum = before + after;
        // Where the path turns straight back there is no mitre.
        half.push_back(sum.lengthSqrd() > 1e-12 ? sum * (width / sum.lengthSqrd()) : after * (width / 2));
    }
    for (std::size_t i = 0; i < last; ++i) {
        auto made = std::make_unique<VcDbTrace>();
        made->setNormal(ucsNormal(ed));
        const VcGePoint3d corners[] = {path[i] + half[i], path[i] - half[i], path[i + 1] + half[i + 1],
                                       path[i + 1] - half[i + 1]};
        for (unsigned c = 0; c < 4; ++c)
            made->setPointAt(c, toWorld(ed, corners[c]));
        addToSpace(ed, std::move(made));
    }
}

void trace(Editor& ed)
{
    const double width =
        ed.distance("Specify trace width", ed.vars().real("TRACEWID"), {.bits = InitGet::NoZero | InitGet::NoNegative});
    ed.vars().set("TRACEWID", width);
    std::vector<VcGePoint3d> path{ed.point("Specify start point")};
    for (;;) {
        const Answer a = ed.askPoint("Specify next point", {.from = path.back(), .enterEnds = true});
        if (a.status != Answer::Status::Value)
            break;
        if (a.point.x == path.back().x && a.point.y == path.back().y)
            ed.printLine("The point must differ from the one before.");
        else
            path.push_back({a.point.x, a.point.y, path.front().z});
    }
    if (path.size() >= 2)
        addTraces(ed, path, width);
}

// A polyline in space under way. Its object is replaced as it grows, so that Esc keeps what was drawn.
VcDbObjectId replacePolyline(Editor& ed, VcDbObjectId old, const std::vector<VcGePoint3d>& points, bool closed)
{
    if (VcDbObject* object = ed.db().object(old); object && !object->isErased())
        object->erase();
    if (points.size() < 2)
        return {};
    const VcDbObjectId id = addToSpace(ed, std::make_unique<VcDb3dPolyline>());
    auto* polyline = ed.db().liveAs<VcDb3dPolyline>(id);
    for (const VcGePoint3d& p : points) {
        VcDbObjectId vertexId;
        auto vertex = std::make_unique<VcDb3dPolylineVertex>(toWorld(ed, p));
        if (polyline->appendVertex(vertexId, vertex.get()) == Vcad::eOk)
            vertex.release()->close();
    }
    polyline->setClosed(closed);
    return id;
}

void polyline3d(Editor& ed)
{
    std::vector<VcGePoint3d> points{ed.point("Specify start point of polyline")};
    VcDbObjectId id;
    for (;;) {
        const bool canClose = points.size() >= 3;
        const Answer a =
            ed.askPoint(canClose ? "Specify endpoint of line or [Close/Undo]" : "Specify endpoint of line or [Undo]",
                        {.keywords = canClose ? "Close Undo" : "Undo", .from = points.back(), .enterEnds = true});
        if (a.status == Answer::Status::Enter)
            return;
        const bool closes = a.status == Answer::Status::Keyword && a.text == "Close";
        if (a.status == Answer::Status::Value) {
            points.push_back(a.point);
        } else if (!closes && points.size() == 1) {
            ed.printLine("All segments already undone.");
            continue;
        } else if (!closes) {
            points.pop_back();
            ed.lastPoint = points.back();
        }
        id = replacePolyline(ed, id, points, closes);
        if (closes)
            return;
    }
}

const HostCommand kCommands[] = {
    {"SOLID", "SO", kPlain, "Draws filled triangles and quadrilaterals.", solid},
    {"TRACE", nullptr, kPlain, "Draws wide lines as filled quadrilaterals.", trace},
    {"3DFACE", "3F", kPlain, "Draws faces in space.", face},
    {"3DPOLY", "3P", kPlain, "Draws polylines in space.", polyline3d},
};

}

std::span<const HostCommand> faceCommands() { return kCommands; }

}
