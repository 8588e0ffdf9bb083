// What cannot land on a page, told before it is built: most of a large drawing when a small part of it is painted.
#pragma once

#include "host/geom/box.h"
#include "sdk/vcdb_entity.h"

#include <optional>
#include <unordered_map>

class VcDbBlockTableRecord;
class VcDbMText;

namespace vk::render {

struct PageView;

// Goes by extents, and so knows only classes that draw nothing beyond theirs; all else may land on the page.
class PageCull {
public:
    PageCull(const DatabaseCore& db, const PageView& view);
    bool isOff(const VcDbEntity& entity);

private:
    bool isWorthIt() const;
    bool staysInBox(const VcDbEntity& entity);
    bool staysInBox(VcDbObjectId block);

    const DatabaseCore& m_db;
    std::optional<geom::Box3d> m_page;  // in the coordinates of the space; nothing where everything may be seen
    std::unordered_map<VcDbObjectId, bool> m_blocks;
    std::size_t m_asked = 0, m_off = 0;
};

}  // namespace vk::render
