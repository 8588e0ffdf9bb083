// The TABLES and BLOCKS sections.
#include "host/base/numbers.h"
#include "host/base/unicode.h"
#include "host/db/database.h"
#include "host/io/class_choice.h"
#include "host/io/dxf_reader.h"
#include "sdk/vcdb_insert.h"
#include "sdk/vcdb_records.h"

#include <fmt/format.h>

namespace {

struct TableKind {
    const char* name;  // of the table, and group 0 of its records
    NameTable table;
    std::unique_ptr<VcDbObject> (*create)();
};

template <class T>
std::unique_ptr<VcDbObject> created()
{
    return std::make_unique<T>();
}

constexpr TableKind kTables[] = {
    {"VPORT", NameTable::Viewport, created<VcDbViewportTable>},
    {"LTYPE", NameTable::Linetype, created<VcDbLinetypeTable>},
    {"LAYER", NameTable::Layer, created<VcDbLayerTable>},
    {"STYLE", NameTable::TextStyle, created<VcDbTextStyleTable>},
    {"VIEW", NameTable::View, created<VcDbViewTable>},
    {"UCS", NameTable::Ucs, created<VcDbUCSTable>},
    {"APPID", NameTable::AppId, created<VcDbRegAppTable>},
    {"DIMSTYLE", NameTable::DimStyle, created<VcDbDimStyleTable>},
    {"BLOCK_RECORD", NameTable::Block, created<VcDbBlockTable>},
};

const TableKind* tableKind(std::string_view name)
{
    for (const TableKind& kind : kTables)
        if (name == kind.name)
            return &kind;
    return nullptr;
}

// R12 has no names with "*" for the blocks that newer files keep their spaces in.
std::string spaceName(const std::string& name)
{
    if (equalNoCase(name, std::string_view("$MODEL_SPACE")))
        return "*Model_Space";
    if (equalNoCase(name, std::string_view("$PAPER_SPACE")))
        return "*Paper_Space";
    return name;
}

// A table's name stands ahead of its handle and is written there, whatever the table itself writes.
void dropName(DxfRecord& table)
{
    const auto name = std::find_if(table.tags.begin(), table.tags.end(), [](const Tag& t) { return t.code == 2; });
    if (name != table.tags.end())
        table.tags.erase(name);
}

}

struct DxfReader::TableEntry {
    DxfRecord record;
    ObjectParts parts;
    std::vector<Tag> braces;
    const TableKind* kind = nullptr;
    VcDbObject* object = nullptr;  // null for what is passed over
};

// All names are known before any field is read, so that records may refer to each other whatever their order.
void DxfReader::readTables()
{
    std::vector<TableEntry> entries;
    const TableKind* kind = nullptr;
    while (nextInSection()) {
        if (m_record.type == "ENDTAB") {
            kind = nullptr;
            continue;
        }
        if (m_record.type == "TABLE")
            kind = tableKind(m_record.text(2));
        TableEntry& entry = entries.emplace_back();
        entry.record = std::move(m_record);
        m_record = {};
        entry.kind = kind;
        if (entry.record.type == "TABLE")
            dropName(entry.record);
        entry.parts = m_objects->split(entry.record, false);
        entry.braces.assign(entry.parts.braces.begin(), entry.parts.braces.end());
        entry.parts.braces = entry.braces;
    }
    for (TableEntry& entry : entries)
        if (entry.record.type == "TABLE")
            declareTable(entry);
    ensureTables();
    for (TableEntry& entry : entries)
        if (entry.record.type != "TABLE" && entry.kind)
            declareRecord(entry, m_db.tableId(entry.kind->table));
    for (TableEntry& entry : entries) {
        entry.parts.braces = entry.braces;
        if (entry.object)
            m_objects->fill(*entry.object, entry.parts);
        else
            note(entry.record.line, entry.parts.handle,
                 fmt::format("{} among the tables was passed over", entry.record.type), false);
    }
}

void DxfReader::ensureTables()
{
    for (const TableKind& kind : kTables) {
        if (!m_db.tableId(kind.table).isNull())
            continue;
        m_db.tableId(kind.table) = m_db.addWithoutHandle(kind.create(), {});
        m_madeTables.push_back(m_db.tableId(kind.table));
    }
}

void DxfReader::declareTable(TableEntry& entry)
{
    if (!entry.kind)
        return;
    VcDbObjectId& id = m_db.tableId(entry.kind->table);
    if (id.isNull())
        id = m_objects->place(entry.kind->create(), entry.parts, {}, entry.record.line);
    entry.object = m_db.object(id);
    for (const Tag& tag : entry.parts.body)
        if (std::int64_t count = 0; tag.code == 70 && m_objects->values().integer(tag, count)) {
            m_db.origin.tableCounts[static_cast<int>(entry.kind->table)].stated = count;
            break;
        }
}

