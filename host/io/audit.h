// What is wrong with a drawing in memory, and mending what can be mended.
#pragma once

#include "host/base/api.h"

#include <cstdint>
#include <string>
#include <vector>

class VcDbDatabase;

struct AuditFault {
    std::uint64_t handle = 0;
    std::string text;
    bool fixable = true;
    bool fixed = false;
};

struct AuditReport {
    static constexpr std::size_t kMost = 1000;  // faults that are listed; all are counted
    std::vector<AuditFault> faults;
    std::size_t total = 0, fixed = 0;
};

// With fix, mends what is fixable; a second audit then finds none of that.
VKHOST_API AuditReport auditDrawing(VcDbDatabase& database, bool fix = false);
