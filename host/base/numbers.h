// Numbers as files and people write them. The decimal sign is the point in every locale.
#pragma once

#include "host/base/api.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

// The shortest text that reads back as the same number, with ".0" where it would look like an integer.
VKHOST_API std::string realText(double value);
VKHOST_API void appendReal(std::string& out, double value);
// The same into a buffer of that many characters; the end of it.
constexpr std::size_t kLongestReal = 32;
VKHOST_API char* printReal(char* to, double value);
VKHOST_API void appendInteger(std::string& out, std::int64_t value);

// The whole text must be the number, but for blanks around it. Reals take a leading '+', "inf" and "nan" in their
// usual spellings; what is too large becomes infinite, what is too small zero.
enum class DecimalSign { Point, PointOrComma };
VKHOST_API std::optional<double> parseReal(std::string_view text, DecimalSign sign = DecimalSign::Point);
VKHOST_API std::optional<std::int64_t> parseInteger(std::string_view text);

// As parseInteger, but a real without a fraction will do: some programs write integers so.
VKHOST_API std::optional<std::int64_t> parseIntegerLoosely(std::string_view text);

// Handles: hexadecimal, at most 16 digits, upper case when written.
VKHOST_API std::optional<std::uint64_t> parseHandle(std::string_view text);
VKHOST_API std::string handleText(std::uint64_t handle);
VKHOST_API void appendHandle(std::string& out, std::uint64_t handle);
constexpr std::size_t kLongestHandle = 16;
VKHOST_API char* printHandle(char* to, std::uint64_t handle);

// Fixed notation rounded half away from zero as the shortest text shows it: 1.005 to two places is 1.01.
VKHOST_API std::string fixedText(double value, int places);
// Likewise "d.dddE+dd".
VKHOST_API std::string scientificText(double value, int places);

// The longest number at the front, as the C library takes it, without regard to the locale; zero if there is none.
VKHOST_API double leadingReal(std::string_view text, std::size_t* used = nullptr);
// Saturates.
VKHOST_API std::int64_t leadingInteger(std::string_view text);

inline std::string_view trimBlanks(std::string_view text)
{
    const auto isBlank = [](char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; };
    while (!text.empty() && isBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back()))
        text.remove_suffix(1);
    return text;
}
