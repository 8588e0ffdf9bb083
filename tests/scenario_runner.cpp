// scenario_runner FILE.scn... - each scenario is a test case, played in a process of its own, so that one that crashes or
// hangs fails alone and none sees what another has left. "== " begins a scenario with its name; "@ FILE" under it is the
// drawing to begin with, beside the scenarios.

#include "scenario_play.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr unsigned kMostSeconds = 120;

class ScenarioTest : public testing::Test {
public:
    explicit ScenarioTest(const Scenario& scenario) : m_scenario(scenario) {}
    void TestBody() override;

private:
    const Scenario& m_scenario;
};

bool isBlank(const std::string& line) { return line.find_first_not_of(" \t\r") == line.npos; }

// Blank lines around a scenario are for the reader; within one they are Enter.
void trim(Scenario& scenario)
{
    while (!scenario.lines.empty() && isBlank(scenario.lines.back()))
        scenario.lines.pop_back();
    while (!scenario.lines.empty() && isBlank(scenario.lines.front())) {
        scenario.lines.erase(scenario.lines.begin());
        ++scenario.firstLine;
    }
}

std::vector<Scenario> scenariosOf(const std::string& path)
{
    std::vector<Scenario> scenarios;
    std::ifstream in(path);
    const std::filesystem::path file(path);
    int number = 0;
    for (std::string line; std::getline(in, line);) {
        ++number;
        if (line.starts_with("== "))
            scenarios.push_back({line.substr(3), file.filename().string(), {}, number + 1, {}});
        else if (line.starts_with("@ ") && !scenarios.empty())
            scenarios.back().drawing = (file.parent_path() / line.substr(2)).string();
        else if (!scenarios.empty())
            scenarios.back().lines.push_back(line);
    }
    for (Scenario& scenario : scenarios)
        trim(scenario);
    return scenarios;
}

std::string testName(const Scenario& scenario)
{
    std::string name = scenario.name;
    for (char& c : name)
        if (!std::isalnum(static_cast<unsigned char>(c)))
            c = '_';
    return name;
}

[[noreturn]] void playAndTell(const Scenario& scenario, int to)
{
    ::alarm(kMostSeconds);
    std::string told;
    for (const std::string& fault : playScenario(scenario))
        told += fault + "\n";
    const bool isTold = ::write(to, told.data(), told.size()) == ssize_t(told.size());
    ::close(to);
    std::exit(isTold && told.empty() ? 0 : 1);
}

std::string readAll(int from)
{
    std::string text;
    char block[4096];
    for (ssize_t got; (got = ::read(from, block, sizeof block)) > 0;)
        text.append(block, std::size_t(got));
    return text;
}

void ScenarioTest::TestBody()
{
    int ends[2];
    ASSERT_EQ(::pipe(ends), 0);
    std::fflush(nullptr);
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        ::close(ends[0]);
        playAndTell(m_scenario, ends[1]);
    }
    ::close(ends[1]);
    const std::string faults = readAll(ends[0]);
    ::close(ends[0]);
    int state = 0;
    ::waitpid(child, &state, 0);
    if (WIFSIGNALED(state))
        FAIL() << m_scenario.file << ":" << m_scenario.firstLine << ": "
               << (WTERMSIG(state) == SIGALRM ? "does not end" : "ended by signal ")
               << (WTERMSIG(state) == SIGALRM ? "" : std::to_string(WTERMSIG(state))) << "\n"
               << faults;
    if (!faults.empty() || WEXITSTATUS(state) != 0)
        FAIL() << faults;
}

void registerAll(const std::vector<Scenario>& scenarios)
{
    for (const Scenario& scenario : scenarios) {
        const std::string suite = std::filesystem::path(scenario.file).stem().string();
        testing::RegisterTest(suite.c_str(), testName(scenario).c_str(), nullptr, nullptr, scenario.file.c_str(),
                              scenario.firstLine,
                              [&scenario]() -> testing::Test* { return new ScenarioTest(scenario); });
    }
}

}

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    std::vector<Scenario> scenarios;
    for (int i = 1; i < argc; ++i) {
        const std::vector<Scenario> more = scenariosOf(argv[i]);
        if (more.empty()) {
            std::fprintf(stderr, "%s holds no scenario\n", argv[i]);
            return 1;
        }
        scenarios.insert(scenarios.end(), more.begin(), more.end());
    }
    registerAll(scenarios);
    return RUN_ALL_TESTS();
}
