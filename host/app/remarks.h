// What the program itself has to say, beside the transcript: remarks on standard error, progress where someone watches.
#pragma once

#include <atomic>
#include <chrono>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

struct WriteResult;
class ProblemLog;

namespace vk::app {

class Remarks {
public:
    // Printed at once, and kept for the report.
    void say(const std::string& text);
    void problems(const std::string& drawing, const ProblemLog& log);
    void receipt(const WriteResult& result, bool dryRun);
    const std::vector<std::string>& all() const { return m_all; }

private:
    std::vector<std::string> m_all;
};

// "13,412"
std::string withSeparators(std::size_t number);

// One line on a terminal that is drawn over and goes away; nothing where standard error is no terminal. Work that ends soon
// is not mentioned.
class Progress {
public:
    explicit Progress(std::string what);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    void show(double done);
    void show(std::string_view what, double done);
    std::function<void(double)> callback();

private:
    using Clock = std::chrono::steady_clock;
    std::string m_what;
    Clock::time_point m_next;
    bool m_isTerminal;
    bool m_isShown = false;
};

}  // namespace vk::app
