#include "host/edit/snap.h"

#include "host/base/numbers.h"
#include "host/base/unicode.h"
#include "host/db/curve_of.h"
#include "host/db/database.h"
#include "host/edit/editor.h"
#include "host/edit/pick.h"
#include "host/edit/snap_points.h"
#include "host/edit/sysvars.h"
#include "host/edit/view.h"
#include "host/geom/apparent.h"
#include "host/geom/curve_edit.h"
#include "sdk/vcdb_chains.h"
#include "sdk/vcdb_curves.h"
#include "sdk/vcdb_dims.h"
#include "sdk/vcdb_hatch.h"
#include "sdk/vcdb_insert.h"
#include "sdk/vcdb_text.h"

namespace vk::edit {

namespace {

struct ModeName {
    std::string_view word;  // any beginning of it of three letters or more
    int mode;
    const char* shown;
};

constexpr ModeName kModes[] = {
    {"ENDPOINT", kSnapEnd, "endpoint"},
    {"MIDPOINT", kSnapMiddle, "midpoint"},
    {"CENTER", kSnapCenter, "center"},
    {"NODE", kSnapNode, "node"},
    {"QUADRANT", kSnapQuadrant, "quadrant"},
    {"INTERSECTION", kSnapIntersection, "intersection"},
    {"INSERTION", kSnapInsertion, "insertion point"},
    {"PERPENDICULAR", kSnapPerpendicular, "perpendicular"},
    {"TANGENT", kSnapTangent, "tangent"},
    {"NEAREST", kSnapNearest, "nearest point"},
    {"GCENTER", kSnapGeometricCenter, "geometric center"},
    {"APPINT", kSnapApparent, "apparent intersection"},
    {"APPARENT", kSnapApparent, "apparent intersection"},
    {"EXTENSION", kSnapExtension, "extension"},
    {"PARALLEL", kSnapParallel, "parallel"},
    {"NONE", 0, "point"},
    {"QUICK", 0, "point"},
};

std::optional<int> modeOf(std::string_view word)
{
    if (word.starts_with('_') || word.starts_with('.'))
        word.remove_prefix(1);
    if (word.size() < 3)
        return std::nullopt;
    for (const ModeName& m : kModes)
        if (m.word.size() >= word.size() && equalNoCase(m.word.substr(0, word.size()), word))
            return m.mode;
    return std::nullopt;
}

VcGeVector3d eyeOf(const PickView& view) { return view.x.crossProduct(view.y).normal(); }

// Gathers what a pick comes near to. Walks go through blocks; the reach is that of the aperture.
class Gathering {
public:
    Gathering(Editor& ed, const VcGePoint3d& at)
        : m_ed(ed), m_view(PickView::of(ed)), m_layers(SeenLayers::of(ed)), m_at(at)
    {
        m_view.reach = double(ed.vars().integer("APERTURE")) * pixelSize(ed);
    }

    SnapScene take()
    {
        const Picker picker(m_ed.db(), m_ed.db().currentSpace(), m_view, m_layers);
        for (const VcDbObjectId id : picker.allAt(m_at))
            if (const auto* entity = m_ed.db().liveAs<VcDbEntity>(id))
                addEntity(*entity);
        std::stable_sort(m_found.begin(), m_found.end(),
                         [](const Found& a, const Found& b) { return a.distance < b.distance; });
        for (Found& found : m_found)
            m_scene.curves.push_back(std::move(found.curve));
        return std::move(m_scene);
    }

private:
    struct Found {
        SnapCurve curve;
        double distance;
    };

    void addEntity(const VcDbEntity& entity)
    {
        if (const auto* reference = VcDbBlockReference::cast(&entity))
            m_scene.insertions.push_back(reference->position());
        ShapeWalk::Options options;
        options.tolerance = m_view.reach / 64;
        options.area =
            PlanArea{{m_at.x - m_view.reach, m_at.y - m_view.reach}, {m_at.x + m_view.reach, m_at.y + m_view.reach}};
        if (!m_view.isPlan())
            options.area.reset();
        ShapeWalk shape(m_ed.db(), m_layers, options);
        std::vector<VcDbObjectId> before;
        shape.walk(entity, [&](const Outline&) {
            std::vector<VcDbObjectId> path = shape.containers();
            path.push_back(shape.part());
            const bool isNew = path != before || !shape.toWorld().isEqualTo(m_partToWorld);
            before = std::move(path);
            m_partToWorld = shape.toWorld();
            if (const auto* part = isNew ? m_ed.db().liveAs<VcDbEntity>(shape.part()) : nullptr)
                addPart(entity.objectId(), *part, shape.toWorld());
            return true;
        });
    }

    void addPart(VcDbObjectId top, const VcDbEntity& part, const VcGeMatrix3d& m)
    {
        if (const auto* text = VcDbText::cast(&part))
            m_scene.insertions.push_back(m * (text->isDefaultAlignment() ? text->position() : text->alignmentPoint()));
        else if (const auto* paragraph = VcDbMText::cast(&part))
            m_scene.insertions.push_back(m * paragraph->location());
        else if (const auto* shape = VcDbShape::cast(&part))
            m_scene.insertions.push_back(m * shape->position());
        else if (const auto* point = VcDbPoint::cast(&part))
            m_scene.nodes.push_back(m * point->position());
        else if (const auto curve = curveOf(part))
            addCurve(top, geom::transformed(*curve, m));
        else if (!VcDbHatch::cast(&part))
            addDrawn(top, part, m);
    }

