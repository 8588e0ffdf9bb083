#include "host/db/dim_figure.h"

#include "host/db/ent_util.h"

#include <algorithm>

namespace vk::dim {

double turned(double angle) { return turnOf(angle); }

// Text that runs straight up is read from the right; one that runs straight down is turned.
double readable(double angle, double horizontal)
{
    const double a = turnOf(angle - horizontal);
    constexpr double kSlack = 1e-6;
    return a > kPi / 2 + kSlack && a <= 3 * kPi / 2 + kSlack ? angle + kPi : angle;
}

double textAngleFor(const Drawing& d, double lineAngle, bool inside)
{
    if (d.userAngle)
        return d.horizontal + *d.userAngle;
    const double angle = (inside ? d.vars.dimtih : d.vars.dimtoh) ? d.horizontal : readable(lineAngle, d.horizontal);
    return d.vars.dimtxtdirection ? angle + kPi : angle;
}

Label measuredLabel(const Drawing& d, std::string contents)
{
    Label label;
    if (contents.empty())
        return label;
    vktext::MTextSpec spec;
    spec.contents = contents;
    spec.style = d.style;
    spec.height = d.textHeight;
    spec.attachment = 5;
    spec.spacingFactor = d.lineSpacing;
    spec.exactSpacing = d.exactSpacing;
    const vktext::MTextLayout layout = vktext::layoutMText(spec);
    label.contents = std::move(contents);
    label.width = layout.width;
    label.height = layout.height;
    return label;
}

void measureText(Drawing& d, const DimMeasure& measure, std::string_view override, bool inPaperSpace)
{
    d.text = dimText(measure, d.vars, override, inPaperSpace);
    d.upper = measuredLabel(d, d.text.above);
    d.lower = measuredLabel(d, d.text.below);
}

double halfExtent(const Label& label, const VcGeVector2d& direction)
{
    const VcGeVector2d along = unit(label.angle), up = left(along);
    return (std::abs(along.dotProduct(direction)) * label.width + std::abs(up.dotProduct(direction)) * label.height) /
           2;
}

void placeLabels(const Drawing& d, Figure& figure, const VcGePoint2d& middle, double angle)
{
    figure.textMiddle = middle;
    Label upper = d.upper, lower = d.lower;
    upper.angle = lower.angle = angle;
    upper.middle = middle;
    const double step = (upper.height + lower.height) / 2 + 2 * d.gap;
    lower.middle = upper.isEmpty() ? middle : middle - left(unit(angle)) * step;
    for (Label* label : {&upper, &lower})
        if (!label->isEmpty())
            figure.labels.push_back(std::move(*label));
}

namespace {

struct Span {
    double from, to;
};

// The label with the gap around it. Touching its edge is not behind it.
struct Box {
    VcGePoint2d middle;
    VcGeVector2d along, up;
    double halfWidth, halfHeight;

