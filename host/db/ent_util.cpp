#include "host/db/ent_util.h"

#include "host/base/unicode.h"
#include "host/geom/arbitrary_axis.h"
#include "sdk/vcdb_curves.h"

const wchar_t* VcDbWideText::of(const std::string& utf8) const
{
    if (!m_text)
        m_text = std::make_unique<std::wstring>(utf8ToWide(utf8));
    return m_text->c_str();
}

Vcad::ErrorStatus setThicknessOf(VcDbObject& object, VcDbExtrusion& extrusion, double thickness)
{
    if (!isFinite(thickness))
        return Vcad::eOutOfRange;
    object.assertWriteEnabled();
    extrusion.setThickness(thickness);
    return Vcad::eOk;
}

Vcad::ErrorStatus setNormalOf(VcDbObject& object, VcDbExtrusion& extrusion, const VcGeVector3d& normal)
{
    if (!isDirection(normal))
        return Vcad::eOutOfRange;
    object.assertWriteEnabled();
    extrusion.setNormal(normal.normal());
    return Vcad::eOk;
}

double turnOf(double angle)
{
    if (angle >= 0 && angle < kTwoPi)
        return angle;
    const double rest = std::fmod(angle, kTwoPi), turn = rest < 0 ? rest + kTwoPi : rest;
    // What rounding leaves of a whole turn is none.
    return kTwoPi - turn < 1e-13 ? 0 : turn;
}

// Rounding must not tilt a plane that only moved, or came back to an axis: its own axes could jump.
static VcGeVector3d settled(const VcGeVector3d& n, const VcGeVector3d& before)
{
    const VcGeVector3d likely[] = {before,    -before,    before.normal(), {0, 0, 1}, {0, 0, -1},
                                   {1, 0, 0}, {-1, 0, 0}, {0, 1, 0},       {0, -1, 0}};
    for (const VcGeVector3d& v : likely)
        if ((n - v).length() < 1e-12)
            return v;
    return n;
}

std::optional<PlaneMove> planeMove(const VcGeMatrix3d& m, const VcGeVector3d& normal)
{
    const vk::geom::Frame old = vk::geom::arbitraryFrame(normal);
    const VcGeVector3d u = m * old.x, v = m * old.y, w = m * old.z;
    const VcGeVector3d across = u.crossProduct(v);
    const double volume = across.dotProduct(w);
    if (!std::isfinite(volume) || !(std::fabs(volume) > 1e-24 * u.length() * v.length() * w.length()))
        return std::nullopt;

    PlaneMove move;
    move.mirrored = volume < 0;
    const VcGeVector3d exact = (move.mirrored ? -across : across).normal();
    move.normal = settled(exact, normal);
    const bool isFlat = old.z == VcGeVector3d::zAxis() && move.normal == old.z;
    move.own = isFlat ? m : VcGeMatrix3d::worldToPlane(move.normal) * m * VcGeMatrix3d::planeToWorld(old.z);
    const double length = std::sqrt(u.length() * v.length());
    move.scale = length;
    move.even =
        std::fabs(u.length() - v.length()) <= 1e-9 * length && std::fabs(u.dotProduct(v)) <= 1e-9 * length * length;
    move.height = w.dotProduct(move.normal);
    move.upright = (w - move.normal * move.height).length() <= 1e-9 * w.length();
    return move;
}

VcGePoint2d PlaneMove::operator()(const VcGePoint2d& p, double elevation) const
{
    const VcGePoint3d q = own * VcGePoint3d(p.x, p.y, elevation);
    return {q.x, q.y};
}

double PlaneMove::angle(double direction) const
{
    const auto& e = own.entry;
    if (e[0][0] == 1 && e[1][1] == 1 && e[0][1] == 0 && e[1][0] == 0)
        return direction;
    const double c = std::cos(direction), s = std::sin(direction);
    return std::atan2(e[1][0] * c + e[1][1] * s, e[0][0] * c + e[0][1] * s);
}

void addExtruded(VcDbExtents& extents, const VcGePoint3d& world, const VcDbExtrusion& extrusion)
{
    extents.addPoint(world);
    if (extrusion.thickness() != 0)
        extents.addPoint(world + extrusion.normal() * extrusion.thickness());
}

void addEllipse(VcDbExtents& extents, const VcGePoint3d& center, const VcGeVector3d& a, const VcGeVector3d& b,
                double start, double end)
{
    const auto at = [&](double t) { return center + a * std::cos(t) + b * std::sin(t); };
    const double sweep = end - start;
    extents.addPoint(at(start));
    extents.addPoint(at(end));
    for (const double t : {std::atan2(b.x, a.x), std::atan2(b.y, a.y), std::atan2(b.z, a.z)})
        for (const double extreme : {t, t + kPi})
            if (turnOf(extreme - start) <= sweep)
                extents.addPoint(at(extreme));
}

std::optional<BulgeArc> bulgeArc(const VcGePoint2d& from, const VcGePoint2d& to, double bulge)
{
    const VcGeVector2d chord = to - from;
    const double length = chord.length();
    if (bulge == 0 || length == 0 || !std::isfinite(bulge))
        return std::nullopt;
    // The centre lies on the bisector, (1 - b^2) / 4b chords to the left of the chord's middle.
    const VcGePoint2d center = from + chord * 0.5 + chord.perpVector() * ((1 - bulge * bulge) / (4 * bulge));
    const double radius = length * (1 + bulge * bulge) / (4 * std::fabs(bulge));
    if (!isFinite(center) || !isFinite(radius))
        return std::nullopt;
    const double first = (from - center).angle(), last = (to - center).angle();
    return bulge > 0 ? BulgeArc{center, radius, turnOf(first), turnOf(last)}
                     : BulgeArc{center, radius, turnOf(last), turnOf(first)};
}

VcDbEntity* segmentPiece(const VcDbEntity& whole, const PlaneSegment& s, const VcDbExtrusion& extrusion)
{
    const VcGeVector3d normal = extrusion.normal();
    if (const auto arc = bulgeArc(s.from, s.to, s.bulge)) {
        const VcGePoint3d center = vk::geom::toWorld(VcGePoint3d(arc->center.x, arc->center.y, s.elevation), normal);
        auto piece = std::make_unique<VcDbArc>(center, normal, arc->radius, arc->start, arc->end);
        piece->setThickness(extrusion.thickness());
        return pieceOf(whole, std::move(piece));
    }
    auto piece = std::make_unique<VcDbLine>(vk::geom::toWorld(VcGePoint3d(s.from.x, s.from.y, s.elevation), normal),
                                            vk::geom::toWorld(VcGePoint3d(s.to.x, s.to.y, s.elevation), normal));
    piece->setNormal(normal);
    piece->setThickness(extrusion.thickness());
    return pieceOf(whole, std::move(piece));
}
