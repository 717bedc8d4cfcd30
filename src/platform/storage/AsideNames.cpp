#include "storage/AsideNames.h"

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <charconv>
#include <filesystem>
#include <optional>
#include <string_view>

#include "text/UnicodeText.h"

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kLongestName = 255;  // bytes, of file systems
constexpr std::string_view kEnding = ".part";

/// Takes the number behind the last point off `name`.
std::optional<pid_t> takeNumber(std::string_view& name) {
    const std::size_t point = name.rfind('.');
    if (point == name.npos || point == 0)
        return std::nullopt;
    const std::string_view digits = name.substr(point + 1);
    pid_t number = 0;
    const auto [end, failed] =
        std::from_chars(digits.data(), digits.data() + digits.size(), number);
    name = name.substr(0, point);
    const bool isNumber = failed == std::errc() && end == digits.data() + digits.size();
    return isNumber && number >= 0 ? std::optional(number) : std::nullopt;
}

/// Only for names that `beside` gives.
std::optional<pid_t> ownerOf(std::string_view name) {
    if (!name.starts_with('.') || !name.ends_with(kEnding))
        return std::nullopt;
    name.remove_suffix(kEnding.size());
    return takeNumber(name) ? takeNumber(name) : std::nullopt;
}

bool isDead(pid_t process) {
    return process > 0 && ::kill(process, 0) != 0 && errno == ESRCH;
}

}  // namespace

std::string AsideNames::beside(const std::string& target) {
    static std::atomic<unsigned> count{0};
    const fs::path file(target);
    std::string own = '.' + std::to_string(getpid()) + '.' + std::to_string(count++);
    own += kEnding;
    const std::string name = file.filename().string();
    const std::string_view kept = UnicodeText::cut(name, kLongestName - 1 - own.size());
    return (file.parent_path() / ('.' + std::string(kept) + own)).string();
}

int AsideNames::create(const std::string& target, std::string& path) {
    int file = -1;
    do {  // until past what a killed process of the same number has left
        path = beside(target);
        file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    } while (file < 0 && errno == EEXIST);
    return file;
}

void AsideNames::sweep(const std::string& folder) {
    std::error_code ended;
    for (fs::directory_iterator entry(folder, ended), end; !ended && entry != end;
         entry.increment(ended)) {
        const auto owner = ownerOf(entry->path().filename().string());
        if (owner && isDead(*owner))
            ::unlink(entry->path().c_str());
    }
}
