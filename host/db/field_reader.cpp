#include "host/db/field_reader.h"

#include "host/base/group_code.h"
#include "host/base/numbers.h"
#include "host/db/database.h"
#include "host/db/degrees.h"
#include "host/db/extras.h"
#include "sdk/vcdb_tables.h"

#include <cmath>
#include <fast_float/fast_float.h>
#include <fmt/format.h>

namespace {

constexpr unsigned kMostCalls = 126;
constexpr unsigned kPassedOver = 127;  // the lead of an item whose class left it: not looked up again, and kept

std::uint64_t bit(int code)
{
    return std::uint64_t(1) << (static_cast<unsigned>(code) & 63);
}

bool isMarker(const Tag& tag)
{
    return tag.code == 100 || tag.code == 101;
}

bool isChars(const Tag& tag)
{
    return tag.form == Tag::Form::Raw || tag.form == Tag::Form::Utf8;
}

int hexDigit(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    c = static_cast<char>(c | 0x20);
    return c >= 'a' && c <= 'f' ? c - 'a' + 10 : -1;
}

bool parseBytes(std::string_view text, std::string& bytes)
{
    text = trimBlanks(text);
    for (std::size_t i = 0; i + 1 < text.size(); i += 2) {
        const int high = hexDigit(text[i]), low = hexDigit(text[i + 1]);
        if (high < 0 || low < 0)
            return false;
        bytes.push_back(static_cast<char>(high << 4 | low));
    }
    return text.size() % 2 == 0;
}

}

TextDecoder::~TextDecoder() = default;

// The names of layers and the like repeat from object to object of a file: those seen last, by its bytes. A chain is one
// object and has none.
struct FieldReader::NameCache {
    struct Entry {
        std::string raw, name;
        VcDbObjectId id;
        int table = -1;
    };
    Entry entries[2048];

    Entry& at(NameTable table, std::string_view raw)
    {
        std::size_t hash = raw.size() + static_cast<std::size_t>(table) * 31;
        for (const char c : raw)
            hash = hash * 131 + static_cast<unsigned char>(c);
        return entries[hash % std::size(entries)];
    }
};

FieldReader::FieldReader(Purpose purpose, DxfVersion version, DatabaseCore& db, const TextDecoder* decoder,
                         ProblemLog* problems)
    : FieldVisitor(purpose, version), m_db(db), m_decoder(decoder), m_problems(problems),
      m_names(purpose == Purpose::ReadFile ? std::make_unique<NameCache>() : nullptr)
{
}

FieldReader::~FieldReader() = default;

void FieldReader::begin(std::span<Tag> tags, std::uint64_t handle)
{
    m_tags = tags;
    m_handle = handle;
    m_windows.clear();
    m_calls.assign(1, {});
    m_outer.clear();
    m_ordered = 0;
    m_taken = 0;
    m_failed = false;
    m_atDefault.clear();
    m_spellings.clear();
    m_nameCounts.clear();
    findWindows();
    m_windows[0].opened = true;
    m_scope = {m_windows[0].begin, m_windows[0].end, m_windows[0].begin, m_windows[0].codes};
}

void FieldReader::findWindows()
{
    m_windows.push_back({{}, 0, 0, 0, 0, false});
    for (std::uint32_t i = 0; i < m_tags.size(); ++i) {
        const Tag& tag = m_tags[i];
        if (!isMarker(tag)) {
            m_windows.back().codes |= bit(tag.code);
            continue;
        }
        m_windows.back().end = i;
        const std::string_view marker = trimBlanks(tag.view());
        std::uint16_t occurrence = 0;
        for (const Window& w : m_windows)
            occurrence = static_cast<std::uint16_t>(occurrence + (w.marker == marker && !marker.empty()));
        m_windows.push_back({marker, i + 1, i + 1, 0, occurrence, false});
    }
    m_windows.back().end = static_cast<std::uint32_t>(m_tags.size());
}

// The next window of that marker, or the last one opened before when the file has fewer than the class; -1 for none.
int FieldReader::windowToOpen(std::string_view marker) const
{
    int found = -1;
    for (std::size_t i = 1; i < m_windows.size(); ++i) {
        if (m_windows[i].marker != marker)
            continue;
        found = static_cast<int>(i);
        if (!m_windows[i].opened)
            break;
    }
    return found;
}

