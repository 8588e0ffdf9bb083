#include "host/commands/tangents.h"

#include "host/geom/tangent_circle.h"

#include <cmath>

namespace vk::commands {

namespace {

using geom::Curve;

struct Disc {
    VcGePoint3d center;
    double radius;
};

std::optional<Disc> discOf(const Touch& touch)
{
    if (!touch.curve)
        return Disc{touch.at, 0};
    const Curve carrier = geom::carrierOf(*touch.curve);
    const auto* circle = std::get_if<geom::Circle>(&carrier);
    return circle ? std::optional(Disc{circle->center, circle->radius}) : std::nullopt;
}

VcGePoint3d footOn(const Touch& touch, const VcGePoint3d& from)
{
    const auto near = geom::closestPoint(geom::carrierOf(*touch.curve), from);
    return near ? near->point : touch.at;
}

// The one of the four lines along both discs whose ends lie nearest to the picks.
std::optional<std::pair<VcGePoint3d, VcGePoint3d>> alongDiscs(const Disc& a, const Disc& b, const VcGePoint3d& nearA,
                                                              const VcGePoint3d& nearB)
{
    const VcGeVector3d d(b.center.x - a.center.x, b.center.y - a.center.y, 0);
    const double apart = d.length(), direction = std::atan2(d.y, d.x);
    std::optional<std::pair<VcGePoint3d, VcGePoint3d>> best;
    double least = 0;
    for (const double side : {1.0, -1.0}) {
        const double cosine = (a.radius - side * b.radius) / apart;
        if (!(std::abs(cosine) <= 1))
            continue;
        for (const double turn : {1.0, -1.0}) {
            const double angle = direction + turn * std::acos(cosine);
            const VcGeVector3d n(std::cos(angle), std::sin(angle), 0);
            const std::pair ends{a.center + n * a.radius, b.center + n * (side * b.radius)};
            const double off = ends.first.distanceTo(nearA) + ends.second.distanceTo(nearB);
            if (!best || off < least) {
                best = ends;
                least = off;
            }
        }
    }
    return best && best->first.distanceTo(best->second) > 1e-12 * (1 + apart) ? best : std::nullopt;
}

// How far the circle is from touching, and how that changes as it moves.
struct Miss {
    double by;
    VcGeVector3d slope;
};

Miss missOf(const Touch& touch, const VcGePoint3d& center, double radius)
{
    const VcGePoint3d at = touch.curve ? footOn(touch, center) : touch.at;
    const VcGeVector3d out(center.x - at.x, center.y - at.y, 0);
    const double distance = out.length();
    return {distance - radius, distance > 0 ? out / distance : VcGeVector3d(1, 0, 0)};
}

// Three equations for the centre and the radius, by elimination.
std::optional<std::array<double, 3>> solve(std::array<std::array<double, 4>, 3> m)
{
    for (int i = 0; i < 3; ++i) {
        int pivot = i;
        for (int r = i + 1; r < 3; ++r)
            pivot = std::abs(m[r][i]) > std::abs(m[pivot][i]) ? r : pivot;
        std::swap(m[i], m[pivot]);
        if (!(std::abs(m[i][i]) > 1e-14))
            return std::nullopt;
        for (int r = 0; r < 3; ++r)
            for (int c = 3; r != i && c >= i; --c)
                m[r][c] -= m[r][i] / m[i][i] * m[i][c];
    }
    return std::array{m[0][3] / m[0][0], m[1][3] / m[1][1], m[2][3] / m[2][2]};
}

double totalMiss(const std::array<Touch, 3>& touches, const TouchingCircle& c)
{
    double sum = 0;
    for (const Touch& touch : touches) {
        const double by = missOf(touch, c.center, c.radius).by;
        sum += by * by;
    }
    return std::sqrt(sum);
}

std::optional<TouchingCircle> improved(const std::array<Touch, 3>& touches, const TouchingCircle& c)
{
    std::array<std::array<double, 4>, 3> rows;
    for (int i = 0; i < 3; ++i) {
        const Miss miss = missOf(touches[i], c.center, c.radius);
        rows[i] = {miss.slope.x, miss.slope.y, -1, -miss.by};
    }
    const auto step = solve(rows);
    if (!step)
        return std::nullopt;
    const double before = totalMiss(touches, c);
    for (double part = 1; part > 1e-6; part /= 2) {
        const TouchingCircle next{c.center + VcGeVector3d((*step)[0], (*step)[1], 0) * part,
                                  c.radius + (*step)[2] * part};
        if (next.radius > 0 && totalMiss(touches, next) < before)
            return next;
    }
    return std::nullopt;
}

}

std::optional<std::pair<VcGePoint3d, VcGePoint3d>> lineTouching(const Touch& from, const Touch& to)
{
    const auto squareTo = [](const Touch& touch, const VcGePoint3d& other) {
        return std::pair{footOn(touch, other), other};
    };
    if (from.curve && from.squarely && !to.curve)
        return squareTo(from, to.at);
    if (to.curve && to.squarely && !from.curve)
        return std::pair{from.at, footOn(to, from.at)};
    const auto a = discOf(from), b = discOf(to);
    return a && b && !from.squarely && !to.squarely ? alongDiscs(*a, *b, from.at, to.at) : std::nullopt;
}

std::optional<TouchingCircle> circleTouching(const std::array<Touch, 3>& touches)
{
    const auto middle = geom::centerThrough(touches[0].at, touches[1].at, touches[2].at);
    const VcGePoint3d mean((touches[0].at.x + touches[1].at.x + touches[2].at.x) / 3,
                           (touches[0].at.y + touches[1].at.y + touches[2].at.y) / 3, touches[0].at.z);
    TouchingCircle c{middle.value_or(mean), 0};
    c.radius = c.center.distanceTo(touches[0].at);
    const double size = c.radius + c.center.asVector().length();
    for (int i = 0; i < 100 && totalMiss(touches, c) > 1e-14 * size; ++i) {
        const auto next = improved(touches, c);
        if (!next)
            break;
        c = *next;
    }
    return totalMiss(touches, c) <= 1e-9 * (1 + size) ? std::optional(c) : std::nullopt;
}

}  // namespace vk::commands
