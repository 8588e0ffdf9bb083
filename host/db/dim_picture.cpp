#include "host/db/dim_picture.h"

#include "host/base/unicode.h"
#include "host/db/database.h"
#include "host/db/dim_block_users.h"
#include "host/db/dim_figure.h"
#include "host/db/ent_util.h"
#include "host/db/scale_list.h"
#include "host/db/standard_objects.h"
#include "host/db/text_geometry.h"
#include "sdk/vcdb_curves.h"
#include "sdk/vcdb_faces.h"
#include "sdk/vcdb_insert.h"
#include "sdk/vcdb_objects.h"
#include "sdk/vcdb_records.h"
#include "sdk/vcdb_text.h"

#include <algorithm>

namespace vk::dim {

namespace {

// Definition points stand on a layer that is never plotted.
constexpr const char* kMarkLayer = "Defpoints";

const DatabaseCore* drawingOf(const VcDbEntity& entity, VcDbObjectId style)
{
    const DatabaseCore* db = DatabaseCore::of(entity.objectId());
    return db ? db : DatabaseCore::of(style);
}

const VcDbDictionary* entry(const DatabaseCore& db, const char* name)
{
    const auto* root = db.objectAs<VcDbDictionary>(db.rootDictionary());
    return root ? db.liveAs<VcDbDictionary>(root->find(name)) : nullptr;
}

// How many units of the model one unit of paper shows, by the current annotation scale.
double annotationScale(const DatabaseCore& db)
{
    const VcDbDictionary* variables = entry(db, "AcDbVariableDictionary");
    const auto* current = variables ? db.liveAs<VcDbDictionaryVar>(variables->find("CANNOSCALE")) : nullptr;
    const VcDbScale* scale = current ? scaleNamed(db, current->valueUtf8()) : nullptr;
    return scale ? scale->drawingUnits() / scale->paperUnits() : 1;
}

// Blocks whose arrows have no body: the dimension line goes through to their tip.
bool isBodiless(const std::string& name)
{
    static constexpr std::string_view kNames[] = {"_OBLIQUE", "_ARCHTICK", "_NONE", "_SMALL", "_DOTSMALL", "_INTEGRAL"};
    return std::any_of(std::begin(kNames), std::end(kNames), [&](std::string_view n) { return equalNoCase(n, name); });
}

ArrowKind arrowKind(const DatabaseCore& db, const VcDbDimVars& vars, VcDbObjectId block)
{
    if (vars.dimtsz > 0)
        return {{}, true, true};
    return {block, false, arrowHasNoBody(db, block)};
}

}

bool isInPaperSpace(const VcDbEntity& entity, const DatabaseCore& db)
{
    const auto* owner = db.objectAs<VcDbBlockTableRecord>(entity.ownerId());
    return owner && owner->isLayout() && owner->objectId() != db.modelSpace();
}

bool arrowHasNoBody(const DatabaseCore& db, VcDbObjectId block)
{
    const auto* record = db.liveAs<VcDbBlockTableRecord>(block);
    return record && isBodiless(record->nameUtf8());
}

// The standard arrow is a filled triangle, a third as wide as long.
std::unique_ptr<VcDbEntity> arrowPiece(const DatabaseCore& db, VcDbObjectId block, const VcGePoint3d& tip,
                                       double direction, double size)
{
    if (!db.liveAs<VcDbBlockTableRecord>(block)) {
        const VcGeVector2d flatBack = unit(direction) * -size, flatSide = left(unit(direction)) * (size / 6);
        const VcGeVector3d back(flatBack.x, flatBack.y, 0), side(flatSide.x, flatSide.y, 0);
        return std::make_unique<VcDbSolid>(tip + back + side, tip + back - side, tip, tip);
    }
    auto reference = std::make_unique<VcDbBlockReference>(tip, block);
    reference->setScaleFactors(VcGeScale3d(size));
    reference->setRotation(turned(direction));
    return reference;
}

double overallScale(const VcDbDimVars& vars, const DatabaseCore& db, bool inPaperSpace)
{
    if (vars.dimscale > 0)
        return vars.dimscale;
    return inPaperSpace ? 1 : annotationScale(db);
}

namespace {

void takeTextStyle(Drawing& d)
{
    d.style = textStyleSpec(d.vars.dimtxsty, d.db);
    const bool hasStyle = d.db->liveAs<VcDbTextStyleTableRecord>(d.vars.dimtxsty) != nullptr;
    d.styleId = hasStyle ? d.vars.dimtxsty : d.db->findRecord(NameTable::TextStyle, "Standard");
    d.textHeight = d.style.fixedHeight > 0 ? d.style.fixedHeight : d.scaled(d.vars.dimtxt);
}

void takePlace(Drawing& d, const VcDbDimension& dimension, const VcGePoint3d& onPlane)
{
    const VcGeVector3d normal = dimension.normal();
    const double height = onPlane.asVector().dotProduct(normal);
    d.frame = geom::arbitraryFrame(normal, VcGePoint3d() + normal * height);
    d.horizontal = -dimension.horizontalRotation();
    if (dimension.isTextMoved())
        d.userText = d.flat(dimension.textPosition());
    if (dimension.textRotation() != 0)
        d.userAngle = dimension.textRotation();
}

Drawing drawingFor(const VcDbDimension& dimension, DatabaseCore& db, bool inPaperSpace, const VcGePoint3d& onPlane)
{
    Drawing d;
    d.db = &db;
    d.vars = dimension.dimVars();
    d.scale = overallScale(d.vars, db, inPaperSpace);
    d.arrow = d.scaled(std::max(0.0, d.vars.dimasz));
    d.gap = d.scaled(std::abs(d.vars.dimgap));
    d.hasBox = d.vars.dimgap < 0;
    const VcDbObjectId first = d.vars.dimsah ? d.vars.dimblk1 : d.vars.dimblk,
                       second = d.vars.dimsah ? d.vars.dimblk2 : d.vars.dimblk;
    d.arrows[0] = arrowKind(db, d.vars, first);
    d.arrows[1] = arrowKind(db, d.vars, second);
    d.flipped[0] = dimension.isArrowFlipped(false);
    d.flipped[1] = dimension.isArrowFlipped(true);
    d.lineSpacing = dimension.textLineSpacingFactor();
    d.exactSpacing = dimension.textLineSpacingStyle() == 2;
    takeTextStyle(d);
    takePlace(d, dimension, onPlane);
    return d;
}

// A point that the class keeps in the plane of its dimension line.
VcGePoint3d pointOnPlane(const VcDbDimension& dimension)
{
    if (const auto* aligned = VcDbAlignedDimension::cast(&dimension))
        return aligned->dimLinePoint();
    if (const auto* rotated = VcDbRotatedDimension::cast(&dimension))
        return rotated->dimLinePoint();
    if (const auto* angle = VcDb2LineAngularDimension::cast(&dimension))
        return angle->arcPoint();
    if (const auto* angle = VcDb3PointAngularDimension::cast(&dimension))
        return angle->arcPoint();
    if (const auto* arc = VcDbArcDimension::cast(&dimension))
        return arc->arcPoint();
    if (const auto* radius = VcDbRadialDimension::cast(&dimension))
        return radius->chordPoint();
    if (const auto* diameter = VcDbDiametricDimension::cast(&dimension))
        return diameter->chordPoint();
    if (const auto* jogged = VcDbRadialDimensionLarge::cast(&dimension))
        return jogged->chordPoint();
    if (const auto* ordinate = VcDbOrdinateDimension::cast(&dimension))
        return ordinate->definingPoint();
    return dimension.textPosition();
}

Figure figureOf(Drawing& d, const VcDbDimension& dimension, bool paper)
{
    if (dimension.isKindOf(VcDbAlignedDimension::desc()) || dimension.isKindOf(VcDbRotatedDimension::desc()))
        return linearFigure(d, dimension, paper);
    if (const auto* arc = VcDbArcDimension::cast(&dimension))
        return arcLengthFigure(d, *arc, paper);
    if (dimension.isKindOf(VcDb2LineAngularDimension::desc()) || dimension.isKindOf(VcDb3PointAngularDimension::desc()))
        return angularFigure(d, dimension, paper);
    if (const auto* jogged = VcDbRadialDimensionLarge::cast(&dimension))
        return joggedFigure(d, *jogged, paper);
    if (const auto* ordinate = VcDbOrdinateDimension::cast(&dimension))
        return ordinateFigure(d, *ordinate, paper);
    return radialFigure(d, dimension, paper);
}

// Entities in the plane, then taken to the world.
class Draughtsman {
public:
    Draughtsman(const Drawing& d, Picture& picture) : m_d(d), m_picture(picture)
    {
        m_props.layer = d.db->findRecord(NameTable::Layer, "0");
        m_props.lineWeight = VcDb::kLnWtByBlock;
        m_byBlock = d.db->findRecord(NameTable::Linetype, "ByBlock");
        m_toWorld.setCoordSystem(d.frame.origin, d.frame.x, d.frame.y, d.frame.z);
        m_isFlat = d.frame.z == VcGeVector3d::zAxis() && d.frame.origin == VcGePoint3d();
    }

