// Layouts and how sheets are plotted.
#pragma once

#include "vcdb_object.h"
#include "vcge.h"

#include <string>

// Paper, printer and scale, for a layout or under a name. Paper lengths are millimetres.
class VK_SDK VcDbPlotSettings : public VcDbObject {
    VCDB_DECLARE(VcDbPlotSettings)
public:
    enum PlotType : std::int16_t { kDisplay = 0, kExtents = 1, kLimits = 2, kView = 3, kWindow = 4, kLayout = 5 };
    enum PaperUnits : std::int16_t { kInches = 0, kMillimeters = 1, kPixels = 2 };
    enum Flag : std::int16_t {
        kViewportBorders = 1,
        kPlotStyles = 2,
        kCentered = 4,
        kHidden = 8,
        kStandardScale = 16,
        kUsePlotStyles = 32,
        kScaleLineweights = 64,
        kPrintLineweights = 128,
        kPaperUnitsSet = 512,
        kModelType = 1024,
    };
    wchar_t* getPlotSettingsName() const;
    Vcad::ErrorStatus setPlotSettingsName(const wchar_t* name);
    wchar_t* getPlotCfgName() const;
    wchar_t* getCanonicalMediaName() const;
    wchar_t* getCurrentStyleSheet() const;
    PlotType plotType() const { return PlotType(m_plotType); }
    PaperUnits plotPaperUnits() const { return PaperUnits(m_paperUnits); }
    std::int16_t plotRotation() const { return m_rotation; }  // quarter turns
    Vcad::ErrorStatus setPlotRotation(std::int16_t quarterTurns);
    Vcad::ErrorStatus setPlotType(PlotType type);
    Vcad::ErrorStatus setPlotPaperUnits(PaperUnits units);
    void getPlotPaperSize(double& width, double& height) const;
    void getPlotPaperMargins(double& left, double& bottom, double& right, double& top) const;
    void getPlotWindowArea(VcGePoint2d& lowerLeft, VcGePoint2d& upperRight) const;
    VcGeVector2d plotOrigin() const { return m_origin; }
    bool useStandardScale() const { return (m_plotFlags & kStandardScale) != 0; }
    std::int16_t stdScaleType() const { return m_standardScale; }
    double stdScale() const { return m_scaleFactor; }
    // Paper units to drawing units.
    void getCustomPrintScale(double& numerator, double& denominator) const;
    Vcad::ErrorStatus setCustomPrintScale(double numerator, double denominator);
    bool modelType() const { return (m_plotFlags & kModelType) != 0; }

    // Host side.
    std::int16_t plotFlags() const { return m_plotFlags; }
    void setPlotFlags(std::int16_t flags);
    const std::string& paperNameUtf8() const { return m_paper; }
    // Margins stand at the sides and at the ends of a sheet in portrait.
    void setPaper(std::string paper, double width, double height, double sideMargin, double endMargin);
    void fields(FieldVisitor& visitor) override;

protected:
    void dropShadePlot();

private:
    void shadeFields(FieldVisitor& visitor);

    std::string m_pageSetup, m_printer = "none_device", m_paper, m_plotView, m_styleSheet;
    double m_margins[4] = {0, 0, 0, 0};  // left, bottom, right, top
    double m_paperWidth = 0, m_paperHeight = 0, m_numerator = 1, m_denominator = 1, m_scaleFactor = 1;
    VcGeVector2d m_origin;
    VcGePoint2d m_windowLow, m_windowHigh, m_imageOrigin;
    VcDbObjectId m_shadePlot;
    std::int16_t m_plotFlags = kPlotStyles | kUsePlotStyles | kPrintLineweights | kPaperUnitsSet | kStandardScale;
    std::int16_t m_paperUnits = kMillimeters, m_rotation = 0, m_plotType = kLayout, m_standardScale = 16;
    std::int16_t m_shadeMode = 0, m_shadeResolution = 2, m_shadeDpi = 300;
};

// A tab: the model, or a sheet with its block of entities.
class VK_SDK VcDbLayout : public VcDbPlotSettings {
    VCDB_DECLARE(VcDbLayout)
public:
    VcDbObjectId getBlockTableRecordId() const { return m_block; }
    Vcad::ErrorStatus setBlockTableRecordId(VcDbObjectId block);
    wchar_t* getLayoutName() const;
    // Also the name of its entry in the dictionary of layouts.
    Vcad::ErrorStatus setLayoutName(const wchar_t* name);
    int getTabOrder() const { return m_tabOrder; }
    Vcad::ErrorStatus setTabOrder(int order);
    Vcad::ErrorStatus getLimits(VcGePoint2d& minimum, VcGePoint2d& maximum) const;
    Vcad::ErrorStatus setLimits(const VcGePoint2d& minimum, const VcGePoint2d& maximum);
    // As last saved; nothing is drawn where the minimum is above the maximum.
    Vcad::ErrorStatus getExtents(VcGePoint3d& minimum, VcGePoint3d& maximum) const;
    VcGePoint3d insertionBase() const { return m_insertionBase; }
    VcDbObjectId lastActiveViewport() const { return m_lastViewport; }
    void setLastActiveViewport(VcDbObjectId viewport);
    void getUcs(VcGePoint3d& origin, VcGeVector3d& xAxis, VcGeVector3d& yAxis) const;
    Vcad::ErrorStatus setUcs(const VcGePoint3d& origin, const VcGeVector3d& xAxis, const VcGeVector3d& yAxis);
    // The record of that system; setUcs() forgets it.
    VcDbObjectId ucsName() const { return m_ucsName; }
    void setUcsName(VcDbObjectId ucs);
    double elevation() const { return m_elevation; }

    // Host side.
    const std::string& nameUtf8() const { return m_name; }
    void setNameUtf8(std::string name);
    std::int16_t layoutFlags() const { return m_layoutFlags; }  // 1 PSLTSCALE, 2 LIMCHECK
    void setLayoutFlags(std::int16_t flags);
    void setExtents(const VcGePoint3d& minimum, const VcGePoint3d& maximum);
    void setInsertionBase(const VcGePoint3d& base);
    // Those to objects of the drawing that it came from.
    void dropReferences();
    void fields(FieldVisitor& visitor) override;

private:
    std::string m_name;
    VcGePoint2d m_limitsMin, m_limitsMax{12, 9};
    VcGePoint3d m_insertionBase, m_extentsMin{1e20, 1e20, 1e20}, m_extentsMax{-1e20, -1e20, -1e20}, m_ucsOrigin;
    VcGeVector3d m_ucsX{1, 0, 0}, m_ucsY{0, 1, 0};
    double m_elevation = 0;
    VcDbObjectId m_block, m_lastViewport, m_ucsName, m_baseUcs;
    std::int16_t m_layoutFlags = 1, m_tabOrder = 0, m_orthoType = 0;
};
