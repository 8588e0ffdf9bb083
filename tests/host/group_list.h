#pragma once

#include "host/db/field_writer.h"

#include <fmt/format.h>
#include <string>

// Groups as "code value" with bars between them.
class ListSink : public GroupSink {
public:
    void real(int code, double value) override { add(code, fmt::format("{}", value)); }
    void integer(int code, std::int64_t value) override { add(code, fmt::format("{}", value)); }
    void text(int code, std::string_view utf8) override { add(code, std::string(utf8)); }
    void handle(int code, std::uint64_t handle) override { add(code, fmt::format("{:X}", handle)); }
    void bytes(int code, std::string_view data) override { add(code, fmt::format("{} bytes", data.size())); }
    std::string list;

private:
    void add(int code, const std::string& value)
    {
        list += fmt::format("{}{} {}", list.empty() ? "" : " | ", code, value);
    }
};
