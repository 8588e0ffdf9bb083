// EditorLisp - the interpreter as the editor sees it: expressions at prompts, C: commands, functions of modules.
#pragma once

#include "host/edit/services.h"
#include "host/lisp/interpreter.h"

#include <unordered_map>

namespace vk::edit {
class Editor;
}

namespace vk::lisp {

class VKHOST_API EditorLisp : public edit::LispEvaluator {
public:
    explicit EditorLisp(edit::Editor& editor);
    ~EditorLisp() override;

    Result evaluate(std::string_view text) override;
    bool hasCommand(std::string_view name) const override;
    Result runCommand(std::string_view name) override;
    std::vector<std::string> commandNames(std::string_view prefix) const override;
    void defineModuleFunction(const std::string& name, const std::string& localName, void* module, int code) override;
    void undefineModuleFunction(const std::string& name) override;

    // For functions that a program around the editor adds.
    Interpreter& interpreter() { return m_interpreter; }

private:
    Interpreter m_interpreter;
    Value m_lastValue;  // a selection set lives as long as a value that names it: until the editor has taken the answer
    std::unordered_map<std::string, std::string> m_localNames;  // of module functions, by their folded names
};

}  // namespace vk::lisp
