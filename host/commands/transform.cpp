// MOVE, COPY, ROTATE, SCALE, MIRROR.
#include "host/commands/copies.h"
#include "host/commands/families.h"
#include "host/db/database.h"
#include "host/edit/sysvars.h"
#include "sdk/vcdb_tables.h"

namespace vk::commands {

namespace {

using namespace edit;

// A base and a second point, or a displacement: Enter at the second point takes the first as one.
struct BaseAndDisplacement {
    VcGePoint3d base;
    VcGeVector3d displacement;
    bool once = false;
};

BaseAndDisplacement askDisplacement(Editor& ed)
{
    const Answer base = ed.askPoint("Specify base point or [Displacement] <Displacement>", {.keywords = "Displacement", .enterEnds = true});
    if (base.status != Answer::Status::Value)
        return {{}, ed.point("Specify displacement").asVector(), true};
    const Answer second = ed.askPoint("Specify second point or <use first point as displacement>", {.from = base.point, .enterEnds = true});
    if (second.status == Answer::Status::Enter)
        return {{}, base.point.asVector(), true};
    return {base.point, second.point - base.point};
}

void move(Editor& ed)
{
    const auto objects = ed.select();
    if (objects->empty())
        return;
    transformObjects(ed, *objects, inWorld(ed, VcGeMatrix3d::translation(askDisplacement(ed).displacement)));
}

void copy(Editor& ed)
{
    const auto objects = ed.select();
    if (objects->empty())
        return;
    const BaseAndDisplacement first = askDisplacement(ed);
    transformObjects(ed, *copied(ed, *objects), inWorld(ed, VcGeMatrix3d::translation(first.displacement)));
    while (!first.once && !ed.isDriven()) {
        const Answer a = ed.askPoint("Specify second point or [Exit] <Exit>", {.keywords = "Exit", .from = first.base, .enterEnds = true});
        if (a.status != Answer::Status::Value)
            return;
        transformObjects(ed, *copied(ed, *objects), inWorld(ed, VcGeMatrix3d::translation(a.point - first.base)));
    }
}

void rotate(Editor& ed)
{
    const auto objects = ed.select();
    if (objects->empty())
        return;
    const VcGePoint3d base = ed.point("Specify base point");
    bool copies = false;
    for (;;) {
        const Answer a = ed.askAngle("Specify rotation angle or [Copy/Reference]", {.keywords = "Copy Reference", .from = base});
        if (a.status == Answer::Status::Keyword && a.text == "Copy") {
            copies = true;
            continue;
        }
        double angle = a.real;
        if (a.status == Answer::Status::Keyword) {
            const double reference = ed.askAngle("Specify the reference angle").real;
            angle = ed.askAngle("Specify the new angle", {.from = base}).real - reference;
        }
        const auto targets = copies ? copied(ed, *objects) : objects;
        return transformObjects(ed, *targets, inWorld(ed, VcGeMatrix3d::rotation(angle, VcGeVector3d::zAxis(), base)));
    }
}

void scale(Editor& ed)
{
    const auto objects = ed.select();
    if (objects->empty())
        return;
    const VcGePoint3d base = ed.point("Specify base point");
    constexpr int kPositive = InitGet::NoZero | InitGet::NoNegative;
    bool copies = false;
    for (;;) {
        const Answer a = ed.askDistance("Specify scale factor or [Copy/Reference]", {.keywords = "Copy Reference", .from = base, .bits = kPositive});
        if (a.status == Answer::Status::Keyword && a.text == "Copy") {
            copies = true;
            continue;
        }
        double factor = a.real;
        if (a.status == Answer::Status::Keyword) {
            const double reference = ed.distance("Specify reference length", 1.0, {.bits = kPositive});
            factor = ed.askDistance("Specify new length", {.from = base, .bits = kPositive}).real / reference;
        }
        const auto targets = copies ? copied(ed, *objects) : objects;
        return transformObjects(ed, *targets, inWorld(ed, VcGeMatrix3d::scaling(factor, base)));
    }
}

// Across the plane through the two points along the UCS's Z axis.
VcGeMatrix3d mirrorAcross(const VcGePoint3d& a, const VcGePoint3d& b)
{
    const double angle = std::atan2(b.y - a.y, b.x - a.x);
    const VcGeMatrix3d turn = VcGeMatrix3d::rotation(angle, VcGeVector3d::zAxis(), a);
    return turn * VcGeMatrix3d::scaling(VcGeScale3d(1, -1, 1), a) * turn.inverse();
}

void mirror(Editor& ed)
{
    const auto objects = ed.select();
    if (objects->empty())
        return;
    const VcGePoint3d a = ed.point("Specify first point of mirror line");
    const VcGePoint3d b = ed.point("Specify second point of mirror line", {.from = a});
    if (a.distanceTo(b) == 0)
        throw CommandError{"The mirror line needs two different points."};
    const bool erases = ed.keyword("Erase source objects? [Yes/No] <No>", "Yes No", "No") == "Yes";
    transformObjects(ed, *(erases ? objects : copied(ed, *objects)), inWorld(ed, mirrorAcross(a, b)));
}

const HostCommand kCommands[] = {
    {"MOVE", "M", kUsesPickSet, "Moves objects.", move},
    {"COPY", "CO", kUsesPickSet | kActsOnceDriven, "Copies objects.", copy},
    {"ROTATE", "RO", kUsesPickSet, "Turns objects about a point.", rotate},
    {"SCALE", "SC", kUsesPickSet, "Enlarges or reduces objects.", scale},
    {"MIRROR", "MI", kUsesPickSet, "Mirrors objects across a line.", mirror},
};

}

std::span<const HostCommand> transformCommands() { return kCommands; }

}
