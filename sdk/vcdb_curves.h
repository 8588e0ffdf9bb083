// Curves: lines, circles, arcs, ellipses, splines and the polyline that is one object. The polylines that own vertices
// are in vcdb_polylines.h.
//
// Points of the accessors are in world coordinates unless a comment says otherwise; angles are radians.
#pragma once

#include "vcdb_entity.h"
#include "vcdb_polylines.h"
#include "vcdb_rare.h"

class VK_SDK VcDbLine : public VcDbCurve {
    VCDB_DECLARE(VcDbLine)
public:
    VcDbLine() = default;
    VcDbLine(const VcGePoint3d& start, const VcGePoint3d& end) : m_start(start), m_end(end) {}

    VcGePoint3d startPoint() const { return m_start; }
    Vcad::ErrorStatus setStartPoint(const VcGePoint3d& p);
    VcGePoint3d endPoint() const { return m_end; }
    Vcad::ErrorStatus setEndPoint(const VcGePoint3d& p);
    double thickness() const { return m_extrusion.thickness(); }
    Vcad::ErrorStatus setThickness(double thickness);
    VcGeVector3d normal() const { return m_extrusion.normal(); }
    Vcad::ErrorStatus setNormal(const VcGeVector3d& normal);

    Vcad::ErrorStatus transformBy(const VcGeMatrix3d& m) override;
    Vcad::ErrorStatus getGeomExtents(VcDbExtents& extents) const override;
    void fields(FieldVisitor& visitor) override;

private:
    VcGePoint3d m_start, m_end;
    VcDbExtrusion m_extrusion;
};

class VK_SDK VcDbPoint : public VcDbEntity {
    VCDB_DECLARE(VcDbPoint)
public:
    VcDbPoint() = default;
    explicit VcDbPoint(const VcGePoint3d& position) : m_position(position) {}

    VcGePoint3d position() const { return m_position; }
    Vcad::ErrorStatus setPosition(const VcGePoint3d& p);
    double thickness() const { return m_extrusion.thickness(); }
    Vcad::ErrorStatus setThickness(double thickness);
    VcGeVector3d normal() const { return m_extrusion.normal(); }
    Vcad::ErrorStatus setNormal(const VcGeVector3d& normal);
    // Of the X axis in force when the point was drawn; turns the mark that PDMODE draws.
    double ecsRotation() const { return m_ecsRotation; }
    Vcad::ErrorStatus setEcsRotation(double angle);

    Vcad::ErrorStatus transformBy(const VcGeMatrix3d& m) override;
    Vcad::ErrorStatus getGeomExtents(VcDbExtents& extents) const override;
    void fields(FieldVisitor& visitor) override;

private:
    VcGePoint3d m_position;
    VcDbExtrusion m_extrusion;
    double m_ecsRotation = 0;
};

// What a ray and a construction line share: a base point and a unit direction.
class VK_SDK VcDbUnboundedLine : public VcDbCurve {
    VCRX_DECLARE(VcDbUnboundedLine)
public:
    VcGePoint3d basePoint() const { return m_base; }
    Vcad::ErrorStatus setBasePoint(const VcGePoint3d& p);
    VcGeVector3d unitDir() const { return m_direction; }
    Vcad::ErrorStatus setUnitDir(const VcGeVector3d& direction);

    Vcad::ErrorStatus transformBy(const VcGeMatrix3d& m) override;
    // Neither ends, so neither has extents.
    Vcad::ErrorStatus getGeomExtents(VcDbExtents& extents) const override;

protected:
    void lineFields(FieldVisitor& visitor, const char* marker);
    VcGePoint3d m_base;
    VcGeVector3d m_direction{1, 0, 0};
};

class VK_SDK VcDbRay : public VcDbUnboundedLine {
    VCDB_DECLARE(VcDbRay)
public:
    void fields(FieldVisitor& visitor) override;
};

class VK_SDK VcDbXline : public VcDbUnboundedLine {
    VCDB_DECLARE(VcDbXline)
public:
    void fields(FieldVisitor& visitor) override;
};

