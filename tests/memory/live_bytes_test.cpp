// A drawing that is closed gives back all it took: the allocator's live bytes are the same after each round of opening one,
// running commands on it, saving and closing it. To be run with the allocator's caches of freed blocks off, which count as
// live: GLIBC_TUNABLES=glibc.malloc.tcache_count=0.
//
// usage: live_bytes_test DRAWING

#include "host/app/session.h"
#include "host/edit/editor.h"
#include "host/edit/input.h"
#include "host/io/drawing_file.h"

#include <cstdio>
#include <filesystem>
#include <fmt/format.h>
#include <malloc.h>

namespace {

using vk::edit::Editor;

constexpr int kRounds = 10;
constexpr int kWarmUpRounds = 5;
// A block may come with up to 16 bytes that are too few to be split off. What is lost in each round is more: a block has 32.
constexpr std::size_t kNoise = 128;
constexpr int kSkipped = 77;

constexpr const char* kTyped = "CHGTHEI\nALL\n\n4.5\n"
                               "TXTULINE\nALL\n\n"
                               "(entmake '((0 . \"CIRCLE\") (10 1.0 2.0 0.0) (40 . 3.0)))\n"
                               "(setq s (ssget \"X\" '((0 . \"TEXT\"))))\n(setq s nil)\n"
                               "ERASE\nL\n\n"
                               "U\nU\nREDO\n"
                               "LINE\n0,0\n(cancel)\n";

std::size_t liveBytes()
{
    const auto info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

// An empty text when all went well.
std::string playRound(vk::app::Session& session, const std::string& path)
{
    auto drawing = std::make_unique<VcDbDatabase>(false);
    if (const ReadResult read = readDrawing(*drawing, path); !read.ok())
        return read.message;
    for (const std::string& fault : session.open(std::move(drawing)))
        return fault;
    Editor& editor = Editor::instance();
    std::string said;
    editor.setTranscriptSink([&](std::string_view text) { said += text; });
    editor.pushSource(std::make_unique<vk::edit::ScriptSource>("round", kTyped));
    editor.run();
    editor.setTranscriptSink({});

    std::string bytes;
    const WriteResult written = writeDrawingBytes(editor.drawing(), bytes, {});
    const bool changed = written.ok() && bytes.find("\n4.5") != bytes.npos;
    editor.closeDrawing();
    return changed ? std::string() : "the commands did not run as they should:\n" + said;
}

// What the session keeps for itself grows to a bound, or by doubling: it is made large beforehand.
void fillTheLog()
{
    Editor& editor = Editor::instance();
    editor.print(std::string(std::size_t(9) << 20, '.') + "\n");
    std::string commands;
    for (int i = 0; i < 600; ++i)
        commands += "REDRAW\n";
    editor.openDrawing(std::make_unique<VcDbDatabase>());
    editor.pushSource(std::make_unique<vk::edit::ScriptSource>("many", commands));
    editor.run();
    editor.closeDrawing();
}

int judge(const std::vector<std::size_t>& after)
{
    for (std::size_t i = 0; i < after.size(); ++i)
        std::printf("after round %zu: %zu bytes\n", i + 1, after[i]);
    const auto [least, most] = std::minmax_element(after.begin(), after.end());
    const bool same = *most - *least <= kNoise;
    if (!same)
        std::printf("the live bytes do not stay the same\n");
    return same ? 0 : 1;
}

}

int main(int argc, char** argv)
{
    if (argc != 2)
        return 2;
    if (liveBytes() == 0) {
        std::printf("this allocator does not tell its live bytes\n");
        return kSkipped;
    }
    const std::string profile = (std::filesystem::temp_directory_path() / "live_bytes_profile").string();
    vk::app::Session session(profile);
    std::vector<std::size_t> after;
    after.reserve(kRounds);
    fillTheLog();
    // The first rounds fill what is made once for a process.
    for (int round = -kWarmUpRounds; round < kRounds; ++round) {
        if (const std::string fault = playRound(session, argv[1]); !fault.empty()) {
            std::printf("%s\n", fault.c_str());
            return 1;
        }
        if (round >= 0)
            after.push_back(liveBytes());
    }
    std::filesystem::remove_all(profile);
    return judge(after);
}
