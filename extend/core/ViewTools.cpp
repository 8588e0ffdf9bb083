#include "core/ViewTools.h"

#include "core/Coordinates.h"
#include "core/ExtendUtils.h"
#include "core/Geometry.h"
#include "core/Variables.h"
#include "vcdb_records.h"
#include "vced.h"
#include "vcut.h"

#include <algorithm>
#include <cmath>

namespace {

bool isOnSheet() { return shortVariable(L"TILEMODE") == 0 && shortVariable(L"CVPORT") == 1; }

VcGePoint3d toWorld(const VcGePoint3d& inUcs)
{
    VcGePoint3d world;
    uc2wc(asDblArray(inUcs), asDblArray(world), 0);
    return world;
}

VcGePoint3d toDisplay(const VcGePoint3d& inUcs)
{
    resbuf from = {}, to = {};
    from.restype = to.restype = RTSHORT;
    from.resval.rint = 1;
    to.resval.rint = 2;
    VcGePoint3d shown;
    vcedTrans(asDblArray(inUcs), &from, &to, 0, asDblArray(shown));
    return shown;
}

void setClips(VcDbViewTableRecord& view, bool onSheet)
{
    enum { kPerspective = 1, kFront = 2, kBack = 4, kFrontNotAtEye = 16 };
    const int mode = shortVariable(L"VIEWMODE");
    view.setPerspectiveEnabled(mode & kPerspective);
    view.setFrontClipEnabled(mode & kFront);
    view.setBackClipEnabled(mode & kBack);
    view.setFrontClipAtEye(!(mode & kFrontNotAtEye));
    view.setFrontClipDistance(onSheet ? 0.0 : realVariable(L"FRONTZ"));
    view.setBackClipDistance(onSheet ? 0.0 : realVariable(L"BACKZ"));
}

}  // namespace

int IsCmdInPsSpace()
{
    if (!isOnSheet())
        return RTNORM;
    vcutPrintf(L"%s", StringFromID(2649));
    return RTERROR;
}

void vrxZoom(const vds_point center, double width, double height, bool exact)
{
    constexpr double kMargin = 0.025;
    const double margin = exact ? 0.0 : kMargin * std::min(width, height);
    const double x = width / 2 + margin, y = height / 2 + margin;
    const VcGePoint3d low = toDisplay({center[0] - x, center[1] - y, 0});
    const VcGePoint3d high = toDisplay({center[0] + x, center[1] + y, 0});

    VcDbViewTableRecord view;
    view.setCenterPoint(VcGePoint2d(center[0], center[1]));
    view.setHeight(std::fabs(high.y - low.y));
    view.setWidth(std::fabs(high.x - low.x));
    view.setViewDirection(toWorld(pointVariable(L"VIEWDIR")).asVector());
    view.setLensLength(realVariable(L"LENSLENGTH"));
    view.setViewTwist(realVariable(L"VIEWTWIST"));
    const bool onSheet = isOnSheet();
    setClips(view, onSheet);
    view.setIsPaperspaceView(onSheet);
    view.setTarget(toWorld(pointVariable(L"TARGET")));
    vcedSetCurrentView(&view, nullptr);
}
