#include "host/io/object_writer.h"

#include "host/db/database.h"
#include "host/db/extras.h"
#include "host/db/kept_object.h"
#include "sdk/vcdb_records.h"

ObjectWriter::ObjectWriter(DatabaseCore& db, DxfVersion version, GroupSink& sink)
    : m_db(db), m_version(version), m_sink(sink), m_fields(FieldVisitor::Purpose::WriteFile, version, db, sink)
{
    m_identity.owner = version >= DxfVersion::R13;
}

void ObjectWriter::head(VcDbObject& object, int handleCode)
{
    if (m_identity.handle)
        m_sink.handle(handleCode, m_identity.nextHandle && object.objectId().isNull()
                                      ? (*m_identity.nextHandle)++
                                      : m_db.handleOf(object.objectId()));
    if (!m_identity.owner)
        return;
    if (const ObjectExtras* extras = object.extras())
        braces(*extras);
    // Before R2000 entities do not say who owns them.
    if (m_version >= DxfVersion::R2000 || !object.isKindOf(VcDbEntity::desc()))
        m_sink.handle(330, m_db.handleOf(object.ownerId()));
}

// Reactors and extension dictionaries that were erased since are left out; those that never came stay as they were.
void ObjectWriter::braces(const ObjectExtras& extras)
{
    const auto isGone = [&](VcDbObjectId id) {
        const VcDbObject* target = m_db.object(id);
        return id.isNull() || (target && target->isErased());
    };
    if (!isGone(extras.extensionDictionary)) {
        m_sink.text(102, "{ACAD_XDICTIONARY");
        m_sink.handle(360, m_db.handleOf(extras.extensionDictionary));
        m_sink.text(102, "}");
    }
    if (!std::all_of(extras.reactors.begin(), extras.reactors.end(), isGone)) {
        m_sink.text(102, "{ACAD_REACTORS");
        for (const VcDbObjectId id : extras.reactors)
            if (!isGone(id))
                m_sink.handle(330, m_db.handleOf(id));
        m_sink.text(102, "}");
    }
    for (const ApplicationGroup& group : extras.applicationGroups) {
        m_sink.text(102, "{" + group.name);
        putTags(m_sink, group.tags);
        m_sink.text(102, "}");
    }
}

void ObjectWriter::tail(const VcDbObject& object)
{
    if (const ObjectExtras* extras = object.extras())
        putTags(m_sink, extras->xdata);
}

void ObjectWriter::write(VcDbObject& object, const TagList* common)
{
    m_sink.text(0, dxfNameOf(object));
    head(object, object.isKindOf(VcDbDimStyleTableRecord::desc()) ? 105 : 5);
    m_fields.begin(object, common);
    object.fields(m_fields);
    m_fields.finish();
    tail(object);
}

void ObjectWriter::writeBegin(VcDbObject& begin, VcDbBlockTableRecord& block, const TagList* common)
{
    m_sink.text(0, "BLOCK");
    head(begin, 5);
    m_fields.begin(begin, common);
    begin.fields(m_fields);
    block.beginFields(m_fields);
    m_fields.finish();
    tail(begin);
}

void ObjectWriter::writeTable(VcDbObject& table, const char* name, bool bare)
{
    m_sink.text(0, "TABLE");
    m_sink.text(2, name);
    if (!bare)
        head(table, 5);
    m_fields.begin(table);
    table.fields(m_fields);
    m_fields.finish();
    tail(table);
}
