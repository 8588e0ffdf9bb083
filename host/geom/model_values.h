// Curves and surfaces out of single records of the modeller's data. Nothing where a record says too little.
#pragma once

#include "host/geom/model_records.h"
#include "host/geom/model_shape.h"

#include <optional>

namespace vk::geom {

// What follows the pointers that every record begins with.
std::span<const ModelToken> ownTokens(const ModelRecords& records, const ModelRecord& record);

// Whether a sense is the reverse one: a word, a truth, a number, by the form and its version.
bool isReversed(const ModelToken& token);

// None where a transform is too short.
std::span<const ModelToken> transformNumbers(const ModelRecords& records, const ModelRecord& record);
std::optional<VcGeMatrix3d> modelTransform(const ModelRecords& records, const ModelRecord& record);

// What an edge knows of the part of its curve that it is.
struct EdgeEnds {
    std::optional<Point3> start, end;
    std::optional<Interval> params;
    bool isReversed = false;
};

struct EdgeCurve {
    Curve curve;
    bool runsBack = false;  // from the edge's end to its start
};

std::optional<EdgeCurve> edgeCurve(const ModelRecords& records, const ModelRecord& curve, const EdgeEnds& ends);

Surface modelSurface(const ModelRecords& records, const ModelRecord& surface);

}  // namespace vk::geom
