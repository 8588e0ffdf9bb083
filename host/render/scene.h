// A layout of a drawing as a picture: what part of it is seen, at what scale, and its painting with all its viewports.
#pragma once

#include "host/render/canvas.h"
#include "host/render/list_builder.h"
#include "host/geom/box.h"

#include <optional>

class VcDbLayout;
class VcDbViewport;

namespace vk::render {

class BlockLists;
struct PaintBudget;

// A part of the plane, in drawing units.
struct PlaneWindow {
    Point2 low, high;
    double width() const { return high.x - low.x; }
    double height() const { return high.y - low.y; }
};

struct LayoutRef {
    VcDbObjectId block;
    const VcDbLayout* layout = nullptr;  // null where the drawing has no object for it
    bool isModel = false;
};
// By name without regard to case; the model for "" and "Model".
VKHOST_API std::optional<LayoutRef> findLayout(const DatabaseCore& db, const std::string& name);

class VKHOST_API Scene {
public:
    Scene(const DatabaseCore& db, LayoutRef layout, Omissions& omissions);
    ~Scene();

    // The extents with a margin of two in a hundred, or the sheet of a layout.
    PlaneWindow wholeWindow();
    // Millimetres of paper a drawing unit; nothing for the model.
    std::optional<double> paperScale() const;

    struct Page {
        double width = 1920, height = 1080;
        std::uint32_t background = 0xffffffff;
        bool exact = false;  // of pages that can be enlarged
    };
    void paint(Canvas& canvas, const PlaneWindow& window, const Page& page);

private:
    struct View;
    std::optional<PlaneWindow> sheet() const;
    PlaneWindow extents();
    void paintSpace(VcDbObjectId space, Canvas& canvas, const View& view);
    Rings borderOf(const VcDbViewport& viewport, const View& sheet);
    void paintViewport(const VcDbViewport& viewport, Canvas& canvas, const View& sheet);

    const DatabaseCore& m_db;
    const LayoutRef m_layout;
    Omissions& m_omissions;
    std::unique_ptr<BlockLists> m_blocks;
    std::unique_ptr<PaintBudget> m_budget;
};

}  // namespace vk::render
