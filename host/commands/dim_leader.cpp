// LEADER, QLEADER, TOLERANCE.
#include "host/base/unicode.h"
#include "host/commands/block_definition.h"
#include "host/commands/dim_common.h"
#include "host/commands/families.h"
#include "host/commands/reference_prompts.h"
#include "host/db/clone.h"
#include "sdk/vcdb_insert.h"
#include "sdk/vcdb_records.h"
#include "sdk/vcdb_text.h"

namespace vk::commands {

namespace {

using namespace edit;
using Points = std::vector<VcGePoint3d>;  // in the UCS

struct Format {
    bool splined = false, arrow = true;
};

template <class T>
T& withCurrentStyle(Editor& ed, T& entity)
{
    takeDimStyle(entity, dimStyleFor(ed, entity));
    return entity;
}

bool goesRight(const Points& points) { return points.back().x >= points[points.size() - 2].x; }

// A last stretch that is steeper than 15 degrees gets a level end as long as the arrow.
void addHook(Points& points, double length)
{
    const VcGeVector3d last = points.back() - points[points.size() - 2];
    if (std::abs(last.y) > std::tan(M_PI / 12) * std::abs(last.x))
        points.push_back(points.back() + VcGeVector3d(goesRight(points) ? length : -length, 0, 0));
}

VcDbLeader& addLeader(Editor& ed, const Points& points, const Format& format)
{
    auto made = std::make_unique<VcDbLeader>();
    const VcGeMatrix3d m = ucsToWorld(ed);
    made->setPlane(m * VcGeVector3d::zAxis(), m * VcGeVector3d::xAxis());
    for (const VcGePoint3d& p : points)
        made->appendVertex(m * p);
    made->setSplined(format.splined);
    made->enableArrowHead(format.arrow);
    return withCurrentStyle(ed, *ed.db().liveAs<VcDbLeader>(addToSpace(ed, std::move(made))));
}

double textHeight(Editor& ed, const VcDbDimVars& v)
{
    const auto* style = ed.db().liveAs<VcDbTextStyleTableRecord>(v.dimtxsty);
    return style && style->textSize() > 0 ? style->textSize() : v.dimtxt * currentDimScale(ed, v);
}

// Beside the end of the leader, in the middle of its height; over the line where DIMTAD puts texts there.
VcDbObjectId addNote(Editor& ed, const VcGePoint3d& end, bool right, const std::string& contents, double width)
{
    const VcDbDimVars v = currentDimVars(ed);
    const double gap = std::abs(v.dimgap) * currentDimScale(ed, v);
    auto text = std::make_unique<VcDbMText>();
    text->setNormal(ucsNormal(ed));
    text->setDirection((ucsToWorld(ed) * VcGeVector3d::xAxis()).normal());
    text->setContentsUtf8(contents);
    text->setTextHeight(textHeight(ed, v));
    text->setWidth(width);
    text->setAttachment(v.dimtad ? (right ? VcDbMText::kBottomLeft : VcDbMText::kBottomRight)
                        : right  ? VcDbMText::kMiddleLeft
                                 : VcDbMText::kMiddleRight);
    text->setLocation(toWorld(ed, end + VcGeVector3d(right ? gap : -gap, v.dimtad ? gap : 0, 0)));
    const VcDbObjectId id = addToSpace(ed, std::move(text));
    auto* added = ed.db().liveAs<VcDbMText>(id);
    added->setTextStyle(v.dimtxsty.isNull() ? ed.drawing().textstyle() : v.dimtxsty);
    if (v.dimclrt != 0)
        added->setColorIndex(std::uint16_t(v.dimclrt));
    return id;
}

VcDbObjectId addFrame(Editor& ed, const VcGePoint3d& at, const std::string& text)
{
    auto made = std::make_unique<VcDbFcf>();
    made->setLocation(toWorld(ed, at));
    made->setOrientation(ucsNormal(ed), ucsToWorld(ed) * VcGeVector3d::xAxis());
    made->setText(utf8ToWide(text).c_str());
    const VcDbObjectId id = addToSpace(ed, std::move(made));
    withCurrentStyle(ed, *ed.db().liveAs<VcDbFcf>(id));
    return id;
}

// Lines of a note until an empty one, joined as paragraphs.
std::string askNote(Editor& ed, std::string first)
{
    std::string all = std::move(first);
    for (;;) {
        const std::string next = ed.text("Enter next line of annotation text:", std::string());
        if (next.empty())
            return all;
        all += "\\P" + next;
    }
}

void finishWithText(Editor& ed, Points points, const Format& format, const std::string& contents, double width)
{
    const VcDbDimVars v = currentDimVars(ed);
    if (!format.splined)
        addHook(points, v.dimasz * currentDimScale(ed, v));
    const bool right = goesRight(points);
    VcDbLeader& leader = addLeader(ed, points, format);
    const VcDbObjectId note = addNote(ed, points.back(), right, contents, width);
    if (!format.splined && points.size() >= 3 && points.back().y == points[points.size() - 2].y)
        leader.setHookLine(true, right);
    leader.attachAnnotation(note);
}

// Tolerance frames

struct Symbol {
    const char* keyword;
    char letter;  // in the font of symbols
};
constexpr Symbol kSymbols[] = {
    {"POsition", 'j'},   {"COncentricity", 'r'}, {"SYmmetry", 'i'}, {"PArallelism", 'f'}, {"PErpendicularity", 'b'},
    {"ANgularity", 'a'}, {"CYlindricity", 'g'},  {"FLatness", 'c'}, {"CIrcularity", 'e'}, {"STraightness", 'u'},
    {"SUrface", 'd'},    {"LIne", 'k'},          {"Runout", 'h'},   {"TOtal", 't'},
};

std::string askFrameText(Editor& ed)
{
    std::string words, list;
    for (const Symbol& s : kSymbols) {
        words += std::string(words.empty() ? "" : " ") + s.keyword;
        list += std::string(list.empty() ? "" : "/") + s.keyword;
    }
    const std::string chosen =
        ed.keyword(fmt::format("Enter geometric symbol [{}/None] <None>", list), words + " None", "None");
    std::string text;
    for (const Symbol& s : kSymbols)
        if (chosen == s.keyword)
            text = fmt::format("{{\\Fgdt;{}}}", s.letter);
    for (const char* prompt : {"Enter tolerance 1 <none>", "Enter tolerance 2 <none>", "Enter datum 1 <none>",
                               "Enter datum 2 <none>", "Enter datum 3 <none>"})
        text += "%%v" + ed.text(prompt, std::string());
    return text;
}

void tolerance(Editor& ed)
{
    const std::string text = askFrameText(ed);
    if (text == "%%v%%v%%v%%v%%v")
        throw CommandError{"The frame is empty."};
    addFrame(ed, ed.point("Enter tolerance location"), text);
}

// LEADER

void askFormat(Editor& ed, Format& format)
{
    for (;;) {
        const std::string k = ed.keyword("Enter leader format option [Spline/STraight/Arrow/None] <Exit>",
                                         "Spline STraight Arrow None Exit", "Exit");
        if (k == "Exit")
            return;
        if (k == "Spline" || k == "STraight")
            format.splined = k == "Spline";
        else
            format.arrow = k == "Arrow";
    }
}

// Two points at least; Enter goes on to the annotation.
Points askPoints(Editor& ed, Format& format)
{
    Points points{ed.point("Specify leader start point")};
    points.push_back(ed.point("Specify next point", {.from = points.back()}));
    for (;;) {
        const Answer a = ed.askPoint("Specify next point or [Annotation/Format/Undo] <Annotation>",
                                     {.keywords = "Annotation Format Undo", .from = points.back(), .enterEnds = true});
        if (a.status == Answer::Status::Value)
            points.push_back(a.point);
        else if (a.status == Answer::Status::Keyword && a.text == "Format")
            askFormat(ed, format);
        else if (a.status == Answer::Status::Keyword && a.text == "Undo" && points.size() > 2)
            points.pop_back();
        else if (a.status == Answer::Status::Keyword && a.text == "Undo")
            ed.printLine("The leader needs two points.");
        else
            return points;
    }
}

void attachCopy(Editor& ed, const Points& points, VcDbLeader& leader)
{
    auto* object = pickOf<VcDbMText, VcDbFcf, VcDbBlockReference>(
        ed, "Select an object to copy", "A text of many lines, a tolerance frame or a block is wanted.");
    VcDbIdMapping mapping;
    VcDbExtents box;
    VcDbIdPair pair(object->objectId(), {});
    if (cloneObjects({object->objectId()}, ed.db().currentSpace(), mapping) || !mapping.compute(pair))
        throw CommandError{"The object cannot be copied."};
    auto* twin = ed.db().liveAs<VcDbEntity>(pair.value());
    if (twin->getGeomExtents(box) == Vcad::eOk) {
        const VcGePoint3d left(box.minPoint().x, (box.minPoint().y + box.maxPoint().y) / 2, box.minPoint().z);
        twin->transformBy(VcGeMatrix3d::translation(toWorld(ed, points.back()) - left));
    }
    leader.attachAnnotation(twin->objectId());
}

VcDbBlockTableRecord& askBlock(Editor& ed)
{
    for (;;) {
        const std::string name = ed.word("Enter block name or [?]");
        VcDbBlockTableRecord* block = name == "?" ? nullptr : blockNamed(ed, name);
        if (block && !block->isLayout())
            return *block;
        if (name != "?") {
            ed.printLine(fmt::format("There is no block \"{}\".", name));
            continue;
        }
        for (const VcDbObjectId id : ed.db().table(NameTable::Block).records())
            if (const auto* record = ed.db().objectAs<VcDbBlockTableRecord>(id); !record->nameUtf8().starts_with('*'))
                ed.printLine("  " + record->nameUtf8());
    }
}

void attachBlock(Editor& ed, const Points& points, const Format& format)
{
    VcDbBlockTableRecord& block = askBlock(ed);
    const Placement placement = askPlacement(ed);
    const auto values = askAttributeValues(ed, block);
    auto made = std::make_unique<VcDbBlockReference>();
    made->setBlockTableRecord(block.objectId());
    place(ed, *made, placement, unitFactor(ed, block));
    auto& reference = static_cast<VcDbBlockReference&>(*ed.db().liveAs<VcDbEntity>(addToSpace(ed, std::move(made))));
    addAttributes(ed, reference, values);
    addLeader(ed, points, format).attachAnnotation(reference.objectId());
}

void annotate(Editor& ed, const Points& points, const Format& format)
{
    const std::string k = ed.keyword("Enter an annotation option [Tolerance/Copy/Block/None/Mtext] <Mtext>",
                                     "Tolerance Copy Block None Mtext", "Mtext");
    if (k == "Block")
        return attachBlock(ed, points, format);
    if (k == "Mtext") {
        const std::string first = ed.text("Enter first line of annotation text:", std::string());
        if (first.empty())
            addLeader(ed, points, format);
        else
            finishWithText(ed, points, format, askNote(ed, first), 0);
        return;
    }
    const std::string frame = k == "Tolerance" ? askFrameText(ed) : std::string();
    VcDbLeader& leader = addLeader(ed, points, format);
    if (k == "Tolerance")
        leader.attachAnnotation(addFrame(ed, points.back(), frame));
    else if (k == "Copy")
        attachCopy(ed, points, leader);
}

void leader(Editor& ed)
{
    Format format;
    const Points points = askPoints(ed, format);
    const std::string first = ed.text("Enter first line of annotation text or <options>:", std::string());
    if (first.empty())
        annotate(ed, points, format);
    else
        finishWithText(ed, points, format, askNote(ed, first), 0);
}

// QLEADER: up to three points, a width, a note.
void quickLeader(Editor& ed)
{
    Points points{ed.point("Specify first leader point")};
    while (points.size() < 3) {
        const Answer a = ed.askPoint("Specify next point", {.from = points.back(), .enterEnds = points.size() >= 2});
        if (a.status != Answer::Status::Value)
            break;
        points.push_back(a.point);
    }
    const double width = ed.distance("Specify text width", 0.0, {.bits = InitGet::NoNegative});
    const std::string first = ed.text("Enter first line of annotation text:", std::string());
    if (first.empty())
        addLeader(ed, points, {});
    else
        finishWithText(ed, points, {}, askNote(ed, first), width);
}

const HostCommand kCommands[] = {
    {"LEADER", "LEAD", kPlain, "Draws a line with an arrow to a note.", leader},
    {"QLEADER", "LE", kPlain, "Draws a line with an arrow to a note, with few questions.", quickLeader},
    {"TOLERANCE", "TOL", kPlain, "Draws a frame with tolerances of form and position.", tolerance},
};

}

std::span<const HostCommand> leaderCommands() { return kCommands; }

}  // namespace vk::commands
