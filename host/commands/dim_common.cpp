#include "host/commands/dim_common.h"

#include "host/base/unicode.h"
#include "host/commands/explode.h"
#include "host/commands/figure_preview.h"
#include "host/db/dim_picture.h"
#include "host/db/rec_arrow_blocks.h"
#include "host/db/rec_dim_variables.h"
#include "host/edit/sysvars.h"
#include "host/edit/viewports.h"
#include "sdk/vcdb_records.h"
#include "sdk/vcdb_viewport.h"

namespace vk::commands {

using namespace edit;

// A built-in arrow that has been named by a variable gets its block now that it is used.
VcDbDimVars currentDimVars(Editor& ed)
{
    for (const char* name : {"$DIMBLK", "$DIMBLK1", "$DIMBLK2", "$DIMLDRBLK"})
        if (const std::string arrow = ed.db().header().text(name, ""); isBuiltInArrow(arrow)) {
            const auto* block = ed.db().objectAs<VcDbSymbolTableRecord>(arrowBlock(ed.db(), arrow));
            if (block && block->nameUtf8() != arrow)
                ed.db().header().setText(name, 1, block->nameUtf8());
        }
    return headerDimVars(ed.db());
}

VcDbObjectId currentDimStyle(Editor& ed) { return ed.drawing().dimstyle(); }

Vcad::ErrorStatus overrideDimVar(VcDbObject& entity, const DimVariable& v, const VcDbDimVars& wanted)
{
    VcDbDimOverrides overrides(entity);
    if (const auto* text = std::get_if<std::string VcDbDimVars::*>(&v.member))
        return overrides.setText(v.code, wanted.**text);
    if (const auto* reference = std::get_if<VcDbObjectId VcDbDimVars::*>(&v.member))
        return overrides.setReference(v.code, wanted.**reference);
    if (v.kind == DimVariable::Kind::Number)
        return overrides.setInteger(v.code, std::int16_t(dimNumber(wanted, v)));
    return overrides.setReal(v.code, dimNumber(wanted, v));
}

std::string dimVarText(const DatabaseCore& db, const DimVariable& v, const VcDbDimVars& vars)
{
    if (const auto* text = std::get_if<std::string VcDbDimVars::*>(&v.member))
        return vars.**text;
    if (const auto* id = std::get_if<VcDbObjectId VcDbDimVars::*>(&v.member)) {
        const auto* record = db.objectAs<VcDbSymbolTableRecord>(vars.**id);
        return record ? record->nameUtf8() : ".";
    }
    return v.kind == DimVariable::Kind::Number ? std::to_string(int(dimNumber(vars, v)))
                                               : lengthText(dimNumber(vars, v));
}

namespace {

bool differs(const DimVariable& v, const VcDbDimVars& a, const VcDbDimVars& b)
{
    return std::visit([&](auto member) { return a.*member != b.*member; }, v.member);
}

}

int overrideDimVars(VcDbObject& entity, const VcDbDimVars& style, const VcDbDimVars& wanted)
{
    int count = 0;
    for (const DimVariable& v : dimVariables())
        if (v.isIn(DxfVersion::Newest) && differs(v, style, wanted))
            count += overrideDimVar(entity, v, wanted) == Vcad::eOk;
    return count;
}

namespace {

// With DIMSCALE 0 and through a viewport: as large as on the sheet, and so from then on.
std::optional<double> scaleOfViewport(const Editor& ed, const VcDbDimVars& vars)
{
    const VcDbViewport* viewport = vars.dimscale == 0 ? activeViewport(ed) : nullptr;
    return viewport && viewport->customScale() > 0 ? std::optional(1 / viewport->customScale()) : std::nullopt;
}

}

double currentDimScale(Editor& ed, const VcDbDimVars& vars)
{
    if (const auto scale = scaleOfViewport(ed, vars))
        return *scale;
    return dim::overallScale(vars, ed.db(), ed.db().currentSpace() != ed.db().modelSpace());
}

namespace {

// The digit behind "$" in the name of a child; null where a class has no family.
const char* familyOf(const VcDbEntity& entity)
{
    const auto is = [&](const VcRxClass* c) { return entity.isKindOf(c); };
    if (is(VcDbRotatedDimension::desc()) || is(VcDbAlignedDimension::desc()))
        return "$0";
    if (is(VcDb2LineAngularDimension::desc()) || is(VcDb3PointAngularDimension::desc()))
        return "$2";
    if (is(VcDbDiametricDimension::desc()))
        return "$3";
    if (is(VcDbRadialDimension::desc()) || is(VcDbRadialDimensionLarge::desc()))
        return "$4";
    if (is(VcDbOrdinateDimension::desc()))
        return "$6";
    return is(VcDbLeader::desc()) || is(VcDbFcf::desc()) ? "$7" : nullptr;
}

// A style or a header without a text style means Standard.
VcDbDimVars withTextStyle(const DatabaseCore& db, VcDbDimVars vars)
{
    if (vars.dimtxsty.isNull())
        vars.dimtxsty = db.findRecord(NameTable::TextStyle, "Standard");
    return vars;
}

}

namespace {

DimStyleChoice chosenStyle(Editor& ed, const VcDbEntity& entity)
{
    const VcDbObjectId current = currentDimStyle(ed);
    const auto* parent = ed.db().liveAs<VcDbDimStyleTableRecord>(current);
    const VcDbDimVars now = withTextStyle(ed.db(), currentDimVars(ed));
    if (!parent)
        return {current, now, now};
    const char* family = familyOf(entity);
    const VcDbObjectId childId =
        family ? ed.db().findRecord(NameTable::DimStyle, parent->nameUtf8() + family) : VcDbObjectId();
    const auto* child = ed.db().liveAs<VcDbDimStyleTableRecord>(childId);
    if (!child)
        return {current, withTextStyle(ed.db(), parent->dimVars()), now};
    const VcDbDimVars of = withTextStyle(ed.db(), parent->dimVars()), own = withTextStyle(ed.db(), child->dimVars());
    DimStyleChoice choice{childId, own, own};
    for (const DimVariable& v : dimVariables())
        if (v.isIn(DxfVersion::Newest) && differs(v, of, now))
            std::visit([&](auto member) { choice.wanted.*member = now.*member; }, v.member);
    return choice;
}

}

DimStyleChoice dimStyleFor(Editor& ed, const VcDbEntity& entity)
{
    DimStyleChoice choice = chosenStyle(ed, entity);
    choice.wanted.dimscale = scaleOfViewport(ed, choice.wanted).value_or(choice.wanted.dimscale);
    return choice;
}

void takeDimStyle(VcDbEntity& entity, const DimStyleChoice& choice)
{
    if (auto* dimension = VcDbDimension::cast(&entity))
        dimension->setDimensionStyle(choice.style);
    else if (auto* leader = VcDbLeader::cast(&entity))
        leader->setDimensionStyle(choice.style);
    else if (auto* frame = VcDbFcf::cast(&entity))
        frame->setDimensionStyle(choice.style);
    overrideDimVars(entity, choice.own, choice.wanted);
}

VcDbObjectId parentDimStyle(const DatabaseCore& db, VcDbObjectId style)
{
    const auto* record = db.liveAs<VcDbDimStyleTableRecord>(style);
    const std::string name = record ? record->nameUtf8() : std::string();
    if (name.size() < 3 || name[name.size() - 2] != '$')
        return style;
    const VcDbObjectId parent = db.findRecord(NameTable::DimStyle, name.substr(0, name.size() - 2));
    return parent.isNull() ? style : parent;
}

VcDbObjectId& lastDimension()
{
    static VcDbObjectId id;
    return id;
}

// Beside the two points lies a vertical dimension, above or below them a horizontal one; in a corner the farther side wins.
bool wantsHorizontal(const VcGePoint3d& first, const VcGePoint3d& second, const VcGePoint3d& at)
{
    const auto beyond = [](double a, double b, double v) {
        return std::max({std::min(a, b) - v, v - std::max(a, b), 0.0});
    };
    const double x = beyond(first.x, second.x, at.x), y = beyond(first.y, second.y, at.y);
    if (x == y)
        return std::abs(second.x - first.x) >= std::abs(second.y - first.y);
    return y > x;
}

void placeText(Editor& ed, VcDbDimension& dimension, const VcGePoint3d& at)
{
    if (currentDimVars(ed).dimupt)
        dimension.setTextPosition(toWorld(ed, at));
}

static void setUp(Editor& ed, VcDbDimension& made, const DimChoices& choices)
{
    made.setNormal(ucsNormal(ed));
    made.setHorizontalRotation(-ucsTwist(ed));
    if (!choices.text.empty())
        made.setDimensionText(utf8ToWide(choices.text).c_str());
    if (choices.angle)
        made.setTextRotation(*choices.angle);
}

void showDimension(Editor& ed, const DimChoices& choices, DimensionAt dimensionAt)
{
    showFigure(ed, [&ed, choices, dimensionAt = std::move(dimensionAt)](const VcGePoint3d& cursor) {
        auto dimension = dimensionAt(cursor);
        setUp(ed, *dimension, choices);
        takeDimStyle(*dimension, dimStyleFor(ed, *dimension));
        return dimension;
    });
}

NewDimension addDimension(Editor& ed, std::unique_ptr<VcDbDimension> made, const DimChoices& choices)
{
    setUp(ed, *made, choices);
    const VcDbObjectId id = addToSpace(ed, std::move(made));
    auto& dimension = *ed.db().liveAs<VcDbDimension>(id);
    takeDimStyle(dimension, dimStyleFor(ed, dimension));
    dimension.recomputeDimBlock();
    const double measurement = dimension.measurement();
    if (ed.vars().integer("DIMASSOC") == 0 && explodeInPlace(ed.db(), dimension))
        return {{}, measurement};
    return {id, measurement};
}

void reportMeasure(Editor& ed, const DimMeasure& measure)
{
    ed.report("Dimension text = {}", measureText(ed, measure));
}

std::string measureText(Editor& ed, const DimMeasure& measure)
{
    VcDbDimVars vars = currentDimVars(ed);
    vars.dimfrac = 2;
    const double factor = measure.kind == DimMeasure::Kind::Angle
                              ? 1
                              : linearFactor(vars, ed.db().currentSpace() != ed.db().modelSpace());
    std::string text = dimNumberText(measure.value * factor, measure.kind, vars);
    if (const std::size_t at = text.find("%%d"); at != std::string::npos)
        text.replace(at, 3, "");
    return text;
}

bool takeTextChoice(Editor& ed, const std::string& keyword, DimChoices& choices, const DimMeasure& measure)
{
    if (keyword == "Text" || keyword == "Mtext") {
        choices.text = ed.text(fmt::format("Enter dimension text <{}>", measureText(ed, measure)), std::string());
        return true;
    }
    if (keyword != "Angle")
        return false;
    choices.angle = askDirection(ed, "Specify angle of dimension text").real;
    return true;
}

}  // namespace vk::commands
