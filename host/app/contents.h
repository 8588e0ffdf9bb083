// What a drawing holds, counted.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

class DatabaseCore;

namespace vk::app {

// Attributes, vertices and end marks count beside the entities that own them.
using CountByType = std::map<std::string, std::size_t>;

struct FontEntry {
    std::string style, asked, taken, match;
};

struct Contents {
    CountByType model;
    std::vector<std::pair<std::string, CountByType>> paper;  // by layout, in the order of their tabs
    std::vector<std::string> layers, blocks, styles, dimstyles, linetypes, layouts;
    std::optional<std::pair<std::vector<double>, std::vector<double>>> extents;  // of the model
    std::vector<FontEntry> fonts;
};

Contents contentsOf(DatabaseCore& db);

}  // namespace vk::app
