// One table out of the tables by subject, and the ways to find a row in it.
#include "host/edit/sysvar_table_rows.h"

#include <algorithm>
#include <strings.h>
#include <vector>

namespace vk::edit {

static int compareNames(std::string_view a, std::string_view b)
{
    const int order = strncasecmp(a.data(), b.data(), std::min(a.size(), b.size()));
    return order != 0 ? order : int(a.size() > b.size()) - int(a.size() < b.size());
}

static std::vector<SysVarDef> mergedTable()
{
    std::vector<SysVarDef> all;
    for (auto rows : {annotationSysVars(), dimensionSysVars(), drawingSysVars(), fileSysVars(), interfaceSysVars(),
                      selectionSysVars(), sessionSysVars(), solidSysVars(), unitSysVars(), viewSysVars()})
        all.insert(all.end(), rows.begin(), rows.end());
    std::ranges::sort(all, [](const SysVarDef& a, const SysVarDef& b) { return compareNames(a.name, b.name) < 0; });
    return all;
}

// A short index of its own: files are read by header name, and only a third of the rows have one.
static std::vector<const SysVarDef*> headerIndex()
{
    std::vector<const SysVarDef*> carried;
    for (const SysVarDef& def : sysVarTable())
        if (def.headerName)
            carried.push_back(&def);
    std::ranges::sort(
        carried, [](const SysVarDef* a, const SysVarDef* b) { return compareNames(a->headerName, b->headerName) < 0; });
    return carried;
}

std::span<const SysVarDef> sysVarTable()
{
    static const std::vector<SysVarDef> table = mergedTable();
    return table;
}

const SysVarDef* findSysVar(std::string_view name)
{
    const auto table = sysVarTable();
    const auto found = std::lower_bound(table.begin(), table.end(), name, [](const SysVarDef& def, std::string_view n) {
        return compareNames(def.name, n) < 0;
    });
    return found != table.end() && compareNames(found->name, name) == 0 ? &*found : nullptr;
}

const SysVarDef* findSysVarOfHeader(std::string_view headerName)
{
    static const std::vector<const SysVarDef*> index = headerIndex();
    const auto found =
        std::lower_bound(index.begin(), index.end(), headerName,
                         [](const SysVarDef* def, std::string_view n) { return compareNames(def->headerName, n) < 0; });
    return found != index.end() && compareNames((*found)->headerName, headerName) == 0 ? *found : nullptr;
}

}  // namespace vk::edit
