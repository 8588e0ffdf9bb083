#include "host/db/record_names.h"

#include "host/base/unicode.h"
#include "host/db/database.h"
#include "host/db/extras.h"
#include "host/db/reference_visitor.h"
#include "sdk/vcdb_entity.h"
#include "sdk/vcdb_objects.h"
#include "sdk/vcdb_records.h"

#include <algorithm>
#include <utility>

static std::size_t charactersOf(std::string_view utf8)
{
    return std::size_t(std::ranges::count_if(utf8, [](char c) { return (c & 0xc0) != 0x80; }));
}

bool isLegalRecordName(std::string_view utf8)
{
    if (utf8.empty() || charactersOf(utf8) > 255 || utf8.front() == ' ' || utf8.back() == ' ')
        return false;
    const std::string_view rest = utf8.front() == '*' ? utf8.substr(1) : utf8;
    for (const char c : rest)
        if (static_cast<unsigned char>(c) < 32 || std::string_view("<>/\\\":;?*|,=`").find(c) != std::string_view::npos)
            return false;
    return true;
}

std::string freeAnonymousName(const VcDbSymbolTable& table, std::string_view prefix)
{
    std::string letters(prefix.substr(0, 2));
    const DatabaseCore* db = DatabaseCore::of(table.objectId());
    std::uint64_t next = 1;
    for (const std::uint32_t slot : table.recordSlots()) {
        const auto* record = static_cast<const VcDbSymbolTableRecord*>(db->objectAt(slot));
        const std::string& name = record->nameUtf8();
        if (name.size() > 2 && equalNoCase(std::string_view(name).substr(0, 2), letters))
            next = std::max<std::uint64_t>(next, std::strtoull(name.c_str() + 2, nullptr, 10) + 1);
    }
    return letters + std::to_string(next);
}

namespace {

class MarkReferred : public ReferenceVisitor {
public:
    explicit MarkReferred(std::vector<bool>& marks) : m_marks(marks) {}
    bool softOnesCount = true;

protected:
    VcDbObjectId visit(VcDbObjectId id, RefKind kind) override
    {
        const bool points = kind == RefKind::HardPointer || (kind == RefKind::SoftPointer && softOnesCount);
        if (points && id.slot() < m_marks.size())
            m_marks[id.slot()] = true;
        return id;
    }

private:
    std::vector<bool>& m_marks;
};

bool isStandardName(NameTable table, std::string_view name)
{
    switch (table) {
    case NameTable::Layer:
        return name == "0";
    case NameTable::Linetype:
        return equalNoCase(name, "ByLayer") || equalNoCase(name, "ByBlock") || equalNoCase(name, "Continuous");
    case NameTable::TextStyle:
    case NameTable::DimStyle:
        return equalNoCase(name, "Standard");
    case NameTable::AppId:
        return equalNoCase(name, "ACAD");
    case NameTable::Viewport:
        return equalNoCase(name, "*Active");
    default:
        return false;
    }
}

// Variables of the header that name a record, some of them the current one.
struct HeaderName {
    NameTable table;
    const char* variable;
    bool isCurrent = false;
};

constexpr HeaderName kHeaderNames[] = {
    {NameTable::Layer, "$CLAYER", true}, {NameTable::Linetype, "$CELTYPE", true},
    {NameTable::Linetype, "$DIMLTYPE"},  {NameTable::Linetype, "$DIMLTEX1"},
    {NameTable::Linetype, "$DIMLTEX2"},  {NameTable::TextStyle, "$TEXTSTYLE", true},
    {NameTable::TextStyle, "$DIMTXSTY"}, {NameTable::DimStyle, "$DIMSTYLE", true},
    {NameTable::Ucs, "$UCSNAME"},        {NameTable::Ucs, "$PUCSNAME"},
    {NameTable::Block, "$DIMBLK"},       {NameTable::Block, "$DIMBLK1"},
    {NameTable::Block, "$DIMBLK2"},      {NameTable::Block, "$DIMLDRBLK"},
};

bool isCurrent(const DatabaseCore& db, NameTable table, std::string_view name)
{
    return std::ranges::any_of(kHeaderNames, [&](const HeaderName& h) {
        return h.isCurrent && h.table == table && equalNoCase(db.header().text(h.variable, ""), name);
    });
}

}

bool hasFixedName(const DatabaseCore& db, const VcDbSymbolTableRecord& record)
{
    if (const auto* block = VcDbBlockTableRecord::cast(&record))
        return block->isLayout();
    for (const NameTable table : {NameTable::Layer, NameTable::Linetype, NameTable::AppId, NameTable::Viewport})
        if (db.tableId(table) == record.ownerId())
            return isStandardName(table, record.nameUtf8());
    return false;
}

void renameInHeader(DatabaseCore& db, const VcDbSymbolTableRecord& record, std::string_view oldName,
                    std::string_view newName)
{
    for (const HeaderName& h : kHeaderNames) {
        const TagList* value = db.tableId(h.table) == record.ownerId() ? db.header().find(h.variable) : nullptr;
        if (value && !value->empty() && !oldName.empty() && equalNoCase(db.header().text(h.variable, ""), oldName))
            db.header().setText(h.variable, (*value->begin()).code, newName);
    }
}

// What an application's record merely mentions, as a layer state does its layers, can still go.
static void markReferencesOf(VcDbObject* object, MarkReferred& visitor)
{
    if (!object || object->isErased())
        return;
    visitor.softOnesCount = !VcDbXrecord::cast(object);
    visitor.visitAll(*object);
}

std::vector<bool> referredSlots(const DatabaseCore& db)
{
    std::vector<bool> marks(db.slotCount());
    MarkReferred visitor(marks);
    for (std::uint32_t slot = 1; slot < db.slotCount(); ++slot)
        markReferencesOf(db.objectAt(slot), visitor);
    return marks;
}

static void walkAll(const DatabaseCore& db, ReferenceMarks& marks)
{
    marks = {referredSlots(db), db.changeCount(), true};
}

static void addChanges(const DatabaseCore& db, ReferenceMarks& marks)
{
    const auto changed = db.changedSince(marks.seenChanges);
    if (!changed || marks.referred.empty())
        return walkAll(db, marks);
    if (changed->empty())
        return;
    marks.referred.resize(db.slotCount());
    MarkReferred visitor(marks.referred);
    std::uint32_t last = 0;
    for (const std::uint32_t slot : *changed)
        if (slot != std::exchange(last, slot))
            markReferencesOf(db.objectAt(slot), visitor);
    marks.seenChanges = db.changeCount();
    marks.isExact = false;
}

// Erasing many records, as a purge does, asks about each what has been found unused before: that takes no further walk.
static bool isReferred(const DatabaseCore& db, std::uint32_t slot)
{
    ReferenceMarks& marks = db.referenceMarks();
    addChanges(db, marks);
    if (marks.referred[slot] && !marks.isExact)
        walkAll(db, marks);
    return marks.referred[slot];
}

bool recordIsNeeded(const DatabaseCore& db, const VcDbSymbolTableRecord& record)
{
    for (int t = 0; t < 9; ++t) {
        if (db.tableId(NameTable(t)) != record.ownerId())
            continue;
        if (isStandardName(NameTable(t), record.nameUtf8()) || isCurrent(db, NameTable(t), record.nameUtf8()))
            return true;
    }
    if (const auto* block = VcDbBlockTableRecord::cast(&record); block && block->isLayout())
        return true;
    return isReferred(db, record.objectId().slot());
}
