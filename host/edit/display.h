// What commands show for a moment: highlights and temporary vectors. The runner keeps them, a window draws them.
#pragma once

#include "host/base/api.h"
#include "sdk/vcdb_object.h"
#include "sdk/vcge.h"

#include <unordered_set>
#include <vector>

namespace vk::edit {

struct TemporaryVector {
    VcGePoint3d from, to;  // in the UCS
    int colour = 7;
    bool highlighted = false;
};

class VKHOST_API Display {
public:
    static Display& instance();
    void highlight(VcDbObjectId id, bool on);
    const std::unordered_set<VcDbObjectId>& highlighted() const { return m_highlighted; }
    bool isHighlighted(VcDbObjectId id) const { return m_highlighted.contains(id); }
    void addVector(const TemporaryVector& vector) { m_vectors.push_back(vector); }
    const std::vector<TemporaryVector>& vectors() const { return m_vectors; }
    // Forgets vectors, as a redraw does.
    void redraw() { m_vectors.clear(); }
    void reset();

private:
    std::unordered_set<VcDbObjectId> m_highlighted;
    std::vector<TemporaryVector> m_vectors;
};

}  // namespace vk::edit
