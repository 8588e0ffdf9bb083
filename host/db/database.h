// DatabaseCore: the host's side of a drawing database. Slots, handles, ownership, the order of entities, header
// variables and what a file carries beside its objects.
#pragma once

#include "host/db/entity_props.h"
#include "host/db/field_visitor.h"
#include "host/db/header_vars.h"
#include "host/db/tag.h"
#include "host/db/undo.h"
#include "sdk/vcdb_database.h"

#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

class VcDbBlockTableRecord;
class VcDbSymbolTable;
class VcDbSymbolTableRecord;
struct ReferenceMarks;

// A whole section of a file that has no objects of ours (ACDSDATA, THUMBNAILIMAGE, one we do not know), kept as it came.
struct KeptSection {
    std::string name;
    TagList tags;
};

// A CLASS record of a file.
struct ClassRecord {
    std::string dxfName, cppName, application;
    std::int32_t proxyFlags = 0, instanceCount = 0;
    bool wasProxy = false, isEntity = false, hasCount = false;
    TagList unclaimed;
};

// What the drawing's file was.
struct FileOrigin {
    std::string path;
    DxfVersion version = DxfVersion::R2018;
    std::string codePage = "ANSI_1252";
    bool binary = false;
    bool crLf = true;
    bool namesLayouts = false;  // entities of layouts carry group 410
    bool hasHandles = false;    // R12: entities carry their handles
    bool fromFile = false;
    std::size_t headerEntries = 0;  // how many of the header's variables came from it
    // What each table said its number of records was, and how many there were when it had been read.
    struct TableCount {
        std::int64_t stated = -1;
        std::size_t read = 0;
    };
    TableCount tableCounts[9];
};

class VKHOST_API DatabaseCore {
public:
    explicit DatabaseCore(VcDbDatabase& face);
    ~DatabaseCore();
    DatabaseCore(const DatabaseCore&) = delete;
    DatabaseCore& operator=(const DatabaseCore&) = delete;

    static DatabaseCore* bySerial(std::uint32_t serial);
    static DatabaseCore* of(VcDbObjectId id) { return bySerial(id.databaseSerial()); }
    std::uint32_t serial() const { return m_serial; }
    VcDbDatabase& face() const { return m_face; }

    // The object of an id, erased ones too; null for a null, foreign or unresolved id.
    VcDbObject* object(VcDbObjectId id) const
    {
        return id.databaseSerial() == m_serial ? objectAt(id.slot()) : nullptr;
    }
    VcDbObject* objectAt(std::uint32_t slot) const { return slot < m_slotCount ? place(slot).object : nullptr; }
    template <class T>
    T* objectAs(VcDbObjectId id) const
    {
        return T::cast(object(id));
    }
    // As objectAs, null when erased.
    template <class T>
    T* liveAs(VcDbObjectId id) const
    {
        VcDbObject* o = object(id);
        return o && !o->isErased() ? T::cast(o) : nullptr;
    }
    std::uint32_t slotCount() const { return m_slotCount; }
    VcDbObjectId idAt(std::uint32_t slot) const { return slot ? VcDbObjectId(m_serial, slot) : VcDbObjectId(); }

    // Opening by id, with the rules of open counts, erased objects and locked layers.
    static Vcad::ErrorStatus openObject(VcDbObject*& object, VcDbObjectId id, VcDb::OpenMode mode, bool openErased);

    // Puts an object under an owner and gives it a handle: the given one, or the next free one for 0. The change is
    // journalled. Symbol tables, dictionaries and blocks list their members themselves.
    VcDbObjectId add(std::unique_ptr<VcDbObject> object, VcDbObjectId owner, std::uint64_t handle = 0);
    // As add, for what a file lacks while its handles are not all known: the handle comes with giveHandle().
    VcDbObjectId addWithoutHandle(std::unique_ptr<VcDbObject> object, VcDbObjectId owner);
    void giveHandle(VcDbObjectId id);
    // As add, for an id that a reference has reserved by its handle before.
    VcDbObjectId fill(VcDbObjectId reserved, std::unique_ptr<VcDbObject> object, VcDbObjectId owner);

