// Selection sets: members in the order they came, membership in constant time. As long as members come in the order of
// the database, which is how most are selected, none is looked up in a table; it is made when one comes that does not.
#pragma once

#include "host/base/api.h"
#include "sdk/vcdb_object.h"

#include <memory>
#include <vector>

namespace vk::edit {

class VKHOST_API SelectionSet {
public:
    bool add(VcDbObjectId id);  // false when it is a member already
    bool remove(VcDbObjectId id);
    bool has(VcDbObjectId id) const;
    std::size_t size() const { return m_size; }
    bool empty() const { return m_size == 0; }
    // Members in order.
    const std::vector<VcDbObjectId>& ids() const;
    void clear();

private:
    bool hasTable() const { return !m_places.empty(); }
    std::size_t home(VcDbObjectId id) const;
    // Of the member, or the free place where it would come.
    std::size_t placeOf(VcDbObjectId id) const;
    void makeTable();  // with room for one more
    void freePlace(std::size_t place);
    void compact() const;

    mutable std::vector<VcDbObjectId> m_ids;  // a removed member leaves a null until the next look
    // Empty while m_ids ascend and have no nulls. A hash table with open addressing: indices into m_ids from 1, 0 where nothing is. A power of two, at most half full.
    mutable std::vector<std::uint32_t> m_places;
    std::size_t m_size = 0;
};

// Sets that modules and Lisp hold by name. A name says its slot and its generation, so that a freed one is refused.
class VKHOST_API SelectionSetTable {
public:
    static SelectionSetTable& instance();
    void nameOf(std::shared_ptr<SelectionSet> set, vds_name out);
    std::shared_ptr<SelectionSet> find(const vds_name name) const;
    bool release(const vds_name name);
    std::size_t liveCount() const;

private:
    struct Slot {
        std::shared_ptr<SelectionSet> set;
        std::uint32_t generation = 0;
    };
    std::vector<Slot> m_slots{1};
    std::vector<std::uint32_t> m_free;
};

}  // namespace vk::edit
