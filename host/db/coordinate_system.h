// The coordinate system that a drawing is worked on in. The model's stands in the record of its active viewport, a sheet's
// in its layout; the header repeats both.
#pragma once

#include "host/base/api.h"
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
// The header's system becomes that of the model's active viewport: for files that keep it in the header alone.
VKHOST_API void adoptHeaderUcs(DatabaseCore& db);
// Axes must be unit vectors at right angles.
VKHOST_API void setCurrentUcs(DatabaseCore& db, const CoordinateSystem& ucs);
