#include "host/io/let_go_sink.h"

#include "host/base/unicode.h"
#include "host/db/database.h"
#include "host/db/let_go.h"
#include "host/db/scale_list.h"
#include "sdk/vcdb_objects.h"

namespace {

using ScalesByName = std::unordered_map<std::string, std::uint64_t, NoCaseHash, NoCaseEqual>;

ScalesByName listedScales(const DatabaseCore& db)
{
    ScalesByName scales;
    if (const VcDbDictionary* list = scaleListOf(db))
        for (const auto& [key, id] : list->liveEntries())
            if (const auto* scale = db.liveAs<VcDbScale>(id))
                scales.emplace(scale->nameUtf8(), db.handleOf(id));
    return scales;
}

}

HandleMap handlesInPlace(const DatabaseCore& db, const LetGo& letGo)
{
    HandleMap handles;
    const ScalesByName scales = letGo.isEmpty() ? ScalesByName() : listedScales(db);
    for (const std::uint32_t slot : letGo.slots()) {
        const auto* scale = VcDbScale::cast(db.objectAt(slot));
        const auto found = scale ? scales.find(scale->nameUtf8()) : scales.end();
        handles[db.handleOf(db.idAt(slot))] = found == scales.end() ? 0 : found->second;
    }
    return handles;
}
