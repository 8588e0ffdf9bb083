// What kind of value stands behind a group code of a drawing file, or a result code of the C-level interface.
// The one table of it: file readers and writers, chains, filters and extended data all ask here.
#pragma once

#include "host/base/api.h"

#include <cstdint>

enum class GroupKind : std::uint8_t {
    None,       // carries no value in a chain: list marks, true, nil, the mark -3, unassigned codes
    String,     // rstring
    Handle,     // a handle as text, also in a chain: rstring
    Reference,  // a handle in a file, an entity name in a chain: rlname
    Point,      // rpoint; in a file three groups, ten apart
    Real,       // rreal
    Int16,      // rint
    Int32,      // rlong
    Int64,      // rlname[0]
    Bool,       // rint, 0 or 1
    Binary,     // rbinary; hexadecimal text in an ASCII file
};

// For codes of a chain: result codes (5001 and up), negative codes, group codes of entities and of extended data.
VKHOST_API GroupKind groupKind(int code);

// The same for one group of a file, where each coordinate is a group of its own: a point's codes are real.
VKHOST_API GroupKind fileGroupKind(int code);

VKHOST_API bool isStringKind(GroupKind kind);
VKHOST_API bool isIntegerKind(GroupKind kind);
