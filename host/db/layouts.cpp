#include "host/db/layouts.h"

#include "host/base/unicode.h"
#include "host/db/clone.h"
#include "host/db/database.h"
#include "host/db/standard_objects.h"
#include "sdk/vcdb_layout.h"
#include "sdk/vcdb_objects.h"
#include "sdk/vcdb_tables.h"
#include "sdk/vcdb_viewport.h"

#include <algorithm>

namespace {

constexpr const char* kPaperSpace = "*Paper_Space";

VcDbDictionary* layoutDictionary(const DatabaseCore& db)
{
    const auto* root = db.objectAs<VcDbDictionary>(db.rootDictionary());
    return root ? db.liveAs<VcDbDictionary>(root->find("ACAD_LAYOUT")) : nullptr;
}

// Which block is the paper space is no object's state.
class PaperSpaceChange : public UndoAction {
public:
    explicit PaperSpaceChange(VcDbObjectId other) : m_other(other) {}
    void swap(DatabaseCore& db) override
    {
        const VcDbObjectId now = db.paperSpace();
        db.setSpaces(db.modelSpace(), m_other);
        m_other = now;
    }

private:
    VcDbObjectId m_other;
};

std::string freeSheetName(const DatabaseCore& db)
{
    if (db.findRecord(NameTable::Block, kPaperSpace).isNull())
        return kPaperSpace;
    for (int number = 0;; ++number)
        if (std::string name = kPaperSpace + std::to_string(number); db.findRecord(NameTable::Block, name).isNull())
            return name;
}

int nextTab(const DatabaseCore& db)
{
    int last = 0;
    for (const VcDbLayout* layout : layoutsByTab(db))
        last = std::max(last, layout->getTabOrder());
    return last + 1;
}

// A layout and its block that name each other, entered in the dictionary.
VcDbLayout& enter(DatabaseCore& db, std::unique_ptr<VcDbLayout> layout, const std::string& name)
{
    VcDbBlockTableRecord& block = addBlockRecord(db, freeSheetName(db));
    VcDbDictionary& dictionary = *layoutDictionary(db);
    VcDbLayout& added = *layout;
    added.setNameUtf8(name);
    added.setTabOrder(nextTab(db));
    added.setBlockTableRecordId(block.objectId());
    added.setLastActiveViewport({});
    dictionary.setAtUtf8(name, db.add(std::move(layout), dictionary.objectId()));
    block.setLayoutId(added.objectId());
    return added;
}

void keepHeaderIn(const DatabaseCore& db, VcDbLayout& layout)
{
    const HeaderVars& header = db.header();
    const auto low = header.point("$PLIMMIN"), high = header.point("$PLIMMAX"), base = header.point("$PINSBASE");
    if (low && high)
        layout.setLimits({low->x, low->y}, {high->x, high->y});
    if (base)
        layout.setInsertionBase({base->x, base->y, base->z});
    const auto origin = header.point("$PUCSORG"), x = header.point("$PUCSXDIR"), y = header.point("$PUCSYDIR");
    if (origin && x && y)
        layout.setUcs({origin->x, origin->y, origin->z}, {x->x, x->y, x->z}, {y->x, y->y, y->z});
    const std::string name = header.text("$PUCSNAME", "");
    layout.setUcsName(name.empty() ? VcDbObjectId() : db.findRecord(NameTable::Ucs, name));
}

void takeHeaderFrom(DatabaseCore& db, const VcDbLayout& layout)
{
    HeaderVars& header = db.header();
    VcGePoint2d low, high;
    layout.getLimits(low, high);
    header.setPoint("$PLIMMIN", low.x, low.y);
    header.setPoint("$PLIMMAX", high.x, high.y);
    const VcGePoint3d base = layout.insertionBase();
    header.setPoint("$PINSBASE", base.x, base.y, base.z);
    VcGePoint3d origin;
    VcGeVector3d x, y;
    layout.getUcs(origin, x, y);
    header.setPoint("$PUCSORG", origin.x, origin.y, origin.z);
    header.setPoint("$PUCSXDIR", x.x, x.y, x.z);
    header.setPoint("$PUCSYDIR", y.x, y.y, y.z);
    const auto* record = db.liveAs<VcDbSymbolTableRecord>(layout.ucsName());
    header.setText("$PUCSNAME", 2, record ? record->nameUtf8() : std::string());
}

void renameBlock(VcDbBlockTableRecord& block, const std::string& name)
{
    block.assertWriteEnabled();
    block.setNameUtf8(name);
}

}

std::vector<VcDbLayout*> layoutsByTab(const DatabaseCore& db)
{
    std::vector<VcDbLayout*> layouts;
    if (const VcDbDictionary* dictionary = layoutDictionary(db))
        for (const auto& [name, id] : dictionary->liveEntries())
            if (auto* layout = db.liveAs<VcDbLayout>(id))
                layouts.push_back(layout);
    std::stable_sort(layouts.begin(), layouts.end(), [&](const VcDbLayout* a, const VcDbLayout* b) {
        const bool modelA = isModelLayout(db, *a), modelB = isModelLayout(db, *b);
        return modelA != modelB ? modelA : a->getTabOrder() < b->getTabOrder();
    });
    return layouts;
}

