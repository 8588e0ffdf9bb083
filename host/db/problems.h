// What was found wrong while reading, in the order of the file. The list is bounded, its count is not.
#pragma once

#include "host/base/api.h"

#include <cstdint>
#include <string>
#include <vector>

struct ReadProblem {
    std::uint32_t line = 0;  // 0 where no line is at fault
    std::uint64_t handle = 0;
    std::string text;
    bool mended = true;  // what was read is whole all the same
};

class VKHOST_API ProblemLog {
public:
    static constexpr std::size_t kMost = 1000;

    void add(std::uint32_t line, std::uint64_t handle, std::string text, bool mended = true)
    {
        ++m_total;
        if (m_items.size() < kMost)
            m_items.push_back({line, handle, std::move(text), mended});
    }
    const std::vector<ReadProblem>& items() const { return m_items; }
    std::size_t total() const { return m_total; }

private:
    std::vector<ReadProblem> m_items;
    std::size_t m_total = 0;
};
