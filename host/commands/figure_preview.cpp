#include "host/commands/figure_preview.h"

#include "host/commands/drawing.h"
#include "host/db/curve_of.h"

#include <cmath>

namespace vk::commands {

using namespace edit;

namespace {

// Chords that stand for one unit of a curve's parameter.
int chordsPerUnit(const geom::Curve& curve)
{
    if (std::holds_alternative<geom::Segment>(curve) || std::holds_alternative<geom::Polyline3>(curve))
        return 1;
    constexpr int kOfSpan = 16;
    return kOfSpan;
}

std::vector<VcGePoint3d> chordsOf(const geom::Curve& curve)
{
    constexpr double kMostChords = 4096;
    const geom::Interval range = geom::paramRange(curve);
    const double wanted = std::ceil((range.to - range.from) * chordsPerUnit(curve));
    if (!(std::isfinite(range.from) && std::isfinite(range.to)))
        return {};
    const int chords = int(std::clamp(wanted, 1.0, kMostChords));
    std::vector<VcGePoint3d> points;
    for (int i = 0; i <= chords; ++i)
        points.push_back(geom::pointAt(curve, range.from + (range.to - range.from) * i / chords));
    return points;
}

}

Preview::Lines linesOf(const Editor& ed, const VcDbEntity& entity)
{
    Preview::Lines lines;
    const VcGeMatrix3d toUcs = ucsToWorld(ed).inverse();
    for (const geom::Curve& curve : drawnCurves(entity)) {
        lines.push_back(chordsOf(curve));
        for (VcGePoint3d& p : lines.back())
            p = toUcs * p;
    }
    return lines;
}

void showFigure(Editor& ed, Figure figure)
{
    const auto lines = [&ed, figure = std::move(figure)](const VcGePoint3d& cursor) {
        try {
            const auto entity = figure(cursor);
            return entity ? linesOf(ed, *entity) : Preview::Lines();
        } catch (const CommandError&) {
            return Preview::Lines();
        }
    };
    Display::instance().follow({{}, {}, lines});
}

}
