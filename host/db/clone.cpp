#include "host/db/clone.h"

#include "host/db/database.h"
#include "host/db/extras.h"
#include "host/db/reference_visitor.h"
#include "sdk/vcdb_entity.h"
#include "sdk/vcdb_objects.h"
#include "sdk/vcdb_tables.h"

#include <unordered_map>

namespace {

class Cloner {
public:
    Cloner(DatabaseCore& from, DatabaseCore& to, VcDbIdMapping& mapping) : m_from(from), m_to(to), m_mapping(mapping) {}

    Vcad::ErrorStatus cloneTo(const VcDbObjectIdArray& ids, VcDbObjectId owner);
    VcDbObjectId translated(VcDbObjectId id, RefKind kind);
    void translateAll();

private:
    // Primary is what was asked for, as against what comes along with it.
    VcDbObjectId copy(VcDbObject& original, VcDbObjectId owner, bool primary = false);
    void copyOwned(VcDbObject& original, VcDbObject& clone);
    VcDbObjectId copyRecord(VcDbSymbolTableRecord& record);
    void markPrimary(VcDbObjectId original, VcDbObjectId clone);
    VcDbObjectId copyAnonymous(VcDbBlockTableRecord& block);
    void place(VcDbObject& clone, VcDbObjectId owner);
    bool isElsewhere() const { return &m_from != &m_to; }
    VcDbObjectId mapped(VcDbObjectId id) const;
    void settle(ObjectExtras& extras);
    VcDbObjectId copyByPath(VcDbObject& target);
    VcDbDictionary* twinOfDictionary(VcDbDictionary& original);

