// The codes at the start of a text that switch underlining: each "%%u", in either case, toggles it.
#pragma once

#include "classlib_string.h"

int countUnderlines(const CStdStrW& text);
CStdStrW withoutUnderlines(const CStdStrW& text);
// With exactly one, in lower case.
CStdStrW underlined(const CStdStrW& text);
