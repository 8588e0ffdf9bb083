#include "host/edit/display.h"

#include "host/base/rb.h"
#include "host/db/chain.h"
#include "host/edit/editor.h"
#include "sdk/vced.h"

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
        const auto at = [&](const resbuf& n) { return m * VcGePoint3d(n.resval.rpoint[0], n.resval.rpoint[1], n.resval.rpoint[2]); };
        Display::instance().addVector({at(*first), at(*node), std::abs(colour), colour < 0});
        first = nullptr;
    }
    return first ? RTERROR : RTNORM;
}

int vcedTextScr() { return RTNORM; }
int vcedGraphScr() { return RTNORM; }
