#include "VornWave2.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <limits>
#include <system_error>
#include <thread>

#include "VornWaveBlock.h"
#include "VornWaveDatabase.h"
#include "WaveLoader.h"
#include "log/Log.h"
#include "runloop/Clock.h"

namespace {

constexpr double kReferenceDate = 978307200.0;  // 2001-01-01 UTC, seconds since 1970

std::string currentDate() {
    const auto seconds = static_cast<std::time_t>(Clock::now() + kReferenceDate);
    std::tm date{};
    gmtime_r(&seconds, &date);
    std::array<char, 64> text;
    std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S +0000", &date);
    return text.data();
}

std::string memoryFilename(const std::string& nameHint, const void* wave) {
    std::array<char, 32> address;
    std::snprintf(address.data(), address.size(), "%p", wave);
    return nameHint + " " + address.data() + " " + currentDate() + ".wav";
}

/// Half of the machine's memory. More would be granted and then end the program when it is filled.
std::uint64_t mostFloats() {
    static const auto bytes = static_cast<std::uint64_t>(sysconf(_SC_PHYS_PAGES)) *
                              static_cast<std::uint64_t>(sysconf(_SC_PAGESIZE));
    return bytes / 2 / sizeof(float);
}

std::int32_t windowFormat(std::uint32_t channels) {
    return static_cast<std::int32_t>(channels == 1 ? WaveFormat::mono
                                                   : WaveFormat::stereoInterleaved);
}

}  // namespace

std::shared_ptr<VornWave2> VornWave2::initWithReferenceToFile(const std::string& file,
                                                              const std::string& folder) {
    const std::string path = (std::filesystem::path(folder) / file).string();
    VornWaveDatabase& database = VornWaveDatabase::sharedInstance();
    if (auto existing = database.lookupWaveForPath(path))
        return existing;
    // Opened before it is known to others, who may want to load it at once.
    std::shared_ptr<VornWave2> wave(new VornWave2);
    wave->open(file, path);
    return database.registerUnlessTaken(wave, path);
}

std::shared_ptr<VornWave2> VornWave2::initWithContentsOfFile(const std::string& file,
                                                             const std::string& folder) {
    auto wave = initWithReferenceToFile(file, folder);
    wave->fetch(1);
    return wave;
}

std::shared_ptr<VornWave2> VornWave2::initWithCopyOfData(const float* samples, std::uint32_t length,
                                                         const StreamDescription& description,
                                                         const std::string& nameHint) {
    const std::size_t floats = std::size_t{length} * description.mChannelsPerFrame;
    SampleMemory copy(floats);
    copy.faultIn();
    if (copy && floats > 0)
        std::memcpy(copy.data(), samples, floats * sizeof(float));
    return initWithOwnershipOfData(std::move(copy), length, description, nameHint);
}

std::shared_ptr<VornWave2> VornWave2::initWithOwnershipOfData(SampleMemory samples,
                                                              std::uint32_t length,
                                                              const StreamDescription& description,
                                                              const std::string& nameHint) {
    std::shared_ptr<VornWave2> wave(new VornWave2);
    wave->m_myAudioDescription = description;
    wave->m_filename = memoryFilename(nameHint, wave.get());
    wave->m_loadState.store(loaded, std::memory_order_release);
    wave->adopt(std::move(samples), length);
    return wave;
}

std::shared_ptr<VornWave2> VornWave2::waveWithOwnershipOfData(SampleMemory samples,
                                                              std::uint32_t length,
                                                              const StreamDescription& description,
                                                              const std::string& nameHint) {
    return initWithOwnershipOfData(std::move(samples), length, description, nameHint);
}

std::shared_ptr<VornWave2> VornWave2::mutableWaveOfLength(std::uint32_t length,
                                                          const StreamDescription& description,
                                                          const std::string& nameHint,
                                                          const std::string& folder) {
    SampleMemory zeros;
    const std::uint64_t floats = std::uint64_t{length} * description.mChannelsPerFrame;
    if (floats <= mostFloats())
        zeros.resize(floats);
    auto wave = initWithOwnershipOfData(std::move(zeros), length, description, nameHint);
    wave->m_folder = folder;
    wave->m_mutable = true;
    return wave;
}

VornWave2::~VornWave2() {
    VornWaveDatabase::sharedInstance().unregisterWaveForPath(this, m_fullPath);
}

void VornWave2::open(const std::string& file, const std::string& path) {
    m_fullPath = path;
    m_filename = file;
    m_residency = onDisk;
    m_af = std::make_unique<VornAudioFile>(path);
    if (m_af->status() != noErr)
        return;
    m_af->dataFormat(&m_fileDescription);
    const std::uint64_t frames = m_fileDescription.mFramesPerPacket * m_af->packetCount();
    m_frameCount = static_cast<std::uint32_t>(
        std::min<std::uint64_t>(frames, std::numeric_limits<std::uint32_t>::max()));
}

