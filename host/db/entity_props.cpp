#include "host/db/entity_props.h"

namespace {

void mix(std::size_t& h, std::size_t value) { h = (h ^ value) * 0x9e3779b97f4a7c15u + (h >> 29); }

}

std::size_t EntityPropsTable::Hash::operator()(const EntityProps& p) const noexcept
{
    std::size_t h = p.layer.slot();
    mix(h, p.linetype.slot());
    mix(h, (std::size_t(std::uint16_t(p.color.colorIndex())) << 8) | p.color.colorMethod());
    mix(h, p.color.isByColor() ? p.color.rgb() : 0);
    mix(h, std::hash<double>()(p.linetypeScale));
    mix(h, std::size_t(std::uint16_t(p.lineWeight)) << 32 | std::uint32_t(p.transparency));
    mix(h, std::size_t(std::uint16_t(p.invisible)) << 16 | p.material.slot());
    return h;
}

EntityPropsTable::EntityPropsTable() { intern(EntityProps()); }

std::uint32_t EntityPropsTable::intern(const EntityProps& props)
{
    if (!m_items.empty() && *m_items[m_last] == props)
        return m_last;
    const auto [at, isNew] = m_index.emplace(props, std::uint32_t(m_items.size()));
    if (isNew)
        m_items.push_back(&at->first);
    return m_last = at->second;
}
