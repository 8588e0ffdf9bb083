// Ordinate dimensions: a coordinate from an origin, at the end of a leader from the feature.
#include "host/db/dim_figure.h"
#include "host/db/ent_util.h"

namespace vk::dim {

namespace {

// The leader is an extension line, so it looks like one. From the feature along the axis of the leader, over to the end's own line, and on: the crossing takes two arrow lengths
// and ends two before the end; where there is too little room the first and the last leg keep two.
void addLeader(const Drawing& d, Figure& figure, const VcGePoint2d& feature, const VcGePoint2d& end,
               const VcGeVector2d& axis, double past)
{
    const VcGeVector2d across = left(axis);
    const double run = (end - feature).dotProduct(axis), shift = (end - feature).dotProduct(across), leg = 2 * d.arrow;
    const VcGePoint2d start = feature + axis * d.scaled(d.vars.dimexo), last = end + axis * past;
    const bool starts = run > d.scaled(d.vars.dimexo);
    if (std::abs(shift) <= 1e-9 * (1 + std::abs(run))) {
        if (starts)
            figure.strokes.push_back({start, last, Part::Extension1});
        return;
    }
    const double second = run >= 2 * leg ? run - leg : run / 2;
    const double first = run >= 3 * leg ? run - 2 * leg : std::min(leg, second);
    const VcGePoint2d a = feature + axis * first, b = feature + axis * second + across * shift;
    if (first > d.scaled(d.vars.dimexo))
        figure.strokes.push_back({start, a, Part::Extension1});
    figure.strokes.push_back({a, b, Part::Extension1});
    figure.strokes.push_back({b, last, Part::Extension1});
}

}

Figure ordinateFigure(Drawing& d, const VcDbOrdinateDimension& dimension, bool inPaperSpace)
{
    Figure figure;
    figure.textBreaksExtensions = true;
    figure.marks = {dimension.definingPoint(), dimension.leaderEndPoint(), dimension.origin()};
    const VcGePoint2d feature = d.flat(dimension.definingPoint()), end = d.flat(dimension.leaderEndPoint()),
                      origin = d.flat(dimension.origin());
    const VcGeVector2d x = unit(d.horizontal), y = left(x);
    const VcGeVector2d measured = dimension.isUsingXAxis() ? x : y, other = dimension.isUsingXAxis() ? y : x;
    figure.measurement = std::abs((feature - origin).dotProduct(measured));
    measureText(d, {figure.measurement, DimMeasure::Kind::Length}, dimension.dimensionTextUtf8(), inPaperSpace);

    const VcGeVector2d axis = (end - feature).dotProduct(other) < 0 ? -other : other;
    const double along = readable(axis.angle(), d.horizontal) + (d.vars.dimtxtdirection ? kPi : 0);
    const double angle = d.userAngle ? d.horizontal + *d.userAngle : along;
    const double width = std::max(d.upper.width, d.lower.width);
    const double off = d.vars.dimtad == 0 ? 0 : d.gap + d.upper.height / 2;
    const VcGePoint2d beside = end + axis * (d.gap + width / 2) + left(unit(angle)) * (d.vars.dimtad == 4 ? -off : off);
    addLeader(d, figure, feature, end, axis, off != 0 && d.hasText() ? d.gap + width : 0);
    placeLabels(d, figure, d.userText ? *d.userText : beside, angle);
    clearBehindText(d, figure);
    return figure;
}

}  // namespace vk::dim
