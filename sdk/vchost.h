// The host application: its services, documents and module resources.
#pragma once

#include "vcdb_database.h"

class VK_SDK VcDbHostApplicationServices {
public:
    virtual ~VcDbHostApplicationServices();
    virtual VcDbDatabase* workingDatabase() const = 0;
    virtual void setWorkingDatabase(VcDbDatabase* database) = 0;
    // Root of the product's settings, as in "Software\\vekad"; profiles lie beneath it.
    virtual const wchar_t* getMachineRegistryProductRootKey() const = 0;
    virtual const wchar_t* getUserRegistryProductRootKey() const = 0;
    // Folder of the host's own files, with its separator at the end; Support/ lies in it.
    virtual const wchar_t* getInstallFolder() const = 0;
};

VK_SDK VcDbHostApplicationServices* vcdbHostApplicationServices();
VK_SDK void vcdbSetHostApplicationServices(VcDbHostApplicationServices* services);

// Keeps the stack of resource handles that texts and dialogs are loaded through.
class VK_SDK VcApDocManager {
public:
    virtual ~VcApDocManager();
    virtual void pushResourceHandle(void* handle) = 0;
    virtual void popResourceHandle() = 0;
};

VK_SDK VcApDocManager* vcDocManagerPtr();
#define vcDocManager() vcDocManagerPtr()

// Loads a resource library that lies beside the program or the modules; null if it cannot be loaded.
VK_SDK void* loadResourceDll(const wchar_t* fileName);
// The locale of the host as a number; VcCodePage::LanguageToCodePage turns it into a code page.
VK_SDK int getProductLocaleId();

// Posts a message to a window of the host, null being the main one, which acts on it later; 1, or 0 where there is no
// window. Both names do the same.
VK_SDK int vcadPostMessageToWnd(void* target, unsigned message, std::uintptr_t wParam, std::intptr_t lParam);
VK_SDK int vkadPostMessageToWnd(void* target, unsigned message, std::uintptr_t wParam, std::intptr_t lParam);
