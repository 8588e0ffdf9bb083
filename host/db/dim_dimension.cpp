// What all dimensions share, and which class a file or a chain means.
#include "host/base/heap.h"
#include "host/base/unicode.h"
#include "host/db/database.h"
#include "host/db/dim_change.h"
#include "host/db/dim_overrides.h"
#include "host/db/dim_picture.h"
#include "host/db/ent_factories.h"
#include "host/db/ent_insert.h"
#include "host/db/ent_util.h"
#include "host/geom/arbitrary_axis.h"

VCDB_DEFINE_ABSTRACT(VcDbDimension, VcDbEntity)

using vk::geom::fromWorld;
using vk::geom::toWorld;

namespace {

template <class T>
std::unique_ptr<VcDbObject> make()
{
    return std::make_unique<T>();
}

struct DimensionClass {
    const char* marker;
    std::unique_ptr<VcDbObject> (*create)();
};

// By the low bits of group 70.
const DimensionClass kClasses[] = {
    {"AcDbRotatedDimension", make<VcDbRotatedDimension>},
    {"AcDbAlignedDimension", make<VcDbAlignedDimension>},
    {"AcDb2LineAngularDimension", make<VcDb2LineAngularDimension>},
    {"AcDbDiametricDimension", make<VcDbDiametricDimension>},
    {"AcDbRadialDimension", make<VcDbRadialDimension>},
    {"AcDb3PointAngularDimension", make<VcDb3PointAngularDimension>},
    {"AcDbOrdinateDimension", make<VcDbOrdinateDimension>},
};

}

// The marker tells more than the flags, which some programs leave at 0; but a rotated dimension that lacks its own marker
// ends with the one for aligned.
std::unique_ptr<VcDbObject> createDimension(std::int64_t flags, std::string_view marker)
{
    const auto type = std::size_t(flags & 7);
    for (const DimensionClass& c : kClasses)
        if (marker == c.marker && !(marker == "AcDbAlignedDimension" && type == 0))
            return c.create();
    return kClasses[type < std::size(kClasses) ? type : 0].create();
}

Vcad::ErrorStatus VcDbDimension::setPoint(VcGePoint3d& member, const VcGePoint3d& p)
{
    return change(member, p, isFinite(p));
}

Vcad::ErrorStatus VcDbDimension::setDimBlockId(VcDbObjectId block)
{
    return setMember(*this, m_block, block, block.isNull() || mayReferTo(*this, block, VcDbBlockTableRecord::desc()));
}

VcGePoint3d VcDbDimension::textPosition() const { return toWorld(m_textMiddle, normal()); }

Vcad::ErrorStatus VcDbDimension::setTextPosition(const VcGePoint3d& p)
{
    const Vcad::ErrorStatus status = change(m_textMiddle, fromWorld(p, normal()), isFinite(p));
    if (!status)
        m_flags |= 128;
    return status;
}

Vcad::ErrorStatus VcDbDimension::setTextRotation(double a) { return change(m_textRotation, a, isFinite(a)); }
Vcad::ErrorStatus VcDbDimension::setHorizontalRotation(double a) { return change(m_horizontal, a, isFinite(a)); }
wchar_t* VcDbDimension::dimensionText() const { return heapStringFromUtf8(m_text); }

Vcad::ErrorStatus VcDbDimension::setDimensionText(const wchar_t* text)
{
    return text ? change(m_text, wideToUtf8(text), true) : Vcad::eInvalidInput;
}

VcDbObjectId VcDbDimension::dimensionStyle() const { return dimStyleOf(*this, m_style); }
Vcad::ErrorStatus VcDbDimension::setDimensionStyle(VcDbObjectId style)
{
    const Vcad::ErrorStatus status = setDimStyleOf(*this, m_style, style);
    m_stale |= status == Vcad::eOk;
    return status;
}
VcDbDimVars VcDbDimension::dimVars() const { return dimVarsOf(*this, dimensionStyle()); }

Vcad::ErrorStatus VcDbDimension::setTextAttachment(int a)
{
    return change(m_attachment, std::int16_t(a), a >= 1 && a <= 9);
}

Vcad::ErrorStatus VcDbDimension::setTextLineSpacingStyle(int style)
{
    return change(m_spacingStyle, std::int16_t(style), style == 1 || style == 2);
}

Vcad::ErrorStatus VcDbDimension::setTextLineSpacingFactor(double f)
{
    return change(m_spacingFactor, f, f >= 0.25 && f <= 4);
}

Vcad::ErrorStatus VcDbDimension::setNormal(const VcGeVector3d& n)
{
    const VcGePoint3d text = textPosition(), insertion = toWorld(m_cloneInsertion, normal());
    const Vcad::ErrorStatus status = setNormalOf(*this, m_extrusion, n);
    if (!status) {
        m_textMiddle = fromWorld(text, normal());
        m_cloneInsertion = fromWorld(insertion, normal());
        m_stale = true;
    }
    return status;
}

