// DxfReader: the sections of a DXF file, in whatever order they come, into an empty database.
#pragma once

#include "host/io/drawing_file.h"
#include "host/io/dxf_source.h"
#include "host/io/dxf_text.h"
#include "host/io/object_reader.h"

class DatabaseCore;
class VcDbBlockTableRecord;
class VcDbEntity;
class VcDbSymbolTableRecord;

class DxfReader {
public:
    DxfReader(DatabaseCore& db, std::string_view bytes, const ReadOptions& options, ReadResult& result);
    ~DxfReader();
    void read();

private:
    // A record of the TABLES section, which is read twice: names and handles first, then fields.
    struct TableEntry;

    void prescan();
    bool nextRecord();
    bool nextInSection();
    void refuse(std::uint32_t line, std::string text);
    void note(std::uint32_t line, std::uint64_t handle, std::string text, bool mended = true);
    std::string textOf(const DxfRecord& record, int code);

    void readSection();
    void readHeader();
    void readClasses();
    void readObjects();
    void keepSection(std::string_view name);

    void readTables();
    void ensureTables();
    void declareTable(TableEntry& entry);
    void declareRecord(TableEntry& entry, VcDbObjectId table);

    void readBlocks();
    void beginBlock();
    void endBlock();
    void closeBlock();
    VcDbBlockTableRecord& blockFor(const std::string& name, std::uint64_t owner);
    VcDbBlockTableRecord& newBlock(const std::string& name);
    void addBlockEnds(VcDbBlockTableRecord& block);

    void readEntities();
    void readEntity(VcDbBlockTableRecord* block);
    VcDbBlockTableRecord& spaceOf(const ObjectParts& parts);
    VcDbBlockTableRecord& space(bool paper);
    bool readSubEntity(const ObjectParts& parts);
    void closeParent();

    void finish();
    void adoptOrphans();
    void reportImplicitRecords();
    void reportDangling();

    DatabaseCore& m_db;
    std::string_view m_bytes;
    const ReadOptions& m_options;
    ReadResult& m_result;
    std::unique_ptr<DxfSource> m_source;
    std::unique_ptr<TextDecoder> m_decoder;
    std::unique_ptr<ObjectReader> m_objects;
    DxfRecord m_record;
    bool m_recordWaits = false;  // the record in hand has not been dealt with
    bool m_ended = false;        // the end mark has come
    bool m_stopped = false;      // refused or cancelled
    bool m_sectionOpen = false;
    std::size_t m_recordCount = 0;

    VcDbBlockTableRecord* m_block = nullptr;  // whose BLOCK has been read
    VcDbEntity* m_parent = nullptr;           // whose sub-entities may follow
    std::string_view m_parentTakes;           // what they are
    VcDbBlockTableRecord* m_spaces[2] = {};
    std::uint64_t m_lastOwner = 0;
    VcDbBlockTableRecord* m_lastOwnerBlock = nullptr;
    std::uint32_t m_objectOrder = 0;
    std::vector<VcDbObject*> m_orphans;      // objects that no owner was given for
    std::vector<VcDbObjectId> m_madeTables;  // which get their handles when those of the file are all known
};
