// Paints display lists on a canvas, as seen in one view.
#pragma once

#include "host/render/block_lists.h"
#include "host/render/canvas.h"
#include "host/render/dashes.h"
#include "host/render/flatten.h"
#include "host/render/looks.h"
#include "sdk/vcdb_records.h"

#include <functional>

namespace vk::render {

struct PageView {
    VcGeMatrix3d toPage;       // from the world to pixels
    Point2 low, high;          // the part of the page that is drawn on
    double pixelsPerMm = 1;    // of lineweights
    double thinnestPen = 1;    // pixels
    double tolerance = 0.1;    // of curves, in pixels
    double linetypeScale = 1;  // of the whole drawing in this view
    // Only how far things reach is asked for: texts, images and patterns by their outlines, nothing endless.
    bool measuring = false;
};

// What painting may cost altogether, so that blocks in blocks in blocks come to an end.
struct PaintBudget {
    std::size_t items = 200'000'000;
};

class VKHOST_API ListPainter {
public:
    ListPainter(const DatabaseCore& db, BlockLists& blocks, Canvas& canvas, LookResolver& looks, const PageView& view,
                PaintBudget& budget, Omissions& omissions);

    // A list in world coordinates.
    void paint(const DisplayList& list);
    // Draws what a viewport shows of the model.
    std::function<void(VcDbObjectId viewport)> onWindow;

private:
    // From list coordinates to pixels. In a perspective view what is behind the camera is at no number at all.
    struct Projection {
        double xx, xy, xz, x0, yx, yy, yz, y0;
        double wx, wy, wz, w0;
        double scale;  // pixels of the longest unit
        bool isPerspective;
        explicit Projection(const VcGeMatrix3d& m);
        Point2 operator()(const VcGePoint3d& p) const
        {
            const Point2 flat(xx * p.x + xy * p.y + xz * p.z + x0, yx * p.x + yy * p.y + yz * p.z + y0);
            return isPerspective ? seen(flat, depth(p)) : flat;
        }
        // Against 1 at the target of the view and 0 at the camera.
        double depth(const VcGePoint3d& p) const { return wx * p.x + wy * p.y + wz * p.z + w0; }
        static Point2 seen(const Point2& flat, double depth);
        // What is nearly the same about a point and straight: vectors go by such ones only.
        Projection about(const VcGePoint3d& p) const;
        VcGeVector2d operator()(const VcGeVector3d& v) const
        {
            return {xx * v.x + xy * v.y + xz * v.z, yx * v.x + yy * v.y + yz * v.z};
        }
    };
    struct Place {
        const DisplayList& list;
        const VcGeMatrix3d& matrix;
        Projection project;
        Flattener flattener;
        const ResolvedLook* reference;
    };
    void paintList(const DisplayList& list, const VcGeMatrix3d& matrix, const ResolvedLook* reference);
    void paintItem(const Place& place, const Item& item, const ResolvedLook& look);
    ResolvedLook lookOf(const Place& place, std::uint32_t index);

    void paintFigures(const Place& place, const Item& item, const ResolvedLook& look);
    void paintFigure(const Place& place, const Item& item, const Figure& figure, const ResolvedLook& look);
    void paintDashes(const Place& place, std::span<const VcGePoint3d> points, const DashPattern& pattern,
                     const ResolvedLook& look);
    void paintDashMark(const Place& place, const MeasuredLine& line, double along, std::size_t element,
                       const ResolvedLook& look);
    struct DashMark {
        VcGePoint3d origin;
        VcGeVector3d x, y;
        double scale;  // of the linetype
    };
    void paintDashText(const Place& place, const DashMark& mark, const VcDbLinetypeTableRecord::Dash& dash,
                       const ResolvedLook& look);
    void paintDashShape(const Place& place, const DashMark& mark, const VcDbLinetypeTableRecord::Dash& dash,
                        const ResolvedLook& look);
    void paintText(const Place& place, const TextRun& run, const ResolvedLook& look);
    void paintHatch(const Place& place, const HatchArea& area, const ResolvedLook& look);
    void paintPattern(const Place& place, const HatchArea& area, const Rings& rings, const ResolvedLook& look);
    void paintGradient(const Place& place, const HatchArea& area, const Rings& rings, const ResolvedLook& look);
    void paintImage(const Place& place, const Picture& picture, const ResolvedLook& look);
    void paintMark(const Place& place, const PointMark& mark, const ResolvedLook& look);
    void paintEndless(const Place& place, const EndlessLine& line, const ResolvedLook& look);
    void paintUse(const Place& place, const BlockUse& use, const ResolvedLook& look);
    void paintCell(const ClipFrame* clip, BlockLists::BlockList& block, const VcGeMatrix3d& matrix,
                   const ResolvedLook& look);

    void pushClip(const ClipFrame& clip, const VcGeMatrix3d& matrix);

    Rings ringsOf(const Place& place, std::uint32_t first, std::uint32_t count);
    void strokeInFront(const Place& place, std::span<const VcGePoint3d> points, const Pen& pen);
    void strokeProjected(const Place& place, std::span<const VcGePoint3d> points, const Pen& pen);
    void strokePage(std::span<const Point2> points, const Pen& pen);
    void dot(const Point2& at, const Pen& pen);
    void fillBands(const Rings& rings, std::uint32_t argb);
    void strokeRing(std::span<const Point2> ring, const Pen& pen);
    void fillPage(const Rings& rings, bool nonZero, std::uint32_t argb);
    Pen penOf(const ResolvedLook& look) const;
    bool isSeen(const Point2& low, const Point2& high, double margin) const;

    const DatabaseCore& m_db;
    BlockLists& m_blocks;
    Canvas& m_canvas;
    LookResolver& m_looks;
    const PageView& m_view;
    PaintBudget& m_budget;
    Omissions& m_omissions;
    double m_globalLinetypeScale;
    int m_depth = 0;
    // Reused, so that painting a line takes no memory from the heap.
    std::vector<VcGePoint3d> m_points, m_dash;
    std::vector<std::size_t> m_corners;
    std::vector<Point2> m_page;
};

}  // namespace vk::render
