#include "sdk/vcut.h"

#include "host/base/console.h"
#include "host/base/heap.h"
#include "host/base/rb.h"
#include "host/base/wildcard.h"

#include <cmath>
#include <cstring>
#include <limits>
#include <numbers>

resbuf* vcutNewRb(int type) { return newRb(type); }

int vcutRelRb(resbuf* chain)
{
    releaseRb(chain);
    return chain ? RTNORM : RTERROR;
}

resbuf* vcutBuildList(int type, ...)
{
    std::va_list arguments;
    va_start(arguments, type);
    RbPtr chain = buildRbChain(type, arguments);
    va_end(arguments);
    return chain.release();
}

int vcutBuildRbBin(resbuf* node, std::size_t size, const char* bytes)
{
    if (!node || (size && !bytes))
        return RTERROR;
    return setRbBytes(*node, std::string_view(bytes, size)) ? RTNORM : RTERROR;
}

int vcutNewString(const wchar_t* source, wchar_t*& out)
{
    if (!source)
        return RTERROR;
    wchar_t* copy = heapString(source);
    if (copy)
        out = copy;
    return copy ? RTNORM : RTERROR;
}

int vcutNewString(wchar_t*& out, std::size_t size)
{
    if (size > std::numeric_limits<std::size_t>::max() / 2)
        return RTERROR;
    // Callers ask for whole characters, or for a few bytes short of their terminator.
    const std::size_t characters = (size + sizeof(wchar_t) - 1) / sizeof(wchar_t) + 1;
    auto* text = static_cast<wchar_t*>(heapAllocate(characters * sizeof(wchar_t)));
    if (text)
        out = text;
    return text ? RTNORM : RTERROR;
}

int vcutUpdString(const wchar_t* source, wchar_t*& out)
{
    wchar_t* const old = out;
    const int status = vcutNewString(source, out);
    if (status == RTNORM)
        heapRelease(old);
    return status;
}

int vcutDelString(wchar_t*& out)
{
    heapRelease(out);
    out = nullptr;
    return RTNORM;
}

int vcutNewBuffer(char*& out, std::size_t size)
{
    auto* buffer = static_cast<char*>(heapAllocate(size));
    if (buffer)
        out = buffer;
    return buffer ? RTNORM : RTERROR;
}

int vcutDelBuffer(char*& out)
{
    heapRelease(out);
    out = nullptr;
    return RTNORM;
}

void vcdbFree(void* memory) { heapRelease(memory); }

void vcad_free(void* memory) { heapRelease(memory); }

void vkad_free(void* memory) { heapRelease(memory); }

double vcutAngle(const vds_point from, const vds_point to)
{
    constexpr double kFullTurn = 2 * std::numbers::pi;
    const double angle = std::atan2(to[1] - from[1], to[0] - from[0]);
    const double positive = angle < 0 ? angle + kFullTurn : angle;
    return positive < kFullTurn ? positive : 0;
}

double vcutDistance(const vds_point a, const vds_point b) { return std::hypot(b[0] - a[0], b[1] - a[1], b[2] - a[2]); }

void vcutPolar(const vds_point origin, double angle, double distance, vds_point result)
{
    const vds_point end = {origin[0] + distance * std::cos(angle), origin[1] + distance * std::sin(angle), origin[2]};
    std::memcpy(result, end, sizeof end);
}

bool vcutWcMatch(const wchar_t* text, const wchar_t* pattern)
{
    return text && pattern &&
           Wildcard(std::wstring_view(pattern), Wildcard::Case::Counts).matches(std::wstring_view(text));
}

int vcutPrintf(const wchar_t* format, const VkFormatArg* arguments, std::size_t count)
{
    if (!format)
        return RTERROR;
    consoleWrite(std::wstring_view(vkFormat(format, arguments, count)));
    return RTNORM;
}

int vcutSPrintf(wchar_t* buffer, std::size_t size, const wchar_t* format, const VkFormatArg* arguments,
                std::size_t count)
{
    if (!buffer || size == 0)
        return 0;
    const std::wstring text = vkFormat(format, arguments, count);
    const std::size_t length = std::min(text.size(), size - 1);
    std::memcpy(buffer, text.data(), length * sizeof(wchar_t));
    buffer[length] = 0;
    return static_cast<int>(length);
}
