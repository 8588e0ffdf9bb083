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

// The brackets of reactors are written when one is left to stand in them.
void LetGoSink::text(int code, std::string_view utf8)
{
    if (code == 102 && utf8 == "{ACAD_REACTORS") {
        m_reactors = Reactors::Announced;
        return;
    }
    const bool isEmpty = std::exchange(m_reactors, Reactors::None) == Reactors::Announced;
    if (!isEmpty || code != 102)
        m_next.text(code, utf8);
}

void LetGoSink::handle(int code, std::uint64_t handle)
{
    const auto found = m_inPlace.find(handle);
    const std::uint64_t written = found == m_inPlace.end() ? handle : found->second;
    if (m_reactors != Reactors::None && written == 0)
        return;
    if (m_reactors == Reactors::Announced) {
        m_next.text(102, "{ACAD_REACTORS");
        m_reactors = Reactors::Open;
    }
    m_next.handle(code, written);
}
