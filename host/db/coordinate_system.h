// The coordinate system that a drawing is worked on in. The model's stands in the record of its active viewport, a sheet's
// in its layout, and viewports of sheets may have their own; the header repeats those of the model and of the sheet.
#pragma once

#include "host/base/api.h"
#include "sdk/vcdb_object.h"
#include "sdk/vcge.h"

class DatabaseCore;

struct VKHOST_API CoordinateSystem {
    VcGePoint3d origin;
    VcGeVector3d x{1, 0, 0}, y{0, 1, 0};

    VcGeVector3d z() const { return x.crossProduct(y).normal(); }
    VcGeMatrix3d toWorld() const;
    bool isWorld() const { return toWorld().isEqualTo(VcGeMatrix3d()); }
    static CoordinateSystem of(const VcGeMatrix3d& toWorld);
};

// Of the current space. What a file says that is no system at all counts as the world.
VKHOST_API CoordinateSystem currentUcs(const DatabaseCore& db);
// Its record; null where it has no name.
VKHOST_API VcDbObjectId currentUcsRecord(const DatabaseCore& db);
// The viewport of a sheet through which the model is worked on. Its system, where it keeps one of its own, is the current one.
VKHOST_API void setUcsViewport(const DatabaseCore& db, VcDbObjectId viewport);
// The header's system becomes that of the model's active viewport: for files that keep it in the header alone.
VKHOST_API void adoptHeaderUcs(DatabaseCore& db);
// Axes must be unit vectors at right angles.
VKHOST_API void setCurrentUcs(DatabaseCore& db, const CoordinateSystem& ucs, VcDbObjectId record = {});