    Box(const Label& label, double margin)
        : middle(label.middle), along(unit(label.angle)), up(left(along)), halfWidth(label.width / 2 + margin),
          halfHeight(label.height / 2 + margin)
    {
    }
    bool covers(const VcGePoint2d& p) const
    {
        const double slack = 1e-6 * halfHeight;
        const VcGeVector2d v = p - middle;
        return std::abs(v.dotProduct(along)) < halfWidth - slack && std::abs(v.dotProduct(up)) < halfHeight - slack;
    }
};

// The part of the way from 0 to 1 on which a coordinate that runs from a to b stays within half of 0; empty: from >= to.
Span within(double a, double b, double half)
{
    if (a == b)
        return std::abs(a) < half ? Span{0, 1} : Span{1, 0};
    const double t1 = (-half - a) / (b - a), t2 = (half - a) / (b - a);
    return {std::max(0.0, std::min(t1, t2)), std::min(1.0, std::max(t1, t2))};
}

std::optional<Span> hidden(const Stroke& s, const Box& box)
{
    const double slack = 1e-6 * box.halfHeight;
    const VcGeVector2d a = s.from - box.middle, b = s.to - box.middle;
    const Span x = within(a.dotProduct(box.along), b.dotProduct(box.along), box.halfWidth - slack);
    const Span y = within(a.dotProduct(box.up), b.dotProduct(box.up), box.halfHeight - slack);
    const Span both{std::max(x.from, y.from), std::min(x.to, y.to)};
    if (!(both.from < both.to))
        return std::nullopt;
    return both;
}

// Text breaks a line that it lies in, not one that it only comes close to.
bool liesIn(const Label& label, const Stroke& s)
{
    const VcGeVector2d way = s.to - s.from;
    const double length = way.length();
    return length > 0 && std::abs((label.middle - s.from).crossProduct(way)) / length < label.height / 2;
}

bool liesIn(const Label& label, const Bow& bow)
{
    return std::abs(label.middle.distanceTo(bow.center) - bow.radius) < label.height / 2;
}

bool isBroken(const Figure& figure, Part part)
{
    return part == Part::DimLine ||
           (figure.textBreaksExtensions && (part == Part::Extension1 || part == Part::Extension2));
}

void cutStrokes(Figure& figure, const Label& label, const Box& box)
{
    std::vector<Stroke> kept;
    for (const Stroke& s : figure.strokes) {
        const auto gap = isBroken(figure, s.part) && liesIn(label, s) ? hidden(s, box) : std::nullopt;
        if (!gap) {
            kept.push_back(s);
            continue;
        }
        const VcGeVector2d way = s.to - s.from;
        if (gap->from > 1e-9)
            kept.push_back({s.from, s.from + way * gap->from, s.part});
        if (gap->to < 1 - 1e-9)
            kept.push_back({s.from + way * gap->to, s.to, s.part});
    }
    figure.strokes = std::move(kept);
}

// Where along the arc it goes behind the box or comes out, between two parameters that differ in that.
double border(const Bow& bow, const Box& box, double from, double to)
{
    const bool before = box.covers(bow.center + unit(from) * bow.radius);
    for (int i = 0; i < 50; ++i) {
        const double middle = (from + to) / 2;
        (box.covers(bow.center + unit(middle) * bow.radius) == before ? from : to) = middle;
    }
    return (from + to) / 2;
}

void cutBow(const Bow& bow, const Box& box, std::vector<Bow>& kept)
{
    constexpr int kSteps = 360;
    const auto at = [&](int i) { return bow.start + bow.sweep * i / kSteps; };
    bool shown = !box.covers(bow.center + unit(bow.start) * bow.radius);
    double from = bow.start;
    for (int i = 1; i <= kSteps; ++i) {
        const bool shows = !box.covers(bow.center + unit(at(i)) * bow.radius);
        if (shows == shown)
            continue;
        const double edge = border(bow, box, at(i - 1), at(i));
        if (shown && edge > from)
            kept.push_back({bow.center, bow.radius, from, edge - from, bow.part});
        from = edge;
        shown = shows;
    }
    const double end = bow.start + bow.sweep;
    if (shown && end > from)
        kept.push_back({bow.center, bow.radius, from, end - from, bow.part});
}

void addFrame(Figure& figure, const Box& box)
{
    const VcGeVector2d x = box.along * box.halfWidth, y = box.up * box.halfHeight;
    const VcGePoint2d corners[] = {box.middle - x - y, box.middle + x - y, box.middle + x + y, box.middle - x + y};
    for (int i = 0; i < 4; ++i)
        figure.strokes.push_back({corners[i], corners[(i + 1) % 4], Part::Frame});
}

}

void clearBehindText(const Drawing& d, Figure& figure)
{
    for (const Label& label : figure.labels) {
        const Box box(label, d.gap);
        cutStrokes(figure, label, box);
        std::vector<Bow> kept;
        for (const Bow& bow : figure.bows)
            if (liesIn(label, bow))
                cutBow(bow, box, kept);
            else
                kept.push_back(bow);
        figure.bows = std::move(kept);
    }
    if (d.hasBox)
        for (const Label& label : figure.labels)
            addFrame(figure, Box(label, d.gap));
}

void addExtension(const Drawing& d, Figure& figure, const VcGePoint2d& origin, const VcGePoint2d& foot,
                  const VcGeVector2d& fallback, bool second)
{
    if (second ? d.vars.dimse2 : d.vars.dimse1)
        return;
    const VcGeVector2d way = foot - origin;
    const double length = way.length();
    const VcGeVector2d direction = length > 1e-9 * (1 + d.arrow) ? way / length : fallback;
    const double end = length + d.scaled(d.vars.dimexe);
    double begin = d.scaled(d.vars.dimexo);
    if (d.vars.dimfxlon)
        begin = std::max(begin, length - d.scaled(d.vars.dimfxl));
    if (end - begin > 1e-9 * end)
        figure.strokes.push_back(
            {origin + direction * begin, origin + direction * end, second ? Part::Extension2 : Part::Extension1});
}

Fit fitOf(const Drawing& d, double room, double textAlong)
{
    const double slack = 1e-9 * room;
    const double arrows = d.arrowRoom(0) + d.arrowRoom(1), text = d.hasText() ? textAlong + 2 * d.gap : 0;
    const bool textFits = text <= room + slack, arrowsFit = arrows + (arrows > 0 ? 2 * d.gap : 0) <= room + slack,
               bothFit = text + arrows <= room + slack;
    if (bothFit)
        return {true, true};
    if (d.vars.dimtix || d.userText)
        return {true, d.userText && arrowsFit && !d.vars.dimtix};
    switch (d.vars.dimatfit) {
    case 0:
        return {false, false};
    case 1:
        return {false, arrowsFit};
    case 2:
        return {textFits, false};
    default:
        return textFits ? Fit{true, false} : Fit{false, arrowsFit};
    }
}

double textOffset(const Drawing& d, double textAngle, double lineAngle, bool inside, const VcGeVector2d& away)
{
    const bool parallel = std::abs(std::sin(textAngle - lineAngle)) < 1e-6;
    if (d.vars.dimtad == 0)
        return d.vars.dimtvp * d.textHeight;
    if (!parallel && inside)
        return 0;
    const double off = d.gap + d.upper.height / 2;
    const double up = left(unit(textAngle)).dotProduct(away);
    if (d.vars.dimtad == 4)
        return -off;
    return d.vars.dimtad == 2 && up < 0 ? -off : off;
}

}  // namespace vk::dim
