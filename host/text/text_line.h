// Single lines of text: how large they are and where they stand from their points.
// Lengths are drawing units. Everything is in the text's own axes: x along the baseline, y up, before any rotation.
#pragma once

#include "host/base/api.h"
#include "host/text/text_style.h"
#include "vcge.h"

#include <optional>
#include <string_view>
#include <vector>

namespace vktext {

class Font;

struct Box {
    double left = 0, bottom = 0, right = 0, top = 0;
    double width() const { return right - left; }
    double height() const { return top - bottom; }
};

// What a style says of a line, its font found: measuring then has nothing left to look up.
struct LineLooks {
    const Font* font = nullptr;
    double widthFactor = 1;
    double slant = 0;  // x for each y
    bool backwards = false, upsideDown = false, vertical = false;
};
// Nonsense in a style counts as its default.
VKHOST_API LineLooks lineLooks(const TextStyleSpec& style);
// The width factor and the oblique angle are then these.
void setLooks(LineLooks& looks, double widthFactor, double oblique);

// What justification counts with. The length of a text in a stroke font ends with its last stroke, that in an outline
// font with the last letter's advance.
struct LineMetrics {
    double length = 0;
    double height = 0;   // of capitals
    double descent = 0;  // of the font, positive
    Box ink;             // of what is drawn, decorations included, before slant and mirroring
};

VKHOST_API LineMetrics measureLine(const TextStyleSpec& style, double height, std::string_view text);

// What is drawn of a text, from its base point (left end of the baseline; the top of the first letter when vertical):
// letters and decorations, slanted and mirrored as the style says. Blanks alone have their length and the height of
// capitals; an empty text has an empty box.
VKHOST_API Box lineBox(const TextStyleSpec& style, double height, std::string_view text);
Box lineBox(const LineLooks& looks, double height, std::string_view text);

// The same of letters that stand further apart or nearer by `tracking`. Nothing when nothing is drawn.
std::optional<Box> inkBox(const LineLooks& looks, double height, std::string_view text, double tracking = 1);

// Groups 72 and 73 of a text entity.
enum class HorizontalMode { Left, Center, Right, Aligned, Middle, Fit };
enum class VerticalMode { Baseline, Bottom, Middle, Top };

// From the base point to the point that the justification speaks of, for texts that are neither aligned nor fitted.
// Middle means half of what is drawn, descenders included, and pays no regard to the vertical mode.
VKHOST_API VcGeVector2d justificationOffset(const TextStyleSpec& style, double height, std::string_view text,
                                            HorizontalMode horizontal, VerticalMode vertical);
VcGeVector2d justificationOffset(const LineLooks& looks, double height, std::string_view text,
                                 HorizontalMode horizontal, VerticalMode vertical);

// The height at which the text is `distance` long at the style's width factor (Aligned), and the width factor at which
// it is at the given height (Fit). An empty or immeasurable text keeps what it had.
VKHOST_API double alignedHeight(const TextStyleSpec& style, double height, std::string_view text, double distance);
VKHOST_API double fittedWidthFactor(const TextStyleSpec& style, double height, std::string_view text, double distance);

// A letter in its place. Shapes in capital heights are taken to drawing units by
// x' = origin.x + xScale * x + slant * y,  y' = origin.y + yScale * y.
struct PlacedGlyph {
    char32_t c = 0;
    VcGePoint2d origin;
    double xScale = 1, yScale = 1, slant = 0;
};

// Letters and decoration strokes of a text from its base point, ready to be drawn. The font is that of the style.
struct PlacedLine {
    std::vector<PlacedGlyph> glyphs;
    std::vector<std::pair<VcGePoint2d, VcGePoint2d>> decorations;
};
VKHOST_API PlacedLine placeLine(const TextStyleSpec& style, double height, std::string_view text);

// Polylines of everything that is drawn: strokes and contours.
struct TextOutline {
    std::vector<std::vector<VcGePoint2d>> strokes;
    std::vector<std::vector<VcGePoint2d>> contours;  // closed, to be filled by the non-zero rule letter by letter
    std::vector<std::size_t> letterEnds;             // how many contours stand up to the end of each filled letter
};
VKHOST_API TextOutline outlineLine(const TextStyleSpec& style, double height, std::string_view text);

// Heights above the baseline at which decorations are drawn, for text of height 1.
inline constexpr double kUnderlineAt = -0.2;
inline constexpr double kOverlineAt = 1.2;
inline constexpr double kStrikeAt = 0.5;

}  // namespace vktext
