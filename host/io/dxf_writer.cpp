#include "host/io/dxf_writer.h"

#include "host/base/unicode.h"
#include "host/db/database.h"
#include "host/db/dim_block_users.h"
#include "host/db/kept_object.h"
#include "host/db/let_go.h"
#include "host/db/model_section.h"
#include "host/db/standard_header.h"
#include "host/io/downgrade.h"
#include "host/io/header_versions.h"
#include "host/io/model_section_writer.h"
#include "sdk/vcdb_database.h"
#include "sdk/vcdb_insert.h"
#include "sdk/vcdb_layout.h"
#include "sdk/vcdb_polylines.h"
#include "sdk/vcdb_tables.h"

#include <fmt/format.h>

namespace {

constexpr std::size_t kObjectsBetweenReports = 4096;

bool isNamed(const VcDbBlockTableRecord& block, const char* name)
{
    return equalNoCase(block.nameUtf8(), std::string_view(name));
}

bool isLive(const VcDbObject* object) { return object && !object->isErased(); }

}

struct DxfWriter::TableRow {
    const char* name;
    NameTable table;
};

DxfWriter::DxfWriter(DatabaseCore& db, DxfVersion version, GroupSink& sink, const LetGo& letGo,
                     const WriteOptions& options, WriteResult& result)
    : m_db(db), m_version(version), m_sink(sink), m_letGo(letGo), m_options(options), m_result(result),
      m_objects(db, version, sink), m_abandoned(vk::dim::abandonedBlocks(db))
{
    m_hasHandles = !isLegacy() || !db.origin.fromFile || db.origin.version >= DxfVersion::R13 || db.origin.hasHandles;
    if (!m_hasHandles)
        m_objects.setIdentity({false, false});
}

bool DxfWriter::write()
{
    if (!m_db.keptSections.empty() && m_db.keptSections.front().name.empty())
        putTags(m_sink, m_db.keptSections.front().tags);
    if (isLegacy() && m_hasHandles)
        reserveHandles();
    header();
    if (!isLegacy())
        classes();
    tables();
    blocks();
    entities();
    if (!isLegacy()) {
        objects();
        keptSections();
    }
    m_sink.text(0, "EOF");
    return !m_cancelled;
}

bool DxfWriter::tick()
{
    if (m_written++ % kObjectsBetweenReports != 0)
        return !m_cancelled;
    m_cancelled |= m_options.cancel && *m_options.cancel;
    if (m_options.progress)
        m_options.progress(std::min(1.0, static_cast<double>(m_written) / m_db.slotCount()));
    return !m_cancelled;
}

void DxfWriter::beginSection(const char* name)
{
    m_sink.text(0, "SECTION");
    m_sink.text(2, name);
}

void DxfWriter::endSection() { m_sink.text(0, "ENDSEC"); }

// Above every handle. R12 writes those of entities alone, so that what is made anew at each loading does not raise it.
std::uint64_t DxfWriter::handleSeed() const
{
    if (!isLegacy())
        return m_db.handleSeed();
    std::uint64_t seed = m_db.header().handle("$HANDSEED");
    for (std::uint32_t slot = 1; m_hasHandles && slot < m_db.slotCount(); ++slot)
        if (const VcDbObject* object = m_db.objectAt(slot); isLive(object) && object->isKindOf(VcDbEntity::desc()) &&
                                                            !object->isKindOf(VcDbBlockBegin::desc()) &&
                                                            !object->isKindOf(VcDbBlockEnd::desc()))
            seed = std::max(seed, m_db.handleOf(object->objectId()) + 1);
    return std::max(seed, m_seedAbove);
}

namespace {

class NoGroups final : public GroupSink {
public:
    void real(int, double) override {}
    void integer(int, std::int64_t) override {}
    void text(int, std::string_view) override {}
    void handle(int, std::uint64_t) override {}
    void bytes(int, std::string_view) override {}
};

}

