// Making entities and blocks.
#pragma once

#include "classlib_arrays.h"
#include "resbuf.h"
#include "vcdb_database.h"
#include "vcge.h"

class VcDbBlockTableRecord;
class VcDbEntity;

// A vertex of a polyline.
class SdsVertex {
public:
    SdsVertex() = default;
    SdsVertex(double vx, double vy, double vz, double b) : x(vx), y(vy), z(vz), bulge(b) {}
    void GetSdsPoint(vds_point out) const;

    double x = 0, y = 0, z = 0, bulge = 0;
};

// Puts an entity, which stays open and the caller's to close, into model or paper space of the working drawing; 1, or 0
// when it still belongs to no drawing.
int addEntityToDb(VcDbObjectId& idOut, VcDbEntity* entity, bool toModelSpace);
int createLine(const vds_point from, const vds_point to);
// A polyline whose first and last points are the same is closed, without the last.
int create_lwpolyline(const CList<SdsVertex, SdsVertex>& vertices, double startWidth, double endWidth);

// A new anonymous block, open for the caller; null with a status other than 0 when it cannot be added.
Vcad::ErrorStatus defineNewAnonymousBlock(VcDbBlockTableRecord*& recordOut, VcDbObjectId& idOut,
                                          VcDbDatabase* database);
// Copies objects into a block and transforms the copies; those on locked layers stay as copied.
Vcad::ErrorStatus cloneAndXformObjects(VcDbDatabase* database, const VcDbObjectIdArray& ids, VcDbObjectId owner,
                                       const VcGeMatrix3d& matrix);
// An anonymous block of copies of objects, with its base at a point in the UCS.
Vcad::ErrorStatus makeAnonymousBlock(VcDbObjectId& idOut, const VcDbObjectIdArray& ids, const VcGePoint3d& basePoint);
// A reference in the current space.
void makeBlockReference(VcDbObjectId blockId, const VcGePoint3d& position, const VcGeScale3d& scale);
