// LegacySink: lets through what R12 knows. Each kind of object has the groups that it had then.
#pragma once

#include "host/db/field_writer.h"

#include <vector>

class LegacySink final : public GroupSink {
public:
    // keepUnclaimed: groups that our classes do not know go through too, since they came from a file as old as this one.
    LegacySink(GroupSink& next, bool keepUnclaimed) : m_next(next), m_keepUnclaimed(keepUnclaimed) {}

    void real(int code, double value) override;
    void integer(int code, std::int64_t value) override;
    void text(int code, std::string_view utf8) override;
    void handle(int code, std::uint64_t handle) override;
    void bytes(int code, std::string_view data) override;
    void beginKept() override { m_isKept = true; }
    void endKept() override { m_isKept = false; }

    static bool knows(std::string_view type);

private:
    bool passes(int code) const;

    GroupSink& m_next;
    bool m_keepUnclaimed;
    bool m_isKept = false;
    const struct LegacyKind* m_kind = nullptr;
};
