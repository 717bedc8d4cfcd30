#include "recording/UnsavedTake.h"

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>

#include "storage/WriteAll.h"
#include "wavechoice/StoredWave.h"

namespace fs = std::filesystem;

namespace {

constexpr std::string_view kPrefix = "-temporary-audio-recording-";
constexpr std::string_view kSuffix = ".tmp";
constexpr const char* kNoPlace =
    "the take is not kept safe until it is saved: nothing can be locked in the data folder";

/// The file of place `ordinal`; there is more than one only while an earlier take waits there.
std::string fileOf(int ordinal, int number) {
    if (ordinal == 1 && number == 1)
        return WaveChoice::temporaryRecordingFile();
    std::string name = std::string(kPrefix) + ' ' + std::to_string(ordinal);
    if (number > 1)
        name += '-' + std::to_string(number);
    return WaveChoice::dataFile(name.append(kSuffix));
}

/// The place that a file name belongs to; 0 for a name that is none of ours.
int placeOf(const std::string& name) {
    if (!name.starts_with(kPrefix) || !name.ends_with(kSuffix))
        return 0;
    const std::string middle =
        name.substr(kPrefix.size(), name.size() - kPrefix.size() - kSuffix.size());
    return middle.empty() ? 1 : std::max(0, std::atoi(middle.c_str()));
}

bool exists(const std::string& path) {
    std::error_code ignored;
    return fs::exists(path, ignored);
}

}  // namespace

std::string UnsavedTake::freePath() const {
    int number = 1;
    while (exists(fileOf(m_place.ordinal(), number)))
        ++number;
    return fileOf(m_place.ordinal(), number);
}

UnsavedTake::~UnsavedTake() {
    RunLoop::main().cancel(m_waiting);
}

void UnsavedTake::stopWriting() {
    RunLoop::main().cancel(m_waiting);
    m_waiting = 0;
    m_writer.stop();
}

std::string UnsavedTake::store(const VornWaveSequence& take) {
    stopWriting();
    if (m_place.ordinal() == 0)
        return kNoPlace;
    if (m_kept.lock().get() == &take && exists(m_path))
        return "";
    m_kept.reset();
    const std::string path = m_path.empty() ? freePath() : m_path;
    std::string error = WaveChoice::storeWave(take, path);
    if (error.empty())
        m_path = path;
    return error;
}

/// Replaces what was to be done later. What is being written now ends first.
void UnsavedTake::later(std::function<void()> what) {
    RunLoop::main().cancel(m_waiting);
    m_waiting = RunLoop::main().callAfter(kPause, [this, what = std::move(what)] {
        m_waiting = 0;
        if (m_writer.busy())
            return later(what);
        what();
    });
}

void UnsavedTake::storeLater(std::shared_ptr<const VornWaveSequence> sound, Told told) {
    m_kept.reset();
    later([this, sound = std::move(sound), told = std::move(told)] { writeLater(sound, told); });
}

void UnsavedTake::writeLater(std::shared_ptr<const VornWaveSequence> sound, Told told) {
    if (m_place.ordinal() == 0)
        return tellOnce(kNoPlace, told);
    if (m_path.empty())
        m_path = freePath();
    const auto error = std::make_shared<std::string>();
    m_writer.begin(
        [sound, error, path = m_path](EditWatch& watch) {
            *error = StoredWave::store(*sound, path, FileNames::Existing::replace, watch.unwanted);
        },
        [this, sound, error, told = std::move(told)] {
            if (error->empty())
                m_kept = sound;
            tellOnce(*error, told);
        });
}

/// A disk that is full is told of once, until it is not.
void UnsavedTake::tellOnce(const std::string& line, const Told& told) {
    if (std::exchange(m_told, line) != line && !line.empty())
        told(line);
}

void UnsavedTake::forgetLater() {
    m_kept.reset();
    later([this] {
        if (m_path.empty())
            return;
        m_writer.begin(
            [path = std::exchange(m_path, {})](EditWatch&) {
                ::unlink(path.c_str());
                syncFolderOf(path);
            },
            [] {});
    });
}

std::string UnsavedTake::nameIt(const std::string& path, FileNames::Existing existing) {
    stopWriting();
    std::string error = FileNames::rename(m_path, path, existing);
    if (error.empty())
        m_path.clear();
    return error;
}

void UnsavedTake::forget() {
    stopWriting();
    if (m_path.empty())
        return;
    ::unlink(m_path.c_str());
    syncFolderOf(m_path);
    m_path.clear();
}

std::vector<std::string> UnsavedTake::leftOver() {
    std::vector<std::string> found;
    const fs::path folder = fs::path(WaveChoice::dataFile("x")).parent_path();
    std::error_code ended;
    for (fs::directory_iterator entry(folder, ended), end; !ended && entry != end;
         entry.increment(ended)) {
        const std::string path = entry->path().string();
        const int place = placeOf(entry->path().filename().string());
        if (place > 0 && path != m_path)
            m_place.whileFree(place, [&] { found.push_back(path); });
    }
    std::ranges::sort(found);
    return found;
}

bool UnsavedTake::adopt(const std::string& path, std::string& error) {
    stopWriting();
    error = path + ": another instance of the program has this take";
    if (m_place.ordinal() == 0)
        error = path + ": nothing can be locked in the data folder";
    m_place.whileFree(placeOf(fs::path(path).filename().string()), [&] {
        if (m_place.ordinal() == 0)
            return;
        const std::string own = freePath();
        error = FileNames::rename(path, own, FileNames::Existing::keep);
        if (error.empty())
            m_path = own;
    });
    return error.empty();
}
