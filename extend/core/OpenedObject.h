// An object that was opened by its entity name, closed when it goes.
#pragma once

#include "vcdb_chains.h"
#include "vcdb_object.h"

#include <utility>

template <class T = VcDbObject>
class OpenedObject {
public:
    explicit OpenedObject(const vds_name name, VcDb::OpenMode mode = VcDb::kForRead)
    {
        VcDbObjectId id;
        VcDbObject* object = nullptr;
        if (vcdbGetObjectId(id, name) != Vcad::eOk || vcdbOpenVcDbObject(object, id, mode) != Vcad::eOk)
            return;
        m_object = T::cast(object);
        if (!m_object)
            object->close();
    }
    OpenedObject(const OpenedObject&) = delete;
    OpenedObject& operator=(const OpenedObject&) = delete;
    ~OpenedObject() { close(); }

    explicit operator bool() const { return m_object; }
    T* operator->() const { return m_object; }
    T* get() const { return m_object; }
    void close()
    {
        if (T* object = std::exchange(m_object, nullptr))
            object->close();
    }

private:
    T* m_object = nullptr;
};
