// Symbol tables and their records.
#pragma once

#include "vccm.h"
#include "vcdb_object.h"
#include "vcge.h"

#include <string>

class VcDbEntity;

// A member list that belongs to the object's place in the drawing and not to its state: copies begin empty, and
// assignment leaves it alone. Its changes are journalled one by one.
template <class T>
class VcDbOwned {
public:
    VcDbOwned() = default;
    VcDbOwned(const VcDbOwned&) {}
    VcDbOwned& operator=(const VcDbOwned&) { return *this; }
    T& operator*() { return m_value; }
    const T& operator*() const { return m_value; }
    T* operator->() { return &m_value; }
    const T* operator->() const { return &m_value; }

private:
    T m_value;
};

class VK_SDK VcDbSymbolTableRecord : public VcDbObject {
    VCRX_DECLARE(VcDbSymbolTableRecord)
public:
    // The copy belongs to the caller (vcutDelString).
    Vcad::ErrorStatus getName(wchar_t*& name) const;
    Vcad::ErrorStatus setName(const wchar_t* name);
    bool isDependent() const { return (m_flags & 16) != 0; }  // came with an external reference
    bool isResolved() const { return (m_flags & 32) != 0 || !isDependent(); }

    // Host side.
    const std::string& nameUtf8() const { return m_name; }
    void setNameUtf8(std::string name);
    std::int16_t flags() const { return m_flags; }
    void setFlags(std::int16_t flags);
    void fields(FieldVisitor& visitor) override;
    void stateRestored(const VcDbObject& before) override;
    Vcad::ErrorStatus mayErase() const override;

protected:
    void nameAndFlags(FieldVisitor& visitor);
    std::string m_name;
    std::int16_t m_flags = 0;
};

class VcDbSymbolTableIterator;

class VK_SDK VcDbSymbolTable : public VcDbObject {
    VCRX_DECLARE(VcDbSymbolTable)
public:
    Vcad::ErrorStatus getAt(const wchar_t* name, VcDbObjectId& id, bool getErased = false) const;
    bool has(const wchar_t* name) const;
    bool has(VcDbObjectId id) const;
    // Takes over the record, which stays open for write and is closed by the caller.
    Vcad::ErrorStatus add(VcDbObjectId& id, VcDbSymbolTableRecord* record);
    Vcad::ErrorStatus add(VcDbSymbolTableRecord* record);
    Vcad::ErrorStatus newIterator(VcDbSymbolTableIterator*& iterator, bool atBeginning = true,
                                  bool skipDeleted = true) const;

    // Host side.
    struct Index;
    const std::vector<std::uint32_t>& recordSlots() const { return *m_records; }  // in order, erased ones too
    VcDbObjectId find(std::string_view name, bool erasedToo = false) const;
    std::vector<VcDbObjectId> records() const;  // live ones, in order
    virtual VcDbSymbolTableRecord* newRecord() const = 0;
    void recordAdded(VcDbSymbolTableRecord& record);
    void recordRenamed(VcDbSymbolTableRecord& record, const std::string& oldName);
    void fields(FieldVisitor& visitor) override;
    ~VcDbSymbolTable() override;

protected:
    VcDbSymbolTable();
    VcDbSymbolTable(const VcDbSymbolTable&);
    VcDbSymbolTable& operator=(const VcDbSymbolTable&);
    VcDbOwned<std::vector<std::uint32_t>> m_records;
    std::unique_ptr<Index> m_index;
};

class VK_SDK VcDbSymbolTableIterator {
public:
    VcDbSymbolTableIterator(const VcDbSymbolTable& table, bool skipErased);
    void start(bool atBeginning = true, bool skipErased = true);
    bool done() const { return m_at < 0 || m_at >= static_cast<std::ptrdiff_t>(m_ids.size()); }
    void step(bool forward = true, bool skipErased = true);
    Vcad::ErrorStatus getRecordId(VcDbObjectId& id) const;
    Vcad::ErrorStatus getRecord(VcDbSymbolTableRecord*& record, VcDb::OpenMode mode = VcDb::kForRead,
                                bool openErased = false) const;

protected:
    void skip(int direction, bool skipErased);
    VcDbObjectIdArray m_ids;
    std::ptrdiff_t m_at = 0;
};

