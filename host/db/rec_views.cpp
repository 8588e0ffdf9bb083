#include "host/db/database.h"
#include "sdk/vcdb_records.h"

VCDB_DEFINE_ABSTRACT(VcDbAbstractViewTableRecord, VcDbSymbolTableRecord)
VCDB_DEFINE(VcDbViewTableRecord, VcDbAbstractViewTableRecord, "VIEW")
VCDB_DEFINE(VcDbViewportTableRecord, VcDbAbstractViewTableRecord, "VPORT")
VCDB_DEFINE(VcDbUCSTableRecord, VcDbSymbolTableRecord, "UCS")

namespace {

// Unit vectors of a pair of axes, false unless they stand at right angles.
bool rightAngled(VcGeVector3d& xAxis, VcGeVector3d& yAxis)
{
    const VcGeVector3d x = xAxis.normal(), y = yAxis.normal();
    if (!(std::abs(x.length() - 1) < 1e-9) || !(std::abs(y.length() - 1) < 1e-9) || !(std::abs(x.dotProduct(y)) < 1e-6))
        return false;
    xAxis = x;
    yAxis = y;
    return true;
}

bool isFinite(const VcGePoint3d& p) { return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z); }
bool isFinite(const VcGePoint2d& p) { return std::isfinite(p.x) && std::isfinite(p.y); }
bool isFinite(double value) { return std::isfinite(value); }
bool isPositive(double value) { return value > 0 && std::isfinite(value); }
bool isPositive(const VcGePoint2d& p) { return isPositive(p.x) && isPositive(p.y); }

}

// One setter: a value out of range changes nothing.
#define VCDB_SETTER(Class, Setter, Type, Member, Valid)                                                                \
    Vcad::ErrorStatus Class::Setter(Type value)                                                                        \
    {                                                                                                                  \
        if (!(Valid))                                                                                                  \
            return Vcad::eOutOfRange;                                                                                  \
        assertWriteEnabled();                                                                                          \
        Member = value;                                                                                                \
        return Vcad::eOk;                                                                                              \
    }

// Views and viewports

VCDB_SETTER(VcDbAbstractViewTableRecord, setCenterPoint, const VcGePoint2d&, m_center, isFinite(value))
VCDB_SETTER(VcDbAbstractViewTableRecord, setHeight, double, m_height, isPositive(value))
VCDB_SETTER(VcDbAbstractViewTableRecord, setWidth, double, m_width, isPositive(value))
VCDB_SETTER(VcDbAbstractViewTableRecord, setTarget, const VcGePoint3d&, m_target, isFinite(value))
VCDB_SETTER(VcDbAbstractViewTableRecord, setViewDirection, const VcGeVector3d&, m_direction, isPositive(value.length()))
VCDB_SETTER(VcDbAbstractViewTableRecord, setViewTwist, double, m_twist, isFinite(value))
VCDB_SETTER(VcDbAbstractViewTableRecord, setLensLength, double, m_lensLength, isPositive(value))
VCDB_SETTER(VcDbAbstractViewTableRecord, setFrontClipDistance, double, m_frontClip, isFinite(value))
VCDB_SETTER(VcDbAbstractViewTableRecord, setBackClipDistance, double, m_backClip, isFinite(value))
VCDB_SETTER(VcDbAbstractViewTableRecord, setElevation, double, m_elevation, isFinite(value))

Vcad::ErrorStatus VcDbAbstractViewTableRecord::setMode(Mode bit, bool on)
{
    assertWriteEnabled();
    m_mode = std::int16_t(on ? m_mode | bit : m_mode & ~bit);
    return Vcad::eOk;
}

void VcDbAbstractViewTableRecord::getUcs(VcGePoint3d& origin, VcGeVector3d& xAxis, VcGeVector3d& yAxis) const
{
    origin = m_ucsOrigin;
    xAxis = m_ucsX;
    yAxis = m_ucsY;
}

