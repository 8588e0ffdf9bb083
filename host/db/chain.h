// Objects as chains of groups, and chains back into objects.
#pragma once

#include "host/base/rb.h"
#include "host/db/tag.h"
#include "sdk/vcdb_object.h"

#include <deque>
#include <optional>
#include <span>
#include <string>
#include <vector>

class DatabaseCore;

// -1, 0, 5, the 102 groups, 330, then the class's own groups; extended data of the applications that the chain names (with
// wild-cards) at the end under -3.
VKHOST_API RbPtr chainOf(VcDbObject& object, const resbuf* applications = nullptr);
// As symbol table look-ups give it: no handles and owners; a block's with -2, its first member.
VKHOST_API RbPtr tableChainOf(VcDbObject& record);

// A chain cut into what the framework reads and what the class reads.
class VKHOST_API ChainGroups {
public:
    explicit ChainGroups(const resbuf* chain);
    std::span<Tag> tags() { return m_tags; }
    const std::string& type() const { return m_type; }
    const Tag* find(int code) const;
    std::string textOf(int code) const;
    std::int64_t integerOf(int code, std::int64_t byDefault) const;
    // Subclass markers, in order.
    const std::vector<std::string>& markers() const { return m_markers; }
    std::optional<VcDbObjectId> name() const { return m_name; }  // of group -1
    RbPtr takeXData() { return std::move(m_xdata); }
    bool isWellFormed() const { return m_wellFormed; }

private:
    void addNode(const resbuf& node);
    bool hasDataIn5() const;
    std::vector<Tag> m_tags;
    std::deque<std::string> m_texts;
    std::vector<std::string> m_markers;
    std::string m_type;
    std::optional<VcDbObjectId> m_name;
    RbPtr m_xdata;
    bool m_wellFormed = true;
};

// Brings the object in line with the chain: what it leaves out stays. On failure the object is as it was.
VKHOST_API Vcad::ErrorStatus applyChain(VcDbObject& object, ChainGroups& groups);

// As applyChain without keeping the state for undo; the object may be in no drawing.
Vcad::ErrorStatus readChainInto(VcDbObject& object, ChainGroups& groups);

// A new object of the chain's type, in no database but with references into db; null where the type is not known.
VKHOST_API std::unique_ptr<VcDbObject> objectOfChain(DatabaseCore& db, ChainGroups& groups);

// What a chain's angle of an MTEXT is measured from: the X axis of the current UCS. Set by the editor.
using UcsAngle = double (*)(const DatabaseCore& db, const VcDbObject& object);
VKHOST_API void setUcsAngleHook(UcsAngle hook);
VKHOST_API double ucsAngleFor(const DatabaseCore& db, const VcDbObject& object);

// Name of the block that the last ENDBLK completed, told once; empty when it has been told, or when a question was asked since.
VKHOST_API std::string takeNameOfMadeBlock();

VKHOST_API bool nameToId(const vds_name name, VcDbObjectId& id);
VKHOST_API void idToName(VcDbObjectId id, vds_name name);