// Each table with its record and iterator, typed.
#define VCDB_DECLARE_TABLE(Table, Record, Iterator)                                                                    \
    class Record;                                                                                                      \
    class VK_SDK Iterator : public VcDbSymbolTableIterator {                                                           \
    public:                                                                                                            \
        using VcDbSymbolTableIterator::VcDbSymbolTableIterator;                                                        \
        Vcad::ErrorStatus getRecord(Record*& record, VcDb::OpenMode mode = VcDb::kForRead,                             \
                                    bool openErased = false) const;                                                    \
    };                                                                                                                 \
    class VK_SDK Table : public VcDbSymbolTable {                                                                      \
        VCDB_DECLARE(Table)                                                                                            \
    public:                                                                                                            \
        using VcDbSymbolTable::getAt;                                                                                  \
        using VcDbSymbolTable::newIterator;                                                                            \
        Vcad::ErrorStatus getAt(const wchar_t* name, Record*& record, VcDb::OpenMode mode = VcDb::kForRead,            \
                                bool openErased = false) const;                                                        \
        Vcad::ErrorStatus newIterator(Iterator*& iterator, bool atBeginning = true, bool skipDeleted = true) const;    \
        VcDbSymbolTableRecord* newRecord() const override;                                                             \
    };

VCDB_DECLARE_TABLE(VcDbLayerTable, VcDbLayerTableRecord, VcDbLayerTableIterator)
VCDB_DECLARE_TABLE(VcDbLinetypeTable, VcDbLinetypeTableRecord, VcDbLinetypeTableIterator)
VCDB_DECLARE_TABLE(VcDbTextStyleTable, VcDbTextStyleTableRecord, VcDbTextStyleTableIterator)
VCDB_DECLARE_TABLE(VcDbDimStyleTable, VcDbDimStyleTableRecord, VcDbDimStyleTableIterator)
VCDB_DECLARE_TABLE(VcDbBlockTable, VcDbBlockTableRecord, VcDbBlockTableIterator)
VCDB_DECLARE_TABLE(VcDbRegAppTable, VcDbRegAppTableRecord, VcDbRegAppTableIterator)
VCDB_DECLARE_TABLE(VcDbViewTable, VcDbViewTableRecord, VcDbViewTableIterator)
VCDB_DECLARE_TABLE(VcDbViewportTable, VcDbViewportTableRecord, VcDbViewportTableIterator)
VCDB_DECLARE_TABLE(VcDbUCSTable, VcDbUCSTableRecord, VcDbUCSTableIterator)

class VK_SDK VcDbRegAppTableRecord : public VcDbSymbolTableRecord {
    VCDB_DECLARE(VcDbRegAppTableRecord)
public:
    void fields(FieldVisitor& visitor) override;
};

class VK_SDK VcDbLayerTableRecord : public VcDbSymbolTableRecord {
    VCDB_DECLARE(VcDbLayerTableRecord)
public:
    bool isFrozen() const { return (m_flags & 1) != 0; }
    Vcad::ErrorStatus setIsFrozen(bool frozen);         // the current layer and layer that viewports need refuse
    bool VPDFLT() const { return (m_flags & 2) != 0; }  // frozen in new viewports
    void setVPDFLT(bool frozen);
    bool isLocked() const { return (m_flags & 4) != 0; }
    void setIsLocked(bool locked);
    bool isOff() const { return m_off; }
    void setIsOff(bool off);
    bool isPlottable() const { return m_plottable; }
    Vcad::ErrorStatus setIsPlottable(bool plottable);
    VcCmColor color() const { return m_color; }
    Vcad::ErrorStatus setColor(const VcCmColor& color);
    VcDb::LineWeight lineWeight() const { return VcDb::LineWeight(m_lineWeight); }
    Vcad::ErrorStatus setLineWeight(VcDb::LineWeight weight);
    VcDbObjectId linetypeObjectId() const { return m_linetype; }
    Vcad::ErrorStatus setLinetypeObjectId(VcDbObjectId linetype);

    void fields(FieldVisitor& visitor) override;

private:
    VcCmColor m_color = VcCmColor::fromIndex(7);
    std::string m_colorBook;
    VcDbObjectId m_linetype, m_plotStyle, m_material, m_visualStyle;
    std::int16_t m_lineWeight = -3;
    bool m_off = false, m_plottable = true;
};

class VcDbBlockTableRecordIterator;
class VcDbBlockReferenceIdIterator;

// A block definition, a layout's entities, or an external reference.
class VK_SDK VcDbBlockTableRecord : public VcDbSymbolTableRecord {
    VCDB_DECLARE(VcDbBlockTableRecord)
public:
    enum XrefStatus : int {
        kXrfNotAnXref = 0,
        kXrfResolved = 1,
        kXrfUnloaded = 2,
        kXrfUnreferenced = 3,
        kXrfFileNotFound = 4,
        kXrfUnresolved = 5
    };

