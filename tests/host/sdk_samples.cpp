#include "tests/host/sdk_samples.h"

#include "sdk/vcdb_solids.h"

namespace {

const VcGeVector3d kTilted = VcGeVector3d(0.3, -0.4, 0.866).normal();
const VcGeVector3d kUp(0, 0, 1);

template <class T, class... Args>
VcDbObjectId addNew(SdkDrawing& drawing, Args... args)
{
    return drawing.add(std::make_unique<T>(args...));
}

// For classes whose data no setter takes.
template <class T>
VcDbObjectId addOfGroups(SdkDrawing& drawing, const std::function<void(GroupList&)>& put)
{
    auto made = std::make_unique<T>();
    GroupList groups;
    put(groups);
    EXPECT_EQ(readGroups(*made, drawing.core(), groups), 0);
    return drawing.add(std::move(made));
}

void putPoint(GroupList& groups, int code, const VcGePoint3d& p)
{
    groups.real(code, p.x);
    groups.real(code + 10, p.y);
    groups.real(code + 20, p.z);
}

VcDbObjectId addMline(SdkDrawing& drawing)
{
    return addOfGroups<VcDbMline>(drawing, [](GroupList& g) {
        g.text(100, "AcDbEntity");
        g.text(8, "0");
        g.text(100, "AcDbMline");
        g.text(2, "STANDARD");
        g.real(40, 2);
        for (const auto& [code, value] : {std::pair(70, 1), {71, 1}, {72, 2}, {73, 2}})
            g.integer(code, value);
        putPoint(g, 10, {0, 0, 0});
        putPoint(g, 210, {0, 0, 1});
        for (const double x : {0.0, 6.0}) {
            putPoint(g, 11, {x, 0, 0});
            putPoint(g, 12, {1, 0, 0});
            putPoint(g, 13, {0, 1, 0});
            for (const double offset : {0.5, -0.5}) {
                g.integer(74, 2);
                g.real(41, offset);
                g.real(41, 0);
                g.integer(75, 0);
            }
        }
    });
}

VcDbObjectId addSubDMesh(SdkDrawing& drawing)
{
    return addOfGroups<VcDbSubDMesh>(drawing, [](GroupList& g) {
        g.text(100, "AcDbEntity");
        g.text(8, "0");
        g.text(100, "AcDbSubDMesh");
        for (const auto& [code, value] : {std::pair(71, 2), {72, 0}, {91, 1}, {92, 4}})
            g.integer(code, value);
        for (const VcGePoint3d& p :
             {VcGePoint3d(0, 0, 0), VcGePoint3d(4, 0, 1), VcGePoint3d(4, 3, 2), VcGePoint3d(0, 3, 1)})
            putPoint(g, 10, p);
        g.integer(93, 5);
        for (const int index : {4, 0, 1, 2, 3})
            g.integer(90, index);
        g.integer(94, 1);
        g.integer(90, 0);
        g.integer(90, 1);
        g.integer(95, 1);
        g.real(140, 2.5);
    });
}

VcDbObjectId addPolyline(SdkDrawing& drawing)
{
    auto p = std::make_unique<VcDbPolyline>();
    p->addVertexAt(0, {0, 0}, 1);
    p->addVertexAt(1, {2, 0}, -0.5, 0.1, 0.2);
    p->addVertexAt(2, {2, 3});
    p->setElevation(1.5);
    p->setNormal(kTilted);
    p->setClosed(true);
    p->setPlinegen(true);
    return drawing.add(std::move(p));
}

VcDbObjectId addSpline(SdkDrawing& drawing)
{
    auto s = std::make_unique<VcDbSpline>();
    s->setNurbsData(2, false, false, {{0, 0, 0}, {1, 3, 0}, {3, -3, 1}, {4, 0, 0}}, {0, 0, 0, 0.4, 1, 1, 1},
                    {1, 2, 0.5, 1});
    return drawing.add(std::move(s));
}

VcDbObjectId add2dPolyline(SdkDrawing& drawing)
{
    auto p = std::make_unique<VcDb2dPolyline>();
    VcDbObjectId id;
    p->setElevation(2);
    p->setClosed(true);
    p->appendVertex(id, new VcDb2dVertex({0, 0, 2}, 0.5, 0.1, 0.2));
    p->appendVertex(id, new VcDb2dVertex({4, 0, 2}));
    p->appendVertex(id, new VcDb2dVertex({4, 3, 2}));
    return drawing.add(std::move(p));
}

VcDbObjectId add3dPolyline(SdkDrawing& drawing)
{
    auto p = std::make_unique<VcDb3dPolyline>();
    VcDbObjectId id;
    for (const VcGePoint3d& at : {VcGePoint3d(0, 0, 0), VcGePoint3d(1, 2, 3), VcGePoint3d(4, 4, -1)})
        p->appendVertex(id, new VcDb3dPolylineVertex(at));
    return drawing.add(std::move(p));
}

VcDbObjectId addPolygonMesh(SdkDrawing& drawing)
{
    auto m = std::make_unique<VcDbPolygonMesh>();
    m->setMSize(2);
    m->setNSize(3);
    m->setNClosed(true);
    VcDbObjectId id;
    for (int i = 0; i < 6; ++i)
        m->appendVertex(id, new VcDbPolygonMeshVertex(VcGePoint3d(i % 3, i / 3, i)));
    return drawing.add(std::move(m));
}

VcDbObjectId addPolyFaceMesh(SdkDrawing& drawing)
{
    auto m = std::make_unique<VcDbPolyFaceMesh>();
    VcDbObjectId id;
    for (const VcGePoint3d& at : {VcGePoint3d(0, 0, 0), VcGePoint3d(2, 0, 0), VcGePoint3d(1, 2, 1)})
        m->appendVertex(id, new VcDbPolyFaceMeshVertex(at));
    m->appendFaceRecord(id, new VcDbFaceRecord(1, -2, 3, 0));
    return drawing.add(std::move(m));
}

template <class T>
void setTextLooks(T& text)
{
    text.setTextString(L"Slanted \x00e4\x4e2d");
    text.setHeight(2.5);
    text.setRotation(0.3);
    text.setOblique(0.2);
    text.setWidthFactor(0.7);
    text.mirrorInX(true);
    text.setPosition({1, 2, 3});
    text.setHorizontalMode(VcDb::kTextRight);
    text.setVerticalMode(VcDb::kTextTop);
    text.setAlignmentPoint({7, 8, 3});
}

VcDbObjectId addText(SdkDrawing& drawing)
{
    auto t = std::make_unique<VcDbText>();
    setTextLooks(*t);
    return drawing.add(std::move(t));
}

VcDbObjectId addDefinition(SdkDrawing& drawing)
{
    auto t = std::make_unique<VcDbAttributeDefinition>();
    setTextLooks(*t);
    t->setTag(L"NAME");
    t->setPrompt(L"What is it called?");
    t->setPreset(true);
    t->setFieldLength(20);
    return drawing.add(std::move(t));
}

VcDbObjectId addMText(SdkDrawing& drawing)
{
    auto t = std::make_unique<VcDbMText>();
    t->setLocation({3, 4, 5});
    t->setTextHeight(2);
    t->setWidth(30);
    t->setContents(L"{\\C1;Red} and\\Pplain \x00e4");
    t->setAttachment(VcDbMText::kMiddleRight);
    t->setRotation(0.4);
    t->setLineSpacingStyle(VcDb::kExactly);
    t->setLineSpacingFactor(1.5);
    t->setBackgroundFill(true);
    t->setBackgroundScaleFactor(2);
    return drawing.add(std::move(t));
}

VcDbObjectId doorOf(SdkDrawing& drawing)
{
    const VcDbObjectId door = drawing.block(L"DOOR");
    drawing.add(std::make_unique<VcDbLine>(VcGePoint3d(0, 0, 0), VcGePoint3d(2, 1, 0)), door);
    return door;
}

VcDbObjectId addReference(SdkDrawing& drawing)
{
    auto r = std::make_unique<VcDbBlockReference>(VcGePoint3d(5, 6, 1), doorOf(drawing));
    r->setScaleFactors({2, -2, 2});
    r->setRotation(0.5);
    auto* a = new VcDbAttribute;
    a->setTag(L"NO");
    a->setTextString(L"17");
    a->setPosition({5, 6, 1});
    r->appendAttribute(a);
    return drawing.add(std::move(r));
}

VcDbObjectId addGrid(SdkDrawing& drawing)
{
    auto r = std::make_unique<VcDbMInsertBlock>();
    r->setBlockTableRecord(doorOf(drawing));
    r->setPosition({5, 6, 1});
    r->setRotation(0.5);
    r->setColumns(3);
    r->setRows(2);
    r->setColumnSpacing(4);
    r->setRowSpacing(-5);
    return drawing.add(std::move(r));
}

VcDbObjectId addShape(SdkDrawing& drawing)
{
    auto s = std::make_unique<VcDbShape>();
    s->setName(L"BOX");
    s->setPosition({1, 2, 3});
    s->setSize(3);
    s->setRotation(0.4);
    s->setWidthFactor(0.5);
    s->setOblique(0.1);
    return drawing.add(std::move(s));
}

VcDbObjectId addFace(SdkDrawing& drawing)
{
    auto f = std::make_unique<VcDbFace>(VcGePoint3d(0, 0, 0), VcGePoint3d(2, 0, 1), VcGePoint3d(2, 1, 2),
                                        VcGePoint3d(0, 1, 3));
    f->makeEdgeInvisibleAt(2);
    return drawing.add(std::move(f));
}

VcDbObjectId addHatch(SdkDrawing& drawing)
{
    auto h = std::make_unique<VcDbHatch>();
    h->setPatternName(L"ANSI31");
    h->setPatternScale(2);
    h->setPatternAngle(0.25);
    h->setPatternDefinitions({{0.785, 1, 2, -0.5, 0.5, {0.25, -0.125}}, {1.1, 0, 0, 0.3, 0.4, {}}});
    h->setElevation(1);
    h->appendLoop(VcDbHatch::kExternal, {{0, 0}, {4, 0}, {4, 3}}, {0, 0.5, 0});
    h->appendLoop(VcDbHatch::kDefault, {{1, 1}, {2, 1}, {2, 2}}, {});
    return drawing.add(std::move(h));
}

VcDbObjectId addLeader(SdkDrawing& drawing)
{
    auto l = std::make_unique<VcDbLeader>();
    l->setDimensionStyle(drawing.dimStyle(L"ISO"));
    l->appendVertex({0, 0, 0});
    l->appendVertex({3, 4, 0});
    l->appendVertex({6, 4, 0});
    return drawing.add(std::move(l));
}

VcDbObjectId addTolerance(SdkDrawing& drawing)
{
    auto f = std::make_unique<VcDbFcf>();
    f->setDimensionStyle(drawing.dimStyle(L"ISO"));
    f->setLocation({1, 2, 3});
    f->setText(L"{\\Fgdt;j}%%v0.5%%vA");
    return drawing.add(std::move(f));
}

template <class T>
VcDbObjectId addDimension(SdkDrawing& drawing, void (*place)(T&))
{
    auto d = std::make_unique<T>();
    d->setDimensionText(L"<> mm");
    d->setDimensionStyle(drawing.dimStyle(L"ISO"));
    place(*d);
    return drawing.add(std::move(d));
}

template <class T>
void placeBetween(T& d)
{
    d.setXLine1Point({0, 0, 0});
    d.setXLine2Point({10, 2, 0});
    d.setDimLinePoint({10, 7, 0});
}

template <class T>
void placeAround(T& d)
{
    d.setCenterPoint({0, 0, 0});
    d.setXLine1Point({5, 0, 0});
    d.setXLine2Point({0, 5, 0});
    d.setArcPoint({4, 4, 0});
}

VcDbObjectId addImage(SdkDrawing& drawing)
{
    auto i = std::make_unique<VcDbRasterImage>();
    i->setOrientation({1, 2, 0}, {0.1, 0.02, 0}, {-0.02, 0.1, 0});
    i->setImageSize({640, 480});
    i->setBrightness(40);
    i->setContrast(60);
    i->setFade(10);
    i->setClipBoundary(VcDbRasterImage::kRect, {{10, 20}, {300, 200}});
    i->setClipped(true);
    return drawing.add(std::move(i));
}

VcDbObjectId addWipeout(SdkDrawing& drawing)
{
    auto w = std::make_unique<VcDbWipeout>();
    w->setOrientation({1, 2, 0}, {4, 0, 0}, {0, 3, 0});
    w->setClipBoundary(VcDbRasterImage::kPoly, {{-0.5, -0.5}, {0.5, -0.5}, {0, 0.5}, {-0.5, -0.5}});
    w->setClipped(true);
    return drawing.add(std::move(w));
}

VcDbObjectId addViewport(SdkDrawing& drawing)
{
    auto v = std::make_unique<VcDbViewport>();
    v->setCenterPoint({100, 80, 0});
    v->setWidth(60);
    v->setHeight(40);
    v->setCustomScale(0.5);
    v->setViewCenter({3, 4});
    v->setViewTarget({1, 1, 1});
    v->setTwistAngle(0.3);
    v->setNumber(2);
    v->setOn(true);
    return drawing.add(std::move(v));
}

const EntitySample kSamples[] = {
    {"Line", [](SdkDrawing& d) { return addNew<VcDbLine>(d, VcGePoint3d(1, 2, 3), VcGePoint3d(-4, 5, 6)); }},
    {"Point", [](SdkDrawing& d) { return addNew<VcDbPoint>(d, VcGePoint3d(1, 2, 3)); }},
    {"Ray", [](SdkDrawing& d) { return addNew<VcDbRay>(d); }},
    {"Xline", [](SdkDrawing& d) { return addNew<VcDbXline>(d); }},
    {"Circle", [](SdkDrawing& d) { return addNew<VcDbCircle>(d, VcGePoint3d(1, 2, 3), kTilted, 2.0); }},
    {"Arc", [](SdkDrawing& d) { return addNew<VcDbArc>(d, VcGePoint3d(1, 2, 7), kTilted, 2.0, 3.0, 1.0); }},
    {"Ellipse",
     [](SdkDrawing& d) {
         return addNew<VcDbEllipse>(d, VcGePoint3d(1, 2, 0), kUp, VcGeVector3d(3, 1, 0), 0.4, 0.5, 2.5);
     }},
    {"Polyline", addPolyline},
    {"Spline", addSpline},
    {"HeavyPolyline", add2dPolyline},
    {"SpacePolyline", add3dPolyline},
    {"PolygonMesh", addPolygonMesh},
    {"PolyFaceMesh", addPolyFaceMesh},
    {"Text", addText},
    {"AttributeDefinition", addDefinition},
    {"MText", addMText},
    {"BlockReference", addReference},
    {"MInsert", addGrid},
    {"Shape", addShape},
    {"Solid",
     [](SdkDrawing& d) {
         return addNew<VcDbSolid>(d, VcGePoint3d(0, 0, 1), VcGePoint3d(2, 0, 1), VcGePoint3d(0, 1, 1),
                                  VcGePoint3d(2, 1, 1));
     }},
    {"Trace",
     [](SdkDrawing& d) {
         return addNew<VcDbTrace>(d, VcGePoint3d(0, 0, 0), VcGePoint3d(2, 0, 0), VcGePoint3d(0, 1, 0),
                                  VcGePoint3d(2, 1, 0));
     }},
    {"Face", addFace},
    {"SubDMesh", addSubDMesh, DxfVersion::R2010},
    {"Hatch", addHatch},
    {"Leader", addLeader},
    {"Tolerance", addTolerance},
    {"RotatedDimension",
     [](SdkDrawing& d) {
         return addDimension<VcDbRotatedDimension>(d, [](auto& e) {
             placeBetween(e);
             e.setRotation(0.2);
         });
     }},
    {"AlignedDimension", [](SdkDrawing& d) { return addDimension<VcDbAlignedDimension>(d, placeBetween); }},
    {"AngularDimension",
     [](SdkDrawing& d) {
         return addDimension<VcDb2LineAngularDimension>(d, [](auto& e) {
             e.setXLine1Start({1, 0, 0});
             e.setXLine1End({5, 0, 0});
             e.setXLine2Start({0, 1, 0});
             e.setXLine2End({0, 5, 0});
             e.setArcPoint({3, 3, 0});
         });
     }},
    {"ThreePointDimension", [](SdkDrawing& d) { return addDimension<VcDb3PointAngularDimension>(d, placeAround); }},
    {"ArcDimension", [](SdkDrawing& d) { return addDimension<VcDbArcDimension>(d, placeAround); }, DxfVersion::R2004},
    {"RadialDimension",
     [](SdkDrawing& d) {
         return addDimension<VcDbRadialDimension>(d, [](auto& e) {
             e.setCenter({1, 1, 0});
             e.setChordPoint({4, 5, 0});
             e.setLeaderLength(2);
         });
     }},
    {"DiametricDimension",
     [](SdkDrawing& d) {
         return addDimension<VcDbDiametricDimension>(d, [](auto& e) {
             e.setChordPoint({4, 5, 0});
             e.setFarChordPoint({-2, -3, 0});
         });
     }},
    {"JoggedDimension",
     [](SdkDrawing& d) {
         return addDimension<VcDbRadialDimensionLarge>(d, [](auto& e) {
             e.setCenter({0, 0, 0});
             e.setChordPoint({30, 40, 0});
             e.setOverrideCenter({10, 20, 0});
             e.setJogPoint({20, 30, 0});
             e.setJogAngle(0.7);
         });
     },
     DxfVersion::R2004},
    {"OrdinateDimension",
     [](SdkDrawing& d) {
         return addDimension<VcDbOrdinateDimension>(d, [](auto& e) {
             e.useXAxis();
             e.setDefiningPoint({3, 4, 0});
             e.setLeaderEndPoint({3, 9, 0});
         });
     }},
    {"Mline", addMline},
    {"RasterImage", addImage},
    {"Wipeout", addWipeout},
    {"Viewport", addViewport},
    {"Light", [](SdkDrawing& d) { return addNew<VcDbLight>(d); }, DxfVersion::R2007},
    {"Ole2Frame", [](SdkDrawing& d) { return addNew<VcDbOle2Frame>(d); }},
    {"Region", [](SdkDrawing& d) { return addNew<VcDbRegion>(d); }},
    {"Body", [](SdkDrawing& d) { return addNew<VcDbBody>(d); }},
    {"Solid3d", [](SdkDrawing& d) { return addNew<VcDb3dSolid>(d); }},
};

}

std::span<const EntitySample> entitySamples() { return kSamples; }

VcDbObjectId addSample(SdkDrawing& drawing, const std::string& name)
{
    for (const EntitySample& sample : entitySamples())
        if (sample.name == name)
            return sample.add(drawing);
    ADD_FAILURE() << name;
    return {};
}
