#include "host/io/object_reader.h"

#include "host/base/numbers.h"
#include "host/db/database.h"
#include "host/db/extras.h"

#include <fmt/format.h>

namespace {

// Handles beyond this are taken for damage: the next free one must fit as well.
constexpr std::uint64_t kLargestHandle = std::uint64_t(1) << 60;

std::string_view chars(const Tag& tag)
{
    return tag.form == Tag::Form::Raw ? trimBlanks(tag.view()) : std::string_view();
}

bool opensBrace(const Tag& tag) { return tag.code == 102 && chars(tag).substr(0, 1) == "{"; }

bool closesBrace(const Tag& tag) { return tag.code == 102 && chars(tag) == "}"; }

// Extended data is what follows the first 1001 of the run of high codes at the end.
std::size_t beginOfXData(std::span<const Tag> tags)
{
    std::size_t first = tags.size();
    while (first > 0 && tags[first - 1].code >= 1000)
        --first;
    while (first < tags.size() && tags[first].code != 1001)
        ++first;
    return first;
}

std::size_t beginOfSubclasses(std::span<const Tag> tags)
{
    std::size_t i = 0;
    while (i < tags.size() && tags[i].code != 100)
        ++i;
    return i;
}

std::uint64_t handleValue(const Tag& tag)
{
    const std::string_view digits = chars(tag);
    std::uint64_t value = 0;
    for (const char c : digits) {
        const char upper = static_cast<char>(c & ~0x20);
        if (c >= '0' && c <= '9')
            value = value << 4 | static_cast<unsigned>(c - '0');
        else if (upper >= 'A' && upper <= 'F')
            value = value << 4 | static_cast<unsigned>(upper - 'A' + 10);
        else
            return 0;
    }
    return digits.size() <= 16 && value < kLargestHandle ? value : 0;
}

}

ObjectReader::ObjectReader(DatabaseCore& db, DxfVersion version, const TextDecoder& decoder, ProblemLog& problems)
    : m_db(db), m_problems(problems), m_fields(FieldVisitor::Purpose::ReadFile, version, db, &decoder, &problems)
{
}

// Common groups ahead of the first marker are taken out; what is left there moves up to the marker.
ObjectParts ObjectReader::split(DxfRecord& record, bool isEntity)
{
    ObjectParts parts;
    std::vector<Tag>& tags = record.tags;
    const std::size_t xdata = beginOfXData(tags);
    const std::size_t headEnd = beginOfSubclasses(std::span(tags).first(xdata));
    // Group 5 of a dimension style without markers is the name of an arrow.
    const bool isDimStyle = record.type == "DIMSTYLE";
    const auto isHandle = [&](const Tag& tag) {
        return (tag.code == 105 && isDimStyle) || (tag.code == 5 && (!isDimStyle || headEnd < xdata));
    };

    // Files as old as R12 have no owners; theirs would be data of a class that we do not know.
    const bool mayHaveOwner = headEnd < xdata || m_fields.version() >= DxfVersion::R13;

    m_braceTags.clear();
    std::size_t left = 0;
    for (std::size_t i = 0; i < headEnd; ++i) {
        const Tag& tag = tags[i];
        const std::uint64_t handle = isHandle(tag) && parts.handle == 0 ? handleValue(tag) : 0;
        if (handle != 0) {
            parts.handle = handle;
        } else if (tag.code == 330 && !parts.hasOwner && mayHaveOwner) {
            parts.owner = handleValue(tag);
            parts.hasOwner = true;
        } else if (opensBrace(tag)) {
            for (; i < headEnd && !closesBrace(tags[i]); ++i)
                m_braceTags.push_back(tags[i]);
        } else {
            tags[left++] = tag;
        }
    }
    std::size_t body = headEnd - left;
    std::move_backward(tags.begin(), tags.begin() + static_cast<std::ptrdiff_t>(left),
                       tags.begin() + static_cast<std::ptrdiff_t>(headEnd));
    if (isEntity)
        body = takeSpace(parts, tags, body, xdata);
    parts.body = std::span(tags).subspan(body, xdata - body);
    parts.xdata = std::span(tags).subspan(xdata);
    parts.braces = m_braceTags;
    return parts;
}

