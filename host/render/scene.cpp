#include "host/render/scene.h"

#include "host/base/unicode.h"
#include "host/db/database.h"
#include "host/render/layer_overrides.h"
#include "host/render/list_painter.h"
#include "host/render/page_cull.h"
#include "sdk/vcdb_insert.h"
#include "sdk/vcdb_layout.h"
#include "sdk/vcdb_objects.h"
#include "sdk/vcdb_tables.h"
#include "sdk/vcdb_viewport.h"

#include <algorithm>

namespace vk::render {

namespace {

constexpr double kMillimetresPerInch = 25.4;
constexpr double kScreenPixelsPerMm = 96 / kMillimetresPerInch;

template <class Each>
void forEachLayout(const DatabaseCore& db, Each&& each)
{
    const auto* root = db.liveAs<VcDbDictionary>(db.rootDictionary());
    const auto* layouts = root ? db.liveAs<VcDbDictionary>(root->find("ACAD_LAYOUT")) : nullptr;
    if (!layouts)
        return;
    for (const auto& [name, id] : layouts->liveEntries())
        if (const auto* layout = db.liveAs<VcDbLayout>(id))
            each(name, *layout);
}

}

std::optional<LayoutRef> findLayout(const DatabaseCore& db, const std::string& name)
{
    LayoutRef model{db.modelSpace(), nullptr, true};
    std::optional<LayoutRef> found;
    forEachLayout(db, [&](const std::string& entry, const VcDbLayout& layout) {
        const bool isModel = layout.getBlockTableRecordId() == model.block;
        if (isModel)
            model.layout = &layout;
        else if (equalNoCase(entry, name) || equalNoCase(layout.nameUtf8(), name))
            found = LayoutRef{layout.getBlockTableRecordId(), &layout, false};
    });
    if (name.empty() || equalNoCase(name, "Model"))
        return model;
    // Files of old have one sheet and no object for it.
    if (!found && equalNoCase(name, "Layout1") && db.liveAs<VcDbBlockTableRecord>(db.paperSpace()))
        found = LayoutRef{db.paperSpace(), nullptr, false};
    return found;
}

// One look at a space: where it lands on the page, which layers it shows.
struct Scene::View {
    PageView page;
    ViewLooks looks;
    bool showsWindows = false;
};

Scene::Scene(const DatabaseCore& db, LayoutRef layout, Omissions& omissions)
    : m_db(db), m_layout(layout), m_omissions(omissions), m_blocks(std::make_unique<BlockLists>(db, omissions)),
      m_budget(std::make_unique<PaintBudget>())
{
}

Scene::~Scene() = default;

// What is seen

namespace {

// Keeps how far the drawing reaches, in page coordinates.
class MeasuringCanvas : public Canvas {
public:
    void stroke(std::span<const Point2> points, bool, const Pen&) override { add(points); }
    void fill(const Rings& rings, bool, std::uint32_t) override { add(rings.points); }
    void fillGradient(const Rings& rings, const Gradient&) override { add(rings.points); }
    void erase(const Rings& rings) override { add(rings.points); }
    bool image(const std::string&, Point2, VcGeVector2d, VcGeVector2d, const Rings& outline,
               const ImageAdjustment&) override
    {
        add(outline.points);
        return true;
    }
    void pushClip(const Rings& rings, bool inverted) override
    {
        Clip clip = m_clips.empty() ? Clip() : m_clips.back();
        if (!inverted && !rings.empty()) {
            Clip own{{1e300, 1e300}, {-1e300, -1e300}};
            for (const Point2& p : rings.points) {
                own.low = {std::min(own.low.x, p.x), std::min(own.low.y, p.y)};
                own.high = {std::max(own.high.x, p.x), std::max(own.high.y, p.y)};
            }
            clip.low = {std::max(clip.low.x, own.low.x), std::max(clip.low.y, own.low.y)};
            clip.high = {std::min(clip.high.x, own.high.x), std::min(clip.high.y, own.high.y)};
        }
        m_clips.push_back(clip);
    }
    void popClip() override { m_clips.pop_back(); }