VcDbLayout* layoutNamed(const DatabaseCore& db, std::string_view name)
{
    const VcDbDictionary* dictionary = layoutDictionary(db);
    return dictionary ? db.liveAs<VcDbLayout>(dictionary->find(name)) : nullptr;
}

VcDbLayout* layoutOfBlock(const DatabaseCore& db, VcDbObjectId block)
{
    const auto* record = db.liveAs<VcDbBlockTableRecord>(block);
    return record ? db.liveAs<VcDbLayout>(record->getLayoutId()) : nullptr;
}

bool isModelLayout(const DatabaseCore& db, const VcDbLayout& layout)
{
    return layout.getBlockTableRecordId() == db.modelSpace();
}

VcDbLayout& addLayout(DatabaseCore& db, const std::string& name)
{
    const VcDbLayout* like = layoutOfBlock(db, db.paperSpace());
    auto layout = like ? std::make_unique<VcDbLayout>(*like) : std::make_unique<VcDbLayout>();
    layout->detach();
    layout->setUcs({}, {1, 0, 0}, {0, 1, 0});
    VcDbLayout& added = enter(db, std::move(layout), name);
    sheetViewport(db, added.getBlockTableRecordId());
    return added;
}

VcDbLayout& copyLayout(DatabaseCore& db, const VcDbLayout& source, const std::string& name)
{
    const DatabaseCore& from = *DatabaseCore::of(source.objectId());
    auto layout = std::make_unique<VcDbLayout>(source);
    layout->detach();
    if (&from != &db)
        layout->dropReferences();
    VcDbLayout& added = enter(db, std::move(layout), name);
    if (source.getBlockTableRecordId() == from.paperSpace())
        keepHeaderIn(from, added);
    if (&from != &db)
        added.setUcsName({});
    VcDbObjectIdArray members;
    if (const auto* block = from.liveAs<VcDbBlockTableRecord>(source.getBlockTableRecordId()))
        for (const std::uint32_t slot : block->memberSlots())
            if (const VcDbObject* member = from.objectAt(slot); member && !member->isErased())
                members.push_back(member->objectId());
    VcDbIdMapping mapping;
    cloneObjects(members, added.getBlockTableRecordId(), mapping);
    return added;
}

void eraseLayout(DatabaseCore& db, VcDbLayout& layout)
{
    layout.erase();
    if (auto* block = db.liveAs<VcDbBlockTableRecord>(layout.getBlockTableRecordId()))
        block->eraseWithOwner(true);
}

void renameLayout(DatabaseCore& db, VcDbLayout& layout, const std::string& name)
{
    (void)db;
    layout.setLayoutName(utf8ToWide(name).c_str());
}

void makePaperSpace(DatabaseCore& db, VcDbLayout& layout)
{
    const VcDbObjectId wanted = layout.getBlockTableRecordId();
    auto* now = db.liveAs<VcDbBlockTableRecord>(db.paperSpace());
    auto* next = db.liveAs<VcDbBlockTableRecord>(wanted);
    if (!next || next == now || isModelLayout(db, layout))
        return;
    if (VcDbLayout* old = layoutOfBlock(db, db.paperSpace()))
        keepHeaderIn(db, *old);
    const std::string name = next->nameUtf8();
    if (now) {
        renameBlock(*next, freeSheetName(db));
        renameBlock(*now, name);
    }
    renameBlock(*next, kPaperSpace);
    if (db.undo().isRecording())
        db.undo().record(std::make_unique<PaperSpaceChange>(db.paperSpace()));
    db.setSpaces(db.modelSpace(), wanted);
    takeHeaderFrom(db, layout);
}

std::vector<VcDbViewport*> viewportsOf(const DatabaseCore& db, VcDbObjectId block)
{
    std::vector<VcDbViewport*> viewports;
    if (const auto* record = db.liveAs<VcDbBlockTableRecord>(block))
        for (const std::uint32_t slot : record->memberSlots())
            if (auto* viewport = VcDbViewport::cast(db.objectAt(slot)); viewport && !viewport->isErased())
                viewports.push_back(viewport);
    return viewports;
}

VcDbViewport& sheetViewport(DatabaseCore& db, VcDbObjectId block)
{
    for (VcDbViewport* viewport : viewportsOf(db, block))
        if (viewport->number() == 1)
            return *viewport;
    VcGePoint2d low, high;
    if (const VcDbLayout* layout = layoutOfBlock(db, block))
        layout->getLimits(low, high);
    auto made = std::make_unique<VcDbViewport>();
    made->setDatabaseDefaults(&db.face());
    made->setLayer(db.findRecord(NameTable::Layer, "0"));
    made->setNumber(1);
    made->setCenterPoint({(low.x + high.x) / 2, (low.y + high.y) / 2, 0});
    made->setHeight(std::max(high.y - low.y, 1.0));
    made->setWidth(std::max(high.x - low.x, 1.0));
    made->setViewCenter({(low.x + high.x) / 2, (low.y + high.y) / 2});
    made->setViewHeight(std::max(high.y - low.y, 1.0));
    VcDbViewport& added = *made;
    VcDbObjectId id;
    db.objectAs<VcDbBlockTableRecord>(block)->appendVcDbEntity(id, made.release());
    added.close();
    return added;
}
