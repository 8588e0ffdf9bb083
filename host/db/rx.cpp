#include "sdk/vcrx.h"

#include "host/base/unicode.h"

#include <map>
#include <utility>

namespace {

// Filled by constructors of static descriptors before main, and again when a module brings classes of its own.
std::unordered_map<std::string_view, const VcRxClass*>& classesByDxfName()
{
    static std::unordered_map<std::string_view, const VcRxClass*> classes;
    return classes;
}

}

VcRxClass::VcRxClass(const char* name, VcRxClass* (*parent)(), const char* dxfName, Create create)
    : m_name(name), m_parent(parent), m_dxfName(dxfName), m_create(create)
{
    if (dxfName)
        classesByDxfName().emplace(dxfName, this);
}

bool VcRxClass::isDerivedFrom(const VcRxClass* other) const
{
    for (const VcRxClass* c = this; c; c = c->parent())
        if (c == other)
            return true;
    return false;
}

const VcRxClass* VcRxClass::findByDxfName(const char* dxfName, std::size_t length)
{
    const auto found = classesByDxfName().find(std::string_view(dxfName, length));
    return found == classesByDxfName().end() ? nullptr : found->second;
}

static VcRxClass s_class_VcRxObject("VcRxObject", nullptr);
VcRxClass* VcRxObject::desc() { return &s_class_VcRxObject; }
VcRxClass* VcRxObject::isA() const { return &s_class_VcRxObject; }
VcRxObject::~VcRxObject() = default;

VCRX_DEFINE(VcRxDictionary, VcRxObject)
VCRX_DEFINE(VcRxDynamicLinker, VcRxObject)

struct VcRxDictionary::Entries {
    std::map<std::wstring, VcRxObject*> byName;
};

VcRxDictionary::VcRxDictionary() : m_entries(new Entries) {}
VcRxDictionary::~VcRxDictionary() { delete m_entries; }

VcRxObject* VcRxDictionary::at(const wchar_t* name) const
{
    const auto found = m_entries->byName.find(name ? name : L"");
    return found == m_entries->byName.end() ? nullptr : found->second;
}

bool VcRxDictionary::has(const wchar_t* name) const { return at(name) != nullptr; }

VcRxObject* VcRxDictionary::atPut(const wchar_t* name, VcRxObject* object)
{
    return std::exchange(m_entries->byName[name ? name : L""], object);
}

VcRxObject* VcRxDictionary::remove(const wchar_t* name)
{
    const auto found = m_entries->byName.find(name ? name : L"");
    if (found == m_entries->byName.end())
        return nullptr;
    VcRxObject* object = found->second;
    m_entries->byName.erase(found);
    return object;
}
