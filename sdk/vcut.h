// The C-level utilities: chains of result buffers, strings and buffers of the host's heap, small geometry, printing.
#pragma once

#include "resbuf.h"
#include "vkformat.h"

// A node with nothing in it but its code; null when there is no memory.
VK_SDK resbuf* vcutNewRb(int type);
// Releases a chain with the strings and bytes that it owns.
VK_SDK int vcutRelRb(resbuf* chain);
// Pairs of code and value, ended by RTNONE or 0; strings and bytes are copied. A code whose kind is not known gives
// null.
VK_SDK resbuf* vcutBuildList(int type, ...);
// Gives the node a copy of the bytes, at most 32767.
VK_SDK int vcutBuildRbBin(resbuf* node, std::size_t size, const char* bytes);

// Strings that the caller owns. Sizes are in bytes; there is always room for a terminator beyond them.
VK_SDK int vcutNewString(const wchar_t* source, wchar_t*& out);
VK_SDK int vcutNewString(wchar_t*& out, std::size_t size);
VK_SDK int vcutUpdString(const wchar_t* source, wchar_t*& out);  // releases what stood in out; the two may be the same
VK_SDK int vcutDelString(wchar_t*& out);
VK_SDK int vcutNewBuffer(char*& out, std::size_t size);
VK_SDK int vcutDelBuffer(char*& out);

// Any of these releases what the host gave.
extern "C" {
VK_SDK void vcdbFree(void* memory);
VK_SDK void vcad_free(void* memory);
VK_SDK void vkad_free(void* memory);
}

// In the XY plane; angles are 0 to 2 pi. The result of vcutPolar keeps the height of the origin.
VK_SDK double vcutAngle(const vds_point from, const vds_point to);
VK_SDK double vcutDistance(const vds_point a, const vds_point b);
VK_SDK void vcutPolar(const vds_point origin, double angle, double distance, vds_point result);

// Wild-cards: # a digit, @ a letter, . anything but these, * any run, ? any character, ~ at the front not,
// [...] and [~...] sets with ranges, ` takes the next character as it stands, a comma separates patterns.
// Case counts.
VK_SDK bool vcutWcMatch(const wchar_t* text, const wchar_t* pattern);

VK_SDK int vcutPrintf(const wchar_t* format, const VkFormatArg* arguments, std::size_t count);
// Cuts what does not fit; gives the count of characters written.
VK_SDK int vcutSPrintf(wchar_t* buffer, std::size_t size, const wchar_t* format, const VkFormatArg* arguments,
                       std::size_t count);

template <class... Arguments>
int vcutPrintf(const wchar_t* format, const Arguments&... arguments)
{
    const VkFormatArg list[] = {VkFormatArg(arguments)..., VkFormatArg(0)};
    return vcutPrintf(format, static_cast<const VkFormatArg*>(list), sizeof...(Arguments));
}

template <class... Arguments>
int vcutSPrintf(wchar_t* buffer, std::size_t size, const wchar_t* format, const Arguments&... arguments)
{
    const VkFormatArg list[] = {VkFormatArg(arguments)..., VkFormatArg(0)};
    return vcutSPrintf(buffer, size, format, static_cast<const VkFormatArg*>(list), sizeof...(Arguments));
}
