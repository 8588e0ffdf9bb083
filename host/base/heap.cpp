#include "host/base/heap.h"

#include "host/base/unicode.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>

// The allocator's list of small blocks that were freed last serves malloc only, and chains are made of small blocks.
void* heapAllocate(std::size_t bytes)
{
    constexpr std::size_t kSmall = 1024,
                          kLargest = PTRDIFF_MAX;  // what no allocator gives; some end the program when asked
    if (bytes > kLargest)
        return nullptr;
    if (bytes > kSmall)
        return std::calloc(bytes, 1);
    void* memory = std::malloc(bytes ? bytes : 1);
    if (memory)
        std::memset(memory, 0, bytes ? bytes : 1);
    return memory;
}

void heapRelease(void* memory) { std::free(memory); }

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
