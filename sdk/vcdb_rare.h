// Members of drawing objects that few objects fill.
#pragma once

#include "vkdefs.h"

#include <memory>
#include <string>

// A value that is nearly always as its default constructor makes it: then it takes a null pointer.
template <class T>
class VcDbRare {
public:
    VcDbRare() = default;
    VcDbRare(const VcDbRare& o) : m_value(o.m_value ? std::make_unique<T>(*o.m_value) : nullptr) {}
    VcDbRare& operator=(const VcDbRare& o)
    {
        if (this != &o)
            m_value = o.m_value ? std::make_unique<T>(*o.m_value) : nullptr;
        return *this;
    }
    bool isSet() const { return m_value != nullptr; }
    const T* operator->() const { return m_value.get(); }
    T* operator->() { return m_value.get(); }
    const T& operator*() const { return *m_value; }
    T& operator*() { return *m_value; }
    T get() const { return m_value ? *m_value : T(); }
    void set(T value)
    {
        if (value == T())
            m_value.reset();
        else if (m_value)
            *m_value = std::move(value);
        else
            m_value = std::make_unique<T>(std::move(value));
    }
    // The value to change in place; makes it when there is none.
    T& make()
    {
        if (!m_value)
            m_value = std::make_unique<T>();
        return *m_value;
    }
    void reset() { m_value.reset(); }

private:
    std::unique_ptr<T> m_value;
};

// The wide form of a text, made when it is first asked for. A copy begins without it.
class VK_SDK VcDbWideText {
public:
    VcDbWideText() = default;
    VcDbWideText(const VcDbWideText&) {}
    VcDbWideText& operator=(const VcDbWideText&)
    {
        drop();
        return *this;
    }
    // Valid until drop().
    const wchar_t* of(const std::string& utf8) const;
    void drop() const { m_text.reset(); }

private:
    mutable std::unique_ptr<std::wstring> m_text;
};
