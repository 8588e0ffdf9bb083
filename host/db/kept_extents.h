// Extents that take long to find - those of texts and blocks - kept until something changes that they hang on.
#pragma once

#include "host/base/api.h"
#include "host/text/text_line.h"
#include "sdk/vcdb_entity.h"

#include <cstdint>
#include <unordered_map>
#include <vector>

class DatabaseCore;

// Whether the extents of other objects may hang on this one: members of definitions, styles, and whatever is not known to
// be harmless. What stands in a layout concerns itself and its owners alone, pictures of dimensions go with their dimension.
VKHOST_API bool othersHangOn(const DatabaseCore& db, const VcDbObject& object);

class KeptExtents {
public:
    // Those of a drawing, by its serial; null where none are kept yet.
    static KeptExtents* existing(std::uint32_t databaseSerial);
    // Made where there are none; null where the object is in no drawing.
    static KeptExtents* of(VcDbObjectId id);
    static void forget(std::uint32_t databaseSerial);

    // Null when they are not known. An empty box is known too: nothing is drawn.
    const VcDbExtents* find(std::uint32_t slot) const
    {
        return slot < m_places.size() && m_places[slot] ? &m_boxes[m_places[slot] - 1] : nullptr;
    }
    void keep(std::uint32_t slot, const VcDbExtents& extents);
    // Looks of a text style, by the slot of its record; of Standard by 0. Null when they are not known.
    const vktext::LineLooks* looks(std::uint32_t style) const
    {
        const auto known = m_looks.find(style);
        return known == m_looks.end() ? nullptr : &known->second;
    }
    void keepLooks(std::uint32_t style, const vktext::LineLooks& looks) { m_looks.insert_or_assign(style, looks); }
    // Called before the object of the slot changes.
    void changing(const DatabaseCore& db, std::uint32_t slot);

private:
    void drop(std::uint32_t slot);
    std::vector<std::uint32_t> m_places;  // by slot, from 1
    std::vector<VcDbExtents> m_boxes;     // in the order in which they were asked for, which is that of a scan
    std::vector<std::uint32_t> m_free;    // places from 1
    std::unordered_map<std::uint32_t, vktext::LineLooks> m_looks;
};

// What a function finds for the object, or what is kept of it.
template <class Find>
Vcad::ErrorStatus keptExtents(VcDbObjectId id, VcDbExtents& extents, Find&& find)
{
    KeptExtents* kept = KeptExtents::of(id);
    if (const VcDbExtents* known = kept ? kept->find(id.slot()) : nullptr)
        extents = *known;
    else if (extents = find(); kept)
        kept->keep(id.slot(), extents);
    return extents.isEmpty() ? Vcad::eNotApplicable : Vcad::eOk;
}
