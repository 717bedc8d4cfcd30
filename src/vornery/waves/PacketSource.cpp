#include "PacketSource.h"

#include <algorithm>
#include <limits>

namespace {
constexpr std::uint32_t kPieceBytes = 40960;
}

PacketSource::PacketSource(VornAudioFile& file, double step, Shared<float>& progress)
    : m_file(file), m_step(step), m_progress(progress), m_staging(kPieceBytes) {
    if (file.variablePackets() && file.packetSize() > 0)
        m_descriptions.resize(kPieceBytes / file.packetSize());
}

OSStatus PacketSource::supply(AudioConverterRef, std::uint32_t* ioPackets, AudioBufferList* ioData,
                              AudioStreamPacketDescription** outDescriptions, void* userData) {
    auto& self = *static_cast<PacketSource*>(userData);
    std::uint32_t bytes = kPieceBytes;
    auto* descriptions =
        outDescriptions && !self.m_descriptions.empty() ? self.m_descriptions.data() : nullptr;
    const std::uint32_t packets =
        self.m_file.readPackets(self.m_staging.data(), self.m_packet, &bytes, descriptions);
    if (outDescriptions)
        *outDescriptions = descriptions;
    if (packets > std::numeric_limits<std::uint32_t>::max() - self.m_packet)
        return kAudio_ParamError;
    self.m_packet += packets;
    self.m_progress = static_cast<float>(std::min(self.m_progress + packets * self.m_step, 1.0));
    *ioData = AudioBufferList::single(self.m_staging.data(), 0, packets * self.m_file.packetSize());
    *ioPackets = packets;
    return noErr;
}