void DxfReader::declareRecord(TableEntry& entry, VcDbObjectId tableId)
{
    if (entry.record.type != entry.kind->name)
        return;
    VcDbSymbolTable& table = m_db.table(entry.kind->table);
    std::string name;
    for (const Tag& tag : entry.parts.body)
        if (tag.code == 2) {
            m_objects->values().text(tag, name);
            break;
        }
    const VcDbObjectId known = table.find(name);
    auto* there = m_db.objectAs<VcDbSymbolTableRecord>(known);
    if (there && there->isImplicit()) {
        there->setImplicit(false);
        entry.object = there;
        return;
    }
    std::unique_ptr<VcDbSymbolTableRecord> made(table.newRecord());
    VcDbSymbolTableRecord& record = *made;
    record.setNameUtf8(std::move(name));
    m_objects->place(std::move(made), entry.parts, tableId, entry.record.line);
    table.recordAdded(record);
    entry.object = &record;
    if (entry.parts.owner && entry.parts.owner != m_db.handleOf(tableId))
        note(entry.record.line, entry.parts.handle,
             fmt::format("the owner of {} \"{}\" was {:X}, which is not its table", entry.record.type,
                         record.nameUtf8(), entry.parts.owner));
}

void DxfReader::readBlocks()
{
    ensureTables();
    while (nextInSection()) {
        if (m_record.type == "BLOCK")
            beginBlock();
        else if (m_record.type == "ENDBLK")
            endBlock();
        else
            readEntity(m_block);
    }
    closeParent();
    closeBlock();
}

void DxfReader::beginBlock()
{
    closeParent();
    closeBlock();
    const ObjectParts parts = m_objects->split(m_record, true);
    std::string name;
    for (const Tag& tag : parts.body)
        if (tag.code == 2) {
            m_objects->values().text(tag, name);
            break;
        }
    m_block = &blockFor(spaceName(name), parts.owner);
    if (parts.owner && parts.owner != m_db.handleOf(m_block->objectId()))
        note(m_record.line, parts.handle,
             fmt::format("the owner of block \"{}\" was {:X}, which is not its record", name, parts.owner));
    std::unique_ptr<VcDbObject> made = makeEntity("BLOCK", parts.body);
    auto& begin = static_cast<VcDbEntity&>(*made);
    const VcDbObjectId id = m_objects->place(std::move(made), parts, m_block->objectId(), m_record.line);
    FieldReader& reader = m_objects->fields();
    reader.begin(parts.body, m_db.handleOf(id));
    begin.fields(reader);
    m_block->beginFields(reader);
    reader.finish(begin);
    m_objects->fillCommon(begin, parts);
    m_block->setBeginEnd(id, {});
}

void DxfReader::endBlock()
{
    closeParent();
    if (!m_block) {
        note(m_record.line, 0, "ENDBLK without BLOCK was passed over");
        return;
    }
    const ObjectParts parts = m_objects->split(m_record, true);
    std::unique_ptr<VcDbObject> made = makeEntity("ENDBLK", parts.body);
    VcDbObject& end = *made;
    const VcDbObjectId id = m_objects->place(std::move(made), parts, m_block->objectId(), m_record.line);
    m_objects->fill(end, parts);
    m_block->setBeginEnd(m_block->beginId(), id);
    m_block = nullptr;
}

void DxfReader::closeBlock()
{
    if (m_block)
        note(m_record.line, 0, fmt::format("ENDBLK of block \"{}\" was missing", m_block->nameUtf8()));
    m_block = nullptr;
}

VcDbBlockTableRecord& DxfReader::blockFor(const std::string& name, std::uint64_t owner)
{
    auto* byOwner = owner ? m_db.objectAs<VcDbBlockTableRecord>(m_db.findHandle(owner)) : nullptr;
    if (byOwner && byOwner->beginId().isNull() && equalNoCase(byOwner->nameUtf8(), name))
        return *byOwner;
    auto* byName = m_db.objectAs<VcDbBlockTableRecord>(m_db.findRecord(NameTable::Block, name));
    if (!byName)
        return newBlock(name);
    if (byName->beginId().isNull()) {
        byName->setImplicit(false);
        return *byName;
    }
    note(m_record.line, 0, fmt::format("block \"{}\" is defined twice", name), false);
    return newBlock(name);
}

VcDbBlockTableRecord& DxfReader::newBlock(const std::string& name)
{
    auto& table = m_db.table(NameTable::Block);
    std::unique_ptr<VcDbSymbolTableRecord> made(table.newRecord());
    auto& block = static_cast<VcDbBlockTableRecord&>(*made);
    block.setNameUtf8(name);
    m_db.add(std::move(made), table.objectId());
    table.recordAdded(block);
    return block;
}

// Every record has what begins and ends its block in a file.
void DxfReader::addBlockEnds(VcDbBlockTableRecord& block)
{
    const auto added = [&](VcDbObjectId id, std::unique_ptr<VcDbEntity> made) {
        if (!id.isNull())
            return id;
        EntityProps props;
        props.layer = m_db.recordFor(NameTable::Layer, "0");
        made->setProps(props);
        return m_db.add(std::move(made), block.objectId());
    };
    const VcDbObjectId begin = added(block.beginId(), std::make_unique<VcDbBlockBegin>());
    const VcDbObjectId end = added(block.endId(), std::make_unique<VcDbBlockEnd>());
    block.setBeginEnd(begin, end);
}