    // Takes over an entity that is in no database; it stays open for write and is closed by the caller.
    Vcad::ErrorStatus appendVcDbEntity(VcDbObjectId& id, VcDbEntity* entity);
    Vcad::ErrorStatus appendVcDbEntity(VcDbEntity* entity);
    Vcad::ErrorStatus newIterator(VcDbBlockTableRecordIterator*& iterator, bool atBeginning = true,
                                  bool skipDeleted = true) const;
    Vcad::ErrorStatus newBlockReferenceIdIterator(VcDbBlockReferenceIdIterator*& iterator) const;
    // The references to this record wherever they stand; without directOnly also those of the records that hold them,
    // and so outward.
    Vcad::ErrorStatus getBlockReferenceIds(VcDbObjectIdArray& ids, bool directOnly = true,
                                           bool forceValidity = false) const;

    VcGePoint3d origin() const { return m_origin; }
    Vcad::ErrorStatus setOrigin(const VcGePoint3d& origin);
    wchar_t* pathName() const;
    Vcad::ErrorStatus setPathName(const wchar_t* path);
    wchar_t* comments() const;
    Vcad::ErrorStatus setComments(const wchar_t* text);
    bool explodable() const { return m_explodable; }
    void setExplodable(bool explodable);
    bool scalesUniformly() const { return m_scaleUniformly; }
    // As INSUNITS counts them, 0 for none.
    std::int16_t insertUnits() const { return m_insertUnits; }
    Vcad::ErrorStatus setInsertUnits(std::int16_t units);
    bool isAnonymous() const { return (m_blockFlags & 1) != 0; }
    bool hasAttributeDefinitions() const;
    bool isFromExternalReference() const { return (m_blockFlags & 4) != 0; }
    bool isFromOverlayReference() const { return (m_blockFlags & 8) != 0; }
    XrefStatus xrefStatus() const;
    bool isLayout() const;
    VcDbObjectId getLayoutId() const { return m_layout; }

    // Host side.
    const std::vector<std::uint32_t>& memberSlots() const { return *m_members; }  // in order, erased ones too
    // Lists an entity that has been given its id, and gives it its place in the order.
    void memberAdded(VcDbEntity& entity);
    void eraseOwned(bool erasing) override;
    std::int16_t blockFlags() const { return m_blockFlags; }
    void setBlockFlags(std::int16_t flags);
    const std::string& pathUtf8() const { return m_path; }
    void setLayoutId(VcDbObjectId layout);
    VcDbObjectId beginId() const { return m_begin; }
    VcDbObjectId endId() const { return m_end; }
    void setBeginEnd(VcDbObjectId begin, VcDbObjectId end);
    // The record's own groups; those of its BLOCK and ENDBLK are in beginFields.
    void fields(FieldVisitor& visitor) override;
    void beginFields(FieldVisitor& visitor);
    // A chain as tables give it: name, flags, base point, path.
    void chainFields(FieldVisitor& visitor);

private:
    VcGePoint3d m_origin;
    std::string m_path, m_description, m_preview;
    VcDbObjectId m_layout, m_begin, m_end;
    std::int16_t m_blockFlags = 0, m_insertUnits = 0;
    bool m_explodable = true, m_scaleUniformly = false;
    bool m_hasNewGroups = false;  // 70, 280, 281 of newer files
    VcDbOwned<std::vector<std::uint32_t>> m_members;
};

// Walks the entities of a block record.
class VK_SDK VcDbBlockTableRecordIterator {
public:
    VcDbBlockTableRecordIterator(const VcDbBlockTableRecord& record, bool skipErased);
    void start(bool atBeginning = true, bool skipErased = true);
    bool done() const;
    void step(bool forward = true, bool skipErased = true);
    Vcad::ErrorStatus getEntityId(VcDbObjectId& id) const;
    Vcad::ErrorStatus getEntity(VcDbEntity*& entity, VcDb::OpenMode mode = VcDb::kForRead,
                                bool openErased = false) const;

private:
    void skip(int direction, bool skipErased);
    VcDbObjectId m_record;
    std::ptrdiff_t m_at = 0;
};

class VcDbBlockReference;
class VK_SDK VcDbBlockReferenceIdIterator {
public:
    explicit VcDbBlockReferenceIdIterator(VcDbObjectIdArray ids) : m_ids(std::move(ids)) {}
    void start() { m_at = 0; }
    bool done() const { return m_at >= m_ids.size(); }
    void step() { ++m_at; }
    Vcad::ErrorStatus getBlockReferenceId(VcDbObjectId& id) const;
    Vcad::ErrorStatus getBlockReference(VcDbBlockReference*& reference, VcDb::OpenMode mode = VcDb::kForRead,
                                        bool openErased = false) const;

private:
    VcDbObjectIdArray m_ids;
    std::size_t m_at = 0;
};
