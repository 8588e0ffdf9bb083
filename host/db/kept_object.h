// Objects and entities of classes that we have no members for. Their groups are kept as unclaimed groups, whole and in order,
// so they take part in handles, ownership, references, cloning and files like any other.
#pragma once

#include "host/base/api.h"
#include "sdk/vcdb_entity.h"

#include <string_view>

// What a class that stands in for many knows of its own: group 0 in a file. One copy of each name lives for the process.
class VKHOST_API KeptClassName {
public:
    KeptClassName() = default;
    explicit KeptClassName(std::string_view dxfName);
    const char* text() const { return m_text; }

private:
    const char* m_text = "";
};

class VK_SDK VcDbKeptObject : public VcDbObject {
    VCDB_DECLARE(VcDbKeptObject)
public:
    VcDbKeptObject() = default;
    explicit VcDbKeptObject(std::string_view dxfName) : m_className(dxfName) {}
    const char* keptDxfName() const { return m_className.text(); }

private:
    KeptClassName m_className;
};

class VK_SDK VcDbKeptEntity : public VcDbEntity {
    VCDB_DECLARE(VcDbKeptEntity)
public:
    VcDbKeptEntity() = default;
    explicit VcDbKeptEntity(std::string_view dxfName) : m_className(dxfName) {}
    const char* keptDxfName() const { return m_className.text(); }
    // Of the classes whose points are known for what they are among their groups: multileaders and underlays. They move, turn
    // and scale evenly; multileaders have mirror images, with texts that are still read, pages have none.
    Vcad::ErrorStatus transformBy(const VcGeMatrix3d& m) override;
    // Of what is seen of multileaders.
    Vcad::ErrorStatus getGeomExtents(VcDbExtents& extents) const override;
    // Multileaders, into arrows, lines, and their text or their block.
    Vcad::ErrorStatus explode(std::vector<VcDbEntity*>& pieces) const override;

private:
    KeptClassName m_className;
};

// Group 0 of an object in a file and in a chain.
VKHOST_API const char* dxfNameOf(const VcDbObject& object);
