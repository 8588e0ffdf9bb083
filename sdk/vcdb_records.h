// Records of the symbol tables for linetypes, text styles, dimension styles, views, viewports and coordinate systems.
#pragma once

#include "vcdb_dimvars.h"
#include "vcdb_rare.h"
#include "vcdb_tables.h"

#include <optional>

// A repeating pattern of dashes (positive), gaps (negative) and dots (0), with texts and shapes on it.
class VK_SDK VcDbLinetypeTableRecord : public VcDbSymbolTableRecord {
    VCDB_DECLARE(VcDbLinetypeTableRecord)
public:
    enum DashFlag : std::int16_t { kAbsoluteRotation = 1, kText = 2, kShape = 4, kUprightText = 8 };
    struct Dash {
        double length = 0;
        std::int16_t flags = 0;  // of DashFlag; the rest is filled where one of text and shape is set
        std::int16_t shapeNumber = 0;
        VcDbObjectId style;  // text style, or shape file
        double scale = 1, rotation = 0;
        VcGeVector2d offset;
        std::string text;

        bool hasShape() const { return (flags & (kText | kShape)) != 0; }
        bool operator==(const Dash&) const = default;
    };

    wchar_t* asciiDescription() const;
    Vcad::ErrorStatus setAsciiDescription(const wchar_t* text);
    double patternLength() const { return m_patternLength; }
    Vcad::ErrorStatus setPatternLength(double length);
    int numDashes() const { return int(m_dashes.size()); }
    Vcad::ErrorStatus setNumDashes(int count);
    double dashLengthAt(int index) const;  // 0 where there is none
    Vcad::ErrorStatus setDashLengthAt(int index, double length);
    // Whether the pattern is stretched so that a line ends in dashes, as all patterns of linetype files are.
    bool isScaledToFit() const { return m_alignment == 'A'; }

    // Host side.
    const std::string& descriptionUtf8() const { return m_description; }
    const std::vector<Dash>& dashes() const { return m_dashes; }
    // Takes the pattern's length over from the dashes.
    void setPattern(std::string descriptionUtf8, std::vector<Dash> dashes);
    void fields(FieldVisitor& visitor) override;

private:
    void dashFields(FieldVisitor& visitor, Dash& dash);
    std::string m_description;
    std::vector<Dash> m_dashes;
    double m_patternLength = 0;
    std::int16_t m_alignment = 'A';
};

// A font with its size, width and slant, or a shape file (which has no name).
class VK_SDK VcDbTextStyleTableRecord : public VcDbSymbolTableRecord {
    VCDB_DECLARE(VcDbTextStyleTableRecord)
public:
    bool isShapeFile() const { return (m_flags & 1) != 0; }
    void setIsShapeFile(bool shapeFile);
    bool isVertical() const { return (m_flags & 4) != 0; }
    void setIsVertical(bool vertical);
    double textSize() const { return m_textSize; }  // 0: asked for each text
    Vcad::ErrorStatus setTextSize(double size);
    double priorSize() const { return m_priorSize; }
    Vcad::ErrorStatus setPriorSize(double size);
    double xScale() const { return m_xScale; }
    Vcad::ErrorStatus setXScale(double scale);
    double obliquingAngle() const { return m_oblique; }                   // radians
    Vcad::ErrorStatus setObliquingAngle(double angle);                    // within 85 degrees of upright
    std::uint8_t flagBits() const { return std::uint8_t(m_generation); }  // 2 backwards, 4 upside down
    Vcad::ErrorStatus setFlagBits(std::uint8_t bits);
    bool isBackwards() const { return (m_generation & 2) != 0; }
    bool isUpsideDown() const { return (m_generation & 4) != 0; }

    wchar_t* fileName() const;
    Vcad::ErrorStatus setFileName(const wchar_t* file);
    wchar_t* bigFontFileName() const;
    Vcad::ErrorStatus setBigFontFileName(const wchar_t* file);
    // The typeface of an outline font; the name is empty where the style names a font file only.
    Vcad::ErrorStatus font(wchar_t*& typeface, bool& bold, bool& italic, int& charset, int& pitchAndFamily) const;
    // With an empty name the style goes by its font file alone.
    Vcad::ErrorStatus setFont(const wchar_t* typeface, bool bold, bool italic, int charset, int pitchAndFamily);

    // Host side.
    struct Typeface {
        std::string family;
        bool bold = false, italic = false;
        int charset = 0, pitchAndFamily = 0;
    };
    std::optional<Typeface> typeface() const;
    const std::string& fileUtf8() const { return m_file; }
    const std::string& bigFontUtf8() const { return m_bigFont; }
    void setFontFiles(std::string fileUtf8, std::string bigFontUtf8);
    void fields(FieldVisitor& visitor) override;

private:
    std::string m_file = "txt", m_bigFont;
    double m_textSize = 0, m_priorSize = 2.5, m_xScale = 1, m_oblique = 0;
    std::int16_t m_generation = 0;
};

