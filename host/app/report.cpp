#include "host/app/report.h"

#include <nlohmann/json.hpp>

namespace vk::app {

namespace {

using Json = nlohmann::ordered_json;

const char* nameOf(edit::CommandRecord::Status status)
{
    switch (status) {
    case edit::CommandRecord::Done:
        return "done";
    case edit::CommandRecord::Cancelled:
        return "cancelled";
    case edit::CommandRecord::Failed:
        return "failed";
    }
    return "failed";
}

Json jsonOf(const std::optional<ReadResult>& read)
{
    if (!read || !read->ok())
        return nullptr;
    return {{"version", releaseName(read->version)},
            {"entities", read->entities},
            {"objects", read->objects},
            {"mended", read->problems.total()}};
}

Json jsonOf(const std::optional<WriteResult>& saved)
{
    if (!saved || !saved->ok())
        return nullptr;
    return {{"path", saved->path},
            {"version", releaseName(saved->version)},
            {"kept", saved->kept},
            {"rewrote", saved->rewrote},
            {"dropped", saved->dropped}};
}

}

std::string jsonLine(const RunReport& report)
{
    Json commands = Json::array();
    for (const edit::CommandRecord& command : report.commands)
        commands.push_back({{"name", command.name}, {"status", nameOf(command.status)}});
    const Json line = {{"drawing", report.drawing},
                       {"status", report.status},
                       {"read", jsonOf(report.read)},
                       {"commands", commands},
                       {"added", Json(report.changes.added)},
                       {"modified", Json(report.changes.modified)},
                       {"erased", Json(report.changes.erased)},
                       {"saved", jsonOf(report.saved)},
                       {"messages", report.messages}};
    return line.dump(-1, ' ', false, Json::error_handler_t::replace);
}

}  // namespace vk::app
