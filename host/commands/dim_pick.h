// What a dimension is measured on: a line, an arc or a circle, or the segment of a polyline that was picked.
#pragma once

#include "host/commands/drawing.h"

#include <memory>

class VcDbEntity;

namespace vk::commands {

class MeasuredObject {
public:
    MeasuredObject(edit::Editor& ed, const edit::Answer& answer);
    // The object that was picked; of a polyline a line or an arc of its own. Null where nothing was.
    const VcDbEntity* get() const { return m_segment ? m_segment.get() : m_entity; }
    template <class T>
    const T* as() const
    {
        return T::cast(get());
    }
    // Where it was picked, in the UCS; the origin where it was named.
    VcGePoint3d pick() const { return m_pick; }

private:
    const VcDbEntity* m_entity;
    std::unique_ptr<VcDbEntity> m_segment;
    VcGePoint3d m_pick;
};

// Asks until an object of one of the classes is picked; Enter ends the command.
template <class... Classes>
MeasuredObject askMeasured(edit::Editor& ed, std::string_view prompt, std::string_view refusal)
{
    for (;;) {
        const edit::Answer a = ed.askEntity(prompt);
        if (a.status != edit::Answer::Status::Value)
            throw edit::CommandCancelled();
        MeasuredObject object(ed, a);
        if ((object.as<Classes>() || ...))
            return object;
        ed.printLine(refusal);
    }
}

}  // namespace vk::commands
