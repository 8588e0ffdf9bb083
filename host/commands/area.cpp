// AREA - area and perimeter of outlines and objects.
#include "host/commands/drawing.h"
#include "host/commands/families.h"
#include "host/db/curve_of.h"
#include "host/db/database.h"
#include "host/edit/sysvars.h"

namespace vk::commands {

namespace {

using namespace edit;

struct Measured {
    double area = 0, perimeter = 0;
    bool closed = true;
};

void tell(Editor& ed, const Measured& m)
{
    ed.printLine(fmt::format("Area = {}, {} = {}", lengthText(m.area), m.closed ? "Perimeter" : "Length",
                             lengthText(m.perimeter)));
    ed.vars().force("AREA", m.area);
    ed.vars().force("PERIMETER", m.perimeter);
}

// Nothing when fewer than three points are given.
std::optional<Measured> askOutline(Editor& ed, const VcGePoint3d& first)
{
    std::vector<VcGePoint3d> points{first};
    for (;;) {
        const Answer a = ed.askPoint(points.size() >= 3 ? "Specify next corner point or press ENTER for total"
                                                        : "Specify next corner point",
                                     {.from = points.back(), .enterEnds = true});
        if (a.status != Answer::Status::Value)
            break;
        points.push_back(a.point);
    }
    if (points.size() < 3)
        return std::nullopt;
    Measured m;
    double twice = 0;
    for (std::size_t i = 0; i < points.size(); ++i) {
        const VcGePoint3d &p = points[i], &q = points[(i + 1) % points.size()];
        twice += p.x * q.y - q.x * p.y;
        m.perimeter += p.distanceTo(q);
    }
    m.area = std::abs(twice) / 2;
    return m;
}

std::optional<Measured> askObject(Editor& ed)
{
    for (;;) {
        const Answer a = ed.askEntity("Select objects");
        if (a.status == Answer::Status::Enter)
            return std::nullopt;
        const auto* entity = ed.db().liveAs<VcDbEntity>(a.entity);
        const auto curve = entity ? curveOf(*entity) : std::nullopt;
        if (curve && std::isfinite(geom::length(*curve)))
            return Measured{geom::area(*curve), geom::length(*curve), geom::isClosed(*curve)};
        ed.printLine("The object has no area.");
    }
}

enum class Mode { Once, Add, Subtract };

struct Total {
    Editor& ed;
    Mode mode = Mode::Once;
    double area = 0;

    // True when nothing more is asked.
    bool take(const Measured& m)
    {
        tell(ed, m);
        if (mode == Mode::Once)
            return true;
        area += mode == Mode::Add ? m.area : -m.area;
        ed.printLine(fmt::format("Total area = {}", lengthText(area)));
        ed.vars().force("AREA", area);
        return false;
    }
};

void objects(Total& total)
{
    while (const auto m = askObject(total.ed))
        if (total.take(*m))
            return;
}

void area(Editor& ed)
{
    Total total{ed};
    for (;;) {
        const bool once = total.mode == Mode::Once;
        const Answer a = ed.askPoint(once ? "Specify first corner point or [Object/Add area/Subtract area] <Object>"
                                     : total.mode == Mode::Add ? "Specify first corner point or [Object/Subtract area]"
                                                               : "Specify first corner point or [Object/Add area]",
                                     {.keywords = once                      ? "Object Add Subtract"
                                                  : total.mode == Mode::Add ? "Object Subtract"
                                                                            : "Object Add",
                                      .enterEnds = true});
        if (a.status == Answer::Status::Enter && !once)
            return;
        if (a.status == Answer::Status::Value) {
            const auto m = askOutline(ed, a.point);
            if ((m && total.take(*m)) || (!m && once))
                return;
        } else if (a.text == "Add" || a.text == "Subtract") {
            total.mode = a.text == "Add" ? Mode::Add : Mode::Subtract;
        } else {
            objects(total);
            if (total.mode == Mode::Once)
                return;
        }
    }
}

const HostCommand kCommands[] = {
    {"AREA", "AA", kNoUndoStep, "Measures areas and perimeters.", area},
};

}

std::span<const HostCommand> areaCommands() { return kCommands; }

}
