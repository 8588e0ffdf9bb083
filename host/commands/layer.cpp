// -LAYER - makes layers and changes their states and properties. Names take wild-cards and comma lists.
#include "host/base/numbers.h"
#include "host/base/unicode.h"
#include "host/base/wildcard.h"
#include "host/commands/drawing.h"
#include "host/commands/families.h"
#include "host/commands/layer_marks.h"
#include "host/commands/layer_state_option.h"
#include "host/commands/option_loop.h"
#include "host/db/database.h"
#include "host/db/record_names.h"
#include "host/edit/sysvars.h"
#include "sdk/vcdb_records.h"

namespace vk::commands {

namespace {

using namespace edit;
using Layer = VcDbLayerTableRecord;

Layer* currentLayer(Editor& ed) { return ed.db().liveAs<Layer>(ed.drawing().clayer()); }
Layer* layerNamed(Editor& ed, std::string_view name)
{
    return ed.db().liveAs<Layer>(ed.db().findRecord(NameTable::Layer, name));
}

std::vector<Layer*> allLayers(Editor& ed)
{
    std::vector<Layer*> layers;
    for (const VcDbObjectId id : ed.db().table(NameTable::Layer).records())
        layers.push_back(ed.db().objectAs<Layer>(id));
    return layers;
}

// A text that is the name of a layer as it stands means that layer alone.
std::vector<Layer*> matching(Editor& ed, const std::string& names)
{
    if (Layer* exact = layerNamed(ed, names))
        return {exact};
    const Wildcard pattern(names);
    std::vector<Layer*> layers;
    for (Layer* layer : allLayers(ed))
        if (pattern.matches(layer->nameUtf8()))
            layers.push_back(layer);
    if (layers.empty())
        ed.printLine(fmt::format("Cannot find layer \"{}\".", names));
    return layers;
}

std::vector<Layer*> askLayers(Editor& ed, std::string_view prompt, bool currentByDefault = false)
{
    const std::string names =
        ed.word(prompt, currentByDefault ? std::optional(currentLayer(ed)->nameUtf8()) : std::nullopt);
    return names.empty() ? std::vector<Layer*>() : matching(ed, names);
}

Layer* makeLayer(Editor& ed, const std::string& name)
{
    if (!isLegalRecordName(name)) {
        ed.printLine(
            fmt::format("\"{}\" is no name for a layer: it must not be empty nor hold any of <>/\\\":;?*|,=`.", name));
        return nullptr;
    }
    auto layer = std::make_unique<Layer>();
    layer->setNameUtf8(name);
    layer->setLinetypeObjectId(ed.db().findRecord(NameTable::Linetype, "Continuous"));
    Layer* added = layer.get();
    if (ed.db().table(NameTable::Layer).add(layer.get()))
        return nullptr;
    layer.release();
    added->close();
    return added;
}

void setCurrent(Editor& ed, const std::string& name)
{
    if (ed.vars().set("CLAYER", name) == SetVarResult::Done)
        return;
    const Layer* layer = layerNamed(ed, name);
    ed.printLine(!layer ? fmt::format("Cannot find layer \"{}\".", name)
                 : layer->isDependent()
                     ? fmt::format("Layer \"{}\" comes from an external reference and cannot be current.", name)
                     : fmt::format("Layer \"{}\" is frozen and cannot be current.", name));
}

void make(Editor& ed)
{
    const std::string name =
        ed.word("Enter name for new layer (becomes the current layer)", currentLayer(ed)->nameUtf8());
    if (layerNamed(ed, name) || makeLayer(ed, name))
        setCurrent(ed, name);
}

void addNew(Editor& ed)
{
    const std::string names = ed.word("Enter name list for new layer(s)");
    for (std::size_t at = 0; at <= names.size();) {
        const std::size_t end = std::min(names.find(',', at), names.size());
        const std::string name(trimBlanks(std::string_view(names).substr(at, end - at)));
        if (layerNamed(ed, name))
            ed.printLine(fmt::format("Layer \"{}\" exists already.", name));
        else
            makeLayer(ed, name);
        at = end + 1;
    }
}

void rename(Editor& ed)
{
    Layer* layer = layerNamed(ed, ed.word("Enter old layer name"));
    const std::string name = ed.word("Enter new layer name");
    if (!layer)
        return ed.printLine("There is no layer of that name.");
    if (layer->isDependent())
        return ed.printLine(
            fmt::format("Layer \"{}\" comes from an external reference and keeps its name.", layer->nameUtf8()));
    const bool current = layer == currentLayer(ed);
    if (layer->nameUtf8() == "0" || layer->setName(utf8ToWide(name).c_str()))
        return ed.printLine(fmt::format("The layer cannot be renamed to \"{}\".", name));
    if (current)
        ed.vars().force("CLAYER", layer->nameUtf8());
}

// Turning the current layer off is asked for once.
void off(Editor& ed)
{
    for (Layer* layer : askLayers(ed, "Enter name list of layer(s) to turn off", true)) {
        if (layer == currentLayer(ed) &&
            ed.keyword(fmt::format("Really want layer \"{}\" (the CURRENT layer) off? [Yes/No] <N>", layer->nameUtf8()),
                       "Yes No", "No") == "No")
            continue;
        layer->setIsOff(true);
    }
}

void freeze(Editor& ed)
{
    for (Layer* layer : askLayers(ed, "Enter name list of layer(s) to freeze"))
        if (layer->setIsFrozen(true))
            ed.printLine(fmt::format("Cannot freeze layer \"{}\". It is the CURRENT layer.", layer->nameUtf8()));
}

std::optional<VcCmColor> parseColour(std::string_view text)
{
    static constexpr std::string_view kNames[] = {"red", "yellow", "green", "cyan", "blue", "magenta", "white"};
    for (std::size_t i = 0; i < std::size(kNames); ++i)
        if (equalNoCase(text, kNames[i]) || (text.size() == 1 && equalNoCase(text, kNames[i].substr(0, 1))))
            return VcCmColor::fromIndex(std::int16_t(i + 1));
    const auto index = parseInteger(text);
    return index && *index >= 1 && *index <= 255 ? std::optional(VcCmColor::fromIndex(std::int16_t(*index)))
                                                 : std::nullopt;
}

// A true colour as "red,green,blue".
std::optional<VcCmColor> askTrueColour(Editor& ed)
{
    const std::string text = ed.word("Red,Green,Blue");
    unsigned rgb[3];
    if (std::sscanf(text.c_str(), "%u,%u,%u", &rgb[0], &rgb[1], &rgb[2]) != 3 || rgb[0] > 255 || rgb[1] > 255 ||
        rgb[2] > 255)
        return std::nullopt;
    VcCmColor colour;
    colour.setRGB(std::uint8_t(rgb[0]), std::uint8_t(rgb[1]), std::uint8_t(rgb[2]));
    return colour;
}

void colour(Editor& ed)
{
    const std::string typed = ed.word("New color [Truecolor] (1-255 or a name)");
    std::optional<VcCmColor> wanted;
    bool turnsOff = typed.starts_with('-');
    wanted = equalNoCase(typed, "T") || equalNoCase(typed, "Truecolor")
                 ? askTrueColour(ed)
                 : parseColour(std::string_view(typed).substr(turnsOff ? 1 : 0));
    if (!wanted)
        return ed.printLine("A colour number must be from 1 to 255, or a name such as red.");
    for (Layer* layer : askLayers(ed, fmt::format("Enter name list of layer(s) for color {}", typed), true)) {
        layer->setColor(*wanted);
        layer->setIsOff(turnsOff);
    }
}

void linetype(Editor& ed)
{
    const std::string name = ed.word("Enter loaded linetype name or [?]", "Continuous");
    if (name == "?") {
        for (const VcDbObjectId id : ed.db().table(NameTable::Linetype).records())
            ed.printLine(ed.db().objectAs<VcDbSymbolTableRecord>(id)->nameUtf8());
        return;
    }
    const VcDbObjectId id = ed.db().findRecord(NameTable::Linetype, name);
    if (id.isNull())
        return ed.printLine(fmt::format("Linetype \"{}\" is not loaded.", name));
    for (Layer* layer : askLayers(ed, fmt::format("Enter name list of layer(s) for linetype \"{}\"", name), true))
        layer->setLinetypeObjectId(id);
}

void lineweight(Editor& ed)
{
    constexpr int kStandard[] = {0,  5,  9,  13, 15, 18,  20,  25,  30,  35,  40,  50,
                                 53, 60, 70, 80, 90, 100, 106, 120, 140, 158, 200, 211};
    const double millimetres = ed.real("Enter lineweight (0.0mm - 2.11mm)", -0.03);
    int weight = -3;
    if (millimetres >= 0)
        for (const int w : kStandard)
            if (weight < 0 || std::abs(w - millimetres * 100) < std::abs(weight - millimetres * 100))
                weight = w;
    for (Layer* layer : askLayers(ed, "Enter name list of layer(s) for this lineweight", true))
        layer->setLineWeight(VcDb::LineWeight(weight));
}

void transparency(Editor& ed)
{
    constexpr int kMost = 90;
    const auto percent = ed.integer("Specify transparency value (0-90)", 0);
    if (percent < 0 || percent > kMost)
        return ed.printLine("A transparency must be from 0 to 90.");
    for (Layer* layer : askLayers(ed, fmt::format("Enter name list of layer(s) for transparency {}%", percent), true))
        setTransparency(*layer, int(percent));
}

void description(Editor& ed)
{
    const std::string words = ed.text("Enter layer description");
    for (Layer* layer : askLayers(ed, "Enter name list of layer(s) for this description", true))
        setDescription(*layer, words);
}

void plot(Editor& ed)
{
    const bool plots = ed.keyword("Enter a plotting preference [Plot/No plot] <Plot>", "Plot No", "Plot") == "Plot";
    for (Layer* layer : askLayers(ed, "Enter layer name(s) for this plot preference", true))
        layer->setIsPlottable(plots);
}

void list(Editor& ed)
{
    const std::string names = ed.word("Enter layer name(s) to list <*>");
    const Wildcard pattern(names.empty() ? "*" : names);
    ed.printLine(fmt::format("{:<32}{:<10}{:<8}{}", "Layer name", "State", "Color", "Linetype"));
    for (const Layer* layer : allLayers(ed)) {
        if (!pattern.matches(layer->nameUtf8()))
            continue;
        std::string state = layer->isFrozen() ? "Frozen" : layer->isOff() ? "Off" : "On";
        if (layer->isLocked())
            state += " -L";
        const auto* linetype = ed.db().objectAs<VcDbSymbolTableRecord>(layer->linetypeObjectId());
        ed.printLine(fmt::format("{:<32}{:<10}{:<8}{}", layer->nameUtf8(), state, layer->color().colorIndex(),
                                 linetype ? linetype->nameUtf8() : ""));
    }
    ed.printLine(fmt::format("Current layer: \"{}\"", currentLayer(ed)->nameUtf8()));
}

// Materials are for shaded pictures, which there are none of here.
void material(Editor& ed)
{
    ed.printLine("Layers have no materials here; those that a drawing brings along stay with it as they are.");
}

// Layers wait for approval only where a list of known ones is kept, and none is.
void reconcile(Editor& ed) { ed.printLine("There are no unreconciled layers."); }

struct Option {
    const char* keyword;
    void (*run)(Editor&);
};

void set(Editor& ed) { setCurrent(ed, ed.word("Enter layer name to make current", currentLayer(ed)->nameUtf8())); }
void on(Editor& ed)
{
    for (Layer* layer : askLayers(ed, "Enter name list of layer(s) to turn on"))
        layer->setIsOff(false);
}
void thaw(Editor& ed)
{
    for (Layer* layer : askLayers(ed, "Enter name list of layer(s) to thaw"))
        layer->setIsFrozen(false);
}
void lock(Editor& ed)
{
    for (Layer* layer : askLayers(ed, "Enter name list of layer(s) to lock"))
        layer->setIsLocked(true);
}
void unlock(Editor& ed)
{
    for (Layer* layer : askLayers(ed, "Enter name list of layer(s) to unlock"))
        layer->setIsLocked(false);
}

constexpr Option kOptions[] = {
    {"?", list},
    {"Make", make},
    {"Set", set},
    {"New", addNew},
    {"Rename", rename},
    {"ON", on},
    {"OFF", off},
    {"Color", colour},
    {"Ltype", linetype},
    {"LWeight", lineweight},
    {"Plot", plot},
    {"Freeze", freeze},
    {"Thaw", thaw},
    {"LOck", lock},
    {"Unlock", unlock},
    {"TRansparency", transparency},
    {"Description", description},
    {"MATerial", material},
    {"stAte", layerStateOption},
    {"rEconcile", reconcile},
};

void layer(Editor& ed)
{
    ed.printLine(fmt::format("Current layer:  \"{}\"", currentLayer(ed)->nameUtf8()));
    runOptions(
        ed,
        "Enter an option "
        "[?/Make/Set/New/Rename/ON/OFF/Color/Ltype/LWeight/TRansparency/MATerial/Plot/Freeze/Thaw/LOck/Unlock/stAte/"
        "Description/rEconcile]: ",
        kOptions);
}

const HostCommand kCommands[] = {
    {"-LAYER", "-LA", kPlain, "Makes layers and changes their states and properties.", layer},
    {"LAYER", "LA", kPlain, "Makes layers and changes their states and properties.", layer},
};

}

std::span<const HostCommand> layerCommands() { return kCommands; }

}
