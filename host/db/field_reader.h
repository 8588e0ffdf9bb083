// FieldReader: fills an object from its groups, those of a file or of a chain.
//
// Groups before the first subclass marker and those behind each marker are windows. A look-up takes the group at the cursor
// or searches the window, so input in the customary order is linear. What is taken is marked in the tags; the rest is kept
// with the object by finish(). A marker that is missing leaves the groups before the first marker and the common ones open
// to its fields; files without markers are one window.
#pragma once

#include "host/db/field_visitor.h"
#include "host/db/presence.h"
#include "host/db/problems.h"
#include "host/db/tag.h"
#include "host/db/text_codec.h"

#include <array>
#include <memory>
#include <span>
#include <unordered_map>

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
    void settleSpellings();
    bool tookAll() const { return m_taken == m_tags.size(); }
    // A value could not be understood, or a name that must be there is not: the chain is to be refused.
    bool failed() const { return m_failed; }

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

    // Values of single groups, for readers of what is no object: false, and a problem, when it cannot be understood.
    bool realOf(const Tag& tag, double& value);
    bool integerOf(const Tag& tag, std::int64_t& value);
    bool handleOf(const Tag& tag, std::uint64_t& value);
    void textOf(const Tag& tag, std::string& utf8);
    bool bytesOf(const Tag& tag, std::string& bytes);
    // Adds a group to a list by the kind of its code; what does not fit its kind stays a text.
    void keep(const Tag& tag, TagList& list);

private:
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
    // A name that made its record, which may yet be read under another spelling.
    struct EarlyName {
        std::uint32_t object, record;
        PresenceKey group;
        std::uint32_t nth;
    };
    struct NameCache;
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
    bool atDefault(int code);
    std::uint16_t profile();
    bool recordOf(const Tag& tag, NameTable table, VcDbObjectId& id);
    void noteSpelling(int code, VcDbObjectId record, const std::string& spelt);
    bool idOf(const Tag& tag, VcDbObjectId& id);
    void wrong(const Tag& tag, const char* expected);
    void noteMended(const Tag& tag, const char* what);
    std::vector<UnclaimedGroups> leftGroups();
    UnclaimedGroups& groupsAt(std::vector<UnclaimedGroups>& out, const LeftRun& run);

    DatabaseCore& m_db;
    const TextDecoder* m_decoder;
    ProblemLog* m_problems;
    std::span<Tag> m_tags;
    std::uint64_t m_handle = 0;
    std::vector<Window> m_windows;
    std::vector<Call> m_calls;
    std::vector<Scope> m_outer;  // of the items that are open
    Scope m_scope{};
    int m_ordered = 0;
    std::size_t m_taken = 0;
    bool m_failed = false;
    std::vector<PresenceKey> m_atDefault;
    std::vector<KeptSpelling> m_spellings;
    struct SeenProfile {
        std::vector<PresenceKey> atDefault;
        std::uint16_t number = 0;
    };
    std::array<SeenProfile, 64> m_seenProfiles;  // by what they hold
    GroupCounts m_nameCounts;
    std::vector<EarlyName> m_earlyNames;
    std::size_t m_earlyBefore = 0;  // how many of them belong to the objects before this one
    std::unordered_map<std::uint32_t, std::string> m_earlySpellings;  // by the slot of the record
    std::string m_scratch;
    std::unique_ptr<NameCache> m_names;
};
