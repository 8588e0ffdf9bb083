#include "host/lisp/interpreter.h"

#include "host/base/unicode.h"
#include "host/lisp/errors.h"
#include "host/lisp/library.h"
#include "host/lisp/printer.h"
#include "host/lisp/reader.h"

#include <fmt/format.h>
#include <boost/container/small_vector.hpp>
#include <pthread.h>

namespace vk::lisp {

namespace {

constexpr int kDeepest = 20000;
constexpr std::uint32_t kTicksBetweenLooks = 1024;

struct StackSpan {
    std::uintptr_t low = 0;
    std::uintptr_t size = 0;
};

StackSpan stackOfThisThread()
{
    StackSpan span;
    pthread_attr_t attributes;
    if (pthread_getattr_np(pthread_self(), &attributes) != 0)
        return span;
    void* low = nullptr;
    std::size_t size = 0;
    if (pthread_attr_getstack(&attributes, &low, &size) == 0)
        span = {reinterpret_cast<std::uintptr_t>(low), size};
    pthread_attr_destroy(&attributes);
    return span;
}

// What is left must do for a host command with its dialogs, called from the innermost function.
bool isStackShort()
{
    constexpr std::uintptr_t kReserve = 1 << 20;
    thread_local const StackSpan stack = stackOfThisThread();
    const auto here = reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0));
    return here >= stack.low && here - stack.low < std::min(kReserve, stack.size / 4);
}

}  // namespace

class Interpreter::Deeper {
public:
    explicit Deeper(Interpreter& lisp) : m_lisp(lisp)
    {
        if (m_lisp.m_depth >= kDeepest || isStackShort())
            throw LispError("too deep recursion");
        ++m_lisp.m_depth;
    }
    ~Deeper() { --m_lisp.m_depth; }

private:
    Interpreter& m_lisp;
};

Interpreter::Interpreter(Surroundings surroundings) : m_surroundings(std::move(surroundings)) { defineLanguage(*this); }

Interpreter::~Interpreter() = default;

Outcome Interpreter::evaluate(std::string_view text)
{
    return guarded([&] { return evalText(text); });
}

Outcome Interpreter::callByName(std::string_view name, Args args)
{
    return guarded([&] { return apply(m_symbols.intern(name), args); });
}

Outcome Interpreter::guarded(const std::function<Value()>& work)
{
    struct Level {
        Interpreter& lisp;
        std::size_t mark = lisp.bindingMark();
        explicit Level(Interpreter& l) : lisp(l) { ++lisp.m_evaluations; }
        ~Level()
        {
            lisp.unbindTo(mark);
            --lisp.m_evaluations;
        }
    } level(*this);

    Outcome outcome;
    try {
        outcome.value = work();
        return outcome;
    } catch (const LispCancel& cancel) {
        outcome.status = Outcome::cancelled;
        outcome.message = cancel.what();
    } catch (const std::exception& error) {
        outcome.status = Outcome::failed;
        outcome.message = error.what();
    }
    tellErrorHandler(outcome);
    return outcome;
}

// An expression that answers a prompt of a running program is not that program: its failure leaves *error* alone.
void Interpreter::tellErrorHandler(Outcome& outcome)
{
    const Value handler = m_symbols.errorHandler().as<SymbolCell>().value;
    if (m_evaluations > 1 || handler.isNil())
        return;
    try {
        const Value message = Value::text(outcome.message);
        apply(handler, Args(&message, 1));
        outcome.isHandled = true;
    } catch (const std::exception& error) {
        outcome.message += fmt::format(" (and in *error*: {})", error.what());
    }
}

Value Interpreter::evalText(std::string_view text)
{
    Reader reader(text, m_symbols);
    Value last;
    while (const auto form = reader.next())
        last = eval(*form);
    return last;
}

Value Interpreter::load(const std::string& name, bool& isFound)
{
    const Deeper deeper(*this);
    const auto program = m_surroundings.readProgram ? m_surroundings.readProgram(name) : std::nullopt;
    isFound = program.has_value();
    return isFound ? evalText(*program) : Value();
}

Value Interpreter::eval(const Value& form)
{
    switch (form.kind()) {
    case Kind::symbol:
        return form.as<SymbolCell>().value;
    case Kind::cons:
        return evalCall(form);
    default:
        return form;
    }
}

Value Interpreter::evalSequence(const Value& forms)
{
    Value last;
    for (const Value& form : Items(forms))
        last = eval(form);
    return last;
}

Value Interpreter::evalCall(const Value& form)
{
    const Deeper deeper(*this);
    tick();
    // Held here, for a function may well redefine itself while it runs.
    const Value function = functionAt(form.car());
    if (function.kind() == Kind::builtin) {
        if (const SpecialForm evaluate = function.as<BuiltinCell>().form)
            return evaluate(*this, form.cdr());
    }
    boost::container::small_vector<Value, 4> args;
    for (const Value& operand : Items(form.cdr()))
        args.push_back(eval(operand));
    return apply(function, Args(args.data(), args.size()));
}

Value Interpreter::functionAt(const Value& head)
{
    if (head.isSymbol() && head.as<SymbolCell>().value.isNil())
        throw LispError("no function definition: " + print(head));
    if (head.isCons() && !head.car().isSame(m_symbols.lambda()))
        return callable(eval(head));
    return callable(head);
}