class VK_SDK VcDbCircle : public VcDbCurve {
    VCDB_DECLARE(VcDbCircle)
public:
    VcDbCircle() = default;
    VcDbCircle(const VcGePoint3d& center, const VcGeVector3d& normal, double radius);

    VcGePoint3d center() const;
    Vcad::ErrorStatus setCenter(const VcGePoint3d& center);
    double radius() const { return m_radius; }
    Vcad::ErrorStatus setRadius(double radius);
    double thickness() const { return m_extrusion.thickness(); }
    Vcad::ErrorStatus setThickness(double thickness);
    VcGeVector3d normal() const { return m_extrusion.normal(); }
    Vcad::ErrorStatus setNormal(const VcGeVector3d& normal);
    bool isClosed() const override { return true; }

    // An uneven scale in the circle's plane is refused; see VcDbEllipse::setFromCircle.
    Vcad::ErrorStatus transformBy(const VcGeMatrix3d& m) override;
    Vcad::ErrorStatus getGeomExtents(VcDbExtents& extents) const override;
    void fields(FieldVisitor& visitor) override;

private:
    VcGePoint3d m_center;  // in the circle's own coordinates
    double m_radius = 1;
    VcDbExtrusion m_extrusion;
};

// Part of a circle, anticlockwise about the normal from start to end.
class VK_SDK VcDbArc : public VcDbCurve {
    VCDB_DECLARE(VcDbArc)
public:
    VcDbArc() = default;
    VcDbArc(const VcGePoint3d& center, const VcGeVector3d& normal, double radius, double startAngle, double endAngle);

    VcGePoint3d center() const;
    Vcad::ErrorStatus setCenter(const VcGePoint3d& center);
    double radius() const { return m_radius; }
    Vcad::ErrorStatus setRadius(double radius);
    // Angles from the X axis of the arc's own coordinates.
    double startAngle() const { return m_startAngle; }
    Vcad::ErrorStatus setStartAngle(double angle);
    double endAngle() const { return m_endAngle; }
    Vcad::ErrorStatus setEndAngle(double angle);
    double totalAngle() const;  // above 0, up to a whole turn
    VcGePoint3d startPoint() const { return pointAt(m_startAngle); }
    VcGePoint3d endPoint() const { return pointAt(m_endAngle); }
    double thickness() const { return m_extrusion.thickness(); }
    Vcad::ErrorStatus setThickness(double thickness);
    VcGeVector3d normal() const { return m_extrusion.normal(); }
    Vcad::ErrorStatus setNormal(const VcGeVector3d& normal);

    Vcad::ErrorStatus transformBy(const VcGeMatrix3d& m) override;
    Vcad::ErrorStatus getGeomExtents(VcDbExtents& extents) const override;
    void fields(FieldVisitor& visitor) override;

private:
    VcGePoint3d pointAt(double angle) const;
    VcGePoint3d m_center;  // in the arc's own coordinates
    double m_radius = 1;
    double m_startAngle = 0, m_endAngle = 3.14159265358979323846;
    VcDbExtrusion m_extrusion;
};

// An ellipse or a part of one, from the start to the end parameter, anticlockwise about the normal. The point at a
// parameter t is center + majorAxis * cos t + minorAxis * sin t.
class VK_SDK VcDbEllipse : public VcDbCurve {
    VCDB_DECLARE(VcDbEllipse)
public:
    VcDbEllipse() = default;
    VcDbEllipse(const VcGePoint3d& center, const VcGeVector3d& normal, const VcGeVector3d& majorAxis,
                double radiusRatio, double startParam = 0, double endParam = 6.28318530717958647693);