    geom::Box3d box;

private:
    struct Clip {
        Point2 low{-1e300, -1e300}, high{1e300, 1e300};
    };
    void add(std::span<const Point2> points)
    {
        const Clip clip = m_clips.empty() ? Clip() : m_clips.back();
        for (const Point2& p : points)
            if (clip.low.x <= clip.high.x && clip.low.y <= clip.high.y)
                box.add(
                    VcGePoint3d(std::clamp(p.x, clip.low.x, clip.high.x), std::clamp(p.y, clip.low.y, clip.high.y), 0));
    }
    std::vector<Clip> m_clips;
};

PlaneWindow withMargin(PlaneWindow window)
{
    constexpr double kMargin = 0.02;
    double dx = window.width() * kMargin, dy = window.height() * kMargin;
    if (window.width() <= 0 && window.height() <= 0)
        dx = dy = 0.5;
    const double least = std::max(window.width(), window.height()) * kMargin;
    const VcGeVector2d margin(std::max(dx, least / 2), std::max(dy, least / 2));
    return {window.low - margin, window.high + margin};
}

}

PlaneWindow Scene::extents()
{
    constexpr double kEverywhere = 1e100;
    MeasuringCanvas measure;
    View view;
    view.page.measuring = true;
    view.page.thinnestPen = 0;
    view.page.pixelsPerMm = 0;
    view.page.low = {-kEverywhere, -kEverywhere};
    view.page.high = {kEverywhere, kEverywhere};
    Omissions untold;
    std::swap(untold, m_omissions);
    paintSpace(m_layout.block, measure, view);
    std::swap(untold, m_omissions);
    if (measure.box.isEmpty())
        return {{0, 0}, {12, 9}};
    return {measure.box.min.convert2d(), measure.box.max.convert2d()};
}

std::optional<double> Scene::paperScale() const
{
    if (m_layout.isModel)
        return std::nullopt;
    if (!m_layout.layout)
        return 1;
    double paper = 1, drawing = 1;
    m_layout.layout->getCustomPrintScale(paper, drawing);
    const double scale = paper > 0 && drawing > 0 ? paper / drawing : 1;
    return scale * (m_layout.layout->plotPaperUnits() == VcDbPlotSettings::kInches ? kMillimetresPerInch : 1);
}

// The paper in the layout's coordinates, whose origin is the corner of what can be printed on. The limits, where they are of
// the paper's size, say the same with the printer's own corner.
std::optional<PlaneWindow> Scene::sheet() const
{
    if (m_layout.isModel || !m_layout.layout)
        return std::nullopt;
    const VcDbLayout& layout = *m_layout.layout;
    double width = 0, height = 0;
    layout.getPlotPaperSize(width, height);
    if (!(width > 0 && height > 0))
        return std::nullopt;
    const bool turned = layout.plotRotation() % 2 != 0;
    if (turned)
        std::swap(width, height);
    const double unit = 1 / *paperScale();
    width *= unit;
    height *= unit;
    PlaneWindow limits;
    layout.getLimits(limits.low, limits.high);
    const auto near = [](double a, double b) { return std::fabs(a - b) < 0.02 * b; };
    if (near(limits.width(), width) && near(limits.height(), height))
        return limits;
    double left = 0, bottom = 0, right = 0, top = 0;
    layout.getPlotPaperMargins(left, bottom, right, top);
    const Point2 corner(-(turned ? bottom : left) * unit, -(turned ? left : bottom) * unit);
    return PlaneWindow{corner, corner + VcGeVector2d(width, height)};
}

PlaneWindow Scene::wholeWindow()
{
    const PlaneWindow reach = extents();
    const auto paper = sheet();
    if (!paper)
        return withMargin(reach);
    // A sheet that shows nothing of the drawing is of no use.
    const bool meets = reach.low.x < paper->high.x && reach.high.x > paper->low.x && reach.low.y < paper->high.y &&
                       reach.high.y > paper->low.y;
    return meets ? *paper : withMargin(reach);
}

// Painting

namespace {

bool isDark(std::uint32_t argb)
{
    if (argb >> 24 == 0)
        return false;
    return 0.299 * (argb >> 16 & 0xff) + 0.587 * (argb >> 8 & 0xff) + 0.114 * (argb & 0xff) < 128;
}

// The window in the middle of the page, as large as fits, y down.
VcGeMatrix3d pageMatrix(const PlaneWindow& window, const Scene::Page& page, double& scale)
{
    scale = std::min(page.width / window.width(), page.height / window.height());
    const Point2 middle = window.low + (window.high - window.low) * 0.5;
    VcGeMatrix3d m;
    m.entry[0][0] = scale;
    m.entry[1][1] = -scale;
    m.entry[0][3] = page.width / 2 - middle.x * scale;
    m.entry[1][3] = page.height / 2 + middle.y * scale;
    return m;
}

}

void Scene::paint(Canvas& canvas, const PlaneWindow& window, const Page& page)
{
    View view;
    double scale = 1;
    view.page.toPage = pageMatrix(window, page, scale);
    view.page.high = {page.width, page.height};
    const auto paper = paperScale();
    view.page.pixelsPerMm = paper ? scale / *paper : kScreenPixelsPerMm;
    view.page.thinnestPen = page.exact ? 0.25 : 1;
    view.page.tolerance = page.exact ? 0.02 : 0.1;
    view.looks.darkPage = isDark(page.background);
    view.showsWindows = !m_layout.isModel;
    paintSpace(m_layout.block, canvas, view);
    if (m_budget->items == 0)
        m_omissions.add("rest of a drawing that is too large to be painted");
}

// Viewports lie beneath what is drawn on the sheet.
void Scene::paintSpace(VcDbObjectId space, Canvas& canvas, const View& view)
{
    LookResolver looks(m_db, view.looks);
    ListPainter painter(m_db, *m_blocks, canvas, looks, view.page, *m_budget, m_omissions);
    const std::vector<const VcDbEntity*> entities = drawOrder(m_db, space);
    for (const VcDbEntity* entity : entities)
        if (const auto* viewport = VcDbViewport::cast(entity); viewport && view.showsWindows && viewport->number() != 1)
            paintViewport(*viewport, canvas, view);
    DisplayList list;
    ListBuilder builder(list, m_db, m_omissions);
    PageCull cull(m_db, view.page);
    for (const VcDbEntity* entity : entities) {
        const ResolvedLook& look = looks.atTop(entity->props());
        if (!look.visible && (look.frozen || !entity->isKindOf(VcDbBlockReference::desc())))
            continue;
        if (cull.isOff(*entity))
            continue;
        list.clear();
        builder.add(*entity);
        painter.paint(list);
    }
}

namespace {

// What lies in the plane of the target has its true size.
VcGeMatrix3d cameraMatrix(const VcDbViewport& viewport)
{
    VcGeMatrix3d m;
    const double distance = viewport.viewDirection().length();
    if (viewport.isPerspectiveOn() && distance > 0)
        m.entry[3][2] = -1 / distance;
    return m;
}

// From the world to the sheet, for what a viewport shows.
VcGeMatrix3d viewportMatrix(const VcDbViewport& viewport)
{
    const VcGeMatrix3d toView = VcGeMatrix3d::rotation(viewport.twistAngle(), VcGeVector3d::zAxis()) *
                                VcGeMatrix3d::worldToPlane(viewport.viewDirection().normal()) *
                                VcGeMatrix3d::translation(-viewport.viewTarget().asVector());
    const VcGePoint2d seen = viewport.viewCenter();
    const VcGeVector3d middle(seen.x, seen.y, 0);
    return VcGeMatrix3d::translation(viewport.centerPoint().asVector()) *
           VcGeMatrix3d::scaling(viewport.customScale()) * VcGeMatrix3d::translation(-middle) * cameraMatrix(viewport) *
           toView;
}

std::vector<Point2> rectangleOf(const VcDbViewport& viewport, const VcGeMatrix3d& toPage)
{
    const VcGePoint3d c = viewport.centerPoint();
    std::vector<Point2> corners;
    for (const auto& [x, y] : {std::pair{-0.5, -0.5}, {0.5, -0.5}, {0.5, 0.5}, {-0.5, 0.5}})
        corners.push_back((toPage * (c + VcGeVector3d(x * viewport.width(), y * viewport.height(), 0))).convert2d());
    return corners;
}

}

void Scene::paintViewport(const VcDbViewport& viewport, Canvas& canvas, const View& sheet)
{
    if (!viewport.isOn() || !(viewport.viewHeight() > 0) || !(viewport.height() > 0) || !(viewport.width() > 0))
        return;
    View view = sheet;
    view.showsWindows = false;
    view.page.toPage = sheet.page.toPage * viewportMatrix(viewport);
    view.looks.frozenLayers.insert(viewport.frozenLayers().begin(), viewport.frozenLayers().end());
    view.looks.overrides = layerOverrides(m_db, viewport.objectId());
    if (m_db.header().integer("$PSLTSCALE", 1) != 0)
        view.page.linetypeScale = 1 / viewport.customScale();
    const Rings border = borderOf(viewport, sheet);
    if (border.empty())
        return;
    view.page.low = view.page.high = border.points.front();
    for (const Point2& p : border.points) {
        view.page.low = {std::min(view.page.low.x, p.x), std::min(view.page.low.y, p.y)};
        view.page.high = {std::max(view.page.high.x, p.x), std::max(view.page.high.y, p.y)};
    }
    canvas.pushClip(border, false);
    paintSpace(m_db.modelSpace(), canvas, view);
    canvas.popClip();
}

// The entity that clips the viewport, or its rectangle.
Rings Scene::borderOf(const VcDbViewport& viewport, const View& sheet)
{
    Rings border;
    const auto* clip = viewport.isNonRectClipOn() ? m_db.liveAs<VcDbEntity>(viewport.nonRectClipEntityId()) : nullptr;
    if (clip) {
        DisplayList list;
        ListBuilder(list, m_db, m_omissions).add(*clip);
        const Flattener flattener(list.bounds.diagonal() * 1e-4);
        for (const Figure& figure : list.figures) {
            std::vector<VcGePoint3d> points;
            flattener.add(points, list, figure);
            for (const VcGePoint3d& p : points)
                border.points.push_back((sheet.page.toPage * p).convert2d());
            border.endRing();
        }
    }
    if (border.empty()) {
        border.points = rectangleOf(viewport, sheet.page.toPage);
        border.endRing();
    }
    return border;
}

}  // namespace vk::render
