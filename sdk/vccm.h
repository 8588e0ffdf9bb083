// Colours of drawing objects.
#pragma once

#include "vkdefs.h"

class VK_SDK VcCmColor {
public:
    enum Method : std::uint8_t { kByLayer = 0, kByBlock = 1, kByAci = 2, kByColor = 3 };
    enum : std::int16_t { kAciByBlock = 0, kAciForeground = 7, kAciByLayer = 256 };

    VcCmColor() = default;
    static VcCmColor fromIndex(std::int16_t index);

    Method colorMethod() const { return m_method; }
    void setColorMethod(Method method);
    // 0 by block, 1 to 255 of the palette, 256 by layer. For a true colour, the nearest of the palette.
    std::int16_t colorIndex() const { return m_index; }
    Vcad::ErrorStatus setColorIndex(std::int16_t index);

    bool isByLayer() const { return m_method == kByLayer; }
    bool isByBlock() const { return m_method == kByBlock; }
    bool isByACI() const { return m_method == kByAci; }
    bool isByColor() const { return m_method == kByColor; }

    // 0x00RRGGBB; of a palette colour, its value in the palette.
    std::uint32_t rgb() const;
    Vcad::ErrorStatus setRGB(std::uint8_t red, std::uint8_t green, std::uint8_t blue);
    void setTrueColor(std::uint32_t rgb);
    // As setTrueColor, keeping the palette index that stands beside it.
    void setTrueColorBeside(std::uint32_t rgb);
    std::uint8_t red() const { return std::uint8_t(rgb() >> 16); }
    std::uint8_t green() const { return std::uint8_t(rgb() >> 8); }
    std::uint8_t blue() const { return std::uint8_t(rgb()); }

    bool operator==(const VcCmColor& c) const
    {
        return m_method == c.m_method && m_index == c.m_index && m_rgb == c.m_rgb;
    }
    bool operator!=(const VcCmColor& c) const { return !(*this == c); }

private:
    Method m_method = kByLayer;
    std::int16_t m_index = kAciByLayer;
    std::uint32_t m_rgb = 0;
};

// 0x00RRGGBB of a palette index from 1 to 255; the nearest index of a value.
VK_SDK std::uint32_t vccmPaletteRgb(int index);
VK_SDK int vccmNearestIndex(std::uint32_t rgb);
