#include "host/app/run_one.h"

#include "host/app/loading.h"
#include "host/app/remarks.h"
#include "host/app/report.h"
#include "host/app/session.h"
#include "host/app/stopping.h"
#include "host/app/terminal.h"
#include "host/app/transcript.h"
#include "host/base/code_page.h"
#include "host/base/files.h"
#include "host/base/settings.h"
#include "host/db/database.h"
#include "host/edit/editor.h"

#include <cstdio>
#include <iostream>
#include <iterator>
#include <unistd.h>

namespace vk::app {

namespace {

using edit::Editor;

class OneRun {
public:
    explicit OneRun(const RunOptions& options) : m_options(options), m_drawing(options.drawings.front()) {}

    int run();

private:
    bool prepare();
    bool readInputs();
    bool read();
    void pushInputs();
    void runCommands();
    void judge();
    void save();
    void tellUnsaved();
    void fail(Status status, const std::string& why);
    int finish();
    void lastWords();

    const RunOptions& m_options;
    const std::string m_drawing;
    std::string m_script;
    RunReport m_report;
    Remarks m_remarks;
    Transcript m_transcript;
    std::unique_ptr<VcDbDatabase> m_database;
};

std::optional<std::string> wholeInput()
{
    std::string text{std::istreambuf_iterator<char>(std::cin), std::istreambuf_iterator<char>()};
    return std::cin.bad() ? std::nullopt : std::optional(std::move(text));
}

// The worst of what happened is the status.
void OneRun::fail(Status status, const std::string& why)
{
    m_report.status = std::max<int>(m_report.status, status);
    if (!why.empty())
        m_remarks.say(why);
}

bool OneRun::readInputs()
{
    std::string error;
    std::optional<std::string> text = m_options.script == "-"    ? wholeInput()
                                      : m_options.script.empty() ? std::optional<std::string>("")
                                                                 : readWholeFile(m_options.script, &error);
    if (!text) {
        fail(kWrongUsage, fmt::format("the script {} cannot be read: {}", m_options.script, error));
        return false;
    }
    m_script = utf8OfTextFile(std::move(*text));
    return true;
}

bool OneRun::prepare()
{
    m_report.drawing = m_drawing;
    std::string error;
    if (!m_transcript.start(!m_options.json, m_options.transcript, m_options.appendTranscript, error)) {
        fail(kWrongUsage, error);
        return false;
    }
    return readInputs();
}

bool OneRun::read()
{
    Loaded loaded = load(m_drawing, m_options.recover, m_remarks);
    m_report.read = std::move(loaded.read);
    m_database = std::move(loaded.database);
    fail(Status(loaded.status), "");
    if (m_report.read->ok())
        loadReferences(*m_database, m_remarks);
    return m_report.read->ok();
}

// The last one pushed is the first to be asked.
void OneRun::pushInputs()
{
    Editor& editor = Editor::instance();
    if (!m_options.hasInput() && ::isatty(STDIN_FILENO) && !m_options.json) {
        const std::string history = std::string(folderOf(userSettings().file())) + "history";
        editor.pushSource(
            std::make_unique<TerminalSource>(history, [this](std::string_view text) { m_transcript.note(text); }));
        return;
    }
    if (!m_options.script.empty()) {
        const std::string name = m_options.script == "-" ? "standard input" : m_options.script;
        editor.pushSource(std::make_unique<edit::ScriptSource>(name, std::move(m_script)));
    }
    for (std::size_t i = m_options.typed.size(); i-- > 0;)
        editor.pushSource(std::make_unique<edit::ScriptSource>("-c", m_options.typed[i] + "\n"));
}

void OneRun::runCommands()
{
    Editor& editor = Editor::instance();
    Progress progress("Working");
    editor.onProgress = [&](std::string_view what, double done) { progress.show(what, done); };
    pushInputs();
    editor.run();
    editor.onProgress = {};
}

void OneRun::judge()
{
    Editor& editor = Editor::instance();
    m_report.commands = editor.records();
    if (editor.dialogs())
        for (const std::string& form : editor.dialogs()->unusedAnswers())
            fail(kCommandFailed, fmt::format("an answer for {} was left over: it was not shown", form));
    if (editor.hasFailed())
        fail(kCommandFailed, "");
    m_report.changes = changesOf(editor.db());
    if (editor.undo().mode() == edit::UndoControl::Mode::None)
        m_remarks.say("undo is off, so the list of changes is not complete");
}

void OneRun::save()
{
    const std::string path = m_options.out.empty() ? m_drawing : m_options.out;
    stopFlag() = false;
    WriteOptions how = writeOptions(m_options.save);
    how.dryRun = m_options.dryRun;
    how.touchTimes = !m_report.changes.isEmpty();
    m_report.saved = saveAs(Editor::instance().drawing(), path, how, m_remarks);
    if (!m_report.saved->ok())
        fail(kNotSaved, "");
}

void OneRun::tellUnsaved()
{
    if (!m_report.changes.isEmpty())
        m_remarks.say("the changes were not saved; -o or --in-place does that");
}

int OneRun::finish()
{
    m_transcript.flush();
    m_report.messages = m_remarks.all();
    if (m_options.json)
        fmt::print("{}\n", jsonLine(m_report));
    if (std::fflush(stdout) != 0)
        fmt::print(stderr, "vekad: standard output could not be written\n");
    return m_report.status;
}

// From outside of a run that no longer answers: what it holds may be in motion, so a report of its own.
void OneRun::lastWords()
{
    RunReport last;
    last.drawing = m_drawing;
    last.status = kCommandFailed;
    last.messages = {"the time limit struck and the run did not end; nothing was saved"};
    fmt::print(stderr, "vekad: {}\n", last.messages.front());
    if (m_options.json)
        fmt::print("{}\n", jsonLine(last));
    std::fflush(stdout);
}

int OneRun::run()
{
    if (!prepare())
        return finish();
    Session session(m_options.profile);
    setDryRun(m_options.dryRun);
    const InterruptGuard interrupts;
    TimeLimit limit(m_options.timeout, [this] { lastWords(); });
    if (!read()) {
        if (limit.hasStruck())
            fail(kCommandFailed, "the time limit struck");
        return finish();
    }
    for (const std::string& fault : session.open(std::move(m_database)))
        fail(kCommandFailed, fault);
    runCommands();
    limit.lift();
    if (limit.hasStruck() || isStopped())
        fail(kCommandFailed, limit.hasStruck() ? "the time limit struck" : "the run was ended");
    judge();
    if (m_options.saves())
        save();
    else
        tellUnsaved();
    return finish();
}

}

int runOne(const RunOptions& options) { return OneRun(options).run(); }

}  // namespace vk::app
