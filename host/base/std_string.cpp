#include "sdk/classlib_string.h"

#include "host/base/resources.h"
#include "host/base/unicode.h"

#include <cwchar>

namespace {

constexpr const wchar_t* kBlanks = L" \t\n\v\f\r";

const wchar_t* orEmpty(const wchar_t* text) { return text ? text : L""; }

std::size_t clamped(int value) { return value > 0 ? static_cast<std::size_t>(value) : 0; }

int place(std::size_t found) { return found == std::wstring::npos ? -1 : static_cast<int>(found); }

}  // namespace

CStdStrW::CStdStr(const char* utf8) : m_text(utf8 ? utf8ToWide(utf8) : L"") {}

CStdStrW& CStdStrW::operator=(const wchar_t* text)
{
    m_text = std::wstring(orEmpty(text));  // a copy first: the text may lie within this string
    return *this;
}

CStdStrW& CStdStrW::operator=(wchar_t character)
{
    m_text.assign(1, character);
    return *this;
}

void CStdStrW::SetAt(int index, wchar_t character)
{
    if (within(index))
        m_text[static_cast<std::size_t>(index)] = character;
}

CStdStrW& CStdStrW::operator+=(const CStdStr& text)
{
    m_text += text.m_text;
    return *this;
}

CStdStrW& CStdStrW::operator+=(const wchar_t* text)
{
    m_text += orEmpty(text);
    return *this;
}

CStdStrW& CStdStrW::operator+=(wchar_t character)
{
    m_text += character;
    return *this;
}

CStdStrW CStdStrW::Left(int count) const { return m_text.substr(0, clamped(count)); }

CStdStrW CStdStrW::Right(int count) const
{
    return m_text.substr(m_text.size() - std::min(clamped(count), m_text.size()));
}

CStdStrW CStdStrW::Mid(int first) const { return m_text.substr(std::min(clamped(first), m_text.size())); }

CStdStrW CStdStrW::Mid(int first, int count) const
{
    return m_text.substr(std::min(clamped(first), m_text.size()), clamped(count));
}

CStdStrW CStdStrW::SpanIncluding(const wchar_t* characters) const
{
    return m_text.substr(0, m_text.find_first_not_of(orEmpty(characters)));
}

CStdStrW CStdStrW::SpanExcluding(const wchar_t* characters) const
{
    return m_text.substr(0, m_text.find_first_of(orEmpty(characters)));
}

CStdStrW CStdStrW::Tokenize(const wchar_t* delimiters, int& start) const
{
    const std::wstring set = orEmpty(delimiters);
    const std::size_t begin = start < 0 ? m_text.npos : m_text.find_first_not_of(set, clamped(start));
    if (begin == m_text.npos) {
        start = -1;
        return {};
    }
    const std::size_t end = std::min(m_text.find_first_of(set, begin), m_text.size());
    start = static_cast<int>(std::min(end + 1, m_text.size()));
    return m_text.substr(begin, end - begin);
}

int CStdStrW::Find(const wchar_t* text, int start) const
{
    return start < 0 ? -1 : place(m_text.find(orEmpty(text), clamped(start)));
}

int CStdStrW::Find(wchar_t character, int start) const
{
    return start < 0 ? -1 : place(m_text.find(character, clamped(start)));
}

int CStdStrW::FindOneOf(const wchar_t* characters) const { return place(m_text.find_first_of(orEmpty(characters))); }

int CStdStrW::ReverseFind(wchar_t character) const { return place(m_text.rfind(character)); }

int CStdStrW::Compare(const wchar_t* text) const { return m_text.compare(orEmpty(text)); }

int CStdStrW::CompareNoCase(const wchar_t* text) const
{
    return compareNoCase(std::wstring_view(m_text), std::wstring_view(orEmpty(text)));
}

int CStdStrW::Collate(const wchar_t* text) const
{
    return collate(std::wstring_view(m_text), std::wstring_view(orEmpty(text)));
}

