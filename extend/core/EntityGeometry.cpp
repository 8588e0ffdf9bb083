#include "core/EntityGeometry.h"

#include "core/Coordinates.h"
#include "core/Geometry.h"
#include "core/MakeEntities.h"
#include "core/OpenedObject.h"
#include "core/PublicFunction.h"
#include "vcdb.h"
#include "vcut.h"

#include <cmath>
#include <memory>

int getlinept(const vds_name name, vds_point start, vds_point end)
{
    resbuf* chain = vcdbEntGet(name);
    const bool isRead = getrb_point(chain, 10, start) && getrb_point(chain, 11, end);
    vcutRelRb(chain);
    return isRead ? RTNORM : RTERROR;
}

bool isLineOnLine(const vds_name name1, const vds_name name2)
{
    constexpr int kLine = 1;
    vds_point start1, end1, start2, end2;
    return getEntType(name1) == kLine && getEntType(name2) == kLine && getlinept(name1, start1, end1) == RTNORM &&
           getlinept(name2, start2, end2) == RTNORM && _3PointsInSameLine(start1, end1, start2) &&
           _3PointsInSameLine(start1, end1, end2);
}

void getMtextRectPts(vds_point corners[4], const vds_name name, double gap)
{
    const OpenedObject<VcDbMText> text(name);
    if (!text)
        return;
    const double w = text->actualWidth(), h = text->actualHeight();
    const double c = std::cos(text->rotation()), s = std::sin(text->rotation());
    const VcGePoint3d location = text->location();
    const VcGePoint2d local[] = {{-gap, gap}, {w + gap, gap}, {w + gap, -h - gap}, {-gap, -h - gap}};
    for (int i = 0; i < 4; ++i) {
        corners[i][0] = local[i].x * c - local[i].y * s + location.x;
        corners[i][1] = local[i].y * c + local[i].x * s + location.y;
    }
}

namespace {

enum Corner { kUpperLeft, kUpperRight, kLowerLeft, kLowerRight };

struct Box {
    double left, right, top, bottom;
};

// About a text's location, by the nine places where a text can be held.
Box boxByAttachment(int attachment, double width, double height)
{
    const int place = attachment >= 2 && attachment <= 9 ? attachment - 1 : 0;
    const double leftShare[] = {0, 0.5, 1}, upShare[] = {0, 0.5, 1};
    const double left = -width * leftShare[place % 3], top = height * upShare[place / 3];
    return {left, left + width, top, top - height};
}

void widen(VcGePoint3d (&corners)[4], double gap, double angle)
{
    const double r = gap * 1.4142135623730951, t = 0.78539816339745 + angle;
    const double s = r * std::sin(t), c = r * std::cos(t);
    corners[kUpperLeft] += VcGeVector3d(-s, c, 0);
    corners[kUpperRight] += VcGeVector3d(c, s, 0);
    corners[kLowerLeft] += VcGeVector3d(-c, -s, 0);
    corners[kLowerRight] += VcGeVector3d(s, -c, 0);
}

// From a text that lies along the world's axes to one that lies along its own, about its location.
VcGeMatrix3d turnedAboutLocation(const VcDbMText& text)
{
    const VcGeVector3d x = text.direction(), z = text.normal(), toLocation = text.location().asVector();
    VcGeMatrix3d axes;
    axes.setCoordSystem(VcGePoint3d(), x, z.crossProduct(x).normal(), z);
    return VcGeMatrix3d::translation(toLocation) * axes * VcGeMatrix3d::translation(-toLocation);
}

}  // namespace

void getMtextActualBoundingPoints(const vds_name name, std::vector<VcGePoint3d>& points, bool withGap, double gapFactor)
{
    const OpenedObject<VcDbMText> text(name);
    if (!text)
        return;
    const VcGePoint3d at = text->location();
    const VcGeMatrix3d m = turnedAboutLocation(*text.get());
    const Box box = boxByAttachment(text->attachment(), text->actualWidth(), text->actualHeight());
    VcGePoint3d corners[4] = {at + VcGeVector3d(box.left, box.top, 0), at + VcGeVector3d(box.right, box.top, 0),
                              at + VcGeVector3d(box.left, box.bottom, 0), at + VcGeVector3d(box.right, box.bottom, 0)};
    VcGePoint3d origin;
    VcGeVector3d x, y, z;
    m.getCoordSystem(origin, x, y, z);
    const double angle = text->direction().angleTo(x);
    if (withGap)
        widen(corners, text->textHeight() * gapFactor, angle);
    for (VcGePoint3d& corner : corners)
        points.push_back(corner.rotateBy(angle, z, at).transformBy(m));
}

int getTextExtent(const vds_name name, VcGePoint3d& minOut, VcGePoint3d& maxOut)
{
    OpenedObject<> object(name);
    if (!object)
        return RTERROR;
    minOut = maxOut = VcGePoint3d();
    if (const auto* text = VcDbText::cast(object.get())) {
        VcDbExtents extents;
        text->getGeomExtents(extents);
        minOut = extents.minPoint();
        maxOut = extents.maxPoint();
        return RTNORM;
    }
    if (VcDbMText::cast(object.get())) {
        std::vector<VcGePoint3d> corners;
        getMtextActualBoundingPoints(name, corners, true, 0.0);
        minOut = corners[kUpperLeft];
        maxOut = corners[kLowerRight];
    }
    return RTERROR;
}

int vds_getEntExtent(const vds_name name, vds_point minOut, vds_point maxOut)
{
    OpenedObject<VcDbEntity> entity(name);
    if (!entity)
        return RTERROR;
    VcGePoint3d low, high;
    int status = 0;
    if (entity->isKindOf(VcDbText::desc()) || entity->isKindOf(VcDbMText::desc())) {
        entity.close();
        status = getTextExtent(name, low, high);
    } else {
        VcDbExtents extents;
        entity->getGeomExtents(extents);
        low = extents.minPoint();
        high = extents.maxPoint();
    }
    wc2uc(asDblArray(low), minOut, 0);
    wc2uc(asDblArray(high), maxOut, 0);
    return status;
}

int DrawImgeBoundingBoxLines(const vds_name name)
{
    OpenedObject<VcDbRasterImage> image(name);
    if (!image)
        return 0;
    std::vector<VcGePoint3d> corners;
    image->getVertices(corners);
    image.close();
    auto outline = std::make_unique<VcDbPolyline>();
    for (unsigned i = 0; i < corners.size(); ++i)
        outline->addVertexAt(i, corners[i].convert2d());
    outline->setClosed(true);
    VcDbObjectId id;
    if (addEntityToDb(id, outline.get(), true))
        outline.release()->close();
    return 1;
}
