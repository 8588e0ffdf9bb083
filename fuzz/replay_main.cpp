// Runs a fuzz target over files, or over every file of folders, where no fuzzer drives it: to replay what was found.
//
// usage: replay_... FILE|FOLDER...

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace fs = std::filesystem;

static std::vector<fs::path> filesOf(const fs::path& path)
{
    if (!fs::is_directory(path))
        return {path};
    std::vector<fs::path> files;
    for (const auto& entry : fs::recursive_directory_iterator(path))
        if (entry.is_regular_file())
            files.push_back(entry.path());
    return files;
}

static bool replay(const fs::path& file)
{
    std::ifstream in(file, std::ios::binary);
    if (!in) {
        std::fprintf(stderr, "%s cannot be read\n", file.c_str());
        return false;
    }
    const std::string bytes{std::istreambuf_iterator<char>(in), {}};
    std::printf("%s\n", file.c_str());
    std::fflush(stdout);
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    return true;
}

int main(int argc, char** argv)
{
    bool sound = argc > 1;
    for (int i = 1; i < argc; ++i)
        for (const fs::path& file : filesOf(argv[i]))
            sound = replay(file) && sound;
    return sound ? 0 : 1;
}