    void draw(const Figure& figure)
    {
        for (const Stroke& s : figure.strokes)
            add(std::make_unique<VcDbLine>(at(s.from), at(s.to)), s.part);
        for (const Bow& b : figure.bows)
            add(std::make_unique<VcDbArc>(at(b.center), VcGeVector3d::zAxis(), b.radius, turned(b.start),
                                          turned(b.start + b.sweep)),
                b.part);
        for (const Arrow& a : figure.arrows)
            addArrow(a);
        for (const Label& l : figure.labels)
            addLabel(l);
        for (const VcGePoint3d& p : figure.marks)
            addMark(p);
    }

private:
    static VcGePoint3d at(const VcGePoint2d& p) { return {p.x, p.y, 0}; }

    void add(std::unique_ptr<VcDbEntity> entity, Part part)
    {
        const VcDbDimVars& v = m_d.vars;
        const bool extension = part == Part::Extension1 || part == Part::Extension2 || part == Part::CenterMark;
        EntityProps props = m_props;
        props.color = VcCmColor::fromIndex(extension ? v.dimclre : v.dimclrd);
        props.lineWeight = extension ? v.dimlwe : v.dimlwd;
        const VcDbObjectId type = part == Part::Extension1   ? v.dimltex1
                                  : part == Part::Extension2 ? v.dimltex2
                                                             : v.dimltype;
        props.linetype = type.isNull() || part == Part::Frame || part == Part::CenterMark ? m_byBlock : type;
        put(std::move(entity), props);
    }

