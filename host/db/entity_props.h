// Properties that most entities share, interned: an entity holds one small index.
#pragma once

#include "sdk/vccm.h"
#include "sdk/vcdb_object.h"

#include <string>
#include <unordered_map>
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

class EntityPropsTable {
public:
    EntityPropsTable();
    const EntityProps& operator[](std::uint32_t index) const { return *m_items[index]; }
    std::uint32_t intern(const EntityProps& props);

private:
    struct Hash {
        std::size_t operator()(const EntityProps& p) const noexcept;
    };
    std::unordered_map<EntityProps, std::uint32_t, Hash> m_index;
    std::vector<const EntityProps*> m_items;
    std::uint32_t m_last = 0;
};
