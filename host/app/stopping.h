// Ctrl-C and the time limit. The first Ctrl-C cancels the running command, a second one soon after ends the run; a drawing
// that is being read or saved is left as it was.
#pragma once

#include <atomic>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

namespace vk::app {

// Read by readers and writers of files.
std::atomic<bool>& stopFlag();
// The person has ended the run.
bool isStopped();

// Takes over Ctrl-C for its life; a closed output no longer ends the program.
class InterruptGuard {
public:
    InterruptGuard();
    ~InterruptGuard();
    InterruptGuard(const InterruptGuard&) = delete;
    InterruptGuard& operator=(const InterruptGuard&) = delete;
};

// While someone types at a prompt Ctrl-C belongs to the prompt; true when it was pressed since the last call.
void setAtPrompt(bool at);
bool takePromptInterrupt();

// When the time is over commands are cancelled and the run ends. What does not heed that within a few seconds is ended from
// outside, after lastWords has been called; no file has been touched by then, since saves are put in place in one step.
class TimeLimit {
public:
    TimeLimit(double seconds, std::function<void()> lastWords);
    ~TimeLimit();
    TimeLimit(const TimeLimit&) = delete;
    TimeLimit& operator=(const TimeLimit&) = delete;
    bool hasStruck() const { return m_struck; }
    // The work is done: what follows is not limited.
    void lift();

private:
    void watch(double seconds);
    std::function<void()> m_lastWords;
    std::atomic<bool> m_struck{false};
    bool m_lifted = false;
    std::mutex m_mutex;
    std::condition_variable m_wake;
    std::thread m_thread;
};

}  // namespace vk::app
