// CHPROP, CHANGE, MATCHPROP, -COLOR - colour, layer, linetype and the like of objects.
#include "host/base/unicode.h"
#include "host/commands/colours.h"
#include "host/commands/drawing.h"
#include "host/commands/families.h"
#include "host/commands/lineweights.h"
#include "host/commands/option_loop.h"
#include "host/db/database.h"
#include "host/db/entity_props.h"
#include "host/edit/sysvars.h"
#include "sdk/vcdb_curves.h"
#include "sdk/vcdb_dims.h"
#include "sdk/vcdb_faces.h"
#include "sdk/vcdb_hatch.h"
#include "sdk/vcdb_insert.h"
#include "sdk/vcdb_text.h"

namespace vk::commands {

namespace {

using namespace edit;

using Change = std::function<bool(VcDbEntity&)>;

std::vector<VcDbEntity*> entitiesOf(Editor& ed, const SelectionSet& objects)
{
    std::vector<VcDbEntity*> entities;
    for (const VcDbObjectId id : objects.ids())
        if (auto* entity = ed.db().liveAs<VcDbEntity>(id))
            entities.push_back(entity);
    return entities;
}

void changeAll(Editor& ed, const std::vector<VcDbEntity*>& entities, const Change& change)
{
    std::size_t left = 0;
    for (VcDbEntity* entity : entities)
        left += !change(*entity);
    if (left > 0)
        ed.printLine(fmt::format("{} could not be changed.", left));
}

template <class... Classes>
bool setThicknessOf(VcDbEntity& entity, double thickness)
{
    bool done = false;
    const auto tryClass = [&](auto* typed) {
        if (typed && !done)
            done = typed->setThickness(thickness) == Vcad::eOk;
    };
    (tryClass(Classes::cast(&entity)), ...);
    return done;
}

bool setThickness(VcDbEntity& entity, double thickness)
{
    return setThicknessOf<VcDbLine, VcDbPoint, VcDbCircle, VcDbArc, VcDbPolyline, VcDb2dPolyline, VcDbFilledQuad,
                          VcDbText, VcDbShape>(entity, thickness);
}

template <class... Classes>
std::optional<double> thicknessAs(const VcDbEntity& entity)
{
    std::optional<double> thickness;
    const auto tryClass = [&](const auto* typed) {
        if (typed && !thickness)
            thickness = typed->thickness();
    };
    (tryClass(Classes::cast(&entity)), ...);
    return thickness;
}

// Nothing for a class that has none.
std::optional<double> thicknessOf(const VcDbEntity& entity)
{
    return thicknessAs<VcDbLine, VcDbPoint, VcDbCircle, VcDbArc, VcDbPolyline, VcDb2dPolyline, VcDbFilledQuad, VcDbText,
                       VcDbShape>(entity);
}

// The value that all have, or "varies".
template <class Get>
std::string common(const std::vector<VcDbEntity*>& entities, Get&& get)
{
    const std::string first = get(*entities.front());
    for (const VcDbEntity* entity : entities)
        if (get(*entity) != first)
            return "varies";
    return first;
}

std::string recordName(Editor& ed, VcDbObjectId id)
{
    const auto* record = ed.db().objectAs<VcDbSymbolTableRecord>(id);
    return record ? record->nameUtf8() : std::string();
}

void colour(Editor& ed, const std::vector<VcDbEntity*>& entities)
{
    const VcCmColor wanted = askColour(ed, "New color", entities.front()->color());
    changeAll(ed, entities, [&](VcDbEntity& e) { return e.setColor(wanted) == Vcad::eOk; });
}

VcDbObjectId askRecord(Editor& ed, NameTable table, std::string_view prompt, const std::string& now)
{
    for (;;) {
        const std::string name = ed.word(fmt::format("{} <{}>", prompt, now));
        if (name.empty())
            return {};
        if (const VcDbObjectId id = ed.db().findRecord(table, name); !id.isNull())
            return id;
        ed.printLine(table == NameTable::Layer ? fmt::format("Cannot find layer \"{}\".", name)
                                               : fmt::format("Linetype \"{}\" is not loaded.", name));
    }
}

void layer(Editor& ed, const std::vector<VcDbEntity*>& entities)
{
    const VcDbObjectId id =
        askRecord(ed, NameTable::Layer, "Enter new layer name",
                  common(entities, [&](const VcDbEntity& e) { return recordName(ed, e.layerId()); }));
    if (!id.isNull())
        changeAll(ed, entities, [&](VcDbEntity& e) { return e.setLayer(id) == Vcad::eOk; });
}

void linetype(Editor& ed, const std::vector<VcDbEntity*>& entities)
{
    const VcDbObjectId id =
        askRecord(ed, NameTable::Linetype, "Enter new linetype name",
                  common(entities, [&](const VcDbEntity& e) { return recordName(ed, e.linetypeId()); }));
    if (!id.isNull())
        changeAll(ed, entities, [&](VcDbEntity& e) { return e.setLinetype(id) == Vcad::eOk; });
}

void linetypeScale(Editor& ed, const std::vector<VcDbEntity*>& entities)
{
    const double scale = ed.real("Specify new linetype scale", entities.front()->linetypeScale(),
                                 {.bits = InitGet::NoZero | InitGet::NoNegative});
    changeAll(ed, entities, [&](VcDbEntity& e) { return e.setLinetypeScale(scale) == Vcad::eOk; });
}

void lineWeight(Editor& ed, const std::vector<VcDbEntity*>& entities)
{
    for (;;) {
        const std::string typed =
            ed.word("Enter new lineweight (0.0mm - 2.11mm, ByLayer, ByBlock, Default)", std::string("ByLayer"));
        if (const auto weight = lineWeightOf(typed))
            return changeAll(ed, entities, [&](VcDbEntity& e) { return e.setLineWeight(*weight) == Vcad::eOk; });
        ed.printLine("Requires a width from 0 to 2.11 millimetres, ByLayer, ByBlock or Default.");
    }
}

void thickness(Editor& ed, const std::vector<VcDbEntity*>& entities)
{
    const double value = ed.distance("Specify new thickness", 0.0);
    changeAll(ed, entities, [&](VcDbEntity& e) { return setThickness(e, value); });
}

void elevation(Editor& ed, const std::vector<VcDbEntity*>& entities)
{
    const double value = ed.distance("Specify new elevation", ed.vars().real("ELEVATION"));
    const VcGeMatrix3d m = ucsToWorld(ed);
    changeAll(ed, entities, [&](VcDbEntity& e) {
        VcDbExtents box;
        if (e.getGeomExtents(box) != Vcad::eOk)
            return false;
        box.transformBy(m.inverse());
        // What does not lie level in the UCS has no elevation.
        if (box.maxPoint().z - box.minPoint().z > 1e-9 * std::max(1.0, std::abs(box.maxPoint().z)))
            return false;
        return e.transformBy(m * VcGeMatrix3d::translation({0, 0, value - box.minPoint().z}) * m.inverse()) ==
               Vcad::eOk;
    });
}

struct Option {
    const char* keyword;
    void (*run)(Editor&, const std::vector<VcDbEntity*>&);
};
constexpr Option kOptions[] = {
    {"Color", colour},          {"Elev", elevation},     {"LAyer", layer},         {"LType", linetype},
    {"ltScale", linetypeScale}, {"LWeight", lineWeight}, {"Thickness", thickness},
};

void askProperties(Editor& ed, const std::vector<VcDbEntity*>& entities, bool withElevation)
{
    runOptions(ed,
               withElevation ? "Enter property to change\n[Color/Elev/LAyer/LType/ltScale/LWeight/Thickness]: "
                             : "Enter property to change\n[Color/LAyer/LType/ltScale/LWeight/Thickness]: ",
               kOptions, entities);
}

void changeProperties(Editor& ed)
{
    const auto objects = ed.select();
    if (!objects->empty())
        askProperties(ed, entitiesOf(ed, *objects), false);
}

// CHANGE at a point: the nearer end of a line goes there, a circle passes through it, texts and blocks stand there.
bool changeTo(VcDbEntity& entity, const VcGePoint3d& p)
{
    if (auto* line = VcDbLine::cast(&entity)) {
        const bool end = line->endPoint().distanceTo(p) < line->startPoint().distanceTo(p);
        return (end ? line->setEndPoint(p) : line->setStartPoint(p)) == Vcad::eOk;
    }
    if (auto* circle = VcDbCircle::cast(&entity))
        return circle->setRadius(circle->center().distanceTo(p)) == Vcad::eOk;
    if (auto* text = VcDbText::cast(&entity))
        return text->transformBy(VcGeMatrix3d::translation(p - text->position())) == Vcad::eOk;
    if (auto* reference = VcDbBlockReference::cast(&entity))
        return reference->transformBy(VcGeMatrix3d::translation(p - reference->position())) == Vcad::eOk;
    return false;
}

void change(Editor& ed)
{
    const auto objects = ed.select();
    if (objects->empty())
        return;
    const Answer a = ed.askPoint("Specify change point or [Properties]", {.keywords = "Properties", .enterEnds = true});
    if (a.status == Answer::Status::Keyword)
        return askProperties(ed, entitiesOf(ed, *objects), true);
    if (a.status == Answer::Status::Value)
        changeAll(ed, entitiesOf(ed, *objects), [p = toWorld(ed, a.point)](VcDbEntity& e) { return changeTo(e, p); });
}

// Matching

void matchHatch(const VcDbHatch& from, VcDbHatch& to)
{
    to.setSolidFill(from.isSolidFill());
    to.setPatternName(utf8ToWide(from.patternNameUtf8()).c_str());
    to.setPatternDefinitions(from.patternLines());
    to.setPatternScale(from.patternScale());
    to.setPatternAngle(from.patternAngle());
}

// What is special to a class goes over between objects of that class alone.
void matchSpecial(const VcDbEntity& from, VcDbEntity& to)
{
    if (const auto* text = VcDbText::cast(&from))
        if (auto* target = VcDbText::cast(&to)) {
            target->setTextStyle(text->textStyle());
            target->setHeight(text->height());
            target->setWidthFactor(text->widthFactor());
            target->setOblique(text->oblique());
        }
    if (const auto* text = VcDbMText::cast(&from))
        if (auto* target = VcDbMText::cast(&to)) {
            target->setTextStyle(text->textStyle());
            target->setTextHeight(text->textHeight());
        }
    if (const auto* dimension = VcDbDimension::cast(&from))
        if (auto* target = VcDbDimension::cast(&to))
            target->setDimensionStyle(dimension->dimensionStyle());
    if (const auto* hatch = VcDbHatch::cast(&from); hatch && !hatch->isGradient())
        if (auto* target = VcDbHatch::cast(&to); target && !target->isGradient())
            matchHatch(*hatch, *target);
    if (const auto thickness = thicknessOf(from))
        setThickness(to, *thickness);
    double width = 0;
    if (const auto* polyline = VcDbPolyline::cast(&from); polyline && polyline->getConstantWidth(width) == Vcad::eOk)
        if (auto* target = VcDbPolyline::cast(&to))
            target->setConstantWidth(width);
}

void match(Editor& ed)
{
    Answer a;
    const VcDbEntity* source = nullptr;
    while (!source) {
        a = ed.askEntity("Select source object");
        if (a.status == Answer::Status::Enter)
            return;
        source = ed.db().liveAs<VcDbEntity>(a.entity);
    }
    ed.printLine("Current active settings:  Color Layer Ltype Ltscale Lineweight Thickness Text Dim Hatch Polyline");
    const auto objects = ed.select({.prompt = "Select destination object(s): "});
    for (VcDbEntity* entity : entitiesOf(ed, *objects))
        if (entity != source) {
            entity->setPropertiesFrom(source);
            matchSpecial(*source, *entity);
        }
}

void currentColour(Editor& ed)
{
    const auto now = colourOf(ed.vars().text("CECOLOR"));
    const VcCmColor wanted = askColour(ed, "Enter default object color", now.value_or(VcCmColor()));
    if (wanted.isByColor())
        throw CommandError{"New objects take a colour number; CHPROP gives objects a true colour."};
    ed.vars().set("CECOLOR", colourText(wanted));
}

const HostCommand kCommands[] = {
    {"CHPROP", nullptr, kUsesPickSet, "Changes colour, layer, linetype and the like of objects.", changeProperties},
    {"CHANGE", "-CH", kUsesPickSet, "Changes objects to a point, or their properties.", change},
    {"MATCHPROP", "MA", kPlain, "Gives objects the properties of another one.", match},
    {"-COLOR", nullptr, kPlain, "Sets the colour of new objects.", currentColour},
    {"COLOR", "COL", kPlain, "Sets the colour of new objects.", currentColour},
};

}

std::span<const HostCommand> propertyCommands() { return kCommands; }

}
