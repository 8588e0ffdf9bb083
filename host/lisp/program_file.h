// Program files, which load finds along the support path.
#pragma once

#include <optional>
#include <string>

namespace vk::lisp {

// The text as UTF-8; the ending ".lsp" may be left out of the name. Nothing when there is no such file.
std::optional<std::string> readProgramFile(const std::string& name);

}  // namespace vk::lisp
