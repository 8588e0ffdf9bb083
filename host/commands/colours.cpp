#include "host/commands/colours.h"

#include "host/base/numbers.h"
#include "host/base/unicode.h"

#include <fmt/format.h>

namespace vk::commands {

namespace {

constexpr std::string_view kNames[] = {"red", "yellow", "green", "cyan", "blue", "magenta", "white"};

std::optional<VcCmColor> trueColourOf(std::string_view text)
{
    int rgb[3], count = 0;
    for (std::size_t at = 0; at <= text.size();) {
        const std::size_t end = std::min(text.find(',', at), text.size());
        const auto value = parseInteger(text.substr(at, end - at));
        if (count == 3 || !value || *value < 0 || *value > 255)
            return std::nullopt;
        rgb[count++] = int(*value);
        at = end + 1;
    }
    if (count != 3)
        return std::nullopt;
    VcCmColor colour;
    colour.setRGB(std::uint8_t(rgb[0]), std::uint8_t(rgb[1]), std::uint8_t(rgb[2]));
    return colour;
}

}

std::optional<VcCmColor> colourOf(std::string_view text)
{
    if (equalNoCase(text, "BYLAYER"))
        return VcCmColor::fromIndex(VcCmColor::kAciByLayer);
    if (equalNoCase(text, "BYBLOCK"))
        return VcCmColor::fromIndex(VcCmColor::kAciByBlock);
    for (std::size_t i = 0; i < std::size(kNames); ++i)
        if (equalNoCase(text, kNames[i]) || (text.size() == 1 && equalNoCase(text, kNames[i].substr(0, 1))))
            return VcCmColor::fromIndex(std::int16_t(i + 1));
    if (text.find(',') != std::string_view::npos)
        return trueColourOf(text);
    const auto index = parseInteger(text);
    return index && *index >= 1 && *index <= 255 ? std::optional(VcCmColor::fromIndex(std::int16_t(*index)))
                                                 : std::nullopt;
}

std::string colourText(const VcCmColor& colour)
{
    if (colour.isByLayer())
        return "BYLAYER";
    if (colour.isByBlock())
        return "BYBLOCK";
    return colour.isByColor() ? fmt::format("{},{},{}", colour.red(), colour.green(), colour.blue())
                              : std::to_string(colour.colorIndex());
}

VcCmColor askColour(edit::Editor& ed, std::string_view prompt, const VcCmColor& byDefault)
{
    for (;;) {
        std::string typed = ed.word(fmt::format("{} [Truecolor]", prompt), colourText(byDefault));
        if (equalNoCase(typed, "T") || equalNoCase(typed, "Truecolor"))
            typed = ed.word("Red,Green,Blue");
        if (const auto colour = colourOf(typed))
            return *colour;
        ed.printLine("A colour is a number from 1 to 255, a name such as red, BYLAYER, BYBLOCK, or red,green,blue.");
    }
}

}
