// Uses of blocks, single and in grids.
#include "host/render/paint_parts.h"

namespace vk::render {

namespace {

constexpr int kDeepest = 100;  // blocks within blocks

// Numbers k from 0 to count - 1 for which a stretch that moves by step meets the page; a range that holds them.
std::pair<double, double> meeting(double low, double high, double step, double pageLow, double pageHigh, double count)
{
    if (step == 0)
        return low <= pageHigh && high >= pageLow ? std::pair(0.0, count - 1) : std::pair(0.0, -1.0);
    double a = (pageLow - high) / step, b = (pageHigh - low) / step;
    if (a > b)
        std::swap(a, b);
    return {std::max(0.0, std::ceil(a)), std::min(count - 1, std::floor(b))};
}

}

void ListPainter::paintUse(const Place& place, const BlockUse& use, const ResolvedLook& look)
{
    BlockLists::BlockList* block = m_blocks.find(use.block);
    if (!block || block->drawing || m_depth >= kDeepest)
        return;
    const VcGeMatrix3d matrix = place.matrix * use.matrix;
    const ClipFrame* clip = use.clip >= 0 ? &place.list.clips[std::size_t(use.clip)] : nullptr;
    if (use.columns == 1 && use.rows == 1)
        return paintCell(clip, *block, matrix, look);
    const geom::Box3d box = movedBox(block->bounds, matrix);
    if (box.isEmpty())
        return;
    if (place.project.isPerspective) {
        for (std::uint32_t r = 0; r < use.rows; ++r)
            for (std::uint32_t c = 0; c < use.columns && m_budget.items > 0; ++c)
                paintCell(clip, *block,
                          place.matrix * VcGeMatrix3d::translation(use.columnStep * c + use.rowStep * r) * use.matrix,
                          look);
        return;
    }
    const VcGeVector2d column = place.project(use.columnStep), row = place.project(use.rowStep);
    // Cells closer than half a pixel cannot be told apart.
    const auto stride = [](const VcGeVector2d& step) {
        return step.length() > 0 ? std::max(1.0, std::ceil(0.5 / step.length())) : 1e9;
    };
    const double columnStride = stride(column), rowStride = stride(row);
    for (double r = 0; r < use.rows; r += rowStride) {
        const Point2 low = Point2(box.min.x, box.min.y) + row * r, high = Point2(box.max.x, box.max.y) + row * r;
        const auto alongX = meeting(low.x, high.x, column.x, m_view.low.x, m_view.high.x, use.columns);
        const auto alongY = meeting(low.y, high.y, column.y, m_view.low.y, m_view.high.y, use.columns);
        for (double c = std::max(alongX.first, alongY.first); c <= std::min(alongX.second, alongY.second);
             c += columnStride)
            paintCell(clip, *block,
                      place.matrix * VcGeMatrix3d::translation(use.columnStep * c + use.rowStep * r) * use.matrix,
                      look);
    }
}

void ListPainter::paintCell(const ClipFrame* clip, BlockLists::BlockList& block, const VcGeMatrix3d& matrix,
                            const ResolvedLook& look)
{
    const geom::Box3d box = movedBox(block.bounds, matrix);
    const bool unbounded = block.unbounded || isPerspectiveMatrix(matrix);
    if (!unbounded &&
        (box.isEmpty() ? block.list.blocks.empty() : !isSeen({box.min.x, box.min.y}, {box.max.x, box.max.y}, 40)))
        return;
    constexpr double kSmallest = 0.4;  // pixels
    if (!m_view.measuring && !unbounded && !box.isEmpty() && look.visible && box.max.x - box.min.x < kSmallest &&
        box.max.y - box.min.y < kSmallest)
        return dot({box.min.x, box.min.y}, penOf(look));
    if (clip)
        pushClip(*clip, matrix);
    block.drawing = true;
    ++m_depth;
    paintList(block.list, matrix, &look);
    --m_depth;
    block.drawing = false;
    if (clip)
        m_canvas.popClip();
}

void ListPainter::pushClip(const ClipFrame& clip, const VcGeMatrix3d& matrix)
{
    const Projection project(matrix * clip.toClip.inverse());
    Rings rings;
    for (const VcGePoint2d& p : clip.corners)
        rings.points.push_back(project(VcGePoint3d(p.x, p.y, 0)));
    rings.endRing();
    m_canvas.pushClip(rings, clip.inverted);
}

}  // namespace vk::render
