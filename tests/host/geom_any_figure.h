// Figures of every kind for tests that want thousands of them: free or on a grid, where they touch, overlap and repeat
// points; flat or in space; from a billionth to a billion in size and up to a million times their size from the origin.
#pragma once

#include "geom_support.h"

#include <random>

namespace vk::geom::testing {

class AnyFigure {
public:
    explicit AnyFigure(unsigned seed) : m_random(seed)
    {
        const double sizes[] = {1, 10, 1e3, 1e9, 1e-4, 1e-9}, ways[] = {0, 0, 1, 1e3, 1e6};
        m_size = sizes[whole(0, 5)];
        const double way = ways[whole(0, 4)] * m_size;
        m_flat = chance(0.65);
        m_grid = chance(0.4);
        m_at = {number(-1, 1) * way, number(-1, 1) * way, m_flat ? 0 : number(-1, 1) * way};
    }

    double size() const { return m_size; }
    const Point3& at() const { return m_at; }
    bool flat() const { return m_flat; }
    void setFlat() { m_flat = true, m_at.z = 0; }

    double number(double low, double high) { return std::uniform_real_distribution<double>(low, high)(m_random); }
    int whole(int low, int high) { return std::uniform_int_distribution<int>(low, high)(m_random); }
    bool chance(double share) { return number(0, 1) < share; }
    double coordinate() { return m_grid ? whole(-5, 5) * 0.2 : number(-1, 1); }
    double angle() { return m_grid ? whole(0, 15) * kTwoPi / 16 : number(0, kTwoPi); }
    double radius() { return (m_grid ? whole(1, 5) * 0.2 : number(0.02, 1)) * m_size; }
    Point3 point()
    {
        const double x = coordinate(), y = coordinate();
        return m_at + Vector3(x, y, m_flat ? 0 : coordinate()) * m_size;
    }
    Vector3 step()
    {
        const Vector3 v = point() - point();
        return v.lengthSqrd() > 0 ? v : Vector3(m_size, 0, 0);
    }
    Vector3 normal()
    {
        if (m_flat || chance(0.2))
            return {0, 0, m_flat && chance(0.2) ? -1.0 : 1.0};
        return Vector3(number(-1, 1), number(-1, 1), number(-1, 1)).normal();
    }

    enum Kind { kSegment, kRay, kXLine, kCircle, kArc, kEllipse, kNurbs, kPolyline, kPolyline3, kKinds };
    Curve curve() { return curve(Kind(whole(0, kKinds - 1))); }
    Curve curve(Kind kind)
    {
        switch (kind) {
        case kSegment: {
            const Point3 start = point();
            return Segment{start, point()};
        }
        case kRay: {
            const Point3 base = point();
            return Ray{base, step()};
        }
        case kXLine: {
            const Point3 base = point();
            return XLine{base, step()};
        }
        case kCircle: {
            const Point3 center = point();
            return Circle{center, radius(), normal()};
        }
        case kArc: {
            const Point3 center = point();
            const double start = angle(), sweep = m_grid ? whole(1, 15) * kTwoPi / 16 : number(0.01, 6.2);
            return Arc{center, radius(), start, start + sweep, normal()};
        }
        case kEllipse:
            return ellipse();
        case kNurbs:
            return nurbs();
        case kPolyline:
            return polyline();
        default:
            return polyline3();
        }
    }

    Ellipse ellipse()
    {
        const Vector3 z = normal();
        const Frame frame = arbitraryFrame(z);
        const double turn = angle(), start = angle(), sweep = number(0.01, 6.2);
        const double ratio = chance(0.1) ? number(1e-4, 1e-2) : chance(0.15) ? 1 : number(0.05, 1);
        const Vector3 major = (frame.x * std::cos(turn) + frame.y * std::sin(turn)) * radius();
        const bool full = chance(0.4);
        return {point(), major, ratio, full ? 0 : start, full ? kTwoPi : start + sweep, z};
    }

