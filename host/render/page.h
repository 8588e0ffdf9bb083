// A page to draw on that becomes the bytes of a picture file.
#pragma once

#include "host/base/api.h"
#include "host/render/canvas.h"

#include <memory>

namespace vk::render {

enum class PictureFormat { Png, Svg, Pdf };

struct PageSpec {
    PictureFormat format = PictureFormat::Png;
    int width = 1920, height = 1080;        // pixels of 1/96 inch
    std::uint32_t background = 0xffffffff;  // 0: transparent
};

class Page {
public:
    virtual ~Page() = default;
    virtual Canvas& canvas() = 0;
    // The whole file; false with a sentence in error.
    virtual bool finish(std::string& bytes, std::string& error) = 0;
};

VKHOST_API std::unique_ptr<Page> makeSvgPage(const PageSpec& spec);

// What the painting library exports. It is loaded when a picture is to be painted, so that no other run pays for it.
extern "C" {
using MakePage = Page* (*)(const PageSpec&);
}
inline constexpr const char* kPaintLibrary = "libvekadpaint.so";
inline constexpr const char* kMakePage = "vekadMakePage";

}  // namespace vk::render