// Values of all dimension variables under a name.
class VK_SDK VcDbDimStyleTableRecord : public VcDbSymbolTableRecord {
    VCDB_DECLARE(VcDbDimStyleTableRecord)
public:
    const VcDbDimVars& dimVars() const { return m_vars; }
    void setDimVars(const VcDbDimVars& vars);

    // Host side.
    void fields(FieldVisitor& visitor) override;
    void fieldsChanged() override;
    // Arrows that a chain has named: finds their blocks and makes those of the built-in arrows that are missing. Done by
    // fieldsChanged() once the record is in a drawing; eKeyNotFound when a block that is no built-in arrow is missing.
    Vcad::ErrorStatus resolveArrowNames();
    // Takes over the variables that stand in the record's extended data, for want of groups: DIMMZF, DIMMZS and those of
    // the alternate units.
    void takeExtendedData();

private:
    void putExtendedData();
    struct ArrowNames {
        std::string both, first, second;
        bool operator==(const ArrowNames&) const = default;
    };
    void variableFields(FieldVisitor& visitor);
    void arrowNameFields(FieldVisitor& visitor);

    VcDbDimVars m_vars;
    VcDbRare<ArrowNames> m_namedArrows;  // read from a chain and not resolved yet
};

// What views and viewports share: where the eye is and what it sees.
class VK_SDK VcDbAbstractViewTableRecord : public VcDbSymbolTableRecord {
    VCRX_DECLARE(VcDbAbstractViewTableRecord)
public:
    VcGePoint2d centerPoint() const { return m_center; }  // in display coordinates
    Vcad::ErrorStatus setCenterPoint(const VcGePoint2d& center);
    double height() const { return m_height; }
    Vcad::ErrorStatus setHeight(double height);
    double width() const { return m_width; }
    Vcad::ErrorStatus setWidth(double width);
    VcGePoint3d target() const { return m_target; }
    Vcad::ErrorStatus setTarget(const VcGePoint3d& target);
    VcGeVector3d viewDirection() const { return m_direction; }  // from the target to the eye
    Vcad::ErrorStatus setViewDirection(const VcGeVector3d& direction);
    double viewTwist() const { return m_twist; }
    Vcad::ErrorStatus setViewTwist(double angle);
    double lensLength() const { return m_lensLength; }
    Vcad::ErrorStatus setLensLength(double millimetres);

    double frontClipDistance() const { return m_frontClip; }
    Vcad::ErrorStatus setFrontClipDistance(double distance);
    double backClipDistance() const { return m_backClip; }
    Vcad::ErrorStatus setBackClipDistance(double distance);
    bool perspectiveEnabled() const { return (m_mode & kPerspective) != 0; }
    Vcad::ErrorStatus setPerspectiveEnabled(bool enabled) { return setMode(kPerspective, enabled); }
    bool frontClipEnabled() const { return (m_mode & kFrontClip) != 0; }
    Vcad::ErrorStatus setFrontClipEnabled(bool enabled) { return setMode(kFrontClip, enabled); }
    bool backClipEnabled() const { return (m_mode & kBackClip) != 0; }
    Vcad::ErrorStatus setBackClipEnabled(bool enabled) { return setMode(kBackClip, enabled); }
    bool frontClipAtEye() const { return (m_mode & kFrontClipNotAtEye) == 0; }
    Vcad::ErrorStatus setFrontClipAtEye(bool atEye) { return setMode(kFrontClipNotAtEye, !atEye); }
    bool ucsFollowMode() const { return (m_mode & kUcsFollow) != 0; }
    Vcad::ErrorStatus setUcsFollowMode(bool follow) { return setMode(kUcsFollow, follow); }
    std::int16_t viewMode() const { return m_mode; }  // as VIEWMODE has it

    void getUcs(VcGePoint3d& origin, VcGeVector3d& xAxis, VcGeVector3d& yAxis) const;
    // Axes are made unit vectors; they must stand at right angles.
    Vcad::ErrorStatus setUcs(const VcGePoint3d& origin, const VcGeVector3d& xAxis, const VcGeVector3d& yAxis);
    double elevation() const { return m_elevation; }
    Vcad::ErrorStatus setElevation(double elevation);
    VcDbObjectId ucsName() const { return m_ucsName; }
    void setUcsName(VcDbObjectId ucs);

protected:
    enum Mode : std::int16_t {
        kPerspective = 1,
        kFrontClip = 2,
        kBackClip = 4,
        kUcsFollow = 8,
        kFrontClipNotAtEye = 16
    };
    VcDbAbstractViewTableRecord() = default;
    Vcad::ErrorStatus setMode(Mode bit, bool on);
    void ucsFields(FieldVisitor& visitor);

    VcGePoint2d m_center;
    VcGePoint3d m_target, m_ucsOrigin;
    VcGeVector3d m_direction{0, 0, 1}, m_ucsX{1, 0, 0}, m_ucsY{0, 1, 0};
    double m_height = 1, m_width = 1, m_twist = 0, m_lensLength = 50, m_frontClip = 0, m_backClip = 0, m_elevation = 0;
    VcDbObjectId m_ucsName, m_baseUcs, m_visualStyle, m_background, m_sun;
    std::int16_t m_mode = 0, m_renderMode = 0, m_orthoType = 0;
};

