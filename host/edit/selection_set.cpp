#include "host/edit/selection_set.h"

#include <algorithm>
#include <bit>

namespace vk::edit {

// Objects made one after the other are mostly selected so: few of them at a time share what is fetched.
std::size_t SelectionSet::home(VcDbObjectId id) const
{
    constexpr std::uint32_t kTogether = 16;
    const std::uint64_t group = std::uint64_t(id.databaseSerial()) << 32 | id.slot() / kTogether;
    return std::size_t((group * 0x9e3779b97f4a7c15u >> 32) * kTogether + id.slot() % kTogether) & (m_places.size() - 1);
}

std::size_t SelectionSet::placeOf(VcDbObjectId id) const
{
    std::size_t place = home(id);
    while (m_places[place] && m_ids[m_places[place] - 1] != id)
        place = (place + 1) & (m_places.size() - 1);
    return place;
}

void SelectionSet::makeTable()
{
    ids();
    m_places.assign(std::bit_ceil(std::max<std::size_t>(16, (m_size + 1) * 2)), 0);
    for (std::size_t i = 0; i < m_ids.size(); ++i)
        m_places[placeOf(m_ids[i])] = std::uint32_t(i + 1);
}

bool SelectionSet::has(VcDbObjectId id) const
{
    return hasTable() ? m_places[placeOf(id)] != 0 : std::binary_search(m_ids.begin(), m_ids.end(), id);
}

bool SelectionSet::add(VcDbObjectId id)
{
    if (id.isNull())
        return false;
    if (!hasTable() && (m_ids.empty() || m_ids.back() < id)) {
        m_ids.push_back(id);
        ++m_size;
        return true;
    }
    if (m_ids.size() > 2 * m_size + 64)
        compact();
    if ((m_size + 1) * 2 > m_places.size())
        makeTable();
    std::uint32_t& index = m_places[placeOf(id)];
    if (index)
        return false;
    m_ids.push_back(id);
    index = std::uint32_t(m_ids.size());
    ++m_size;
    return true;
}

bool SelectionSet::remove(VcDbObjectId id)
{
    if (!has(id))
        return false;
    if (!hasTable())
        makeTable();
    const std::size_t place = placeOf(id), index = m_places[place] - 1;
    freePlace(place);
    if (index + 1 == m_ids.size())
        m_ids.pop_back();
    else
        m_ids[index] = {};
    --m_size;
    return true;
}

// Members behind the freed place move up when a look-up would no longer come to them.
void SelectionSet::freePlace(std::size_t place)
{
    const std::size_t mask = m_places.size() - 1;
    for (std::size_t next = (place + 1) & mask; m_places[next]; next = (next + 1) & mask) {
        if (((next - home(m_ids[m_places[next] - 1])) & mask) < ((next - place) & mask))
            continue;
        m_places[place] = m_places[next];
        place = next;
    }
    m_places[place] = 0;
}

const std::vector<VcDbObjectId>& SelectionSet::ids() const
{
    if (m_ids.size() != m_size)
        compact();
    return m_ids;
}

void SelectionSet::clear()
{
    m_ids.clear();
    m_places.clear();
    m_size = 0;
}

void SelectionSet::compact() const
{
    for (std::size_t from = 0, to = 0; from < m_ids.size(); ++from) {
        if (m_ids[from].isNull())
            continue;
        m_places[placeOf(m_ids[from])] = std::uint32_t(to + 1);
        m_ids[to++] = m_ids[from];
    }
    m_ids.resize(m_size);
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
