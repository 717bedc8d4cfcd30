#include "startup/InstanceLock.h"

#include <filesystem>

#include "storage/AsideNames.h"

namespace {

/// Far more than anyone starts; keeps a file system that answers nonsense from being asked forever.
constexpr int kMostPlaces = 1000;

}  // namespace

std::string InstanceLock::lockFile(const std::string& folder, int ordinal) {
    const std::string number = ordinal == 1 ? std::string() : ' ' + std::to_string(ordinal);
    return (std::filesystem::path(folder) / (".running" + number + ".lock")).string();
}

InstanceLock::InstanceLock(const std::string& folder) : m_folder(folder) {
    for (int ordinal = 1; ordinal <= kMostPlaces; ++ordinal) {
        auto place = std::make_unique<FileLock>(lockFile(folder, ordinal));
        if (place->held()) {
            m_place = std::move(place);
            m_ordinal = ordinal;
            if (ordinal == 1)
                AsideNames::sweep(folder);
            return;
        }
        if (!place->taken())
            return;
    }
}
