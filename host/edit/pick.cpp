#include "host/edit/pick.h"

#include "host/db/database.h"
#include "host/db/entity_props.h"
#include "host/edit/editor.h"
#include "host/edit/pick_distance.h"
#include "host/edit/pick_service.h"
#include "sdk/vcdb_chains.h"
#include "sdk/vcdb_curves.h"
#include "sdk/vcdb_insert.h"

namespace vk::edit {

Picker::Picker(DatabaseCore& db, VcDbObjectId space, PickView view, SeenLayers layers)
    : m_db(db), m_space(space), m_view(view), m_layers(std::move(layers))
{
}

Picker Picker::of(Editor& ed) { return {ed.db(), ed.db().currentSpace(), PickView::of(ed), SeenLayers::of(ed)}; }

SelectArea Picker::boxAbout(const VcGePoint3d& at) const
{
    const VcGeVector3d reach = (m_view.x + m_view.y) * m_view.reach;
    return SelectArea::rectangle(m_view, at - reach, at + reach, SelectArea::Kind::Crossing);
}

// What the index is asked for; a box of outlines is made only where the view is turned.
std::optional<PlanArea> Picker::planAbout(const VcGePoint3d& at) const
{
    const double r = m_view.reach;
    return m_view.isLevel() ? PlanArea{{at.x - r, at.y - r}, {at.x + r, at.y + r}} : boxAbout(at).plan();
}

// What of the entity lies nearest to the point, within reach.
std::optional<Picker::Hit> Picker::hit(const VcDbEntity& entity, const VcGePoint3d& at) const
{
    const VcGePoint2d p = m_view.project(at);
    ShapeWalk::Options options;
    options.tolerance = m_view.reach / 64;
    options.area = planAbout(at);
    ShapeWalk shape(m_db, m_layers, options);
    std::optional<Hit> best;
    const auto offer = [&](double distance) {
        if (distance > m_view.reach || (best && distance > best->distance))
            return;
        const auto& outside = shape.containers();
        best = Hit{distance, {shape.part(), {outside.rbegin(), outside.rend()}, shape.toWorld()}};
    };
    shape.passesOver = [&](const VcDbEntity& part) {
        const auto plain = plainDistance(part, shape.toWorld(), at, m_view);
        if (plain)
            offer(*plain);
        return plain.has_value();
    };
    shape.walk(entity, [&](const Outline& outline) {
        offer(distanceTo(p, outline, m_view, options.tolerance));
        return true;
    });
    return best;
}

std::vector<SpaceIndex::Candidate> Picker::candidates(const SelectArea& area) const
{
    const SpaceIndex& index = SpaceIndex::of(m_db, m_space);
    return seen(area.isFence() && m_view.isPlan() ? index.below(area.corners()) : index.candidates(area.plan()));
}

std::vector<SpaceIndex::Candidate> Picker::seen(std::vector<SpaceIndex::Candidate> found) const
{
    std::erase_if(found, [&](const SpaceIndex::Candidate& c) {
        const EntityProps& props = c.entity->props();
        const bool hidden = (props.invisible & 1) != 0 || m_layers.isFrozen(props.layer);
        // A reference on a layer that is off still shows those of its members that lie on others.
        return hidden || (!m_layers.isSeen(props.layer) && !VcDbBlockReference::cast(c.entity));
    });
    return found;
}

// From the topmost down: what lies under another that is as near is not meant, and nothing is nearer than on the spot.
std::optional<Picker::Hit> Picker::nearest(const VcGePoint3d& at) const
{
    std::optional<Hit> best;
    const std::vector<SpaceIndex::Candidate> found = seen(SpaceIndex::of(m_db, m_space).candidates(planAbout(at)));
    const auto isNearer = [&](double distance) { return best ? distance < best->distance : distance <= m_view.reach; };
    for (auto candidate = found.rbegin(); candidate != found.rend() && isNearer(0); ++candidate) {
        const auto& [entity, extents] = *candidate;
        if (const auto plain = plainDistance(*entity, extents.isEmpty() ? nullptr : &extents, at, m_view)) {
            if (isNearer(*plain))
                best = Hit{*plain, {entity->objectId(), {}, {}}};
        } else if (auto walked = hit(*entity, at); walked && isNearer(walked->distance)) {
            best = std::move(walked);
        }
    }
    return best;
}

VcDbObjectId Picker::entityAt(const VcGePoint3d& at) const
{
    const auto found = nearest(at);
    if (!found)
        return {};
    const NestedPick& pick = found->pick;
    const VcDbObjectId top = pick.containers.empty() ? pick.entity : pick.containers.back();
    // An attribute counts for its reference.
    const auto* entity = m_db.objectAs<VcDbEntity>(top);
    return entity && m_db.objectAs<VcDbEntity>(entity->ownerId()) ? entity->ownerId() : top;
}

std::optional<NestedPick> Picker::nestedAt(const VcGePoint3d& at) const
{
    auto found = nearest(at);
    return found ? std::optional(std::move(found->pick)) : std::nullopt;
}

std::optional<NestedPick> Picker::nestedIn(VcDbObjectId id, const VcGePoint3d& at) const
{
    const auto* entity = m_db.liveAs<VcDbEntity>(id);
    auto found = entity ? hit(*entity, at) : std::nullopt;
    return found ? std::optional(std::move(found->pick)) : std::nullopt;
}

std::vector<VcDbObjectId> Picker::allAt(const VcGePoint3d& at) const { return takenBy(boxAbout(at)); }

std::vector<VcDbObjectId> Picker::takenBy(const SelectArea& area) const
{
    std::vector<VcDbObjectId> taken;
    for (const auto& [entity, extents] : candidates(area)) {
        const bool known = m_layers.isSeen(entity->layerId()) && !extents.isEmpty();
        const bool tight = VcDbCurve::cast(entity) != nullptr;
        auto quick = known ? area.takesExtents(extents, tight) : std::nullopt;
        if (!quick)
            quick = area.takesPlain(*entity, extents);
        if (quick ? *quick : area.takes(m_db, m_layers, *entity))
            taken.push_back(entity->objectId());
    }
    return taken;
}

std::optional<VcGePoint3d> Picker::pointOn(VcDbObjectId id) const
{
    const auto* entity = m_db.liveAs<VcDbEntity>(id);
    if (!entity)
        return std::nullopt;
    std::optional<VcGePoint3d> point;
    ShapeWalk shape(m_db, m_layers, {.tolerance = m_view.reach, .area = {}, .wholeEntity = true});
    shape.walk(*entity, [&](const Outline& outline) {
        point = outline.points.front();
        return false;
    });
    return point;
}

VcDbObjectId pickEntity(Editor& ed, const VcGePoint3d& world, bool nested)
{
    const Picker picker = Picker::of(ed);
    if (!nested)
        return picker.entityAt(world);
    const auto pick = picker.nestedAt(world);
    return pick ? pick->entity : VcDbObjectId();
}

bool entityIsAt(Editor& ed, VcDbObjectId id, const VcGePoint3d& world) { return Picker::of(ed).isAt(id, world); }

VcGePoint3d pointOnEntity(Editor& ed, VcDbObjectId id)
{
    VcGeMatrix3d ucs;
    vcdbUcsMatrix(ucs, &ed.drawing());
    const auto point = Picker::of(ed).pointOn(id);
    return point ? ucs.inverse() * *point : VcGePoint3d();
}

}  // namespace vk::edit
