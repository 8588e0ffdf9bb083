// What the inline codes of an MTEXT set for the letters and the paragraphs that follow them.
#pragma once

#include "host/text/text_codes.h"
#include "host/text/text_style.h"

#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

namespace vktext {

// The colour that a code sets, or none, which leaves that of the entity.
struct TextColor {
    enum class Kind : std::uint8_t { Inherited, Index, True };
    Kind kind = Kind::Inherited;
    std::uint32_t value = 0;  // colour index 0..256, or 0xRRGGBB
    bool operator==(const TextColor&) const = default;
};

enum class LineAlignment : std::uint8_t { Baseline, Center, Top };

struct CharFormat {
    std::uint32_t font = 0;  // into the fonts of the parsed text
    double height = 1;       // drawing units
    double widthFactor = 1;
    double oblique = 0;   // radians
    double tracking = 1;  // of each advance
    TextColor color;
    std::uint8_t decorations = 0;
    LineAlignment alignment = LineAlignment::Baseline;
    bool operator==(const CharFormat&) const = default;
};

enum class ParagraphAlignment : std::uint8_t { ByAttachment, Left, Right, Center, Justified, Distributed };
enum class TabKind : std::uint8_t { Left, Center, Right, Decimal };

struct TabStop {
    double at = 0;
    TabKind kind = TabKind::Left;
    bool operator==(const TabStop&) const = default;
};

// Lengths are multiples of the MTEXT's own text height. The first line starts at left + indent.
struct ParagraphFormat {
    double indent = 0, left = 0, right = 0;
    double before = 0, after = 0;
    ParagraphAlignment alignment = ParagraphAlignment::ByAttachment;
    enum class Spacing : std::uint8_t { Inherited, Multiple, Exactly, AtLeast } spacing = Spacing::Inherited;
    double spacingValue = 1;                           // Multiple: a factor; else a distance
    std::shared_ptr<const std::vector<TabStop>> tabs;  // null: every four text heights
    bool operator==(const ParagraphFormat&) const = default;
};

// Applies the text between "\p" and ";" (as in "xi-2,l4,qc,t4,c8"). What it does not understand it passes over.
void applyParagraphCode(ParagraphFormat& format, std::string_view code);

}  // namespace vktext
