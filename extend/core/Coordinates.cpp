#include "core/Coordinates.h"

#include "core/Geometry.h"
#include "core/Variables.h"
#include "vcdb_chains.h"
#include "vced.h"
#include "vchost.h"

#include <algorithm>

namespace {

enum System : short { kWorld = 0, kUcs = 1 };

resbuf coded(System system)
{
    resbuf node = {};
    node.restype = RTSHORT;
    node.resval.rint = system;
    return node;
}

resbuf ofEntity(const vds_point normal)
{
    resbuf node = {};
    node.restype = RT3DPOINT;
    std::copy_n(normal, 3, node.resval.rpoint);
    return node;
}

bool convert(const vds_point point, const resbuf& from, const resbuf& to, int displacement, vds_point out)
{
    return vcedTrans(point, &from, &to, displacement, out) == RTNORM;
}

using Conversion = bool (*)(const vds_point, vds_point, int);

void matrixOf(Conversion conversion, vds_matrix m)
{
    vk_idmat(m);
    for (int column = 0; column < 4; ++column) {
        vds_point unit = {}, image = {};
        const bool isAxis = column < 3;
        if (isAxis)
            unit[column] = 1;
        if (conversion(unit, image, isAxis))
            for (int row = 0; row < 3; ++row)
                m[row][column] = image[row];
    }
}

}  // namespace

bool uc2wc(const vds_point point, vds_point out, int displacement)
{
    return convert(point, coded(kUcs), coded(kWorld), displacement, out);
}

bool wc2uc(const vds_point point, vds_point out, int displacement)
{
    return convert(point, coded(kWorld), coded(kUcs), displacement, out);
}

bool ec2uc(const vds_point normal, const vds_point point, vds_point out, int displacement)
{
    return convert(point, ofEntity(normal), coded(kUcs), displacement, out);
}

bool uc2ec(const vds_point normal, const vds_point point, vds_point out, int displacement)
{
    return convert(point, coded(kUcs), ofEntity(normal), displacement, out);
}

void wc2ucMatrix(vds_matrix m) { matrixOf(wc2uc, m); }

void uc2wcMatrix(vds_matrix m) { matrixOf(uc2wc, m); }

void TransDependOnUcs(vds_matrix m)
{
    vds_matrix toUcs, toWorld;
    wc2ucMatrix(toUcs);
    uc2wcMatrix(toWorld);
    multMtx2Mtx(toUcs, m, m);
    multMtx2Mtx(m, toWorld, m);
}

void getUcsToWcsOriginMatrix(VcGeMatrix3d& out, const VcGePoint3d& point, VcDbDatabase* database)
{
    out.setToIdentity();
    if (!database)
        return;
    VcGeMatrix3d ucs;
    // The world as UCS is no failure: its origin moves as any other.
    vcdbUcsMatrix(ucs, database);
    VcGePoint3d origin;
    VcGeVector3d x, y, z;
    ucs.getCoordSystem(origin, x, y, z);
    out.setToAlignCoordSys(origin + point.asVector(), x, y, z, VcGePoint3d(), VcGeVector3d::xAxis(),
                           VcGeVector3d::yAxis(), VcGeVector3d::zAxis());
}

VcGePoint3d ucsToWcs(const VcGePoint3d& point)
{
    VcGeMatrix3d ucs;
    vcdbUcsMatrix(ucs, vcdbHostApplicationServices()->workingDatabase());
    return ucs * point;
}

VcGePlane getUcsPlane()
{
    return VcGePlane(pointVariable(L"UCSORG"), pointVariable(L"UCSXDIR").asVector().normal(),
                     pointVariable(L"UCSYDIR").asVector().normal());
}

VcGeVector3d getViewNormal()
{
    const VcGePoint3d inUcs = pointVariable(L"VIEWDIR");
    VcGeVector3d direction;
    uc2wc(asDblArray(inUcs), asDblArray(direction), 1);
    return direction.normal();
}
