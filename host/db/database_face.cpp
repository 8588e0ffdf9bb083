#include "host/db/clone.h"
#include "host/db/database.h"
#include "host/db/record_names.h"
#include "host/db/standard_objects.h"
#include "sdk/vcdb_objects.h"
#include "sdk/vcdb_records.h"
#include "sdk/vcdb_tables.h"
#include "sdk/vcdb_viewport.h"

VCRX_DEFINE(VcDbDatabase, VcRxObject)

VcDbDatabase::VcDbDatabase(bool buildDefault, bool) : m_core(std::make_unique<DatabaseCore>(*this))
{
    if (!buildDefault)
        return;
    ensureStandardObjects(*m_core);
    m_core->undo().setRecording(true);
}

VcDbDatabase::~VcDbDatabase() = default;

#define VCDB_GET_TABLE(Table, Which)                                                                                   \
    Vcad::ErrorStatus VcDbDatabase::getSymbolTable(Table*& table, VcDb::OpenMode mode)                                 \
    {                                                                                                                  \
        return vcdbOpenObject(table, m_core->tableId(NameTable::Which), mode);                                         \
    }
VCDB_GET_TABLE(VcDbBlockTable, Block)
VCDB_GET_TABLE(VcDbLayerTable, Layer)
VCDB_GET_TABLE(VcDbTextStyleTable, TextStyle)
VCDB_GET_TABLE(VcDbLinetypeTable, Linetype)
VCDB_GET_TABLE(VcDbDimStyleTable, DimStyle)
VCDB_GET_TABLE(VcDbRegAppTable, AppId)
VCDB_GET_TABLE(VcDbViewTable, View)
VCDB_GET_TABLE(VcDbViewportTable, Viewport)
VCDB_GET_TABLE(VcDbUCSTable, Ucs)

VcDbObjectId VcDbDatabase::blockTableId() const { return m_core->tableId(NameTable::Block); }
VcDbObjectId VcDbDatabase::layerTableId() const { return m_core->tableId(NameTable::Layer); }
VcDbObjectId VcDbDatabase::textStyleTableId() const { return m_core->tableId(NameTable::TextStyle); }
VcDbObjectId VcDbDatabase::linetypeTableId() const { return m_core->tableId(NameTable::Linetype); }
VcDbObjectId VcDbDatabase::dimStyleTableId() const { return m_core->tableId(NameTable::DimStyle); }
VcDbObjectId VcDbDatabase::regAppTableId() const { return m_core->tableId(NameTable::AppId); }
VcDbObjectId VcDbDatabase::viewTableId() const { return m_core->tableId(NameTable::View); }
VcDbObjectId VcDbDatabase::viewportTableId() const { return m_core->tableId(NameTable::Viewport); }
VcDbObjectId VcDbDatabase::UCSTableId() const { return m_core->tableId(NameTable::Ucs); }

VcDbObjectId VcDbDatabase::namedObjectsDictionaryId() const { return m_core->rootDictionary(); }

Vcad::ErrorStatus VcDbDatabase::getNamedObjectsDictionary(VcDbDictionary*& dictionary, VcDb::OpenMode mode)
{
    return vcdbOpenObject(dictionary, m_core->rootDictionary(), mode);
}

Vcad::ErrorStatus VcDbDatabase::getGroupDictionary(VcDbDictionary*& dictionary, VcDb::OpenMode mode)
{
    dictionary = nullptr;
    const auto* root = m_core->liveAs<VcDbDictionary>(m_core->rootDictionary());
    VcDbObjectId id;
    if (!root || root->getAt(L"ACAD_GROUP", id))
        return Vcad::eKeyNotFound;
    return vcdbOpenObject(dictionary, id, mode);
}

VcDbObjectId VcDbDatabase::currentSpaceId() const { return m_core->currentSpace(); }

VcDbObjectId VcDbDatabase::clayer() const
{
    const VcDbObjectId current = m_core->findRecord(NameTable::Layer, m_core->header().text("$CLAYER", "0"));
    return current.isNull() ? m_core->findRecord(NameTable::Layer, "0") : current;
}

