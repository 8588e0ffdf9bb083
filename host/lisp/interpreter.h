// Interpreter - evaluates the Lisp that scripts, prompts and program files are written in.
// One instance lives as long as its drawing session; it belongs to the thread that evaluates.
#pragma once

#include "host/lisp/function.h"
#include "host/lisp/symbols.h"

#include <optional>

namespace vk::lisp {

// What came of an evaluation.
struct Outcome {
    enum Status { done, failed, cancelled };
    Status status = done;
    Value value;             // of the last expression, when done
    std::string message;     // why not, otherwise
    bool isHandled = false;  // the program's own *error* took the message
};

// What the interpreter needs from around it. Whatever is left empty does nothing.
struct Surroundings {
    std::function<void(std::string_view)> write;
    std::function<std::optional<std::string>(const std::string& name)> readProgram;  // along the support path
    std::function<bool()> isInterrupted;                                             // asked now and then
};

class VKHOST_API Interpreter {
public:
    explicit Interpreter(Surroundings surroundings = {});
    ~Interpreter();
    Interpreter(const Interpreter&) = delete;
    Interpreter& operator=(const Interpreter&) = delete;

    // Evaluates every expression of the text. Throws nothing of the Lisp; may be called again from within a function.
    Outcome evaluate(std::string_view text);
    Outcome callByName(std::string_view name, Args args);
    bool hasFunction(std::string_view name) const;
    std::vector<std::string> functionNames(std::string_view prefix) const;

    void define(std::string_view name, NativeFunction call, int fewest = 0, int most = kAnyNumber);
    void define(std::span<const Builtin> builtins);
    void define(std::span<const Form> forms);
    void undefine(std::string_view name);

    // The rest is for functions; these throw LispError and LispCancel.
    Value eval(const Value& form);
    Value evalSequence(const Value& forms);
    Value apply(const Value& function, Args args);
    // What a function argument of mapcar and its like stands for, worked out once.
    Value callable(const Value& function);
    Value makeFunction(std::string name, const Value& parameters, const Value& body);
    Value load(const std::string& name, bool& isFound);

    void assign(const Value& symbol, Value value);
    // Bindings are undone by whoever catches, not by whoever unwinds, so that *error* still sees them.
    std::size_t bindingMark() const { return m_bindings.size(); }
    void bind(const Value& symbol, Value value);
    void unbindTo(std::size_t mark);

    // Called in every step that could go on for ever.
    void tick();
    void write(std::string_view text) const;

    SymbolTable& symbols() { return m_symbols; }
    Value truth(bool yes) const { return m_symbols.truth(yes); }

private:
    class Deeper;
    struct Binding {
        Value symbol, former;
    };

    Value evalCall(const Value& form);
    Value functionAt(const Value& head);
    Value applyBuiltin(const BuiltinCell& builtin, Args args);
    Value applyForm(const BuiltinCell& builtin, Args args);
    Value applyFunction(const FunctionCell& function, Args args);
    Value evalText(std::string_view text);
    Outcome guarded(const std::function<Value()>& work);
    void tellErrorHandler(Outcome& outcome);

    Surroundings m_surroundings;
    SymbolTable m_symbols;
    std::vector<Binding> m_bindings;
    int m_depth = 0;
    int m_evaluations = 0;
    std::uint32_t m_ticks = 0;
};

}  // namespace vk::lisp
