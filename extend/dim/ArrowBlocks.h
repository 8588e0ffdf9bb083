// Arrow heads that every drawing may name, whether or not their blocks are in it yet.
#pragma once

#include "classlib_string.h"

class VcDbDatabase;

// One of the 19 names, in any case, with or without the underscore that their blocks begin with.
bool IsInternalArrow(const wchar_t* name);
// The name of the block: in capitals, with its underscore.
CStdStrW internalArrowName(const wchar_t* name);
// Makes sure of the block of such a name; false for any other name. Without a database the working one is meant.
bool vds_checkArrowheadBlock(const wchar_t* name, VcDbDatabase* database);
