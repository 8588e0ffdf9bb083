#include "host/app/stopping.h"

#include "host/app/options.h"
#include "host/edit/editor.h"

#include <chrono>
#include <csignal>
#include <ctime>
#include <unistd.h>

namespace vk::app {

namespace {

constexpr std::chrono::seconds kGrace{5};
constexpr std::chrono::milliseconds kReminder{50};
constexpr std::time_t kSoon = 2;  // seconds

std::atomic<bool> s_stop{false};
std::atomic<bool> s_stopped{false};
std::atomic<bool> s_atPrompt{false};
std::atomic<bool> s_promptInterrupt{false};
std::atomic<std::time_t> s_lastPress{0};
struct sigaction s_before;

void endRun()
{
    s_stopped = true;
    s_stop = true;
    edit::Editor::instance().quit();
}

// Runs as a signal handler: flags only.
void pressed(int)
{
    if (s_atPrompt) {
        s_promptInterrupt = true;
        return;
    }
    const std::time_t now = std::time(nullptr);
    const bool hasDrawing = edit::Editor::instance().hasDrawing();
    if (!hasDrawing || now - s_lastPress.exchange(now) <= kSoon)
        endRun();
    edit::Editor::instance().interrupt();
}

}

std::atomic<bool>& stopFlag() { return s_stop; }
bool isStopped() { return s_stopped; }

InterruptGuard::InterruptGuard()
{
    edit::Editor::instance();  // the handler must not be the one that makes it
    std::signal(SIGPIPE, SIG_IGN);
    struct sigaction action = {};
    action.sa_handler = pressed;  // without restarting, so that a read from the terminal ends
    ::sigaction(SIGINT, &action, &s_before);
}

InterruptGuard::~InterruptGuard() { ::sigaction(SIGINT, &s_before, nullptr); }

void setAtPrompt(bool at)
{
    s_promptInterrupt = false;
    s_atPrompt = at;
}

bool takePromptInterrupt() { return s_promptInterrupt.exchange(false); }

TimeLimit::TimeLimit(double seconds, std::function<void()> lastWords) : m_lastWords(std::move(lastWords))
{
    if (seconds > 0)
        m_thread = std::thread([this, seconds] { watch(seconds); });
}

TimeLimit::~TimeLimit()
{
    lift();
    if (m_thread.joinable())
        m_thread.join();
}

void TimeLimit::lift()
{
    const std::lock_guard lock(m_mutex);
    m_lifted = true;
    m_wake.notify_all();
}

void TimeLimit::watch(double seconds)
{
    std::unique_lock lock(m_mutex);
    if (m_wake.wait_for(lock, std::chrono::duration<double>(seconds), [this] { return m_lifted; }))
        return;
    m_struck = true;
    const auto end = std::chrono::steady_clock::now() + kGrace;
    while (std::chrono::steady_clock::now() < end) {
        s_stop = true;
        edit::Editor::instance().quit();
        edit::Editor::instance().interrupt();
        if (m_wake.wait_for(lock, kReminder, [this] { return m_lifted; }))
            return;
    }
    m_lastWords();
    ::_exit(kCommandFailed);
}

}  // namespace vk::app
