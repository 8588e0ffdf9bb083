#include "host/db/curve_of.h"
#include "host/db/database.h"
#include "host/db/dim_picture.h"
#include "host/db/kept_object.h"
#include "host/db/multileader.h"
#include "host/db/packed_colour.h"
#include "host/geom/arbitrary_axis.h"
#include "sdk/vcdb_curves.h"
#include "sdk/vcdb_faces.h"
#include "sdk/vcdb_insert.h"
#include "sdk/vcdb_records.h"
#include "sdk/vcdb_text.h"

#include <algorithm>
#include <cmath>

namespace vk::db {

namespace {

using Points = std::vector<VcGePoint3d>;

// Each piece a cubic whose tangents are half the way between its neighbours.
geom::Nurbs smoothThrough(const Points& points)
{
    geom::Nurbs nurbs{3, {points.front()}, {0, 0, 0, 0}, {}};
    const std::size_t last = points.size() - 1;
    const auto tangent = [&](std::size_t i) {
        return (points[std::min(i + 1, last)] - points[i ? i - 1 : 0]) * (i && i < last ? 0.5 : 1.0);
    };
    for (std::size_t i = 0; i < last; ++i) {
        nurbs.poles.push_back(points[i] + tangent(i) / 3);
        nurbs.poles.push_back(points[i + 1] - tangent(i + 1) / 3);
        nurbs.poles.push_back(points[i + 1]);
        nurbs.knots.insert(nurbs.knots.end(), 3, double(i + 1));
    }
    nurbs.knots.push_back(double(last));
    return nurbs;
}

// One object for the whole line: in the plane of the leader where it lies in one.
geom::Curve straightThrough(const Points& points, const VcGeVector3d& normal)
{
    if (points.size() == 2)
        return geom::Segment{points[0], points[1]};
    const geom::Frame frame = geom::arbitraryFrame(normal);
    geom::Polyline flat;
    flat.normal = frame.z;
    flat.elevation = frame.fromWorld(points[0]).z;
    for (const VcGePoint3d& p : points) {
        const VcGePoint3d own = frame.fromWorld(p);
        if (std::fabs(own.z - flat.elevation) > 1e-9 * (1 + std::fabs(own.z)))
            return geom::Polyline3{points, false};
        flat.vertices.push_back({{own.x, own.y}});
    }
    return flat;
}

Points withoutRepeats(Points points)
{
    points.erase(std::unique(points.begin(), points.end()), points.end());
    return points;
}

class Draughtsman {
public:
    Draughtsman(const VcDbKeptEntity& entity, const DatabaseCore& db)
        : m_entity(entity), m_db(db), m(readMultiLeader(entity, db))
    {
    }

    std::vector<std::unique_ptr<VcDbEntity>> draw()
    {
        if (m.lineKind != MultiLeader::kNoLines)
            for (const LeaderOfMany& leader : m.leaders)
                addLeader(leader);
        add(textOf(m, m_db), coloured(m.textColour));
        addBlock();
        return std::move(m_pieces);
    }

private:
    void addLeader(const LeaderOfMany& leader)
    {
        for (const Points& line : leader.lines)
            addLine(leader, line);
        const VcGeVector3d landing = leader.dogleg.normal() * leader.doglegLength;
        if (leader.hasDogleg && m.lineKind != MultiLeader::kSplined && landing.length() > 0)
            add(std::make_unique<VcDbLine>(leader.landing, leader.landing + landing), ofLines());
    }

    void addLine(const LeaderOfMany& leader, Points points)
    {
        if (leader.hasLanding)
            points.push_back(leader.landing);
        points = withoutRepeats(std::move(points));
        if (points.size() < 2)
            return;
        const VcGeVector3d first = points[1] - points[0];
        if (m.arrowSize > 0 && first.length() > m.arrowSize) {
            addArrow(points[0], -first);
            if (!dim::arrowHasNoBody(m_db, m.arrow))
                points[0] += first.normal() * m.arrowSize;
        }
        const bool isSmooth = m.lineKind == MultiLeader::kSplined && points.size() > 2;
        const geom::Curve curve = isSmooth ? geom::Curve(smoothThrough(points)) : straightThrough(points, m.normal);
        add(makeEntityOf(curve, VcDbLine()), ofLines());
    }

    void addArrow(const VcGePoint3d& tip, const VcGeVector3d& pointing)
    {
        const geom::Frame frame = geom::arbitraryFrame(m.normal, tip);
        const VcGeVector3d flat = frame.fromWorld(pointing);
        auto arrow = dim::arrowPiece(m_db, m.arrow, VcGePoint3d(), std::atan2(flat.y, flat.x), m.arrowSize);
        VcGeMatrix3d place;
        place.setCoordSystem(frame.origin, frame.x, frame.y, frame.z);
        if (arrow && arrow->transformBy(place) == Vcad::eOk)
            add(std::move(arrow), ofLines());
    }

