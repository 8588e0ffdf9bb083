// -STYLE - makes and changes text styles; the one worked on becomes current.
#include "host/base/unicode.h"
#include "host/base/wildcard.h"
#include "host/commands/drawing.h"
#include "host/commands/families.h"
#include "host/commands/text_styles.h"
#include "host/db/database.h"
#include "host/db/record_names.h"
#include "host/edit/sysvars.h"
#include "sdk/vcdb_records.h"
#include "sdk/vcut.h"

namespace vk::commands {

namespace {

using namespace edit;
using Style = VcDbTextStyleTableRecord;

std::string fontOf(const Style& style)
{
    wchar_t* file = style.fileName();
    std::string name = file ? wideToUtf8(file) : std::string();
    vcutDelString(file);
    return name;
}

// A new style is added only when everything is known of it.
Style& addStyle(Editor& ed, std::unique_ptr<Style> made)
{
    Style* added = made.get();
    if (ed.db().table(NameTable::TextStyle).add(made.get()))
        throw CommandError{"The text style cannot be made."};
    made.release();
    added->close();
    return *added;
}

std::unique_ptr<Style> newStyle(const std::string& name)
{
    if (!isLegalRecordName(name) || name.starts_with('*'))
        throw CommandError{fmt::format("\"{}\" is no name for a text style.", name)};
    auto made = std::make_unique<Style>();
    made->setNameUtf8(name);
    made->setFileName(L"txt");
    return made;
}

bool yes(Editor& ed, const std::string& question, bool byDefault)
{
    return ed.keyword(fmt::format("{} [Yes/No] <{}>", question, byDefault ? "Y" : "N"), "Yes No",
                      byDefault ? "Yes" : "No") == "Yes";
}

struct Answers {
    std::string font;
    double height, width, oblique;
    bool backwards, upsideDown, vertical;
};

// The answers on Enter are what the style has.
Answers askAbout(Editor& ed, const Style& style)
{
    Answers a;
    a.font = ed.word("Specify full font name or font filename (TTF or stroke font)", fontOf(style));
    a.height = ed.distance("Specify height of text", style.textSize(), {.bits = InitGet::NoNegative});
    a.width = ed.real("Specify width factor", style.xScale(), {.bits = InitGet::NoZero | InitGet::NoNegative});
    const Answer slant = ed.askAngle(fmt::format("Specify obliquing angle <{}>", angleText(style.obliquingAngle())),
                                     {.enterEnds = true});
    a.oblique = slant.status == Answer::Status::Enter ? style.obliquingAngle() : std::remainder(slant.real, 2 * M_PI);
    a.backwards = yes(ed, "Display text backwards?", style.isBackwards());
    a.upsideDown = yes(ed, "Display text upside-down?", style.isUpsideDown());
    a.vertical = yes(ed, "Vertical?", style.isVertical());
    return a;
}

void apply(Style& style, const Answers& a)
{
    if (style.setObliquingAngle(a.oblique))
        throw CommandError{"The obliquing angle must lie between -85 and 85 degrees."};
    style.setFileName(utf8ToWide(a.font).c_str());
    style.setTextSize(a.height);
    style.setXScale(a.width);
    style.setFlagBits(std::uint8_t((a.backwards ? 2 : 0) | (a.upsideDown ? 4 : 0)));
    style.setIsVertical(a.vertical);
}

void style(Editor& ed)
{
    const std::string name = ed.word("Enter name of text style or [?]", ed.vars().text("TEXTSTYLE"));
    if (name == "?")
        return listTextStyles(ed);
    auto* style = ed.db().liveAs<Style>(ed.db().findRecord(NameTable::TextStyle, name));
    std::unique_ptr<Style> made = style ? nullptr : newStyle(name);
    const Answers answers = askAbout(ed, style ? *style : *made);
    apply(style ? *style : *made, answers);
    if (made)
        style = &addStyle(ed, std::move(made));
    ed.vars().set("TEXTSTYLE", style->nameUtf8());
    ed.printLine(fmt::format("\"{}\" is now the current text style.", style->nameUtf8()));
}

const HostCommand kCommands[] = {
    {"-STYLE", nullptr, kPlain, "Makes and changes text styles.", style},
    {"STYLE", "ST", kPlain, "Makes and changes text styles.", style},
};

}

void listTextStyles(Editor& ed)
{
    const Wildcard pattern(ed.text("Enter text style(s) to list", "*"));
    for (const VcDbObjectId id : ed.db().table(NameTable::TextStyle).records()) {
        const auto* style = ed.db().objectAs<Style>(id);
        if (!style->nameUtf8().empty() && pattern.matches(style->nameUtf8()))
            ed.printLine(fmt::format("Style name: \"{}\"  Font: {}  Height: {}  Width factor: {}  Obliquing angle: {}",
                                     style->nameUtf8(), fontOf(*style), lengthText(style->textSize()),
                                     lengthText(style->xScale()), angleText(style->obliquingAngle())));
    }
}

std::span<const HostCommand> styleCommands() { return kCommands; }

}
