// STATUS, TIME, LWEIGHT, -OSNAP, ATTDISP - what is in force, and small settings.
#include "host/base/unicode.h"
#include "host/commands/drawing.h"
#include "host/commands/families.h"
#include "host/commands/lineweights.h"
#include "host/db/block_members.h"
#include "host/db/database.h"
#include "host/edit/snap.h"
#include "host/edit/sysvars.h"
#include "sdk/vcdb_tables.h"

namespace vk::commands {

namespace {

using namespace edit;

// STATUS

void line(Editor& ed, std::string_view name, std::string_view value)
{
    ed.printLine(fmt::format("{:<28}{}", name, value));
}

std::string flatText(const VcGePoint3d& p) { return fmt::format("X: {}  Y: {}", lengthText(p.x), lengthText(p.y)); }

void corners(Editor& ed, const std::string& name, const VcGePoint3d& low, const VcGePoint3d& high,
             std::string_view remark = {})
{
    line(ed, name, fmt::format("{}  {}", flatText(low), remark));
    line(ed, "", flatText(high));
}

// Nothing but what can be seen counts, as with ZOOM.
void used(Editor& ed, const std::string& space)
{
    const VcGePoint3d low = ed.vars().point("EXTMIN"), high = ed.vars().point("EXTMAX");
    if (low.x > high.x)
        return line(ed, space + " uses", "*Nothing*");
    corners(ed, space + " uses", low, high);
}

std::size_t countObjects(Editor& ed)
{
    const auto* space = ed.db().objectAs<VcDbBlockTableRecord>(ed.db().currentSpace());
    std::size_t count = 0;
    if (space)
        forEachMember(ed.db(), *space, [&](const VcDbEntity&) { ++count; });
    return count;
}

std::string colourText(Editor& ed) { return ed.vars().text("CECOLOR"); }

const char* onOff(Editor& ed, const char* variable) { return ed.vars().integer(variable) != 0 ? "On" : "Off"; }

void status(Editor& ed)
{
    SysVars& vars = ed.vars();
    const bool paper = ed.db().currentSpace() == ed.db().paperSpace();
    const std::string space = paper ? "Paper space" : "Model space";
    ed.printLine(fmt::format("{} objects in {}{}", countObjects(ed), vars.text("DWGPREFIX"), vars.text("DWGNAME")));
    corners(ed, space + " limits are", vars.point("LIMMIN"), vars.point("LIMMAX"),
            vars.integer("LIMCHECK") ? "(On)" : "(Off)");
    used(ed, space);
    corners(ed, "Display shows", vars.point("VSMIN"), vars.point("VSMAX"));
    line(ed, "Insertion base is", pointText(vars.point("INSBASE")));
    line(ed, "Snap resolution is", flatText(vars.point("SNAPUNIT")));
    line(ed, "Grid spacing is", flatText(vars.point("GRIDUNIT")));
    line(ed, "Current space:", space);
    line(ed, "Current layout:", vars.text("CTAB"));
    line(ed, "Current layer:", fmt::format("\"{}\"", vars.text("CLAYER")));
    line(ed, "Current color:", colourText(ed));
    line(ed, "Current linetype:", fmt::format("\"{}\"", vars.text("CELTYPE")));
    line(ed, "Current lineweight:", lineWeightText(int(vars.integer("CELWEIGHT"))));
    line(ed, "Current elevation:",
         fmt::format("{}  thickness: {}", lengthText(vars.real("ELEVATION")), lengthText(vars.real("THICKNESS"))));
    ed.printLine(fmt::format("Fill {}  Grid {}  Ortho {}  Qtext {}  Snap {}", onOff(ed, "FILLMODE"),
                             onOff(ed, "GRIDMODE"), onOff(ed, "ORTHOMODE"), onOff(ed, "QTEXTMODE"),
                             onOff(ed, "SNAPMODE")));
    const int snaps = int(vars.integer("OSMODE"));
    line(ed, "Object snap modes:", snaps & 16384 || !(snaps & 16383) ? "None" : snapNames(snaps));
}

// TIME

// A Julian day as a calendar day and a time of day.
std::string momentText(double day)
{
    if (!(day > 0))
        return "never";
    const double whole = std::floor(day);
    const long seconds = std::lround((day - whole) * 86400);
    long f = long(whole) + 1401 + (4 * long(whole) + 274277) / 146097 * 3 / 4 - 38;
    const long e = 4 * f + 3, g = e % 1461 / 4, h = 5 * g + 2;
    const long dayOfMonth = h % 153 / 5 + 1, month = (h / 153 + 2) % 12 + 1, year = e / 1461 - 4716 + (14 - month) / 12;
    return fmt::format("{:04}-{:02}-{:02}  {:02}:{:02}:{:02}", year, month, dayOfMonth, seconds / 3600 % 24,
                       seconds / 60 % 60, seconds % 60);
}

std::string spanText(double days)
{
    const long seconds = std::lround(std::max(days, 0.0) * 86400);
    return fmt::format("{} days {:02}:{:02}:{:02}", seconds / 86400, seconds / 3600 % 24, seconds / 60 % 60,
                       seconds % 60);
}

void showTimes(Editor& ed)
{
    SysVars& vars = ed.vars();
    line(ed, "Current time:", momentText(vars.real("DATE")));
    ed.printLine("Times for this drawing:");
    line(ed, "  Created:", momentText(vars.real("TDCREATE")));
    line(ed, "  Last updated:", momentText(vars.real("TDUPDATE")));
    line(ed, "  Total editing time:", spanText(vars.real("TDINDWG")));
    line(ed, vars.integer("USRTIMER") != 0 ? "  Elapsed timer (on):" : "  Elapsed timer (off):",
         spanText(vars.real("TDUSRTIMER")));
}

void time(Editor& ed)
{
    showTimes(ed);
    for (;;) {
        Question q;
        q.kind = Question::Kind::Keyword;
        q.prompt = "Enter option [Display/ON/OFF/Reset]: ";
        q.init.keywords = parseKeywords("Display ON OFF Reset");
        q.hasDefault = true;
        const Answer a = ed.ask(q);
        if (a.status == Answer::Status::Enter)
            return;
        if (a.text == "Display") {
            showTimes(ed);
        } else if (a.text == "Reset") {
            ed.vars().force("TDUSRTIMER", 0.0);
            ed.printLine("Timer reset.");
        } else {
            ed.vars().force("USRTIMER", std::int32_t(a.text == "ON"));
            ed.printLine(a.text == "ON" ? "Timer on." : "Timer off.");
        }
    }
}

// Small settings

void lineWeight(Editor& ed)
{
    for (;;) {
        const std::string typed = ed.word("Enter default lineweight for new objects or [?]",
                                          lineWeightText(int(ed.vars().integer("CELWEIGHT"))));
        if (typed == "?") {
            ed.printLine(
                "ByLayer  ByBlock  Default\n0.00  0.05  0.09  0.13  0.15  0.18  0.20  0.25  0.30  0.35  0.40  0.50\n"
                "0.53  0.60  0.70  0.80  0.90  1.00  1.06  1.20  1.40  1.58  2.00  2.11 mm");
            continue;
        }
        if (const auto weight = lineWeightOf(typed.substr(0, typed.find(' ')))) {
            ed.vars().set("CELWEIGHT", std::int32_t(*weight));
            return;
        }
        ed.printLine("Requires a width from 0 to 2.11 millimetres, ByLayer, ByBlock or Default.");
    }
}

std::string runningSnaps(Editor& ed)
{
    std::string names;
    static constexpr std::pair<int, const char*> kNames[] = {
        {kSnapEnd, "END"},       {kSnapMiddle, "MID"},       {kSnapCenter, "CEN"},          {kSnapNode, "NOD"},
        {kSnapQuadrant, "QUA"},  {kSnapIntersection, "INT"}, {kSnapInsertion, "INS"},       {kSnapPerpendicular, "PER"},
        {kSnapTangent, "TAN"},   {kSnapNearest, "NEA"},      {kSnapGeometricCenter, "GCE"}, {kSnapApparent, "APP"},
        {kSnapExtension, "EXT"}, {kSnapParallel, "PAR"}};
    for (const auto& [bit, name] : kNames)
        if (ed.vars().integer("OSMODE") & bit)
            names += (names.empty() ? "" : ",") + std::string(name);
    return names;
}

void objectSnap(Editor& ed)
{
    const std::string now = runningSnaps(ed);
    ed.printLine("Current osnap modes:  " + (now.empty() ? "None" : now));
    for (;;) {
        const std::string typed = ed.word("Enter list of object snap modes");
        if (typed.empty() || equalNoCase(typed, "OFF")) {
            ed.vars().set("OSMODE", std::int32_t(0));
            return;
        }
        if (const auto modes = parseSnapModes(typed)) {
            ed.vars().set("OSMODE", std::int32_t(*modes));
            return;
        }
        ed.printLine("Unknown object snap. Requires names such as END,MID,CEN, or NONE.");
    }
}

void attributeDisplay(Editor& ed)
{
    static constexpr const char* kModes[] = {"OFF", "Normal", "ON"};
    const auto now = std::clamp<std::int64_t>(ed.vars().integer("ATTMODE"), 0, 2);
    const std::string mode =
        ed.keyword(fmt::format("Enter attribute visibility setting [Normal/ON/OFF] <{}>", kModes[now]), "Normal ON OFF",
                   kModes[now]);
    for (int i = 0; i < 3; ++i)
        if (mode == kModes[i])
            ed.vars().set("ATTMODE", std::int32_t(i));
}

const HostCommand kCommands[] = {
    {"STATUS", nullptr, kTransparent | kNoUndoStep, "Shows what is in force in the drawing.", status},
    {"TIME", nullptr, kTransparent | kNoUndoStep, "Shows when the drawing was made and how long it was worked on.",
     time},
    {"LWEIGHT", "LW", kTransparent, "Sets the lineweight of new objects.", lineWeight},
    {"-LWEIGHT", nullptr, kTransparent, "Sets the lineweight of new objects.", lineWeight},
    {"OSNAP", "OS", kTransparent | kNoUndoStep, "Sets the running object snaps.", objectSnap},
    {"-OSNAP", "-OS", kTransparent | kNoUndoStep, "Sets the running object snaps.", objectSnap},
    {"ATTDISP", nullptr, kTransparent, "Tells which attributes are shown.", attributeDisplay},
};

}

std::span<const HostCommand> statusCommands() { return kCommands; }

}
