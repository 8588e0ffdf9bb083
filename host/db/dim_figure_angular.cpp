// Angular and arc length dimensions: an arc between two extension lines.
#include "host/db/dim_figure.h"
#include "host/db/ent_util.h"

namespace vk::dim {

namespace {

// Anticlockwise from the first ray over the sweep, about the centre.
struct Sector {
    VcGePoint2d center;
    double radius = 0, start = 0, sweep = 0;
    bool swapped = false;  // the first ray belongs to the second extension line
    VcGePoint2d at(double angle) const { return center + unit(angle) * radius; }
    double end() const { return start + sweep; }
    double middle() const { return start + sweep / 2; }
    double length() const { return radius * sweep; }
};

Sector sectorBetween(const VcGePoint2d& center, double radius, double first, double second, double through)
{
    const double sweep = turned(second - first);
    if (turned(through - first) <= sweep)
        return {center, radius, first, sweep, false};
    return {center, radius, second, turned(first - second), true};
}

// How far an arrow on the arc reaches along it: its tail lies on the arc.
double arrowSweep(const Sector& s, double length)
{
    return s.radius > length / 2 ? 2 * std::asin(length / (2 * s.radius)) : kPi;
}

// An arrow lies on the chord that it spans.
void addArrow(const Drawing& d, Figure& figure, const Sector& s, bool atEnd, bool fitsInside)
{
    const int which = atEnd != s.swapped;
    const bool inside = d.isInside(which, fitsInside);
    if (which ? d.vars.dimsd2 : d.vars.dimsd1)
        return;
    if (!inside && d.vars.dimtix && d.vars.dimsoxd)
        return;
    const double at = atEnd ? s.end() : s.start, reach = arrowSweep(s, d.arrowLength(which));
    // Inside arrows have their tails within the sector.
    const double tail = atEnd == inside ? at - reach : at + reach;
    const VcGeVector2d pointing = s.at(at) - s.at(tail);
    figure.arrows.push_back({s.at(at), pointing.angle(), which == 1});
    if (!inside && !d.arrows[which].reachesTip)
        figure.bows.push_back(atEnd ? Bow{s.center, s.radius, tail, reach}
                                    : Bow{s.center, s.radius, tail - reach, reach});
}

void addArc(const Drawing& d, Figure& figure, const Sector& s, bool arrowsInside)
{
    const int first = s.swapped, second = !s.swapped;
    double from = s.start, to = s.end();
    if (d.isInside(first, arrowsInside) && !d.arrows[first].reachesTip)
        from += arrowSweep(s, d.arrow);
    if (d.isInside(second, arrowsInside) && !d.arrows[second].reachesTip)
        to -= arrowSweep(s, d.arrow);
    const bool noStart = first ? d.vars.dimsd2 : d.vars.dimsd1, noEnd = second ? d.vars.dimsd2 : d.vars.dimsd1;
    if (noStart)
        from = s.middle();
    if (noEnd)
        to = s.middle();
    if (to > from)
        figure.bows.push_back({s.center, s.radius, from, to - from});
}

struct Place {
    double at = 0;  // angle about the centre
    VcGePoint2d middle;
    double angle = 0;
};

double angleOfText(const Drawing& d, double at, bool inside) { return textAngleFor(d, at + kPi / 2, inside); }

Place placeAt(const Drawing& d, const Sector& s, double at, bool inside)
{
    const double angle = angleOfText(d, at, inside);
    const double off = textOffset(d, angle, at + kPi / 2, inside, unit(at));
    return {at, s.at(at) + left(unit(angle)) * off, angle};
}

double halfAlong(const Drawing& d, double at, double angle)
{
    Label label = d.upper;
    label.width = std::max(d.upper.width, d.lower.width);
    label.angle = angle;
    return halfExtent(label, unit(at + kPi / 2));
}

// Along the arc, where DIMJUST wants the text.
double insideAngle(const Drawing& d, const Sector& s, double half)
{
    const double margin = (d.arrow + d.gap + half) / s.radius;
    const int just = d.vars.dimjust;
    if (just == 1 || just == 3)
        return s.swapped ? s.end() - margin : s.start + margin;
    if (just == 2 || just == 4)
        return s.swapped ? s.start + margin : s.end() - margin;
    return s.middle();
}

Place defaultPlace(const Drawing& d, Figure& figure, const Sector& s, const Fit& fit)
{
    if (fit.textInside) {
        const double half = halfAlong(d, s.middle(), angleOfText(d, s.middle(), true));
        return placeAt(d, s, insideAngle(d, s, half), true);
    }
    const bool atEnd = !s.swapped;
    const double side = atEnd ? 1 : -1, edge = atEnd ? s.end() : s.start;
    const double half = halfAlong(d, edge, angleOfText(d, edge, false));
    const double tail = fit.arrowsInside ? d.arrow : 2 * d.arrow;
    const Place place = placeAt(d, s, edge + side * std::min(kPi / 2, (tail + d.gap + half) / s.radius), false);
    const double reach = d.vars.dimtad != 0 ? (tail + 2 * d.gap + 2 * half) / s.radius : tail / s.radius;
    const double sweep = std::min(kPi, reach);
    figure.bows.push_back({s.center, s.radius, atEnd ? edge : edge - sweep, sweep});
    return place;
}

// The radius at which the text stands is a person's choice, the sector is not. The arc runs on to text that stands beside
// the sector.
Place userPlace(const Drawing& d, Figure& figure, const Sector& s, const VcGePoint2d& middle, bool arrowsInside)
{
    const double at = (middle - s.center).angle(), past = turned(at - s.start) - s.sweep;
    const bool inside = past <= 0;
    const Place place{at, middle, angleOfText(d, at, inside)};
    if (inside || d.vars.dimtmove == 2)
        return place;
    const bool beyondEnd = past <= kPi - s.sweep / 2;
    const bool second = beyondEnd != s.swapped;
    const double half = d.vars.dimtad != 0 ? halfAlong(d, at, place.angle) / s.radius : 0;
    const double reach = (beyondEnd ? past : 2 * kPi - s.sweep - past) + half;
    const double from =
        d.isInside(second, arrowsInside) || d.arrows[second].reachesTip ? 0 : 2 * arrowSweep(s, d.arrow);
    if (reach > from)
        figure.bows.push_back({s.center, s.radius, beyondEnd ? s.end() + from : s.start - reach, reach - from});
    return place;
}

void drawSector(Drawing& d, Figure& figure, const Sector& s)
{
    const double angle = angleOfText(d, s.middle(), true);
    const Fit fit = fitOf(d, s.length(), 2 * halfAlong(d, s.middle(), angle));
    for (const bool atEnd : {false, true})
        addArrow(d, figure, s, atEnd, fit.arrowsInside);
    if (fit.arrowsInside || d.vars.dimtofl || fit.textInside || d.arrows[0].reachesTip)
        addArc(d, figure, s, fit.arrowsInside);
    const Place place =
        d.userText ? userPlace(d, figure, s, *d.userText, fit.arrowsInside) : defaultPlace(d, figure, s, fit);
    placeLabels(d, figure, place.middle, place.angle);
}

// From the end of what is measured towards the arc, outwards or inwards. What the arc lies on needs no line.
void addRayExtension(const Drawing& d, Figure& figure, const Sector& s, double at, double nearest, double farthest,
                     bool second)
{
    if (s.radius >= nearest && s.radius <= farthest)
        return;
    const double from = s.radius > farthest ? farthest : nearest;
    const VcGeVector2d ray = unit(at);
    addExtension(d, figure, s.center + ray * from, s.center + ray * s.radius, ray, second);
}

struct TwoLines {
    VcGePoint2d a, b, c, e;  // the first from a to b, the second from c to e
};

std::optional<VcGePoint2d> crossing(const TwoLines& l)
{
    const VcGeVector2d u = l.b - l.a, v = l.e - l.c;
    const double cross = u.crossProduct(v);
    if (std::abs(cross) <= 1e-12 * u.length() * v.length())
        return std::nullopt;
    return l.a + u * ((l.c - l.a).crossProduct(v) / cross);
}

void addLineExtension(const Drawing& d, Figure& figure, const Sector& s, double at, const VcGePoint2d& from,
                      const VcGePoint2d& to, bool second)
{
    const double p = (from - s.center).dotProduct(unit(at)), q = (to - s.center).dotProduct(unit(at));
    addRayExtension(d, figure, s, at, std::min(p, q), std::max(p, q), second);
}

Figure twoLineFigure(Drawing& d, const VcDb2LineAngularDimension& dimension, bool inPaperSpace)
{
    Figure figure;
    figure.marks = {dimension.xLine1Start(), dimension.xLine1End(), dimension.xLine2Start(), dimension.xLine2End(),
                    dimension.arcPoint()};
    const TwoLines lines{d.flat(dimension.xLine1Start()), d.flat(dimension.xLine1End()),
                         d.flat(dimension.xLine2Start()), d.flat(dimension.xLine2End())};
    const auto center = crossing(lines);
    const VcGePoint2d through = d.flat(dimension.arcPoint());
    if (!center || through == *center)
        return figure;
    // The arc's point lies in one of the four sectors: the signs of its coordinates along the two lines tell which.
    const VcGeVector2d u = (lines.b - lines.a).normal(), v = (lines.e - lines.c).normal(), p = through - *center;
    const double cross = u.crossProduct(v);
    const bool forward1 = p.crossProduct(v) / cross >= 0, forward2 = u.crossProduct(p) / cross >= 0;
    const double first = (forward1 ? u : -u).angle(), second = (forward2 ? v : -v).angle();
    Sector s = sectorBetween(*center, p.length(), first, second, p.angle());
    figure.measurement = s.sweep;
    measureText(d, {s.sweep, DimMeasure::Kind::Angle}, dimension.dimensionTextUtf8(), inPaperSpace);
    addLineExtension(d, figure, s, first, lines.a, lines.b, false);
    addLineExtension(d, figure, s, second, lines.c, lines.e, true);
    drawSector(d, figure, s);
    return figure;
}

Figure threePointFigure(Drawing& d, const VcDb3PointAngularDimension& dimension, bool inPaperSpace)
{
    Figure figure;
    figure.marks = {dimension.centerPoint(), dimension.xLine1Point(), dimension.xLine2Point(), dimension.arcPoint()};
    const VcGePoint2d center = d.flat(dimension.centerPoint());
    const VcGeVector2d a = d.flat(dimension.xLine1Point()) - center, b = d.flat(dimension.xLine2Point()) - center,
                       p = d.flat(dimension.arcPoint()) - center;
    if (a.length() == 0 || b.length() == 0 || p.length() == 0)
        return figure;
    const Sector s = sectorBetween(center, p.length(), a.angle(), b.angle(), p.angle());
    figure.measurement = s.sweep;
    measureText(d, {s.sweep, DimMeasure::Kind::Angle}, dimension.dimensionTextUtf8(), inPaperSpace);
    addRayExtension(d, figure, s, a.angle(), a.length(), a.length(), false);
    addRayExtension(d, figure, s, b.angle(), b.length(), b.length(), true);
    drawSector(d, figure, s);
    return figure;
}

// Where a line from a point in that direction leaves the circle; the nearest point where it misses it.
VcGePoint2d onCircle(const Sector& s, const VcGePoint2d& from, const VcGeVector2d& direction)
{
    const VcGeVector2d v = from - s.center;
    const double along = v.dotProduct(direction), across2 = v.lengthSqrd() - along * along;
    return from + direction * (std::sqrt(std::max(0.0, s.radius * s.radius - across2)) - along);
}

// The arc sign stands before the text or above it.
void addArcSign(const Drawing& d, Figure& figure)
{
    if (d.vars.dimarcsym == 2 || figure.labels.empty())
        return;
    const Label& label = figure.labels.front();
    const double size = d.textHeight * 0.82;
    const VcGeVector2d along = unit(label.angle), up = left(along);
    const bool before = d.vars.dimarcsym == 0;
    const VcGePoint2d middle =
        before ? label.middle - along * (label.width / 2 + 0.35 * d.textHeight + size) - up * (0.41 * d.textHeight)
               : label.middle + up * (label.height / 2 + d.gap);
    figure.bows.push_back({middle, before ? size : size / 2, label.angle, kPi, Part::Frame});
}

}

Figure angularFigure(Drawing& d, const VcDbDimension& dimension, bool inPaperSpace)
{
    const auto* twoLine = VcDb2LineAngularDimension::cast(&dimension);
    Figure figure = twoLine
                        ? twoLineFigure(d, *twoLine, inPaperSpace)
                        : threePointFigure(d, static_cast<const VcDb3PointAngularDimension&>(dimension), inPaperSpace);
    clearBehindText(d, figure);
    return figure;
}

// Below a right angle the extension lines are parallel, else they run from the centre.
Figure arcLengthFigure(Drawing& d, const VcDbArcDimension& dimension, bool inPaperSpace)
{
    Figure figure;
    figure.marks = {dimension.centerPoint(), dimension.xLine1Point(), dimension.xLine2Point(), dimension.arcPoint()};
    const VcGePoint2d center = d.flat(dimension.centerPoint());
    const VcGePoint2d ends[] = {d.flat(dimension.xLine1Point()), d.flat(dimension.xLine2Point())};
    const VcGeVector2d a = ends[0] - center, b = ends[1] - center, p = d.flat(dimension.arcPoint()) - center;
    if (a.length() == 0 || b.length() == 0 || p.length() == 0)
        return figure;
    const Sector measured = sectorBetween(center, p.length(), a.angle(), b.angle(), p.angle());
    const bool parallel = measured.sweep < kPi / 2;
    const VcGeVector2d shift = unit(measured.middle());
    VcGePoint2d feet[2];
    for (const int i : {0, 1})
        feet[i] = parallel ? onCircle(measured, ends[i], shift) : measured.at((ends[i] - center).angle());
    const Sector s =
        sectorBetween(center, measured.radius, (feet[0] - center).angle(), (feet[1] - center).angle(), p.angle());
    figure.measurement = a.length() * measured.sweep;
    measureText(d, {figure.measurement, DimMeasure::Kind::Length}, dimension.dimensionTextUtf8(), inPaperSpace);
    for (const int i : {0, 1})
        addExtension(d, figure, ends[i], feet[i], parallel ? shift : unit((ends[i] - center).angle()), i == 1);
    drawSector(d, figure, s);
    clearBehindText(d, figure);
    addArcSign(d, figure);
    if (dimension.hasLeader())
        figure.strokes.push_back({d.flat(dimension.leader1Point()), d.flat(dimension.leader2Point())});
    return figure;
}

}  // namespace vk::dim
