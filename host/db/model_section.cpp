#include "host/db/model_section.h"

#include "host/db/database.h"

#include <unordered_map>

namespace {

using DataByHandle = std::unordered_map<std::uint64_t, ModelData>;

std::unordered_map<std::uint32_t, DataByHandle>& sections()
{
    static std::unordered_map<std::uint32_t, DataByHandle> bySerial;
    return bySerial;
}

class SectionReader {
public:
    DataByHandle read(const TagList& tags)
    {
        for (const Tag& tag : tags)
            take(tag);
        end();
        return std::move(m_found);
    }

private:
    void take(const Tag& tag)
    {
        const bool isText = tag.form == Tag::Form::Utf8;
        if (tag.code == 0) {
            end();
            m_inRecord = isText && tag.view() == kModelRecord;
        } else if (m_inRecord && tag.code == 320 && tag.form == Tag::Form::Integer) {
            m_handle = std::uint64_t(tag.integer);
        } else if (m_inRecord && tag.code == 2) {
            m_isModel = isText && tag.view() == kModelDataName;
        } else if (m_inRecord && m_isModel && tag.code == 310 && tag.form == Tag::Form::Bytes) {
            m_bytes += tag.view();
        }
    }

    void end()
    {
        if (m_inRecord && m_handle != 0 && !m_bytes.empty())
            m_found[m_handle] = std::make_shared<const std::string>(std::move(m_bytes));
        m_bytes.clear();
        m_handle = 0;
        m_isModel = m_inRecord = false;
    }

    DataByHandle m_found;
    std::string m_bytes;
    std::uint64_t m_handle = 0;
    bool m_inRecord = false, m_isModel = false;
};

}

ModelData sectionModelData(const DatabaseCore& db, std::uint64_t handle)
{
    if (db.loading)  // the section stands behind the entities
        return nullptr;
    const auto [known, isNew] = sections().try_emplace(db.serial());
    if (isNew)
        for (const KeptSection& section : db.keptSections)
            if (section.name == kModelSection)
                known->second.merge(SectionReader().read(section.tags));
    const auto at = known->second.find(handle);
    return at != known->second.end() ? at->second : nullptr;
}

void forgetModelSection(std::uint32_t databaseSerial) { sections().erase(databaseSerial); }