    Nurbs nurbs()
    {
        Nurbs n{chance(0.6) ? whole(1, 4) : whole(1, 11), {}, {}, {}};
        const int count = n.degree + 1 + whole(0, 8);
        for (int i = 0; i < count; ++i)
            n.poles.push_back(point());
        if (chance(0.7))
            addClampedKnots(n, count);
        else
            addEvenKnots(n, count);
        if (chance(0.4))
            for (int i = 0; i < count; ++i)
                n.weights.push_back(std::pow(10, number(-1, 1)));
        return n;
    }

    double bulge()
    {
        const double kind = number(0, 1);
        if (kind < 0.4)
            return 0;
        if (kind < 0.8)
            return number(-1, 1);
        if (kind < 0.88)
            return chance(0.5) ? 1 : -1;
        return kind < 0.94 ? number(-1, 1) * 1e-8 : number(-20, 20);
    }

    Polyline polyline()
    {
        Polyline p{{}, chance(0.4), 0, normal()};
        const Point3 local = fromWorld(m_at, p.normal);
        p.elevation = m_flat ? local.z : local.z + coordinate() * m_size;
        for (int i = 0, count = whole(2, 8); i < count; ++i) {
            const double x = coordinate(), y = coordinate();
            p.vertices.push_back({{local.x + x * m_size, local.y + y * m_size}, bulge()});
            if (i > 0 && chance(0.1))
                p.vertices.back().point = p.vertices[whole(0, i - 1)].point;
        }
        return p;
    }

    Polyline3 polyline3()
    {
        Polyline3 p{{}, chance(0.4)};
        for (int i = 0, count = whole(2, 7); i < count; ++i)
            p.vertices.push_back(i > 0 && chance(0.07) ? p.vertices.back() : point());
        return p;
    }

    VcGeMatrix3d map()
    {
        const Vector3 axis(number(-1, 1), number(-1, 1), number(-1, 1));
        switch (whole(0, 3)) {
        case 0:
            return VcGeMatrix3d::mirroring(VcGePlane(m_at, axis));
        case 1:
            return VcGeMatrix3d::rotation(number(-3, 3), axis, m_at);
        case 2:
            return VcGeMatrix3d::scaling(VcGeScale3d(number(-3, 3), number(-3, 3), number(-3, 3)));
        default: {
            VcGeMatrix3d shear;
            shear.entry[0][1] = number(-2, 2);
            return shear;
        }
        }
    }

private:
    void addClampedKnots(Nurbs& n, int count)
    {
        n.knots.assign(n.degree + 1, 0.0);
        double knot = 0;
        for (int rest = count - n.degree - 1; rest > 0;) {
            const int times = chance(0.2) ? std::min(rest, whole(1, n.degree)) : 1;
            knot += chance(0.3) ? number(0.01, 2) : 1;
            n.knots.insert(n.knots.end(), times, knot);
            rest -= times;
        }
        n.knots.insert(n.knots.end(), n.degree + 1, knot + 1);
    }
    void addEvenKnots(Nurbs& n, int count)
    {
        for (int i = 0; i < count + n.degree + 1; ++i)
            n.knots.push_back(i);
        if (chance(0.5) && count > 2 * n.degree)
            std::copy_n(n.poles.begin(), n.degree, n.poles.end() - n.degree);
    }

    std::mt19937 m_random;
    double m_size = 1;
    Point3 m_at;
    bool m_flat = true, m_grid = false;
};

inline Interval finiteRange(const Curve& curve)
{
    const Interval r = paramRange(curve);
    return {std::isfinite(r.from) ? r.from : -20, std::isfinite(r.to) ? r.to : 20};
}

// The larger of what a curve measures and how far it lies from the origin.
inline double extentOf(const Curve& curve)
{
    Box3d box;
    for (double t : evenly(finiteRange(curve), 64))
        box.add(pointAt(curve, t));
    return std::max(box.diagonal(), box.magnitude());
}

}  // namespace vk::geom::testing
