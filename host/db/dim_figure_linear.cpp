// Rotated and aligned dimensions: a straight dimension line between two extension lines.
#include "host/db/dim_figure.h"
#include "host/db/ent_util.h"

namespace vk::dim {

namespace {

// What the two classes say, in the plane.
struct Line {
    VcGePoint2d origins[2], feet[2];
    VcGeVector2d along, extension;  // unit vectors; along runs from the first foot to the second
    VcGeVector2d away;              // from what is measured
    double length = 0;
};

struct Given {
    VcGePoint3d first, second, line;
    double angle = 0, oblique = 0;
    bool aligned = false;
};

Given givenBy(const VcDbDimension& dimension)
{
    if (const auto* aligned = VcDbAlignedDimension::cast(&dimension))
        return {aligned->xLine1Point(), aligned->xLine2Point(), aligned->dimLinePoint(), 0, aligned->oblique(), true};
    const auto& rotated = static_cast<const VcDbRotatedDimension&>(dimension);
    return {rotated.xLine1Point(), rotated.xLine2Point(), rotated.dimLinePoint(),
            rotated.rotation(),    rotated.oblique(),     false};
}

// An oblique angle that would run along the dimension line counts as none.
Line lineOf(const Drawing& d, const Given& given)
{
    Line line;
    line.origins[0] = d.flat(given.first);
    line.origins[1] = d.flat(given.second);
    const VcGePoint2d through = d.flat(given.line);
    const VcGeVector2d between = line.origins[1] - line.origins[0];
    VcGeVector2d u = given.aligned && between.length() > 0 ? between.normal() : unit(given.angle);
    const VcGeVector2d v = left(u);
    VcGeVector2d e = given.oblique != 0 ? unit(given.oblique) : v;
    if (std::abs(e.dotProduct(v)) < 1e-6)
        e = v;
    for (int i = 0; i < 2; ++i)
        line.feet[i] = line.origins[i] + e * ((through - line.origins[i]).dotProduct(v) / e.dotProduct(v));
    const VcGeVector2d span = line.feet[1] - line.feet[0];
    line.length = span.length();
    line.along = line.length > 0 ? span / line.length : u;
    const double side = (line.feet[0] - line.origins[0]).dotProduct(v) + (line.feet[1] - line.origins[1]).dotProduct(v);
    line.extension = e.dotProduct(v) * side < 0 ? -e : e;
    line.away = side < 0 ? -v : v;
    return line;
}

double lineAngle(const Line& line) { return line.along.angle(); }

// Outside arrows stand on stubs as long as themselves beyond their tails, and so do inside ones where no line runs between.
void addArrows(const Drawing& d, Figure& figure, const Line& line, bool fitsInside, bool hasLine)
{
    for (const int i : {0, 1}) {
        const bool inside = d.isInside(i, fitsInside);
        const VcGeVector2d outward = i ? line.along : -line.along;
        if (i ? d.vars.dimsd2 : d.vars.dimsd1)
            continue;
        if (!inside && d.vars.dimtix && d.vars.dimsoxd)
            continue;
        const VcGeVector2d pointing = inside ? outward : -outward;
        figure.arrows.push_back({line.feet[i], pointing.angle(), i == 1});
        if (!d.arrows[i].reachesTip && !(inside && hasLine))
            figure.strokes.push_back({line.feet[i] - pointing * d.arrow, line.feet[i] - pointing * (2 * d.arrow)});
    }
}

// Each half of the line goes with its arrow.
void addLine(const Drawing& d, Figure& figure, const Line& line, bool arrowsInside)
{
    const VcGePoint2d middle = line.feet[0] + line.along * (line.length / 2);
    VcGePoint2d ends[2];
    for (const int i : {0, 1}) {
        const VcGeVector2d outward = i ? line.along : -line.along;
        ends[i] =
            line.feet[i] + outward * (d.isInside(i, arrowsInside) ? d.overshoot(i) - d.arrowRoom(i) : d.overshoot(i));
    }
    if (!d.vars.dimsd1 && !d.vars.dimsd2)
        figure.strokes.push_back({ends[0], ends[1]});
    else if (!d.vars.dimsd1)
        figure.strokes.push_back({ends[0], middle});
    else if (!d.vars.dimsd2)
        figure.strokes.push_back({middle, ends[1]});
}

struct TextPlace {
    VcGePoint2d middle;
    double angle = 0;
};

bool isInline(const Drawing& d) { return d.vars.dimjust != 3 && d.vars.dimjust != 4; }

// DIMJUST 3 and 4: over an extension line that runs on beside it or, for text in the line, at the end of it.
TextPlace overExtension(const Drawing& d, Figure& figure, const Line& line)
{
    const bool second = d.vars.dimjust == 4;
    TextPlace place;
    place.angle = readable(line.extension.angle(), d.horizontal) + (d.vars.dimtxtdirection ? kPi : 0);
    const double length = d.upper.width + 2 * d.gap;
    const VcGePoint2d foot = line.feet[second], end = foot + line.extension * (d.scaled(d.vars.dimexe) + length);
    if (d.vars.dimtad != 0 && !(second ? d.vars.dimse2 : d.vars.dimse1))
        figure.strokes.push_back(
            {foot + line.extension * d.scaled(d.vars.dimexe), end, second ? Part::Extension2 : Part::Extension1});
    const double off = d.vars.dimtad == 0 ? 0 : d.gap + d.upper.height / 2;
    place.middle = foot + line.extension * (d.scaled(d.vars.dimexe) + length / 2) + left(unit(place.angle)) * off;
    return place;
}

TextPlace insidePlace(const Drawing& d, const Line& line, double angle, double half)
{
    double at = line.length / 2;
    if (d.vars.dimjust == 1)
        at = d.arrowLength(0) + d.gap + half;
    else if (d.vars.dimjust == 2)
        at = line.length - d.arrowLength(1) - d.gap - half;
    const double off = textOffset(d, angle, lineAngle(line), true, line.away);
    return {line.feet[0] + line.along * at + left(unit(angle)) * off, angle};
}

// Beside the second extension line; the line runs out to the text and, for text above it, under it.
TextPlace besidePlace(const Drawing& d, Figure& figure, const Line& line, double angle, double half, bool arrowsInside)
{
    const bool first = d.vars.dimjust == 1;
    const VcGeVector2d out = first ? -line.along : line.along;
    const VcGePoint2d foot = line.feet[first ? 0 : 1];
    arrowsInside = d.isInside(!first, arrowsInside);
    const double tail = arrowsInside || d.arrows[!first].reachesTip ? d.arrow : 2 * d.arrow;
    const double off = textOffset(d, angle, lineAngle(line), false, line.away);
    const VcGePoint2d onLine = foot + out * (tail + d.gap + half);
    const double from = arrowsInside ? 0 : tail;
    const double to = off != 0 ? tail + 2 * d.gap + 2 * half : tail;
    if (to > from && d.vars.dimtmove != 2)
        figure.strokes.push_back({foot + out * from, foot + out * to});
    return {onLine + left(unit(angle)) * off, angle};
}

// DIMTMOVE 1: text that has left the line keeps a leader to it.
void addLeader(const Drawing& d, Figure& figure, const Line& line, const TextPlace& place, double half)
{
    const VcGePoint2d middle = line.feet[0] + line.along * (line.length / 2);
    const VcGeVector2d side =
        unit(place.angle) * ((place.middle - middle).dotProduct(unit(place.angle)) < 0 ? -1.0 : 1.0);
    const double off = d.vars.dimtad == 0 ? 0 : d.gap + d.upper.height / 2;
    const VcGePoint2d level = place.middle - left(unit(place.angle)) * off;
    const VcGePoint2d near = level - side * (half + d.gap), hook = near - side * d.arrow;
    figure.strokes.push_back({middle, hook});
    figure.strokes.push_back({hook, off != 0 ? level + side * half : near});
}

// A leader's text stands up and away from the line.
TextPlace leaderPlace(const Drawing& d, const Line& line, double angle, double half)
{
    const VcGePoint2d middle = line.feet[0] + line.along * (line.length / 2);
    return {middle + line.away * (2 * d.arrow + d.upper.height / 2) + unit(angle) * (d.arrow + d.gap + half), angle};
}

// Text that a person has put close enough to the line to lie in or on it needs no line to it.
void reachUserText(const Drawing& d, Figure& figure, const Line& line, const TextPlace& place, double half,
                   bool arrowsInside)
{
    const double along = (place.middle - line.feet[0]).dotProduct(line.along);
    const double across = std::abs((place.middle - line.feet[0]).dotProduct(left(line.along)));
    const bool nearLine = across <= d.upper.height + d.gap;
    if (d.vars.dimtmove == 1 && !(nearLine && along > 0 && along < line.length))
        return addLeader(d, figure, line, place, half);
    if (d.vars.dimtmove == 2 || (along >= 0 && along <= line.length))
        return;
    const bool first = along < 0;
    const VcGeVector2d out = first ? -line.along : line.along;
    const double reach = (first ? -along : along - line.length) + (d.vars.dimtad == 0 ? 0 : half);
    const double from = d.isInside(!first, arrowsInside) || d.arrows[!first].reachesTip ? 0 : 2 * d.arrow;
    if (reach > from)
        figure.strokes.push_back({line.feet[first ? 0 : 1] + out * from, line.feet[first ? 0 : 1] + out * reach});
}

double textAngle(const Drawing& d, const Line& line, bool inside) { return textAngleFor(d, lineAngle(line), inside); }

double halfAlong(const Drawing& d, const Line& line, double angle)
{
    Label label = d.upper;
    label.width = std::max(d.upper.width, d.lower.width);
    label.angle = angle;
    return halfExtent(label, line.along);
}

}

Figure linearFigure(Drawing& d, const VcDbDimension& dimension, bool inPaperSpace)
{
    Figure figure;
    const Given given = givenBy(dimension);
    const Line line = lineOf(d, given);
    figure.measurement = line.length;
    figure.marks = {given.first, given.second,
                    d.frame.toWorld(VcGePoint3d(line.feet[1].x, line.feet[1].y, d.frame.fromWorld(given.line).z))};
    measureText(d, {line.length, DimMeasure::Kind::Length}, dimension.dimensionTextUtf8(), inPaperSpace);

    for (const int i : {0, 1})
        addExtension(d, figure, line.origins[i], line.feet[i], line.extension, i == 1);

    const double insideHalf = halfAlong(d, line, textAngle(d, line, true));
    const Fit fit =
        isInline(d) ? fitOf(d, line.length, 2 * insideHalf) : Fit{true, d.arrowRoom(0) + d.arrowRoom(1) <= line.length};
    const bool leader = !fit.textInside && d.vars.dimtmove == 1 && !d.userText;
    const bool hasLine =
        fit.arrowsInside || d.vars.dimtofl || leader || d.arrows[0].reachesTip || d.arrows[1].reachesTip;
    addArrows(d, figure, line, fit.arrowsInside, hasLine);
    if (hasLine)
        addLine(d, figure, line, fit.arrowsInside);

    TextPlace place;
    if (d.userText) {
        const double along = (*d.userText - line.feet[0]).dotProduct(line.along);
        const bool between = along > 0 && along < line.length;
        place = {*d.userText, textAngle(d, line, between)};
        reachUserText(d, figure, line, place, halfAlong(d, line, place.angle), fit.arrowsInside);
    } else if (!isInline(d)) {
        place = overExtension(d, figure, line);
    } else if (fit.textInside) {
        place = insidePlace(d, line, textAngle(d, line, true), insideHalf);
    } else {
        const double angle = textAngle(d, line, false), half = halfAlong(d, line, angle);
        place = leader ? leaderPlace(d, line, angle, d.upper.width / 2)
                       : besidePlace(d, figure, line, angle, half, fit.arrowsInside);
        if (leader)
            addLeader(d, figure, line, place, d.upper.width / 2);
    }
    placeLabels(d, figure, place.middle, place.angle);
    clearBehindText(d, figure);
    return figure;
}

}  // namespace vk::dim
