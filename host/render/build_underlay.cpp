// Pages of other files that lie beneath a drawing. The files are not read: what is seen is the frame that clips the page,
// with the name of the file.
#include "host/base/files.h"
#include "host/db/database.h"
#include "host/db/extras.h"
#include "host/db/kept_object.h"
#include "host/render/build_parts.h"

#include <cmath>
#include <numbers>

namespace vk::render {

namespace {

struct Underlay {
    VcGePoint3d at;  // in its own plane
    VcGeVector3d normal{0, 0, 1};
    double xScale = 1, yScale = 1, rotation = 0;
    std::vector<VcGePoint2d> boundary;  // in units of the page
    VcDbObjectId definition;

    Underlay(const DatabaseCore& db, const ObjectExtras& extras)
    {
        for (const UnclaimedGroups& groups : extras.unclaimed)
            for (const Tag& tag : groups.tags)
                take(db, tag);
        if (boundary.size() == 2) {
            const VcGePoint2d a = boundary[0], c = boundary[1];
            boundary = {a, {c.x, a.y}, c, {a.x, c.y}};
        }
    }

private:
    void take(const DatabaseCore& db, const Tag& tag)
    {
        if (tag.code == 100)
            m_isOwn = tag.form == Tag::Form::Utf8 && tag.view() == "AcDbUnderlayReference";
        if (!m_isOwn)
            return;
        if (tag.code == 340 && tag.form == Tag::Form::Integer)
            definition = db.findHandle(std::uint64_t(tag.integer));
        if (tag.form != Tag::Form::Real)
            return;
        switch (tag.code) {
        case 10:
            at.x = tag.real;
            return;
        case 20:
            at.y = tag.real;
            return;
        case 30:
            at.z = tag.real;
            return;
        case 41:
            xScale = tag.real;
            return;
        case 42:
            yScale = tag.real;
            return;
        case 50:
            rotation = tag.real * std::numbers::pi / 180;
            return;
        case 210:
            normal.x = tag.real;
            return;
        case 220:
            normal.y = tag.real;
            return;
        case 230:
            normal.z = tag.real;
            return;
        case 11:
            boundary.emplace_back(tag.real, 0);
            return;
        case 21:
            if (!boundary.empty())
                boundary.back().y = tag.real;
            return;
        }
    }
    bool m_isOwn = false;  // past the marker of the class
};

std::string fileOf(const DatabaseCore& db, VcDbObjectId definition)
{
    const auto* object = db.liveAs<VcDbKeptObject>(definition);
    if (object && object->extras())
        for (const UnclaimedGroups& groups : object->extras()->unclaimed)
            for (const Tag& tag : groups.tags)
                if (tag.code == 1 && tag.form == Tag::Form::Utf8)
                    return std::string(tag.view());
    return {};
}

}

void addLabel(ListBuilder& b, std::string_view file, const VcGePoint3d& corner, const VcGeVector3d& width,
              const VcGeVector3d& height)
{
    const std::size_t slash = file.find_last_of("/\\");
    const std::string_view name = slash == std::string_view::npos ? file : file.substr(slash + 1);
    const double letters = double(std::max<std::size_t>(name.size(), 8));
    const double size = std::min(0.7 * width.length() / letters, height.length() / 3);
    if (!(size > 0))
        return;
    vktext::TextStyleSpec style;
    style.font = "txt";
    b.text(style, size, name, corner + width * 0.05 + height * 0.45, width.normal(), height.normal());
}

void buildUnderlay(const VcDbEntity& e, ListBuilder& b)
{
    if (!e.extras())
        return;
    const Underlay underlay(b.db(), *e.extras());
    b.omit("page of an underlay");
    if (underlay.boundary.size() < 3)
        return;
    const geom::Frame frame = geom::arbitraryFrame(underlay.normal);
    const double c = std::cos(underlay.rotation), s = std::sin(underlay.rotation);
    const VcGeVector3d x = (frame.x * c + frame.y * s) * underlay.xScale,
                       y = (frame.y * c - frame.x * s) * underlay.yScale;
    const VcGePoint3d origin = frame.toWorld(underlay.at);
    VcGePoint2d low = underlay.boundary.front(), high = low;
    std::vector<VcGePoint3d> corners;
    for (const VcGePoint2d& p : underlay.boundary) {
        low = {std::min(low.x, p.x), std::min(low.y, p.y)};
        high = {std::max(high.x, p.x), std::max(high.y, p.y)};
        corners.push_back(origin + x * p.x + y * p.y);
    }
    const std::uint32_t first = b.figureCount();
    b.polygon(corners);
    b.stroke(first, Item::Continuous);
    addLabel(b, fileOf(b.db(), underlay.definition), origin + x * low.x + y * low.y, x * (high.x - low.x),
             y * (high.y - low.y));
}

}  // namespace vk::render
