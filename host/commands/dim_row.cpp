// DIMBASELINE, DIMCONTINUE: rows of linear, angular or ordinate dimensions that go on from one that is there.
#include "host/commands/dim_common.h"
#include "host/commands/families.h"
#include "sdk/vcdb_tables.h"

namespace vk::commands {

namespace {

using namespace edit;
using Made = std::unique_ptr<VcDbDimension>;

// From one dimension line to the next one further out.
double stepOut(Editor& ed)
{
    const VcDbDimVars vars = currentDimVars(ed);
    return vars.dimdli * currentDimScale(ed, vars);
}

// A linear dimension, in the UCS.
struct Line {
    VcGePoint3d first, second, through;
    double angle = 0;
};

Line lineOf(Editor& ed, const VcDbDimension& dimension)
{
    if (const auto* rotated = VcDbRotatedDimension::cast(&dimension))
        return {fromWorld(ed, rotated->xLine1Point()), fromWorld(ed, rotated->xLine2Point()),
                fromWorld(ed, rotated->dimLinePoint()), rotated->rotation() - ucsTwist(ed)};
    const auto& aligned = static_cast<const VcDbAlignedDimension&>(dimension);
    const VcGePoint3d first = fromWorld(ed, aligned.xLine1Point()), second = fromWorld(ed, aligned.xLine2Point());
    return {first, second, fromWorld(ed, aligned.dimLinePoint()), std::atan2(second.y - first.y, second.x - first.x)};
}

Made nextLinear(Editor& ed, const VcDbDimension& from, const VcGePoint3d& at, bool fromBase)
{
    const Line line = lineOf(ed, from);
    const VcGeVector3d up(-std::sin(line.angle), std::cos(line.angle), 0);
    const double side = (line.through - line.first).dotProduct(up) < 0 ? -1 : 1;
    const VcGePoint3d through = fromBase ? line.through + up * (side * stepOut(ed)) : line.through;
    auto made = std::make_unique<VcDbRotatedDimension>();
    made->setXLine1Point(toWorld(ed, fromBase ? line.first : line.second));
    made->setXLine2Point(toWorld(ed, at));
    made->setDimLinePoint(toWorld(ed, at + up * (through - at).dotProduct(up)));
    made->setRotation(line.angle + ucsTwist(ed));
    return made;
}

// An angular dimension, in the UCS: its rays in the order in which they were picked.
struct Angle {
    VcGePoint3d vertex, first, second, arc;
};

double directionOf(const VcGePoint3d& from, const VcGePoint3d& to) { return std::atan2(to.y - from.y, to.x - from.x); }
double turnedTo(double angle) { return std::fmod(std::fmod(angle, 2 * M_PI) + 2 * M_PI, 2 * M_PI); }

// The end of a line that lies on the ray in the dimension's sector, for lines that cross at the vertex.
VcGePoint3d rayEnd(const VcGePoint3d& vertex, const VcGePoint3d& a, const VcGePoint3d& b, const VcGeVector3d& ray)
{
    return (a - vertex).dotProduct(ray) > (b - vertex).dotProduct(ray) ? a : b;
}

std::optional<Angle> angleBetweenLines(Editor& ed, const VcDb2LineAngularDimension& d)
{
    const VcGePoint3d a = fromWorld(ed, d.xLine1Start()), b = fromWorld(ed, d.xLine1End()),
                      c = fromWorld(ed, d.xLine2Start()), e = fromWorld(ed, d.xLine2End()),
                      arc = fromWorld(ed, d.arcPoint());
    const VcGeVector3d u = b - a, v = e - c, w = c - a;
    const double cross = u.x * v.y - u.y * v.x;
    if (std::abs(cross) <= 1e-12 * u.length() * v.length())
        return std::nullopt;
    const VcGePoint3d vertex = a + u * ((w.x * v.y - w.y * v.x) / cross);
    // The arc's coordinates along the two lines tell the sector.
    const VcGeVector3d p = arc - vertex;
    const double alongU = (p.x * v.y - p.y * v.x) / cross, alongV = (u.x * p.y - u.y * p.x) / cross;
    const VcGeVector3d rayU = alongU < 0 ? -u : u, rayV = alongV < 0 ? -v : v;
    VcGePoint3d first = rayEnd(vertex, a, b, rayU), second = rayEnd(vertex, c, e, rayV);
    if ((first - vertex).dotProduct(rayU) <= 0)
        first = vertex + rayU;
    if ((second - vertex).dotProduct(rayV) <= 0)
        second = vertex + rayV;
    return Angle{vertex, first, second, arc};
}

std::optional<Angle> angleOf(Editor& ed, const VcDbDimension& dimension)
{
    if (const auto* lines = VcDb2LineAngularDimension::cast(&dimension))
        return angleBetweenLines(ed, *lines);
    const auto& points = static_cast<const VcDb3PointAngularDimension&>(dimension);
    return Angle{fromWorld(ed, points.centerPoint()), fromWorld(ed, points.xLine1Point()),
                 fromWorld(ed, points.xLine2Point()), fromWorld(ed, points.arcPoint())};
}

// A row from a base goes on turning the way that its base does; a continued one takes the smaller of the two angles.
Made nextAngular(Editor& ed, const VcDbDimension& from, const VcGePoint3d& at, bool fromBase)
{
    const auto base = angleOf(ed, from);
    if (!base || at.distanceTo(base->vertex) == 0)
        return nullptr;
    const VcGePoint3d origin = fromBase ? base->first : base->second;
    const double first = directionOf(base->vertex, base->first), second = directionOf(base->vertex, base->second),
                 arc = directionOf(base->vertex, base->arc), start = directionOf(base->vertex, origin);
    const bool baseTurnsLeft = turnedTo(arc - first) <= turnedTo(second - first);
    double sweep = turnedTo(directionOf(base->vertex, at) - start);
    const bool turnsLeft = fromBase ? baseTurnsLeft : sweep <= M_PI;
    if (!turnsLeft)
        sweep -= 2 * M_PI;
    const double radius = base->vertex.distanceTo(base->arc) + (fromBase ? stepOut(ed) : 0), middle = start + sweep / 2;
    auto made = std::make_unique<VcDb3PointAngularDimension>();
    made->setCenterPoint(toWorld(ed, base->vertex));
    made->setXLine1Point(toWorld(ed, origin));
    made->setXLine2Point(toWorld(ed, at));
    made->setArcPoint(toWorld(ed, base->vertex + VcGeVector3d(std::cos(middle), std::sin(middle), 0) * radius));
    return made;
}

// Leaders of a row of ordinates end on one line.
Made nextOrdinate(Editor& ed, const VcDbOrdinateDimension& from, const VcGePoint3d& at)
{
    const VcGePoint3d end = fromWorld(ed, from.leaderEndPoint());
    auto made = std::make_unique<VcDbOrdinateDimension>();
    made->setOrigin(from.origin());
    made->setDefiningPoint(toWorld(ed, at));
    made->setLeaderEndPoint(
        toWorld(ed, from.isUsingXAxis() ? VcGePoint3d(at.x, end.y, at.z) : VcGePoint3d(end.x, at.y, at.z)));
    from.isUsingXAxis() ? made->useXAxis() : made->useYAxis();
    return made;
}

bool isAngular(const VcDbDimension& d)
{
    return VcDb2LineAngularDimension::cast(&d) || VcDb3PointAngularDimension::cast(&d);
}

Made nextOf(Editor& ed, const VcDbDimension& from, const VcGePoint3d& at, bool fromBase)
{
    if (const auto* ordinate = VcDbOrdinateDimension::cast(&from))
        return nextOrdinate(ed, *ordinate, at);
    return isAngular(from) ? nextAngular(ed, from, at, fromBase) : nextLinear(ed, from, at, fromBase);
}

// Where the rubber band of the next question begins.
VcGePoint3d originOf(Editor& ed, const VcDbDimension& from, bool fromBase)
{
    if (const auto* ordinate = VcDbOrdinateDimension::cast(&from))
        return fromWorld(ed, ordinate->leaderEndPoint());
    if (isAngular(from)) {
        const auto angle = angleOf(ed, from);
        return !angle ? VcGePoint3d() : fromBase ? angle->first : angle->second;
    }
    const Line line = lineOf(ed, from);
    return fromBase ? line.first : line.second;
}

VcDbDimension* select(Editor& ed, bool fromBase)
{
    return static_cast<VcDbDimension*>(
        pickOf<VcDbRotatedDimension, VcDbAlignedDimension, VcDb2LineAngularDimension, VcDb3PointAngularDimension,
               VcDbOrdinateDimension>(ed, fromBase ? "Select base dimension" : "Select continued dimension",
                                      "A linear, ordinate or angular dimension is wanted.", true));
}

VcDbDimension* lastOne(Editor& ed)
{
    auto* last = ed.db().liveAs<VcDbDimension>(lastDimension());
    return last && last->ownerId() == ed.db().currentSpace() ? last : nullptr;
}

DimMeasure measureOf(const VcDbDimension& from, double value)
{
    return {value, isAngular(from) ? DimMeasure::Kind::Angle : DimMeasure::Kind::Length};
}

class Row {
public:
    Row(Editor& ed, bool fromBase) : m_ed(ed), m_fromBase(fromBase) {}