    VcGePoint3d center() const { return m_center; }
    Vcad::ErrorStatus setCenter(const VcGePoint3d& center);
    VcGeVector3d majorAxis() const { return m_major; }
    VcGeVector3d minorAxis() const;
    double radiusRatio() const { return m_ratio; }  // of the minor to the major, 1e-6 to 1
    Vcad::ErrorStatus setRadiusRatio(double ratio);
    double startParam() const { return m_startParam; }
    Vcad::ErrorStatus setStartParam(double param);
    double endParam() const { return m_endParam; }
    Vcad::ErrorStatus setEndParam(double param);
    // Angles from the major axis to the ends, which differ from the parameters.
    double startAngle() const;
    double endAngle() const;
    VcGeVector3d normal() const { return m_normal; }
    // The whole shape at once: the axis must be perpendicular to the normal, neither may vanish.
    Vcad::ErrorStatus set(const VcGePoint3d& center, const VcGeVector3d& normal, const VcGeVector3d& majorAxis,
                          double radiusRatio, double startParam, double endParam);
    // Becomes what any invertible matrix makes of a circle or an arc.
    Vcad::ErrorStatus setFromCircle(const VcDbCircle& circle, const VcGeMatrix3d& m);
    Vcad::ErrorStatus setFromArc(const VcDbArc& arc, const VcGeMatrix3d& m);
    VcGePoint3d pointAt(double param) const;
    bool isClosed() const override;

    Vcad::ErrorStatus transformBy(const VcGeMatrix3d& m) override;
    Vcad::ErrorStatus getGeomExtents(VcDbExtents& extents) const override;
    void fields(FieldVisitor& visitor) override;

private:
    VcGePoint3d m_center;
    VcGeVector3d m_major{1, 0, 0}, m_normal{0, 0, 1};
    double m_ratio = 1, m_startParam = 0, m_endParam = 6.28318530717958647693;
};

// A polyline in one plane whose vertices are plain values.
class VK_SDK VcDbPolyline : public VcDbCurve {
    VCDB_DECLARE(VcDbPolyline)
public:
    unsigned numVerts() const { return unsigned(m_points.size()); }
    Vcad::ErrorStatus addVertexAt(unsigned index, const VcGePoint2d& point, double bulge = 0, double startWidth = -1,
                                  double endWidth = -1);
    Vcad::ErrorStatus removeVertexAt(unsigned index);
    // In the polyline's own coordinates, and in the world's.
    Vcad::ErrorStatus getPointAt(unsigned index, VcGePoint2d& point) const;
    Vcad::ErrorStatus getPointAt(unsigned index, VcGePoint3d& point) const;
    Vcad::ErrorStatus setPointAt(unsigned index, const VcGePoint2d& point);
    // Tangent of a quarter of the arc's angle from this vertex to the next; positive turns anticlockwise.
    Vcad::ErrorStatus getBulgeAt(unsigned index, double& bulge) const;
    Vcad::ErrorStatus setBulgeAt(unsigned index, double bulge);
    Vcad::ErrorStatus getWidthsAt(unsigned index, double& start, double& end) const;
    Vcad::ErrorStatus setWidthsAt(unsigned index, double start, double end);
    // Fails when the widths differ.
    Vcad::ErrorStatus getConstantWidth(double& width) const;
    Vcad::ErrorStatus setConstantWidth(double width);
    bool hasBulges() const { return !m_bulges.empty(); }
    bool hasWidth() const { return m_constantWidth != 0 || m_widths.isSet(); }

    bool isClosed() const override { return (m_flags & 1) != 0; }
    void setClosed(bool closed);
    // Whether a linetype runs on through the vertices.
    bool hasPlinegen() const { return (m_flags & 128) != 0; }
    void setPlinegen(bool on);
    double elevation() const { return m_elevation; }
    Vcad::ErrorStatus setElevation(double elevation);
    double thickness() const { return m_extrusion.thickness(); }
    Vcad::ErrorStatus setThickness(double thickness);
    VcGeVector3d normal() const { return m_extrusion.normal(); }
    Vcad::ErrorStatus setNormal(const VcGeVector3d& normal);

    // With arcs or widths, an uneven scale in the polyline's plane is refused.
    Vcad::ErrorStatus transformBy(const VcGeMatrix3d& m) override;
    Vcad::ErrorStatus getGeomExtents(VcDbExtents& extents) const override;
    Vcad::ErrorStatus explode(std::vector<VcDbEntity*>& pieces) const override;
    void fields(FieldVisitor& visitor) override;

private:
    struct Widths {
        double start = 0, end = 0;
        bool operator==(const Widths&) const = default;
    };
    struct VertexFields;
    void readVertices(FieldVisitor& visitor);
    void writeVertices(FieldVisitor& visitor);
    bool isIndex(unsigned i) const { return i < m_points.size(); }
    Widths widthsAt(std::size_t index) const;