int CStdStrW::Replace(const wchar_t* old, const wchar_t* replacement)
{
    const std::wstring from = orEmpty(old), to = orEmpty(replacement);
    if (from.empty())
        return 0;
    std::wstring result;
    int count = 0;
    std::size_t begin = 0;
    for (std::size_t at; (at = m_text.find(from, begin)) != m_text.npos; begin = at + from.size(), ++count)
        result.append(m_text, begin, at - begin).append(to);
    if (count)
        m_text = result.append(m_text, begin, m_text.npos);
    return count;
}

int CStdStrW::Replace(wchar_t old, wchar_t replacement)
{
    int count = 0;
    for (wchar_t& c : m_text)
        if (c == old && old != replacement) {
            c = replacement;
            ++count;
        }
    return count;
}

int CStdStrW::Remove(wchar_t character) { return static_cast<int>(std::erase(m_text, character)); }

int CStdStrW::Insert(int index, const wchar_t* text)
{
    m_text.insert(std::min(clamped(index), m_text.size()), std::wstring(orEmpty(text)));
    return GetLength();
}

int CStdStrW::Insert(int index, wchar_t character)
{
    m_text.insert(std::min(clamped(index), m_text.size()), 1, character);
    return GetLength();
}

int CStdStrW::Delete(int index, int count)
{
    if (clamped(index) < m_text.size())
        m_text.erase(clamped(index), clamped(count));
    return GetLength();
}

CStdStrW& CStdStrW::MakeUpper()
{
    m_text = toUpper(std::wstring_view(m_text));
    return *this;
}

CStdStrW& CStdStrW::MakeLower()
{
    m_text = toLower(std::wstring_view(m_text));
    return *this;
}

CStdStrW& CStdStrW::MakeReverse()
{
    std::reverse(m_text.begin(), m_text.end());
    return *this;
}

CStdStrW& CStdStrW::Trim() { return Trim(kBlanks); }

CStdStrW& CStdStrW::Trim(wchar_t character) { return TrimRight(character).TrimLeft(character); }

CStdStrW& CStdStrW::Trim(const wchar_t* characters) { return TrimRight(characters).TrimLeft(characters); }

CStdStrW& CStdStrW::TrimLeft() { return TrimLeft(kBlanks); }

CStdStrW& CStdStrW::TrimLeft(wchar_t character) { return TrimLeft(std::wstring(1, character).c_str()); }

CStdStrW& CStdStrW::TrimLeft(const wchar_t* characters)
{
    m_text.erase(0, std::min(m_text.find_first_not_of(orEmpty(characters)), m_text.size()));
    return *this;
}

CStdStrW& CStdStrW::TrimRight() { return TrimRight(kBlanks); }

CStdStrW& CStdStrW::TrimRight(wchar_t character) { return TrimRight(std::wstring(1, character).c_str()); }

CStdStrW& CStdStrW::TrimRight(const wchar_t* characters)
{
    m_text.erase(m_text.find_last_not_of(orEmpty(characters)) + 1);  // npos + 1 is 0
    return *this;
}

bool CStdStrW::LoadString(UINT id) { return LoadString(currentResourceHandle(), id); }

bool CStdStrW::LoadString(void* instance, UINT id)
{
    const wchar_t* text = resourceText(instance, id);
    m_text = orEmpty(text);
    return text != nullptr;
}

wchar_t* CStdStrW::GetBuffer(int length)
{
    m_text.resize(std::max(m_text.size(), clamped(length)));
    return m_text.data();
}

wchar_t* CStdStrW::GetBufferSetLength(int length)
{
    m_text.resize(clamped(length));
    return m_text.data();
}

void CStdStrW::ReleaseBuffer(int length)
{
    const std::size_t wanted = length < 0 ? std::wcslen(m_text.c_str()) : clamped(length);
    m_text.resize(std::min(wanted, m_text.size()));
}

void CStdStrW::Truncate(int length) { m_text.resize(std::min(clamped(length), m_text.size())); }
