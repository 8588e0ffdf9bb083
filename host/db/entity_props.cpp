#include "host/db/entity_props.h"

namespace {

void mix(std::size_t& h, std::size_t value) { h = (h ^ value) * 0x9e3779b97f4a7c15u + (h >> 29); }

}

static std::uint32_t hashOf(const EntityProps& p)
{
    std::size_t h = p.layer.slot();
    mix(h, p.linetype.slot());
    mix(h, (std::size_t(std::uint16_t(p.color.colorIndex())) << 8) | p.color.colorMethod());
    mix(h, p.color.isByColor() ? p.color.rgb() : 0);
    mix(h, std::hash<double>()(p.linetypeScale));
    mix(h, std::size_t(std::uint16_t(p.lineWeight)) << 32 | std::uint32_t(p.transparency));
    mix(h, std::size_t(std::uint16_t(p.invisible)) << 16 | p.material.slot());
    return std::uint32_t(h ^ (h >> 32));
}

EntityPropsTable::EntityPropsTable() : m_places(64)
{
    intern(EntityProps());
}

std::uint32_t EntityPropsTable::intern(const EntityProps& props)
{
    const std::uint32_t hash = hashOf(props);
    const std::size_t mask = m_places.size() - 1;
    for (std::size_t at = hash & mask; m_places[at]; at = (at + 1) & mask) {
        const std::uint32_t index = m_places[at] - 1;
        if (m_hashes[index] == hash && *m_items[index] == props)
            return index;
    }
    return add(props, hash);
}

std::uint32_t EntityPropsTable::add(const EntityProps& props, std::uint32_t hash)
{
    m_items.push_back(&m_storage.emplace_back(props));
    m_hashes.push_back(hash);
    if (m_items.size() * 2 > m_places.size())
        grow();
    else {
        const std::size_t mask = m_places.size() - 1;
        std::size_t at = hash & mask;
        while (m_places[at])
            at = (at + 1) & mask;
        m_places[at] = std::uint32_t(m_items.size());
    }
    return std::uint32_t(m_items.size() - 1);
}

void EntityPropsTable::grow()
{
    m_places.assign(m_places.size() * 2, 0);
    const std::size_t mask = m_places.size() - 1;
    for (std::uint32_t index = 0; index < m_hashes.size(); ++index) {
        std::size_t at = m_hashes[index] & mask;
        while (m_places[at])
            at = (at + 1) & mask;
        m_places[at] = index + 1;
    }
}
