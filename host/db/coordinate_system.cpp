#include "host/db/coordinate_system.h"

#include "host/db/database.h"
#include "host/db/layouts.h"
#include "sdk/vcdb_layout.h"
#include "sdk/vcdb_records.h"
#include "sdk/vcdb_viewport.h"

namespace {

struct HeaderNames {
    const char *origin, *x, *y, *name;
};
constexpr HeaderNames kModel{"$UCSORG", "$UCSXDIR", "$UCSYDIR", "$UCSNAME"},
    kSheet{"$PUCSORG", "$PUCSXDIR", "$PUCSYDIR", "$PUCSNAME"};

// Which viewport is worked in belongs to the session.
struct Entered {
    std::uint32_t database = 0;
    VcDbObjectId viewport;
};
Entered s_entered;

bool isOnSheet(const DatabaseCore& db) { return db.currentSpace() == db.paperSpace(); }

// Null where the viewport takes the model's.
VcDbViewport* viewportWithUcs(const DatabaseCore& db)
{
    auto* viewport =
        db.inModelViewport && s_entered.database == db.serial() ? db.liveAs<VcDbViewport>(s_entered.viewport) : nullptr;
    return viewport && viewport->isUcsSavedWithViewport() ? viewport : nullptr;
}

// Every pick asks: which record it was holds as long as nothing changes.
VcDbViewportTableRecord* activeRecord(const DatabaseCore& db)
{
    static std::pair<std::uint32_t, std::uint64_t> state;
    static VcDbObjectId active;
    if (const std::pair now(db.serial(), db.changeCount()); active.isNull() || now != state) {
        active = db.findRecord(NameTable::Viewport, "*Active");
        state = now;
    }
    return db.liveAs<VcDbViewportTableRecord>(active);
}

CoordinateSystem fromHeader(const DatabaseCore& db, const HeaderNames& names)
{
    const auto get = [&](const char* name, const VcGeVector3d& byDefault) {
        const auto p = db.header().point(name);
        return p ? VcGeVector3d(p->x, p->y, p->z) : byDefault;
    };
    return {VcGePoint3d() + get(names.origin, {}), get(names.x, {1, 0, 0}), get(names.y, {0, 1, 0})};
}

void setHeader(DatabaseCore& db, const HeaderNames& names, const CoordinateSystem& ucs,
               const VcDbSymbolTableRecord* record)
{
    db.header().setText(names.name, 2, record ? record->nameUtf8() : std::string());
    db.header().setPoint(names.origin, ucs.origin.x, ucs.origin.y, ucs.origin.z);
    db.header().setPoint(names.x, ucs.x.x, ucs.x.y, ucs.x.z);
    db.header().setPoint(names.y, ucs.y.x, ucs.y.y, ucs.y.z);
}

CoordinateSystem sound(CoordinateSystem ucs)
{
    if (ucs.x == VcGeVector3d::xAxis() && ucs.y == VcGeVector3d::yAxis())
        return ucs;
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
    return {toWorld * VcGePoint3d(), (toWorld * VcGeVector3d::xAxis()).normal(),
            (toWorld * VcGeVector3d::yAxis()).normal()};
}

void setUcsViewport(const DatabaseCore& db, VcDbObjectId viewport) { s_entered = {db.serial(), viewport}; }

CoordinateSystem currentUcs(const DatabaseCore& db)
{
    if (isOnSheet(db))
        return sound(fromHeader(db, kSheet));
    CoordinateSystem ucs;
    if (const VcDbViewport* viewport = viewportWithUcs(db))
        viewport->getUcs(ucs.origin, ucs.x, ucs.y);
    else if (const VcDbViewportTableRecord* record = activeRecord(db))
        record->getUcs(ucs.origin, ucs.x, ucs.y);
    else
        ucs = fromHeader(db, kModel);
    return sound(ucs);
}

VcDbObjectId currentUcsRecord(const DatabaseCore& db)
{
    if (const VcDbViewport* viewport = isOnSheet(db) ? nullptr : viewportWithUcs(db))
        return viewport->ucsName();
    const std::string name = db.header().text((isOnSheet(db) ? kSheet : kModel).name, "");
    return name.empty() ? VcDbObjectId() : db.findRecord(NameTable::Ucs, name);
}

void adoptHeaderUcs(DatabaseCore& db)
{
    const CoordinateSystem ucs = sound(fromHeader(db, kModel));
    if (VcDbViewportTableRecord* record = activeRecord(db); record && !ucs.isWorld())
        record->setUcs(ucs.origin, ucs.x, ucs.y);
}

template <class T>
static void give(T* holder, const CoordinateSystem& ucs, VcDbObjectId record)
{
    if (!holder)
        return;
    holder->setUcs(ucs.origin, ucs.x, ucs.y);
    holder->setUcsName(record);
}

void setCurrentUcs(DatabaseCore& db, const CoordinateSystem& ucs, VcDbObjectId id)
{
    const auto* record = db.liveAs<VcDbSymbolTableRecord>(id);
    if (isOnSheet(db)) {
        setHeader(db, kSheet, ucs, record);
        return give(layoutOfBlock(db, db.paperSpace()), ucs, id);
    }
    if (VcDbViewport* viewport = viewportWithUcs(db))
        return give(viewport, ucs, id);
    setHeader(db, kModel, ucs, record);
    give(activeRecord(db), ucs, id);
    give(layoutOfBlock(db, db.modelSpace()), ucs, id);
}
