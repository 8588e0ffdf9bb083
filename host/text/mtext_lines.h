// Breaking the pieces of a paragraph into lines.
#pragma once

#include "host/text/mtext_pieces.h"

namespace vktext {

struct LineRange {
    std::size_t begin = 0, end = 0;  // pieces, without the spaces at the end of the line
    bool first = false;              // of its paragraph
    bool last = false;
};

// Lengths of a paragraph in drawing units, from the left edge of its column.
struct ParagraphFrame {
    double width = 0;  // of the column; 0: lines are not broken
    double left = 0, firstLeft = 0, right = 0;
    const std::vector<TabStop>* tabs = nullptr;  // in text heights
    double textHeight = 1;

    double leftOf(bool first) const { return first ? firstLeft : left; }
};

// How far a tab at `pen` from the column's left edge moves on. `next` is the piece behind the tab.
double tabWidth(const ParagraphFrame& frame, const MTextContent& content, const std::vector<Piece>& pieces,
                std::size_t next, double pen);

// A paragraph has at least one line. A word that is wider than the column stands alone and sticks out.
std::vector<LineRange> breakLines(const ParagraphFrame& frame, const MTextContent& content,
                                  const std::vector<Piece>& pieces);

}  // namespace vktext