Value Interpreter::callable(const Value& function)
{
    const Value& meant = function.isSymbol() ? function.as<SymbolCell>().value : function;
    if (meant.kind() == Kind::builtin || meant.kind() == Kind::function)
        return meant;
    if (meant.isCons()) {
        const bool isLambda = meant.car().isSame(m_symbols.lambda());
        const Value& definition = isLambda ? meant.cdr() : meant;
        if (definition.isCons() && definition.car().isList())
            return makeFunction("", definition.car(), definition.cdr());
    }
    if (function.isSymbol() && meant.isNil())
        throw LispError("no function definition: " + print(function));
    throw LispError("bad function: " + print(function));
}

Value Interpreter::makeFunction(std::string name, const Value& parameters, const Value& body)
{
    auto* cell = new FunctionCell;
    const Value function = Value::cell(Kind::function, cell);
    cell->name = std::move(name);
    cell->body = body;
    std::vector<Value>* part = &cell->parameters;
    for (const Value& item : Items(parameters)) {
        if (!item.isSymbol() || item.as<SymbolCell>().isConstant)
            throw LispError("bad formal argument list: " + print(parameters));
        if (item.as<SymbolCell>().name == "/" && part == &cell->parameters)
            part = &cell->locals;
        else
            part->push_back(item);
    }
    return function;
}

Value Interpreter::apply(const Value& function, Args args)
{
    const Value called = callable(function);
    if (called.kind() == Kind::function)
        return applyFunction(called.as<FunctionCell>(), args);
    const auto& builtin = called.as<BuiltinCell>();
    return builtin.form ? applyForm(builtin, args) : applyBuiltin(builtin, args);
}

Value Interpreter::applyBuiltin(const BuiltinCell& builtin, Args args)
{
    const auto given = static_cast<std::ptrdiff_t>(args.size());
    if (given < builtin.fewest)
        throw LispError("too few arguments: " + builtin.name);
    if (builtin.most != kAnyNumber && given > builtin.most)
        throw LispError("too many arguments: " + builtin.name);
    return builtin.call(*this, args);
}

// (apply 'and ...): the operands are values already, so each is quoted.
Value Interpreter::applyForm(const BuiltinCell& builtin, Args args)
{
    ListBuilder operands;
    for (const Value& arg : args)
        operands.add(Value::cons(m_symbols.quote(), Value::cons(arg, Value())));
    return builtin.form(*this, operands.take());
}

Value Interpreter::applyFunction(const FunctionCell& function, Args args)
{
    const Deeper deeper(*this);
    if (args.size() != function.parameters.size()) {
        const char* fault = args.size() < function.parameters.size() ? "too few arguments" : "too many arguments";
        throw LispError(function.name.empty() ? fault : fault + (": " + function.name));
    }
    const std::size_t mark = bindingMark();
    for (std::size_t i = 0; i < args.size(); ++i)
        bind(function.parameters[i], args[i]);
    for (const Value& local : function.locals)
        bind(local, Value());
    Value result = evalSequence(function.body);
    unbindTo(mark);
    return result;
}

void Interpreter::assign(const Value& symbol, Value value)
{
    if (!symbol.isSymbol() || symbol.as<SymbolCell>().isConstant)
        throw LispError("bad variable name: " + print(symbol));
    symbol.as<SymbolCell>().value = std::move(value);
}

void Interpreter::bind(const Value& symbol, Value value)
{
    Value& slot = symbol.as<SymbolCell>().value;
    m_bindings.push_back({symbol, std::exchange(slot, std::move(value))});
}

void Interpreter::unbindTo(std::size_t mark)
{
    while (m_bindings.size() > mark) {
        Binding binding = std::move(m_bindings.back());
        m_bindings.pop_back();
        binding.symbol.as<SymbolCell>().value = std::move(binding.former);
    }
}

void Interpreter::tick()
{
    if (++m_ticks % kTicksBetweenLooks == 0 && m_surroundings.isInterrupted && m_surroundings.isInterrupted())
        throw LispInterrupt();
}

void Interpreter::write(std::string_view text) const
{
    if (m_surroundings.write)
        m_surroundings.write(text);
}

bool Interpreter::hasFunction(std::string_view name) const
{
    const Value symbol = m_symbols.find(name);
    if (!symbol.isSymbol())
        return false;
    const Kind kind = symbol.as<SymbolCell>().value.kind();
    return kind == Kind::function || kind == Kind::builtin;
}

std::vector<std::string> Interpreter::functionNames(std::string_view prefix) const
{
    const std::string folded = toUpper(prefix);
    std::vector<std::string> names;
    m_symbols.forEach([&](const Value& symbol) {
        const std::string& name = symbol.as<SymbolCell>().name;
        if (name.starts_with(folded) && hasFunction(name))
            names.push_back(name);
    });
    std::sort(names.begin(), names.end());
    return names;
}

void Interpreter::define(std::string_view name, NativeFunction call, int fewest, int most)
{
    const Value symbol = m_symbols.intern(name);
    auto* cell = new BuiltinCell;
    const Value builtin = Value::cell(Kind::builtin, cell);
    cell->name = symbol.as<SymbolCell>().name;
    cell->call = std::move(call);
    cell->fewest = fewest;
    cell->most = most;
    assign(symbol, builtin);
}

void Interpreter::define(std::span<const Builtin> builtins)
{
    for (const Builtin& builtin : builtins)
        define(builtin.name, builtin.call, builtin.fewest, builtin.most);
}

void Interpreter::define(std::span<const Form> forms)
{
    for (const Form& form : forms) {
        define(form.name, nullptr);
        m_symbols.intern(form.name).as<SymbolCell>().value.as<BuiltinCell>().form = form.evaluate;
    }
}

void Interpreter::undefine(std::string_view name) { assign(m_symbols.intern(name), Value()); }

}  // namespace vk::lisp
