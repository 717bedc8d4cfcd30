#include "wavechoice/WaveChoice.h"

#include <unistd.h>

#include <cctype>
#include <cerrno>
#include <cstring>
#include <filesystem>

#include "folders/Folders.h"
#include "log/Log.h"
#include "wavechoice/GeneratedWaves.h"
#include "wavechoice/StoredWave.h"

namespace fs = std::filesystem;

namespace {

bool fileExists(const fs::path& path) {
    std::error_code ignored;
    return fs::exists(path, ignored);
}

/// In the folder, also where the name begins like a path from the root.
fs::path fileIn(const fs::path& folder, const std::string& name) {
    return folder / fs::path(name).relative_path();
}

bool startsWith(const std::string& text, const char* prefix) {
    return text.rfind(prefix, 0) == 0;
}

std::string behindLastSlash(const std::string& name) {
    return name.substr(name.rfind('/') + 1);
}

std::shared_ptr<VornWave2> mixedToMono(const VornWave2& stereo) {
    const std::uint32_t frames = stereo.sampleCount();
    std::uint32_t count = frames;
    std::int32_t format = 0;
    const float* pairs = stereo.retrieveWindowAt(0, &count, &format);
    if (!pairs)
        return nullptr;
    SampleMemory mono(frames);
    if (!mono)
        return nullptr;
    mono.faultIn();  // all pages at once cost less than one at a time
    for (std::uint32_t i = 0; i < count; ++i)
        mono.data()[i] = (pairs[2 * std::size_t{i}] + pairs[2 * std::size_t{i} + 1]) * 0.5f;
    return VornWave2::initWithOwnershipOfData(std::move(mono), frames,
                                              StreamDescription::float32(1), stereo.filename());
}

}  // namespace

std::string WaveChoice::dataFile(const std::string& name) {
    const auto folder = Folders::data();
    if (!folder) {
        Log::line("Documents directory not found!");
        stopProgram("Documents directory not found!", __func__, __FILE__, __LINE__);
    }
    return fileIn(*folder, name).string();
}

std::string WaveChoice::defaultSoundFile() {
    return (Folders::resources() / "Sine Wave.wav").string();
}

std::optional<std::string> WaveChoice::resource(const std::string& filename) {
    const fs::path path = fileIn(Folders::resources(), filename);
    return fileExists(path) ? std::optional(path.string()) : std::nullopt;
}

std::optional<std::string> WaveChoice::builtInSound(const std::string& path) {
    const fs::path file(path);
    if (file.parent_path().string().ends_with(".app"))
        return file.stem().string();
    return std::nullopt;
}

std::string WaveChoice::plainWaveName(const std::string& name) {
    if (startsWith(name, "user/") || startsWith(name, "internal/"))
        return behindLastSlash(name);
    if (!startsWith(name, "generated/"))
        return name;
    std::string kind = behindLastSlash(name);
    if (!kind.empty())
        kind[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(kind[0])));
    return kind + " Wave.wav";
}

std::optional<std::string> WaveChoice::findWavePath(const std::string& name) {
    const std::string filename = plainWaveName(name);
    if (const std::string own = dataFile(filename); fileExists(own))
        return own;
    return resource(filename);
}

std::shared_ptr<VornWave2> WaveChoice::waveOf(const std::string& path) {
    const fs::path file(path);
    return VornWave2::initWithReferenceToFile(file.filename(), file.parent_path().string());
}

WaveChoice::Loaded WaveChoice::read(std::shared_ptr<VornWave2> wave, const std::string& path) {
    wave->fetch(1);
    wave->waitUntilLoaded();  // should another thread have been first
    Loaded loaded{wave, fs::path(path).filename().string(), wave->loadError(), wave->loadNotice(),
                  path};
    if (!loaded.error.empty())
        loaded.wave.reset();
    else if (wave->audioDescription()->mChannelsPerFrame == 2)
        loaded.wave = mixedToMono(*wave);
    if (!loaded.wave && loaded.error.empty())
        loaded.error = path + ": not enough memory for this sound";
    return loaded;
}

WaveChoice::Loaded WaveChoice::load(const std::string& path) {
    const Loaded loaded = read(waveOf(path), path);
    generate(loaded);
    return loaded;
}

