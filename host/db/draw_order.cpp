#include "host/db/draw_order.h"

#include "host/db/database.h"
#include "sdk/vcdb_objects.h"
#include "sdk/vcdb_tables.h"

VcDbSortentsTable* drawOrderOf(DatabaseCore& db, VcDbObjectId block)
{
    constexpr const char* kName = "ACAD_SORTENTS";
    auto* record = db.liveAs<VcDbBlockTableRecord>(block);
    if (!record || record->createExtensionDictionary() != Vcad::eOk)
        return nullptr;
    auto* extension = db.liveAs<VcDbDictionary>(record->extensionDictionary());
    if (auto* known = db.liveAs<VcDbSortentsTable>(extension->find(kName)))
        return known;
    auto made = std::make_unique<VcDbSortentsTable>();
    VcDbSortentsTable* table = made.get();
    made->setBlockId(block);
    extension->setAtUtf8(kName, db.add(std::move(made), extension->objectId()));
    return table;
}
