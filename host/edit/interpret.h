// What a typed text or a given value means as the answer to a question.
#pragma once

#include "host/base/rb.h"
#include "host/edit/question.h"

#include <string>
#include <variant>

namespace vk::edit {

class Editor;

// The message to print before the question is asked again.
struct AskAgain {
    std::string message;
};
using Interpretation = std::variant<Answer, AskAgain>;

Interpretation interpretText(Editor& editor, const Question& question, const std::string& text);
Interpretation interpretValue(Editor& editor, const Question& question, const resbuf& value);

// Coordinates in the forms of the command line: x,y[,z]  @dx,dy  @d<a  d<a[,z]  d<a<b  *x,y and @*dx,dy (world)  #x,y (absolute)
// @ (the last point).
std::optional<VcGePoint3d> parsePoint(Editor& editor, const Question& question, std::string_view text);

}  // namespace vk::edit
