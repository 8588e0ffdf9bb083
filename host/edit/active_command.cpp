#include "host/edit/active_command.h"

#include "host/edit/editor.h"
#include "host/edit/stack_bounds.h"

#include <boost/context/fiber.hpp>
#include <boost/context/protected_fixedsize_stack.hpp>

namespace vk::edit {

namespace ctx = boost::context;

namespace {

// Layout of long texts and deep blocks happens on these stacks. The sanitizers' frames are far larger.
constexpr std::size_t kStackBytes = (kStacksAreWatched ? 8 : 1) * 1024 * 1024;

}

struct ActiveCommand::Stack {
    ctx::fiber body;  // while the main stack runs
    ctx::fiber main;  // while the body runs
    StackBounds bodyBounds, mainBounds;
};

ActiveCommand::ActiveCommand(Editor& editor, const CommandEntry& entry, bool driven, bool fromLisp, int level)
    : m_editor(editor), m_entry(entry), m_driven(driven), m_fromLisp(fromLisp), m_level(level),
      m_stack(std::make_unique<Stack>())
{
    ctx::protected_fixedsize_stack allocator(kStackBytes);
    const ctx::stack_context memory = allocator.allocate();
    m_stack->bodyBounds = {static_cast<char*>(memory.sp) - memory.size, memory.size};
    const ctx::preallocated place(memory.sp, memory.size, memory);
    m_stack->body = ctx::fiber(std::allocator_arg, place, allocator, [this](ctx::fiber&& main) {
        m_stack->mainBounds = enterStack(nullptr);
        m_stack->main = std::move(main);
        runBody();
        leaveStack(nullptr, m_stack->mainBounds);
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
    void* kept = nullptr;
    leaveStack(&kept, m_stack->bodyBounds);
    m_stack->body = std::move(m_stack->body).resume();
    enterStack(kept);
}

void ActiveCommand::yield()
{
    void* kept = nullptr;
    leaveStack(&kept, m_stack->mainBounds);
    m_stack->main = std::move(m_stack->main).resume();
    m_stack->mainBounds = enterStack(kept);
}

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
