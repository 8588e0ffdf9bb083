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

// Leaves out what releases before R2018 do not read: the objects embedded at the end of others.
class NewerPartsSink final : public GroupSink {
public:
    explicit NewerPartsSink(GroupSink& next) : m_next(next) {}
    void real(int code, double value) override
    {
        if (!m_inside)
            m_next.real(code, value);
    }
    void integer(int code, std::int64_t value) override
    {
        if (!m_inside)
            m_next.integer(code, value);
    }
    void text(int code, std::string_view utf8) override
    {
        // The embedded object ends with its owner, or where extended data begins.
        if (code == 0 || code == 1001)
            m_inside = false;
        else if (code == 101)
            m_inside = true;
        if (!m_inside)
            m_next.text(code, utf8);
    }
    void handle(int code, std::uint64_t handle) override
    {
        if (!m_inside)
            m_next.handle(code, handle);
    }
    void bytes(int code, std::string_view data) override
    {
        if (!m_inside)
            m_next.bytes(code, data);
    }

private:
    GroupSink& m_next;
    bool m_inside = false;
};
