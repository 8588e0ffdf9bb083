#include "core/MakeEntities.h"

#include "core/Coordinates.h"
#include "core/ExtendUtils.h"
#include "core/Geometry.h"
#include "core/PublicFunction.h"
#include "core/Variables.h"
#include "vcdb.h"
#include "vcdb_chains.h"
#include "vced.h"
#include "vchost.h"
#include "vcut.h"

#include <memory>

namespace {

VcDbDatabase* workingDatabase() { return vcdbHostApplicationServices()->workingDatabase(); }

}  // namespace

void SdsVertex::GetSdsPoint(vds_point out) const
{
    out[0] = x;
    out[1] = y;
    out[2] = z;
}

int addEntityToDb(VcDbObjectId& idOut, VcDbEntity* entity, bool toModelSpace)
{
    VcDbDatabase* database = workingDatabase();
    VcDbBlockTable* blocks = nullptr;
    if (!database || database->getSymbolTable(blocks, VcDb::kForRead) != Vcad::eOk)
        return 0;
    VcDbBlockTableRecord* space = nullptr;
    const wchar_t* name = toModelSpace ? L"*Model_Space" : L"*Paper_Space";
    Vcad::ErrorStatus status = blocks->getAt(name, space, VcDb::kForWrite);
    blocks->close();
    if (status != Vcad::eOk)
        return 0;
    status = space->appendVcDbEntity(idOut, entity);
    space->close();
    return status == Vcad::eOk;
}

int createLine(const vds_point from, const vds_point to)
{
    resbuf* chain = vcutBuildList(RTDXF0, L"LINE", 10, from, 11, to, RTNONE);
    const int status = vcdbEntMake(chain);
    vcutRelRb(chain);
    if (status != RTNORM)
        vcutPrintf(L"%s", StringFromID(2072));
    vcedRetVoid();
    return status == RTNORM ? RTNORM : RTERROR;
}

namespace {

bool endsWhereItBegins(const CList<SdsVertex, SdsVertex>& vertices)
{
    if (vertices.GetCount() < 2)
        return false;
    vds_point first, last;
    vertices.GetHead().GetSdsPoint(first);
    vertices.GetTail().GetSdsPoint(last);
    return is_equal_point(first, last);
}

}  // namespace

int create_lwpolyline(const CList<SdsVertex, SdsVertex>& vertices, double startWidth, double endWidth)
{
    const bool closed = endsWhereItBegins(vertices);
    const int count = vertices.GetCount() - closed;
    resbuf* chain = vcutBuildList(RTDXF0, L"LWPOLYLINE", 90, count, RTNONE);
    resbuf* tail = chain->rbnext;
    POSITION at = vertices.GetHeadPosition();
    for (int i = 0; i < count; ++i) {
        const SdsVertex& vertex = vertices.GetNext(at);
        vds_point point;
        vertex.GetSdsPoint(point);
        LwplrbAddVertFromData(tail, point, startWidth, endWidth, vertex.bulge);
    }
    vds_name name = {};
    if (vcdbEntMakeX(chain, name) == RTNORM)
        entity_data_int_set(70, name, closed);
    vcutRelRb(chain);
    return RTNORM;
}

Vcad::ErrorStatus defineNewAnonymousBlock(VcDbBlockTableRecord*& recordOut, VcDbObjectId& idOut, VcDbDatabase* database)
{
    recordOut = nullptr;
    VcDbBlockTable* blocks = nullptr;
    Vcad::ErrorStatus status = database ? database->getSymbolTable(blocks, VcDb::kForWrite) : Vcad::eNoDatabase;
    if (status != Vcad::eOk)
        return status;
    auto record = std::make_unique<VcDbBlockTableRecord>();
    record->setPathName(L"");
    record->setName(L"*U");
    status = blocks->add(idOut, record.get());
    if (status == Vcad::eOk)
        recordOut = record.release();
    blocks->close();
    return status;
}

namespace {

void transformClone(const VcDbIdPair& pair, const VcGeMatrix3d& matrix)
{
    VcDbEntity* clone = nullptr;
    if (!pair.isCloned() || vcdbOpenVcDbEntity(clone, pair.value(), VcDb::kForWrite) != Vcad::eOk)
        return;
    if (pair.isPrimary())
        clone->transformBy(matrix);
    clone->close();
}

}  // namespace

Vcad::ErrorStatus cloneAndXformObjects(VcDbDatabase* database, const VcDbObjectIdArray& ids, VcDbObjectId owner,
                                       const VcGeMatrix3d& matrix)
{
    constexpr auto kUnreadable = Vcad::ErrorStatus(3);
    VcDbIdMapping mapping;
    const Vcad::ErrorStatus status = database->deepCloneObjects(ids, owner, mapping, false);
    if (status != Vcad::eOk)
        return status;
    VcDbIdMappingIter pairs(mapping);
    for (pairs.start(); !pairs.done(); pairs.next()) {
        VcDbIdPair pair;
        if (!pairs.getMap(pair))
            return kUnreadable;
        transformClone(pair, matrix);
    }
    return Vcad::eOk;
}

Vcad::ErrorStatus makeAnonymousBlock(VcDbObjectId& idOut, const VcDbObjectIdArray& ids, const VcGePoint3d& basePoint)
{
    VcDbDatabase* database = workingDatabase();
    VcDbBlockTableRecord* record = nullptr;
    Vcad::ErrorStatus status = defineNewAnonymousBlock(record, idOut, database);
    if (status != Vcad::eOk)
        return status;
    wchar_t* name = nullptr;
    status = record->getName(name);
    vcutDelString(name);
    record->close();
    if (status != Vcad::eOk)
        return status;
    VcGeMatrix3d toBlock;
    getUcsToWcsOriginMatrix(toBlock, ucsToWcs(basePoint), database);
    return cloneAndXformObjects(database, ids, idOut, toBlock);
}

void makeBlockReference(VcDbObjectId blockId, const VcGePoint3d& position, const VcGeScale3d& scale)
{
    auto reference = std::make_unique<VcDbBlockReference>();
    reference->setPosition(position);
    reference->setBlockTableRecord(blockId);
    reference->setScaleFactors(scale);
    const bool onSheet = shortVariable(L"TILEMODE") == 0 && shortVariable(L"CVPORT") < 2;
    VcDbObjectId id;
    if (addEntityToDb(id, reference.get(), !onSheet))
        reference.release()->close();
}