VcDbObjectId VcDbDatabase::textstyle() const
{
    const VcDbObjectId current =
        m_core->findRecord(NameTable::TextStyle, m_core->header().text("$TEXTSTYLE", "Standard"));
    return current.isNull() ? m_core->findRecord(NameTable::TextStyle, "Standard") : current;
}

VcDbObjectId VcDbDatabase::dimstyle() const
{
    const VcDbObjectId current =
        m_core->findRecord(NameTable::DimStyle, m_core->header().text("$DIMSTYLE", "Standard"));
    return current.isNull() ? m_core->findRecord(NameTable::DimStyle, "Standard") : current;
}

Vcad::ErrorStatus VcDbDatabase::setClayer(VcDbObjectId layer)
{
    const auto* record = m_core->liveAs<VcDbLayerTableRecord>(layer);
    if (!record)
        return Vcad::eInvalidInput;
    if (record->isFrozen())
        return Vcad::eNotApplicable;
    m_core->header().setText("$CLAYER", 8, record->nameUtf8());
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbDatabase::deepCloneObjects(const VcDbObjectIdArray& ids, VcDbObjectId owner,
                                                 VcDbIdMapping& mapping, bool)
{
    return cloneObjects(ids, owner, mapping);
}

Vcad::ErrorStatus VcDbDatabase::purge(VcDbObjectIdArray& ids)
{
    const std::vector<bool> referred = referredSlots(*m_core);
    std::erase_if(ids, [&](VcDbObjectId id) {
        const VcDbObject* object = m_core->object(id);
        return !object || object->isErased() || referred[id.slot()] || object->mayErase() != Vcad::eOk;
    });
    return Vcad::eOk;
}

VcDbObjectIdArray VcDbDatabase::getViewportArray(bool includeOverall) const
{
    VcDbObjectIdArray ids;
    for (const std::uint32_t slot : m_core->mainOrder()) {
        const auto* viewport = VcDbViewport::cast(m_core->objectAt(slot));
        if (viewport && !viewport->isErased() && (includeOverall || viewport->number() != 1))
            ids.push_back(viewport->objectId());
    }
    return ids;
}

// Mappings

// Pairs in order, found by their place in an open table: copying a drawing asks it several times for each object.
struct VcDbIdMapping::Index {
    std::vector<VcDbIdPair> pairs;
    std::vector<std::uint32_t> places = std::vector<std::uint32_t>(16);  // from 1; a power of two of them

    // Where the key's place is, or the free one where it would be.
    std::uint32_t& placeOf(VcDbObjectId key)
    {
        const std::size_t mask = places.size() - 1;
        const std::uint64_t mixed = std::hash<VcDbObjectId>()(key) * 0x9e3779b97f4a7c15u;
        for (std::size_t at = std::size_t(mixed >> 32) & mask;; at = (at + 1) & mask)
            if (!places[at] || pairs[places[at] - 1].key() == key)
                return places[at];
    }
    void grow()
    {
        places.assign(places.size() * 2, 0);
        for (std::size_t i = 0; i < pairs.size(); ++i)
            placeOf(pairs[i].key()) = std::uint32_t(i + 1);
    }
};

VcDbIdMapping::VcDbIdMapping() : m_index(std::make_unique<Index>()) {}
VcDbIdMapping::~VcDbIdMapping() = default;

bool VcDbIdMapping::assign(const VcDbIdPair& pair)
{
    if (m_index->pairs.size() * 2 >= m_index->places.size())
        m_index->grow();
    std::uint32_t& place = m_index->placeOf(pair.key());
    if (place) {
        m_index->pairs[place - 1] = pair;
        return false;
    }
    m_index->pairs.push_back(pair);
    place = std::uint32_t(m_index->pairs.size());
    return true;
}

bool VcDbIdMapping::compute(VcDbIdPair& pair) const
{
    const std::uint32_t place = m_index->placeOf(pair.key());
    if (place)
        pair = m_index->pairs[place - 1];
    return place != 0;
}

const std::vector<VcDbIdPair>& VcDbIdMapping::pairs() const { return m_index->pairs; }
