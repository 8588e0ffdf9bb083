// Where two pieces meet. Ranges of pieces hold: what lies outside does not count, infinite ones are welcome.
#pragma once

#include "host/geom/piece.h"

namespace vk::geom {

struct Touch {
    double a = 0, b = 0;
    bool tangent = false;
    bool vague = false;  // near the contact, but neither its crossing nor its tangency: an end, a place on the way
};

struct SharedStretch {
    Interval a, b;
};

struct PieceMeeting {
    std::vector<Touch> touches;
    std::vector<SharedStretch> shared;
};

PieceMeeting meet(const PieceShape& a, const PieceShape& b, double tolerance);

// The kernels. They may find a touch twice, and one just beyond the ends of a range is theirs to admit or not.
PieceMeeting meetLines(const LinePiece& a, const LinePiece& b, double tolerance);
std::vector<Touch> meetLineConic(const LinePiece& line, const ConicPiece& conic, double tolerance);
std::vector<Touch> meetConics(const ConicPiece& a, const ConicPiece& b, double tolerance);
std::vector<Touch> meetBySubdivision(const PieceShape& a, const PieceShape& b, double tolerance);

std::vector<SharedStretch> sharedStretches(const PieceShape& a, const PieceShape& b, double tolerance);

// Whether the part of a between two parameters stays within the tolerance of b, as far as samples tell.
bool runsAlong(const PieceShape& a, double from, double to, const PieceShape& b, double tolerance, int samples);

}  // namespace vk::geom
