#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "WaveAccess.h"

/// Which samples of a stereo sound are read.
enum class ExtractType : std::int32_t {
    all = 0,
    first = 1,   // the first sample of each frame
    second = 2,  // the second one
};

/// A span of one wave, or of silence, which owns no memory. Its span never changes; silence becomes
/// a wave when it is given memory. Windows are read on any thread; copying, which logs, making and
/// changing is for the main thread.
class VornWaveBlock : public ContiguousWave, public std::enable_shared_from_this<VornWaveBlock> {
  public:
    using Pointer = std::shared_ptr<VornWaveBlock>;

    /// Nothing is checked: a span that leaves the wave is clamped when it is read.
    static Pointer initWithWave(std::shared_ptr<VornWave2> wave, std::uint32_t start,
                                std::uint32_t count);
    /// Silence at 44100 Hz, 1 or 2 channels. `folder` is where it could be saved if it is ever
    /// given memory; may be empty.
    static Pointer initWithSilenceOfLength(std::uint32_t length, std::uint32_t channels,
                                           const std::string& folder);
    static Pointer blockWithWave(std::shared_ptr<VornWave2> wave, std::uint32_t start,
                                 std::uint32_t count) {
        return initWithWave(std::move(wave), start, count);
    }
    /// The whole wave.
    static Pointer blockWithWave(std::shared_ptr<VornWave2> wave);
    static Pointer blockOfSilenceLength(std::uint32_t length, std::uint32_t channels,
                                        const std::string& folder) {
        return initWithSilenceOfLength(length, channels, folder);
    }

    std::uint32_t sampleCount() const override { return m_frameCount; }
    std::uint32_t frameCount() const { return m_frameCount; }
    std::uint32_t startIndex() const { return m_startIndex; }
    const StreamDescription* audioDescription() const override { return &m_myAudioDescription; }
    /// Of what `write(frames, into)` copies, at the most while the wave is loading.
    std::uint32_t floatsPerFrame() const;
    bool isSilence() const { return !m_wave; }
    bool hasWave() const { return m_wave != nullptr; }
    const std::shared_ptr<VornWave2>& waveOrNil() const { return m_wave; }
    /// Empty for a block that was made from a wave.
    const std::string& silenceFolder() const { return m_silenceFolder; }

    /// Long silence comes in chunks of 44100 frames, stereo in chunks of 22050.
    WaveWindowList retrieveWindowsAt(std::uint32_t at, std::uint32_t* count) const override;
    /// Null for silence, with count and format untouched.
    const float* retrieveWindowAt(std::uint32_t at, std::uint32_t* count,
                                  std::int32_t* format) const override;
    /// Raw, in the block's own layout.
    std::uint32_t write(std::uint32_t frames, float* into) const override;
    /// In `channels` channels: mono is doubled, stereo becomes its mean. Returns the frames
    /// written.
    std::uint32_t write(std::uint32_t frames, float* into, std::uint32_t channels) const;
    /// The same, but of a stereo source one channel only, unless all are asked for.
    std::uint32_t extract(std::uint32_t frames, ExtractType type, float* into,
                          std::uint32_t channels) const;

    std::shared_ptr<WaveAccess> sliceBlockFrom(std::uint32_t from,
                                               std::uint32_t count) const override;
    /// The same slice as a block, and as a sequence of it.
    Pointer slice(std::uint32_t from, std::uint32_t count) const;
    std::shared_ptr<VornWaveSequence> sliceFrom(std::uint32_t from, std::uint32_t count) const;
    /// A new wave in memory with a copy in `channels` channels; no frames when there is no memory.
    std::shared_ptr<VornWave2> flattenInto(const std::string& folder, std::uint32_t channels) const;

    /// Gives silence a wave of its own, zeros at first. [main]
    void ensureSilentWave();
    /// Memory that can be written, given to silence first; null for a wave that offers none. [main]
    float* mutableData();

  private:
    /// The wave's samples from the block's start on; null when it offers none.
    struct Span {
        const float* data;
        std::uint32_t frames;
        std::uint32_t channels;
    };

    VornWaveBlock() = default;
    WaveWindowList silentWindows(std::uint32_t count) const;
    Span firstFrames(std::uint32_t frames) const;
    std::uint32_t writeSilence(std::uint32_t frames, float* into, std::uint32_t channels) const;

    std::shared_ptr<VornWave2> m_wave;
    std::uint32_t m_startIndex = 0;
    std::uint32_t m_frameCount = 0;
    StreamDescription m_myAudioDescription;
    std::string m_silenceFolder;
};