FieldReader::Scope FieldReader::fallbackScope() const
{
    const Window& first = m_windows[0];
    if (m_windows.size() == 1)
        return {first.begin, first.end, first.begin, first.codes};
    const Window& second = m_windows[1];
    const bool isCommon = second.marker == "AcDbEntity" || second.marker == "AcDbSymbolTableRecord";
    const std::uint32_t end = isCommon ? second.end : first.end;
    return {0, end, 0, first.codes | (isCommon ? second.codes : 0)};
}

void FieldReader::subclass(const char* marker)
{
    const std::string_view name = marker;
    std::uint16_t occurrence = 0;
    for (const Call& c : m_calls)
        occurrence = static_cast<std::uint16_t>(occurrence + (c.marker == name));
    m_calls.push_back({name, occurrence});

    const int index = windowToOpen(name);
    if (index < 0) {
        m_scope = fallbackScope();
        return;
    }
    Window& window = m_windows[static_cast<std::size_t>(index)];
    if (!window.opened) {
        window.opened = true;
        mark(m_tags[window.begin - 1]);
    }
    m_scope = {window.begin, window.end, window.begin, window.codes};
}

bool FieldReader::hasSubclass(const char* marker) const
{
    for (const Window& w : m_windows)
        if (!w.opened && w.marker == marker)
            return true;
    return false;
}

void FieldReader::mark(Tag& tag)
{
    tag.taken = static_cast<std::uint8_t>(std::min<std::size_t>(m_calls.size(), kMostCalls)) & 127;
    ++m_taken;
}

// Most look-ups are either of what stands next or of what the window does not have.
Tag* FieldReader::find(int code)
{
    Scope& s = m_scope;
    if (!(s.codes & bit(code)))
        return nullptr;
    while (s.cursor < s.end && m_tags[s.cursor].taken)
        ++s.cursor;
    if (s.cursor < s.end && m_tags[s.cursor].code == code)
        return &m_tags[s.cursor];
    if (m_ordered)
        return nullptr;
    for (std::uint32_t i = s.cursor; i < s.end; ++i)
        if (m_tags[i].code == code && !m_tags[i].taken)
            return &m_tags[i];
    for (std::uint32_t i = s.begin; i < s.cursor; ++i)
        if (m_tags[i].code == code && !m_tags[i].taken)
            return &m_tags[i];
    return nullptr;
}

Tag* FieldReader::take(int code)
{
    Tag* tag = find(code);
    if (!tag)
        return nullptr;
    mark(*tag);
    m_scope.cursor = static_cast<std::uint32_t>(tag - m_tags.data()) + 1;
    return tag;
}

// The next free group of the code ahead of the next one of stopCode: a later point must not lend its ordinates.
Tag* FieldReader::takeNear(int code, int stopCode)
{
    for (std::uint32_t i = m_scope.cursor; i < m_scope.end; ++i) {
        Tag& tag = m_tags[i];
        if (tag.taken)
            continue;
        if (tag.code == code) {
            mark(tag);
            if (i == m_scope.cursor)
                ++m_scope.cursor;
            return &tag;
        }
        if (m_ordered || tag.code == stopCode)
            return nullptr;
    }
    return nullptr;
}

void FieldReader::wrong(const Tag& tag, const char* expected)
{
    m_failed = true;
    if (!m_problems)
        return;
    std::string found;
    if (isChars(tag))
        found = fmt::format(", found \"{}\"", tag.view().substr(0, 40));
    m_problems->add(tag.line, m_handle, fmt::format("group {}: {} was expected{}", tag.code, expected, found), true);
}

void FieldReader::noteMended(const Tag& tag, const char* what)
{
    if (m_problems)
        m_problems->add(tag.line, m_handle, fmt::format("group {}: {}", tag.code, what), true);
}

bool FieldReader::realOf(const Tag& tag, double& value)
{
    std::optional<double> read;
    if (isChars(tag)) {
        // The common case, without blanks, is tried ahead of all others.
        const char* end = tag.chars.data + tag.chars.size;
        double plain = 0;
        const auto [stopped, error] = fast_float::from_chars(tag.chars.data, end, plain);
        if (error == std::errc() && stopped == end && std::isfinite(plain)) {
            value = plain;
            return true;
        }
        read = parseReal(tag.view());
        if (!read && (read = parseReal(tag.view(), DecimalSign::PointOrComma)))
            noteMended(tag, "a decimal comma was taken for a point");
    } else if (tag.form == Tag::Form::Integer) {
        read = static_cast<double>(tag.integer);
    } else if (tag.form == Tag::Form::Real || tag.form == Tag::Form::Point) {
        read = tag.real;
    }
    if (!read || !std::isfinite(*read)) {
        wrong(tag, "a finite number");
        return false;
    }
    value = *read;
    return true;
}

