// Entities: objects that can be seen, with their common properties.
#pragma once

#include "vccm.h"
#include "vcdb_object.h"
#include "vcge.h"

#include <string>

struct EntityProps;

class VK_SDK VcDbExtents {
public:
    VcDbExtents() = default;
    VcDbExtents(const VcGePoint3d& a, const VcGePoint3d& b);
    bool isEmpty() const { return m_min.x > m_max.x; }
    const VcGePoint3d& minPoint() const { return m_min; }
    const VcGePoint3d& maxPoint() const { return m_max; }
    void addPoint(const VcGePoint3d& p);
    void addExt(const VcDbExtents& other);
    void transformBy(const VcGeMatrix3d& m);

private:
    VcGePoint3d m_min{1e300, 1e300, 1e300}, m_max{-1e300, -1e300, -1e300};
};

namespace VcDb {
enum Intersect : int { kOnBothOperands = 0, kExtendThis = 1, kExtendArg = 2, kExtendBoth = 3 };
}

// A thickness and a normal that are nearly always 0 and the Z axis: then it takes a null pointer.
class VK_SDK VcDbExtrusion {
public:
    VcDbExtrusion() = default;
    VcDbExtrusion(const VcDbExtrusion& o) : m_rare(o.m_rare ? std::make_unique<Rare>(*o.m_rare) : nullptr) {}
    VcDbExtrusion& operator=(const VcDbExtrusion& o)
    {
        if (this != &o)
            m_rare = o.m_rare ? std::make_unique<Rare>(*o.m_rare) : nullptr;
        return *this;
    }
    double thickness() const { return m_rare ? m_rare->thickness : 0.0; }
    VcGeVector3d normal() const { return m_rare ? m_rare->normal : VcGeVector3d::zAxis(); }
    void set(double thickness, const VcGeVector3d& normal)
    {
        m_rare = thickness == 0.0 && normal == VcGeVector3d::zAxis() ? nullptr
                                                                     : std::make_unique<Rare>(Rare{thickness, normal});
    }
    void setThickness(double t) { set(t, normal()); }
    void setNormal(const VcGeVector3d& n) { set(thickness(), n); }
    // The two groups, which may stand apart in the class's order.
    void thicknessField(FieldVisitor& v, int code = 39);
    void normalField(FieldVisitor& v, int code = 210);

private:
    struct Rare {
        double thickness;
        VcGeVector3d normal;
    };
    std::unique_ptr<Rare> m_rare;
};

class VK_SDK VcDbEntity : public VcDbObject {
    VCRX_DECLARE(VcDbEntity)
public:
    ~VcDbEntity() override;

    VcDbObjectId blockId() const { return ownerId(); }

    VcCmColor color() const;
    Vcad::ErrorStatus setColor(const VcCmColor& color, bool doSubents = true);
    std::uint16_t colorIndex() const;
    Vcad::ErrorStatus setColorIndex(std::uint16_t index, bool doSubents = true);

    VcDbObjectId layerId() const;
    // Name of the layer; the copy belongs to the caller (vcutDelString).
    wchar_t* layer() const;
    Vcad::ErrorStatus setLayer(VcDbObjectId layer, bool doSubents = true);
    Vcad::ErrorStatus setLayer(const wchar_t* name, bool doSubents = true);

    VcDbObjectId linetypeId() const;
    wchar_t* linetype() const;
    Vcad::ErrorStatus setLinetype(VcDbObjectId linetype, bool doSubents = true);
    Vcad::ErrorStatus setLinetype(const wchar_t* name, bool doSubents = true);

    double linetypeScale() const;
    Vcad::ErrorStatus setLinetypeScale(double scale, bool doSubents = true);
    VcDb::LineWeight lineWeight() const;
    Vcad::ErrorStatus setLineWeight(VcDb::LineWeight weight, bool doSubents = true);
    VcDb::Visibility visibility() const;
    Vcad::ErrorStatus setVisibility(VcDb::Visibility visibility, bool doSubents = true);

    // Takes over colour, layer, linetype, scale, lineweight and visibility.
    Vcad::ErrorStatus setPropertiesFrom(const VcDbEntity* other, bool doSubents = true);
    void setDatabaseDefaults(VcDbDatabase* database = nullptr);
    void recordGraphicsModified(bool modified = true);

    // Geometry. What a class cannot do answers with a status other than 0 and changes nothing.
    virtual Vcad::ErrorStatus transformBy(const VcGeMatrix3d& m);
    virtual Vcad::ErrorStatus getGeomExtents(VcDbExtents& extents) const;
    // Simpler entities that look the same; they are new, in no database, and belong to the caller.
    virtual Vcad::ErrorStatus explode(std::vector<VcDbEntity*>& pieces) const;
    // Where this and the other meet; points are added. An entity with itself has none. Of blocks, dimensions and the like
    // the curves that are drawn count, of texts and faces their outlines.
    virtual Vcad::ErrorStatus intersectWith(const VcDbEntity* other, VcDb::Intersect mode,
                                            std::vector<VcGePoint3d>& points, std::intptr_t thisMarker = 0,
                                            std::intptr_t otherMarker = 0) const;
    // As both appear when they are looked at along the plane's normal; the points lie on this entity.
    virtual Vcad::ErrorStatus intersectWith(const VcDbEntity* other, VcDb::Intersect mode, const VcGePlane& projection,
                                            std::vector<VcGePoint3d>& points, std::intptr_t thisMarker = 0,
                                            std::intptr_t otherMarker = 0) const;

