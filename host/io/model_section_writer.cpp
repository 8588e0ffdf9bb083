#include "host/io/model_section_writer.h"

#include "host/db/database.h"
#include "host/db/model_section.h"
#include "sdk/vcdb_solids.h"

#include <algorithm>
#include <map>

namespace {

constexpr const char* kSchema = "ACDSSCHEMA";
constexpr const char* kModelSchema = "AcDb3DSolid_ASM_Data";

// What a section is made of: its head, schemas, records; each but the head begins with group 0.
using Parts = std::vector<TagList>;

Parts partsOf(const TagList& section)
{
    Parts parts(1);
    for (const Tag& tag : section) {
        if (tag.code == 0)
            parts.emplace_back();
        parts.back().add(tag);
    }
    return parts;
}

bool isKind(const TagList& part, std::string_view kind)
{
    if (part.empty())
        return false;
    const Tag first = *part.begin();
    return first.code == 0 && first.form == Tag::Form::Utf8 && first.view() == kind;
}

const std::int64_t kNoNumber = -1;

// The first whole number under a code.
std::int64_t numberIn(const TagList& part, int code)
{
    for (const Tag& tag : part)
        if (tag.code == code && tag.form == Tag::Form::Integer)
            return tag.integer;
    return kNoNumber;
}

bool says(const TagList& part, int code, std::string_view text)
{
    for (const Tag& tag : part)
        if (tag.code == code && tag.form == Tag::Form::Utf8 && tag.view() == text)
            return true;
    return false;
}

std::map<std::uint64_t, ModelData> ownData(const DatabaseCore& db)
{
    std::map<std::uint64_t, ModelData> own;
    for (std::uint32_t slot = 1; slot < db.slotCount(); ++slot) {
        const auto* solid = VcDbModelerGeometry::cast(db.objectAt(slot));
        if (!solid || solid->isErased() || !solid->ownModelData() ||
            db.loadedReferences.contains(solid->ownerId().slot()))
            continue;
        const std::uint64_t handle = db.handleOf(solid->objectId());
        const ModelData filed = sectionModelData(db, handle);
        if (!filed || *filed != *solid->ownModelData())
            own[handle] = solid->ownModelData();
    }
    return own;
}

void addData(TagList& record, std::string_view data)
{
    constexpr std::size_t kLine = 127;
    record.addInteger(94, std::int64_t(data.size()));
    for (std::size_t at = 0; at < data.size(); at += kLine)
        record.addBytes(310, data.substr(at, kLine));
}

TagList withData(const TagList& record, std::string_view data)
{
    TagList changed;
    for (const Tag& tag : record)
        if (tag.code != 94 && tag.code != 310)
            changed.add(tag);
    addData(changed, data);
    return changed;
}

class SectionMaker {
public:
    explicit SectionMaker(Parts parts) : m_parts(std::move(parts)) {}

    void change(std::uint64_t handle, std::string_view data)
    {
        for (TagList& part : m_parts)
            if (isKind(part, kModelRecord) && numberIn(part, 320) == std::int64_t(handle) &&
                says(part, 2, kModelDataName)) {
                part = withData(part, data);
                return;
            }
        add(handle, data);
    }

    const Parts& parts() const { return m_parts; }

private:
    void add(std::uint64_t handle, std::string_view data)
    {
        TagList record;
        record.addText(0, kModelRecord);
        record.addInteger(90, modelSchema());
        record.addText(2, "AcDbDs::ID");
        record.addInteger(280, 10);
        record.addHandle(320, handle);
        record.addText(2, kModelDataName);
        record.addInteger(280, 15);
        addData(record, data);
        m_parts.push_back(std::move(record));
    }

    std::int64_t find(std::string_view schema) const
    {
        for (const TagList& part : m_parts)
            if (isKind(part, kSchema) && says(part, 1, schema))
                return numberIn(part, 90);
        return kNoNumber;
    }

