// References to blocks: one, or a grid of them. The position is in the reference's own coordinates.
#include "host/db/database.h"
#include "host/db/ent_factories.h"
#include "host/db/ent_insert.h"
#include "host/db/ent_util.h"
#include "host/db/kept_extents.h"
#include "host/geom/arbitrary_axis.h"
#include "sdk/vcdb_insert.h"
#include "sdk/vcdb_text.h"

VCDB_DEFINE(VcDbBlockReference, VcDbEntity, "INSERT")
VCDB_DEFINE(VcDbMInsertBlock, VcDbBlockReference, "INSERT")

static constexpr char kMarker[] = "AcDbBlockReference", kGridMarker[] = "AcDbMInsertBlock";

using vk::geom::fromWorld;
using vk::geom::toWorld;

std::unique_ptr<VcDbObject> createInsert(std::int64_t columns, std::int64_t rows, std::string_view lastMarker)
{
    if (columns > 1 || rows > 1 || lastMarker == kGridMarker)
        return std::make_unique<VcDbMInsertBlock>();
    return std::make_unique<VcDbBlockReference>();
}

VcDbBlockReference::VcDbBlockReference(const VcGePoint3d& position, VcDbObjectId block)
    : m_position(position), m_block(block)
{
}

Vcad::ErrorStatus VcDbBlockReference::setBlockTableRecord(VcDbObjectId block)
{
    return setMember(*this, m_block, block, mayReferTo(*this, block, VcDbBlockTableRecord::desc()));
}

VcGePoint3d VcDbBlockReference::position() const { return toWorld(m_position, normal()); }

Vcad::ErrorStatus VcDbBlockReference::setPosition(const VcGePoint3d& p)
{
    return setMember(*this, m_position, fromWorld(p, normal()), isFinite(p));
}

Vcad::ErrorStatus VcDbBlockReference::setScaleFactors(const VcGeScale3d& s)
{
    const auto isScale = [](double f) { return f != 0 && isFinite(f); };
    return setMember(*this, m_scale, s, isScale(s.sx) && isScale(s.sy) && isScale(s.sz));
}

Vcad::ErrorStatus VcDbBlockReference::setRotation(double a) { return setMember(*this, m_rotation, a, isFinite(a)); }

Vcad::ErrorStatus VcDbBlockReference::setNormal(const VcGeVector3d& n)
{
    const VcGePoint3d stays = position();
    const Vcad::ErrorStatus status = setNormalOf(*this, m_extrusion, n);
    if (!status)
        m_position = fromWorld(stays, normal());
    return status;
}

VcGeMatrix3d VcDbBlockReference::matrixWithBase(const VcGePoint3d& base) const
{
    const VcGeVector3d z = VcGeVector3d::zAxis();
    return VcGeMatrix3d::planeToWorld(normal()) * VcGeMatrix3d::translation(m_position.asVector()) *
           VcGeMatrix3d::rotation(m_rotation, z) * VcGeMatrix3d::scaling(m_scale) *
           VcGeMatrix3d::translation(-base.asVector());
}

VcGeMatrix3d VcDbBlockReference::blockTransform() const
{
    const DatabaseCore* db = DatabaseCore::of(m_block);
    const auto* record = db ? db->objectAs<VcDbBlockTableRecord>(m_block) : nullptr;
    return matrixWithBase(record ? record->origin() : VcGePoint3d());
}

// Attributes

VcDbObjectIterator* VcDbBlockReference::attributeIterator() const { return new VcDbObjectIterator(m_attributes.ids()); }

Vcad::ErrorStatus VcDbBlockReference::appendAttribute(VcDbObjectId& id, VcDbAttribute* attribute)
{
    return m_attributes.append(*this, id, attribute);
}

Vcad::ErrorStatus VcDbBlockReference::appendAttribute(VcDbAttribute* attribute)
{
    VcDbObjectId id;
    return appendAttribute(id, attribute);
}

// Geometry

