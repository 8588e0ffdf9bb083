// What tests of database classes share: an object's groups as they would stand in a file, and back.
#pragma once

#include "host/base/rb.h"
#include "host/db/database.h"
#include "host/db/field_reader.h"
#include "host/db/field_writer.h"

#include <deque>
#include <sstream>
#include <string>
#include <vector>

// Keeps the groups of one object, as tags that a reader can take.
class GroupList final : public GroupSink {
public:
    void real(int code, double value) override { m_tags.push_back(Tag::ofReal(code, value)); }
    void integer(int code, std::int64_t value) override { m_tags.push_back(Tag::ofInteger(code, value)); }
    void text(int code, std::string_view utf8) override
    {
        m_tags.push_back(Tag::ofChars(code, Tag::Form::Utf8, m_texts.emplace_back(utf8)));
    }
    void handle(int code, std::uint64_t handle) override
    {
        Tag tag = Tag::ofInteger(code, std::int64_t(handle));
        tag.isHandle = true;
        m_tags.push_back(tag);
    }
    void bytes(int code, std::string_view data) override
    {
        m_tags.push_back(Tag::ofChars(code, Tag::Form::Bytes, m_texts.emplace_back(data)));
    }

    std::vector<Tag>& tags() { return m_tags; }

    // One line a group, such as "40=2.5".
    std::string dump() const
    {
        std::ostringstream out;
        out.precision(17);
        for (const Tag& tag : m_tags) {
            out << tag.code << '=';
            if (tag.form == Tag::Form::Real)
                out << tag.real;
            else if (tag.form == Tag::Form::Integer)
                out << tag.integer;
            else
                out << tag.view();
            out << '\n';
        }
        return out.str();
    }

private:
    std::vector<Tag> m_tags;
    std::deque<std::string> m_texts;
};

inline void writeGroups(VcDbObject& object, DatabaseCore& db, GroupList& groups,
                        DxfVersion version = DxfVersion::Newest)
{
    FieldWriter writer(FieldVisitor::Purpose::WriteFile, version, db, groups);
    writer.begin(object);
    object.fields(writer);
    writer.finish();
}

inline std::string dumpOf(VcDbObject& object, DatabaseCore& db, DxfVersion version = DxfVersion::Newest)
{
    GroupList groups;
    writeGroups(object, db, groups, version);
    return groups.dump();
}

// The groups that no field took.
inline int readGroups(VcDbObject& object, DatabaseCore& db, GroupList& groups, DxfVersion version = DxfVersion::Newest)
{
    FieldReader reader(FieldVisitor::Purpose::ReadFile, version, db);
    reader.begin(groups.tags());
    object.fields(reader);
    const bool all = reader.tookAll();
    reader.finish(object);
    return all ? 0 : 1;
}

// Nodes of a chain with that code.
inline std::vector<const resbuf*> nodesOf(const resbuf* chain, int code)
{
    std::vector<const resbuf*> nodes;
    for (; chain; chain = chain->rbnext)
        if (chain->restype == code)
            nodes.push_back(chain);
    return nodes;
}
