#include "host/db/record_name_reader.h"

#include "host/base/numbers.h"
#include "host/db/database.h"
#include "host/db/group_values.h"
#include "sdk/vcdb_tables.h"

// The names of layers and the like repeat from object to object of a file: those seen last, by its bytes.
struct RecordNameReader::Cache {
    struct Entry {
        std::string raw, name;
        VcDbObjectId id;
        int table = -1;
    };
    Entry entries[2048];

    Entry& at(NameTable table, std::string_view raw)
    {
        std::size_t hash = raw.size() + static_cast<std::size_t>(table) * 31;
        for (const char c : raw)
            hash = hash * 131 + static_cast<unsigned char>(c);
        return entries[hash % std::size(entries)];
    }
};

RecordNameReader::RecordNameReader(DatabaseCore& db, GroupValues& values, bool ofFile)
    : m_db(db), m_values(values), m_cache(ofFile ? std::make_unique<Cache>() : nullptr)
{
}

RecordNameReader::~RecordNameReader() = default;

void RecordNameReader::begin()
{
    m_spellings.clear();
    m_counts.clear();
}

bool RecordNameReader::recordOfChain(const Tag& tag, std::string_view name, NameTable table, VcDbObjectId& id)
{
    id = name.empty() ? VcDbObjectId() : m_db.findRecord(table, name);
    if (id.isNull() && !name.empty())
        m_values.wrong(tag, "a name that the drawing has");
    return !id.isNull() || name.empty();
}

bool RecordNameReader::record(const Tag& tag, NameTable table, PresenceKey group, VcDbObjectId& id)
{
    if (tag.form == Tag::Form::Id) {
        id = unpackId(tag.integer);
        return true;
    }
    const std::string_view raw = isChars(tag) ? trimBlanks(tag.view()) : std::string_view();
    if (!m_cache)
        return recordOfChain(tag, raw, table, id);
    Cache::Entry& seen = m_cache->at(table, raw);
    if (seen.table != static_cast<int>(table) || seen.raw != raw) {
        m_values.text(tag, m_scratch);
        seen.name = trimBlanks(m_scratch);
        seen.id = seen.name.empty() ? VcDbObjectId() : m_db.recordFor(table, seen.name);
        seen.raw = raw;
        seen.table = static_cast<int>(table);
    }
    id = seen.id;
    noteSpelling(group, id, seen.name);
    return true;
}

void RecordNameReader::noteSpelling(PresenceKey group, VcDbObjectId id, const std::string& spelt)
{
    const auto* record = static_cast<const VcDbSymbolTableRecord*>(m_db.object(id));
    if (!record)
        return;
    const std::uint32_t nth = m_counts.next(group);
    if (record->nameUtf8() != spelt) {
        m_spellings.push_back({group, nth, spelt});
    } else if (record->isImplicit()) {
        m_earlyNames.push_back({0, id.slot(), group, nth});
        m_earlySpellings.emplace(id.slot(), spelt);
    }
}

void RecordNameReader::finish(const VcDbObject& object)
{
    for (; m_earlyBefore < m_earlyNames.size(); ++m_earlyBefore)
        m_earlyNames[m_earlyBefore].object = object.objectId().slot();
}

void RecordNameReader::settle()
{
    for (const EarlyName& early : m_earlyNames) {
        const auto* record = static_cast<const VcDbSymbolTableRecord*>(m_db.objectAt(early.record));
        VcDbObject* object = m_db.objectAt(early.object);
        const std::string& spelt = m_earlySpellings[early.record];
        if (record && object && record->nameUtf8() != spelt)
            object->setPresence(withSpelling(object->presence(), {early.group, early.nth, spelt}));
    }
    m_earlyNames = {};
    m_earlySpellings.clear();
    m_earlyBefore = 0;
}
