// The shape of a solid, a region or a surface, as its entity keeps it once it has been asked for.
#pragma once

#include "host/base/api.h"
#include "host/geom/model_shape.h"

class VcDbModelerGeometry;

struct SolidModel {
    vk::geom::ModelShape shape;
    vk::geom::Box3d box;  // of all edges and of round faces that reach beyond them

    // As many lines as were asked for last.
    const std::vector<vk::geom::Curve>& lines(int count) const;

private:
    mutable int m_lineCount = 0;
    mutable std::vector<vk::geom::Curve> m_lines;
};

// What is drawn: edges, and lines on round faces as many as the drawing or the surface says.
VKHOST_API std::vector<vk::geom::Curve> drawnCurvesOf(const VcDbModelerGeometry& solid);