    // Host side.
    void fields(FieldVisitor& visitor) override;
    void eraseOwned(bool erasing) override;
    const EntityProps& props() const;
    void setProps(const EntityProps& props);
    // Keeps the properties with the entity while it belongs to no drawing.
    void carryProps(const EntityProps& props);
    // Called when the entity has come into a database: sub-entities that it carried get their ids.
    virtual void addedToDatabase() {}
    // Vertices, attributes and the end mark, which live and die with this entity; null where there are none.
    virtual const std::vector<VcDbObjectId>* subEntities() const { return nullptr; }
    virtual std::vector<VcDbObjectId>* subEntities() { return nullptr; }
    virtual VcDbObjectId endMark() const { return {}; }
    virtual void setEndMark(VcDbObjectId) {}
    // The layout block that the entity stands in, or null for members of block definitions and sub-entities' owners.
    bool isInLayout() const;

protected:
    friend class DatabaseCore;
    // Common properties of an entity that is in no database yet.
    std::unique_ptr<EntityProps> m_ownProps;
    VcDbEntity();
    VcDbEntity(const VcDbEntity&);
    VcDbEntity& operator=(const VcDbEntity&);
};

// What can be asked of every curve. Parameters: of a line 0 to 1, of rays and construction lines multiples of the unit
// direction, of circles and arcs angles, of ellipses the angle of their parameter form, of splines knots, of polylines the
// index of a vertex and the fraction of the segment that begins there.
class VK_SDK VcDbCurve : public VcDbEntity {
    VCRX_DECLARE(VcDbCurve)
public:
    virtual bool isClosed() const { return false; }

    // Fail at the open ends of rays and construction lines.
    Vcad::ErrorStatus getStartParam(double& param) const;
    Vcad::ErrorStatus getEndParam(double& param) const;
    Vcad::ErrorStatus getStartPoint(VcGePoint3d& point) const;
    Vcad::ErrorStatus getEndPoint(VcGePoint3d& point) const;
    Vcad::ErrorStatus getPointAtParam(double param, VcGePoint3d& point) const;
    // The point must lie on the curve.
    Vcad::ErrorStatus getParamAtPoint(const VcGePoint3d& point, double& param) const;
    // Distances run along the curve from its start.
    Vcad::ErrorStatus getDistAtParam(double param, double& distance) const;
    Vcad::ErrorStatus getParamAtDist(double distance, double& param) const;
    Vcad::ErrorStatus getDistAtPoint(const VcGePoint3d& point, double& distance) const;
    Vcad::ErrorStatus getPointAtDist(double distance, VcGePoint3d& point) const;
    Vcad::ErrorStatus getFirstDeriv(double param, VcGeVector3d& derivative) const;
    Vcad::ErrorStatus getSecondDeriv(double param, VcGeVector3d& derivative) const;
    // With extend the curve is taken to go on beyond its ends.
    Vcad::ErrorStatus getClosestPointTo(const VcGePoint3d& given, VcGePoint3d& onCurve, bool extend = false) const;
    // Closest as seen along the normal.
    Vcad::ErrorStatus getClosestPointTo(const VcGePoint3d& given, const VcGeVector3d& normal, VcGePoint3d& onCurve,
                                        bool extend = false) const;
    // What the curve encloses; an open one is closed by its chord.
    Vcad::ErrorStatus getArea(double& area) const;
    // New entities, in no database, with this one's properties; they belong to the caller.
    Vcad::ErrorStatus getSplitCurves(const std::vector<double>& params, std::vector<VcDbEntity*>& pieces) const;
    Vcad::ErrorStatus getSplitCurves(const std::vector<VcGePoint3d>& points, std::vector<VcDbEntity*>& pieces) const;
    // Positive distances lie to the right of the direction, so that circles grow. The sides of corners go on until they meet.
    Vcad::ErrorStatus getOffsetCurves(double distance, std::vector<VcDbEntity*>& curves) const;
    Vcad::ErrorStatus getOffsetCurvesGivenPlaneNormal(const VcGeVector3d& normal, double distance,
                                                      std::vector<VcDbEntity*>& curves) const;
    // Circles and arcs run anticlockwise and refuse.
    Vcad::ErrorStatus reverseCurve();
    // Lets the curve begin or end at a parameter or a point beyond its end.
    Vcad::ErrorStatus extend(double param);
    Vcad::ErrorStatus extend(bool atStart, const VcGePoint3d& to);
};

// Opens an entity; the same as vcdbOpenObject<VcDbEntity>.
VK_SDK Vcad::ErrorStatus vcdbOpenVcDbEntity(VcDbEntity*& entity, VcDbObjectId id, VcDb::OpenMode mode = VcDb::kForRead,
                                            bool openErased = false);