    std::int64_t addSchema(TagList fields, std::int64_t number)
    {
        const auto record =
            std::find_if(m_parts.begin(), m_parts.end(), [](const TagList& p) { return isKind(p, kModelRecord); });
        m_parts.insert(record, std::move(fields));
        return number;
    }

    static TagList schema(std::int64_t number, const char* name)
    {
        TagList tags;
        tags.addText(0, kSchema);
        tags.addInteger(90, number);
        tags.addText(1, name);
        return tags;
    }

    std::int64_t freeNumber() const
    {
        std::int64_t next = 0;
        for (const TagList& part : m_parts)
            if (isKind(part, kSchema))
                next = std::max(next, numberIn(part, 90) + 1);
        return next;
    }

    // What a column is known by: a schema of one property.
    std::int64_t property(const char* schemaName, const char* name, int type, bool isHandle)
    {
        if (const std::int64_t known = find(schemaName); known != kNoNumber)
            return known;
        const std::int64_t number = freeNumber();
        TagList tags = schema(number, schemaName);
        tags.addText(2, name);
        tags.addInteger(280, type);
        tags.addInteger(91, isHandle ? 1 : 0);
        if (isHandle)
            tags.addInteger(284, 1);
        return addSchema(std::move(tags), number);
    }

    std::int64_t modelSchema()
    {
        if (const std::int64_t known = find(kModelSchema); known != kNoNumber)
            return known;
        const std::int64_t treated =
            property("AcDbDs::TreatedAsObjectDataSchema", "AcDbDs::TreatedAsObjectData", 1, false);
        const std::int64_t legacy = property("AcDbDs::LegacySchema", "AcDbDs::Legacy", 1, false);
        const std::int64_t indexed = property("AcDbDs::IndexedPropertySchema", "AcDs:Indexable", 1, false);
        const std::int64_t handle = property("AcDbDs::HandleAttributeSchema", "AcDbDs::HandleAttribute", 7, true);
        const std::int64_t number = freeNumber();
        TagList tags = schema(number, kModelSchema);
        column(tags, "AcDbDs::ID", 10, 8);
        column(tags, kModelDataName, 15, 0);
        ofSchema(tags, number, treated, "AcDbDs::TreatedAsObjectData");
        ofSchema(tags, number, legacy, "AcDbDs::Legacy");
        ofColumn(tags, indexed, "AcDs:Indexable", 1, 291);
        ofColumn(tags, handle, "AcDbDs::HandleAttribute", 7, 282);
        return addSchema(std::move(tags), number);
    }

    static void column(TagList& tags, const char* name, int type, int kind)
    {
        tags.addText(2, name);
        tags.addInteger(280, type);
        tags.addInteger(91, kind);
    }
    static void ofSchema(TagList& tags, std::int64_t schema, std::int64_t property, const char* name)
    {
        tags.addText(101, kModelRecord);
        tags.addInteger(95, schema);
        tags.addInteger(90, property);
        tags.addText(2, name);
        tags.addInteger(280, 1);
        tags.addInteger(291, 1);
    }
    static void ofColumn(TagList& tags, std::int64_t property, const char* name, int type, int valueCode)
    {
        tags.addText(101, kModelRecord);
        tags.addText(1, "AcDbDs::ID");
        tags.addInteger(90, property);
        tags.addText(2, name);
        tags.addInteger(280, type);
        tags.addInteger(valueCode, 1);
    }

    Parts m_parts;
};

Parts emptySection()
{
    Parts parts(1);
    parts[0].addInteger(70, 2);
    parts[0].addInteger(71, 8);
    return parts;
}

}

bool hasNewModelData(const DatabaseCore& db) { return !ownData(db).empty(); }

void putModelSection(const DatabaseCore& db, const KeptSection* section, GroupSink& sink)
{
    const auto own = ownData(db);
    if (own.empty() && section)
        return putTags(sink, section->tags);
    SectionMaker maker(section ? partsOf(section->tags) : emptySection());
    for (const auto& [handle, data] : own)
        maker.change(handle, *data);
    for (const TagList& part : maker.parts())
        putTags(sink, part);
}
