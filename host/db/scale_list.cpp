#include "host/db/scale_list.h"

#include "host/base/unicode.h"
#include "host/db/database.h"
#include "sdk/vcdb_objects.h"

VcDbDictionary* scaleListOf(const DatabaseCore& db)
{
    const auto* root = db.objectAs<VcDbDictionary>(db.rootDictionary());
    return root ? db.liveAs<VcDbDictionary>(root->find("ACAD_SCALELIST")) : nullptr;
}

VcDbScale* scaleNamed(const DatabaseCore& db, std::string_view name)
{
    const VcDbDictionary* list = scaleListOf(db);
    if (!list)
        return nullptr;
    for (const auto& [key, id] : list->liveEntries())
        if (auto* scale = db.liveAs<VcDbScale>(id); scale && equalNoCase(scale->nameUtf8(), name))
            return scale;
    return nullptr;
}

VcDbScale* listedScale(const DatabaseCore& db, const VcDbScale& scale)
{
    const VcDbDictionary* list = scaleListOf(db);
    if (list && !scale.isErased() && list->has(scale.objectId()))
        return db.liveAs<VcDbScale>(scale.objectId());
    return scaleNamed(db, scale.nameUtf8());
}
