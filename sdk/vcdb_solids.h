// Bodies of the solid modeller. Their shape is in the modeller's own notation, which is kept as it came.
#pragma once

#include "vcdb_entity.h"

struct SolidModel;

// Base of what carries such a shape. It is drawn by its edges and by lines on its round faces.
class VK_SDK VcDbModelerGeometry : public VcDbEntity {
    VCRX_DECLARE(VcDbModelerGeometry)
public:
    VcDbModelerGeometry();
    VcDbModelerGeometry(const VcDbModelerGeometry&);
    VcDbModelerGeometry& operator=(const VcDbModelerGeometry&);
    ~VcDbModelerGeometry() override;

    // Fails where the matrix does not keep all proportions, which the notation has no place for, and for surfaces that were
    // extruded, lofted, revolved or swept.
    Vcad::ErrorStatus transformBy(const VcGeMatrix3d& m) override;
    Vcad::ErrorStatus getGeomExtents(VcDbExtents& extents) const override;

    // Host side.
    void fields(FieldVisitor& visitor) override;
    void fieldsChanged() override;
    void dropCaches() override;
    // The shape, read when it is first asked for.
    const SolidModel& model() const;
    // The notation: its text, or its binary form.
    std::string modelData() const;
    bool hasModelText() const;
    // Binary data that differs from what the drawing's own section holds for this entity, or that it does not hold; null
    // where there is none.
    const std::shared_ptr<const std::string>& ownModelData() const { return m_ownData; }

private:
    void setModelData(std::string data);
    mutable std::shared_ptr<const SolidModel> m_model;
    std::shared_ptr<const std::string> m_ownData;
};

class VK_SDK VcDb3dSolid : public VcDbModelerGeometry {
    VCDB_DECLARE(VcDb3dSolid)
public:
    VcDbObjectId historyId() const { return m_history; }
    void fields(FieldVisitor& visitor) override;

private:
    VcDbObjectId m_history;
};

class VK_SDK VcDbRegion : public VcDbModelerGeometry {
    VCDB_DECLARE(VcDbRegion)
public:
    // Gives its edges.
    Vcad::ErrorStatus explode(std::vector<VcDbEntity*>& pieces) const override;
};

class VK_SDK VcDbBody : public VcDbModelerGeometry {
    VCDB_DECLARE(VcDbBody)
};

class VK_SDK VcDbSurface : public VcDbModelerGeometry {
    VCDB_DECLARE(VcDbSurface)
public:
    int uIsolineDensity() const { return m_uIsolines; }
    int vIsolineDensity() const { return m_vIsolines; }
    void fields(FieldVisitor& visitor) override;

protected:
    std::int16_t m_uIsolines = 6, m_vIsolines = 6;
};

#define VCDB_DECLARE_SURFACE(T)                                                                                        \
    class VK_SDK T : public VcDbSurface {                                                                              \
        VCDB_DECLARE(T)                                                                                                \
    public:                                                                                                            \
        void fields(FieldVisitor& visitor) override;                                                                   \
    };

VCDB_DECLARE_SURFACE(VcDbExtrudedSurface)
VCDB_DECLARE_SURFACE(VcDbLoftedSurface)
VCDB_DECLARE_SURFACE(VcDbNurbSurface)
VCDB_DECLARE_SURFACE(VcDbPlaneSurface)
VCDB_DECLARE_SURFACE(VcDbRevolvedSurface)
VCDB_DECLARE_SURFACE(VcDbSweptSurface)