// The header says ahead of the entities how far their handles reach, so those of rewritten ones are counted beforehand.
void DxfWriter::reserveHandles()
{
    NoGroups nowhere;
    m_nextHandle = m_seedAbove = handleSeed();
    for (std::uint32_t slot = 1; slot < m_db.slotCount(); ++slot) {
        auto* entity = VcDbEntity::cast(m_db.objectAt(slot));
        if (isLive(entity) && fateOf(*entity, m_db, m_version) == Fate::Rewritten)
            writeOlderForm(*entity, m_db, m_version, nowhere, nullptr, &m_seedAbove);
    }
}

// What a file of R12 or older leaves out of its header is assumed on reading. A copy leaves it out as well, as long as nobody
// has set it: null where nothing is left out.
std::unique_ptr<VcDbDatabase> DxfWriter::assumedHeader() const
{
    if (!isLegacy() || m_db.origin.version != m_version || m_db.origin.headerEntries == 0)
        return nullptr;
    auto assumed = std::make_unique<VcDbDatabase>(false);
    assumed->core().origin.fromFile = true;
    ensureHeaderVariables(assumed->core(), m_db.header().integer("$MEASUREMENT", 0) == 1);
    return assumed;
}

void DxfWriter::header()
{
    beginSection("HEADER");
    const bool sameRelease = m_db.origin.fromFile && m_db.origin.version == m_version;
    const auto assumed = assumedHeader();
    const auto isAssumed = [&](const HeaderVars::Entry& entry) {
        const TagList* plain = assumed ? assumed->core().header().find(entry.name) : nullptr;
        return plain && *plain == entry.tags;
    };
    const auto& entries = m_db.header().entries();
    const auto put = [&](std::string_view name, const TagList& tags) {
        m_sink.text(9, name);
        putTags(m_sink, tags);
    };
    if (!m_db.header().has("$ACADVER")) {
        m_sink.text(9, "$ACADVER");
        m_sink.text(1, acadVersionName(m_version));
    }
    for (std::size_t i = 0; i < entries.size(); ++i) {
        const HeaderVars::Entry& entry = entries[i];
        const std::string_view name = std::string_view(entry.name).substr(0, entry.name.find('#'));
        const bool fromFile = sameRelease && i < m_db.origin.headerEntries;
        if (!entry.live || (!fromFile && (headerVariableSince(name) > m_version || isAssumed(entry))))
            continue;
        TagList changed;
        if (name == "$ACADVER")
            changed.addText(1, acadVersionName(m_version));
        else if (name == "$HANDSEED")
            changed.addHandle(5, handleSeed());
        else if (name == "$HANDLING" && isLegacy())
            changed.addInteger(70, m_hasHandles);
        put(name, changed.empty() ? entry.tags : changed);
    }
    if (!m_db.header().has("$HANDSEED")) {
        m_sink.text(9, "$HANDSEED");
        m_sink.handle(5, handleSeed());
    }
    endSection();
}

void DxfWriter::classes()
{
    beginSection("CLASSES");
    for (const ClassRecord& c : classesToWrite(m_db, m_version)) {
        m_sink.text(0, "CLASS");
        m_sink.text(1, c.dxfName);
        m_sink.text(2, c.cppName);
        m_sink.text(3, c.application);
        m_sink.integer(90, c.proxyFlags);
        if (c.hasCount && m_version >= DxfVersion::R2004)
            m_sink.integer(91, c.instanceCount);
        m_sink.integer(280, c.wasProxy);
        m_sink.integer(281, c.isEntity);
        putTags(m_sink, c.unclaimed);
    }
    endSection();
}

namespace {

// Replaces the count of a table by the one that its file stated, which need not be the number of its records.
class CountSink final : public GroupSink {
public:
    CountSink(GroupSink& next, std::int64_t count) : m_next(next), m_count(count) {}
    void real(int code, double value) override { m_next.real(code, value); }
    void integer(int code, std::int64_t value) override
    {
        const bool isCount = code == 70 && !m_done;
        m_done |= isCount;
        m_next.integer(code, isCount ? m_count : value);
    }
    void text(int code, std::string_view utf8) override { m_next.text(code, utf8); }
    void handle(int code, std::uint64_t handle) override { m_next.handle(code, handle); }
    void bytes(int code, std::string_view data) override { m_next.bytes(code, data); }

private:
    GroupSink& m_next;
    std::int64_t m_count;
    bool m_done = false;
};

}