Vcad::ErrorStatus VcDbDimension::getGeomExtents(VcDbExtents& extents) const
{
    extents = VcDbExtents();
    if (!m_block.isNull()) {
        BlockExtents().addReference(extents, VcDbBlockReference(VcGePoint3d(), m_block), VcGeMatrix3d());
        return extentsStatus(extents);
    }
    for (const auto& piece : vk::dim::pictureOf(*this).pieces)
        if (VcDbExtents one; piece->getGeomExtents(one) == Vcad::eOk)
            extents.addExt(one);
    return extentsStatus(extents);
}

// Pieces look as they did in the block: what it left open is now their own.
Vcad::ErrorStatus VcDbDimension::explode(std::vector<VcDbEntity*>& pieces) const
{
    std::vector<VcDbEntity*> made;
    if (!m_block.isNull()) {
        if (const Vcad::ErrorStatus status = explodeReference(VcDbBlockReference(VcGePoint3d(), m_block), made))
            return status;
    } else {
        for (auto& piece : vk::dim::pictureOf(*this).pieces)
            made.push_back(piece.release());
    }
    for (VcDbEntity* piece : made) {
        vk::dim::inheritFrom(*piece, *this);
        pieces.push_back(piece);
    }
    return made.empty() ? Vcad::eNotApplicable : Vcad::eOk;
}

void VcDbDimension::useDefaultTextPosition() { change(m_flags, std::int16_t(m_flags & ~128), true); }

void VcDbDimension::setArrowFlipped(bool second, bool flipped)
{
    change(second ? m_flipArrow2 : m_flipArrow1, std::int8_t(flipped), true);
}

// Picture

void VcDbDimension::pictureMade(VcDbObjectId block, double measurement, const VcGePoint3d& textMiddle)
{
    assertWriteEnabled();
    m_block = block;
    // Of points at the ends of the range of numbers neither can be said, and files take finite numbers alone.
    if (std::isfinite(measurement))
        m_measurement = measurement;
    const VcGePoint3d middle = fromWorld(textMiddle, normal());
    if (!isTextMoved() && std::isfinite(middle.distanceTo(VcGePoint3d())))
        m_textMiddle = middle;
    m_stale = m_modified = false;
}

Vcad::ErrorStatus VcDbDimension::recomputeDimBlock(bool force)
{
    return force || m_stale ? vk::dim::remakePicture(*this) : Vcad::eOk;
}

void VcDbDimension::fieldsChanged() { recomputeDimBlock(); }

// A new dimension is drawn when its maker closes it, unless it brought a picture of its own.
void VcDbDimension::addedToDatabase()
{
    if (!m_block.isNull() && m_block.database() == database() && !vk::dim::isBlockShared(*this))
        return;
    m_block = {};
    m_stale = m_modified = true;
}

Vcad::ErrorStatus VcDbDimension::transformBy(const VcGeMatrix3d& m)
{
    const auto move = planeMove(m, normal());
    if (!move)
        return Vcad::eInvalidInput;
    if (!move->even || !move->upright)
        return Vcad::eCannotScaleNonUniformly;
    assertWriteEnabled();
    movePoints(m);
    m_definition = m * m_definition;
    m_textMiddle = (*move)(m_textMiddle);
    if (m_cloneInsertion != VcGePoint3d())
        m_cloneInsertion = (*move)(m_cloneInsertion);
    if (!isAngular())
        m_measurement *= move->scale;
    move->move(m_extrusion);
    m_stale = true;
    if (m_id.isNull())
        m_block = {};  // it stands where the dimension stood
    else
        recomputeDimBlock();
    return Vcad::eOk;
}

void VcDbDimension::fields(FieldVisitor& v)
{
    VcDbEntity::fields(v);
    v.subclass("AcDbDimension");
    const auto has = [&](DxfVersion since) { return !v.isWriting() || v.atLeast(since); };
    if (has(DxfVersion::R2010))
        v.number(280, m_version);
    v.optionalName(2, NameTable::Block, m_block, "");
    v.point(10, m_definition);
    v.point(11, m_textMiddle);
    v.optionalPoint(12, m_cloneInsertion, VcGePoint3d());
    v.number(70, m_flags);
    v.optionalText(1, m_text, "");
    if (v.purpose() == FieldVisitor::Purpose::ReadFile)
        m_attachment = 0;
    if (has(DxfVersion::R2000)) {
        v.optionalNumber<std::int16_t>(71, m_attachment, 0);
        v.optionalNumber<std::int16_t>(72, m_spacingStyle, 1);
        v.optional(41, m_spacingFactor, 1.0);
        v.optional(42, m_measurement, 0.0);
    }
    if (has(DxfVersion::R2007)) {
        v.optionalNumber<std::int8_t>(73, m_flags73, 0);
        v.optionalNumber<std::int8_t>(74, m_flipArrow1, 0);
        v.optionalNumber<std::int8_t>(75, m_flipArrow2, 0);
    }
    dimStyleField(v, m_style);
    v.optionalAngle(53, m_textRotation, 0.0);
    v.optionalAngle(51, m_horizontal, 0.0);
    v.optionalAngle(54, m_insertionRotation, 0.0);
    m_extrusion.normalField(v);
}
