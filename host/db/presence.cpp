#include "host/db/presence.h"

#include <algorithm>
#include <array>
#include <map>
#include <memory>
#include <mutex>

namespace {

using Keys = std::vector<PresenceKey>;

// Slots are written once, before their number is handed out, so that reading needs no lock.
struct Profiles {
    std::mutex mutex;
    std::map<Keys, std::uint16_t> numbers;
    std::array<const Keys*, 65536> byNumber{};
    std::size_t count = 1;
};

Profiles& profiles()
{
    static auto* all = new Profiles;
    return *all;
}

}

std::uint16_t internPresence(std::vector<PresenceKey>& keys)
{
    if (keys.empty())
        return 0;
    std::sort(keys.begin(), keys.end());
    keys.erase(std::unique(keys.begin(), keys.end()), keys.end());

    Profiles& all = profiles();
    const std::lock_guard lock(all.mutex);
    if (const auto found = all.numbers.find(keys); found != all.numbers.end())
        return found->second;
    if (all.count == all.byNumber.size())
        return 0;
    const auto made = all.numbers.emplace(keys, static_cast<std::uint16_t>(all.count)).first;
    all.byNumber[all.count] = &made->first;
    return static_cast<std::uint16_t>(all.count++);
}

bool presenceHas(std::uint16_t profile, PresenceKey key)
{
    const Keys* keys = profile ? profiles().byNumber[profile] : nullptr;
    return keys && std::binary_search(keys->begin(), keys->end(), key);
}
