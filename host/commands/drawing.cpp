#include "host/commands/drawing.h"

#include "host/base/numbers.h"
#include "host/base/unicode.h"
#include "host/db/database.h"
#include "host/edit/sysvars.h"
#include "sdk/vcdb_chains.h"
#include "host/edit/sysvars.h"
#include "sdk/vcdb_curves.h"
#include "sdk/vcdb_faces.h"
#include "sdk/vcdb_tables.h"

namespace vk::commands {

template <class... Classes>
static void thicken(VcDbEntity& entity, double thickness)
{
    const auto tryClass = [&](auto* typed) {
        if (typed && typed->thickness() == 0)
            typed->setThickness(thickness);
    };
    (tryClass(Classes::cast(&entity)), ...);
}

VcDbObjectId addToSpace(edit::Editor& ed, std::unique_ptr<VcDbEntity> entity)
{
    auto* space = ed.db().objectAs<VcDbBlockTableRecord>(ed.db().currentSpace());
    if (!space)
        throw edit::CommandError{"There is no space to draw in."};
    entity->setDatabaseDefaults(&ed.drawing());
    if (const double thickness = ed.vars().real("THICKNESS"); thickness != 0)
        thicken<VcDbLine, VcDbPoint, VcDbCircle, VcDbArc, VcDbPolyline, VcDb2dPolyline, VcDbFilledQuad>(*entity,
                                                                                                        thickness);
    VcDbObjectId id;
    if (space->appendVcDbEntity(id, entity.get()))
        throw edit::CommandError{"The object cannot be added to the drawing."};
    entity.release()->close();
    return id;
}

VcGeMatrix3d ucsToWorld(const edit::Editor& ed)
{
    VcGeMatrix3d m;
    vcdbUcsMatrix(m, &ed.drawing());
    return m;
}

VcGePoint3d toWorld(const edit::Editor& ed, const VcGePoint3d& ucs) { return ucsToWorld(ed) * ucs; }
VcGePoint3d fromWorld(const edit::Editor& ed, const VcGePoint3d& world) { return ucsToWorld(ed).inverse() * world; }
VcGeVector3d ucsNormal(const edit::Editor& ed) { return (ucsToWorld(ed) * VcGeVector3d::zAxis()).normal(); }

double ucsTwist(const edit::Editor& ed)
{
    const VcGeVector3d axis = VcGeMatrix3d::worldToPlane(ucsNormal(ed)) * (ucsToWorld(ed) * VcGeVector3d::xAxis());
    return std::atan2(axis.y, axis.x);
}

std::string lengthText(double value)
{
    wchar_t text[134];
    return vcdbRToS(value, -1, -1, text) == RTNORM ? wideToUtf8(text) : realText(value);
}

std::string pointText(const VcGePoint3d& p)
{
    return fmt::format("X = {}  Y = {}  Z = {}", lengthText(p.x), lengthText(p.y), lengthText(p.z));
}

std::string typedPointText(const VcGePoint3d& p)
{
    return fmt::format("{},{},{}", lengthText(p.x), lengthText(p.y), lengthText(p.z));
}

edit::Answer askDirection(edit::Editor& ed, std::string_view prompt, const edit::AskOptions& options)
{
    edit::Question q;
    q.kind = edit::Question::Kind::Orientation;
    q.prompt = std::string(prompt) + ": ";
    q.init.bits = options.bits | (options.enterEnds ? 0 : edit::InitGet::NoEnter);
    q.init.keywords = edit::parseKeywords(options.keywords);
    q.base = options.from;
    q.hasDefault = options.enterEnds;
    q.endsWithArguments = options.endsWithArguments;
    return ed.ask(std::move(q));
}

std::string angleText(double radians)
{
    wchar_t text[134];
    return vcdbAngToS(radians, -1, -1, text) == RTNORM ? wideToUtf8(text) : realText(radians);
}

std::string turnText(const edit::Editor& ed, double radians)
{
    return angleText(ed.vars().integer("ANGDIR") != 0 ? -radians : radians);
}

std::string directionText(const edit::Editor& ed, double radians)
{
    const double turn = std::remainder(radians - ed.vars().real("ANGBASE"), 2 * M_PI);
    const double typed = ed.vars().integer("ANGDIR") != 0 ? -turn : turn;
    return angleText(typed < -1e-12 ? typed + 2 * M_PI : std::fabs(typed));
}

bool isOnLockedLayer(const VcDbEntity& entity)
{
    const DatabaseCore* db = DatabaseCore::of(entity.objectId());
    const auto* layer = db ? db->objectAs<VcDbLayerTableRecord>(entity.layerId()) : nullptr;
    return layer && layer->isLocked();
}

std::string layerName(const VcDbEntity& entity)
{
    const DatabaseCore* db = DatabaseCore::of(entity.objectId());
    const auto* layer = db ? db->objectAs<VcDbLayerTableRecord>(entity.layerId()) : nullptr;
    return layer ? layer->nameUtf8() : "0";
}

}
