// Where results go, and that no input is overwritten.
#pragma once

#include <string>
#include <vector>

namespace vk::app {

// Whether both name the same file, links and all; a path that does not exist yet is the file it would become.
bool isSameFile(const std::string& a, const std::string& b);

// The file in the folder that the drawing is saved to.
std::string pathInFolder(const std::string& folder, const std::string& drawing);

// A name that two of the drawings would be saved under, or empty.
std::string nameUsedTwice(const std::vector<std::string>& drawings);

}  // namespace vk::app
