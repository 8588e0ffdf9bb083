// SymbolTable - every symbol that was read, by its name without regard to case.
#pragma once

#include "host/lisp/value.h"

#include <unordered_map>

namespace vk::lisp {

class SymbolTable {
public:
    SymbolTable();
    SymbolTable(const SymbolTable&) = delete;
    SymbolTable& operator=(const SymbolTable&) = delete;
    ~SymbolTable();

    Value intern(std::string_view name);
    // The symbol of that name if it was ever read, else nil.
    Value find(std::string_view name) const;

    const Value& t() const { return m_t; }
    const Value& quote() const { return m_quote; }
    const Value& lambda() const { return m_lambda; }
    const Value& errorHandler() const { return m_errorHandler; }
    // A symbol that prints as nothing, what (princ) gives.
    const Value& silence() const { return m_silence; }

    Value truth(bool yes) const { return yes ? m_t : Value(); }

    template <class Visitor>
    void forEach(Visitor visit) const
    {
        for (const auto& [name, symbol] : m_symbols)
            visit(symbol);
    }

private:
    std::unordered_map<std::string, Value> m_symbols;
    Value m_t, m_quote, m_lambda, m_errorHandler, m_silence;
};

}  // namespace vk::lisp
