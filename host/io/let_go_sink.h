// References in a file to what has been let go: they mean what took its place, or nothing.
#pragma once

#include "host/db/field_writer.h"

#include <unordered_map>

class LetGo;

using HandleMap = std::unordered_map<std::uint64_t, std::uint64_t>;
// The handle to write for each object that has been let go; 0 for those that nothing stands for.
HandleMap handlesInPlace(const DatabaseCore& db, const LetGo& letGo);

class LetGoSink final : public GroupSink {
public:
    LetGoSink(GroupSink& next, HandleMap inPlace) : m_next(next), m_inPlace(std::move(inPlace)) {}

    void real(int code, double value) override { m_next.real(code, value); }
    void integer(int code, std::int64_t value) override { m_next.integer(code, value); }
    void text(int code, std::string_view utf8) override;
    void bytes(int code, std::string_view data) override { m_next.bytes(code, data); }
    void handle(int code, std::uint64_t handle) override;
    void beginKept() override { m_next.beginKept(); }
    void endKept() override { m_next.endKept(); }
    void point(int code, const VcGePoint3d& p) override { m_next.point(code, p); }
    void point2(int code, const VcGePoint2d& p) override { m_next.point2(code, p); }

private:
    GroupSink& m_next;
    HandleMap m_inPlace;
    enum class Reactors { None, Announced, Open } m_reactors = Reactors::None;
};
