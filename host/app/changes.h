// What a run has changed in the drawing, object by object.
#pragma once

#include <map>
#include <string>
#include <vector>

class DatabaseCore;

namespace vk::app {

// Handles by type, in the order of the first change.
using HandlesByType = std::map<std::string, std::vector<std::string>>;

struct Changes {
    HandlesByType added, modified, erased;
    bool isEmpty() const { return added.empty() && modified.empty() && erased.empty(); }
};

// Since the journal began. An object that is again as it was does not count.
Changes changesOf(DatabaseCore& db);

}  // namespace vk::app
