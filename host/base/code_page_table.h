// Both directions of one code page of at most two bytes a character, built once from ICU's converter.
#pragma once

#include <array>
#include <cstdint>
#include <unordered_map>
#include <vector>

class CodePageTable {
public:
    // An unknown converter gives a table of ASCII alone.
    explicit CodePageTable(const char* converter);

    char32_t single(unsigned byte) const { return m_single[byte]; }
    bool isLead(unsigned byte) const { return m_rowOf[byte] >= 0; }
    char32_t pair(unsigned lead, unsigned trail) const
    {
        return isLead(lead) ? m_pairs[static_cast<std::size_t>(m_rowOf[lead]) * 256 + trail] : 0;
    }
    // One byte, or two as lead * 256 + trail; 0 when the page does not have the character.
    unsigned bytes(char32_t character) const;

private:
    std::array<char32_t, 256> m_single{};
    std::array<std::int16_t, 256> m_rowOf;
    std::vector<char32_t> m_pairs;
    std::unordered_map<char32_t, std::uint16_t> m_reverse;

    template <class Decoder>
    void build(Decoder& decoder);
    template <class Decoder>
    void addRow(Decoder& decoder, unsigned lead);
    template <class Decoder>
    void buildReverse(Decoder& decoder);
};
