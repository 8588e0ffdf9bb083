#include "host/edit/filter_compare.h"

#include "host/base/group_code.h"
#include "host/base/numbers.h"
#include "host/base/unicode.h"
#include "host/db/database.h"

#include <array>
#include <cmath>

namespace vk::edit {

namespace {

// A comma parts alternatives unless it may belong to a set of characters or is quoted.
std::vector<std::string_view> alternatives(std::string_view text)
{
    if (text.find_first_of("[`") != std::string_view::npos)
        return {text};
    std::vector<std::string_view> parts;
    for (std::size_t at = 0; at <= text.size();) {
        const std::size_t end = std::min(text.find(',', at), text.size());
        parts.push_back(text.substr(at, end - at));
        at = end + 1;
    }
    return parts;
}

}

NamePattern::NamePattern(const DatabaseCore& db, std::string_view text, std::optional<NameTable> table)
{
    for (const std::string_view part : alternatives(text)) {
        if (table && !db.findRecord(*table, part).isNull())
            m_exact.emplace_back(part);
        else
            m_patterns.emplace_back(part);
    }
}

bool NamePattern::matches(std::string_view name) const
{
    for (const std::string& exact : m_exact)
        if (equalNoCase(exact, name))
            return true;
    for (const Wildcard& pattern : m_patterns)
        if (pattern.matches(name))
            return true;
    return false;
}

namespace {

enum class Relation { Any, Equal, NotEqual, Less, LessEqual, Greater, GreaterEqual, AnyBit, AllBits };

std::optional<Relation> relationOf(std::string_view op)
{
    static constexpr std::pair<std::string_view, Relation> kRelations[] = {
        {"*", Relation::Any},        {"=", Relation::Equal},     {"!=", Relation::NotEqual},
        {"/=", Relation::NotEqual},  {"<>", Relation::NotEqual}, {"<", Relation::Less},
        {"<=", Relation::LessEqual}, {">", Relation::Greater},   {">=", Relation::GreaterEqual},
        {"&", Relation::AnyBit},     {"&=", Relation::AllBits},
    };
    for (const auto& [text, relation] : kRelations)
        if (text == op)
            return relation;
    return std::nullopt;
}

bool isBits(Relation r) { return r == Relation::AnyBit || r == Relation::AllBits; }

// Values that went through a file or a Lisp text differ in their last digits.
bool isNear(double a, double b) { return std::fabs(a - b) <= 1e-9 * std::max({1.0, std::fabs(a), std::fabs(b)}); }

bool holds(Relation relation, double value, double wanted)
{
    switch (relation) {
    case Relation::Any:
        return true;
    case Relation::Equal:
        return isNear(value, wanted);
    case Relation::NotEqual:
        return !isNear(value, wanted);
    case Relation::Less:
        return value < wanted && !isNear(value, wanted);
    case Relation::LessEqual:
        return value < wanted || isNear(value, wanted);
    case Relation::Greater:
        return value > wanted && !isNear(value, wanted);
    case Relation::GreaterEqual:
        return value > wanted || isNear(value, wanted);
    case Relation::AnyBit:
        return (std::int64_t(value) & std::int64_t(wanted)) != 0;
    case Relation::AllBits:
        return (std::int64_t(value) & std::int64_t(wanted)) == std::int64_t(wanted);
    }
    return false;
}

class Anything : public Comparison {
public:
    bool fitsText(std::string_view) const override { return true; }
    bool fitsNumber(double) const override { return true; }
    bool fitsPoint(const double (&)[3]) const override { return true; }
    bool fitsName(const vds_name) const override { return true; }
    bool fitsBytes(std::string_view) const override { return true; }
    bool fitsAnything() const override { return true; }
};

class TextComparison : public Comparison {
public:
    TextComparison(NamePattern pattern, bool wanted) : m_pattern(std::move(pattern)), m_wanted(wanted) {}
    bool fitsText(std::string_view text) const override { return m_pattern.matches(text) == m_wanted; }

private:
    NamePattern m_pattern;
    bool m_wanted;
};

class NumberComparison : public Comparison {
public:
    NumberComparison(Relation relation, double wanted) : m_relation(relation), m_wanted(wanted) {}
    bool fitsNumber(double value) const override { return holds(m_relation, value, m_wanted); }

private:
    Relation m_relation;
    double m_wanted;
};

class PointComparison : public Comparison {
public:
    PointComparison(const std::array<Relation, 3>& relations, const vds_point wanted) : m_relations(relations)
    {
        std::copy_n(wanted, 3, m_wanted);
    }
    bool fitsPoint(const double (&value)[3]) const override
    {
        for (int axis = 0; axis < 3; ++axis)
            if (!holds(m_relations[axis], value[axis], m_wanted[axis]))
                return false;
        return true;
    }

private:
    std::array<Relation, 3> m_relations;
    double m_wanted[3];
};

class Negation : public Comparison {
public:
    explicit Negation(std::unique_ptr<Comparison> inner) : m_inner(std::move(inner)) {}
    bool fitsPoint(const double (&value)[3]) const override { return !m_inner->fitsPoint(value); }
    bool fitsName(const vds_name name) const override { return !m_inner->fitsName(name); }
    bool fitsBytes(std::string_view bytes) const override { return !m_inner->fitsBytes(bytes); }

private:
    std::unique_ptr<Comparison> m_inner;
};

class EntityNameComparison : public Comparison {
public:
    explicit EntityNameComparison(const vds_name wanted) : m_wanted{wanted[0], wanted[1]} {}
    bool fitsName(const vds_name name) const override { return name[0] == m_wanted[0] && name[1] == m_wanted[1]; }

private:
    vds_name m_wanted;
};

class BytesComparison : public Comparison {
public:
    explicit BytesComparison(std::string_view wanted) : m_wanted(wanted) {}
    bool fitsBytes(std::string_view bytes) const override { return bytes == m_wanted; }

private:
    std::string m_wanted;
};

// Tables whose records a group names.
std::optional<NameTable> tableOf(int code)
{
    switch (code) {
    case 2:
        return NameTable::Block;
    case 3:
        return NameTable::DimStyle;
    case 6:
        return NameTable::Linetype;
    case 7:
        return NameTable::TextStyle;
    case 8:
        return NameTable::Layer;
    default:
        return std::nullopt;
    }
}

std::unique_ptr<Comparison> onlyEqual(Relation relation, std::unique_ptr<Comparison> equal)
{
    if (relation == Relation::Equal)
        return equal;
    return relation == Relation::NotEqual ? std::make_unique<Negation>(std::move(equal)) : nullptr;
}

// One relation for each coordinate; what is left out asks for nothing. A single one is for all three.
std::unique_ptr<Comparison> pointComparison(std::string_view op, const resbuf& group)
{
    std::array<Relation, 3> relations{Relation::Any, Relation::Any, Relation::Any};
    if (op == "!=" || op == "/=" || op == "<>") {
        relations.fill(Relation::Equal);
        return std::make_unique<Negation>(std::make_unique<PointComparison>(relations, group.resval.rpoint));
    }
    const bool single = op.find(',') == std::string_view::npos;
    std::size_t axis = 0;
    for (std::size_t at = 0; at <= op.size(); ++axis) {
        const std::size_t end = std::min(op.find(',', at), op.size());
        const std::string_view one = trimBlanks(op.substr(at, end - at));
        const auto relation = one.empty() ? Relation::Any : relationOf(one);
        if (axis > 2 || !relation || isBits(*relation))
            return nullptr;
        relations[axis] = *relation;
        at = end + 1;
    }
    if (single)
        relations.fill(relations[0]);
    return std::make_unique<PointComparison>(relations, group.resval.rpoint);
}

std::unique_ptr<Comparison> textComparison(const DatabaseCore& db, Relation relation, const resbuf& group)
{
    if (!group.resval.rstring || (relation != Relation::Equal && relation != Relation::NotEqual))
        return nullptr;
    return std::make_unique<TextComparison>(NamePattern(db, rbUtf8(group), tableOf(group.restype)),
                                            relation == Relation::Equal);
}

}

bool Comparison::fits(const resbuf& value) const
{
    switch (groupKind(value.restype)) {
    case GroupKind::String:
    case GroupKind::Handle:
        return fitsText(rbUtf8(value));
    case GroupKind::Point:
        return fitsPoint(value.resval.rpoint);
    case GroupKind::Real:
        return fitsNumber(value.resval.rreal);
    case GroupKind::Int16:
    case GroupKind::Int32:
    case GroupKind::Int64:
    case GroupKind::Bool:
        return fitsNumber(double(rbInteger(value)));
    case GroupKind::Reference:
        return fitsName(value.resval.rlname);
    case GroupKind::Binary:
        return fitsBytes(rbBytes(value));
    case GroupKind::None:
        break;
    }
    return false;
}

std::unique_ptr<Comparison> makeComparison(const DatabaseCore& db, std::string_view op, const resbuf& group)
{
    const GroupKind kind = groupKind(group.restype);
    if (op == "*" && kind != GroupKind::None)
        return std::make_unique<Anything>();
    if (kind == GroupKind::Point)
        return pointComparison(op, group);
    const auto relation = relationOf(op);
    if (!relation || kind == GroupKind::None)
        return nullptr;
    switch (kind) {
    case GroupKind::String:
    case GroupKind::Handle:
        return textComparison(db, *relation, group);
    case GroupKind::Real:
        return isBits(*relation) ? nullptr : std::make_unique<NumberComparison>(*relation, group.resval.rreal);
    case GroupKind::Reference:
        return onlyEqual(*relation, std::make_unique<EntityNameComparison>(group.resval.rlname));
    case GroupKind::Binary:
        return onlyEqual(*relation, std::make_unique<BytesComparison>(rbBytes(group)));
    default:
        return std::make_unique<NumberComparison>(*relation, double(rbInteger(group)));
    }
}

}  // namespace vk::edit
