#include "host/edit/display.h"

#include "host/base/rb.h"
#include "host/db/chain.h"
#include "host/edit/editor.h"
#include "sdk/vced.h"

#include <algorithm>
#include <cmath>

namespace vk::edit {

Display& Display::instance()
{
    static Display display;
    return display;
}

void Display::highlight(VcDbObjectId id, bool on)
{
    if (on)
        m_highlighted.insert(id);
    else
        m_highlighted.erase(id);
}

void Display::reset()
{
    m_highlighted.clear();
    m_vectors.clear();
    m_next.reset();
    m_dragged.clear();
    cursor.reset();
}

void Display::beginDrag(const Question& question)
{
    using Kind = Question::Kind;
    Drag drag;
    drag.question = &question;
    if (m_next)
        drag.preview = std::move(*m_next);
    m_next.reset();
    if (question.base) {
        drag.base = *question.base;
        drag.band = question.kind == Kind::Corner ? Drag::Band::Rectangle : Drag::Band::Line;
    }
    m_drags.push_back(std::move(drag));
}

namespace {

// Where the cursor would have to be for a length or an angle that was typed.
std::optional<VcGePoint3d> cursorOf(const Answer& answer, Question::Kind kind, const VcGePoint3d& base)
{
    using Kind = Question::Kind;
    if (answer.status != Answer::Status::Value)
        return std::nullopt;
    if (answer.hasPoint)
        return answer.point;
    if (kind == Kind::Distance)
        return base + VcGeVector3d(answer.real, 0, 0);
    if (kind == Kind::Angle || kind == Kind::Orientation)
        return base + VcGeVector3d(std::cos(answer.real), std::sin(answer.real), 0);
    return std::nullopt;
}

}

void Display::endDrag(const Question& question, const Answer* answer)
{
    constexpr std::size_t kKept = 64;
    const auto open =
        std::find_if(m_drags.rbegin(), m_drags.rend(), [&](const Drag& d) { return d.question == &question; });
    if (open == m_drags.rend())
        return;
    const Drag drag = std::move(*open);
    m_drags.erase(std::next(open).base());
    const auto at = answer && drag.follows() ? cursorOf(*answer, question.kind, drag.base) : std::nullopt;
    if (!at)
        return;
    Dragged dragged{drag.band, drag.base, *at, drag.preview.moved.size(), {}, {}};
    if (drag.preview.move)
        dragged.by = drag.preview.move(*at);
    if (drag.preview.lines)
        dragged.lines = drag.preview.lines(*at);
    m_dragged.push_back(std::move(dragged));
    if (m_dragged.size() > kKept)
        m_dragged.pop_front();
}

}

using namespace vk::edit;

// Modes: 1 show, 2 hide, 3 highlight, 4 take the highlight off. A null name means the whole drawing.
int vcedRedraw(const vds_name name, int mode)
{
    VcDbObjectId id;
    if (!name || (name[0] == 0 && name[1] == 0)) {
        Display::instance().redraw();
        return RTNORM;
    }
    if (!nameToId(name, id) || mode == 0 || std::abs(mode) > 4)
        return RTERROR;
    if (std::abs(mode) == 3 || std::abs(mode) == 4)
        Display::instance().highlight(id, std::abs(mode) == 3);
    return RTNORM;
}

int vcedGrDraw(const vds_point from, const vds_point to, int colour, int highlight)
{
    if (!from || !to)
        return RTERROR;
    Display::instance().addVector({{from[0], from[1], from[2]}, {to[0], to[1], to[2]}, colour, highlight != 0});
    return RTNORM;
}

// A chain of colour (RTSHORT), point, point; the colour holds until the next one.
int vcedGrVecs(const resbuf* vectors, const vds_matrix matrix)
{
    VcGeMatrix3d m;
    for (int r = 0; matrix && r < 4; ++r)
        for (int c = 0; c < 4; ++c)
            m.entry[r][c] = matrix[r][c];
    int colour = 7;
    const resbuf* first = nullptr;
    for (const resbuf* node = vectors; node; node = node->rbnext) {
        if (node->restype == RTSHORT) {
            colour = node->resval.rint;
            continue;
        }
        if (node->restype != RTPOINT && node->restype != RT3DPOINT)
            return RTERROR;
        if (!first) {
            first = node;
            continue;
        }
        const auto at = [&](const resbuf& n) {
            return m * VcGePoint3d(n.resval.rpoint[0], n.resval.rpoint[1], n.resval.rpoint[2]);
        };
        Display::instance().addVector({at(*first), at(*node), std::abs(colour), colour < 0});
        first = nullptr;
    }
    return first ? RTERROR : RTNORM;
}

int vcedTextScr() { return RTNORM; }
int vcedGraphScr() { return RTNORM; }
