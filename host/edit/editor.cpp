#include "host/edit/editor.h"

#include "host/base/console.h"
#include "host/base/unicode.h"
#include "host/db/chain.h"
#include "host/db/database.h"
#include "host/edit/active_command.h"
#include "host/edit/interpret.h"
#include "host/edit/sysvars.h"

#include <utility>

namespace vk::edit {

namespace {

using Kind = Question::Kind;

Editor* s_instance = nullptr;

bool hasDepth(const ActiveCommand& active, int level) { return active.level() >= level; }

}

Editor& Editor::instance()
{
    static Editor editor;
    return editor;
}

Editor::Editor()
{
    s_instance = this;
    setConsoleSink([this](std::string_view text) { print(text); });
    m_vars = std::make_unique<SysVars>(*this);
}

Editor::~Editor()
{
    setConsoleSink({});
    closeDrawing();
}

// Drawings

void Editor::openDrawing(std::unique_ptr<VcDbDatabase> drawing)
{
    closeDrawing();
    m_drawing = std::move(drawing);
    m_undo = std::make_unique<UndoControl>(m_drawing->core());
    m_vars->drawingOpened();
    lastPoint = {};
    lastAngle = 0;
}

std::unique_ptr<VcDbDatabase> Editor::closeDrawing()
{
    m_active.clear();
    previousSelection.reset();
    pickFirst.reset();
    m_undo.reset();
    return std::move(m_drawing);
}

void Editor::setLisp(std::unique_ptr<LispEvaluator> lisp) { m_lisp = std::move(lisp); }

// Output

void Editor::print(std::string_view text)
{
    if (m_current && m_current->isDriven() && m_vars->integer("CMDECHO") == 0)
        return;
    m_transcript.append(text);
    if (m_transcript.size() > kTranscriptKept * 2)
        m_transcript.erase(0, m_transcript.size() - kTranscriptKept);
    m_atLineStart = text.empty() ? m_atLineStart : text.back() == '\n';
    if (m_sink)
        m_sink(text);
}

void Editor::printLine(std::string_view text)
{
    print((m_atLineStart ? "" : "\n") + std::string(text) + "\n");
}

// Prompts begin a line of their own; modules put a line break in front, which an empty line would be too much for.
void Editor::printPrompt(std::string_view prompt)
{
    if (m_atLineStart && prompt.starts_with('\n'))
        prompt.remove_prefix(1);
    print((m_atLineStart || prompt.starts_with('\n') ? "" : "\n") + std::string(prompt));
}

void Editor::progress(std::string_view what, double done)
{
    if (onProgress)
        onProgress(what, done);
}

// Interrupting

bool Editor::isInterrupted() const { return m_interrupted; }
void Editor::interrupt() { m_interrupted = true; }

void Editor::throwIfInterrupted() const
{
    if (m_interrupted)
        throw CommandCancelled();
}

// The stack of sources

void Editor::pushSource(std::unique_ptr<InputSource> source) { m_sources.push_back(std::move(source)); }

void Editor::dropFinishedSources()
{
    while (!m_sources.empty() && m_sources.back()->isExhausted() && !m_sources.back()->isArguments())
        m_sources.pop_back();
}

// The source that the next answer comes from: arguments that have run out are passed over, unless only they count.
InputSource* Editor::currentSource(bool argumentsOnly)
{
    for (std::size_t i = m_sources.size(); i-- > 0;) {
        InputSource& source = *m_sources[i];
        if (!source.isExhausted())
            return argumentsOnly && !source.isArguments() ? nullptr : &source;
        if (argumentsOnly && source.isArguments())
            return nullptr;
    }
    return nullptr;
}

Input Editor::nextInput(const Question& question, bool argumentsOnly, InputSource*& from)
{
    for (;;) {
        from = currentSource(argumentsOnly);
        if (!from)
            return {Input::Exhausted{}};
        Input input = from->next(question);
        if (std::holds_alternative<Input::Pause>(input.what)) {
            from = personSource();
            if (from)
                input = from->next(question);
            else
                return {Input::Exhausted{}};
        }
        if (!std::holds_alternative<Input::Exhausted>(input.what) || from->isArguments())
            return input;
        dropFinishedSources();
    }
}

InputSource* Editor::personSource()
{
    for (std::size_t i = m_sources.size(); i-- > 0;)
        if (!m_sources[i]->isArguments() && !m_sources[i]->isExhausted())
            return m_sources[i].get();
    return nullptr;
}

// Asking

namespace {

// The name of a variable, typed where a command was asked: it answers the first question of SETVAR unseen.
class TypedVariable : public InputSource {
public:
    explicit TypedVariable(std::string name) : m_name(std::move(name)) {}
    Input next(const Question&) override
    {
        if (std::exchange(m_used, true))
            return {Input::Exhausted{}};
        return {Input::Text{m_name, true}};
    }
    bool isExhausted() const override { return m_used; }
    bool echoes() const override { return false; }

private:
    std::string m_name;
    bool m_used = false;
};

}

bool Editor::isQuiet(const InputSource* source) const
{
    return source && (dynamic_cast<const TypedVariable*>(source) || (source->isArguments() && m_vars->integer("CMDECHO") == 0));
}

Answer Editor::ask(Question question)
{
    if (!m_current)
        return askOnMain(question);
    Answer answer = m_current->ask(question);
    if (answer.status == Answer::Status::Cancel)
        throw CommandCancelled();
    return answer;
}

Answer Editor::askNested(const Question& question) { return askOnMain(question); }

Answer Editor::askOnMain(const Question& question)
{
    for (;;) {
        if (auto answer = tryAnswer(question, false))
            return *answer;
    }
}

// One input for the question. Nothing when it has to be asked again, or when arguments alone count and there are none.
std::optional<Answer> Editor::tryAnswer(const Question& question, bool argumentsOnly)
{
    takeNameOfMadeBlock();
    if (m_interrupted)
        return cancelled(true);
    const InputSource* expected = currentSource(argumentsOnly);
    const bool quiet = isQuiet(expected);
    if (!quiet && !(expected && expected->isInteractive()))
        printPrompt(question.prompt);
    m_vars->force("LASTPROMPT", question.prompt);
    InputSource* source = nullptr;
    Input input = nextInput(question, argumentsOnly, source);
    if (m_interrupted)
        return cancelled(true);
    if (std::holds_alternative<Input::Exhausted>(input.what))
        return endOfInput();
    if (std::holds_alternative<Input::Cancel>(input.what))
        return cancelled(false);
    if (auto* expression = std::get_if<Input::Expression>(&input.what))
        return answerWithLisp(question, *expression);
    if (auto* text = std::get_if<Input::Text>(&input.what)) {
        if (!quiet && (source->echoes() || source->isArguments()))
            print(text->text + "\n");
        else if (source->isInteractive())
            m_atLineStart = true;
        if (isTransparentCall(question, text->text)) {
            runTransparent(text->text);
            return std::nullopt;
        }
        if (question.kind == Kind::Text && !source->isArguments() && text->text.starts_with('(') && m_vars->integer("TEXTEVAL") == 1)
            return answerWithLisp(question, {text->text});
        return settle(interpretText(*this, question, text->text));
    }
    return settle(interpretValue(*this, question, *std::get<RbPtr>(input.what)));
}

std::optional<Answer> Editor::settle(Interpretation interpretation)
{
    if (auto* answer = std::get_if<Answer>(&interpretation))
        return std::move(*answer);
    printLine(std::get<AskAgain>(interpretation).message);
    return std::nullopt;
}

Answer Editor::cancelled(bool byInterrupt)
{
    printLine("*Cancel*");
    m_currentCancelled = true;
    if (byInterrupt)
        m_cancelledByInterrupt = true;
    return Answer{};
}

Answer Editor::endOfInput()
{
    if (!m_toldEnd)
        printLine("*Cancel*\nThe input ended inside a command, which was cancelled.");
    m_toldEnd = true;
    m_failed = true;
    return Answer{};
}

std::optional<Answer> Editor::answerWithLisp(const Question& question, const Input::Expression& expression)
{
    if (question.kind != Kind::Text) // whose lines have been echoed as they came
        print(expression.text + "\n");
    if (!m_lisp)
        return settle(AskAgain{"There is no Lisp in this program."});
    const long number = m_asking ? m_asking->questionNumber() : 0;
    const bool feedsBefore = std::exchange(m_feedsAsking, m_asking != nullptr);
    const LispEvaluator::Result result = evaluateLisp(expression.text);
    m_feedsAsking = feedsBefore;
    if (number && !isOpen(number)) {
        m_failed |= result.status == LispEvaluator::Result::Failed;
        return std::nullopt; // its arguments have answered the question
    }
    if (result.status == LispEvaluator::Result::Cancelled)
        return cancelled(false);
    if (result.status == LispEvaluator::Result::Failed) {
        m_failed = true;
        return settle(AskAgain{"; error: " + result.message});
    }
    if (!result.value || result.value->restype == RTNIL)
        return std::nullopt;
    return settle(interpretValue(*this, question, *result.value));
}

// Lisp runs on the main stack, one nesting deeper, so that a command it starts is its own.
LispEvaluator::Result Editor::evaluateLisp(const std::string& text)
{
    ActiveCommand* const current = std::exchange(m_current, nullptr);
    LispEvaluator::Result result = m_lisp->evaluate(text);
    m_current = current;
    return result;
}

// Transparent commands

bool Editor::isTransparentCall(const Question& question, const std::string& text) const
{
    if (!text.starts_with('\'') || question.kind == Kind::Text || question.kind == Kind::Command || text.size() < 2)
        return false;
    return CommandTable::instance().find(text) != nullptr;
}

void Editor::runTransparent(const std::string& typed)
{
    const CommandEntry entry = *CommandTable::instance().find(typed);
    if (!(entry.flags & kTransparent)) {
        printLine(fmt::format("** {} command may not be invoked transparently **", entry.name));
        return;
    }
    ActiveCommand* const current = std::exchange(m_current, nullptr);
    ++m_nesting;
    m_names.push_back("'" + entry.name);
    startHost(entry, false, false);
    driveToEnd();
    m_names.pop_back();
    --m_nesting;
    m_current = current;
    if (!m_names.empty())
        printLine(fmt::format("Resuming {} command.", m_names.back()));
}

// Host commands

int Editor::startHost(const CommandEntry& entry, bool driven, bool fromLisp)
{
    m_active.push_back(std::make_unique<ActiveCommand>(*this, entry, driven, fromLisp, m_nesting));
    if (!(entry.flags & kNoUndoStep))
        m_undo->beginStep(entry.name);
    resumeTop();
    return RTNORM;
}

// Runs the top command until it asks or ends, doing on the main stack what it hands over.
void Editor::resumeTop()
{
    ActiveCommand& active = *m_active.back();
    for (;;) {
        ActiveCommand* const before = std::exchange(m_current, &active);
        active.resume();
        m_current = before;
        if (!active.work())
            return;
        std::exception_ptr failure;
        ActiveCommand* const current = std::exchange(m_current, nullptr);
        ++m_nesting;
        try {
            (*active.work())();
        } catch (...) {
            failure = std::current_exception();
        }
        settleWaiting(m_nesting);
        --m_nesting;
        m_current = current;
        active.workDone(failure);
    }
}

// Answers the top command's questions. With argumentsOnly it is left waiting when they run out.
int Editor::drive(bool argumentsOnly)
{
    ActiveCommand& active = *m_active.back();
    while (!active.isFinished()) {
        if (argumentsOnly && !currentSource(true)) {
            if (!active.question().endsWithArguments)
                return RTNORM;
            active.answer(Answer{.status = Answer::Status::Enter});
            resumeTop();
            continue;
        }
        if (!argumentsOnly)
            active.setDriven(active.isDriven() && currentSource(true));
        ActiveCommand* const before = std::exchange(m_current, nullptr);
        const long number = active.questionNumber();
        ActiveCommand* const asking = std::exchange(m_asking, &active);
        auto answer = tryAnswer(active.question(), argumentsOnly);
        m_asking = asking;
        m_current = before;
        if (!isOpen(number)) { // Lisp has fed it, perhaps to its end
            if (m_active.empty() || m_active.back().get() != &active)
                return m_lastOutcome == CommandRecord::Done ? RTNORM : RTCAN;
            continue;
        }
        if (!answer)
            continue;
        active.answer(std::move(*answer));
        resumeTop();
    }
    return finishTop();
}

void Editor::driveToEnd() { drive(false); }

int Editor::finishTop()
{
    const std::unique_ptr<ActiveCommand> ended = std::move(m_active.back());
    m_active.pop_back();
    if (!(ended->entry().flags & kNoUndoStep))
        m_undo->endStep();
    m_lastOutcome = ended->outcome() == ActiveCommand::Outcome::Done        ? CommandRecord::Done
                    : ended->outcome() == ActiveCommand::Outcome::Cancelled ? CommandRecord::Cancelled
                                                                            : CommandRecord::Failed;
    if (m_lastOutcome == CommandRecord::Failed) {
        printLine(ended->message());
        m_failed = true;
    }
    return m_lastOutcome == CommandRecord::Done ? RTNORM : m_lastOutcome == CommandRecord::Cancelled ? RTCAN : RTERROR;
}

// A command that still waits when its caller ends takes its defaults, or is cancelled where it has none. One that stays with
// the person goes to the level below.
void Editor::settleWaiting(int level)
{
    while (!m_active.empty() && hasDepth(*m_active.back(), level)) {
        ActiveCommand& active = *m_active.back();
        if (active.entry().flags & kStaysWaiting || (active.isFromLisp() && level <= 1)) {
            active.setLevel(level - 1);
            active.setDriven(false);
            return;
        }
        while (!active.isFinished()) {
            active.answer(active.question().hasDefault ? Answer{.status = Answer::Status::Enter} : Answer{});
            resumeTop();
        }
        finishTop();
    }
}

void Editor::onMain(const std::function<void()>& work)
{
    if (m_current)
        m_current->onMain(work);
    else
        work();
}

bool Editor::isOnCoroutine() const { return m_current != nullptr; }
bool Editor::isDriven() const { return m_current && m_current->isDriven(); }

// Commands from modules and Lisp

int Editor::command(RbPtr arguments, bool fromLisp)
{
    if (!m_drawing)
        return RTERROR;
    if (!arguments)
        return cancelWaiting();
    m_sources.push_back(std::make_unique<ArgumentSource>(std::move(arguments)));
    auto& source = static_cast<ArgumentSource&>(*m_sources.back());
    const int result = feedCommands(source, fromLisp);
    std::erase_if(m_sources, [&](const auto& s) { return s.get() == &source; });
    return result;
}

int Editor::cancelWaiting()
{
    if (m_active.empty() || m_active.back()->level() < m_nesting)
        return RTNORM;
    ActiveCommand& active = *m_active.back();
    while (!active.isFinished()) {
        active.answer({});
        resumeTop();
    }
    finishTop();
    return RTNORM;
}

int Editor::feedCommands(ArgumentSource& source, bool fromLisp)
{
    static const Question kCommandName{.kind = Kind::Command, .prompt = "Command: "};
    int result = RTNORM;
    while (result == RTNORM) {
        if (!m_active.empty() && m_active.back()->level() == m_nesting && (m_feedsAsking || !isAsking(*m_active.back()))) {
            result = drive(true);
            if (source.isExhausted())
                return result;
            continue;
        }
        source.dropEnters();
        if (source.isExhausted())
            return result;
        Input input = source.next(kCommandName);
        const auto* name = std::get_if<Input::Text>(&input.what);
        if (!name) {
            printLine("A command's name is expected.");
            m_failed = true;
            return RTERROR;
        }
        result = startNamed(name->text, fromLisp);
    }
    return result;
}

bool Editor::isAsking(const ActiveCommand& active) const { return m_asking == &active; }

bool Editor::isOpen(long questionNumber) const
{
    return std::any_of(m_active.begin(), m_active.end(), [&](const auto& a) { return a->hasQuestion() && a->questionNumber() == questionNumber; });
}

int Editor::startNamed(const std::string& name, bool fromLisp)
{
    const CommandEntry* found = CommandTable::instance().find(name);
    if (found && found->host) {
        if (m_vars->integer("CMDECHO") != 0)
            printLine(name);
        m_names.push_back(found->name);
        startHost(CommandEntry(*found), true, fromLisp);
        m_names.pop_back();
        return m_active.back()->isFinished() ? finishTop() : RTNORM;
    }
    if (found)
        return invokeModuleCommand(found->name, found->handler, found->flags);
    if (m_lisp && m_lisp->hasCommand(name)) {
        const auto result = m_lisp->runCommand(name);
        return result.status == LispEvaluator::Result::Done ? RTNORM : RTERROR;
    }
    printLine(fmt::format("Unknown command \"{}\".", name));
    m_failed = true;
    return RTERROR;
}

int Editor::invokeModuleCommand(const std::string& name, VcEdCommandFunction handler, int)
{
    m_names.push_back(name);
    ++m_nesting;
    m_undo->beginStep(name);
    ActiveCommand* const current = std::exchange(m_current, nullptr);
    const bool failedBefore = std::exchange(m_currentFailed, false);
    m_currentCancelled = false;
    try {
        handler();
    } catch (const std::exception& error) {
        failCurrent(fmt::format("{} ended by an error: {}", name, error.what()));
    } catch (...) {
        failCurrent(fmt::format("{} ended by an unknown error.", name));
    }
    settleWaiting(m_nesting);
    m_current = current;
    m_undo->endStep();
    --m_nesting;
    m_names.pop_back();
    m_init = {};
    m_lastOutcome = m_currentFailed ? CommandRecord::Failed : m_currentCancelled ? CommandRecord::Cancelled : CommandRecord::Done;
    const bool failed = std::exchange(m_currentFailed, failedBefore);
    return failed ? RTERROR : RTNORM;
}

void Editor::failCurrent(std::string_view message)
{
    printLine(message);
    m_currentFailed = true;
    m_failed = true;
}

// The command line

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
    pushSource(std::make_unique<ScriptSource>(std::move(name), std::move(text)));
    while (!m_quitting && runNext()) {
    }
    m_sources = std::move(below);
}

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

// Those that wait for more arguments are running too.
std::vector<std::string> Editor::runningCommands() const
{
    std::vector<std::string> names = m_names;
    for (const auto& active : m_active)
        if (std::find(names.begin(), names.end(), active->entry().name) == names.end())
            names.push_back(active->entry().name);
    return names;
}

void Editor::record(const std::string& name, CommandRecord::Status status) { m_records.push_back({name, status}); }

InitGet Editor::takeInitGet() { return std::exchange(m_init, {}); }

Editor::Step::Step(Editor& editor, std::string name) : m_editor(editor) { m_editor.undo().beginStep(std::move(name)); }
Editor::Step::~Step() { m_editor.undo().endStep(); }

}
