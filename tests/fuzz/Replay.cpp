// Runs a fuzz target over files that were kept: Replay FOLDER|FILE...
// A target that dislikes an input aborts; the last name printed is that input.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

using Path = std::filesystem::path;

std::vector<Path> filesIn(const Path& place) {
    if (!std::filesystem::is_directory(place))
        return {place};
    std::vector<Path> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(place)) {
        if (entry.is_regular_file())
            files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    return files;
}

void replay(const Path& file) {
    std::printf("%s\n", file.c_str());
    std::fflush(stdout);
    std::ifstream in(file, std::ios::binary);
    const std::vector<char> bytes{std::istreambuf_iterator<char>(in), {}};
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
}

}  // namespace

int main(int count, char** arguments) {
    std::size_t replayed = 0;
    for (int i = 1; i < count; ++i) {
        for (const Path& file : filesIn(arguments[i])) {
            replay(file);
            ++replayed;
        }
    }
    std::printf("%zu inputs\n", replayed);
    return replayed > 0 ? 0 : 1;  // a corpus that has gone astray is not a pass
}
