#include "host/db/coordinate_system.h"

#include "host/db/database.h"
#include "host/db/layouts.h"
#include "sdk/vcdb_layout.h"
#include "sdk/vcdb_records.h"
#include "sdk/vcdb_viewport.h"

namespace {

struct HeaderNames {
    const char *origin, *x, *y;
};
constexpr HeaderNames kModel{"$UCSORG", "$UCSXDIR", "$UCSYDIR"}, kSheet{"$PUCSORG", "$PUCSXDIR", "$PUCSYDIR"};

bool isOnSheet(const DatabaseCore& db) { return db.currentSpace() == db.paperSpace(); }

VcDbViewportTableRecord* activeRecord(const DatabaseCore& db)
{
    return db.liveAs<VcDbViewportTableRecord>(db.findRecord(NameTable::Viewport, "*Active"));
}

CoordinateSystem fromHeader(const DatabaseCore& db, const HeaderNames& names)
{
    const auto get = [&](const char* name, const VcGeVector3d& byDefault) {
        const auto p = db.header().point(name);
        return p ? VcGeVector3d(p->x, p->y, p->z) : byDefault;
    };
    return {VcGePoint3d() + get(names.origin, {}), get(names.x, {1, 0, 0}), get(names.y, {0, 1, 0})};
}

void setHeader(DatabaseCore& db, const HeaderNames& names, const CoordinateSystem& ucs)
{
    db.header().setPoint(names.origin, ucs.origin.x, ucs.origin.y, ucs.origin.z);
    db.header().setPoint(names.x, ucs.x.x, ucs.x.y, ucs.x.z);
    db.header().setPoint(names.y, ucs.y.x, ucs.y.y, ucs.y.z);
}

CoordinateSystem sound(CoordinateSystem ucs)
{
    const VcGeVector3d z = ucs.x.normal().crossProduct(ucs.y.normal());
    if (!(z.length() > 1e-6))
        return {};
    ucs.x = ucs.x.normal();
    ucs.y = z.normal().crossProduct(ucs.x).isEqualTo(ucs.y.normal()) ? ucs.y.normal() : z.normal().crossProduct(ucs.x);
    return ucs;
}

}

VcGeMatrix3d CoordinateSystem::toWorld() const
{
    VcGeMatrix3d m;
    m.setCoordSystem(origin, x, y, z());
    return m;
}

CoordinateSystem CoordinateSystem::of(const VcGeMatrix3d& toWorld)
{
    return {toWorld * VcGePoint3d(), (toWorld * VcGeVector3d::xAxis()).normal(), (toWorld * VcGeVector3d::yAxis()).normal()};
}

CoordinateSystem currentUcs(const DatabaseCore& db)
{
    if (isOnSheet(db))
        return sound(fromHeader(db, kSheet));
    const VcDbViewportTableRecord* record = activeRecord(db);
    if (!record)
        return sound(fromHeader(db, kModel));
    CoordinateSystem ucs;
    record->getUcs(ucs.origin, ucs.x, ucs.y);
    return sound(ucs);
}

void adoptHeaderUcs(DatabaseCore& db)
{
    const CoordinateSystem ucs = sound(fromHeader(db, kModel));
    if (VcDbViewportTableRecord* record = activeRecord(db); record && !ucs.isWorld())
        record->setUcs(ucs.origin, ucs.x, ucs.y);
}

void setCurrentUcs(DatabaseCore& db, const CoordinateSystem& ucs)
{
    if (isOnSheet(db)) {
        setHeader(db, kSheet, ucs);
        if (VcDbLayout* layout = layoutOfBlock(db, db.paperSpace()))
            layout->setUcs(ucs.origin, ucs.x, ucs.y);
        return;
    }
    setHeader(db, kModel, ucs);
    if (VcDbViewportTableRecord* record = activeRecord(db))
        record->setUcs(ucs.origin, ucs.x, ucs.y);
    if (VcDbLayout* layout = layoutOfBlock(db, db.modelSpace()))
        layout->setUcs(ucs.origin, ucs.x, ucs.y);
}
