#include "host/io/external_reference.h"

#include "host/base/files.h"
#include "host/base/unicode.h"
#include "host/db/block_members.h"
#include "host/db/clone.h"
#include "host/db/database.h"
#include "host/db/standard_objects.h"
#include "host/io/drawing_file.h"
#include "sdk/vcdb_insert.h"
#include "sdk/vcdb_tables.h"

#include <algorithm>
#include <filesystem>
#include <fmt/format.h>
#include <set>

namespace {

using Block = VcDbBlockTableRecord;

constexpr std::int16_t kXref = 4, kOverlay = 8, kDependent = 16, kResolved = 32;
constexpr NameTable kDependentTables[] = {NameTable::Layer, NameTable::Linetype, NameTable::TextStyle,
                                          NameTable::DimStyle, NameTable::Block};
constexpr std::size_t kDeepest = 32;

// Whether members come from a file is no state of the record.
class LoadedChange : public UndoAction {
public:
    explicit LoadedChange(std::uint32_t slot) : m_slot(slot) {}
    void swap(DatabaseCore& db) override
    {
        if (db.loadedReferences.erase(m_slot) == 0)
            db.loadedReferences.insert(m_slot);
    }

private:
    std::uint32_t m_slot;
};

void setLoaded(DatabaseCore& db, const Block& block, bool loaded)
{
    const std::uint32_t slot = block.objectId().slot();
    if (db.loadedReferences.contains(slot) == loaded)
        return;
    LoadedChange(slot).swap(db);
    if (db.undo().isRecording())
        db.undo().record(std::make_unique<LoadedChange>(slot));
}

bool belongsTo(const VcDbSymbolTableRecord& record, const std::string& prefix)
{
    return record.nameUtf8().size() > prefix.size() &&
           equalNoCase(std::string_view(record.nameUtf8()).substr(0, prefix.size()), prefix);
}

std::vector<VcDbSymbolTableRecord*> dependentsOf(const DatabaseCore& db, const Block& reference, NameTable table)
{
    std::vector<VcDbSymbolTableRecord*> records;
    const std::string prefix = reference.nameUtf8() + "|";
    for (const VcDbObjectId id : db.table(table).records())
        if (auto* record = db.objectAs<VcDbSymbolTableRecord>(id); belongsTo(*record, prefix))
            records.push_back(record);
    return records;
}

void setDependent(VcDbSymbolTableRecord& record, bool dependent)
{
    const auto with = [&](std::int16_t flags) {
        return std::int16_t(dependent ? flags | kDependent | kResolved : flags & ~(kDependent | kResolved));
    };
    record.setFlags(with(record.flags()));
    if (auto* block = Block::cast(&record))
        block->setBlockFlags(with(block->blockFlags()));
}

void setResolved(Block& reference, bool resolved)
{
    reference.setBlockFlags(
        std::int16_t(resolved ? reference.blockFlags() | kResolved : reference.blockFlags() & ~kResolved));
}

void removeMembers(DatabaseCore& db, Block& reference)
{
    forEachMember(db, reference, [](VcDbEntity& member) { member.eraseWithOwner(true); });
    for (VcDbSymbolTableRecord* block : dependentsOf(db, reference, NameTable::Block)) {
        setLoaded(db, static_cast<Block&>(*block), false);
        block->eraseWithOwner(true);
    }
    setLoaded(db, reference, false);
}

bool keepsItsName(NameTable table, const VcDbSymbolTableRecord& record)
{
    const std::string& name = record.nameUtf8();
    if (name.empty() || record.isDependent())
        return true;
    if (table == NameTable::Layer)
        return name == "0";
    if (table == NameTable::Linetype)
        return equalNoCase(name, "ByLayer") || equalNoCase(name, "ByBlock") || equalNoCase(name, "Continuous");
    const auto* block = Block::cast(&record);
    return block && (block->isLayout() || block->isFromExternalReference());
}

void prefixNames(DatabaseCore& from, const std::string& reference)
{
    for (const NameTable table : kDependentTables)
        for (const VcDbObjectId id : from.table(table).records())
            if (auto* record = from.objectAs<VcDbSymbolTableRecord>(id); !keepsItsName(table, *record)) {
                record->assertWriteEnabled();
                record->setNameUtf8(reference + "|" + record->nameUtf8());
                setDependent(*record, true);
            }
}

std::string canonical(const std::string& path)
{
    std::error_code error;
    const auto whole = std::filesystem::weakly_canonical(path, error);
    return error ? path : whole.string();
}

// As it stands, beside the drawing that names it, or by its name alone there.
std::string locate(const std::string& path, const std::string& folder)
{
    const std::string native = nativePath(path);
    for (const std::string& candidate : {native, joinPath(folder, native), joinPath(folder, fileNameOf(native))})
        if (fileExists(candidate))
            return candidate;
    if (const auto found = findFileNoCase(folder.empty() ? "." : folder, fileNameOf(native)))
        return *found;
    return {};
}

class Loader {
public:
    // Anew: those within that are there already are read again.
    Loader(DatabaseCore& db, ReferenceLoad& result, bool anew) : m_db(db), m_result(result), m_anew(anew)
    {
        if (!db.origin.path.empty())
            m_open.push_back(canonical(db.origin.path));
    }

