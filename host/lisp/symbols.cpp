#include "host/lisp/symbols.h"

#include "host/base/unicode.h"

#include <numbers>

namespace vk::lisp {

SymbolTable::SymbolTable()
    : m_t(intern("T")), m_quote(intern("QUOTE")), m_lambda(intern("LAMBDA")), m_errorHandler(intern("*ERROR*")),
      m_silence(Value::cell(Kind::symbol, new SymbolCell("")))
{
    auto& t = m_t.as<SymbolCell>();
    t.value = m_t;
    t.isConstant = true;
    m_silence.as<SymbolCell>().isConstant = true;
    intern("PI").as<SymbolCell>().value = Value::real(std::numbers::pi);
    intern("PAUSE").as<SymbolCell>().value = Value::text("\\");
}

SymbolTable::~SymbolTable()
{
    for (auto& [name, symbol] : m_symbols)
        symbol.as<SymbolCell>().value = Value();
}

Value SymbolTable::intern(std::string_view name)
{
    std::string folded = toUpper(name);
    const auto known = m_symbols.find(folded);
    if (known != m_symbols.end())
        return known->second;
    Value symbol = Value::cell(Kind::symbol, new SymbolCell(folded));
    m_symbols.emplace(std::move(folded), symbol);
    return symbol;
}

Value SymbolTable::find(std::string_view name) const
{
    const auto known = m_symbols.find(toUpper(name));
    return known == m_symbols.end() ? Value() : known->second;
}

}  // namespace vk::lisp
