// Where answers come from: a stack of sources, arguments of a running call on top, then scripts, then the person.
#pragma once

#include "host/base/rb.h"
#include "host/edit/question.h"

#include <deque>
#include <functional>
#include <variant>

namespace vk::edit {

// One thing that a source gives: a text as typed, a value, or one of the marks.
struct Input {
    struct Cancel {};
    struct Exhausted {};  // nothing more will come from this source
    struct Pause {};      // the person answers this one
    struct Expression {   // Lisp text, to be evaluated
        std::string text;
    };
    struct Text {
        std::string text;
        bool isWholeLine = false;  // no more tokens stand behind it on its line
    };
    std::variant<Exhausted, Cancel, Pause, Expression, Text, RbPtr> what;
};

class VKHOST_API InputSource {
public:
    virtual ~InputSource();
    // The next answer to a question of this kind. Literal questions take the rest of a line.
    virtual Input next(const Question& question) = 0;
    virtual bool isExhausted() const = 0;
    // Answers of arguments are not echoed.
    virtual bool echoes() const { return true; }
    virtual bool isArguments() const { return false; }
    virtual bool isInteractive() const { return false; }
    // Where it stands, as in "line 12 of plan.scr"; for messages.
    virtual std::string position() const { return {}; }
};

// Arguments of one vcedCommand or of Lisp command. Owns its chain.
class VKHOST_API ArgumentSource : public InputSource {
public:
    explicit ArgumentSource(RbPtr chain);
    Input next(const Question& question) override;
    bool isExhausted() const override { return !m_chain; }
    bool echoes() const override { return false; }
    bool isArguments() const override { return true; }
    void feed(RbPtr chain);
    // Drops a surplus Enter that stands next.
    void dropEnters();

private:
    RbPtr takeFirst();
    RbPtr takeList(RbPtr first);
    RbPtr m_chain;
};

// Text in lines: a script, standard input, a terminal. A blank is Enter where no literal text is asked; a blank line is
// Enter; ";" begins a comment line; "(" begins an expression that may run over lines.
class VKHOST_API TextSource : public InputSource {
public:
    Input next(const Question& question) override;
    bool isExhausted() const override;
    std::string position() const override;

protected:
    // The next line without its end; nothing at the end of the text. The prompt is what the person should see.
    virtual std::optional<std::string> readLine(const std::string& prompt) = 0;
    std::string m_name;
    bool m_stripComments = true;
    bool m_ended = false;  // readLine gave nothing; a source that can go on clears it

private:
    bool fill(const Question& question);
    Input takeExpression();
    std::string m_line;
    std::size_t m_at = 0;
    bool m_hasLine = false;
    int m_number = 0;
};

// A text that is known as a whole.
class VKHOST_API ScriptSource : public TextSource {
public:
    ScriptSource(std::string name, std::string text);

protected:
    std::optional<std::string> readLine(const std::string& prompt) override;

private:
    std::string m_text;
    std::size_t m_next = 0;
};

}  // namespace vk::edit
