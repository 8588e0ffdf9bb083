#include "host/app/contents.h"

#include "host/db/database.h"
#include "host/db/kept_object.h"
#include "host/text/font_library.h"
#include "sdk/vcdb_layout.h"
#include "sdk/vcdb_records.h"
#include "sdk/vcdb_tables.h"

#include <algorithm>
#include <cmath>

namespace vk::app {

namespace {

void countOwned(DatabaseCore& db, const VcDbEntity& entity, CountByType& counts)
{
    const auto count = [&](VcDbObjectId id) {
        if (const VcDbObject* owned = db.liveAs<VcDbObject>(id))
            ++counts[dxfNameOf(*owned)];
    };
    if (const std::vector<VcDbObjectId>* owned = entity.subEntities())
        std::for_each(owned->begin(), owned->end(), count);
    count(entity.endMark());
}

template <class Visit>
void eachMember(DatabaseCore& db, const VcDbBlockTableRecord& block, const Visit& visit)
{
    for (const std::uint32_t slot : block.memberSlots())
        if (VcDbObject* object = db.objectAt(slot); object && !object->isErased())
            if (VcDbEntity* entity = VcDbEntity::cast(object))
                visit(*entity);
}

CountByType countsOf(DatabaseCore& db, const VcDbBlockTableRecord& block)
{
    CountByType counts;
    eachMember(db, block, [&](const VcDbEntity& entity) {
        ++counts[dxfNameOf(entity)];
        countOwned(db, entity, counts);
    });
    return counts;
}

std::vector<std::string> namesIn(DatabaseCore& db, NameTable table)
{
    std::vector<std::string> names;
    for (const VcDbObjectId id : db.table(table).records())
        if (const auto* record = db.liveAs<VcDbSymbolTableRecord>(id))
            names.push_back(record->nameUtf8());
    return names;
}

std::vector<const VcDbLayout*> layoutsOf(DatabaseCore& db)
{
    std::vector<const VcDbLayout*> layouts;
    for (const VcDbObjectId id : db.table(NameTable::Block).records())
        if (const auto* block = db.liveAs<VcDbBlockTableRecord>(id))
            if (const auto* layout = db.liveAs<VcDbLayout>(block->getLayoutId()))
                layouts.push_back(layout);
    std::stable_sort(layouts.begin(), layouts.end(),
                     [](const auto* a, const auto* b) { return a->getTabOrder() < b->getTabOrder(); });
    return layouts;
}

void countSpaces(DatabaseCore& db, Contents& contents)
{
    for (const VcDbLayout* layout : layoutsOf(db)) {
        contents.layouts.push_back(layout->nameUtf8());
        const auto* block = db.liveAs<VcDbBlockTableRecord>(layout->getBlockTableRecordId());
        if (block && block->objectId() != db.modelSpace())
            contents.paper.emplace_back(layout->nameUtf8(), countsOf(db, *block));
    }
    if (const auto* model = db.liveAs<VcDbBlockTableRecord>(db.modelSpace()))
        contents.model = countsOf(db, *model);
}

bool isFinite(const VcGePoint3d& p) { return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z); }

void measure(DatabaseCore& db, Contents& contents)
{
    const auto* model = db.liveAs<VcDbBlockTableRecord>(db.modelSpace());
    if (!model)
        return;
    VcDbExtents whole;
    eachMember(db, *model, [&](const VcDbEntity& entity) {
        VcDbExtents own;
        if (entity.getGeomExtents(own) == Vcad::eOk && isFinite(own.minPoint()) && isFinite(own.maxPoint()))
            whole.addExt(own);
    });
    if (whole.isEmpty())
        return;
    const VcGePoint3d &a = whole.minPoint(), &b = whole.maxPoint();
    contents.extents = {{a.x, a.y, a.z}, {b.x, b.y, b.z}};
}

vktext::FontRequest requestOf(const VcDbTextStyleTableRecord& style)
{
    vktext::FontRequest request;
    const auto typeface = style.typeface();
    if (typeface && !typeface->family.empty()) {
        request.font = typeface->family;
        request.bold = typeface->bold;
        request.italic = typeface->italic;
    } else {
        request.font = style.fileUtf8();
    }
    request.bigFont = style.bigFontUtf8();
    return request;
}

const char* nameOf(vktext::FontMatch match)
{
    switch (match) {
    case vktext::FontMatch::Exact:
        return "exact";
    case vktext::FontMatch::SameWidths:
        return "same widths";
    case vktext::FontMatch::Substitute:
        return "substitute";
    }
    return "substitute";
}

void findFonts(DatabaseCore& db, Contents& contents)
{
    vktext::FontLibrary& library = vktext::FontLibrary::instance();
    for (const VcDbObjectId id : db.table(NameTable::TextStyle).records()) {
        const auto* style = db.liveAs<VcDbTextStyleTableRecord>(id);
        if (!style || style->isShapeFile())
            continue;
        const vktext::FontRequest request = requestOf(*style);
        library.font(request);
        for (const vktext::FontUse& use : library.report())
            if (use.asked == request)
                contents.fonts.push_back({style->nameUtf8(), request.font, use.taken, nameOf(use.match)});
    }
}

}

Contents contentsOf(DatabaseCore& db)
{
    Contents contents;
    countSpaces(db, contents);
    contents.layers = namesIn(db, NameTable::Layer);
    contents.blocks = namesIn(db, NameTable::Block);
    contents.styles = namesIn(db, NameTable::TextStyle);
    contents.dimstyles = namesIn(db, NameTable::DimStyle);
    contents.linetypes = namesIn(db, NameTable::Linetype);
    measure(db, contents);
    findFonts(db, contents);
    return contents;
}

}  // namespace vk::app
