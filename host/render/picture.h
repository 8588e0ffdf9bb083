// A drawing as a picture file.
#pragma once

#include "host/render/list_builder.h"
#include "host/render/page.h"
#include "host/render/scene.h"

#include <optional>
#include <string>

namespace vk::render {

struct PictureRequest {
    PictureFormat format = PictureFormat::Png;
    LayoutRef layout;
    std::optional<PlaneWindow> window;
    std::optional<std::pair<int, int>> size;  // pixels; by default 1920 by 1080, of a sheet as PDF the paper
    std::uint32_t background = 0xffffffff;
};

struct PictureResult {
    std::string bytes;
    std::string error;  // empty when all went well
    int width = 0, height = 0;
    Omissions omissions;
};

VKHOST_API PictureResult paintPicture(const DatabaseCore& db, const PictureRequest& request);

// "#rgb", "#rrggbb", a name such as "black", "transparent", or the number of a palette colour.
VKHOST_API std::optional<std::uint32_t> colourByName(const std::string& name);
// By the ending of a file's name.
VKHOST_API std::optional<PictureFormat> formatByEnding(const std::string& path);

}  // namespace vk::render
