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

void addOverlay(ListBuilder& b, const edit::Display& display, const VcGeMatrix3d& ucsToWorld)
{
    addHighlighted(b, display);
    for (const edit::TemporaryVector& vector : display.vectors()) {
        b.setOwnLook(plainLook(vector.colour, vector.highlighted ? kHighlightWeight : kHairline));
        b.line(ucsToWorld * vector.from, ucsToWorld * vector.to, Item::Continuous);
    }
}

}  // namespace vk::render
