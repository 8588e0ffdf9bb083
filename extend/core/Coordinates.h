// Between the world, the current UCS and the systems of entities.
#pragma once

#include "vcdb_database.h"
#include "vcge.h"

// True when the point, or with displacement 1 the direction, could be converted.
bool uc2wc(const vds_point point, vds_point out, int displacement);
bool wc2uc(const vds_point point, vds_point out, int displacement);
bool ec2uc(const vds_point normal, const vds_point point, vds_point out, int displacement);
bool uc2ec(const vds_point normal, const vds_point point, vds_point out, int displacement);

void wc2ucMatrix(vds_matrix m);
void uc2wcMatrix(vds_matrix m);
// Turns a transform of the world into the same action in the UCS.
void TransDependOnUcs(vds_matrix m);
// From the UCS, with its origin moved by the point, to the world; the identity where there is no drawing.
void getUcsToWcsOriginMatrix(VcGeMatrix3d& out, const VcGePoint3d& point, VcDbDatabase* database);
VcGePoint3d ucsToWcs(const VcGePoint3d& point);

VcGePlane getUcsPlane();
// From the target to the eye, in the world; of unit length.
VcGeVector3d getViewNormal();