namespace {

// What a matrix does to the axes of a reference: its new scale and rotation, or nothing when they become oblique.
struct AxesMove {
    VcGeScale3d scale;
    double rotation;
};

std::optional<AxesMove> axesMove(const PlaneMove& move, const VcGeScale3d& scale, double rotation)
{
    const double c = std::cos(rotation), s = std::sin(rotation);
    const VcGeVector3d x = move.own * VcGeVector3d(c, s, 0), y = move.own * VcGeVector3d(-s, c, 0);
    if (!move.upright || std::fabs(x.dotProduct(y)) > 1e-9 * x.length() * y.length())
        return std::nullopt;
    const bool isStill = x.y == s && x.x == c;
    // A mirrored reference keeps its normal and turns one factor negative.
    const double sy = move.mirrored ? -y.length() : y.length();
    return AxesMove{{scale.sx * x.length(), scale.sy * sy, scale.sz * move.height},
                    isStill ? rotation : turnOf(std::atan2(x.y, x.x))};
}

}

Vcad::ErrorStatus VcDbBlockReference::transformBy(const VcGeMatrix3d& m)
{
    const auto move = planeMove(m, normal());
    if (!move)
        return Vcad::eInvalidInput;
    const auto axes = axesMove(*move, m_scale, m_rotation);
    if (!axes)
        return Vcad::eCannotScaleNonUniformly;
    assertWriteEnabled();
    m_position = (*move)(m_position);
    m_scale = axes->scale;
    m_rotation = axes->rotation;
    m_extrusion.setNormal(move->normal);
    for (VcDbEntity* attribute : attributes())
        attribute->transformBy(m);
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbBlockReference::getGeomExtents(VcDbExtents& extents) const
{
    const auto find = [this] {
        VcDbExtents drawn;
        BlockExtents blocks;
        blocks.addReference(drawn, *this, VcGeMatrix3d());
        for (const VcDbEntity* attribute : attributes())
            if (VcDbExtents one; attribute->getGeomExtents(one) == Vcad::eOk)
                drawn.addExt(one);
        return drawn;
    };
    if (!BlockExtents::isAtWork())
        return keptExtents(m_id, extents, find);
    // Asked on the way through a block that may hold itself: what is found now may not be all.
    extents = find();
    return extentsStatus(extents);
}

Vcad::ErrorStatus VcDbBlockReference::explode(std::vector<VcDbEntity*>& pieces) const
{
    return explodeReference(*this, pieces);
}

// Attributes follow (66) when there are any; a plain reference has no grid, whatever the groups 70, 71, 44, 45 say at
// their defaults.
void VcDbBlockReference::fields(FieldVisitor& v)
{
    VcDbEntity::fields(v);
    const bool isGrid = isKindOf(VcDbMInsertBlock::desc());
    const char *own = isGrid ? kGridMarker : kMarker, *other = isGrid ? kMarker : kGridMarker;
    // Some programs write grids under the marker of plain references.
    v.subclass(v.isReading() && !v.hasSubclass(own) && v.hasSubclass(other) ? other : own);
    std::int16_t follow = !m_attributes.ids().empty() || !m_attributes.end().isNull();
    if (follow || v.purpose() != FieldVisitor::Purpose::WriteChain)
        v.optionalNumber<std::int16_t>(66, follow, 0);
    v.name(2, NameTable::Block, m_block);
    v.point(10, m_position);
    v.optional(41, m_scale.sx, 1.0);
    v.optional(42, m_scale.sy, 1.0);
    v.optional(43, m_scale.sz, 1.0);
    v.optionalAngle(50, m_rotation, 0.0);
    Grid grid = m_grid.get();
    // A chain shows a plain reference as no columns and rows at all.
    const bool plainChain = v.purpose() == FieldVisitor::Purpose::WriteChain && grid == Grid();
    if (plainChain)
        grid.columns = grid.rows = 0;
    v.optionalNumber<std::int16_t>(70, grid.columns, 1);
    v.optionalNumber<std::int16_t>(71, grid.rows, 1);
    v.optional(44, grid.columnSpacing, 0.0);
    v.optional(45, grid.rowSpacing, 0.0);
    if (v.isReading()) {
        if (v.isChain()) {
            grid.columns = isGrid ? std::max<std::int16_t>(1, grid.columns) : 1;
            grid.rows = isGrid ? std::max<std::int16_t>(1, grid.rows) : 1;
        }
        m_grid.set(grid);
    }
    m_extrusion.normalField(v);
}

// Grids of references

Vcad::ErrorStatus VcDbMInsertBlock::setGrid(const Grid& grid)
{
    if (grid.columns < 1 || grid.rows < 1 || !isFinite(grid.columnSpacing) || !isFinite(grid.rowSpacing))
        return Vcad::eOutOfRange;
    assertWriteEnabled();
    m_grid.set(grid);
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbMInsertBlock::setColumns(std::uint16_t columns)
{
    Grid grid = m_grid.get();
    grid.columns = columns <= 32767 ? std::int16_t(columns) : 0;
    return setGrid(grid);
}

Vcad::ErrorStatus VcDbMInsertBlock::setRows(std::uint16_t rows)
{
    Grid grid = m_grid.get();
    grid.rows = rows <= 32767 ? std::int16_t(rows) : 0;
    return setGrid(grid);
}

Vcad::ErrorStatus VcDbMInsertBlock::setColumnSpacing(double spacing)
{
    Grid grid = m_grid.get();
    grid.columnSpacing = spacing;
    return setGrid(grid);
}

Vcad::ErrorStatus VcDbMInsertBlock::setRowSpacing(double spacing)
{
    Grid grid = m_grid.get();
    grid.rowSpacing = spacing;
    return setGrid(grid);
}

VcGeVector3d VcDbMInsertBlock::cellOffset(int column, int row) const
{
    const Grid grid = m_grid.get();
    const double along = column * grid.columnSpacing, up = row * grid.rowSpacing;
    const double c = std::cos(m_rotation), s = std::sin(m_rotation);
    const VcGePoint3d own(along * c - up * s, along * s + up * c, 0);
    return toWorld(own, normal()).asVector();
}

Vcad::ErrorStatus VcDbMInsertBlock::transformBy(const VcGeMatrix3d& m)
{
    const VcGeScale3d before = m_scale;
    if (const Vcad::ErrorStatus status = VcDbBlockReference::transformBy(m))
        return status;
    Grid grid = m_grid.get();
    grid.columnSpacing *= m_scale.sx / before.sx;
    grid.rowSpacing *= m_scale.sy / before.sy;
    m_grid.set(grid);
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbMInsertBlock::getGeomExtents(VcDbExtents& extents) const
{
    VcDbExtents cell;
    if (const Vcad::ErrorStatus status = VcDbBlockReference::getGeomExtents(cell))
        return status;
    extents = VcDbExtents();
    for (const int column : {0, columns() - 1})
        for (const int row : {0, rows() - 1}) {
            const VcGeVector3d offset = cellOffset(column, row);
            extents.addExt(VcDbExtents(cell.minPoint() + offset, cell.maxPoint() + offset));
        }
    return Vcad::eOk;
}

static std::unique_ptr<VcDbBlockReference> plainCopy(const VcDbMInsertBlock& grid, const VcGeVector3d& offset)
{
    auto cell = std::make_unique<VcDbBlockReference>();
    cell->setBlockTableRecord(grid.blockTableRecord());
    cell->setNormal(grid.normal());
    cell->setPosition(grid.position() + offset);
    cell->setScaleFactors(grid.scaleFactors());
    cell->setRotation(grid.rotation());
    cell->setPropertiesFrom(&grid);
    for (const VcDbEntity* attribute : grid.attributes()) {
        auto copy = looseCopy(*attribute);
        copy->transformBy(VcGeMatrix3d::translation(offset));
        cell->appendAttribute(static_cast<VcDbAttribute*>(copy.release()));
    }
    return cell;
}

Vcad::ErrorStatus VcDbMInsertBlock::explode(std::vector<VcDbEntity*>& pieces) const
{
    constexpr int kMostCells = 1'000'000;
    if (int(columns()) * int(rows()) > kMostCells)
        return Vcad::eCannotExplode;
    for (int row = 0; row < rows(); ++row)
        for (int column = 0; column < columns(); ++column)
            pieces.push_back(plainCopy(*this, cellOffset(column, row)).release());
    return Vcad::eOk;
}
