#include "host/app/convert.h"

#include "host/app/loading.h"
#include "host/app/paths.h"
#include "host/app/remarks.h"
#include "host/app/stopping.h"
#include "host/base/files.h"

#include <fmt/format.h>

namespace vk::app {

int convert(const ConvertOptions& options)
{
    const std::string out = folderExists(options.out) ? pathInFolder(options.out, options.in) : options.out;
    if (isSameFile(options.in, out)) {
        fmt::print(stderr, "vekad: {} would be overwritten; give another name\n", options.in);
        return kWrongUsage;
    }
    const InterruptGuard interrupts;
    Remarks remarks;
    Loaded loaded = load(options.in, options.recover, remarks);
    if (loaded.status != kDone)
        return loaded.status;
    return saveAs(*loaded.database, out, writeOptions(options.save), remarks).ok() ? kDone : kNotSaved;
}

}  // namespace vk::app
