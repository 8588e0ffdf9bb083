#include "scenario_play.h"

#include "host/app/session.h"
#include "host/base/files.h"
#include "host/edit/editor.h"
#include "host/io/drawing_file.h"
#include "host/lisp/evaluator.h"
#include "host/lisp/printer.h"

#include <algorithm>
#include <fmt/format.h>

namespace {

using vk::edit::Editor;
using vk::edit::Input;
using vk::edit::Question;
using vk::lisp::Args;
using vk::lisp::Interpreter;
using vk::lisp::Value;

constexpr double kFuzz = 1e-9;

// What saving changes by itself: the next handle and the times.
constexpr const char* kVolatile[] = {"$HANDSEED", "$TDUPDATE", "$TDUUPDATE", "$TDINDWG", "$TDUSRTIMER"};

std::size_t afterLines(const std::string& text, std::size_t from, int lines)
{
    for (; lines > 0 && from < text.size(); --lines)
        from = std::min(text.find('\n', from), text.size() - 1) + 1;
    return from;
}

std::string drawingAsText()
{
    std::string bytes;
    writeDrawingBytes(Editor::instance().drawing(), bytes, {.binary = false});
    for (const char* name : kVolatile)
        if (const std::size_t at = bytes.find(name); at != bytes.npos)
            bytes.erase(at, afterLines(bytes, at, 3) - at);
    return bytes;
}

std::string firstDifference(const std::string& a, const std::string& b)
{
    const auto at = std::mismatch(a.begin(), a.end(), b.begin(), b.end()).first - a.begin();
    const auto around = [&](const std::string& text) {
        const std::size_t from = std::size_t(std::max<std::ptrdiff_t>(at - 60, 0));
        return from < text.size() ? text.substr(from, 120) : std::string();
    };
    return fmt::format("wanted:\n{}\nfound:\n{}", around(a), around(b));
}

// What is known of a scenario under way: what was said, what did not hold, how the drawing stood between commands.
class Play {
public:
    Play(const Scenario& scenario, std::vector<std::string>& faults) : m_scenario(scenario), m_faults(faults)
    {
        m_watchesUndo = has("(expect-undo");
    }

    // True when U is to be typed in place of the next line.
    bool wantsUndo() { return m_watchesUndo && atCommandPrompt(); }
    bool isWaitingForUndo() const { return m_undo != Undo::None; }
    std::optional<std::string> line()
    {
        if (m_read >= int(m_scenario.lines.size()))
            return std::nullopt;
        return m_scenario.lines[std::size_t(m_read++)];
    }
    void gave(const Input& input)
    {
        const auto* expression = std::get_if<Input::Expression>(&input.what);
        m_expression = expression ? expression->text + "\n" : std::string();
    }
    // The echo of an expression is not said: an expectation would find its own text.
    void hear(std::string_view text)
    {
        if (m_expression.empty() || text != m_expression)
            m_said.append(text);
    }
    void fault(const std::string& what)
    {
        m_faults.push_back(fmt::format("{}:{}: {}", m_scenario.file, m_scenario.firstLine + m_read - 1, what));
    }
    void expectUndo() { m_undo = Undo::Wanted; }
    void judge();
    const std::string& said() const { return m_said; }
    int checked = 0;

private:
    enum class Undo { None, Wanted, Typed };

    bool has(std::string_view text) const
    {
        return std::any_of(m_scenario.lines.begin(), m_scenario.lines.end(),
                           [&](const std::string& line) { return line.find(text) != line.npos; });
    }
    // Keeps the drawing as it stands between commands. True when U is to be typed.
    bool atCommandPrompt()
    {
        std::string now = drawingAsText();
        if (m_undo == Undo::Typed) {
            m_undo = Undo::None;
            if (now != m_before)
                fault("U does not bring the drawing back; " + firstDifference(m_before, now));
        }
        if (now != m_now) {
            m_before = std::move(m_now);
            m_now = std::move(now);
        }
        if (m_undo != Undo::Wanted)
            return false;
        if (m_before.empty()) {
            fault("nothing has been changed that could be undone");
            m_undo = Undo::None;
            return false;
        }
        m_undo = Undo::Typed;
        return true;
    }

