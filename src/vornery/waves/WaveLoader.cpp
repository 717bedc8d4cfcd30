#include "WaveLoader.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <limits>

#include "PacketSource.h"
#include "SampleWidening.h"
#include "log/Log.h"

namespace {

constexpr double kLongestSeconds = 20 * 60;
constexpr double kLargestBytes = 512.0 * 1024 * 1024;  // of samples, once converted
constexpr double kLowestRate = 1000;                   // frames per second
constexpr double kHighestRate = 1e6;
constexpr std::uint32_t kFillFrames = 16384;

[[gnu::format(printf, 1, 2)]] std::string text(const char* format, ...) {
    std::array<char, 256> line;
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(line.data(), line.size(), format, arguments);
    va_end(arguments);
    return line.data();
}

}  // namespace

WaveLoader::WaveLoader(VornAudioFile& file, Shared<float>& progress, const Shared<bool>& unwanted)
    : m_file(file), m_progress(progress), m_unwanted(unwanted) {}

LoadedSound WaveLoader::load() {
    checkFormat();
    checkWanted();
    if (failed())
        return std::move(m_sound);
    m_claimed = m_file.packetCount();
    checkLength(static_cast<double>(m_claimed));
    if (failed())
        return std::move(m_sound);
    const std::uint32_t k = m_sound.channels;
    m_progressWeight = static_cast<double>(k) * static_cast<double>(m_claimed) + 1.0;
    if (m_format == StreamDescription::float32(k))
        readStraight(sizeof(float));
    else if (m_format == StreamDescription::sint16(k))
        readStraight(sizeof(std::int16_t));
    else if (m_format == StreamDescription::float32(m_format.mChannelsPerFrame))
        convert(StreamDescription::float32(k));
    else
        convert(StreamDescription::sint16(k));
    finish();
    return std::move(m_sound);
}

void WaveLoader::checkFormat() {
    if (m_file.status() != noErr) {
        m_sound.problem = audioFileProblem(m_file.status());
        return;
    }
    m_file.dataFormat(&m_format);
    const double rate = m_format.mSampleRate;
    if (!(rate >= kLowestRate && rate <= kHighestRate))
        m_sound.problem = text("has a sample rate of %.0f Hz; %.0f to %.0f can be played", rate,
                               kLowestRate, kHighestRate);
    else if (m_format.mChannelsPerFrame == 0 || m_file.packetSize() == 0)
        m_sound.problem = audioFileProblem(kAudioFileInvalidFileError);
    m_sound.channels = std::min(m_format.mChannelsPerFrame, 2u);
}

void WaveLoader::checkWanted() {
    if (m_unwanted && !failed())
        m_sound.problem = "is not wanted any more";
}

double WaveLoader::framesAfter(double sourceFrames) const {
    return m_format.mSampleRate == kGraphRate ? sourceFrames
                                              : sourceFrames / m_format.mSampleRate * kGraphRate;
}

void WaveLoader::checkLength(double sourceFrames) {
    const double frames = framesAfter(sourceFrames);
    if (frames > kLongestSeconds * kGraphRate)
        m_sound.problem = "is longer than 20 minutes, which is the limit";
    else if (frames * m_sound.channels * sizeof(float) > kLargestBytes)
        m_sound.problem = "needs more than 512 MiB of memory, which is the limit";
}

/// For the first time as much as a PCM file can need: it has so many bytes.
bool WaveLoader::makeRoom(std::size_t floats) {
    if (floats <= m_sound.samples.size())
        return true;
    const double expected =
        m_file.variablePackets()
            ? 0.0
            : framesAfter(static_cast<double>(m_file.byteCount() / m_file.packetSize()));
    const auto first = static_cast<std::size_t>(expected + kFillFrames) * m_sound.channels;
    const std::size_t wanted = std::max({floats, 2 * m_sound.samples.size(), first});
    if (!m_sound.samples.resize(wanted))
        m_sound.problem = audioFileProblem(kAudioFileOutOfMemoryError);
    return !failed();
}

