// What the commands share that change curves: picks as places on curves, and changes that their own Undo takes back.
#pragma once

#include "host/commands/drawing.h"
#include "host/geom/curve.h"

#include <memory>
#include <optional>
#include <vector>

namespace vk::commands {

// A curve picked at a place on it.
struct CurvePick {
    VcDbEntity* entity = nullptr;
    geom::Curve curve;
    VcGePoint3d at;    // in the world, where the pick was
    double param = 0;  // of the place on the curve that is seen there
};

// What was picked, or the curve beneath it where that is none: a hatch covers its boundary.
VcDbEntity* pickedCurve(edit::Editor& ed, const edit::Answer& answer);
// Nothing, and the reason told, when the picked object is no curve or lies on a locked layer.
std::optional<CurvePick> curvePick(edit::Editor& ed, const edit::Answer& answer);
std::optional<CurvePick> curvePickAt(edit::Editor& ed, VcDbEntity& entity, const VcGePoint3d& world);

// Towards the eye, in the world.
VcGeVector3d viewNormal(edit::Editor& ed);

// Where the line, arc or polyline that was drawn last ends, in the UCS: LINE and ARC go on from there.
struct CurveEnd {
    VcGePoint3d point;
    VcGeVector3d direction;  // in which it ends
    bool isArc = false;
};
std::optional<CurveEnd> lastCurveEnd(edit::Editor& ed);

// Steps of changes to entities. Each step can be taken back within the command.
class CurveEdits {
public:
    explicit CurveEdits(edit::Editor& ed) : m_ed(ed) {}

    void begin() { m_steps.emplace_back(); }
    // Drops a step that changed nothing.
    void end();
    // Gives the entity these shapes in its place: the first stays the same object where its class can hold it, the others
    // are new beside it. Nothing changes when one of them cannot be an entity.
    bool replace(VcDbEntity& entity, const std::vector<geom::Curve>& shapes);
    // A new entity beside another, with its properties; null when the curve cannot be one.
    VcDbEntity* add(const geom::Curve& curve, const VcDbEntity& like);
    VcDbEntity* addNew(std::unique_ptr<VcDbEntity> entity, VcDbObjectId owner);
    void erase(VcDbEntity& entity);
    // What the last replace left of its entity.
    const std::vector<VcDbObjectId>& left() const { return m_left; }

    // False when there is nothing to take back.
    bool undo();
    std::size_t steps() const { return m_steps.size(); }

private:
    struct Step {
        std::vector<VcDbObjectId> made, erased;
        std::vector<std::unique_ptr<VcDbObject>> before;
    };
    edit::Editor& m_ed;
    std::vector<Step> m_steps;
    std::vector<VcDbObjectId> m_left;
};

}  // namespace vk::commands
