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
        m_rare = thickness == 0.0 && normal == VcGeVector3d::zAxis() ? nullptr : std::make_unique<Rare>(Rare{thickness, normal});
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
    virtual Vcad::ErrorStatus intersectWith(const VcDbEntity* other, VcDb::Intersect mode, std::vector<VcGePoint3d>& points,
                                            std::intptr_t thisMarker = 0, std::intptr_t otherMarker = 0) const;

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

class VK_SDK VcDbCurve : public VcDbEntity {
    VCRX_DECLARE(VcDbCurve)
public:
    virtual bool isClosed() const { return false; }
};

// Opens an entity; the same as vcdbOpenObject<VcDbEntity>.
VK_SDK Vcad::ErrorStatus vcdbOpenVcDbEntity(VcDbEntity*& entity, VcDbObjectId id, VcDb::OpenMode mode = VcDb::kForRead,
                                            bool openErased = false);
