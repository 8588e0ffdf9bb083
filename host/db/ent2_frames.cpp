// Frames of other programs' objects, and tables: what is not listed here stays with the object as unclaimed groups.
#include "host/db/ent_util.h"
#include "sdk/vcdb_misc.h"

VCDB_DEFINE(VcDbOle2Frame, VcDbEntity, "OLE2FRAME")
VCDB_DEFINE(VcDbOleFrame, VcDbEntity, "OLEFRAME")
VCDB_DEFINE(VcDbTable, VcDbBlockReference, "ACAD_TABLE")

// The data that only its own program understands repeats the corners, so that a frame can be moved by that alone.
Vcad::ErrorStatus VcDbOle2Frame::transformBy(const VcGeMatrix3d&) { return Vcad::eNotApplicable; }

Vcad::ErrorStatus VcDbOle2Frame::getGeomExtents(VcDbExtents& extents) const
{
    extents = VcDbExtents(m_upperLeft, m_lowerRight);
    return Vcad::eOk;
}

void VcDbOle2Frame::fields(FieldVisitor& v)
{
    VcDbEntity::fields(v);
    v.subclass("AcDbOle2Frame");
    v.point(10, m_upperLeft);
    v.point(11, m_lowerRight);
    v.number(71, m_type);
}

void VcDbOleFrame::fields(FieldVisitor& v)
{
    VcDbEntity::fields(v);
    v.subclass("AcDbOleFrame");
}

Vcad::ErrorStatus VcDbTable::transformBy(const VcGeMatrix3d& m)
{
    const VcGeVector3d direction = m * m_direction;
    if (!isDirection(direction))
        return Vcad::eInvalidInput;
    const Vcad::ErrorStatus status = VcDbBlockReference::transformBy(m);
    if (!status)
        m_direction = direction.normal();
    return status;
}

void VcDbTable::fields(FieldVisitor& v)
{
    VcDbBlockReference::fields(v);
    v.subclass("AcDbTable");
    v.ref(342, RefKind::HardPointer, m_tableStyle);
    v.ref(343, RefKind::HardPointer, m_tableBlock);
    v.vector(11, m_direction);
}
