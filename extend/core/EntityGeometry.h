// What entities measure and where they meet.
#pragma once

#include "resbuf.h"
#include "vcge.h"

#include <vector>

// The end points of a line, in the world; RTERROR when they cannot be read.
int getlinept(const vds_name name, vds_point start, vds_point end);
// Two lines along one another, within a drawing unit.
bool isLineOnLine(const vds_name name1, const vds_name name2);

// Where the first entity meets the second, by EDGEMODE and PROJMODE: the count and a chain of points that the caller
// releases, or -1. With a block reference as the second there are none.
int vds_intersect(const vds_name name1, const vds_name name2, resbuf** listOut);

// The corners of an mtext's actual box, widened by the gap, as though it hung from its top left; from there clockwise.
// The heights of the corners stay as they are.
void getMtextRectPts(vds_point corners[4], const vds_name name, double gap);
// The corners of the box by its attachment: upper left, upper right, lower left, lower right. The gap is a multiple of
// the text height.
void getMtextActualBoundingPoints(const vds_name name, std::vector<VcGePoint3d>& points, bool withGap,
                                  double gapFactor);
// Extents of a text, in the world. An mtext gives its upper left and lower right corners and RTERROR: callers go by the
// points.
int getTextExtent(const vds_name name, VcGePoint3d& minOut, VcGePoint3d& maxOut);
// The same for every entity, in the current UCS; 0, or RTERROR for an entity that cannot be read. One that measures nothing
// gives the corners of an empty box, the lower beyond the upper.
int vds_getEntExtent(const vds_name name, vds_point minOut, vds_point maxOut);

// Draws what is seen of an image as a closed polyline in model space; 1, or 0 when it is no image.
int DrawImgeBoundingBoxLines(const vds_name name);
