#include "host/edit/selection_set.h"

namespace vk::edit {

bool SelectionSet::add(VcDbObjectId id)
{
    if (id.isNull() || !m_places.emplace(id, m_ids.size()).second)
        return false;
    m_ids.push_back(id);
    return true;
}

bool SelectionSet::remove(VcDbObjectId id)
{
    const auto found = m_places.find(id);
    if (found == m_places.end())
        return false;
    if (found->second + 1 == m_ids.size()) {
        m_ids.pop_back();
    } else {
        m_ids[found->second] = {};
        m_hasHoles = true;
    }
    m_places.erase(found);
    return true;
}

const std::vector<VcDbObjectId>& SelectionSet::ids() const
{
    if (m_hasHoles)
        compact();
    return m_ids;
}

void SelectionSet::clear()
{
    m_ids.clear();
    m_places.clear();
    m_hasHoles = false;
}

void SelectionSet::compact() const
{
    std::erase_if(m_ids, [](VcDbObjectId id) { return id.isNull(); });
    for (std::size_t i = 0; i < m_ids.size(); ++i)
        m_places[m_ids[i]] = i;
    m_hasHoles = false;
}

// Names: the slot, negative so that no entity's name is taken for a set's, and the slot's generation.

SelectionSetTable& SelectionSetTable::instance()
{
    static SelectionSetTable table;
    return table;
}

void SelectionSetTable::nameOf(std::shared_ptr<SelectionSet> set, vds_name out)
{
    std::size_t slot = m_slots.size();
    if (m_free.empty()) {
        m_slots.emplace_back();
    } else {
        slot = m_free.back();
        m_free.pop_back();
    }
    Slot& taken = m_slots[slot];
    taken.set = std::move(set);
    ++taken.generation;
    out[0] = -std::int64_t(slot);
    out[1] = taken.generation;
}

std::shared_ptr<SelectionSet> SelectionSetTable::find(const vds_name name) const
{
    if (!name || name[0] >= 0 || name[0] <= -std::int64_t(m_slots.size()))
        return nullptr;
    const Slot& slot = m_slots[std::size_t(-name[0])];
    return slot.generation == name[1] ? slot.set : nullptr;
}

bool SelectionSetTable::release(const vds_name name)
{
    if (!find(name))
        return false;
    m_slots[std::size_t(-name[0])].set.reset();
    m_free.push_back(std::uint32_t(-name[0]));
    return true;
}

std::size_t SelectionSetTable::liveCount() const { return m_slots.size() - 1 - m_free.size(); }

}  // namespace vk::edit
