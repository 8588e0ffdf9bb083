// MOVE, COPY, ROTATE, SCALE, MIRROR.
#include "host/commands/copies.h"
#include "host/commands/displacement.h"
#include "host/commands/families.h"
#include "host/db/curve_of.h"
#include "host/db/database.h"
#include "host/edit/sysvars.h"
#include "sdk/vcdb_insert.h"
#include "sdk/vcdb_text.h"

namespace vk::commands {

namespace {

using namespace edit;

using Status = Answer::Status;

void move(Editor& ed)
{
    const auto objects = ed.select();
    if (objects->empty())
        return;
    const VcGeVector3d by =
        askDisplacement(ed, [&](const VcGePoint3d& base) { showMovedFrom(ed, *objects, base); });
    transformObjects(ed, *objects, inWorld(ed, VcGeMatrix3d::translation(by)));
}

// Copies from one base point, as often as the person likes.
class Copier {
public:
    Copier(Editor& ed, const SelectionSet& objects) : m_ed(ed), m_objects(objects) {}
    void run();

private:
    std::optional<VcGePoint3d> askBase();
    bool isSingle() const { return m_ed.vars().integer("COPYMODE") != 0; }
    void askMode();
    std::size_t place(const VcGeVector3d& by);  // how many could not be
    void placeOne(const VcGeVector3d& by) { reportNotCopied(m_ed, place(by)); }
    void array();
    void undo();

