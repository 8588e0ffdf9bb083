// States of layers that a drawing keeps by name: what each layer was when the state was saved, and which of its properties
// restoring gives back. They stand in the dictionary ACAD_LAYERSTATES of the layer table, one record each, and in files of
// their own (.las) with the same groups.
#pragma once

#include "host/db/tag.h"
#include "sdk/vccm.h"

#include <optional>
#include <string>
#include <vector>

class DatabaseCore;
class VcDbViewport;

namespace vk::commands {

enum LayerStatePart : int {
    kStateOn = 1,
    kStateFrozen = 2,
    kStateLocked = 4,
    kStatePlot = 8,
    kStateNewViewports = 16,
    kStateColour = 32,
    kStateLinetype = 64,
    kStateLineweight = 128,
    kStatePlotStyle = 256,
    kStateViewport = 512,  // frozen in the viewport that was current
    kStateTransparency = 1024,
    kStateAll = 2047,
};

struct LayerState {
    struct Layer {
        std::string name;
        int flags =
            kStatePlot;  // off, frozen, locked, plotted, frozen in new and in the current viewport, by the bits above
        VcCmColor colour = VcCmColor::fromIndex(7);
        int lineweight = -3;
        std::string linetype = "Continuous", plotStyle;
        std::int64_t transparency = 0;  // as in extended data: 0x02000000 and the opacity; 0 for none
        void take(const Tag& tag);
    };
    std::string name, description, current;  // current: the layer that objects are drawn on
    int parts = kStateAll;
    bool ofSheet = false;  // saved from a layout: whether layers were frozen in a viewport is known
    std::vector<Layer> layers;

    // A group of a record or a file, in their order; layers and linetypes by their names.
    void take(const Tag& tag);
};

// As the layers are now, those of external references among them, and as they are in the viewport where there is one.
LayerState layerStateNow(const DatabaseCore& db, const VcDbViewport* viewport, std::string name, std::string current);

std::vector<std::string> layerStateNames(const DatabaseCore& db);
std::optional<LayerState> layerState(const DatabaseCore& db, const std::string& name);
// Takes the place of one of that name.
void putLayerState(DatabaseCore& db, const LayerState& state);
bool removeLayerState(DatabaseCore& db, const std::string& name);

// Gives the parts back to the layers that are still there; those that came later stay as they are. What was frozen in a
// viewport goes to the one that is given. Names of layers, linetypes and plot styles that the drawing has not are returned.
std::vector<std::string> applyLayerState(DatabaseCore& db, VcDbViewport* viewport, const LayerState& state);

// A file may hold several states. Nothing when it is none; error then says why.
std::vector<LayerState> parseLayerStates(std::string_view file, std::string& error);
std::string layerStateFile(const LayerState& state);

}  // namespace vk::commands
