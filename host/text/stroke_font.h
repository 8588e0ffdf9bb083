// Fonts drawn with a pen, from the Hershey character sets.
#pragma once

#include "host/text/font.h"

#include <array>
#include <string>

namespace vktext {

enum class StrokeSpacing {
    AsDrawn,    // the set's own side bearings
    Cells,      // every letter on a grid of sixths of its height, at most four wide, two apart
    MonoCells,  // every letter advances by the height
};

// Covers ASCII, the degree, plus-minus and diameter signs, and Latin letters with accents, which are put together
// from the letter and strokes of our own.
class StrokeFont final : public GlyphSource {
public:
    // Null when the file cannot be read or holds no glyphs.
    static std::shared_ptr<StrokeFont> load(const std::string& path, StrokeSpacing spacing);

    std::optional<GlyphMetrics> metrics(char32_t c) override;
    GlyphShape shape(char32_t c) override;
    double descent() const override { return 1.0 / 3; }
    bool stroked() const override { return true; }

private:
    struct Glyph {
        GlyphMetrics metrics;
        std::vector<std::vector<VcGePoint2d>> strokes;
    };
    static constexpr std::size_t kGlyphs = 95;  // from the space to the tilde

    bool parse(const std::string& data);
    std::optional<Glyph> glyph(char32_t c) const;
    std::optional<Glyph> composed(char32_t c) const;
    static Glyph degreeSign();
    static Glyph readGlyph(int left, int right, const std::string& pairs);
    static void respace(Glyph& glyph, StrokeSpacing spacing);

    std::array<Glyph, kGlyphs> m_glyphs;
};

}  // namespace vktext
