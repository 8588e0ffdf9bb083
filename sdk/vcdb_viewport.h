// Viewports of layouts, and lights.
#pragma once

#include "vcdb_entity.h"

class VcDbViewport;

// The scale in which a viewport shows annotative objects, as the viewport names it. It belongs to the host and is valid until
// the next viewport is asked for its own.
class VK_SDK VcDbAnnotationScale {
public:
    // The copy belongs to the caller (vcutDelString).
    Vcad::ErrorStatus getName(wchar_t*& name) const;
    // Takes the scale of that name in the drawing's list; eKeyNotFound when it has none.
    Vcad::ErrorStatus setName(const wchar_t* name);
    // An id that is no scale of the drawing is refused, and what the name has set stays.
    Vcad::ErrorStatus setScaleId(VcDbObjectId scale);

private:
    friend class VcDbViewport;
    VcDbObjectId m_viewport;
};

class VK_SDK VcDbSystemInternals {
public:
    static VcDbAnnotationScale* getImpAnnotationScale(VcDbAnnotationScale* scale) { return scale; }
};

class VK_SDK VcDbViewport : public VcDbEntity {
    VCDB_DECLARE(VcDbViewport)
public:
    VcGePoint3d centerPoint() const { return m_center; }  // on the sheet
    Vcad::ErrorStatus setCenterPoint(const VcGePoint3d& p);
    double width() const { return m_width; }
    Vcad::ErrorStatus setWidth(double width);
    double height() const { return m_height; }
    Vcad::ErrorStatus setHeight(double height);
    // Number of the viewport in its layout, 1 for the sheet itself.
    std::int16_t number() const { return m_number; }
    void setNumber(std::int16_t number);
    // A status below 0 is that of a viewport beside the sheet or beyond the number that is kept active: it is on all the same.
    bool isOn() const { return m_status != 0 && (m_viewFlags & kOff) == 0; }
    Vcad::ErrorStatus setOn(bool on);

    VcGePoint2d viewCenter() const { return m_viewCenter; }  // in display coordinates
    Vcad::ErrorStatus setViewCenter(const VcGePoint2d& p);
    VcGePoint3d viewTarget() const { return m_viewTarget; }
    Vcad::ErrorStatus setViewTarget(const VcGePoint3d& p);
    VcGeVector3d viewDirection() const { return m_viewDirection; }  // from the target to the camera
    Vcad::ErrorStatus setViewDirection(const VcGeVector3d& direction);
    double viewHeight() const { return m_viewHeight; }
    Vcad::ErrorStatus setViewHeight(double height);
    double twistAngle() const { return m_twist; }
    Vcad::ErrorStatus setTwistAngle(double angle);
    double lensLength() const { return m_lensLength; }
    Vcad::ErrorStatus setLensLength(double length);
    // Lengths on the sheet to lengths in the model.
    double customScale() const { return m_viewHeight > 0 ? m_height / m_viewHeight : 1.0; }
    Vcad::ErrorStatus setCustomScale(double scale);
    bool isLocked() const { return (m_viewFlags & kLocked) != 0; }
    Vcad::ErrorStatus setLocked(bool locked);

    // Null when the viewport names none.
    VcDbAnnotationScale* annotationScale() const;

    bool isUcsSavedWithViewport() const { return m_ucsPerViewport != 0; }
    void getUcs(VcGePoint3d& origin, VcGeVector3d& xAxis, VcGeVector3d& yAxis) const;
    // Axes are made unit vectors; they must stand at right angles.
    Vcad::ErrorStatus setUcs(const VcGePoint3d& origin, const VcGeVector3d& xAxis, const VcGeVector3d& yAxis);
    // The record of that system; setUcs() forgets it.
    VcDbObjectId ucsName() const { return m_ucs; }
    void setUcsName(VcDbObjectId ucs);
    void setUcsSavedWithViewport(bool saved);
    double frontClipDistance() const { return m_frontClip; }
    double backClipDistance() const { return m_backClip; }
    Vcad::ErrorStatus setClipDistances(double front, double back);
    std::int16_t viewMode() const { return std::int16_t(m_viewFlags & kViewMode); }  // as VIEWMODE has it
    void setViewMode(std::int16_t mode);
    std::int16_t shadePlot() const { return m_shadePlotMode; }  // 0 as displayed, 1 wireframe, 2 hidden, 3 rendered
    Vcad::ErrorStatus setShadePlot(std::int16_t mode);

