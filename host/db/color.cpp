// The palette follows the customary index colours: 1 to 9 fixed, 10 to 249 in 24 hues of 15 degrees with five
// brightnesses, each full and half saturated, 250 to 255 greys.
#include "sdk/vccm.h"

#include <cmath>

namespace {

using Palette = std::array<std::uint32_t, 256>;

std::uint32_t pack(int r, int g, int b) { return std::uint32_t(r) << 16 | std::uint32_t(g) << 8 | std::uint32_t(b); }

// Hue in steps of 15 degrees; value and saturation 0 to 1. Components are cut, not rounded, as the palette has them.
std::uint32_t fromHue(int step, double value, bool halfSaturated)
{
    const double h = step * 15.0 / 60.0;
    const int sector = int(h);
    const double f = h - sector, s = halfSaturated ? 0.5 : 1.0;
    const double p = value * (1 - s), q = value * (1 - s * f), t = value * (1 - s * (1 - f));
    const double rgb[6][3] = {{value, t, p}, {q, value, p}, {p, value, t}, {p, q, value}, {t, p, value}, {value, p, q}};
    const auto& c = rgb[sector % 6];
    return pack(int(c[0] * 255), int(c[1] * 255), int(c[2] * 255));
}

Palette makePalette()
{
    Palette palette{};
    const std::uint32_t fixed[10] = {0x000000, 0xff0000, 0xffff00, 0x00ff00, 0x00ffff,
                                     0x0000ff, 0xff00ff, 0xffffff, 0x808080, 0xc0c0c0};
    std::copy(std::begin(fixed), std::end(fixed), palette.begin());
    const double values[5] = {1.0, 0.65, 0.5, 0.3, 0.15};
    for (int index = 10; index < 250; ++index)
        palette[index] = fromHue(index / 10 - 1, values[index % 10 / 2], index % 2 != 0);
    const std::uint32_t greys[6] = {0x333333, 0x505050, 0x696969, 0x828282, 0xbebebe, 0xffffff};
    std::copy(std::begin(greys), std::end(greys), palette.begin() + 250);
    return palette;
}

const Palette& palette()
{
    static const Palette p = makePalette();
    return p;
}

}

std::uint32_t vccmPaletteRgb(int index) { return palette()[index < 0 || index > 255 ? 7 : index]; }

int vccmNearestIndex(std::uint32_t rgb)
{
    int best = 7;
    int bestDistance = 1 << 30;
    for (int index = 1; index < 256; ++index) {
        const std::uint32_t c = palette()[index];
        int distance = 0;
        for (int shift = 0; shift < 24; shift += 8) {
            const int d = int(c >> shift & 255) - int(rgb >> shift & 255);
            distance += d * d;
        }
        if (distance < bestDistance) {
            best = index;
            bestDistance = distance;
        }
    }
    return best;
}

VcCmColor VcCmColor::fromIndex(std::int16_t index)
{
    VcCmColor color;
    color.setColorIndex(index);
    return color;
}

void VcCmColor::setColorMethod(Method method)
{
    m_method = method;
    if (method == kByLayer)
        m_index = kAciByLayer;
    else if (method == kByBlock)
        m_index = kAciByBlock;
}

Vcad::ErrorStatus VcCmColor::setColorIndex(std::int16_t index)
{
    if (index < 0 || index > 257)
        return Vcad::eOutOfRange;
    m_index = index;
    m_rgb = 0;
    m_method = index == kAciByLayer ? kByLayer : index == kAciByBlock ? kByBlock : kByAci;
    return Vcad::eOk;
}

std::uint32_t VcCmColor::rgb() const { return m_method == kByColor ? m_rgb : vccmPaletteRgb(m_index); }

Vcad::ErrorStatus VcCmColor::setRGB(std::uint8_t red, std::uint8_t green, std::uint8_t blue)
{
    setTrueColor(pack(red, green, blue));
    return Vcad::eOk;
}

void VcCmColor::setTrueColor(std::uint32_t rgb)
{
    m_index = std::int16_t(vccmNearestIndex(rgb & 0xffffff));
    setTrueColorBeside(rgb);
}

void VcCmColor::setTrueColorBeside(std::uint32_t rgb)
{
    m_method = kByColor;
    m_rgb = rgb & 0xffffff;
}
