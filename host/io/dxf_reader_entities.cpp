// The ENTITIES section, and entities in blocks.
#include "host/base/unicode.h"
#include "host/db/database.h"
#include "host/db/kept_object.h"
#include "host/io/class_choice.h"
#include "host/io/dxf_reader.h"
#include "sdk/vcdb_tables.h"

#include <fmt/format.h>
#include <utility>

void DxfReader::readEntities()
{
    ensureTables();
    while (nextInSection())
        readEntity(nullptr);
    closeParent();
}

VcDbBlockTableRecord& DxfReader::space(bool paper)
{
    if (m_spaces[paper])
        return *m_spaces[paper];
    const char* name = paper ? "*Paper_Space" : "*Model_Space";
    auto* known = m_db.objectAs<VcDbBlockTableRecord>(m_db.findRecord(NameTable::Block, name));
    m_spaces[paper] = known ? known : &newBlock(name);
    m_spaces[paper]->setImplicit(false);
    return *m_spaces[paper];
}

// By the owner where the file has it, else by the flag for paper space.
VcDbBlockTableRecord& DxfReader::spaceOf(const ObjectParts& parts)
{
    if (!parts.owner)
        return space(parts.inPaperSpace);
    if (parts.owner != m_lastOwner) {
        m_lastOwner = parts.owner;
        m_lastOwnerBlock = m_db.objectAs<VcDbBlockTableRecord>(m_db.findHandle(parts.owner));
    }
    if (m_lastOwnerBlock)
        return *m_lastOwnerBlock;
    VcDbBlockTableRecord& owner = space(parts.inPaperSpace);
    note(m_record.line, parts.handle,
         fmt::format("the owner of {} was {:X}, which is no block; it stands in {}", m_record.type, parts.owner,
                     owner.nameUtf8()));
    return owner;
}

void DxfReader::readEntity(VcDbBlockTableRecord* block)
{
    ObjectParts parts = m_objects->split(m_record, true);
    if (m_parent && readSubEntity(parts))
        return;
    closeParent();
    ensureTables();
    VcDbBlockTableRecord& owner = block ? *block : spaceOf(parts);
    std::unique_ptr<VcDbObject> made = makeEntity(m_record.type, parts.body);
    auto& entity = static_cast<VcDbEntity&>(*made);
    m_objects->place(std::move(made), parts, owner.objectId(), m_record.line);
    m_objects->fill(entity, parts);
    owner.memberAdded(entity);
    m_db.origin.namesLayouts |= parts.namesLayout;
    m_db.origin.hasHandles |= parts.handle != 0;
    ++m_result.entities;
    if (entity.subEntities()) {
        m_parent = &entity;
        m_parentTakes = m_record.type == "INSERT" ? "ATTRIB" : "VERTEX";
    }
}

bool DxfReader::readSubEntity(const ObjectParts& parts)
{
    const bool isEnd = m_record.type == "SEQEND";
    if (!isEnd && m_record.type != m_parentTakes)
        return false;
    std::unique_ptr<VcDbObject> made = makeEntity(m_record.type, parts.body);
    VcDbObject& sub = *made;
    const VcDbObjectId id = m_objects->place(std::move(made), parts, m_parent->objectId(), m_record.line);
    m_objects->fill(sub, parts);
    if (!isEnd) {
        m_parent->subEntities()->push_back(id);
        return true;
    }
    m_parent->setEndMark(id);
    m_parent->subEntities()->shrink_to_fit();
    m_parent = nullptr;
    return true;
}

// An owner whose list of sub-entities the file has not ended gets its end mark.
void DxfReader::closeParent()
{
    VcDbEntity* parent = std::exchange(m_parent, nullptr);
    if (!parent || parent->subEntities()->empty() || !parent->endMark().isNull())
        return;
    note(m_record.line, m_db.handleOf(parent->objectId()), "SEQEND was missing");
    std::unique_ptr<VcDbObject> made = makeEntity("SEQEND", {});
    static_cast<VcDbEntity&>(*made).setProps(parent->props());
    parent->setEndMark(m_db.add(std::move(made), parent->objectId()));
}