    void put(std::unique_ptr<VcDbEntity> entity, const EntityProps& props)
    {
        if (!m_isFlat)
            entity->transformBy(m_toWorld);
        entity->carryProps(props);
        if (isDrawable(*entity))
            m_picture.pieces.push_back(std::move(entity));
    }

    // Points at the ends of the range of numbers leave no directions between them.
    static bool isDrawable(const VcDbEntity& entity)
    {
        VcDbExtents box;
        return entity.getGeomExtents(box) != Vcad::eOk || std::isfinite(box.minPoint().distanceTo(box.maxPoint()));
    }

    // Ticks of DIMTSZ reach that far to both sides.
    void addArrow(const Arrow& arrow)
    {
        const ArrowKind& kind = m_d.arrows[arrow.second];
        if (kind.isTick) {
            const VcGeVector2d slant = unit(arrow.direction + kPi / 4) * (m_d.scaled(m_d.vars.dimtsz) * std::sqrt(2.0));
            return add(std::make_unique<VcDbLine>(at(arrow.tip - slant), at(arrow.tip + slant)), Part::Frame);
        }
        if (m_d.arrow <= 0)
            return;
        add(arrowPiece(*m_d.db, kind.block, at(arrow.tip), arrow.direction, m_d.arrow), Part::Frame);
    }

    void addLabel(const Label& label)
    {
        auto text = std::make_unique<VcDbMText>();
        text->setContentsUtf8(label.contents);
        text->setTextStyle(m_d.styleId);
        text->setTextHeight(m_d.textHeight);
        text->setAttachment(VcDbMText::kMiddleCenter);
        text->setFlowDirection(VcDbMText::kLtoR);
        text->setLocation(at(label.middle));
        if (const double angle = turned(label.angle); angle != 0)
            text->setRotation(angle);
        text->setLineSpacingStyle(m_d.exactSpacing ? VcDb::kExactly : VcDb::kAtLeast);
        text->setLineSpacingFactor(m_d.lineSpacing);
        fill(*text);
        EntityProps props = m_props;
        props.color = VcCmColor::fromIndex(m_d.vars.dimclrt);
        props.linetype = m_byBlock;
        put(std::move(text), props);
    }

    void fill(VcDbMText& text) const
    {
        if (m_d.vars.dimtfill == 0)
            return;
        text.setBackgroundFill(true);
        text.setBackgroundScaleFactor(1.25);
        if (m_d.vars.dimtfill == 2)
            text.setBackgroundFillColor(VcCmColor::fromIndex(m_d.vars.dimtfillclr));
    }

    void addMark(const VcGePoint3d& p)
    {
        EntityProps props = m_props;
        if (const VcDbObjectId layer = m_d.db->findRecord(NameTable::Layer, kMarkLayer); !layer.isNull())
            props.layer = layer;
        props.color = VcCmColor::fromIndex(VcCmColor::kAciByBlock);
        props.linetype = m_byBlock;
        auto point = std::make_unique<VcDbPoint>(p);
        point->carryProps(props);
        if (isDrawable(*point))
            m_picture.pieces.push_back(std::move(point));
    }