Vcad::ErrorStatus VcDbAbstractViewTableRecord::setUcs(const VcGePoint3d& origin, const VcGeVector3d& xAxis,
                                                      const VcGeVector3d& yAxis)
{
    VcGeVector3d x = xAxis, y = yAxis;
    if (!isFinite(origin) || !rightAngled(x, y))
        return Vcad::eOutOfRange;
    assertWriteEnabled();
    m_ucsOrigin = origin;
    m_ucsX = x;
    m_ucsY = y;
    m_ucsName = {};
    m_orthoType = 0;
    return Vcad::eOk;
}

void VcDbAbstractViewTableRecord::setUcsName(VcDbObjectId ucs)
{
    assertWriteEnabled();
    m_ucsName = ucs;
}

void VcDbAbstractViewTableRecord::ucsFields(FieldVisitor& v)
{
    v.point(110, m_ucsOrigin);
    v.vector(111, m_ucsX);
    v.vector(112, m_ucsY);
    v.number(79, m_orthoType);
    v.real(146, m_elevation);
    v.optionalRef(345, RefKind::HardPointer, m_ucsName);
    v.optionalRef(346, RefKind::HardPointer, m_baseUcs);
}

void VcDbViewTableRecord::setIsPaperspaceView(bool paperspace)
{
    assertWriteEnabled();
    m_flags = std::int16_t(paperspace ? m_flags | 1 : m_flags & ~1);
}

Vcad::ErrorStatus VcDbViewTableRecord::setUcs(const VcGePoint3d& origin, const VcGeVector3d& xAxis,
                                              const VcGeVector3d& yAxis)
{
    const Vcad::ErrorStatus status = VcDbAbstractViewTableRecord::setUcs(origin, xAxis, yAxis);
    if (status == Vcad::eOk)
        m_hasUcs = true;
    return status;
}

void VcDbViewTableRecord::fields(FieldVisitor& v)
{
    VcDbSymbolTableRecord::fields(v);
    v.subclass("AcDbViewTableRecord");
    nameAndFlags(v);
    v.real(40, m_height);
    v.point2(10, m_center);
    v.real(41, m_width);
    v.vector(11, m_direction);
    v.point(12, m_target);
    v.real(42, m_lensLength);
    v.real(43, m_frontClip);
    v.real(44, m_backClip);
    v.angle(50, m_twist);
    v.number(71, m_mode);
    if (!v.isReading() && !v.atLeast(DxfVersion::R2000))
        return;
    v.number(281, m_renderMode);
    v.number(72, m_hasUcs);
    if (v.isReading() || v.atLeast(DxfVersion::R2007)) {
        v.optionalNumber(73, m_cameraPlottable, false);
        v.optionalRef(332, RefKind::SoftPointer, m_background);
        v.optionalRef(334, RefKind::SoftPointer, m_liveSection);
        v.optionalRef(348, RefKind::HardPointer, m_visualStyle);
        v.optionalRef(361, RefKind::HardOwner, m_sun);
    }
    if (m_hasUcs)
        ucsFields(v);
}

VCDB_SETTER(VcDbViewportTableRecord, setSnapEnabled, bool, m_snapOn, true)
VCDB_SETTER(VcDbViewportTableRecord, setGridEnabled, bool, m_gridOn, true)
VCDB_SETTER(VcDbViewportTableRecord, setSnapIncrements, const VcGePoint2d&, m_snapSpacing, isPositive(value))
VCDB_SETTER(VcDbViewportTableRecord, setGridIncrements, const VcGePoint2d&, m_gridSpacing, value.x >= 0 && value.y >= 0)
VCDB_SETTER(VcDbViewportTableRecord, setSnapBase, const VcGePoint2d&, m_snapBase, isFinite(value))
VCDB_SETTER(VcDbViewportTableRecord, setSnapAngle, double, m_snapAngle, isFinite(value))
VCDB_SETTER(VcDbViewportTableRecord, setIsometricSnapEnabled, bool, m_snapStyle, true)
VCDB_SETTER(VcDbViewportTableRecord, setSnapPair, std::int16_t, m_snapPair, value >= 0 && value <= 2)
VCDB_SETTER(VcDbViewportTableRecord, setCircleSides, std::int16_t, m_circleSides, value >= 1 && value <= 20000)
VCDB_SETTER(VcDbViewportTableRecord, setUcsIcon, std::int16_t, m_ucsIcon, value >= 0 && value <= 7)

