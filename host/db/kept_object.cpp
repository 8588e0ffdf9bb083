#include "host/db/kept_object.h"

#include <mutex>
#include <set>
#include <string>

// Known to the registry of classes under no name of their own: the reader makes them for whatever it does not know.
VCDB_DEFINE(VcDbKeptObject, VcDbObject, nullptr)
VCDB_DEFINE(VcDbKeptEntity, VcDbEntity, nullptr)

KeptClassName::KeptClassName(std::string_view dxfName)
{
    static std::mutex mutex;
    static auto* names = new std::set<std::string, std::less<>>;
    const std::lock_guard lock(mutex);
    auto found = names->find(dxfName);
    if (found == names->end())
        found = names->emplace(dxfName).first;
    m_text = found->c_str();
}

const char* dxfNameOf(const VcDbObject& object)
{
    const VcRxClass* cls = object.isA();
    if (cls == VcDbKeptEntity::desc())
        return static_cast<const VcDbKeptEntity&>(object).keptDxfName();
    if (cls == VcDbKeptObject::desc())
        return static_cast<const VcDbKeptObject&>(object).keptDxfName();
    return cls->dxfName() ? cls->dxfName() : "";
}