    Editor& m_ed;
    const SelectionSet& m_objects;
    VcGePoint3d m_base;
    std::vector<std::shared_ptr<SelectionSet>> m_made;
};

std::size_t Copier::place(const VcGeVector3d& by)
{
    PlacedCopies placed = placeCopies(m_ed, m_objects, inWorld(m_ed, VcGeMatrix3d::translation(by)));
    m_made.push_back(std::move(placed.objects));
    return placed.left;
}

void Copier::undo()
{
    if (m_made.empty())
        return m_ed.printLine("Everything has been undone.");
    for (const VcDbObjectId id : m_made.back()->ids())
        if (VcDbObject* object = m_ed.db().object(id))
            object->erase();
    m_made.pop_back();
}

void Copier::askMode()
{
    const char* now = isSingle() ? "Single" : "Multiple";
    const std::string word =
        m_ed.keyword(fmt::format("Enter a copy mode option [Single/Multiple] <{}>", now), "Single Multiple", now);
    m_ed.vars().set("COPYMODE", std::int32_t(word == "Single"));
}

// The copies of an array stand at even steps, or fill the way to the second point.
void Copier::array()
{
    const std::int64_t items =
        m_ed.integer("Enter number of items to array", {}, {.bits = InitGet::NoZero | InitGet::NoNegative});
    if (items < 2)
        throw CommandError{"An array needs two items or more."};
    const Answer a = m_ed.askPoint("Specify second point or [Fit]", {.keywords = "Fit", .from = m_base});
    VcGeVector3d step = a.point - m_base;
    if (a.status == Status::Keyword)
        step = (m_ed.point("Specify second point", {.from = m_base}) - m_base) / double(items - 1);
    std::size_t left = 0;
    for (std::int64_t i = 1; i < items; ++i) {
        m_ed.throwIfInterrupted();
        left += place(step * double(i));
    }
    reportNotCopied(m_ed, left);
}

// Nothing when a displacement was given instead, and the copy is made.
std::optional<VcGePoint3d> Copier::askBase()
{
    for (;;) {
        const Answer a = m_ed.askPoint("Specify base point or [Displacement/mOde] <Displacement>",
                                       {.keywords = "Displacement mOde", .enterEnds = true});
        if (a.status == Status::Value)
            return a.point;
        if (a.status == Status::Keyword && a.text == "mOde") {
            askMode();
            continue;
        }
        placeOne(askWholeDisplacement(m_ed));
        return std::nullopt;
    }
}

void Copier::run()
{
    m_ed.printLine(fmt::format("Current settings:  Copy mode = {}", isSingle() ? "Single" : "Multiple"));
    const auto base = askBase();
    if (!base)
        return;
    m_base = *base;
    for (bool first = true;; first = false) {
        showMovedFrom(m_ed, m_objects, m_base);
        const Answer a = first ? m_ed.askPoint("Specify second point or [Array] <use first point as displacement>",
                                               {.keywords = "Array", .from = m_base, .enterEnds = true})
                               : m_ed.askPoint("Specify second point or [Array/Exit/Undo] <Exit>",
                                               {.keywords = "Array Exit Undo", .from = m_base, .enterEnds = true});
        if (a.status == Status::Enter) {
            if (first)
                placeOne(m_base.asVector());
            return;
        }
        if (a.status == Status::Value)
            placeOne(a.point - m_base);
        else if (a.text == "Array")
            array();
        else if (a.text == "Undo")
            undo();
        else
            return;
        if (isSingle() || m_ed.isDriven())
            return;
    }
}

void copy(Editor& ed)
{
    const auto objects = ed.select();
    if (!objects->empty())
        Copier(ed, *objects).run();
}

void transformOrCopy(Editor& ed, const SelectionSet& objects, const VcGeMatrix3d& ucs, bool copies)
{
    if (copies)
        reportNotCopied(ed, placeCopies(ed, objects, inWorld(ed, ucs)).left);
    else
        transformObjects(ed, objects, inWorld(ed, ucs));
}

// Between two directions, the first typed or shown by two points.
double askReferenceTurn(Editor& ed, const VcGePoint3d& base)
{
    static double reference = 0;
    const Answer first =
        ed.askAngle(fmt::format("Specify the reference angle <{}>", turnText(ed, reference)), {.enterEnds = true});
    if (first.status == Status::Value)
        reference = first.real;
    const Answer second = ed.askAngle("Specify the new angle or [Points]", {.keywords = "Points", .from = base});
    if (second.status == Status::Value)
        return second.real - reference;
    const VcGePoint3d from = ed.point("Specify first point");
    const VcGePoint3d to = ed.point("Specify second point", {.from = from});
    return std::atan2(to.y - from.y, to.x - from.x) - reference;
}

void rotate(Editor& ed)
{
    const auto objects = ed.select();
    if (objects->empty())
        return;
    ed.printLine(fmt::format("Current positive angle in UCS:  ANGDIR={}  ANGBASE={}",
                             ed.vars().integer("ANGDIR") ? "clockwise" : "counterclockwise",
                             angleText(ed.vars().real("ANGBASE"))));
    const VcGePoint3d base = ed.point("Specify base point");
    static double known = 0;
    bool copies = false;
    for (;;) {
        showMoved(ed, *objects, [base](const VcGePoint3d& cursor) {
            return VcGeMatrix3d::rotation(std::atan2(cursor.y - base.y, cursor.x - base.x), VcGeVector3d::zAxis(),
                                          base);
        });
        const Answer a =
            ed.askAngle(fmt::format("Specify rotation angle or [Copy/Reference] <{}>", turnText(ed, known)),
                        {.keywords = "Copy Reference", .from = base, .enterEnds = true});
        if (a.status == Status::Keyword && a.text == "Copy") {
            ed.printLine("Rotating a copy of the selected objects.");
            copies = true;
            continue;
        }
        if (a.status != Status::Enter)
            known = a.status == Status::Keyword ? askReferenceTurn(ed, base) : a.real;
        return transformOrCopy(ed, *objects, VcGeMatrix3d::rotation(known, VcGeVector3d::zAxis(), base), copies);
    }
}

double askReferenceFactor(Editor& ed, const VcGePoint3d& base)
{
    constexpr int kPositive = InitGet::NoZero | InitGet::NoNegative;
    static double known = 1;
    const double reference = known = ed.distance("Specify reference length", known, {.bits = kPositive});
    const Answer a =
        ed.askDistance("Specify new length or [Points]", {.keywords = "Points", .from = base, .bits = kPositive});
    if (a.status == Status::Value)
        return a.real / reference;
    const VcGePoint3d from = ed.point("Specify first point");
    const double length = from.distanceTo(ed.point("Specify second point", {.from = from}));
    if (!(length > 0))
        throw CommandError{"The new length needs two different points."};
    return length / reference;
}

void scale(Editor& ed)
{
    const auto objects = ed.select();
    if (objects->empty())
        return;
    const VcGePoint3d base = ed.point("Specify base point");
    static double known = 1;
    bool copies = false;
    for (;;) {
        showMoved(ed, *objects, [base](const VcGePoint3d& cursor) {
            const double factor = cursor.distanceTo(base);
            return factor > 0 ? VcGeMatrix3d::scaling(factor, base) : VcGeMatrix3d();
        });
        const Answer a = ed.askDistance(fmt::format("Specify scale factor or [Copy/Reference] <{}>", lengthText(known)),
                                        {.keywords = "Copy Reference",
                                         .from = base,
                                         .bits = InitGet::NoZero | InitGet::NoNegative,
                                         .enterEnds = true});
        if (a.status == Status::Keyword && a.text == "Copy") {
            ed.printLine("Scaling a copy of the selected objects.");
            copies = true;
            continue;
        }
        if (a.status != Status::Enter)
            known = a.status == Status::Keyword ? askReferenceFactor(ed, base) : a.real;
        return transformOrCopy(ed, *objects, VcGeMatrix3d::scaling(known, base), copies);
    }
}

// Across the plane through the two points along the UCS's Z axis.
VcGeMatrix3d mirrorAcross(const VcGePoint3d& a, const VcGePoint3d& b)
{
    const double angle = std::atan2(b.y - a.y, b.x - a.x);
    const VcGeMatrix3d turn = VcGeMatrix3d::rotation(angle, VcGeVector3d::zAxis(), a);
    return turn * VcGeMatrix3d::scaling(VcGeScale3d(1, -1, 1), a) * turn.inverse();
}

// Turns a text over about the middle of its box, along or across its line: after a mirror it is then read as before, in
// the mirrored place. Of both ways the one that turns its direction less.
VcGeMatrix3d turnedOver(const VcDbEntity& text, const VcGeMatrix3d& mirror)
{
    const std::vector<geom::Curve> box = drawnCurves(text);
    const auto* outline = box.empty() ? nullptr : std::get_if<geom::Polyline3>(&box.front());
    if (!outline || outline->vertices.size() != 4)
        return {};
    const auto& v = outline->vertices;
    const VcGeVector3d along = v[1] - v[0], up = v[3] - v[0];
    const VcGePoint3d middle = v[0] + (v[2] - v[0]) * 0.5;
    const double kept = (mirror * along).normal().dotProduct(along.normal());
    // Where neither is nearer, what is read from left to right.
    const bool across = std::fabs(kept) > 1e-9 ? kept < 0 : (mirror * along).x < 0;
    const VcGeVector3d normal = across ? along : up;
    return normal.length() > 0 ? VcGeMatrix3d::mirroring(VcGePlane(middle, normal.normal())) : VcGeMatrix3d();
}

bool isText(const VcDbEntity& entity) { return entity.isKindOf(VcDbText::desc()); }

// With MIRRTEXT 0 texts, and the attributes of references, stay readable. Gives back what has no mirror image.
std::vector<VcDbObjectId> mirrorObjects(Editor& ed, const SelectionSet& objects, const VcGeMatrix3d& mirror)
{
    if (ed.vars().integer("MIRRTEXT") != 0)
        return transformWhatCan(ed, objects, mirror);
    SelectionSet others;
    for (const VcDbObjectId id : objects.ids()) {
        auto* entity = ed.db().liveAs<VcDbEntity>(id);
        if (entity && isText(*entity))
            entity->transformBy(mirror * turnedOver(*entity, mirror));
        else if (entity)
            others.add(id);
    }
    std::vector<std::pair<VcDbEntity*, VcGeMatrix3d>> attributes;
    for (const VcDbObjectId id : others.ids())
        if (const auto* reference = VcDbBlockReference::cast(ed.db().object(id)))
            for (VcDbEntity* attribute : reference->attributes())
                if (isText(*attribute))
                    attributes.emplace_back(attribute, mirror * turnedOver(*attribute, mirror) * mirror.inverse());
    std::vector<VcDbObjectId> left = transformWhatCan(ed, others, mirror);
    for (const auto& [attribute, back] : attributes)
        attribute->transformBy(back);
    return left;
}

void mirror(Editor& ed)
{
    const auto objects = ed.select();
    if (objects->empty())
        return;
    const VcGePoint3d a = ed.point("Specify first point of mirror line");
    showMoved(ed, *objects, [a](const VcGePoint3d& cursor) { return mirrorAcross(a, cursor); });
    const VcGePoint3d b = ed.point("Specify second point of mirror line", {.from = a});
    if (a.x == b.x && a.y == b.y)
        throw CommandError{"The mirror line needs two different points."};
    const bool erases = ed.keyword("Erase source objects? [Yes/No] <No>", "Yes No", "No") == "Yes";
    const VcGeMatrix3d mirror = inWorld(ed, mirrorAcross(a, b));
    if (erases)
        reportLeft(ed, mirrorObjects(ed, *objects, mirror).size());
    else
        reportNotCopied(ed, takeAway(ed, mirrorObjects(ed, *copied(ed, *objects), mirror)));
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
