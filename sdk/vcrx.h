// Run-time typing, the registry of services, and what a module declares to the host.
#pragma once

#include "vkdefs.h"

class VcDbObject;

// Describes one class: there is one descriptor of each class in the process.
class VK_SDK VcRxClass {
public:
    using Create = VcDbObject* (*)();

    // dxfName is group 0 of the class in a drawing file, null for classes that are never stored themselves.
    VcRxClass(const char* name, VcRxClass* (*parent)(), const char* dxfName = nullptr, Create create = nullptr);

    const char* name() const { return m_name; }
    const char* dxfName() const { return m_dxfName; }
    const VcRxClass* parent() const { return m_parent ? m_parent() : nullptr; }
    bool isDerivedFrom(const VcRxClass* other) const;
    VcDbObject* create() const { return m_create ? m_create() : nullptr; }

    // The class that stores itself under the group 0 text, or null.
    static const VcRxClass* findByDxfName(const char* dxfName, std::size_t length);

private:
    const char* m_name;
    VcRxClass* (*m_parent)();
    const char* m_dxfName;
    Create m_create;
};

class VK_SDK VcRxObject {
public:
    VcRxObject() = default;
    VcRxObject(const VcRxObject&) = default;
    VcRxObject& operator=(const VcRxObject&) = default;
    virtual ~VcRxObject();

    static VcRxClass* desc();
    virtual VcRxClass* isA() const;
    bool isKindOf(const VcRxClass* cls) const { return isA()->isDerivedFrom(cls); }
};

// Declares the descriptor, the cast and the type query of a class below VcRxObject.
#define VCRX_DECLARE(T)                                                                                                \
public:                                                                                                                \
    static VcRxClass* desc();                                                                                          \
    static T* cast(const VcRxObject* object)                                                                           \
    {                                                                                                                  \
        return object && object->isKindOf(T::desc()) ? (T*)(object) : nullptr;                                         \
    }                                                                                                                  \
    VcRxClass* isA() const override;

#define VCRX_DEFINE(T, Base)                                                                                           \
    static VcRxClass s_class_##T(#T, &Base::desc);                                                                     \
    VcRxClass* T::desc() { return &s_class_##T; }                                                                      \
    VcRxClass* T::isA() const { return &s_class_##T; }

// A dictionary of named services.
class VK_SDK VcRxDictionary : public VcRxObject {
    VCRX_DECLARE(VcRxDictionary)
public:
    VcRxDictionary();
    ~VcRxDictionary() override;
    VcRxDictionary(const VcRxDictionary&) = delete;
    VcRxDictionary& operator=(const VcRxDictionary&) = delete;

    VcRxObject* at(const wchar_t* name) const;
    bool has(const wchar_t* name) const;
    // Puts the object under the name and returns what stood there, which then belongs to the caller.
    VcRxObject* atPut(const wchar_t* name, VcRxObject* object);
    // Takes the entry out; the returned object belongs to the caller. Null if there is none.
    VcRxObject* remove(const wchar_t* name);

private:
    struct Entries;
    Entries* m_entries;
};

// Loads modules and keeps those that are in use.
class VK_SDK VcRxDynamicLinker : public VcRxObject {
    VCRX_DECLARE(VcRxDynamicLinker)
public:
    virtual bool loadModule(const wchar_t* file, bool printIt = true) = 0;
    virtual bool unloadModule(const wchar_t* file) = 0;
    virtual bool lock(void* appHandle) = 0;
    virtual bool unlock(void* appHandle) = 0;
};

extern "C" {
// Services live in the entries "DynamicLinker", "VKAD_REGISTERED_COMMANDS" and "ServiceDictionary".
VK_SDK VcRxDictionary* vcrxSysRegistry();
VK_SDK bool vcrxRegisterAppMDIAware(void* appHandle);
VK_SDK bool vcrxRegisterService(const wchar_t* name);
VK_SDK bool vcrxServiceIsRegistered(const wchar_t* name);
}

// Messages that the host sends to the entry point of a module: vcrxEntryPoint(message, argument).
enum VcRxMessage : unsigned {
    kInitAppMsg = 1,
    kUnloadAppMsg = 2,
    kLoadDwgMsg = 3,
    kUnloadDwgMsg = 4,
    kInvkSubrMsg = 5,
    kCfgMsg = 6,
    kEndMsg = 7,
    kQuitMsg = 8,
    kSaveMsg = 9,
    kDependencyMsg = 10,
    kNoDependencyMsg = 11,
};
