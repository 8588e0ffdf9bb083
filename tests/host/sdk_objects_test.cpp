// Objects that are not seen: settings that keep to their ranges, groups, layouts, scales, multiline styles, draw orders.
#include "tests/host/sdk_samples.h"

#include "host/io/drawing_file.h"

#include <algorithm>
#include <limits>

namespace {

// An object in a dictionary of its own, open for write for each call.
class ObjectSettings : public testing::Test {
protected:
    template <class T>
    VcDbObjectId put(const wchar_t* name, T* object)
    {
        VcDbObjectId id;
        EXPECT_EQ(Writing<VcDbDictionary>(drawing.database.namedObjectsDictionaryId())->setAt(name, object, id),
                  Vcad::eOk);
        object->close();
        return id;
    }
    VcDbObjectId groupNamed(const wchar_t* name)
    {
        VcDbDictionary* groups = nullptr;
        EXPECT_EQ(drawing.database.getGroupDictionary(groups, VcDb::kForWrite), Vcad::eOk);
        auto* group = new VcDbGroup;
        VcDbObjectId id;
        EXPECT_EQ(groups->setAt(name, group, id), Vcad::eOk);
        group->close();
        groups->close();
        return id;
    }
    // What the object says when the drawing has been through a file.
    std::string saidAfterAFile(VcDbObjectId id)
    {
        std::string file;
        EXPECT_TRUE(writeDrawingBytes(drawing.database, file).ok());
        VcDbDatabase again(false);
        const ReadResult read = readDrawingBytes(again, file);
        EXPECT_TRUE(read.ok()) << read.message;
        EXPECT_EQ(read.problems.total(), 0u) << read.problems.items().front().text;
        VcDbObject* twin = again.core().object(again.core().findHandle(id.handle().value()));
        return twin ? dumpOf(*twin, again.core()) : std::string();
    }
    template <class T>
    void changes(VcDbObjectId id, Vcad::ErrorStatus (*set)(T&))
    {
        drawing.undoAndRedo(id, [&] { EXPECT_EQ(set(*Writing<T>(id)), Vcad::eOk); });
    }
    template <class T>
    void refuses(VcDbObjectId id, Vcad::ErrorStatus (*set)(T&))
    {
        const std::string before = drawing.saidBy(id);
        EXPECT_NE(set(*Writing<T>(id)), Vcad::eOk);
        EXPECT_EQ(drawing.saidBy(id), before);
    }

