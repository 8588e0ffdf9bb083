#include "host/edit/filter.h"

#include "host/base/numbers.h"
#include "host/base/unicode.h"
#include "host/db/chain.h"
#include "host/db/database.h"
#include "host/db/extras.h"
#include "host/db/kept_object.h"
#include "host/edit/filter_compare.h"
#include "sdk/vcdb_entity.h"
#include "sdk/vcdb_tables.h"

#include <array>
#include <optional>
#include <unordered_set>

namespace vk::edit {

namespace {

// The entity that is looked at. Its chain is built when a test asks for a group that can be had in no simpler way.
class Subject {
public:
    explicit Subject(VcDbEntity& entity) : m_entity(entity) {}
    VcDbEntity& entity() { return m_entity; }
    const EntityProps& props() { return m_entity.props(); }
    const resbuf* chain()
    {
        if (!m_chain)
            m_chain = chainOf(m_entity);
        return m_chain.get();
    }

private:
    VcDbEntity& m_entity;
    RbPtr m_chain;
};

}

class EntityFilter::Test {
public:
    virtual ~Test() = default;
    virtual bool accepts(Subject& subject) const = 0;
    virtual bool needsChain() const { return false; }
};

namespace {

using Test = EntityFilter::Test;
using TestPtr = std::unique_ptr<Test>;

class TypeTest : public Test {
public:
    TypeTest(NamePattern pattern, bool wanted) : m_pattern(std::move(pattern)), m_wanted(wanted) {}
    bool accepts(Subject& subject) const override
    {
        // One class has one type name, but for those that stand in for many.
        const VcRxClass* cls = subject.entity().isA();
        if (cls == VcDbKeptEntity::desc())
            return fits(subject);
        Known& known = m_known[std::uintptr_t(cls) / sizeof(VcRxClass) % m_known.size()];
        if (known.cls != cls)
            known = {cls, fits(subject)};
        return known.fits;
    }

private:
    bool fits(Subject& subject) const { return m_pattern.matches(dxfNameOf(subject.entity())) == m_wanted; }
    NamePattern m_pattern;
    bool m_wanted;
    struct Known {
        const VcRxClass* cls = nullptr;
        bool fits = false;
    };
    mutable std::array<Known, 64> m_known;  // the class seen last of those that share a place
};

// The layer or the linetype, as the set of records that fit.
class RecordTest : public Test {
public:
    RecordTest(const DatabaseCore& db, NameTable table, const Comparison& comparison) : m_table(table)
    {
        for (const VcDbObjectId id : db.table(table).records())
            if (comparison.fitsText(db.objectAs<VcDbSymbolTableRecord>(id)->nameUtf8()))
                m_records.insert(id);
        m_acceptsNone = comparison.fitsText(table == NameTable::Layer ? "0" : "ByLayer");
    }
    bool accepts(Subject& subject) const override
    {
        const EntityProps& props = subject.props();
        const VcDbObjectId id = m_table == NameTable::Layer ? props.layer : props.linetype;
        return id.isNull() ? m_acceptsNone : m_records.contains(id);
    }

private:
    NameTable m_table;
    std::unordered_set<VcDbObjectId> m_records;
    bool m_acceptsNone;
};

// What a common group of an entity says, without its chain.
std::optional<double> simpleNumber(Subject& subject, int code)
{
    const EntityProps& props = subject.props();
    switch (code) {
    case 48:
        return props.linetypeScale;
    case 60:
        return props.invisible;
    case 62:
        return props.color.colorIndex();
    case 66: {
        const auto* subs = subject.entity().subEntities();
        return subs && !subs->empty() ? 1 : 0;
    }
    case 67: {
        const VcDbEntity& entity = subject.entity();
        return entity.isInLayout() && entity.ownerId() != DatabaseCore::of(entity.objectId())->modelSpace() ? 1 : 0;
    }
    case 370:
        return props.lineWeight;
    default:
        return std::nullopt;
    }
}

bool isSimple(int code) { return code == 48 || code == 60 || code == 62 || code == 66 || code == 67 || code == 370; }

class SimpleTest : public Test {
public:
    SimpleTest(int code, std::unique_ptr<Comparison> comparison) : m_code(code), m_comparison(std::move(comparison)) {}
    bool accepts(Subject& subject) const override { return m_comparison->fitsNumber(*simpleNumber(subject, m_code)); }

private:
    int m_code;
    std::unique_ptr<Comparison> m_comparison;
};

// Groups that a chain leaves out at their default, beside the simple ones.
bool fitsDefault(int code, const Comparison& comparison)
{
    switch (code) {
    case 39:
        return comparison.fitsNumber(0);
    case 210:
        return comparison.fitsPoint({0, 0, 1});
    default:
        return comparison.fitsAnything();
    }
}

class GroupTest : public Test {
public:
    GroupTest(int code, std::unique_ptr<Comparison> comparison) : m_code(code), m_comparison(std::move(comparison)) {}
    bool needsChain() const override { return true; }
    // Of a group that is there several times, one that fits is enough.
    bool accepts(Subject& subject) const override
    {
        bool found = false;
        for (const resbuf* node = subject.chain(); node; node = node->rbnext) {
            if (node->restype != m_code)
                continue;
            found = true;
            if (m_comparison->fits(*node))
                return true;
        }
        return !found && fitsDefault(m_code, *m_comparison);
    }

private:
    int m_code;
    std::unique_ptr<Comparison> m_comparison;
};

// Extended data of every application named, or of any.
class XDataTest : public Test {
public:
    explicit XDataTest(std::vector<NamePattern> applications) : m_applications(std::move(applications)) {}
    bool accepts(Subject& subject) const override
    {
        const ObjectExtras* extras = subject.entity().extras();
        if (!extras || extras->xdata.empty())
            return false;
        for (const NamePattern& application : m_applications)
            if (!has(extras->xdata, application))
                return false;
        return true;
    }

private:
    static bool has(const TagList& xdata, const NamePattern& application)
    {
        for (const Tag& tag : xdata)
            if (tag.code == 1001 && application.matches(tag.view()))
                return true;
        return false;
    }
    std::vector<NamePattern> m_applications;
};

enum class Join { And, Or, Not, Xor };

class JoinTest : public Test {
public:
    // Tests that need no chain come first: they often settle the matter.
    JoinTest(Join join, std::vector<TestPtr> tests) : m_join(join), m_tests(std::move(tests))
    {
        std::stable_partition(m_tests.begin(), m_tests.end(), [](const TestPtr& t) { return !t->needsChain(); });
    }
    bool needsChain() const override { return !m_tests.empty() && m_tests.back()->needsChain(); }
    bool accepts(Subject& subject) const override
    {
        switch (m_join) {
        case Join::And:
            return std::all_of(m_tests.begin(), m_tests.end(), [&](const TestPtr& t) { return t->accepts(subject); });
        case Join::Or:
            return std::any_of(m_tests.begin(), m_tests.end(), [&](const TestPtr& t) { return t->accepts(subject); });
        case Join::Not:
            return !m_tests[0]->accepts(subject);
        case Join::Xor:
            return m_tests[0]->accepts(subject) != m_tests[1]->accepts(subject);
        }
        return false;
    }

private:
    Join m_join;
    std::vector<TestPtr> m_tests;
};

std::optional<Join> joinNamed(std::string_view name)
{
    if (name == "AND")
        return Join::And;
    if (name == "OR")
        return Join::Or;
    if (name == "NOT")
        return Join::Not;
    if (name == "XOR")
        return Join::Xor;
    return std::nullopt;
}

bool fitsCount(Join join, std::size_t count)
{
    switch (join) {
    case Join::Not:
        return count == 1;
    case Join::Xor:
        return count == 2;
    default:
        return count > 0;
    }
}

class Parser {
public:
    Parser(const DatabaseCore& db, const resbuf* chain) : m_db(db), m_at(chain) {}
    // Null when the chain is no filter.
    TestPtr parse()
    {
        std::vector<TestPtr> tests;
        if (!sequence(tests, ""))
            return nullptr;
        return std::make_unique<JoinTest>(Join::And, std::move(tests));
    }

private:
    // Deeper nesting is refused rather than followed.
    static constexpr int kDeepest = 200;

