// Leaders and feature control frames.
#include "host/base/heap.h"
#include "host/base/unicode.h"
#include "host/db/database.h"
#include "host/db/dim_overrides.h"
#include "host/db/dim_picture.h"
#include "host/db/ent_util.h"
#include "sdk/vcdb_insert.h"
#include "sdk/vcdb_text.h"

VCDB_DEFINE(VcDbLeader, VcDbEntity, "LEADER")
VCDB_DEFINE(VcDbFcf, VcDbEntity, "TOLERANCE")

// Leader

VcDbObjectId VcDbLeader::dimensionStyle() const { return dimStyleOf(*this, m_style); }

Vcad::ErrorStatus VcDbLeader::setDimensionStyle(VcDbObjectId style)
{
    const Vcad::ErrorStatus status = setDimStyleOf(*this, m_style, style);
    m_stale |= status == Vcad::eOk;
    return status;
}

VcDbDimVars VcDbLeader::dimVars() const { return dimVarsOf(*this, dimensionStyle()); }

VcGePoint3d VcDbLeader::vertexAt(int index) const
{
    return index >= 0 && index < numVertices() ? m_vertices[std::size_t(index)] : VcGePoint3d();
}

Vcad::ErrorStatus VcDbLeader::setVertexAt(int index, const VcGePoint3d& p)
{
    if (index < 0 || index >= numVertices())
        return Vcad::eInvalidIndex;
    return setMember(*this, m_vertices[std::size_t(index)], p, isFinite(p));
}

Vcad::ErrorStatus VcDbLeader::appendVertex(const VcGePoint3d& p)
{
    if (!isFinite(p))
        return Vcad::eOutOfRange;
    assertWriteEnabled();
    m_vertices.push_back(p);
    return Vcad::eOk;
}

void VcDbLeader::enableArrowHead(bool on) { setMember(*this, m_arrow, std::int8_t(on), true); }
void VcDbLeader::setSplined(bool on) { setMember(*this, m_splined, std::int8_t(on), true); }

