#include "sdk/vcdb_entity.h"

#include "host/base/heap.h"
#include "host/base/unicode.h"
#include "host/db/database.h"
#include "host/db/ent_util.h"
#include "host/db/extras.h"
#include "sdk/vcdb_records.h"
#include "sdk/vcdb_tables.h"

#include <limits>

VCRX_DEFINE(VcDbEntity, VcDbObject)
VCRX_DEFINE(VcDbCurve, VcDbEntity)

// Extents

VcDbExtents::VcDbExtents(const VcGePoint3d& a, const VcGePoint3d& b)
{
    addPoint(a);
    addPoint(b);
}

void VcDbExtents::addPoint(const VcGePoint3d& p)
{
    m_min = {std::min(m_min.x, p.x), std::min(m_min.y, p.y), std::min(m_min.z, p.z)};
    m_max = {std::max(m_max.x, p.x), std::max(m_max.y, p.y), std::max(m_max.z, p.z)};
}

void VcDbExtents::addExt(const VcDbExtents& other)
{
    if (other.isEmpty())
        return;
    addPoint(other.m_min);
    addPoint(other.m_max);
}

void VcDbExtents::transformBy(const VcGeMatrix3d& m)
{
    if (isEmpty())
        return;
    VcDbExtents image;
    for (int corner = 0; corner < 8; ++corner)
        image.addPoint(m * VcGePoint3d(corner & 1 ? m_max.x : m_min.x, corner & 2 ? m_max.y : m_min.y,
                                       corner & 4 ? m_max.z : m_min.z));
    *this = image;
}

// Extrusion

void VcDbExtrusion::thicknessField(FieldVisitor& v, int code)
{
    double t = thickness();
    v.optional(code, t, 0.0);
    if (v.isReading())
        setThickness(t);
}

void VcDbExtrusion::normalField(FieldVisitor& v, int code)
{
    VcGeVector3d n = normal();
    v.optionalVector(code, n, VcGeVector3d::zAxis());
    if (v.isReading() && n.lengthSqrd() > 0)
        setNormal(n);
}

// Common properties

VcDbEntity::VcDbEntity() = default;
VcDbEntity::~VcDbEntity() = default;

VcDbEntity::VcDbEntity(const VcDbEntity& o)
    : VcDbObject(o), m_ownProps(o.m_ownProps ? std::make_unique<EntityProps>(*o.m_ownProps) : nullptr)
{
}

VcDbEntity& VcDbEntity::operator=(const VcDbEntity& o)
{
    VcDbObject::operator=(o);
    m_ownProps = o.m_ownProps ? std::make_unique<EntityProps>(*o.m_ownProps) : nullptr;
    return *this;
}

const EntityProps& VcDbEntity::props() const
{
    static const EntityProps defaults;
    if (const DatabaseCore* db = DatabaseCore::of(m_id))
        return db->props()[m_props];
    return m_ownProps ? *m_ownProps : defaults;
}

void VcDbEntity::setProps(const EntityProps& props)
{
    if (DatabaseCore* db = DatabaseCore::of(m_id))
        m_props = db->props().intern(props);
    else
        m_ownProps = std::make_unique<EntityProps>(props);
}

void VcDbEntity::carryProps(const EntityProps& props) { m_ownProps = std::make_unique<EntityProps>(props); }

namespace {

// Changes one property of an entity and, where wanted, of its sub-entities.
template <class Change>
Vcad::ErrorStatus changeProps(VcDbEntity& entity, bool doSubents, Change&& change)
{
    entity.assertWriteEnabled();
    EntityProps props = entity.props();
    change(props);
    entity.setProps(props);
    const auto* subs = doSubents ? entity.subEntities() : nullptr;
    if (!subs)
        return Vcad::eOk;
    DatabaseCore* db = DatabaseCore::of(entity.objectId());
    for (const VcDbObjectId id : *subs)
        if (auto* sub = db ? db->liveAs<VcDbEntity>(id) : nullptr)
            changeProps(*sub, false, change);
    return Vcad::eOk;
}

VcDbObjectId recordNamed(const VcDbEntity& entity, NameTable table, const wchar_t* name)
{
    const DatabaseCore* db = DatabaseCore::of(entity.objectId());
    return db && name ? db->findRecord(table, wideToUtf8(name)) : VcDbObjectId();
}

wchar_t* nameOf(VcDbObjectId id, const char* otherwise)
{
    const DatabaseCore* db = DatabaseCore::of(id);
    const auto* record = db ? db->objectAs<VcDbSymbolTableRecord>(id) : nullptr;
    return heapStringFromUtf8(record ? record->nameUtf8() : std::string(otherwise));
}

}

