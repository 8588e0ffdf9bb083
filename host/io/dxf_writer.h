// DxfWriter: a drawing as the sections of a DXF file.
#pragma once

#include "host/io/drawing_file.h"
#include "host/io/group_output.h"
#include "host/io/object_writer.h"

#include <unordered_set>

class DatabaseCore;
class LetGo;
class VcDbBlockTableRecord;
class VcDbDatabase;
class VcDbEntity;
struct KeptSection;

class DxfWriter {
public:
    // What has been let go is left out.
    DxfWriter(DatabaseCore& db, DxfVersion version, GroupSink& sink, const LetGo& letGo, const WriteOptions& options,
              WriteResult& result);
    // False when it was cancelled.
    bool write();

private:
    struct TableRow;

    void beginSection(const char* name);
    void endSection();
    std::unique_ptr<VcDbDatabase> assumedHeader() const;
    void header();
    void classes();
    void tables();
    void blocks();
    std::vector<VcDbObjectId> blockRecords() const;
    void block(VcDbBlockTableRecord& record);
    void entities();
    void entity(VcDbEntity& entity);
    void objects();
    void keptSections();
    void keptSection(const KeptSection& section);

    const TagList* spaceGroups(const VcDbBlockTableRecord& block);
    bool isLegacy() const { return m_version < DxfVersion::R13; }
    std::uint64_t handleSeed() const;
    void reserveHandles();
    bool tick();

    DatabaseCore& m_db;
    DxfVersion m_version;
    GroupSink& m_sink;
    const LetGo& m_letGo;
    const WriteOptions& m_options;
    WriteResult& m_result;
    ObjectWriter m_objects;
    const std::unordered_set<std::uint32_t> m_abandoned;  // blocks of dimensions that are no more
    TagList m_space;
    VcDbObjectId m_spaceOf;
    bool m_isInPaper = false;
    bool m_hasHandles = true;
    // Of what entities are rewritten as, which the drawing does not hold: the next one, and what lies above them all.
    std::uint64_t m_nextHandle = 0, m_seedAbove = 0;
    std::size_t m_written = 0;
    bool m_cancelled = false;
};
