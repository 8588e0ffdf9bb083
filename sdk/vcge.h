// Geometry values: points, vectors, scales, matrices, planes and the simple curves that modules use.
// Angles are radians. Points transform by M * p with p a column.
#pragma once

#include "vkdefs.h"

#include <cmath>

class VcGeMatrix2d;
class VcGeMatrix3d;
class VcGePlane;
class VcGeVector3d;

struct VK_SDK VcGeTol {
    double equalPoint = 1e-10;
    double equalVector = 1e-10;
};

class VK_SDK VcGeVector2d {
public:
    double x = 0, y = 0;

    constexpr VcGeVector2d() = default;
    constexpr VcGeVector2d(double xx, double yy) : x(xx), y(yy) {}

    constexpr VcGeVector2d operator+(const VcGeVector2d& v) const { return {x + v.x, y + v.y}; }
    constexpr VcGeVector2d operator-(const VcGeVector2d& v) const { return {x - v.x, y - v.y}; }
    constexpr VcGeVector2d operator-() const { return {-x, -y}; }
    constexpr VcGeVector2d operator*(double s) const { return {x * s, y * s}; }
    constexpr VcGeVector2d operator/(double s) const { return {x / s, y / s}; }
    constexpr double dotProduct(const VcGeVector2d& v) const { return x * v.x + y * v.y; }
    constexpr double crossProduct(const VcGeVector2d& v) const { return x * v.y - y * v.x; }
    double length() const { return std::hypot(x, y); }
    constexpr double lengthSqrd() const { return x * x + y * y; }
    double angle() const { return std::atan2(y, x); }
    constexpr VcGeVector2d perpVector() const { return {-y, x}; }
    VcGeVector2d normal() const
    {
        const double l = length();
        return l > 0 ? *this / l : *this;
    }
    VcGeVector2d& normalize() { return *this = normal(); }
    double angleTo(const VcGeVector2d& v) const;  // 0 to pi
    VcGeVector2d& rotateBy(double angle);
    VcGeVector2d& transformBy(const VcGeMatrix2d& m);
    bool isZeroLength(const VcGeTol& tol = {}) const { return length() <= tol.equalVector; }
    bool isParallelTo(const VcGeVector2d& v, const VcGeTol& tol = {}) const;
    bool isEqualTo(const VcGeVector2d& v, const VcGeTol& tol = {}) const;
    constexpr bool operator==(const VcGeVector2d&) const = default;
};

class VK_SDK VcGePoint2d {
public:
    double x = 0, y = 0;

    constexpr VcGePoint2d() = default;
    constexpr VcGePoint2d(double xx, double yy) : x(xx), y(yy) {}

    constexpr VcGePoint2d operator+(const VcGeVector2d& v) const { return {x + v.x, y + v.y}; }
    constexpr VcGePoint2d operator-(const VcGeVector2d& v) const { return {x - v.x, y - v.y}; }
    constexpr VcGeVector2d operator-(const VcGePoint2d& p) const { return {x - p.x, y - p.y}; }
    constexpr VcGePoint2d& operator+=(const VcGeVector2d& v) { return *this = *this + v; }
    constexpr VcGePoint2d& operator-=(const VcGeVector2d& v) { return *this = *this - v; }
    constexpr VcGeVector2d asVector() const { return {x, y}; }
    double distanceTo(const VcGePoint2d& p) const { return (*this - p).length(); }
    VcGePoint2d& set(double xx, double yy) { return *this = {xx, yy}; }
    VcGePoint2d& rotateBy(double angle, const VcGePoint2d& about = VcGePoint2d(0, 0));
    VcGePoint2d& transformBy(const VcGeMatrix2d& m);
    bool isEqualTo(const VcGePoint2d& p, const VcGeTol& tol = {}) const;
    constexpr bool operator==(const VcGePoint2d&) const = default;
};

class VK_SDK VcGeVector3d {
public:
    double x = 0, y = 0, z = 0;

