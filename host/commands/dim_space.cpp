// DIMSPACE: parallel dimension lines, and arcs about one vertex, at even steps from one of them.
#include "host/commands/dim_common.h"
#include "host/commands/dim_stand.h"
#include "host/commands/families.h"
#include "host/db/dim_picture.h"
#include "sdk/vcdb_records.h"

namespace vk::commands {

namespace {

using namespace edit;

// Text that a person has put somewhere goes along.
void moveWhole(VcDbDimension& dimension, const VcGeVector3d& by)
{
    moveLine(dimension, by);
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
std::optional<Member> memberBeside(const DimStand& base, VcDbDimension& dimension)
{
    auto stand = dimStandOf(dimension);
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
    std::sort(members.begin(), members.end(),
              [](const Member& a, const Member& b) { return std::abs(a.offset) < std::abs(b.offset); });
    int above = 0, below = 0;
    for (const Member& m : members) {
        const double wanted = step * (m.offset < 0 ? -++below : ++above);
        moveWhole(*m.dimension, m.across * (wanted - m.offset));
    }
}

void dimSpace(Editor& ed)
{
    auto* base = static_cast<VcDbDimension*>(
        pickOf<VcDbRotatedDimension, VcDbAlignedDimension, VcDb2LineAngularDimension, VcDb3PointAngularDimension>(
            ed, "Select base dimension", "A linear or angular dimension is wanted."));
    const auto stand = dimStandOf(*base);
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
    const Answer a = ed.askDistance("Enter value or [Auto] <Auto>",
                                    {.keywords = "Auto", .bits = InitGet::NoNegative, .enterEnds = true});
    spaceOut(members, a.status == Answer::Status::Value ? a.real : automaticStep(ed, *base));
}

const HostCommand kCommands[] = {
    {"DIMSPACE", nullptr, kPlain, "Puts parallel dimension lines at even steps.", dimSpace},
};

}

std::span<const HostCommand> dimensionSpacingCommands() { return kCommands; }

}  // namespace vk::commands
