#pragma once

#include <cstdint>
#include <vector>

#include "audiofiles/AudioConverter.h"
#include "files/VornAudioFile.h"
#include "handoff/Shared.h"

/// Feeds a converter with a file's packets, in pieces of 40960 bytes from the first one on.
class PacketSource {
  public:
    /// `step` is added to `progress` for each packet.
    PacketSource(VornAudioFile& file, double step, Shared<float>& progress);

    /// Frames that were read so far: a packet is a frame.
    std::uint64_t packetsRead() const { return m_packet; }

    /// The converter's input procedure; `userData` is a PacketSource.
    static OSStatus supply(AudioConverterRef converter, std::uint32_t* ioPackets,
                           AudioBufferList* ioData, AudioStreamPacketDescription** outDescriptions,
                           void* userData);

  private:
    VornAudioFile& m_file;
    double m_step;
    Shared<float>& m_progress;
    std::uint32_t m_packet = 0;
    std::vector<char> m_staging;
    std::vector<AudioStreamPacketDescription> m_descriptions;  // empty unless packets vary
};
