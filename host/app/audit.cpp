#include "host/app/audit.h"

#include "host/app/loading.h"
#include "host/app/paths.h"
#include "host/app/remarks.h"
#include "host/app/stopping.h"
#include "host/io/audit.h"

#include <fmt/format.h>

namespace vk::app {

namespace {

std::string ofObject(std::uint64_t handle) { return handle ? fmt::format("object {:X}: ", handle) : std::string(); }

void printMore(std::size_t total, std::size_t listed)
{
    if (total > listed)
        fmt::print("and {} more\n", withSeparators(total - listed));
}

// What the reader has met is mended already, or is not to be mended.
void printRead(const ProblemLog& found)
{
    for (const ReadProblem& problem : found.items())
        fmt::print("{}{}{}{}\n", problem.line ? fmt::format("line {}: ", problem.line) : "", ofObject(problem.handle),
                   problem.text, problem.mended ? " (mended on reading)" : " (not mended)");
    printMore(found.total(), found.items().size());
}

void printAudit(const AuditReport& found)
{
    for (const AuditFault& fault : found.faults)
        fmt::print("{}{}{}\n", ofObject(fault.handle), fault.text,
                   fault.fixed     ? " (mended)"
                   : fault.fixable ? " (--fix mends it)"
                                   : " (cannot be mended)");
    printMore(found.total, found.faults.size());
}

}

int audit(const AuditOptions& options)
{
    if (options.fix && isSameFile(options.drawing, options.out)) {
        fmt::print(stderr, "vekad: {} would be overwritten; give another name\n", options.drawing);
        return kWrongUsage;
    }
    const InterruptGuard interrupts;
    Remarks remarks;
    Loaded loaded = load(options.drawing, options.fix, remarks, true);
    if (loaded.status != kDone)
        return loaded.status;
    printRead(loaded.read.problems);
    const AuditReport found = auditDrawing(*loaded.database, options.fix);
    printAudit(found);
    const std::size_t total = loaded.read.problems.total() + found.total;
    fmt::print("{}: {}\n", options.drawing,
               total == 0 ? "nothing is wrong" : fmt::format("faults found: {}", withSeparators(total)));
    if (options.fix && !saveAs(*loaded.database, options.out, writeOptions(options.save), remarks).ok())
        return kNotSaved;
    return total == 0 ? kDone : kCommandFailed;
}

}  // namespace vk::app