    std::string load(Block& reference, const std::string& folder)
    {
        const std::string path = locate(reference.pathUtf8(), folder);
        if (path.empty())
            return fmt::format("Cannot find the file \"{}\" of the external reference \"{}\".", reference.pathUtf8(),
                               reference.nameUtf8());
        if (isOpen(path))
            return fmt::format("\"{}\" refers back to itself through {}.", reference.nameUtf8(), path);
        VcDbDatabase other(false);
        const ReadResult read = readDrawing(other, path);
        if (!read.ok())
            return fmt::format("{} cannot be read: {}", path, read.message);
        m_open.push_back(canonical(path));
        const std::string error = take(reference, other.core(), std::string(folderOf(path)));
        m_open.pop_back();
        return error;
    }

private:
    bool isOpen(const std::string& path) const
    {
        return std::find(m_open.begin(), m_open.end(), canonical(path)) != m_open.end();
    }

    // References that the file lays over itself are not seen from outside; those that lead back would never end.
    // The names of the others.
    std::vector<std::string> leaveOut(DatabaseCore& from, const std::string& folder)
    {
        std::vector<std::string> kept;
        for (Block* nested : externalReferences(from)) {
            const std::string path = locate(nested->pathUtf8(), folder);
            const bool circular = !path.empty() && (isOpen(path) || m_open.size() > kDeepest);
            if (circular)
                m_result.remarks.push_back(
                    fmt::format("Circular reference \"{}\" in {} is left out.", nested->nameUtf8(), m_open.back()));
            if (!circular && !nested->isFromOverlayReference()) {
                kept.push_back(nested->nameUtf8());
                continue;
            }
            VcDbObjectIdArray ids;
            nested->getBlockReferenceIds(ids);
            for (const VcDbObjectId id : ids)
                if (VcDbObject* object = from.object(id))
                    object->erase();
        }
        return kept;
    }

    std::string take(Block& reference, DatabaseCore& from, const std::string& folder)
    {
        const std::vector<std::string> within = leaveOut(from, folder);
        prefixNames(from, reference.nameUtf8());
        removeMembers(m_db, reference);
        VcDbObjectIdArray members;
        forEachMember(from, *from.objectAs<Block>(from.modelSpace()),
                      [&](VcDbEntity& member) { members.push_back(member.objectId()); });
        VcDbIdMapping mapping;
        if (!members.empty() && cloneObjects(members, reference.objectId(), mapping))
            return fmt::format("The objects of \"{}\" cannot be copied.", reference.nameUtf8());
        const auto base = from.header().point("$INSBASE");
        reference.setOrigin(base ? VcGePoint3d(base->x, base->y, base->z) : VcGePoint3d());
        reference.setInsertUnits(std::int16_t(std::clamp<std::int64_t>(from.header().integer("$INSUNITS", 0), 0, 24)));
        setResolved(reference, true);
        setLoaded(m_db, reference, true);
        for (VcDbSymbolTableRecord* block : dependentsOf(m_db, reference, NameTable::Block))
            setLoaded(m_db, static_cast<Block&>(*block), true);
        for (const std::string& name : within)
            loadWithin(name, folder);
        return {};
    }

    void loadWithin(const std::string& name, const std::string& folder)
    {
        auto* nested = m_db.liveAs<Block>(m_db.findRecord(NameTable::Block, name));
        if (!nested || !nested->isFromExternalReference() || (isLoaded(m_db, *nested) && !m_anew) ||
            !m_taken.insert(foldKey(name)).second)
            return;
        if (const std::string error = load(*nested, folder); !error.empty()) {
            setResolved(*nested, false);
            m_result.remarks.push_back(error);
        }
    }

