// Viewports of layouts: a window on the sheet and the view that it shows.
#include "host/db/ent_util.h"
#include "sdk/vcdb_tables.h"
#include "sdk/vcdb_viewport.h"

#include <algorithm>

VCDB_DEFINE(VcDbViewport, VcDbEntity, "VIEWPORT")

Vcad::ErrorStatus VcDbViewport::setCenterPoint(const VcGePoint3d& p)
{
    return setMember(*this, m_center, p, isFinite(p));
}
Vcad::ErrorStatus VcDbViewport::setWidth(double w) { return setMember(*this, m_width, w, isPositive(w)); }
Vcad::ErrorStatus VcDbViewport::setViewCenter(const VcGePoint2d& p)
{
    return setMember(*this, m_viewCenter, p, isFinite(p));
}
Vcad::ErrorStatus VcDbViewport::setViewTarget(const VcGePoint3d& p)
{
    return setMember(*this, m_viewTarget, p, isFinite(p));
}
Vcad::ErrorStatus VcDbViewport::setViewHeight(double h) { return setMember(*this, m_viewHeight, h, isPositive(h)); }
Vcad::ErrorStatus VcDbViewport::setTwistAngle(double a) { return setMember(*this, m_twist, a, isFinite(a)); }
Vcad::ErrorStatus VcDbViewport::setLensLength(double l) { return setMember(*this, m_lensLength, l, isPositive(l)); }

// The scale of the view stays.
Vcad::ErrorStatus VcDbViewport::setHeight(double height)
{
    const double scale = customScale();
    const Vcad::ErrorStatus status = setMember(*this, m_height, height, isPositive(height));
    if (!status)
        m_viewHeight = height / scale;
    return status;
}

Vcad::ErrorStatus VcDbViewport::setViewDirection(const VcGeVector3d& direction)
{
    return setMember(*this, m_viewDirection, direction, isDirection(direction));
}

Vcad::ErrorStatus VcDbViewport::setCustomScale(double scale)
{
    if (!isPositive(scale) || !isPositive(m_height / scale))
        return Vcad::eOutOfRange;
    assertWriteEnabled();
    m_viewHeight = m_height / scale;
    return Vcad::eOk;
}

void VcDbViewport::setNumber(std::int16_t number)
{
    assertWriteEnabled();
    m_number = number;
}

void VcDbViewport::setViewFlag(std::int32_t flag, bool on)
{
    assertWriteEnabled();
    m_viewFlags = on ? m_viewFlags | flag : m_viewFlags & ~flag;
}

