#include "host/io/audit.h"

#include "host/base/unicode.h"
#include "host/db/database.h"
#include "host/db/extras.h"
#include "host/db/kept_object.h"
#include "host/db/reference_visitor.h"
#include "sdk/vcdb_curves.h"
#include "sdk/vcdb_insert.h"
#include "sdk/vcdb_objects.h"
#include "sdk/vcdb_text.h"

#include <fmt/format.h>
#include <unordered_set>

namespace {

class Audit {
public:
    Audit(DatabaseCore& db, bool fix) : m_db(db), m_fix(fix) {}

    AuditReport run()
    {
        references();
        owners();
        names();
        recursion();
        values();
        return std::move(m_report);
    }

private:
    // Counts the fault; true when it is to be mended.
    bool found(const VcDbObject& object, std::string text, bool fixable = true)
    {
        const bool mend = m_fix && fixable;
        ++m_report.total;
        m_report.fixed += mend;
        if (m_report.faults.size() < AuditReport::kMost)
            m_report.faults.push_back({m_db.handleOf(object.objectId()), std::move(text), fixable, mend});
        return mend;
    }

    template <class Visit>
    void everyLive(Visit&& visit)
    {
        for (std::uint32_t slot = 1; slot < m_db.slotCount(); ++slot)
            if (VcDbObject* object = m_db.objectAt(slot); object && !object->isErased())
                visit(*object);
    }

    void references();
    void owners();
    void names();
    void recursion();
    void values();
    VcDbObjectId properOwner(const VcDbObject& object);
    void gatherHolders();

    DatabaseCore& m_db;
    bool m_fix;
    AuditReport m_report;
    std::unordered_map<std::uint32_t, VcDbObjectId> m_holders;  // by slot, the dictionary that lists the object
};

std::string called(const VcDbObject& object) { return dxfNameOf(object); }

// References that lead nowhere. Owners of what was erased are left: erased entries do not count.
class DanglingVisitor final : public ReferenceVisitor {
public:
    using Report = std::function<bool(VcDbObject&, VcDbObjectId, bool isErased)>;
    DanglingVisitor(DatabaseCore& db, Report report) : m_db(db), m_report(std::move(report)) {}

