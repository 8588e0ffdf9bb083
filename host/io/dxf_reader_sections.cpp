// The HEADER, CLASSES and OBJECTS sections, and sections that are kept as they come.
#include "host/base/numbers.h"
#include "host/db/database.h"
#include "host/io/class_choice.h"
#include "host/io/dxf_reader.h"
#include "sdk/vcdb_objects.h"

#include <fmt/format.h>

// A variable may come several times, as custom properties do: later ones are told apart by a number that is not written.
void DxfReader::readHeader()
{
    std::string name;
    TagList tags;
    std::unordered_map<std::string, int> seen;
    const auto store = [&] {
        if (name.empty())
            return;
        if (const int times = ++seen[name]; times > 1)
            name += fmt::format("#{}", times);
        m_db.header().set(name, std::move(tags));
        tags = {};
    };
    for (const Tag& tag : m_record.tags) {
        if (tag.code == 9) {
            store();
            m_objects->values().text(tag, name);
            name = trimBlanks(name);
        } else if (!name.empty()) {
            m_objects->values().keep(tag, tags);
        }
    }
    store();
    while (nextInSection())
        note(m_record.line, 0, fmt::format("{} in the header was passed over", m_record.type), false);
}

void DxfReader::readClasses()
{
    while (nextInSection()) {
        ClassRecord& made = m_db.classes.emplace_back();
        GroupValues& values = m_objects->values();
        for (const Tag& tag : m_record.tags) {
            std::int64_t number = 0;
            switch (tag.code) {
            case 1:
                values.text(tag, made.dxfName);
                break;
            case 2:
                values.text(tag, made.cppName);
                break;
            case 3:
                values.text(tag, made.application);
                break;
            case 90:
                values.integer(tag, number);
                made.proxyFlags = static_cast<std::int32_t>(number);
                break;
            case 91:
                values.integer(tag, number);
                made.instanceCount = static_cast<std::int32_t>(number);
                made.hasCount = true;
                break;
            case 280:
                values.integer(tag, number);
                made.wasProxy = number != 0;
                break;
            case 281:
                values.integer(tag, number);
                made.isEntity = number != 0;
                break;
            default:
                values.keep(tag, made.unclaimed);
            }
        }
    }
}

void DxfReader::keepSection(std::string_view name)
{
    KeptSection& section = m_db.keptSections.emplace_back();
    section.name = name;
    GroupValues& values = m_objects->values();
    for (std::size_t i = 1; i < m_record.tags.size(); ++i)
        values.keep(m_record.tags[i], section.tags);
    while (nextInSection()) {
        section.tags.addText(0, m_record.type);
        for (const Tag& tag : m_record.tags)
            values.keep(tag, section.tags);
    }
    section.tags.shrink();
}

void DxfReader::readObjects()
{
    ensureTables();
    while (nextInSection()) {
        const ObjectParts parts = m_objects->split(m_record, false);
        std::unique_ptr<VcDbObject> made = makeObject(m_record.type);
        VcDbObject& object = *made;
        const VcDbObjectId owner = parts.owner ? m_db.reserveHandle(parts.owner) : VcDbObjectId();
        m_objects->place(std::move(made), parts, owner, m_record.line);
        object.setOrder(++m_objectOrder);
        m_objects->fill(object, parts);
        if (m_db.rootDictionary().isNull() && object.isKindOf(VcDbDictionary::desc()))
            m_db.rootDictionary() = object.objectId();
        else if (!parts.owner)
            m_orphans.push_back(&object);
    }
}
