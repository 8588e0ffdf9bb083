// CHAMFER - bevels the corner between two lines, or all corners of a polyline.
#include "host/commands/corner_command.h"
#include "host/commands/families.h"

namespace vk::commands {

namespace {

using namespace edit;

struct Distances {
    double first, second;
};

class Chamfer final : public CornerCommand {
public:
    explicit Chamfer(Editor& ed)
        : CornerCommand(
              ed, {"line", "Undo/Polyline/Distance/Angle/Trim/mEthod/Multiple", "Distance/Angle/mEthod", "chamfered"})
    {
    }

private:
    bool byAngle() const { return m_ed.vars().integer("CHAMMODE") == 1; }
    Distances distances() const;
    void tellSettings() override;
    void askSetting(const std::string& keyword) override;
    void askDistances();
    void askAngle();
    void askMethod();
    CornerMaker maker() const override;
    geom::RoundedPolyline allCorners(const geom::Polyline& p) const override;
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
        m_ed.printLine(fmt::format("({} mode) Current chamfer Length = {}, Angle = {}", mode,
                                   lengthText(vars.real("CHAMFERC")), angleText(vars.real("CHAMFERD"))));
    else
        m_ed.printLine(fmt::format("({} mode) Current chamfer Dist1 = {}, Dist2 = {}", mode,
                                   lengthText(vars.real("CHAMFERA")), lengthText(vars.real("CHAMFERB"))));
}

void Chamfer::askDistances()
{
    const double first =
        m_ed.distance("Specify first chamfer distance", m_ed.vars().real("CHAMFERA"), {.bits = InitGet::NoNegative});
    const double second = m_ed.distance("Specify second chamfer distance", first, {.bits = InitGet::NoNegative});
    m_ed.vars().set("CHAMFERA", first);
    m_ed.vars().set("CHAMFERB", second);
    m_ed.vars().set("CHAMMODE", std::int32_t(0));
}

void Chamfer::askAngle()
{
    const double length = m_ed.distance("Specify chamfer length on the first line", m_ed.vars().real("CHAMFERC"),
                                        {.bits = InitGet::NoNegative});
    const double known = m_ed.vars().real("CHAMFERD");
    const Answer a = m_ed.askAngle(fmt::format("Specify chamfer angle from the first line <{}>", angleText(known)),
                                   {.enterEnds = true});
    const double angle = a.status == Answer::Status::Enter ? known : a.real;
    if (!(angle >= 0 && angle < M_PI / 2))
        throw CommandError{"The angle of a chamfer lies between 0 and 90 degrees."};
    m_ed.vars().set("CHAMFERC", length);
    m_ed.vars().set("CHAMFERD", angle);
    m_ed.vars().set("CHAMMODE", std::int32_t(1));
}

void Chamfer::askMethod()
{
    const char* now = byAngle() ? "Angle" : "Distance";
    m_ed.vars().set("CHAMMODE", std::int32_t(m_ed.keyword(fmt::format("Enter trim method [Distance/Angle] <{}>", now),
                                                          "Distance Angle", now) == "Angle"));
}

CornerMaker Chamfer::maker() const
{
    const Distances d = distances();
    return {
        [=](const geom::CornerSide& a, const geom::CornerSide& b) { return geom::chamfered(a, b, d.first, d.second); },
        [=](const geom::Polyline& p, std::size_t vertex, bool swapped) {
            return geom::chamferedAt(p, vertex, swapped ? d.second : d.first, swapped ? d.first : d.second);
        },
        trims()};
}

void Chamfer::askSetting(const std::string& keyword)
{
    if (keyword == "Distance")
        askDistances();
    else if (keyword == "Angle")
        askAngle();
    else
        askMethod();
}

geom::RoundedPolyline Chamfer::allCorners(const geom::Polyline& p) const
{
    const Distances d = distances();
    return geom::chamferedAll(p, d.first, d.second);
}

void chamfer(Editor& ed) { Chamfer(ed).run(); }

const HostCommand kCommands[] = {
    {"CHAMFER", "CHA", kPlain, "Bevels the corner between two lines.", chamfer},
};

}

std::span<const HostCommand> chamferCommands() { return kCommands; }

}
