// Files of values: filters (.SVF), which the dialog reads back, and scripts (.SCR), which the host runs.
#pragma once

#include "classlib_arrays.h"
#include "sysvar/SysvarCatalogue.h"

#include <functional>
#include <optional>
#include <unordered_map>

using SysvarArray = CArray<SysvarData, SysvarData>;

// Records by name: the first of a name counts.
class SysvarIndex {
public:
    using Admits = std::function<bool(const SysvarData&)>;

    // Without regard to case, and without regard to an underscore at the front where that was asked for.
    enum class Underscore { Counts, Optional };
    SysvarIndex(const SysvarArray& records, Underscore underscore, const Admits& admits);

    // The place in the array, -1 for none.
    int find(const CStdStrW& name) const;

private:
    Underscore m_underscore;
    std::unordered_map<std::wstring, int> m_places;

    std::wstring key(CStdStrW name) const;
};

// The name with an underscore in front.
CStdStrW globalName(const CStdStrW& name);

// The text of a file for the variables of these names, by the ending of its path, whose case does not count; nothing
// for any other ending.
CStdStrW filterText(const CStdStrW& path, const SysvarArray& records, const CStringArray& names);

struct FilterLine {
    CStdStrW name;  // with an underscore in front
    CStdStrW value;
};
// Nothing for a line without a blank between a name and a value.
std::optional<FilterLine> parseFilterLine(CStdStrW line);
