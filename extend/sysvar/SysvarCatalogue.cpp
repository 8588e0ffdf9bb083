#include "sysvar/SysvarCatalogue.h"

#include "system.h"

#include <algorithm>
#include <climits>
#include <utility>

namespace {

std::string readBytes(const wchar_t* path)
{
    const HANDLE file =
        CreateFileW(path, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return {};
    const DWORD size = GetFileSize(file, nullptr);
    std::string bytes(size <= INT_MAX ? size : 0, '\0');
    DWORD got = 0;
    if (!ReadFile(file, bytes.data(), DWORD(bytes.size()), &got, nullptr))
        got = 0;
    CloseHandle(file);
    bytes.resize(got);
    return bytes;
}

}  // namespace

std::wstring readCatalogue(const wchar_t* path)
{
    const std::string bytes = readBytes(path);
    if (bytes.empty())
        return {};
    const int length = MultiByteToWideChar(CP_ACP, 0, bytes.data(), int(bytes.size()), nullptr, 0);
    std::wstring text(length > 0 ? std::size_t(length) : 0, L'\0');
    MultiByteToWideChar(CP_ACP, 0, bytes.data(), int(bytes.size()), text.data(), int(text.size()));
    return text;
}

bool CatalogueReader::next(SysvarData& record)
{
    const std::size_t mark = nextMark();
    if (mark == kNone)
        return false;
    record = {};
    record.readOnly = m_text[mark] == m_readOnly.character;
    m_at = mark + 1;
    record.name = field();
    record.type = field();
    record.savedIn = field();
    record.initial = line();
    record.description = line();
    return true;
}

std::size_t CatalogueReader::find(Mark& mark)
{
    if (!mark.searched || (mark.at != kNone && mark.at < m_at))
        mark.at = m_text.find(mark.character, m_at);
    mark.searched = true;
    return mark.at;
}

// A catalogue must hold both marks before its first entry counts; from then on either will do.
std::size_t CatalogueReader::nextMark()
{
    const std::size_t readOnly = find(m_readOnly), writable = find(m_writable);
    const bool lacksOne = readOnly == kNone || writable == kNone;
    if (std::exchange(m_isFirst, false) && lacksOne)
        return kNone;
    return std::min(readOnly, writable);
}

CStdStrW CatalogueReader::field()
{
    const std::size_t end = std::min(m_text.find(L'|', m_at), m_text.size());
    const std::wstring_view text = m_text.substr(m_at, end - m_at);
    m_at = std::min(end + 1, m_text.size());
    return std::wstring(text);
}

// The rest of the line. The character before its line feed is taken for a carriage return.
CStdStrW CatalogueReader::line()
{
    const std::size_t feed = m_text.find(L'\n', m_at);
    std::wstring_view text = m_text.substr(m_at, std::min(feed, m_text.size()) - m_at);
    if (!text.empty() && (feed != kNone || text.back() == L'\r'))
        text.remove_suffix(1);
    m_at = feed == kNone ? m_text.size() : feed + 1;
    return std::wstring(text);
}
