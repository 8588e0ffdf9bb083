// Polygons of several rings with a filling, as mapping programs make them. Their groups are those of a hatch in a class of
// its own, which is kept as it came.
#include "host/db/extras.h"
#include "host/render/build_parts.h"

#include <cmath>
#include <numbers>

namespace vk::render {

namespace {

struct MPolygon {
    using Ring = std::vector<WidthVertex>;
    std::vector<Ring> rings;
    std::vector<VcDbHatch::PatternLine> lines;
    VcGeVector3d normal{0, 0, 1};
    double elevation = 0;
    int fillColour = 256;
    bool isSolid = false;

    explicit MPolygon(const ObjectExtras& extras)
    {
        for (const UnclaimedGroups& groups : extras.unclaimed)
            for (const Tag& tag : groups.tags)
                take(tag);
    }

private:
    void take(const Tag& tag)
    {
        if (tag.code == 100)
            m_isOwn = tag.form == Tag::Form::Utf8 && tag.view() == "AcDbMPolygon";
        if (m_isOwn)
            tag.form == Tag::Form::Integer ? takeNumber(tag.code, tag.integer) : takeReal(tag);
    }

    void takeNumber(int code, std::int64_t value)
    {
        if (code == 71)
            isSolid = value != 0;
        else if (code == 63)
            fillColour = int(value);
        else if (code == 92)
            rings.emplace_back();
    }

    void takeReal(const Tag& tag)
    {
        if (tag.form != Tag::Form::Real)
            return;
        switch (tag.code) {
        case 30:
            elevation = tag.real;
            return;
        case 210:
            normal.x = tag.real;
            return;
        case 220:
            normal.y = tag.real;
            return;
        case 230:
            normal.z = tag.real;
            return;
        case 53:
            lines.emplace_back().angle = tag.real * std::numbers::pi / 180;
            return;
        }
        if (!lines.empty())
            takeOfLine(lines.back(), tag);
        else if (!rings.empty())
            takeOfRing(rings.back(), tag);
    }

    static void takeOfLine(VcDbHatch::PatternLine& line, const Tag& tag)
    {
        switch (tag.code) {
        case 43:
            line.baseX = tag.real;
            return;
        case 44:
            line.baseY = tag.real;
            return;
        case 45:
            line.offsetX = tag.real;
            return;
        case 46:
            line.offsetY = tag.real;
            return;
        case 49:
            line.dashes.push_back(tag.real);
            return;
        }
    }

    static void takeOfRing(Ring& ring, const Tag& tag)
    {
        if (tag.code == 10)
            ring.emplace_back().point.x = tag.real;
        else if (!ring.empty() && tag.code == 20)
            ring.back().point.y = tag.real;
        else if (!ring.empty() && tag.code == 42)
            ring.back().bulge = tag.real;
    }
    bool m_isOwn = false;  // past the marker of the class
};

void addRing(ListBuilder& b, const geom::Frame& frame, const MPolygon::Ring& ring)
{
    b.beginFigure();
    b.point(frame.toWorld(VcGePoint3d(ring.front().point.x, ring.front().point.y, 0)));
    for (std::size_t i = 0; i < ring.size(); ++i)
        addBulge(b, frame, ring[i].point, ring[(i + 1) % ring.size()].point, ring[i].bulge);
    b.endFigure(true);
}

}

void buildMPolygon(const VcDbEntity& e, ListBuilder& b)
{
    if (!e.extras())
        return;
    MPolygon polygon(*e.extras());
    HatchArea area;
    area.firstFigure = b.figureCount();
    area.frame = geom::arbitraryFrame(polygon.normal);
    area.frame.origin = area.frame.toWorld(VcGePoint3d(0, 0, polygon.elevation));
    for (const MPolygon::Ring& ring : polygon.rings)
        if (!ring.empty())
            addRing(b, area.frame, ring);
    area.figureCount = b.figureCount() - area.firstFigure;
    if (area.figureCount == 0)
        return b.omit("MPOLYGON without rings");
    area.solid = polygon.isSolid;
    area.lines = std::move(polygon.lines);
    const std::uint32_t first = area.firstFigure, count = area.figureCount;
    if (b.fillsAreas() && (area.solid || !area.lines.empty())) {
        b.setColour(VcCmColor::fromIndex(std::int16_t(polygon.fillColour)));
        b.list().hatches.push_back(std::move(area));
        b.item(Item::Hatch, 0, b.list().hatches.size() - 1);
        b.setColour(b.props().color);
    }
    b.item(Item::Stroke, 0, first, count);
}

}  // namespace vk::render
