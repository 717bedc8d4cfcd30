#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "files/VornAudioFile.h"
#include "handoff/Shared.h"
#include "memory/SampleMemory.h"

/// What became of a sound file.
struct LoadedSound {
    SampleMemory samples;  // 44100 Hz floats, interleaved; empty after a failure
    std::uint32_t frames = 0;
    std::uint32_t channels = 0;  // 1 or 2
    std::string problem;         // end of a sentence about the file: "is empty"; else empty
    std::string notice;          // likewise, about a sound that plays
};

/// Reads an open sound file whole. 44100 Hz floats and 16-bit integers of one or two channels come
/// straight into place; everything else is converted to 16-bit integers first (44100 Hz floats of
/// more channels are only folded). Integers are widened in place. Never believes a size in the
/// file: memory grows with what is really read. [control or a thread of its own]
class WaveLoader {
  public:
    /// Gives up soon after `unwanted` has become true.
    WaveLoader(VornAudioFile& file, Shared<float>& progress, const Shared<bool>& unwanted);
    LoadedSound load();

  private:
    void checkWanted();
    void checkFormat();
    void checkLength(double sourceFrames);
    void readStraight(std::uint32_t sampleBytes);
    void convert(const StreamDescription& target);
    void fill(class PacketSource& source, struct OpaqueAudioConverter* converter,
              const StreamDescription& target);
    void settle(std::uint64_t sourceFrames, std::size_t converted);
    bool makeRoom(std::size_t floats);
    void finish();

    bool failed() const { return !m_sound.problem.empty(); }
    double framesAfter(double sourceFrames) const;

    VornAudioFile& m_file;
    Shared<float>& m_progress;
    const Shared<bool>& m_unwanted;
    StreamDescription m_format;
    double m_progressWeight = 1.0;  // what counts as the whole of the work
    double m_wideningStep = 0.0;
    std::uint64_t m_claimed = 0;  // frames
    std::uint64_t m_read = 0;
    LoadedSound m_sound;
};
