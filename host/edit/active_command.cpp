#include "host/edit/active_command.h"

#include "host/edit/editor.h"

#include <boost/context/fiber.hpp>
#include <boost/context/protected_fixedsize_stack.hpp>

namespace vk::edit {

namespace ctx = boost::context;

namespace {

// Layout of long texts and deep blocks happens on these stacks.
constexpr std::size_t kStackBytes = 1024 * 1024;

}

struct ActiveCommand::Stack {
    ctx::fiber body;   // while the main stack runs
    ctx::fiber main;   // while the body runs
};

ActiveCommand::ActiveCommand(Editor& editor, const CommandEntry& entry, bool driven, bool fromLisp, int level)
    : m_editor(editor), m_entry(entry), m_driven(driven), m_fromLisp(fromLisp), m_level(level), m_stack(std::make_unique<Stack>())
{
    m_stack->body = ctx::fiber(std::allocator_arg, ctx::protected_fixedsize_stack(kStackBytes), [this](ctx::fiber&& main) {
        m_stack->main = std::move(main);
        runBody();
        return std::move(m_stack->main);
    });
}

// A command that still waits is unwound as by Esc.
ActiveCommand::~ActiveCommand()
{
    while (!isFinished()) {
        if (m_question)
            answer({});
        if (m_work)
            workDone(nullptr);
        resume();
    }
}

void ActiveCommand::resume()
{
    m_stack->body = std::move(m_stack->body).resume();
}

void ActiveCommand::yield() { m_stack->main = std::move(m_stack->main).resume(); }

void ActiveCommand::runBody()
{
    try {
        m_entry.host->body(m_editor);
        m_outcome = Outcome::Done;
    } catch (const CommandCancelled&) {
        m_outcome = Outcome::Cancelled;
    } catch (const CommandError& error) {
        m_outcome = Outcome::Failed;
        m_message = error.message;
    } catch (const std::exception& error) {
        m_outcome = Outcome::Failed;
        m_message = std::string("An internal error ended the command: ") + error.what();
    }
}

Answer ActiveCommand::ask(const Question& question)
{
    static long asked = 0;
    m_question = &question;
    m_questionNumber = ++asked;
    yield();
    m_question = nullptr;
    return std::move(m_answer);
}

void ActiveCommand::answer(Answer answer)
{
    m_answer = std::move(answer);
    m_question = nullptr;
}

void ActiveCommand::onMain(const std::function<void()>& work)
{
    m_work = &work;
    yield();
    if (std::exception_ptr failure = std::exchange(m_workFailure, nullptr))
        std::rethrow_exception(failure);
}

void ActiveCommand::workDone(std::exception_ptr failure)
{
    m_workFailure = std::move(failure);
    m_work = nullptr;
}

}
