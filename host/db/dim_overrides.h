// What dimensions, leaders and feature control frames share.
#pragma once

#include "host/db/field_visitor.h"
#include "sdk/vcdb_dims.h"

// The style's name: left out where the file had none, written even when it is Standard.
void dimStyleField(FieldVisitor& v, VcDbObjectId& style);
// The style, or Standard of the object's drawing where it has none.
VcDbObjectId dimStyleOf(const VcDbObject& object, VcDbObjectId style);
Vcad::ErrorStatus setDimStyleOf(VcDbObject& object, VcDbObjectId& member, VcDbObjectId style);
VcDbDimVars dimVarsOf(const VcDbObject& object, VcDbObjectId style);

// The value behind a 1070 of that code in the extended data of an application, outside any list.
double xdataNumber(const VcDbObject& object, std::string_view application, int code);
