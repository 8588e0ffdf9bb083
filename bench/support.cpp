#include "bench/support.h"

#include "host/base/group_code.h"
#include "host/base/numbers.h"
#include "host/db/database.h"
#include "host/edit/editor.h"
#include "host/edit/input.h"
#include "host/io/drawing_file.h"
#include "sdk/vcdb_entity.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fmt/format.h>
#include <fstream>
#include <malloc.h>
#include <sstream>

namespace bench {

namespace {

std::string_view takeLine(std::string_view& rest)
{
    const auto* stop = static_cast<const char*>(std::memchr(rest.data(), '\n', rest.size()));
    const std::size_t size = stop ? static_cast<std::size_t>(stop - rest.data()) : rest.size();
    const std::string_view line = rest.substr(0, size);
    rest.remove_prefix(stop ? size + 1 : size);
    return line;
}

double convertAll(std::string_view rest)
{
    double sum = 0;
    while (!rest.empty()) {
        const auto code = parseInteger(takeLine(rest));
        const std::string_view value = takeLine(rest);
        const GroupKind kind = fileGroupKind(static_cast<int>(code.value_or(0)));
        if (kind == GroupKind::Real)
            sum += parseReal(value).value_or(0);
        else if (isIntegerKind(kind))
            sum += static_cast<double>(parseInteger(value).value_or(0));
        else
            sum += static_cast<double>(value.size());
    }
    return sum;
}

[[noreturn]] void giveUp(const std::string& why)
{
    fmt::print(stderr, "{}\n", why);
    std::exit(1);
}

}

std::string bytesOf(const std::string& path)
{
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return std::move(text).str();
}

Drawing drawingAt(const std::string& path)
{
    Drawing drawing{std::filesystem::path(path).stem().string(), bytesOf(path), 0};
    if (drawing.bytes.empty())
        giveUp(fmt::format("{} cannot be read", path));
    volatile double keep = 0;
    drawing.floor = bestOf(kRuns, [&] { keep = convertAll(drawing.bytes); });
    return drawing;
}

std::unique_ptr<VcDbDatabase> load(const Drawing& drawing)
{
    auto database = std::make_unique<VcDbDatabase>(false);
    if (const ReadResult read = readDrawingBytes(*database, drawing.bytes); !read.ok())
        giveUp(fmt::format("{}: {}", drawing.name, read.message));
    return database;
}

void type(const std::string& text)
{
    vk::edit::Editor& editor = vk::edit::Editor::instance();
    editor.pushSource(std::make_unique<vk::edit::ScriptSource>("bench", text));
    editor.run();
}

void check(bool holds, const std::string& why)
{
    if (!holds)
        giveUp(why);
}

std::size_t countEntities(const VcDbDatabase& database)
{
    const DatabaseCore& db = database.core();
    std::size_t count = 0;
    for (const std::uint32_t slot : db.mainOrder()) {
        const auto* entity = VcDbEntity::cast(db.objectAt(slot));
        const auto* subs = entity ? entity->subEntities() : nullptr;
        count += 1 + (subs ? subs->size() : 0);
    }
    return count;
}

std::size_t liveBytes()
{
    const auto info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

Table::Table()
{
    fmt::print("{:<28}{:<10}{:>10}{:>10}{:>13}{:>9}{:>8}\n", "", "drawing", "entities", "seconds", "entities/s",
               "x floor", "growth");
}

void Table::row(const std::string& what, const Drawing& drawing, std::size_t entities, double seconds,
                const std::string& more)
{
    const double each = seconds / static_cast<double>(std::max<std::size_t>(entities, 1));
    double& before = m_secondsAnEntity[what];
    const std::string growth = before > 0 ? fmt::format("{:.2f}", each / before) : "";
    before = each;
    fmt::print("{:<28}{:<10}{:>10}{:>10.4f}{:>13.0f}{:>9.2f}{:>8}  {}\n", what, drawing.name, entities, seconds,
               1 / each, seconds / drawing.floor, growth, more);
    std::fflush(stdout);
}

}
