// What the text tools share: the selection of texts and the pick of one.
#pragma once

#include "vcdb_object.h"
#include "vkdefs.h"

#include <functional>

class VcDbText;

enum class TextFilter {
    TextOrMText,
    TextOnly,
    MTextOnly,
};

// Asks for a selection with the command's own prompt. Whoever gets RTNORM frees the set.
int selectTexts(int promptId, TextFilter filter, vds_name set);

// The members of a set in order; those that cannot be named are left out.
void forEachMember(const vds_name set, const std::function<void(vds_name)>& action);

// The same, opened for write as TEXT and closed again; those that cannot be opened are left out.
void forEachTextForWrite(const vds_name set, const std::function<void(VcDbText&)>& action);

// Whether the entity is TEXT or MTEXT; attributes and their definitions are not. False also when it cannot be read.
enum class PickedText {
    Good,
    Unreadable,
    WrongType,
};
PickedText inspectPickedText(const vds_name name);
