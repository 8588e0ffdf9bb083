// Lights.
#include "host/base/heap.h"
#include "host/db/ent_util.h"
#include "sdk/vcdb_viewport.h"

VCDB_DEFINE(VcDbLight, VcDbEntity, "LIGHT")

wchar_t* VcDbLight::name() const { return heapStringFromUtf8(m_name); }
Vcad::ErrorStatus VcDbLight::setOn(bool on) { return setMember(*this, m_on, on, true); }

Vcad::ErrorStatus VcDbLight::transformBy(const VcGeMatrix3d& m)
{
    if (!planeMove(m, VcGeVector3d::zAxis()))
        return Vcad::eInvalidInput;
    assertWriteEnabled();
    m_position = m * m_position;
    m_target = m * m_target;
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbLight::getGeomExtents(VcDbExtents& extents) const
{
    extents = VcDbExtents(m_position, m_position);
    return Vcad::eOk;
}

void VcDbLight::fields(FieldVisitor& v)
{
    VcDbEntity::fields(v);
    v.subclass("AcDbLight");
    v.number(90, m_version);
    v.text(1, m_name);
    v.number(70, m_type);
    v.number(290, m_on);
    v.number(v.isFile() && !v.atLeast(DxfVersion::R2007) ? 90 : 63, m_color);
    v.optionalNumber<std::int32_t>(421, m_rgb, -1);
    v.number(291, m_plotGlyph);
    v.real(40, m_intensity);
    v.point(10, m_position);
    v.point(11, m_target);
    v.number(72, m_attenuation);
    v.number(292, m_useLimits);
    v.real(41, m_attenuationStart);
    v.real(42, m_attenuationEnd);
    v.angle(50, m_hotspot);
    v.angle(51, m_falloff);
    v.number(293, m_castShadows);
    v.number(73, m_shadowType);
    v.number(91, m_shadowMapSize);
    v.number(280, m_shadowSoftness);
}
