#include "host/app/info.h"

#include "host/app/contents.h"
#include "host/app/loading.h"
#include "host/app/remarks.h"
#include "host/db/database.h"

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <nlohmann/json.hpp>
#include <numeric>

namespace vk::app {

namespace {

using Json = nlohmann::ordered_json;

Json jsonOf(const Contents& contents, const InfoOptions& options, const ReadResult& read, const DatabaseCore& db)
{
    Json paper = Json::object();
    for (const auto& [layout, counts] : contents.paper)
        paper[layout] = counts;
    Json fonts = Json::array();
    for (const FontEntry& font : contents.fonts)
        fonts.push_back({{"style", font.style}, {"asked", font.asked}, {"taken", font.taken}, {"match", font.match}});
    return {{"path", options.drawing},
            {"version", releaseName(read.version)},
            {"codepage", db.origin.codePage},
            {"entities", {{"model", Json(contents.model)}, {"paper", paper}}},
            {"layers", contents.layers},
            {"blocks", contents.blocks},
            {"styles", contents.styles},
            {"dimstyles", contents.dimstyles},
            {"linetypes", contents.linetypes},
            {"layouts", contents.layouts},
            {"extents", contents.extents ? Json{contents.extents->first, contents.extents->second} : Json()},
            {"fonts", fonts}};
}

std::size_t sum(const CountByType& counts)
{
    return std::accumulate(counts.begin(), counts.end(), std::size_t(0),
                           [](std::size_t total, const auto& item) { return total + item.second; });
}

void printCounts(std::string_view space, const CountByType& counts)
{
    fmt::print("{}: {} entities\n", space, withSeparators(sum(counts)));
    for (const auto& [type, count] : counts)
        fmt::print("  {:<24} {:>12}\n", type, withSeparators(count));
}

void printNames(std::string_view what, const std::vector<std::string>& names)
{
    fmt::print("{} ({}): {}\n", what, names.size(), fmt::join(names, ", "));
}

void printForPeople(const Contents& contents, const InfoOptions& options, const ReadResult& read,
                    const DatabaseCore& db)
{
    fmt::print("{}: version {}, code page {}, {} objects\n", options.drawing, releaseName(read.version),
               db.origin.codePage, withSeparators(read.objects));
    printCounts("Model", contents.model);
    for (const auto& [layout, counts] : contents.paper)
        printCounts("Layout " + layout, counts);
    printNames("Layers", contents.layers);
    printNames("Blocks", contents.blocks);
    printNames("Text styles", contents.styles);
    printNames("Dimension styles", contents.dimstyles);
    printNames("Linetypes", contents.linetypes);
    printNames("Layouts", contents.layouts);
    if (contents.extents)
        fmt::print("Extents: {} to {}\n", fmt::join(contents.extents->first, ","),
                   fmt::join(contents.extents->second, ","));
    for (const FontEntry& font : contents.fonts)
        fmt::print("Font of {}: {} asked for, {} taken ({})\n", font.style, font.asked, font.taken, font.match);
}

}

int info(const InfoOptions& options)
{
    Remarks remarks;
    Loaded loaded = load(options.drawing, options.recover, remarks);
    if (loaded.status != kDone)
        return loaded.status;
    DatabaseCore& db = loaded.database->core();
    const Contents contents = contentsOf(db);
    if (options.json)
        fmt::print("{}\n",
                   jsonOf(contents, options, loaded.read, db).dump(-1, ' ', false, Json::error_handler_t::replace));
    else
        printForPeople(contents, options, loaded.read, db);
    return kDone;
}

}  // namespace vk::app
