// What is typed where a command is asked: names of commands and variables, Lisp.
#include "host/edit/active_command.h"
#include "host/edit/editor.h"
#include "host/edit/script_rest.h"
#include "host/edit/sysvars.h"
#include "host/edit/typed_variable.h"

#include <utility>

namespace vk::edit {

namespace {

using Kind = Question::Kind;

std::optional<ScriptRest> s_rest;

class CountedScript : public ScriptSource {
public:
    CountedScript(std::string name, std::string text, std::shared_ptr<std::size_t> linesTaken)
        : ScriptSource(std::move(name), std::move(text)), m_linesTaken(std::move(linesTaken))
    {
    }

protected:
    std::optional<std::string> readLine(const std::string& prompt) override
    {
        ++*m_linesTaken;
        return ScriptSource::readLine(prompt);
    }

private:
    std::shared_ptr<std::size_t> m_linesTaken;
};

std::string afterLines(const std::string& text, std::size_t count)
{
    std::size_t at = 0;
    for (; count > 0 && at < text.size(); --count)
        at = std::min(text.find('\n', at), text.size() - 1) + 1;
    return text.substr(at);
}

}

void Editor::run()
{
    ++m_running;
    m_quitting = false;
    while (!m_quitting && m_drawing && runNext()) {
    }
    --m_running;
}

// Sources below are kept out of it, so that a script which ends within a command does not go on with what follows it.
void Editor::runScript(std::string name, std::string text)
{
    std::vector<std::unique_ptr<InputSource>> below = std::exchange(m_sources, {});
    const auto linesTaken = std::make_shared<std::size_t>(0);
    pushSource(std::make_unique<CountedScript>(name, text, linesTaken));
    while (!m_quitting && runNext()) {
    }
    m_sources = std::move(below);
    if (!m_interrupted)
        return;
    if (std::string rest = afterLines(text, *linesTaken); !rest.empty())
        s_rest = {std::move(name), std::move(rest)};
}

std::optional<ScriptRest> takeScriptRest() { return std::exchange(s_rest, std::nullopt); }

bool Editor::runNext()
{
    if (!m_active.empty() && m_active.back()->level() == m_nesting) {
        drive(false);
        return true;
    }
    dropFinishedSources();
    if (m_cancelledByInterrupt && m_interrupted && m_stopOnInterrupt)
        return false;
    if (!personSource())
        return false;
    Question question{.kind = Kind::Command, .prompt = "Command: "};
    m_interrupted = false;
    InputSource* source = currentSource(false);
    if (!source->isInteractive())
        printPrompt(question.prompt);
    Input input = nextInput(question, false, source);
    if (std::holds_alternative<Input::Exhausted>(input.what)) {
        if (!m_atLineStart)
            print("\n");
        return personSource() != nullptr;
    }
    if (auto* expression = std::get_if<Input::Expression>(&input.what)) {
        if (source->echoes())
            print(expression->text + "\n");
        runLispAtTop(expression->text);
        return true;
    }
    auto* text = std::get_if<Input::Text>(&input.what);
    if (!text) {
        printLine("*Cancel*");
        return true;
    }
    if (source->echoes())
        print(text->text + "\n");
    else
        m_atLineStart = true;
    runTyped(text->text.empty() ? m_lastCommand : text->text);
    return true;
}

void Editor::runTyped(const std::string& typed)
{
    if (typed.empty())
        return;
    m_toldEnd = false;
    if (typed.front() == '!') {
        runLispAtTop(typed.substr(1));
        return;
    }
    const CommandEntry* found = CommandTable::instance().find(typed);
    if (found) {
        m_lastCommand = typed;
        runEntry(CommandEntry(*found));
    } else if (m_lisp && m_lisp->hasCommand(typed)) {
        m_lastCommand = typed;
        runLispCommand(typed);
    } else if (findSysVar(typed)) {
        m_lastCommand = typed;
        pushSource(std::make_unique<TypedVariable>(typed));
        if (const CommandEntry* setvar = CommandTable::instance().find("SETVAR"))
            runEntry(CommandEntry(*setvar));
    } else {
        printLine(fmt::format("Unknown command \"{}\".", typed));
        record(typed, CommandRecord::Failed);
        m_failed = true;
    }
}

int Editor::runEntry(const CommandEntry& entry)
{
    m_interrupted = false;
    if (!(entry.flags & kUsesPickSet))
        pickFirst.reset();
    m_lastOutcome = CommandRecord::Done;
    m_currentCancelled = false;
    int result = RTNORM;
    if (entry.host) {
        m_names.push_back(entry.name);
        startHost(entry, false, false);
        result = drive(false);
        m_names.pop_back();
    } else {
        result = invokeModuleCommand(entry.name, entry.handler, entry.flags);
    }
    finishLeftOvers();
    record(entry.name, m_lastOutcome);
    return result;
}

// What a module's command has left with the person.
void Editor::finishLeftOvers()
{
    while (!m_active.empty() && m_active.back()->level() == m_nesting && !m_quitting)
        drive(false);
}

void Editor::runLispAtTop(const std::string& text)
{
    if (!m_lisp) {
        failCurrent("There is no Lisp in this program.");
        return;
    }
    m_undo->beginStep("Lisp", UndoControl::Owner::Nobody);
    ++m_nesting;
    const LispEvaluator::Result result = evaluateLisp(text);
    settleWaiting(m_nesting);
    --m_nesting;
    showLispResult(result);
    finishLeftOvers();
    m_undo->endStep();
}

void Editor::runLispCommand(const std::string& name)
{
    m_names.push_back(name);
    m_undo->beginStep(name);
    ++m_nesting;
    const LispEvaluator::Result result = m_lisp->runCommand(name);
    settleWaiting(m_nesting);
    --m_nesting;
    showLispResult(result);
    finishLeftOvers();
    m_undo->endStep();
    m_names.pop_back();
    record(name, result.status == LispEvaluator::Result::Done        ? CommandRecord::Done
                 : result.status == LispEvaluator::Result::Cancelled ? CommandRecord::Cancelled
                                                                     : CommandRecord::Failed);
}

void Editor::showLispResult(const LispEvaluator::Result& result)
{
    if (result.status == LispEvaluator::Result::Failed) {
        if (!result.message.empty())
            printLine("; error: " + result.message);
        m_failed = true;
    } else if (result.status == LispEvaluator::Result::Cancelled) {
        printLine("*Cancel*");
    } else if (!result.isSilent) {
        printLine(result.printed);
    }
}

}
