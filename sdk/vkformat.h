// Arguments of the formatting calls, each with its type: a conversion that does not fit its argument, or that has
// none, cannot read foreign memory.
//
// Conversions: %s %ls %S %hs for texts, wide or narrow (UTF-8) as the argument is; %c; %d %i %u %o %x %X with any
// length letters; %f %e %g %a with the point as decimal sign in every locale; %p; %%. Flags, widths, precisions, '*'
// and positions as in %2$s are known. A conversion without an argument is printed as it stands.
#pragma once

#include "vkdefs.h"

#include <string>
#include <type_traits>

class VkFormatArg {
public:
    enum class Kind : unsigned char { Integer, Unsigned, Real, Wide, Narrow, Pointer };

    template <class T>
    VkFormatArg(const T& value)
    {
        if constexpr (std::is_same_v<T, std::nullptr_t>)
            setPointer(nullptr);
        else if constexpr (std::is_enum_v<T>)
            setInteger(static_cast<std::int64_t>(value), sizeof(T));
        else if constexpr (std::is_floating_point_v<T>)
            setReal(static_cast<double>(value));
        else if constexpr (std::is_integral_v<T> && std::is_signed_v<T>)
            setInteger(static_cast<std::int64_t>(value), sizeof(T));
        else if constexpr (std::is_integral_v<T>)
            setUnsigned(static_cast<std::uint64_t>(value), sizeof(T));
        else if constexpr (std::is_convertible_v<const T&, const wchar_t*>)
            setWide(static_cast<const wchar_t*>(value));
        else if constexpr (std::is_convertible_v<const T&, const char*>)
            setNarrow(static_cast<const char*>(value));
        else if constexpr (std::is_same_v<T, std::wstring>)
            setWide(value.c_str());
        else if constexpr (std::is_same_v<T, std::string>)
            setNarrow(value.c_str());
        else
            setPointer(static_cast<const void*>(value));
    }

    Kind kind;
    unsigned char size = 8;  // bytes of the argument's own type, so that a negative int prints as 32 bits in %x
    union {
        std::int64_t integer;
        std::uint64_t number;
        double real;
        const wchar_t* wide;
        const char* narrow;
        const void* pointer;
    };

private:
    void setInteger(std::int64_t value, std::size_t bytes)
    {
        kind = Kind::Integer;
        size = static_cast<unsigned char>(bytes);
        integer = value;
    }
    void setUnsigned(std::uint64_t value, std::size_t bytes)
    {
        kind = Kind::Unsigned;
        size = static_cast<unsigned char>(bytes);
        number = value;
    }
    void setReal(double value)
    {
        kind = Kind::Real;
        real = value;
    }
    void setWide(const wchar_t* value)
    {
        kind = Kind::Wide;
        wide = value;
    }
    void setNarrow(const char* value)
    {
        kind = Kind::Narrow;
        narrow = value;
    }
    void setPointer(const void* value)
    {
        kind = Kind::Pointer;
        pointer = value;
    }
};

VK_SDK std::wstring vkFormat(const wchar_t* format, const VkFormatArg* arguments, std::size_t count);

template <class... Arguments>
std::wstring vkFormat(const wchar_t* format, const Arguments&... arguments)
{
    const VkFormatArg list[] = {VkFormatArg(arguments)..., VkFormatArg(0)};
    return vkFormat(format, static_cast<const VkFormatArg*>(list), sizeof...(Arguments));
}
