#include "host/app/batch.h"

#include "host/app/paths.h"
#include "host/app/report.h"
#include "host/app/stopping.h"
#include "host/base/files.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <fmt/format.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace vk::app {

namespace {

// Standard input read once, for each run to read anew.
class SharedInput {
public:
    explicit SharedInput(bool isWanted)
    {
        if (!isWanted)
            return;
        m_fd = ::memfd_create("script", MFD_CLOEXEC);
        char block[65536];
        for (ssize_t got; m_fd >= 0 && (got = ::read(STDIN_FILENO, block, sizeof block)) > 0;)
            if (::write(m_fd, block, std::size_t(got)) != got)
                m_isWhole = false;
    }
    ~SharedInput()
    {
        if (m_fd >= 0)
            ::close(m_fd);
    }
    SharedInput(const SharedInput&) = delete;
    SharedInput& operator=(const SharedInput&) = delete;
    bool isWhole() const { return m_isWhole; }
    void give(posix_spawn_file_actions_t& actions) const
    {
        if (m_fd < 0)
            posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        else
            posix_spawn_file_actions_adddup2(&actions, m_fd, STDIN_FILENO);
    }
    void rewind() const
    {
        if (m_fd >= 0)
            ::lseek(m_fd, 0, SEEK_SET);
    }

private:
    int m_fd = -1;
    bool m_isWhole = true;
};

std::vector<std::string> argumentsFor(const RunOptions& o, const std::string& drawing)
{
    std::vector<std::string> list = {programPath(), "run"};
    const auto flag = [&](bool on, const char* name) {
        if (on)
            list.push_back(name);
    };
    const auto value = [&](const std::string& text, const char* name) {
        if (!text.empty())
            list.insert(list.end(), {name, text});
    };
    for (const std::string& text : o.typed)
        list.insert(list.end(), {"-c", text});
    value(o.script, "--script");
    value(o.out.empty() ? o.out : pathInFolder(o.out, drawing), "--output");
    flag(o.inPlace, "--in-place");
    flag(o.dryRun, "--dry-run");
    flag(o.recover, "--recover");
    flag(o.json, "--json");
    value(o.save.versionName, "--as");
    flag(o.save.binary, "--binary");
    flag(o.save.allowLoss, "--allow-loss");
    value(o.profile, "--profile");
    value(o.transcript, "--transcript");
    flag(!o.transcript.empty(), "--append-transcript");
    value(o.timeout > 0 ? fmt::format("{}", o.timeout) : std::string(), "--timeout");
    list.insert(list.end(), {"--", drawing});
    return list;
}

// What a run that came to a bad end can no longer say itself.
int tellBadEnd(const RunOptions& options, const std::string& drawing, const std::string& why)
{
    RunReport report;
    report.drawing = drawing;
    report.status = kCommandFailed;
    report.messages = {why};
    fmt::print(stderr, "vekad: {}: {}\n", drawing, why);
    if (options.json)
        fmt::print("{}\n", jsonLine(report));
    std::fflush(stdout);
    return kCommandFailed;
}

int waitFor(pid_t child)
{
    int state = 0;
    while (::waitpid(child, &state, 0) < 0 && errno == EINTR) {
    }
    return state;
}

int runInProcess(const RunOptions& options, const std::string& drawing, const SharedInput& input)
{
    const std::vector<std::string> arguments = argumentsFor(options, drawing);
    std::vector<char*> argv;
    for (const std::string& argument : arguments)
        argv.push_back(const_cast<char*>(argument.c_str()));
    argv.push_back(nullptr);

    input.rewind();
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    input.give(actions);
    pid_t child = 0;
    const int fault = ::posix_spawn(&child, argv[0], &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (fault)
        return tellBadEnd(options, drawing, fmt::format("cannot be run: {}", std::strerror(fault)));

    const int state = waitFor(child);
    if (WIFSIGNALED(state))
        return tellBadEnd(options, drawing, fmt::format("the run was ended by signal {}", WTERMSIG(state)));
    return WEXITSTATUS(state);
}

bool startTranscript(const std::string& path)
{
    std::FILE* file = path.empty() ? nullptr : std::fopen(path.c_str(), "wb");
    return path.empty() || (file && std::fclose(file) == 0);
}

}

int runEach(const RunOptions& options)
{
    if (!startTranscript(options.transcript)) {
        fmt::print(stderr, "vekad: the transcript cannot be written to {}\n", options.transcript);
        return kWrongUsage;
    }
    const SharedInput input(options.script == "-");
    if (!input.isWhole()) {
        fmt::print(stderr, "vekad: standard input could not be read whole\n");
        return kWrongUsage;
    }
    const InterruptGuard interrupts;
    int worst = kDone;
    for (const std::string& drawing : options.drawings) {
        if (isStopped())
            return std::max<int>(worst, kCommandFailed);
        if (!options.json) {
            fmt::print("== {}\n", drawing);
            std::fflush(stdout);
        }
        worst = std::max(worst, runInProcess(options, drawing, input));
    }
    return worst;
}

}  // namespace vk::app
