// How a module reaches its texts and dialogs: the module's record with the class library, and the guard that makes a
// resource handle current for as long as it lives.
#pragma once

#include "system.h"
#include "vchost.h"

// The one record of a module. It knows a resource instance once it has been attached to one.
class CVcExtensionModule {
public:
    CVcExtensionModule() = default;
    CVcExtensionModule(const CVcExtensionModule&) = delete;
    CVcExtensionModule& operator=(const CVcExtensionModule&) = delete;

    void AttachInstance(HINSTANCE module, HINSTANCE resources)
    {
        m_attached = true;
        m_module = module;
        m_resources = resources;
    }
    void DetachInstance()
    {
        m_attached = false;
        m_module = m_resources = nullptr;
    }
    bool IsAttached() const { return m_attached; }
    HINSTANCE ModuleInstance() const { return m_module; }
    HINSTANCE ModuleResourceInstance() const { return m_resources; }

private:
    bool m_attached = false;
    HINSTANCE m_module = nullptr;
    HINSTANCE m_resources = nullptr;
};

// Texts and dialogs that name no handle come from the given library while this lives; from the module's own resources
// when the handle is null. Guards nest.
class CVcModuleResourceOverride {
public:
    CVcModuleResourceOverride() : CVcModuleResourceOverride(nullptr) {}
    explicit CVcModuleResourceOverride(HINSTANCE resources)
    {
        vcDocManager()->pushResourceHandle(resources ? resources : m_extensionModule.ModuleResourceInstance());
    }
    CVcModuleResourceOverride(const CVcModuleResourceOverride&) = delete;
    CVcModuleResourceOverride& operator=(const CVcModuleResourceOverride&) = delete;
    ~CVcModuleResourceOverride() { vcDocManager()->popResourceHandle(); }

private:
    // Each module defines this for itself.
    static CVcExtensionModule& m_extensionModule;
};
