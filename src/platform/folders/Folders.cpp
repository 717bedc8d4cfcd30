#include "folders/Folders.h"

#include <pwd.h>
#include <unistd.h>

#include <QStandardPaths>
#include <array>
#include <cstdlib>

namespace {

constexpr const char* kApplicationName = "Ombrix Synth";
constexpr const char* kDataFolderName = kApplicationName;
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
    if (const char* home = std::getenv("HOME"); home && *home == '/') {
        const QString documents =
            QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
        return std::filesystem::path(documents.isEmpty() ? home : documents.toStdString()) /
               kDataFolderName;
    }
    // Without HOME (a service, a bare environment) QtCore would name a folder of the system's root.
    const passwd* const account = ::getpwuid(::getuid());
    if (!account || !account->pw_dir || *account->pw_dir != '/')
        return std::nullopt;
    return std::filesystem::path(account->pw_dir) / kDataFolderName;
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

const char* Folders::applicationName() {
    return kApplicationName;
}
