// VcString: the text of the object interface. VcArray: its growing array. Errors that modules throw and report.
#pragma once

#include "vkformat.h"

#include <string>
#include <utility>
#include <vector>

class VK_SDK VcString {
public:
    VcString() = default;
    VcString(const wchar_t* text) : m_text(text ? text : L"") {}
    explicit VcString(const char* utf8) { assign(utf8); }
    VcString(wchar_t character) : m_text(1, character) {}

    VcString& operator=(const wchar_t* text) { return assign(text); }
    VcString& assign(const wchar_t* text);
    VcString& assign(const VcString& text);
    VcString& assign(const char* utf8);
    VcString& append(const wchar_t* text);
    VcString& append(const VcString& text) { return append(text.kwszPtr()); }
    VcString& append(wchar_t character);
    VcString& append(const char* utf8);
    VcString& setEmpty();
    VcString& operator+=(const VcString& text) { return append(text); }
    VcString& operator+=(const wchar_t* text) { return append(text); }

    template <class... Arguments>
    VcString& format(const wchar_t* format, const Arguments&... arguments)
    {
        m_text = vkFormat(format, arguments...);
        m_narrow.clear();
        return *this;
    }
    bool loadString(unsigned id);
    bool loadString(void* instance, unsigned id);

    const wchar_t* kwszPtr() const { return m_text.c_str(); }
    const wchar_t* constPtr() const { return m_text.c_str(); }
    // UTF-8, valid until the next change.
    const char* kszPtr() const;
    operator const wchar_t*() const { return m_text.c_str(); }

    unsigned length() const { return static_cast<unsigned>(m_text.size()); }
    bool isEmpty() const { return m_text.empty(); }
    wchar_t getAt(unsigned index) const { return index < m_text.size() ? m_text[index] : L'\0'; }

    int compare(const wchar_t* text) const;
    int compare(const VcString& text) const { return compare(text.kwszPtr()); }
    int compareNoCase(const wchar_t* text) const;
    int compareNoCase(const VcString& text) const { return compareNoCase(text.kwszPtr()); }

    // Places, -1 for none.
    int find(const wchar_t* text) const;
    int find(wchar_t character) const;
    int findRev(wchar_t character) const;
    int findOneOf(const wchar_t* characters) const;

    // A count of -1 means up to the end; substrRev counts from the end.
    VcString substr(int count) const { return substr(0, count); }
    VcString substr(int first, int count) const;
    VcString substrRev(int count) const;

    friend VcString operator+(VcString a, const VcString& b) { return a.append(b); }
    friend VcString operator+(VcString a, const wchar_t* b) { return a.append(b); }
    friend bool operator==(const VcString& a, const VcString& b) { return a.m_text == b.m_text; }
    friend bool operator==(const VcString& a, const wchar_t* b) { return a.compare(b) == 0; }
    friend bool operator<(const VcString& a, const VcString& b) { return a.m_text < b.m_text; }

private:
    std::wstring m_text;
    mutable std::string m_narrow;  // what kszPtr gave
};

// Indexes are checked: reading outside gives a value of its own, writing there is lost.
template <class T>
class VcArray {
public:
    explicit VcArray(int physicalLength = 0, int growLength = 8) : m_growLength(growLength)
    {
        if (physicalLength > 0)
            m_items.reserve(static_cast<std::size_t>(physicalLength));
    }

    int length() const { return static_cast<int>(m_items.size()); }
    int logicalLength() const { return length(); }
    int physicalLength() const { return static_cast<int>(m_items.capacity()); }
    int growLength() const { return m_growLength; }
    bool isEmpty() const { return m_items.empty(); }
    VcArray& setLogicalLength(int length)
    {
        m_items.resize(length > 0 ? static_cast<std::size_t>(length) : 0);
        return *this;
    }
    VcArray& setPhysicalLength(int length)
    {
        if (length > 0)
            m_items.reserve(static_cast<std::size_t>(length));
        return *this;
    }

