#include "host/commands/layer_marks.h"

#include "host/base/rb.h"
#include "sdk/vcdb_chains.h"
#include "sdk/vcdb_tables.h"

#include <cmath>

namespace vk::commands {

namespace {

constexpr int kApplication = 1001, kText = 1000, kLong = 1071;

// A chain of the application's name alone takes its data away.
RbBuilder dataOf(const wchar_t* application)
{
    vcdbRegApp(application);
    RbBuilder chain;
    chain.addString(kApplication, application);
    return chain;
}

}  // namespace

void setTransparency(VcDbLayerTableRecord& layer, int percent)
{
    // The lowest byte is the opacity; the bit above says that it is one.
    constexpr std::int64_t kByValue = 0x02000000;
    RbBuilder data = dataOf(L"AcCmTransparency");
    if (percent > 0)
        data.addInteger(kLong, kByValue | std::lround(255 * (100 - percent) / 100.0));
    layer.setXData(data.take().get());
}

void setDescription(VcDbLayerTableRecord& layer, const std::string& description)
{
    RbBuilder data = dataOf(L"AcAecLayerStandard");
    if (!description.empty()) {
        data.addUtf8(kText, "");
        data.addUtf8(kText, description);
    }
    layer.setXData(data.take().get());
}

}  // namespace vk::commands
