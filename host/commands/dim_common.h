// What the dimension commands share: the current style with its overrides and its families, texts, and the plane of the UCS.
#pragma once

#include "host/commands/drawing.h"
#include "host/db/database.h"
#include "host/db/dim_format.h"
#include "sdk/vcdb_dims.h"

#include <functional>

struct DimVariable;

namespace vk::commands {

// What the options Mtext, Text and Angle set for the dimension that is being made.
struct DimChoices {
    std::string text;             // override
    std::optional<double> angle;  // of the text, from the UCS's X axis
};

// The variables in force: the current style with what has been set over it.
VcDbDimVars currentDimVars(edit::Editor& ed);
VcDbObjectId currentDimStyle(edit::Editor& ed);
// DIMSCALE or what stands in for it where that is 0.
double currentDimScale(edit::Editor& ed, const VcDbDimVars& vars);

// The style that the entity takes when it is made: the current one, or its child for the entity's family, such as
// "Name$3" for the diameters of "Name".
struct DimStyleChoice {
    VcDbObjectId style;
    VcDbDimVars own, wanted;  // as the style has them; with what has been set over the current style
};
DimStyleChoice dimStyleFor(edit::Editor& ed, const VcDbEntity& entity);
// Sets what is wanted and not so in the style as the entity's own.
void takeDimStyle(VcDbEntity& entity, const DimStyleChoice& choice);
// The style itself, or the one that a child belongs to.
VcDbObjectId parentDimStyle(const DatabaseCore& db, VcDbObjectId style);

// Sets one variable as the entity's own.
Vcad::ErrorStatus overrideDimVar(VcDbObject& entity, const DimVariable& variable, const VcDbDimVars& wanted);
// A variable's value as people read it; an empty reference is a point.
std::string dimVarText(const DatabaseCore& db, const DimVariable& variable, const VcDbDimVars& vars);
// Sets every variable that is not as in the entity's style as the entity's own; gives back how many.
int overrideDimVars(VcDbObject& entity, const VcDbDimVars& style, const VcDbDimVars& wanted);

struct NewDimension {
    VcDbObjectId id;  // null where DIMASSOC 0 has left loose lines and texts
    double measurement = 0;
};
// Puts a new dimension into the space with the current style, in the plane of the UCS.
NewDimension addDimension(edit::Editor& ed, std::unique_ptr<VcDbDimension> dimension, const DimChoices& choices);
// Shows with the next question the dimension that a place of the cursor would make.
using DimensionAt = std::function<std::unique_ptr<VcDbDimension>(const VcGePoint3d& cursor)>;
void showDimension(edit::Editor& ed, const DimChoices& choices, DimensionAt dimensionAt);
// Whether a dimension of two points is a horizontal one when it is placed there, in the UCS.
bool wantsHorizontal(const VcGePoint3d& first, const VcGePoint3d& second, const VcGePoint3d& at);
// DIMUPT puts the text of a new dimension where its line is placed.
void placeText(edit::Editor& ed, VcDbDimension& dimension, const VcGePoint3d& at);
// The one that rows go on from: the linear, angular or ordinate dimension that was made last.
VcDbObjectId& lastDimension();

// What other commands do under names of their own: a linear dimension at an angle that is given or asked for; Home, New,
// Rotate or Oblique of DIMEDIT; an option of -DIMSTYLE.
void dimensionAtAngle(edit::Editor& ed, std::optional<double> angle);
void editDimensions(edit::Editor& ed, const std::string& kind);
void runDimStyleOption(edit::Editor& ed, const std::string& option);

// Handles the keywords Mtext, Text and Angle; false for another one.
bool takeTextChoice(edit::Editor& ed, const std::string& keyword, DimChoices& choices, const DimMeasure& measure);

// "Dimension text = ", and the text as measureText has it.
void reportMeasure(edit::Editor& ed, const DimMeasure& measure);

// The text of a measure in the current style, as prompts show it.
std::string measureText(edit::Editor& ed, const DimMeasure& measure);

// A live object of the class that a person picks; asked again for another one. Enter gives null where it means something,
// and else ends the command.
template <class... Classes>
VcDbEntity* pickOf(edit::Editor& ed, std::string_view prompt, std::string_view refusal, bool enterEnds = false)
{
    for (;;) {
        const edit::Answer a = ed.askEntity(prompt, {.enterEnds = enterEnds});
        if (a.status != edit::Answer::Status::Value) {
            if (enterEnds)
                return nullptr;
            throw edit::CommandCancelled();
        }
        auto* entity = VcDbEntity::cast(a.entity.isValid() ? DatabaseCore::of(a.entity)->object(a.entity) : nullptr);
        if (entity && (entity->isKindOf(Classes::desc()) || ...))
            return entity;
        ed.printLine(refusal);
    }
}

}  // namespace vk::commands
