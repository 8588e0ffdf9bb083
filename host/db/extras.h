// What few objects have: extended data, reactors, an extension dictionary, groups that no field of the class claims.
#pragma once

#include "host/db/tag.h"
#include "sdk/vcdb_object.h"

// Groups that stood in a subclass and are no field of it. They go back in after the field that wrote anchorCode for the
// anchorCount-th time, or at the end of the subclass where no such field wrote anything. A subclass that the class does not
// know follows the one before it whole: its groups begin with its 100 marker.
struct UnclaimedGroups {
    static constexpr std::int16_t kAtStart = -9998;
    static constexpr std::int16_t kAtEnd = -9999;

    std::string subclass;          // empty before the first marker
    std::uint16_t occurrence = 0;  // of that marker within the object, from 0
    std::int16_t anchorCode = kAtEnd;
    std::uint32_t anchorCount = 1;
    TagList tags;
};

// A brace group of an application: 102 "{NAME" ... 102 "}", kept whole without its braces.
struct ApplicationGroup {
    std::string name;
    TagList tags;
};

struct ObjectExtras {
    std::vector<VcDbObjectId> reactors;
    VcDbObjectId extensionDictionary;
    TagList xdata;  // 1001 APP, values, 1001 APP, values...
    std::vector<ApplicationGroup> applicationGroups;
    std::vector<UnclaimedGroups> unclaimed;
    mutable std::vector<void*> reactorPointers;
};
