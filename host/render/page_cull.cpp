#include "host/render/page_cull.h"

#include "host/db/database.h"
#include "host/render/list_painter.h"
#include "sdk/vcdb_curves.h"
#include "sdk/vcdb_faces.h"
#include "sdk/vcdb_hatch.h"
#include "sdk/vcdb_insert.h"
#include "sdk/vcdb_tables.h"
#include "sdk/vcdb_text.h"

#include <algorithm>

namespace vk::render {

namespace {

// The page and half as much on each side, for pens and rounding. Nothing in views that do not look straight down.
std::optional<geom::Box3d> pageInSpace(const PageView& view)
{
    const VcGeMatrix3d& m = view.toPage;
    if (view.measuring || m.entry[0][2] != 0 || m.entry[1][2] != 0)
        return std::nullopt;
    const VcGeMatrix3d toSpace = m.inverse();
    const VcGeVector2d margin = (view.high - view.low) * 0.5;
    const Point2 low = view.low - margin, high = view.high + margin;
    geom::Box3d page;
    for (const Point2& corner : {low, high, Point2(low.x, high.y), Point2(high.x, low.y)})
        page.add(toSpace * VcGePoint3d(corner.x, corner.y, 0));
    page.min.z = -geom::Box3d::kInfinite;
    page.max.z = geom::Box3d::kInfinite;
    return page;
}

bool isPlainClass(const VcDbEntity& entity)
{
    const VcRxClass* cls = entity.isA();
    for (VcRxClass* (*desc)() : {&VcDbLine::desc, &VcDbPolyline::desc, &VcDbText::desc, &VcDbCircle::desc,
                                 &VcDbArc::desc, &VcDbAttribute::desc, &VcDbAttributeDefinition::desc, &VcDbHatch::desc,
                                 &VcDbEllipse::desc, &VcDbSpline::desc, &VcDbFace::desc, &VcDbSolid::desc})
        if (cls == desc())
            return true;
    return false;
}

}

PageCull::PageCull(const DatabaseCore& db, const PageView& view) : m_db(db), m_page(pageInSpace(view)) {}

// What is built may differ from the extents by a hundredth of a text's height.
bool PageCull::isOff(const VcDbEntity& entity)
{
    constexpr double kDiffers = 0.05;  // of the box
    VcDbExtents extents;
    if (!m_page || !isWorthIt() || !staysInBox(entity) || entity.getGeomExtents(extents) != Vcad::eOk ||
        extents.isEmpty())
        return false;
    const geom::Box3d box{extents.minPoint(), extents.maxPoint()};
    const bool off = box.isFinite() && !m_page->touches(box.grown(kDiffers * box.diagonal()));
    ++m_asked;
    m_off += off;
    return off;
}

// Where nearly all is seen, asking costs more than it saves.
bool PageCull::isWorthIt() const
{
    constexpr std::size_t kTried = 1000, kOneIn = 8;
    return m_asked < kTried || m_off * kOneIn >= m_asked;
}

bool PageCull::staysInBox(const VcDbEntity& entity)
{
    if (isPlainClass(entity))
        return true;
    if (const auto* text = VcDbMText::cast(&entity))
        return !text->backgroundFillOn();
    if (const auto* reference = VcDbBlockReference::cast(&entity))
        return staysInBox(reference->blockTableRecord());
    return false;
}

// A block that is asked about while it is looked at holds itself, and adds nothing to what it holds otherwise.
bool PageCull::staysInBox(VcDbObjectId id)
{
    const auto [known, isNew] = m_blocks.try_emplace(id, true);
    if (!isNew)
        return known->second;
    const auto* block = m_db.liveAs<VcDbBlockTableRecord>(id);
    const auto stays = [this](std::uint32_t slot) {
        const auto* member = VcDbEntity::cast(m_db.objectAt(slot));
        return !member || member->isErased() || staysInBox(*member);
    };
    const std::vector<std::uint32_t> members = block ? block->memberSlots() : std::vector<std::uint32_t>();
    return m_blocks[id] = std::all_of(members.begin(), members.end(), stays);
}

}  // namespace vk::render