// Groups 67 and 410 say which space an entity is in; they stand among its first common groups.
std::size_t ObjectReader::takeSpace(ObjectParts& parts, std::vector<Tag>& tags, std::size_t body, std::size_t end)
{
    constexpr std::size_t kAmongFirst = 6;
    for (std::size_t i = body; i < std::min(body + kAmongFirst, end); ++i) {
        const int code = tags[i].code;
        std::int64_t flag = 0;
        const bool isSpace = code == 67 && m_fields.values().integer(tags[i], flag) && flag == 1;
        if (!isSpace && code != 410)
            continue;
        parts.inPaperSpace |= isSpace;
        parts.namesLayout |= code == 410;
        std::move_backward(tags.begin() + static_cast<std::ptrdiff_t>(body),
                           tags.begin() + static_cast<std::ptrdiff_t>(i),
                           tags.begin() + static_cast<std::ptrdiff_t>(i) + 1);
        ++body;
    }
    return body;
}

VcDbObjectId ObjectReader::place(std::unique_ptr<VcDbObject> object, const ObjectParts& parts, VcDbObjectId owner,
                                 std::uint32_t line)
{
    ++m_objects;
    if (parts.handle == 0)
        return m_db.add(std::move(object), owner);
    const VcDbObjectId known = m_db.findHandle(parts.handle);
    if (known.isNull())
        return m_db.add(std::move(object), owner, parts.handle);
    if (!m_db.object(known))
        return m_db.fill(known, std::move(object), owner);
    const VcDbObjectId made = m_db.add(std::move(object), owner);
    m_problems.add(
        line, parts.handle,
        fmt::format("handle {:X} stands twice; the later object has got {:X}", parts.handle, m_db.handleOf(made)));
    return made;
}

void ObjectReader::fill(VcDbObject& object, const ObjectParts& parts)
{
    m_fields.begin(parts.body, m_db.handleOf(object.objectId()));
    object.fields(m_fields);
    m_fields.finish(object);
    fillCommon(object, parts);
}

void ObjectReader::fillCommon(VcDbObject& object, const ObjectParts& parts)
{
    for (std::size_t i = 0; i < parts.braces.size();) {
        std::size_t end = i + 1;
        while (end < parts.braces.size() && !opensBrace(parts.braces[end]))
            ++end;
        readBrace(object, parts.braces.subspan(i, end - i));
        i = end;
    }
    if (parts.xdata.empty())
        return;
    TagList& xdata = object.makeExtras().xdata;
    for (const Tag& tag : parts.xdata)
        m_fields.values().keep(tag, xdata);
    xdata.shrink();
}

void ObjectReader::readBrace(VcDbObject& object, std::span<Tag> group)
{
    ObjectExtras& extras = object.makeExtras();
    const std::string_view name = chars(group[0]).substr(1);
    const std::span<Tag> members = group.subspan(1);
    const auto holdsOnly = [&](int code) {
        return std::all_of(members.begin(), members.end(),
                           [&](const Tag& t) { return t.code == code && handleValue(t) != 0; });
    };
    if (name == "ACAD_XDICTIONARY" && members.size() == 1 && holdsOnly(360)) {
        extras.extensionDictionary = m_db.reserveHandle(handleValue(members[0]));
        return;
    }
    if (name == "ACAD_REACTORS" && extras.reactors.empty() && holdsOnly(330)) {
        for (const Tag& tag : members)
            extras.reactors.push_back(m_db.reserveHandle(handleValue(tag)));
        extras.reactors.shrink_to_fit();
        return;
    }
    ApplicationGroup& kept = extras.applicationGroups.emplace_back();
    m_fields.values().text(Tag::ofChars(102, Tag::Form::Raw, name), kept.name);
    for (const Tag& tag : members)
        m_fields.values().keep(tag, kept.tags);
    kept.tags.shrink();
}
