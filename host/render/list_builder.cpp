#include "host/render/list_builder.h"

#include "host/db/database.h"
#include "host/db/kept_object.h"
#include "host/render/build_parts.h"
#include "host/text/font_library.h"
#include "sdk/vcdb_entity.h"

#include <unordered_map>

namespace vk::render {

void Omissions::add(std::string_view what, std::size_t count)
{
    const auto at = m_counts.find(std::string(what));
    if (at == m_counts.end())
        m_counts.emplace(what, count);
    else
        at->second += count;
}

namespace {

// The builder of a class or of the nearest base that has one.
BuildFunction findBuilder(const VcRxClass* cls)
{
    for (const auto& table : {curveBuilders(), polylineBuilders(), textBuilders(), areaBuilders(), blockBuilders(),
                              annotationBuilders(), frameBuilders(), solidBuilders()})
        for (const BuildEntry& entry : table)
            if (cls->isDerivedFrom(entry.desc()))
                return entry.build;
    return nullptr;
}

BuildFunction builderOf(const VcDbEntity& entity)
{
    static std::unordered_map<const VcRxClass*, BuildFunction> known;
    const VcRxClass* cls = entity.isA();
    const auto at = known.find(cls);
    return at != known.end() ? at->second : known.emplace(cls, findBuilder(cls)).first->second;
}

}

void ListBuilder::add(const VcDbEntity& entity)
{
    if (entity.visibility() == VcDb::kInvisible)
        return;
    if (entity.objectId().isNull()) {  // a piece that ends before the list does
        setOwnLook(entity.props());
        m_entityLook = m_look;
        m_props = m_list.looks[m_look].props;
    } else {
        setLook(entity.props());
    }
    if (const BuildFunction build = builderOf(entity))
        build(entity, *this);
    else if (!addKeptGraphics(entity, *this))
        omit(dxfNameOf(entity));
}

bool ListBuilder::addPieces(const VcDbEntity& entity)
{
    std::vector<VcDbEntity*> pieces;
    const Vcad::ErrorStatus status = entity.explode(pieces);
    for (const VcDbEntity* piece : pieces) {
        add(*piece);
        delete piece;
    }
    return status == Vcad::eOk;
}

bool ListBuilder::fillsAreas() const { return m_db.header().integer("$FILLMODE", 1) != 0; }

void ListBuilder::setLook(const EntityProps& props)
{
    m_props = &props;
    m_look = m_entityLook = m_list.lookOf(props);
}

void ListBuilder::setOwnLook(EntityProps props) { m_look = m_list.ownLook(std::move(props)); }

void ListBuilder::setColour(const VcCmColor& colour)
{
    if (colour == m_props->color) {
        m_look = m_entityLook;
        return;
    }
    EntityProps props = *m_props;
    props.color = colour;
    setOwnLook(std::move(props));
}

void ListBuilder::beginFigure() { m_figureStart = std::uint32_t(m_list.pieces.size()); }

void ListBuilder::point(const VcGePoint3d& p)
{
    const bool continues = m_list.pieces.size() > m_figureStart && m_list.pieces.back().kind == Piece::Chain;
    if (!continues)
        m_list.pieces.push_back({Piece::Chain, std::uint32_t(m_list.points.size()), 0});
    m_list.points.push_back(p);
    ++m_list.pieces.back().count;
    m_list.bounds.add(p);
}

void ListBuilder::arc(const EllipseArc& arc)
{
    m_list.pieces.push_back({Piece::Arc, std::uint32_t(m_list.arcs.size()), 1});
    m_list.arcs.push_back(arc);
    const VcGeVector3d reach(std::hypot(arc.u.x, arc.v.x), std::hypot(arc.u.y, arc.v.y), std::hypot(arc.u.z, arc.v.z));
    m_list.bounds.add(geom::Box3d{arc.center - reach, arc.center + reach});
}

void ListBuilder::spline(geom::Nurbs nurbs)
{
    for (const VcGePoint3d& p : nurbs.poles)
        m_list.bounds.add(p);
    m_list.pieces.push_back({Piece::Spline, std::uint32_t(m_list.splines.size()), 1});
    m_list.splines.push_back(std::move(nurbs));
}

void ListBuilder::endFigure(bool closed)
{
    m_list.figures.push_back({m_figureStart, std::uint32_t(m_list.pieces.size()) - m_figureStart, closed});
    m_figureStart = std::uint32_t(m_list.pieces.size());
}

void ListBuilder::item(Item::Kind kind, std::uint8_t flags, std::size_t first, std::size_t count)
{
    if (count > 0)
        m_list.items.push_back({kind, flags, m_look, std::uint32_t(first), std::uint32_t(count)});
}

void ListBuilder::fill(std::uint32_t firstFigure, FillRule rule)
{
    item(Item::Fill, rule == FillRule::NonZero ? Item::NonZero : 0, firstFigure, figureCount() - firstFigure);
}

void ListBuilder::line(const VcGePoint3d& from, const VcGePoint3d& to, std::uint8_t flags)
{
    const std::uint32_t first = figureCount();
    beginFigure();
    point(from);
    point(to);
    endFigure(false);
    stroke(first, flags);
}

void ListBuilder::polygon(const std::vector<VcGePoint3d>& corners)
{
    beginFigure();
    for (const VcGePoint3d& p : corners)
        point(p);
    endFigure(true);
}

namespace {

VcGePoint3d arcPoint(const EllipseArc& arc, double t) { return arc.center + arc.u * std::cos(t) + arc.v * std::sin(t); }

// Points of a piece where something upright stands on it.
std::vector<VcGePoint3d> feet(const DisplayList& list, const Piece& piece)
{
    if (piece.kind == Piece::Chain)
        return {list.points.begin() + piece.first, list.points.begin() + piece.first + piece.count};
    if (piece.kind == Piece::Arc) {
        const EllipseArc& arc = list.arcs[piece.first];
        return {arcPoint(arc, arc.from), arcPoint(arc, arc.from + arc.sweep)};
    }
    return {};
}

}

void ListBuilder::extrude(std::uint32_t firstFigure, const VcGeVector3d& by)
{
    const std::uint32_t end = figureCount();
    std::vector<VcGePoint3d> uprights;
    for (std::uint32_t f = firstFigure; f < end; ++f) {
        const Figure figure = m_list.figures[f];
        beginFigure();
        for (std::uint32_t p = figure.first; p < figure.first + figure.count; ++p) {
            const Piece piece = m_list.pieces[p];
            const auto standing = feet(m_list, piece);
            uprights.insert(uprights.end(), standing.begin(), standing.end());
            if (piece.kind == Piece::Arc) {
                EllipseArc raised = m_list.arcs[piece.first];
                raised.center += by;
                arc(raised);
            }
            if (piece.kind == Piece::Chain)
                for (const VcGePoint3d& p3 : standing)
                    point(p3 + by);
        }
        endFigure(figure.closed);
    }
    stroke(end);
    for (const VcGePoint3d& p : uprights)
        line(p, p + by);
}

void ListBuilder::clip(ClipFrame frame)
{
    m_list.clips.push_back(std::move(frame));
    item(Item::Clip, 0, m_list.clips.size() - 1);
}

void ListBuilder::use(BlockUse use)
{
    m_list.blocks.push_back(std::move(use));
    item(Item::Block, 0, m_list.blocks.size() - 1);
}

}  // namespace vk::render
