#include "host/db/tag.h"

#include <cstring>

namespace {

// How a value is packed. A value that its file had in another shape than its code calls for stays a text.
enum class Packed : char { Text, Real, Integer, Handle, Bytes };

constexpr std::size_t kHead = sizeof(std::int16_t) + sizeof(Packed);

template <class T>
void put(std::string& bytes, T value)
{
    char raw[sizeof value];
    std::memcpy(raw, &value, sizeof value);
    bytes.append(raw, sizeof value);
}

template <class T>
T get(const char* at)
{
    T value;
    std::memcpy(&value, at, sizeof value);
    return value;
}

void putHead(std::string& bytes, int code, Packed kind)
{
    put(bytes, static_cast<std::int16_t>(code));
    put(bytes, kind);
}

void putChars(std::string& bytes, int code, Packed kind, std::string_view chars)
{
    putHead(bytes, code, kind);
    put(bytes, static_cast<std::uint32_t>(chars.size()));
    bytes.append(chars);
}

std::size_t payload(const char* at, Packed kind)
{
    const bool counted = kind == Packed::Text || kind == Packed::Bytes;
    return counted ? sizeof(std::uint32_t) + get<std::uint32_t>(at) : sizeof(std::int64_t);
}

}

void TagList::clear()
{
    m_bytes.clear();
    m_count = 0;
}

void TagList::addText(int code, std::string_view utf8)
{
    putChars(m_bytes, code, Packed::Text, utf8);
    ++m_count;
}

void TagList::addBytes(int code, std::string_view data)
{
    putChars(m_bytes, code, Packed::Bytes, data);
    ++m_count;
}

void TagList::addReal(int code, double value)
{
    putHead(m_bytes, code, Packed::Real);
    put(m_bytes, value);
    ++m_count;
}

void TagList::addInteger(int code, std::int64_t value)
{
    putHead(m_bytes, code, Packed::Integer);
    put(m_bytes, value);
    ++m_count;
}

void TagList::addHandle(int code, std::uint64_t handle)
{
    putHead(m_bytes, code, Packed::Handle);
    put(m_bytes, handle);
    ++m_count;
}

void TagList::add(const Tag& tag)
{
    switch (tag.form) {
    case Tag::Form::Real:
        return addReal(tag.code, tag.real);
    case Tag::Form::Integer:
        return tag.isHandle ? addHandle(tag.code, static_cast<std::uint64_t>(tag.integer))
                            : addInteger(tag.code, tag.integer);
    case Tag::Form::Point:
        for (int i = 0; i < 3; ++i)
            addReal(tag.code + 10 * i, tag.point[i]);
        return;
    case Tag::Form::Bytes:
        return addBytes(tag.code, tag.view());
    case Tag::Form::Utf8:
    case Tag::Form::Raw:
    case Tag::Form::Id:
        return addText(tag.code, tag.view());
    }
}

void TagList::append(const TagList& other)
{
    m_bytes += other.m_bytes;
    m_count += other.m_count;
}

TagList::const_iterator::const_iterator(const char* at, const char* end) : m_at(at), m_next(at), m_end(end) { load(); }

TagList::const_iterator& TagList::const_iterator::operator++()
{
    m_at = m_next;
    load();
    return *this;
}

void TagList::const_iterator::load()
{
    if (m_at == m_end)
        return;
    const int code = get<std::int16_t>(m_at);
    const Packed kind = get<Packed>(m_at + sizeof(std::int16_t));
    const char* value = m_at + kHead;
    m_next = value + payload(value, kind);
    const auto chars = [&] {
        return std::string_view(value + sizeof(std::uint32_t), m_next - value - sizeof(std::uint32_t));
    };
    switch (kind) {
    case Packed::Text:
        m_tag = Tag::ofChars(code, Tag::Form::Utf8, chars());
        return;
    case Packed::Bytes:
        m_tag = Tag::ofChars(code, Tag::Form::Bytes, chars());
        return;
    case Packed::Real:
        m_tag = Tag::ofReal(code, get<double>(value));
        return;
    case Packed::Integer:
    case Packed::Handle:
        m_tag = Tag::ofInteger(code, get<std::int64_t>(value));
        m_tag.isHandle = kind == Packed::Handle;
        return;
    }
}

void TagList::rewriteHandles(std::uint64_t (*map)(void*, int, std::uint64_t), void* context)
{
    for (char* at = m_bytes.data(); at != m_bytes.data() + m_bytes.size();) {
        const Packed kind = get<Packed>(at + sizeof(std::int16_t));
        char* value = at + kHead;
        if (kind == Packed::Handle) {
            const std::uint64_t mapped = map(context, get<std::int16_t>(at), get<std::uint64_t>(value));
            std::memcpy(value, &mapped, sizeof mapped);
        }
        at = value + payload(value, kind);
    }
}
