// What viewports take from the page of their layout, and what layers are in single viewports.
#include "host/db/database.h"
#include "host/db/layouts.h"
#include "sdk/vcdb_layout.h"
#include "sdk/vcdb_objects.h"
#include "sdk/vcdb_tables.h"
#include "sdk/vcdb_viewport.h"
#include "tests/extend/sdk_support.h"

namespace {

class Viewports : public SdkTest {
protected:
    Viewports() { run("TILEMODE\n0\n"); }
    VcDbViewport& made(const std::string& typed)
    {
        run(typed);
        return *viewportsOf(editor().db(), editor().db().paperSpace()).back();
    }
    VcDbLayout& layout() { return *layoutOfBlock(editor().db(), editor().db().paperSpace()); }
};

struct Page {
    const char* name;
    std::int16_t quarterTurns;
    VcDbPlotSettings::PaperUnits units;
    double numerator, denominator;
    double width, height;  // in units of the layout
};

// A sheet of 297 by 210 with 5 at the sides and 10 at the ends.
TEST_F(Viewports, FitTakesWhatThePrinterReaches)
{
    const Page pages[] = {
        {"as it lies", 0, VcDbPlotSettings::kMillimeters, 1, 1, 287, 190},
        {"turned", 1, VcDbPlotSettings::kMillimeters, 1, 1, 190, 287},
        {"in inches", 0, VcDbPlotSettings::kInches, 1, 1, 287 / 25.4, 190 / 25.4},
        {"at a tenth", 2, VcDbPlotSettings::kMillimeters, 1, 10, 2870, 1900},
    };
    for (const Page& page : pages) {
        step([&] {
            layout().assertWriteEnabled();
            layout().setPaper("sheet", 297, 210, 5, 10);
            layout().setPlotRotation(page.quarterTurns);
            layout().setPlotPaperUnits(page.units);
            layout().setCustomPrintScale(page.numerator, page.denominator);
        });
        const VcDbViewport& viewport = made("MVIEW\nF\n");
        EXPECT_NEAR(viewport.width(), page.width, 1e-9) << page.name;
        EXPECT_NEAR(viewport.height(), page.height, 1e-9) << page.name;
        EXPECT_NEAR(viewport.centerPoint().x, page.width / 2, 1e-9) << page.name;
    }
}

TEST_F(Viewports, FitWithoutAPaperTakesTheLimits)
{
    step([&] {
        layout().assertWriteEnabled();
        layout().setPaper("", 0, 0, 0, 0);
    });
    run("LIMITS\n10,20\n110,70\n");
    const VcDbViewport& viewport = made("MVIEW\nF\n");
    EXPECT_NEAR(viewport.width(), 100, 1e-9);
    EXPECT_NEAR(viewport.centerPoint().y, 45, 1e-9);
}

// Only the run of groups that names the viewport goes; what the layer is in others stays.
TEST_F(Viewports, LayersAreResetInOneViewport)
{
    VcDbViewport& one = made("MVIEW\n0,0\n10,10\n");
    VcDbViewport& other = made("MVIEW\n20,0\n30,10\n");
    auto& layer = *editor().db().liveAs<VcDbLayerTableRecord>(editor().db().findRecord(NameTable::Layer, "0"));
    VcDbObjectId id;
    step([&] {
        layer.createExtensionDictionary();
        auto* dictionary = editor().db().liveAs<VcDbDictionary>(layer.extensionDictionary());
        auto* record = new VcDbXrecord;
        ASSERT_EQ(dictionary->setAt(L"ADSK_XREC_LAYER_COLOR_OVR", record, id), Vcad::eOk);
        TagList data;
        for (const auto& [viewport, colour] : {std::pair{&one, 1}, std::pair{&other, 2}}) {
            data.addText(102, "{ADSK_LYR_COLOR_OVERRIDE");
            data.addHandle(335, editor().db().handleOf(viewport->objectId()));
            data.addInteger(420, colour);
            data.addText(102, "}");
        }
        record->setData(std::move(data));
        record->close();
    });
    const auto colours = [&] {
        std::vector<int> values;
        const auto* record = editor().db().liveAs<VcDbXrecord>(id);
        if (record)
            for (const Tag& tag : record->data())
                if (tag.code == 420)
                    values.push_back(int(tag.integer));
        return values;
    };
    EXPECT_EQ(colours(), (std::vector<int>{1, 2}));
    run("MVIEW\nLA\nY\n5,0\n\n");
    EXPECT_TRUE(said("1 overrides taken away."));
    EXPECT_EQ(colours(), (std::vector<int>{2}));
    run("U\n");
    EXPECT_EQ(colours(), (std::vector<int>{1, 2}));
    run("MVIEW\nLA\nY\nALL\n\n");
    EXPECT_TRUE(said("2 overrides taken away."));
    EXPECT_EQ(colours(), std::vector<int>());
}

}
