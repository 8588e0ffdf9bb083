// Properties that most entities share, interned: an entity holds one small index.
#pragma once

#include "sdk/vccm.h"
#include "sdk/vcdb_object.h"

#include <deque>
#include <string>
#include <vector>

struct EntityProps {
    VcDbObjectId layer, linetype, material, plotStyle, visualStyle, faceVisualStyle, edgeVisualStyle;
    VcCmColor color;
    std::string colorBook;
    double linetypeScale = 1.0;
    std::int32_t transparency = 0;  // group 440 as it stands
    std::int16_t lineWeight = -1;
    std::int16_t invisible = 0;
    std::int16_t shadow = 0;
    std::int16_t plotStyleType = 0;
    bool hasTransparency = false;

    bool operator==(const EntityProps&) const = default;
};

// A drawing may have as many combinations as layers times colours, so the table is compact: positions by hash, and the
// hashes themselves beside the properties.
class EntityPropsTable {
public:
    EntityPropsTable();
    const EntityProps& operator[](std::uint32_t index) const { return *m_items[index]; }
    std::uint32_t intern(const EntityProps& props);

private:
    std::uint32_t add(const EntityProps& props, std::uint32_t hash);
    void grow();

    std::deque<EntityProps> m_storage;
    std::vector<const EntityProps*> m_items;
    std::vector<std::uint32_t> m_hashes;
    std::vector<std::uint32_t> m_places;  // index + 1, 0 where nothing is
};
