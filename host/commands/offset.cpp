// OFFSET - curves at an even distance from others.
#include "host/commands/curve_edits.h"
#include "host/commands/families.h"
#include "host/db/curve_of.h"
#include "host/db/database.h"
#include "host/edit/sysvars.h"
#include "host/geom/offset.h"
#include "sdk/vcdb_polylines.h"

namespace vk::commands {

namespace {

using namespace edit;
using Status = Answer::Status;

// Kept for the next time, as long as the program runs.
struct Settings {
    bool erasesSource = false, onCurrentLayer = false;
};

Settings& settings()
{
    static Settings kept;
    return kept;
}

class Offset {
public:
    explicit Offset(Editor& ed) : m_ed(ed), m_edits(ed) {}
    void run();

private:
    enum class Next { Object, End };

    void tellSettings();
    void askDistance();
    void askErase();
    void askLayer();
    Next oneObject();
    Next askSide(CurvePick& source, bool multiple);
    VcDbEntity* offsetTo(const CurvePick& source, const VcGePoint3d& side);
    void take(VcDbEntity& made);
    void undo();
    bool isThrough() const { return m_distance < 0; }

    Editor& m_ed;
    CurveEdits m_edits;
    double m_distance = -1;
};

void Offset::tellSettings()
{
    m_ed.printLine(fmt::format("Current settings: Erase source={}  Layer={}  OFFSETGAPTYPE={}",
                               settings().erasesSource ? "Yes" : "No", settings().onCurrentLayer ? "Current" : "Source",
                               m_ed.vars().integer("OFFSETGAPTYPE")));
}

void Offset::askErase()
{
    const bool now = settings().erasesSource;
    settings().erasesSource =
        m_ed.keyword(fmt::format("Erase source object after offsetting? [Yes/No] <{}>", now ? "Yes" : "No"), "Yes No",
                     now ? "Yes" : "No") == "Yes";
}

void Offset::askLayer()
{
    const char* now = settings().onCurrentLayer ? "Current" : "Source";
    settings().onCurrentLayer =
        m_ed.keyword(fmt::format("Enter layer option for offset objects [Current/Source] <{}>", now), "Current Source",
                     now) == "Current";
}

void Offset::askDistance()
{
    for (;;) {
        const double known = m_ed.vars().real("OFFSETDIST");
        const Answer a = m_ed.askDistance(
            fmt::format("Specify offset distance or [Through/Erase/Layer] <{}>",
                        known < 0 ? "Through" : lengthText(known)),
            {.keywords = "Through Erase Layer", .bits = InitGet::NoZero | InitGet::NoNegative, .enterEnds = true});
        if (a.status == Status::Keyword && a.text != "Through") {
            a.text == "Erase" ? askErase() : askLayer();
            continue;
        }
        m_distance = a.status == Status::Value ? a.real : a.status == Status::Keyword ? -1 : known;
        m_ed.vars().set("OFFSETDIST", m_distance);
        return;
    }
}

void Offset::undo()
{
    if (!m_edits.undo())
        m_ed.printLine("Everything has been undone.");
}

void Offset::take(VcDbEntity& made)
{
    if (settings().onCurrentLayer)
        made.setLayer(m_ed.drawing().clayer());
}

const char* reason(geom::OffsetFailure failure)
{
    switch (failure) {
    case geom::OffsetFailure::Vanished:
        return "That object cannot be offset that far: nothing is left of it at that distance.";
    case geom::OffsetFailure::NotPlanar:
        return "That object cannot be offset: it does not lie in a plane.";
    default:
        return "That object cannot be offset.";
    }
}

// The last of what was made; null, with the reason told, when nothing was.
VcDbEntity* Offset::offsetTo(const CurvePick& source, const VcGePoint3d& side)
{
    const VcGeVector3d up = ucsNormal(m_ed);
    const auto through = geom::offsetDistanceThrough(source.curve, side, up);
    if (!through || std::fabs(*through) <= 1e-12 * side.asVector().length()) {
        m_ed.printLine("That point lies on the object, so it shows no side of it.");
        return nullptr;
    }
    const double distance = isThrough() ? *through : std::copysign(m_distance, *through);
    const auto result = geom::offset(source.curve, distance, geom::GapFill(m_ed.vars().integer("OFFSETGAPTYPE")), up);
    m_edits.begin();
    VcDbEntity* last = nullptr;
    for (const geom::Curve& curve : result.curves)
        if (VcDbEntity* made = m_edits.add(curve, *source.entity)) {
            take(*made);
            last = made;
        }
    if (last && settings().erasesSource)
        m_edits.erase(*source.entity);
    m_edits.end();
    if (!last)
        m_ed.printLine(reason(result.failure));
    return last;
}

Offset::Next Offset::askSide(CurvePick& source, bool multiple)
{
    for (;;) {
        const std::string what = isThrough() ? "Specify through point or " : "Specify point on side to offset or ";
        const Answer a = m_ed.askPoint(what + (multiple ? "[Exit/Undo] <next object>" : "[Exit/Multiple/Undo] <Exit>"),
                                       {.keywords = multiple ? "Exit Undo" : "Exit Multiple Undo", .enterEnds = true});
        if (a.status == Status::Enter)
            return multiple ? Next::Object : Next::End;
        if (a.status == Status::Keyword) {
            if (a.text == "Exit")
                return Next::End;
            if (a.text == "Undo") {
                undo();
                return Next::Object;
            }
            multiple = true;
            continue;
        }
        VcDbEntity* made = offsetTo(source, toWorld(m_ed, a.point));
        if (!multiple)
            return Next::Object;
        // The next one keeps its distance from the one just made.
        const auto next = made && !isThrough() ? curvePickAt(m_ed, *made, toWorld(m_ed, a.point)) : std::nullopt;
        if (next)
            source = *next;
    }
}

Offset::Next Offset::oneObject()
{
    const Answer a = m_ed.askEntity("Select object to offset or [Exit/Undo] <Exit>", {.keywords = "Exit Undo"});
    if (a.status == Status::Enter || (a.status == Status::Keyword && a.text == "Exit"))
        return Next::End;
    if (a.status == Status::Keyword) {
        undo();
        return Next::Object;
    }
    VcDbEntity* entity = pickedCurve(m_ed, a);
    if (!entity || entity->isKindOf(VcDb3dPolyline::desc())) {
        m_ed.printLine("That object cannot be offset.");
        return Next::Object;
    }
    if (settings().erasesSource && isOnLockedLayer(*entity)) {
        m_ed.printLine("That object is on a locked layer.");
        return Next::Object;
    }
    const auto curve = curveOf(*entity);
    if (!curve) {
        m_ed.printLine("That object cannot be offset.");
        return Next::Object;
    }
    CurvePick source{entity, *curve, {}, 0};
    return askSide(source, false);
}

void Offset::run()
{
    tellSettings();
    askDistance();
    while (oneObject() == Next::Object)
        ;
}

void offset(Editor& ed) { Offset(ed).run(); }

// The variable as a command, since other commands drive it as one.
void offsetGapType(Editor& ed)
{
    const std::int64_t value = ed.integer("Enter new value for OFFSETGAPTYPE", ed.vars().integer("OFFSETGAPTYPE"));
    if (ed.vars().set("OFFSETGAPTYPE", std::int32_t(std::clamp<std::int64_t>(value, -1, 3))) != SetVarResult::Done)
        throw CommandError{"Requires 0 (sides go on), 1 (round) or 2 (bevelled)."};
}

const HostCommand kCommands[] = {
    {"OFFSET", "O", kPlain, "Draws curves at an even distance from others.", offset},
    {"OFFSETGAPTYPE", nullptr, kPlain, "Says how the gaps at the corners of offset polylines are filled.",
     offsetGapType},
};

}

std::span<const HostCommand> offsetCommands() { return kCommands; }

}