    T& operator[](int index) { return within(index) ? m_items[static_cast<std::size_t>(index)] : outside(); }
    const T& operator[](int index) const
    {
        return within(index) ? m_items[static_cast<std::size_t>(index)] : const_cast<VcArray*>(this)->outside();
    }
    T& at(int index) { return (*this)[index]; }
    const T& at(int index) const { return (*this)[index]; }
    T& first() { return (*this)[0]; }
    T& last() { return (*this)[length() - 1]; }
    const T& first() const { return (*this)[0]; }
    const T& last() const { return (*this)[length() - 1]; }
    VcArray& setAt(int index, const T& value)
    {
        (*this)[index] = value;
        return *this;
    }

    // The index of the new element.
    int append(const T& value)
    {
        m_items.push_back(value);
        return length() - 1;
    }
    VcArray& append(const VcArray& other)
    {
        const std::vector<T> items = other.m_items;
        m_items.insert(m_items.end(), items.begin(), items.end());
        return *this;
    }
    VcArray& insertAt(int index, const T& value)
    {
        if (index >= 0 && index <= length())
            m_items.insert(m_items.begin() + index, T(value));
        return *this;
    }
    VcArray& removeAt(int index)
    {
        if (within(index))
            m_items.erase(m_items.begin() + index);
        return *this;
    }
    VcArray& removeAll()
    {
        m_items.clear();
        return *this;
    }
    VcArray& removeFirst() { return removeAt(0); }
    VcArray& removeLast() { return removeAt(length() - 1); }
    bool remove(const T& value, int start = 0)
    {
        const int index = findFrom(value, start);
        removeAt(index);
        return index >= 0;
    }
    bool contains(const T& value, int start = 0) const { return findFrom(value, start) >= 0; }
    bool find(const T& value, int& foundAt, int start = 0) const
    {
        const int index = findFrom(value, start);
        if (index >= 0)
            foundAt = index;
        return index >= 0;
    }
    int find(const T& value) const { return findFrom(value, 0); }
    VcArray& reverse()
    {
        for (int i = 0, j = length() - 1; i < j; ++i, --j)
            swap(i, j);
        return *this;
    }
    VcArray& swap(int i, int j)
    {
        if (within(i) && within(j))
            std::swap(m_items[static_cast<std::size_t>(i)], m_items[static_cast<std::size_t>(j)]);
        return *this;
    }
    const T* asArrayPtr() const { return m_items.data(); }
    T* asArrayPtr() { return m_items.data(); }
    T* begin() { return m_items.data(); }
    T* end() { return m_items.data() + m_items.size(); }
    const T* begin() const { return m_items.data(); }
    const T* end() const { return m_items.data() + m_items.size(); }

    bool operator==(const VcArray& other) const { return m_items == other.m_items; }

private:
    std::vector<T> m_items;
    int m_growLength;

    bool within(int index) const { return index >= 0 && index < length(); }
    T& outside()
    {
        static thread_local T value;
        value = T();
        return value;
    }
    int findFrom(const T& value, int start) const
    {
        for (int i = start > 0 ? start : 0; i < length(); ++i)
            if (m_items[static_cast<std::size_t>(i)] == value)
                return i;
        return -1;
    }
};

// A status kept for reporting.
class VK_SDK VkErrorStatus {
public:
    VkErrorStatus(Vcad::ErrorStatus status = Vcad::eOk) : m_status(status) {}
    ~VkErrorStatus();
    Vcad::ErrorStatus status() const { return m_status; }
    bool isOk() const { return m_status == Vcad::eOk; }
    operator Vcad::ErrorStatus() const { return m_status; }
    const wchar_t* text() const;

private:
    Vcad::ErrorStatus m_status;
};

class VK_SDK VkExceptionWithMsg {
public:
    explicit VkExceptionWithMsg(const wchar_t* message, Vcad::ErrorStatus status = Vcad::eInvalidInput);
    virtual ~VkExceptionWithMsg();
    const wchar_t* message() const { return m_message.c_str(); }
    Vcad::ErrorStatus status() const { return m_status; }

private:
    std::wstring m_message;
    Vcad::ErrorStatus m_status;
};

// Raw memory of the host's heap.
class VK_SDK VcHeapOperators {
public:
    static void* allocRawMem(std::size_t size);
    static void freeRawMem(void* memory);
};
