// TEXT and ATTDEF.
#include "host/base/unicode.h"
#include "host/commands/drawing.h"
#include "host/commands/families.h"
#include "host/commands/text_styles.h"
#include "host/db/database.h"
#include "host/edit/sysvars.h"
#include "sdk/vcdb_records.h"
#include "sdk/vcdb_text.h"

namespace vk::commands {

namespace {

using namespace edit;

struct Justification {
    const char* keyword;
    VcDb::TextHorzMode horizontal;
    VcDb::TextVertMode vertical;
    const char* prompt;
};

constexpr Justification kJustifications[] = {
    {"Left", VcDb::kTextLeft, VcDb::kTextBase, "Specify start point of text"},
    {"Center", VcDb::kTextCenter, VcDb::kTextBase, "Specify center point of text"},
    {"Right", VcDb::kTextRight, VcDb::kTextBase, "Specify right endpoint of text baseline"},
    {"Align", VcDb::kTextAlign, VcDb::kTextBase, "Specify first endpoint of text baseline"},
    {"Middle", VcDb::kTextMid, VcDb::kTextBase, "Specify middle point of text"},
    {"Fit", VcDb::kTextFit, VcDb::kTextBase, "Specify first endpoint of text baseline"},
    {"TL", VcDb::kTextLeft, VcDb::kTextTop, "Specify top-left point of text"},
    {"TC", VcDb::kTextCenter, VcDb::kTextTop, "Specify top-center point of text"},
    {"TR", VcDb::kTextRight, VcDb::kTextTop, "Specify top-right point of text"},
    {"ML", VcDb::kTextLeft, VcDb::kTextVertMid, "Specify middle-left point of text"},
    {"MC", VcDb::kTextCenter, VcDb::kTextVertMid, "Specify middle point of text"},
    {"MR", VcDb::kTextRight, VcDb::kTextVertMid, "Specify middle-right point of text"},
    {"BL", VcDb::kTextLeft, VcDb::kTextBottom, "Specify bottom-left point of text"},
    {"BC", VcDb::kTextCenter, VcDb::kTextBottom, "Specify bottom-center point of text"},
    {"BR", VcDb::kTextRight, VcDb::kTextBottom, "Specify bottom-right point of text"},
};

const Justification& askJustification(Editor& ed)
{
    const std::string k = ed.keyword("Enter an option [Left/Center/Right/Align/Middle/Fit/TL/TC/TR/ML/MC/MR/BL/BC/BR]",
                                     "Left Center Right Align Middle Fit TL TC TR ML MC MR BL BC BR");
    for (const Justification& j : kJustifications)
        if (k == j.keyword)
            return j;
    return kJustifications[0];
}

// What the questions before the text itself settle. Points are in the UCS.
struct Placement {
    const Justification* justification = &kJustifications[0];
    VcGePoint3d at, second;
    double height = 0, rotation = 0;
    VcDbObjectId style;
};

VcDbTextStyleTableRecord* currentStyle(Editor& ed)
{
    return ed.db().liveAs<VcDbTextStyleTableRecord>(ed.drawing().textstyle());
}

void askStyle(Editor& ed)
{
    const std::string name = ed.text("Enter style name or [?]", ed.vars().text("TEXTSTYLE"));
    if (name == "?")
        listTextStyles(ed);
    else if (ed.vars().set("TEXTSTYLE", name) != SetVarResult::Done)
        ed.printLine(fmt::format("There is no text style \"{}\".", name));
}

// Where the line after the last one goes, in the world; Enter in place of a start point takes it.
struct NextLine {
    Placement placement;
    VcDbObjectId text;  // the line above; when that is gone there is nothing to go on from
};
std::optional<NextLine> s_next;

void showSettings(Editor& ed, const Placement& p)
{
    const VcDbTextStyleTableRecord* style = currentStyle(ed);
    const double height = style && style->textSize() > 0 ? style->textSize() : ed.vars().real("TEXTSIZE");
    ed.printLine(fmt::format("Current text style:  \"{}\"  Text height:  {}  Justify:  {}", ed.vars().text("TEXTSTYLE"),
                             lengthText(height), p.justification->keyword));
}

// False when the text goes on beneath the last one.
bool askStart(Editor& ed, Placement& p)
{
    const bool canGoOn = s_next && ed.db().liveAs<VcDbText>(s_next->text);
    showSettings(ed, p);
    for (bool isChosen = false;;) {
        const Answer a =
            ed.askPoint(isChosen ? p.justification->prompt : "Specify start point of text or [Justify/Style]",
                        {.keywords = isChosen ? "" : "Justify Style", .enterEnds = canGoOn && !isChosen});
        if (a.status == Answer::Status::Value) {
            p.at = a.point;
            return true;
        }
        if (a.status == Answer::Status::Enter) {
            p = s_next->placement;
            p.at = fromWorld(ed, p.at);
            p.second = fromWorld(ed, p.second);
            return false;
        }
        if (a.text == "Style") {
            askStyle(ed);
            showSettings(ed, p);
        } else {
            p.justification = &askJustification(ed);
            isChosen = true;
        }
    }
}

bool spansTwoPoints(const Placement& p)
{
    return p.justification->horizontal == VcDb::kTextAlign || p.justification->horizontal == VcDb::kTextFit;
}

Placement askPlacement(Editor& ed)
{
    Placement p;
    if (!askStart(ed, p))
        return p;
    p.style = ed.drawing().textstyle();
    const VcDbTextStyleTableRecord* style = currentStyle(ed);
    const double fixed = style ? style->textSize() : 0;
    p.height = fixed > 0 ? fixed : ed.vars().real("TEXTSIZE");
    if (spansTwoPoints(p)) {
        p.second = ed.point("Specify second endpoint of text baseline", {.from = p.at});
        if (p.second.distanceTo(p.at) == 0)
            throw CommandError{"The baseline needs two different points."};
    }
    if (fixed <= 0 && p.justification->horizontal != VcDb::kTextAlign) {
        p.height =
            ed.distance("Specify height", p.height, {.from = p.at, .bits = InitGet::NoZero | InitGet::NoNegative});
        ed.vars().force("TEXTSIZE", p.height);
    }
    if (spansTwoPoints(p)) {
        const VcGeVector3d d = p.second - p.at;
        p.rotation = std::atan2(d.y, d.x);
        return p;
    }
    static double lastRotation = 0;
    const Answer a =
        askDirection(ed, fmt::format("Specify rotation angle of text <{}>", directionText(ed, lastRotation)),
                     {.from = p.at, .enterEnds = true});
    if (a.status != Answer::Status::Enter)
        lastRotation = a.real;
    p.rotation = lastRotation;
    return p;
}

void place(Editor& ed, VcDbText& text, const Placement& p)
{
    text.setNormal(ucsNormal(ed));
    text.setTextStyle(p.style);
    text.setHeight(p.height);
    text.setRotation(p.rotation + ucsTwist(ed));
    if (const auto* style = ed.db().liveAs<VcDbTextStyleTableRecord>(p.style)) {
        text.setWidthFactor(style->xScale());
        text.setOblique(style->obliquingAngle());
        text.mirrorInX(style->isBackwards());
        text.mirrorInY(style->isUpsideDown());
    }
    text.setPosition(toWorld(ed, p.at));
    text.setHorizontalMode(p.justification->horizontal);
    text.setVerticalMode(p.justification->vertical);
    if (!text.isDefaultAlignment())
        text.setAlignmentPoint(toWorld(ed, spansTwoPoints(p) ? p.second : p.at));
}

// Lines follow each other at five thirds of the height.
void nextLine(Placement& p)
{
    const double step = p.height * 5 / 3;
    const VcGeVector3d down(std::sin(p.rotation) * step, -std::cos(p.rotation) * step, 0);
    p.at = p.at + down;
    p.second = p.second + down;
}

void text(Editor& ed)
{
    Placement p = askPlacement(ed);
    do {
        const std::string content = ed.text("Enter text:");
        if (content.empty())
            return;
        auto made = std::make_unique<VcDbText>();
        made->setTextUtf8(content);
        place(ed, *made, p);
        const VcDbObjectId id = addToSpace(ed, std::move(made));
        nextLine(p);
        s_next = NextLine{p, id};
        s_next->placement.at = toWorld(ed, p.at);
        s_next->placement.second = toWorld(ed, p.second);
    } while (!ed.isDriven());
}

void askModes(Editor& ed, std::int32_t& flags)
{
    static constexpr std::pair<const char*, int> kModes[] = {
        {"Invisible", 1}, {"Constant", 2}, {"Verify", 4}, {"Preset", 8}};
    for (;;) {
        const auto yes = [&](int bit) { return flags & bit ? "Y" : "N"; };
        ed.printLine(fmt::format("Current attribute modes:  Invisible={}  Constant={}  Verify={}  Preset={}", yes(1),
                                 yes(2), yes(4), yes(8)));
        const Answer a = [&] {
            Question q;
            q.kind = Question::Kind::Keyword;
            q.prompt = "Enter an option to change [Invisible/Constant/Verify/Preset] <done>: ";
            q.init.keywords = parseKeywords("Invisible Constant Verify Preset");
            q.hasDefault = true;
            return ed.ask(q);
        }();
        if (a.status == Answer::Status::Enter)
            return;
        for (const auto& [word, bit] : kModes)
            if (a.text == word)
                flags ^= bit;
    }
}

void attdef(Editor& ed)
{
    std::int32_t flags = std::int32_t(ed.vars().integer("AFLAGS")) & 15;
    askModes(ed, flags);
    ed.vars().force("AFLAGS", flags);
    auto made = std::make_unique<VcDbAttributeDefinition>();
    const std::string tag = ed.word("Enter attribute tag name");
    if (made->setTag(utf8ToWide(tag).c_str()))
        throw CommandError{"The tag of an attribute needs at least one character and no blanks."};
    if (!(flags & 2))
        made->setPrompt(utf8ToWide(ed.text("Enter attribute prompt")).c_str());
    made->setTextUtf8(ed.text(flags & 2 ? "Enter attribute value" : "Enter default attribute value"));
    made->setInvisible(flags & 1);
    made->setConstant(flags & 2);
    made->setVerifiable(flags & 4);
    made->setPreset(flags & 8);
    place(ed, *made, askPlacement(ed));
    addToSpace(ed, std::move(made));
}

const HostCommand kCommands[] = {
    {"TEXT", "DT", kPlain, "Writes lines of text.", text},
    {"DTEXT", nullptr, kPlain, "Writes lines of text.", text},
    {"-TEXT", nullptr, kPlain, "Writes lines of text.", text},
    {"ATTDEF", "ATT", kPlain, "Defines an attribute for a block.", attdef},
    {"-ATTDEF", "-ATT", kPlain, "Defines an attribute for a block.", attdef},
};

}

std::span<const HostCommand> textCommands() { return kCommands; }

}
