// One object of the drawing as groups: kind, identity, common parts, fields, extended data.
#pragma once

#include "host/db/field_writer.h"

class DatabaseCore;
class VcDbBlockTableRecord;
struct ObjectExtras;

class ObjectWriter {
public:
    ObjectWriter(DatabaseCore& db, DxfVersion version, GroupSink& sink);

    struct Identity {
        bool handle = true;
        bool owner = true;
        std::uint64_t* nextHandle = nullptr;  // for objects that are in no drawing
    };
    void setIdentity(Identity identity) { m_identity = identity; }

    // common: groups that go in behind the marker of what all entities have.
    void write(VcDbObject& object, const TagList* common = nullptr);
    // A BLOCK: its entity's common groups, then those of the record.
    void writeBegin(VcDbObject& begin, VcDbBlockTableRecord& block, const TagList* common);
    // A TABLE: its name stands ahead of its handle.
    void writeTable(VcDbObject& table, const char* name, bool bare);

private:
    void head(VcDbObject& object, int handleCode);
    void braces(const ObjectExtras& extras);
    void tail(const VcDbObject& object);

    DatabaseCore& m_db;
    DxfVersion m_version;
    GroupSink& m_sink;
    FieldWriter m_fields;
    Identity m_identity;
};
