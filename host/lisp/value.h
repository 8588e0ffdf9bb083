// Value - one datum of the Lisp: small things in place, larger ones in counted cells.
// The dialect has no function that changes a cell once it is made, and a function keeps no surroundings, so counting
// suffices: the only loops run through the value of a symbol, and those the interpreter cuts when it ends.
// Cells belong to one thread, the one that evaluates.
#pragma once

#include "host/base/api.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

namespace vk::lisp {

enum class Kind : std::uint8_t {
    nil,
    integer,
    real,
    text,
    symbol,
    cons,
    builtin,
    function,
    entity,
    selection,
    file,
    fault,  // what a caught error leaves behind
};

class VKHOST_API Cell {
public:
    Cell() = default;
    Cell(const Cell&) = delete;
    Cell& operator=(const Cell&) = delete;
    virtual ~Cell() = default;

    static void* operator new(std::size_t size);
    static void operator delete(void* at, std::size_t size);

    void retain() { ++m_count; }
    void release()
    {
        if (--m_count == 0)
            bury(this);
    }

private:
    // Deletes without recursion however deep a list hangs below.
    static void bury(Cell* cell);

    std::uintptr_t m_count = 0;  // once dead, the address of the next dead cell
};

class VKHOST_API Value {
public:
    Value() = default;
    Value(const Value& other) : m_kind(other.m_kind), m_data(other.m_data) { retain(); }
    Value(Value&& other) noexcept : m_kind(std::exchange(other.m_kind, Kind::nil)), m_data(other.m_data) {}
    Value& operator=(Value other) noexcept
    {
        std::swap(m_kind, other.m_kind);
        std::swap(m_data, other.m_data);
        return *this;
    }
    ~Value()
    {
        if (isCell())
            m_data.cell->release();
    }

    static Value integer(std::int32_t number);
    static Value real(double number);
    static Value whole(double number);  // an integer where it is one that fits, else a real
    static Value text(std::string text);
    static Value cons(Value car, Value cdr);
    static Value fault(std::string message);
    static Value cell(Kind kind, Cell* cell);

    Kind kind() const { return m_kind; }
    bool isNil() const { return m_kind == Kind::nil; }
    bool isInteger() const { return m_kind == Kind::integer; }
    bool isReal() const { return m_kind == Kind::real; }
    bool isNumber() const { return isInteger() || isReal(); }
    bool isText() const { return m_kind == Kind::text; }
    bool isSymbol() const { return m_kind == Kind::symbol; }
    bool isCons() const { return m_kind == Kind::cons; }
    bool isList() const { return isCons() || isNil(); }
    explicit operator bool() const { return !isNil(); }

    std::int32_t integer() const { return m_data.integer; }
    double real() const { return m_data.real; }
    double number() const { return isInteger() ? m_data.integer : m_data.real; }
    const std::string& text() const;
    const Value& car() const;  // nil of anything but a pair
    const Value& cdr() const;
    template <class T>
    T& as() const
    {
        return *static_cast<T*>(m_data.cell);
    }

    // The same datum: equal numbers and texts, the very same cell otherwise.
    bool isSame(const Value& other) const;

private:
    bool isCell() const { return m_kind >= Kind::text; }
    void retain() const
    {
        if (isCell())
            m_data.cell->retain();
    }

    Kind m_kind = Kind::nil;
    union {
        std::int32_t integer;
        double real;
        Cell* cell;
    } m_data{};
};

class TextCell : public Cell {
public:
    static constexpr std::size_t kLongest = std::size_t(64) << 20;
    explicit TextCell(std::string content);
    ~TextCell() override;
    const std::string content;  // UTF-8
};

class ConsCell : public Cell {
public:
    ConsCell(Value first, Value second) : car(std::move(first)), cdr(std::move(second)) {}
    Value car, cdr;
};

class SymbolCell : public Cell {
public:
    explicit SymbolCell(std::string folded) : name(std::move(folded)) {}
    const std::string name;
    Value value;
    bool isConstant = false;
};

// Entity names and selection sets: the two words that the drawing interface knows them by.
class NameCell : public Cell {
public:
    NameCell(std::int64_t first, std::int64_t second) : words{first, second} {}
    std::int64_t words[2];
};

// Makes a list front to back.
class ListBuilder {
public:
    void add(Value item);
    void finishWith(Value tail);  // a dotted end; nothing may be added after it
    Value take() { return std::move(m_head); }
    bool isEmpty() const { return m_head.isNil(); }

private:
    Value m_head;
    ConsCell* m_last = nullptr;
};

// The items of a list by range-for; a dotted end is not among them. The list must outlive the loop.
class Items {
public:
    explicit Items(const Value& list) : m_list(&list) {}
    struct Iterator {
        const Value* at;
        const Value& operator*() const { return at->car(); }
        Iterator& operator++()
        {
            at = &at->cdr();
            return *this;
        }
        bool operator!=(const Iterator&) const { return at->isCons(); }
    };
    Iterator begin() const { return {m_list}; }
    Iterator end() const { return {nullptr}; }

private:
    const Value* m_list;
};

}  // namespace vk::lisp
