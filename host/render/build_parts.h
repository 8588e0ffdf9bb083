// What the builders of several classes share.
#pragma once

#include "host/render/list_builder.h"

class VcDbText;

namespace vktext {
struct MTextLayout;
}

namespace vk::render {

// A spline into the current figure; one that is no valid curve is drawn through its points.
void addSpline(ListBuilder& b, geom::Nurbs nurbs, const std::vector<VcGePoint3d>& fitPoints);

// A vertex of a polyline in its plane.
struct WidthVertex {
    VcGePoint2d point;
    double bulge = 0, startWidth = 0, endWidth = 0;
};

// One piece of a polyline into the current figure: its end, or the arc to it. The start has been added.
void addBulge(ListBuilder& b, const geom::Frame& frame, const VcGePoint2d& from, const VcGePoint2d& to, double bulge);

// Figures whose non-zero filling is the wide polyline: the pieces meet in mitres where they are equally wide.
void addWideFigures(ListBuilder& b, const geom::Frame& frame, const std::vector<WidthVertex>& vertices, bool closed);

// A straight or a smooth line through points into the current figure.
void addThroughPoints(ListBuilder& b, const std::vector<VcGePoint3d>& points, bool smooth);

// Letters and rules of a text of many lines from its insertion point, in the current colour where they have none.
void addMTextLayout(ListBuilder& b, const vktext::MTextLayout& layout, const VcGePoint3d& at, const VcGeVector3d& x, const VcGeVector3d& y);

void buildMultiLeader(const VcDbEntity& e, ListBuilder& b);

// The picture that another program left with an object of its own class; false where there is none.
bool addKeptGraphics(const VcDbEntity& e, ListBuilder& b);

// A colour whose first byte says by layer, by block, true or an index.
void setPackedColour(ListBuilder& b, std::int64_t packed);

// A text that says something else than it holds, as those of attributes in their definition's place do.
void addTextSaying(ListBuilder& b, const VcDbText& text, const std::string& said);

// The arrow of a dimension style at the end of a line that comes from the given direction.
void addArrow(ListBuilder& b, VcDbObjectId arrowBlock, const VcGePoint3d& tip, const VcGeVector3d& pointing,
              const VcGeVector3d& normal, double size);

}  // namespace vk::render
