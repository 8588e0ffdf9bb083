#include "host/commands/lineweights.h"

#include "host/base/unicode.h"

#include <fmt/format.h>

namespace vk::commands {

std::optional<VcDb::LineWeight> lineWeightOf(std::string_view text)
{
    static constexpr int kStandard[] = {0,  5,  9,  13, 15, 18,  20,  25,  30,  35,  40,  50,
                                        53, 60, 70, 80, 90, 100, 106, 120, 140, 158, 200, 211};
    if (equalNoCase(text, "ByLayer"))
        return VcDb::kLnWtByLayer;
    if (equalNoCase(text, "ByBlock"))
        return VcDb::kLnWtByBlock;
    if (equalNoCase(text, "Default"))
        return VcDb::kLnWtByLwDefault;
    char* end = nullptr;
    const std::string copy(text);
    const double millimetres = std::strtod(copy.c_str(), &end);
    if (copy.empty() || *end || !(millimetres >= 0) || millimetres > 2.11)
        return std::nullopt;
    int best = 0;
    for (const int w : kStandard)
        if (std::abs(w - millimetres * 100) < std::abs(best - millimetres * 100))
            best = w;
    return VcDb::LineWeight(best);
}

std::string lineWeightText(int weight)
{
    switch (weight) {
    case VcDb::kLnWtByLayer:
        return "ByLayer";
    case VcDb::kLnWtByBlock:
        return "ByBlock";
    case VcDb::kLnWtByLwDefault:
        return "Default";
    default:
        return fmt::format("{:.2f} mm", weight / 100.0);
    }
}

}  // namespace vk::commands