    void addDrawn(VcDbObjectId top, const VcDbEntity& part, const VcGeMatrix3d& m)
    {
        DrawnCurves().visit(part, [&](const geom::Curve& curve) {
            addCurve(top, geom::transformed(curve, m));
            return true;
        });
    }

    void addCurve(VcDbObjectId top, geom::Curve curve)
    {
        const auto param = geom::paramSeenAt(curve, m_at, eyeOf(m_view));
        if (!param)
            return;
        const double distance = (m_view.project(geom::pointAt(curve, *param)) - m_view.project(m_at)).length();
        if (distance <= m_view.reach)
            m_found.push_back({{top, std::move(curve), *param}, distance});
    }

    Editor& m_ed;
    PickView m_view;
    SeenLayers m_layers;
    VcGePoint3d m_at;
    VcGeMatrix3d m_partToWorld;
    std::vector<Found> m_found;
    SnapScene m_scene;
};

// Keeps the point that is seen nearest to the pick.
class Nearest {
public:
    Nearest(const PickView& view, const VcGePoint3d& at) : m_view(view), m_at(view.project(at)) {}
    void offer(const VcGePoint3d& p)
    {
        const double distance = (m_view.project(p) - m_at).length();
        if (!m_best || distance < m_distance) {
            m_best = p;
            m_distance = distance;
        }
    }
    void offer(const std::vector<VcGePoint3d>& points)
    {
        for (const VcGePoint3d& p : points)
            offer(p);
    }
    bool isEmpty() const { return !m_best; }
    const std::optional<VcGePoint3d>& best() const { return m_best; }

private:
    const PickView& m_view;
    VcGePoint2d m_at;
    std::optional<VcGePoint3d> m_best;
    double m_distance = 0;
};

void offerOf(Editor& ed, Nearest& nearest, int modes, const SnapCurve& c, const VcGePoint3d& at,
             const std::optional<VcGePoint3d>& from)
{
    const geom::Curve piece = pieceAt(c.curve, c.param);
    VcGeMatrix3d ucs;
    vcdbUcsMatrix(ucs, &ed.drawing());
    if (modes & kSnapEnd)
        nearest.offer(endsOf(piece));
    if (modes & kSnapMiddle)
        nearest.offer(middleOf(piece));
    if (modes & kSnapCenter)
        nearest.offer(centerOf(piece));
    if (modes & kSnapQuadrant)
        nearest.offer(quadrantsOf(piece, ucs * VcGeVector3d::xAxis()));
    if (modes & kSnapNearest)
        nearest.offer(geom::pointAt(c.curve, c.param));
    if (modes & kSnapGeometricCenter)
        nearest.offer(centroidOf(c.curve));
    if ((modes & kSnapPerpendicular) && from)
        nearest.offer(perpendicularsOf(piece, *from));
    if ((modes & kSnapTangent) && from)
        nearest.offer(tangentsOf(piece, *from, at));
}

void offerCrossings(Nearest& nearest, int modes, const std::vector<SnapCurve>& curves, const VcGeVector3d& eye)
{
    // Of what lies closer than a pixel or so there can be very much; the nearest ones decide.
    constexpr std::size_t kMost = 64;
    const std::size_t count = std::min(curves.size(), kMost);
    for (std::size_t i = 0; i < count; ++i) {
        for (const geom::Crossing& c : geom::selfCrossings(curves[i].curve))
            nearest.offer(c.point);
        for (std::size_t j = i + 1; j < count; ++j) {
            if (modes & kSnapIntersection)
                nearest.offer(geom::contactPoints(geom::intersect(curves[i].curve, curves[j].curve)));
            if (modes & kSnapApparent)
                for (const geom::Crossing& c : geom::apparentCrossings(curves[i].curve, curves[j].curve, eye))
                    nearest.offer(c.point);
        }
    }
}

}

std::optional<int> parseSnapModes(std::string_view text)
{
    int modes = 0;
    for (std::size_t at = 0; at <= text.size();) {
        const std::size_t end = std::min(text.find(',', at), text.size());
        const auto mode = modeOf(trimBlanks(text.substr(at, end - at)));
        if (!mode)
            return std::nullopt;
        modes |= *mode;
        at = end + 1;
    }
    return modes;
}

std::string snapNames(int modes)
{
    std::string names;
    int told = 0;
    for (const ModeName& m : kModes)
        if ((modes & m.mode) && !(told & m.mode)) {
            names += (names.empty() ? "" : " or ") + std::string(m.shown);
            told |= m.mode;
        }
    return names;
}

SnapScene snapScene(Editor& ed, const VcGePoint3d& world) { return Gathering(ed, world).take(); }

std::optional<VcGePoint3d> snapTo(Editor& ed, int modes, const VcGePoint3d& world,
                                  const std::optional<VcGePoint3d>& from)
{
    const SnapScene scene = snapScene(ed, world);
    const PickView view = PickView::of(ed);
    Nearest nearest(view, world);
    for (const SnapCurve& curve : scene.curves)
        offerOf(ed, nearest, modes, curve, world, from);
    if (modes & kSnapNode)
        nearest.offer(scene.nodes);
    if (modes & kSnapInsertion)
        nearest.offer(scene.insertions);
    if (modes & (kSnapIntersection | kSnapApparent))
        offerCrossings(nearest, modes, scene.curves, eyeOf(view));
    return nearest.best();
}

}  // namespace vk::edit
