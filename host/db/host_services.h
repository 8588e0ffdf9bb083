// The drawing that the C-level interface works on, and services that a host may replace.
#pragma once

#include "host/base/api.h"
#include "sdk/vchost.h"

class DatabaseCore;

// Core of the working database, or null.
VKHOST_API DatabaseCore* workingCore();
