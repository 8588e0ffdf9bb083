#include "host/db/text_geometry.h"

#include "host/base/unicode.h"
#include "host/db/database.h"
#include "host/db/kept_extents.h"
#include "host/geom/arbitrary_axis.h"
#include "sdk/vcdb_records.h"

#include <fmt/format.h>

namespace {

const VcDbTextStyleTableRecord* styleRecord(VcDbObjectId style, const DatabaseCore* db)
{
    if (!db)
        db = DatabaseCore::of(style);  // a piece that is in no drawing yet may have a style of one
    if (!db)
        return nullptr;
    if (const auto* record = db->objectAs<VcDbTextStyleTableRecord>(style))
        return record;
    return db->objectAs<VcDbTextStyleTableRecord>(db->findRecord(NameTable::TextStyle, "Standard"));
}

vktext::FontRequest fontOf(const VcDbTextStyleTableRecord& record)
{
    vktext::FontRequest font;
    font.bigFont = record.bigFontUtf8();
    const auto face = record.typeface();
    const bool isFace = face && !face->family.empty();
    font.font = isFace ? face->family : record.fileUtf8();
    font.bold = isFace && face->bold;
    font.italic = isFace && face->italic;
    return font;
}

}

vktext::TextStyleSpec textStyleSpec(VcDbObjectId style, const DatabaseCore* db)
{
    vktext::TextStyleSpec spec;
    spec.font = "txt";
    if (!db)
        db = DatabaseCore::of(style);
    const VcDbTextStyleTableRecord* record = styleRecord(style, db);
    if (!record)
        return spec;
    static_cast<vktext::FontRequest&>(spec) = fontOf(*record);
    spec.fixedHeight = record->textSize();
    spec.widthFactor = record->xScale();
    spec.oblique = record->obliquingAngle();
    spec.backwards = record->isBackwards();
    spec.upsideDown = record->isUpsideDown();
    spec.vertical = record->isVertical();
    return spec;
}

vktext::TextStyleSpec textStyleSpec(const VcDbText& text)
{
    const DatabaseCore* db = DatabaseCore::of(text.objectId());
    vktext::TextStyleSpec spec = textStyleSpec(text.textStyle(), db ? db : DatabaseCore::of(text.props().layer));
    spec.fixedHeight = 0;
    spec.widthFactor = text.widthFactor();
    spec.oblique = text.oblique();
    spec.backwards = text.isMirroredInX();
    spec.upsideDown = text.isMirroredInY();
    return spec;
}

vktext::LineLooks styleLooks(VcDbObjectId style, const VcDbEntity& text)
{
    const VcDbObjectId id = text.objectId();
    KeptExtents* kept = KeptExtents::of(id);
    if (!style.isNull() && style.databaseSerial() != id.databaseSerial())
        kept = nullptr;
    if (const vktext::LineLooks* known = kept ? kept->looks(style.slot()) : nullptr)
        return *known;
    const DatabaseCore* db = DatabaseCore::of(id);
    const vktext::LineLooks looks =
        vktext::lineLooks(textStyleSpec(style, db ? db : DatabaseCore::of(text.props().layer)));
    if (kept)
        kept->keepLooks(style.slot(), looks);
    return looks;
}

vktext::LineLooks lineLooks(const VcDbText& text) { return lineLooks(text, text.textStyle()); }

vktext::LineLooks lineLooks(const VcDbText& text, VcDbObjectId style)
{
    vktext::LineLooks looks = styleLooks(style, text);
    vktext::setLooks(looks, text.widthFactor(), text.oblique());
    looks.backwards = text.isMirroredInX();
    looks.upsideDown = text.isMirroredInY();
    return looks;
}

VcGePoint3d ownDrawnPosition(const VcDbText& text, const std::string& drawn, const vktext::LineLooks& looks)
{
    const VcDb::TextHorzMode mode = text.horizontalMode();
    if (text.isDefaultAlignment() || mode == VcDb::kTextAlign || mode == VcDb::kTextFit)
        return text.ownPosition();
    const VcGeVector2d offset = vktext::justificationOffset(looks, text.height(), drawn, vktext::HorizontalMode(mode),
                                                            vktext::VerticalMode(text.verticalMode()));
    const double c = std::cos(text.rotation()), s = std::sin(text.rotation());
    return text.ownAlignmentPoint() + VcGeVector3d(-(offset.x * c - offset.y * s), -(offset.x * s + offset.y * c), 0);
}

VcGePoint3d drawnPosition(const VcDbText& text, const std::string& drawn)
{
    return vk::geom::toWorld(ownDrawnPosition(text, drawn, lineLooks(text)), text.normal());
}

VcDbObjectId styleWithFont(DatabaseCore& db, const vktext::FontRequest& font, VcDbObjectId preferred)
{
    const VcDbTextStyleTableRecord* own = styleRecord(preferred, &db);
    if (own && fontOf(*own) == font)
        return own->objectId();
    auto* table = db.objectAs<VcDbSymbolTable>(db.tableId(NameTable::TextStyle));
    if (!table)
        return preferred;
    for (const VcDbObjectId id : table->records())
        if (const auto* record = db.liveAs<VcDbTextStyleTableRecord>(id);
            record && !record->isShapeFile() && fontOf(*record) == font)
            return id;

    auto record = std::make_unique<VcDbTextStyleTableRecord>();
    const std::string stem = fmt::format("MtXpl_{}", font.font);
    std::string name = stem;
    for (int n = 1; !table->find(name).isNull(); ++n)
        name = fmt::format("{}_{}", stem, n);
    record->setNameUtf8(name);
    const bool isFile = font.font.find('.') != std::string::npos;
    record->setFontFiles(isFile ? font.font : std::string(), font.bigFont);
    if (!isFile)
        record->setFont(utf8ToWide(font.font).c_str(), font.bold, font.italic, 0, 0);
    VcDbObjectId id;
    VcDbTextStyleTableRecord* added = record.release();
    if (table->add(id, added) != Vcad::eOk) {
        delete added;
        return preferred;
    }
    added->close();
    return id;
}
