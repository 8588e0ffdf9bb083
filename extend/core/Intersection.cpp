#include "core/Coordinates.h"
#include "core/EntityGeometry.h"
#include "core/OpenedObject.h"
#include "core/Variables.h"
#include "vcdb.h"
#include "vcut.h"

#include <algorithm>
#include <memory>

namespace {

using Points = std::vector<VcGePoint3d>;

VcGePlane projectionPlane(int projectionMode)
{
    switch (projectionMode) {
    case 1:
        return getUcsPlane();
    case 2:
        return VcGePlane(VcGePoint3d(), getViewNormal());
    default:
        return VcGePlane();
    }
}

// A multiline or a dimension is met where its pieces are.
bool isMetByPieces(const VcDbEntity& entity)
{
    return entity.isKindOf(VcDbMline::desc()) || entity.isKindOf(VcDbDimension::desc());
}

void meet(const VcDbEntity& first, const VcDbEntity& second, VcDb::Intersect extend, const VcGePlane& plane,
          Points& points)
{
    if (!isMetByPieces(second)) {
        first.intersectWith(&second, extend, plane, points);
        return;
    }
    std::vector<VcDbEntity*> pieces;
    second.explode(pieces);
    for (VcDbEntity* piece : pieces) {
        const std::unique_ptr<VcDbEntity> owned(piece);
        first.intersectWith(piece, extend, plane, points);
    }
}

bool appendPoints(const Points& points, resbuf** end)
{
    for (const VcGePoint3d& p : points) {
        *end = vcutNewRb(RT3DPOINT);
        if (!*end)
            return false;
        (*end)->resval.rpoint[0] = p.x;
        (*end)->resval.rpoint[1] = p.y;
        (*end)->resval.rpoint[2] = p.z;
        end = &(*end)->rbnext;
    }
    return true;
}

bool isNone(const vds_name name) { return name[0] == 0 && name[1] == 0; }

}  // namespace

int vds_intersect(const vds_name name1, const vds_name name2, resbuf** listOut)
{
    *listOut = nullptr;
    const VcDb::Intersect extend = shortVariable(L"EDGEMODE") == 1 ? VcDb::kExtendArg : VcDb::kOnBothOperands;
    const int projectionMode = shortVariable(L"PROJMODE");
    if (isNone(name1) || isNone(name2))
        return 0;
    const OpenedObject<VcDbEntity> first(name1), second(name2);
    if (!first || !second)
        return -1;
    if (second->isKindOf(VcDbBlockReference::desc()) && !isMetByPieces(*second.get()))
        return 0;
    Points points;
    meet(*first.get(), *second.get(), extend, projectionPlane(projectionMode), points);
    return appendPoints(points, listOut) ? int(points.size()) : -1;
}
