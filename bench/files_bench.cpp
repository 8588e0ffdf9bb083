// Loading and saving, and what a loaded entity takes.
//
// usage: files_bench DRAWING.dxf...

#include "bench/support.h"
#include "host/io/atomic_file.h"
#include "host/io/drawing_file.h"

#include <cstdlib>
#include <filesystem>
#include <fmt/format.h>
#include <unistd.h>

namespace {

void save(VcDbDatabase& database, const std::string& path)
{
    WriteOptions options;
    options.keepBackup = false;
    if (const WriteResult written = writeDrawing(database, path, options); !written.ok()) {
        fmt::print(stderr, "{}\n", written.message);
        std::exit(1);
    }
}

// What putting the bytes on the disk takes by itself: writing, syncing the file, renaming, syncing the folder.
void putOnDisk(const std::string& bytes, const std::string& path)
{
    AtomicFile file(path);
    file.write(bytes);
    if (!file.commit(false)) {
        fmt::print(stderr, "{}\n", file.error());
        std::exit(1);
    }
}

void measure(bench::Table& table, const bench::Drawing& drawing)
{
    const double megabytes = static_cast<double>(drawing.bytes.size()) / 1e6;
    const std::size_t before = bench::liveBytes();
    std::unique_ptr<VcDbDatabase> database;
    double loading = bench::secondsOf([&] { database = bench::load(drawing); });
    const std::size_t used = bench::liveBytes() - before;
    const std::size_t entities = bench::countEntities(*database);

    const std::string copy =
        (std::filesystem::temp_directory_path() / fmt::format("files_bench_{}.dxf", getpid())).string();
    const double saving = bench::bestOf(bench::kRuns, [&] { save(*database, copy); });
    const std::string bytes = bench::bytesOf(copy);
    const double written = static_cast<double>(bytes.size()) / 1e6;
    const double disk = bench::bestOf(bench::kRuns, [&] { putOnDisk(bytes, copy); });
    std::filesystem::remove(copy);

    const double closing = bench::secondsOf([&] { database.reset(); });
    loading = std::min(loading, bench::bestOf(bench::kRuns - 1, [&] { database = bench::load(drawing); }));

    table.row("load", drawing, entities, loading,
              fmt::format("{:.0f} MB/s, {:.0f} bytes an entity", megabytes / loading, double(used) / double(entities)));
    table.row("save", drawing, entities, saving,
              fmt::format("{:.0f} MB/s, {:.4f} s of it the disk", written / saving, disk));
    table.row("close", drawing, entities, closing);
}

}

int main(int argc, char** argv)
{
    bench::Table table;
    for (int i = 1; i < argc; ++i)
        measure(table, bench::drawingAt(argv[i]));
    return argc > 1 ? 0 : 2;
}
