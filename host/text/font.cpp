#include "host/text/font.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace vktext {

namespace {

constexpr GlyphMetrics kMissingBox{.advance = 0.8, .left = 0.1, .right = 0.7, .bottom = 0, .top = 1, .blank = false};

GlyphShape missingBoxShape()
{
    const auto& b = kMissingBox;
    return {{{{b.left, 0}, {b.right, 0}, {b.right, b.top}, {b.left, b.top}, {b.left, 0}}}, false};
}

// Letters that stand for each other when a font has only one of them: signs that drawings use, spaces and dashes.
char32_t equivalent(char32_t c)
{
    switch (c) {
    case 0x2205:
    case 0x2300:
        return 0xD8;  // diameter
    case 0x00A0:
    case 0x2002:
    case 0x2003:
    case 0x202F:
        return ' ';
    case 0x2009:
    case 0x200A:
        return ' ';
    case 0x2010:
    case 0x2011:
    case 0x2012:
    case 0x2013:
    case 0x2014:
    case 0x2212:
        return '-';
    case 0x2018:
    case 0x2019:
        return '\'';
    case 0x201C:
    case 0x201D:
    case 0x201E:
        return '"';
    case 0x00B5:
        return 0x3BC;
    case 0x2126:
        return 0x3A9;
    case 0x25CB:
    case 0x00BA:
        return 0xB0;
    default:
        return 0;
    }
}

bool takesNoRoom(char32_t c)
{
    return c < 0x20 || c == 0x200B || c == 0x200C || c == 0x200D || c == 0xFEFF || (c >= 0xFE00 && c <= 0xFE0F);
}

}  // namespace

Font::Font(std::vector<std::shared_ptr<GlyphSource>> sources, SystemSource systemSource)
    : m_sources(std::move(sources)), m_systemSource(systemSource)
{
    if (!m_sources.empty()) {
        m_descent = m_sources.front()->descent();
        m_stroked = m_sources.front()->stroked();
    }
    m_common.fill({.advance = -1});
}

Font::Located Font::locate(char32_t c) const
{
    for (const auto& source : m_sources)
        if (const auto metrics = source->metrics(c))
            return {source.get(), *metrics};
    if (GlyphSource* source = m_systemSource ? m_systemSource(c) : nullptr)
        if (const auto metrics = source->metrics(c))
            return {source, *metrics};
    return {};
}

const GlyphMetrics& Font::loadMetrics(char32_t c) const
{
    if (c >= m_common.size())
        if (const auto known = m_rare.find(c); known != m_rare.end())
            return known->second;

    GlyphMetrics metrics;
    if (!takesNoRoom(c)) {
        const auto own = m_sources.empty() ? std::nullopt : m_sources.front()->metrics(c);
        if (own) {
            metrics = *own;
        } else if (const char32_t other = equivalent(c); other != 0) {
            metrics = this->metrics(other);
        } else {
            const Located found = locate(c);
            metrics = found.source ? found.metrics : kMissingBox;
            ++(found.source ? m_borrowed : m_missing);
        }
    }
    return c < m_common.size() ? m_common[c] = metrics : m_rare.emplace(c, metrics).first->second;
}

const GlyphShape& Font::shape(char32_t c) const
{
    if (const auto known = m_shapes.find(c); known != m_shapes.end())
        return known->second;

    GlyphShape shape;
    if (!takesNoRoom(c)) {
        const bool own = !m_sources.empty() && m_sources.front()->metrics(c);
        if (const char32_t other = own ? 0 : equivalent(c); other != 0) {
            shape = this->shape(other);
        } else {
            const Located found = locate(c);
            shape = found.source ? found.source->shape(c) : missingBoxShape();
        }
    }
    return m_shapes.emplace(c, std::move(shape)).first->second;
}

LeaningInk& Font::leaning(double slant) const
{
    const auto known =
        std::find_if(m_leaning.begin(), m_leaning.end(), [slant](const auto& ink) { return ink->slant() == slant; });
    if (known != m_leaning.end())
        return **known;
    // A drawing has a handful of slants; one that has more measures some of them again.
    constexpr std::size_t kMostSlants = 64;
    if (m_leaning.size() == kMostSlants)
        m_leaning.clear();
    return *m_leaning.emplace_back(std::make_unique<LeaningInk>(*this, slant));
}

LeaningInk::LeaningInk(const Font& font, double slant) : m_font(font), m_slant(slant) { m_common.fill({1, 0}); }

InkSpan LeaningInk::load(char32_t c)
{
    if (c < m_common.size())
        return m_common[c] = measured(c);
    const auto [known, isNew] = m_rare.try_emplace(c);
    if (isNew)
        known->second = measured(c);
    return known->second;
}

InkSpan LeaningInk::measured(char32_t c) const
{
    const GlyphMetrics& m = m_font.metrics(c);
    if (m.blank)
        return {m.left, m.right};
    InkSpan ink{HUGE_VAL, -HUGE_VAL};
    for (const auto& line : m_font.shape(c).lines)
        for (const VcGePoint2d& p : line) {
            ink.left = std::min(ink.left, p.x + m_slant * p.y);
            ink.right = std::max(ink.right, p.x + m_slant * p.y);
        }
    return ink.left <= ink.right ? ink : InkSpan{m.left, m.right};
}

}  // namespace vktext
