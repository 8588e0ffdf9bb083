// Visits every reference of an object: typed fields, reactors, extension dictionary, handles in what is kept whole.
#pragma once

#include "host/db/field_visitor.h"
#include "host/db/tag.h"

#include <optional>

class DatabaseCore;

class VKHOST_API ReferenceVisitor : public FieldVisitor {
public:
    ReferenceVisitor() : FieldVisitor(Purpose::References, DxfVersion::Newest) {}

    // Handles in kept groups mean objects of this drawing; of the object's own where none is set.
    void setHandleSpace(DatabaseCore& db) { m_handleSpace = &db; }

    // Calls visit for each reference but the owner, and puts what it returns in its place where that differs.
    void visitAll(VcDbObject& object);

    void subclass(const char*) override {}
    void real(int, double&) override {}
    void integer(int, std::int64_t&) override {}
    void angle(int, double&) override {}
    void point(int, VcGePoint3d&) override {}
    void point2(int, VcGePoint2d&) override {}
    void text(int, std::string&) override {}
    void binary(int, std::string&) override {}
    void optional(int, double&, double) override {}
    void optionalInteger(int, std::int64_t&, std::int64_t) override {}
    void optionalAngle(int, double&, double) override {}
    void optionalPoint(int, VcGePoint3d&, const VcGePoint3d&) override {}
    void optionalText(int, std::string&, std::string_view) override {}
    void longText(int, int, std::string&) override {}
    bool beginItem(int) override { return true; }
    void endItem() override {}
    void beginOrdered() override {}
    void endOrdered() override {}
    int peek() const override { return kNothing; }
    void rest(TagList& groups) override { tags(groups); }
    void ref(int code, RefKind kind, VcDbObjectId& id) override;
    void optionalRef(int code, RefKind kind, VcDbObjectId& id) override { ref(code, kind, id); }
    void name(int code, NameTable table, VcDbObjectId& id) override { ref(code, RefKind::HardPointer, id); }
    void optionalName(int code, NameTable table, VcDbObjectId& id, const char*) override
    {
        ref(code, RefKind::HardPointer, id);
    }
    // References inside groups that are kept whole.
    void tags(TagList& list);

protected:
    virtual VcDbObjectId visit(VcDbObjectId id, RefKind kind) = 0;

private:
    const VcDbObject* m_object = nullptr;
    DatabaseCore* m_handleSpace = nullptr;
};

// What a group code says about a handle in data that is kept whole: nothing for a code that carries no handle.
std::optional<RefKind> refKindOfCode(int code);
