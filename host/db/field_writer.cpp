#include "host/db/field_writer.h"

#include "host/base/unicode.h"
#include "host/db/database.h"
#include "host/db/degrees.h"
#include "host/db/extras.h"
#include "sdk/vcdb_tables.h"

namespace {

constexpr std::size_t kBytesInChunk = 127;
constexpr int kCharactersInChunk = 250;

// The bytes of the first characters of a text, or all of it.
std::size_t bytesOfCharacters(std::string_view utf8, int characters)
{
    std::string_view rest = utf8;
    for (int i = 0; i < characters && !rest.empty(); ++i)
        takeCharacter(rest);
    return utf8.size() - rest.size();
}

}

GroupSink::~GroupSink() = default;

void putTag(GroupSink& sink, const Tag& tag)
{
    switch (tag.form) {
    case Tag::Form::Raw:
    case Tag::Form::Utf8:
        return sink.text(tag.code, tag.view());
    case Tag::Form::Real:
        return sink.real(tag.code, tag.real);
    case Tag::Form::Integer:
        if (tag.isHandle)
            return sink.handle(tag.code, static_cast<std::uint64_t>(tag.integer));
        return sink.integer(tag.code, tag.integer);
    case Tag::Form::Point:
        return sink.point(tag.code, VcGePoint3d(tag.point[0], tag.point[1], tag.point[2]));
    case Tag::Form::Bytes:
        return sink.bytes(tag.code, tag.view());
    case Tag::Form::Id:
        return sink.reference(tag.code, unpackId(tag.integer), unpackId(tag.integer).handle().value());
    }
}

void putTags(GroupSink& sink, const TagList& tags)
{
    for (const Tag& tag : tags)
        putTag(sink, tag);
}

FieldWriter::FieldWriter(Purpose purpose, DxfVersion version, DatabaseCore& db, GroupSink& sink)
    : FieldVisitor(purpose, version), m_db(db), m_sink(sink)
{
}

FieldWriter::~FieldWriter() = default;

void FieldWriter::begin(const VcDbObject& object, const TagList* common)
{
    m_common = common;
    m_pending.clear();
    m_written.clear();
    m_pendingHere = 0;
    m_subclass = {};
    m_occurrence = 0;
    m_calls.assign(1, {});
    useProfile(isFile() ? object.presence() : 0);
    m_nameCounts.clear();
    if (const ObjectExtras* extras = object.extras())
        for (const UnclaimedGroups& groups : extras->unclaimed)
            m_pending.push_back({&groups, false});
    if (!m_pending.empty())
        beginSubclass();
}

void FieldWriter::useProfile(std::uint16_t profile)
{
    if (profile == m_profile)
        return;
    m_profile = profile;
    m_profileBits = presenceBits(profile);
    m_spellings = spellingsOf(profile);
}

void FieldWriter::finish()
{
    if (m_pending.empty())
        return;
    endSubclass();
    // What stood in a subclass that this object no longer writes.
    for (Pending& p : m_pending)
        put(p);
}

bool FieldWriter::isCurrent(const UnclaimedGroups& groups) const
{
    return groups.subclass == m_subclass && groups.occurrence == m_occurrence;
}

void FieldWriter::put(Pending& pending)
{
    if (pending.written)
        return;
    pending.written = true;
    m_sink.beginKept();
    putTags(m_sink, pending.groups->tags);
    m_sink.endKept();
}

void FieldWriter::beginSubclass()
{
    m_written.clear();
    m_pendingHere = 0;
    for (Pending& p : m_pending) {
        if (!isCurrent(*p.groups))
            continue;
        if (p.groups->anchorCode == UnclaimedGroups::kAtStart)
            put(p);
        else if (p.groups->anchorCode != UnclaimedGroups::kAtEnd)
            ++m_pendingHere;
    }
}

void FieldWriter::endSubclass()
{
    for (Pending& p : m_pending)
        if (isCurrent(*p.groups))
            put(p);
}

void FieldWriter::subclass(const char* marker)
{
    if (!m_pending.empty())
        endSubclass();
    m_subclass = marker;
    m_occurrence = static_cast<std::uint16_t>(std::count(m_calls.begin(), m_calls.end(), m_subclass));
    m_calls.push_back(m_subclass);
    if (isChain() || version() >= DxfVersion::R13)
        m_sink.text(m_subclass == "Embedded Object" ? 101 : 100, m_subclass);
    if (m_common && m_subclass == "AcDbEntity")
        putTags(m_sink, *m_common);
    if (!m_pending.empty())
        beginSubclass();
}

// Counts a written group and puts what is anchored behind it. The ordinates of a point stay together.
void FieldWriter::wrote(int code, int ordinates)
{
    if (m_pendingHere == 0)
        return;
    for (int i = 0; i < ordinates; ++i)
        putAnchored(code + 10 * i);
}

void FieldWriter::putAnchored(int code)
{
    auto seen = std::find_if(m_written.begin(), m_written.end(), [&](const Written& w) { return w.code == code; });
    if (seen == m_written.end())
        seen = m_written.insert(seen, {code, 0});
    ++seen->count;
    for (Pending& p : m_pending) {
        if (p.written || p.groups->anchorCode != code || p.groups->anchorCount != seen->count || !isCurrent(*p.groups))
            continue;
        --m_pendingHere;
        put(p);
    }
}

