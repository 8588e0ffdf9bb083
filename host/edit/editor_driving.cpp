// Commands on their coroutines: started, fed with answers or arguments, finished.
#include "host/edit/active_command.h"
#include "host/edit/editor.h"
#include "host/edit/sysvars.h"

#include <algorithm>
#include <utility>

namespace vk::edit {

namespace {

using Kind = Question::Kind;

bool hasDepth(const ActiveCommand& active, int level) { return active.level() >= level; }

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
        if (!isOpen(number)) {  // Lisp has fed it, perhaps to its end
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
        if (!m_active.empty() && m_active.back()->level() == m_nesting &&
            (m_feedsAsking || !isAsking(*m_active.back()))) {
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
    return std::any_of(m_active.begin(), m_active.end(),
                       [&](const auto& a) { return a->hasQuestion() && a->questionNumber() == questionNumber; });
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
    m_lastOutcome = m_currentFailed      ? CommandRecord::Failed
                    : m_currentCancelled ? CommandRecord::Cancelled
                                         : CommandRecord::Done;
    const bool failed = std::exchange(m_currentFailed, failedBefore);
    return failed ? RTERROR : RTNORM;
}

void Editor::failCurrent(std::string_view message)
{
    printLine(message);
    m_currentFailed = true;
    m_failed = true;
}

}