    DatabaseCore& m_from;
    DatabaseCore& m_to;
    VcDbIdMapping& m_mapping;
    std::vector<VcDbObjectId> m_toTranslate;
    std::unordered_map<std::string, std::uint64_t> m_lastNumbers;  // given out, by the letters before them
};

class Translator : public ReferenceVisitor {
public:
    explicit Translator(Cloner& cloner) : m_cloner(cloner) {}

protected:
    VcDbObjectId visit(VcDbObjectId id, RefKind kind) override { return m_cloner.translated(id, kind); }

private:
    Cloner& m_cloner;
};

VcDbObjectId Cloner::mapped(VcDbObjectId id) const
{
    VcDbIdPair pair(id, {});
    return m_mapping.compute(pair) ? pair.value() : VcDbObjectId();
}

Vcad::ErrorStatus Cloner::cloneTo(const VcDbObjectIdArray& ids, VcDbObjectId owner)
{
    for (const VcDbObjectId id : ids) {
        VcDbObject* original = m_from.object(id);
        if (!original || original->isErased() || !mapped(id).isNull())
            continue;
        auto* record = VcDbSymbolTableRecord::cast(original);
        if (record && isElsewhere())
            markPrimary(id, copyRecord(*record));
        else
            copy(*original, owner, true);
    }
    translateAll();
    return Vcad::eOk;
}

// Of a record, which may have been there.
void Cloner::markPrimary(VcDbObjectId original, VcDbObjectId clone)
{
    VcDbIdPair pair(original, clone);
    if (!m_mapping.compute(pair))
        return;
    pair.setPrimary(true);
    m_mapping.assign(pair);
}

VcDbObjectId Cloner::copy(VcDbObject& original, VcDbObjectId owner, bool primary)
{
    std::unique_ptr<VcDbObject> made = original.copyOf();
    VcDbObject& clone = *made;
    if (VcDbEntity* entity = VcDbEntity::cast(&clone); entity && isElsewhere())
        entity->carryProps(static_cast<VcDbEntity&>(original).props());
    clone.detach();
    const VcDbObjectId id = m_to.add(std::move(made), owner);
    VcDbIdPair pair(original.objectId(), id, true);
    pair.setPrimary(primary);
    m_mapping.assign(pair);
    place(clone, owner);
    copyOwned(original, clone);
    m_toTranslate.push_back(id);
    return id;
}

void Cloner::place(VcDbObject& clone, VcDbObjectId owner)
{
    VcDbObject* holder = m_to.object(owner);
    if (auto* block = VcDbBlockTableRecord::cast(holder))
        if (auto* entity = VcDbEntity::cast(&clone))
            block->memberAdded(*entity);
    if (auto* table = VcDbSymbolTable::cast(holder))
        table->recordAdded(static_cast<VcDbSymbolTableRecord&>(clone));
}

void Cloner::copyOwned(VcDbObject& original, VcDbObject& clone)
{
    if (auto* entity = VcDbEntity::cast(&original)) {
        auto& twin = static_cast<VcDbEntity&>(clone);
        if (auto* subs = twin.subEntities()) {
            const std::vector<VcDbObjectId> originals = *static_cast<const VcDbEntity*>(entity)->subEntities();
            subs->clear();
            for (const VcDbObjectId id : originals)
                if (VcDbObject* sub = m_from.object(id); sub && !sub->isErased())
                    subs->push_back(copy(*sub, clone.objectId()));
        }
        if (VcDbObject* end = m_from.object(entity->endMark()))
            twin.setEndMark(copy(*end, clone.objectId()));
    }
    if (auto* block = VcDbBlockTableRecord::cast(&original)) {
        auto& twin = static_cast<VcDbBlockTableRecord&>(clone);
        const std::vector<std::uint32_t> members = block->memberSlots();
        for (const std::uint32_t slot : members)
            if (VcDbObject* member = m_from.objectAt(slot); member && !member->isErased())
                copy(*member, clone.objectId());
        VcDbObject* begin = m_from.object(block->beginId());
        VcDbObject* end = m_from.object(block->endId());
        if (begin && end) {
            const VcDbObjectId newBegin = copy(*begin, {}), newEnd = copy(*end, {});
            m_to.object(newBegin)->setOwnerId(clone.objectId());
            m_to.object(newEnd)->setOwnerId(clone.objectId());
            twin.setBeginEnd(newBegin, newEnd);
        }
    }
    if (auto* dictionary = VcDbDictionary::cast(&original)) {
        auto& twin = static_cast<VcDbDictionary&>(clone);
        for (const auto& [key, id] : dictionary->liveEntries())
            if (VcDbObject* entry = m_from.object(id);
                entry && !entry->isErased() && entry->ownerId() == original.objectId())
                twin.setAtUtf8(key, copy(*entry, clone.objectId()));
    }
    const ObjectExtras* extras = original.extras();
    if (VcDbObject* dictionary = extras ? m_from.object(extras->extensionDictionary) : nullptr)
        clone.makeExtras().extensionDictionary = copy(*dictionary, clone.objectId());
}

// A block without a name of its own is never the one that has its number in the target.
VcDbObjectId Cloner::copyAnonymous(VcDbBlockTableRecord& block)
{
    const VcDbSymbolTable& table = m_to.table(NameTable::Block);
    const std::string prefix = block.nameUtf8().substr(0, 2);
    const VcDbObjectId id = copy(block, table.objectId());
    std::string name;
    do
        name = prefix + std::to_string(++m_lastNumbers[prefix]);
    while (!table.find(name, true).isNull());
    m_to.objectAs<VcDbBlockTableRecord>(id)->setNameUtf8(name);
    return id;
}

// A record of the same name that the target has stands for the original.
VcDbObjectId Cloner::copyRecord(VcDbSymbolTableRecord& record)
{
    for (int t = 0; t < 9; ++t) {
        if (m_from.tableId(NameTable(t)) != record.ownerId())
            continue;
        const VcDbObjectId there = m_to.findRecord(NameTable(t), record.nameUtf8());
        if (there.isNull())
            return copy(record, m_to.tableId(NameTable(t)));
        if (auto* block = VcDbBlockTableRecord::cast(&record);
            block && block->nameUtf8().starts_with('*') && !block->isLayout())
            return copyAnonymous(*block);
        m_mapping.assign(VcDbIdPair(record.objectId(), there, false));
        return there;
    }
    return {};
}

VcDbObjectId Cloner::translated(VcDbObjectId id, RefKind kind)
{
    if (id.databaseSerial() != m_from.serial())
        return id;
    if (const VcDbObjectId twin = mapped(id); !twin.isNull())
        return twin;
    if (!isElsewhere())
        return id;
    VcDbObject* target = m_from.object(id);
    if (!target || target->isErased())
        return {};
    if (auto* record = VcDbSymbolTableRecord::cast(target))
        return copyRecord(*record);
    if (kind == RefKind::SoftPointer)
        return {};
    return copyByPath(*target);
}

// The dictionary of the same name in the target, made when it is missing. Only those in the root have a name to go by.
VcDbDictionary* Cloner::twinOfDictionary(VcDbDictionary& original)
{
    const auto* root = m_from.objectAs<VcDbDictionary>(m_from.rootDictionary());
    auto* targetRoot = m_to.objectAs<VcDbDictionary>(m_to.rootDictionary());
    const std::string name = root ? root->nameOf(original.objectId()) : std::string();
    if (name.empty() || !targetRoot)
        return nullptr;
    if (auto* there = m_to.liveAs<VcDbDictionary>(targetRoot->find(name)))
        return there;
    auto made = std::make_unique<VcDbDictionary>();
    VcDbDictionary* twin = made.get();
    twin->setTreatElementsAsHard(original.isTreatElementsAsHard());
    targetRoot->setAtUtf8(name, m_to.add(std::move(made), targetRoot->objectId()));
    return twin;
}

// What a named dictionary holds, such as a style of multilines or an image, comes along under its name.
VcDbObjectId Cloner::copyByPath(VcDbObject& target)
{
    auto* holder = m_from.objectAs<VcDbDictionary>(target.ownerId());
    VcDbDictionary* twin = holder ? twinOfDictionary(*holder) : nullptr;
    if (!twin)
        return {};
    const std::string name = holder->nameOf(target.objectId());
    const VcDbObjectId there = twin->find(name);
    if (there.isNull()) {
        const VcDbObjectId id = copy(target, twin->objectId());
        twin->setAtUtf8(name, id);
        return id;
    }
    m_mapping.assign(VcDbIdPair(target.objectId(), there, false));
    return there;
}

void Cloner::translateAll()
{
    Translator translator(*this);
    translator.setHandleSpace(m_from);
    // Translating may bring more objects along, which join the list.
    for (std::size_t i = 0; i < m_toTranslate.size(); ++i) {
        VcDbObject* clone = m_to.object(m_toTranslate[i]);
        if (!clone)
            continue;
        translator.visitAll(*clone);
        if (ObjectExtras* extras = clone->extras(); extras && isElsewhere())
            settle(*extras);
    }
    m_toTranslate.clear();
}

// Reactors that stayed behind are none, and applications are known by name.
void Cloner::settle(ObjectExtras& extras)
{
    std::erase_if(extras.reactors, [](VcDbObjectId id) { return id.isNull(); });
    for (const Tag& tag : extras.xdata)
        if (tag.code == 1001)
            m_to.recordFor(NameTable::AppId, tag.view());
}

}

