// Records of views, viewports, coordinate systems, text styles and linetypes: each value alone, undone and through a file.
#include "tests/host/sdk_drawing.h"

#include "host/io/drawing_file.h"

#include <cmath>

namespace {

template <class T>
struct Value {
    const char* name;
    Vcad::ErrorStatus (*set)(T& record);
    bool (*holds)(const T& record);
};

// Each value is set, undone and redone; the others stay; at the end all of them come back from a file.
template <class Table, class T>
void checkValues(const std::vector<Value<T>>& values)
{
    SdkDrawing drawing;
    const VcDbObjectId id = drawing.addRecord<Table, T>(L"Test");
    for (const Value<T>& value : values) {
        SCOPED_TRACE(value.name);
        EXPECT_FALSE(value.holds(*Opened<T>(id)));
        drawing.undoAndRedo(id, [&] { EXPECT_EQ(value.set(*Writing<T>(id)), Vcad::eOk); });
        EXPECT_TRUE(value.holds(*Opened<T>(id)));
    }
    for (const bool binary : {false, true}) {
        WriteOptions options;
        options.binary = binary;
        std::string file;
        ASSERT_TRUE(writeDrawingBytes(drawing.database, file, options).ok());
        VcDbDatabase again(false);
        ASSERT_TRUE(readDrawingBytes(again, file).ok());
        const auto* twin = again.core().objectAs<T>(again.core().findHandle(id.handle().value()));
        ASSERT_NE(twin, nullptr);
        for (const Value<T>& value : values)
            EXPECT_TRUE(value.holds(*twin)) << value.name;
    }
}

template <class T>
void checkRefused(const std::vector<Vcad::ErrorStatus (*)(T&)>& setters)
{
    T record;
    SdkDrawing drawing;
    const std::string before = dumpOf(record, drawing.core());
    for (std::size_t i = 0; i < setters.size(); ++i) {
        EXPECT_NE(setters[i](record), Vcad::eOk) << "number " << i;
        EXPECT_EQ(dumpOf(record, drawing.core()), before) << "number " << i;
    }
}

TEST(ViewRecords, KeepEachOfTheirValues)
{
    using V = VcDbViewTableRecord;
    // clang-format off
    checkValues<VcDbViewTable, V>({
        {"center", [](V& v) { return v.setCenterPoint({3, 4}); }, [](const V& v) { return v.centerPoint() == VcGePoint2d(3, 4); }},
        {"height", [](V& v) { return v.setHeight(12.5); }, [](const V& v) { return v.height() == 12.5; }},
        {"width", [](V& v) { return v.setWidth(20.25); }, [](const V& v) { return v.width() == 20.25; }},
        {"target", [](V& v) { return v.setTarget({1, 2, 3}); }, [](const V& v) { return v.target() == VcGePoint3d(1, 2, 3); }},
        {"direction", [](V& v) { return v.setViewDirection({1, -1, 1}); },
         [](const V& v) { return v.viewDirection().isCodirectionalTo({1, -1, 1}); }},
        {"twist", [](V& v) { return v.setViewTwist(0.5); }, [](const V& v) { return std::fabs(v.viewTwist() - 0.5) < 1e-12; }},
        {"lens", [](V& v) { return v.setLensLength(35); }, [](const V& v) { return v.lensLength() == 35; }},
        {"front", [](V& v) { return v.setFrontClipDistance(7); }, [](const V& v) { return v.frontClipDistance() == 7; }},
        {"back", [](V& v) { return v.setBackClipDistance(-7); }, [](const V& v) { return v.backClipDistance() == -7; }},
        {"frontOn", [](V& v) { return v.setFrontClipEnabled(true); }, [](const V& v) { return v.frontClipEnabled(); }},
        {"backOn", [](V& v) { return v.setBackClipEnabled(true); }, [](const V& v) { return v.backClipEnabled(); }},
        {"notAtEye", [](V& v) { return v.setFrontClipAtEye(false); }, [](const V& v) { return !v.frontClipAtEye(); }},
        {"perspective", [](V& v) { return v.setPerspectiveEnabled(true); }, [](const V& v) { return v.perspectiveEnabled(); }},
        {"paper", [](V& v) { v.setIsPaperspaceView(true); return Vcad::eOk; }, [](const V& v) { return v.isPaperspaceView(); }},
        {"ucs", [](V& v) { return v.setUcs({1, 2, 3}, {0, 2, 0}, {-3, 0, 0}); },
         [](const V& v) {
             VcGePoint3d origin;
             VcGeVector3d x, y;
             v.getUcs(origin, x, y);
             return v.isUcsAssociatedToView() && origin == VcGePoint3d(1, 2, 3) && x.isEqualTo({0, 1, 0}) && y.isEqualTo({-1, 0, 0});
         }},
    });
    // clang-format on
    checkRefused<V>({
        [](V& v) {
            return v.setCenterPoint({NAN, 0});
        },
        [](V& v) { return v.setHeight(0); },
        [](V& v) { return v.setWidth(-1); },
        [](V& v) {
            return v.setTarget({0, INFINITY, 0});
        },
        [](V& v) { return v.setViewDirection({}); },
        [](V& v) { return v.setViewTwist(NAN); },
        [](V& v) { return v.setLensLength(0); },
        [](V& v) { return v.setFrontClipDistance(INFINITY); },
        [](V& v) { return v.setBackClipDistance(NAN); },
        [](V& v) {
            return v.setUcs({}, {1, 0, 0}, {1, 1, 0});
        },
        [](V& v) {
            return v.setUcs({}, {}, {0, 1, 0});
        },
        [](V& v) { return v.setElevation(NAN); },
    });
}

TEST(ViewportRecords, KeepEachOfTheirValues)
{
    using V = VcDbViewportTableRecord;
    // clang-format off
    checkValues<VcDbViewportTable, V>({
        {"corners", [](V& v) { v.setCorners({0, 0.5}, {0.5, 1}); return Vcad::eOk; },
         [](const V& v) { return v.lowerLeftCorner() == VcGePoint2d(0, 0.5) && v.upperRightCorner() == VcGePoint2d(0.5, 1); }},
        {"snap", [](V& v) { return v.setSnapEnabled(true); }, [](const V& v) { return v.snapEnabled(); }},
        {"grid", [](V& v) { return v.setGridEnabled(true); }, [](const V& v) { return v.gridEnabled(); }},
        {"snapSpacing", [](V& v) { return v.setSnapIncrements({0.5, 0.25}); }, [](const V& v) { return v.snapIncrements() == VcGePoint2d(0.5, 0.25); }},
        {"gridSpacing", [](V& v) { return v.setGridIncrements({2, 3}); }, [](const V& v) { return v.gridIncrements() == VcGePoint2d(2, 3); }},
        {"snapBase", [](V& v) { return v.setSnapBase({1, 2}); }, [](const V& v) { return v.snapBase() == VcGePoint2d(1, 2); }},
        {"snapAngle", [](V& v) { return v.setSnapAngle(0.25); }, [](const V& v) { return std::fabs(v.snapAngle() - 0.25) < 1e-12; }},
        {"isometric", [](V& v) { return v.setIsometricSnapEnabled(true); }, [](const V& v) { return v.isometricSnapEnabled(); }},
        {"pair", [](V& v) { return v.setSnapPair(2); }, [](const V& v) { return v.snapPair() == 2; }},
        {"sides", [](V& v) { return v.setCircleSides(200); }, [](const V& v) { return v.circleSides() == 200; }},
        {"icon", [](V& v) { return v.setUcsIcon(0); }, [](const V& v) { return v.ucsIcon() == 0; }},
        {"follow", [](V& v) { return v.setUcsFollowMode(true); }, [](const V& v) { return v.ucsFollowMode(); }},
    });
    // clang-format on
    checkRefused<V>({
        [](V& v) {
            return v.setSnapIncrements({0, 1});
        },
        [](V& v) {
            return v.setSnapIncrements({1, -1});
        },
        [](V& v) {
            return v.setGridIncrements({-1, 1});
        },
        [](V& v) {
            return v.setSnapBase({NAN, 0});
        },
        [](V& v) { return v.setSnapAngle(INFINITY); },
        [](V& v) { return v.setSnapPair(3); },
        [](V& v) { return v.setSnapPair(-1); },
        [](V& v) { return v.setCircleSides(0); },
        [](V& v) { return v.setUcsIcon(-1); },
    });
}

TEST(CoordinateSystemRecords, KeepTheirAxesAtRightAngles)
{
    using U = VcDbUCSTableRecord;
    // clang-format off
    checkValues<VcDbUCSTable, U>({
        {"origin", [](U& u) { return u.setOrigin({1, 2, 3}); }, [](const U& u) { return u.origin() == VcGePoint3d(1, 2, 3); }},
        {"axes", [](U& u) { return u.setAxes({0, 0, 2}, {0, 5, 0}); },
         [](const U& u) { return u.xAxis().isEqualTo({0, 0, 1}) && u.yAxis().isEqualTo({0, 1, 0}); }},
    });
    // clang-format on
    checkRefused<U>({
        [](U& u) {
            return u.setOrigin({NAN, 0, 0});
        },
        [](U& u) {
            return u.setAxes({1, 0, 0}, {1, 0.1, 0});
        },
        [](U& u) {
            return u.setAxes({}, {0, 1, 0});
        },
        [](U& u) {
            return u.setAxes({1, 0, 0}, {0, NAN, 0});
        },
    });
}

TEST(TextStyleRecords, KeepEachOfTheirValues)
{
    using S = VcDbTextStyleTableRecord;
    // clang-format off
    checkValues<VcDbTextStyleTable, S>({
        {"vertical", [](S& s) { s.setIsVertical(true); return Vcad::eOk; }, [](const S& s) { return s.isVertical(); }},
        {"size", [](S& s) { return s.setTextSize(3.5); }, [](const S& s) { return s.textSize() == 3.5; }},
        {"prior", [](S& s) { return s.setPriorSize(5); }, [](const S& s) { return s.priorSize() == 5; }},
        {"width", [](S& s) { return s.setXScale(0.8); }, [](const S& s) { return s.xScale() == 0.8; }},
        {"oblique", [](S& s) { return s.setObliquingAngle(0.25); }, [](const S& s) { return std::fabs(s.obliquingAngle() - 0.25) < 1e-12; }},
        {"flags", [](S& s) { return s.setFlagBits(6); }, [](const S& s) { return s.isBackwards() && s.isUpsideDown() && s.flagBits() == 6; }},
        {"file", [](S& s) { return s.setFileName(L"romans.shx"); }, [](const S& s) { return taken(s.fileName()) == L"romans.shx"; }},
        {"bigFont", [](S& s) { return s.setBigFontFileName(L"big.shx"); }, [](const S& s) { return taken(s.bigFontFileName()) == L"big.shx"; }},
        {"typeface", [](S& s) { return s.setFont(L"Gr\x00fc\x00df", true, false, 1, 34); },
         [](const S& s) {
             wchar_t* name = nullptr;
             bool bold = false, italic = true;
             int charset = 0, family = 0;
             return s.font(name, bold, italic, charset, family) == Vcad::eOk && taken(name) == L"Gr\x00fc\x00df" && bold && !italic &&
                    charset == 1 && family == 34;
         }},
    });
    // clang-format on
    checkRefused<S>({
        [](S& s) { return s.setTextSize(-1); },
        [](S& s) { return s.setPriorSize(NAN); },
        [](S& s) { return s.setXScale(0); },
        [](S& s) { return s.setObliquingAngle(1.5); },
        [](S& s) { return s.setFlagBits(1); },
        [](S& s) { return s.setFileName(nullptr); },
        [](S& s) { return s.setBigFontFileName(nullptr); },
        [](S& s) { return s.setFont(nullptr, false, false, 0, 0); },
    });
}

TEST(LinetypeRecords, KeepTheirDashes)
{
    using L = VcDbLinetypeTableRecord;
    // clang-format off
    checkValues<VcDbLinetypeTable, L>({
        {"text", [](L& l) { return l.setAsciiDescription(L"_ . \x00e4"); }, [](const L& l) { return taken(l.asciiDescription()) == L"_ . \x00e4"; }},
        {"count", [](L& l) { return l.setNumDashes(3); }, [](const L& l) { return l.numDashes() == 3; }},
        {"dash", [](L& l) { return l.setDashLengthAt(0, 1.5); }, [](const L& l) { return l.dashLengthAt(0) == 1.5; }},
        {"gap", [](L& l) { return l.setDashLengthAt(1, -0.5); }, [](const L& l) { return l.dashLengthAt(1) == -0.5; }},
        {"length", [](L& l) { return l.setPatternLength(2.25); }, [](const L& l) { return l.patternLength() == 2.25; }},
    });
    // clang-format on
    checkRefused<L>({
        [](L& l) { return l.setAsciiDescription(nullptr); },
        [](L& l) { return l.setNumDashes(-1); },
        [](L& l) { return l.setNumDashes(2000000000); },
        [](L& l) { return l.setDashLengthAt(0, 1); },
        [](L& l) { return l.setPatternLength(-1); },
        [](L& l) { return l.setPatternLength(NAN); },
    });
    L line;
    line.setNumDashes(2);
    EXPECT_EQ(line.dashLengthAt(2), 0);
    EXPECT_EQ(line.dashLengthAt(-1), 0);
    EXPECT_NE(line.setDashLengthAt(2, 1), Vcad::eOk);
    EXPECT_NE(line.setDashLengthAt(0, NAN), Vcad::eOk);
    EXPECT_TRUE(line.isScaledToFit());
}

}