void VcDbViewportTableRecord::setCorners(const VcGePoint2d& lowerLeft, const VcGePoint2d& upperRight)
{
    assertWriteEnabled();
    m_lowerLeft = lowerLeft;
    m_upperRight = upperRight;
}

void VcDbViewportTableRecord::fields(FieldVisitor& v)
{
    VcDbSymbolTableRecord::fields(v);
    v.subclass("AcDbViewportTableRecord");
    nameAndFlags(v);
    v.point2(10, m_lowerLeft);
    v.point2(11, m_upperRight);
    v.point2(12, m_center);
    v.point2(13, m_snapBase);
    v.point2(14, m_snapSpacing);
    v.point2(15, m_gridSpacing);
    v.vector(16, m_direction);
    v.point(17, m_target);
    aspectFields(v);
    v.real(42, m_lensLength);
    v.real(43, m_frontClip);
    v.real(44, m_backClip);
    v.angle(50, m_snapAngle);
    v.angle(51, m_twist);
    v.number(71, m_mode);
    v.number(72, m_circleSides);
    v.number(73, m_fastZoom);
    v.number(74, m_ucsIcon);
    v.number(75, m_snapOn);
    v.number(76, m_gridOn);
    v.number(77, m_snapStyle);
    v.number(78, m_snapPair);
    if (!v.isReading() && !v.atLeast(DxfVersion::R2000))
        return;
    v.number(281, m_renderMode);
    v.number(65, m_ucsPerViewport);
    ucsFields(v);
    if (v.isReading() || v.atLeast(DxfVersion::R2007))
        lightingFields(v);
}

// A file has the height and the ratio of width to height. The ratio stands as it came as long as it still says the width.
void VcDbViewportTableRecord::aspectFields(FieldVisitor& v)
{
    if (!v.isReading() && m_height > 0 && m_aspect * m_height != m_width)
        m_aspect = m_width / m_height;
    v.real(40, m_height);
    v.real(41, m_aspect);
    if (v.isReading())
        m_width = m_aspect * m_height;
}

void VcDbViewportTableRecord::lightingFields(FieldVisitor& v)
{
    v.optionalRef(348, RefKind::HardPointer, m_visualStyle);
    v.number(60, m_gridDisplay);
    v.number(61, m_gridMajor);
    v.number(292, m_defaultLighting);
    v.number(282, m_lightingType);
    v.real(141, m_brightness);
    v.real(142, m_contrast);
    v.number(63, m_ambientColor);
    v.optionalNumber(421, m_ambientRgb, -1);
    v.optionalRef(361, RefKind::HardOwner, m_sun);
}

// Coordinate systems

VCDB_SETTER(VcDbUCSTableRecord, setOrigin, const VcGePoint3d&, m_origin, isFinite(value))

Vcad::ErrorStatus VcDbUCSTableRecord::setAxes(const VcGeVector3d& xAxis, const VcGeVector3d& yAxis)
{
    VcGeVector3d x = xAxis, y = yAxis;
    if (!rightAngled(x, y))
        return Vcad::eOutOfRange;
    assertWriteEnabled();
    m_xAxis = x;
    m_yAxis = y;
    m_orthoType = 0;
    return Vcad::eOk;
}

void VcDbUCSTableRecord::fields(FieldVisitor& v)
{
    VcDbSymbolTableRecord::fields(v);
    v.subclass("AcDbUCSTableRecord");
    nameAndFlags(v);
    v.point(10, m_origin);
    v.vector(11, m_xAxis);
    v.vector(12, m_yAxis);
    if (!v.isReading() && !v.atLeast(DxfVersion::R2000))
        return;
    v.number(79, m_orthoType);
    v.real(146, m_elevation);
    v.optionalRef(346, RefKind::HardPointer, m_baseUcs);
    v.repeated(71, m_orthoOrigins, [&](OrthoOrigin& ortho) {
        v.number(71, ortho.type);
        v.point(13, ortho.origin);
    });
}