void DxfWriter::tables()
{
    constexpr TableRow kTables[] = {
        {"VPORT", NameTable::Viewport},  {"LTYPE", NameTable::Linetype},    {"LAYER", NameTable::Layer},
        {"STYLE", NameTable::TextStyle}, {"VIEW", NameTable::View},         {"UCS", NameTable::Ucs},
        {"APPID", NameTable::AppId},     {"DIMSTYLE", NameTable::DimStyle}, {"BLOCK_RECORD", NameTable::Block},
    };
    ObjectWriter records(m_db, m_version, m_sink);
    records.setIdentity({!isLegacy(), !isLegacy()});
    beginSection("TABLES");
    for (const TableRow& row : kTables) {
        if (isLegacy() && row.table == NameTable::Block)
            continue;
        VcDbSymbolTable& table = m_db.table(row.table);
        std::vector<VcDbObjectId> live = row.table == NameTable::Block ? blockRecords() : table.records();
        if (isLegacy() && row.table == NameTable::Linetype)
            std::erase_if(live, [&](VcDbObjectId id) { return isAbstractLinetype(m_db, id); });
        const auto& count = m_db.origin.tableCounts[static_cast<int>(row.table)];
        const bool untouched = count.stated >= 0 && count.read == table.records().size() && m_abandoned.empty();
        CountSink counted(m_sink, untouched ? count.stated : static_cast<std::int64_t>(live.size()));
        ObjectWriter(m_db, m_version, counted).writeTable(table, row.name, isLegacy());
        for (const VcDbObjectId id : live) {
            records.write(*m_db.object(id));
            ++m_result.kept;
        }
        m_sink.text(0, "ENDTAB");
    }
    endSection();
}

std::vector<VcDbObjectId> DxfWriter::blockRecords() const
{
    std::vector<VcDbObjectId> records = m_db.table(NameTable::Block).records();
    std::erase_if(records, [&](VcDbObjectId id) { return m_abandoned.contains(id.slot()); });
    return records;
}

void DxfWriter::blocks()
{
    beginSection("BLOCKS");
    std::vector<VcDbBlockTableRecord*> records;
    for (const VcDbObjectId id : blockRecords())
        records.push_back(m_db.objectAs<VcDbBlockTableRecord>(id));
    // R12 has no table of blocks. A dimension style may name one ahead of this section, so its beginning says its place.
    if (isLegacy())
        std::stable_sort(records.begin(), records.end(),
                         [](const auto* a, const auto* b) { return a->beginId() < b->beginId(); });
    for (VcDbBlockTableRecord* record : records)
        block(*record);
    endSection();
}

// The entities of model space and of the layout that is current stand in a section of their own.
void DxfWriter::block(VcDbBlockTableRecord& record)
{
    const TagList* space = spaceGroups(record);
    ObjectWriter ends(m_db, m_version, m_sink);
    ends.setIdentity({!isLegacy(), !isLegacy()});
    if (VcDbObject* begin = m_db.object(record.beginId()))
        ends.writeBegin(*begin, record, space);
    if (!isNamed(record, "*Model_Space") && !isNamed(record, "*Paper_Space") &&
        !m_db.loadedReferences.contains(record.objectId().slot()))
        for (const std::uint32_t slot : record.memberSlots())
            if (auto* member = VcDbEntity::cast(m_db.objectAt(slot)); isLive(member))
                entity(*member);
    spaceGroups(record);
    if (VcDbObject* end = m_db.object(record.endId()))
        ends.write(*end, space);
}

// Group 67, and 410 where the file had it, of what stands in a layout's sheet; null in model space and in blocks.
const TagList* DxfWriter::spaceGroups(const VcDbBlockTableRecord& block)
{
    if (block.objectId() != m_spaceOf) {
        m_spaceOf = block.objectId();
        m_space.clear();
        m_isInPaper = block.isLayout() && !isNamed(block, "*Model_Space");
        if (m_isInPaper)
            m_space.addInteger(67, 1);
        const auto* layout = m_db.liveAs<VcDbLayout>(block.getLayoutId());
        if (m_db.origin.namesLayouts && layout && m_version >= DxfVersion::R2000)
            m_space.addText(410, layout->nameUtf8());
    }
    return m_space.empty() ? nullptr : &m_space;
}