VcCmColor VcDbEntity::color() const { return props().color; }

Vcad::ErrorStatus VcDbEntity::setColor(const VcCmColor& color, bool doSubents)
{
    return changeProps(*this, doSubents, [&](EntityProps& p) {
        p.color = color;
        p.colorBook.clear();
    });
}

std::uint16_t VcDbEntity::colorIndex() const { return std::uint16_t(props().color.colorIndex()); }

Vcad::ErrorStatus VcDbEntity::setColorIndex(std::uint16_t index, bool doSubents)
{
    return index > 256 ? Vcad::eInvalidIndex : setColor(VcCmColor::fromIndex(std::int16_t(index)), doSubents);
}

VcDbObjectId VcDbEntity::layerId() const { return props().layer; }
wchar_t* VcDbEntity::layer() const { return nameOf(props().layer, "0"); }

Vcad::ErrorStatus VcDbEntity::setLayer(VcDbObjectId layer, bool doSubents)
{
    if (!mayReferTo(*this, layer, VcDbLayerTableRecord::desc()))
        return Vcad::eInvalidInput;
    return changeProps(*this, doSubents, [&](EntityProps& p) { p.layer = layer; });
}

Vcad::ErrorStatus VcDbEntity::setLayer(const wchar_t* name, bool doSubents)
{
    const VcDbObjectId id = recordNamed(*this, NameTable::Layer, name);
    return id.isNull() ? Vcad::eKeyNotFound : setLayer(id, doSubents);
}

VcDbObjectId VcDbEntity::linetypeId() const { return props().linetype; }
wchar_t* VcDbEntity::linetype() const { return nameOf(props().linetype, "ByLayer"); }

Vcad::ErrorStatus VcDbEntity::setLinetype(VcDbObjectId linetype, bool doSubents)
{
    if (!mayReferTo(*this, linetype, VcDbLinetypeTableRecord::desc()))
        return Vcad::eInvalidInput;
    return changeProps(*this, doSubents, [&](EntityProps& p) { p.linetype = linetype; });
}

Vcad::ErrorStatus VcDbEntity::setLinetype(const wchar_t* name, bool doSubents)
{
    const VcDbObjectId id = recordNamed(*this, NameTable::Linetype, name);
    return id.isNull() ? Vcad::eKeyNotFound : setLinetype(id, doSubents);
}

double VcDbEntity::linetypeScale() const { return props().linetypeScale; }

Vcad::ErrorStatus VcDbEntity::setLinetypeScale(double scale, bool doSubents)
{
    if (!(scale > 0) || scale > std::numeric_limits<double>::max())
        return Vcad::eOutOfRange;
    return changeProps(*this, doSubents, [&](EntityProps& p) { p.linetypeScale = scale; });
}

VcDb::LineWeight VcDbEntity::lineWeight() const { return VcDb::LineWeight(props().lineWeight); }

Vcad::ErrorStatus VcDbEntity::setLineWeight(VcDb::LineWeight weight, bool doSubents)
{
    if (weight < VcDb::kLnWtByLwDefault || weight > VcDb::kLnWt211)
        return Vcad::eOutOfRange;
    return changeProps(*this, doSubents, [&](EntityProps& p) { p.lineWeight = weight; });
}

VcDb::Visibility VcDbEntity::visibility() const { return props().invisible & 1 ? VcDb::kInvisible : VcDb::kVisible; }

Vcad::ErrorStatus VcDbEntity::setVisibility(VcDb::Visibility visibility, bool doSubents)
{
    return changeProps(*this, doSubents, [&](EntityProps& p) { p.invisible = std::int16_t(visibility); });
}

Vcad::ErrorStatus VcDbEntity::setPropertiesFrom(const VcDbEntity* other, bool doSubents)
{
    if (!other)
        return Vcad::eInvalidInput;
    if (database() && other->database() && database() != other->database())
        return Vcad::eWrongDatabase;
    const EntityProps from = other->props();
    return changeProps(*this, doSubents, [&](EntityProps& p) { p = from; });
}

void VcDbEntity::setDatabaseDefaults(VcDbDatabase* database)
{
    DatabaseCore* db = database ? &database->core() : DatabaseCore::of(m_id);
    if (!db)
        return;
    const HeaderVars& header = db->header();
    EntityProps p;
    p.layer = database ? database->clayer() : db->face().clayer();
    p.linetype = db->findRecord(NameTable::Linetype, header.text("$CELTYPE", "ByLayer"));
    p.color = VcCmColor::fromIndex(std::int16_t(header.integer("$CECOLOR", 256)));
    p.linetypeScale = header.real("$CELTSCALE", 1.0);
    p.lineWeight = std::int16_t(header.integer("$CELWEIGHT", -1));
    assertWriteEnabled();
    setProps(p);
}

