// Walking the drawing by names: entities in one order over all spaces, table records and dictionary entries.
#include "host/base/unicode.h"
#include "host/db/chain.h"
#include "host/db/database.h"
#include "host/db/host_services.h"
#include "sdk/vcdb_chains.h"
#include "sdk/vcdb_entity.h"
#include "sdk/vcdb_objects.h"
#include "sdk/vcdb_tables.h"

namespace {

using Slots = std::vector<std::uint32_t>;

VcDbEntity* liveMember(const DatabaseCore& db, const Slots& slots, std::size_t from)
{
    for (std::size_t i = from; i < slots.size(); ++i)
        if (VcDbObject* object = db.objectAt(slots[i]); object && !object->isErased())
            return VcDbEntity::cast(object);
    return nullptr;
}

VcDbEntity* liveSub(const DatabaseCore& db, const VcDbEntity& parent, std::size_t from)
{
    if (const auto* subs = parent.subEntities())
        for (std::size_t i = from; i < subs->size(); ++i)
            if (auto* sub = db.liveAs<VcDbEntity>((*subs)[i]))
                return sub;
    return db.liveAs<VcDbEntity>(parent.endMark());
}

VcDbEntity* nextMain(const DatabaseCore& db, const VcDbEntity& entity)
{
    const auto* block = db.objectAs<VcDbBlockTableRecord>(entity.ownerId());
    if (!block)
        return nullptr;
    return liveMember(db, block->isLayout() ? db.mainOrder() : block->memberSlots(), std::size_t(entity.order()) + 1);
}

VcDbEntity* nextOfSub(const DatabaseCore& db, const VcDbEntity& parent, VcDbObjectId sub)
{
    const auto* subs = parent.subEntities();
    if (sub == parent.endMark() || !subs)
        return nextMain(db, parent);
    const VcDbEntity* entity = db.objectAs<VcDbEntity>(sub);
    std::size_t at = entity->order();
    if (at >= subs->size() || (*subs)[at] != sub)
        at = std::size_t(std::find(subs->begin(), subs->end(), sub) - subs->begin());
    VcDbEntity* next = liveSub(db, parent, at + 1);
    return next ? next : nextMain(db, parent);
}

VcDbEntity* nextEntity(const DatabaseCore& db, VcDbObject& object)
{
    if (const auto* block = VcDbBlockTableRecord::cast(&object))
        return liveMember(db, block->memberSlots(), 0);
    const auto* entity = VcDbEntity::cast(&object);
    if (!entity)
        return nullptr;
    if (const auto* parent = db.objectAs<VcDbEntity>(entity->ownerId()))
        return nextOfSub(db, *parent, entity->objectId());
    if (entity->subEntities() && !entity->isErased())
        if (VcDbEntity* sub = liveSub(db, *entity, 0))
            return sub;
    return nextMain(db, *entity);
}

std::optional<NameTable> tableNamed(const wchar_t* name)
{
    static constexpr std::pair<const char*, NameTable> kTables[] = {
        {"LAYER", NameTable::Layer}, {"LTYPE", NameTable::Linetype},    {"STYLE", NameTable::TextStyle},
        {"BLOCK", NameTable::Block}, {"DIMSTYLE", NameTable::DimStyle}, {"APPID", NameTable::AppId},
        {"UCS", NameTable::Ucs},     {"VIEW", NameTable::View},         {"VPORT", NameTable::Viewport},
    };
    const std::string utf8 = name ? wideToUtf8(name) : std::string();
    for (const auto& [text, table] : kTables)
        if (equalNoCase(utf8, text))
            return table;
    return std::nullopt;
}

// Where TblNext stands in each table of the working drawing.
struct TableWalk {
    std::uint32_t database = 0;
    std::size_t at[9] = {};
};
TableWalk s_walk;

TableWalk& walkOf(const DatabaseCore& db)
{
    if (s_walk.database != db.serial())
        s_walk = {db.serial(), {}};
    return s_walk;
}

bool isListed(const VcDbObject* record)
{
    if (!record || record->isErased())
        return false;
    const auto* block = VcDbBlockTableRecord::cast(record);
    return !block || !block->isLayout();
}

std::uint32_t s_dictionaryAt = 0;
VcDbObjectId s_dictionary;

VcDbDictionary* dictionaryOf(const vds_name name)
{
    VcDbObjectId id;
    return nameToId(name, id) ? DatabaseCore::of(id)->liveAs<VcDbDictionary>(id) : nullptr;
}

}

