#include "host/app/audit.h"

#include "host/app/loading.h"
#include "host/app/paths.h"
#include "host/app/remarks.h"
#include "host/app/stopping.h"

#include <fmt/format.h>

namespace vk::app {

namespace {

void print(const ReadProblem& problem)
{
    const std::string line = problem.line ? fmt::format("line {}: ", problem.line) : std::string();
    const std::string handle = problem.handle ? fmt::format("object {:X}: ", problem.handle) : std::string();
    fmt::print("{}{}{}{}\n", line, handle, problem.text, problem.mended ? "" : " (not mended)");
}

void printAll(const std::string& drawing, const ProblemLog& found)
{
    for (const ReadProblem& problem : found.items())
        print(problem);
    if (found.total() > found.items().size())
        fmt::print("and {} more\n", withSeparators(found.total() - found.items().size()));
    fmt::print("{}: {}\n", drawing,
               found.total() == 0 ? "nothing is wrong" : fmt::format("faults found: {}", withSeparators(found.total())));
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
    const ProblemLog& found = loaded.read.problems;
    printAll(options.drawing, found);
    if (options.fix && !saveAs(*loaded.database, options.out, writeOptions(options.save), remarks).ok())
        return kNotSaved;
    return found.total() == 0 ? kDone : kCommandFailed;
}

}  // namespace vk::app
