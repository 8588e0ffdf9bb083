#include "host/app/run.h"

#include "host/app/batch.h"
#include "host/app/paths.h"
#include "host/app/run_one.h"
#include "host/base/files.h"

#include <fmt/format.h>

namespace vk::app {

namespace {

std::string faultOfFolder(const RunOptions& options)
{
    const std::string twice = nameUsedTwice(options.drawings);
    if (!twice.empty())
        return fmt::format("two drawings would be saved as {}", joinPath(options.out, twice));
    if (fileExists(options.out))
        return fmt::format("{} is a file; several drawings need a folder to be saved to", options.out);
    if (!makeFolders(options.out))
        return fmt::format("the folder {} cannot be made", options.out);
    return {};
}

std::vector<std::string> outputsOf(const RunOptions& options)
{
    std::vector<std::string> outputs;
    if (!options.out.empty())
        for (const std::string& drawing : options.drawings)
            outputs.push_back(folderExists(options.out) ? pathInFolder(options.out, drawing) : options.out);
    if (!options.transcript.empty())
        outputs.push_back(options.transcript);
    return outputs;
}

std::string faultOfOutputs(const RunOptions& options)
{
    std::vector<std::string> inputs = options.drawings;
    if (!options.script.empty() && options.script != "-")
        inputs.push_back(options.script);
    for (const std::string& output : outputsOf(options))
        for (const std::string& input : inputs)
            if (isSameFile(output, input))
                return fmt::format("{} would be overwritten; --in-place saves a drawing where it was", input);
    return {};
}

std::string faultOf(const RunOptions& options)
{
    if (options.drawings.size() > 1 && !options.out.empty())
        if (std::string fault = faultOfFolder(options); !fault.empty())
            return fault;
    if (!options.script.empty() && options.script != "-" && !fileExists(options.script))
        return fmt::format("there is no script {}", options.script);
    return faultOfOutputs(options);
}

}

int run(RunOptions options)
{
    if (const std::string fault = faultOf(options); !fault.empty()) {
        fmt::print(stderr, "vekad: {}\n", fault);
        return kWrongUsage;
    }
    if (options.drawings.size() > 1)
        return runEach(options);
    if (options.out.ends_with('/') && !makeFolders(options.out)) {
        fmt::print(stderr, "vekad: the folder {} cannot be made\n", options.out);
        return kWrongUsage;
    }
    if (folderExists(options.out))
        options.out = pathInFolder(options.out, options.drawings.front());
    return runOne(options);
}

}  // namespace vk::app