    constexpr VcGeVector3d() = default;
    constexpr VcGeVector3d(double xx, double yy, double zz) : x(xx), y(yy), z(zz) {}

    static constexpr VcGeVector3d xAxis() { return {1, 0, 0}; }
    static constexpr VcGeVector3d yAxis() { return {0, 1, 0}; }
    static constexpr VcGeVector3d zAxis() { return {0, 0, 1}; }

    constexpr VcGeVector3d operator+(const VcGeVector3d& v) const { return {x + v.x, y + v.y, z + v.z}; }
    constexpr VcGeVector3d operator-(const VcGeVector3d& v) const { return {x - v.x, y - v.y, z - v.z}; }
    constexpr VcGeVector3d operator-() const { return {-x, -y, -z}; }
    constexpr VcGeVector3d operator*(double s) const { return {x * s, y * s, z * s}; }
    constexpr VcGeVector3d operator/(double s) const { return {x / s, y / s, z / s}; }
    constexpr VcGeVector3d& operator+=(const VcGeVector3d& v) { return *this = *this + v; }
    constexpr VcGeVector3d& operator-=(const VcGeVector3d& v) { return *this = *this - v; }
    constexpr VcGeVector3d& operator*=(double s) { return *this = *this * s; }
    VcGeVector3d& set(double xx, double yy, double zz) { return *this = {xx, yy, zz}; }
    constexpr double dotProduct(const VcGeVector3d& v) const { return x * v.x + y * v.y + z * v.z; }
    constexpr VcGeVector3d crossProduct(const VcGeVector3d& v) const
    {
        return {y * v.z - z * v.y, z * v.x - x * v.z, x * v.y - y * v.x};
    }
    double length() const { return std::sqrt(lengthSqrd()); }
    constexpr double lengthSqrd() const { return x * x + y * y + z * z; }
    // Unit vector of the same direction; a zero vector stays zero.
    VcGeVector3d normal() const
    {
        const double l = length();
        return l > 0 ? *this / l : *this;
    }
    VcGeVector3d& normalize() { return *this = normal(); }
    VcGeVector3d& negate() { return *this = -*this; }
    double angleTo(const VcGeVector3d& v) const;                           // 0 to pi
    double angleTo(const VcGeVector3d& v, const VcGeVector3d& ref) const;  // 0 to 2 pi, anticlockwise about ref
    VcGeVector3d perpVector() const;  // the X axis that the arbitrary axis algorithm gives for this normal
    // A zero vector is parallel and perpendicular to nothing.
    bool isParallelTo(const VcGeVector3d& v, const VcGeTol& tol = {}) const;
    bool isCodirectionalTo(const VcGeVector3d& v, const VcGeTol& tol = {}) const;
    bool isPerpendicularTo(const VcGeVector3d& v, const VcGeTol& tol = {}) const;
    bool isZeroLength(const VcGeTol& tol = {}) const { return length() <= tol.equalVector; }
    bool isUnitLength(const VcGeTol& tol = {}) const { return std::fabs(length() - 1) <= tol.equalVector; }
    VcGeVector3d& rotateBy(double angle, const VcGeVector3d& axis);
    VcGeVector3d& mirror(const VcGeVector3d& planeNormal);
    VcGeVector3d orthoProject(const VcGeVector3d& planeNormal) const;
    VcGeVector2d convert2d() const { return {x, y}; }
    VcGeVector2d convert2d(const VcGePlane& plane) const;
    bool isEqualTo(const VcGeVector3d& v, const VcGeTol& tol = {}) const;
    VcGeVector3d& transformBy(const VcGeMatrix3d& m);
    constexpr bool operator==(const VcGeVector3d&) const = default;
};

class VK_SDK VcGePoint3d {
public:
    double x = 0, y = 0, z = 0;

    constexpr VcGePoint3d() = default;
    constexpr VcGePoint3d(double xx, double yy, double zz) : x(xx), y(yy), z(zz) {}

