#include "host/lisp/value.h"

#include "host/lisp/errors.h"

#include <cmath>
#include <limits>
#include <new>

namespace vk::lisp {

namespace {

// A runaway program must end with a message, not with the machine's memory.
constexpr std::size_t kMaxHeapBytes = std::size_t(1) << 30;
thread_local std::size_t liveBytes = 0;

void claim(std::size_t bytes)
{
    if (bytes > kMaxHeapBytes - liveBytes)
        throw LispError("out of memory");
    liveBytes += bytes;
}

const Value kNil;

}  // namespace

void* Cell::operator new(std::size_t size)
{
    claim(size);
    return ::operator new(size);
}

void Cell::operator delete(void* at, std::size_t size)
{
    liveBytes -= size;
    ::operator delete(at, size);
}

void Cell::bury(Cell* cell)
{
    thread_local Cell* waiting = nullptr;
    thread_local bool digging = false;
    cell->m_count = reinterpret_cast<std::uintptr_t>(waiting);
    waiting = cell;
    if (digging)
        return;
    digging = true;
    while (waiting) {
        Cell* next = waiting;
        waiting = reinterpret_cast<Cell*>(next->m_count);
        delete next;
    }
    digging = false;
}

TextCell::TextCell(std::string text) : content(std::move(text))
{
    if (content.size() > kLongest)
        throw LispError("string too long");
    claim(content.size());
}

TextCell::~TextCell() { liveBytes -= content.size(); }

Value Value::integer(std::int32_t number)
{
    Value v;
    v.m_kind = Kind::integer;
    v.m_data.integer = number;
    return v;
}

Value Value::real(double number)
{
    Value v;
    v.m_kind = Kind::real;
    v.m_data.real = number;
    return v;
}

Value Value::whole(double number)
{
    constexpr double kLow = std::numeric_limits<std::int32_t>::min();
    constexpr double kHigh = std::numeric_limits<std::int32_t>::max();
    if (number >= kLow && number <= kHigh && number == std::trunc(number))
        return integer(static_cast<std::int32_t>(number));
    return real(number);
}

Value Value::cell(Kind kind, Cell* cell)
{
    Value v;
    v.m_kind = kind;
    v.m_data.cell = cell;
    v.retain();
    return v;
}

Value Value::text(std::string text) { return cell(Kind::text, new TextCell(std::move(text))); }

Value Value::cons(Value car, Value cdr) { return cell(Kind::cons, new ConsCell(std::move(car), std::move(cdr))); }

Value Value::fault(std::string message) { return cell(Kind::fault, new TextCell(std::move(message))); }

const std::string& Value::text() const { return as<TextCell>().content; }

const Value& Value::car() const { return isCons() ? as<ConsCell>().car : kNil; }

const Value& Value::cdr() const { return isCons() ? as<ConsCell>().cdr : kNil; }

bool Value::isSame(const Value& other) const
{
    if (m_kind != other.m_kind)
        return false;
    switch (m_kind) {
    case Kind::nil:
        return true;
    case Kind::integer:
        return m_data.integer == other.m_data.integer;
    case Kind::real:
        return m_data.real == other.m_data.real;
    case Kind::text:
        return text() == other.text();
    case Kind::entity:
    case Kind::selection: {
        const auto& a = as<NameCell>().words;
        const auto& b = other.as<NameCell>().words;
        return a[0] == b[0] && a[1] == b[1];
    }
    default:
        return m_data.cell == other.m_data.cell;
    }
}

void ListBuilder::add(Value item)
{
    auto* cell = new ConsCell(std::move(item), Value());
    Value link = Value::cell(Kind::cons, cell);
    if (m_last)
        m_last->cdr = std::move(link);
    else
        m_head = std::move(link);
    m_last = cell;
}

void ListBuilder::finishWith(Value tail)
{
    if (m_last)
        m_last->cdr = std::move(tail);
    else
        m_head = std::move(tail);
}

}  // namespace vk::lisp