    // Seen from a camera that stands at the target plus the view direction.
    bool isPerspectiveOn() const { return (m_viewFlags & kPerspective) != 0; }
    Vcad::ErrorStatus setPerspectiveOn(bool on);
    bool isNonRectClipOn() const { return (m_viewFlags & kClipped) != 0; }
    Vcad::ErrorStatus setNonRectClipOn(bool on);
    VcDbObjectId nonRectClipEntityId() const { return m_clipEntity; }
    Vcad::ErrorStatus setNonRectClipEntityId(VcDbObjectId id);

    // Layers frozen in this viewport alone.
    const VcDbObjectIdArray& frozenLayers() const { return m_frozenLayers; }
    bool isLayerFrozenInViewport(VcDbObjectId layer) const;
    Vcad::ErrorStatus freezeLayersInViewport(const VcDbObjectIdArray& layers);
    Vcad::ErrorStatus thawLayersInViewport(const VcDbObjectIdArray& layers);
    Vcad::ErrorStatus thawAllLayersInViewport();

    // An even scale without rotation out of the sheet's plane.
    Vcad::ErrorStatus transformBy(const VcGeMatrix3d& m) override;
    Vcad::ErrorStatus getGeomExtents(VcDbExtents& extents) const override;
    void fields(FieldVisitor& visitor) override;

private:
    enum ViewFlag : std::int32_t {
        kPerspective = 1,
        kViewMode = 0x1f,
        kLocked = 0x4000,
        kClipped = 0x10000,
        kOff = 0x20000
    };
    void setViewFlag(std::int32_t flag, bool on);
    void viewFields(FieldVisitor& visitor);
    void layerFields(FieldVisitor& visitor);
    void ucsFields(FieldVisitor& visitor);
    void shadeFields(FieldVisitor& visitor);

    VcGePoint3d m_center, m_viewTarget;
    VcGePoint2d m_viewCenter, m_snapBase, m_snapSpacing{10, 10}, m_gridSpacing{10, 10};
    VcGeVector3d m_viewDirection{0, 0, 1};
    double m_width = 1, m_height = 1, m_lensLength = 50, m_frontClip = 0, m_backClip = 0, m_viewHeight = 1;
    double m_snapAngle = 0, m_twist = 0, m_elevation = 0, m_brightness = 0, m_contrast = 0;
    VcGePoint3d m_ucsOrigin;
    VcGeVector3d m_ucsX{1, 0, 0}, m_ucsY{0, 1, 0};
    VcDbObjectIdArray m_frozenLayers;
    VcDbObjectId m_clipEntity, m_ucs, m_baseUcs, m_visualStyle, m_shadePlot, m_background, m_sun;
    std::string m_plotStyleSheet;
    std::int32_t m_viewFlags = 0, m_ambientColor = 250, m_ambientRgb = 0;
    std::int16_t m_status = 1, m_number = 0, m_circleSides = 1000, m_renderMode = 0, m_ucsPerViewport = 1,
                 m_ucsIcon = 0;
    std::int16_t m_orthoType = 0, m_shadePlotMode = 0, m_gridMajor = 5, m_lightingType = 1;
    bool m_defaultLighting = true, m_frozenAreHard = false;
};

class VK_SDK VcDbLight : public VcDbEntity {
    VCDB_DECLARE(VcDbLight)
public:
    enum LightType : int { kDistant = 1, kPoint = 2, kSpot = 3 };
    wchar_t* name() const;
    LightType lightType() const { return LightType(m_type); }
    bool isOn() const { return m_on; }
    Vcad::ErrorStatus setOn(bool on);
    double intensity() const { return m_intensity; }
    VcGePoint3d position() const { return m_position; }
    VcGePoint3d targetLocation() const { return m_target; }
    double hotspotAngle() const { return m_hotspot; }
    double falloffAngle() const { return m_falloff; }

    Vcad::ErrorStatus transformBy(const VcGeMatrix3d& m) override;
    Vcad::ErrorStatus getGeomExtents(VcDbExtents& extents) const override;
    void fields(FieldVisitor& visitor) override;

private:
    std::string m_name;
    VcGePoint3d m_position, m_target;
    double m_intensity = 1, m_attenuationStart = 1, m_attenuationEnd = 10, m_hotspot = 0.785398163397448,
           m_falloff = 0.872664625997165;
    std::int32_t m_version = 1, m_shadowMapSize = 256, m_color = 7, m_rgb = -1;
    std::int16_t m_type = 2, m_attenuation = 0, m_shadowType = 0, m_shadowSoftness = 1;
    bool m_on = true, m_plotGlyph = false, m_useLimits = false, m_castShadows = true;
};
