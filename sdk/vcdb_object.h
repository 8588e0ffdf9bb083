// Objects of a drawing database: ids, handles, opening and closing, ownership, extended data.
#pragma once

#include "resbuf.h"
#include "vcrx.h"

#include <memory>
#include <vector>

class VcDbDatabase;
class VcDbObject;
class DatabaseCore;
class FieldVisitor;
struct ObjectExtras;

class VK_SDK VcDbHandle {
public:
    VcDbHandle() = default;
    explicit VcDbHandle(std::uint64_t value) : m_value(value) {}
    std::uint64_t value() const { return m_value; }
    bool isNull() const { return m_value == 0; }
    bool operator==(const VcDbHandle&) const = default;
    // Upper-case hexadecimal without leading zeros; false if the buffer is too small (17 characters always do).
    bool getIntoAsciiBuffer(wchar_t* buffer, std::size_t size = 17) const;
    bool getIntoAsciiBuffer(char* buffer, std::size_t size = 17) const;

private:
    std::uint64_t m_value = 0;
};

// Finds an object of an open database. It is a number, never a pointer: an id of a database that has been
// closed finds nothing. The database's serial number is unique in the process.
class VK_SDK VcDbObjectId {
public:
    constexpr VcDbObjectId() = default;
    constexpr VcDbObjectId(std::uint32_t databaseSerial, std::uint32_t slot) : m_serial(databaseSerial), m_slot(slot) {}

    bool isNull() const { return m_slot == 0; }
    bool isValid() const;
    bool isErased() const;
    bool setNull()
    {
        *this = {};
        return true;
    }
    VcDbHandle handle() const;
    VcDbDatabase* database() const;
    const VcRxClass* objectClass() const;

    std::uint32_t databaseSerial() const { return m_serial; }
    std::uint32_t slot() const { return m_slot; }
    constexpr bool operator==(const VcDbObjectId&) const = default;
    constexpr bool operator<(const VcDbObjectId& o) const
    {
        return m_serial != o.m_serial ? m_serial < o.m_serial : m_slot < o.m_slot;
    }

private:
    std::uint32_t m_serial = 0;
    std::uint32_t m_slot = 0;
};

template <>
struct std::hash<VcDbObjectId> {
    std::size_t operator()(const VcDbObjectId& id) const noexcept
    {
        return (std::size_t(id.databaseSerial()) * 0x9e3779b97f4a7c15u) ^ id.slot();
    }
};

namespace VcDb {
enum OpenMode : int { kForRead = 0, kForWrite = 1, kForNotify = 2 };
enum Visibility : int { kInvisible = 1, kVisible = 0 };
// Hundredths of a millimetre.
enum LineWeight : std::int16_t {
    kLnWtByLwDefault = -3,
    kLnWtByBlock = -2,
    kLnWtByLayer = -1,
    kLnWt000 = 0,
    kLnWt211 = 211
};
}

// Base of everything that has a handle. Whoever opens an object closes it.
class VK_SDK VcDbObject : public VcRxObject {
    VCRX_DECLARE(VcDbObject)
public:
    VcDbObject();
    VcDbObject(const VcDbObject&);
    VcDbObject& operator=(const VcDbObject&);
    ~VcDbObject() override;

    VcDbObjectId objectId() const { return m_id; }
    VcDbObjectId ownerId() const { return m_owner ? VcDbObjectId(m_id.databaseSerial(), m_owner) : VcDbObjectId(); }
    void setOwnerId(VcDbObjectId owner);
    VcDbDatabase* database() const;
    void getVcDbHandle(VcDbHandle& handle) const { handle = m_id.handle(); }
    VcDbHandle handle() const { return m_id.handle(); }

    Vcad::ErrorStatus close();
    // Marks the object erased or, with false, brings it back in its place.
    Vcad::ErrorStatus erase(bool erasing = true);
    Vcad::ErrorStatus upgradeOpen();
    Vcad::ErrorStatus downgradeOpen();
    // Every member that changes the object calls this first: it keeps the state for undo. How the object is open does
    // not matter to it; vcdbOpenObject and upgradeOpen are where opening for write is refused.
    void assertWriteEnabled(bool autoUndo = true, bool recordModified = true);
    bool isErased() const { return m_erased; }
    bool isReadEnabled() const { return m_readers > 0 || m_writing; }
    bool isWriteEnabled() const { return m_writing; }
    bool isModified() const { return m_modified; }
    bool isModifiedGraphics() const { return m_modified; }
    bool hasFields() const;

    VcDbObjectId extensionDictionary() const;
    Vcad::ErrorStatus createExtensionDictionary();
    Vcad::ErrorStatus releaseExtensionDictionary();

    // Extended data as a chain of 1001 groups and values, of one application or of all; the caller releases it.
    resbuf* xData(const wchar_t* application = nullptr) const;
    // Replaces the data of each application that the chain names; a bare 1001 removes it.
    Vcad::ErrorStatus setXData(const resbuf* chain);

    // Persistent reactors, as opaque pointers for vcdbIsPersistentReactor and vcdbPersistentReactorObjectId.
    // Null if there are none. The array is valid until the object changes.
    const std::vector<void*>* reactors() const;
    void addPersistentReactor(VcDbObjectId reactor);
    void removePersistentReactor(VcDbObjectId reactor);

