// Properties that most entities share, interned: an entity holds one small index.
#pragma once

#include "sdk/vccm.h"
#include "sdk/vcdb_object.h"

#include <memory>
#include <string>
#include <vector>

// What differs most stands first: comparing ends there, and the rest is not fetched.
struct EntityProps {
    VcDbObjectId layer, linetype;
    VcCmColor color;
    double linetypeScale = 1.0;
    VcDbObjectId material, plotStyle, visualStyle, faceVisualStyle, edgeVisualStyle;
    std::string colorBook;
    std::int32_t transparency = 0;  // group 440 as it stands
    std::int16_t lineWeight = -1;
    std::int16_t invisible = 0;
    std::int16_t shadow = 0;
    std::int16_t plotStyleType = 0;
    bool hasTransparency = false;

    bool operator==(const EntityProps&) const = default;
};

// A drawing may have as many combinations as layers times colours, and a look-up costs what it fetches: the positions by
// hash hold the hashes too, and the properties stay where they were put.
class EntityPropsTable {
public:
    EntityPropsTable();
    const EntityProps& operator[](std::uint32_t index) const { return m_chunks[index / kChunk][index % kChunk]; }
    std::uint32_t intern(const EntityProps& props);

private:
    struct Place {
        std::uint32_t hash;
        std::uint32_t index;  // from 1; 0 where nothing is
    };
    static constexpr std::uint32_t kChunk = 256;

    std::uint32_t add(const EntityProps& props, std::uint32_t hash);
    void grow();
    Place& freePlace(std::uint32_t hash);

    std::vector<std::unique_ptr<EntityProps[]>> m_chunks;
    std::uint32_t m_count = 0;
    std::vector<Place> m_places;
};
