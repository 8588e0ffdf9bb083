// The one line of JSON that a run gives for machines.
#pragma once

#include "host/app/changes.h"
#include "host/edit/editor.h"
#include "host/io/drawing_file.h"

#include <optional>
#include <string>
#include <vector>

namespace vk::app {

struct RunReport {
    std::string drawing;
    int status = 0;
    std::optional<ReadResult> read;
    std::vector<edit::CommandRecord> commands;
    Changes changes;
    std::optional<WriteResult> saved;
    std::vector<std::string> messages;
};

std::string jsonLine(const RunReport& report);

}  // namespace vk::app