Vcad::ErrorStatus VcDbLeader::transformBy(const VcGeMatrix3d& m)
{
    const auto move = planeMove(m, m_normal);
    if (!move)
        return Vcad::eInvalidInput;
    assertWriteEnabled();
    for (VcGePoint3d& p : m_vertices)
        p = m * p;
    for (VcGeVector3d* v : {&m_blockOffset, &m_annoOffset})
        *v = m * *v;
    const VcGeVector3d x = m * m_xDirection;
    m_xDirection = isDirection(x) ? x.normal() : m_xDirection;
    m_normal = move->normal;
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbLeader::getGeomExtents(VcDbExtents& extents) const
{
    extents = VcDbExtents();
    for (const VcGePoint3d& p : m_vertices)
        extents.addPoint(p);
    for (const auto& piece : vk::dim::leaderPieces(*this))
        if (VcDbExtents one; piece->getGeomExtents(one) == Vcad::eOk)
            extents.addExt(one);
    return extentsStatus(extents);
}

Vcad::ErrorStatus VcDbLeader::explode(std::vector<VcDbEntity*>& pieces) const
{
    auto made = vk::dim::leaderPieces(*this);
    for (auto& piece : made)
        pieces.push_back(piece.release());
    return made.empty() ? Vcad::eNotApplicable : Vcad::eOk;
}

void VcDbLeader::setHookLine(bool on, bool alongHorizontal)
{
    assertWriteEnabled();
    m_hook = std::int8_t(on);
    m_hookDirection = std::int8_t(alongHorizontal);
}

Vcad::ErrorStatus VcDbLeader::setPlane(const VcGeVector3d& normal, const VcGeVector3d& horizontal)
{
    if (!isDirection(normal) || !isDirection(horizontal) || normal.normal().isParallelTo(horizontal.normal()))
        return Vcad::eOutOfRange;
    assertWriteEnabled();
    m_normal = normal.normal();
    m_xDirection = horizontal.normal();
    return Vcad::eOk;
}

namespace {

// By class; nothing else can stand at the end of a leader.
std::optional<std::int8_t> annotationType(const VcDbObject* object)
{
    if (object && object->isKindOf(VcDbMText::desc()))
        return std::int8_t(0);
    if (object && object->isKindOf(VcDbFcf::desc()))
        return std::int8_t(1);
    if (object && object->isKindOf(VcDbBlockReference::desc()))
        return std::int8_t(2);
    return std::nullopt;
}

}

Vcad::ErrorStatus VcDbLeader::attachAnnotation(VcDbObjectId annotation)
{
    const DatabaseCore* db = DatabaseCore::of(m_id);
    VcDbObject* object = db ? db->object(annotation) : nullptr;
    const auto type = annotationType(object);
    if (!type || object->isErased())
        return Vcad::eInvalidInput;
    assertWriteEnabled();
    m_annotation = annotation;
    m_annotationType = *type;
    object->addPersistentReactor(m_id);
    return evaluateLeader();
}

// The text stays where it is; the leader's end follows the gap, and its hook line is as long as the arrow.
Vcad::ErrorStatus VcDbLeader::evaluateLeader()
{
    const DatabaseCore* db = DatabaseCore::of(m_id);
    const auto* text = db ? db->liveAs<VcDbMText>(m_annotation) : nullptr;
    if (!text || db->loading)
        return Vcad::eOk;
    assertWriteEnabled();
    m_annoHeight = text->actualHeight();
    m_annoWidth = text->actualWidth();
    const std::size_t n = m_vertices.size();
    const int column = (text->attachment() - 1) % 3;
    const bool leaves = m_hook && n >= 3 && column == (m_hookDirection ? 0 : 2);
    if (leaves) {
        const VcDbDimVars vars = dimVars();
        const double scale = vk::dim::overallScale(vars, *db, vk::dim::isInPaperSpace(*this, *db));
        const VcGeVector3d on = m_hookDirection ? m_xDirection : -m_xDirection;
        VcGePoint3d& last = m_vertices[n - 1];
        last = last + on * ((text->location() - last).dotProduct(on) - scale * std::abs(vars.dimgap));
        m_vertices[n - 2] = last - on * (scale * vars.dimasz);
    }
    m_stale = false;
    return Vcad::eOk;
}

void VcDbLeader::fieldsChanged() { evaluateLeader(); }

void VcDbLeader::dropCaches()
{
    if (m_stale)
        evaluateLeader();
}

void VcDbLeader::fields(FieldVisitor& v)
{
    VcDbEntity::fields(v);
    v.subclass("AcDbLeader");
    dimStyleField(v, m_style);
    v.optionalNumber<std::int8_t>(71, m_arrow, 1);
    v.optionalNumber<std::int8_t>(72, m_splined, 0);
    v.optionalNumber<std::int8_t>(73, m_annotationType, 3);
    v.optionalNumber<std::int8_t>(74, m_hookDirection, 0);
    v.optionalNumber<std::int8_t>(75, m_hook, 0);
    v.optional(40, m_annoHeight, 0.0);
    v.optional(41, m_annoWidth, 0.0);
    v.count(76, m_vertices.size());
    v.repeated(10, m_vertices, [&](VcGePoint3d& p) { v.point(10, p); });
    v.optionalNumber<std::int16_t>(77, m_byBlockColor, 0);
    v.optionalRef(340, RefKind::HardPointer, m_annotation);
    v.optionalVector(211, m_xDirection, VcGeVector3d(1, 0, 0));
    v.optionalVector(210, m_normal, VcGeVector3d(0, 0, 1));
    v.optionalVector(212, m_blockOffset, VcGeVector3d());
    v.optionalVector(213, m_annoOffset, VcGeVector3d());
}

// Feature control frame

Vcad::ErrorStatus VcDbFcf::setLocation(const VcGePoint3d& p) { return setMember(*this, m_location, p, isFinite(p)); }

Vcad::ErrorStatus VcDbFcf::setOrientation(const VcGeVector3d& normal, const VcGeVector3d& direction)
{
    if (!isDirection(normal) || !isDirection(direction))
        return Vcad::eOutOfRange;
    const VcGeVector3d z = normal.normal();
    const VcGeVector3d x = direction - z * direction.dotProduct(z);
    if (x.length() <= 1e-10 * direction.length())
        return Vcad::eOutOfRange;
    assertWriteEnabled();
    m_normal = z;
    m_direction = x.normal();
    return Vcad::eOk;
}

wchar_t* VcDbFcf::text() const { return heapStringFromUtf8(m_text); }

Vcad::ErrorStatus VcDbFcf::setText(const wchar_t* text)
{
    return text ? setMember(*this, m_text, wideToUtf8(text), true) : Vcad::eInvalidInput;
}

VcDbObjectId VcDbFcf::dimensionStyle() const { return dimStyleOf(*this, m_style); }
Vcad::ErrorStatus VcDbFcf::setDimensionStyle(VcDbObjectId style) { return setDimStyleOf(*this, m_style, style); }
VcDbDimVars VcDbFcf::dimVars() const { return dimVarsOf(*this, dimensionStyle()); }

namespace {

enum DimCode { kDimscale = 40, kDimtxt = 140, kDimgap = 147, kDimclrd = 176, kDimclrt = 178 };

Vcad::ErrorStatus setPositive(VcDbFcf& frame, int code, double value)
{
    return isPositive(value) ? VcDbDimOverrides(frame).setReal(code, value) : Vcad::eOutOfRange;
}

}

VcCmColor VcDbFcf::dimclrd() const { return VcCmColor::fromIndex(dimVars().dimclrd); }
VcCmColor VcDbFcf::dimclrt() const { return VcCmColor::fromIndex(dimVars().dimclrt); }

Vcad::ErrorStatus VcDbFcf::setDimclrd(const VcCmColor& color)
{
    return VcDbDimOverrides(*this).setInteger(kDimclrd, std::int16_t(color.colorIndex()));
}

Vcad::ErrorStatus VcDbFcf::setDimclrt(const VcCmColor& color)
{
    return VcDbDimOverrides(*this).setInteger(kDimclrt, std::int16_t(color.colorIndex()));
}

Vcad::ErrorStatus VcDbFcf::setDimgap(double gap)
{
    return isFinite(gap) ? VcDbDimOverrides(*this).setReal(kDimgap, gap) : Vcad::eOutOfRange;
}

Vcad::ErrorStatus VcDbFcf::setDimtxt(double height) { return setPositive(*this, kDimtxt, height); }
Vcad::ErrorStatus VcDbFcf::setDimscale(double scale) { return setPositive(*this, kDimscale, scale); }

Vcad::ErrorStatus VcDbFcf::transformBy(const VcGeMatrix3d& m)
{
    const auto move = planeMove(m, m_normal);
    const VcGeVector3d direction = m * m_direction;
    if (!move || !isDirection(direction))
        return Vcad::eInvalidInput;
    assertWriteEnabled();
    m_location = m * m_location;
    m_direction = direction.normal();
    m_normal = move->normal;
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbFcf::getGeomExtents(VcDbExtents& extents) const
{
    extents = VcDbExtents();
    for (const auto& piece : vk::dim::framePieces(*this))
        if (VcDbExtents one; piece->getGeomExtents(one) == Vcad::eOk)
            extents.addExt(one);
    return extentsStatus(extents);
}

Vcad::ErrorStatus VcDbFcf::explode(std::vector<VcDbEntity*>& pieces) const
{
    auto made = vk::dim::framePieces(*this);
    for (auto& piece : made)
        pieces.push_back(piece.release());
    return made.empty() ? Vcad::eNotApplicable : Vcad::eOk;
}

void VcDbFcf::fields(FieldVisitor& v)
{
    VcDbEntity::fields(v);
    v.subclass("AcDbFcf");
    dimStyleField(v, m_style);
    v.point(10, m_location);
    v.text(1, m_text);
    v.optionalVector(210, m_normal, VcGeVector3d(0, 0, 1));
    v.optionalVector(11, m_direction, VcGeVector3d(1, 0, 0));
}
