#include "host/commands/curve_edits.h"

#include "host/db/curve_of.h"
#include "host/db/database.h"
#include "host/edit/pick.h"
#include "host/edit/pick_service.h"
#include "host/edit/select_view.h"
#include "host/geom/apparent.h"
#include "sdk/vcdb_curves.h"
#include "sdk/vcdb_tables.h"

namespace vk::commands {

using namespace edit;

VcGeVector3d viewNormal(Editor& ed)
{
    const PickView view = PickView::of(ed);
    return view.x.crossProduct(view.y).normal();
}

std::optional<CurvePick> curvePickAt(Editor& ed, VcDbEntity& entity, const VcGePoint3d& world)
{
    auto curve = curveOf(entity);
    const auto param = curve ? geom::paramSeenAt(*curve, world, viewNormal(ed)) : std::nullopt;
    return param ? std::optional(CurvePick{&entity, std::move(*curve), world, *param}) : std::nullopt;
}

VcDbEntity* pickedCurve(Editor& ed, const Answer& answer)
{
    auto* entity = ed.db().liveAs<VcDbEntity>(answer.entity);
    if (!entity || curveOf(*entity) || !answer.hasPoint || ed.isDriven())
        return entity;
    const std::vector<VcDbObjectId> all = Picker::of(ed).allAt(toWorld(ed, answer.point));
    for (auto id = all.rbegin(); id != all.rend(); ++id)
        if (auto* beneath = ed.db().liveAs<VcDbEntity>(*id); beneath && curveOf(*beneath))
            return beneath;
    return entity;
}

std::optional<CurvePick> curvePick(Editor& ed, const Answer& answer)
{
    VcDbEntity* entity = pickedCurve(ed, answer);
    if (!entity)
        return std::nullopt;
    if (isOnLockedLayer(*entity)) {
        ed.printLine("That object is on a locked layer.");
        return std::nullopt;
    }
    auto pick =
        curvePickAt(ed, *entity, toWorld(ed, answer.hasPoint ? answer.point : pointOnEntity(ed, entity->objectId())));
    if (!pick)
        ed.printLine("That object is not a curve.");
    return pick;
}

static bool canGoOn(const VcDbEntity& entity)
{
    return entity.isKindOf(VcDbLine::desc()) || entity.isKindOf(VcDbArc::desc()) ||
           entity.isKindOf(VcDbPolyline::desc());
}

std::optional<CurveEnd> lastCurveEnd(Editor& ed)
{
    const auto* space = ed.db().objectAs<VcDbBlockTableRecord>(ed.db().currentSpace());
    if (!space)
        return std::nullopt;
    const auto& slots = space->memberSlots();
    for (auto slot = slots.rbegin(); slot != slots.rend(); ++slot) {
        const auto* entity = VcDbEntity::cast(ed.db().objectAt(*slot));
        const auto curve = entity && !entity->isErased() && canGoOn(*entity) ? curveOf(*entity) : std::nullopt;
        if (!curve || geom::isClosed(*curve))
            continue;
        const geom::Interval range = geom::paramRange(*curve);
        const VcGeMatrix3d toUcs = ucsToWorld(ed).inverse();
        const auto* p = std::get_if<geom::Polyline>(&*curve);
        const bool isArc = std::holds_alternative<geom::Arc>(*curve),
                   bent = isArc || (p && p->vertices[p->vertices.size() - 2].bulge != 0);
        // An arc always runs anticlockwise, but may have been drawn the other way: then it ended at its start.
        const VcGePoint3d start = toUcs * geom::pointAt(*curve, range.from),
                          end = toUcs * geom::pointAt(*curve, range.to);
        if (isArc && start.distanceTo(ed.lastPoint) < end.distanceTo(ed.lastPoint))
            return CurveEnd{start, -(toUcs * geom::derivativesAt(*curve, range.from).first).normal(), true};
        const VcGeVector3d along = geom::derivativesAt(*curve, range.to - 1e-12 * (range.to - range.from)).first;
        return CurveEnd{end, (toUcs * along).normal(), bent};
    }
    return std::nullopt;
}

void CurveEdits::end()
{
    const Step& step = m_steps.back();
    if (step.made.empty() && step.erased.empty() && step.before.empty())
        m_steps.pop_back();
}

VcDbEntity* CurveEdits::addNew(std::unique_ptr<VcDbEntity> entity, VcDbObjectId owner)
{
    auto* block = m_ed.db().objectAs<VcDbBlockTableRecord>(owner);
    VcDbObjectId id;
    if (!entity || !block || block->appendVcDbEntity(id, entity.get()))
        return nullptr;
    VcDbEntity* added = entity.release();
    added->close();
    m_steps.back().made.push_back(id);
    return added;
}

VcDbEntity* CurveEdits::add(const geom::Curve& curve, const VcDbEntity& like)
{
    return addNew(makeEntityOf(curve, like), like.ownerId());
}

void CurveEdits::erase(VcDbEntity& entity)
{
    if (entity.erase() == Vcad::eOk)
        m_steps.back().erased.push_back(entity.objectId());
}

bool CurveEdits::replace(VcDbEntity& entity, const std::vector<geom::Curve>& shapes)
{
    std::vector<std::unique_ptr<VcDbEntity>> made;
    for (const geom::Curve& shape : shapes) {
        made.push_back(makeEntityOf(shape, entity));
        if (!made.back())
            return false;
    }
    m_left.clear();
    std::unique_ptr<VcDbObject> before = entity.copyOf();
    const bool stays = !shapes.empty() && setCurveOf(entity, shapes.front());
    if (stays) {
        m_steps.back().before.push_back(std::move(before));
        m_left.push_back(entity.objectId());
    }
    for (std::size_t i = stays ? 1 : 0; i < made.size(); ++i)
        if (VcDbEntity* piece = addNew(std::move(made[i]), entity.ownerId()))
            m_left.push_back(piece->objectId());
    if (!stays)
        erase(entity);
    return true;
}

bool CurveEdits::undo()
{
    if (m_steps.empty())
        return false;
    Step step = std::move(m_steps.back());
    m_steps.pop_back();
    for (auto made = step.made.rbegin(); made != step.made.rend(); ++made)
        if (VcDbObject* object = m_ed.db().object(*made); object && !object->isErased())
            object->erase();
    for (auto state = step.before.rbegin(); state != step.before.rend(); ++state)
        if (VcDbObject* object = m_ed.db().object((*state)->objectId())) {
            object->assertWriteEnabled();
            object->assignFrom(**state);
        }
    for (auto erased = step.erased.rbegin(); erased != step.erased.rend(); ++erased)
        if (VcDbObject* object = m_ed.db().object(*erased))
            object->erase(false);
    return true;
}

}
