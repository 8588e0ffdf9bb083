// The shape of a solid, a region or a surface, as its entity keeps it once it has been asked for.
#pragma once

#include "host/base/api.h"
#include "host/geom/model_shape.h"

class VcDbModelerGeometry;

struct SolidModel {
    vk::geom::ModelShape shape;
    vk::geom::Box3d box;  // of all edges and of round faces that reach beyond them
};

// What is drawn: edges, and lines on round faces as many as the drawing or the surface says.
VKHOST_API std::vector<vk::geom::Curve> drawnCurvesOf(const VcDbModelerGeometry& solid);
