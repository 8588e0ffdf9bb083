// Filters of entities: a chain of groups that an entity must have, with operators in -4 groups between them.
#pragma once

#include "host/base/api.h"
#include "sdk/resbuf.h"

#include <memory>

class DatabaseCore;
class VcDbEntity;

namespace vk::edit {

// Group 0 (or RTDXF0) and texts take wild-cards. Group -3 with names of applications asks for extended data. -4 groups hold
// <AND AND> <OR OR> <NOT NOT> <XOR XOR> around groups, or stand before one group and say how it is compared:
// = != /= <> < <= > >= * & &=, for points one for each coordinate as in ",,>=".
// An entity that leaves a common group out has it at its default.
class VKHOST_API EntityFilter {
public:
    // Null for a chain that is no filter. Layer and linetype names are looked up now: the filter serves one selection.
    static std::unique_ptr<EntityFilter> parse(const DatabaseCore& db, const resbuf* chain);
    ~EntityFilter();
    bool accepts(VcDbEntity& entity) const;

    class Test;

private:
    explicit EntityFilter(std::unique_ptr<Test> test);
    std::unique_ptr<Test> m_test;
};

}  // namespace vk::edit