    DatabaseCore& m_db;
    ReferenceLoad& m_result;
    bool m_anew;
    std::vector<std::string> m_open;  // files that are being taken, outermost first
    std::set<std::string> m_taken;    // references within, by name
};

ReferenceLoad loadFrom(DatabaseCore& db, Block& reference, bool anew)
{
    ReferenceLoad result;
    result.error = Loader(db, result, anew).load(reference, std::string(folderOf(db.origin.path)));
    return result;
}

std::string boundName(const DatabaseCore& db, NameTable table, const std::string& name)
{
    const std::size_t bar = name.find('|');
    for (int number = 0;; ++number) {
        const std::string bound = fmt::format("{}${}${}", name.substr(0, bar), number, name.substr(bar + 1));
        if (db.findRecord(table, bound).isNull())
            return bound;
    }
}

}

std::vector<Block*> externalReferences(const DatabaseCore& db)
{
    std::vector<Block*> references;
    for (const VcDbObjectId id : db.table(NameTable::Block).records())
        if (auto* block = db.objectAs<Block>(id); block->isFromExternalReference())
            references.push_back(block);
    return references;
}

Block& addExternalReference(DatabaseCore& db, const std::string& name, const std::string& path, bool overlay)
{
    Block& block = addBlockRecord(db, name);
    block.setPathName(utf8ToWide(path).c_str());
    block.setBlockFlags(std::int16_t(block.blockFlags() | kXref | (overlay ? kOverlay : 0)));
    return block;
}

ReferenceLoad loadExternalReference(DatabaseCore& db, Block& reference) { return loadFrom(db, reference, true); }

void unloadExternalReference(DatabaseCore& db, Block& reference)
{
    removeMembers(db, reference);
    setResolved(reference, false);
}

std::vector<std::string> loadSavedReferences(DatabaseCore& db)
{
    constexpr std::int16_t kReferenced = 64;
    std::vector<std::string> remarks;
    for (Block* reference : externalReferences(db)) {
        const bool wasLoaded = (reference->blockFlags() & (kResolved | kReferenced)) != 0;
        bool hasMembers = false;
        forEachMember(db, *reference, [&](VcDbEntity&) { hasMembers = true; });
        if (!wasLoaded || hasMembers || isLoaded(db, *reference))
            continue;
        const ReferenceLoad result = loadFrom(db, *reference, false);
        remarks.insert(remarks.end(), result.remarks.begin(), result.remarks.end());
        if (!result.ok())
            remarks.push_back(result.error);
    }
    return remarks;
}

bool isLoaded(const DatabaseCore& db, const Block& reference)
{
    return db.loadedReferences.contains(reference.objectId().slot());
}

bool bindExternalReference(DatabaseCore& db, Block& reference)
{
    if (!isLoaded(db, reference))
        return false;
    std::vector<Block*> nested;
    forEachMember(db, reference, [&](VcDbEntity& member) {
        const auto* insert = VcDbBlockReference::cast(&member);
        auto* block = insert ? db.liveAs<Block>(insert->blockTableRecord()) : nullptr;
        if (block && block->isFromExternalReference() && std::find(nested.begin(), nested.end(), block) == nested.end())
            nested.push_back(block);
    });
    for (const NameTable table : kDependentTables)
        for (VcDbSymbolTableRecord* record : dependentsOf(db, reference, table)) {
            const std::string name = boundName(db, table, record->nameUtf8());
            record->assertWriteEnabled();
            record->setNameUtf8(name);
            setDependent(*record, false);
            if (auto* block = Block::cast(record))
                setLoaded(db, *block, false);
        }
    reference.setPathName(L"");
    reference.setBlockFlags(std::int16_t(reference.blockFlags() & ~(kXref | kOverlay | kDependent | kResolved)));
    setLoaded(db, reference, false);
    for (Block* block : nested)
        bindExternalReference(db, *block);
    return true;
}

void detachExternalReference(DatabaseCore& db, Block& reference)
{
    VcDbObjectIdArray ids;
    reference.getBlockReferenceIds(ids);
    for (const VcDbObjectId id : ids)
        if (VcDbObject* object = db.object(id))
            object->eraseWithOwner(true);
    removeMembers(db, reference);
    VcDbObjectIdArray unused;
    for (const NameTable table : kDependentTables)
        for (const VcDbSymbolTableRecord* record : dependentsOf(db, reference, table))
            unused.push_back(record->objectId());
    db.face().purge(unused);
    for (const VcDbObjectId id : unused)
        db.object(id)->eraseWithOwner(true);
    reference.eraseWithOwner(true);
}
