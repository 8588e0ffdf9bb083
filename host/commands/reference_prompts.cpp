#include "host/commands/reference_prompts.h"

#include "host/base/unicode.h"
#include "host/commands/drawing.h"
#include "host/db/database.h"
#include "host/edit/display.h"
#include "host/edit/interpret.h"
#include "host/edit/sysvars.h"
#include "sdk/vcdb_insert.h"
#include "sdk/vcdb_tables.h"
#include "sdk/vcdb_text.h"

namespace vk::commands {

namespace {

using namespace edit;

struct Preset {
    std::optional<double> x, y, z, rotation;
    VcGeVector3d base;
};

double factor(Editor& ed, std::string_view prompt, double byDefault)
{
    return ed.real(prompt, byDefault, {.bits = InitGet::NoZero});
}

double askRotation(Editor& ed)
{
    AskOptions options;
    options.enterEnds = options.endsWithArguments = true;
    const Answer a = askDirection(ed, fmt::format("Specify rotation angle <{}>", directionText(ed, 0)), options);
    return a.status == Answer::Status::Value ? a.real : 0;
}

// Factors for what is shown while dragging are taken and have no effect where nothing is dragged.
void preset(Editor& ed, const std::string& option, Preset& preset)
{
    if (option == "Basepoint") {
        preset.base = ed.point("Specify base point in the block, from its insertion point").asVector();
    } else if (option == "Scale" || option == "PScale") {
        const double s = factor(ed, "Specify scale factor for XYZ axes", 1);
        if (option == "Scale")
            preset.x = preset.y = preset.z = s;
    } else if (option == "Rotate" || option == "PRotate") {
        const Answer a =
            askDirection(ed, fmt::format("Specify rotation angle <{}>", directionText(ed, 0)), {.enterEnds = true});
        if (option == "Rotate")
            preset.rotation = a.status == Answer::Status::Value ? a.real : 0;
    } else {
        const char axis = option.back();
        const double s = factor(ed, fmt::format("Specify {} scale factor", axis), 1);
        if (option.size() == 1)
            (axis == 'X' ? preset.x : axis == 'Y' ? preset.y : preset.z) = s;
    }
}

void show(Editor& ed, const VcDbBlockTableRecord& block)
{
    Preview preview;
    for (const std::uint32_t slot : block.memberSlots())
        if (const VcDbObject* member = ed.db().objectAt(slot); member && !member->isErased())
            preview.moved.push_back(member->objectId());
    preview.move = [&ed, origin = block.origin()](const VcGePoint3d& cursor) {
        return ucsToWorld(ed) * VcGeMatrix3d::translation(cursor - origin);
    };
    Display::instance().follow(std::move(preview));
}

VcGePoint3d askPoint(Editor& ed, Preset& presets, const VcDbBlockTableRecord* shown)
{
    for (;;) {
        if (shown)
            show(ed, *shown);
        const Answer a =
            ed.askPoint("Specify insertion point or [Basepoint/Scale/X/Y/Z/Rotate/PScale/PX/PY/PZ/PRotate]",
                        {.keywords = "Basepoint Scale X Y Z Rotate PScale PX PY PZ PRotate"});
        if (a.status == Answer::Status::Value)
            return a.point;
        preset(ed, a.text, presets);
    }
}

VcGeScale3d scaleByCorner(const VcGePoint3d& from, const VcGePoint3d& corner)
{
    return {corner.x - from.x, corner.y - from.y, corner.x - from.x};
}

bool isScale(const VcGeScale3d& s) { return s.sx != 0 && s.sy != 0 && s.sz != 0; }

VcGeScale3d askThree(Editor& ed)
{
    const double x = factor(ed, "Specify X scale factor", 1);
    const double y = factor(ed, "Specify Y scale factor", x), z = factor(ed, "Specify Z scale factor", x);
    return {x, y, z};
}

// The X factor may be shown as a corner, typed as a point, or led on to all three.
VcGeScale3d askScale(Editor& ed, const VcGePoint3d& from)
{
    for (;;) {
        const Answer a =
            ed.askReal("Enter X scale factor, specify opposite corner, or [Corner/XYZ] <1>",
                       {.keywords = "Corner XYZ", .bits = InitGet::NoZero | InitGet::Arbitrary, .enterEnds = true});
        if (a.status == Answer::Status::Keyword && a.text == "XYZ")
            return askThree(ed);
        std::optional<VcGePoint3d> corner;
        if (a.status == Answer::Status::Keyword)
            corner = ed.point("Specify opposite corner", {.from = from});
        else if (a.status == Answer::Status::Arbitrary)
            corner = parsePoint(ed, Question{.kind = Question::Kind::Point}, a.text);
        if (corner && isScale(scaleByCorner(from, *corner)))
            return scaleByCorner(from, *corner);
        if (a.status == Answer::Status::Keyword || a.status == Answer::Status::Arbitrary) {
            ed.printLine("Requires a factor other than 0, or a corner to the side of the insertion point.");
            continue;
        }
        const double x = a.status == Answer::Status::Value ? a.real : 1;
        const Answer y =
            ed.askReal("Enter Y scale factor <use X scale factor>", {.bits = InitGet::NoZero, .enterEnds = true});
        return {x, y.status == Answer::Status::Value ? y.real : x, x};
    }
}

// Millimetres that one unit has, by the numbers of INSUNITS; 0 for none.
double millimetresOf(std::int64_t units)
{
    static constexpr double kMillimetres[] = {0,
                                              25.4,
                                              304.8,
                                              1609344,
                                              1,
                                              10,
                                              1000,
                                              1e6,
                                              2.54e-5,
                                              0.0254,
                                              914.4,
                                              1e-7,
                                              1e-6,
                                              1e-3,
                                              100,
                                              1e4,
                                              1e5,
                                              1e12,
                                              1.495978707e14,
                                              9.4607304725808e18,
                                              3.0856775814913673e19,
                                              304.800609601219,
                                              25.4000508001016,
                                              914.401828803658,
                                              1609347.21869444};
    return units > 0 && units < std::int64_t(std::size(kMillimetres)) ? kMillimetres[units] : 0;
}

std::string utf8Of(const wchar_t* text) { return text ? wideToUtf8(text) : std::string(); }

std::vector<VcDbAttributeDefinition*> definitionsOf(const DatabaseCore& db, const VcDbBlockTableRecord& block)
{
    std::vector<VcDbAttributeDefinition*> definitions;
    for (const std::uint32_t slot : block.memberSlots())
        if (auto* definition = VcDbAttributeDefinition::cast(db.objectAt(slot));
            definition && !definition->isErased() && !definition->isConstant())
            definitions.push_back(definition);
    return definitions;
}

std::string promptOf(const VcDbAttributeDefinition& definition)
{
    const std::string prompt = utf8Of(definition.promptConst());
    return prompt.empty() ? definition.tagUtf8() : prompt;
}

std::vector<std::string> askValues(Editor& ed, const std::vector<VcDbAttributeDefinition*>& definitions)
{
    std::vector<std::string> values;
    bool asks = ed.vars().integer("ATTREQ") != 0, verifies = false, told = false;
    for (const VcDbAttributeDefinition* definition : definitions) {
        const std::string byDefault = utf8Of(definition->textStringConst());
        if (asks && !definition->isPreset() && !std::exchange(told, true))
            ed.printLine("Enter attribute values");
        values.push_back(asks && !definition->isPreset() ? ed.text(promptOf(*definition), byDefault) : byDefault);
        verifies |= asks && definition->isVerifiable();
    }
    if (verifies)
        ed.printLine("Verify attribute values");
    for (std::size_t i = 0; verifies && i < definitions.size(); ++i)
        if (definitions[i]->isVerifiable())
            values[i] = ed.text(promptOf(*definitions[i]), values[i]);
    return values;
}

}

Placement askPlacement(Editor& ed, bool evenly, const VcDbBlockTableRecord* shown)
{
    Preset presets;
    Placement placement;
    placement.point = askPoint(ed, presets, shown);
    if (presets.x || presets.y || presets.z)
        placement.scale = {presets.x.value_or(1), presets.y.value_or(1), presets.z.value_or(1)};
    else
        placement.scale =
            evenly ? VcGeScale3d(factor(ed, "Specify scale factor for XYZ axes", 1)) : askScale(ed, placement.point);
    placement.base = presets.base;
    placement.rotation = presets.rotation ? *presets.rotation : askRotation(ed);
    return placement;
}

double unitFactor(Editor& ed, const VcDbBlockTableRecord& block)
{
    const double from = millimetresOf(block.insertUnits()), to = millimetresOf(ed.vars().integer("INSUNITS"));
    if (!(from > 0) || !(to > 0) || from == to)
        return 1;
    ed.printLine(fmt::format("Units conversion: {}", lengthText(from / to)));
    return from / to;
}

void place(Editor& ed, VcDbBlockReference& reference, const Placement& placement, double unitFactor)
{
    reference.setNormal(ucsNormal(ed));
    reference.setPosition(toWorld(ed, placement.point));
    const VcGeScale3d& s = placement.scale;
    reference.setScaleFactors({s.sx * unitFactor, s.sy * unitFactor, s.sz * unitFactor});
    reference.setRotation(std::remainder(placement.rotation + ucsTwist(ed), 2 * M_PI));
    reference.setPosition(reference.position() - reference.blockTransform() * placement.base);
}

std::vector<std::string> askAttributeValues(Editor& ed, const VcDbBlockTableRecord& block)
{
    return askValues(ed, definitionsOf(ed.db(), block));
}

void addAttributes(Editor& ed, VcDbBlockReference& reference, const std::vector<std::string>& values)
{
    const auto* block = ed.db().liveAs<VcDbBlockTableRecord>(reference.blockTableRecord());
    const auto definitions = block ? definitionsOf(ed.db(), *block) : std::vector<VcDbAttributeDefinition*>();
    for (std::size_t i = 0; i < std::min(values.size(), definitions.size()); ++i) {
        auto attribute = std::make_unique<VcDbAttribute>();
        attribute->setPropertiesFrom(definitions[i]);
        attribute->setAttributeFromBlock(definitions[i], reference.blockTransform());
        attribute->setTextString(utf8ToWide(values[i]).c_str());
        VcDbAttribute* added = attribute.get();
        if (reference.appendAttribute(attribute.get()))
            continue;
        attribute.release();
        added->close();
    }
}

}