void WaveLoader::readStraight(std::uint32_t sampleBytes) {
    const std::uint32_t k = m_sound.channels;
    // No more than the file really has, and within the limit.
    std::uint32_t bytes = static_cast<std::uint32_t>(
        std::min<std::uint64_t>(m_file.byteCount(), std::uint64_t{sampleBytes} * k * m_claimed));
    if (!m_sound.samples.resize(bytes / sampleBytes)) {
        m_sound.problem = audioFileProblem(kAudioFileOutOfMemoryError);
        return;
    }
    m_sound.samples.faultIn();
    m_file.ReadIntoBuffer(m_sound.samples.data(), &bytes);
    m_read = bytes / sampleBytes / k;
    const std::size_t count = m_read * k;
    if (sampleBytes == sizeof(float))
        silenceNonFinite(m_sound.samples.data(), count);
    else
        widenSixteenBits(m_sound.samples.data(), count, 0.9 / (m_progressWeight + 1.0), m_progress);
    m_sound.samples.resize(count);
    m_sound.frames = static_cast<std::uint32_t>(m_read);
}

void WaveLoader::convert(const StreamDescription& stated) {
    StreamDescription target = stated;
    if (m_sound.channels == 1 && !target.isFloat())
        target.mFormatFlags |= kAudioFormatFlagIsNonInterleaved;
    AudioConverterRef converter = nullptr;
    if (const OSStatus status = AudioConverterNew(&m_format, &target, &converter)) {
        Log::status(status);
        m_sound.problem = audioFileProblem(status);
        return;
    }
    const double share = m_sound.channels * std::trunc(framesAfter(static_cast<double>(m_claimed)));
    m_progressWeight += share;
    PacketSource source(m_file,
                        m_claimed ? share / static_cast<double>(m_claimed) / m_progressWeight : 0.0,
                        m_progress);
    m_wideningStep = 0.9 / (m_progressWeight + 1.0);
    fill(source, converter, target);
    Log::status(AudioConverterDispose(converter));
}

/// Integers are widened piece by piece, on their way into place.
void WaveLoader::fill(PacketSource& source, AudioConverterRef converter,
                      const StreamDescription& target) {
    const std::uint32_t k = m_sound.channels;
    std::size_t converted = 0;
    for (bool more = true; more && makeRoom((converted + kFillFrames) * k);) {
        m_sound.samples.faultIn(converted * k, kFillFrames * k);
        float* place = m_sound.samples.data() + converted * k;
        std::uint32_t frames = kFillFrames;
        AudioBufferList output =
            AudioBufferList::single(place, k, kFillFrames * target.mBytesPerFrame);
        const OSStatus status = AudioConverterFillComplexBuffer(converter, PacketSource::supply,
                                                                &source, &frames, &output, nullptr);
        if (status != noErr) {
            Log::line("Conversion error %lx - %ld", static_cast<long>(status) & 0xffffffffL,
                      static_cast<long>(status));
            m_sound.problem = audioFileProblem(status);
            return;
        }
        if (!target.isFloat())
            widenSixteenBits(place, std::size_t{frames} * k, m_wideningStep, m_progress);
        converted += frames;
        more = frames == kFillFrames;
        checkLength(static_cast<double>(source.packetsRead()));
        checkWanted();
        if (failed())
            return;
    }
    settle(source.packetsRead(), converted);
}

/// Pads with zeros or cuts to the length that belongs to the frames that were read.
void WaveLoader::settle(std::uint64_t sourceFrames, std::size_t converted) {
    if (failed())
        return;
    const std::size_t k = m_sound.channels;
    m_read = sourceFrames;
    m_sound.samples.resize(converted * k);
    m_sound.frames = static_cast<std::uint32_t>(framesAfter(static_cast<double>(sourceFrames)));
    if (!m_sound.samples.resize(m_sound.frames * k))
        m_sound.problem = audioFileProblem(kAudioFileOutOfMemoryError);
}

void WaveLoader::finish() {
    if (!failed() && m_sound.frames == 0)
        m_sound.problem = "has no sound in it (0 frames)";
    if (failed()) {
        m_sound.samples = SampleMemory();
        m_sound.frames = 0;
        return;
    }
    m_sound.samples.faultIn();
    // The lengths that compressed files state may be out by a few blocks of their codec.
    const double slack = m_file.variablePackets() ? 8192 : 0;
    if (static_cast<double>(m_read) + slack < static_cast<double>(m_claimed))
        m_sound.notice = text("ends early: %.2f s of %.2f s are there and will play",
                              static_cast<double>(m_read) / m_format.mSampleRate,
                              static_cast<double>(m_claimed) / m_format.mSampleRate);
}
