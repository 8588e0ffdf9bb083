// FILLET - rounds the corner between two curves, or all corners of a polyline.
#include "host/commands/corner_command.h"
#include "host/commands/families.h"

namespace vk::commands {

namespace {

using namespace edit;

class Fillet final : public CornerCommand {
public:
    explicit Fillet(Editor& ed)
        : CornerCommand(ed, {"object", "Undo/Polyline/Radius/Trim/Multiple", "Radius", "filleted"})
    {
    }

private:
    double radius() const { return m_ed.vars().real("FILLETRAD"); }
    void tellSettings() override;
    void askSetting(const std::string& keyword) override;
    CornerMaker maker() const override;
    geom::RoundedPolyline allCorners(const geom::Polyline& p) const override { return geom::filletedAll(p, radius()); }
};

void Fillet::tellSettings()
{
    m_ed.printLine(
        fmt::format("Current settings: Mode = {}, Radius = {}", trims() ? "TRIM" : "NOTRIM", lengthText(radius())));
}

void Fillet::askSetting(const std::string&)
{
    m_ed.vars().set("FILLETRAD", m_ed.distance("Specify fillet radius", radius(), {.bits = InitGet::NoNegative}));
}

CornerMaker Fillet::maker() const
{
    const double r = radius();
    const VcGeVector3d up = ucsNormal(m_ed);
    return {[=](const geom::CornerSide& a, const geom::CornerSide& b) { return geom::filleted(a, b, r, up); },
            [=](const geom::Polyline& p, std::size_t vertex, bool) { return geom::filletedAt(p, vertex, r); }, trims()};
}

void fillet(Editor& ed) { Fillet(ed).run(); }

const HostCommand kCommands[] = {
    {"FILLET", "F", kPlain, "Rounds the corner between two curves.", fillet},
};

}

std::span<const HostCommand> filletCommands() { return kCommands; }

}
