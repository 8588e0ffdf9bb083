// The view in which picks and windows are measured, and which layers are seen in it.
#pragma once

#include "host/base/api.h"
#include "host/geom/box.h"
#include "sdk/vcdb_object.h"
#include "sdk/vcge.h"

#include <memory>
#include <vector>

class VcDbEntity;

namespace vk::edit {

class Editor;

// The picture is a parallel projection. Lengths on it are drawing units.
struct VKHOST_API PickView {
    VcGeVector3d x{1, 0, 0}, y{0, 1, 0};  // to the right and up, in the world
    double reach = 0.05;                  // from a pick to what it still meets

    static PickView of(Editor& editor);
    VcGePoint2d project(const VcGePoint3d& world) const
    {
        return {x.dotProduct(world.asVector()), y.dotProduct(world.asVector())};
    }
    // From the world to the picture, with the height above it as Z.
    VcGeMatrix3d fromWorld() const;
    // Seen along the world's Z axis: a box on the picture is then a box in the drawing.
    bool isPlan() const { return x.z == 0 && y.z == 0; }
    // As above, with north up: the picture has the drawing's own coordinates.
    bool isLevel() const { return x == VcGeVector3d::xAxis() && y == VcGeVector3d::yAxis(); }
};

// Which layers are seen, asked often. A member of a block that lies on layer 0 goes with the layer of its reference.
class VKHOST_API SeenLayers {
public:
    // The viewport may freeze layers of its own; null for none.
    SeenLayers(const DatabaseCore& db, VcDbObjectId viewport);
    static SeenLayers of(const Editor& editor);

    bool isSeen(VcDbObjectId layer) const { return !has(layer, kOff | kFrozen); }
    bool isFrozen(VcDbObjectId layer) const { return has(layer, kFrozen); }
    bool isLocked(VcDbObjectId layer) const { return has(layer, kLocked); }
    bool isZero(VcDbObjectId layer) const { return layer == m_zero; }
    bool shows(const VcDbEntity& entity) const;

private:
    enum State : std::uint8_t { kOff = 1, kFrozen = 2, kLocked = 4 };
    using States = std::vector<std::uint8_t>;  // by slot
    static States statesOf(const DatabaseCore& db, VcDbObjectId viewport);
    bool has(VcDbObjectId layer, int states) const
    {
        return layer.slot() < m_states->size() && ((*m_states)[layer.slot()] & states) != 0;
    }
    VcDbObjectId m_zero;
    std::shared_ptr<const States> m_states;
};

}  // namespace vk::edit
