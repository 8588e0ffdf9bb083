// Drawings that commands write: where to, over what, and what is said of it.
#pragma once

#include "host/edit/editor.h"
#include "host/io/drawing_file.h"

#include <string>

namespace vk::commands {

// A name without an ending gets that of the drawings that are written here.
std::string askOutputPath(edit::Editor& ed, std::string_view prompt, const std::string& byDefault = {});
bool mayReplaceFile(edit::Editor& ed, const std::string& path);
// Nothing where the run writes nothing; what goes wrong is an error of the command.
std::optional<WriteResult> writeTo(edit::Editor& ed, VcDbDatabase& drawing, const std::string& path,
                                   WriteOptions options = {});

}  // namespace vk::commands
