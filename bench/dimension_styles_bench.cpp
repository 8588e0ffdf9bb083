// DIMIM over many dimensions, all of which it works out anew, and over many styles: seconds, and how they grow from one count
// to the next. A growth of the time that is far above that of the count is a fault.
//
// usage: dimension_styles_bench [MOST]    counts go up to MOST, 50000 without it; of styles a hundredth of them

#include "host/app/session.h"
#include "host/base/files.h"
#include "host/edit/editor.h"
#include "host/edit/input.h"
#include "host/edit/services.h"
#include "sdk/vcdb_chains.h"
#include "sdk/vcdb_database.h"
#include "sdk/vcut.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>

namespace {

using vk::edit::Editor;

std::string stylePath() { return joinPath(temporaryFolder(), "bench.dim"); }

void writeStyles(int count, int scale)
{
    std::ofstream file(stylePath());
    for (int i = 0; i < count; ++i)
        file << "DIMENSION_STYLE_NAME Site " << i << "\nDIMBLK _DOT\nDIMPOST <> m\nDIMSCALE " << scale
             << "\nDIMTXSTY Notes\nDIMTXT_FULLINFO 0\nEND_DIMTXT\nEND_OF_STYLE Site " << i << "\n";
}

void makeDimensions(int count)
{
    for (int i = 0; i < count; ++i) {
        const double x = 20.0 * (i % 200), y = 15.0 * (i / 200);
        const vds_point from = {x, y, 0}, to = {x + 5 + i % 11, y, 0}, line = {x, y + 4, 0}, text = {x + 3, y + 4, 0};
        const RbPtr chain(vcutBuildList(RTDXF0, L"DIMENSION", 100, L"AcDbEntity", 8, L"0", 100, L"AcDbDimension", 3,
                                        L"Site 0", 10, line, 11, text, 70, 32, 100, L"AcDbAlignedDimension", 13, from,
                                        14, to, 100, L"AcDbRotatedDimension", 50, 0.0, RTNONE));
        vcdbEntMake(chain.get());
    }
}

// Seconds of one import that overwrites.
double import()
{
    Editor& editor = Editor::instance();
    editor.dialogs()->addAnswer("CDimStyleIm",
                                {"lEditImportFilenname=" + stylePath(), "rBtnOverwriteExistingStyle", "pBtnOK"});
    const auto start = std::chrono::steady_clock::now();
    editor.pushSource(std::make_unique<vk::edit::ScriptSource>("bench", "DIMIM\n"));
    editor.run();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

double refreshing(int dimensions)
{
    writeStyles(1, 1);
    import();
    makeDimensions(dimensions);
    writeStyles(1, 2);
    return import();
}

double importing(int styles)
{
    writeStyles(styles, 1);
    return import();
}

void measure(const char* what, double (*secondsOf)(int), int most)
{
    double before = 0;
    for (int count = most / 8; count <= most; count *= 2) {
        Editor::instance().openDrawing(std::make_unique<VcDbDatabase>());
        const double seconds = secondsOf(count);
        std::printf("DIMIM, %-10s %7d  %7.3f s", what, count, seconds);
        if (before > 0)
            std::printf("  x %.2f", seconds / before);
        std::printf("\n");
        std::fflush(stdout);
        before = seconds;
    }
}

}

int main(int argc, char** argv)
{
    const int most = argc > 1 ? std::atoi(argv[1]) : 50000;
    vk::app::Session session(joinPath(temporaryFolder(), "profile"));
    for (const std::string& fault : session.open(std::make_unique<VcDbDatabase>()))
        std::fprintf(stderr, "%s\n", fault.c_str());
    Editor::instance().setTranscriptSink([](std::string_view) {});
    measure("dimensions", refreshing, most);
    measure("styles", importing, most / 100 < 8 ? 8 : most / 100);
}