    std::uint64_t handleOf(VcDbObjectId id) const;
    // Id of a handle: null if nothing has it. reserve makes a slot for one that has not been read yet.
    VcDbObjectId findHandle(std::uint64_t handle) const;
    VcDbObjectId reserveHandle(std::uint64_t handle);
    // Gives an object of a file without handles, or with one that is taken, another handle.
    std::uint64_t nextHandle();
    // Called once, ahead of the first handle that is given out: a reader of files raises the seed above those to come.
    std::function<void()> beforeFirstHandle;
    std::uint64_t handleSeed() const { return m_handleSeed; }
    void raiseHandleSeed(std::uint64_t seed);

    EntityPropsTable& props() { return m_props; }
    const EntityPropsTable& props() const { return m_props; }
    UndoJournal& undo() { return m_undo; }
    HeaderVars& header() { return m_header; }
    const HeaderVars& header() const { return m_header; }

    VcDbObjectId& tableId(NameTable table) { return m_tables[static_cast<int>(table)]; }
    VcDbObjectId tableId(NameTable table) const { return m_tables[static_cast<int>(table)]; }
    VcDbSymbolTable& table(NameTable table) const;
    VcDbObjectId& rootDictionary() { return m_rootDictionary; }
    VcDbObjectId rootDictionary() const { return m_rootDictionary; }

    // A live record by name without regard to case; null if there is none.
    VcDbObjectId findRecord(NameTable table, std::string_view name) const;
    // The record of that name, made with default values and marked implicit when there is none.
    VcDbObjectId recordFor(NameTable table, std::string_view name);

    // The spaces. paperSpace() is the layout that is or was last current.
    VcDbObjectId modelSpace() const { return m_modelSpace; }
    VcDbObjectId paperSpace() const { return m_paperSpace; }
    void setSpaces(VcDbObjectId model, VcDbObjectId paper);
    VcDbObjectId currentSpace() const;

    // One order over the entities of all layouts: that of the file, then of making. Entities say their place.
    std::vector<std::uint32_t>& mainOrder() { return m_mainOrder; }
    const std::vector<std::uint32_t>& mainOrder() const { return m_mainOrder; }

    // What recordIsNeeded() knows of references since it last walked the drawing.
    ReferenceMarks& referenceMarks() const { return *m_referenceMarks; }

    // Number of changes so far; caches compare it.
    std::uint64_t changeCount() const { return m_logStart + m_changeLog.size(); }
    // Slots of what has changed since that count, oldest first, some several times, 0 for what is no object. Nothing when
    // it is too long ago: then anything may have.
    std::optional<std::span<const std::uint32_t>> changedSince(std::uint64_t count) const;
    void noteChange(std::uint32_t slot);

    std::vector<ClassRecord> classes;
    std::vector<KeptSection> keptSections;
    FileOrigin origin;
    // Slots of blocks whose members come from the file of an external reference, and are not saved with the drawing.
    std::unordered_set<std::uint32_t> loadedReferences;
    // Set while a file is read: names that are missing are made, references may run ahead.
    bool loading = false;
    // With TILEMODE 0: whether a viewport is current, so that new entities go to model space.
    bool inModelViewport = false;

private:
    struct Place {
        VcDbObject* object = nullptr;
        std::uint64_t handle = 0;
    };
    static constexpr std::uint32_t kChunk = 4096;
    static constexpr std::uint32_t kHandlePage = 1024;

    Place& place(std::uint32_t slot) const { return m_chunks[slot / kChunk][slot % kChunk]; }
    std::uint32_t newSlot(std::uint64_t handle);
    void bindHandle(std::uint64_t handle, std::uint32_t slot);

    VcDbDatabase& m_face;
    std::uint32_t m_serial;
    std::vector<std::unique_ptr<Place[]>> m_chunks;
    std::uint32_t m_slotCount = 1;
    // Handles are dense in most drawings: pages of slots up to a bound that grows with the number of objects, a hash beyond.
    std::vector<std::unique_ptr<std::uint32_t[]>> m_handlePages;
    std::unordered_map<std::uint64_t, std::uint32_t> m_sparseHandles;
    std::uint64_t m_handleSeed = 1;
    EntityPropsTable m_props;
    UndoJournal m_undo;
    HeaderVars m_header;
    std::unique_ptr<ReferenceMarks> m_referenceMarks;
    VcDbObjectId m_tables[9];
    VcDbObjectId m_rootDictionary, m_modelSpace, m_paperSpace;
    std::vector<std::uint32_t> m_mainOrder;
    std::vector<std::uint32_t> m_changeLog;  // the latest changes
    std::uint64_t m_logStart = 0;            // how many came before them
};
