// A dimension as lines, arcs, arrows and texts in its own plane, before they become entities.
// Coordinates are those of the dimension's plane; angles are radians from its X axis.
#pragma once

#include "host/db/dim_format.h"
#include "host/geom/arbitrary_axis.h"
#include "host/text/mtext_layout.h"
#include "sdk/vcdb_dims.h"

#include <optional>
#include <vector>

namespace vk::dim {

// Marks of centres look like extension lines, frames like the dimension line.
enum class Part : std::uint8_t { DimLine, Extension1, Extension2, CenterMark, Frame };

struct Stroke {
    VcGePoint2d from, to;
    Part part = Part::DimLine;
};

// Anticlockwise from start over sweep, which is positive.
struct Bow {
    VcGePoint2d center;
    double radius = 0, start = 0, sweep = 0;
    Part part = Part::DimLine;
};

// Its tip, and the direction in which it points.
struct Arrow {
    VcGePoint2d tip;
    double direction = 0;
    bool second = false;
};

// Centred on its middle.
struct Label {
    std::string contents;
    VcGePoint2d middle;
    double angle = 0, width = 0, height = 0;
    bool isEmpty() const { return contents.empty(); }
};

struct Figure {
    std::vector<Stroke> strokes;
    std::vector<Bow> bows;
    std::vector<Arrow> arrows;
    std::vector<Label> labels;
    std::vector<VcGePoint3d> marks;  // definition points, in the world
    VcGePoint2d textMiddle;
    double measurement = 0;  // drawing units or radians
    bool textBreaksExtensions = false;
};

// How an arrow is drawn: a block, the filled triangle (null block), or a stroke of DIMTSZ.
struct ArrowKind {
    VcDbObjectId block;
    bool isTick = false;      // DIMTSZ
    bool reachesTip = false;  // the dimension line runs on to the tip, and DIMDLE beyond it
};

// What every kind of dimension is drawn with: the variables at their scale, and the text with its size.
struct Drawing {
    DatabaseCore* db = nullptr;
    VcDbDimVars vars;
    double scale = 1;
    double arrow = 0, gap = 0, textHeight = 0;  // scaled; the gap is never negative here
    bool hasBox = false;
    ArrowKind arrows[2];
    bool flipped[2] = {false, false};  // a person has turned the arrow round
    geom::Frame frame;                 // of the plane; the origin lies in it
    double horizontal = 0;             // of the X axis of the UCS that it was made in
    vktext::TextStyleSpec style;
    VcDbObjectId styleId;
    double lineSpacing = 1;
    bool exactSpacing = false;
    std::optional<VcGePoint2d> userText;
    std::optional<double> userAngle;
    DimText text;
    Label upper, lower;  // measured, not placed yet

    VcGePoint2d flat(const VcGePoint3d& world) const { return frame.fromWorld(world).convert2d(); }
    double scaled(double length) const { return length * scale; }
    double arrowLength(int which) const { return arrows[which].isTick ? scaled(vars.dimtsz) : arrow; }
    // How much of the dimension line an arrow takes up.
    double arrowRoom(int which) const { return arrows[which].reachesTip ? 0 : arrow; }
    double overshoot(int which) const { return arrows[which].reachesTip ? scaled(vars.dimdle) : 0; }
    // Whether an arrow stands between the extension lines, where the fit wants all inside or all outside.
    bool isInside(int which, bool fitsInside) const { return fitsInside != flipped[which]; }
    bool hasText() const { return !upper.isEmpty() || !lower.isEmpty(); }
};

// Helpers on directions.
inline VcGeVector2d unit(double angle) { return {std::cos(angle), std::sin(angle)}; }
inline VcGeVector2d left(const VcGeVector2d& v) { return {-v.y, v.x}; }
// The angle or its opposite, so that text is read from below or from the right of the horizontal.
double readable(double angle, double horizontal);
// Of text beside or in a line of that angle: a person's, level where the style wants that, else along the line. With
// DIMTXTDIRECTION it is read from the other side.
double textAngleFor(const Drawing& drawing, double lineAngle, bool inside);
double turned(double angle);  // 0 to below a whole turn

// Measures the texts for the value and keeps them as upper and lower.
void measureText(Drawing& drawing, const DimMeasure& measure, std::string_view override, bool inPaperSpace);
Label measuredLabel(const Drawing& drawing, std::string contents);

// Half of the extent of the text's box along a direction, without the gap.
double halfExtent(const Label& label, const VcGeVector2d& direction);

// Places the texts on the middle of the primary one: the lower under it.
void placeLabels(const Drawing& drawing, Figure& figure, const VcGePoint2d& middle, double angle);

// Takes away what lies behind the texts and, for a negative gap, draws their boxes. Boxed and inline texts break the line.
void clearBehindText(const Drawing& drawing, Figure& figure);

// An extension line from what is measured towards the dimension line.
void addExtension(const Drawing& drawing, Figure& figure, const VcGePoint2d& origin, const VcGePoint2d& foot,
                  const VcGeVector2d& fallback, bool second);

// What each space allows: where arrows and text go. Lengths along the dimension line.
struct Fit {
    bool textInside = true, arrowsInside = true;
};
Fit fitOf(const Drawing& drawing, double room, double textAlong);

// Where text stands against a line in direction angle: how far off along the text's up, and whether it lies in the line.
double textOffset(const Drawing& drawing, double textAngle, double lineAngle, bool inside, const VcGeVector2d& away);

// The kinds.
Figure linearFigure(Drawing& drawing, const VcDbDimension& dimension, bool inPaperSpace);
Figure angularFigure(Drawing& drawing, const VcDbDimension& dimension, bool inPaperSpace);
Figure arcLengthFigure(Drawing& drawing, const VcDbArcDimension& dimension, bool inPaperSpace);
Figure radialFigure(Drawing& drawing, const VcDbDimension& dimension, bool inPaperSpace);
Figure joggedFigure(Drawing& drawing, const VcDbRadialDimensionLarge& dimension, bool inPaperSpace);
Figure ordinateFigure(Drawing& drawing, const VcDbOrdinateDimension& dimension, bool inPaperSpace);

}  // namespace vk::dim
