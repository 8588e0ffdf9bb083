// FieldReader: fills an object from its groups, those of a file or of a chain.
//
// Groups before the first subclass marker and those behind each marker are windows. A look-up takes the group at the cursor
// or searches the window, so input in the customary order is linear. What is taken is marked in the tags; the rest is kept
// with the object by finish(). A marker that is missing leaves the groups before the first marker and the common ones open
// to its fields; files without markers are one window.
#pragma once

#include "host/db/field_visitor.h"
#include "host/db/group_values.h"
#include "host/db/record_name_reader.h"

#include <array>
#include <span>

class DatabaseCore;
struct UnclaimedGroups;

class VKHOST_API FieldReader final : public FieldVisitor {
public:
    FieldReader(Purpose purpose, DxfVersion version, DatabaseCore& db, const TextDecoder* decoder = nullptr,
                ProblemLog* problems = nullptr);
    ~FieldReader() override;

    // The groups of the next object, without its kind, handle, owner, brace groups and extended data. They stay the
    // caller's and are marked as they are taken.
    void begin(std::span<Tag> tags, std::uint64_t handle = 0);
    // After fields(): keeps with the object what no field has taken, and which groups stood at their default.
    void finish(VcDbObject& object);
    // When the whole file is read: the spelling of names that were used ahead of their records.
    void settleSpellings() { m_names.settle(); }
    bool tookAll() const { return m_taken == m_tags.size(); }
    // A value could not be understood, or a name that must be there is not: the chain is to be refused.
    bool failed() const { return m_values.failed(); }
    // Values of single groups, for readers of what is no object.
    GroupValues& values() { return m_values; }

    void subclass(const char* marker) override;
    bool hasSubclass(const char* marker) const override;
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
    bool beginItem(int leadCode) override;
    void endItem() override;
    void beginOrdered() override { ++m_ordered; }
    void endOrdered() override { --m_ordered; }
    int peek() const override;
    void rest(TagList& groups) override;

private:
    static constexpr unsigned kMostCalls = 126;
    static constexpr unsigned kPassedOver =
        127;  // the lead of an item whose class left it: not looked up again, and kept
    struct Window {
        std::string_view marker;
        std::uint32_t begin, end;
        std::uint64_t codes;  // bit code % 64 is set for each code in the window
        std::uint16_t occurrence;
        bool opened;
    };
    struct Scope {
        std::uint32_t begin, end, cursor;
        std::uint64_t codes;
    };
    struct Call {
        std::string_view marker;
        std::uint16_t occurrence;
    };
    struct LeftRun;

    void findWindows();
    int windowToOpen(std::string_view marker) const;
    Scope fallbackScope() const;
    Tag* find(int code);
    Tag* take(int code);
    Tag* takeNear(int code, int stopCode);
    bool takePoint(int code, VcGePoint3d& value);
    bool takeOrdinates(int code, std::span<double> ordinates);
    void mark(Tag& tag);
    void atDefault(int code) { m_atDefault.push_back(keyOf(code)); }
    std::uint16_t profile();
    PresenceKey keyOf(int code) const { return presenceKey(static_cast<int>(m_calls.size()) - 1, code); }
    bool recordOf(const Tag& tag, NameTable table, VcDbObjectId& id);
    bool idOf(const Tag& tag, VcDbObjectId& id);
    std::vector<UnclaimedGroups> leftGroups();
    UnclaimedGroups& groupsAt(std::vector<UnclaimedGroups>& out, const LeftRun& run);

    DatabaseCore& m_db;
    GroupValues m_values;
    RecordNameReader m_names;
    std::span<Tag> m_tags;
    std::vector<Window> m_windows;
    std::vector<Call> m_calls;
    std::vector<Scope> m_outer;  // of the items that are open
    Scope m_scope{};
    int m_ordered = 0;
    std::size_t m_taken = 0;
    std::vector<PresenceKey> m_atDefault;
    struct SeenProfile {
        std::vector<PresenceKey> atDefault;
        std::uint16_t number = 0;
    };
    std::array<SeenProfile, 64> m_seenProfiles;  // by what they hold
};
