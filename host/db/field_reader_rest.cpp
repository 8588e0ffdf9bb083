// What an object keeps beside its fields: groups that no field took, and which stood at their default.
#include "host/db/extras.h"
#include "host/db/field_reader.h"

// Where a run of groups that no field took goes.
struct FieldReader::LeftRun {
    std::string_view subclass;
    std::uint16_t occurrence;
    std::int16_t anchorCode;
    std::uint32_t anchorCount;
};

UnclaimedGroups& FieldReader::groupsAt(std::vector<UnclaimedGroups>& out, const LeftRun& run)
{
    UnclaimedGroups& made = out.emplace_back();
    made.subclass = run.subclass;
    made.occurrence = run.occurrence;
    made.anchorCode = run.anchorCode;
    made.anchorCount = run.anchorCount;
    return made;
}

std::vector<UnclaimedGroups> FieldReader::leftGroups()
{
    std::vector<UnclaimedGroups> out;
    std::unordered_map<std::uint32_t, std::uint32_t> written;  // how often a call has taken a code so far
    LeftRun known{{}, 0, UnclaimedGroups::kAtEnd, 0};
    for (const Window& window : m_windows) {
        UnclaimedGroups* run = nullptr;
        LeftRun at = known;
        std::uint32_t first = window.begin;
        if (window.opened)
            at = known = {window.marker, window.occurrence, UnclaimedGroups::kAtEnd, 0};
        else
            --first;  // with its marker
        if (window.opened)
            at.anchorCode = UnclaimedGroups::kAtStart;
        for (std::uint32_t i = first; i < window.end; ++i) {
            const Tag& tag = m_tags[i];
            if (tag.taken && tag.taken != kPassedOver) {
                const Call& call = m_calls[tag.taken - 1u];
                at = {call.marker, call.occurrence, tag.code, ++written[presenceKey(tag.taken, tag.code)]};
                run = nullptr;
                continue;
            }
            if (!run)
                run = &groupsAt(out, at);
            m_values.keep(tag, run->tags);
        }
    }
    return out;
}

std::uint16_t FieldReader::profile()
{
    if (!m_names.spellings().empty())
        return internPresence(m_atDefault, m_names.spellings());
    std::uint32_t hash = 0;
    for (const PresenceKey key : m_atDefault)
        hash = hash * 31 + key + (key >> 16);
    SeenProfile& seen = m_seenProfiles[hash % m_seenProfiles.size()];
    if (seen.atDefault != m_atDefault) {
        seen.atDefault = m_atDefault;
        seen.number = internPresence(m_atDefault);
    }
    return seen.number;
}

void FieldReader::finish(VcDbObject& object)
{
    object.setPresence(profile());
    m_names.finish(object);
    if (ObjectExtras* extras = object.extras())
        extras->unclaimed.clear();
    if (!tookAll())
        object.makeExtras().unclaimed = leftGroups();
}

void FieldReader::rest(TagList& groups)
{
    TagList all;
    for (std::uint32_t i = m_scope.begin; i < m_scope.end; ++i) {
        if (m_tags[i].taken)
            continue;
        m_values.keep(m_tags[i], all);
        mark(m_tags[i]);
    }
    m_scope.cursor = m_scope.end;
    if (all.empty())
        return;
    all.shrink();
    groups = std::move(all);
}