WaveChoice::Loaded WaveChoice::loadAllChannels(const std::string& path) {
    const auto wave = waveOf(path);
    wave->fetch(1);
    wave->waitUntilLoaded();
    return withAllChannels(wave, path);
}

WaveChoice::Loaded WaveChoice::withAllChannels(std::shared_ptr<VornWave2> wave,
                                               const std::string& path) {
    Loaded loaded{wave, fs::path(path).filename().string(), wave->loadError(), wave->loadNotice(),
                  path};
    if (!loaded.error.empty())
        loaded.wave.reset();
    generate(loaded);
    return loaded;
}

void WaveChoice::generate(const Loaded& loaded) {
    const auto builtIn = builtInSound(loaded.path);
    const auto generator = builtIn ? GeneratedWaves::generatorNamed(*builtIn) : nullptr;
    if (!loaded.wave || !generator || loaded.wave->dataReplaced())
        return;
    SampleMemory samples(GeneratedWaves::kLength);
    if (!samples)
        return;
    generator(samples.data(), GeneratedWaves::kLength);
    loaded.wave->cheekilyReplaceDataWithOwnershipOf(std::move(samples), GeneratedWaves::kLength);
}

std::string WaveChoice::makeDataFolder() {
    const fs::path folder = fs::path(dataFile("x")).parent_path();
    std::error_code failed;
    fs::create_directories(folder, failed);
    const auto refuse = [&](const std::string& reason) {
        return "cannot write to the data folder " + folder.string() + ": " + reason;
    };
    if (failed && !fs::is_directory(folder))
        return refuse(failed.message());
    if (::access(folder.c_str(), W_OK | X_OK) != 0)
        return refuse(std::strerror(errno));
    return "";
}

void WaveChoice::choose(const std::shared_ptr<VornWave2>& wave) {
    ++m_choices;
    giveToVoices(wave);
    m_shownWave = m_currentWave;
}

void WaveChoice::giveToVoices(const std::shared_ptr<VornWave2>& wave) {
    m_settle = nullptr;
    m_currentWave = VornWaveSequence::sequenceWithWave(wave);
    for (const auto& synth : m_voices.voiceSynths)
        synth->setWaveSource(wave);
}

void WaveChoice::use(const Loaded& loaded) {
    m_inUse = loaded;
    m_currentWaveFilename = loaded.filename;
    choose(loaded.wave);
}

std::optional<WaveChoice::Loaded> WaveChoice::inUse(const std::string& path) const {
    const bool same = m_currentWaveFilename && m_inUse.wave && m_inUse.path == path;
    return same ? std::optional(m_inUse) : std::nullopt;
}

void WaveChoice::useUnsaved(std::shared_ptr<VornWave2> wave) {
    m_inUse = {};
    m_currentWaveFilename.reset();
    choose(wave);
}

void WaveChoice::showEdited(std::shared_ptr<VornWaveSequence> sound, std::function<void()> settle) {
    m_inUse = {};
    m_currentWaveFilename.reset();
    m_shownWave = std::move(sound);
    m_settle = std::move(settle);
}

void WaveChoice::useEdited(const std::shared_ptr<VornWave2>& wave, const Identity& identity) {
    m_inUse = identity.inUse;
    m_currentWaveFilename = identity.filename;
    giveToVoices(wave);
}

void WaveChoice::settle() {
    while (const auto settle = std::exchange(m_settle, nullptr))
        settle();  // may show another one instead
}

std::string WaveChoice::storeWave(const VornWaveSequence& wave, const std::string& path) {
    return StoredWave::store(wave, path, FileNames::Existing::replace);
}

std::string WaveChoice::findAvailableWaveName(const std::string& base) {
    const std::string first = base + " Audio";
    std::string name = first;
    for (int number = 2; fileExists(dataFile(name + ".wav")); ++number)
        name = first + ' ' + std::to_string(number);
    return name;
}

bool WaveChoice::hasWaveWithName(const std::string& name) {
    return resource(name + ".wav").has_value() || fileExists(dataFile(name + ".wav"));
}

WaveChoice::Loaded WaveChoice::setWaveTo(const std::string& path) {
    if (!fileExists(path)) {
        const std::string fallback = defaultSoundFile();
        if (path != fallback)
            return setWaveTo(fallback);
        return {nullptr, "", path + ": no such file", "", path};
    }
    Loaded loaded = load(path);
    if (loaded.wave)
        use(loaded);
    return loaded;
}
