// Hatches: areas with a pattern, a solid fill or a gradient. Boundaries are in the hatch's own coordinates.
#pragma once

#include "vcdb_entity.h"
#include "vcdb_rare.h"

#include <utility>

class VK_SDK VcDbHatch : public VcDbEntity {
    VCDB_DECLARE(VcDbHatch)
public:
    enum HatchStyle : int { kNormal = 0, kOuter = 1, kIgnore = 2 };
    enum HatchPatternType : int { kUserDefined = 0, kPreDefined = 1, kCustomDefined = 2 };
    enum HatchLoopType : int {
        kDefault = 0,
        kExternal = 1,
        kPolyline = 2,
        kDerived = 4,
        kTextbox = 8,
        kOutermost = 16
    };
    enum HatchEdgeType : int { kLine = 1, kCirArc = 2, kEllArc = 3, kSpline = 4 };
    enum GradientPatternType : int { kPreDefinedGradient = 0, kUserDefinedGradient = 1 };

    struct Vertex {
        VcGePoint2d point;
        double bulge = 0;
        bool operator==(const Vertex&) const = default;
    };
    struct ControlPoint {
        VcGePoint2d point;
        double weight = 1;
        bool operator==(const ControlPoint&) const = default;
    };
    // What only splines have.
    struct SplineData {
        std::int32_t degree = 3;
        bool isRational = false, isPeriodic = false;
        bool saysFitPoints = false;  // files before 2010 have no place for them
        bool hasTangents = false;
        std::vector<double> knots;
        std::vector<ControlPoint> controlPoints;
        std::vector<VcGePoint2d> fitPoints;
        VcGePoint2d startTangent, endTangent;
        bool operator==(const SplineData&) const = default;
    };
    // A line from first to second; an arc about first; an ellipse about first with second as the end of its major axis.
    // Angles are as in the file: measured clockwise about where the edge is not anticlockwise.
    struct Edge {
        std::int16_t type = kLine;
        bool isAnticlockwise = true;
        VcGePoint2d first, second;
        double radius = 0;  // of an ellipse: ratio of the axes
        double startAngle = 0, endAngle = 0;
        VcDbRare<SplineData> spline;
    };
    struct Loop {
        std::int32_t type = kDefault;
        bool isClosed = true, saysBulges = false;
        std::vector<Vertex> vertices;  // of a polyline
        std::vector<Edge> edges;       // of all others
        std::vector<VcDbObjectId> sources;
        bool isPolyline() const { return (type & kPolyline) != 0; }
    };
    // One family of parallel lines. The angle is in radians, offsets are as they are drawn.
    struct PatternLine {
        double angle = 0, baseX = 0, baseY = 0, offsetX = 0, offsetY = 0;
        std::vector<double> dashes;
        bool operator==(const PatternLine&) const = default;
    };

    VcDbHatch() = default;

    wchar_t* patternName() const;  // the copy belongs to the caller (vcutDelString)
    Vcad::ErrorStatus setPatternName(const wchar_t* name);
    HatchPatternType patternType() const { return HatchPatternType(m_patternType); }
    bool isSolidFill() const { return m_solid != 0; }
    void setSolidFill(bool on);
    double patternAngle() const { return m_patternAngle; }
    Vcad::ErrorStatus setPatternAngle(double angle);
    double patternScale() const { return m_patternScale; }
    Vcad::ErrorStatus setPatternScale(double scale);
    bool patternDouble() const { return m_double != 0; }
    int numPatternDefinitions() const { return int(m_lines.size()); }
    Vcad::ErrorStatus getPatternDefinitionAt(int index, double& angle, double& baseX, double& baseY, double& offsetX,
                                             double& offsetY, std::vector<double>& dashes) const;
    void setPatternDefinitions(std::vector<PatternLine> lines);

    HatchStyle hatchStyle() const { return HatchStyle(m_style); }
    Vcad::ErrorStatus setHatchStyle(HatchStyle style);
    bool associative() const { return m_associative != 0; }
    Vcad::ErrorStatus setAssociative(bool on);
    Vcad::ErrorStatus getAssocObjIds(std::vector<VcDbObjectId>& ids) const;
    double elevation() const { return m_elevation.z; }
    Vcad::ErrorStatus setElevation(double elevation);
    VcGeVector3d normal() const { return m_extrusion.normal(); }

    int numLoops() const { return int(m_loops.size()); }
    int loopTypeAt(int index) const;  // 0 for an index out of range
    // A polyline's vertices and bulges; eNotApplicable for a loop of edges.
    Vcad::ErrorStatus getLoopAt(int index, int& type, std::vector<VcGePoint2d>& vertices,
                                std::vector<double>& bulges) const;
    // The edges of the other loops; eNotApplicable for a polyline.
    Vcad::ErrorStatus getLoopAt(int index, int& type, std::vector<Edge>& edges) const;
    Vcad::ErrorStatus appendLoop(int type, const std::vector<VcGePoint2d>& vertices, const std::vector<double>& bulges,
                                 const std::vector<VcDbObjectId>& sources = {});
    Vcad::ErrorStatus removeLoopAt(int index);

    bool isGradient() const { return m_gradient.get().isGradient > 0; }
    wchar_t* gradientName() const;
    GradientPatternType gradientType() const { return isUserGradient() ? kUserDefinedGradient : kPreDefinedGradient; }
    double gradientAngle() const { return m_gradient.get().angle; }
    double gradientShift() const { return m_gradient.get().shift; }
    bool gradientOneColorMode() const { return m_gradient.get().oneColor != 0; }
    // The two colours that a gradient runs between.
    std::pair<VcCmColor, VcCmColor> gradientColors() const;

    Vcad::ErrorStatus transformBy(const VcGeMatrix3d& m) override;
    Vcad::ErrorStatus getGeomExtents(VcDbExtents& extents) const override;
    // Lines of the pattern; a solid fill and a gradient have none.
    Vcad::ErrorStatus explode(std::vector<VcDbEntity*>& pieces) const override;
    void fields(FieldVisitor& visitor) override;

    // Host side.
    const std::vector<Loop>& loops() const { return m_loops; }
    void setLoops(std::vector<Loop> loops);
    const std::vector<PatternLine>& patternLines() const { return m_lines; }
    const std::string& patternNameUtf8() const { return m_name; }

private:
    struct GradientColor {
        double value = 0;
        std::int64_t index = -1, rgb = -1;
        bool operator==(const GradientColor&) const = default;
    };
    struct Gradient {
        std::int32_t isGradient = -1, reserved = 0, oneColor = 0;
        double angle = 0, shift = 0, tint = 0;
        std::vector<GradientColor> colors;
        std::string name;
        bool operator==(const Gradient&) const = default;
    };
    bool isUserGradient() const;
    void patternFields(FieldVisitor& visitor);
    void gradientFields(FieldVisitor& visitor);

    VcGePoint3d m_elevation;
    std::string m_name;
    std::vector<Loop> m_loops;
    std::vector<PatternLine> m_lines;
    std::vector<VcGePoint2d> m_seeds;
    VcDbExtrusion m_extrusion;
    VcDbRare<Gradient> m_gradient;
    double m_patternAngle = 0, m_patternScale = 1, m_pixelSize = 0;
    std::int8_t m_solid = 0, m_associative = 0, m_style = 0, m_patternType = 1, m_double = 0;
};
