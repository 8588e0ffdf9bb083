#include "host/render/picture.h"

#include "host/base/files.h"
#include "host/base/modules.h"
#include "host/base/unicode.h"
#include "sdk/vccm.h"

#include <charconv>
#include <cmath>
#include <fmt/format.h>

namespace vk::render {

namespace {

struct NamedColour {
    const char* name;
    std::uint32_t argb;
};
constexpr NamedColour kColours[] = {
    {"white", 0xffffffff},    {"black", 0xff000000},    {"red", 0xffff0000},       {"yellow", 0xffffff00},
    {"green", 0xff00ff00},    {"cyan", 0xff00ffff},     {"blue", 0xff0000ff},      {"magenta", 0xffff00ff},
    {"grey", 0xff808080},     {"gray", 0xff808080},     {"lightgrey", 0xffd3d3d3}, {"lightgray", 0xffd3d3d3},
    {"darkgrey", 0xff404040}, {"darkgray", 0xff404040}, {"transparent", 0},        {"none", 0},
};

std::optional<std::uint32_t> hexColour(std::string_view digits)
{
    std::string six(digits);
    if (digits.size() == 3)
        six = {digits[0], digits[0], digits[1], digits[1], digits[2], digits[2]};
    std::uint32_t rgb = 0;
    const auto [end, error] = std::from_chars(six.data(), six.data() + six.size(), rgb, 16);
    if (six.size() != 6 || error != std::errc() || end != six.data() + six.size())
        return std::nullopt;
    return 0xff000000u | rgb;
}

}

std::optional<std::uint32_t> colourByName(const std::string& name)
{
    if (name.starts_with('#'))
        return hexColour(std::string_view(name).substr(1));
    for (const NamedColour& colour : kColours)
        if (equalNoCase(name, colour.name))
            return colour.argb;
    int index = 0;
    const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), index);
    if (error != std::errc() || end != name.data() + name.size() || index < 1 || index > 255)
        return std::nullopt;
    return 0xff000000u | vccmPaletteRgb(index);
}

std::optional<PictureFormat> formatByEnding(const std::string& path)
{
    static constexpr std::pair<const char*, PictureFormat> kEndings[] = {
        {".png", PictureFormat::Png}, {".svg", PictureFormat::Svg}, {".pdf", PictureFormat::Pdf}};
    for (const auto& [ending, format] : kEndings)
        if (path.size() > 4 && equalNoCase(std::string_view(path).substr(path.size() - 4), ending))
            return format;
    return std::nullopt;
}

namespace {

std::unique_ptr<Page> makePage(const PageSpec& spec, std::string& error)
{
    if (spec.format == PictureFormat::Svg)
        return makeSvgPage(spec);
    LoadedModule* library = loadModule(hostFolder() + kPaintLibrary, Binding::Local, error);
    if (!library)
        return nullptr;
    const auto make = reinterpret_cast<MakePage>(moduleFunction(library, kMakePage));
    if (make)
        return std::unique_ptr<Page>(make(spec));
    error = fmt::format("{} is of another version", kPaintLibrary);
    return nullptr;
}

// A sheet becomes a page of its own size.
std::pair<int, int> pageSize(const PictureRequest& request, const Scene& scene, const PlaneWindow& window)
{
    constexpr double kPixelsPerMm = 96 / 25.4;
    constexpr double kMostPixels = 40000;
    if (request.size)
        return *request.size;
    const auto paper = scene.paperScale();
    const double unit = paper ? *paper * kPixelsPerMm : 0;
    const double width = window.width() * unit, height = window.height() * unit;
    if (request.format == PictureFormat::Pdf && width >= 1 && height >= 1 && width < kMostPixels &&
        height < kMostPixels)
        return {int(std::lround(width)), int(std::lround(height))};
    return {1920, 1080};
}

}

PictureResult paintPicture(const DatabaseCore& db, const PictureRequest& request)
{
    PictureResult result;
    Scene scene(db, request.layout, result.omissions);
    const PlaneWindow window = request.window ? *request.window : scene.wholeWindow();
    const auto [width, height] = pageSize(request, scene, window);
    result.width = width;
    result.height = height;
    const auto page = makePage({request.format, width, height, request.background}, result.error);
    if (!page)
        return result;
    scene.paint(page->canvas(), window,
                {double(width), double(height), request.background, request.format != PictureFormat::Png});
    page->finish(result.bytes, result.error);
    return result;
}

}  // namespace vk::render
