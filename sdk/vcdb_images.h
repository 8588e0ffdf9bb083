// Raster images and wipeouts.
#pragma once

#include "vcdb_entity.h"

class VK_SDK VcDbRasterImage : public VcDbEntity {
    VCDB_DECLARE(VcDbRasterImage)
public:
    enum ImageDisplayOpt : int { kShow = 1, kShowUnAligned = 2, kClip = 4, kTransparent = 8 };
    enum ClipBoundaryType : int { kInvalid = 0, kRect = 1, kPoly = 2 };

    VcDbObjectId imageDefId() const { return m_definition; }
    Vcad::ErrorStatus setImageDefId(VcDbObjectId definition);
    VcDbObjectId reactorId() const { return m_reactor; }
    // The lower left corner and the steps of one pixel, in world coordinates.
    void getOrientation(VcGePoint3d& origin, VcGeVector3d& uPixel, VcGeVector3d& vPixel) const;
    Vcad::ErrorStatus setOrientation(const VcGePoint3d& origin, const VcGeVector3d& uPixel, const VcGeVector3d& vPixel);
    VcGeVector2d imageSize() const { return {m_size.x, m_size.y}; }  // in pixels
    Vcad::ErrorStatus setImageSize(const VcGeVector2d& size);

    bool isSetDisplayOpt(ImageDisplayOpt option) const { return (m_display & option) != 0; }
    void setDisplayOpt(ImageDisplayOpt option, bool on);
    int brightness() const { return m_brightness; }
    Vcad::ErrorStatus setBrightness(int percent);
    int contrast() const { return m_contrast; }
    Vcad::ErrorStatus setContrast(int percent);
    int fade() const { return m_fade; }
    Vcad::ErrorStatus setFade(int percent);

    bool isClipped() const { return m_clipped != 0; }
    void setClipped(bool on);
    bool isClipInverted() const { return m_inverted; }
    ClipBoundaryType clipBoundaryType() const { return ClipBoundaryType(m_boundaryType); }
    // In pixels from the upper left one's centre, downwards; a rectangle has two corners.
    const std::vector<VcGePoint2d>& clipBoundary() const { return m_boundary; }
    Vcad::ErrorStatus setClipBoundary(ClipBoundaryType type, const std::vector<VcGePoint2d>& boundary);
    // Corners of what is seen, in world coordinates; a rectangle has four.
    Vcad::ErrorStatus getVertices(std::vector<VcGePoint3d>& vertices) const;

    Vcad::ErrorStatus transformBy(const VcGeMatrix3d& m) override;
    Vcad::ErrorStatus getGeomExtents(VcDbExtents& extents) const override;
    void fields(FieldVisitor& visitor) override;

protected:
    virtual const char* marker() const { return "AcDbRasterImage"; }

    VcGePoint3d m_origin;
    VcGeVector3d m_u{1, 0, 0}, m_v{0, 1, 0};
    VcGePoint2d m_size{1, 1};
    VcDbObjectId m_definition, m_reactor;
    std::vector<VcGePoint2d> m_boundary{{-0.5, -0.5}, {0.5, 0.5}};
    std::int32_t m_version = 0;
    std::int16_t m_display = kShow | kShowUnAligned | kClip;
    std::int8_t m_clipped = 0, m_brightness = 50, m_contrast = 50, m_fade = 0, m_boundaryType = kRect;
    bool m_inverted = false;
};

// An area that hides what lies beneath.
class VK_SDK VcDbWipeout : public VcDbRasterImage {
    VCDB_DECLARE(VcDbWipeout)
protected:
    const char* marker() const override { return "AcDbWipeout"; }
};
