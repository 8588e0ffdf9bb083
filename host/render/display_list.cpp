#include "host/render/display_list.h"

#include <algorithm>

namespace vk::render {

// Neighbours mostly look alike, and a list has few looks.
std::uint32_t DisplayList::lookOf(const EntityProps& props)
{
    constexpr std::size_t kSearched = 16;
    const std::size_t low = looks.size() > kSearched ? looks.size() - kSearched : 0;
    for (std::size_t i = looks.size(); i > low; --i)
        if (looks[i - 1].props == &props)
            return std::uint32_t(i - 1);
    looks.push_back({&props, false});
    return std::uint32_t(looks.size() - 1);
}

std::uint32_t DisplayList::ownLook(EntityProps props)
{
    if (!m_ownProps.empty() && m_ownProps.back() == props)
        for (std::size_t i = looks.size(); i > 0; --i)
            if (looks[i - 1].props == &m_ownProps.back())
                return std::uint32_t(i - 1);
    looks.push_back({&m_ownProps.emplace_back(std::move(props)), true});
    return std::uint32_t(looks.size() - 1);
}

void DisplayList::clear()
{
    items.clear();
    figures.clear();
    pieces.clear();
    points.clear();
    arcs.clear();
    splines.clear();
    texts.clear();
    glyphs.clear();
    hatches.clear();
    pictures.clear();
    marks.clear();
    endless.clear();
    blocks.clear();
    clips.clear();
    windows.clear();
    looks.clear();
    bounds = {};
    m_ownProps.clear();
}

}  // namespace vk::render