    void look(VcDbObject& object)
    {
        m_looked = &object;
        visitAll(object);
    }

protected:
    VcDbObjectId visit(VcDbObjectId id, RefKind kind) override
    {
        const VcDbObject* target = m_db.object(id);
        const bool isErased = target && target->isErased() && kind == RefKind::HardPointer;
        if (target && !isErased)
            return id;
        return m_report(*m_looked, id, isErased) ? VcDbObjectId() : id;
    }

private:
    DatabaseCore& m_db;
    Report m_report;
    VcDbObject* m_looked = nullptr;
};

void Audit::references()
{
    DanglingVisitor visitor(m_db, [&](VcDbObject& object, VcDbObjectId id, bool isErased) {
        return found(object, fmt::format("{} refers to {:X}, {}", called(object), m_db.handleOf(id),
                                         isErased ? "which is erased" : "which no object has"));
    });
    everyLive([&](VcDbObject& object) {
        visitor.look(object);
        if (ObjectExtras* extras = m_fix ? object.extras() : nullptr)
            std::erase_if(extras->reactors, [](VcDbObjectId id) { return id.isNull(); });
    });
}

void Audit::gatherHolders()
{
    everyLive([&](VcDbObject& object) {
        if (const auto* dictionary = VcDbDictionary::cast(&object))
            for (const auto& [name, id] : dictionary->liveEntries())
                m_holders.emplace(id.slot(), object.objectId());
        if (const VcDbObjectId extension = object.extensionDictionary(); !extension.isNull())
            m_holders[extension.slot()] = object.objectId();
    });
}

VcDbObjectId Audit::properOwner(const VcDbObject& object)
{
    if (m_holders.empty())
        gatherHolders();
    const auto holder = m_holders.find(object.objectId().slot());
    return holder != m_holders.end() ? holder->second : m_db.rootDictionary();
}

// Records belong to their tables and entities to their blocks by the way they are listed; other objects say it themselves.
void Audit::owners()
{
    everyLive([&](VcDbObject& object) {
        if (object.isKindOf(VcDbEntity::desc()) || object.isKindOf(VcDbSymbolTable::desc()) ||
            object.isKindOf(VcDbSymbolTableRecord::desc()) || object.objectId() == m_db.rootDictionary())
            return;
        const VcDbObject* owner = m_db.object(object.ownerId());
        if (owner && !owner->isErased())
            return;
        if (found(object, fmt::format("{} has no owner", called(object))))
            object.setOwnerId(properOwner(object));
    });
}

// Names that stand twice in a table. Viewports share theirs on purpose.
void Audit::names()
{
    for (int t = 0; t < 9; ++t) {
        if (NameTable(t) == NameTable::Viewport)
            continue;
        std::unordered_set<std::string, NoCaseHash, NoCaseEqual> seen;
        for (const VcDbObjectId id : m_db.table(NameTable(t)).records()) {
            auto& record = *m_db.objectAs<VcDbSymbolTableRecord>(id);
            if (seen.insert(record.nameUtf8()).second)
                continue;
            if (!found(record, fmt::format("{} \"{}\" stands twice", called(record), record.nameUtf8())))
                continue;
            std::string free;
            for (int number = 2; seen.contains(free = fmt::format("{}_{}", record.nameUtf8(), number));)
                ++number;
            record.assertWriteEnabled();
            record.setNameUtf8(free);
            seen.insert(free);
        }
    }
}

// A block that holds itself, directly or by others. The reference that closes the circle is erased.
void Audit::recursion()
{
    enum class State : char { Unseen, Open, Done };
    struct Step {
        const VcDbBlockTableRecord* block;
        std::size_t next;
    };
    std::unordered_map<std::uint32_t, State> states;
    for (const VcDbObjectId id : m_db.table(NameTable::Block).records()) {
        if (states[id.slot()] != State::Unseen)
            continue;
        std::vector<Step> path{{m_db.objectAs<VcDbBlockTableRecord>(id), 0}};
        states[id.slot()] = State::Open;
        while (!path.empty()) {
            Step& step = path.back();
            if (step.next == step.block->memberSlots().size()) {
                states[step.block->objectId().slot()] = State::Done;
                path.pop_back();
                continue;
            }
            auto* reference = VcDbBlockReference::cast(m_db.objectAt(step.block->memberSlots()[step.next++]));
            const auto* inner = reference && !reference->isErased()
                                    ? m_db.liveAs<VcDbBlockTableRecord>(reference->blockTableRecord())
                                    : nullptr;
            if (!inner)
                continue;
            State& state = states[inner->objectId().slot()];
            if (state == State::Open) {
                if (found(*reference, fmt::format("block \"{}\" holds itself", inner->nameUtf8())))
                    reference->erase();
            } else if (state == State::Unseen) {
                state = State::Open;
                path.push_back({inner, 0});
            }
        }
    }
}

// Values that no tool can do anything with.
void Audit::values()
{
    const VcDbObjectId layerZero = m_db.findRecord(NameTable::Layer, "0");
    everyLive([&](VcDbObject& object) {
        auto* entity = VcDbEntity::cast(&object);
        if (!entity)
            return;
        if (entity->props().layer.isNull() && found(object, fmt::format("{} has no layer", called(object)))) {
            EntityProps props = entity->props();
            props.layer = layerZero;
            entity->assertWriteEnabled();
            entity->setProps(props);
        }
        if (const auto* circle = VcDbCircle::cast(entity); circle && !(circle->radius() > 0))
            found(object, fmt::format("the radius of a circle is {}", circle->radius()), false);
        if (const auto* arc = VcDbArc::cast(entity); arc && !(arc->radius() > 0))
            found(object, fmt::format("the radius of an arc is {}", arc->radius()), false);
        if (const auto* text = VcDbText::cast(entity); text && !(text->height() > 0))
            found(object, fmt::format("the height of a text is {}", text->height()), false);
        const auto* reference = VcDbBlockReference::cast(entity);
        if (reference && !m_db.liveAs<VcDbBlockTableRecord>(reference->blockTableRecord()) &&
            found(object, "a block reference names no block"))
            entity->erase();
    });
}

}

AuditReport auditDrawing(VcDbDatabase& database, bool fix) { return Audit(database.core(), fix).run(); }
