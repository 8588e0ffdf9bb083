#include "host/base/resources.h"

#include "host/base/modules.h"
#include "sdk/system.h"

#include <algorithm>
#include <vector>

static std::vector<void*>& handles()
{
    static std::vector<void*> stack = {nullptr};
    return stack;
}

const wchar_t* resourceText(void* library, unsigned id)
{
    const auto* table =
        static_cast<const VkResourceTable*>(moduleSymbol(static_cast<LoadedModule*>(library), "vkResourceTable"));
    if (!table || !library)
        return nullptr;
    const VkResourceText* end = table->texts + table->count;
    const VkResourceText* found = std::lower_bound(
        table->texts, end, id, [](const VkResourceText& entry, unsigned wanted) { return entry.id < wanted; });
    return found != end && found->id == id ? found->text : nullptr;
}

void pushResourceHandle(void* library) { handles().push_back(library); }

void popResourceHandle()
{
    if (handles().size() > 1)
        handles().pop_back();
}

void* currentResourceHandle() { return handles().back(); }

void setCurrentResourceHandle(void* library) { handles().back() = library; }
