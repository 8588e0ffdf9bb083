#include "host/edit/select_admission.h"

#include "host/db/database.h"
#include "host/edit/editor.h"
#include "host/edit/sysvars.h"
#include "sdk/vcdb_entity.h"
#include "sdk/vcdb_objects.h"
#include "sdk/vcdb_tables.h"

namespace vk::edit {

std::string Tally::leftOut() const
{
    const std::pair<std::size_t, std::string> reasons[] = {
        {duplicate, duplicate == 1 ? "duplicate" : "duplicates"},
        {locked, "on a locked layer"},
        {filtered, "filtered out"},
        {elsewhere, "not in the current space"},
        {gone, "erased"},
    };
    std::string text;
    for (const auto& [count, why] : reasons)
        if (count)
            text += fmt::format("{}{} {}", text.empty() ? "" : ", ", count, why);
    return text;
}

Admission::Admission(Editor& ed, const SelectRequest& request)
    : m_db(ed.db()), m_request(request), m_layers(SeenLayers::of(ed))
{
}

// Parts of an object stand where it does. Members of block definitions stand in no space and count as parts of it.
bool Admission::isElsewhere(const VcDbEntity& entity) const
{
    const VcDbEntity* top = &entity;
    while (const auto* owner = m_db.objectAs<VcDbEntity>(top->ownerId()))
        top = owner;
    return top->isInLayout() && top->ownerId() != m_db.currentSpace();
}

bool Admission::Pass::standsElsewhere(const VcDbEntity& entity)
{
    if (entity.ownerId() != m_lastOwner) {
        m_lastOwner = entity.ownerId();
        m_lastIsElsewhere = m_admission.isElsewhere(entity);
    }
    return m_lastIsElsewhere;
}

bool Admission::Pass::admits(VcDbEntity& entity)
{
    const SelectRequest& request = m_admission.m_request;
    ++m_tally.found;
    if (standsElsewhere(entity))
        ++m_tally.elsewhere;
    else if (request.filter && !request.filter->accepts(entity))
        ++m_tally.filtered;
    else if (request.leavesLocked && m_admission.m_layers.isLocked(entity.layerId()))
        ++m_tally.locked;
    else
        return true;
    return false;
}

bool Admission::Pass::admits(VcDbObjectId id)
{
    if (auto* entity = m_admission.m_db.liveAs<VcDbEntity>(id))
        return admits(*entity);
    ++m_tally.found;
    ++m_tally.gone;
    return false;
}

GroupMembers::GroupMembers(const DatabaseCore& db)
{
    VcDbObjectId id;
    const auto* root = db.liveAs<VcDbDictionary>(db.rootDictionary());
    if (!root || root->getAt(L"ACAD_GROUP", id))
        return;
    const auto* dictionary = db.liveAs<VcDbDictionary>(id);
    std::unique_ptr<VcDbDictionaryIterator> entry(dictionary ? dictionary->newIterator() : nullptr);
    for (; entry && !entry->done(); entry->next()) {
        const auto* group = db.liveAs<VcDbGroup>(entry->objectId());
        if (!group || !group->isSelectable())
            continue;
        for (const VcDbObjectId member : group->members())
            m_groups.emplace(member, group);
    }
}

std::vector<VcDbObjectId> GroupMembers::expanded(const std::vector<VcDbObjectId>& ids) const
{
    if (m_groups.empty())
        return ids;
    SelectionSet all;
    for (const VcDbObjectId id : ids) {
        all.add(id);
        const auto [first, last] = m_groups.equal_range(id);
        for (auto at = first; at != last; ++at)
            for (const VcDbObjectId member : at->second->members())
                if (!member.isErased())
                    all.add(member);
    }
    return all.ids();
}

std::shared_ptr<SelectionSet> admitted(Editor& ed, const SelectRequest& request, const std::vector<VcDbObjectId>& from,
                                       bool quiet)
{
    Tally tally;
    auto set = std::make_shared<SelectionSet>();
    const Admission admission(ed, request);
    Admission::Pass pass(admission, tally);
    for (const VcDbObjectId id : from)
        if (pass.admits(id))
            set->add(id);
    if (quiet)
        return set;
    const std::string leftOut = tally.leftOut();
    ed.printLine(fmt::format("{} found{}", set->size(), leftOut.empty() ? "" : " (" + leftOut + ")"));
    return set;
}

std::shared_ptr<SelectionSet> takePickFirst(Editor& ed, const SelectRequest& request)
{
    if (!ed.pickFirst || ed.vars().integer("PICKFIRST") == 0)
        return nullptr;
    const std::shared_ptr<SelectionSet> offered = std::move(ed.pickFirst);
    ed.pickFirst.reset();
    const auto set = offered->empty() ? nullptr : admitted(ed, request, offered->ids());
    return set && !set->empty() ? set : nullptr;
}

}  // namespace vk::edit
