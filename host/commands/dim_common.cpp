#include "host/commands/dim_common.h"

#include "host/base/unicode.h"
#include "host/db/rec_arrow_blocks.h"
#include "host/db/rec_dim_variables.h"
#include "sdk/vcdb_records.h"

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
    return v.kind == DimVariable::Kind::Number ? std::to_string(int(dimNumber(vars, v))) : lengthText(dimNumber(vars, v));
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

VcDbDimension& addDimension(Editor& ed, std::unique_ptr<VcDbDimension> made, const DimChoices& choices)
{
    made->setNormal(ucsNormal(ed));
    made->setHorizontalRotation(-ucsTwist(ed));
    if (!choices.text.empty())
        made->setDimensionText(utf8ToWide(choices.text).c_str());
    if (choices.angle)
        made->setTextRotation(*choices.angle);
    const VcDbObjectId id = addToSpace(ed, std::move(made));
    auto& dimension = *ed.db().liveAs<VcDbDimension>(id);
    const VcDbObjectId style = currentDimStyle(ed);
    dimension.setDimensionStyle(style);
    if (const auto* record = ed.db().liveAs<VcDbDimStyleTableRecord>(style))
        overrideDimVars(dimension, record->dimVars(), currentDimVars(ed));
    dimension.recomputeDimBlock();
    return dimension;
}

std::string measureText(Editor& ed, const DimMeasure& measure)
{
    VcDbDimVars vars = currentDimVars(ed);
    vars.dimfrac = 2;
    const double factor = measure.kind == DimMeasure::Kind::Angle ? 1 : linearFactor(vars, ed.db().currentSpace() != ed.db().modelSpace());
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
