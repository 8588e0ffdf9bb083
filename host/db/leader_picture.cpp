// What a leader looks like: straight stretches or a curve through its points, an arrow at the first one, and the level
// line under text that stands above it.
#include "host/db/database.h"
#include "host/db/dim_figure.h"
#include "host/db/dim_picture.h"
#include "host/db/ent_util.h"
#include "sdk/vcdb_curves.h"
#include "sdk/vcdb_faces.h"
#include "sdk/vcdb_polylines.h"
#include "sdk/vcdb_tables.h"
#include "sdk/vcdb_text.h"

namespace vk::dim {

namespace {

using Points = std::vector<VcGePoint3d>;

// Points that say something new, from the arrow on.
Points verticesOf(const VcDbLeader& leader)
{
    Points points;
    for (int i = 0; i < leader.numVertices(); ++i)
        if (points.empty() || points.back() != leader.vertexAt(i))
            points.push_back(leader.vertexAt(i));
    return points;
}

VcGeVector3d tangentAt(const Points& p, std::size_t i)
{
    if (p.size() == 2)
        return p[1] - p[0];
    if (i > 0 && i + 1 < p.size())
        return (p[i + 1] - p[i - 1]) * 0.5;
    // At the ends the curve leaves as a parabola through three points.
    return i == 0 ? (p[1] - p[0]) * 1.5 - (p[2] - p[0]) * 0.25 : (p[i] - p[i - 1]) * 1.5 - (p[i] - p[i - 2]) * 0.25;
}

std::unique_ptr<VcDbEntity> curveThrough(const Points& p)
{
    Points control{p[0]};
    std::vector<double> knots(4, 0.0);
    for (std::size_t i = 0; i + 1 < p.size(); ++i) {
        control.push_back(p[i] + tangentAt(p, i) / 3);
        control.push_back(p[i + 1] - tangentAt(p, i + 1) / 3);
        control.push_back(p[i + 1]);
        knots.insert(knots.end(), 3, double(i + 1));
    }
    knots.push_back(knots.back());
    auto spline = std::make_unique<VcDbSpline>();
    if (spline->setNurbsData(3, false, false, control, knots, {}) != Vcad::eOk)
        return nullptr;
    return spline;
}

class LeaderDraughtsman {
public:
    LeaderDraughtsman(const VcDbLeader& leader, const DatabaseCore& db)
        : m_leader(leader), m_db(db), m_vars(leader.dimVars())
    {
        m_scale = overallScale(m_vars, db, isInPaperSpace(leader, db));
        m_size = m_scale * m_vars.dimasz;
    }

    std::vector<std::unique_ptr<VcDbEntity>> draw()
    {
        Points points = verticesOf(m_leader);
        if (points.size() < 2)
            return {};
        const VcGeVector3d start = m_leader.isSplined() ? tangentAt(points, 0) : points[1] - points[0];
        if (m_leader.hasArrowHead() && m_size > 0 && start.length() >= 2 * m_size)
            addArrow(points, start.normal());
        addBox();
        if (m_leader.isSplined()) {
            add(curveThrough(points));
            return std::move(m_pieces);
        }
        if (const auto end = underlineEnd(m_leader))
            points.push_back(*end);
        for (std::size_t i = 0; i + 1 < points.size(); ++i)
            add(std::make_unique<VcDbLine>(points[i], points[i + 1]));
        return std::move(m_pieces);
    }

private:
    // In the leader's own plane, then at its tip.
    void addArrow(Points& points, const VcGeVector3d& away)
    {
        const geom::Frame frame = geom::arbitraryFrame(m_leader.normal(), points[0]);
        const VcGeVector3d flat = frame.fromWorld(-away);
        auto arrow = arrowPiece(m_db, m_vars.dimldrblk, VcGePoint3d(), std::atan2(flat.y, flat.x), m_size);
        VcGeMatrix3d place;
        place.setCoordSystem(frame.origin, frame.x, frame.y, frame.z);
        arrow->transformBy(place);
        add(std::move(arrow));
        if (!arrowHasNoBody(m_db, m_vars.dimldrblk))
            points[0] = points[0] + away * m_size;
    }

    // A negative DIMGAP frames the text at that distance.
    void addBox()
    {
        const auto* text = m_vars.dimgap < 0 ? m_db.liveAs<VcDbMText>(m_leader.annotationObjId()) : nullptr;
        if (!text || text->actualWidth() <= 0)
            return;
        const double gap = -m_vars.dimgap * m_scale, width = text->actualWidth(), height = text->actualHeight();
        const int column = (text->attachment() - 1) % 3, row = (text->attachment() - 1) / 3;
        const VcGeVector3d x = text->direction().normal(), y = text->normal().crossProduct(x);
        const VcGePoint3d low = text->location() - x * (width * column / 2 + gap) - y * (height * (2 - row) / 2 + gap);
        const VcGeVector3d wide = x * (width + 2 * gap), high = y * (height + 2 * gap);
        const VcGePoint3d corners[] = {low, low + wide, low + wide + high, low + high};
        for (int i = 0; i < 4; ++i)
            add(std::make_unique<VcDbLine>(corners[i], corners[(i + 1) % 4]));
    }

    void add(std::unique_ptr<VcDbEntity> piece)
    {
        if (!piece)
            return;
        EntityProps props = m_leader.props();
        if (m_vars.dimclrd != 0)
            props.color = VcCmColor::fromIndex(m_vars.dimclrd);
        if (m_vars.dimlwd != VcDb::kLnWtByBlock)
            props.lineWeight = m_vars.dimlwd;
        if (!m_vars.dimltype.isNull())
            props.linetype = m_vars.dimltype;
        piece->carryProps(props);
        m_pieces.push_back(std::move(piece));
    }

    const VcDbLeader& m_leader;
    const DatabaseCore& m_db;
    VcDbDimVars m_vars;
    double m_scale = 1, m_size = 0;
    std::vector<std::unique_ptr<VcDbEntity>> m_pieces;
};

}

std::optional<VcGePoint3d> underlineEnd(const VcDbLeader& leader)
{
    const DatabaseCore* db = DatabaseCore::of(leader.dimensionStyle());
    const VcDbDimVars vars = leader.dimVars();
    if (!db || leader.numVertices() < 2 || !leader.hasHookLine() || leader.annoType() != 0 || vars.dimtad == 0 ||
        leader.annoWidth() <= 0)
        return std::nullopt;
    const double length =
        leader.annoWidth() + overallScale(vars, *db, isInPaperSpace(leader, *db)) * std::abs(vars.dimgap);
    return leader.vertexAt(leader.numVertices() - 1) +
           leader.horizontalDirection() * (leader.hookGoesAlong() ? length : -length);
}

std::vector<std::unique_ptr<VcDbEntity>> leaderPieces(const VcDbLeader& leader)
{
    const DatabaseCore* db = DatabaseCore::of(leader.objectId());
    if (!db)
        db = DatabaseCore::of(leader.dimensionStyle());
    return db ? LeaderDraughtsman(leader, *db).draw() : std::vector<std::unique_ptr<VcDbEntity>>();
}

}  // namespace vk::dim