    void addBlock()
    {
        auto reference = blockOf(m, m_db);
        if (!reference)
            return;
        EntityProps props = coloured(m.blockColour);
        for (VcDbEntity* attribute : reference->attributes())
            dim::inheritFrom(*attribute, m_entity);
        add(std::move(reference), props);
    }

    // By block is the multileader's own.
    EntityProps coloured(std::int64_t packed) const
    {
        EntityProps props = m_entity.props();
        if (const auto colour = colourOfPacked(std::uint32_t(packed)); colour && !colour->isByBlock())
            props.color = *colour;
        return props;
    }

    EntityProps ofLines() const
    {
        EntityProps props = coloured(m.lineColour);
        if (m.lineWeight && *m.lineWeight != VcDb::kLnWtByBlock)
            props.lineWeight = *m.lineWeight;
        if (!m.linetype.isNull() && m.linetype != m_db.findRecord(NameTable::Linetype, "ByBlock"))
            props.linetype = m.linetype;
        return props;
    }

    void add(std::unique_ptr<VcDbEntity> piece, const EntityProps& props)
    {
        if (!piece)
            return;
        piece->carryProps(props);
        m_pieces.push_back(std::move(piece));
    }

    const VcDbKeptEntity& m_entity;
    const DatabaseCore& m_db;
    const MultiLeader m;
    std::vector<std::unique_ptr<VcDbEntity>> m_pieces;
};

void fill(VcDbMText& text, const MultiLeader& m)
{
    text.setBackgroundFill(true);
    if (m.fillScale >= 1 && m.fillScale <= 5)
        text.setBackgroundScaleFactor(m.fillScale);
    if (const auto colour = colourOfPacked(std::uint32_t(m.fillColour)); colour && !m.fillsLikeWindow)
        text.setBackgroundFillColor(*colour);
}

}

std::unique_ptr<VcDbMText> textOf(const MultiLeader& m, const DatabaseCore& db)
{
    if (!m.hasText)
        return nullptr;
    auto text = std::make_unique<VcDbMText>();
    text->setContentsUtf8(m.text);
    const bool hasStyle = db.liveAs<VcDbTextStyleTableRecord>(m.textStyle) != nullptr;
    text->setTextStyle(hasStyle ? m.textStyle : db.findRecord(NameTable::TextStyle, "Standard"));
    text->setTextHeight(m.textHeight);
    text->setWidth(m.width);
    text->setAttachment(VcDbMText::AttachmentPoint(m.alignment >= 1 && m.alignment <= 3 ? m.alignment : 1));
    text->setLineSpacingStyle(m.exactSpacing ? VcDb::kExactly : VcDb::kAtLeast);
    text->setLineSpacingFactor(m.spacing);
    text->setNormal(m.normal);
    text->setDirection(m.direction);
    text->setLocation(m.textAt);
    if (m.isFilled)
        fill(*text, m);
    return text;
}

std::unique_ptr<VcDbBlockReference> blockOf(const MultiLeader& m, const DatabaseCore& db)
{
    if (!m.hasBlock || !db.liveAs<VcDbBlockTableRecord>(m.block))
        return nullptr;
    auto reference = std::make_unique<VcDbBlockReference>(m.blockAt, m.block);
    reference->setNormal(m.blockNormal);
    reference->setPosition(m.blockAt);
    reference->setScaleFactors(VcGeScale3d(m.blockScale.x, m.blockScale.y, m.blockScale.z));
    reference->setRotation(m.blockRotation);
    for (const MultiLeader::Attribute& said : m.attributes) {
        const auto* definition = db.liveAs<VcDbAttributeDefinition>(said.definition);
        if (!definition || definition->isConstant())
            continue;
        auto attribute = std::make_unique<VcDbAttribute>();
        attribute->setAttributeFromBlock(definition, reference->blockTransform());
        attribute->setTextUtf8(said.text);
        reference->appendAttribute(attribute.release());
    }
    return reference;
}

std::vector<std::unique_ptr<VcDbEntity>> multiLeaderPieces(const VcDbKeptEntity& entity)
{
    const DatabaseCore* db = DatabaseCore::of(entity.objectId());
    // A copy that is in no drawing still points into the one that it was made of.
    if (!db)
        db = DatabaseCore::of(entity.props().layer);
    return db ? Draughtsman(entity, *db).draw() : std::vector<std::unique_ptr<VcDbEntity>>();
}

}  // namespace vk::db
