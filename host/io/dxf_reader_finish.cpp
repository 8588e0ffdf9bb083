// What is done when every section has been read: what is missing is made, and what is wrong is told.
#include "host/base/unicode.h"
#include "host/db/database.h"
#include "host/db/kept_object.h"
#include "host/db/standard_objects.h"
#include "host/io/downgrade.h"
#include "host/io/dxf_reader.h"
#include "sdk/vcdb_objects.h"
#include "sdk/vcdb_records.h"
#include "sdk/vcdb_tables.h"

#include <fmt/format.h>

void DxfReader::finish()
{
    closeParent();
    closeBlock();
    if (!m_ended)
        note(m_source->line(), 0,
             m_sectionOpen ? "the file is cut off: ENDSEC was missing" : "the end mark EOF was missing",
             !m_sectionOpen);
    if (m_source->commentsDropped())
        note(0, 0, fmt::format("{} comments inside sections were not kept", m_source->commentsDropped()));
    if (!m_source->preamble().empty()) {
        KeptSection preamble;
        for (const Tag& tag : m_source->preamble())
            m_objects->values().keep(tag, preamble.tags);
        m_db.keptSections.insert(m_db.keptSections.begin(), std::move(preamble));
    }
    ensureTables();
    for (const VcDbObjectId table : m_madeTables)
        m_db.giveHandle(table);
    m_objects->fields().settleSpellings();
    reportImplicitRecords();
    reportDangling();
    m_db.setSpaces(space(false).objectId(), space(true).objectId());
    for (const VcDbObjectId id : m_db.table(NameTable::Block).records())
        addBlockEnds(*m_db.objectAs<VcDbBlockTableRecord>(id));
    adoptOrphans();
    for (const VcDbObjectId id : m_db.table(NameTable::DimStyle).records())
        if (auto* style = m_db.liveAs<VcDbDimStyleTableRecord>(id))
            style->takeExtendedData();
    m_db.origin.headerEntries = m_db.header().entries().size();
    ensureStandardObjects(m_db);
    for (int t = 0; t < 9; ++t)
        m_db.origin.tableCounts[t].read = m_db.table(NameTable(t)).records().size();
    m_result.objects = m_objects->objectsRead();
    if (m_options.progress)
        m_options.progress(1.0);
}

// An object without an owner belongs to the dictionary that lists it, or else to the root.
void DxfReader::adoptOrphans()
{
    if (m_orphans.empty())
        return;
    std::unordered_map<std::uint32_t, VcDbObjectId> holders;
    for (std::uint32_t slot = 1; slot < m_db.slotCount(); ++slot)
        if (const auto* dictionary = VcDbDictionary::cast(m_db.objectAt(slot)))
            for (const auto& [name, id] : dictionary->liveEntries())
                holders.emplace(id.slot(), dictionary->objectId());
    for (VcDbObject* orphan : m_orphans) {
        const auto holder = holders.find(orphan->objectId().slot());
        orphan->setOwnerId(holder != holders.end() ? holder->second : m_db.rootDictionary());
        note(0, m_db.handleOf(orphan->objectId()), fmt::format("a {} had no owner", dxfNameOf(*orphan)));
    }
}

// Files of R12 and older use these without listing them.
static bool isUnderstood(NameTable table, std::string_view name)
{
    return table == NameTable::Linetype && (equalNoCase(name, "ByBlock") || equalNoCase(name, "ByLayer"));
}

void DxfReader::reportImplicitRecords()
{
    constexpr const char* kKinds[] = {"layer",       "linetype",          "text style", "dimension style", "block",
                                      "application", "coordinate system", "view",       "viewport"};
    // Layers come first in the list of tables, and those that are made need a linetype.
    for (int t = 0; t < 9; ++t) {
        for (const VcDbObjectId id : m_db.table(NameTable(t)).records()) {
            auto& record = static_cast<VcDbSymbolTableRecord&>(*m_db.object(id));
            if (!record.isImplicit())
                continue;
            record.setImplicit(false);
            if (NameTable(t) == NameTable::Linetype && isAbstractLinetype(m_db, id))
                continue;  // old releases do not list them
            if (auto* layer = VcDbLayerTableRecord::cast(&record); layer && layer->linetypeObjectId().isNull())
                layer->setLinetypeObjectId(m_db.recordFor(NameTable::Linetype, "Continuous"));
            if (isUnderstood(NameTable(t), record.nameUtf8()))
                continue;
            note(0, 0, fmt::format("the {} \"{}\" is used but not defined; it was made", kKinds[t], record.nameUtf8()));
        }
    }
}

void DxfReader::reportDangling()
{
    for (std::uint32_t slot = 1; slot < m_db.slotCount(); ++slot)
        if (!m_db.objectAt(slot))
            note(0, m_db.handleOf(m_db.idAt(slot)),
                 fmt::format("handle {:X} is referred to, but no object has it", m_db.handleOf(m_db.idAt(slot))));
}
