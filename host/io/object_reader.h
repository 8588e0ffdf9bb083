// Turns the groups of one object into an object of the drawing: identity, common parts, fields, extended data.
#pragma once

#include "host/db/field_reader.h"
#include "host/io/dxf_source.h"

#include <memory>
#include <span>

class DatabaseCore;
struct ObjectExtras;

// An object's groups taken apart: what every object may have, and its body, which is its class's.
struct ObjectParts {
    std::uint64_t handle = 0;
    std::uint64_t owner = 0;
    bool hasOwner = false;
    bool inPaperSpace = false;
    bool namesLayout = false;
    std::span<Tag> body;
    std::span<Tag> xdata;
    std::span<Tag> braces;  // brace groups, each from its 102 "{NAME" to ahead of the one that closes it
};

class ObjectReader {
public:
    ObjectReader(DatabaseCore& db, DxfVersion version, const TextDecoder& decoder, ProblemLog& problems);

    // Reorders the record's tags; the parts point into them and hold until the next call.
    ObjectParts split(DxfRecord& record, bool isEntity);
    // Puts the object into the drawing under its handle, or under a new one when it has none or another has it.
    VcDbObjectId place(std::unique_ptr<VcDbObject> object, const ObjectParts& parts, VcDbObjectId owner,
                       std::uint32_t line);
    // Reads what the parts hold into an object that is in the drawing.
    void fill(VcDbObject& object, const ObjectParts& parts);
    // As fill, for an object whose body is read by something else than its fields().
    void fillCommon(VcDbObject& object, const ObjectParts& parts);

    FieldReader& fields() { return m_fields; }
    GroupValues& values() { return m_fields.values(); }
    std::size_t objectsRead() const { return m_objects; }

private:
    std::size_t takeSpace(ObjectParts& parts, std::vector<Tag>& tags, std::size_t body, std::size_t end);
    void readBrace(VcDbObject& object, std::span<Tag> group);

    DatabaseCore& m_db;
    ProblemLog& m_problems;
    FieldReader m_fields;
    std::vector<Tag> m_braceTags;
    std::size_t m_objects = 0;
};
