// CHAMFER - bevels the corner between two lines, or all corners of a polyline.
#include "host/commands/corners.h"
#include "host/commands/families.h"
#include "host/db/database.h"
#include "host/edit/sysvars.h"

namespace vk::commands {

namespace {

using namespace edit;
using Status = Answer::Status;

struct Distances {
    double first, second;
};

class Chamfer {
public:
    explicit Chamfer(Editor& ed) : m_ed(ed), m_edits(ed) {}
    void run();

private:
    bool byAngle() const { return m_ed.vars().integer("CHAMMODE") == 1; }
    bool trims() const { return m_ed.vars().integer("TRIMMODE") != 0; }
    Distances distances() const;
    void tellSettings();
    void askDistances();
    void askAngle();
    void askTrim();
    void askMethod();
    void wholePolyline();
    void setting(const std::string& keyword);
    bool option(const std::string& keyword);
    bool secondSide(const CurvePick& first);
    CornerMaker maker() const;

    Editor& m_ed;
    CurveEdits m_edits;
    bool m_multiple = false;
};

// By a length and an angle the second distance lies opposite to the angle.
Distances Chamfer::distances() const
{
    const SysVars& vars = m_ed.vars();
    if (!byAngle())
        return {vars.real("CHAMFERA"), vars.real("CHAMFERB")};
    const double length = vars.real("CHAMFERC");
    return {length, length * std::tan(vars.real("CHAMFERD"))};
}

void Chamfer::tellSettings()
{
    const SysVars& vars = m_ed.vars();
    const char* mode = trims() ? "TRIM" : "NOTRIM";
    if (byAngle())
        m_ed.printLine(fmt::format("({} mode) Current chamfer Length = {}, Angle = {}", mode, lengthText(vars.real("CHAMFERC")), angleText(vars.real("CHAMFERD"))));
    else
        m_ed.printLine(fmt::format("({} mode) Current chamfer Dist1 = {}, Dist2 = {}", mode, lengthText(vars.real("CHAMFERA")), lengthText(vars.real("CHAMFERB"))));
}

void Chamfer::askDistances()
{
    const double first = m_ed.distance("Specify first chamfer distance", m_ed.vars().real("CHAMFERA"), {.bits = InitGet::NoNegative});
    const double second = m_ed.distance("Specify second chamfer distance", first, {.bits = InitGet::NoNegative});
    m_ed.vars().set("CHAMFERA", first);
    m_ed.vars().set("CHAMFERB", second);
    m_ed.vars().set("CHAMMODE", std::int32_t(0));
}

void Chamfer::askAngle()
{
    const double length = m_ed.distance("Specify chamfer length on the first line", m_ed.vars().real("CHAMFERC"), {.bits = InitGet::NoNegative});
    const double known = m_ed.vars().real("CHAMFERD");
    const Answer a = m_ed.askAngle(fmt::format("Specify chamfer angle from the first line <{}>", angleText(known)), {.enterEnds = true});
    const double angle = a.status == Status::Enter ? known : a.real;
    if (!(angle >= 0 && angle < M_PI / 2))
        throw CommandError{"The angle of a chamfer lies between 0 and 90 degrees."};
    m_ed.vars().set("CHAMFERC", length);
    m_ed.vars().set("CHAMFERD", angle);
    m_ed.vars().set("CHAMMODE", std::int32_t(1));
}

void Chamfer::askTrim()
{
    const std::string word = m_ed.keyword(fmt::format("Enter Trim mode option [Trim/No trim] <{}>", trims() ? "Trim" : "No trim"), "Trim No", trims() ? "Trim" : "No");
    m_ed.vars().set("TRIMMODE", std::int32_t(word == "Trim"));
}

void Chamfer::askMethod()
{
    const char* now = byAngle() ? "Angle" : "Distance";
    m_ed.vars().set("CHAMMODE", std::int32_t(m_ed.keyword(fmt::format("Enter trim method [Distance/Angle] <{}>", now), "Distance Angle", now) == "Angle"));
}

CornerMaker Chamfer::maker() const
{
    const Distances d = distances();
    return {[=](const geom::CornerSide& a, const geom::CornerSide& b) { return geom::chamfered(a, b, d.first, d.second); },
            [=](const geom::Polyline& p, std::size_t vertex, bool swapped) {
                return geom::chamferedAt(p, vertex, swapped ? d.second : d.first, swapped ? d.first : d.second);
            },
            trims()};
}

void Chamfer::setting(const std::string& keyword)
{
    if (keyword == "Distance")
        askDistances();
    else if (keyword == "Angle")
        askAngle();
    else
        askMethod();
}

void Chamfer::wholePolyline()
{
    for (;;) {
        const Answer a = m_ed.askEntity("Select 2D polyline or [Distance/Angle/mEthod]", {.keywords = "Distance Angle mEthod"});
        if (a.status == Status::Enter)
            return;
        if (a.status == Status::Keyword) {
            setting(a.text);
            continue;
        }
        const auto pick = curvePick(m_ed, a);
        const geom::Polyline* p = pick ? polylineOf(*pick) : nullptr;
        if (!p) {
            m_ed.printLine("That object is not a 2D polyline.");
            continue;
        }
        const Distances d = distances();
        const auto bevelled = geom::chamferedAll(*p, d.first, d.second);
        m_edits.begin();
        if (bevelled.done > 0)
            m_edits.replace(*pick->entity, {geom::Curve(bevelled.polyline)});
        m_edits.end();
        m_ed.printLine(fmt::format("{} lines were chamfered", bevelled.done));
        if (bevelled.tooShort > 0)
            m_ed.printLine(fmt::format("{} were too short", bevelled.tooShort));
        return;
    }
}

// Whether the command goes on.
bool Chamfer::option(const std::string& keyword)
{
    if (keyword == "Undo") {
        if (!m_edits.undo())
            m_ed.printLine("The command has been completely undone.");
    } else if (keyword == "Polyline") {
        wholePolyline();
        return m_multiple;
    } else if (keyword == "Trim") {
        askTrim();
    } else if (keyword == "Multiple") {
        m_multiple = true;
    } else {
        const bool driven = m_ed.isDriven();
        setting(keyword);
        // Driven by another command, the setting is all that was wanted.
        return !driven;
    }
    return true;
}

bool Chamfer::secondSide(const CurvePick& first)
{
    for (;;) {
        const Answer a = m_ed.askEntity("Select second line or [Distance/Angle/mEthod]", {.keywords = "Distance Angle mEthod"});
        if (a.status == Status::Enter)
            return false;
        if (a.status == Status::Keyword) {
            setting(a.text);
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

void Chamfer::run()
{
    tellSettings();
    for (;;) {
        const Answer a = m_ed.askEntity("Select first line or [Undo/Polyline/Distance/Angle/Trim/mEthod/Multiple]",
                                        {.keywords = "Undo Polyline Distance Angle Trim mEthod Multiple"});
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

void chamfer(Editor& ed) { Chamfer(ed).run(); }

const HostCommand kCommands[] = {
    {"CHAMFER", "CHA", kPlain, "Bevels the corner between two lines.", chamfer},
};

}

std::span<const HostCommand> chamferCommands() { return kCommands; }

}
