// What few objects have: extended data, reactors, an extension dictionary, groups that no field of the class claims.
#pragma once

#include "host/db/tag.h"
#include "sdk/vcdb_object.h"

// Groups that stood in a subclass and are no field of it. They go back in after the field that wrote anchorCode, or at the
// end of the subclass where no such field wrote anything.
struct UnclaimedGroups {
    std::string subclass;  // empty before the first marker
    std::int16_t anchorCode = 0;
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
