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
    // One type of record and what is to be known of it before its fields are read.
    struct RecordInHand;
    struct Prescan;

    bool nextRecord();
    bool isCancelled();
    void prescan();
    void refuse(std::uint32_t line, std::string text);
    void note(std::uint32_t line, std::uint64_t handle, std::string text, bool mended = true);

    void readSection();
    void readHeader();
    void readClasses();
    void readTables();
    void readBlocks();
    void readEntities();
    void readObjects();
    void keepSection(std::string_view name);
    bool inSection();

    void ensureTables();
    void declareTable(RecordInHand& record);
    void declareRecord(RecordInHand& record, NameTable table, VcDbObjectId owner);
    void readClassRecord();

    void beginBlock();
    void endBlock();
    void closeBlock();
    VcDbBlockTableRecord& blockFor(std::string_view name, std::uint64_t ownerHandle);
    VcDbBlockTableRecord& newBlock(std::string name);
    VcDbBlockTableRecord& spaceOf(const ObjectParts& parts);
    VcDbBlockTableRecord& space(bool paper);

    void readEntity(VcDbBlockTableRecord* block);
    bool readSubEntity(const ObjectParts& parts);
    void closeParent();

    void finish();
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
    bool m_ended = false;         // the end mark has come
    bool m_stopped = false;       // refused or cancelled
    bool m_sectionOpen = false;
    VcDbBlockTableRecord* m_block = nullptr;  // whose BLOCK has been read
    VcDbEntity* m_parent = nullptr;           // whose sub-entities may follow
    VcDbBlockTableRecord* m_spaces[2] = {};
    std::uint64_t m_lastOwner = 0;
    VcDbBlockTableRecord* m_lastOwnerBlock = nullptr;
    std::uint32_t m_objectOrder = 0;
    std::size_t m_records = 0;
};
