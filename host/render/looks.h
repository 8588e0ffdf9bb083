// What layer, colour, linetype and lineweight an entity has where it is drawn: BYLAYER and BYBLOCK followed, layer 0 of a
// block taken from its reference.
#pragma once

#include "host/db/entity_props.h"
#include "host/base/api.h"

#include <unordered_map>
#include <unordered_set>

class DatabaseCore;
class VcDbLinetypeTableRecord;
class VcDbLayerTableRecord;

namespace vk::render {

struct ResolvedLook {
    bool visible = true;
    bool frozen = false;              // of references: with all that they hold
    bool foreground = false;          // colour 7, which is seen on any page
    std::uint32_t argb = 0xff000000;
    const VcDbLinetypeTableRecord* linetype = nullptr;  // null: continuous
    double linetypeScale = 1;
    double weightMm = 0.25;
    VcDbObjectId layer;               // that the content of a reference on layer 0 is on
};

// How one view of the drawing is coloured and which layers it shows.
struct ViewLooks {
    bool darkPage = false;
    std::unordered_set<VcDbObjectId> frozenLayers;  // in this viewport, beside those frozen everywhere
};

class VKHOST_API LookResolver {
public:
    LookResolver(const DatabaseCore& db, ViewLooks view);
    // Inside a reference the look of the reference is given.
    ResolvedLook resolve(const EntityProps& props, const ResolvedLook* reference) const;
    // Kept by the address of the properties, which must be those of the drawing.
    const ResolvedLook& atTop(const EntityProps& props);
    // Of colours that are not an entity's, such as those of a gradient.
    std::uint32_t argbOf(const VcCmColor& colour, const ResolvedLook& look) const;

private:
    struct Colour {
        std::uint32_t argb;
        bool foreground;
    };
    Colour plainColour(const VcCmColor& colour) const;
    Colour layerColour(const VcCmColor& colour) const;
    Colour colourOf(const VcCmColor& colour, const VcDbLayerTableRecord* layer, const ResolvedLook* reference) const;
    const VcDbLinetypeTableRecord* linetypeOf(VcDbObjectId id, const VcDbLayerTableRecord* layer, const ResolvedLook* reference) const;
    double weightOf(int weight, const VcDbLayerTableRecord* layer, const ResolvedLook* reference) const;

    const DatabaseCore& m_db;
    ViewLooks m_view;
    VcDbObjectId m_layer0, m_byLayer, m_byBlock, m_continuous;
    double m_defaultWeightMm;
    std::unordered_map<const EntityProps*, ResolvedLook> m_known;
};

}  // namespace vk::render