    // Tests up to the closing operator, or to the end for an empty one.
    bool sequence(std::vector<TestPtr>& tests, const std::string& closing)
    {
        while (m_at) {
            if (m_at->restype == -4 && !closing.empty() && operatorAt() == closing) {
                m_at = m_at->rbnext;
                return true;
            }
            TestPtr test = m_at->restype == -4 ? operation() : group("=");
            if (!test)
                return false;
            tests.push_back(std::move(test));
        }
        return closing.empty();
    }

    std::string operatorAt() const { return toUpper(trimBlanks(rbUtf8(*m_at))); }

    TestPtr operation()
    {
        const std::string op = operatorAt();
        m_at = m_at->rbnext;
        const auto join = op.starts_with('<') ? joinNamed(std::string_view(op).substr(1)) : std::nullopt;
        if (!join)
            return m_at && m_at->restype != -4 ? group(op) : nullptr;
        std::vector<TestPtr> tests;
        ++m_depth;
        const bool closed = m_depth <= kDeepest && sequence(tests, op.substr(1) + ">");
        --m_depth;
        if (!closed || !fitsCount(*join, tests.size()))
            return nullptr;
        return std::make_unique<JoinTest>(*join, std::move(tests));
    }

    TestPtr group(std::string_view op)
    {
        const resbuf& node = *m_at;
        m_at = m_at->rbnext;
        if (node.restype == -3)
            return op == "=" ? applications() : nullptr;
        std::unique_ptr<Comparison> comparison = makeComparison(m_db, op, node);
        if (!comparison)
            return nullptr;
        if (comparison->fitsAnything())
            return std::make_unique<JoinTest>(Join::And, std::vector<TestPtr>());
        if (node.restype == 0 || node.restype == RTDXF0)
            return std::make_unique<TypeTest>(NamePattern(m_db, rbUtf8(node), std::nullopt), op == "=");
        if (node.restype == 6 || node.restype == 8)
            return std::make_unique<RecordTest>(m_db, node.restype == 8 ? NameTable::Layer : NameTable::Linetype,
                                                *comparison);
        if (isSimple(node.restype))
            return std::make_unique<SimpleTest>(node.restype, std::move(comparison));
        return std::make_unique<GroupTest>(node.restype, std::move(comparison));
    }

    TestPtr applications()
    {
        std::vector<NamePattern> names;
        for (; m_at && m_at->restype == 1001; m_at = m_at->rbnext)
            names.emplace_back(m_db, rbUtf8(*m_at), NameTable::AppId);
        return std::make_unique<XDataTest>(std::move(names));
    }

    const DatabaseCore& m_db;
    const resbuf* m_at;
    int m_depth = 0;
};

}

EntityFilter::EntityFilter(TestPtr test) : m_test(std::move(test)) {}
EntityFilter::~EntityFilter() = default;

std::unique_ptr<EntityFilter> EntityFilter::parse(const DatabaseCore& db, const resbuf* chain)
{
    TestPtr test = Parser(db, chain).parse();
    return test ? std::unique_ptr<EntityFilter>(new EntityFilter(std::move(test))) : nullptr;
}

bool EntityFilter::accepts(VcDbEntity& entity) const
{
    Subject subject(entity);
    return m_test->accepts(subject);
}

}  // namespace vk::edit
