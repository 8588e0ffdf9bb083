// Paths and files of the system, as UTF-8.
#pragma once

#include "host/base/api.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

// The path as the system takes it: a '\' becomes '/' unless a file of that very name is there.
VKHOST_API std::string nativePath(std::wstring_view path);
VKHOST_API std::string nativePath(std::string_view path);

VKHOST_API bool fileExists(const std::string& path);  // and is no folder
VKHOST_API bool folderExists(const std::string& path);
VKHOST_API bool makeFolders(const std::string& path);

// Pieces of a path; both '/' and '\' divide folders.
VKHOST_API std::string_view fileNameOf(std::string_view path);
VKHOST_API std::string_view folderOf(std::string_view path);  // with its separator, empty if there is none
VKHOST_API std::string joinPath(std::string_view folder, std::string_view name);

// The file of that name in the folder, without regard to case where there is no exact one. The name may hold folders.
VKHOST_API std::optional<std::string> findFileNoCase(const std::string& folder, std::string_view name);

// The whole content, or nothing when it cannot be read; error then says why.
VKHOST_API std::optional<std::string> readWholeFile(const std::string& path, std::string* error = nullptr);

// Writes beside the target, syncs, and puts it in place in one step: after a crash there is the old content or
// the new. The target's permissions stay. False with a sentence in error when anything fails; nothing has changed then.
VKHOST_API bool writeFileAtomically(const std::string& path, std::string_view content, std::string& error);

// Private to this run, made on first use, ends with its separator, stays after the run. Empty if none can be made.
VKHOST_API const std::string& temporaryFolder();

VKHOST_API const std::string& programPath();
// Where the host's library lies, with the separator at its end.
VKHOST_API const std::string& hostFolder();