Vcad::ErrorStatus VcDbViewport::setOn(bool on)
{
    setViewFlag(kOff, !on);
    m_status = std::int16_t(on ? std::max<std::int16_t>(1, m_status) : 0);
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbViewport::setClipDistances(double front, double back)
{
    if (!isFinite(VcGePoint3d(front, back, 0)))
        return Vcad::eInvalidInput;
    assertWriteEnabled();
    m_frontClip = front;
    m_backClip = back;
    return Vcad::eOk;
}

void VcDbViewport::setViewMode(std::int16_t mode)
{
    assertWriteEnabled();
    m_viewFlags = (m_viewFlags & ~kViewMode) | (mode & kViewMode);
}

Vcad::ErrorStatus VcDbViewport::setShadePlot(std::int16_t mode)
{
    return setMember(*this, m_shadePlotMode, mode, mode >= 0 && mode <= 3);
}

Vcad::ErrorStatus VcDbViewport::setLocked(bool locked)
{
    setViewFlag(kLocked, locked);
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbViewport::setPerspectiveOn(bool on)
{
    setViewFlag(kPerspective, on);
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbViewport::setNonRectClipOn(bool on)
{
    if (on && m_clipEntity.isNull())
        return Vcad::eNullObjectId;
    setViewFlag(kClipped, on);
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbViewport::setNonRectClipEntityId(VcDbObjectId id)
{
    return setMember(*this, m_clipEntity, id, id.isNull() || mayReferTo(*this, id, VcDbEntity::desc()));
}

// Layers

bool VcDbViewport::isLayerFrozenInViewport(VcDbObjectId layer) const
{
    return std::find(m_frozenLayers.begin(), m_frozenLayers.end(), layer) != m_frozenLayers.end();
}

Vcad::ErrorStatus VcDbViewport::freezeLayersInViewport(const VcDbObjectIdArray& layers)
{
    const auto isLayer = [this](VcDbObjectId id) { return mayReferTo(*this, id, VcDbLayerTableRecord::desc()); };
    if (!std::all_of(layers.begin(), layers.end(), isLayer))
        return Vcad::eInvalidInput;
    assertWriteEnabled();
    for (const VcDbObjectId layer : layers)
        if (!isLayerFrozenInViewport(layer))
            m_frozenLayers.push_back(layer);
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbViewport::thawLayersInViewport(const VcDbObjectIdArray& layers)
{
    assertWriteEnabled();
    std::erase_if(m_frozenLayers,
                  [&](VcDbObjectId id) { return std::find(layers.begin(), layers.end(), id) != layers.end(); });
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbViewport::thawAllLayersInViewport()
{
    assertWriteEnabled();
    m_frozenLayers.clear();
    return Vcad::eOk;
}

// The UCS

void VcDbViewport::getUcs(VcGePoint3d& origin, VcGeVector3d& xAxis, VcGeVector3d& yAxis) const
{
    origin = m_ucsOrigin;
    xAxis = m_ucsX;
    yAxis = m_ucsY;
}

Vcad::ErrorStatus VcDbViewport::setUcs(const VcGePoint3d& origin, const VcGeVector3d& xAxis, const VcGeVector3d& yAxis)
{
    const VcGeVector3d x = xAxis.normal(), y = yAxis.normal();
    if (!isFinite(origin) || !isDirection(xAxis) || !isDirection(yAxis) || std::fabs(x.dotProduct(y)) > 1e-6)
        return Vcad::eOutOfRange;
    assertWriteEnabled();
    m_ucsOrigin = origin;
    m_ucsX = x;
    m_ucsY = y;
    m_ucs = {};
    m_orthoType = 0;
    return Vcad::eOk;
}

void VcDbViewport::setUcsName(VcDbObjectId ucs)
{
    assertWriteEnabled();
    m_ucs = ucs;
}

void VcDbViewport::setUcsSavedWithViewport(bool saved)
{
    assertWriteEnabled();
    m_ucsPerViewport = saved;
}

// Geometry

Vcad::ErrorStatus VcDbViewport::transformBy(const VcGeMatrix3d& m)
{
    const auto move = planeMove(m, VcGeVector3d::zAxis());
    if (!move)
        return Vcad::eInvalidInput;
    if (!move->even || move->normal != VcGeVector3d::zAxis())
        return Vcad::eCannotScaleNonUniformly;
    assertWriteEnabled();
    const double scale = customScale();
    m_center = m * m_center;
    m_width *= move->scale;
    m_height *= move->scale;
    m_viewHeight = m_height / scale;
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbViewport::getGeomExtents(VcDbExtents& extents) const
{
    const VcGeVector3d half(m_width / 2, m_height / 2, 0);
    extents = VcDbExtents(m_center - half, m_center + half);
    return Vcad::eOk;
}

// Groups

void VcDbViewport::fields(FieldVisitor& v)
{
    VcDbEntity::fields(v);
    v.subclass("AcDbViewport");
    v.point(10, m_center);
    v.real(40, m_width);
    v.real(41, m_height);
    v.number(68, m_status);
    v.number(69, m_number);
    // Files before 2000 have the view in extended data, which stands as it came.
    if (v.isWriting() && !v.atLeast(DxfVersion::R2000))
        return;
    viewFields(v);
    layerFields(v);
    v.number(90, m_viewFlags);
    v.optionalRef(340, RefKind::HardPointer, m_clipEntity);
    v.text(1, m_plotStyleSheet);
    v.number(281, m_renderMode);
    v.number(71, m_ucsPerViewport);
    v.number(74, m_ucsIcon);
    ucsFields(v);
    shadeFields(v);
}

void VcDbViewport::viewFields(FieldVisitor& v)
{
    v.point2(12, m_viewCenter);
    v.point2(13, m_snapBase);
    v.point2(14, m_snapSpacing);
    v.point2(15, m_gridSpacing);
    v.vector(16, m_viewDirection);
    v.point(17, m_viewTarget);
    v.real(42, m_lensLength);
    v.real(43, m_frontClip);
    v.real(44, m_backClip);
    v.real(45, m_viewHeight);
    v.angle(50, m_snapAngle);
    v.angle(51, m_twist);
    v.number(72, m_circleSides);
}

// Frozen layers are soft pointers (331) or hard ones (341), as the program had it.
void VcDbViewport::layerFields(FieldVisitor& v)
{
    if (!v.isReading()) {
        v.refs(m_frozenAreHard ? 341 : 331, m_frozenAreHard ? RefKind::HardPointer : RefKind::SoftPointer,
               m_frozenLayers);
        return;
    }
    VcDbObjectIdArray soft, hard;
    v.refs(331, RefKind::SoftPointer, soft);
    v.refs(341, RefKind::HardPointer, hard);
    m_frozenAreHard = soft.empty() && !hard.empty();
    soft.insert(soft.end(), hard.begin(), hard.end());
    std::erase_if(soft, [](VcDbObjectId id) { return id.isNull(); });
    m_frozenLayers = std::move(soft);
}

void VcDbViewport::ucsFields(FieldVisitor& v)
{
    v.point(110, m_ucsOrigin);
    v.vector(111, m_ucsX);
    v.vector(112, m_ucsY);
    v.optionalRef(345, RefKind::HardPointer, m_ucs);
    v.optionalRef(346, RefKind::HardPointer, m_baseUcs);
    v.number(79, m_orthoType);
    v.real(146, m_elevation);
}

void VcDbViewport::shadeFields(FieldVisitor& v)
{
    if (v.isWriting() && !v.atLeast(DxfVersion::R2004))
        return;
    v.optionalNumber<std::int16_t>(170, m_shadePlotMode, 0);
    if (v.isWriting() && !v.atLeast(DxfVersion::R2007))
        return;
    v.optionalNumber<std::int16_t>(61, m_gridMajor, 5);
    v.optionalRef(332, RefKind::SoftPointer, m_background);
    v.optionalRef(333, RefKind::SoftPointer, m_shadePlot);
    v.optionalRef(348, RefKind::HardPointer, m_visualStyle);
    v.optionalNumber(292, m_defaultLighting, true);
    v.optionalNumber<std::int16_t>(282, m_lightingType, 1);
    v.optional(141, m_brightness, 0.0);
    v.optional(142, m_contrast, 0.0);
    v.optionalNumber<std::int32_t>(63, m_ambientColor, 250);
    v.optionalNumber<std::int32_t>(421, m_ambientRgb, 0);
    v.optionalRef(361, RefKind::HardOwner, m_sun);
}
