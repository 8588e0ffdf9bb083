// -MTEXT - text of many lines in a frame.
#include "host/base/unicode.h"
#include "host/commands/drawing.h"
#include "host/commands/families.h"
#include "host/db/database.h"
#include "host/edit/sysvars.h"
#include "sdk/vcdb_records.h"
#include "sdk/vcdb_text.h"

namespace vk::commands {

namespace {

using namespace edit;

constexpr const char* kAttachments[] = {"TL", "TC", "TR", "ML", "MC", "MR", "BL", "BC", "BR"};

// What the questions settle. Points are in the UCS.
struct Frame {
    VcGePoint3d first, opposite;
    std::optional<double> width;
    double height = 0.2, rotation = 0, spacing = 1;
    VcDb::LineSpacingStyle spacingStyle = VcDb::kAtLeast;
    int attachment = VcDbMText::kTopLeft;
    VcDbObjectId style;
};

double heightOfStyle(Editor& ed, VcDbObjectId style)
{
    const auto* record = ed.db().liveAs<VcDbTextStyleTableRecord>(style);
    return record && record->textSize() > 0 ? record->textSize() : ed.vars().real("TEXTSIZE");
}

void justify(Editor& ed, Frame& frame)
{
    const std::string now = kAttachments[frame.attachment - 1];
    const std::string k = ed.keyword(fmt::format("Enter justification [TL/TC/TR/ML/MC/MR/BL/BC/BR] <{}>", now),
                                     "TL TC TR ML MC MR BL BC BR", now);
    for (int i = 0; i < 9; ++i)
        if (k == kAttachments[i])
            frame.attachment = i + 1;
}

void lineSpacing(Editor& ed, Frame& frame)
{
    const bool atLeast = frame.spacingStyle == VcDb::kAtLeast;
    frame.spacingStyle =
        ed.keyword(fmt::format("Enter line spacing type [At least/Exactly] <{}>", atLeast ? "At least" : "Exactly"),
                   "At Exactly", atLeast ? "At" : "Exactly") == "At"
            ? VcDb::kAtLeast
            : VcDb::kExactly;
    for (;;) {
        std::string typed = ed.word("Enter line spacing factor or distance", fmt::format("{}x", frame.spacing));
        const bool isFactor = typed.ends_with('x') || typed.ends_with('X');
        if (isFactor)
            typed.pop_back();
        char* end = nullptr;
        double value = std::strtod(typed.c_str(), &end);
        if (!isFactor)
            value /= frame.height * 5 / 3;  // the distance of lines at factor 1
        if (!typed.empty() && !*end && value >= 0.25 && value <= 4) {
            frame.spacing = value;
            return;
        }
        ed.printLine("The factor must lie between 0.25x and 4x.");
    }
}

void style(Editor& ed, Frame& frame)
{
    const std::string name = ed.word("Enter style name", ed.vars().text("TEXTSTYLE"));
    const VcDbObjectId id = ed.db().findRecord(NameTable::TextStyle, name);
    if (id.isNull())
        return ed.printLine(fmt::format("There is no text style \"{}\".", name));
    frame.style = id;
    frame.height = heightOfStyle(ed, id);
}

void askOption(Editor& ed, const std::string& option, Frame& frame)
{
    if (option == "Height") {
        frame.height = ed.distance("Specify height", frame.height, {.bits = InitGet::NoZero | InitGet::NoNegative});
        ed.vars().force("TEXTSIZE", frame.height);
    } else if (option == "Justify") {
        justify(ed, frame);
    } else if (option == "Line") {
        lineSpacing(ed, frame);
    } else if (option == "Rotation") {
        const Answer a = askDirection(ed, fmt::format("Specify rotation angle <{}>", directionText(ed, frame.rotation)),
                                      {.from = frame.first, .enterEnds = true});
        frame.rotation = a.status == Answer::Status::Value ? a.real : frame.rotation;
    } else if (option == "Style") {
        style(ed, frame);
    } else {
        frame.width = ed.askDistance("Specify width", {.from = frame.first, .bits = InitGet::NoNegative}).real;
    }
}

Frame askFrame(Editor& ed)
{
    Frame frame;
    frame.style = ed.drawing().textstyle();
    frame.height = heightOfStyle(ed, frame.style);
    ed.printLine(fmt::format("Current text style:  \"{}\"  Text height:  {}", ed.vars().text("TEXTSTYLE"),
                             lengthText(frame.height)));
    frame.first = ed.point("Specify first corner");
    while (!frame.width) {
        const Answer a = ed.askPoint("Specify opposite corner or [Height/Justify/Line spacing/Rotation/Style/Width]",
                                     {.keywords = "Height Justify Line Rotation Style Width", .from = frame.first});
        if (a.status == Answer::Status::Keyword) {
            askOption(ed, a.text, frame);
            continue;
        }
        frame.opposite = a.point;
        return frame;
    }
    // With a width alone the text hangs on the first corner.
    frame.opposite = frame.first;
    return frame;
}

// Where the text hangs, and how wide it may be, in the axes that the rotation turns.
struct Place {
    VcGePoint3d at;
    double width;
};

Place placeOf(const Frame& frame)
{
    if (frame.width)
        return {frame.first, *frame.width};
    const double c = std::cos(frame.rotation), s = std::sin(frame.rotation);
    const VcGeVector3d d = frame.opposite - frame.first;
    const double u = d.x * c + d.y * s, v = d.y * c - d.x * s;
    const int column = (frame.attachment - 1) % 3, row = (frame.attachment - 1) / 3;
    const double x = column == 0 ? std::min(0.0, u) : column == 1 ? u / 2 : std::max(0.0, u);
    const double y = row == 0 ? std::max(0.0, v) : row == 1 ? v / 2 : std::min(0.0, v);
    return {frame.first + VcGeVector3d(x * c - y * s, x * s + y * c, 0), std::abs(u)};
}

// Lines until an empty one.
std::string askContents(Editor& ed)
{
    std::string contents;
    for (;;) {
        const std::string line = ed.text("MText");
        if (line.empty())
            return contents;
        contents += (contents.empty() ? "" : "\\P") + line;
    }
}

void mtext(Editor& ed)
{
    const Frame frame = askFrame(ed);
    const std::string contents = askContents(ed);
    if (contents.empty())
        return;
    const Place place = placeOf(frame);
    auto made = std::make_unique<VcDbMText>();
    made->setNormal(ucsNormal(ed));
    made->setTextStyle(frame.style);
    made->setTextHeight(frame.height);
    made->setAttachment(VcDbMText::AttachmentPoint(frame.attachment));
    made->setLocation(toWorld(ed, place.at));
    made->setDirection(ucsToWorld(ed) * VcGeVector3d(std::cos(frame.rotation), std::sin(frame.rotation), 0));
    made->setWidth(place.width);
    made->setLineSpacingStyle(frame.spacingStyle);
    made->setLineSpacingFactor(frame.spacing);
    made->setContentsUtf8(contents);
    addToSpace(ed, std::move(made));
}

const HostCommand kCommands[] = {
    {"-MTEXT", "-T", kPlain, "Writes text of many lines.", mtext},
    {"MTEXT", "MT", kPlain, "Writes text of many lines.", mtext},
};

}

std::span<const HostCommand> mtextCommands() { return kCommands; }

}
