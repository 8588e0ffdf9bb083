// LIST, ID, DIST.
#include "host/base/group_code.h"
#include "host/base/rb.h"
#include "host/base/numbers.h"
#include "host/commands/drawing.h"
#include "host/commands/families.h"
#include "host/db/chain.h"
#include "host/db/database.h"
#include "host/db/kept_object.h"
#include "host/edit/sysvars.h"
#include "sdk/vcdb_tables.h"

namespace vk::commands {

namespace {

using namespace edit;

std::string valueText(const resbuf& node)
{
    switch (groupKind(node.restype)) {
    case GroupKind::Point:
        return fmt::format("({} {} {})", lengthText(node.resval.rpoint[0]), lengthText(node.resval.rpoint[1]), lengthText(node.resval.rpoint[2]));
    case GroupKind::Real:
        return realText(rbReal(node));
    case GroupKind::String:
    case GroupKind::Handle:
        return rbUtf8(node);
    case GroupKind::Reference: {
        VcDbObjectId id;
        return nameToId(node.resval.rlname, id) ? handleText(id.handle().value()) : "0";
    }
    case GroupKind::Binary:
        return fmt::format("{} bytes", rbBytes(node).size());
    default:
        return std::to_string(rbInteger(node));
    }
}

// The type, layer and space in words, then the groups of the object's own class as the drawing holds them.
void listEntity(Editor& ed, VcDbEntity& entity)
{
    const auto* space = ed.db().objectAs<VcDbBlockTableRecord>(entity.ownerId());
    ed.printLine(fmt::format("{:>12}  Layer: \"{}\"", dxfNameOf(entity), layerName(entity)));
    ed.printLine(fmt::format("{:>12}  Space: {}", "", space && space->objectId() == ed.db().modelSpace() ? "Model space" : "Paper space"));
    ed.printLine(fmt::format("{:>12}  Handle = {}", "", handleText(entity.handle().value())));
    const RbPtr chain = chainOf(entity);
    bool own = false;
    for (const resbuf* node = chain.get(); node; node = node->rbnext) {
        if (node->restype == 100)
            own = rbUtf8(*node) != "AcDbEntity";
        else if (own)
            ed.printLine(fmt::format("{:>12}  {:>4}  {}", "", node->restype, valueText(*node)));
    }
}

void list(Editor& ed)
{
    const auto objects = ed.select({.allowLocked = true});
    for (const VcDbObjectId id : objects->ids()) {
        ed.throwIfInterrupted();
        if (auto* entity = ed.db().liveAs<VcDbEntity>(id))
            listEntity(ed, *entity);
    }
}

void identify(Editor& ed)
{
    const VcGePoint3d p = ed.point("Specify point");
    ed.printLine(pointText(p));
    ed.lastPoint = p;
}

void distance(Editor& ed)
{
    const VcGePoint3d a = ed.point("Specify first point"), b = ed.point("Specify second point", {.from = a});
    const VcGeVector3d d = b - a;
    const double flat = std::hypot(d.x, d.y);
    double inPlane = std::atan2(d.y, d.x);
    if (inPlane < 0)
        inPlane += 2 * M_PI;
    ed.printLine(fmt::format("Distance = {},  Angle in XY Plane = {},  Angle from XY Plane = {}", lengthText(d.length()), angleText(inPlane),
                             angleText(std::atan2(d.z, flat))));
    ed.printLine(fmt::format("Delta X = {},  Delta Y = {},   Delta Z = {}", lengthText(d.x), lengthText(d.y), lengthText(d.z)));
    ed.vars().force("DISTANCE", d.length());
}

const HostCommand kCommands[] = {
    {"LIST", "LI", kUsesPickSet | kNoUndoStep, "Shows what the drawing holds of objects.", list},
    {"ID", nullptr, kTransparent | kNoUndoStep, "Shows the coordinates of a point.", identify},
    {"DIST", "DI", kTransparent | kNoUndoStep, "Shows the distance between two points.", distance},
};

}

std::span<const HostCommand> inquiryCommands() { return kCommands; }

}
