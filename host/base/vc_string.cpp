#include "sdk/vcstring.h"

#include "host/base/heap.h"
#include "host/base/resources.h"
#include "host/base/unicode.h"

namespace {

const wchar_t* orEmpty(const wchar_t* text) { return text ? text : L""; }

int place(std::size_t found) { return found == std::wstring::npos ? -1 : static_cast<int>(found); }

}  // namespace

VcString& VcString::assign(const wchar_t* text)
{
    m_text = std::wstring(orEmpty(text));
    m_narrow.clear();
    return *this;
}

VcString& VcString::assign(const VcString& text) { return assign(text.kwszPtr()); }

VcString& VcString::assign(const char* utf8) { return assign(utf8ToWide(utf8 ? utf8 : "").c_str()); }

VcString& VcString::append(const wchar_t* text)
{
    m_text += std::wstring(orEmpty(text));
    m_narrow.clear();
    return *this;
}

VcString& VcString::append(wchar_t character)
{
    m_text += character;
    m_narrow.clear();
    return *this;
}

VcString& VcString::append(const char* utf8) { return append(utf8ToWide(utf8 ? utf8 : "").c_str()); }

VcString& VcString::setEmpty() { return assign(L""); }

bool VcString::loadString(unsigned id) { return loadString(currentResourceHandle(), id); }

bool VcString::loadString(void* instance, unsigned id)
{
    const wchar_t* text = resourceText(instance, id);
    assign(text);
    return text != nullptr;
}

const char* VcString::kszPtr() const
{
    if (m_narrow.empty())
        m_narrow = wideToUtf8(m_text);
    return m_narrow.c_str();
}

int VcString::compare(const wchar_t* text) const { return m_text.compare(orEmpty(text)); }

int VcString::compareNoCase(const wchar_t* text) const
{
    return ::compareNoCase(std::wstring_view(m_text), std::wstring_view(orEmpty(text)));
}

int VcString::find(const wchar_t* text) const { return place(m_text.find(orEmpty(text))); }

int VcString::find(wchar_t character) const { return place(m_text.find(character)); }

int VcString::findRev(wchar_t character) const { return place(m_text.rfind(character)); }

int VcString::findOneOf(const wchar_t* characters) const { return place(m_text.find_first_of(orEmpty(characters))); }

VcString VcString::substr(int first, int count) const
{
    if (first < 0 || static_cast<std::size_t>(first) > m_text.size())
        return {};
    const std::size_t wanted = count < 0 ? m_text.npos : static_cast<std::size_t>(count);
    return m_text.substr(static_cast<std::size_t>(first), wanted).c_str();
}

VcString VcString::substrRev(int count) const
{
    const std::size_t wanted = count < 0 ? m_text.size() : std::min(static_cast<std::size_t>(count), m_text.size());
    return m_text.c_str() + (m_text.size() - wanted);
}

namespace {

constexpr const wchar_t* kStatusTexts[] = {
    L"ok",
    L"invalid input",
    L"null object id",
    L"invalid key",
    L"key not found",
    L"duplicate key",
    L"was erased",
    L"not open for write",
    L"not open for read",
    L"was open for read",
    L"was open for write",
    L"on a locked layer",
    L"not that kind of class",
    L"invalid index",
    L"out of range",
    L"cannot be erased",
    L"object to be deleted",
    L"no database",
    L"wrong database",
    L"not applicable",
    L"cannot scale non-uniformly",
    L"cannot explode",
    L"file not found",
    L"file access failed",
    L"file unreadable",
    L"unsupported version",
    L"extended data too large",
    L"application not registered",
    L"insufficient memory",
};

}

VkErrorStatus::~VkErrorStatus() = default;

const wchar_t* VkErrorStatus::text() const
{
    const auto index = static_cast<std::size_t>(m_status);
    return index < std::size(kStatusTexts) ? kStatusTexts[index] : L"unknown status";
}

VkExceptionWithMsg::VkExceptionWithMsg(const wchar_t* message, Vcad::ErrorStatus status)
    : m_message(orEmpty(message)), m_status(status)
{
}

VkExceptionWithMsg::~VkExceptionWithMsg() = default;

void* VcHeapOperators::allocRawMem(std::size_t size) { return heapAllocate(size); }

void VcHeapOperators::freeRawMem(void* memory) { heapRelease(memory); }