void VcDbEntity::recordGraphicsModified(bool modified)
{
    if (modified)
        m_modified = true;
}

Vcad::ErrorStatus VcDbEntity::transformBy(const VcGeMatrix3d&) { return Vcad::eNotApplicable; }
Vcad::ErrorStatus VcDbEntity::getGeomExtents(VcDbExtents&) const { return Vcad::eNotApplicable; }
Vcad::ErrorStatus VcDbEntity::explode(std::vector<VcDbEntity*>&) const { return Vcad::eCannotExplode; }

bool VcDbEntity::isInLayout() const
{
    const DatabaseCore* db = DatabaseCore::of(m_id);
    const auto* block = db ? db->objectAs<VcDbBlockTableRecord>(ownerId()) : nullptr;
    return block && block->isLayout();
}

void VcDbEntity::eraseOwned(bool erasing)
{
    DatabaseCore* db = DatabaseCore::of(m_id);
    if (const auto* subs = subEntities())
        for (const VcDbObjectId id : *subs)
            if (VcDbObject* sub = db->object(id))
                sub->eraseWithOwner(erasing);
    if (VcDbObject* end = db->object(endMark()))
        end->eraseWithOwner(erasing);
}

namespace {

// 62 is the palette index, negative never; 420 a true colour beside it.
void colorFields(FieldVisitor& v, EntityProps& p)
{
    std::int16_t index = p.color.colorIndex();
    v.optionalNumber<std::int16_t>(62, index, VcCmColor::kAciByLayer);
    if (v.isReading() && index != p.color.colorIndex())
        p.color = VcCmColor::fromIndex(index);
}

void trueColorFields(FieldVisitor& v, EntityProps& p)
{
    if (v.isReading() ? true : p.color.isByColor() && v.atLeast(DxfVersion::R2004)) {
        std::int64_t rgb = v.isReading() ? -1 : std::int64_t(p.color.rgb());
        v.optionalInteger(420, rgb, -1);
        if (v.isReading() && rgb >= 0)
            p.color.setTrueColorBeside(std::uint32_t(rgb));
    }
    if (v.isReading() || v.atLeast(DxfVersion::R2004))
        v.optionalText(430, p.colorBook, "");
}

void transparencyField(FieldVisitor& v, EntityProps& p)
{
    if (!v.isReading() && (!p.hasTransparency || !v.atLeast(DxfVersion::R2004)))
        return;
    constexpr std::int64_t kNone = std::numeric_limits<std::int64_t>::min();
    std::int64_t value = v.isReading() ? kNone : p.transparency;
    v.optionalInteger(440, value, kNone);
    if (v.isReading() && value != kNone) {
        p.transparency = std::int32_t(value);
        p.hasTransparency = true;
    }
}

}

void VcDbEntity::fields(FieldVisitor& v)
{
    VcDbObject::fields(v);
    v.subclass("AcDbEntity");
    EntityProps p = props();
    v.name(8, NameTable::Layer, p.layer);
    v.optionalName(6, NameTable::Linetype, p.linetype, "ByLayer");
    if (v.isReading() || v.atLeast(DxfVersion::R2007))
        v.optionalRef(347, RefKind::HardPointer, p.material);
    colorFields(v, p);
    if (v.isReading() || v.atLeast(DxfVersion::R2000))
        v.optionalNumber<std::int16_t>(370, p.lineWeight, -1);
    v.optional(48, p.linetypeScale, 1.0);
    v.optionalNumber<std::int16_t>(60, p.invisible, 0);
    trueColorFields(v, p);
    transparencyField(v, p);
    if (v.isReading() || v.atLeast(DxfVersion::R2000)) {
        v.optionalNumber<std::int16_t>(380, p.plotStyleType, 0);
        v.optionalRef(390, RefKind::HardPointer, p.plotStyle);
    }
    if (v.isReading() || v.atLeast(DxfVersion::R2007)) {
        v.optionalNumber<std::int16_t>(284, p.shadow, 0);
        v.optionalRef(348, RefKind::HardPointer, p.visualStyle);
    }
    if (v.isReading() || (v.purpose() == FieldVisitor::Purpose::References && !(p == props())))
        setProps(p);
}

Vcad::ErrorStatus vcdbOpenVcDbEntity(VcDbEntity*& entity, VcDbObjectId id, VcDb::OpenMode mode, bool openErased)
{
    return vcdbOpenObject(entity, id, mode, openErased);
}
