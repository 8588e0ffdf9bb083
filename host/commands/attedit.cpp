// ATTEDIT, -ATTEDIT - values and looks of the attributes of block references.
#include "host/base/wildcard.h"
#include "host/commands/colours.h"
#include "host/commands/drawing.h"
#include "host/commands/families.h"
#include "host/db/block_members.h"
#include "host/db/database.h"
#include "host/edit/sysvars.h"
#include "sdk/vcdb_insert.h"
#include "sdk/vcdb_tables.h"
#include "sdk/vcdb_text.h"

namespace vk::commands {

namespace {

using namespace edit;

struct Found {
    std::vector<VcDbAttribute*> attributes;
    std::size_t locked = 0;
};

// Which attributes are meant, as people type it; "\" alone stands for an empty value.
class Wanted {
public:
    explicit Wanted(Editor& ed)
        : m_ed(ed), m_block(ed.text("Enter block names", "*")),
          m_tag(ed.word("Enter attribute tags", "*")), m_value(askValue(ed))
    {
    }

    void collect(const VcDbBlockReference& reference, Found& found) const
    {
        const auto* block = m_ed.db().objectAs<VcDbBlockTableRecord>(reference.blockTableRecord());
        if (!block || !m_block.matches(block->nameUtf8()))
            return;
        for (VcDbEntity* part : reference.attributes()) {
            auto* attribute = VcDbAttribute::cast(part);
            if (!attribute || !m_tag.matches(attribute->tagUtf8()) || !meansValue(attribute->textUtf8()))
                continue;
            isOnLockedLayer(*attribute) || isOnLockedLayer(reference) ? void(++found.locked)
                                                                      : found.attributes.push_back(attribute);
        }
    }

private:
    static std::string askValue(Editor& ed) { return ed.text("Enter attribute values", "*"); }
    bool meansValue(const std::string& value) const
    {
        return m_value == "\\" ? value.empty() : Wildcard(m_value, Wildcard::Case::Counts).matches(value);
    }

