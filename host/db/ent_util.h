// What the entity classes share: changing a member under undo, and moving what lies in a plane of its own.
#pragma once

#include "host/base/api.h"
#include "host/db/field_visitor.h"
#include "sdk/vcdb_entity.h"

#include <optional>
#include <string>

constexpr double kPi = 3.14159265358979323846;
constexpr double kTwoPi = 2 * kPi;

inline bool isFinite(double v) { return std::isfinite(v); }
inline bool isFinite(const VcGePoint2d& p) { return std::isfinite(p.x) && std::isfinite(p.y); }
inline bool isFinite(const VcGePoint3d& p) { return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z); }
inline bool isFinite(const VcGeVector3d& v) { return isFinite(VcGePoint3d(v.x, v.y, v.z)); }
inline bool isPositive(double v) { return v > 0 && std::isfinite(v); }
inline bool isDirection(const VcGeVector3d& v) { return isFinite(v) && v.length() > 1e-100; }

// Sets a member of an object when the value is valid.
template <class T>
Vcad::ErrorStatus setMember(VcDbObject& object, T& member, const T& value, bool valid)
{
    if (!valid)
        return Vcad::eOutOfRange;
    object.assertWriteEnabled();
    member = value;
    return Vcad::eOk;
}
// Whether the object may point there: something of the class that stands in the same drawing, if the object is in one yet.
inline bool mayReferTo(const VcDbObject& object, VcDbObjectId id, const VcRxClass* cls)
{
    const VcRxClass* actual = id.objectClass();
    const bool isNear = object.objectId().isNull() || object.objectId().databaseSerial() == id.databaseSerial();
    return actual && actual->isDerivedFrom(cls) && isNear && !id.isErased();
}

Vcad::ErrorStatus setThicknessOf(VcDbObject& object, VcDbExtrusion& extrusion, double thickness);
Vcad::ErrorStatus setNormalOf(VcDbObject& object, VcDbExtrusion& extrusion, const VcGeVector3d& normal);

// 0 to below a whole turn.
double turnOf(double angle);

// What an invertible matrix does to an entity with a normal and points in its own coordinates.
struct PlaneMove {
    VcGeVector3d normal;    // of the image, on the side that the old normal is taken to
    VcGeMatrix3d own;       // from the old own coordinates to the new
    double scale = 1;       // of lengths in the plane, meant when they all scale alike
    bool even = true;       // whether they do
    bool mirrored = false;  // seen from the normals, anticlockwise becomes clockwise
    double height = 1;      // of lengths along the normal
    bool upright = true;    // whether the image of the normal is perpendicular to the image of the plane

    VcGePoint3d operator()(const VcGePoint3d& p) const { return own * p; }
    VcGePoint2d operator()(const VcGePoint2d& p, double elevation) const;
    // Direction of the image of a direction, not brought into one turn.
    double angle(double direction) const;
    // A thickness can be kept when it stays perpendicular.
    bool canMove(const VcDbExtrusion& extrusion) const { return upright || extrusion.thickness() == 0; }
    void move(VcDbExtrusion& extrusion) const { extrusion.set(extrusion.thickness() * height, normal); }
};
std::optional<PlaneMove> planeMove(const VcGeMatrix3d& m, const VcGeVector3d& normal);

// The extents of points that are also drawn a thickness further along the normal.
void addExtruded(VcDbExtents& extents, const VcGePoint3d& world, const VcDbExtrusion& extrusion);
// A box that has been made without points tells nothing.
inline Vcad::ErrorStatus extentsStatus(const VcDbExtents& e) { return e.isEmpty() ? Vcad::eNotApplicable : Vcad::eOk; }

// Both ends of the part of center + a cos t + b sin t from start to end that reaches furthest along each axis.
void addEllipse(VcDbExtents& extents, const VcGePoint3d& center, const VcGeVector3d& a, const VcGeVector3d& b,
                double start, double end);
// An arc from one point to another by its bulge, in a plane; a bulge of 0 has none.
struct BulgeArc {
    VcGePoint2d center;
    double radius, start, end;  // anticlockwise from start to end
};
std::optional<BulgeArc> bulgeArc(const VcGePoint2d& from, const VcGePoint2d& to, double bulge);

// A new entity that takes over the common properties of the one it replaces.
template <class T>
T* pieceOf(const VcDbEntity& whole, std::unique_ptr<T> piece)
{
    piece->setPropertiesFrom(&whole);
    return piece.release();
}

// One segment of a polyline in its plane, as the line or the arc that it looks like.
struct PlaneSegment {
    VcGePoint2d from, to;
    double bulge = 0, elevation = 0;
};
VcDbEntity* segmentPiece(const VcDbEntity& whole, const PlaneSegment& segment, const VcDbExtrusion& extrusion);
