// RecordNameReader: the records that groups of objects name. A file may name a record before it is read, and may spell its
// name otherwise than the record does; a chain may only name what the drawing has.
#pragma once

#include "host/db/field_visitor.h"
#include "host/db/presence.h"
#include "host/db/tag.h"

#include <memory>
#include <unordered_map>
#include <vector>

class DatabaseCore;
class GroupValues;
class VcDbObject;

class RecordNameReader {
public:
    RecordNameReader(DatabaseCore& db, GroupValues& values, bool ofFile);
    ~RecordNameReader();

    // The next object.
    void begin();
    // The record that the tag names, which stands in the given group of the object; false for a name that must be there.
    bool record(const Tag& tag, NameTable table, PresenceKey group, VcDbObjectId& id);
    // How the object spelt names otherwise than their records.
    const std::vector<KeptSpelling>& spellings() const { return m_spellings; }
    void finish(const VcDbObject& object);
    // When the whole file is read: the spelling of names that were used ahead of their records.
    void settle();

private:
    // A name that made its record, which may yet be read under another spelling.
    struct EarlyName {
        std::uint32_t object, record;
        PresenceKey group;
        std::uint32_t nth;
    };
    struct Cache;

    bool recordOfChain(const Tag& tag, std::string_view name, NameTable table, VcDbObjectId& id);
    void noteSpelling(PresenceKey group, VcDbObjectId id, const std::string& spelt);

    DatabaseCore& m_db;
    GroupValues& m_values;
    std::unique_ptr<Cache> m_cache;  // of a file
    std::vector<KeptSpelling> m_spellings;
    GroupCounts m_counts;
    std::vector<EarlyName> m_earlyNames;
    std::size_t m_earlyBefore = 0;  // how many of them belong to the objects before this one
    std::unordered_map<std::uint32_t, std::string> m_earlySpellings;  // by the slot of the record
    std::string m_scratch;
};
