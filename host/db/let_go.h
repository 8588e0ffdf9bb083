// What was taken out of its dictionary and put under no other: it stays for undo, with all that it owns, and is no part of
// the drawing any more.
#pragma once

#include "host/base/api.h"

#include <cstdint>
#include <unordered_set>

class DatabaseCore;
class VcDbObject;

class VKHOST_API LetGo {
public:
    // With what came from the files of external references, and is not saved either.
    enum class Members { Own, OwnAndReferences };
    explicit LetGo(const DatabaseCore& db, Members members = Members::Own);

    bool isEmpty() const { return m_slots.empty(); }
    bool contains(const VcDbObject& object) const;
    const std::unordered_set<std::uint32_t>& slots() const { return m_slots; }

private:
    void gatherOwnerless(const DatabaseCore& db);
    void spareListed(const DatabaseCore& db);
    void addMembersOfReferences(const DatabaseCore& db);
    void addOwned(const DatabaseCore& db);

    std::unordered_set<std::uint32_t> m_slots;
};
