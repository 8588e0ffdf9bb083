// Starting programs under the system-style name.
#include "host/base/files.h"
#include "host/base/system_handle.h"
#include "host/base/unicode.h"
#include "sdk/system.h"

#include <spawn.h>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

// Words divided by blanks; double quotes hold blanks together, \" is a quote itself.
std::vector<std::string> splitCommandLine(std::string_view line)
{
    std::vector<std::string> words;
    bool quoted = false, open = false;
    for (std::size_t i = 0; i < line.size(); ++i) {
        const bool escapedQuote = line[i] == '\\' && i + 1 < line.size() && line[i + 1] == '"';
        if (!quoted && !escapedQuote && (line[i] == ' ' || line[i] == '\t')) {
            open = false;
            continue;
        }
        if (!open)
            words.emplace_back();
        open = true;
        if (escapedQuote)
            words.back() += line[++i];
        else if (line[i] == '"')
            quoted = !quoted;
        else
            words.back() += line[i];
    }
    return words;
}

int spawn(const std::string& program, std::vector<std::string> words, const wchar_t* folder)
{
    std::vector<char*> arguments;
    for (std::string& word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    if (folder)
        ::posix_spawn_file_actions_addchdir_np(&actions, nativePath(folder).c_str());
    pid_t process = 0;
    const int failed = ::posix_spawnp(&process, program.c_str(), &actions, nullptr, arguments.data(), environ);
    ::posix_spawn_file_actions_destroy(&actions);
    return failed ? 0 : process;
}

}  // namespace

BOOL CreateProcessW(const wchar_t* program, wchar_t* commandLine, void*, void*, BOOL, DWORD, void*,
                    const wchar_t* folder, STARTUPINFOW*, PROCESS_INFORMATION* information)
{
    std::vector<std::string> words = splitCommandLine(commandLine ? wideToUtf8(commandLine) : "");
    if (words.empty() && program)
        words.push_back(wideToUtf8(program));
    if (words.empty() || words[0].empty())
        return FALSE;
    const std::string path = nativePath(std::string_view(program ? wideToUtf8(program) : words[0]));
    const int process = spawn(path, std::move(words), folder);
    if (process <= 0)
        return FALSE;
    if (information)
        *information = {addHandle({-1, process}), addHandle({-1, 0}), static_cast<DWORD>(process), 0};
    return TRUE;
}
