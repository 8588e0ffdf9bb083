// Letters of a display list.
#include "host/render/paint_parts.h"

namespace vk::render {

void ListPainter::paintText(const Place& place, const TextRun& run, const ResolvedLook& look)
{
    const Projection project = place.project.about(run.origin);
    const Point2 origin = project(run.origin);
    const VcGeVector2d x = project(run.x), y = project(run.y);
    const auto at = [&](double px, double py) { return origin + x * px + y * py; };
    const Point2 box[] = {at(run.ink.left, run.ink.bottom), at(run.ink.right, run.ink.bottom),
                          at(run.ink.right, run.ink.top), at(run.ink.left, run.ink.top)};
    const Bounds2 bounds(box);
    const Pen pen = penOf(look);
    if (!isFinite(bounds.low) || !isFinite(bounds.high) || !isSeen(bounds.low, bounds.high, pen.width))
        return;
    constexpr double kLegible = 1.3;  // pixels; below, a line of text is a grey bar
    if (m_view.measuring || run.height * std::max(x.length(), y.length()) < kLegible) {
        Rings bar;
        bar.points.assign(std::begin(box), std::end(box));
        bar.endRing();
        return m_canvas.fill(bar, true, (look.argb & 0xffffff) | (look.argb >> 25) << 24);
    }
    Rings letters;
    for (std::uint32_t i = run.firstGlyph; i < run.firstGlyph + run.glyphCount; ++i) {
        const vktext::PlacedGlyph& glyph = place.list.glyphs[i];
        const vktext::GlyphShape& shape = run.font->shape(glyph.c);
        for (const auto& line : shape.lines) {
            m_page.clear();
            for (const VcGePoint2d& p : line)
                m_page.push_back(
                    at(glyph.origin.x + glyph.xScale * p.x + glyph.slant * p.y, glyph.origin.y + glyph.yScale * p.y));
            if (!shape.filled) {
                strokePage(m_page, pen);
                continue;
            }
            letters.points.insert(letters.points.end(), m_page.begin(), m_page.end());
            letters.endRing();
        }
    }
    if (!letters.empty())
        m_canvas.fill(clipRings(farAround(m_view), letters), true, look.argb);
}

}  // namespace vk::render