    SdkDrawing drawing;
};

TEST_F(ObjectSettings, ScalesSayPaperAndDrawingUnits)
{
    using S = VcDbScale;
    const VcDbObjectId id = put(L"TEST", new S);
    changes<S>(id, [](S& s) { return s.setScaleName(L"1:50"); });
    changes<S>(id, [](S& s) { return s.setPaperUnits(1); });
    changes<S>(id, [](S& s) { return s.setDrawingUnits(50); });
    changes<S>(id, [](S& s) { return s.setIsUnitScale(true); });
    for (Vcad::ErrorStatus (*set)(S&) :
         {+[](S& s) { return s.setPaperUnits(-1); }, +[](S& s) { return s.setDrawingUnits(0); },
          +[](S& s) { return s.setDrawingUnits(NAN); }, +[](S& s) { return s.setScaleName(nullptr); }})
        refuses<S>(id, set);
    Opened<S> scale(id);
    EXPECT_EQ(taken(scale->scaleName()), L"1:50");
    EXPECT_EQ(scale->paperUnits() / scale->drawingUnits(), scale->scale());
    EXPECT_TRUE(scale->isUnitScale());
    EXPECT_FALSE(scale->isTemporaryScale());
    EXPECT_EQ(saidAfterAFile(id), drawing.saidBy(id));
}

TEST_F(ObjectSettings, MultilineStylesKeepTheirAnglesAndElements)
{
    using S = VcDbMlineStyle;
    const VcDbObjectId id = put(L"TEST", new S);
    changes<S>(id, [](S& s) { return s.setName(L"THREE"); });
    changes<S>(id, [](S& s) { return s.setDescription(L"Three lines"); });
    changes<S>(id, [](S& s) { return s.setStartAngle(0.5); });
    changes<S>(id, [](S& s) { return s.setEndAngle(2.5); });
    changes<S>(id, [](S& s) {
        VcCmColor color;
        color.setRGB(1, 2, 3);
        s.setElements({{0.5, VcCmColor::fromIndex(1), {}}, {0, color, {}}, {-0.5, VcCmColor::fromIndex(256), {}}});
        return Vcad::eOk;
    });
    refuses<S>(id, [](S& s) { return s.setStartAngle(0.17); });
    refuses<S>(id, [](S& s) { return s.setEndAngle(2.98); });
    refuses<S>(id, [](S& s) { return s.setEndAngle(NAN); });
    refuses<S>(id, [](S& s) { return s.setName(L""); });
    refuses<S>(id, [](S& s) { return s.setDescription(nullptr); });
    Opened<S> style(id);
    EXPECT_EQ(style->numElements(), 3);
    EXPECT_EQ(taken(style->description()), L"Three lines");
    EXPECT_EQ(style->elements()[1].color.rgb(), 0x010203u);
    EXPECT_EQ(saidAfterAFile(id), drawing.saidBy(id));
}

TEST_F(ObjectSettings, PlotSettingsKeepToTheirRanges)
{
    using S = VcDbPlotSettings;
    const VcDbObjectId id = put(L"TEST", new S);
    changes<S>(id, [](S& s) { return s.setPlotSettingsName(L"A4"); });
    changes<S>(id, [](S& s) { return s.setPlotRotation(3); });
    changes<S>(id, [](S& s) { return s.setPlotType(S::kWindow); });
    changes<S>(id, [](S& s) { return s.setPlotPaperUnits(S::kInches); });
    EXPECT_TRUE(Opened<S>(id)->useStandardScale());
    changes<S>(id, [](S& s) { return s.setCustomPrintScale(1, 20); });
    changes<S>(id, [](S& s) {
        s.setPaper("ISO_A4", 210, 297, 7, 20);
        return Vcad::eOk;
    });
    refuses<S>(id, [](S& s) { return s.setPlotSettingsName(nullptr); });
    refuses<S>(id, [](S& s) { return s.setPlotRotation(4); });
    refuses<S>(id, [](S& s) { return s.setPlotRotation(-1); });
    refuses<S>(id, [](S& s) { return s.setPlotType(S::PlotType(6)); });
    refuses<S>(id, [](S& s) { return s.setPlotPaperUnits(S::PaperUnits(3)); });
    refuses<S>(id, [](S& s) { return s.setCustomPrintScale(0, 1); });
    refuses<S>(id, [](S& s) { return s.setCustomPrintScale(1, INFINITY); });
    Opened<S> settings(id);
    EXPECT_EQ(taken(settings->getPlotSettingsName()), L"A4");
    EXPECT_EQ(taken(settings->getCanonicalMediaName()), L"ISO_A4");
    EXPECT_FALSE(settings->useStandardScale()) << "a scale of its own stands for the standard one";
    EXPECT_EQ(settings->stdScale(), 0.05);
    double left = 0, bottom = 0, right = 0, top = 0, width = 0, height = 0;
    settings->getPlotPaperMargins(left, bottom, right, top);
    settings->getPlotPaperSize(width, height);
    EXPECT_EQ(left + right, 14);
    EXPECT_EQ(bottom + top, 40);
    EXPECT_EQ(width + height, 507);
    EXPECT_EQ(saidAfterAFile(id), drawing.saidBy(id));
}

TEST_F(ObjectSettings, SmallSettingsKeepToTheirRanges)
{
    const VcDbObjectId raster = put(L"RASTER", new VcDbRasterVariables),
                       wipeout = put(L"WIPEOUT", new VcDbWipeoutVariables);
    changes<VcDbRasterVariables>(raster, [](VcDbRasterVariables& v) { return v.setImageFrame(2); });
    changes<VcDbRasterVariables>(raster, [](VcDbRasterVariables& v) { return v.setImageQuality(0); });
    refuses<VcDbRasterVariables>(raster, [](VcDbRasterVariables& v) { return v.setImageFrame(3); });
    refuses<VcDbRasterVariables>(raster, [](VcDbRasterVariables& v) { return v.setImageQuality(2); });
    changes<VcDbWipeoutVariables>(wipeout, [](VcDbWipeoutVariables& v) { return v.setShowFrame(1); });
    refuses<VcDbWipeoutVariables>(wipeout, [](VcDbWipeoutVariables& v) { return v.setShowFrame(-1); });
    const VcDbObjectId variable = put(L"VARIABLE", new VcDbDictionaryVar);
    changes<VcDbDictionaryVar>(variable, [](VcDbDictionaryVar& v) { return v.setValue(L"\x00e4 1"); });
    refuses<VcDbDictionaryVar>(variable, [](VcDbDictionaryVar& v) { return v.setValue(nullptr); });
    const VcDbObjectId image = put(L"IMAGE", new VcDbRasterImageDef);
    changes<VcDbRasterImageDef>(image, [](VcDbRasterImageDef& d) { return d.setSourceFileName(L"a/b.png"); });
    refuses<VcDbRasterImageDef>(image, [](VcDbRasterImageDef& d) { return d.setSourceFileName(nullptr); });
    for (const VcDbObjectId id : {raster, wipeout, variable, image})
        EXPECT_EQ(saidAfterAFile(id), drawing.saidBy(id));
    EXPECT_EQ(taken(Opened<VcDbDictionaryVar>(variable)->value()), L"\x00e4 1");
    EXPECT_EQ(taken(Opened<VcDbRasterImageDef>(image)->sourceFileName()), L"a/b.png");
}

TEST_F(ObjectSettings, GroupsAreWalkedInTheirOrder)
{
    const VcDbObjectId id = groupNamed(L"G"), a = drawing.line(), b = drawing.line(), c = drawing.line();
    drawing.undoAndRedo(id, [&] { EXPECT_EQ(Writing<VcDbGroup>(id)->append(VcDbObjectIdArray{c, a, b}), Vcad::eOk); });
    changes<VcDbGroup>(id, [](VcDbGroup& g) { return g.setDescription(L"Three"); });
    changes<VcDbGroup>(id, [](VcDbGroup& g) { return g.setSelectable(false); });
    refuses<VcDbGroup>(id, [](VcDbGroup& g) { return g.setDescription(nullptr); });
    Writing<VcDbLine>(a)->erase();
    Opened<VcDbGroup> group(id);
    EXPECT_EQ(taken(group->description()), L"Three");
    EXPECT_FALSE(group->isSelectable());
    EXPECT_TRUE(group->has(&*Opened<VcDbLine>(c)));
    EXPECT_FALSE(group->has(static_cast<const VcDbEntity*>(nullptr)));
    VcDbObjectIdArray ids;
    EXPECT_EQ(group->allEntityIds(ids), 2u);
    EXPECT_EQ(ids, (VcDbObjectIdArray{c, b}));
    VcDbGroupIterator* at = group->newIterator();
    VcDbObject* object = nullptr;
    ASSERT_EQ(at->getObject(object), Vcad::eOk);
    EXPECT_EQ(object->objectId(), c);
    object->close();
    EXPECT_TRUE(at->next());
    EXPECT_EQ(at->objectId(), b);
    EXPECT_FALSE(at->next());
    EXPECT_NE(at->getObject(object), Vcad::eOk);
    EXPECT_EQ(object, nullptr);
    delete at;
}

TEST_F(ObjectSettings, GroupsTakeEntitiesOfTheirDrawingAlone)
{
    const VcDbObjectId id = groupNamed(L"G"), line = drawing.line();
    SdkDrawing other;
    Writing<VcDbGroup> group(id);
    EXPECT_NE(group->append(other.line()), Vcad::eOk);
    EXPECT_NE(group->append(drawing.database.clayer()), Vcad::eOk);
    EXPECT_NE(group->append(VcDbObjectId()), Vcad::eOk);
    EXPECT_EQ(group->append(VcDbObjectIdArray{line, drawing.database.clayer()}) == Vcad::eOk, false)
        << "told, but the line is taken";
    EXPECT_EQ(group->numEntities(), 1u);
    EXPECT_NE(group->remove(drawing.database.clayer()), Vcad::eOk);
    EXPECT_EQ(group->clear(), Vcad::eOk);
    EXPECT_EQ(group->numEntities(), 0u);
    EXPECT_EQ(Opened<VcDbLine>(line)->reactors(), nullptr);
    EXPECT_EQ(group->setName(L"H"), Vcad::eOk);
    EXPECT_EQ(taken(group->getName()), L"H");
    EXPECT_NE(group->setName(L""), Vcad::eOk);
    EXPECT_NE(group->setName(nullptr), Vcad::eOk);
}

TEST_F(ObjectSettings, ErasingAGroupLetsItsMembersGo)
{
    const VcDbObjectId id = groupNamed(L"G"), line = drawing.line();
    Writing<VcDbGroup>(id)->append(line);
    ASSERT_EQ(Writing<VcDbGroup>(id)->erase(), Vcad::eOk);
    std::string file;
    ASSERT_TRUE(writeDrawingBytes(drawing.database, file).ok());
    VcDbDatabase again(false);
    const ReadResult read = readDrawingBytes(again, file);
    EXPECT_EQ(read.problems.total(), 0u) << read.problems.items().front().text;
    const auto* twin = again.core().objectAs<VcDbLine>(again.core().findHandle(line.handle().value()));
    ASSERT_NE(twin, nullptr);
    EXPECT_EQ(twin->reactors(), nullptr) << "a reactor that is no more is not saved";
}

TEST_F(ObjectSettings, LayoutsKeepToTheirRanges)
{
    const VcDbObjectId model = Opened<VcDbBlockTableRecord>(drawing.modelId())->getLayoutId();
    VcDbObjectId layouts, sheet;
    Opened<VcDbDictionary>(drawing.database.namedObjectsDictionaryId())->getAt(L"ACAD_LAYOUT", layouts);
    ASSERT_EQ(Opened<VcDbDictionary>(layouts)->getAt(L"Layout1", sheet), Vcad::eOk);
    using L = VcDbLayout;
    EXPECT_EQ(taken(Opened<L>(model)->getLayoutName()), L"Model");
    EXPECT_TRUE(Opened<L>(model)->modelType());
    refuses<L>(model, [](L& l) { return l.setLayoutName(L"Other"); });
    refuses<L>(sheet, [](L& l) { return l.setLayoutName(L""); });
    refuses<L>(sheet, [](L& l) { return l.setLayoutName(nullptr); });
    refuses<L>(sheet, [](L& l) { return l.setLayoutName(L"model"); });
    refuses<L>(sheet, [](L& l) { return l.setTabOrder(-1); });
    refuses<L>(sheet, [](L& l) { return l.setLimits({2, 0}, {1, 1}); });
    refuses<L>(sheet, [](L& l) { return l.setLimits({0, 0}, {INFINITY, 1}); });
    refuses<L>(sheet, [](L& l) { return l.setUcs({}, {1, 0, 0}, {1, 1, 0}); });
    refuses<L>(sheet, [](L& l) { return l.setUcs({NAN, 0, 0}, {1, 0, 0}, {0, 1, 0}); });
    refuses<L>(sheet, [](L& l) { return l.setBlockTableRecordId(l.objectId()); });
    changes<L>(sheet, [](L& l) { return l.setTabOrder(3); });
    changes<L>(sheet, [](L& l) { return l.setUcs({1, 2, 3}, {0, 2, 0}, {-3, 0, 0}); });
    changes<L>(sheet, [](L& l) { return l.setLimits({-1, -2}, {30, 40}); });
    Opened<L> layout(sheet);
    VcGePoint3d origin;
    VcGeVector3d x, y;
    layout->getUcs(origin, x, y);
    EXPECT_EQ(x, VcGeVector3d(0, 1, 0)) << "made a unit vector";
    EXPECT_EQ(y, VcGeVector3d(-1, 0, 0));
    VcGePoint2d low, high;
    layout->getLimits(low, high);
    EXPECT_EQ(high, VcGePoint2d(30, 40));
    EXPECT_EQ(saidAfterAFile(sheet), drawing.saidBy(sheet));
    EXPECT_NE(Writing<L>(model)->erase(), Vcad::eOk) << "no drawing is without its model";
}

TEST_F(ObjectSettings, DrawOrderMovesWhatIsInTheBlockAlone)
{
    VcDbObjectIdArray lines;
    for (int i = 0; i < 4; ++i)
        lines.push_back(drawing.line());
    const VcDbObjectId id = put(L"ORDER", new VcDbSortentsTable);
    Writing<VcDbSortentsTable> order(id);
    VcDbObjectIdArray now;
    EXPECT_NE(order->getFullDrawOrder(now), Vcad::eOk) << "of no block";
    order->setBlockId(drawing.modelId());
    EXPECT_EQ(order->blockId(), drawing.modelId());
    using Ids = VcDbObjectIdArray;
    const auto expect = [&](const Ids& wanted) {
        EXPECT_EQ(order->getFullDrawOrder(now), Vcad::eOk);
        EXPECT_EQ(now, wanted);
    };
    expect(lines);
    EXPECT_EQ(order->moveToTop({lines[1], lines[0]}), Vcad::eOk);
    expect({lines[2], lines[3], lines[0], lines[1]});
    EXPECT_EQ(order->moveBelow({lines[1]}, lines[3]), Vcad::eOk);
    expect({lines[2], lines[1], lines[3], lines[0]});
    EXPECT_EQ(order->moveAbove({lines[2]}, lines[0]), Vcad::eOk);
    expect({lines[1], lines[3], lines[0], lines[2]});
    EXPECT_EQ(order->moveToBottom({lines[2]}), Vcad::eOk);
    const Ids before{lines[2], lines[1], lines[3], lines[0]};
    expect(before);
    EXPECT_NE(order->moveAbove({lines[2]}, lines[2]), Vcad::eOk) << "above itself";
    EXPECT_NE(order->moveToTop({drawing.database.clayer()}), Vcad::eOk);
    EXPECT_NE(order->moveToTop({lines[0], VcDbObjectId()}), Vcad::eOk);
    expect(before);
    Writing<VcDbLine>(lines[1])->erase();
    expect({lines[2], lines[3], lines[0]});
    Writing<VcDbLine>(lines[1], true)->erase(false);
    expect(before);
}

TEST_F(ObjectSettings, DictionariesTellNamesAndKeepTheirSwitches)
{
    auto* made = new VcDbDictionary;
    const VcDbObjectId id = put(L"TEST", made);
    changes<VcDbDictionary>(id, [](VcDbDictionary& d) {
        d.setTreatElementsAsHard(true);
        return Vcad::eOk;
    });
    changes<VcDbDictionary>(id, [](VcDbDictionary& d) { return d.setMergeStyle(2); });
    refuses<VcDbDictionary>(id, [](VcDbDictionary& d) { return d.setMergeStyle(6); });
    refuses<VcDbDictionary>(id, [](VcDbDictionary& d) { return d.setMergeStyle(-1); });
    Writing<VcDbDictionary> dictionary(id);
    EXPECT_TRUE(dictionary->isTreatElementsAsHard());
    VcDbObjectId entry;
    auto* record = new VcDbXrecord;
    ASSERT_EQ(dictionary->setAt(L"\x00c4 b", record, entry), Vcad::eOk);
    record->close();
    wchar_t* name = nullptr;
    ASSERT_EQ(dictionary->nameAt(entry, name), Vcad::eOk);
    EXPECT_EQ(taken(name), L"\x00c4 b");
    EXPECT_NE(dictionary->nameAt(id, name), Vcad::eOk);
    VcDbObject* object = nullptr;
    EXPECT_EQ(dictionary->getAt(L"\x00e4 B", object, VcDb::kForWrite), Vcad::eOk);
    EXPECT_TRUE(object->isWriteEnabled());
    object->close();
    EXPECT_EQ(dictionary->getAt(L"none", object), Vcad::eKeyNotFound);
    EXPECT_EQ(object, nullptr);
    VcDbXrecord extra;
    EXPECT_NE(dictionary->setAt(L"", &extra, entry), Vcad::eOk);
    EXPECT_NE(dictionary->setAt(nullptr, &extra, entry), Vcad::eOk);
    EXPECT_NE(dictionary->setAt(L"x", nullptr, entry), Vcad::eOk);
}

TEST_F(ObjectSettings, XrecordsKeepTheirMergeStyle)
{
    const VcDbObjectId id = put(L"TEST", new VcDbXrecord);
    changes<VcDbXrecord>(id, [](VcDbXrecord& x) { return x.setMergeStyle(3); });
    refuses<VcDbXrecord>(id, [](VcDbXrecord& x) { return x.setMergeStyle(9); });
    changes<VcDbXrecord>(id, [](VcDbXrecord& x) {
        vds_point p = {1, 2, 3};
        const RbPtr chain(vcutBuildList(1, L"\x4e2d", 10, p, 40, 1.5, 62, 3, 90, 70000, 290, 1, RTNONE));
        return x.setFromRbChain(*chain);
    });
    EXPECT_EQ(Opened<VcDbXrecord>(id)->mergeStyle(), 3);
    EXPECT_EQ(saidAfterAFile(id), drawing.saidBy(id));
}

}
