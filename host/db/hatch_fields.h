// The boundaries of a hatch as groups.
#pragma once

#include "host/db/field_visitor.h"
#include "sdk/vcdb_hatch.h"

// A list whose items begin with a code and stand one behind the other. On reading the groups themselves say how many there
// are, so a wrong count neither loses an item nor takes one too many.
template <class T, class Each>
void listed(FieldVisitor& v, int lead, std::vector<T>& items, Each&& each)
{
    if (!v.isReading()) {
        for (T& item : items)
            each(item);
        return;
    }
    std::vector<T> read;
    while (v.peek() == lead)
        each(read.emplace_back());
    if (!read.empty() || v.isFile())  // what a chain leaves out stays
        items = std::move(read);
}

void hatchLoopField(FieldVisitor& v, VcDbHatch::Loop& loop);
