#include "host/db/standard_objects.h"

#include "host/base/unicode.h"
#include "host/db/coordinate_system.h"
#include "host/db/database.h"
#include "host/db/rec_dim_variables.h"
#include "host/db/standard_header.h"
#include "sdk/vcdb_insert.h"
#include "sdk/vcdb_layout.h"
#include "sdk/vcdb_objects.h"
#include "sdk/vcdb_records.h"

namespace {

class StandardObjects {
public:
    explicit StandardObjects(DatabaseCore& db);
    void ensureAll();

private:
    void ensureTables();
    void ensureRecords();
    void ensureSpaces();
    void ensureDictionaries();
    void ensureMlineStyle(VcDbDictionary& styles);
    void ensurePlotStyles(VcDbDictionary& root);
    void ensureScales(VcDbDictionary& scales);
    void ensureLayouts(VcDbDictionary& layouts);
    void ensureClasses();

    template <class Table>
    void ensureTable(NameTable which, std::uint64_t handle);
    // The record of that name where it has to be filled in: because it is new, or was made for a name that a file uses.
    template <class Record>
    Record* newRecord(NameTable which, const char* name, std::uint64_t handle);
    VcDbObjectId ensureSpace(const char* name, std::uint64_t handle);
    VcDbDictionary& ensureDictionary(VcDbDictionary& parent, const char* name, std::uint64_t handle);
    template <class T>
    T& addTo(VcDbDictionary& dictionary, const std::string& name, std::unique_ptr<T> object, std::uint64_t handle = 0,
             VcDbObjectId reserved = {});
    VcDbLayout* layoutOf(const VcDbDictionary& layouts, VcDbObjectId block) const;
    VcDbLayout& makeLayout(VcDbDictionary& layouts, VcDbBlockTableRecord& block);
    void setUpSheet(VcDbLayout& layout) const;
    // The customary handle of an object, in a drawing that was empty.
    std::uint64_t customary(std::uint64_t handle) const
    {
        return m_isNew && m_db.findHandle(handle).isNull() ? handle : 0;
    }