    // Host side: one description of the data for files, chains, cloning, comparison and audit.
    virtual void fields(FieldVisitor& visitor);
    // Called after fields() has read the object from a chain or a caller's change, to bring derived values in line.
    virtual void fieldsChanged() {}
    virtual std::unique_ptr<VcDbObject> copyOf() const = 0;
    virtual void assignFrom(const VcDbObject& other) = 0;
    // Called after undo or redo has put another state in place; before is the state that was replaced.
    virtual void stateRestored(const VcDbObject& before) { (void)before; }
    // Called after the object has been erased or brought back, by a caller or by undo.
    virtual void erasedChanged() {}
    // Whether something still needs the object, so that erasing it is refused.
    virtual Vcad::ErrorStatus mayErase() const { return Vcad::eOk; }
    // Erases or brings back what lives and dies with the object.
    virtual void eraseOwned(bool erasing) { (void)erasing; }
    // Called when a changed object is closed: texts handed out until then are no longer valid.
    virtual void dropCaches() {}
    // A new object stays open for write for its maker, who closes it.
    void openNew() { m_writing = true; }
    // A copy that is to become an object of its own: it forgets its id and whatever goes with being open.
    void detach();
    // Erases it because its owner goes, or brings back what went with the owner.
    void eraseWithOwner(bool erasing);
    bool isImplicit() const { return m_implicit; }
    void setImplicit(bool implicit) { m_implicit = implicit; }
    std::uint16_t presence() const { return m_present; }
    void setPresence(std::uint16_t profile) { m_present = profile; }
    std::uint32_t order() const { return m_order; }
    void setOrder(std::uint32_t order) { m_order = order; }

    ObjectExtras* extras() const { return m_extras.get(); }
    ObjectExtras& makeExtras();

protected:
    friend class DatabaseCore;
    friend class UndoJournal;

    VcDbObjectId m_id;
    std::uint32_t m_owner = 0;    // slot in the same database
    std::uint32_t m_order = 0;    // place in the order of main entities, or among the owner's members
    std::uint32_t m_props = 0;    // of entities: index of the interned common properties
    std::uint16_t m_present = 0;  // which optional groups its file carried at their default (interned)
    std::uint16_t m_readers : 10 = 0;
    bool m_writing : 1 = false;
    bool m_erased : 1 = false;
    bool m_modified : 1 = false;
    bool m_implicit : 1 = false;  // made for a name that was used before its record was read
    bool m_recorded : 1 = false;  // its state is kept since the last undo mark
    bool m_erasedWithOwner : 1 = false;
    std::unique_ptr<ObjectExtras> m_extras;
};

#define VCDB_DECLARE(T)                                                                                                \
    VCRX_DECLARE(T)                                                                                                    \
    std::unique_ptr<VcDbObject> copyOf() const override;                                                               \
    void assignFrom(const VcDbObject& other) override;

// In a source file: T below Base; DXF is group 0 of the class in a file.
#define VCDB_DEFINE(T, Base, DXF)                                                                                      \
    static VcDbObject* s_create_##T() { return new T; }                                                                \
    static VcRxClass s_class_##T(#T, &Base::desc, DXF, &s_create_##T);                                                 \
    VcRxClass* T::desc() { return &s_class_##T; }                                                                      \
    VcRxClass* T::isA() const { return &s_class_##T; }                                                                 \
    std::unique_ptr<VcDbObject> T::copyOf() const { return std::make_unique<T>(*this); }                               \
    void T::assignFrom(const VcDbObject& other) { *this = static_cast<const T&>(other); }

// For bases that are never stored themselves.
#define VCDB_DEFINE_ABSTRACT(T, Base) VCRX_DEFINE(T, Base)

// A list of ids: owned sub-objects, results of queries.
using VcDbObjectIdArray = std::vector<VcDbObjectId>;

// Walks the owned sub-objects of an entity (vertices, attributes); the caller deletes it.
class VK_SDK VcDbObjectIterator {
public:
    explicit VcDbObjectIterator(VcDbObjectIdArray ids, bool skipErased = true);
    void start(bool atBeginning = true, bool skipErased = true);
    bool done() const;
    void step(bool forward = true, bool skipErased = true);
    VcDbObjectId objectId() const;

private:
    VcDbObjectIdArray m_ids;
    std::ptrdiff_t m_at = 0;
    void skip(int direction, bool skipErased);
};

// Opening by id. The pointer is null unless the result is 0. Entities on locked layers refuse to be opened for write.
VK_SDK Vcad::ErrorStatus vcdbOpenVcDbObject(VcDbObject*& object, VcDbObjectId id, VcDb::OpenMode mode,
                                            bool openErased = false);
VK_SDK Vcad::ErrorStatus vcdbOpenVcDbObject(VcDbObject*& object, VcDbObjectId id, VcDb::OpenMode mode,
                                            const VcRxClass* cls, bool openErased = false);

template <class T>
Vcad::ErrorStatus vcdbOpenObject(T*& object, VcDbObjectId id, VcDb::OpenMode mode = VcDb::kForRead,
                                 bool openErased = false)
{
    VcDbObject* opened = nullptr;
    const Vcad::ErrorStatus status = vcdbOpenVcDbObject(opened, id, mode, T::desc(), openErased);
    object = static_cast<T*>(opened);
    return status;
}

VK_SDK bool vcdbIsPersistentReactor(const void* reactor);
VK_SDK VcDbObjectId vcdbPersistentReactorObjectId(const void* reactor);
