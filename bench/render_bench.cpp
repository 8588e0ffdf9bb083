// Pictures of a whole drawing and of a small part of it, from the database in memory to the bytes of the file.
//
// usage: render_bench DRAWING.dxf...

#include "bench/support.h"
#include "host/db/database.h"
#include "host/render/picture.h"

#include <cstdlib>
#include <fmt/format.h>

namespace {

using namespace vk::render;

PictureRequest requestFor(const DatabaseCore& db, PictureFormat format)
{
    PictureRequest request;
    request.format = format;
    request.layout = *findLayout(db, "");
    return request;
}

// A hundredth of the width and height, in the middle.
PlaneWindow smallPart(const DatabaseCore& db)
{
    Omissions untold;
    const PlaneWindow whole = Scene(db, *findLayout(db, ""), untold).wholeWindow();
    const Point2 middle = whole.low + (whole.high - whole.low) * 0.5;
    const VcGeVector2d half = (whole.high - whole.low) * 0.005;
    return {middle - half, middle + half};
}

void measure(bench::Table& table, const bench::Drawing& drawing)
{
    std::unique_ptr<VcDbDatabase> database;
    const double loading = bench::secondsOf([&] { database = bench::load(drawing); });
    const DatabaseCore& db = database->core();
    const std::size_t entities = bench::countEntities(*database);
    const auto row = [&](const char* what, const PictureRequest& request) {
        std::size_t bytes = 0;
        const double seconds = bench::bestOf(bench::kRuns, [&] {
            const PictureResult picture = paintPicture(db, request);
            if (!picture.error.empty()) {
                fmt::print(stderr, "{}\n", picture.error);
                std::exit(1);
            }
            bytes = picture.bytes.size();
        });
        table.row(what, drawing, entities, seconds,
                  fmt::format("{:.2f} of the load, {} kB", seconds / loading, bytes / 1000));
    };
    row("png", requestFor(db, PictureFormat::Png));
    row("svg", requestFor(db, PictureFormat::Svg));
    PictureRequest part = requestFor(db, PictureFormat::Png);
    part.window = smallPart(db);
    row("png of a small part", part);
}

}

int main(int count, char** paths)
{
    bench::Table table;
    for (int i = 1; i < count; ++i)
        measure(table, bench::drawingAt(paths[i]));
}
