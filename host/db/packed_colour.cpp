#include "host/db/packed_colour.h"

std::optional<VcCmColor> colourOfPacked(std::uint32_t bits)
{
    enum : std::uint32_t { kByLayer = 0xc0, kByBlock = 0xc1, kTrue = 0xc2, kIndex = 0xc3 };
    switch (bits >> 24) {
    case kByLayer:
        return VcCmColor::fromIndex(VcCmColor::kAciByLayer);
    case kByBlock:
        return VcCmColor::fromIndex(VcCmColor::kAciByBlock);
    case kIndex:
        return VcCmColor::fromIndex(std::int16_t(bits & 0x1ff));
    case kTrue:
        break;
    default:
        return std::nullopt;
    }
    VcCmColor colour;
    colour.setTrueColor(bits & 0xffffff);
    return colour;
}