    const Drawing& m_d;
    Picture& m_picture;
    EntityProps m_props;
    VcDbObjectId m_byBlock;
    VcGeMatrix3d m_toWorld;
    bool m_isFlat;
};

}

Picture pictureOf(const VcDbDimension& dimension)
{
    Picture picture;
    const DatabaseCore* found = drawingOf(dimension, dimension.dimensionStyle());
    DatabaseCore* db = found ? DatabaseCore::bySerial(found->serial()) : nullptr;
    if (!db)
        return picture;
    const bool paper = isInPaperSpace(dimension, *db);
    Drawing d = drawingFor(dimension, *db, paper, pointOnPlane(dimension));
    const Figure figure = figureOf(d, dimension, paper);
    Draughtsman(d, picture).draw(figure);
    picture.measurement = figure.measurement;
    for (const Arrow& arrow : figure.arrows)
        picture.arrows.emplace_back(d.frame.toWorld(VcGePoint3d(arrow.tip.x, arrow.tip.y, 0)), arrow.second);
    const VcGePoint2d& middle = figure.textMiddle;
    picture.textMiddle = d.frame.toWorld(VcGePoint3d(middle.x, middle.y, 0));
    return picture;
}

bool isBlockShared(const VcDbDimension& dimension)
{
    const DatabaseCore* db = DatabaseCore::of(dimension.objectId());
    return db && !dimension.dimBlockId().isNull() && BlockUsers::of(*db).count(dimension.dimBlockId()) > 1;
}

namespace {

void ensureMarkLayer(DatabaseCore& db)
{
    if (!db.findRecord(NameTable::Layer, kMarkLayer).isNull())
        return;
    auto* layer = db.objectAs<VcDbLayerTableRecord>(db.recordFor(NameTable::Layer, kMarkLayer));
    layer->setImplicit(false);
    layer->setLinetypeObjectId(db.findRecord(NameTable::Linetype, "Continuous"));
    layer->setIsPlottable(false);
}

VcDbBlockTableRecord& newBlock(DatabaseCore& db)
{
    BlockUsers& users = BlockUsers::of(db);
    const auto& table = db.table(NameTable::Block);
    std::string name;
    do
        name = "*D" + std::to_string(users.nextNumber++);
    while (!table.find(name, true).isNull());
    VcDbBlockTableRecord& record = addBlockRecord(db, name);
    record.setBlockFlags(std::int16_t(record.blockFlags() | 1));
    return record;
}

VcDbBlockTableRecord& blockFor(DatabaseCore& db, const VcDbDimension& dimension)
{
    auto* own = db.liveAs<VcDbBlockTableRecord>(dimension.dimBlockId());
    const bool reusable =
        own && own->nameUtf8().size() > 1 && equalNoCase(std::string_view(own->nameUtf8()).substr(0, 2), "*D");
    if (!reusable || isBlockShared(dimension))
        return newBlock(db);
    for (const std::uint32_t slot : std::vector<std::uint32_t>(own->memberSlots()))
        if (VcDbObject* member = db.objectAt(slot); member && !member->isErased())
            member->erase();
    return *own;
}

}

Vcad::ErrorStatus remakePicture(VcDbDimension& dimension)
{
    DatabaseCore* db = DatabaseCore::of(dimension.objectId());
    if (!db)
        return Vcad::eNoDatabase;
    if (db->loading || dimension.isErased())
        return Vcad::eNotApplicable;
    ensureMarkLayer(*db);
    Picture picture = pictureOf(dimension);
    VcDbBlockTableRecord& block = blockFor(*db, dimension);
    for (auto& piece : picture.pieces) {
        VcDbEntity* entity = piece.release();
        if (block.appendVcDbEntity(entity))
            delete entity;
        else
            entity->close();
    }
    dimension.pictureMade(block.objectId(), picture.measurement, picture.textMiddle);
    return Vcad::eOk;
}

void inheritFrom(VcDbEntity& piece, const VcDbEntity& owner)
{
    const EntityProps& from = owner.props();
    const DatabaseCore* db = DatabaseCore::of(from.layer);
    if (!db)
        return;
    EntityProps props = piece.props();
    if (props.layer == db->findRecord(NameTable::Layer, "0"))
        props.layer = from.layer;
    if (props.color.isByBlock())
        props.color = from.color;
    if (props.linetype == db->findRecord(NameTable::Linetype, "ByBlock"))
        props.linetype = from.linetype;
    if (props.lineWeight == VcDb::kLnWtByBlock)
        props.lineWeight = from.lineWeight;
    piece.carryProps(props);
}

}  // namespace vk::dim
