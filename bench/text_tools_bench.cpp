// The text tools over many texts: seconds, and how they grow from one count to the next. A growth of the time that is far
// above that of the count is a fault.
//
// usage: text_tools_bench [MOST]    counts go up to MOST, 100000 without it

#include "host/app/session.h"
#include "host/base/files.h"
#include "host/edit/editor.h"
#include "host/edit/input.h"
#include "host/edit/services.h"
#include "sdk/vcdb_chains.h"
#include "sdk/vcdb_database.h"
#include "sdk/vced.h"
#include "sdk/vcut.h"

#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace {

using vk::edit::Editor;

struct Tool {
    const char* name;
    const char* typed;
    int flag;  // how TXT2MTXT joins
};

constexpr Tool kTools[] = {
    {"TCASE", "TCASE\nALL\n\n", 0},
    {"TXT2MTXT by selection", "TXT2MTXT\nALL\n\n", 0},
    {"TXT2MTXT top-down", "TXT2MTXT\nALL\n\n", 1},
};

void makeTexts(int count)
{
    for (int i = 0; i < count; ++i) {
        const vds_point at = {double(i % 317), double(i * 7919LL % count), 0};
        const std::wstring text = L"Text number " + std::to_wstring(i) + L".and more";
        const RbPtr chain(
            vcutBuildList(RTDXF0, L"TEXT", 8, L"0", 10, at, 40, 2.5 + i % 3, 62, 1 + i % 2, 1, text.c_str(), RTNONE));
        vcdbEntMake(chain.get());
    }
}

void run(const std::string& typed)
{
    Editor::instance().pushSource(std::make_unique<vk::edit::ScriptSource>("bench", typed));
    Editor::instance().run();
}

double secondsOf(const Tool& tool, int count)
{
    Editor& editor = Editor::instance();
    editor.openDrawing(std::make_unique<VcDbDatabase>());
    makeTexts(count);
    editor.dialogs()->addAnswer("TCaseDialog", {"titleBtn", "okBtn"});
    run("(profile-write \"TextTools\" \"CheckFlag\" \"" + std::to_string(tool.flag) + "\")\n");
    const auto start = std::chrono::steady_clock::now();
    run(tool.typed);
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void measure(const Tool& tool, int most)
{
    double before = 0;
    for (int count = most / 8; count <= most; count *= 2) {
        const double seconds = secondsOf(tool, count);
        std::printf("%-22s %7d  %7.3f s", tool.name, count, seconds);
        if (before > 0)
            std::printf("  x %.2f", seconds / before);
        std::printf("\n");
        before = seconds;
    }
}

}

int main(int argc, char** argv)
{
    const int most = argc > 1 ? std::atoi(argv[1]) : 100000;
    vk::app::Session session(joinPath(temporaryFolder(), "profile"));
    for (const std::string& fault : session.open(std::make_unique<VcDbDatabase>()))
        std::fprintf(stderr, "%s\n", fault.c_str());
    Editor::instance().setTranscriptSink([](std::string_view) {});
    for (const Tool& tool : kTools)
        measure(tool, most);
}
