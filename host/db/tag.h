// One group of a drawing file or a chain on its way into an object, and a compact list of groups kept as they came.
#pragma once

#include "host/base/api.h"
#include "sdk/vcdb_object.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>

// A group whose value is still as its source had it; the text belongs to the source.
struct Tag {
    enum class Form : std::uint8_t {
        Raw,   // the text of a line of an ASCII file, in the file's own encoding
        Utf8,  // a text, or a handle in hexadecimal
        Real,
        Integer,  // also a handle as a number
        Point,    // three reals under one code, as in a chain
        Bytes,    // binary data
        Id,       // an object id as an integer, packed by packId
    };
    std::uint32_t line = 0;  // of an ASCII file, or the byte offset of a binary one
    std::int16_t code = 0;
    Form form = Form::Raw;
    std::uint8_t taken : 7 = 0;  // by which subclass call of a reader, counted from 1; 0 while it is free
    bool isHandle : 1 = false;   // of an Integer that names an object
    union {
        struct {
            const char* data;
            std::uint64_t size;
        } chars;
        double real;
        std::int64_t integer;
        double point[3];
    };

    Tag() : chars{nullptr, 0} {}
    std::string_view view() const { return {chars.data, chars.size}; }

    static Tag ofChars(int code, Form form, std::string_view text)
    {
        Tag t;
        t.code = static_cast<std::int16_t>(code);
        t.form = form;
        t.chars = {text.data(), text.size()};
        return t;
    }
    static Tag ofReal(int code, double value)
    {
        Tag t;
        t.code = static_cast<std::int16_t>(code);
        t.form = Form::Real;
        t.real = value;
        return t;
    }
    static Tag ofInteger(int code, std::int64_t value, Form form = Form::Integer)
    {
        Tag t;
        t.code = static_cast<std::int16_t>(code);
        t.form = form;
        t.integer = value;
        return t;
    }
    static Tag ofPoint(int code, double x, double y, double z)
    {
        Tag t;
        t.code = static_cast<std::int16_t>(code);
        t.form = Form::Point;
        t.point[0] = x;
        t.point[1] = y;
        t.point[2] = z;
        return t;
    }
};

inline std::int64_t packId(VcDbObjectId id)
{
    return static_cast<std::int64_t>(std::uint64_t(id.databaseSerial()) << 32 | id.slot());
}
inline VcDbObjectId unpackId(std::int64_t packed)
{
    return {static_cast<std::uint32_t>(std::uint64_t(packed) >> 32), static_cast<std::uint32_t>(packed)};
}

// Groups kept whole, packed in one block of bytes: code, kind of the value, value. Texts are UTF-8; handles are kept as
// numbers, so they mean objects of the database that holds the list.
class VKHOST_API TagList {
public:
    bool empty() const { return m_bytes.empty(); }
    std::size_t count() const { return m_count; }
    std::size_t byteSize() const { return m_bytes.size(); }
    void clear();
    void shrink() { m_bytes.shrink_to_fit(); }

    void addText(int code, std::string_view utf8);
    void addReal(int code, double value);
    void addInteger(int code, std::int64_t value);
    void addHandle(int code, std::uint64_t handle);
    void addBytes(int code, std::string_view data);
    // A tag of any form but Raw and Id; a point becomes three reals under code, code + 10 and code + 20.
    void add(const Tag& tag);
    void append(const TagList& other);
    bool operator==(const TagList& other) const { return m_bytes == other.m_bytes; }

    // Texts come as Utf8, integers and handles (isHandle) as Integer, reals as Real, binary data as Bytes.
    class VKHOST_API const_iterator {
    public:
        const Tag& operator*() const { return m_tag; }
        const Tag* operator->() const { return &m_tag; }
        const_iterator& operator++();
        bool operator!=(const const_iterator& other) const { return m_at != other.m_at; }

    private:
        friend class TagList;
        const_iterator(const char* at, const char* end);
        void load();
        const char* m_at;
        const char* m_next;
        const char* m_end;
        Tag m_tag;
    };
    const_iterator begin() const { return {m_bytes.data(), m_bytes.data() + m_bytes.size()}; }
    const_iterator end() const { return {m_bytes.data() + m_bytes.size(), m_bytes.data() + m_bytes.size()}; }

    // Replaces each handle by what map(code, handle) gives.
    template <class Map>
    void mapHandles(Map&& map)
    {
        using M = std::remove_reference_t<Map>;
        rewriteHandles([](void* m, int code,
                          std::uint64_t handle) -> std::uint64_t { return (*static_cast<M*>(m))(code, handle); },
                       const_cast<void*>(static_cast<const void*>(&map)));
    }

private:
    std::string m_bytes;
    std::size_t m_count = 0;
    void rewriteHandles(std::uint64_t (*map)(void*, int, std::uint64_t), void* context);
};
