// FieldWriter: an object's groups in order, to a file or a chain. What a sink does with each group is its own affair.
#pragma once

#include "host/db/field_visitor.h"
#include "host/db/presence.h"
#include "host/db/tag.h"

#include <span>
#include <vector>

class DatabaseCore;
struct UnclaimedGroups;

class VKHOST_API GroupSink {
public:
    virtual ~GroupSink();
    virtual void real(int code, double value) = 0;
    virtual void integer(int code, std::int64_t value) = 0;
    virtual void text(int code, std::string_view utf8) = 0;
    virtual void handle(int code, std::uint64_t handle) = 0;
    virtual void bytes(int code, std::string_view data) = 0;  // one chunk
    // Around groups that are put back as they came and that no field of the class wrote.
    virtual void beginKept() {}
    virtual void endKept() {}
    // Of a field that is a reference; the id may be of an object that the file has not brought.
    virtual void reference(int code, VcDbObjectId id, std::uint64_t handle)
    {
        (void)id;
        this->handle(code, handle);
    }
    virtual void point(int code, const VcGePoint3d& p)
    {
        real(code, p.x);
        real(code + 10, p.y);
        real(code + 20, p.z);
    }
    virtual void point2(int code, const VcGePoint2d& p)
    {
        real(code, p.x);
        real(code + 10, p.y);
    }
};

VKHOST_API void putTag(GroupSink& sink, const Tag& tag);
VKHOST_API void putTags(GroupSink& sink, const TagList& tags);

class VKHOST_API FieldWriter final : public FieldVisitor {
public:
    FieldWriter(Purpose purpose, DxfVersion version, DatabaseCore& db, GroupSink& sink);
    ~FieldWriter() override;

    // Around fields() of one object: its unclaimed groups go back in between, and the common ones behind the marker of what
    // all entities have.
    void begin(const VcDbObject& object, const TagList* common = nullptr);
    void finish();

    void subclass(const char* marker) override;
    void real(int code, double& value) override;
    void integer(int code, std::int64_t& value) override;
    void angle(int code, double& radians) override;
    void point(int code, VcGePoint3d& value) override;
    void point2(int code, VcGePoint2d& value) override;
    void text(int code, std::string& utf8) override;
    void ref(int code, RefKind kind, VcDbObjectId& id) override;
    void name(int code, NameTable table, VcDbObjectId& id) override;
    void binary(int code, std::string& bytes) override;
    void optional(int code, double& value, double byDefault) override;
    void optionalInteger(int code, std::int64_t& value, std::int64_t byDefault) override;
    void optionalAngle(int code, double& radians, double byDefault) override;
    void optionalPoint(int code, VcGePoint3d& value, const VcGePoint3d& byDefault) override;
    void optionalText(int code, std::string& utf8, std::string_view byDefault) override;
    void optionalRef(int code, RefKind kind, VcDbObjectId& id) override;
    void optionalName(int code, NameTable table, VcDbObjectId& id, const char* byDefault) override;
    void longText(int chunkCode, int lastCode, std::string& utf8) override;
    bool beginItem(int) override { return true; }
    void endItem() override {}
    void beginOrdered() override {}
    void endOrdered() override {}
    int peek() const override { return kNothing; }
    void rest(TagList& groups) override;

private:
    struct Pending {
        const UnclaimedGroups* groups;
        bool written;
    };
    struct Written {
        int code;
        std::uint32_t count;
    };

    void useProfile(std::uint16_t profile);
    bool carried(int code) const;
    std::string_view spellingOf(int code, std::string_view name);
    void wrote(int code, int ordinates = 1);
    void putAnchored(int code);
    void beginSubclass();
    void endSubclass();
    void put(Pending& pending);
    bool isCurrent(const UnclaimedGroups& groups) const;

    DatabaseCore& m_db;
    GroupSink& m_sink;
    std::vector<Pending> m_pending;  // of the object, in the order of its file
    std::vector<Written> m_written;  // how often each anchor code of the subclass was written
    std::size_t m_pendingHere = 0;   // anchored in the current subclass
    std::string_view m_subclass;
    std::vector<std::string_view> m_calls;
    std::uint16_t m_occurrence = 0;
    std::uint16_t m_profile = 0;
    std::uint64_t m_profileBits = 0;
    std::span<const KeptSpelling> m_spellings;
    GroupCounts m_nameCounts;
    const TagList* m_common = nullptr;
};