    DatabaseCore& m_db;
    const bool m_isNew;
    const bool m_isComplete;  // of a release that has everything; what it lacks it does without
    const bool m_metric;
    bool m_headerKeepsUcs;  // and no viewport's record does
};

bool isMetric(const DatabaseCore& db) { return db.header().integer("$MEASUREMENT", db.origin.fromFile ? 0 : 1) == 1; }

StandardObjects::StandardObjects(DatabaseCore& db)
    : m_db(db), m_isNew(!db.origin.fromFile && db.rootDictionary().isNull()),
      m_isComplete(db.origin.fromFile && db.origin.version >= DxfVersion::R2000 && !db.header().entries().empty()),
      m_metric(isMetric(db)), m_headerKeepsUcs(db.origin.fromFile && db.origin.version < DxfVersion::R2000)
{
}

void StandardObjects::ensureAll()
{
    ensureTables();
    ensureRecords();
    ensureSpaces();
    ensureDictionaries();
    if (m_headerKeepsUcs)
        adoptHeaderUcs(m_db);
    if (!m_isComplete)
        ensureHeaderVariables(m_db, m_metric);
}

// Tables and their records

template <class Table>
void StandardObjects::ensureTable(NameTable which, std::uint64_t handle)
{
    if (m_db.tableId(which).isNull())
        m_db.tableId(which) = m_db.add(std::make_unique<Table>(), {}, customary(handle));
}

void StandardObjects::ensureTables()
{
    ensureTable<VcDbBlockTable>(NameTable::Block, 0x1);
    ensureTable<VcDbLayerTable>(NameTable::Layer, 0x2);
    ensureTable<VcDbTextStyleTable>(NameTable::TextStyle, 0x3);
    ensureTable<VcDbLinetypeTable>(NameTable::Linetype, 0x5);
    ensureTable<VcDbViewTable>(NameTable::View, 0x6);
    ensureTable<VcDbUCSTable>(NameTable::Ucs, 0x7);
    ensureTable<VcDbViewportTable>(NameTable::Viewport, 0x8);
    ensureTable<VcDbRegAppTable>(NameTable::AppId, 0x9);
    ensureTable<VcDbDimStyleTable>(NameTable::DimStyle, 0xA);
}

template <class Record>
Record* StandardObjects::newRecord(NameTable which, const char* name, std::uint64_t handle)
{
    VcDbSymbolTable& table = m_db.table(which);
    if (auto* known = m_db.objectAs<Record>(table.find(name))) {
        const bool wasImplicit = known->isImplicit();
        known->setImplicit(false);
        return wasImplicit ? known : nullptr;
    }
    auto record = std::make_unique<Record>();
    record->setNameUtf8(name);
    Record* added = record.get();
    m_db.add(std::move(record), table.objectId(), customary(handle));
    table.recordAdded(*added);
    return added;
}

void StandardObjects::ensureRecords()
{
    newRecord<VcDbRegAppTableRecord>(NameTable::AppId, "ACAD", 0x12);
    newRecord<VcDbLinetypeTableRecord>(NameTable::Linetype, "ByBlock", 0x14);
    newRecord<VcDbLinetypeTableRecord>(NameTable::Linetype, "ByLayer", 0x15);
    if (auto* continuous = newRecord<VcDbLinetypeTableRecord>(NameTable::Linetype, "Continuous", 0x16))
        continuous->setPattern("Solid line", {});
    if (auto* layer = newRecord<VcDbLayerTableRecord>(NameTable::Layer, "0", 0x10))
        layer->setLinetypeObjectId(m_db.findRecord(NameTable::Linetype, "Continuous"));
    if (auto* style = newRecord<VcDbTextStyleTableRecord>(NameTable::TextStyle, "Standard", 0x11))
        style->setPriorSize(m_metric ? 2.5 : 0.2);

    VcDbDimVars vars = initialDimVars(false);
    vars.dimtxsty = m_db.findRecord(NameTable::TextStyle, "Standard");
    if (auto* style = newRecord<VcDbDimStyleTableRecord>(NameTable::DimStyle, "Standard", 0x27))
        style->setDimVars(vars);
    if (m_isNew && m_metric) {
        vars = initialDimVars(true);
        vars.dimtxsty = m_db.findRecord(NameTable::TextStyle, "Standard");
        if (auto* style = newRecord<VcDbDimStyleTableRecord>(NameTable::DimStyle, "ISO-25", 0x28))
            style->setDimVars(vars);
    }
    if (auto* viewport = newRecord<VcDbViewportTableRecord>(NameTable::Viewport, "*Active", 0x29)) {
        m_headerKeepsUcs = true;
        viewport->setHeight(m_metric ? 297 : 9);
        viewport->setWidth(m_metric ? 420 : 12);
        viewport->setCenterPoint(m_metric ? VcGePoint2d(210, 148.5) : VcGePoint2d(6, 4.5));
        // A file without the record has the model's coordinate system in its header alone.
        if (const auto o = m_db.header().point("$UCSORG"), x = m_db.header().point("$UCSXDIR"),
            y = m_db.header().point("$UCSYDIR");
            o && x && y)
            viewport->setUcs({o->x, o->y, o->z}, {x->x, x->y, x->z}, {y->x, y->y, y->z});
        if (!m_metric) {
            viewport->setSnapIncrements({0.5, 0.5});
            viewport->setGridIncrements({0.5, 0.5});
        }
    }
}

// Spaces

VcDbObjectId StandardObjects::ensureSpace(const char* name, std::uint64_t handle)
{
    newRecord<VcDbBlockTableRecord>(NameTable::Block, name, handle);
    return m_db.findRecord(NameTable::Block, name);
}

void StandardObjects::ensureSpaces()
{
    const VcDbObjectId model = ensureSpace("*Model_Space", 0x1F);
    const VcDbObjectId paper = ensureSpace("*Paper_Space", 0x1B);
    m_db.setSpaces(model, paper);
    for (const VcDbObjectId id : m_db.table(NameTable::Block).records())
        ensureBlockEnds(m_db, *m_db.objectAs<VcDbBlockTableRecord>(id));
}

// Dictionaries and what stands in them

template <class T>
T& StandardObjects::addTo(VcDbDictionary& dictionary, const std::string& name, std::unique_ptr<T> object,
                          std::uint64_t handle, VcDbObjectId reserved)
{
    T& added = *object;
    const VcDbObjectId id = reserved.isNull() ? m_db.add(std::move(object), dictionary.objectId(), customary(handle))
                                              : m_db.fill(reserved, std::move(object), dictionary.objectId());
    added.addPersistentReactor(dictionary.objectId());
    dictionary.setAtUtf8(name, id);
    return added;
}

VcDbDictionary& StandardObjects::ensureDictionary(VcDbDictionary& parent, const char* name, std::uint64_t handle)
{
    if (auto* known = m_db.liveAs<VcDbDictionary>(parent.find(name)))
        return *known;
    return addTo(parent, name, std::make_unique<VcDbDictionary>(), handle);
}

void StandardObjects::ensureDictionaries()
{
    if (!m_db.liveAs<VcDbDictionary>(m_db.rootDictionary()))
        m_db.rootDictionary() = m_db.add(std::make_unique<VcDbDictionary>(), {}, customary(0xC));
    auto& root = *m_db.objectAs<VcDbDictionary>(m_db.rootDictionary());
    ensureDictionary(root, "ACAD_GROUP", 0xD);
    ensureLayouts(ensureDictionary(root, "ACAD_LAYOUT", 0x1A));
    ensureMlineStyle(ensureDictionary(root, "ACAD_MLINESTYLE", 0x17));
    if (m_isComplete)
        return;
    ensureDictionary(root, "ACAD_PLOTSETTINGS", 0x19);
    ensurePlotStyles(root);
    if (root.find("ACAD_SCALELIST").isNull())
        ensureScales(ensureDictionary(root, "ACAD_SCALELIST", 0));
    ensureClasses();
}

void StandardObjects::ensureMlineStyle(VcDbDictionary& styles)
{
    if (!styles.find("Standard").isNull())
        return;
    const VcDbObjectId byLayer = m_db.findRecord(NameTable::Linetype, "ByLayer");
    auto style = std::make_unique<VcDbMlineStyle>();
    style->setName(L"STANDARD");
    style->setElements({{0.5, {}, byLayer}, {-0.5, {}, byLayer}});
    addTo(styles, "Standard", std::move(style), 0x18);
}

void StandardObjects::ensurePlotStyles(VcDbDictionary& root)
{
    if (!root.find("ACAD_PLOTSTYLENAME").isNull())
        return;
    auto& styles = addTo(root, "ACAD_PLOTSTYLENAME", std::make_unique<VcDbDictionaryWithDefault>(), 0xE);
    styles.setDefaultId(addTo(styles, "Normal", std::make_unique<VcDbPlaceHolder>(), 0xF).objectId());
}

struct StandardScale {
    const char* name;
    double paper, drawing;
};

const StandardScale kMetricScales[] = {
    {"1:1", 1, 1},   {"1:2", 1, 2},   {"1:4", 1, 4},   {"1:5", 1, 5},   {"1:8", 1, 8},     {"1:10", 1, 10},
    {"1:16", 1, 16}, {"1:20", 1, 20}, {"1:30", 1, 30}, {"1:40", 1, 40}, {"1:50", 1, 50},   {"1:100", 1, 100},
    {"2:1", 2, 1},   {"4:1", 4, 1},   {"8:1", 8, 1},   {"10:1", 10, 1}, {"100:1", 100, 1},
};

// Inches on paper to a foot.
const StandardScale kImperialScales[] = {
    {"1:1", 1, 1},
    {"1/128\" = 1'-0\"", 0.0078125, 12},
    {"1/64\" = 1'-0\"", 0.015625, 12},
    {"1/32\" = 1'-0\"", 0.03125, 12},
    {"1/16\" = 1'-0\"", 0.0625, 12},
    {"3/32\" = 1'-0\"", 0.09375, 12},
    {"1/8\" = 1'-0\"", 0.125, 12},
    {"3/16\" = 1'-0\"", 0.1875, 12},
    {"1/4\" = 1'-0\"", 0.25, 12},
    {"3/8\" = 1'-0\"", 0.375, 12},
    {"1/2\" = 1'-0\"", 0.5, 12},
    {"3/4\" = 1'-0\"", 0.75, 12},
    {"1\" = 1'-0\"", 1, 12},
    {"1-1/2\" = 1'-0\"", 1.5, 12},
    {"3\" = 1'-0\"", 3, 12},
    {"6\" = 1'-0\"", 6, 12},
    {"1'-0\" = 1'-0\"", 12, 12},
};

// Keys are A0 to A9, B0 to B9 and so on.
void StandardObjects::ensureScales(VcDbDictionary& scales)
{
    const std::span<const StandardScale> list = m_metric ? std::span(kMetricScales) : std::span(kImperialScales);
    for (std::size_t i = 0; i < list.size(); ++i) {
        auto scale = std::make_unique<VcDbScale>();
        scale->set(list[i].name, list[i].paper, list[i].drawing, i == 0);
        addTo(scales, {char('A' + i / 10), char('0' + i % 10)}, std::move(scale));
    }
}

// Layouts: each space has one, and they name each other.

VcDbLayout* StandardObjects::layoutOf(const VcDbDictionary& layouts, VcDbObjectId block) const
{
    for (const auto& [name, id] : layouts.liveEntries())
        if (auto* layout = m_db.liveAs<VcDbLayout>(id); layout && layout->getBlockTableRecordId() == block)
            return layout;
    return nullptr;
}

std::string freeLayoutName(const VcDbDictionary& layouts)
{
    for (int number = 1;; ++number)
        if (std::string name = "Layout" + std::to_string(number); layouts.find(name).isNull())
            return name;
}

void StandardObjects::setUpSheet(VcDbLayout& layout) const
{
    layout.setPlotRotation(1);
    layout.setPlotPaperUnits(m_metric ? VcDbPlotSettings::kMillimeters : VcDbPlotSettings::kInches);
    if (m_metric) {
        layout.setPaper("ISO_A4_(210.00_x_297.00_MM)", 210, 297, 7.5, 20);
        layout.setLimits({-20, -7.5}, {277, 202.5});
    } else {
        layout.setPaper("Letter_(8.50_x_11.00_Inches)", 215.9, 279.4, 6.35, 6.35);
        layout.setLimits({-0.25, -0.25}, {10.75, 8.25});
    }
}

// A block that names a layout which its file does not have gets one of that handle.
VcDbLayout& StandardObjects::makeLayout(VcDbDictionary& layouts, VcDbBlockTableRecord& block)
{
    const bool isModel = block.objectId() == m_db.modelSpace();
    auto layout = std::make_unique<VcDbLayout>();
    const std::string name = isModel ? "Model" : freeLayoutName(layouts);
    layout->setNameUtf8(name);
    layout->setTabOrder(isModel ? 0 : int(layouts.numEntries()) + (layouts.find("Model").isNull() ? 1 : 0));
    layout->setBlockTableRecordId(block.objectId());
    setUpSheet(*layout);
    if (isModel) {
        layout->setPlotFlags(std::int16_t(layout->plotFlags() | VcDbPlotSettings::kModelType));
        layout->setPlotType(VcDbPlotSettings::kDisplay);
        layout->setPlotRotation(0);
        layout->setLimits({0, 0}, m_metric ? VcGePoint2d(420, 297) : VcGePoint2d(12, 9));
    }
    const VcDbObjectId named = block.getLayoutId();
    return addTo(layouts, name, std::move(layout), isModel ? 0x22 : 0x1E, m_db.object(named) ? VcDbObjectId() : named);
}

void StandardObjects::ensureLayouts(VcDbDictionary& layouts)
{
    for (const VcDbObjectId id : m_db.table(NameTable::Block).records()) {
        auto& block = *m_db.objectAs<VcDbBlockTableRecord>(id);
        if (!block.isLayout() || block.isDependent() || m_db.liveAs<VcDbLayout>(block.getLayoutId()))
            continue;
        VcDbLayout* known = layoutOf(layouts, id);
        block.setLayoutId((known ? *known : makeLayout(layouts, block)).objectId());
    }
}

// Classes that older readers know only by their record in a file.
void StandardObjects::ensureClasses()
{
    struct Known {
        const char* dxfName;
        const char* cppName;
        int flags;
    };
    static constexpr Known kClasses[] = {{"ACDBDICTIONARYWDFLT", "AcDbDictionaryWithDefault", 0},
                                         {"ACDBPLACEHOLDER", "AcDbPlaceHolder", 0},
                                         {"LAYOUT", "AcDbLayout", 0},
                                         {"SCALE", "AcDbScale", 1153}};
    for (const Known& known : kClasses) {
        const auto there = [&](const ClassRecord& record) { return record.dxfName == known.dxfName; };
        if (std::any_of(m_db.classes.begin(), m_db.classes.end(), there))
            continue;
        ClassRecord& record = m_db.classes.emplace_back();
        record.dxfName = known.dxfName;
        record.cppName = known.cppName;
        record.application = "ObjectDBX Classes";
        record.proxyFlags = known.flags;
        record.hasCount = true;
    }
}

}

void ensureBlockEnds(DatabaseCore& db, VcDbBlockTableRecord& record)
{
    if (db.object(record.beginId()) && db.object(record.endId()))
        return;
    const VcDbObjectId layer = db.findRecord(NameTable::Layer, "0");
    const auto add = [&](std::unique_ptr<VcDbEntity> mark) {
        mark->setLayer(layer);
        return db.add(std::move(mark), record.objectId());
    };
    const VcDbObjectId begin = db.object(record.beginId()) ? record.beginId() : add(std::make_unique<VcDbBlockBegin>());
    record.setBeginEnd(begin, db.object(record.endId()) ? record.endId() : add(std::make_unique<VcDbBlockEnd>()));
}

VcDbBlockTableRecord& addBlockRecord(DatabaseCore& db, std::string name)
{
    auto record = std::make_unique<VcDbBlockTableRecord>();
    record->setNameUtf8(std::move(name));
    VcDbBlockTableRecord& added = *record;
    db.add(std::move(record), db.tableId(NameTable::Block));
    db.table(NameTable::Block).recordAdded(added);
    ensureBlockEnds(db, added);
    return added;
}

void ensureStandardObjects(DatabaseCore& db) { StandardObjects(db).ensureAll(); }