void DxfWriter::entities()
{
    beginSection("ENTITIES");
    for (const std::uint32_t slot : m_db.mainOrder()) {
        auto* main = static_cast<VcDbEntity*>(m_db.objectAt(slot));
        const auto* block = isLive(main) ? m_db.objectAs<VcDbBlockTableRecord>(main->ownerId()) : nullptr;
        if (!block)
            continue;
        if (isNamed(*block, "*Model_Space") || isNamed(*block, "*Paper_Space"))
            entity(*main);
        if (m_cancelled)
            return;
    }
    endSection();
}

void DxfWriter::entity(VcDbEntity& main)
{
    if (!tick())
        return;
    const auto* block = m_db.objectAs<VcDbBlockTableRecord>(main.ownerId());
    const TagList* space = block ? spaceGroups(*block) : nullptr;
    const Fate fate = fateOf(main, m_db, m_version);
    if (fate == Fate::Dropped) {
        ++m_result.dropped;
        ++m_result.droppedByType[dxfNameOf(main)];
        return;
    }
    if (fate == Fate::Rewritten) {
        ++m_result.rewrote;
        ++m_result.rewroteByType[dxfNameOf(main)];
        writeOlderForm(main, m_db, m_version, m_sink, space, m_hasHandles ? &m_nextHandle : nullptr);
        return;
    }
    ++m_result.kept;
    m_objects.write(main, space);
    const auto* subs = main.subEntities();
    if (!subs)
        return;
    bool any = subs->empty() || main.isKindOf(VcDbVertexOwner::desc());
    for (const VcDbObjectId id : *subs)
        if (VcDbObject* sub = m_db.object(id); isLive(sub)) {
            m_objects.write(*sub, space);
            any = true;
        }
    if (VcDbObject* end = any ? m_db.object(main.endMark()) : nullptr)
        m_objects.write(*end, space);
}

// In the order of their file, what was made since behind them.
void DxfWriter::objects()
{
    beginSection("OBJECTS");
    std::vector<VcDbObject*> all;
    for (std::uint32_t slot = 1; slot < m_db.slotCount(); ++slot) {
        VcDbObject* object = m_db.objectAt(slot);
        if (!isLive(object) || object->isKindOf(VcDbEntity::desc()) || object->isKindOf(VcDbSymbolTable::desc()) ||
            object->isKindOf(VcDbSymbolTableRecord::desc()) || m_letGo.contains(*object))
            continue;
        all.push_back(object);
    }
    const auto place = [](const VcDbObject* o) {
        return o->order() ? o->order() : std::numeric_limits<std::uint32_t>::max();
    };
    std::stable_sort(all.begin(), all.end(),
                     [&](const VcDbObject* a, const VcDbObject* b) { return place(a) < place(b); });
    for (VcDbObject* object : all) {
        if (!tick())
            return;
        m_objects.write(*object);
        ++m_result.kept;
    }
    endSection();
}

void DxfWriter::keptSections()
{
    for (const KeptSection& section : m_db.keptSections)
        if (!section.name.empty())
            keptSection(section);
    const auto isOfModels = [](const KeptSection& s) { return s.name == kModelSection; };
    if (m_version >= DxfVersion::R2013 &&
        std::none_of(m_db.keptSections.begin(), m_db.keptSections.end(), isOfModels) && hasNewModelData(m_db)) {
        beginSection(kModelSection);
        putModelSection(m_db, nullptr, m_sink);
        endSection();
    }
}

void DxfWriter::keptSection(const KeptSection& section)
{
    const bool isOfModels = section.name == kModelSection;
    if (isOfModels && m_version < DxfVersion::R2013)
        return;
    m_sink.text(0, "SECTION");
    m_sink.text(2, section.name);
    if (isOfModels)
        putModelSection(m_db, &section, m_sink);
    else
        putTags(m_sink, section.tags);
    endSection();
}