    const Scenario& m_scenario;
    std::vector<std::string>& m_faults;
    std::string m_said, m_expression;
    std::string m_before, m_now;
    int m_read = 0;
    bool m_watchesUndo = false;
    Undo m_undo = Undo::None;
};

class PlaySource : public vk::edit::TextSource {
public:
    explicit PlaySource(Play& play) : m_play(play) {}
    Input next(const Question& question) override
    {
        if (question.kind == Question::Kind::Command && m_play.wantsUndo())
            return {Input::Text{"U", true}};
        Input input = TextSource::next(question);
        m_play.gave(input);
        return input;
    }
    bool isExhausted() const override { return !m_play.isWaitingForUndo() && TextSource::isExhausted(); }

protected:
    std::optional<std::string> readLine(const std::string&) override { return m_play.line(); }

private:
    Play& m_play;
};

// A scenario that stops early has not shown what it was written for.
void Play::judge()
{
    int written = 0;
    for (const std::string& line : m_scenario.lines)
        for (std::size_t at = 0; (at = line.find("(expect", at)) != line.npos; ++at)
            written += !line.starts_with(';');
    if (written == 0)
        fault("the scenario expects nothing");
    if (checked < written)
        fault(fmt::format("only {} of {} expectations were reached", checked, written));
    for (const char* bad : {"; error", "The input ended inside a command"})
        if (m_said.find(bad) != m_said.npos && !has(fmt::format("(expect-said \"{}", bad)))
            fault(m_said.substr(m_said.find(bad), 200));
}

std::string textOf(const Value& value) { return print(value, vk::lisp::PrintStyle::plain); }

using Expectation = void (*)(Play&, Interpreter&, Args);

void expectEqual(Play& play, Interpreter& lisp, Args args)
{
    const Value operands[] = {args[0], args[1], Value::real(kFuzz)};
    if (!lisp.callByName("EQUAL", operands).value)
        play.fault(fmt::format("{} where {} is expected", print(args[0]), print(args[1])));
}

void expectSaid(Play& play, Interpreter&, Args args)
{
    if (play.said().find(textOf(args[0])) == std::string::npos)
        play.fault(fmt::format("{} was not said, but:\n{}", print(args[0]), play.said()));
}

void expectNotSaid(Play& play, Interpreter&, Args args)
{
    if (play.said().find(textOf(args[0])) != std::string::npos)
        play.fault(fmt::format("{} was said", print(args[0])));
}

// The bytes of a file against those of another.
void expectFile(Play& play, Interpreter&, Args args)
{
    const auto written = readWholeFile(textOf(args[0])), wanted = readWholeFile(textOf(args[1]));
    if (!written || !wanted)
        play.fault(fmt::format("{} cannot be read", print(written ? args[1] : args[0])));
    else if (*written != *wanted)
        play.fault(
            fmt::format("{} differs from {}; {}", print(args[0]), print(args[1]), firstDifference(*wanted, *written)));
}

void expectUndo(Play& play, Interpreter&, Args) { play.expectUndo(); }

constexpr struct {
    const char* name;
    Expectation check;
    int operands;
} kExpectations[] = {
    {"EXPECT", expectEqual, 2},     {"EXPECT-SAID", expectSaid, 1}, {"EXPECT-NOT-SAID", expectNotSaid, 1},
    {"EXPECT-FILE", expectFile, 2}, {"EXPECT-UNDO", expectUndo, 0},
};

void defineExpectations(Interpreter& lisp, Play& play)
{
    for (const auto& expectation : kExpectations) {
        const auto call = [&play, check = expectation.check](Interpreter& inner, Args args) {
            ++play.checked;
            check(play, inner, args);
            return Value();
        };
        lisp.define(expectation.name, call, expectation.operands, expectation.operands);
    }
}

}

static std::unique_ptr<VcDbDatabase> startingDrawing(const Scenario& scenario, std::vector<std::string>& faults)
{
    if (scenario.drawing.empty())
        return std::make_unique<VcDbDatabase>();
    auto drawing = std::make_unique<VcDbDatabase>(false);
    const ReadResult read = readDrawing(*drawing, scenario.drawing);
    if (!read.ok())
        faults.push_back(fmt::format("{}: {}", scenario.drawing, read.message));
    return drawing;
}

std::vector<std::string> playScenario(const Scenario& scenario)
{
    std::vector<std::string> faults;
    Play play(scenario, faults);
    vk::app::Session session(joinPath(temporaryFolder(), "profile"));
    for (const std::string& fault : session.open(startingDrawing(scenario, faults)))
        faults.push_back(fault);

    Editor& editor = Editor::instance();
    defineExpectations(static_cast<vk::lisp::EditorLisp*>(editor.lisp())->interpreter(), play);
    editor.setTranscriptSink([&](std::string_view text) { play.hear(text); });
    editor.pushSource(std::make_unique<PlaySource>(play));
    editor.run();
    play.judge();
    if (editor.dialogs())
        for (const std::string& form : editor.dialogs()->unusedAnswers())
            faults.push_back(fmt::format("{}: an answer for {} was left over", scenario.name, form));
    return faults;
}