    using WidthList = std::vector<Widths>;
    using IdList = std::vector<std::int32_t>;

    std::vector<VcGePoint2d> m_points;
    std::vector<double> m_bulges;  // empty when all are 0
    VcDbRare<WidthList> m_widths;  // none when all are 0 or m_constantWidth says them
    VcDbRare<IdList> m_vertexIds;  // none when all are 0
    double m_constantWidth = 0, m_elevation = 0;
    VcDbExtrusion m_extrusion;
    std::int16_t m_flags = 0;
};

// A NURBS curve, with the points that it was fitted through where there are any.
class VK_SDK VcDbSpline : public VcDbCurve {
    VCDB_DECLARE(VcDbSpline)
public:
    int degree() const { return m_degree; }
    bool isRational() const { return (m_flags & 4) != 0; }
    bool isClosed() const override { return (m_flags & 1) != 0; }
    bool isPeriodic() const { return (m_flags & 2) != 0; }
    bool isPlanar() const { return (m_flags & 8) != 0; }

    int numControlPoints() const { return int(m_controlPoints.size()); }
    Vcad::ErrorStatus getControlPointAt(int index, VcGePoint3d& point) const;
    Vcad::ErrorStatus setControlPointAt(int index, const VcGePoint3d& point);
    double weightAt(int index) const;  // 1 where there are none
    int numFitPoints() const { return int(m_fitPoints.size()); }
    Vcad::ErrorStatus getFitPointAt(int index, VcGePoint3d& point) const;
    bool hasFitData() const { return !m_fitPoints.empty(); }
    double fitTolerance() const { return m_fitTolerance; }
    Vcad::ErrorStatus setFitTolerance(double tolerance);
    const std::vector<double>& knots() const { return m_knots; }
    const std::vector<VcGePoint3d>& controlPoints() const { return m_controlPoints; }
    const std::vector<VcGePoint3d>& fitPoints() const { return m_fitPoints; }
    const std::vector<double>& weights() const { return m_weights; }
    // Knots are one more than the sum of the degree and the number of points; weights are as many as points, or none.
    // What the spline was fitted through is forgotten.
    Vcad::ErrorStatus setNurbsData(int degree, bool closed, bool periodic, const std::vector<VcGePoint3d>& points,
                                   const std::vector<double>& knots, const std::vector<double>& weights);

    Vcad::ErrorStatus transformBy(const VcGeMatrix3d& m) override;
    Vcad::ErrorStatus getGeomExtents(VcDbExtents& extents) const override;
    void fields(FieldVisitor& visitor) override;

protected:
    void splineFields(FieldVisitor& visitor);

private:
    std::vector<double> m_knots, m_weights;
    std::vector<VcGePoint3d> m_controlPoints, m_fitPoints;
    VcDbRare<VcGeVector3d> m_startTangent, m_endTangent;
    VcGeVector3d m_normal{0, 0, 1};
    double m_knotTolerance = 1e-7, m_controlTolerance = 1e-7, m_fitTolerance = 1e-10;
    std::int16_t m_flags = 0, m_degree = 3;
    bool m_hasNormal = false;
};

class VK_SDK VcDbHelix : public VcDbSpline {
    VCDB_DECLARE(VcDbHelix)
public:
    VcGePoint3d axisPoint() const { return m_axisPoint; }
    VcGePoint3d startPoint() const { return m_startPoint; }
    VcGeVector3d axisVector() const { return m_axis; }
    double baseRadius() const { return m_radius; }
    double turns() const { return m_turns; }
    double turnHeight() const { return m_turnHeight; }

    Vcad::ErrorStatus transformBy(const VcGeMatrix3d& m) override;
    void fields(FieldVisitor& visitor) override;

private:
    VcGePoint3d m_axisPoint, m_startPoint;
    VcGeVector3d m_axis{0, 0, 1};
    double m_radius = 1, m_turns = 3, m_turnHeight = 1;
    std::int32_t m_majorRelease = 29, m_maintenanceRelease = 63;
    std::int16_t m_constrain = 1;
    bool m_anticlockwise = true;
};