    constexpr VcGePoint3d operator+(const VcGeVector3d& v) const { return {x + v.x, y + v.y, z + v.z}; }
    constexpr VcGePoint3d operator-(const VcGeVector3d& v) const { return {x - v.x, y - v.y, z - v.z}; }
    constexpr VcGeVector3d operator-(const VcGePoint3d& p) const { return {x - p.x, y - p.y, z - p.z}; }
    constexpr VcGePoint3d& operator+=(const VcGeVector3d& v) { return *this = *this + v; }
    constexpr VcGePoint3d& operator-=(const VcGeVector3d& v) { return *this = *this - v; }
    constexpr VcGeVector3d asVector() const { return {x, y, z}; }
    VcGePoint3d& set(double xx, double yy, double zz) { return *this = {xx, yy, zz}; }
    double distanceTo(const VcGePoint3d& p) const { return (*this - p).length(); }
    VcGePoint3d& scaleBy(double scale, const VcGePoint3d& about = VcGePoint3d(0, 0, 0));
    VcGePoint3d& mirror(const VcGePlane& plane);
    // The foot of the perpendicular, and the image along a direction. Along the plane itself a point stays where it is.
    VcGePoint3d orthoProject(const VcGePlane& plane) const;
    VcGePoint3d project(const VcGePlane& plane, const VcGeVector3d& direction) const;
    VcGePoint2d convert2d() const { return {x, y}; }
    VcGePoint2d convert2d(const VcGePlane& plane) const;
    VcGePoint3d& transformBy(const VcGeMatrix3d& m);
    VcGePoint3d& rotateBy(double angle, const VcGeVector3d& axis, const VcGePoint3d& about = VcGePoint3d(0, 0, 0));
    bool isEqualTo(const VcGePoint3d& p, const VcGeTol& tol = {}) const;
    constexpr bool operator==(const VcGePoint3d&) const = default;
};

class VK_SDK VcGeScale3d {
public:
    double sx = 1, sy = 1, sz = 1;

    constexpr VcGeScale3d() = default;
    constexpr explicit VcGeScale3d(double s) : sx(s), sy(s), sz(s) {}
    constexpr VcGeScale3d(double x, double y, double z) : sx(x), sy(y), sz(z) {}
    bool isEqualTo(const VcGeScale3d& s, const VcGeTol& tol = {}) const;
    constexpr bool operator==(const VcGeScale3d&) const = default;
};

class VK_SDK VcGeMatrix2d {
public:
    double entry[3][3] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}};

    static VcGeMatrix2d translation(const VcGeVector2d& v);
    static VcGeMatrix2d rotation(double angle, const VcGePoint2d& about = {});
    static VcGeMatrix2d scaling(double scale, const VcGePoint2d& about = {});
    static VcGeMatrix2d mirroring(const VcGePoint2d& onLine, const VcGeVector2d& direction);

    VcGeMatrix2d& setToIdentity();
    VcGeMatrix2d& setToProduct(const VcGeMatrix2d& a, const VcGeMatrix2d& b);
    VcGeMatrix2d& setCoordSystem(const VcGePoint2d& origin, const VcGeVector2d& x, const VcGeVector2d& y);
    void getCoordSystem(VcGePoint2d& origin, VcGeVector2d& x, VcGeVector2d& y) const;
    VcGeMatrix2d inverse() const;  // a singular matrix gives the identity; see isSingular
    bool isSingular(const VcGeTol& tol = {}) const;
    double det() const;
    bool isEqualTo(const VcGeMatrix2d& m, const VcGeTol& tol = {}) const;

    VcGeMatrix2d operator*(const VcGeMatrix2d& m) const;
    VcGeMatrix2d& operator*=(const VcGeMatrix2d& m) { return *this = *this * m; }
    VcGePoint2d operator*(const VcGePoint2d& p) const;
    VcGeVector2d operator*(const VcGeVector2d& v) const;
    bool operator==(const VcGeMatrix2d&) const = default;
};

