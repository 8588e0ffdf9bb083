#include "host/db/header_vars.h"

#include "host/db/database.h"

namespace {

class HeaderChange : public UndoAction {
public:
    HeaderChange(std::string name, std::optional<TagList> before) : m_name(std::move(name)), m_other(std::move(before))
    {
    }
    void swap(DatabaseCore& db) override { db.header().exchange(m_name, m_other); }

private:
    std::string m_name;
    std::optional<TagList> m_other;
};

const Tag* firstOf(const TagList* tags, Tag& storage)
{
    if (!tags || tags->empty())
        return nullptr;
    storage = *tags->begin();
    return &storage;
}

}

const TagList* HeaderVars::find(std::string_view name) const
{
    static thread_local std::string key;  // whose memory serves every call
    key.assign(name);
    const auto found = m_index.find(key);
    return found == m_index.end() || !m_entries[found->second].live ? nullptr : &m_entries[found->second].tags;
}

double HeaderVars::real(std::string_view name, double byDefault) const
{
    Tag tag;
    if (!firstOf(find(name), tag))
        return byDefault;
    return tag.form == Tag::Form::Real ? tag.real : tag.form == Tag::Form::Integer ? double(tag.integer) : byDefault;
}

std::int64_t HeaderVars::integer(std::string_view name, std::int64_t byDefault) const
{
    Tag tag;
    if (!firstOf(find(name), tag))
        return byDefault;
    return tag.form == Tag::Form::Integer ? tag.integer
           : tag.form == Tag::Form::Real  ? std::int64_t(tag.real)
                                          : byDefault;
}

std::string HeaderVars::text(std::string_view name, std::string_view byDefault) const
{
    Tag tag;
    if (!firstOf(find(name), tag) || tag.form != Tag::Form::Utf8)
        return std::string(byDefault);
    return std::string(tag.view());
}

std::uint64_t HeaderVars::handle(std::string_view name) const
{
    Tag tag;
    if (!firstOf(find(name), tag))
        return 0;
    if (tag.form == Tag::Form::Integer)
        return std::uint64_t(tag.integer);
    return tag.form == Tag::Form::Utf8 ? std::strtoull(std::string(tag.view()).c_str(), nullptr, 16) : 0;
}

std::optional<HeaderVars::Point> HeaderVars::point(std::string_view name) const
{
    const TagList* tags = find(name);
    if (!tags)
        return std::nullopt;
    Point p;
    for (const Tag& tag : *tags) {
        if (tag.form != Tag::Form::Real)
            continue;
        const int axis = tag.code / 10;
        (axis == 1 ? p.x : axis == 2 ? p.y : p.z) = tag.real;
        p.has3d |= axis == 3;
    }
    return p;
}

void HeaderVars::exchange(std::string_view name, std::optional<TagList>& other)
{
    const auto [at, isNew] = m_index.emplace(std::string(name), m_entries.size());
    if (isNew)
        m_entries.push_back({std::string(name), {}, false});
    Entry& entry = m_entries[at->second];
    std::optional<TagList> before;
    if (entry.live)
        before = std::move(entry.tags);
    entry.live = other.has_value();
    entry.tags = other ? std::move(*other) : TagList();
    other = std::move(before);
}

void HeaderVars::set(std::string_view name, TagList tags)
{
    if (const TagList* now = find(name); now && *now == tags)
        return;
    std::optional<TagList> value(std::move(tags));
    exchange(name, value);
    m_db.undo().record(std::make_unique<HeaderChange>(std::string(name), std::move(value)));
}

void HeaderVars::setReal(std::string_view name, int code, double value)
{
    TagList tags;
    tags.addReal(code, value);
    set(name, std::move(tags));
}

void HeaderVars::setInteger(std::string_view name, int code, std::int64_t value)
{
    TagList tags;
    tags.addInteger(code, value);
    set(name, std::move(tags));
}

void HeaderVars::setText(std::string_view name, int code, std::string_view value)
{
    TagList tags;
    tags.addText(code, value);
    set(name, std::move(tags));
}

void HeaderVars::setPoint(std::string_view name, double x, double y)
{
    TagList tags;
    tags.addReal(10, x);
    tags.addReal(20, y);
    set(name, std::move(tags));
}

void HeaderVars::setPoint(std::string_view name, double x, double y, double z)
{
    TagList tags;
    tags.addReal(10, x);
    tags.addReal(20, y);
    tags.addReal(30, z);
    set(name, std::move(tags));
}

void HeaderVars::remove(std::string_view name)
{
    if (!has(name))
        return;
    std::optional<TagList> nothing;
    exchange(name, nothing);
    m_db.undo().record(std::make_unique<HeaderChange>(std::string(name), std::move(nothing)));
}
