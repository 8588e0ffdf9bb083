// DIMTEDIT, DIMEDIT, DIMOVERRIDE: dimensions that are there.
#include "host/base/unicode.h"
#include "host/commands/dim_common.h"
#include "host/commands/dim_stand.h"
#include "host/commands/families.h"
#include "host/db/dim_picture.h"
#include "host/db/rec_arrow_blocks.h"
#include "host/db/rec_dim_variables.h"
#include "host/edit/sysvar_table.h"
#include "sdk/vcdb_records.h"

namespace vk::commands {

namespace {

using namespace edit;

bool refusesLocked(Editor& ed, const VcDbEntity& entity)
{
    if (!isOnLockedLayer(entity))
        return false;
    ed.printLine(fmt::format("The dimension is on the locked layer \"{}\".", layerName(entity)));
    return true;
}

// The selected dimensions, the rest counted; what else dimension variables apply to comes along where it is wanted.
std::vector<VcDbEntity*> selectDimensions(Editor& ed, bool leadersToo)
{
    std::vector<VcDbEntity*> found;
    std::size_t left = 0;
    const auto objects = ed.select();
    for (const VcDbObjectId id : objects->ids()) {
        auto* entity = ed.db().liveAs<VcDbEntity>(id);
        const bool fits = entity && (VcDbDimension::cast(entity) ||
                                     (leadersToo && (VcDbLeader::cast(entity) || VcDbFcf::cast(entity))));
        if (fits)
            found.push_back(entity);
        else
            ++left;
    }
    if (left > 0)
        ed.report("{} {} no dimension and stayed as it was.", left, left == 1 ? "was" : "were");
    return found;
}

void redraw(VcDbEntity& entity)
{
    if (auto* dimension = VcDbDimension::cast(&entity))
        dimension->recomputeDimBlock();
    else if (auto* leader = VcDbLeader::cast(&entity))
        leader->evaluateLeader();
}

// Home: the text's own place and angle.
void sendHome(VcDbDimension& d)
{
    d.useDefaultTextPosition();
    d.setTextRotation(0);
    d.recomputeDimBlock();
}

// DIMJUST is the dimension's own from then on.
void justify(VcDbDimension& d, std::int16_t dimjust)
{
    d.useDefaultTextPosition();
    VcDbDimOverrides(d).setInteger(findDimVariable("DIMJUST")->code, dimjust);
    d.recomputeDimBlock();
}

// With DIMTMOVE 0 the line goes along, so that it stands to its text as the style wants it.
void putText(VcDbDimension& d, const VcGePoint3d& at)
{
    const auto stand = dimStandOf(d);
    if (stand && d.dimVars().dimtmove == 0) {
        d.useDefaultTextPosition();
        const double lift = stand->of(dim::pictureOf(d).textMiddle) - stand->at;
        const double moved = stand->of(at) - lift;
        if (!stand->isArc || moved > 0)
            moveLine(d, stand->across * (moved - stand->at));
    }
    d.setTextPosition(at);
    d.recomputeDimBlock();
}

void dimTextEdit(Editor& ed)
{
    auto* d = static_cast<VcDbDimension*>(pickOf<VcDbDimension>(ed, "Select dimension", "A dimension is wanted."));
    if (refusesLocked(ed, *d))
        throw CommandError{"Nothing was changed."};
    const Answer a =
        ed.askPoint("Specify new location for dimension text or [Left/Right/Center/Home/Angle]",
                    {.keywords = "Left Right Center Home Angle", .from = fromWorld(ed, d->textPosition())});
    if (a.status == Answer::Status::Value) {
        putText(*d, toWorld(ed, a.point));
    } else if (a.text == "Home") {
        sendHome(*d);
    } else if (a.text == "Angle") {
        d->setTextRotation(ed.askAngle("Specify angle for dimension text").real);
        d->recomputeDimBlock();
    } else {
        justify(*d, a.text == "Left" ? 1 : a.text == "Right" ? 2 : 0);
    }
}

Vcad::ErrorStatus setOblique(VcDbDimension& d, double angle)
{
    if (auto* aligned = VcDbAlignedDimension::cast(&d))
        return aligned->setOblique(angle);
    if (auto* rotated = VcDbRotatedDimension::cast(&d))
        return rotated->setOblique(angle);
    return Vcad::eNotApplicable;
}

void oblique(Editor& ed, const std::vector<VcDbEntity*>& dimensions)
{
    const Answer a = ed.askAngle("Enter obliquing angle (press ENTER for none)", {.enterEnds = true});
    const double angle = a.status == Answer::Status::Enter ? 0 : a.real + ucsTwist(ed);
    std::size_t left = 0;
    for (VcDbEntity* entity : dimensions) {
        if (setOblique(static_cast<VcDbDimension&>(*entity), angle) == Vcad::eOk)
            redraw(*entity);
        else
            ++left;
    }
    if (left > 0)
        ed.report("{} without straight extension lines stayed as {}.", left, left == 1 ? "it was" : "they were");
}

}

void editDimensions(Editor& ed, const std::string& kind)
{
    std::string text;
    double angle = 0;
    if (kind == "New")
        text = ed.text("Enter dimension text", std::string("<>"));
    else if (kind == "Rotate")
        angle = ed.askAngle("Specify angle for dimension text").real;
    const auto dimensions = selectDimensions(ed, false);
    if (dimensions.empty())
        return;
    if (kind == "Oblique")
        return oblique(ed, dimensions);
    for (VcDbEntity* entity : dimensions) {
        auto& d = static_cast<VcDbDimension&>(*entity);
        if (kind == "Home") {
            sendHome(d);
            continue;
        }
        if (kind == "New")
            d.setDimensionText(utf8ToWide(text == "<>" ? std::string() : text).c_str());
        else
            d.setTextRotation(angle);
        d.recomputeDimBlock();
    }
}

namespace {

void dimEdit(Editor& ed)
{
    editDimensions(ed, ed.keyword("Enter type of dimension editing [Home/New/Rotate/Oblique] <Home>",
                                  "Home New Rotate Oblique", "Home"));
}

// DIMOVERRIDE

struct NewValue {
    const DimVariable* variable;
    VcDbDimVars holder;  // the value in its member
};

bool saysClear(const std::string& name) { return equalNoCase(name, "C") || equalNoCase(name, "CLEAR"); }

// Null when nothing more is wanted or, with clear set, when all is to go.
const DimVariable* askVariable(Editor& ed, std::string_view prompt, bool* clear)
{
    for (;;) {
        const std::string name = ed.word(prompt, std::string());
        if (clear && saysClear(name))
            *clear = true;
        if (name.empty() || (clear && *clear))
            return nullptr;
        const DimVariable* v = findDimVariable(std::string_view(name));
        if (v && v->isIn(DxfVersion::Newest))
            return v;
        ed.printLine(fmt::format("There is no dimension variable \"{}\".", name));
    }
}

VcDbObjectId recordNamed(Editor& ed, const DimVariable& v, const std::string& name)
{
    if (name.empty() || name == ".")
        return {};
    const VcDbObjectId id =
        v.kind == DimVariable::Kind::Arrow ? arrowBlock(ed.db(), name) : ed.db().findRecord(v.recordTable(), name);
    if (id.isNull())
        throw CommandError{fmt::format("The drawing has no \"{}\" for {}.", name, v.name)};
    return id;
}

// The number as the system variable takes it: a separator is a character.
std::optional<double> numberFor(const DimVariable& v, const SysVarDef& def, const std::string& typed)
{
    const auto value = parseSysVar(def, typed);
    if (!value || !inRange(def, *value))
        return std::nullopt;
    if (const auto* whole = std::get_if<std::int32_t>(&*value))
        return *whole;
    if (const auto* real = std::get_if<double>(&*value))
        return *real;
    std::string_view rest = typed;
    return v.kind == DimVariable::Kind::Number && !typed.empty() ? std::optional(double(takeCharacter(rest)))
                                                                 : std::nullopt;
}

double askNumber(Editor& ed, const DimVariable& v, double now)
{
    const SysVarDef* def = findSysVar(v.name);
    for (;;) {
        const std::string shown =
            def && def->type == SysVarType::String ? wideToUtf8(std::wstring(1, wchar_t(now))) : lengthText(now);
        const std::string typed =
            ed.word(fmt::format("Enter new value for dimension variable <{}>", shown), std::string());
        if (typed.empty())
            return now;
        if (equalNoCase(typed, "ON") || equalNoCase(typed, "OFF"))
            if (def && inRange(*def, std::int32_t(equalNoCase(typed, "ON"))))
                return equalNoCase(typed, "ON");
        if (const auto number = def ? numberFor(v, *def, typed) : std::nullopt)
            return *number;
        ed.printLine(fmt::format("Requires {}.", def ? describeRange(*def) : "a number"));
    }
}

NewValue askValue(Editor& ed, const DimVariable& v)
{
    NewValue value{&v, currentDimVars(ed)};
    if (v.isNumber()) {
        setDimNumber(value.holder, v, askNumber(ed, v, dimNumber(value.holder, v)));
        return value;
    }
    const std::string now = dimVarText(ed.db(), v, value.holder);
    const std::string prompt = "Enter new value for dimension variable";
    if (const auto* text = std::get_if<std::string VcDbDimVars::*>(&v.member))
        value.holder.** text = ed.text(prompt, now);
    else
        value.holder.*std::get<VcDbObjectId VcDbDimVars::*>(v.member) = recordNamed(ed, v, ed.word(prompt, now));
    return value;
}

void clearOwn(VcDbEntity& entity)
{
    for (const DimVariable& v : dimVariables())
        VcDbDimOverrides(entity).remove(v.code);
}

void dimOverride(Editor& ed)
{
    bool clear = false;
    std::vector<NewValue> values;
    const DimVariable* v = askVariable(ed, "Enter dimension variable name to override or [Clear overrides]", &clear);
    while (v) {
        values.push_back(askValue(ed, *v));
        v = askVariable(ed, "Enter dimension variable name to override", nullptr);
    }
    if (values.empty() && !clear)
        return;
    for (VcDbEntity* entity : selectDimensions(ed, true)) {
        if (values.empty())
            clearOwn(*entity);
        for (const NewValue& value : values)
            overrideDimVar(*entity, *value.variable, value.holder);
        redraw(*entity);
    }
}

// The arrow whose tip is nearest to where the dimension was picked; of one that was named, the first.
bool nearestArrow(Editor& ed, const VcDbDimension& dimension, const Answer& pick)
{
    bool second = false;
    double nearest = 1e300;
    const VcGePoint3d at = pick.hasPoint ? toWorld(ed, pick.point) : VcGePoint3d();
    for (const auto& [tip, isSecond] : dim::pictureOf(dimension).arrows) {
        const double distance = pick.hasPoint ? tip.distanceTo(at) : isSecond;
        if (distance < nearest) {
            nearest = distance;
            second = isSecond;
        }
    }
    return second;
}

void flipArrow(Editor& ed)
{
    for (;;) {
        const Answer pick = ed.askEntity("Select dimension near the arrow to flip", {.enterEnds = true});
        if (pick.status != Answer::Status::Value)
            return;
        auto* d = ed.db().liveAs<VcDbDimension>(pick.entity);
        if (!d) {
            ed.printLine("A dimension is wanted.");
            continue;
        }
        if (refusesLocked(ed, *d))
            continue;
        if (dim::pictureOf(*d).arrows.empty()) {
            ed.printLine("The dimension has no arrows.");
            continue;
        }
        const bool second = nearestArrow(ed, *d, pick);
        d->setArrowFlipped(second, !d->isArrowFlipped(second));
        d->recomputeDimBlock();
    }
}

const HostCommand kCommands[] = {
    {"AIDIMFLIPARROW", nullptr, kPlain, "Turns arrows of dimensions round.", flipArrow},
    {"DIMTEDIT", nullptr, kPlain, "Moves or turns the text of a dimension.", dimTextEdit},
    {"DIMEDIT", "DED", kUsesPickSet, "Changes texts and extension lines of dimensions.", dimEdit},
    {"DIMOVERRIDE", "DOV", kUsesPickSet, "Sets dimension variables of single dimensions.", dimOverride},
};

}

std::span<const HostCommand> dimensionEditCommands() { return kCommands; }

}  // namespace vk::commands
