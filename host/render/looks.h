// What layer, colour, linetype and lineweight an entity has where it is drawn: BYLAYER and BYBLOCK followed, layer 0 of a
// block taken from its reference.
#pragma once

#include "host/db/entity_props.h"
#include "host/base/api.h"

#include <optional>
#include <unordered_map>
#include <unordered_set>

class DatabaseCore;
class VcDbLinetypeTableRecord;
class VcDbLayerTableRecord;

namespace vk::render {

struct ResolvedLook {
    bool visible = true;
    bool frozen = false;      // of references: with all that they hold
    bool foreground = false;  // colour 7, which is seen on any page
    std::uint32_t argb = 0xff000000;
    const VcDbLinetypeTableRecord* linetype = nullptr;  // null: continuous
    double linetypeScale = 1;
    double weightMm = 0.25;
    VcDbObjectId layer;  // that the content of a reference on layer 0 is on
};

// What one viewport shows a layer with instead of what it has.
struct LayerOverride {
    std::optional<VcCmColor> colour;
    std::optional<VcDbObjectId> linetype;
    std::optional<int> lineWeight;
    std::optional<std::uint32_t> opacity;
    bool operator==(const LayerOverride&) const = default;
};

// How one view of the drawing is coloured and which layers it shows.
struct ViewLooks {
    bool darkPage = false;
    std::unordered_set<VcDbObjectId> frozenLayers;  // in this viewport, beside those frozen everywhere
    std::unordered_map<VcDbObjectId, LayerOverride> overrides;
};

// Of a number whose highest byte says by layer, by block, or a value of its own, for a value: its lowest byte.
std::optional<std::uint32_t> opacityOfPacked(std::int64_t bits);

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
    // What BYLAYER means on a layer in this view.
    struct LayerLook {
        VcCmColor colour;
        VcDbObjectId linetype;
        int lineWeight;
        std::uint32_t opacity;
    };
    std::optional<LayerLook> lookOf(const VcDbLayerTableRecord* layer) const;
    Colour plainColour(const VcCmColor& colour) const;
    Colour layerColour(const VcCmColor& colour) const;
    Colour colourOf(const VcCmColor& colour, const std::optional<LayerLook>& layer,
                    const ResolvedLook* reference) const;
    const VcDbLinetypeTableRecord* linetypeOf(VcDbObjectId id, const std::optional<LayerLook>& layer,
                                              const ResolvedLook* reference) const;
    double weightOf(int weight, const std::optional<LayerLook>& layer, const ResolvedLook* reference) const;
    static std::uint32_t withTransparency(std::uint32_t argb, const EntityProps& props,
                                          const std::optional<LayerLook>& layer, const ResolvedLook* reference);

    const DatabaseCore& m_db;
    ViewLooks m_view;
    VcDbObjectId m_layer0, m_byLayer, m_byBlock, m_continuous;
    double m_defaultWeightMm;
    std::unordered_map<const EntityProps*, ResolvedLook> m_known;
};

}  // namespace vk::render
