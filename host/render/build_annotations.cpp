// Leaders, feature control frames, shapes.
#include "host/db/database.h"
#include "host/db/dim_picture.h"
#include "host/db/kept_object.h"
#include "host/db/text_geometry.h"
#include "host/render/build_parts.h"
#include "host/text/mtext_layout.h"
#include "sdk/vcdb_dims.h"
#include "sdk/vcdb_insert.h"

#include <cmath>

namespace vk::render {

namespace {

// 256 is by layer, 0 by block: then the leader's own colour holds.
void setDimensionColour(ListBuilder& b, std::int16_t index)
{
    if (index != 0)
        b.setColour(VcCmColor::fromIndex(index));
}

// The line stops where a filled arrow begins.
void shortenForArrow(std::vector<VcGePoint3d>& points, double size)
{
    const VcGeVector3d first = points[1] - points[0];
    if (first.length() > size)
        points[0] += first.normal() * size;
}

void buildLeader(const VcDbEntity& e, ListBuilder& b)
{
    const auto& leader = static_cast<const VcDbLeader&>(e);
    std::vector<VcGePoint3d> points;
    for (int i = 0; i < leader.numVertices(); ++i)
        points.push_back(leader.vertexAt(i));
    if (points.size() < 2)
        return;
    if (const auto end = dim::underlineEnd(leader); end && !leader.isSplined())
        points.push_back(*end);
    const VcDbDimVars vars = leader.dimVars();
    setDimensionColour(b, vars.dimclrd);
    const double size = vars.dimasz * (vars.dimscale > 0 ? vars.dimscale : 1);
    const VcGeVector3d first = points[1] - points[0];
    if (leader.hasArrowHead() && size > 0 && first.length() >= 2 * size) {
        addArrow(b, vars.dimldrblk, points[0], -first, leader.normal(), size);
        if (vars.dimldrblk.isNull())
            shortenForArrow(points, size);
    }
    const std::uint32_t figure = b.figureCount();
    b.beginFigure();
    addThroughPoints(b, points, leader.isSplined());
    b.endFigure(false);
    b.stroke(figure, Item::RunsOn);
}

// Feature control frames: rows are parted by "^J", fields by "%%v".

std::vector<std::string> split(const std::string& text, std::string_view at, std::string_view other)
{
    std::vector<std::string> parts{""};
    for (std::size_t i = 0; i < text.size();) {
        const std::string_view rest = std::string_view(text).substr(i);
        const std::size_t cut = rest.starts_with(at) ? at.size() : rest.starts_with(other) ? other.size() : 0;
        if (cut)
            parts.emplace_back();
        else
            parts.back() += text[i];
        i += cut ? cut : 1;
    }
    return parts;
}

class FrameBuilder {
public:
    FrameBuilder(ListBuilder& b, const VcDbFcf& fcf) : m_b(b), m_vars(fcf.dimVars()), m_corner(fcf.location())
    {
        m_x = fcf.direction().normal();
        m_y = fcf.normal().normal().crossProduct(m_x);
        const double scale = m_vars.dimscale > 0 ? m_vars.dimscale : 1;
        m_height = m_vars.dimtxt * scale;
        m_gap = std::fabs(m_vars.dimgap) * scale;
    }

    // The location is the middle of the left side of the first row.
    void build(const std::string& text)
    {
        const double rowHeight = m_height + 2 * m_gap;
        double top = rowHeight / 2;
        for (const std::string& row : split(text, "^J", "\n")) {
            addRow(row, top, rowHeight);
            top -= rowHeight;
        }
    }

private:
    VcGePoint3d at(double x, double y) const { return m_corner + m_x * x + m_y * y; }

    void addRow(const std::string& row, double top, double height)
    {
        double left = 0;
        for (const std::string& field : split(row, "%%v", "%%V"))
            if (!field.empty())
                left += addField(field, left, top, height);
    }

    double addField(const std::string& field, double left, double top, double height)
    {
        vktext::MTextSpec spec;
        spec.contents = field;
        spec.style = textStyleSpec(m_vars.dimtxsty, &m_b.db());
        spec.height = m_height;
        spec.attachment = 4;
        const vktext::MTextLayout layout = vktext::layoutMText(spec);
        setDimensionColour(m_b, m_vars.dimclrt);
        addMTextLayout(m_b, layout, at(left + m_gap, top - height / 2), m_x, m_y);
        const double width = std::max(layout.width + 2 * m_gap, height / 2);
        setDimensionColour(m_b, m_vars.dimclrd);
        const std::uint32_t first = m_b.figureCount();
        m_b.polygon({at(left, top), at(left + width, top), at(left + width, top - height), at(left, top - height)});
        m_b.stroke(first);
        return width;
    }

    ListBuilder& m_b;
    const VcDbDimVars m_vars;
    VcGePoint3d m_corner;
    VcGeVector3d m_x, m_y;
    double m_height = 1, m_gap = 0.5;
};

void buildFrame(const VcDbEntity& e, ListBuilder& b)
{
    const auto& fcf = static_cast<const VcDbFcf&>(e);
    FrameBuilder(b, fcf).build(fcf.textUtf8());
}

// Figures of shape files that are not at hand.
void buildShape(const VcDbEntity&, ListBuilder& b) { b.omit("SHAPE whose shape file is not at hand"); }

void buildKept(const VcDbEntity& e, ListBuilder& b)
{
    const std::string_view name = static_cast<const VcDbKeptEntity&>(e).keptDxfName();
    if (name == "MULTILEADER" || name == "MLEADER")
        buildMultiLeader(e, b);
    else
        b.omit(name);
}

constexpr BuildEntry kBuilders[] = {
    {&VcDbKeptEntity::desc, buildKept},
    {&VcDbLeader::desc, buildLeader},
    {&VcDbFcf::desc, buildFrame},
    {&VcDbShape::desc, buildShape},
};

}

std::span<const BuildEntry> annotationBuilders() { return kBuilders; }

}  // namespace vk::render