int vcdbEntNext(const vds_name name, vds_name nameOut)
{
    const DatabaseCore* db = workingCore();
    if (!db || !nameOut)
        return RTERROR;
    VcDbEntity* next = nullptr;
    if (!name || (name[0] == 0 && name[1] == 0)) {
        next = liveMember(*db, db->mainOrder(), 0);
    } else {
        VcDbObjectId id;
        if (!nameToId(name, id))
            return RTERROR;
        db = DatabaseCore::of(id);
        next = nextEntity(*db, *db->object(id));
    }
    if (!next)
        return RTERROR;
    idToName(next->objectId(), nameOut);
    return RTNORM;
}

int vcdbEntLast(vds_name nameOut)
{
    const DatabaseCore* db = workingCore();
    if (!db || !nameOut)
        return RTERROR;
    const Slots& order = db->mainOrder();
    for (std::size_t i = order.size(); i-- > 0;)
        if (const VcDbObject* object = db->objectAt(order[i]); object && !object->isErased()) {
            idToName(object->objectId(), nameOut);
            return RTNORM;
        }
    return RTERROR;
}

resbuf* vcdbTblNext(const wchar_t* table, int rewind)
{
    const DatabaseCore* db = workingCore();
    const auto which = tableNamed(table);
    if (!db || !which)
        return nullptr;
    std::size_t& at = walkOf(*db).at[int(*which)];
    if (rewind)
        at = 0;
    const Slots& slots = db->table(*which).recordSlots();
    while (at < slots.size())
        if (VcDbObject* record = db->objectAt(slots[at++]); isListed(record))
            return tableChainOf(*record).release();
    return nullptr;
}

resbuf* vcdbTblSearch(const wchar_t* table, const wchar_t* name, int setNext)
{
    const DatabaseCore* db = workingCore();
    const auto which = tableNamed(table);
    if (!db || !which || !name)
        return nullptr;
    VcDbObject* record = db->object(db->findRecord(*which, wideToUtf8(name)));
    if (!record)
        return nullptr;
    if (setNext)
        walkOf(*db).at[int(*which)] = std::size_t(record->order()) + 1;
    return tableChainOf(*record).release();
}

int vcdbTblObjName(const wchar_t* table, const wchar_t* name, vds_name nameOut)
{
    const DatabaseCore* db = workingCore();
    const auto which = tableNamed(table);
    if (!db || !which || !name || !nameOut)
        return RTERROR;
    const VcDbObjectId id = db->findRecord(*which, wideToUtf8(name));
    if (id.isNull())
        return RTERROR;
    idToName(id, nameOut);
    return RTNORM;
}

int vcdbNamedObjDict(vds_name nameOut)
{
    const DatabaseCore* db = workingCore();
    if (!db || !nameOut)
        return RTERROR;
    idToName(db->rootDictionary(), nameOut);
    return RTNORM;
}

resbuf* vcdbDictSearch(const vds_name dictionary, const wchar_t* key, int setNext)
{
    const VcDbDictionary* entries = dictionaryOf(dictionary);
    VcDbObjectId id;
    if (!entries || !key || entries->getAt(key, id))
        return nullptr;
    VcDbObject* object = DatabaseCore::of(id)->object(id);
    if (!object || object->isErased())
        return nullptr;
    if (setNext) {
        const auto all = entries->liveEntries();
        s_dictionary = entries->objectId();
        s_dictionaryAt = 0;
        while (s_dictionaryAt < all.size() && all[s_dictionaryAt++].second != id) {
        }
    }
    return chainOf(*object).release();
}

resbuf* vcdbDictNext(const vds_name dictionary, int rewind)
{
    const VcDbDictionary* entries = dictionaryOf(dictionary);
    if (!entries)
        return nullptr;
    if (rewind || s_dictionary != entries->objectId()) {
        s_dictionary = entries->objectId();
        s_dictionaryAt = 0;
    }
    const auto all = entries->liveEntries();
    while (s_dictionaryAt < all.size()) {
        const VcDbObjectId id = all[s_dictionaryAt++].second;
        if (VcDbObject* object = DatabaseCore::of(id)->object(id); object && !object->isErased())
            return chainOf(*object).release();
    }
    return nullptr;
}
