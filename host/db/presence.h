// What a copy of an object's groups needs beside their values: which optional groups its file carried although they stood at
// their default, and how it spelt names of records in another letter case than the records have.
//
// The objects of one program share a few such profiles; an object holds the number of its own. Number 0 is the empty one.
#pragma once

#include "host/base/api.h"

#include <compare>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

// A group of a class: the number of the subclass call in fields() that it belongs to, and its code.
using PresenceKey = std::uint32_t;

inline PresenceKey presenceKey(int subclassCall, int code)
{
    return static_cast<PresenceKey>(subclassCall) << 16 | static_cast<std::uint16_t>(code);
}

// How the nth name, from 0, that stands in a group was spelt. It holds as long as the record's name differs in case only.
struct KeptSpelling {
    PresenceKey group;
    std::uint32_t nth;
    std::string spelt;

    auto operator<=>(const KeptSpelling&) const = default;
};

// How often each of a few groups has come so far.
class GroupCounts {
public:
    void clear() { m_counts.clear(); }
    std::uint32_t next(PresenceKey group)  // 0, 1, 2...
    {
        for (auto& [known, count] : m_counts)
            if (known == group)
                return count++;
        m_counts.push_back({group, 1});
        return 0;
    }

private:
    struct Count {
        PresenceKey group;
        std::uint32_t count;
    };
    std::vector<Count> m_counts;
};

// The number of the profile with these keys, in any order and repeated at will, and spellings; 0 when there are too many.
VKHOST_API std::uint16_t internPresence(std::vector<PresenceKey>& keys,
                                        const std::vector<KeptSpelling>& spellings = {});
VKHOST_API bool presenceHas(std::uint16_t profile, PresenceKey key);
// Bit key % 64 is set for each key of the profile: most questions end there.
VKHOST_API std::uint64_t presenceBits(std::uint16_t profile);
VKHOST_API std::span<const KeptSpelling> spellingsOf(std::uint16_t profile);
// The profile with one more spelling.
VKHOST_API std::uint16_t withSpelling(std::uint16_t profile, KeptSpelling spelling);
