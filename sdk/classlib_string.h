// CStdStr: the wide string of the class library, with value semantics. Indexes outside the text are brought into it.
#pragma once

#include "vkformat.h"

#include <compare>
#include <string>
#include <string_view>

using UINT = unsigned int;

template <class CT = wchar_t>
class CStdStr;

using CStdStrW = CStdStr<wchar_t>;

template <>
class VK_SDK CStdStr<wchar_t> {
public:
    CStdStr() = default;
    CStdStr(std::nullptr_t) {}
    CStdStr(const wchar_t* text) : m_text(text ? text : L"") {}
    CStdStr(const wchar_t* text, int length) : m_text(text ? text : L"", text && length > 0 ? length : 0) {}
    CStdStr(std::wstring text) : m_text(std::move(text)) {}
    CStdStr(wchar_t character, int count = 1) : m_text(count > 0 ? count : 0, character) {}
    explicit CStdStr(const char* utf8);

    CStdStr& operator=(const wchar_t* text);
    CStdStr& operator=(wchar_t character);

    operator const wchar_t*() const { return m_text.c_str(); }
    const wchar_t* GetString() const { return m_text.c_str(); }
    const std::wstring& str() const { return m_text; }

    int GetLength() const { return static_cast<int>(m_text.size()); }
    bool IsEmpty() const { return m_text.empty(); }
    void Empty() { m_text.clear(); }
    wchar_t GetAt(int index) const { return within(index) ? m_text[static_cast<std::size_t>(index)] : L'\0'; }
    void SetAt(int index, wchar_t character);
    template <class Index, class = std::enable_if_t<std::is_integral_v<Index>>>
    wchar_t operator[](Index index) const
    {
        return GetAt(static_cast<int>(index));
    }

    CStdStr& operator+=(const CStdStr& text);
    CStdStr& operator+=(const wchar_t* text);
    CStdStr& operator+=(wchar_t character);
    void Append(const wchar_t* text) { *this += text; }
    void AppendChar(wchar_t character) { *this += character; }

    CStdStr Left(int count) const;
    CStdStr Right(int count) const;
    CStdStr Mid(int first) const;
    CStdStr Mid(int first, int count) const;
    CStdStr SpanIncluding(const wchar_t* characters) const;
    CStdStr SpanExcluding(const wchar_t* characters) const;
    // The next piece that delimiters do not divide, from start on, which moves past it; start is -1 at the end.
    CStdStr Tokenize(const wchar_t* delimiters, int& start) const;

    // Places, -1 for none.
    int Find(const wchar_t* text, int start = 0) const;
    int Find(wchar_t character, int start = 0) const;
    int FindOneOf(const wchar_t* characters) const;
    int ReverseFind(wchar_t character) const;

    int Compare(const wchar_t* text) const;
    int CompareNoCase(const wchar_t* text) const;
    int Collate(const wchar_t* text) const;

    // Counts of what changed.
    int Replace(const wchar_t* old, const wchar_t* replacement);
    int Replace(wchar_t old, wchar_t replacement);
    int Remove(wchar_t character);
    // The new lengths.
    int Insert(int index, const wchar_t* text);
    int Insert(int index, wchar_t character);
    int Delete(int index, int count = 1);

    CStdStr& MakeUpper();
    CStdStr& MakeLower();
    CStdStr& MakeReverse();
    CStdStr& Trim();
    CStdStr& Trim(wchar_t character);
    CStdStr& Trim(const wchar_t* characters);
    CStdStr& TrimLeft();
    CStdStr& TrimLeft(wchar_t character);
    CStdStr& TrimLeft(const wchar_t* characters);
    CStdStr& TrimRight();
    CStdStr& TrimRight(wchar_t character);
    CStdStr& TrimRight(const wchar_t* characters);

    // From the current resource handle, or from the library named; false and empty when there is no such text.
    bool LoadString(UINT id);
    bool LoadString(void* instance, UINT id);
    bool LoadStringW(UINT id) { return LoadString(id); }
    bool LoadStringW(void* instance, UINT id) { return LoadString(instance, id); }

    template <class... Arguments>
    void Format(const wchar_t* format, const Arguments&... arguments)
    {
        m_text = vkFormat(format, arguments...);
    }
    template <class... Arguments>
    void Format(UINT id, const Arguments&... arguments)
    {
        CStdStr format;
        format.LoadString(id);
        m_text = vkFormat(format, arguments...);
    }
    template <class... Arguments>
    void AppendFormat(const wchar_t* format, const Arguments&... arguments)
    {
        m_text += vkFormat(format, arguments...);
    }

    // At least that many characters to write into, and a terminator; ReleaseBuffer must follow. Without a length it
    // cuts at the first zero.
    wchar_t* GetBuffer(int length = 0);
    wchar_t* GetBufferSetLength(int length);
    void ReleaseBuffer(int length = -1);
    void Truncate(int length);

    friend CStdStr operator+(CStdStr a, const CStdStr& b) { return a += b; }
    friend CStdStr operator+(CStdStr a, const wchar_t* b) { return a += b; }
    friend CStdStr operator+(const wchar_t* a, const CStdStr& b) { return CStdStr(a) += b; }
    friend CStdStr operator+(CStdStr a, wchar_t b) { return a += b; }
    friend CStdStr operator+(wchar_t a, const CStdStr& b) { return CStdStr(a) += b; }

    friend bool operator==(const CStdStr& a, const CStdStr& b) { return a.m_text == b.m_text; }
    friend bool operator==(const CStdStr& a, const wchar_t* b) { return a.m_text == (b ? b : L""); }
    friend std::strong_ordering operator<=>(const CStdStr& a, const CStdStr& b) { return a.m_text <=> b.m_text; }
    friend std::strong_ordering operator<=>(const CStdStr& a, const wchar_t* b) { return a.m_text <=> (b ? b : L""); }

private:
    std::wstring m_text;

    bool within(int index) const { return index >= 0 && static_cast<std::size_t>(index) < m_text.size(); }
};

// `CStdStr name = L"...";` names the wide string.
template <class... Arguments>
CStdStr(Arguments...) -> CStdStr<wchar_t>;
