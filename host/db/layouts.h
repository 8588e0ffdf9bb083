// Layouts: the tabs of a drawing with their blocks. Exactly one sheet's block is the paper space; its name in files is
// *Paper_Space, those of the others have a number behind it.
#pragma once

#include "host/base/api.h"
#include "sdk/vcdb_object.h"

#include <string>
#include <string_view>
#include <vector>

class DatabaseCore;
class VcDbLayout;
class VcDbViewport;

// In the order of their tabs, the model first.
VKHOST_API std::vector<VcDbLayout*> layoutsByTab(const DatabaseCore& db);
VKHOST_API VcDbLayout* layoutNamed(const DatabaseCore& db, std::string_view name);
VKHOST_API VcDbLayout* layoutOfBlock(const DatabaseCore& db, VcDbObjectId block);
VKHOST_API bool isModelLayout(const DatabaseCore& db, const VcDbLayout& layout);

// An empty sheet behind the last tab. The name must be legal and free.
VKHOST_API VcDbLayout& addLayout(DatabaseCore& db, const std::string& name);
// With everything that stands on it; the layout may be another drawing's.
VKHOST_API VcDbLayout& copyLayout(DatabaseCore& db, const VcDbLayout& source, const std::string& name);
// With everything that stands on it. Neither the model nor the paper space, which another sheet becomes beforehand.
VKHOST_API void eraseLayout(DatabaseCore& db, VcDbLayout& layout);
VKHOST_API void renameLayout(DatabaseCore& db, VcDbLayout& layout, const std::string& name);
// Makes the sheet the paper space; what the header says of the paper space changes with it.
VKHOST_API void makePaperSpace(DatabaseCore& db, VcDbLayout& layout);

// Viewports of a sheet in their order, that of the sheet itself among them.
VKHOST_API std::vector<VcDbViewport*> viewportsOf(const DatabaseCore& db, VcDbObjectId block);
// The viewport that stands for the sheet itself, made when it is missing.
VKHOST_API VcDbViewport& sheetViewport(DatabaseCore& db, VcDbObjectId block);