class VK_SDK VcGeMatrix3d {
public:
    double entry[4][4] = {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}};

    static VcGeMatrix3d translation(const VcGeVector3d& v);
    static VcGeMatrix3d rotation(double angle, const VcGeVector3d& axis, const VcGePoint3d& about = {});
    static VcGeMatrix3d scaling(double scale, const VcGePoint3d& about = {});
    static VcGeMatrix3d scaling(const VcGeScale3d& scale, const VcGePoint3d& about = {});
    static VcGeMatrix3d mirroring(const VcGePlane& plane);
    static VcGeMatrix3d mirroring(const VcGePoint3d& about);
    // Onto a plane along a direction, which must not lie in the plane; else the identity.
    static VcGeMatrix3d projection(const VcGePlane& plane, const VcGeVector3d& direction);
    // From world to the plane's own system (arbitrary axis) and back.
    static VcGeMatrix3d worldToPlane(const VcGeVector3d& normal);
    static VcGeMatrix3d worldToPlane(const VcGePlane& plane);
    static VcGeMatrix3d planeToWorld(const VcGeVector3d& normal);
    static VcGeMatrix3d planeToWorld(const VcGePlane& plane);
    static VcGeMatrix3d alignCoordSys(const VcGePoint3d& fromOrigin, const VcGeVector3d& fromX,
                                      const VcGeVector3d& fromY, const VcGeVector3d& fromZ, const VcGePoint3d& toOrigin,
                                      const VcGeVector3d& toX, const VcGeVector3d& toY, const VcGeVector3d& toZ);

    VcGeMatrix3d& setToIdentity();
    VcGeMatrix3d& setToProduct(const VcGeMatrix3d& a, const VcGeMatrix3d& b);
    VcGeMatrix3d& setCoordSystem(const VcGePoint3d& origin, const VcGeVector3d& x, const VcGeVector3d& y,
                                 const VcGeVector3d& z);
    void getCoordSystem(VcGePoint3d& origin, VcGeVector3d& x, VcGeVector3d& y, VcGeVector3d& z) const;
    VcGeMatrix3d& setToAlignCoordSys(const VcGePoint3d& fromOrigin, const VcGeVector3d& fromX,
                                     const VcGeVector3d& fromY, const VcGeVector3d& fromZ, const VcGePoint3d& toOrigin,
                                     const VcGeVector3d& toX, const VcGeVector3d& toY, const VcGeVector3d& toZ);
    VcGeMatrix3d inverse() const;  // a singular matrix gives the identity; see isSingular
    bool isSingular(const VcGeTol& tol = {}) const;
    double det() const;
    double scale() const;  // length of the image of the X axis
    bool isUniScaledOrtho(const VcGeTol& tol = {}) const;
    bool isEqualTo(const VcGeMatrix3d& m, const VcGeTol& tol = {}) const;

    VcGeMatrix3d transpose() const;
    VcGeVector3d translation() const { return {entry[0][3], entry[1][3], entry[2][3]}; }

    VcGeMatrix3d operator*(const VcGeMatrix3d& m) const;
    VcGeMatrix3d& operator*=(const VcGeMatrix3d& m) { return *this = *this * m; }
    VcGePoint3d operator*(const VcGePoint3d& p) const;
    VcGeVector3d operator*(const VcGeVector3d& v) const;
    bool operator==(const VcGeMatrix3d&) const = default;
};

class VcGeCurve3d;
class VcGeLinearEnt3d;
class VcGeLine3d;
class VcGeLineSeg3d;

// What has a place in space and can be moved there.
class VK_SDK VcGeEntity3d {
public:
    virtual ~VcGeEntity3d();
    virtual VcGeEntity3d* copy() const = 0;  // the caller deletes it
    virtual VcGeEntity3d& transformBy(const VcGeMatrix3d& m) = 0;
    virtual bool isOn(const VcGePoint3d& p, const VcGeTol& tol = {}) const = 0;
};

