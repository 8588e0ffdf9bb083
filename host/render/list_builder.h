// Turns entities into items of a display list.
#pragma once

#include "host/render/display_list.h"

#include <map>
#include <span>
#include <string>
#include <string_view>

class DatabaseCore;

namespace vk::render {

// What was left out of a picture, by its kind, and how often.
class VKHOST_API Omissions {
public:
    void add(std::string_view what, std::size_t count = 1);
    const std::map<std::string, std::size_t>& counts() const { return m_counts; }

private:
    std::map<std::string, std::size_t> m_counts;
};

// Appends to one list. Figures are begun, filled with pieces, and then stroked or filled; everything that is added goes
// with the properties of the current entity until another look is set.
class VKHOST_API ListBuilder {
public:
    ListBuilder(DisplayList& list, const DatabaseCore& db, Omissions& omissions)
        : m_list(list), m_db(db), m_omissions(omissions)
    {
    }

    // Adds what the entity looks like. Attributes of a reference are added with it.
    void add(const VcDbEntity& entity);
    // Adds what the entity explodes into; false when it does not.
    bool addPieces(const VcDbEntity& entity);

    const DatabaseCore& db() const { return m_db; }
    DisplayList& list() { return m_list; }
    void omit(std::string_view what) { m_omissions.add(what); }
    bool fillsAreas() const;  // FILLMODE
    // Whether the list is that of a block, where attribute definitions are not seen.
    bool inBlock = false;

    // Looks
    const EntityProps& props() const { return *m_props; }
    void setLook(const EntityProps& props);
    void setOwnLook(EntityProps props);
    // The current entity's, in another colour.
    void setColour(const VcCmColor& colour);
    const VcCmColor& colour() const { return m_list.looks[m_look].props->color; }
    std::uint32_t look() const { return m_look; }

    // Figures
    void beginFigure();
    void point(const VcGePoint3d& p);
    void arc(const EllipseArc& arc);
    void spline(geom::Nurbs nurbs);
    void endFigure(bool closed);
    std::uint32_t figureCount() const { return std::uint32_t(m_list.figures.size()); }

    // Items over the figures from the given one on.
    void stroke(std::uint32_t firstFigure, std::uint8_t flags = 0)
    {
        item(Item::Stroke, flags, firstFigure, figureCount() - firstFigure);
    }
    void fill(std::uint32_t firstFigure, FillRule rule);
    void mask(std::uint32_t firstFigure) { item(Item::Mask, 0, firstFigure, figureCount() - firstFigure); }
    void item(Item::Kind kind, std::uint8_t flags, std::size_t first, std::size_t count = 1);

    void line(const VcGePoint3d& from, const VcGePoint3d& to, std::uint8_t flags = 0);
    void polygon(const std::vector<VcGePoint3d>& corners);  // a closed figure, not drawn yet
    // Strokes the figures from the given one on once more, moved, with what joins both: for entities with a thickness.
    void extrude(std::uint32_t firstFigure, const VcGeVector3d& by);
    void text(const vktext::TextStyleSpec& style, double height, std::string_view text, const VcGePoint3d& origin,
              const VcGeVector3d& x, const VcGeVector3d& y, double tracking = 1);
    void use(BlockUse use);
    // What is added until unclip is seen within the frame only. Each clip has its unclip.
    void clip(ClipFrame frame);
    void unclip() { item(Item::Unclip, 0, 0); }
    void grow(const geom::Box3d& box) { m_list.bounds.add(box); }

private:
    DisplayList& m_list;
    const DatabaseCore& m_db;
    Omissions& m_omissions;
    const EntityProps* m_props = nullptr;
    std::uint32_t m_look = 0, m_entityLook = 0;
    std::uint32_t m_figureStart = 0;
};

// Adds an entity of one class; the entity is of that class.
using BuildFunction = void (*)(const VcDbEntity&, ListBuilder&);
struct BuildEntry {
    VcRxClass* (*desc)();
    BuildFunction build;
};
// Classes with their own builders, those derived before their bases.
std::span<const BuildEntry> curveBuilders();
std::span<const BuildEntry> polylineBuilders();
std::span<const BuildEntry> textBuilders();
std::span<const BuildEntry> areaBuilders();
std::span<const BuildEntry> blockBuilders();
std::span<const BuildEntry> annotationBuilders();
std::span<const BuildEntry> frameBuilders();
std::span<const BuildEntry> solidBuilders();

}  // namespace vk::render
