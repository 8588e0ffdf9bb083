#include "host/base/heap.h"

#include "host/base/unicode.h"

#include <cstdlib>
#include <cstring>

void* heapAllocate(std::size_t bytes)
{
    return std::calloc(bytes ? bytes : 1, 1);
}

void heapRelease(void* memory)
{
    std::free(memory);
}

wchar_t* heapString(std::wstring_view text)
{
    auto* copy = static_cast<wchar_t*>(std::malloc((text.size() + 1) * sizeof(wchar_t)));
    if (!copy)
        return nullptr;
    if (!text.empty())
        std::memcpy(copy, text.data(), text.size() * sizeof(wchar_t));
    copy[text.size()] = 0;
    return copy;
}

wchar_t* heapStringFromUtf8(std::string_view text)
{
    const std::size_t length = wideLength(text);
    auto* copy = static_cast<wchar_t*>(std::malloc((length + 1) * sizeof(wchar_t)));
    if (!copy)
        return nullptr;
    utf8ToWide(text, copy);
    copy[length] = 0;
    return copy;
}
