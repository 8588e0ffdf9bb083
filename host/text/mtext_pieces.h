// The indivisible parts of an MTEXT's lines, measured.
#pragma once

#include "host/text/font.h"
#include "host/text/mtext_parser.h"

namespace vktext {

inline constexpr double kBaseDistance = 5.0 / 3;  // of lines, in text heights

struct Piece {
    enum class Kind : std::uint8_t { Word, Space, Tab, Stack };
    Kind kind = Kind::Word;
    StackKind stack = StackKind::Horizontal;
    bool breakBefore = false;  // a line may begin with it though no space stands before it
    std::uint32_t format = 0;
    std::size_t begin = 0, middle = 0, end = 0;  // into the characters of the content
    double width = 0;                            // of the advances; a tab's depends on where it stands
    double left = 0, right = 0;                  // ink, from the pen
    double bottom = 0, top = 0;                  // ink, from the baseline
    double upperWidth = 0, lowerWidth = 0;       // of a stack's parts
};

// The parts of a stack, from its left lower corner.
struct StackGeometry {
    VcGePoint2d upper, lower;  // baselines
    VcGePoint2d ruleFrom, ruleTo;
    bool hasRule = false;
    double width = 0, height = 0;
};
StackGeometry stackGeometry(const Piece& piece, double textHeight);

class PieceMaker {
public:
    explicit PieceMaker(const MTextContent& content);
    // Appends the pieces of a token that is no break.
    void add(std::vector<Piece>& to, const MTextToken& token);

private:
    void addText(std::vector<Piece>& to, const MTextToken& token);
    Piece stackPiece(const MTextToken& token);
    void measure(Piece& piece);
    const Font& fontOf(const CharFormat& format);

    const MTextContent& m_content;
    std::vector<const Font*> m_fonts;  // null until needed
};

}  // namespace vktext
