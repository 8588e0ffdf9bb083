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

DisplayList::Length DisplayList::length() const
{
    return {points.size(),   arcs.size(),  splines.size(), texts.size(), hatches.size(),
            pictures.size(), marks.size(), endless.size(), blocks.size()};
}

namespace {

template <class Item, class... Members>
void moveFrom(std::vector<Item>& items, std::size_t first, const VcGeMatrix3d& by, Members... members)
{
    for (std::size_t i = first; i < items.size(); ++i)
        ((items[i].*members = by * (items[i].*members)), ...);
}

}

void DisplayList::moveSince(const Length& before, const VcGeMatrix3d& by)
{
    for (std::size_t i = before.points; i < points.size(); ++i)
        bounds.add(points[i] = by * points[i]);
    for (std::size_t i = before.splines; i < splines.size(); ++i)
        for (VcGePoint3d& pole : splines[i].poles)
            bounds.add(pole = by * pole);
    for (std::size_t i = before.hatches; i < hatches.size(); ++i) {
        geom::Frame& frame = hatches[i].frame;
        frame = {by * frame.origin, by * frame.x, by * frame.y, by * frame.z};
    }
    moveFrom(arcs, before.arcs, by, &EllipseArc::center, &EllipseArc::u, &EllipseArc::v);
    moveFrom(texts, before.texts, by, &TextRun::origin, &TextRun::x, &TextRun::y);
    moveFrom(pictures, before.pictures, by, &Picture::origin, &Picture::width, &Picture::height);
    moveFrom(marks, before.marks, by, &PointMark::at, &PointMark::x, &PointMark::y);
    moveFrom(endless, before.endless, by, &EndlessLine::base, &EndlessLine::direction);
    moveFrom(blocks, before.blocks, by, &BlockUse::matrix, &BlockUse::columnStep, &BlockUse::rowStep);
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
