// Header variables of a drawing, in the order of its file, under undo.
#pragma once

#include "host/base/api.h"
#include "host/db/tag.h"

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

class DatabaseCore;

// Names carry their "$". Values are the groups that follow the name; points are their 10, 20, 30 groups.
class VKHOST_API HeaderVars {
public:
    explicit HeaderVars(DatabaseCore& db) : m_db(db) {}

    struct Entry {
        std::string name;
        TagList tags;
        bool live = true;
    };
    const std::vector<Entry>& entries() const { return m_entries; }

    const TagList* find(std::string_view name) const;
    bool has(std::string_view name) const { return find(name) != nullptr; }
    double real(std::string_view name, double byDefault) const;
    std::int64_t integer(std::string_view name, std::int64_t byDefault) const;
    std::string text(std::string_view name, std::string_view byDefault) const;
    std::uint64_t handle(std::string_view name) const;
    // x, y, z; what the groups leave out is 0.
    struct Point {
        double x = 0, y = 0, z = 0;
        bool has3d = false;
    };
    std::optional<Point> point(std::string_view name) const;

    // Appends the variable when the drawing does not have it. Journalled.
    void set(std::string_view name, TagList tags);
    void setReal(std::string_view name, int code, double value);
    void setInteger(std::string_view name, int code, std::int64_t value);
    void setText(std::string_view name, int code, std::string_view value);
    void setPoint(std::string_view name, double x, double y);
    void setPoint(std::string_view name, double x, double y, double z);
    void remove(std::string_view name);

    // Host side of undo: exchanges the value, or the absence, of one variable.
    void exchange(std::string_view name, std::optional<TagList>& other);

private:
    DatabaseCore& m_db;
    std::vector<Entry> m_entries;
    std::unordered_map<std::string, std::size_t> m_index;
};
