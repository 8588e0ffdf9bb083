// "Select objects:" until Enter, for commands of every kind.
#pragma once

#include "host/base/rb.h"
#include "host/edit/filter.h"
#include "host/edit/question.h"
#include "host/edit/selection_set.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace vk::edit {

class Editor;

struct SelectRequest {
    std::string addPrompt = "Select objects: ";
    std::string removePrompt = "Remove objects: ";
    const EntityFilter* filter = nullptr;
    bool leavesLocked = false;       // what is on locked layers is counted and left
    bool single = false;             // ends with the first line that adds anything
    bool endsWithArguments = false;  // SelectOptions::endsWithArguments
    bool everything = false;         // a pick takes all that lies there
    bool nested = false;             // a pick takes the object within a block
    std::vector<Keyword> keywords;
    bool windowsOnMiss = true;  // a pick on nothing starts a window, where the person wants that
    // Of a keyword of the caller's, and of a text that means nothing here. What they give back are the next answers; the
    // selection goes on after null. Without the first a keyword ends the selection, without the second choices are listed.
    std::function<RbPtr(const std::string&)> onKeyword;
    std::function<RbPtr(const std::string&)> onOther;
};

// A window as the person drew it, with what is known of it later: STRETCH moves what lies within.
struct SelectedRegion {
    std::vector<VcGePoint3d> corners;  // in the world
    bool crossing = false;
};

struct SelectResult {
    enum Status { Done, Cancelled, Keyword } status = Done;
    std::shared_ptr<SelectionSet> set;  // never null; empty where nothing was selected
    std::string keyword;
    std::vector<SelectedRegion> regions;  // windows and polygons that added objects, in order
};

SelectResult selectByPrompt(Editor& editor, const SelectRequest& request);

// What a selection can take from different objects that were found in another way; told unless quiet.
std::shared_ptr<SelectionSet> admitted(Editor& editor, const SelectRequest& request,
                                       const std::vector<VcDbObjectId>& from, bool quiet = false);
// The set that was picked before the command, and is used up by that: null where there is none that serves.
std::shared_ptr<SelectionSet> takePickFirst(Editor& editor, const SelectRequest& request);

// The last object made in the current space that can be seen; null when there is none.
VcDbObjectId lastSeen(Editor& editor);

}  // namespace vk::edit
