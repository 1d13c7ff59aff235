// Plays inputs without a fuzzer: each argument is a file, or a folder whose files are played in the order of their
// names. So corpora also run in builds that no fuzzing engine knows, such as those of GCC.

#include "Fuzz/Fuzz_Target.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

namespace
{
namespace fs = std::filesystem;

std::vector<fs::path> FilesOf(const fs::path& path)
{
    if (!fs::is_directory(path))
        return {path};
    std::vector<fs::path> files;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(path))
        if (entry.is_regular_file())
            files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    return files;
}

bool Play(const fs::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    const std::vector<char> bytes{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    if (!stream.is_open())
    {
        std::fprintf(stderr, "cannot read %s\n", file.c_str());
        return false;
    }
    LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size());
    return true;
}
} // namespace

int main(int argc, char** argv)
{
    size_t played = 0;
    for (int i = 1; i < argc; ++i)
        for (const fs::path& file : FilesOf(argv[i]))
        {
            if (!Play(file))
                return 1;
            ++played;
        }
    std::printf("%zu inputs played\n", played);
    return played == 0 ? 1 : 0;
}
