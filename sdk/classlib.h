// The class library that is no user interface: strings, containers, files.
#pragma once

#include "classlib_arrays.h"
#include "classlib_files.h"
#include "classlib_string.h"
