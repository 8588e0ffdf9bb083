#include "host/text/outline_font.h"

#include <ft2build.h>
#include FT_BBOX_H
#include FT_FREETYPE_H
#include FT_OUTLINE_H

namespace vktext {

namespace {

// Never released: fonts live as long as the program.
FT_Library library()
{
    static const FT_Library instance = [] {
        FT_Library made = nullptr;
        return FT_Init_FreeType(&made) == 0 ? made : nullptr;
    }();
    return instance;
}

// Collects an outline as polygons in capital heights.
class Flattener {
public:
    Flattener(double scaleX, double scaleY) : m_scaleX(scaleX), m_scaleY(scaleY) {}

    std::vector<std::vector<VcGePoint2d>> flatten(FT_Outline& outline)
    {
        static const FT_Outline_Funcs kFuncs = {moveTo, lineTo, conicTo, cubicTo, 0, 0};
        FT_Outline_Decompose(&outline, &kFuncs, this);
        for (auto& contour : m_contours)
            if (contour.size() > 1 && contour.front() == contour.back())
                contour.pop_back();
        std::erase_if(m_contours, [](const auto& contour) { return contour.size() < 3; });
        return std::move(m_contours);
    }

private:
    static constexpr int kSteps = 6;  // of a curve: finer than a pixel up to letters of 200 pixels

    VcGePoint2d place(const FT_Vector& v) const { return {v.x * m_scaleX, v.y * m_scaleY}; }
    static Flattener& self(void* user) { return *static_cast<Flattener*>(user); }

    static int moveTo(const FT_Vector* to, void* user)
    {
        self(user).m_contours.push_back({self(user).place(*to)});
        return 0;
    }

    static int lineTo(const FT_Vector* to, void* user)
    {
        self(user).add(self(user).place(*to));
        return 0;
    }

    static int conicTo(const FT_Vector* control, const FT_Vector* to, void* user)
    {
        const auto c = self(user).place(*control), e = self(user).place(*to), s = self(user).last();
        for (int i = 1; i <= kSteps; ++i) {
            const double t = double(i) / kSteps, u = 1 - t;
            self(user).add({u * u * s.x + 2 * u * t * c.x + t * t * e.x, u * u * s.y + 2 * u * t * c.y + t * t * e.y});
        }
        return 0;
    }

    static int cubicTo(const FT_Vector* c1, const FT_Vector* c2, const FT_Vector* to, void* user)
    {
        const auto a = self(user).place(*c1), b = self(user).place(*c2), e = self(user).place(*to);
        const auto s = self(user).last();
        for (int i = 1; i <= kSteps; ++i) {
            const double t = double(i) / kSteps, u = 1 - t;
            const double k0 = u * u * u, k1 = 3 * u * u * t, k2 = 3 * u * t * t, k3 = t * t * t;
            self(user).add({k0 * s.x + k1 * a.x + k2 * b.x + k3 * e.x, k0 * s.y + k1 * a.y + k2 * b.y + k3 * e.y});
        }
        return 0;
    }

    void add(VcGePoint2d p)
    {
        if (!m_contours.empty() && !(m_contours.back().back() == p))
            m_contours.back().push_back(p);
    }

    VcGePoint2d last() const { return m_contours.empty() ? VcGePoint2d() : m_contours.back().back(); }

    double m_scaleX, m_scaleY;
    std::vector<std::vector<VcGePoint2d>> m_contours;
};

}  // namespace

struct OutlineFont::Face {
    FT_Face handle = nullptr;
    ~Face()
    {
        if (handle)
            FT_Done_Face(handle);
    }
};

OutlineFont::OutlineFont(std::unique_ptr<Face> face) : m_face(std::move(face)) {}

OutlineFont::~OutlineFont() = default;

std::shared_ptr<OutlineFont> OutlineFont::load(const std::string& path, int faceIndex, double capHeight)
{
    auto face = std::make_unique<Face>();
    if (!library() || FT_New_Face(library(), path.c_str(), faceIndex, &face->handle) != 0)
        return nullptr;
    if (!FT_IS_SCALABLE(face->handle) || face->handle->units_per_EM == 0)
        return nullptr;
    std::shared_ptr<OutlineFont> font(new OutlineFont(std::move(face)));
    font->scaleTo(capHeight);
    return font;
}

void OutlineFont::scaleTo(double capHeight)
{
    const FT_Face face = m_face->handle;
    double drawn = face->units_per_EM * 0.7;
    if (const unsigned h = glyphIndex('H'); h != 0 && loadGlyph(h) && face->glyph->metrics.horiBearingY > 0)
        drawn = face->glyph->metrics.horiBearingY;
    m_scaleY = 1 / drawn;
    m_scaleX = capHeight > 0 ? 1 / (capHeight * face->units_per_EM) : m_scaleY;
    m_descent = std::max(0.0, -face->descender * m_scaleY);
}

// Symbol fonts keep their letters in the private area from F000 on.
unsigned OutlineFont::glyphIndex(char32_t c) const
{
    const unsigned index = FT_Get_Char_Index(m_face->handle, c);
    return index == 0 && c < 0x100 ? FT_Get_Char_Index(m_face->handle, 0xF000 + c) : index;
}

bool OutlineFont::loadGlyph(unsigned index)
{
    return FT_Load_Glyph(m_face->handle, index, FT_LOAD_NO_SCALE | FT_LOAD_NO_BITMAP) == 0;
}

std::optional<GlyphMetrics> OutlineFont::metrics(char32_t c)
{
    const unsigned index = glyphIndex(c);
    if (index == 0 || !loadGlyph(index))
        return std::nullopt;
    const FT_Glyph_Metrics& m = m_face->handle->glyph->metrics;
    const double advance = m.horiAdvance * m_scaleX;
    if (m.width == 0 || m.height == 0)
        return GlyphMetrics{.advance = advance, .left = 0, .right = advance};
    // The bearings of a font count with the points that steer its curves; the ink ends where the curves do.
    FT_BBox ink{m.horiBearingX, m.horiBearingY - m.height, m.horiBearingX + m.width, m.horiBearingY};
    if (m_face->handle->glyph->format == FT_GLYPH_FORMAT_OUTLINE)
        FT_Outline_Get_BBox(&m_face->handle->glyph->outline, &ink);
    return GlyphMetrics{.advance = advance,
                        .left = ink.xMin * m_scaleX,
                        .right = ink.xMax * m_scaleX,
                        .bottom = ink.yMin * m_scaleY,
                        .top = ink.yMax * m_scaleY,
                        .blank = false};
}

GlyphShape OutlineFont::shape(char32_t c)
{
    const unsigned index = glyphIndex(c);
    if (index == 0 || !loadGlyph(index) || m_face->handle->glyph->format != FT_GLYPH_FORMAT_OUTLINE)
        return {{}, true};
    return {Flattener(m_scaleX, m_scaleY).flatten(m_face->handle->glyph->outline), true};
}

}  // namespace vktext
