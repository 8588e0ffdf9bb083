// FILLET - rounds the corner between two curves, or all corners of a polyline.
#include "host/commands/corners.h"
#include "host/commands/families.h"
#include "host/db/database.h"
#include "host/edit/sysvars.h"

namespace vk::commands {

namespace {

using namespace edit;
using Status = Answer::Status;

class Fillet {
public:
    explicit Fillet(Editor& ed) : m_ed(ed), m_edits(ed) {}
    void run();

private:
    double radius() const { return m_ed.vars().real("FILLETRAD"); }
    bool trims() const { return m_ed.vars().integer("TRIMMODE") != 0; }
    void tellSettings();
    void askRadius();
    void askTrim();
    void wholePolyline();
    bool option(const std::string& keyword);
    bool secondSide(const CurvePick& first);
    CornerMaker maker() const;

    Editor& m_ed;
    CurveEdits m_edits;
    bool m_multiple = false;
};

void Fillet::tellSettings()
{
    m_ed.printLine(fmt::format("Current settings: Mode = {}, Radius = {}", trims() ? "TRIM" : "NOTRIM", lengthText(radius())));
}

void Fillet::askRadius()
{
    m_ed.vars().set("FILLETRAD", m_ed.distance("Specify fillet radius", radius(), {.bits = InitGet::NoNegative}));
}

void Fillet::askTrim()
{
    const char* now = trims() ? "Trim" : "No trim";
    const std::string word = m_ed.keyword(fmt::format("Enter Trim mode option [Trim/No trim] <{}>", now), "Trim No", trims() ? "Trim" : "No");
    m_ed.vars().set("TRIMMODE", std::int32_t(word == "Trim"));
}

CornerMaker Fillet::maker() const
{
    const double r = radius();
    const VcGeVector3d up = ucsNormal(m_ed);
    return {[=](const geom::CornerSide& a, const geom::CornerSide& b) { return geom::filleted(a, b, r, up); },
            [=](const geom::Polyline& p, std::size_t vertex, bool) { return geom::filletedAt(p, vertex, r); }, trims()};
}

void Fillet::wholePolyline()
{
    for (;;) {
        const Answer a = m_ed.askEntity("Select 2D polyline or [Radius]", {.keywords = "Radius"});
        if (a.status == Status::Enter)
            return;
        if (a.status == Status::Keyword) {
            askRadius();
            continue;
        }
        const auto pick = curvePick(m_ed, a);
        const geom::Polyline* p = pick ? polylineOf(*pick) : nullptr;
        if (!p) {
            m_ed.printLine("That object is not a 2D polyline.");
            continue;
        }
        const auto rounded = geom::filletedAll(*p, radius());
        m_edits.begin();
        if (rounded.done > 0)
            m_edits.replace(*pick->entity, {geom::Curve(rounded.polyline)});
        m_edits.end();
        m_ed.printLine(fmt::format("{} lines were filleted", rounded.done));
        if (rounded.tooShort > 0)
            m_ed.printLine(fmt::format("{} were too short", rounded.tooShort));
        return;
    }
}

// Whether the command goes on.
bool Fillet::option(const std::string& keyword)
{
    if (keyword == "Undo") {
        if (!m_edits.undo())
            m_ed.printLine("The command has been completely undone.");
    } else if (keyword == "Polyline") {
        wholePolyline();
        return m_multiple;
    } else if (keyword == "Radius") {
        const bool driven = m_ed.isDriven();
        askRadius();
        // Driven by another command, setting the radius is all that was wanted.
        return !driven;
    } else if (keyword == "Trim") {
        askTrim();
    } else {
        m_multiple = true;
    }
    return true;
}

bool Fillet::secondSide(const CurvePick& first)
{
    for (;;) {
        const Answer a = m_ed.askEntity("Select second object or [Radius]", {.keywords = "Radius"});
        if (a.status == Status::Enter)
            return false;
        if (a.status == Status::Keyword) {
            askRadius();
            continue;
        }
        const auto second = curvePick(m_ed, a);
        if (!second)
            continue;
        m_edits.begin();
        const bool done = makeCorner(m_ed, m_edits, cornerPick(first), cornerPick(*second), maker());
        m_edits.end();
        return done;
    }
}

void Fillet::run()
{
    tellSettings();
    for (;;) {
        const Answer a = m_ed.askEntity("Select first object or [Undo/Polyline/Radius/Trim/Multiple]", {.keywords = "Undo Polyline Radius Trim Multiple"});
        if (a.status == Status::Enter)
            return;
        if (a.status == Status::Keyword) {
            if (!option(a.text))
                return;
            continue;
        }
        const auto first = curvePick(m_ed, a);
        if (first && secondSide(*first) && !m_multiple)
            return;
    }
}

void fillet(Editor& ed) { Fillet(ed).run(); }

const HostCommand kCommands[] = {
    {"FILLET", "F", kPlain, "Rounds the corner between two curves.", fillet},
};

}

std::span<const HostCommand> filletCommands() { return kCommands; }

}