// A plane with an origin and two axes. The axes need not be perpendicular; the normal always has unit length.
// Degenerate input (a zero normal, parallel axes) gives the world's X-Y directions.
class VK_SDK VcGePlane : public VcGeEntity3d {
public:
    VcGePlane() = default;
    VcGePlane(const VcGePoint3d& origin, const VcGeVector3d& normal) { set(origin, normal); }
    VcGePlane(const VcGePoint3d& origin, const VcGeVector3d& u, const VcGeVector3d& v) { set(origin, u, v); }
    VcGePlane(const VcGePoint3d& p, const VcGePoint3d& q, const VcGePoint3d& r) { set(p, q, r); }
    VcGePlane(double a, double b, double c, double d) { set(a, b, c, d); }

    VcGePlane& set(const VcGePoint3d& origin, const VcGeVector3d& normal);
    VcGePlane& set(const VcGePoint3d& origin, const VcGeVector3d& u, const VcGeVector3d& v);
    VcGePlane& set(const VcGePoint3d& p, const VcGePoint3d& q, const VcGePoint3d& r);
    VcGePlane& set(double a, double b, double c, double d);  // a x + b y + c z + d = 0

    VcGePoint3d pointOnPlane() const { return m_origin; }
    VcGeVector3d normal() const { return m_normal; }
    void getCoefficients(double& a, double& b, double& c, double& d) const;
    void get(VcGePoint3d& origin, VcGeVector3d& u, VcGeVector3d& v) const;
    void getCoordSystem(VcGePoint3d& origin, VcGeVector3d& u, VcGeVector3d& v) const { get(origin, u, v); }
    VcGePlane& reverseNormal();

    double signedDistanceTo(const VcGePoint3d& p) const;
    double distanceTo(const VcGePoint3d& p) const { return std::fabs(signedDistanceTo(p)); }
    VcGePoint3d closestPointTo(const VcGePoint3d& p) const;
    VcGePoint2d paramOf(const VcGePoint3d& p) const;  // of the closest point, in the plane's axes
    VcGePoint3d evalPoint(const VcGePoint2d& uv) const;

    bool intersectWith(const VcGeLinearEnt3d& line, VcGePoint3d& p, const VcGeTol& tol = {}) const;
    bool intersectWith(const VcGePlane& other, VcGeLine3d& line, const VcGeTol& tol = {}) const;
    bool isParallelTo(const VcGePlane& other, const VcGeTol& tol = {}) const;
    bool isPerpendicularTo(const VcGePlane& other, const VcGeTol& tol = {}) const;
    bool isCoplanarTo(const VcGePlane& other, const VcGeTol& tol = {}) const;

    VcGePlane* copy() const override { return new VcGePlane(*this); }
    VcGePlane& transformBy(const VcGeMatrix3d& m) override;
    bool isOn(const VcGePoint3d& p, const VcGeTol& tol = {}) const override;

private:
    VcGePoint3d m_origin;
    VcGeVector3d m_u{1, 0, 0}, m_v{0, 1, 0}, m_normal{0, 0, 1};
};

class VK_SDK VcGeCurve3d : public VcGeEntity3d {
public:
    virtual VcGePoint3d closestPointTo(const VcGePoint3d& p, const VcGeTol& tol = {}) const = 0;
    virtual bool hasStartPoint(VcGePoint3d& p) const = 0;
    virtual bool hasEndPoint(VcGePoint3d& p) const = 0;
    virtual VcGePoint3d evalPoint(double param) const = 0;
    virtual double paramOf(const VcGePoint3d& p, const VcGeTol& tol = {}) const = 0;  // of the closest point

    double distanceTo(const VcGePoint3d& p, const VcGeTol& tol = {}) const;
    bool isOn(const VcGePoint3d& p, const VcGeTol& tol = {}) const override;
};

// What lines and line segments share. The parameter counts in lengths of the vector that the line was made from.
// A line without a direction is the single point it starts from.
class VK_SDK VcGeLinearEnt3d : public VcGeCurve3d {
public:
    VcGePoint3d pointOnLine() const { return m_start; }
    VcGeVector3d direction() const { return m_vector.normal(); }

