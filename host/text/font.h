// Fonts as the layout and the renderer see them. The unit is the height of a capital letter, which is what drawings
// call the text height; the origin of a glyph is the pen on the baseline.
#pragma once

#include "host/base/api.h"
#include "vcge.h"

#include <array>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace vktext {

// A glyph without ink (a space) has left = 0, right = advance, bottom = top = 0.
struct GlyphMetrics {
    double advance = 0;
    double left = 0, right = 0, bottom = 0, top = 0;  // the ink
    bool blank = true;
};

// How far ink reaches along the baseline.
struct InkSpan {
    double left = 0, right = 0;
};

// Strokes are open polylines to be drawn with a pen. Contours are closed polygons without their repeated first point,
// to be filled by the non-zero rule.
struct GlyphShape {
    std::vector<std::vector<VcGePoint2d>> lines;
    bool filled = false;
};

// One font file, or one set of strokes.
class GlyphSource {
public:
    virtual ~GlyphSource() = default;
    virtual std::optional<GlyphMetrics> metrics(char32_t c) = 0;  // nothing when the glyph is missing
    virtual GlyphShape shape(char32_t c) = 0;
    virtual double descent() const = 0;  // how far letters such as g reach below the baseline, positive
    virtual bool stroked() const = 0;
};

class Font;

// The ink of letters that lean, each measured once.
class LeaningInk {
public:
    LeaningInk(const Font& font, double slant);
    double slant() const { return m_slant; }
    InkSpan of(char32_t c)
    {
        if (c < m_common.size() && m_common[c].left <= m_common[c].right)
            return m_common[c];
        return load(c);
    }

private:
    InkSpan load(char32_t c);
    InkSpan measured(char32_t c) const;

    const Font& m_font;
    double m_slant;                      // x for each y
    std::array<InkSpan, 0x80> m_common;  // left beyond right: not loaded yet
    std::unordered_map<char32_t, InkSpan> m_rare;
};

// A font with its stand-ins for missing glyphs. Every character has metrics and a shape: what no source has is a box.
// Fills its caches on use, so that a font serves one thread.
class VKHOST_API Font {
public:
    // systemSource gives a further source that has the character, or null.
    using SystemSource = GlyphSource* (*)(char32_t);
    Font(std::vector<std::shared_ptr<GlyphSource>> sources, SystemSource systemSource);

    const GlyphMetrics& metrics(char32_t c) const
    {
        if (c < m_common.size() && m_common[c].advance >= 0)
            return m_common[c];
        return loadMetrics(c);
    }
    const GlyphShape& shape(char32_t c) const;
    // Good until the next call.
    LeaningInk& leaning(double slant) const;
    double descent() const { return m_descent; }
    bool stroked() const { return m_stroked; }
    // How many different characters came from a stand-in, or from nowhere.
    std::size_t borrowedGlyphs() const { return m_borrowed; }
    std::size_t missingGlyphs() const { return m_missing; }

private:
    struct Located {
        GlyphSource* source = nullptr;
        GlyphMetrics metrics;
    };
    Located locate(char32_t c) const;
    const GlyphMetrics& loadMetrics(char32_t c) const;

    std::vector<std::shared_ptr<GlyphSource>> m_sources;
    SystemSource m_systemSource;
    double m_descent = 1.0 / 3;
    bool m_stroked = true;
    mutable std::array<GlyphMetrics, 0x250> m_common;  // a negative advance means not loaded yet
    mutable std::unordered_map<char32_t, GlyphMetrics> m_rare;
    mutable std::unordered_map<char32_t, GlyphShape> m_shapes;
    mutable std::vector<std::unique_ptr<LeaningInk>> m_leaning;
    mutable std::size_t m_borrowed = 0;
    mutable std::size_t m_missing = 0;
};

}  // namespace vktext
