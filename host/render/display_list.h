// What entities look like, before it is known at what size and with what colours they are drawn: strokes, areas, texts,
// hatches, pictures and uses of blocks, in the coordinates of the space or block that the entities stand in.
//
// Curves stay curves, so that one list serves every zoom. Looks are properties of the entities as they are: BYLAYER,
// BYBLOCK and layer 0 are settled when the list is painted, so that one list serves every use of its block.
#pragma once

#include "host/base/api.h"
#include "host/db/entity_props.h"
#include "host/geom/arbitrary_axis.h"
#include "host/geom/box.h"
#include "host/geom/curve.h"
#include "host/text/font.h"
#include "host/text/text_line.h"
#include "sdk/vcdb_hatch.h"

#include <deque>
#include <optional>
#include <string>
#include <vector>

namespace vk::render {

// center + u * cos t + v * sin t, from a parameter over a sweep that may be negative.
struct EllipseArc {
    VcGePoint3d center;
    VcGeVector3d u, v;
    double from = 0, sweep = geom::kTwoPi;
};

// A part of a figure: points of the list, one arc, or one spline.
struct Piece {
    enum Kind : std::uint8_t { Chain, Arc, Spline };
    Kind kind = Chain;
    std::uint32_t first = 0, count = 0;
};

// Pieces that follow each other.
struct Figure {
    std::uint32_t first = 0, count = 0;
    bool closed = false;
};

enum class FillRule : std::uint8_t { EvenOdd, NonZero };

// A line of text on its base point. Letters are in the font's shapes; the axes are unit vectors of the list.
struct TextRun {
    const vktext::Font* font = nullptr;
    std::uint32_t firstGlyph = 0, glyphCount = 0;
    VcGePoint3d origin;
    VcGeVector3d x, y;
    double height = 1;
    vktext::Box ink;  // along the axes
};

struct ClipFrame {
    VcGeMatrix3d toClip;  // from the block's coordinates
    std::vector<VcGePoint2d> corners;
    bool inverted = false;
};

// A block, or a grid of it.
struct BlockUse {
    VcDbObjectId block;
    VcGeMatrix3d matrix;
    VcGeVector3d columnStep, rowStep;
    std::uint32_t columns = 1, rows = 1;
    std::int32_t clip = -1;  // into the list's clips
};

struct GradientFill {
    enum class Shape : std::uint8_t { Linear, Cylinder, Spherical, HemiSpherical, Curved };
    Shape shape = Shape::Linear;
    bool inverted = false;
    bool centred = true;
    double angle = 0;
    VcCmColor first, second;
};

// An area with its islands. The boundary is a range of figures.
struct HatchArea {
    std::uint32_t firstFigure = 0, figureCount = 0;
    VcDbHatch::HatchStyle style = VcDbHatch::kNormal;
    bool solid = false;
    geom::Frame frame;  // of the plane that the pattern is measured in
    std::vector<VcDbHatch::PatternLine> lines;
    std::optional<GradientFill> gradient;
};

// The file and the corner and sides of the whole image; the outline is a figure.
struct Picture {
    std::string file;
    VcGePoint3d origin;
    VcGeVector3d width, height;
    std::uint32_t outline = 0;
    bool transparent = false;
    int brightness = 50, contrast = 50, fade = 0;
};

// A point, drawn as PDMODE and PDSIZE say when the size of the view is known.
struct PointMark {
    VcGePoint3d at;
    VcGeVector3d x, y;
    std::int16_t mode = 0;
    double size = 0;
};

struct EndlessLine {
    VcGePoint3d base;
    VcGeVector3d direction;
    bool bothWays = false;
};

// A window into the model on a sheet.
struct ModelWindow {
    VcDbObjectId viewport;
};

struct Item {
    enum Kind : std::uint8_t { Stroke, Fill, Text, Hatch, Mask, Image, Block, Mark, Endless, Window, Clip, Unclip };
    enum Flag : std::uint8_t {
        Continuous = 1,  // whatever the linetype is
        RunsOn = 2,      // the linetype does not begin anew at each vertex
        NonZero = 4,     // of fills; else even and odd
        Bands = 8,       // of fills: each figure is long and narrow, and none crosses itself
    };
    Kind kind = Stroke;
    std::uint8_t flags = 0;
    std::uint32_t look = 0;
    std::uint32_t first = 0, count = 1;  // figures of strokes, fills and masks; else the index in the list of the kind
};

class VKHOST_API DisplayList {
public:
    std::vector<Item> items;
    std::vector<Figure> figures;
    std::vector<Piece> pieces;
    std::vector<VcGePoint3d> points;
    std::vector<EllipseArc> arcs;
    std::vector<geom::Nurbs> splines;
    std::vector<TextRun> texts;
    std::vector<vktext::PlacedGlyph> glyphs;
    std::vector<HatchArea> hatches;
    std::vector<Picture> pictures;
    std::vector<PointMark> marks;
    std::vector<EndlessLine> endless;
    std::vector<BlockUse> blocks;
    std::vector<ClipFrame> clips;
    std::vector<ModelWindow> windows;

    struct Look {
        const EntityProps* props;
        bool owned;  // by this list, not by the drawing
    };
    std::vector<Look> looks;

    // Of all but blocks, endless lines, marks and windows.
    geom::Box3d bounds;

    std::uint32_t lookOf(const EntityProps& props);
    std::uint32_t ownLook(EntityProps props);
    bool empty() const { return items.empty(); }
    void clear();
    // Moves what has been added since the list was as long as this; clips are left out.
    struct Length {
        std::size_t points, arcs, splines, texts, hatches, pictures, marks, endless, blocks;
    };
    Length length() const;
    void moveSince(const Length& before, const VcGeMatrix3d& by);

private:
    std::deque<EntityProps> m_ownProps;
};

}  // namespace vk::render
