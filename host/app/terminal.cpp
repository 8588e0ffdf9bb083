#include "host/app/terminal.h"

#include "host/app/stopping.h"
#include "host/edit/command.h"
#include "host/edit/editor.h"

#include <clocale>
#include <cstdio>
#include <fmt/format.h>
#include <histedit.h>

namespace vk::app {

namespace {

constexpr int kHistoryLength = 1000;
constexpr std::size_t kNamesShown = 60;

std::vector<std::string> completionsOf(const std::string& typed)
{
    const edit::Editor& editor = edit::Editor::instance();
    std::vector<std::string> names = edit::CommandTable::instance().namesBeginning(typed);
    if (editor.lisp())
        for (std::string& name : editor.lisp()->commandNames(typed))
            names.push_back(std::move(name));
    std::sort(names.begin(), names.end());
    names.erase(std::unique(names.begin(), names.end()), names.end());
    return names;
}

std::string commonBeginning(const std::vector<std::string>& names)
{
    std::string common = names.front();
    for (const std::string& name : names) {
        const auto [end, ignored] = std::mismatch(common.begin(), common.end(), name.begin(), name.end());
        common.erase(end, common.end());
    }
    return common;
}

void showNames(const std::vector<std::string>& names)
{
    std::string list;
    for (std::size_t i = 0; i < names.size() && i < kNamesShown; ++i)
        list += (i ? "  " : "") + names[i];
    if (names.size() > kNamesShown)
        list += fmt::format("  ... {} more", names.size() - kNamesShown);
    fmt::print("\n{}\n", list);
    std::fflush(stdout);
}

// The first word of a line is a command's name, or may be one.
unsigned char complete(EditLine* el, int)
{
    const LineInfo* line = el_line(el);
    const std::string typed(line->buffer, line->cursor);
    if (typed.empty() || typed.find_first_of(" (\"") != std::string::npos)
        return CC_ERROR;
    const std::vector<std::string> names = completionsOf(typed);
    if (names.empty())
        return CC_ERROR;
    const std::string common = names.size() == 1 ? names.front() + " " : commonBeginning(names);
    if (common.size() <= typed.size()) {
        showNames(names);
        return CC_REDISPLAY;
    }
    el_deletestr(el, int(typed.size()));
    el_insertstr(el, common.c_str());
    return CC_REFRESH;
}

}

struct TerminalSource::LineEditor {
    explicit LineEditor(std::string file) : historyFile(std::move(file))
    {
        std::setlocale(LC_CTYPE, "C.UTF-8");
        el = el_init("vekad", stdin, stdout, stderr);
        past = history_init();
        HistEvent event;
        history(past, &event, H_SETSIZE, kHistoryLength);
        history(past, &event, H_SETUNIQUE, 1);
        if (!historyFile.empty())
            history(past, &event, H_LOAD, historyFile.c_str());
        el_set(el, EL_CLIENTDATA, this);
        el_set(el, EL_PROMPT, &LineEditor::promptOf);
        el_set(el, EL_EDITOR, "emacs");
        el_set(el, EL_SIGNAL, 0);
        el_set(el, EL_HIST, history, past);
        el_set(el, EL_ADDFN, "complete-command", "Complete a command's name", complete);
        el_set(el, EL_BIND, "^I", "complete-command", nullptr);
    }
    ~LineEditor()
    {
        HistEvent event;
        if (!historyFile.empty())
            history(past, &event, H_SAVE, historyFile.c_str());
        history_end(past);
        el_end(el);
    }
    static char* promptOf(EditLine* el)
    {
        LineEditor* self = nullptr;
        el_get(el, EL_CLIENTDATA, &self);
        return self->prompt.data();
    }
    void remember(const char* line)
    {
        HistEvent event;
        if (line[0] != '\n')
            history(past, &event, H_ENTER, line);
    }

    EditLine* el;
    History* past;
    std::string historyFile;
    std::string prompt;
};

TerminalSource::TerminalSource(std::string historyFile, std::function<void(std::string_view)> note)
    : m_editor(std::make_unique<LineEditor>(std::move(historyFile))), m_note(std::move(note))
{
}

TerminalSource::~TerminalSource() = default;

// Ctrl-C at a prompt is Esc: it answers the question, and typing goes on.
edit::Input TerminalSource::next(const edit::Question& question)
{
    m_wasCancelled = false;
    edit::Input input = TextSource::next(question);
    if (!m_wasCancelled)
        return input;
    m_ended = false;
    return {edit::Input::Cancel{}};
}

std::optional<std::string> TerminalSource::readLine(const std::string& prompt)
{
    if (m_wasCancelled)
        return std::nullopt;
    // Only the last line of a prompt is drawn anew while its answer is edited.
    const std::size_t lastLine = prompt.rfind('\n') + 1;
    std::fwrite(prompt.data(), 1, lastLine, stdout);
    std::fflush(stdout);
    m_editor->prompt = prompt.substr(lastLine);
    m_note(prompt);

    setAtPrompt(true);
    // Raw before the prompt shows, or a key pressed at once would be taken by the terminal's own line.
    el_set(m_editor->el, EL_PREP_TERM, 1);
    int length = 0;
    const char* line = el_gets(m_editor->el, &length);
    m_wasCancelled = takePromptInterrupt();
    setAtPrompt(false);
    if (m_wasCancelled || !line || length <= 0) {
        std::fputs("\n", stdout);
        m_note("\n");
        return m_wasCancelled ? std::nullopt : std::optional<std::string>();
    }
    m_editor->remember(line);
    m_note(line);
    std::string text(line, std::size_t(length));
    if (text.ends_with('\n'))
        text.pop_back();
    return text;
}

}  // namespace vk::app