bool FieldReader::integerOf(const Tag& tag, std::int64_t& value)
{
    std::optional<std::int64_t> read;
    if (isChars(tag)) {
        read = parseInteger(tag.view());
        if (!read && (read = parseIntegerLoosely(tag.view())))
            noteMended(tag, "a whole number was written as a real");
    } else if (tag.form == Tag::Form::Integer) {
        read = tag.integer;
    } else if (tag.form == Tag::Form::Real && std::fabs(tag.real) < 9e18) {
        read = std::llround(tag.real);
    }
    if (!read) {
        wrong(tag, "a whole number");
        return false;
    }
    value = *read;
    return true;
}

bool FieldReader::handleOf(const Tag& tag, std::uint64_t& value)
{
    if (tag.form == Tag::Form::Integer) {
        value = static_cast<std::uint64_t>(tag.integer);
        return true;
    }
    const auto read = isChars(tag) ? parseHandle(tag.view()) : std::nullopt;
    if (!read) {
        wrong(tag, "a handle");
        return false;
    }
    value = *read;
    return true;
}

void FieldReader::textOf(const Tag& tag, std::string& utf8)
{
    switch (tag.form) {
    case Tag::Form::Raw:
        if (m_decoder)
            return m_decoder->decode(tag.view(), utf8);
        [[fallthrough]];
    case Tag::Form::Utf8:
    case Tag::Form::Bytes:
        utf8.assign(tag.view());
        return;
    case Tag::Form::Real:
    case Tag::Form::Point:
        utf8 = fmt::format("{}", tag.real);
        return;
    case Tag::Form::Integer:
    case Tag::Form::Id:
        utf8 = fmt::format("{}", tag.integer);
        return;
    }
}

bool FieldReader::bytesOf(const Tag& tag, std::string& bytes)
{
    bytes.clear();
    if (tag.form == Tag::Form::Bytes) {
        bytes.assign(tag.view());
        return true;
    }
    if (isChars(tag) && parseBytes(tag.view(), bytes))
        return true;
    wrong(tag, "hexadecimal data");
    return false;
}

bool FieldReader::idOf(const Tag& tag, VcDbObjectId& id)
{
    if (tag.form == Tag::Form::Id) {
        id = unpackId(tag.integer);
        return true;
    }
    std::uint64_t handle = 0;
    if (!handleOf(tag, handle))
        return false;
    if (handle == 0)
        id = {};
    else
        id = isFile() ? m_db.reserveHandle(handle) : m_db.findHandle(handle);
    return true;
}

bool FieldReader::recordOf(const Tag& tag, NameTable table, VcDbObjectId& id)
{
    if (tag.form == Tag::Form::Id) {
        id = unpackId(tag.integer);
        return true;
    }
    const std::string_view raw = isChars(tag) ? trimBlanks(tag.view()) : std::string_view();
    if (!isFile()) {
        id = raw.empty() ? VcDbObjectId() : m_db.findRecord(table, raw);
        if (id.isNull() && !raw.empty())
            wrong(tag, "a name that the drawing has");
        return !id.isNull() || raw.empty();
    }
    NameCache::Entry& seen = m_names->at(table, raw);
    if (seen.table != static_cast<int>(table) || seen.raw != raw) {
        textOf(tag, m_scratch);
        seen.name = trimBlanks(m_scratch);
        seen.id = seen.name.empty() ? VcDbObjectId() : m_db.recordFor(table, seen.name);
        seen.raw = raw;
        seen.table = static_cast<int>(table);
    }
    id = seen.id;
    noteSpelling(tag.code, id, seen.name);
    return true;
}

