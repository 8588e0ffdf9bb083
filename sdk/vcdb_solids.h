// Bodies of the solid modeller. Their shape is in the modeller's own notation, which is kept as it came.
#pragma once

#include "vcdb_entity.h"

// Base of what carries such a shape.
class VK_SDK VcDbModelerGeometry : public VcDbEntity {
    VCRX_DECLARE(VcDbModelerGeometry)
public:
    void fields(FieldVisitor& visitor) override;
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

#define VCDB_DECLARE_SURFACE(T)                        \
    class VK_SDK T : public VcDbSurface {              \
        VCDB_DECLARE(T)                                \
    public:                                            \
        void fields(FieldVisitor& visitor) override;   \
    };

VCDB_DECLARE_SURFACE(VcDbExtrudedSurface)
VCDB_DECLARE_SURFACE(VcDbLoftedSurface)
VCDB_DECLARE_SURFACE(VcDbNurbSurface)
VCDB_DECLARE_SURFACE(VcDbPlaneSurface)
VCDB_DECLARE_SURFACE(VcDbRevolvedSurface)
VCDB_DECLARE_SURFACE(VcDbSweptSurface)
