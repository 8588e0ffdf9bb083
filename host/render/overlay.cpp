#include "host/render/overlay.h"

#include "host/db/database.h"
#include "host/edit/display.h"

#include <algorithm>

namespace vk::render {

namespace {

constexpr std::int16_t kHighlightColour = 5, kHighlightWeight = 50, kHairline = 0;

EntityProps plainLook(int colour, std::int16_t weight)
{
    EntityProps props;
    props.color = VcCmColor::fromIndex(std::int16_t(colour));
    props.lineWeight = weight;
    return props;
}

// In the order of their slots, so that one state of the drawing gives one picture.
void addHighlighted(ListBuilder& b, const edit::Display& display)
{
    std::vector<VcDbObjectId> ids(display.highlighted().begin(), display.highlighted().end());
    std::sort(ids.begin(), ids.end());
    for (const VcDbObjectId id : ids) {
        const auto* entity = b.db().liveAs<VcDbEntity>(id);
        if (!entity)
            continue;
        const std::size_t first = b.list().items.size();
        b.add(*entity);
        b.setOwnLook(plainLook(kHighlightColour, kHighlightWeight));
        for (std::size_t i = first; i < b.list().items.size(); ++i)
            b.list().items[i].look = b.look();
    }
}

}

namespace {

// A selection larger than this is shown by the objects that were selected first.
constexpr std::size_t kMostShown = 2000;

void addMoved(ListBuilder& b, const edit::Preview& preview, const VcGePoint3d& cursor)
{
    const VcGeMatrix3d by = preview.move(cursor);
    const DisplayList::Length before = b.list().length();
    for (std::size_t i = 0; i < std::min(preview.moved.size(), kMostShown); ++i)
        if (const auto* entity = b.db().liveAs<VcDbEntity>(preview.moved[i]))
            b.add(*entity);
    b.list().moveSince(before, by);
}

void addBand(ListBuilder& b, const edit::Drag& drag, const VcGePoint3d& cursor, const VcGeMatrix3d& ucsToWorld)
{
    const VcGePoint3d a = drag.base;
    std::vector<VcGePoint3d> corners{a, cursor};
    if (drag.band == edit::Drag::Band::Rectangle)
        corners = {a, {cursor.x, a.y, a.z}, cursor, {a.x, cursor.y, a.z}, a};
    for (std::size_t i = 0; i + 1 < corners.size(); ++i)
        b.line(ucsToWorld * corners[i], ucsToWorld * corners[i + 1], Item::Continuous);
}

void addDrag(ListBuilder& b, const edit::Drag& drag, const VcGePoint3d& cursor, const VcGeMatrix3d& ucsToWorld)
{
    if (drag.preview.move)
        addMoved(b, drag.preview, cursor);
    b.setOwnLook(plainLook(VcCmColor::kAciForeground, kHairline));
    if (drag.preview.lines)
        for (const auto& line : drag.preview.lines(cursor))
            for (std::size_t i = 0; i + 1 < line.size(); ++i)
                b.line(ucsToWorld * line[i], ucsToWorld * line[i + 1], Item::Continuous);
    if (drag.band != edit::Drag::Band::None)
        addBand(b, drag, cursor, ucsToWorld);
}

}

void addOverlay(ListBuilder& b, const edit::Display& display, const VcGeMatrix3d& ucsToWorld)
{
    addHighlighted(b, display);
    for (const edit::TemporaryVector& vector : display.vectors()) {
        b.setOwnLook(plainLook(vector.colour, vector.highlighted ? kHighlightWeight : kHairline));
        b.line(ucsToWorld * vector.from, ucsToWorld * vector.to, Item::Continuous);
    }
    if (display.drag() && display.cursor)
        addDrag(b, *display.drag(), *display.cursor, ucsToWorld);
}

}  // namespace vk::render
