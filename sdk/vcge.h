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
    constexpr VcGeVector2d asVector() const { return {x, y}; }
    double distanceTo(const VcGePoint2d& p) const { return (*this - p).length(); }
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
    double angleTo(const VcGeVector3d& v) const;                           // 0 to pi
    double angleTo(const VcGeVector3d& v, const VcGeVector3d& ref) const;  // 0 to 2 pi, anticlockwise about ref
    VcGeVector3d perpVector() const;  // the X axis that the arbitrary axis algorithm gives for this normal
    bool isParallelTo(const VcGeVector3d& v, const VcGeTol& tol = {}) const;
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
    constexpr VcGeVector3d asVector() const { return {x, y, z}; }
    double distanceTo(const VcGePoint3d& p) const { return (*this - p).length(); }
    VcGePoint3d& transformBy(const VcGeMatrix3d& m);
    VcGePoint3d& rotateBy(double angle, const VcGeVector3d& axis, const VcGePoint3d& about = {});
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

class VK_SDK VcGeMatrix3d {
public:
    double entry[4][4] = {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}};

    static VcGeMatrix3d translation(const VcGeVector3d& v);
    static VcGeMatrix3d rotation(double angle, const VcGeVector3d& axis, const VcGePoint3d& about = {});
    static VcGeMatrix3d scaling(double scale, const VcGePoint3d& about = {});
    static VcGeMatrix3d scaling(const VcGeScale3d& scale, const VcGePoint3d& about = {});
    static VcGeMatrix3d mirroring(const VcGePlane& plane);
    // From world to the plane's own system (arbitrary axis) and back.
    static VcGeMatrix3d worldToPlane(const VcGeVector3d& normal);
    static VcGeMatrix3d worldToPlane(const VcGePlane& plane);
    static VcGeMatrix3d planeToWorld(const VcGeVector3d& normal);
    static VcGeMatrix3d planeToWorld(const VcGePlane& plane);
    static VcGeMatrix3d alignCoordSys(const VcGePoint3d& fromOrigin, const VcGeVector3d& fromX,
                                      const VcGeVector3d& fromY, const VcGeVector3d& fromZ,
                                      const VcGePoint3d& toOrigin, const VcGeVector3d& toX, const VcGeVector3d& toY,
                                      const VcGeVector3d& toZ);

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

    VcGeMatrix3d operator*(const VcGeMatrix3d& m) const;
    VcGePoint3d operator*(const VcGePoint3d& p) const;
    VcGeVector3d operator*(const VcGeVector3d& v) const;
    bool operator==(const VcGeMatrix3d&) const = default;
};