    Editor& m_ed;
    Wildcard m_block, m_tag;
    std::string m_value;
};

void collectFrom(Editor& ed, const SelectionSet& references, const Wanted& wanted, Found& found)
{
    for (const VcDbObjectId id : references.ids())
        if (const auto* reference = ed.db().liveAs<VcDbBlockReference>(id))
            wanted.collect(*reference, found);
}

void collectAll(Editor& ed, const Wanted& wanted, Found& found)
{
    if (const auto* space = ed.db().objectAs<VcDbBlockTableRecord>(ed.db().currentSpace()))
        forEachMember(ed.db(), *space, [&](VcDbEntity& entity) {
            if (const auto* reference = VcDbBlockReference::cast(&entity))
                wanted.collect(*reference, found);
        });
}

void tellFound(Editor& ed, const Found& found)
{
    ed.printLine(fmt::format("{} attributes selected.", found.attributes.size()));
    if (found.locked > 0)
        ed.printLine(fmt::format("{} on a locked layer.", found.locked));
}

// The first place of a string in the value gives way to another; an empty one stands before the value.
bool exchange(VcDbAttribute& attribute, const std::string& from, const std::string& to)
{
    std::string value = attribute.textUtf8();
    const std::size_t at = value.find(from);
    if (at == std::string::npos)
        return false;
    value.replace(at, from.size(), to);
    return attribute.setTextUtf8(value) == Vcad::eOk;
}

bool yes(Editor& ed, const std::string& question)
{
    return ed.keyword(question + " [Yes/No] <Y>", "Yes No", "Yes") == "Yes";
}

void globally(Editor& ed)
{
    ed.printLine("Performing global editing of attribute values.");
    const bool onScreen = yes(ed, "Edit only attributes visible on screen?");
    const Wanted wanted(ed);
    Found found;
    if (onScreen)
        collectFrom(ed, *ed.select({.prompt = "Select Attributes: "}), wanted, found);
    else
        collectAll(ed, wanted, found);
    tellFound(ed, found);
    if (found.attributes.empty())
        return;
    const std::string from = ed.text("Enter string to change"), to = ed.text("Enter new string");
    std::size_t changed = 0;
    for (VcDbAttribute* attribute : found.attributes)
        changed += exchange(*attribute, from, to);
    ed.printLine(fmt::format("{} changed.", changed));
}

// One attribute at a time

void editValue(Editor& ed, VcDbAttribute& attribute)
{
    if (ed.keyword("Enter type of value modification [Change/Replace] <R>", "Change Replace", "Replace") == "Replace") {
        attribute.setTextUtf8(ed.text("Enter new Attribute value"));
        return;
    }
    const std::string from = ed.text("Enter string to change"), to = ed.text("Enter new string");
    if (!exchange(attribute, from, to))
        ed.printLine(fmt::format("\"{}\" does not stand in the value.", from));
}

void editPosition(Editor& ed, VcDbAttribute& attribute)
{
    const Answer a = ed.askPoint("Specify new text insertion point <no change>", {.enterEnds = true});
    if (a.status == Answer::Status::Value)
        attribute.isDefaultAlignment() ? attribute.setPosition(toWorld(ed, a.point))
                                       : attribute.setAlignmentPoint(toWorld(ed, a.point));
}

void editHeight(Editor& ed, VcDbAttribute& attribute)
{
    attribute.setHeight(
        ed.distance("Specify new height", attribute.height(), {.bits = InitGet::NoZero | InitGet::NoNegative}));
}

void editAngle(Editor& ed, VcDbAttribute& attribute)
{
    const double now = attribute.rotation() - ucsTwist(ed);
    const Answer a =
        askDirection(ed, fmt::format("Specify new rotation angle <{}>", directionText(ed, now)), {.enterEnds = true});
    if (a.status == Answer::Status::Value)
        attribute.setRotation(a.real + ucsTwist(ed));
}

void editRecord(Editor& ed, VcDbAttribute& attribute, NameTable table, const char* prompt, VcDbObjectId now)
{
    const auto* record = ed.db().objectAs<VcDbSymbolTableRecord>(now);
    const std::string name = ed.text(prompt, record ? record->nameUtf8() : std::string());
    const VcDbObjectId id = ed.db().findRecord(table, name);
    if (id.isNull())
        return ed.printLine(fmt::format("There is no \"{}\" in this drawing.", name));
    table == NameTable::Layer ? attribute.setLayer(id) : attribute.setTextStyle(id);
}

// Nested with Next until the person goes on.
void editOne(Editor& ed, VcDbAttribute& attribute)
{
    ed.printLine(fmt::format("{} = \"{}\"", attribute.tagUtf8(), attribute.textUtf8()));
    for (;;) {
        const std::string k = ed.keyword("Enter an option [Value/Position/Height/Angle/Style/Layer/Color/Next] <N>",
                                         "Value Position Height Angle Style Layer Color Next", "Next");
        if (k == "Next")
            return;
        if (k == "Value")
            editValue(ed, attribute);
        else if (k == "Position")
            editPosition(ed, attribute);
        else if (k == "Height")
            editHeight(ed, attribute);
        else if (k == "Angle")
            editAngle(ed, attribute);
        else if (k == "Style")
            editRecord(ed, attribute, NameTable::TextStyle, "Enter new text style", attribute.textStyle());
        else if (k == "Layer")
            editRecord(ed, attribute, NameTable::Layer, "Enter new layer name", attribute.layerId());
        else
            attribute.setColor(askColour(ed, "Enter new color", attribute.color()));
    }
}

void oneByOne(Editor& ed)
{
    const Wanted wanted(ed);
    Found found;
    collectFrom(ed, *ed.select({.prompt = "Select Attributes: "}), wanted, found);
    tellFound(ed, found);
    for (VcDbAttribute* attribute : found.attributes)
        editOne(ed, *attribute);
}

void edit(Editor& ed) { yes(ed, "Edit attributes one at a time?") ? oneByOne(ed) : globally(ed); }

// The values of one reference, asked in their order.
void values(Editor& ed)
{
    for (;;) {
        const Answer a = ed.askEntity("Select block reference");
        if (a.status == Answer::Status::Enter)
            return;
        const auto* reference = ed.db().liveAs<VcDbBlockReference>(a.entity);
        if (!reference || reference->attributes().empty()) {
            ed.printLine(reference ? "That block has no attributes." : "That object is not a block.");
            continue;
        }
        if (isOnLockedLayer(*reference))
            return ed.printLine("That block is on a locked layer.");
        for (VcDbEntity* part : reference->attributes())
            if (auto* attribute = VcDbAttribute::cast(part);
                attribute && !attribute->isConstant() && !isOnLockedLayer(*attribute))
                attribute->setTextUtf8(
                    ed.text(fmt::format("Enter value for {}", attribute->tagUtf8()), attribute->textUtf8()));
        return;
    }
}

const HostCommand kCommands[] = {
    {"ATTEDIT", "ATE", kPlain, "Changes the values of the attributes of a block reference.", values},
    {"-ATTEDIT", "-ATE", kPlain, "Changes values and looks of attributes, one by one or of many.", edit},
};

}

std::span<const HostCommand> attributeCommands() { return kCommands; }

}
