// DIMSPACE: parallel dimension lines, and arcs about one vertex, at even steps from one of them.
#include "host/commands/dim_common.h"
#include "host/commands/families.h"
#include "host/db/dim_picture.h"
#include "host/geom/arbitrary_axis.h"
#include "sdk/vcdb_records.h"

namespace vk::commands {

namespace {

using namespace edit;

// Where a dimension line stands, told across its direction; of an arc the radius. In world coordinates.
struct Stand {
    bool isArc = false;
    VcGePoint3d origin;  // of an arc: its vertex
    VcGeVector3d across;
    double at = 0;
};

std::optional<Stand> arcStand(const VcGePoint3d& vertex, const VcGePoint3d& arc)
{
    const VcGeVector3d out = arc - vertex;
    if (out.length() == 0)
        return std::nullopt;
    return Stand{true, vertex, out.normal(), out.length()};
}

std::optional<Stand> lineStand(const VcGePoint3d& through, const VcGeVector3d& along, const VcGeVector3d& normal)
{
    const VcGeVector3d across = normal.crossProduct(along).normal();
    return Stand{false, VcGePoint3d(), across, through.asVector().dotProduct(across)};
}

std::optional<VcGePoint3d> vertexOf(const VcDb2LineAngularDimension& d)
{
    const VcGeVector3d u = d.xLine1End() - d.xLine1Start(), v = d.xLine2End() - d.xLine2Start(), w = d.xLine2Start() - d.xLine1Start();
    const VcGeVector3d n = u.crossProduct(v);
    if (n.length() <= 1e-12 * u.length() * v.length())
        return std::nullopt;
    return d.xLine1Start() + u * (w.crossProduct(v).dotProduct(n) / n.dotProduct(n));
}

std::optional<Stand> standOf(const VcDbDimension& dimension)
{
    const VcGeVector3d normal = dimension.normal();
    if (const auto* rotated = VcDbRotatedDimension::cast(&dimension)) {
        const geom::Frame frame = geom::arbitraryFrame(normal, VcGePoint3d());
        const VcGeVector3d along = frame.x * std::cos(rotated->rotation()) + frame.y * std::sin(rotated->rotation());
        return lineStand(rotated->dimLinePoint(), along, normal);
    }
    if (const auto* aligned = VcDbAlignedDimension::cast(&dimension)) {
        const VcGeVector3d along = aligned->xLine2Point() - aligned->xLine1Point();
        return along.length() > 0 ? lineStand(aligned->dimLinePoint(), along.normal(), normal) : std::nullopt;
    }
    if (const auto* points = VcDb3PointAngularDimension::cast(&dimension))
        return arcStand(points->centerPoint(), points->arcPoint());
    if (const auto* lines = VcDb2LineAngularDimension::cast(&dimension))
        if (const auto vertex = vertexOf(*lines))
            return arcStand(*vertex, lines->arcPoint());
    return std::nullopt;
}

// Text that a person has put somewhere goes along.
void moveLine(VcDbDimension& dimension, const VcGeVector3d& by)
{
    if (auto* rotated = VcDbRotatedDimension::cast(&dimension))
        rotated->setDimLinePoint(rotated->dimLinePoint() + by);
    else if (auto* aligned = VcDbAlignedDimension::cast(&dimension))
        aligned->setDimLinePoint(aligned->dimLinePoint() + by);
    else if (auto* points = VcDb3PointAngularDimension::cast(&dimension))
        points->setArcPoint(points->arcPoint() + by);
    else if (auto* lines = VcDb2LineAngularDimension::cast(&dimension))
        lines->setArcPoint(lines->arcPoint() + by);
    if (dimension.isTextMoved())
        dimension.setTextPosition(dimension.textPosition() + by);
    dimension.recomputeDimBlock();
}

struct Member {
    VcDbDimension* dimension;
    VcGeVector3d across;
    double offset;  // from the base
};

// Nothing unless both are lines in one direction, or arcs about one vertex.
std::optional<Member> memberBeside(const Stand& base, VcDbDimension& dimension)
{
    auto stand = standOf(dimension);
    if (!stand || stand->isArc != base.isArc)
        return std::nullopt;
    const double same = stand->across.dotProduct(base.across);
    if (base.isArc ? stand->origin.distanceTo(base.origin) > 1e-6 * base.at : std::abs(same) < 1 - 1e-9)
        return std::nullopt;
    if (!base.isArc && same < 0) {
        stand->across = -stand->across;
        stand->at = -stand->at;
    }
    return Member{&dimension, stand->across, stand->at - base.at};
}

// Twice the height of the text, as the base has it.
double automaticStep(Editor& ed, const VcDbDimension& base)
{
    const VcDbDimVars vars = base.dimVars();
    const auto* style = ed.db().liveAs<VcDbTextStyleTableRecord>(vars.dimtxsty);
    const double scale = dim::overallScale(vars, ed.db(), dim::isInPaperSpace(base, ed.db()));
    return 2 * (style && style->textSize() > 0 ? style->textSize() : vars.dimtxt * scale);
}

// Outwards from the base on either side, in the order in which they stand.
void spaceOut(std::vector<Member>& members, double step)
{
    std::sort(members.begin(), members.end(), [](const Member& a, const Member& b) { return std::abs(a.offset) < std::abs(b.offset); });
    int above = 0, below = 0;
    for (const Member& m : members) {
        const double wanted = step * (m.offset < 0 ? -++below : ++above);
        moveLine(*m.dimension, m.across * (wanted - m.offset));
    }
}

void dimSpace(Editor& ed)
{
    auto* base = static_cast<VcDbDimension*>(
        pickOf<VcDbRotatedDimension, VcDbAlignedDimension, VcDb2LineAngularDimension, VcDb3PointAngularDimension>(
            ed, "Select base dimension", "A linear or angular dimension is wanted."));
    const auto stand = standOf(*base);
    if (!stand)
        throw CommandError{"The dimension has no direction to space others along."};
    ed.printLine("Select dimensions to space:");
    const auto objects = ed.select();
    std::vector<Member> members;
    std::size_t left = 0;
    for (const VcDbObjectId id : objects->ids()) {
        auto* dimension = ed.db().liveAs<VcDbDimension>(id);
        if (dimension == base)
            continue;
        const auto member = dimension ? memberBeside(*stand, *dimension) : std::nullopt;
        member ? members.push_back(*member) : void(++left);
    }
    if (left > 0)
        ed.report("{} {} not beside the base dimension and stayed as it was.", left, left == 1 ? "is" : "are");
    if (members.empty())
        return;
    const Answer a = ed.askDistance("Enter value or [Auto] <Auto>", {.keywords = "Auto", .bits = InitGet::NoNegative, .enterEnds = true});
    spaceOut(members, a.status == Answer::Status::Value ? a.real : automaticStep(ed, *base));
}

const HostCommand kCommands[] = {
    {"DIMSPACE", nullptr, kPlain, "Puts parallel dimension lines at even steps.", dimSpace},
};

}

std::span<const HostCommand> dimensionSpacingCommands() { return kCommands; }

}  // namespace vk::commands
