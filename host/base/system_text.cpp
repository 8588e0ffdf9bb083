// Texts and code pages under their system-style names.
#include "host/base/code_page.h"
#include "host/base/files.h"
#include "host/base/numbers.h"
#include "host/base/unicode.h"
#include "sdk/system.h"

#include <cerrno>
#include <cstring>
#include <limits>

namespace {

const CodePage* pageOf(UINT number)
{
    return number == CP_ACP ? &CodePage::host() : CodePage::byNumber(static_cast<int>(number));
}

std::wstring_view viewOf(const wchar_t* text) { return text ? std::wstring_view(text) : std::wstring_view(); }

std::string narrow(const wchar_t* text) { return wideToUtf8(viewOf(text)); }

// Copies what has been converted, or tells its length when there is no buffer.
template <class Character>
int deliver(const std::basic_string<Character>& text, Character* buffer, int size)
{
    if (text.size() > static_cast<std::size_t>(std::numeric_limits<int>::max()))
        return 0;
    const int length = static_cast<int>(text.size());
    if (size == 0)
        return length;
    if (!buffer || size < length)
        return 0;
    std::memcpy(buffer, text.data(), text.size() * sizeof(Character));
    return length;
}

int copyText(wchar_t* to, std::size_t size, std::wstring_view text)
{
    if (!to || size == 0)
        return EINVAL;
    to[0] = 0;
    if (text.size() >= size)
        return ERANGE;
    std::wmemmove(to, text.data(), text.size());
    to[text.size()] = 0;
    return 0;
}

void give(wchar_t* to, std::wstring_view text)
{
    if (!to)
        return;
    std::wmemcpy(to, text.data(), text.size());
    to[text.size()] = 0;
}

}  // namespace

UINT GetACP() { return static_cast<UINT>(CodePage::host().number()); }

BOOL IsDBCSLeadByte(BYTE byte) { return CodePage::host().isLeadByte(byte); }

int MultiByteToWideChar(UINT codePage, DWORD flags, const char* text, int length, wchar_t* buffer, int size)
{
    const CodePage* page = pageOf(codePage);
    if (!page || !text || length == 0 || length < -1 || size < 0)
        return 0;
    const std::string_view bytes(text, length < 0 ? std::strlen(text) + 1 : static_cast<std::size_t>(length));
    const std::string utf8 = page->toUtf8(bytes);
    if (flags & MB_ERR_INVALID_CHARS && !isValidUtf8(utf8))
        return 0;
    return deliver(utf8ToWide(utf8), buffer, size);
}

int WideCharToMultiByte(UINT codePage, DWORD, const wchar_t* text, int length, char* buffer, int size,
                        const char* unknown, BOOL* usedUnknown)
{
    const CodePage* page = pageOf(codePage);
    if (!page || !text || length == 0 || length < -1 || size < 0)
        return 0;
    const std::wstring_view wide(text, length < 0 ? std::wcslen(text) + 1 : static_cast<std::size_t>(length));
    std::string bytes;
    std::size_t replaced = 0;
    for (const wchar_t c : wide) {
        const std::size_t before = replaced;
        const std::string one = page->fromUtf8(wideToUtf8({&c, 1}), CodePage::Unknown::QuestionMark, &replaced);
        bytes += replaced > before && unknown ? std::string(unknown) : one;
    }
    if (usedUnknown)
        *usedUnknown = replaced > 0;
    return deliver(bytes, buffer, size);
}

int StrCmpI(const wchar_t* a, const wchar_t* b) { return compareNoCase(viewOf(a), viewOf(b)); }

void _wsplitpath(const wchar_t* path, wchar_t* drive, wchar_t* folder, wchar_t* name, wchar_t* extension)
{
    const std::wstring_view all = viewOf(path);
    const std::size_t nameAt = all.find_last_of(L"/\\") + 1;  // npos + 1 is 0
    const std::wstring_view file = all.substr(nameAt);
    const std::size_t dot = std::min(file.rfind(L'.'), file.size());
    give(drive, L"");
    give(folder, all.substr(0, nameAt));
    give(name, file.substr(0, dot));
    give(extension, file.substr(dot));
}

int _wtoi(const wchar_t* text)
{
    using Limits = std::numeric_limits<int>;
    return static_cast<int>(std::clamp<std::int64_t>(leadingInteger(narrow(text)), Limits::min(), Limits::max()));
}

long _wtol(const wchar_t* text) { return _wtoi(text); }

double _wtof(const wchar_t* text) { return leadingReal(narrow(text)); }

int _wcsupr_s(wchar_t* text, std::size_t size)
{
    if (!text || !std::wmemchr(text, L'\0', size))
        return EINVAL;
    for (; *text; ++text)
        *text = static_cast<wchar_t>(toUpper(static_cast<char32_t>(*text)));
    return 0;
}

int wcscpy_s(wchar_t* to, std::size_t size, const wchar_t* from) { return copyText(to, from ? size : 0, viewOf(from)); }

int wcscat_s(wchar_t* to, std::size_t size, const wchar_t* from)
{
    const wchar_t* end = to && from ? std::wmemchr(to, L'\0', size) : nullptr;
    if (!end)
        return EINVAL;
    const auto used = static_cast<std::size_t>(end - to);
    const int error = copyText(to + used, size - used, viewOf(from));
    if (error)
        to[0] = 0;
    return error;
}

int wcsncpy_s(wchar_t* to, std::size_t size, const wchar_t* from, std::size_t count)
{
    if (!to || size == 0 || !from)
        return copyText(to, to && !from ? 0 : size, {});
    const std::size_t limit = count == _TRUNCATE ? size - 1 : count;
    return copyText(to, size, std::wstring_view(from, ::wcsnlen(from, limit)));
}

int memcpy_s(void* to, std::size_t size, const void* from, std::size_t count)
{
    if (count == 0)
        return 0;
    if (!to || !from || count > size) {
        if (to)
            std::memset(to, 0, size);
        return to && from ? ERANGE : EINVAL;
    }
    std::memmove(to, from, count);
    return 0;
}

int _tvkstrcpy_s(wchar_t* to, std::size_t size, const wchar_t* from) { return wcscpy_s(to, size, from); }