    void run()
    {
        m_from = lastOne(m_ed);
        if (!m_from)
            m_from = select(m_ed, m_fromBase);
        while (m_from) {
            const Answer a = ask();
            if (a.status == Answer::Status::Value)
                add(a.point);
            else if (a.status == Answer::Status::Keyword && a.text == "Undo")
                takeBack();
            else
                m_from = select(m_ed, m_fromBase);
        }
    }

private:
    Answer ask()
    {
        const bool isOrdinate = VcDbOrdinateDimension::cast(m_from) != nullptr;
        return m_ed.askPoint(
            isOrdinate ? "Specify feature location or [Select/Undo] <Select>"
                       : "Specify second extension line origin or [Select/Undo] <Select>",
            {.keywords = "Select Undo", .from = originOf(m_ed, *m_from, m_fromBase), .enterEnds = true});
    }

    void add(const VcGePoint3d& at)
    {
        Made made = nextOf(m_ed, *m_from, at, m_fromBase);
        if (!made)
            return m_ed.printLine("That point gives no angle.");
        const NewDimension added = addDimension(m_ed, std::move(made), {});
        reportMeasure(m_ed, measureOf(*m_from, added.measurement));
        m_steps.push_back({m_from->objectId(), added.id});
        goOnFrom(added.id);
    }

    // Loose lines are nothing that a row could go on from.
    void goOnFrom(VcDbObjectId id)
    {
        lastDimension() = id;
        m_from = m_ed.db().liveAs<VcDbDimension>(id);
    }

    void takeBack()
    {
        if (m_steps.empty())
            return m_ed.printLine("There is nothing to take back.");
        m_ed.db().object(m_steps.back().made)->erase();
        goOnFrom(m_steps.back().from);
        m_steps.pop_back();
    }

    struct Step {
        VcDbObjectId from, made;
    };
    Editor& m_ed;
    bool m_fromBase;
    VcDbDimension* m_from = nullptr;
    std::vector<Step> m_steps;
};

void dimBaseline(Editor& ed) { Row(ed, true).run(); }
void dimContinue(Editor& ed) { Row(ed, false).run(); }

const HostCommand kCommands[] = {
    {"DIMBASELINE", "DBA", kPlain, "Goes on from the first line of a dimension.", dimBaseline},
    {"DIMCONTINUE", "DCO", kPlain, "Goes on from the second line of a dimension.", dimContinue},
};

}

std::span<const HostCommand> dimensionRowCommands() { return kCommands; }

}  // namespace vk::commands
