// How one value of an entity is compared with the value that a filter names.
#pragma once

#include "host/base/rb.h"
#include "host/base/wildcard.h"
#include "host/db/field_visitor.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vk::edit {

// Names that a filter means: a text that is a record's name as it stands means that record alone, any other is a pattern.
class NamePattern {
public:
    // The table whose records the text may name, if there is one.
    NamePattern(const DatabaseCore& db, std::string_view text, std::optional<NameTable> table);
    bool matches(std::string_view name) const;

private:
    std::vector<std::string> m_exact;
    std::vector<Wildcard> m_patterns;
};

class Comparison {
public:
    virtual ~Comparison() = default;
    // The kinds that a comparison does not know do not fit it.
    virtual bool fitsText(std::string_view) const { return false; }
    virtual bool fitsNumber(double) const { return false; }
    virtual bool fitsPoint(const double (&)[3]) const { return false; }
    virtual bool fitsName(const vds_name) const { return false; }
    virtual bool fitsBytes(std::string_view) const { return false; }
    // Whatever the value is, and also where there is none.
    virtual bool fitsAnything() const { return false; }
    bool fits(const resbuf& value) const;
};

// The comparison of a filter's group under an operator; null where the two do not go together.
std::unique_ptr<Comparison> makeComparison(const DatabaseCore& db, std::string_view op, const resbuf& group);

}  // namespace vk::edit
