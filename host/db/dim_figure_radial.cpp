// Radius, diameter and jogged radius dimensions.
#include "host/db/dim_figure.h"
#include "host/db/ent_util.h"

namespace vk::dim {

namespace {

struct Round {
    VcGePoint2d center, chord, far;  // far: the other end of a diameter
    VcGeVector2d out;                // from the centre to the chord's point
    double radius = 0;
    bool isDiameter = false;
    double leader = 0;  // how far out the text stands by itself
};

double textAngle(const Drawing& d, const VcGeVector2d& along, bool inside)
{
    return textAngleFor(d, along.angle(), inside);
}

double half(const Drawing& d, double angle, const VcGeVector2d& direction)
{
    Label label = d.upper;
    label.width = std::max(d.upper.width, d.lower.width);
    label.angle = angle;
    return halfExtent(label, direction);
}

bool isAlong(double angle, const VcGeVector2d& direction)
{
    return std::abs(unit(angle).crossProduct(direction)) < 1e-6;
}

double widthOf(const Drawing& d) { return std::max(d.upper.width, d.lower.width); }

// DIMCEN: a cross at the centre or, below zero, with lines out of the circle as well.
void addCenterMark(const Drawing& d, Figure& figure, const Round& r)
{
    const double size = d.scaled(std::abs(d.vars.dimcen));
    if (size == 0 || r.radius <= size)
        return;
    for (const VcGeVector2d& axis : {VcGeVector2d(1, 0), VcGeVector2d(0, 1)}) {
        figure.strokes.push_back({r.center - axis * size, r.center + axis * size, Part::CenterMark});
        if (d.vars.dimcen > 0 || r.radius <= 2 * size)
            continue;
        for (const double side : {-1.0, 1.0})
            figure.strokes.push_back(
                {r.center + axis * (side * 2 * size), r.center + axis * (side * (r.radius + size)), Part::CenterMark});
    }
}

// From the arrow's tail to the text: straight, with a level end where the text is turned against the line.
void addPath(const Drawing& d, Figure& figure, const VcGePoint2d& tip, const VcGeVector2d& pull, const Label& label)
{
    const double angle = label.angle;
    const double off = d.vars.dimtad == 0 ? 0 : textOffset(d, angle, angle, false, VcGeVector2d(0, 1));
    const VcGePoint2d level = label.middle - left(unit(angle)) * off;
    const VcGeVector2d side = unit(angle) * ((level - tip).dotProduct(unit(angle)) < 0 ? -1.0 : 1.0);
    const double halfWidth = widthOf(d) / 2;
    if (isAlong(angle, pull)) {
        const VcGePoint2d end = off != 0 ? level + side * (halfWidth + d.gap) : level - side * (halfWidth + d.gap);
        const double reach = (end - tip).dotProduct(pull);
        if (reach > d.arrow)
            figure.strokes.push_back({tip + pull * d.arrow, tip + pull * reach});
        return;
    }
    const VcGePoint2d near = level - side * (halfWidth + d.gap), hook = near - side * d.arrow;
    const VcGeVector2d way = hook - tip;
    if (way.length() > d.arrow)
        figure.strokes.push_back({tip + way.normal() * d.arrow, hook});
    figure.strokes.push_back({hook, off != 0 ? level + side * halfWidth : near});
}

VcGeVector2d towardsText(const Drawing& d, const VcGePoint2d& tip, const VcGeVector2d& pull, const Label& label)
{
    if (isAlong(label.angle, pull))
        return pull;
    const double off = d.vars.dimtad == 0 ? 0 : textOffset(d, label.angle, label.angle, false, VcGeVector2d(0, 1));
    const VcGePoint2d level = label.middle - left(unit(label.angle)) * off;
    const VcGeVector2d side = unit(label.angle) * ((level - tip).dotProduct(unit(label.angle)) < 0 ? -1.0 : 1.0);
    const VcGeVector2d way = level - side * (widthOf(d) / 2 + d.gap + d.arrow) - tip;
    return way.length() > 1e-9 * d.arrow ? way.normal() : pull;
}

void drawOutside(const Drawing& d, Figure& figure, const Round& r, const Label& label)
{
    const VcGeVector2d pull = towardsText(d, r.chord, r.out, label);
    const bool inner = d.vars.dimtofl != 0, arrowsInside = inner && d.vars.dimatfit == 1;
    if (arrowsInside) {
        figure.arrows.push_back({r.chord, r.out.angle(), true});
        Drawing bare = d;
        bare.arrow = 0;
        addPath(bare, figure, r.chord, r.out, label);
    } else {
        figure.arrows.push_back({r.chord, (-pull).angle(), true});
        addPath(d, figure, r.chord, r.out, label);
    }
    if (!inner)
        return addCenterMark(d, figure, r);
    const double cut = arrowsInside ? d.arrowRoom(1) : 0;
    if (!r.isDiameter) {
        figure.strokes.push_back({r.center, r.chord - r.out * cut});
        return;
    }
    figure.strokes.push_back({r.far + r.out * (arrowsInside ? d.arrowRoom(0) : 0), r.chord - r.out * cut});
    figure.arrows.push_back({r.far, (arrowsInside ? -r.out : r.out).angle(), false});
    if (!arrowsInside)
        figure.strokes.push_back({r.far - r.out * d.arrow, r.far - r.out * (2 * d.arrow)});
}

void drawInside(const Drawing& d, Figure& figure, const Round& r, const Label& label)
{
    figure.arrows.push_back({r.chord, r.out.angle(), true});
    const VcGePoint2d tail = r.chord - r.out * d.arrowRoom(1);
    if (r.isDiameter && d.userText && isAlong(label.angle, r.out)) {
        const double behind = (label.middle - r.chord).dotProduct(-r.out) + widthOf(d) / 2 + d.gap;
        figure.strokes.push_back({r.chord - r.out * std::min(2 * r.radius, behind), tail});
    } else if (r.isDiameter) {
        figure.arrows.push_back({r.far, (-r.out).angle(), false});
        figure.strokes.push_back({r.far + r.out * d.arrowRoom(0), tail});
    } else if (d.vars.dimtofl || isAlong(label.angle, r.out)) {
        figure.strokes.push_back({r.center, tail});
    } else {
        figure.arrows.back().direction = (-towardsText(d, r.chord, -r.out, label)).angle();
        addPath(d, figure, r.chord, -r.out, label);
    }
}

// A diameter's text stands inside where it fits, that of a radius only where DIMTIX wants it; else out beyond the chord's
// point.
VcGePoint2d defaultMiddle(const Drawing& d, const Round& r, bool& inside)
{
    double angle = textAngle(d, r.out, true);
    const double along = half(d, angle, r.out);
    inside = d.vars.dimtix || (r.isDiameter && r.leader == 0 && 2 * along + 2 * d.gap + 2 * d.arrow <= 2 * r.radius);
    if (inside) {
        const double off = textOffset(d, angle, r.out.angle(), true, r.out);
        return (r.isDiameter ? r.center : r.center + r.out * (r.radius / 2)) + left(unit(angle)) * off;
    }
    angle = textAngle(d, r.out, false);
    const double off = d.vars.dimtad == 0 ? 0 : textOffset(d, angle, angle, false, r.out);
    const VcGePoint2d hook = r.chord + r.out * (r.leader > 0 ? r.leader : 2 * d.arrow);
    const double side = unit(angle).dotProduct(r.out) < 0 ? -1 : 1;
    const double hookLength = isAlong(angle, r.out) ? 0 : d.arrow;
    return hook + unit(angle) * (side * (hookLength + d.gap + widthOf(d) / 2)) + left(unit(angle)) * off;
}

// A person puts the text on the line; the style then raises it over it.
VcGePoint2d raised(const Drawing& d, const Round& r, const VcGePoint2d& middle, double angle)
{
    const bool onLine = std::abs((middle - r.center).crossProduct(r.out)) < 1e-6 * r.radius;
    if (!onLine || !isAlong(angle, r.out))
        return middle;
    return middle + left(unit(angle)) * textOffset(d, angle, angle, true, r.out);
}

// A person's turned arrow lies on the other side of the circle, on a line of its own; the line that it ended on goes through
// to its tip.
void flipArrows(const Drawing& d, Figure& figure)
{
    for (Arrow& arrow : figure.arrows) {
        if (!d.flipped[arrow.second])
            continue;
        const VcGeVector2d pointing = unit(arrow.direction);
        arrow.direction = turned(arrow.direction + kPi);
        const double room = d.arrowRoom(arrow.second);
        if (room <= 0)
            continue;
        figure.strokes.push_back({arrow.tip, arrow.tip - pointing * room});
        figure.strokes.push_back({arrow.tip + pointing * room, arrow.tip + pointing * (2 * room)});
    }
}

bool isInside(const Round& r, const VcGePoint2d& middle) { return middle.distanceTo(r.center) < r.radius; }

Figure roundFigure(Drawing& d, const Round& r)
{
    Figure figure;
    bool inside = false;
    VcGePoint2d middle = defaultMiddle(d, r, inside);
    if (d.userText) {
        middle = *d.userText;
        inside = isInside(r, middle);
    }
    const double angle = textAngle(d, r.out, inside);
    if (d.userText)
        middle = raised(d, r, middle, angle);
    placeLabels(d, figure, middle, angle);
    Label whole = d.upper;
    whole.middle = middle;
    whole.angle = angle;
    (inside ? drawInside : drawOutside)(d, figure, r, whole);
    flipArrows(d, figure);
    clearBehindText(d, figure);
    return figure;
}

// The circle's arc is drawn on where the dimension stands beside it: angles from the X axis in the plane.
void addArcExtension(const Drawing& d, Figure& figure, const Round& r, double start, double end)
{
    const double sweep = turned(end - start);
    if (start != end && sweep > 0 && !d.vars.dimse1)
        figure.bows.push_back({r.center, r.radius, start, sweep, Part::Extension1});
}

// The dimension's own angle, over which a variable of its own goes; one that has neither follows its style.
double jogAngleOf(const Drawing& d, const VcDbRadialDimensionLarge& dimension)
{
    constexpr int kDimjogang = 50;
    const bool hasVariable = VcDbDimOverrides(const_cast<VcDbRadialDimensionLarge&>(dimension)).has(kDimjogang);
    return hasVariable || dimension.jogAngle() == 0 ? d.vars.dimjogang : dimension.jogAngle();
}

}

Figure radialFigure(Drawing& d, const VcDbDimension& dimension, bool inPaperSpace)
{
    Round r;
    Figure figure;
    double extension[2] = {0, 0};
    if (const auto* diameter = VcDbDiametricDimension::cast(&dimension)) {
        r.isDiameter = true;
        r.chord = d.flat(diameter->chordPoint());
        r.far = d.flat(diameter->farChordPoint());
        r.center = r.far + (r.chord - r.far) * 0.5;
        r.leader = diameter->leaderLength();
        figure.marks = {diameter->chordPoint(), diameter->farChordPoint()};
        extension[0] = diameter->extArcStartAngle();
        extension[1] = diameter->extArcEndAngle();
    } else {
        const auto& radius = static_cast<const VcDbRadialDimension&>(dimension);
        r.chord = d.flat(radius.chordPoint());
        r.center = d.flat(radius.center());
        r.leader = radius.leaderLength();
        figure.marks = {radius.chordPoint(), radius.center()};
        extension[0] = radius.extArcStartAngle();
        extension[1] = radius.extArcEndAngle();
    }
    r.radius = r.chord.distanceTo(r.center);
    if (r.radius == 0)
        return figure;
    r.out = (r.chord - r.center) / r.radius;
    const double value = r.isDiameter ? 2 * r.radius : r.radius;
    measureText(d, {value, r.isDiameter ? DimMeasure::Kind::Diameter : DimMeasure::Kind::Radius},
                dimension.dimensionTextUtf8(), inPaperSpace);
    Figure drawn = roundFigure(d, r);
    drawn.marks = std::move(figure.marks);
    drawn.measurement = value;
    addArcExtension(d, drawn, r, extension[0], extension[1]);
    return drawn;
}

// Two parallel lines with a jog between them: one from the centre that stands for the true one, one to the arc.
Figure joggedFigure(Drawing& d, const VcDbRadialDimensionLarge& dimension, bool inPaperSpace)
{
    Figure figure;
    figure.marks = {dimension.chordPoint(), dimension.overrideCenter(), dimension.jogPoint()};
    const VcGePoint2d center = d.flat(dimension.center()), chord = d.flat(dimension.chordPoint()),
                      from = d.flat(dimension.overrideCenter()), jog = d.flat(dimension.jogPoint());
    const double radius = chord.distanceTo(center);
    if (radius == 0)
        return figure;
    figure.measurement = radius;
    measureText(d, {radius, DimMeasure::Kind::Radius}, dimension.dimensionTextUtf8(), inPaperSpace);
    const VcGeVector2d out = (chord - center) / radius, side = left(out);
    double angle = jogAngleOf(d, dimension);
    if (std::abs(std::sin(angle)) < 1e-3)
        angle = kPi / 4;
    // From the jog's point to each of the two lines, along the jog's direction.
    const double rise = (chord - from).dotProduct(side);
    const VcGeVector2d slant = out * std::cos(angle) + side * (rise < 0 ? std::sin(angle) : -std::sin(angle));
    const auto onLine = [&](const VcGePoint2d& through) {
        return jog + slant * ((through - jog).dotProduct(side) / slant.dotProduct(side));
    };
    const VcGePoint2d first = onLine(from), second = onLine(chord);
    figure.strokes.push_back({from, first});
    figure.strokes.push_back({first, second});
    figure.strokes.push_back({second, chord - out * d.arrowRoom(1)});
    figure.arrows.push_back({chord, out.angle(), true});
    flipArrows(d, figure);
    const double text = textAngle(d, out, true);
    const VcGePoint2d middle = second + (chord - second) * 0.5;
    const double off = textOffset(d, text, out.angle(), true, out);
    placeLabels(d, figure, d.userText ? *d.userText : middle + left(unit(text)) * off, text);
    clearBehindText(d, figure);
    return figure;
}

}  // namespace vk::dim
