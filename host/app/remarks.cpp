#include "host/app/remarks.h"

#include "host/db/problems.h"
#include "host/io/drawing_file.h"

#include <cmath>
#include <cstdio>
#include <fmt/format.h>
#include <unistd.h>

namespace vk::app {

namespace {

constexpr std::size_t kProblemsShown = 20;
constexpr auto kPatience = std::chrono::milliseconds(700);
constexpr auto kRedraw = std::chrono::milliseconds(100);

std::string placeOf(const ReadProblem& problem)
{
    std::string place;
    if (problem.line)
        place += fmt::format("line {}: ", problem.line);
    if (problem.handle)
        place += fmt::format("object {:X}: ", problem.handle);
    return place;
}

std::string byType(const std::map<std::string, std::size_t>& counts)
{
    std::string text;
    for (const auto& [type, count] : counts)
        text += fmt::format("{}{} {}", text.empty() ? " (" : ", ", type, withSeparators(count));
    return text.empty() ? text : text + ")";
}

}

std::string withSeparators(std::size_t number)
{
    std::string text = std::to_string(number);
    for (std::size_t at = text.size(); at > 3;)
        text.insert(at -= 3, 1, ',');
    return text;
}

void Remarks::say(const std::string& text)
{
    m_all.push_back(text);
    std::fflush(stdout);
    fmt::print(stderr, "vekad: {}\n", text);
}

void Remarks::problems(const std::string& drawing, const ProblemLog& log)
{
    std::size_t shown = 0;
    for (const ReadProblem& problem : log.items()) {
        if (shown++ == kProblemsShown)
            break;
        say(fmt::format("{}: {}{}{}", drawing, placeOf(problem), problem.text, problem.mended ? " (mended)" : ""));
    }
    if (log.total() > kProblemsShown)
        say(fmt::format("{}: {} more faults; 'vekad audit' lists them.", drawing,
                        withSeparators(log.total() - kProblemsShown)));
}

void Remarks::receipt(const WriteResult& result, bool dryRun)
{
    say(fmt::format("{} {} ({}): kept {}; rewrote {}{}; dropped {}{}", dryRun ? "would save" : "saved", result.path,
                    releaseName(result.version), withSeparators(result.kept), withSeparators(result.rewrote),
                    byType(result.rewroteByType), withSeparators(result.dropped), byType(result.droppedByType)));
    if (!result.backup.empty())
        say(fmt::format("what stood there is now {}", result.backup));
}

Progress::Progress(std::string what)
    : m_what(std::move(what)), m_next(Clock::now() + kPatience), m_isTerminal(::isatty(STDERR_FILENO))
{
}

Progress::~Progress()
{
    if (m_isShown)
        std::fputs("\r\033[K", stderr);
}

void Progress::show(double done) { show(m_what, done); }

void Progress::show(std::string_view what, double done)
{
    if (!m_isTerminal || Clock::now() < m_next)
        return;
    m_next = Clock::now() + kRedraw;
    m_isShown = true;
    fmt::print(stderr, "\r\033[K{} {}%", what, std::lround(std::clamp(done, 0.0, 1.0) * 100));
}

std::function<void(double)> Progress::callback()
{
    return [this](double done) { show(done); };
}

}  // namespace vk::app
