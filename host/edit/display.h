// What commands show for a moment: highlights, temporary vectors, and what follows the cursor while a question is open. The
// runner keeps them, a window draws them.
#pragma once

#include "host/base/api.h"
#include "sdk/vcdb_object.h"
#include "sdk/vcge.h"

#include <deque>
#include <functional>
#include <optional>
#include <unordered_set>
#include <vector>

namespace vk::edit {

struct TemporaryVector {
    VcGePoint3d from, to;  // in the UCS
    int colour = 7;
    bool highlighted = false;
};

// What a command shows with its next question, besides the band from the base point: objects of the drawing as they would
// be moved, or lines, in the UCS, that come to be.
struct Preview {
    std::vector<VcDbObjectId> moved;
    std::function<VcGeMatrix3d(const VcGePoint3d& cursor)> move;  // of the world, for a cursor in the UCS
    using Lines = std::vector<std::vector<VcGePoint3d>>;
    std::function<Lines(const VcGePoint3d& cursor)> lines;
};

struct Question;
struct Answer;

// A question that is open, as far as it follows the cursor.
struct Drag {
    enum class Band { None, Line, Rectangle };
    Band band = Band::None;
    VcGePoint3d base;  // of the band, in the UCS
    Preview preview;
    const Question* question = nullptr;
    bool follows() const { return band != Band::None || preview.move || preview.lines; }
};

// One that has been answered, with what was shown last.
struct Dragged {
    Drag::Band band = Drag::Band::None;
    VcGePoint3d base, cursor;
    std::size_t moved = 0;
    std::optional<VcGeMatrix3d> by;
    Preview::Lines lines;
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

    // The next question is asked with this.
    void follow(Preview preview) { m_next = std::move(preview); }
    // The question that is asked now; null where it does not follow the cursor.
    const Drag* drag() const { return m_drags.empty() || !m_drags.back().follows() ? nullptr : &m_drags.back(); }
    // Where a window has the cursor, in the UCS.
    std::optional<VcGePoint3d> cursor;
    // The latest, oldest first.
    const std::deque<Dragged>& dragged() const { return m_dragged; }

    // The question stays where it is until its end. A command that a module drives may keep one open while others come and go.
    void beginDrag(const Question& question);
    void endDrag(const Question& question, const Answer* answer);

private:
    std::optional<Preview> m_next;
    std::vector<Drag> m_drags;
    std::deque<Dragged> m_dragged;
    std::unordered_set<VcDbObjectId> m_highlighted;
    std::vector<TemporaryVector> m_vectors;
};

}  // namespace vk::edit
