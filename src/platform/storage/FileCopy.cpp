#include "storage/FileCopy.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <vector>

#include "storage/AsideFile.h"

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kPieceBytes = 1 << 20;

/// Everything of `path`; false also when stopped.
bool fill(AsideFile& copy, const std::string& path, const std::stop_token& stop,
          std::string& error) {
    std::ifstream file(path, std::ios::binary);
    std::vector<std::uint8_t> piece(kPieceBytes);
    std::error_code ignored;
    bool readable = file && fs::is_regular_file(path, ignored);
    while (readable && !file.eof() && !stop.stop_requested()) {
        file.read(reinterpret_cast<char*>(piece.data()), kPieceBytes);
        readable = !file.bad();
        if (!copy.write({piece.data(), static_cast<std::size_t>(file.gcount())})) {
            error = copy.error();
            return false;
        }
    }
    if (!readable)
        error = path + ": cannot read";
    return readable && !stop.stop_requested();
}

fs::path numbered(const fs::path& path, int number) {
    if (number == 1)
        return path;
    const std::string name = path.stem().string() + ' ' + std::to_string(number);
    return path.parent_path() / (name + path.extension().string());
}

}  // namespace

std::string FileCopy::into(const std::string& folder, const std::string& path, std::stop_token stop,
                           std::string& error) {
    const fs::path wanted = fs::path(folder) / fs::path(path).filename();
    AsideFile copy(wanted.string());
    if (!copy.error().empty())
        error = copy.error();
    if (!error.empty() || !fill(copy, path, stop, error))
        return "";
    for (int number = 1;; ++number) {
        const std::string name = numbered(wanted, number).string();
        switch (copy.putNew(name)) {
            case AsideFile::Put::done:
                return name;
            case AsideFile::Put::failed:
                error = copy.error();
                return "";
            case AsideFile::Put::taken:
                break;
        }
    }
}
