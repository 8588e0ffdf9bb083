// The group of a chain that names the place of a colour in a colour book.
#pragma once

#include "resbuf.h"

// Puts the name, up to 256 characters, behind the true colour, without which it is RTERROR. Without a name an existing
// group goes.
int setColourBookName(resbuf* chain, const wchar_t* bookName);
