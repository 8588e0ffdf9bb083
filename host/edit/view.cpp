#include "host/edit/view.h"

#include "host/db/coordinate_system.h"
#include "host/db/database.h"
#include "host/edit/editor.h"
#include "host/edit/select_view.h"
#include "host/edit/sysvars.h"
#include "host/edit/viewports.h"
#include "sdk/vcdb_tables.h"
#include "sdk/vcdb_records.h"
#include "sdk/vcdb_viewport.h"

#include <unordered_map>

namespace vk::edit {

namespace {

constexpr std::size_t kMostKept = 10;
constexpr double kMargin = 1.02;

// By the slot of the space's block, or of the viewport.
struct Views {
    std::uint32_t database = 0;
    std::unordered_map<std::uint32_t, View> shown;
    std::unordered_map<std::uint32_t, std::vector<View>> before;
};
Views s_views;

Views& viewsOf(const Editor& editor)
{
    if (s_views.database != editor.db().serial())
        s_views = {editor.db().serial(), {}, {}};
    return s_views;
}

std::uint32_t currentKey(const Editor& editor)
{
    const VcDbViewport* viewport = activeViewport(editor);
    return viewport ? viewport->objectId().slot() : editor.db().currentSpace().slot();
}

// The view of the model or of a sheet, which undo brings back.
class ViewChange : public UndoAction {
public:
    ViewChange(std::uint32_t key, View other) : m_key(key), m_other(std::move(other)) {}
    void swap(DatabaseCore& db) override
    {
        if (s_views.database == db.serial())
            std::swap(s_views.shown[m_key], m_other);
    }

private:
    std::uint32_t m_key;
    View m_other;
};

View viewIn(const VcDbViewport& viewport)
{
    View view;
    view.center = {viewport.viewCenter().x, viewport.viewCenter().y, 0};
    view.height = viewport.viewHeight();
    view.target = viewport.viewTarget();
    view.direction = viewport.viewDirection();
    view.twist = viewport.twistAngle();
    view.lensLength = viewport.lensLength();
    view.frontClip = viewport.frontClipDistance();
    view.backClip = viewport.backClipDistance();
    view.mode = viewport.viewMode() & ~kUcsFollowOn;
    return view;
}

void setView(VcDbViewport& viewport, const View& view)
{
    viewport.setViewCenter({view.center.x, view.center.y});
    viewport.setViewHeight(view.height);
    viewport.setViewTarget(view.target);
    viewport.setViewDirection(view.direction);
    viewport.setTwistAngle(view.twist);
    viewport.setLensLength(view.lensLength);
    viewport.setClipDistances(view.frontClip, view.backClip);
    viewport.setViewMode(std::int16_t(view.mode | (viewport.viewMode() & kUcsFollowOn)));
}

void giveLensAndClips(VcDbAbstractViewTableRecord& record, const View& view)
{
    record.setLensLength(view.lensLength);
    record.setFrontClipDistance(view.frontClip);
    record.setBackClipDistance(view.backClip);
    record.setPerspectiveEnabled((view.mode & kPerspectiveView) != 0);
    record.setFrontClipEnabled((view.mode & kFrontClipOn) != 0);
    record.setBackClipEnabled((view.mode & kBackClipOn) != 0);
    record.setFrontClipAtEye((view.mode & kFrontClipNotAtEye) == 0);
}

// What the drawing opens with next time.
void keepInDrawing(Editor& editor, const View& view)
{
    const DatabaseCore& db = editor.db();
    if (!isOnSheet(editor)) {
        if (auto* record = db.liveAs<VcDbViewportTableRecord>(db.findRecord(NameTable::Viewport, "*Active"))) {
            record->setCenterPoint({view.center.x, view.center.y});
            record->setHeight(view.height);
            record->setTarget(view.target);
            record->setViewDirection(view.direction);
            record->setViewTwist(view.twist);
            giveLensAndClips(*record, view);
        }
        return;
    }
    const VcDbObjectId sheet = vcedGetCurViewportObjectId();
    if (auto* viewport = db.liveAs<VcDbViewport>(sheet))
        setView(*viewport, view);
}

double aspectOf(Editor& editor)
{
    const VcGePoint2d pixels = viewportPixels(editor);
    return pixels.x / pixels.y;
}

View initialView(Editor& editor)
{
    View view;
    const VcDbExtents extents = spaceExtents(editor);
    if (extents.isEmpty()) {
        view.center = {6, 4.5, 0};
        view.height = 9;
        return view;
    }
    return viewOf(editor, view, extents, kMargin);
}

// Each entity's box is moved by the matrix.
VcDbExtents extentsThrough(const DatabaseCore& db, VcDbObjectId block, const VcGeMatrix3d* m)
{
    VcDbExtents all;
    const auto* space = db.objectAs<VcDbBlockTableRecord>(block);
    const SeenLayers layers(db, {});
    const bool isSheet = block != db.modelSpace();
    if (!space)
        return all;
    for (const std::uint32_t slot : space->memberSlots()) {
        const auto* entity = VcDbEntity::cast(db.objectAt(slot));
        if (!entity || entity->isErased())
            continue;
        // The viewport of the sheet itself is no object on it.
        const auto* viewport = isSheet ? VcDbViewport::cast(entity) : nullptr;
        VcDbExtents one;
        if (layers.isFrozen(entity->layerId()) || (viewport && viewport->number() == 1) ||
            entity->getGeomExtents(one) != Vcad::eOk)
            continue;
        if (m)
            one.transformBy(*m);
        all.addExt(one);
    }
    return all;
}

bool isPlanView(const View& view) { return view.direction.isCodirectionalTo(VcGeVector3d::zAxis()) && view.twist == 0; }

void change(Editor& editor, const View& view)
{
    if (VcDbViewport* viewport = activeViewport(editor)) {
        setView(*viewport, view);
        return;
    }
    View& shown = currentView(editor);
    if (editor.db().undo().isRecording())
        editor.db().undo().record(std::make_unique<ViewChange>(currentKey(editor), shown));
    shown = view;
    keepInDrawing(editor, view);
}

}

VcDbExtents extentsOfSpace(const DatabaseCore& db, VcDbObjectId block) { return extentsThrough(db, block, nullptr); }
VcDbExtents spaceExtents(const Editor& editor)
{
    return extentsThrough(editor.db(), editor.db().currentSpace(), nullptr);
}

VcDbExtents displayExtents(Editor& editor, const View& view)
{
    const VcGeMatrix3d m = worldToDisplay(view);
    return extentsThrough(editor.db(), editor.db().currentSpace(),
                          isPlanView(view) && view.target == VcGePoint3d() ? nullptr : &m);
}

View viewOf(Editor& editor, const View& like, const VcDbExtents& box, double margin)
{
    View view = like;
    const VcGeVector3d size = box.maxPoint() - box.minPoint();
    view.center = box.minPoint() + size * 0.5;
    view.center.z = 0;
    view.height = std::max({size.y, size.x / aspectOf(editor), 1e-9}) * margin;
    return view;
}

View viewOf(const VcDbViewTableRecord& record, View from)
{
    from.center = {record.centerPoint().x, record.centerPoint().y, 0};
    from.height = record.height();
    from.target = record.target();
    from.direction = record.viewDirection();
    from.twist = record.viewTwist();
    from.lensLength = record.lensLength();
    from.frontClip = record.frontClipDistance();
    from.backClip = record.backClipDistance();
    from.mode = record.viewMode() & ~kUcsFollowOn;
    return from;
}

void fillViewRecord(Editor& editor, VcDbViewTableRecord& record, const View& view)
{
    record.setCenterPoint({view.center.x, view.center.y});
    record.setHeight(view.height);
    record.setWidth(view.height * aspectOf(editor));
    record.setTarget(view.target);
    record.setViewDirection(view.direction);
    record.setViewTwist(view.twist);
    giveLensAndClips(record, view);
}

void resetView(Editor& editor) { viewsOf(editor).shown.erase(currentKey(editor)); }

View& currentView(Editor& editor)
{
    Views& views = viewsOf(editor);
    const VcDbViewport* viewport = activeViewport(editor);
    const std::uint32_t key = currentKey(editor);
    if (viewport)
        return views.shown[key] = viewIn(*viewport);
    const auto [at, isNew] = views.shown.try_emplace(key);
    if (isNew)
        at->second = initialView(editor);
    return at->second;
}

void setCurrentView(Editor& editor, const View& view)
{
    const VcDbViewport* viewport = activeViewport(editor);
    if (viewport && viewport->isLocked())
        throw CommandError{"The view of this viewport is locked. MVIEW with Lock Off opens it."};
    auto& before = viewsOf(editor).before[currentKey(editor)];
    before.push_back(currentView(editor));
    if (before.size() > kMostKept)
        before.erase(before.begin());
    change(editor, view);
}

bool restorePreviousView(Editor& editor)
{
    auto& before = viewsOf(editor).before[currentKey(editor)];
    if (before.empty())
        return false;
    const View view = before.back();
    before.pop_back();
    change(editor, view);
    return true;
}

VcGePoint2d viewportPixels(Editor& editor)
{
    const VcDbViewport* viewport = activeViewport(editor);
    if (!viewport)
        return {kScreenWidth, kScreenHeight};
    const double ratio = viewport->width() / viewport->height();
    return ratio * kScreenHeight > kScreenWidth ? VcGePoint2d(kScreenWidth, kScreenWidth / ratio)
                                                : VcGePoint2d(kScreenHeight * ratio, kScreenHeight);
}

double pixelSize(Editor& editor) { return currentView(editor).height / viewportPixels(editor).y; }

double pickAperture(Editor& editor) { return double(editor.vars().integer("PICKBOX")) * pixelSize(editor); }

VcGeMatrix3d worldToDisplay(const View& view)
{
    if (isPlanView(view))
        return VcGeMatrix3d::translation(-view.target.asVector());
    const VcGeMatrix3d plane = VcGeMatrix3d::worldToPlane(view.direction.normal());
    return VcGeMatrix3d::rotation(view.twist, VcGeVector3d::zAxis()) * plane *
           VcGeMatrix3d::translation(-view.target.asVector());
}

VcGeMatrix3d worldToDisplay(Editor& editor) { return worldToDisplay(currentView(editor)); }

}
