#include "folders/Folders.h"

#include <QStandardPaths>
#include <array>
#include <cstdlib>

namespace {

constexpr const char* kDataFolderName = "Ombrix Synth";
constexpr const char* kResourceFolderName = "Ombrix.app";

std::filesystem::path programFolder() {
    std::error_code failed;
    const auto program = std::filesystem::read_symlink("/proc/self/exe", failed);
    return failed ? std::filesystem::path(".") : program.parent_path();
}

}  // namespace

std::optional<std::filesystem::path> Folders::data() {
    if (const char* chosen = std::getenv("OMBRIX_DATA"); chosen && *chosen)
        return chosen;
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    if (!documents.isEmpty())
        return std::filesystem::path(documents.toStdString()) / kDataFolderName;
    if (const char* home = std::getenv("HOME"); home && *home)
        return std::filesystem::path(home) / kDataFolderName;
    return std::nullopt;
}

std::filesystem::path Folders::resources() {
    const auto root = programFolder().parent_path();
    const std::array candidates{root / kResourceFolderName,
                                root / "share" / "ombrix-synth" / kResourceFolderName};
    for (const auto& candidate : candidates) {
        std::error_code ignored;
        if (std::filesystem::is_directory(candidate, ignored))
            return candidate;
    }
    return candidates.front();
}
