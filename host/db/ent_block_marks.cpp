// What begins and ends a block. The groups of a block's beginning are those of its record.
#include "host/db/field_visitor.h"
#include "sdk/vcdb_insert.h"

VCDB_DEFINE(VcDbBlockBegin, VcDbEntity, "BLOCK")
VCDB_DEFINE(VcDbBlockEnd, VcDbEntity, "ENDBLK")

void VcDbBlockEnd::fields(FieldVisitor& v)
{
    VcDbEntity::fields(v);
    v.subclass("AcDbBlockEnd");
}