// A named view.
class VK_SDK VcDbViewTableRecord : public VcDbAbstractViewTableRecord {
    VCDB_DECLARE(VcDbViewTableRecord)
public:
    bool isPaperspaceView() const { return (m_flags & 1) != 0; }
    void setIsPaperspaceView(bool paperspace);
    bool isUcsAssociatedToView() const { return m_hasUcs; }
    Vcad::ErrorStatus setUcs(const VcGePoint3d& origin, const VcGeVector3d& xAxis, const VcGeVector3d& yAxis);

    void fields(FieldVisitor& visitor) override;

private:
    VcDbObjectId m_liveSection;
    bool m_hasUcs = false, m_cameraPlottable = false;
};

// A tile of the model's screen, with its grid, snap and coordinate system. "*Active" are those on the screen.
class VK_SDK VcDbViewportTableRecord : public VcDbAbstractViewTableRecord {
    VCDB_DECLARE(VcDbViewportTableRecord)
public:
    VcGePoint2d lowerLeftCorner() const { return m_lowerLeft; }  // of a screen from 0,0 to 1,1
    VcGePoint2d upperRightCorner() const { return m_upperRight; }
    bool snapEnabled() const { return m_snapOn; }
    Vcad::ErrorStatus setSnapEnabled(bool enabled);
    bool gridEnabled() const { return m_gridOn; }
    Vcad::ErrorStatus setGridEnabled(bool enabled);
    VcGePoint2d snapIncrements() const { return m_snapSpacing; }
    Vcad::ErrorStatus setSnapIncrements(const VcGePoint2d& spacing);
    VcGePoint2d gridIncrements() const { return m_gridSpacing; }
    Vcad::ErrorStatus setGridIncrements(const VcGePoint2d& spacing);
    VcGePoint2d snapBase() const { return m_snapBase; }
    Vcad::ErrorStatus setSnapBase(const VcGePoint2d& base);
    double snapAngle() const { return m_snapAngle; }
    Vcad::ErrorStatus setSnapAngle(double angle);
    bool isometricSnapEnabled() const { return m_snapStyle == 1; }
    Vcad::ErrorStatus setIsometricSnapEnabled(bool enabled);
    std::int16_t snapPair() const { return m_snapPair; }  // 0 left, 1 top, 2 right
    Vcad::ErrorStatus setSnapPair(std::int16_t pair);
    std::int16_t circleSides() const { return m_circleSides; }
    Vcad::ErrorStatus setCircleSides(std::int16_t sides);
    std::int16_t ucsIcon() const { return m_ucsIcon; }  // 1 shown, 2 at the origin
    Vcad::ErrorStatus setUcsIcon(std::int16_t bits);
    std::int16_t gridMajor() const { return m_gridMajor; }
    std::int16_t gridDisplay() const { return m_gridDisplay; }
    bool isUcsSavedWithViewport() const { return m_ucsPerViewport; }

    // Host side.
    void setCorners(const VcGePoint2d& lowerLeft, const VcGePoint2d& upperRight);
    void fields(FieldVisitor& visitor) override;

private:
    void aspectFields(FieldVisitor& visitor);
    void lightingFields(FieldVisitor& visitor);

    VcGePoint2d m_lowerLeft, m_upperRight{1, 1}, m_snapBase, m_snapSpacing{10, 10}, m_gridSpacing{10, 10};
    double m_snapAngle = 0, m_aspect = 1, m_brightness = 0, m_contrast = 0;
    std::int32_t m_ambientRgb = -1;  // -1 where the palette's colour stands alone
    std::int16_t m_circleSides = 1000, m_fastZoom = 1, m_ucsIcon = 3, m_snapStyle = 0, m_snapPair = 0;
    std::int16_t m_gridDisplay = 3, m_gridMajor = 5, m_ambientColor = 250, m_lightingType = 1;
    bool m_snapOn = false, m_gridOn = false, m_ucsPerViewport = true, m_defaultLighting = true;
};

// A named coordinate system.
class VK_SDK VcDbUCSTableRecord : public VcDbSymbolTableRecord {
    VCDB_DECLARE(VcDbUCSTableRecord)
public:
    VcGePoint3d origin() const { return m_origin; }
    Vcad::ErrorStatus setOrigin(const VcGePoint3d& origin);
    VcGeVector3d xAxis() const { return m_xAxis; }
    VcGeVector3d yAxis() const { return m_yAxis; }
    // Axes are made unit vectors; they must stand at right angles.
    Vcad::ErrorStatus setAxes(const VcGeVector3d& xAxis, const VcGeVector3d& yAxis);
    double elevation() const { return m_elevation; }

    void fields(FieldVisitor& visitor) override;

private:
    struct OrthoOrigin {
        std::int16_t type = 0;
        VcGePoint3d origin;
    };
    VcGePoint3d m_origin;
    VcGeVector3d m_xAxis{1, 0, 0}, m_yAxis{0, 1, 0};
    double m_elevation = 0;
    VcDbObjectId m_baseUcs;
    std::vector<OrthoOrigin> m_orthoOrigins;
    std::int16_t m_orthoType = 0;
};
