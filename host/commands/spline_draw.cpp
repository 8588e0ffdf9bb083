// SPLINE.
#include "host/commands/drawing.h"
#include "host/commands/families.h"
#include "host/commands/spline_through.h"
#include "host/db/database.h"
#include "host/edit/sysvars.h"
#include "sdk/vcdb_curves.h"

namespace vk::commands {

namespace {

using namespace edit;

// What the questions settle. Points and directions are in the UCS.
struct Path {
    bool byVertices = false;
    std::vector<VcGePoint3d> points;
    SplineFit fit;
    double tolerance = 0;  // the curve runs through the points themselves, which every tolerance allows
};

void addSpline(Editor& ed, const Path& path, bool closed)
{
    const VcGeMatrix3d m = ucsToWorld(ed);
    std::vector<VcGePoint3d> world;
    for (const VcGePoint3d& p : path.points)
        if (const VcGePoint3d w = m * p; world.empty() || path.byVertices || w.distanceTo(world.back()) > 0)
            world.push_back(w);
    SplineFit fit = path.fit;
    for (auto* direction : {&fit.start, &fit.end})
        if (*direction)
            *direction = m * **direction;
    auto spline = path.byVertices ? splineByVertices(world, int(ed.vars().integer("SPLDEGREE")), closed)
                                  : splineThrough(world, closed, fit);
    if (!spline)
        throw CommandError{"These points make no spline: at least two must differ."};
    addToSpace(ed, std::move(spline));
}

// Objects

// The control vertices of a polyline that was smoothed as a spline; none for any other object.
std::vector<VcGePoint3d> frameOf(const VcDbEntity* entity)
{
    std::vector<VcGePoint3d> frame;
    const auto* flat = VcDb2dPolyline::cast(entity);
    const auto* owner = VcDbVertexOwner::cast(entity);
    if (!owner || !(owner->polylineFlags() & VcDbVertexOwner::kSplineFit) || (!flat && !VcDb3dPolyline::cast(entity)))
        return frame;
    for (const VcDbEntity* part : owner->vertices()) {
        const auto* vertex = VcDbVertex::cast(part);
        if (!vertex || !(vertex->vertexFlags() & VcDbVertex::kSplineFrame))
            continue;
        const auto* flatVertex = VcDb2dVertex::cast(vertex);
        frame.push_back(flat && flatVertex ? flat->vertexPosition(*flatVertex) : vertex->position());
    }
    return frame;
}

bool isQuadratic(const VcDbEntity& entity)
{
    const auto* flat = VcDb2dPolyline::cast(&entity);
    const auto* space = VcDb3dPolyline::cast(&entity);
    return flat ? flat->polyType() == VcDb::k2dQuadSplinePoly : space && space->polyType() == VcDb::k3dQuadSplinePoly;
}

void convert(Editor& ed)
{
    std::size_t made = 0, left = 0;
    for (const VcDbObjectId id : ed.select({.prompt = "Select spline-fit polyline: "})->ids()) {
        auto* entity = ed.db().liveAs<VcDbEntity>(id);
        const std::vector<VcGePoint3d> frame = frameOf(entity);
        auto spline = frame.size() >= 2 ? splineByVertices(frame, isQuadratic(*entity) ? 2 : 3,
                                                           static_cast<const VcDbCurve*>(entity)->isClosed())
                                        : nullptr;
        if (!spline) {
            ++left;
            continue;
        }
        const VcDbObjectId added = addToSpace(ed, std::move(spline));
        ed.db().liveAs<VcDbEntity>(added)->setPropertiesFrom(entity);
        if (ed.vars().integer("DELOBJ") != 0)
            entity->erase();
        ++made;
    }
    if (left > 0)
        ed.printLine(fmt::format(
            "{} made into splines; {} left, since only polylines that are smoothed as splines can be.", made, left));
}

// Questions

const char* knotsName(FitKnots knots)
{
    return knots == FitKnots::Chord ? "Chord" : knots == FitKnots::SquareRoot ? "Square root" : "Uniform";
}

void askKnots(Editor& ed)
{
    const auto now = FitKnots(ed.vars().integer("SPLKNOTS"));
    const char* keyword = now == FitKnots::Chord ? "Chord" : now == FitKnots::SquareRoot ? "Square" : "Uniform";
    const std::string k =
        ed.keyword(fmt::format("Enter knot parameterization [Chord/Square root/Uniform] <{}>", knotsName(now)),
                   "Chord Square Uniform", keyword);
    ed.vars().set("SPLKNOTS", std::int32_t(k == "Chord" ? 0 : k == "Square" ? 1 : 2));
}

void askDegree(Editor& ed)
{
    for (;;) {
        const std::int64_t degree = ed.integer("Enter degree of spline", ed.vars().integer("SPLDEGREE"));
        if (ed.vars().set("SPLDEGREE", std::int32_t(degree)) == SetVarResult::Done)
            return;
        ed.printLine("The degree must lie between 1 and 5.");
    }
}

// False when objects were converted instead.
bool askFirst(Editor& ed, Path& path)
{
    for (;;) {
        path.byVertices = ed.vars().integer("SPLMETHOD") == 1;
        path.fit.knots = FitKnots(ed.vars().integer("SPLKNOTS"));
        ed.printLine(path.byVertices
                         ? fmt::format("Current settings:  Method=CV  Degree={}", ed.vars().integer("SPLDEGREE"))
                         : fmt::format("Current settings:  Method=Fit  Knots={}", knotsName(path.fit.knots)));
        const Answer a = ed.askPoint(path.byVertices ? "Specify first point or [Method/Degree/Object]"
                                                     : "Specify first point or [Method/Knots/Object]",
                                     {.keywords = path.byVertices ? "Method Degree Object" : "Method Knots Object"});
        if (a.status == Answer::Status::Value) {
            path.points.push_back(a.point);
            return true;
        }
        if (a.text == "Object") {
            convert(ed);
            return false;
        }
        if (a.text == "Knots")
            askKnots(ed);
        else if (a.text == "Degree")
            askDegree(ed);
        else
            ed.vars().set("SPLMETHOD", std::int32_t(ed.keyword(fmt::format("Enter spline creation method [Fit/CV] <{}>",
                                                                           path.byVertices ? "CV" : "Fit"),
                                                               "Fit CV", path.byVertices ? "CV" : "Fit") == "CV"));
    }
}

std::string optionsNow(const Path& path)
{
    const std::size_t count = path.points.size();
    if (path.byVertices)
        return count < 2 ? "" : count < 3 ? "Undo" : "Close/Undo";
    return count < 2   ? "start Tangency/toLerance"
           : count < 3 ? "end Tangency/toLerance/Undo"
                       : "end Tangency/toLerance/Undo/Close";
}

std::string keywordsNow(const Path& path)
{
    const std::size_t count = path.points.size();
    if (path.byVertices)
        return count < 2 ? "" : count < 3 ? "Undo" : "Close Undo";
    return count < 2 ? "Tangency toLerance" : count < 3 ? "Tangency toLerance Undo" : "Tangency toLerance Undo Close";
}

// The direction may be shown by a point or typed as an angle.
VcGeVector3d askTangent(Editor& ed, const VcGePoint3d& at, const char* prompt)
{
    const double angle = askDirection(ed, prompt, {.from = at}).real;
    return {std::cos(angle), std::sin(angle), 0};
}

void spline(Editor& ed)
{
    Path path;
    if (!askFirst(ed, path))
        return;
    for (;;) {
        const std::string options = optionsNow(path);
        const Answer a =
            ed.askPoint(options.empty() ? "Specify next point" : fmt::format("Specify next point or [{}]", options),
                        {.keywords = keywordsNow(path), .from = path.points.back(), .enterEnds = true});
        const bool isWord = a.status == Answer::Status::Keyword;
        if (a.status == Answer::Status::Value) {
            path.points.push_back(a.point);
        } else if (isWord && a.text == "Undo") {
            path.points.pop_back();
            ed.lastPoint = path.points.back();
        } else if (isWord && a.text == "toLerance") {
            path.tolerance = ed.distance("Specify fit tolerance", path.tolerance, {.bits = InitGet::NoNegative});
        } else if (isWord && a.text == "Tangency" && path.points.size() < 2) {
            path.fit.start = askTangent(ed, path.points.back(), "Specify start tangent");
            ed.lastPoint = path.points.back();
        } else if (isWord && a.text == "Tangency") {
            path.fit.end = askTangent(ed, path.points.back(), "Specify end tangent");
            return addSpline(ed, path, false);
        } else {
            return path.points.size() >= 2 ? addSpline(ed, path, isWord) : void();
        }
    }
}

const HostCommand kCommands[] = {
    {"SPLINE", "SPL", kPlain, "Draws a smooth curve through points.", spline},
};

}

std::span<const HostCommand> splineCommands() { return kCommands; }

}
