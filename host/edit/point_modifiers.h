// Words that stand for a point when one is asked: object snaps (END, INT,MID), filters (.XY), FROM, TK, M2P, and <45, which
// holds the next point to a direction. Each asks for what it needs.
#pragma once

#include "host/edit/interpret.h"

namespace vk::edit {

// Nothing for any other text. Points are in the UCS; the answer has one.
std::optional<Interpretation> interpretModifier(Editor& editor, const Question& question, std::string_view text);

// A word that options must not take for a beginning of theirs.
bool winsOverKeywords(std::string_view text);

}  // namespace vk::edit