// Entities stand in blocks; a record has its name in its drawing already, unless it goes by a number.
static Vcad::ErrorStatus mayBeCloned(const VcDbObject& original, const DatabaseCore& to, VcDbObjectId owner)
{
    if (original.isKindOf(VcDbEntity::desc()))
        return to.liveAs<VcDbBlockTableRecord>(owner) ? Vcad::eOk : Vcad::eInvalidInput;
    const bool isNear = DatabaseCore::of(original.objectId()) == &to;
    return isNear && original.isKindOf(VcDbSymbolTableRecord::desc()) ? Vcad::eDuplicateKey : Vcad::eOk;
}

Vcad::ErrorStatus cloneObjects(const VcDbObjectIdArray& ids, VcDbObjectId owner, VcDbIdMapping& mapping)
{
    if (ids.empty())
        return Vcad::eOk;
    DatabaseCore* from = DatabaseCore::of(ids.front());
    DatabaseCore* to = DatabaseCore::of(owner);
    if (!from || !to)
        return Vcad::eNoDatabase;
    for (const VcDbObjectId id : ids) {
        if (id.databaseSerial() != from->serial())
            return Vcad::eWrongDatabase;
        const VcDbObject* original = from->object(id);
        if (const Vcad::ErrorStatus refusal = original ? mayBeCloned(*original, *to, owner) : Vcad::eOk)
            return refusal;
    }
    return Cloner(*from, *to, mapping).cloneTo(ids, owner);
}
