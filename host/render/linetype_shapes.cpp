#include "host/render/linetype_shapes.h"

#include "host/base/files.h"
#include "host/base/unicode.h"
#include "host/geom/box.h"

#include <cmath>
#include <map>

namespace vk::render {

namespace {

using Line = std::vector<VcGePoint2d>;

// From start over sweep, in degrees.
Line arc(VcGePoint2d center, double radius, int start, int sweep)
{
    constexpr int kSteps = 32;
    Line line;
    for (int i = 0; i <= kSteps; ++i) {
        const double t = (start + double(sweep) * i / kSteps) * M_PI / 180;
        line.emplace_back(center.x + radius * std::cos(t), center.y + radius * std::sin(t));
    }
    return line;
}

// A loop of insulation: up, over in half a circle, and down.
Line loop()
{
    Line line{{0, 0}};
    for (const VcGePoint2d& p : arc({1, 2}, 2, 180, -180))
        line.push_back(p);
    line.emplace_back(2, 0);
    return line;
}

const std::map<int, ShapeLines>& shapes()
{
    static const std::map<int, ShapeLines> all{
        {130, {{{0, -1}, {0, 1}}}},                                   // TRACK1, a sleeper
        {131, {{{0, 0}, {1, 1}, {2, 0}}}},                            // ZIG
        {132, {{{0, 0}, {0, 1}, {2, 1}, {2, -1}, {0, -1}, {0, 0}}}},  // BOX
        {133, {arc({1, 0}, 1, 180, 360)}},                            // CIRC1
        {134, {loop()}},                                              // BAT
    };
    return all;
}

}

const ShapeLines* linetypeShape(std::string_view file, int number)
{
    const std::string name(fileNameOf(file));
    if (!equalNoCase(name, "ltypeshp.shx") && !equalNoCase(name, "ltypeshp"))
        return nullptr;
    const auto found = shapes().find(number);
    return found == shapes().end() ? nullptr : &found->second;
}

const ShapeLines* namedShape(std::string_view file, std::string_view name)
{
    static constexpr std::pair<const char*, int> kNumbers[] = {
        {"TRACK1", 130}, {"ZIG", 131}, {"BOX", 132}, {"CIRC1", 133}, {"BAT", 134}};
    for (const auto& [known, number] : kNumbers)
        if (equalNoCase(known, name))
            return linetypeShape(file, number);
    return nullptr;
}

}  // namespace vk::render
