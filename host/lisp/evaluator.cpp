#include "host/lisp/evaluator.h"

#include "host/base/unicode.h"
#include "host/edit/editor.h"
#include "host/edit/module_calls.h"
#include "host/lisp/chain.h"
#include "host/lisp/errors.h"
#include "host/lisp/library.h"
#include "host/lisp/printer.h"
#include "host/lisp/program_file.h"

namespace vk::lisp {

namespace {

constexpr std::string_view kCommandPrefix = "C:";

Surroundings surroundingsOf(edit::Editor& editor)
{
    Surroundings around;
    around.write = [&editor](std::string_view text) { editor.print(text); };
    around.readProgram = readProgramFile;
    around.isInterrupted = [&editor] { return editor.isInterrupted(); };
    return around;
}

// What cannot answer a question - a symbol, a function - answers nothing, as nil does.
RbPtr answerChain(const Value& value)
{
    if (value.isNil())
        return nullptr;
    try {
        RbBuilder chain;
        addValue(chain, value, PointRule::AnyNumbers);
        return chain.take();
    } catch (const LispError&) {
        return nullptr;
    }
}

edit::LispEvaluator::Result resultOf(Outcome outcome)
{
    edit::LispEvaluator::Result result;
    using Status = edit::LispEvaluator::Result::Status;
    if (outcome.status == Outcome::done) {
        try {
            result.value = answerChain(outcome.value);
            result.printed = print(outcome.value);
            result.isSilent = outcome.value.isSymbol() && result.printed.empty();
            return result;
        } catch (const LispError& error) {
            outcome = {Outcome::failed, Value(), error.what(), false};
        }
    }
    result.status = outcome.status == Outcome::cancelled ? Status::Cancelled : Status::Failed;
    if (!outcome.isHandled)
        result.message = std::move(outcome.message);
    return result;
}

std::string functionOf(std::string_view command) { return std::string(kCommandPrefix) += command; }

}  // namespace

EditorLisp::EditorLisp(edit::Editor& editor) : m_interpreter(surroundingsOf(editor)) { defineDrawing(m_interpreter); }

EditorLisp::~EditorLisp() = default;

edit::LispEvaluator::Result EditorLisp::evaluate(std::string_view text)
{
    Outcome outcome = m_interpreter.evaluate(text);
    m_lastValue = outcome.value;
    return resultOf(std::move(outcome));
}

bool EditorLisp::hasCommand(std::string_view name) const { return m_interpreter.hasFunction(functionOf(name)); }

edit::LispEvaluator::Result EditorLisp::runCommand(std::string_view name)
{
    return resultOf(m_interpreter.callByName(functionOf(name), {}));
}

std::vector<std::string> EditorLisp::commandNames(std::string_view prefix) const
{
    std::vector<std::string> names = m_interpreter.functionNames(functionOf(prefix));
    for (std::string& name : names)
        name.erase(0, kCommandPrefix.size());
    return names;
}

void EditorLisp::defineModuleFunction(const std::string& name, const std::string& localName, void* module, int code)
{
    const auto call = [module, code](Interpreter& lisp, Args args) {
        const auto result = edit::ModuleCalls::instance().call(module, code, valuesToChain(args));
        if (result.failed)
            throw LispError(result.message);
        const std::vector<Value> values = chainToValues(lisp, result.value.get());
        return values.empty() ? Value() : values.front();
    };
    m_interpreter.define(name, call);
    if (localName.empty() || equalNoCase(localName, name))
        return;
    m_interpreter.define(localName, call);
    m_localNames[foldKey(name)] = localName;
}

void EditorLisp::undefineModuleFunction(const std::string& name)
{
    m_interpreter.undefine(name);
    const auto local = m_localNames.extract(foldKey(name));
    if (local)
        m_interpreter.undefine(local.mapped());
}

}  // namespace vk::lisp