bool FieldWriter::carried(int code) const
{
    if (isChain())
        return true;
    const PresenceKey key = presenceKey(static_cast<int>(m_calls.size()) - 1, code);
    return (m_profileBits >> (key & 63) & 1) && presenceHas(m_profile, key);
}

void FieldWriter::real(int code, double& value)
{
    m_sink.real(code, value);
    wrote(code);
}

void FieldWriter::integer(int code, std::int64_t& value)
{
    m_sink.integer(code, value);
    wrote(code);
}

void FieldWriter::angle(int code, double& radians)
{
    m_sink.real(code, isFile() ? degreesOfRadians(radians) : radians);
    wrote(code);
}

void FieldWriter::point(int code, VcGePoint3d& value)
{
    m_sink.point(code, value);
    wrote(code, 3);
}

void FieldWriter::point2(int code, VcGePoint2d& value)
{
    m_sink.point2(code, value);
    wrote(code, 2);
}

void FieldWriter::text(int code, std::string& utf8)
{
    m_sink.text(code, utf8);
    wrote(code);
}

// A reference to an object that was erased is null in a file; one to an object that never came keeps its handle.
void FieldWriter::ref(int code, RefKind, VcDbObjectId& id)
{
    const VcDbObject* target = m_db.object(id);
    const bool gone = target && target->isErased() && isFile();
    m_sink.reference(code, gone ? VcDbObjectId() : id, gone || id.isNull() ? 0 : m_db.handleOf(id));
    wrote(code);
}

void FieldWriter::name(int code, NameTable, VcDbObjectId& id)
{
    const auto* record = m_db.objectAs<VcDbSymbolTableRecord>(id);
    const std::string_view name = record ? std::string_view(record->nameUtf8()) : std::string_view();
    m_sink.text(code, m_spellings.empty() ? name : spellingOf(code, name));
    wrote(code);
}

// A name as the object's file spelt it, unless the group now names another record.
std::string_view FieldWriter::spellingOf(int code, std::string_view name)
{
    const PresenceKey group = presenceKey(static_cast<int>(m_calls.size()) - 1, code);
    const std::uint32_t nth = m_nameCounts.next(group);
    for (const KeptSpelling& kept : m_spellings)
        if (kept.group == group && kept.nth == nth && equalNoCase(kept.spelt, name))
            return kept.spelt;
    return name;
}

void FieldWriter::binary(int code, std::string& bytes)
{
    for (std::string_view rest = bytes; !rest.empty(); rest.remove_prefix(std::min(rest.size(), kBytesInChunk))) {
        m_sink.bytes(code, rest.substr(0, kBytesInChunk));
        wrote(code);
    }
}

void FieldWriter::optional(int code, double& value, double byDefault)
{
    if (value != byDefault || carried(code))
        real(code, value);
}

void FieldWriter::optionalInteger(int code, std::int64_t& value, std::int64_t byDefault)
{
    if (value != byDefault || carried(code))
        integer(code, value);
}

void FieldWriter::optionalAngle(int code, double& radians, double byDefault)
{
    if (radians != byDefault || carried(code))
        angle(code, radians);
}

void FieldWriter::optionalPoint(int code, VcGePoint3d& value, const VcGePoint3d& byDefault)
{
    const bool differs = value.x != byDefault.x || value.y != byDefault.y || value.z != byDefault.z;
    if (differs || carried(code))
        point(code, value);
}

void FieldWriter::optionalText(int code, std::string& utf8, std::string_view byDefault)
{
    if (utf8 != byDefault || carried(code))
        text(code, utf8);
}

void FieldWriter::optionalRef(int code, RefKind kind, VcDbObjectId& id)
{
    const VcDbObject* target = m_db.object(id);
    const bool isNull = id.isNull() || (isFile() && target && target->isErased());
    if (!isNull || (isFile() && carried(code)))
        ref(code, kind, id);
}

void FieldWriter::optionalName(int code, NameTable table, VcDbObjectId& id, const char* byDefault)
{
    if (!isFile() && id.isNull()) {
        m_sink.text(code, byDefault);
        wrote(code);
        return;
    }
    const auto* record = m_db.objectAs<VcDbSymbolTableRecord>(id);
    if ((record && !equalNoCase(record->nameUtf8(), byDefault)) || carried(code))
        name(code, table, id);
}

void FieldWriter::longText(int chunkCode, int lastCode, std::string& utf8)
{
    std::string_view rest = utf8;
    for (;;) {
        const std::size_t bytes =
            rest.size() > kCharactersInChunk ? bytesOfCharacters(rest, kCharactersInChunk) : rest.size();
        if (bytes == rest.size())
            break;
        m_sink.text(chunkCode, rest.substr(0, bytes));
        wrote(chunkCode);
        rest.remove_prefix(bytes);
    }
    m_sink.text(lastCode, rest);
    wrote(lastCode);
}

void FieldWriter::rest(TagList& groups)
{
    for (const Tag& tag : groups) {
        putTag(m_sink, tag);
        wrote(tag.code);
    }
}
