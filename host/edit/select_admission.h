// Which objects may come into a selection, and the count of those that may not.
#pragma once

#include "host/edit/select_prompt.h"
#include "host/edit/select_view.h"

#include <unordered_map>

class VcDbGroup;

namespace vk::edit {

// What became of the objects that one line found.
struct Tally {
    std::size_t found = 0, duplicate = 0, locked = 0, filtered = 0, elsewhere = 0, gone = 0;
    // As in "2 on a locked layer, 1 duplicate"; empty when nothing was left out.
    std::string leftOut() const;
};

class Admission {
public:
    Admission(Editor& editor, const SelectRequest& request);

    // Judges the objects of one line one by one, and counts them.
    class Pass {
    public:
        Pass(const Admission& admission, Tally& tally) : m_admission(admission), m_tally(tally) {}
        bool admits(VcDbEntity& entity);
        bool admits(VcDbObjectId id);

    private:
        bool standsElsewhere(const VcDbEntity& entity);
        const Admission& m_admission;
        Tally& m_tally;
        VcDbObjectId m_lastOwner;  // what has one owner stands in one place
        bool m_lastIsElsewhere = false;
    };

private:
    bool isElsewhere(const VcDbEntity& entity) const;
    const DatabaseCore& m_db;
    const SelectRequest& m_request;
    SeenLayers m_layers;
};

// The groups that objects are picked with.
class GroupMembers {
public:
    explicit GroupMembers(const DatabaseCore& db);
    // The objects, each followed by those that share a group with it.
    std::vector<VcDbObjectId> expanded(const std::vector<VcDbObjectId>& ids) const;

private:
    std::unordered_multimap<VcDbObjectId, const VcDbGroup*> m_groups;
};

}  // namespace vk::edit
