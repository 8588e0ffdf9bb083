// Fonts with filled outlines, read by FreeType.
#pragma once

#include "host/text/font.h"

#include <string>

namespace vktext {

class OutlineFont final : public GlyphSource {
public:
    // capHeight is the height of a capital in ems by which the widths are scaled; 0 takes that of the font. A font
    // that stands in for another of the same widths is given the other's, so that texts keep their length.
    // Null when the file is no font with outlines.
    static std::shared_ptr<OutlineFont> load(const std::string& path, int faceIndex, double capHeight = 0);
    ~OutlineFont() override;

    std::optional<GlyphMetrics> metrics(char32_t c) override;
    GlyphShape shape(char32_t c) override;
    double descent() const override { return m_descent; }
    bool stroked() const override { return false; }

private:
    struct Face;  // owns the FreeType face
    explicit OutlineFont(std::unique_ptr<Face> face);
    unsigned glyphIndex(char32_t c) const;
    bool loadGlyph(unsigned index);
    void scaleTo(double capHeight);

    std::unique_ptr<Face> m_face;
    double m_scaleX = 1, m_scaleY = 1;  // font units to capital heights
    double m_descent = 0;
};

}  // namespace vktext