/// `frames` is cut to what the memory holds, so that no reader leaves it.
void VornWave2::adopt(SampleMemory samples, std::uint32_t frames) {
    const std::uint32_t k = std::max(channels(), 1u);
    const std::size_t held = samples.size() / k;
    samples.faultIn();
    frames = static_cast<std::uint32_t>(std::min<std::size_t>(frames, held));
    m_contents.push_back(std::make_unique<const Content>(Content{std::move(samples), frames}));
    m_frameCount = frames;
    m_content.store(m_contents.back().get(), std::memory_order_release);
}

void VornWave2::fetch(int flag) {
    if (bkgLoadState() == loaded)
        m_progress = 1.f;
    std::int32_t expected = notLoaded;
    if (!m_loadState.compare_exchange_strong(expected, loading, std::memory_order_acq_rel))
        return;
    if (flag != 0) {
        internalFetch();
        return;
    }
    try {
        std::thread([self = shared_from_this()] { self->internalFetch(); }).detach();
    } catch (const std::system_error&) {
        internalFetch();  // no thread to be had: late is better than never
    }
}

void VornWave2::abandon() {
    if (bkgLoadState() == loaded)
        return;
    m_unwanted = true;
    VornWaveDatabase::sharedInstance().unregisterWaveForPath(this, m_fullPath);
}

void VornWave2::waitUntilLoaded() const {
    while (bkgLoadState() == loading)
        m_loadState.wait(loading, std::memory_order_acquire);
}

void VornWave2::internalFetch() {
    LoadedSound sound = WaveLoader(*m_af, m_progress, m_unwanted).load();
    if (!sound.problem.empty())
        m_loadError = m_fullPath + " " + sound.problem;
    if (!sound.notice.empty())
        m_loadNotice = m_fullPath + " " + sound.notice;
    m_myAudioDescription = StreamDescription::float32(std::max(sound.channels, 1u));
    if (sound.samples) {
        m_frameCount = sound.frames;
        m_contents.push_back(
            std::make_unique<const Content>(Content{std::move(sound.samples), sound.frames}));
        m_content.store(m_contents.back().get(), std::memory_order_release);
    }
    m_af.reset();
    m_progress = 1.f;
    m_loadState.store(loaded, std::memory_order_release);
    m_loadState.notify_all();
}

const StreamDescription* VornWave2::audioDescription() const {
    return bkgLoadState() == loaded ? &m_myAudioDescription : &m_fileDescription;
}

const float* VornWave2::retrieveWindowAt(std::uint32_t at, std::uint32_t* count,
                                         std::int32_t* format) const {
    const Content* content =
        bkgLoadState() == loaded ? m_content.load(std::memory_order_acquire) : nullptr;
    if (!content) {
        *count = 0;
        return nullptr;
    }
    const std::uint32_t start = std::min(at, content->frames);
    *count = std::min(*count, content->frames - start);
    if (format)
        *format = windowFormat(m_myAudioDescription.mChannelsPerFrame);
    const std::size_t floatsPerFrame = m_myAudioDescription.mChannelsPerFrame == 1 ? 1 : 2;
    return content->samples.data() + start * floatsPerFrame;
}

WaveWindowList VornWave2::retrieveWindowsAt(std::uint32_t at, std::uint32_t* count) const {
    std::int32_t format = 0;
    const float* data = retrieveWindowAt(at, count, &format);
    if (!data)
        return nullptr;
    auto list = std::make_unique<WaveWindow[]>(2);
    list[0] = {this, data, *count, format};
    return list;
}

std::uint32_t VornWave2::write(std::uint32_t frames, float* into) const {
    std::uint32_t held = frames;
    const float* data = retrieveWindowAt(0, &held, nullptr);
    const std::size_t k = channels();
    if (data)
        std::memcpy(into, data, held * k * sizeof(float));
    std::fill(into + held * k, into + frames * k, 0.f);
    return frames;
}

std::shared_ptr<WaveAccess> VornWave2::sliceBlockFrom(std::uint32_t from,
                                                      std::uint32_t count) const {
    // A wave is only ever handed out as one that may be changed.
    return VornWaveBlock::blockWithWave(std::const_pointer_cast<VornWave2>(shared_from_this()),
                                        from, count);
}

float* VornWave2::mutableData() {
    return m_mutable ? const_cast<float*>(m_content.load()->samples.data()) : nullptr;
}

std::string VornWave2::loadError() const {
    return bkgLoadState() == loaded ? m_loadError : std::string();
}

std::string VornWave2::loadNotice() const {
    return bkgLoadState() == loaded ? m_loadNotice : std::string();
}

void VornWave2::cheekilyReplaceDataWithOwnershipOf(SampleMemory samples, std::uint32_t frames) {
    adopt(std::move(samples), frames);
    m_dataReplaced = true;
}

void VornWave2::releaseReplacedData() {
    if (m_contents.size() > 1)
        m_contents.erase(m_contents.begin(), m_contents.end() - 1);
}
