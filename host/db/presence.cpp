#include "host/db/presence.h"

#include <algorithm>
#include <array>
#include <map>
#include <memory>
#include <mutex>

namespace {

struct Profile {
    std::vector<PresenceKey> keys;
    std::vector<KeptSpelling> spellings;

    auto operator<=>(const Profile&) const = default;
};

// Slots and the pages of slots are written once, before their number is handed out, so that reading needs no lock.
struct Profiles {
    static constexpr std::size_t kMost = 65536, kPage = 1024;

    std::mutex mutex;
    std::map<Profile, std::uint16_t> numbers;
    std::array<std::unique_ptr<const Profile*[]>, kMost / kPage> pages;
    std::size_t count = 1;

    const Profile* at(std::size_t number) const { return pages[number / kPage][number % kPage]; }
    void append(const Profile& profile)
    {
        auto& page = pages[count / kPage];
        if (!page)
            page = std::make_unique<const Profile*[]>(kPage);
        page[count++ % kPage] = &profile;
    }
};

// Texts of files make profiles without end; they leave half of the numbers to the groups, which are few.
constexpr std::size_t kMostWithSpellings = 32768;

Profiles& profiles()
{
    static auto* all = new Profiles;
    return *all;
}

std::uint16_t intern(Profile wanted)
{
    if (wanted.keys.empty() && wanted.spellings.empty())
        return 0;
    Profiles& all = profiles();
    const std::lock_guard lock(all.mutex);
    if (!wanted.spellings.empty() && all.count >= kMostWithSpellings && !all.numbers.contains(wanted))
        wanted.spellings.clear();
    if (const auto found = all.numbers.find(wanted); found != all.numbers.end())
        return found->second;
    if (all.count == Profiles::kMost)
        return 0;
    const auto number = static_cast<std::uint16_t>(all.count);
    all.append(all.numbers.emplace(std::move(wanted), number).first->first);
    return number;
}

const Profile* profileAt(std::uint16_t number) { return number ? profiles().at(number) : nullptr; }

}

std::uint16_t internPresence(std::vector<PresenceKey>& keys, const std::vector<KeptSpelling>& spellings)
{
    std::sort(keys.begin(), keys.end());
    keys.erase(std::unique(keys.begin(), keys.end()), keys.end());
    return intern({keys, spellings});
}

bool presenceHas(std::uint16_t profile, PresenceKey key)
{
    const Profile* found = profileAt(profile);
    return found && std::binary_search(found->keys.begin(), found->keys.end(), key);
}

std::uint64_t presenceBits(std::uint16_t profile)
{
    std::uint64_t bits = 0;
    if (const Profile* found = profileAt(profile))
        for (const PresenceKey key : found->keys)
            bits |= std::uint64_t(1) << (key & 63);
    return bits;
}

std::span<const KeptSpelling> spellingsOf(std::uint16_t profile)
{
    const Profile* found = profileAt(profile);
    return found ? std::span(found->spellings) : std::span<const KeptSpelling>();
}

std::uint16_t withSpelling(std::uint16_t profile, KeptSpelling spelling)
{
    const Profile* found = profileAt(profile);
    Profile wanted = found ? *found : Profile();
    wanted.spellings.push_back(std::move(spelling));
    return intern(std::move(wanted));
}
