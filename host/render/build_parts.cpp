#include "host/render/build_parts.h"

#include "host/db/database.h"
#include "sdk/vcdb_tables.h"

#include <cmath>

namespace vk::render {

using geom::Frame;

void addSpline(ListBuilder& b, geom::Nurbs nurbs, const std::vector<VcGePoint3d>& fitPoints)
{
    if (geom::isValid(geom::Curve(nurbs)))
        return b.spline(std::move(nurbs));
    for (const VcGePoint3d& p : fitPoints.empty() ? nurbs.poles : fitPoints)
        b.point(p);
}

namespace {

VcGePoint3d raised(const Frame& frame, const VcGePoint2d& p) { return frame.toWorld(VcGePoint3d(p.x, p.y, 0)); }

struct PlaneArc {
    VcGePoint2d center;
    double radius = 0, from = 0, sweep = 0;

    VcGePoint2d at(double t, double r) const
    {
        return center + VcGeVector2d(std::cos(from + sweep * t), std::sin(from + sweep * t)) * r;
    }
};

bool isArc(const VcGePoint2d& from, const VcGePoint2d& to, double bulge)
{
    return std::fabs(bulge) > 1e-9 && std::isfinite(bulge) && (to - from).lengthSqrd() > 0;
}

PlaneArc arcByBulge(const VcGePoint2d& from, const VcGePoint2d& to, double k)
{
    const VcGeVector2d chord = to - from;
    PlaneArc arc;
    arc.center = from + chord * 0.5 + chord.perpVector() * ((1 - k * k) / (4 * k));
    const VcGeVector2d r = from - arc.center;
    arc.radius = r.length();
    arc.from = r.angle();
    arc.sweep = 4 * std::atan(k);
    return arc;
}

void addPlaneArc(ListBuilder& b, const Frame& frame, const PlaneArc& arc, double radius, bool backwards)
{
    const double from = backwards ? arc.from + arc.sweep : arc.from;
    b.arc({raised(frame, arc.center), frame.x * radius, frame.y * radius, from, backwards ? -arc.sweep : arc.sweep});
}

}

void addBulge(ListBuilder& b, const Frame& frame, const VcGePoint2d& from, const VcGePoint2d& to, double bulge)
{
    if (isArc(from, to, bulge))
        addPlaneArc(b, frame, arcByBulge(from, to, bulge), arcByBulge(from, to, bulge).radius, false);
    else
        b.point(raised(frame, to));
}

namespace {

// One piece of a wide polyline: its ends with the directions it has there.
struct WidePiece {
    VcGePoint2d from, to;
    VcGeVector2d startDirection, endDirection;
    double bulge = 0, startHalf = 0, endHalf = 0;
    bool curved = false;
    // Corners at both ends, to the left and to the right of the direction.
    VcGePoint2d startLeft, startRight, endLeft, endRight;
};

std::optional<WidePiece> pieceBetween(const WidthVertex& a, const WidthVertex& z)
{
    const VcGeVector2d chord = z.point - a.point;
    if (!(chord.lengthSqrd() > 0))
        return std::nullopt;
    WidePiece piece{a.point, z.point, chord.normal(), chord.normal(), a.bulge, a.startWidth / 2, a.endWidth / 2};
    piece.curved = isArc(a.point, z.point, a.bulge);
    if (piece.curved) {
        const double turn = 2 * std::atan(a.bulge);
        piece.startDirection.rotateBy(-turn);
        piece.endDirection.rotateBy(turn);
    }
    const VcGeVector2d atStart = piece.startDirection.perpVector() * piece.startHalf;
    const VcGeVector2d atEnd = piece.endDirection.perpVector() * piece.endHalf;
    piece.startLeft = a.point + atStart;
    piece.startRight = a.point - atStart;
    piece.endLeft = z.point + atEnd;
    piece.endRight = z.point - atEnd;
    return piece;
}

// Sharper turns than this are left blunt, or their mitres would run far out.
constexpr double kSharpestMitre = 0.17;  // cosine of half the turn: about 20 degrees between the sides

void mitre(WidePiece& a, WidePiece& z)
{
    const double half = a.endHalf;
    if (a.curved || z.curved || half <= 0 || std::fabs(half - z.startHalf) > 1e-9 * half)
        return;
    const VcGeVector2d sum = a.endDirection + z.startDirection;
    const double cosine = sum.length() / 2;
    // The inner corner must not run past the other ends.
    const double shortest = std::min((a.to - a.from).length(), (z.to - z.from).length());
    const double reach = cosine > 0 ? half * std::sqrt(std::max(0.0, 1 - cosine * cosine)) / cosine : 0;
    if (cosine < kSharpestMitre || reach > shortest)
        return;
    const VcGeVector2d across = sum.normal().perpVector() * (half / cosine);
    a.endLeft = z.startLeft = a.to + across;
    a.endRight = z.startRight = a.to - across;
}

// Fills the notch outside a joint that has no mitre.
void addBluntJoint(ListBuilder& b, const Frame& frame, const WidePiece& a, const WidePiece& z)
{
    const double turn = a.endDirection.crossProduct(z.startDirection);
    if (a.endLeft == z.startLeft || std::fabs(turn) < 1e-9)
        return;
    const bool left = turn < 0;
    b.beginFigure();
    b.point(raised(frame, a.to));
    b.point(raised(frame, left ? z.startLeft : a.endRight));
    b.point(raised(frame, left ? a.endLeft : z.startRight));
    b.endFigure(true);
}

void addSide(ListBuilder& b, const Frame& frame, const WidePiece& piece, const PlaneArc& arc, double side,
             bool backwards)
{
    constexpr int kChordsOfTaper = 48;
    // To the left of an arc that turns left is nearer its centre.
    const double inward = arc.sweep > 0 ? -side : side;
    const double r0 = arc.radius + inward * piece.startHalf, r1 = arc.radius + inward * piece.endHalf;
    if (std::fabs(r0 - r1) < 1e-12 * arc.radius)
        return addPlaneArc(b, frame, arc, r0, backwards);
    for (int i = 0; i <= kChordsOfTaper; ++i) {
        const double t = double(backwards ? kChordsOfTaper - i : i) / kChordsOfTaper;
        b.point(raised(frame, arc.at(t, r0 + (r1 - r0) * t)));
    }
}

void addPieceFigure(ListBuilder& b, const Frame& frame, const WidePiece& piece)
{
    b.beginFigure();
    if (piece.curved) {
        const PlaneArc arc = arcByBulge(piece.from, piece.to, piece.bulge);
        addSide(b, frame, piece, arc, -1, false);
        addSide(b, frame, piece, arc, 1, true);
    } else {
        for (const VcGePoint2d& p : {piece.startRight, piece.endRight, piece.endLeft, piece.startLeft})
            b.point(raised(frame, p));
    }
    b.endFigure(true);
}

}

void addWideFigures(ListBuilder& b, const Frame& frame, const std::vector<WidthVertex>& vertices, bool closed)
{
    std::vector<WidePiece> pieces;
    const std::size_t n = vertices.size();
    for (std::size_t i = 0; i + (closed ? 0 : 1) < n; ++i)
        if (auto piece = pieceBetween(vertices[i], vertices[(i + 1) % n]))
            pieces.push_back(*piece);
    const std::size_t joints = pieces.size() < 2 ? 0 : pieces.size() - (closed ? 0 : 1);
    for (std::size_t i = 0; i < joints; ++i)
        mitre(pieces[i], pieces[(i + 1) % pieces.size()]);
    for (const WidePiece& piece : pieces)
        addPieceFigure(b, frame, piece);
    for (std::size_t i = 0; i < joints; ++i)
        addBluntJoint(b, frame, pieces[i], pieces[(i + 1) % pieces.size()]);
}

}  // namespace vk::render
