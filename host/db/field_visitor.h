// FieldVisitor: the one description of a class's data, in the order of a file and of a chain.
//
// A class lists its groups once, in fields(). Readers (file, chain), writers (file, chain), reference translation and
// comparison are visitors. On input groups are taken by code within the current subclass in any order; a group that is
// missing leaves the member as it is. What no field claims stays with the object and is written back in place.
//
// Units: lengths in drawing units, angles in radians in memory and in chains, degrees in files.
#pragma once

#include "host/base/api.h"
#include "sdk/vcdb_object.h"
#include "sdk/vcge.h"

#include <string>
#include <string_view>
#include <vector>

enum class DxfVersion : std::uint8_t {
    R10,
    R11,
    R12,
    R13,
    R14,
    R2000,
    R2004,
    R2007,
    R2010,
    R2013,
    R2018,
    Newest = R2018
};

// What a reference obliges to: owners are saved with what they own, hard pointers keep their target from a purge.
enum class RefKind : std::uint8_t { SoftPointer, HardPointer, SoftOwner, HardOwner };

class TagList;

enum class NameTable : std::uint8_t { Layer, Linetype, TextStyle, DimStyle, Block, AppId, Ucs, View, Viewport };

class VKHOST_API FieldVisitor {
public:
    enum class Purpose : std::uint8_t {
        ReadFile,
        WriteFile,
        ReadChain,
        WriteChain,
        References,  // visits ids and names only
    };

    virtual ~FieldVisitor();

    Purpose purpose() const { return m_purpose; }
    bool isReading() const { return m_purpose == Purpose::ReadFile || m_purpose == Purpose::ReadChain; }
    bool isWriting() const { return m_purpose == Purpose::WriteFile || m_purpose == Purpose::WriteChain; }
    bool isFile() const { return m_purpose == Purpose::ReadFile || m_purpose == Purpose::WriteFile; }
    bool isChain() const { return m_purpose == Purpose::ReadChain || m_purpose == Purpose::WriteChain; }
    // Of the file being written or read; Newest for chains.
    DxfVersion version() const { return m_version; }
    bool atLeast(DxfVersion v) const { return m_version >= v; }

    // Begins a subclass: the groups that follow belong to it. R12 and older files have no markers.
    // The marker of an object that is embedded at the end of another, "Embedded Object", is group 101; all others are 100.
    // It ends the subclass before it just as they do.
    virtual void subclass(const char* marker) = 0;
    // On reading, whether a marker of that name is still ahead.
    virtual bool hasSubclass(const char* marker) const { return false; }
    // A subclass that not every object has. True where it is there on reading, or is to be written: its groups follow.
    bool optionalSubclass(const char* marker, bool present)
    {
        if (isReading() ? !hasSubclass(marker) : !present)
            return false;
        subclass(marker);
        return true;
    }

    // Groups that are always written.
    virtual void real(int code, double& value) = 0;
    virtual void integer(int code, std::int64_t& value) = 0;
    virtual void angle(int code, double& radians) = 0;
    virtual void point(int code, VcGePoint3d& value) = 0;
    virtual void point2(int code, VcGePoint2d& value) = 0;
    virtual void text(int code, std::string& utf8) = 0;
    virtual void ref(int code, RefKind kind, VcDbObjectId& id) = 0;
    // A record of a symbol table, by name in files and chains.
    virtual void name(int code, NameTable table, VcDbObjectId& id) = 0;
    virtual void binary(int code, std::string& bytes) = 0;  // chunked in files

    // Groups that a file leaves out at their default; a chain carries them.
    virtual void optional(int code, double& value, double byDefault) = 0;
    virtual void optionalInteger(int code, std::int64_t& value, std::int64_t byDefault) = 0;
    virtual void optionalAngle(int code, double& radians, double byDefault) = 0;
    virtual void optionalPoint(int code, VcGePoint3d& value, const VcGePoint3d& byDefault) = 0;
    virtual void optionalText(int code, std::string& utf8, std::string_view byDefault) = 0;
    virtual void optionalRef(int code, RefKind kind, VcDbObjectId& id) = 0;  // left out when null, in chains too
    // byDefault: name of the record that is left out, such as "Standard".
    virtual void optionalName(int code, NameTable table, VcDbObjectId& id, const char* byDefault) = 0;

    // A text cut into chunks of 250 characters: all but the last under chunkCode, the last under lastCode.
    virtual void longText(int chunkCode, int lastCode, std::string& utf8) = 0;

    // Repeated groups: on reading, beginItem(lead) opens a window from the next group of that code to the one after it
    // and is false when there is none; on writing it is called once an item and is true.
    virtual bool beginItem(int leadCode) = 0;
    virtual void endItem() = 0;
    // Between these, groups are taken strictly in order: an optional group is read only where it stands next. For
    // counted, nested lists such as hatch boundaries.
    virtual void beginOrdered() = 0;
    virtual void endOrdered() = 0;
    // Code of the next group not yet taken in the current window, or kNothing; on writing always kNothing.
    virtual int peek() const = 0;
    // Every group of the current window that is not taken yet, whatever its code, kept whole and in order: for data whose
    // groups have no meaning of their own. On writing they are put back as they are.
    virtual void rest(TagList& groups) = 0;
    static constexpr int kNothing = -9999;

    // Convenience over the above.
    void vector(int code, VcGeVector3d& value) { point(code, reinterpret_cast<VcGePoint3d&>(value)); }
    void optionalVector(int code, VcGeVector3d& value, const VcGeVector3d& byDefault)
    {
        optionalPoint(code, reinterpret_cast<VcGePoint3d&>(value), VcGePoint3d(byDefault.x, byDefault.y, byDefault.z));
    }
    template <class Int>
    void number(int code, Int& value)  // any integer, bool or enumeration
    {
        std::int64_t wide = static_cast<std::int64_t>(value);
        integer(code, wide);
        value = static_cast<Int>(wide);
    }
    template <class Int>
    void optionalNumber(int code, Int& value, Int byDefault)
    {
        std::int64_t wide = static_cast<std::int64_t>(value);
        optionalInteger(code, wide, static_cast<std::int64_t>(byDefault));
        value = static_cast<Int>(wide);
    }
    template <class T, class Each>
    void repeated(int leadCode, std::vector<T>& items, Each&& each)
    {
        if (!isReading()) {
            for (T& item : items) {
                beginItem(leadCode);
                each(item);
                endItem();
            }
            return;
        }
        std::vector<T> read;
        while (beginItem(leadCode)) {
            each(read.emplace_back());
            endItem();
        }
        if (!read.empty())
            items = std::move(read);
    }
    void refs(int code, RefKind kind, std::vector<VcDbObjectId>& ids)
    {
        repeated(code, ids, [&](VcDbObjectId& id) { ref(code, kind, id); });
    }
    // A count group: written from the size; what a file says is returned but never trusted to allocate.
    std::int64_t count(int code, std::size_t size)
    {
        std::int64_t n = static_cast<std::int64_t>(size);
        integer(code, n);
        return n;
    }

protected:
    FieldVisitor(Purpose purpose, DxfVersion version) : m_purpose(purpose), m_version(version) {}

private:
    Purpose m_purpose;
    DxfVersion m_version;
};

// Groups are taken in order for the life of the guard.
class OrderedFields {
public:
    explicit OrderedFields(FieldVisitor& v) : m_v(v) { m_v.beginOrdered(); }
    ~OrderedFields() { m_v.endOrdered(); }
    OrderedFields(const OrderedFields&) = delete;
    OrderedFields& operator=(const OrderedFields&) = delete;

private:
    FieldVisitor& m_v;
};
