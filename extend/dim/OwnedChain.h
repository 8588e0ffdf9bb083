// A chain of the host's, released when it goes.
#pragma once

#include "vcut.h"

#include <memory>

struct ReleaseChain {
    void operator()(resbuf* chain) const { vcutRelRb(chain); }
};
using OwnedChain = std::unique_ptr<resbuf, ReleaseChain>;
