// A command of the module over every text of a drawing, from what is typed to the changed entities, with undo recorded; then
// U, which takes it back.
//
// usage: text_command_bench DRAWING.dxf...

#include "bench/support.h"
#include "host/app/session.h"
#include "host/db/database.h"
#include "host/edit/editor.h"
#include "sdk/vcdb_text.h"

#include <filesystem>
#include <fmt/format.h>

namespace {

constexpr double kHeight = 4.75;  // what no text of the drawings has

using vk::edit::Editor;

std::size_t textsOfNewHeight()
{
    const DatabaseCore& db = Editor::instance().db();
    std::size_t count = 0;
    for (const std::uint32_t slot : db.mainOrder()) {
        const auto* text = VcDbText::cast(db.objectAt(slot));
        const auto* many = VcDbMText::cast(db.objectAt(slot));
        count += (text && text->height() == kHeight) || (many && many->textHeight() == kHeight);
    }
    return count;
}

void measure(bench::Table& table, const bench::Drawing& drawing)
{
    std::unique_ptr<VcDbDatabase> database;
    const double loading = bench::secondsOf([&] { database = bench::load(drawing); });
    vk::app::Session session((std::filesystem::temp_directory_path() / "text_command_bench_profile").string());
    for (const std::string& fault : session.open(std::move(database)))
        bench::check(false, fault);
    std::string said;
    Editor::instance().setTranscriptSink([&](std::string_view text) { said += text; });

    const double changing = bench::secondsOf([] { bench::type(fmt::format("CHGTHEI\nALL\n\n{}\n", kHeight)); });
    const std::size_t texts = textsOfNewHeight();
    bench::check(texts > 0, said);
    const double undoing = bench::secondsOf([] { bench::type("U\n"); });
    bench::check(textsOfNewHeight() == 0, "U left texts changed");

    const auto shareOfLoad = [&](double seconds) { return fmt::format("{:.3f} of the load", seconds / loading); };
    table.row("change text heights", drawing, texts, changing, shareOfLoad(changing));
    table.row("take it back", drawing, texts, undoing, shareOfLoad(undoing));
}

}

int main(int argc, char** argv)
{
    bench::Table table;
    for (int i = 1; i < argc; ++i)
        measure(table, bench::drawingAt(argv[i]));
    return argc > 1 ? 0 : 2;
}
