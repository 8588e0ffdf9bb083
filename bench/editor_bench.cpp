// What modules and scripts do with a whole drawing: reading every entity as a chain, selecting by filter.
//
// usage: editor_bench DRAWING.dxf...

#include "bench/support.h"
#include "host/app/session.h"
#include "host/edit/editor.h"
#include "sdk/vcdb_chains.h"
#include "sdk/vced.h"
#include "sdk/vcut.h"

#include <filesystem>
#include <fmt/format.h>

namespace {

struct ChainCount {
    std::size_t entities = 0, groups = 0;
};

ChainCount readEveryChain()
{
    ChainCount count;
    vds_name at = {};
    for (int status = vcdbEntNext(nullptr, at); status == RTNORM; status = vcdbEntNext(at, at)) {
        resbuf* chain = vcdbEntGet(at);
        for (const resbuf* group = chain; group; group = group->rbnext)
            ++count.groups;
        vcutRelRb(chain);
        ++count.entities;
    }
    return count;
}

int countSelected(const resbuf* filter)
{
    vds_name set = {};
    if (vcedSSGet(L"X", nullptr, nullptr, filter, set) != RTNORM)
        return 0;
    int length = 0;
    vcedSSLength(set, &length);
    vcedSSFree(set);
    return length;
}

void measureFilter(bench::Table& table, const bench::Drawing& drawing, std::size_t entities, const char* what,
                   resbuf* filter)
{
    int found = 0;
    const double seconds = bench::bestOf(bench::kRuns, [&] { found = countSelected(filter); });
    table.row(what, drawing, entities, seconds, fmt::format("{} found", found));
    vcutRelRb(filter);
}

void measure(bench::Table& table, const bench::Drawing& drawing)
{
    vk::edit::Editor::instance().openDrawing(bench::load(drawing));
    const std::size_t entities = bench::countEntities(vk::edit::Editor::instance().drawing());
    ChainCount chains;
    const double reading = bench::bestOf(bench::kRuns, [&] { chains = readEveryChain(); });
    table.row("entget", drawing, chains.entities, reading, fmt::format("{} groups", chains.groups));
    measureFilter(table, drawing, entities, "select texts", vcutBuildList(RTDXF0, L"TEXT", 0));
    measureFilter(table, drawing, entities, "select a layer", vcutBuildList(8, L"LAYER-007", 0));
    measureFilter(table, drawing, entities, "select texts of some layers",
                  vcutBuildList(RTDXF0, L"*TEXT", 8, L"LAYER-0*", 0));
    measureFilter(table, drawing, entities, "select circles by radius",
                  vcutBuildList(RTDXF0, L"CIRCLE", -4, L">", 40, 5.0, 0));
    vk::edit::Editor::instance().closeDrawing();
}

}

int main(int argc, char** argv)
{
    vk::app::Session session((std::filesystem::temp_directory_path() / "editor_bench_profile").string());
    bench::Table table;
    for (int i = 1; i < argc; ++i)
        measure(table, bench::drawingAt(argv[i]));
    return argc > 1 ? 0 : 2;
}
