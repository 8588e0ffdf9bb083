// VPLAYER - freezes layers in single viewports.
#include "host/base/wildcard.h"
#include "host/commands/families.h"
#include "host/commands/viewport_prompts.h"
#include "host/db/database.h"
#include "host/db/layouts.h"
#include "host/db/record_names.h"
#include "host/edit/viewports.h"
#include "sdk/vcdb_objects.h"
#include "sdk/vcdb_tables.h"
#include "sdk/vcdb_viewport.h"

namespace vk::commands {

namespace {

using namespace edit;
using Layer = VcDbLayerTableRecord;

std::vector<VcDbObjectId> askLayers(Editor& ed, std::string_view prompt)
{
    const std::string names = ed.word(prompt);
    if (const VcDbObjectId exact = ed.db().findRecord(NameTable::Layer, names); !exact.isNull())
        return {exact};
    std::vector<VcDbObjectId> layers;
    const Wildcard pattern(names);
    for (const VcDbObjectId id : ed.db().table(NameTable::Layer).records())
        if (!names.empty() && pattern.matches(ed.db().objectAs<Layer>(id)->nameUtf8()))
            layers.push_back(id);
    if (layers.empty())
        ed.printLine(fmt::format("Cannot find layer \"{}\".", names));
    return layers;
}

// Properties of their own

// Where a layer keeps what it is in single viewports: a run of groups between brackets for each, which names its viewport.
bool isOverride(std::string_view entry) { return entry.starts_with("ADSK_XREC_LAYER_") && entry.ends_with("_OVR"); }

// The groups without the runs of the viewports; how many they were is added to the count.
TagList without(const TagList& groups, const std::vector<std::uint64_t>& viewports, std::size_t& count)
{
    TagList kept, run;
    bool ofViewport = false;
    const auto settle = [&] {
        count += ofViewport;
        if (!std::exchange(ofViewport, false))
            kept.append(run);
        run.clear();
    };
    for (const Tag& tag : groups) {
        ofViewport |= tag.code == 335 &&
                      std::find(viewports.begin(), viewports.end(), std::uint64_t(tag.integer)) != viewports.end();
        run.add(tag);
        if (tag.code == 102 && tag.view() == "}")
            settle();
    }
    settle();
    return kept;
}

std::vector<VcDbViewport*> askViewports(Editor& ed)
{
    VcDbViewport* current = activeViewport(ed);
    const std::string which = current ? ed.keyword("Enter an option [All/Select/Current/eXcept current] <Current>",
                                                   "All Select Current eXcept", "Current")
                                      : ed.keyword("Enter an option [All/Select] <All>", "All Select", "All");
    if (which == "Current")
        return {current};
    if (which == "Select") {
        requireSheet(ed);
        auto chosen = selectViewports(ed);
        if (current)
            setActiveViewport(ed, *current);
        return chosen;
    }
    std::vector<VcDbViewport*> viewports = allViewports(ed);
    if (which == "eXcept")
        std::erase(viewports, current);
    return viewports;
}

void freeze(Editor& ed)
{
    const auto layers = askLayers(ed, "Enter layer name(s) to freeze");
    if (!layers.empty())
        for (VcDbViewport* viewport : askViewports(ed))
            viewport->freezeLayersInViewport(layers);
}

void thaw(Editor& ed)
{
    const auto layers = askLayers(ed, "Enter layer name(s) to thaw");
    if (!layers.empty())
        for (VcDbViewport* viewport : askViewports(ed))
            viewport->thawLayersInViewport(layers);
}

// Back to what new viewports begin with.
void reset(Editor& ed)
{
    const auto layers = askLayers(ed, "Enter layer name(s) to reset");
    if (layers.empty())
        return;
    for (VcDbViewport* viewport : askViewports(ed))
        for (const VcDbObjectId id : layers)
            ed.db().objectAs<Layer>(id)->VPDFLT() ? viewport->freezeLayersInViewport({id})
                                                  : viewport->thawLayersInViewport({id});
}

// New layers that no viewport shows, present or to come.
void makeFrozen(Editor& ed)
{
    const std::string names = ed.word("Enter name(s) of new layers frozen in all viewports");
    for (std::size_t at = 0; at < names.size();) {
        const std::size_t end = std::min(names.find(',', at), names.size());
        const std::string name = names.substr(at, end - at);
        at = end + 1;
        if (!isLegalRecordName(name) || !ed.db().findRecord(NameTable::Layer, name).isNull()) {
            ed.printLine(fmt::format("\"{}\" is no name for a layer, or is taken.", name));
            continue;
        }
        auto made = std::make_unique<Layer>();
        made->setNameUtf8(name);
        Layer& layer = *made;
        if (ed.db().table(NameTable::Layer).add(made.get()))
            throw CommandError{"The layer cannot be made."};
        made.release()->close();
        layer.setVPDFLT(true);
        for (VcDbViewport* viewport : allViewports(ed))
            viewport->freezeLayersInViewport({layer.objectId()});
    }
}

void visibilityDefault(Editor& ed)
{
    const auto layers = askLayers(ed, "Enter layer name(s) to change viewport visibility");
    if (layers.empty())
        return;
    const bool frozen = ed.keyword("Enter a viewport visibility option [Frozen/Thawed] <Frozen>", "Frozen Thawed",
                                   "Frozen") == "Frozen";
    for (const VcDbObjectId id : layers)
        ed.db().objectAs<Layer>(id)->setVPDFLT(frozen);
}

void listFrozen(Editor& ed)
{
    std::vector<VcDbViewport*> viewports = activeViewport(ed) ? std::vector{activeViewport(ed)} : allViewports(ed);
    for (const VcDbViewport* viewport : viewports) {
        std::string names;
        for (const VcDbObjectId id : viewport->frozenLayers())
            if (const auto* layer = ed.db().liveAs<Layer>(id))
                names += (names.empty() ? "" : ", ") + layer->nameUtf8();
        ed.printLine(
            fmt::format("Layers frozen in viewport {}: {}", viewport->number(), names.empty() ? "none" : names));
    }
}

void viewportLayers(Editor& ed)
{
    if (!isOnSheet(ed))
        throw CommandError{"Viewports stand on layouts; the model's own tab is shown. Set TILEMODE to 0 first."};
    Question question;
    question.kind = Question::Kind::Keyword;
    question.prompt = "Enter an option [?/Freeze/Thaw/Reset/Newfrz/Vpvisdflt]: ";
    question.init.keywords = parseKeywords("? Freeze Thaw Reset Newfrz Vpvisdflt");
    question.hasDefault = true;
    for (;;) {
        const Answer a = ed.ask(question);
        if (a.status == Answer::Status::Enter)
            return;
        a.text == "?"        ? listFrozen(ed)
        : a.text == "Freeze" ? freeze(ed)
        : a.text == "Thaw"   ? thaw(ed)
        : a.text == "Reset"  ? reset(ed)
        : a.text == "Newfrz" ? makeFrozen(ed)
                             : visibilityDefault(ed);
    }
}

const HostCommand kCommands[] = {
    {"VPLAYER", nullptr, kPlain, "Freezes and thaws layers in single viewports.", viewportLayers},
};

}

std::size_t dropLayerOverrides(Editor& ed, const std::vector<VcDbViewport*>& viewports)
{
    std::vector<std::uint64_t> handles;
    for (const VcDbViewport* viewport : viewports)
        handles.push_back(ed.db().handleOf(viewport->objectId()));
    std::size_t count = 0;
    for (const VcDbObjectId id : ed.db().table(NameTable::Layer).records()) {
        const auto* own = ed.db().liveAs<VcDbDictionary>(ed.db().objectAs<Layer>(id)->extensionDictionary());
        if (!own)
            continue;
        for (const auto& [name, entry] : own->liveEntries()) {
            auto* record = isOverride(name) ? ed.db().liveAs<VcDbXrecord>(entry) : nullptr;
            const std::size_t before = count;
            TagList left = record ? without(record->data(), handles, count) : TagList();
            if (count == before)
                continue;
            left.empty() ? void(record->erase()) : record->setData(std::move(left));
        }
    }
    return count;
}

std::span<const HostCommand> viewportLayerCommands() { return kCommands; }

}
