// Raster images and wipeouts, which differ in the name of their subclass only.
#include "host/db/ent_util.h"
#include "host/db/hatch_fields.h"
#include "sdk/vcdb_images.h"
#include "sdk/vcdb_objects.h"

VCDB_DEFINE(VcDbRasterImage, VcDbEntity, "IMAGE")
VCDB_DEFINE(VcDbWipeout, VcDbRasterImage, "WIPEOUT")

Vcad::ErrorStatus VcDbRasterImage::setImageDefId(VcDbObjectId id)
{
    return setMember(*this, m_definition, id, id.isNull() || mayReferTo(*this, id, VcDbRasterImageDef::desc()));
}

void VcDbRasterImage::getOrientation(VcGePoint3d& origin, VcGeVector3d& uPixel, VcGeVector3d& vPixel) const
{
    origin = m_origin;
    uPixel = m_u;
    vPixel = m_v;
}

Vcad::ErrorStatus VcDbRasterImage::setOrientation(const VcGePoint3d& origin, const VcGeVector3d& u,
                                                  const VcGeVector3d& v)
{
    if (!isFinite(origin) || !isDirection(u) || !isDirection(v) || u.normal().isParallelTo(v.normal()))
        return Vcad::eOutOfRange;
    assertWriteEnabled();
    m_origin = origin;
    m_u = u;
    m_v = v;
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbRasterImage::setImageSize(const VcGeVector2d& size)
{
    return setMember(*this, m_size, VcGePoint2d(size.x, size.y), isPositive(size.x) && isPositive(size.y));
}

void VcDbRasterImage::setDisplayOpt(ImageDisplayOpt option, bool on)
{
    setMember(*this, m_display, std::int16_t(on ? m_display | option : m_display & ~option), true);
}

static Vcad::ErrorStatus setPercent(VcDbObject& object, std::int8_t& member, int percent)
{
    return setMember(object, member, std::int8_t(percent), percent >= 0 && percent <= 100);
}

Vcad::ErrorStatus VcDbRasterImage::setBrightness(int percent) { return setPercent(*this, m_brightness, percent); }
Vcad::ErrorStatus VcDbRasterImage::setContrast(int percent) { return setPercent(*this, m_contrast, percent); }
Vcad::ErrorStatus VcDbRasterImage::setFade(int percent) { return setPercent(*this, m_fade, percent); }
void VcDbRasterImage::setClipped(bool on) { setMember(*this, m_clipped, std::int8_t(on), true); }

Vcad::ErrorStatus VcDbRasterImage::setClipBoundary(ClipBoundaryType type, const std::vector<VcGePoint2d>& boundary)
{
    const bool fits = type == kRect ? boundary.size() == 2 : type == kPoly && boundary.size() >= 3;
    if (!fits)
        return Vcad::eInvalidInput;
    for (const VcGePoint2d& p : boundary)
        if (!isFinite(p))
            return Vcad::eOutOfRange;
    assertWriteEnabled();
    m_boundary = boundary;
    m_boundaryType = std::int8_t(type);
    m_clipped = 1;
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbRasterImage::getVertices(std::vector<VcGePoint3d>& vertices) const
{
    std::vector<VcGePoint2d> corners = m_boundary;
    if (!isClipped() || corners.size() < 2)
        corners = {{-0.5, -0.5}, {m_size.x - 0.5, m_size.y - 0.5}};
    if (corners.size() == 2) {
        const VcGePoint2d a = corners[0], b = corners[1];
        corners = {a, {b.x, a.y}, b, {a.x, b.y}};
    }
    vertices.clear();
    for (const VcGePoint2d& p : corners)
        vertices.push_back(m_origin + m_u * (p.x + 0.5) + m_v * (m_size.y - 0.5 - p.y));
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbRasterImage::transformBy(const VcGeMatrix3d& m)
{
    const VcGeVector3d u = m * m_u, v = m * m_v;
    if (!isDirection(u) || !isDirection(v))
        return Vcad::eInvalidInput;
    return setOrientation(m * m_origin, u, v);
}

Vcad::ErrorStatus VcDbRasterImage::getGeomExtents(VcDbExtents& extents) const
{
    extents = VcDbExtents();
    std::vector<VcGePoint3d> vertices;
    getVertices(vertices);
    for (const VcGePoint3d& p : vertices)
        extents.addPoint(p);
    return extentsStatus(extents);
}

void VcDbRasterImage::fields(FieldVisitor& v)
{
    VcDbEntity::fields(v);
    v.subclass(marker());
    v.number(90, m_version);
    v.point(10, m_origin);
    v.vector(11, m_u);
    v.vector(12, m_v);
    v.point2(13, m_size);
    v.ref(340, RefKind::HardPointer, m_definition);
    v.number(70, m_display);
    v.number(280, m_clipped);
    v.number(281, m_brightness);
    v.number(282, m_contrast);
    v.number(283, m_fade);
    v.ref(360, RefKind::HardOwner, m_reactor);
    v.number(71, m_boundaryType);
    v.count(91, m_boundary.size());
    listed(v, 14, m_boundary, [&](VcGePoint2d& p) { v.point2(14, p); });
    if (!v.isWriting() || v.atLeast(DxfVersion::R2010))
        v.number(290, m_inverted);
}
