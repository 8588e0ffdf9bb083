#include "host/commands/layer_states.h"

#include "host/base/unicode.h"
#include "host/commands/layer_marks.h"
#include "host/db/database.h"
#include "sdk/vcdb_objects.h"
#include "sdk/vcdb_records.h"
#include "sdk/vcdb_viewport.h"

namespace vk::commands {

namespace {

using Record = VcDbLayerTableRecord;

constexpr const char* kDictionary = "ACAD_LAYERSTATES";

VcDbDictionary* statesOf(const DatabaseCore& db)
{
    const auto* own = db.liveAs<VcDbDictionary>(db.table(NameTable::Layer).extensionDictionary());
    return own ? db.liveAs<VcDbDictionary>(own->find(kDictionary)) : nullptr;
}

VcDbDictionary& statesFor(DatabaseCore& db)
{
    if (VcDbDictionary* there = statesOf(db))
        return *there;
    db.table(NameTable::Layer).createExtensionDictionary();
    auto* own = db.liveAs<VcDbDictionary>(db.table(NameTable::Layer).extensionDictionary());
    auto made = std::make_unique<VcDbDictionary>();
    made->setTreatElementsAsHard(true);
    VcDbDictionary& states = *made;
    VcDbObjectId id;
    own->setAt(utf8ToWide(kDictionary).c_str(), made.release(), id);
    states.close();
    return states;
}

std::string linetypeName(const DatabaseCore& db, VcDbObjectId id)
{
    const auto* linetype = db.objectAs<VcDbLinetypeTableRecord>(id);
    return linetype ? linetype->nameUtf8() : "Continuous";
}

int flagsOf(const Record& layer)
{
    return (layer.isOff() ? kStateOn : 0) | (layer.isFrozen() ? kStateFrozen : 0) |
           (layer.isLocked() ? kStateLocked : 0) | (layer.isPlottable() ? kStatePlot : 0) |
           (layer.VPDFLT() ? kStateNewViewports : 0);
}

TagList groupsOf(const DatabaseCore& db, const LayerState& state)
{
    TagList groups;
    groups.addInteger(91, state.parts);
    groups.addText(301, state.description);
    groups.addInteger(290, state.ofSheet);
    groups.addText(302, state.current);
    for (const LayerState::Layer& layer : state.layers) {
        groups.addHandle(330, db.handleOf(db.findRecord(NameTable::Layer, layer.name)));
        groups.addInteger(90, layer.flags);
        groups.addInteger(62, layer.colour.colorIndex());
        groups.addInteger(370, layer.lineweight);
        groups.addHandle(331, db.handleOf(db.findRecord(NameTable::Linetype, layer.linetype)));
        groups.addText(1, layer.plotStyle);
        groups.addInteger(440, layer.transparency);
        if (layer.colour.isByColor())
            groups.addInteger(92, layer.colour.rgb());
    }
    return groups;
}

std::string recordName(const DatabaseCore& db, std::int64_t handle)
{
    const auto* record = db.objectAs<VcDbSymbolTableRecord>(db.findHandle(std::uint64_t(handle)));
    return record ? record->nameUtf8() : std::string();
}

}

void LayerState::take(const Tag& tag)
{
    const bool isText = tag.form == Tag::Form::Utf8, isNumber = tag.form == Tag::Form::Integer;
    if (isText && tag.code == 8)
        layers.emplace_back().name = tag.view();
    else if (isNumber && tag.code == 91)
        parts = int(tag.integer);
    else if (isNumber && tag.code == 290)
        ofSheet = tag.integer != 0;
    else if (isText && tag.code == 301)
        description = tag.view();
    else if (isText && tag.code == 302)
        current = tag.view();
    else if (!layers.empty())
        layers.back().take(tag);
}

void LayerState::Layer::take(const Tag& tag)
{
    const bool isText = tag.form == Tag::Form::Utf8, isNumber = tag.form == Tag::Form::Integer;
    if (isNumber && tag.code == 90)
        flags = int(tag.integer);
    else if (isNumber && tag.code == 62)
        colour = VcCmColor::fromIndex(std::int16_t(tag.integer));
    else if (isNumber && tag.code == 92)
        colour.setTrueColor(std::uint32_t(tag.integer) & 0xffffff);
    else if (isNumber && tag.code == 370)
        lineweight = int(tag.integer);
    else if (isText && tag.code == 6)
        linetype = tag.view();
    else if (isText && (tag.code == 1 || tag.code == 2))
        plotStyle = tag.view();
    else if (isNumber && tag.code == 440)
        transparency = tag.integer;
}

LayerState layerStateNow(const DatabaseCore& db, const VcDbViewport* viewport, std::string name, std::string current)
{
    LayerState state;
    state.ofSheet = viewport != nullptr;
    state.name = std::move(name);
    state.current = std::move(current);
    for (const VcDbObjectId id : db.table(NameTable::Layer).records()) {
        const auto& layer = *db.objectAs<Record>(id);
        const int inViewport = viewport && viewport->isLayerFrozenInViewport(id) ? kStateViewport : 0;
        state.layers.push_back({layer.nameUtf8(), flagsOf(layer) | inViewport, layer.color(), layer.lineWeight(),
                                linetypeName(db, layer.linetypeObjectId()), plotStyleOf(db, layer),
                                transparencyOf(layer)});
    }
    return state;
}

std::vector<std::string> layerStateNames(const DatabaseCore& db)
{
    std::vector<std::string> names;
    if (const VcDbDictionary* states = statesOf(db))
        for (const auto& [name, id] : states->liveEntries())
            names.push_back(name);
    return names;
}

std::optional<LayerState> layerState(const DatabaseCore& db, const std::string& name)
{
    const VcDbDictionary* states = statesOf(db);
    const auto* record = states ? db.liveAs<VcDbXrecord>(states->find(name)) : nullptr;
    if (!record)
        return std::nullopt;
    LayerState state;
    state.name = states->nameOf(record->objectId());
    // Records name layers and linetypes by their handles or, from older programs, by their names.
    for (const Tag& tag : record->data())
        if (tag.code == 330 || tag.code == 331)
            state.take(Tag::ofChars(tag.code == 330 ? 8 : 6, Tag::Form::Utf8, recordName(db, tag.integer)));
        else
            state.take(tag);
    std::erase_if(state.layers, [](const LayerState::Layer& layer) { return layer.name.empty(); });
    return state;
}

void putLayerState(DatabaseCore& db, const LayerState& state)
{
    VcDbDictionary& states = statesFor(db);
    if (auto* there = db.liveAs<VcDbXrecord>(states.find(state.name))) {
        there->assertWriteEnabled();
        return there->setData(groupsOf(db, state));
    }
    auto record = std::make_unique<VcDbXrecord>();
    record->setData(groupsOf(db, state));
    VcDbXrecord* added = record.get();
    VcDbObjectId id;
    if (!states.setAt(utf8ToWide(state.name).c_str(), record.get(), id)) {
        record.release();
        added->close();
    }
}

bool removeLayerState(DatabaseCore& db, const std::string& name)
{
    VcDbDictionary* states = statesOf(db);
    auto* record = states ? db.liveAs<VcDbXrecord>(states->find(name)) : nullptr;
    if (!record)
        return false;
    record->erase();
    return true;
}

namespace {

void apply(DatabaseCore& db, const LayerState::Layer& from, int parts, Record& layer, std::vector<std::string>& missing)
{
    const auto has = [&](int part) { return (from.flags & part) != 0; };
    if (parts & kStateOn)
        layer.setIsOff(has(kStateOn));
    if (parts & kStateFrozen)
        layer.setIsFrozen(has(kStateFrozen));
    if (parts & kStateLocked)
        layer.setIsLocked(has(kStateLocked));
    if (parts & kStatePlot)
        layer.setIsPlottable(has(kStatePlot));
    if (parts & kStateNewViewports)
        layer.setVPDFLT(has(kStateNewViewports));
    if (parts & kStateColour)
        layer.setColor(from.colour);
    if (parts & kStateLineweight)
        layer.setLineWeight(VcDb::LineWeight(from.lineweight));
    // Where plot styles go by colour, layers have none of their own.
    const bool hasPlotStyles = db.header().integer("$PSTYLEMODE", 1) == 0;
    if (parts & kStatePlotStyle && hasPlotStyles && !from.plotStyle.empty() &&
        !setPlotStyleOf(db, layer, from.plotStyle))
        missing.push_back(from.plotStyle);
    if (parts & kStateTransparency && from.transparency != transparencyOf(layer))
        setTransparencyValue(layer, from.transparency);
    if (!(parts & kStateLinetype))
        return;
    if (const VcDbObjectId linetype = db.findRecord(NameTable::Linetype, from.linetype); !linetype.isNull())
        layer.setLinetypeObjectId(linetype);
    else
        missing.push_back(from.linetype);
}

}

std::vector<std::string> applyLayerState(DatabaseCore& db, VcDbViewport* viewport, const LayerState& state)
{
    std::vector<std::string> missing;
    VcDbObjectIdArray frozen, thawed;
    for (const LayerState::Layer& layer : state.layers) {
        const VcDbObjectId id = db.findRecord(NameTable::Layer, layer.name);
        auto* record = db.liveAs<Record>(id);
        if (!record) {
            missing.push_back(layer.name);
            continue;
        }
        apply(db, layer, state.parts, *record, missing);
        (layer.flags & kStateViewport ? frozen : thawed).push_back(id);
    }
    if (viewport && state.ofSheet && (state.parts & kStateViewport)) {
        viewport->freezeLayersInViewport(frozen);
        viewport->thawLayersInViewport(thawed);
    }
    return missing;
}

}  // namespace vk::commands
