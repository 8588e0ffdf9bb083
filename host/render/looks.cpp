#include "host/render/looks.h"

#include "host/db/database.h"
#include "host/db/extras.h"
#include "sdk/vcdb_records.h"

#include <algorithm>

namespace vk::render {

LookResolver::LookResolver(const DatabaseCore& db, ViewLooks view) : m_db(db), m_view(std::move(view))
{
    m_layer0 = db.findRecord(NameTable::Layer, "0");
    m_byLayer = db.findRecord(NameTable::Linetype, "ByLayer");
    m_byBlock = db.findRecord(NameTable::Linetype, "ByBlock");
    m_continuous = db.findRecord(NameTable::Linetype, "Continuous");
    const auto weight = db.header().integer("$LWDEFAULT", 25);
    m_defaultWeightMm = double(weight >= 0 && weight <= 211 ? weight : 25) / 100;
}

LookResolver::Colour LookResolver::plainColour(const VcCmColor& colour) const
{
    if (!colour.isByColor() && colour.colorIndex() == VcCmColor::kAciForeground)
        return {m_view.darkPage ? 0xffffffffu : 0xff000000u, true};
    return {0xff000000u | (colour.rgb() & 0xffffff), false};
}

// Programs that know true colours only write colour 7 of a layer as white or black; what a whole layer would lose on a page
// of that very colour is seen in the other one.
LookResolver::Colour LookResolver::layerColour(const VcCmColor& colour) const
{
    if (colour.isByLayer() || colour.isByBlock())
        return plainColour(VcCmColor::fromIndex(VcCmColor::kAciForeground));
    const bool isPages = colour.isByColor() && (colour.rgb() & 0xffffff) == (m_view.darkPage ? 0x000000u : 0xffffffu);
    return plainColour(isPages ? VcCmColor::fromIndex(VcCmColor::kAciForeground) : colour);
}

LookResolver::Colour LookResolver::colourOf(const VcCmColor& colour, const std::optional<LayerLook>& layer,
                                            const ResolvedLook* reference) const
{
    if (colour.isByLayer() && layer)
        return layerColour(layer->colour);
    if (colour.isByBlock() && reference)
        return {reference->argb | 0xff000000u, reference->foreground};
    if (colour.isByLayer() || colour.isByBlock())
        return plainColour(VcCmColor::fromIndex(VcCmColor::kAciForeground));
    return plainColour(colour);
}

std::uint32_t LookResolver::argbOf(const VcCmColor& colour, const ResolvedLook& look) const
{
    if (colour.isByLayer() || colour.isByBlock())
        return look.argb;
    return (plainColour(colour).argb & 0xffffff) | (look.argb & 0xff000000u);
}

const VcDbLinetypeTableRecord* LookResolver::linetypeOf(VcDbObjectId id, const std::optional<LayerLook>& layer,
                                                        const ResolvedLook* reference) const
{
    if (id == m_byBlock && !id.isNull())
        return reference ? reference->linetype : nullptr;
    if ((id.isNull() || id == m_byLayer) && layer)
        id = layer->linetype;
    if (id == m_continuous)
        return nullptr;
    const auto* record = m_db.liveAs<VcDbLinetypeTableRecord>(id);
    return record && !record->dashes().empty() && record->patternLength() > 0 ? record : nullptr;
}

double LookResolver::weightOf(int weight, const std::optional<LayerLook>& layer, const ResolvedLook* reference) const
{
    if (weight == VcDb::kLnWtByBlock && reference)
        return reference->weightMm;
    if (weight == VcDb::kLnWtByLayer && layer)
        weight = layer->lineWeight;
    return weight >= 0 && weight <= VcDb::kLnWt211 ? weight / 100.0 : m_defaultWeightMm;
}

namespace {

enum TransparencyKind : std::uint32_t { kTransparencyByBlock = 1, kTransparencyByValue = 2 };

}

std::optional<std::uint32_t> opacityOfPacked(std::int64_t bits)
{
    if (std::uint32_t(bits) >> 24 != kTransparencyByValue)
        return std::nullopt;
    return std::uint32_t(bits) & 0xff;
}

namespace {

// Layers have theirs in extended data.
std::uint32_t opacityOf(const VcDbLayerTableRecord& layer)
{
    if (!layer.extras())
        return 0xff;
    bool own = false;
    for (const Tag& tag : layer.extras()->xdata) {
        if (tag.code == 1001)
            own = tag.form == Tag::Form::Utf8 && tag.view() == "AcCmTransparency";
        else if (own && tag.code == 1071 && tag.form == Tag::Form::Integer)
            return opacityOfPacked(tag.integer).value_or(0xff);
    }
    return 0xff;
}

}

std::uint32_t LookResolver::withTransparency(std::uint32_t argb, const EntityProps& props,
                                             const std::optional<LayerLook>& layer, const ResolvedLook* reference)
{
    const std::uint32_t kind = props.hasTransparency ? std::uint32_t(props.transparency) >> 24 : 0;
    std::uint32_t alpha = 0xff;
    if (kind == kTransparencyByValue)
        alpha = std::uint32_t(props.transparency) & 0xff;
    else if (kind == kTransparencyByBlock)
        alpha = reference ? reference->argb >> 24 : 0xff;
    else if (layer)
        alpha = layer->opacity;
    return (argb & 0xffffff) | alpha << 24;
}

std::optional<LookResolver::LayerLook> LookResolver::lookOf(const VcDbLayerTableRecord* layer) const
{
    if (!layer)
        return std::nullopt;
    LayerLook look{layer->color(), layer->linetypeObjectId(), layer->lineWeight(), opacityOf(*layer)};
    const auto at = m_view.overrides.find(layer->objectId());
    if (at == m_view.overrides.end())
        return look;
    const LayerOverride& own = at->second;
    look.colour = own.colour.value_or(look.colour);
    look.linetype = own.linetype.value_or(look.linetype);
    look.lineWeight = own.lineWeight.value_or(look.lineWeight);
    look.opacity = own.opacity.value_or(look.opacity);
    return look;
}

ResolvedLook LookResolver::resolve(const EntityProps& props, const ResolvedLook* reference) const
{
    ResolvedLook look;
    const bool inherits = reference && (props.layer == m_layer0 || props.layer.isNull());
    look.layer = inherits ? reference->layer : props.layer.isNull() ? m_layer0 : props.layer;
    const auto* layer = m_db.objectAs<VcDbLayerTableRecord>(look.layer);
    if (layer) {
        look.frozen = layer->isFrozen() || m_view.frozenLayers.contains(look.layer);
        look.visible = !layer->isOff() && !look.frozen;
    }
    const auto byLayer = lookOf(layer);
    const Colour colour = colourOf(props.color, byLayer, reference);
    look.argb = withTransparency(colour.argb, props, byLayer, reference);
    look.foreground = colour.foreground;
    look.linetype = linetypeOf(props.linetype, byLayer, reference);
    look.linetypeScale = props.linetypeScale > 0 ? props.linetypeScale : 1;
    look.weightMm = weightOf(props.lineWeight, byLayer, reference);
    return look;
}

const ResolvedLook& LookResolver::atTop(const EntityProps& props)
{
    const auto at = m_known.find(&props);
    return at != m_known.end() ? at->second : m_known.emplace(&props, resolve(props, nullptr)).first->second;
}

}  // namespace vk::render
