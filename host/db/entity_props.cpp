#include "host/db/entity_props.h"

#include <utility>

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

EntityPropsTable::EntityPropsTable() : m_places(64) { intern(EntityProps()); }

std::uint32_t EntityPropsTable::intern(const EntityProps& props)
{
    const std::uint32_t hash = hashOf(props);
    const std::size_t mask = m_places.size() - 1;
    for (std::size_t at = hash & mask; m_places[at].index; at = (at + 1) & mask) {
        const std::uint32_t index = m_places[at].index - 1;
        if (m_places[at].hash == hash && (*this)[index] == props)
            return index;
    }
    return add(props, hash);
}

std::uint32_t EntityPropsTable::add(const EntityProps& props, std::uint32_t hash)
{
    if (m_count % kChunk == 0)
        m_chunks.push_back(std::make_unique<EntityProps[]>(kChunk));
    m_chunks.back()[m_count % kChunk] = props;
    ++m_count;
    if (std::size_t(m_count) * 2 > m_places.size())
        grow();
    freePlace(hash) = {hash, m_count};
    return m_count - 1;
}

EntityPropsTable::Place& EntityPropsTable::freePlace(std::uint32_t hash)
{
    const std::size_t mask = m_places.size() - 1;
    std::size_t at = hash & mask;
    while (m_places[at].index)
        at = (at + 1) & mask;
    return m_places[at];
}

void EntityPropsTable::grow()
{
    const std::vector<Place> before = std::exchange(m_places, std::vector<Place>(m_places.size() * 2));
    for (const Place& place : before)
        if (place.index)
            freePlace(place.hash) = place;
}
