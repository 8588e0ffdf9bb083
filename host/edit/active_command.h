// A host command that runs on its own stack. It yields a question or a piece of work for the main stack, and is resumed with
// the answer.
#pragma once

#include "host/edit/command.h"
#include "host/edit/question.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace vk::edit {

class ActiveCommand {
public:
    enum class Outcome { Running, Done, Cancelled, Failed };

    ActiveCommand(Editor& editor, const CommandEntry& entry, bool driven, bool fromLisp, int level);
    ~ActiveCommand();

    // Runs until the command asks, hands work over or ends.
    void resume();
    bool hasQuestion() const { return m_question != nullptr; }
    const Question& question() const { return *m_question; }
    void answer(Answer answer);
    // Of all questions of all commands, the one that is open; tells whether one has been answered meanwhile.
    long questionNumber() const { return m_questionNumber; }
    // Work for the main stack that the command waits for.
    const std::function<void()>* work() const { return m_work; }
    void workDone(std::exception_ptr failure);

    Outcome outcome() const { return m_outcome; }
    bool isFinished() const { return m_outcome != Outcome::Running; }
    const std::string& message() const { return m_message; }
    const CommandEntry& entry() const { return m_entry; }
    bool isDriven() const { return m_driven; }
    void setDriven(bool driven) { m_driven = driven; }
    bool isFromLisp() const { return m_fromLisp; }
    int level() const { return m_level; }
    void setLevel(int level) { m_level = level; }

    // From the command's own stack.
    Answer ask(const Question& question);
    void onMain(const std::function<void()>& work);

private:
    struct Stack;
    void runBody();
    void yield();

    Editor& m_editor;
    const CommandEntry m_entry;
    bool m_driven, m_fromLisp;
    int m_level;
    Outcome m_outcome = Outcome::Running;
    std::string m_message;
    const Question* m_question = nullptr;
    long m_questionNumber = 0;
    Answer m_answer;
    const std::function<void()>* m_work = nullptr;
    std::exception_ptr m_workFailure;
    std::unique_ptr<Stack> m_stack;
};

}  // namespace vk::edit