    VcGePoint3d closestPointTo(const VcGePoint3d& p, const VcGeTol& tol = {}) const override;
    VcGePoint3d evalPoint(double param) const override { return m_start + m_vector * param; }
    double paramOf(const VcGePoint3d& p, const VcGeTol& tol = {}) const override;

    // False when they do not meet, and when they run along each other.
    bool intersectWith(const VcGeLinearEnt3d& other, VcGePoint3d& p, const VcGeTol& tol = {}) const;
    bool intersectWith(const VcGePlane& plane, VcGePoint3d& p, const VcGeTol& tol = {}) const;
    bool isParallelTo(const VcGeLinearEnt3d& other, const VcGeTol& tol = {}) const;
    bool isPerpendicularTo(const VcGeLinearEnt3d& other, const VcGeTol& tol = {}) const;
    bool isColinearTo(const VcGeLinearEnt3d& other, const VcGeTol& tol = {}) const;
    VcGeLine3d getLine() const;

    VcGeLinearEnt3d& transformBy(const VcGeMatrix3d& m) override;

protected:
    VcGeLinearEnt3d(const VcGePoint3d& start, const VcGeVector3d& vector) : m_start(start), m_vector(vector) {}
    virtual double clamped(double param) const = 0;

    VcGePoint3d m_start;
    VcGeVector3d m_vector;
};

class VK_SDK VcGeLine3d : public VcGeLinearEnt3d {
public:
    VcGeLine3d() : VcGeLinearEnt3d({}, {1, 0, 0}) {}
    VcGeLine3d(const VcGePoint3d& p, const VcGeVector3d& v) : VcGeLinearEnt3d(p, v) {}
    VcGeLine3d(const VcGePoint3d& p, const VcGePoint3d& q) : VcGeLinearEnt3d(p, q - p) {}

    VcGeLine3d& set(const VcGePoint3d& p, const VcGeVector3d& v) { return *this = {p, v}; }
    VcGeLine3d& set(const VcGePoint3d& p, const VcGePoint3d& q) { return *this = {p, q}; }

    VcGeLine3d* copy() const override { return new VcGeLine3d(*this); }
    bool hasStartPoint(VcGePoint3d&) const override { return false; }
    bool hasEndPoint(VcGePoint3d&) const override { return false; }

protected:
    double clamped(double param) const override { return param; }
};

class VK_SDK VcGeLineSeg3d : public VcGeLinearEnt3d {
public:
    VcGeLineSeg3d() : VcGeLinearEnt3d({}, {1, 0, 0}) {}
    VcGeLineSeg3d(const VcGePoint3d& p, const VcGePoint3d& q) : VcGeLinearEnt3d(p, q - p), m_end(q) {}
    VcGeLineSeg3d(const VcGePoint3d& p, const VcGeVector3d& v) : VcGeLinearEnt3d(p, v), m_end(p + v) {}

    VcGeLineSeg3d& set(const VcGePoint3d& p, const VcGePoint3d& q) { return *this = {p, q}; }
    VcGeLineSeg3d& set(const VcGePoint3d& p, const VcGeVector3d& v) { return *this = {p, v}; }

    VcGePoint3d startPoint() const { return m_start; }
    VcGePoint3d endPoint() const { return m_end; }
    VcGePoint3d midPoint() const { return m_start + m_vector * 0.5; }
    double length() const { return m_vector.length(); }

    VcGeLineSeg3d* copy() const override { return new VcGeLineSeg3d(*this); }
    VcGeLineSeg3d& transformBy(const VcGeMatrix3d& m) override;
    bool hasStartPoint(VcGePoint3d& p) const override;
    bool hasEndPoint(VcGePoint3d& p) const override;

protected:
    double clamped(double param) const override;

private:
    VcGePoint3d m_end{1, 0, 0};
};
