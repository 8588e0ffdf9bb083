#include "host/render/paint_parts.h"

#include "host/db/database.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace vk::render {

ListPainter::Projection::Projection(const VcGeMatrix3d& m)
    : xx(m.entry[0][0]), xy(m.entry[0][1]), xz(m.entry[0][2]), x0(m.entry[0][3]), yx(m.entry[1][0]), yy(m.entry[1][1]),
      yz(m.entry[1][2]), y0(m.entry[1][3]), wx(m.entry[3][0]), wy(m.entry[3][1]), wz(m.entry[3][2]), w0(m.entry[3][3]),
      isPerspective(isPerspectiveMatrix(m))
{
    scale = std::max({std::hypot(xx, yx), std::hypot(xy, yy), std::hypot(xz, yz), 1e-300});
}

Point2 ListPainter::Projection::seen(const Point2& flat, double depth)
{
    constexpr double kNowhere = std::numeric_limits<double>::quiet_NaN();
    return depth >= kNearest ? Point2(flat.x / depth, flat.y / depth) : Point2(kNowhere, kNowhere);
}

// The derivative of the quotient.
ListPainter::Projection ListPainter::Projection::about(const VcGePoint3d& p) const
{
    const double w = depth(p);
    if (!isPerspective || !(w >= kNearest))
        return *this;
    const Point2 at = (*this)(p);
    VcGeMatrix3d straight;
    const double rows[2][3] = {{xx, xy, xz}, {yx, yy, yz}}, depths[3] = {wx, wy, wz}, page[2] = {at.x, at.y},
                 world[3] = {p.x, p.y, p.z};
    for (int row = 0; row < 2; ++row) {
        straight.entry[row][3] = page[row];
        for (int column = 0; column < 3; ++column) {
            straight.entry[row][column] = (rows[row][column] - page[row] * depths[column]) / w;
            straight.entry[row][3] -= straight.entry[row][column] * world[column];
        }
    }
    return Projection(straight);
}

ListPainter::ListPainter(const DatabaseCore& db, BlockLists& blocks, Canvas& canvas, LookResolver& looks,
                         const PageView& view, PaintBudget& budget, Omissions& omissions)
    : m_db(db), m_blocks(blocks), m_canvas(canvas), m_looks(looks), m_view(view), m_budget(budget),
      m_omissions(omissions)
{
    const double scale = db.header().real("$LTSCALE", 1);
    m_globalLinetypeScale = (scale > 0 ? scale : 1) * view.linetypeScale;
}

void ListPainter::paint(const DisplayList& list) { paintList(list, m_view.toPage, nullptr); }

ResolvedLook ListPainter::lookOf(const Place& place, std::uint32_t index)
{
    const DisplayList::Look& look = place.list.looks[index];
    return place.reference || look.owned ? m_looks.resolve(*look.props, place.reference) : m_looks.atTop(*look.props);
}

void ListPainter::paintList(const DisplayList& list, const VcGeMatrix3d& matrix, const ResolvedLook* reference)
{
    const Projection project(matrix);
    constexpr double kMeasured = 1e-4;  // of the size of what is measured
    const double tolerance = m_view.measuring ? kMeasured * list.bounds.diagonal() : m_view.tolerance / project.scale;
    const Place place{list, matrix, project, Flattener(tolerance), reference};
    std::uint32_t known = ~0u;
    ResolvedLook look;
    int clips = 0;
    for (const Item& item : list.items) {
        if (m_budget.items == 0)
            break;
        --m_budget.items;
        if (item.kind == Item::Clip || item.kind == Item::Unclip) {
            clips += item.kind == Item::Clip ? 1 : -1;
            item.kind == Item::Clip ? pushClip(list.clips[item.first], matrix) : m_canvas.popClip();
            continue;
        }
        if (item.look != known)
            look = lookOf(place, known = item.look);
        // A reference on a layer that is off still shows what is on other layers.
        if (look.visible || (item.kind == Item::Block && !look.frozen) || item.kind == Item::Window)
            paintItem(place, item, look);
    }
    for (; clips > 0; --clips)
        m_canvas.popClip();
}

void ListPainter::paintItem(const Place& place, const Item& item, const ResolvedLook& look)
{
    const DisplayList& list = place.list;
    switch (item.kind) {
    case Item::Stroke:
        return paintFigures(place, item, look);
    case Item::Fill:
        if (item.flags & Item::Bands)
            return fillBands(ringsOf(place, item.first, item.count), look.argb);
        return fillPage(ringsOf(place, item.first, item.count), (item.flags & Item::NonZero) != 0, look.argb);
    case Item::Mask:
        return m_canvas.erase(ringsOf(place, item.first, item.count));
    case Item::Text:
        return paintText(place, list.texts[item.first], look);
    case Item::Hatch:
        return paintHatch(place, list.hatches[item.first], look);
    case Item::Image:
        return paintImage(place, list.pictures[item.first], look);
    case Item::Block:
        return paintUse(place, list.blocks[item.first], look);
    case Item::Mark:
        return paintMark(place, list.marks[item.first], look);
    case Item::Endless:
        return paintEndless(place, list.endless[item.first], look);
    case Item::Window:
        if (onWindow)
            onWindow(list.windows[item.first].viewport);
        return;
    case Item::Clip:
    case Item::Unclip:
        return;
    }
}

}  // namespace vk::render
