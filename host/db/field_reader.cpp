// Windows and look-ups: which group a field is given.
#include "host/db/field_reader.h"

#include "host/base/numbers.h"

namespace {

std::uint64_t bit(int code) { return std::uint64_t(1) << (static_cast<unsigned>(code) & 63); }

bool isMarker(const Tag& tag) { return tag.code == 100 || tag.code == 101; }

}

FieldReader::FieldReader(Purpose purpose, DxfVersion version, DatabaseCore& db, const TextDecoder* decoder,
                         ProblemLog* problems)
    : FieldVisitor(purpose, version), m_db(db), m_values(db, decoder, problems),
      m_names(db, m_values, purpose == Purpose::ReadFile)
{
}

FieldReader::~FieldReader() = default;

void FieldReader::begin(std::span<Tag> tags, std::uint64_t handle)
{
    m_tags = tags;
    m_values.begin(handle);
    m_names.begin();
    m_windows.clear();
    m_calls.assign(1, {});
    m_outer.clear();
    m_ordered = 0;
    m_taken = 0;
    m_atDefault.clear();
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
