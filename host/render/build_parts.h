// What the builders of several classes share.
#pragma once

#include "host/render/list_builder.h"

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

// A polyline in a plane at a height over its frame.
struct PlanePolyline {
    std::vector<WidthVertex> vertices;
    bool closed = false, runsOn = false;
    VcGeVector3d normal{0, 0, 1};
    double elevation = 0, thickness = 0;
};

// Filled where it is wide, else stroked; the frame may be any, the polyline's own normal and elevation do not count.
void addPlanePolyline(ListBuilder& b, const PlanePolyline& polyline, const geom::Frame& frame);
geom::Frame frameOf(const PlanePolyline& polyline);

// One piece of a polyline into the current figure: its end, or the arc to it. The start has been added.
void addBulge(ListBuilder& b, const geom::Frame& frame, const VcGePoint2d& from, const VcGePoint2d& to, double bulge);

// Figures whose non-zero filling is the wide polyline: the pieces meet in mitres where they are equally wide.
void addWideFigures(ListBuilder& b, const geom::Frame& frame, const std::vector<WidthVertex>& vertices, bool closed);

// Letters and rules of a text of many lines from its insertion point, in the current colour where they have none.
void addMTextLayout(ListBuilder& b, const vktext::MTextLayout& layout, const VcGePoint3d& at, const VcGeVector3d& x,
                    const VcGeVector3d& y);

void buildUnderlay(const VcDbEntity& e, ListBuilder& b);
void buildMPolygon(const VcDbEntity& e, ListBuilder& b);

// A name across the middle of a frame, for what is not at hand.
void addLabel(ListBuilder& b, std::string_view file, const VcGePoint3d& corner, const VcGeVector3d& width,
              const VcGeVector3d& height);

// The picture that another program left with an object of its own class; false where there is none.
bool addKeptGraphics(const VcDbEntity& e, ListBuilder& b);

}  // namespace vk::render
