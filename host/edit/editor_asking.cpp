// Where answers come from, and how a question takes them: text, Lisp, values, transparent commands between.
#include "host/db/chain.h"
#include "host/edit/active_command.h"
#include "host/edit/display.h"
#include "host/edit/editor.h"
#include "host/edit/interpret.h"
#include "host/edit/sysvars.h"
#include "host/edit/typed_variable.h"

#include <utility>

namespace vk::edit {

namespace {

using Kind = Question::Kind;

// While it lives the question follows the cursor.
class DragOfQuestion {
public:
    explicit DragOfQuestion(const Question& question) : m_question(question)
    {
        Display::instance().beginDrag(question);
    }
    ~DragOfQuestion()
    {
        if (!m_isEnded)
            Display::instance().endDrag(m_question, nullptr);
    }
    DragOfQuestion(const DragOfQuestion&) = delete;
    DragOfQuestion& operator=(const DragOfQuestion&) = delete;
    Answer answered(Answer answer)
    {
        m_isEnded = true;
        Display::instance().endDrag(m_question, &answer);
        return answer;
    }

private:
    const Question& m_question;
    bool m_isEnded = false;
};

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

bool Editor::isQuiet(const InputSource* source) const
{
    return source &&
           (dynamic_cast<const TypedVariable*>(source) || (source->isArguments() && m_vars->integer("CMDECHO") == 0));
}

Answer Editor::ask(Question question)
{
    if (!m_current)
        return askOnMain(question);
    DragOfQuestion drag(question);
    Answer answer = drag.answered(m_current->ask(question));
    if (answer.status == Answer::Status::Cancel)
        throw CommandCancelled();
    return answer;
}

Answer Editor::askNested(const Question& question) { return askOnMain(question); }

Answer Editor::askOnMain(const Question& question)
{
    DragOfQuestion drag(question);
    for (;;) {
        if (auto answer = tryAnswer(question, false))
            return drag.answered(std::move(*answer));
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
        if (question.kind == Kind::Text && !source->isArguments() && text->text.starts_with('(') &&
            m_vars->integer("TEXTEVAL") == 1)
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
    if (question.kind != Kind::Text)  // whose lines have been echoed as they came
        print(expression.text + "\n");
    if (!m_lisp)
        return settle(AskAgain{"There is no Lisp in this program."});
    const long number = m_asking ? m_asking->questionNumber() : 0;
    const bool feedsBefore = std::exchange(m_feedsAsking, m_asking != nullptr);
    const LispEvaluator::Result result = evaluateLisp(expression.text);
    m_feedsAsking = feedsBefore;
    if (number && !isOpen(number)) {
        m_failed |= result.status == LispEvaluator::Result::Failed;
        return std::nullopt;  // its arguments have answered the question
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

}