void FieldReader::noteSpelling(int code, VcDbObjectId id, const std::string& spelt)
{
    const auto* record = static_cast<const VcDbSymbolTableRecord*>(m_db.object(id));
    if (!record)
        return;
    const PresenceKey group = presenceKey(static_cast<int>(m_calls.size()) - 1, code);
    const std::uint32_t nth = m_nameCounts.next(group);
    if (record->nameUtf8() != spelt) {
        m_spellings.push_back({group, nth, spelt});
    } else if (record->isImplicit()) {
        m_earlyNames.push_back({0, id.slot(), group, nth});
        m_earlySpellings.emplace(id.slot(), spelt);
    }
}

bool FieldReader::atDefault(int code)
{
    m_atDefault.push_back(presenceKey(static_cast<int>(m_calls.size()) - 1, code));
    return true;
}

void FieldReader::real(int code, double& value)
{
    if (const Tag* tag = take(code))
        realOf(*tag, value);
}

void FieldReader::integer(int code, std::int64_t& value)
{
    if (const Tag* tag = take(code))
        integerOf(*tag, value);
}

void FieldReader::angle(int code, double& radians)
{
    const Tag* tag = take(code);
    if (double value = 0; tag && realOf(*tag, value))
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
    realOf(*first, ordinates[0]);
    for (std::size_t i = 1; i < ordinates.size(); ++i)
        if (const Tag* next = takeNear(code + 10 * static_cast<int>(i), code))
            realOf(*next, ordinates[i]);
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

void FieldReader::point(int code, VcGePoint3d& value)
{
    takePoint(code, value);
}

void FieldReader::point2(int code, VcGePoint2d& value)
{
    double xy[] = {value.x, value.y};
    if (takeOrdinates(code, xy))
        value = VcGePoint2d(xy[0], xy[1]);
}

void FieldReader::text(int code, std::string& utf8)
{
    if (const Tag* tag = take(code))
        textOf(*tag, utf8);
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
    for (std::string chunk; tag; tag = m_scope.cursor < m_scope.end && m_tags[m_scope.cursor].code == code ? take(code) : nullptr) {
        bytesOf(*tag, chunk);
        bytes += chunk;
    }
}

void FieldReader::optional(int code, double& value, double byDefault)
{
    const Tag* tag = take(code);
    if (tag && realOf(*tag, value) && value == byDefault)
        atDefault(code);
}

void FieldReader::optionalInteger(int code, std::int64_t& value, std::int64_t byDefault)
{
    const Tag* tag = take(code);
    if (tag && integerOf(*tag, value) && value == byDefault)
        atDefault(code);
}

void FieldReader::optionalAngle(int code, double& radians, double byDefault)
{
    const Tag* tag = take(code);
    double value = 0;
    if (!tag || !realOf(*tag, value))
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
    textOf(*tag, utf8);
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
        textOf(Tag::ofChars(lastCode, form, joined), utf8);
}

bool FieldReader::beginItem(int leadCode)
{
    const Tag* lead = find(leadCode);
    if (!lead)
        return false;
    const auto begin = static_cast<std::uint32_t>(lead - m_tags.data());
    std::uint32_t end = m_scope.end;
    std::uint64_t codes = m_scope.codes;
    if (!m_ordered) {
        codes = bit(leadCode);
        for (end = begin + 1; end < m_scope.end && (m_tags[end].code != leadCode || m_tags[end].taken); ++end)
            codes |= bit(m_tags[end].code);
    }
    m_outer.push_back(m_scope);
    m_scope = {begin, end, begin, codes};
    return true;
}

void FieldReader::endItem()
{
    Tag& lead = m_tags[m_scope.begin];
    if (!lead.taken)
        lead.taken = kPassedOver;
    const std::uint32_t next = m_ordered ? m_scope.cursor : m_scope.end;
    m_scope = m_outer.back();
    m_outer.pop_back();
    m_scope.cursor = next;
}

int FieldReader::peek() const
{
    for (std::uint32_t i = m_scope.cursor; i < m_scope.end; ++i)
        if (!m_tags[i].taken)
            return m_tags[i].code;
    return kNothing;
}

void FieldReader::rest(TagList& groups)
{
    TagList all;
    for (std::uint32_t i = m_scope.begin; i < m_scope.end; ++i) {
        if (m_tags[i].taken)
            continue;
        keep(m_tags[i], all);
        mark(m_tags[i]);
    }
    m_scope.cursor = m_scope.end;
    if (all.empty())
        return;
    all.shrink();
    groups = std::move(all);
}

void FieldReader::keep(const Tag& tag, TagList& list)
{
    if (tag.form == Tag::Form::Id)
        return list.addHandle(tag.code, m_db.handleOf(unpackId(tag.integer)));
    if (!isChars(tag))
        return list.add(tag);
    const GroupKind kind = fileGroupKind(tag.code);
    if (kind == GroupKind::Real) {
        if (const auto value = parseReal(tag.view()); value && std::isfinite(*value))
            return list.addReal(tag.code, *value);
    } else if (isIntegerKind(kind)) {
        if (const auto value = parseInteger(tag.view()))
            return list.addInteger(tag.code, *value);
    } else if (kind == GroupKind::Handle || kind == GroupKind::Reference) {
        if (const auto value = parseHandle(tag.view()))
            return list.addHandle(tag.code, *value);
    } else if (kind == GroupKind::Binary) {
        m_scratch.clear();
        if (parseBytes(tag.view(), m_scratch))
            return list.addBytes(tag.code, m_scratch);
    }
    textOf(tag, m_scratch);
    list.addText(tag.code, m_scratch);
}

// Where a run of groups that no field took goes.
struct FieldReader::LeftRun {
    std::string_view subclass;
    std::uint16_t occurrence;
    std::int16_t anchorCode;
    std::uint32_t anchorCount;
};

UnclaimedGroups& FieldReader::groupsAt(std::vector<UnclaimedGroups>& out, const LeftRun& run)
{
    UnclaimedGroups& made = out.emplace_back();
    made.subclass = run.subclass;
    made.occurrence = run.occurrence;
    made.anchorCode = run.anchorCode;
    made.anchorCount = run.anchorCount;
    return made;
}

std::vector<UnclaimedGroups> FieldReader::leftGroups()
{
    std::vector<UnclaimedGroups> out;
    std::unordered_map<std::uint32_t, std::uint32_t> written;  // how often a call has taken a code so far
    LeftRun known{{}, 0, UnclaimedGroups::kAtEnd, 0};
    for (const Window& window : m_windows) {
        UnclaimedGroups* run = nullptr;
        LeftRun at = known;
        std::uint32_t first = window.begin;
        if (window.opened)
            at = known = {window.marker, window.occurrence, UnclaimedGroups::kAtEnd, 0};
        else
            --first;  // with its marker
        if (window.opened)
            at.anchorCode = UnclaimedGroups::kAtStart;
        for (std::uint32_t i = first; i < window.end; ++i) {
            const Tag& tag = m_tags[i];
            if (tag.taken && tag.taken != kPassedOver) {
                const Call& call = m_calls[tag.taken - 1u];
                at = {call.marker, call.occurrence, tag.code, ++written[presenceKey(tag.taken, tag.code)]};
                run = nullptr;
                continue;
            }
            if (!run)
                run = &groupsAt(out, at);
            keep(tag, run->tags);
        }
    }
    return out;
}

std::uint16_t FieldReader::profile()
{
    if (!m_spellings.empty())
        return internPresence(m_atDefault, m_spellings);
    std::uint32_t hash = 0;
    for (const PresenceKey key : m_atDefault)
        hash = hash * 31 + key + (key >> 16);
    SeenProfile& seen = m_seenProfiles[hash % m_seenProfiles.size()];
    if (seen.atDefault != m_atDefault) {
        seen.atDefault = m_atDefault;
        seen.number = internPresence(m_atDefault);
    }
    return seen.number;
}

void FieldReader::finish(VcDbObject& object)
{
    object.setPresence(profile());
    for (; m_earlyBefore < m_earlyNames.size(); ++m_earlyBefore)
        m_earlyNames[m_earlyBefore].object = object.objectId().slot();
    if (ObjectExtras* extras = object.extras())
        extras->unclaimed.clear();
    if (!tookAll())
        object.makeExtras().unclaimed = leftGroups();
}

void FieldReader::settleSpellings()
{
    for (const EarlyName& early : m_earlyNames) {
        const auto* record = static_cast<const VcDbSymbolTableRecord*>(m_db.objectAt(early.record));
        VcDbObject* object = m_db.objectAt(early.object);
        const std::string& spelt = m_earlySpellings[early.record];
        if (record && object && record->nameUtf8() != spelt)
            object->setPresence(withSpelling(object->presence(), {early.group, early.nth, spelt}));
    }
    m_earlyNames = {};
    m_earlySpellings.clear();
    m_earlyBefore = 0;
}
