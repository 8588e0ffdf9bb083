// Loading and saving of a drawing against the floor: a loop over the same file that splits its lines and converts code and
// value, nothing more.
//
// usage: dxf_bench DRAWING.dxf...

#include "host/base/group_code.h"
#include "host/base/numbers.h"
#include "host/io/drawing_file.h"
#include "sdk/vcdb_database.h"

#include <chrono>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <malloc.h>
#include <sstream>

namespace {

double secondsOf(auto&& work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

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

std::size_t bytesInUse()
{
    const auto info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

void measure(const char* path)
{
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    const std::string bytes = std::move(text).str();
    volatile double keep = 0;
    const double floor = secondsOf([&] { keep = convertAll(bytes); });

    const std::size_t before = bytesInUse();
    VcDbDatabase database(false);
    ReadResult read;
    const double load = secondsOf([&] { read = readDrawingBytes(database, bytes); });
    const std::size_t used = bytesInUse() - before;
    if (!read.ok()) {
        std::printf("%s: %s\n", path, read.message.c_str());
        return;
    }
    const std::string copy = (std::filesystem::temp_directory_path() / "vekad-bench.dxf").string();
    WriteOptions options;
    options.keepBackup = false;
    WriteResult written;
    const double save = secondsOf([&] { written = writeDrawing(database, copy, options); });
    std::filesystem::remove(copy);

    const double megabytes = static_cast<double>(bytes.size()) / 1e6;
    std::printf("%s: %.1f MB, %zu objects\n", path, megabytes, read.objects);
    std::printf("  floor %8.3f s  %6.0f MB/s\n", floor, megabytes / floor);
    std::printf("  load  %8.3f s  %6.0f MB/s  %5.2f times the floor  %.0f objects/s  %.0f bytes an object\n", load, megabytes / load,
                load / floor, static_cast<double>(read.objects) / load, static_cast<double>(used) / static_cast<double>(read.objects));
    std::printf("  save  %8.3f s  %6.0f MB/s  %5.2f times the floor\n", save, static_cast<double>(written.bytes) / 1e6 / save, save / floor);
}

}

int main(int argc, char** argv)
{
    for (int i = 1; i < argc; ++i)
        measure(argv[i]);
    return argc > 1 ? 0 : 2;
}
