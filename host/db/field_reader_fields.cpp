// What each kind of field makes of the group that it is given.
#include "host/db/database.h"
#include "host/db/degrees.h"
#include "host/db/field_reader.h"

bool FieldReader::idOf(const Tag& tag, VcDbObjectId& id)
{
    if (tag.form == Tag::Form::Id) {
        id = unpackId(tag.integer);
        return true;
    }
    std::uint64_t handle = 0;
    if (!m_values.handle(tag, handle))
        return false;
    if (handle == 0)
        id = {};
    else
        id = isFile() ? m_db.reserveHandle(handle) : m_db.findHandle(handle);
    return true;
}

bool FieldReader::recordOf(const Tag& tag, NameTable table, VcDbObjectId& id)
{
    return m_names.record(tag, table, keyOf(tag.code), id);
}

void FieldReader::real(int code, double& value)
{
    if (const Tag* tag = take(code))
        m_values.real(*tag, value);
}

void FieldReader::integer(int code, std::int64_t& value)
{
    if (const Tag* tag = take(code))
        m_values.integer(*tag, value);
}

void FieldReader::angle(int code, double& radians)
{
    const Tag* tag = take(code);
    if (double value = 0; tag && m_values.real(*tag, value))
        radians = isFile() ? radiansOfDegrees(value) : value;
}

bool FieldReader::takeOrdinates(int code, std::span<double> ordinates)
{
    const Tag* first = take(code);
    if (!first)
        return false;
    if (first->form == Tag::Form::Point) {
        std::copy_n(first->point, ordinates.size(), ordinates.begin());
        return true;
    }
    m_values.real(*first, ordinates[0]);
    for (std::size_t i = 1; i < ordinates.size(); ++i)
        if (const Tag* next = takeNear(code + 10 * static_cast<int>(i), code))
            m_values.real(*next, ordinates[i]);
    return true;
}

bool FieldReader::takePoint(int code, VcGePoint3d& value)
{
    double xyz[] = {value.x, value.y, value.z};
    if (!takeOrdinates(code, xyz))
        return false;
    value = VcGePoint3d(xyz[0], xyz[1], xyz[2]);
    return true;
}

void FieldReader::point(int code, VcGePoint3d& value) { takePoint(code, value); }

void FieldReader::point2(int code, VcGePoint2d& value)
{
    double xy[] = {value.x, value.y};
    if (takeOrdinates(code, xy))
        value = VcGePoint2d(xy[0], xy[1]);
}

void FieldReader::text(int code, std::string& utf8)
{
    if (const Tag* tag = take(code))
        m_values.text(*tag, utf8);
}

void FieldReader::ref(int code, RefKind, VcDbObjectId& id)
{
    if (const Tag* tag = take(code))
        idOf(*tag, id);
}

void FieldReader::name(int code, NameTable table, VcDbObjectId& id)
{
    if (const Tag* tag = take(code))
        recordOf(*tag, table, id);
}

void FieldReader::binary(int code, std::string& bytes)
{
    Tag* tag = take(code);
    if (!tag)
        return;
    bytes.clear();
    for (std::string chunk; tag;
         tag = m_scope.cursor < m_scope.end && m_tags[m_scope.cursor].code == code ? take(code) : nullptr) {
        m_values.bytes(*tag, chunk);
        bytes += chunk;
    }
}

void FieldReader::optional(int code, double& value, double byDefault)
{
    const Tag* tag = take(code);
    if (tag && m_values.real(*tag, value) && value == byDefault)
        atDefault(code);
}

void FieldReader::optionalInteger(int code, std::int64_t& value, std::int64_t byDefault)
{
    const Tag* tag = take(code);
    if (tag && m_values.integer(*tag, value) && value == byDefault)
        atDefault(code);
}

void FieldReader::optionalAngle(int code, double& radians, double byDefault)
{
    const Tag* tag = take(code);
    double value = 0;
    if (!tag || !m_values.real(*tag, value))
        return;
    radians = isFile() ? radiansOfDegrees(value) : value;
    if (radians == byDefault)
        atDefault(code);
}

void FieldReader::optionalPoint(int code, VcGePoint3d& value, const VcGePoint3d& byDefault)
{
    if (takePoint(code, value) && value.x == byDefault.x && value.y == byDefault.y && value.z == byDefault.z)
        atDefault(code);
}

void FieldReader::optionalText(int code, std::string& utf8, std::string_view byDefault)
{
    const Tag* tag = take(code);
    if (!tag)
        return;
    m_values.text(*tag, utf8);
    if (utf8 == byDefault)
        atDefault(code);
}

void FieldReader::optionalRef(int code, RefKind, VcDbObjectId& id)
{
    const Tag* tag = take(code);
    if (tag && idOf(*tag, id) && id.isNull())
        atDefault(code);
}

void FieldReader::optionalName(int code, NameTable table, VcDbObjectId& id, const char* byDefault)
{
    const Tag* tag = take(code);
    if (tag && recordOf(*tag, table, id) && (id.isNull() || id == m_db.findRecord(table, byDefault)))
        atDefault(code);
}

void FieldReader::longText(int chunkCode, int lastCode, std::string& utf8)
{
    // Chunks are joined before they are decoded: a character may be cut in two.
    std::string joined;
    Tag::Form form = Tag::Form::Utf8;
    bool any = false;
    const auto append = [&](const Tag& tag) {
        joined += tag.view();
        form = tag.form;
        any = true;
    };
    if (Tag* chunk = chunkCode == lastCode ? nullptr : take(chunkCode)) {
        append(*chunk);
        while (m_scope.cursor < m_scope.end && m_tags[m_scope.cursor].code == chunkCode)
            append(*take(chunkCode));
    }
    if (const Tag* last = take(lastCode))
        append(*last);
    if (any)
        m_values.text(Tag::ofChars(lastCode, form, joined), utf8);
}
