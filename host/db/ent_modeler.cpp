// Bodies of the solid modeller. Their text or data stands behind the subclass marker, where it is kept as unclaimed groups.
#include "host/db/field_visitor.h"
#include "sdk/vcdb_solids.h"

VCDB_DEFINE_ABSTRACT(VcDbModelerGeometry, VcDbEntity)
VCDB_DEFINE(VcDb3dSolid, VcDbModelerGeometry, "3DSOLID")
VCDB_DEFINE(VcDbRegion, VcDbModelerGeometry, "REGION")
VCDB_DEFINE(VcDbBody, VcDbModelerGeometry, "BODY")
VCDB_DEFINE(VcDbSurface, VcDbModelerGeometry, "SURFACE")
VCDB_DEFINE(VcDbExtrudedSurface, VcDbSurface, "EXTRUDEDSURFACE")
VCDB_DEFINE(VcDbLoftedSurface, VcDbSurface, "LOFTEDSURFACE")
VCDB_DEFINE(VcDbNurbSurface, VcDbSurface, "NURBSURFACE")
VCDB_DEFINE(VcDbPlaneSurface, VcDbSurface, "PLANESURFACE")
VCDB_DEFINE(VcDbRevolvedSurface, VcDbSurface, "REVOLVEDSURFACE")
VCDB_DEFINE(VcDbSweptSurface, VcDbSurface, "SWEPTSURFACE")

void VcDbModelerGeometry::fields(FieldVisitor& v)
{
    VcDbEntity::fields(v);
    v.subclass("AcDbModelerGeometry");
    if (v.isReading())
        m_model.reset();
}

// Solids of files before 2007 have no history and no subclass for it.
void VcDb3dSolid::fields(FieldVisitor& v)
{
    VcDbModelerGeometry::fields(v);
    if (!v.optionalSubclass("AcDb3dSolid", v.isChain() || v.atLeast(DxfVersion::R2007)))
        return;
    v.ref(350, RefKind::SoftOwner, m_history);
}

void VcDbSurface::fields(FieldVisitor& v)
{
    VcDbModelerGeometry::fields(v);
    v.subclass("AcDbSurface");
    v.number(71, m_uIsolines);
    v.number(72, m_vIsolines);
}

void VcDbExtrudedSurface::fields(FieldVisitor& v)
{
    VcDbSurface::fields(v);
    v.subclass("AcDbExtrudedSurface");
}

void VcDbLoftedSurface::fields(FieldVisitor& v)
{
    VcDbSurface::fields(v);
    v.subclass("AcDbLoftedSurface");
}

void VcDbNurbSurface::fields(FieldVisitor& v)
{
    VcDbSurface::fields(v);
    v.subclass("AcDbNurbSurface");
}

// Has no groups of its own.
void VcDbPlaneSurface::fields(FieldVisitor& v) { VcDbSurface::fields(v); }

void VcDbRevolvedSurface::fields(FieldVisitor& v)
{
    VcDbSurface::fields(v);
    v.subclass("AcDbRevolvedSurface");
}

void VcDbSweptSurface::fields(FieldVisitor& v)
{
    VcDbSurface::fields(v);
    v.subclass("AcDbSweptSurface");
}
